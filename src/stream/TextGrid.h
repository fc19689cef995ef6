#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "state/SessionState.h"

namespace corvex {

/// The modem's character display: plain text and a few cursor sequences acting on the rows, the cursor and
/// the flags of the session. It is deliberately small: what it does not know it skips, there is no wrap and
/// no scrolling, and a line end is a character like any other.
///
/// Text past the last column lengthens its row, as far as positions reach: a text that would run past
/// kLastPosition resets the whole model instead, so that a row never holds more than that.
///
/// Sequences, by the text behind ESC; anything else costs at most seven characters:
///
///   [r;cH                  cursor to row r, column c, each 0 to 255
///   [H                     cursor to 1;1
///   [nD                    cursor left by n, as far as column 1; so do all others that end in "D", by the
///                          number in their second and third characters
///   [1A  [1B               cursor up or down one row, within 1 to 10
///   [2J                    ResetScreenModel
///   [?25l  [0m  [1m  [7m   no effect
class TextGrid {
 public:
  /// Sequences longer than this are torn: their rest is text.
  static constexpr int kMaxSequence = 7;

  /// Blanks the rows of the session.
  explicit TextGrid(SessionState& state);

  /// `text` is what stands behind an ESC. Returns how many of its characters make a sequence and have taken
  /// effect, 0 if more text is needed.
  std::int16_t MatchEscape(std::string_view text);

  /// Tries a whole candidate; on true it has taken effect, or none if its numbers are no good.
  bool DecodeEscape(std::string_view text);

  /// Puts plain text at the cursor.
  void WriteScreenText(std::string_view text);

  /// All rows blank and due to be painted.
  void BlankRows();

  /// The state before any screen: blank rows, no soft keys, cursor at 1;1, no signal, no screen kind.
  void ResetScreenModel();

  /// The visible part of a row, 1 to 10, which counts as painted from then on.
  std::string_view RowForDisplay(int row);

 private:
  void MoveCursorTo(std::string_view position);
  void MoveCursorLeft(std::string_view distance);

  SessionState& state_;
};

}  // namespace corvex
