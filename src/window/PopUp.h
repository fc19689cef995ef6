#pragma once

#include <string_view>

#include "window/TermControls.h"

namespace corvex {

/// A message of two lines over the terminal area, split at "|", gone by itself after the interval of tmrMsg.
/// A new one takes the place of the old and starts the time anew.
void ShowPopUp(TermControls& window, std::string_view text);

void ClearPopUp(TermControls& window);

}  // namespace corvex
