#pragma once

#include "state/MainState.h"
#include "window/TermControls.h"

namespace corvex {

class Dialogs;

/// The keys that are the window's own unless the keyboard is the modem's, which it is in the mode Terminal:
/// F1 shows what a user without a connection may try, and the menu entries have their shortcuts. What a key
/// starts runs after the call. True if the key was one of them.
bool TakeWindowKey(const KeyEvent& key, const MainState& main, TermControls& window, Dialogs& dialogs);

}  // namespace corvex
