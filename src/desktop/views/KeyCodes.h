#pragma once

class QKeyEvent;

namespace corvex {

/// The virtual key code of a key: letters and digits their upper-case character, F1 112, Tab 9 and so on; 0
/// for a key that has none.
int VirtualKeyCode(const QKeyEvent& event);

/// The typed character of a key event as one byte; 0 if it types none or one outside Latin-1, or if it is a
/// shortcut with Alt.
char TypedCharacter(const QKeyEvent& event);

}  // namespace corvex
