#pragma once

#include <string>

#include "session/ModemMode.h"

namespace corvex {

/// What the main window knows of itself and others read.
struct MainState {
  ModemMode mode = ModemMode::AwaitIntro;
  bool tagSession = false;  ///< The modem's menus have been entered since the program was last offline.
  bool rxSeen = false;      ///< The modem has given a sign of life since the watchdog last looked.
  bool rowsFrozen = false;  ///< Rows are not repainted: a click walks the modem's cursor.
  bool screenHold = false;  ///< Neither rows nor choice lists are shown: the tool walks the modem's cursor.
  std::string applicationTitle;  ///< Names the terminal once it has been detected.
};

/// The main window's caption: the program's title and, if `mubInfo` is not empty, that text behind a blank.
inline std::string WindowCaption(const MainState& main, const std::string& mubInfo) {
  return mubInfo.empty() ? main.applicationTitle : main.applicationTitle + ' ' + mubInfo;
}

}  // namespace corvex
