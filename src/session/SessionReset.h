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

/// Puts away what belongs to the session that is left: running timers, the trace window, the modem's screen.
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

  /// Stops every timer of the window. Also ends what only a timer would end: the popup, and the hold on the
  /// rows while the modem's cursor is walked.
  void StopTimers();
  /// Closes the master trace window if it is open, and tells the modem. Waits.
  void CloseTrace();
  /// Clears the screen and the indicators, so that nobody takes an old value for a current one.
  void ClearSession();
  /// Clears the rows and the soft keys.
  void ClearScreen();
  /// Makes the screen model empty and lets the rows be painted again.
  void ResetScreen();
  /// Discards the changes that have not been shown, except those of print jobs and of the chosen modem.
  void DropChanges();

 private:
  Parts p_;
};

}  // namespace corvex
