#include "desktop/views/KeyCodes.h"

#include <QKeyEvent>

namespace corvex {

int VirtualKeyCode(const QKeyEvent& event) {
  const int key = event.key();
  if (key >= Qt::Key_0 && key <= Qt::Key_9 && event.modifiers().testFlag(Qt::KeypadModifier)) {
    return 96 + key - Qt::Key_0;
  }
  if ((key >= Qt::Key_0 && key <= Qt::Key_9) || (key >= Qt::Key_A && key <= Qt::Key_Z)) return key;
  if (key >= Qt::Key_Agrave && key <= Qt::Key_ydiaeresis) return key;  // the other letters of Latin-1
  if (key >= Qt::Key_F1 && key <= Qt::Key_F24) return 112 + key - Qt::Key_F1;
  switch (key) {
    case Qt::Key_Backspace:
      return 8;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      return 9;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return 13;
    case Qt::Key_Shift:
      return 16;
    case Qt::Key_Control:
      return 17;
    case Qt::Key_Alt:
      return 18;
    case Qt::Key_Pause:
      return 19;
    case Qt::Key_CapsLock:
      return 20;
    case Qt::Key_Escape:
      return 27;
    case Qt::Key_Space:
      return 32;
    case Qt::Key_PageUp:
      return 33;
    case Qt::Key_PageDown:
      return 34;
    case Qt::Key_End:
      return 35;
    case Qt::Key_Home:
      return 36;
    case Qt::Key_Left:
      return 37;
    case Qt::Key_Up:
      return 38;
    case Qt::Key_Right:
      return 39;
    case Qt::Key_Down:
      return 40;
    case Qt::Key_Print:
    case Qt::Key_SysReq:  // Alt+Print, on keyboards that report it separately
      return 42;
    case Qt::Key_Insert:
      return 45;
    case Qt::Key_Delete:
      return 46;
    default:
      return 0;
  }
}

char TypedCharacter(const QKeyEvent& event) {
  // Alt alone types no character. Ctrl with Alt may be AltGr, which does type characters.
  if ((event.modifiers() & (Qt::AltModifier | Qt::ControlModifier)) == Qt::AltModifier) return 0;
  const QString text = event.text();
  if (text.size() != 1 || text.front().unicode() > 0xFF) return 0;
  return text.front().toLatin1();
}

}  // namespace corvex
