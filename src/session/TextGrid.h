#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "session/SessionState.h"

namespace corvex {

/// The modem's character display: plain text and a few cursor sequences acting on the rows, the cursor and the
/// flags of the session. It is deliberately small: what it does not know it skips, there is no wrap and no
/// scrolling, and a line end is a character like any other.
class TextGrid {
 public:
  /// Sequences longer than this are torn: their rest is text.
  static constexpr int kMaxSequence = 7;

  explicit TextGrid(SessionState& state);

  /// `text` is what stands behind an ESC. Returns how many of its characters make a sequence and have taken
  /// effect, 0 if more text is needed.
  std::int16_t MatchEscape(std::string_view text);

  /// Tries a whole candidate; on true it has taken effect.
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
  SessionState& state_;
};

}  // namespace corvex
