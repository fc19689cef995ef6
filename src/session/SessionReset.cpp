#include "session/SessionReset.h"

#include "session/RowPainter.h"
#include "session/SoftKeyPanel.h"
#include "window/PopUp.h"

namespace corvex {

void SessionReset::StopTimers() {
  for (Control* control : p_.window.controls()) {
    if (dynamic_cast<Timer*>(control) != nullptr) control->enabled = false;
  }
  ClearPopUp(p_.window);
  if (!p_.main.rowsFrozen) return;
  p_.main.rowsFrozen = false;
  PaintRows(p_.window, p_.main, p_.state, p_.grid);
}

void SessionReset::CloseTrace() {
  const EventLoop::Wait wait(p_.window.loop());
  p_.trace.CloseMaster();
  wait.Check();
}

void SessionReset::ClearSession() {
  DropChanges();
  ClearScreen();
  p_.layout.HideLists();
  p_.silence.Stop();
  p_.status.Clear();
}

void SessionReset::ClearScreen() {
  ResetScreen();
  PaintRows(p_.window, p_.main, p_.state, p_.grid);
  ShowSoftKeys(p_.window, p_.main, p_.state, p_.settings);
}

void SessionReset::ResetScreen() {
  p_.grid.ResetScreenModel();
  p_.main.rowsFrozen = false;  // the timer that would do so may have been stopped
  p_.main.screenHold = false;
}

void SessionReset::DropChanges() {
  ChangeFlags& flags = p_.state;
  ChangeFlags kept;
  kept.mubChanged = flags.mubChanged;
  kept.printStart = flags.printStart;
  kept.printData = flags.printData;
  kept.printEnd = flags.printEnd;
  flags = kept;
}

}  // namespace corvex
