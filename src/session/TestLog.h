#pragma once

#include <functional>

#include "link/modComSock.h"
#include "print/frmSDI.h"
#include "session/Keys.h"
#include "settings/INIFuncs.h"
#include "state/MainState.h"
#include "state/SessionState.h"
#include "window/TermControls.h"

namespace corvex {

/// Snapshots of the terminal's condition, taken at intervals while the user is away: a macro walks through
/// the modem's menus by the keys that a user would press, and what it reads on the screens, together with
/// what it has the modem print, is saved in a file.
///
/// The keys are blind: each is meant for the screen that the ones before have led to. So the macro ends where
/// its session does, and when a message box or a modal window opens, without another byte, and types nothing
/// into a question for a PIN. The user's own keys mix with its keys.
class TestLog {
 public:
  struct Parts {
    SettingsStore& settings;
    TermControls& window;
    MainState& main;
    const SessionState& state;
    TerminalLink& link;
    Keys& keys;
    frmSDI& page;
  };

  explicit TestLog(const Parts& parts) : p_(parts) {}

  /// The tick of logCheck: takes a log if one is due.
  void Check();

  /// The program is about to end: saves what a log that is being taken has gathered so far.
  void Finish() { Save(); }

  /// A log has been taken.
  std::function<void()> ended;

  /// The macro: writes the log to the print view. Takes about half a minute.
  void GenerateTestLog();

 private:
  class Macro;

  static bool BoxOpen(const Parts& parts);
  bool MayBegin() const;
  void TakeLog();
  void Save();

  Parts p_;
  bool taking_ = false;  ///< A log is being taken and not yet saved.
};

}  // namespace corvex
