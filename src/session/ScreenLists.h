#pragma once

#include <string>

#include "session/MainState.h"
#include "session/ScreenRecord.h"
#include "session/SessionState.h"
#include "session/TermControls.h"

namespace corvex {

/// Builds the entries of a menu: "Exit Menu", the items, and on a main menu the mail entry. A record with an
/// item that cannot be shown leaves the list empty; an empty record gives "Exit Menu" alone.
void FillMenuList(ListView& list, const ScreenRecord& record, const std::string& mailText);

void FillChoiceList(ListBox& list, const ScreenRecord& record);

/// Menus and choice lists over the terminal area.
class ScreenLists {
 public:
  ScreenLists(TermControls& window, const MainState& main, SessionState& state)
      : window_(window), main_(main), state_(state) {}

  /// Shows the menu of the session, in steps with short pauses so that the list is rebuilt unseen, and takes
  /// the soft keys' texts away: a menu has none. Gives up when it is overtaken in a pause. The caller shows
  /// the soft keys.
  void ShowMenu();
  void HideMenu();

  /// Does nothing while the modem's cursor is walked.
  void ShowChoice();
  void HideChoice();

 private:
  void FocusScreenFrom(const Control& list);

  TermControls& window_;
  const MainState& main_;
  SessionState& state_;
  unsigned menuTurn_ = 0;  // counts what has been done with the menu
};

}  // namespace corvex
