#pragma once

#include <string>

#include "state/ModemMode.h"

namespace corvex {

/// State of the main window that other parts of the program read.
struct MainState {
  ModemMode mode = ModemMode::AwaitIntro;
  bool tagSession = false;  ///< The modem's menus have been entered since the program was last offline.
  bool rxSeen = false;      ///< The modem has shown activity since the watchdog's last check.
  bool rowsFrozen = false;  ///< Rows are not repainted: a click on a row is moving the modem's cursor.
  bool screenHold = false;  ///< Rows and choice lists are not shown: the program moves the cursor.
  bool leaving = false;     ///< The session is being closed: further output of the modem is not shown.
  bool logTaken = false;    ///< A periodic log is in progress.
  int ownBoxes = 0;         ///< Number of open message boxes that were caused by print jobs of periodic logs.
  std::string applicationTitle;  ///< Contains the terminal's name once it has been detected.
  std::string statusNumber;      ///< Read from the modem's status table by the last test log.
  unsigned passage = 0;          ///< Number of passages between modes that have begun.
};

/// Returns whether the program is exchanging data with the modem in a way that user input would disturb.
inline bool LinkTaken(const MainState& main) {
  if (main.leaving) return true;
  switch (main.mode) {
    case ModemMode::AwaitIntro:
    case ModemMode::DeviceManager:
    case ModemMode::Upgrade:
    case ModemMode::Closing:
      return true;
    default:
      return false;
  }
}

/// Returns the main window's caption: the program's title, followed by a space and `mubInfo` if `mubInfo` is
/// not empty.
inline std::string WindowCaption(const MainState& main, const std::string& mubInfo) {
  return mubInfo.empty() ? main.applicationTitle : main.applicationTitle + ' ' + mubInfo;
}

}  // namespace corvex
