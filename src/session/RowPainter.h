#pragma once

#include "state/MainState.h"
#include "stream/TextGrid.h"
#include "window/TermControls.h"

namespace corvex {

/// Paints the rows of the modem's screen that have changed, unless the main window holds painting back.
void PaintRows(TermControls& window, const MainState& main, SessionState& state, TextGrid& grid);

}  // namespace corvex
