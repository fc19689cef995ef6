#include "session/RowPainter.h"

namespace corvex {

void PaintRows(TermControls& window, const MainState& main, SessionState& state, TextGrid& grid) {
  if (main.rowsFrozen || main.screenHold) return;
  for (int i = 0; i < SessionState::kShownRows; ++i) {
    const int row = SessionState::kFirstShownRow + i;
    if (!state.rowClean[static_cast<std::size_t>(row - 1)]) {
      window.corvexLbl[static_cast<std::size_t>(i)].caption = grid.RowForDisplay(row);
    }
  }
}

}  // namespace corvex
