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

/// Clears what belongs to a session that ends: running timers, the trace window, the modem's screen.
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

  /// Stops every timer of the window. Also ends what only a timer would end: the popup, and the freezing of
  /// the rows after a walk of the modem's cursor (see Keys).
  void StopTimers();
  /// Closes the master trace window if it is open, and switches the trace off in the modem. Waits.
  void CloseTrace();
  /// Clears the screen and the indicators, so that no outdated value is shown.
  void ClearSession();
  /// Clears the rows and the soft keys.
  void ClearScreen();
  /// Clears the screen model, and allows the rows to be painted again if they were frozen.
  void ResetScreen();
  /// Discards the pending changes, except those of print jobs and the name of the chosen modem.
  void DropChanges();

 private:
  Parts p_;
};

}  // namespace corvex
