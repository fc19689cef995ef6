#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "state/SessionState.h"

namespace corvex {

/// The modem's character display. Plain text and a few cursor sequences change the rows, the cursor and the
/// flags of the session. The display is deliberately simple: unknown sequences are skipped, there is no line
/// wrap and no scrolling, and a line end is an ordinary character.
///
/// Text after the last column makes its row longer. A text that would extend beyond kLastPosition resets the
/// whole display instead, so that the length of a row is bounded.
///
/// Known sequences are listed below without the ESC. Of an unknown sequence, at most seven characters after
/// the ESC are skipped.
///
///   [r;cH                  cursor to row r, column c, each 0 to 255
///   [H                     cursor to 1;1
///   [nD                    cursor left by n, but not beyond column 1. The same for any sequence that ends in
///                          "D"; n is the number in its second and third characters
///   [1A  [1B               cursor up or down by one row, within rows 1 to 10
///   [2J                    ResetScreenModel
///   [?25l  [0m  [1m  [7m   no effect
class TextGrid {
 public:
  /// Maximum length without the ESC. The rest of a longer sequence is treated as text.
  static constexpr int kMaxSequence = 7;

  /// Fills the rows of the session with blanks.
  explicit TextGrid(SessionState& state);

  /// Decodes the sequence at the start of `text`, which follows an ESC, and applies it. Returns the number of
  /// characters used, or 0 if more text is needed. An unknown sequence uses kMaxSequence characters.
  std::int16_t MatchEscape(std::string_view text);

  /// Decodes `text` as exactly one sequence. Returns true if it is known. It has then been applied, unless
  /// its numbers are invalid.
  bool DecodeEscape(std::string_view text);

  /// Writes plain text at the cursor.
  void WriteScreenText(std::string_view text);

  /// Fills all rows with blanks and marks them for painting.
  void BlankRows();

  /// Restores the state before the first screen: blank rows, no soft keys, cursor at 1;1, no signal, no
  /// screen kind.
  void ResetScreenModel();

  /// Returns the visible part of a row, 1 to 10, and marks the row as painted.
  std::string_view RowForDisplay(int row);

 private:
  void MoveCursorTo(std::string_view position);
  void MoveCursorLeft(std::string_view distance);

  SessionState& state_;
};

}  // namespace corvex
