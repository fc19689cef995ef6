#include "session/SoftKeys.h"

#include <algorithm>
#include <string>

#include "common/Text.h"
#include "session/modTML.h"

namespace corvex {

namespace {

constexpr char kNotForUs = '\xC4';
constexpr char kBlankOnWire = '\x7F';
constexpr std::int16_t kMailKey = 1;
constexpr std::int16_t kNotShown = 11;

std::string FromWire(std::string_view field) {
  std::string text(field);
  std::replace(text.begin(), text.end(), kBlankOnWire, ' ');
  return text;
}

/// Stores the eight fields in their order; false where they end early or a code is no 16-bit number. An empty
/// code is 0, as keys without a text have it.
bool StoreFields(std::string_view line, SessionState& state) {
  Fields fields(line, '|');
  for (std::size_t k = 0; k < state.softKeyText.size(); ++k) {
    if (!fields.More()) return false;
    state.softKeyText[k] = FromWire(fields.Next());
    if (!fields.More()) return false;
    const auto code = PrefixInt16(FromWire(fields.Next()));
    if (!code) return false;
    state.softKeyCode[k] = *code;
  }
  return true;
}

}  // namespace

void ParseSoftKeys(std::string_view packet, SessionState& state) {
  if (packet.find(kNotForUs) != std::string_view::npos) return;
  state.softKeysChanged = false;
  if (!StoreFields(TagPayload(packet), state)) return;
  AssignHotKeys(state);
  state.softKeysChanged = true;
  for (std::size_t k = 0; k < state.softKeyText.size(); ++k) {
    if (state.softKeyCode[k] == kMailKey) {
      state.mailText = state.softKeyText[k];
      std::erase(state.mailText, '&');
    }
    if (state.softKeyCode[k] == kMailKey || state.softKeyCode[k] == kNotShown) state.softKeysChanged = false;
  }
}

void AssignHotKeys(SessionState& state) {
  std::string passedOver = ". ";
  for (auto text = state.softKeyText.rbegin(); text != state.softKeyText.rend(); ++text) {
    if (*text == state.mailText) return;
    const std::size_t letter = text->find_first_not_of(passedOver);
    if (letter == std::string::npos) continue;
    passedOver += (*text)[letter];
    text->insert(letter, 1, '&');
  }
}

}  // namespace corvex
