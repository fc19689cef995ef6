#include "session/RowPainter.h"

#include <algorithm>
#include <string>

namespace corvex {

namespace {

/// Returns the row with each character that cannot be shown, such as a line end, replaced by a blank.
std::string Printable(std::string_view row) {
  std::string text(row);
  std::replace_if(
      text.begin(), text.end(),
      [](char c) {
        const auto code = static_cast<unsigned char>(c);
        return code < ' ' || (code >= 0x7F && code < 0xA0);
      },
      ' ');
  return text;
}

}  // namespace

void PaintRows(TermControls& window, const MainState& main, SessionState& state, TextGrid& grid) {
  if (main.rowsFrozen || main.screenHold) return;
  for (int i = 0; i < SessionState::kShownRows; ++i) {
    const int row = SessionState::kFirstShownRow + i;
    if (!state.rowClean[static_cast<std::size_t>(row - 1)]) {
      window.corvexLbl[static_cast<std::size_t>(i)].caption = Printable(grid.RowForDisplay(row));
    }
  }
}

}  // namespace corvex
