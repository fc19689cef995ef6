#include "panels/modDSPchannel.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string>

#include "base/Text.h"

namespace corvex {

namespace {

/// A button's caption, the text that it sends, and its next caption. "Debug" and "Stop" belong to buttons of
/// other windows.
struct ShortWord {
  std::string_view caption;
  std::string_view sent;
  std::string_view next;
};
constexpr std::array<ShortWord, 6> kShortWords{{
    {"Debug", "debug\r\n", "NoDebug"},
    {"NoDebug", "nodebug\r\n", "Debug"},
    {"Trace", "trace\r\n", "NoTrace"},
    {"NoTrace", "notrace\r\n", "Trace"},
    {"Flush", "flush\r\n", "Flush"},
    {"Stop", "stop\r\n", "Stop"},
}};
constexpr std::array<std::string_view, 2> kRawWords{"dsp ", "command "};
constexpr std::string_view kTestMessage = "4,1,65534,456";

std::optional<std::int16_t> DspNumber(std::string_view field) {
  constexpr double kWrap = 65536;
  double value = RoundHalfEven(NumericPrefix(field));
  if (value > std::numeric_limits<std::int16_t>::max()) value -= kWrap;
  if (value < std::numeric_limits<std::int16_t>::min() || value > std::numeric_limits<std::int16_t>::max())
    return std::nullopt;
  return static_cast<std::int16_t>(value);
}

}  // namespace

std::vector<std::int16_t> DspMessage(std::string_view text) {
  Fields fields(text, ',');
  const auto count = DspNumber(fields.Next());
  if (!count || *count < 1) return {};
  std::vector<std::int16_t> message(static_cast<std::size_t>(*count) + 1);
  message[0] = *count;
  for (std::size_t i = 1; i + 1 < message.size() && fields.More(); ++i) {
    const auto number = DspNumber(fields.Next());
    if (!number) return {};
    message[i] = *number;
  }
  return message;
}

void DspChannel::Connect() {
  for (Button& button : panel_.cmdDSPShort) button.click = [this, &button] { PressShort(button); };
  for (std::size_t i = 0; i < kRawWords.size(); ++i) panel_.cmdRawDsp[i].click = [this, i] { SendRaw(i); };
  window_.mnuDspTest.click = [this] { SendDspMessage(kTestMessage); };
}

void DspChannel::SendDspMessage(std::string_view text) const {
  const std::vector<std::int16_t> message = DspMessage(text);
  if (!message.empty() && platform_.dspMsg) platform_.dspMsg(message.data());
}

void DspChannel::PressShort(Button& button) {
  if (!link_.Ready(ModemMode::TestInterface)) return;
  const auto word = std::find_if(kShortWords.begin(), kShortWords.end(),
                                 [&](const ShortWord& w) { return w.caption == button.caption.Get(); });
  if (word == kShortWords.end()) return;
  link_.WriteText(word->sent);
  button.caption = std::string(word->next);
}

void DspChannel::SendRaw(std::size_t index) {
  if (!link_.Ready(ModemMode::TestInterface)) return;
  link_.WriteText(std::string(kRawWords[index]) + panel_.txtRaw.Text() + std::string(kCrLf));
  if (window_.Active()) panel_.txtRaw.SetFocus();
  panel_.txtRaw.SelectAll();  // typing replaces the line
}

}  // namespace corvex
