#pragma once

#include <string_view>

#include "window/TermControls.h"

namespace corvex {

/// Shows a message of one or two lines, separated by "|", over the terminal area. It disappears after the
/// interval of tmrMsg. A new message replaces the old one and restarts the timer.
void ShowPopUp(TermControls& window, std::string_view text);

void ClearPopUp(TermControls& window);

}  // namespace corvex
