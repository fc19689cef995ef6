#pragma once

#include "session/Silence.h"
#include "session/StatusPanel.h"
#include "settings/INIFuncs.h"
#include "state/MainState.h"
#include "state/SessionState.h"
#include "stream/TextGrid.h"
#include "trace/TraceControl.h"
#include "window/TermControls.h"
#include "window/WindowLayout.h"

namespace corvex {

/// Cleans up when a session ends: stops timers, closes the trace window, and clears the modem's screen.
class SessionReset {
 public:
  struct Parts {
    SettingsStore& settings;
    TermControls& window;
    WindowLayout& layout;
    StatusPanel& status;
    Silence& silence;
    TraceControl& trace;
    MainState& main;
    SessionState& state;
    TextGrid& grid;
  };

  explicit SessionReset(const Parts& parts) : p_(parts) {}

  /// Stops every timer of the window. Also does what a stopped timer would have done: clears the popup, and
  /// paints the rows again if they are frozen.
  void StopTimers();
  /// Closes the master trace window if it is open. If the link is open, this also switches the modem's trace
  /// off. Waits.
  void CloseTrace();
  /// Clears the screen and the indicators, so that no old value looks like a current one.
  void ClearSession();
  /// Clears the rows and the soft keys.
  void ClearScreen();
  /// Clears the screen model, and allows the rows to be painted again if they were frozen.
  void ResetScreen();
  /// Clears the flags of changes that have not been shown. Keeps the flags of print jobs, since the user may
  /// need the printout, and the flag of the MUB, since the user may just have selected another MUB.
  void DropChanges();

 private:
  Parts p_;
};

}  // namespace corvex
