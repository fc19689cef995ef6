#pragma once

#include "state/MainState.h"
#include "window/TermControls.h"

namespace corvex {

class Dialogs;

/// Handles the window's own keys: F1 shows hints for a user without a connection, and Ctrl+P opens or closes
/// the port setup. Handles no key while the program is closing, nor in the mode Terminal or in the byte
/// editor with auto send, where all keys are for the modem. The action runs after this call. Returns true if
/// the key was handled.
bool TakeWindowKey(const KeyEvent& key, const MainState& main, TermControls& window, Dialogs& dialogs);

}  // namespace corvex
