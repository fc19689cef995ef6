#include "stream/SoftKeys.h"

#include <algorithm>
#include <optional>
#include <string>

#include "base/Text.h"
#include "stream/modTML.h"

namespace corvex {

namespace {

constexpr char kNotForUs = '\xC4';
constexpr char kBlankOnWire = '\x7F';
constexpr std::int16_t kMailKey = 1;
constexpr std::int16_t kNotShown = 11;

void StoreText(std::string_view field, std::string& text) {
  text = field;
  std::replace(text.begin(), text.end(), kBlankOnWire, ' ');
}

/// Reads a code. Only leading blanks are removed; a number ends before the first trailing blank.
std::optional<std::int16_t> Code(std::string_view field) {
  while (!field.empty() && field.front() == kBlankOnWire) field.remove_prefix(1);
  return PrefixInt16(field);
}

/// Stores the eight fields in order. Stops and returns false if a field is missing or a code is not a 16-bit
/// number. Keys without a text have an empty code, which counts as 0.
bool StoreFields(std::string_view line, SessionState& state) {
  Fields fields(line, '|');
  for (std::size_t k = 0; k < state.softKeyText.size(); ++k) {
    if (!fields.More()) return false;
    StoreText(fields.Next(), state.softKeyText[k]);
    if (!fields.More()) return false;
    const auto code = Code(fields.Next());
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
