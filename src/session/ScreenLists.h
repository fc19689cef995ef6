#pragma once

#include <string>

#include "state/MainState.h"
#include "state/ScreenRecord.h"
#include "state/SessionState.h"
#include "window/TermControls.h"

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

  /// Shows the menu of the session, in steps with short pauses so that the list is rebuilt unseen. Called
  /// again in one of its own pauses it returns at once, and the call below shows the new menu.
  void ShowMenu();
  void HideMenu();

  /// Does nothing while the modem's cursor is walked.
  void ShowChoice();
  void HideChoice();

 private:
  void ShowInSteps();
  void FillMenu();
  void RevealMenu();
  void FocusScreenFrom(const Control& list);

  TermControls& window_;
  const MainState& main_;
  SessionState& state_;
  bool menuWanted_ = false;  ///< ShowMenu has been called, and nothing has taken the menu away since.
  bool showing_ = false;     ///< A ShowMenu stands on the stack,
  int modalsBelow_ = 0;      ///< with so many modal windows below it.
  unsigned menus_ = 0;       ///< Counts the menus that were to be shown,
  unsigned filledMenu_ = 0;  ///< and which of them the list holds.
};

}  // namespace corvex
