#include "stream/TextGrid.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "base/Text.h"
#include "stream/ItemSearch.h"

namespace corvex {

namespace {

constexpr std::uint8_t kLastShownRow = SessionState::kFirstShownRow + SessionState::kShownRows - 1;

/// The cursor does not move if a text would move it to this column or beyond.
constexpr std::size_t kCursorLimit = 60;

std::optional<std::uint8_t> ToByte(std::string_view text) {
  auto number = FewDigits(text);
  if (!number) number = ToInt32(text);
  if (!number || *number < 0 || *number > std::numeric_limits<std::uint8_t>::max()) return std::nullopt;
  return static_cast<std::uint8_t>(*number);
}

/// Returns whether a known sequence can end in `c`. Avoids decoding attempts at digits, which are most of
/// the characters in a sequence.
bool IsFinal(char c) {
  return c >= 'A' && c != '[';
}

}  // namespace

TextGrid::TextGrid(SessionState& state) : state_(state) {
  BlankRows();
}

std::int16_t TextGrid::MatchEscape(std::string_view text) {
  // The shortest known prefix wins.
  const std::size_t limit = std::min<std::size_t>(text.size(), kMaxSequence);
  for (std::size_t n = 2; n <= limit; ++n) {
    if (IsFinal(text[n - 1]) && DecodeEscape(text.substr(0, n))) return static_cast<std::int16_t>(n);
  }
  return limit == kMaxSequence ? kMaxSequence : 0;
}

bool TextGrid::DecodeEscape(std::string_view text) {
  if (text.empty()) return false;
  switch (text.back()) {
    case 'H':
      if (text.size() >= 5) {
        MoveCursorTo(text.substr(1, text.size() - 2));
        return true;
      }
      if (text != "[H") return false;
      state_.cursorRow = 1;
      state_.cursorCol = 1;
      return true;
    case 'D':
      MoveCursorLeft(text.substr(1, 2));
      return true;
    case 'J':
      if (text != "[2J") return false;
      ResetScreenModel();
      return true;
    case 'A':
      if (text != "[1A") return false;
      if (state_.cursorRow > 1) --state_.cursorRow;
      return true;
    case 'B':
      if (text != "[1B") return false;
      if (state_.cursorRow < SessionState::kRows) ++state_.cursorRow;
      return true;
    case 'l':
      return text == "[?25l";
    case 'm':
      return text == "[0m" || text == "[1m" || text == "[7m";
    default:
      return false;
  }
}

void TextGrid::MoveCursorTo(std::string_view position) {
  Fields fields(position, ';');
  const auto row = ToByte(fields.Next());
  const auto column = ToByte(fields.Next());
  if (!row || !column) return;
  state_.cursorRow = *row;
  state_.cursorCol = *column;
}

void TextGrid::MoveCursorLeft(std::string_view distance) {
  const int count = PrefixInt16(distance).value_or(0);
  if (count < 0) return;
  state_.cursorCol = static_cast<std::uint8_t>(std::max(1, state_.cursorCol - count));
}

void TextGrid::WriteScreenText(std::string_view text) {
  if (state_.cursorRow < SessionState::kFirstShownRow || state_.cursorRow > kLastShownRow) return;
  const std::size_t column = state_.cursorCol;
  if (column + text.size() > kLastPosition) {
    ResetScreenModel();
    return;
  }
  if (column >= 2 && column <= SessionState::kColumns) {
    const std::size_t place = state_.cursorRow - 1u;
    std::string& row = state_.screenRows[place];
    if (column - 1 + text.size() <= row.size()) {
      text.copy(row.data() + column - 1, text.size());  // within the row: the usual case
    } else {
      row.replace(std::min(column - 1, row.size()), text.size(), text);
    }
    state_.rowClean[place] = false;
    state_.rowsChanged = true;
  }
  if (column + text.size() < kCursorLimit) state_.cursorCol = static_cast<std::uint8_t>(column + text.size());
}

void TextGrid::BlankRows() {
  for (std::string& row : state_.screenRows) row.assign(SessionState::kColumns, ' ');
  state_.rowClean.fill(false);
}

void TextGrid::ResetScreenModel() {
  BlankRows();
  for (std::string& text : state_.softKeyText) text.clear();
  state_.softKeysChanged = true;
  state_.rowsChanged = true;
  state_.sigChanged = true;
  state_.battChanged = true;
  state_.cursorCol = 1;
  state_.cursorRow = 1;
  state_.sigText.assign(5, ' ');
  state_.screenKind = ScreenKind::NoScreen;
}

std::string_view TextGrid::RowForDisplay(int row) {
  const auto place = static_cast<std::size_t>(row - 1);
  state_.rowClean[place] = true;
  const std::string_view text = state_.screenRows[place];
  return text.substr(std::min<std::size_t>(1, text.size()));
}

}  // namespace corvex
