#pragma once

#include <string>

#include "state/MainState.h"
#include "state/ScreenRecord.h"
#include "state/SessionState.h"
#include "window/TermControls.h"

namespace corvex {

/// Builds the entries of a menu: "Exit Menu", the items, and in a main menu the mail entry. If an item of the
/// record is malformed, the list stays empty. An empty record gives "Exit Menu" alone.
void FillMenuList(ListView& list, const ScreenRecord& record, const std::string& mailText);

void FillChoiceList(ListBox& list, const ScreenRecord& record);

/// Menus and choice lists over the terminal area.
class ScreenLists {
 public:
  ScreenLists(TermControls& window, const MainState& main, SessionState& state)
      : window_(window), main_(main), state_(state) {}

  /// Shows the session's menu. Hides the list, fills it and shows it again, with short pauses between the
  /// steps. A call during one of these pauses returns immediately, and the first call shows the new menu.
  void ShowMenu();
  void HideMenu();

  /// Does nothing during a walk of the modem's cursor (see Keys).
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
  bool menuWanted_ = false;  ///< False stops the ShowMenu on the stack: the menu has been shown or hidden.
  bool showing_ = false;     ///< ShowMenu is on the stack.
  int modalsBelow_ = 0;      ///< The number of open message boxes and modal windows when ShowMenu began.
  unsigned menus_ = 0;       ///< Counts the calls of ShowMenu.
  unsigned filledMenu_ = 0;  ///< The value of menus_ when the list was last filled.
};

}  // namespace corvex
