#include "panels/modCmdInt.h"

#include <array>
#include <string_view>

#include "base/Text.h"

namespace corvex {

namespace {

using namespace std::string_view_literals;

constexpr std::array kChannelWords = {"tdm "sv, "scpc "sv, "hsd "sv, "bmscpc "sv, "hsd128 "sv};
constexpr std::array kModulationFields = {"2 "sv, "3 "sv, "1 "sv, "0 "sv};
constexpr std::array kRxTxFields = {"1 "sv, "0 "sv};
constexpr double kRfbLimit = 64;
constexpr double kLeastGain = 12;
constexpr double kMostGain = 17;

/// Returns the word of the chosen option; empty if none is chosen.
template <std::size_t kCount>
std::string_view Chosen(const std::array<OptionButton, kCount>& options,
                        const std::array<std::string_view, kCount>& words) {
  for (std::size_t i = 0; i < kCount; ++i) {
    if (options[i].value) return words[i];
  }
  return {};
}

double Rounded(const TextBox& box) {
  return RoundHalfEven(NumericPrefix(box.Text()));
}

}  // namespace

void TestInterface::Connect() {
  panel_.optmain[0].value = true;
  panel_.optModulation[1].value = true;
  panel_.optRxTx[0].value = true;
  panel_.cmdDspExec.click = [this] { Execute(); };
}

std::string TestInterface::BuildTestCommand() {
  std::string command(Chosen(panel_.optmain, kChannelWords));
  command += panel_.txtChanRx.Text() + ' ' + panel_.txtChanTx.Text() + ' ';
  if (const double rfb = Rounded(panel_.txtRfb); rfb < 0 || rfb >= kRfbLimit) {
    panel_.txtRfb.SetText("0");
  } else {
    command += panel_.txtRfb.Text() + ' ';
    command += Chosen(panel_.optModulation, kModulationFields);
    command += Chosen(panel_.optRxTx, kRxTxFields);
    command += panel_.chkInterleaving.value ? "1 " : "0 ";
    // Intentional: the rounded value is checked, but the typed text is sent. 17.4 passes.
    if (const double gain = Rounded(panel_.txtAntGain); gain >= kLeastGain && gain <= kMostGain)
      return command + panel_.txtAntGain.Text() + std::string(kCrLf);
    panel_.txtAntGain.SetText("12.0");
    platform_.dialogs.MessageBox("Antenna gain between 12.0 and 17.0");
  }
  platform_.sound.Bell();
  for (OptionButton& option : panel_.optRxTx) option.enabled = true;
  return {};
}

void TestInterface::Execute() {
  if (!link_.Ready(ModemMode::TestInterface)) return;
  running_ = !running_;
  panel_.cmdDspExec.caption = running_ ? "Stop" : "Execute";
  // Intentional: the button shows "Stop" even if the panel's values are invalid and no command is sent.
  link_.WriteText(running_ ? BuildTestCommand() : "stop" + std::string(kCrLf));
}

}  // namespace corvex
