#pragma once

#include "state/MainState.h"
#include "window/TermControls.h"

namespace corvex {

class Dialogs;

/// Handles the window's own keys: F1 shows hints for a user without a connection, and Ctrl+P opens the port
/// setup. In the mode Terminal all keys belong to the modem. The action runs after this call. Returns true if
/// the key was handled.
bool TakeWindowKey(const KeyEvent& key, const MainState& main, TermControls& window, Dialogs& dialogs);

}  // namespace corvex
