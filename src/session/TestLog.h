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

/// Takes a log of the terminal's condition at intervals. A macro goes through the modem's menus with the keys
/// that a user would press. The text of the screens and the modem's own printouts are saved in a file.
///
/// The macro does not check which screen is shown: each key is meant for the screen to which the previous
/// keys lead. It therefore stops, and sends nothing more, when its session ends or when a message box or a
/// modal window opens. It sends no digit or soft key while the modem asks for a PIN. Keys that the user
/// presses during a log are sent too.
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

  /// The tick of logCheck. Takes a log if one is due.
  void Check();

  /// Saves an incomplete log. Called before the program ends.
  void Finish() { Save(); }

  /// Called when a log has been taken.
  std::function<void()> ended;

  /// Runs the macro, which writes the log to the print view. Takes about half a minute.
  void GenerateTestLog();

 private:
  class Macro;

  static bool BoxOpen(const Parts& parts);
  bool MayBegin() const;
  void TakeLog();
  void Save();

  Parts p_;
  bool taking_ = false;  ///< A log has been started and is not saved yet.
};

}  // namespace corvex
