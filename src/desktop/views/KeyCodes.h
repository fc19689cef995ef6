#pragma once

class QKeyEvent;

namespace corvex {

/// Returns the virtual key code of a key: the upper-case character for letters and digits, 112 for F1, 9 for
/// Tab and so on. Returns 0 for a key without a code.
int VirtualKeyCode(const QKeyEvent& event);

/// Returns the character that a key event types, as one byte. Returns 0 if the event types no character or
/// one outside Latin-1, or if it is a shortcut with Alt.
char TypedCharacter(const QKeyEvent& event);

}  // namespace corvex
