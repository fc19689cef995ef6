#pragma once

#include <string>

#include "state/ModemMode.h"

namespace corvex {

/// What the main window knows of itself and others read.
struct MainState {
  ModemMode mode = ModemMode::AwaitIntro;
  bool tagSession = false;  ///< The modem's menus have been entered since the program was last offline.
  bool rxSeen = false;      ///< The modem has given a sign of life since the watchdog last looked.
  bool rowsFrozen = false;  ///< Rows are not repainted: a click walks the modem's cursor.
  bool screenHold = false;  ///< Neither rows nor choice lists are shown: the tool walks the modem's cursor.
  bool leaving = false;     ///< The session is being left: what the modem still says is not shown.
  bool logTaken = false;    ///< A periodic log is being taken.
  int ownBoxes = 0;         ///< Open message boxes that the print jobs of logs have caused.
  std::string applicationTitle;  ///< Names the terminal once it has been detected.
  std::string statusNumber;      ///< From the modem's status table, as the last test log has found it.
  unsigned passage = 0;          ///< Counts the passages between modes that have begun; see Overtaken.
};

/// Whether a dialogue with the modem is going on that a byte of the user's would disturb.
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

/// Whether another passage between modes has begun since this was made. A wait that it overtakes is given up
/// (see EventLoop::Wait); to be asked after a question to the user, which is not.
class Overtaken {
 public:
  explicit Overtaken(const MainState& main) : main_(main), passage_(main.passage) {}
  bool operator()() const { return main_.passage != passage_; }

 private:
  const MainState& main_;
  unsigned passage_;
};

/// The main window's caption: the program's title and, if `mubInfo` is not empty, that text behind a blank.
inline std::string WindowCaption(const MainState& main, const std::string& mubInfo) {
  return mubInfo.empty() ? main.applicationTitle : main.applicationTitle + ' ' + mubInfo;
}

}  // namespace corvex
