#include "session/ScreenLists.h"

#include <optional>

#include "base/ScopedFlag.h"
#include "base/Text.h"
#include "platform/EventLoop.h"

namespace corvex {

namespace {

constexpr std::int16_t kExitIcon = 53;
constexpr std::int16_t kMailIcon = 27;
constexpr std::int16_t kDefaultIcon = 10;
constexpr int kIcons = 64;
constexpr double kRepaintTime = 0.02;  // seconds

/// Returns the list entry of a menu item, or nothing if the item has no "|". The modem sends three characters
/// with a number, the label, "|" and the number of the icon.
std::optional<ListItem> MenuEntry(const ScreenRecord::Item& item) {
  const auto parts = Split(item.text, '|');
  if (parts.size() < 2) return std::nullopt;
  ListItem entry;
  entry.text = parts[0].size() > 3 ? parts[0].substr(3) : std::string_view{};
  const std::string_view number = std::string_view(item.text).substr(0, 3);
  if (IsNumeric(number)) entry.text = NumberText(WholePrefix(number)) + ". " + entry.text;
  const std::int32_t icon = WholePrefix(parts[1]);
  entry.icon = icon <= 0 || icon >= kIcons ? kDefaultIcon : static_cast<std::int16_t>(icon);
  entry.key = NumberText(item.id) + "Men";
  return entry;
}

}  // namespace

void FillMenuList(ListView& list, const ScreenRecord& record, const std::string& mailText) {
  list.Clear();
  list.Add({.key = "ESC", .text = "Exit Menu", .icon = kExitIcon});
  for (std::size_t i = 0; i < static_cast<std::size_t>(record.count); ++i) {
    auto entry = MenuEntry(record.items[i]);
    if (!entry) {
      list.Clear();
      return;
    }
    list.Add(std::move(*entry));
    if (record.items[i].id == record.current) list.selected = static_cast<int>(list.Items().size());
  }
  // Only menus of the main level have titles without a number, and only they get the mail entry. A packet
  // without a list does not count as a main menu.
  const bool noList = record.title.empty() && record.count == 0;
  if (!record.numericTitle && !noList) list.Add({.key = "MAIL", .text = mailText, .icon = kMailIcon});
}

void FillChoiceList(ListBox& list, const ScreenRecord& record) {
  list.Clear();
  for (std::size_t i = 0; i < static_cast<std::size_t>(record.count); ++i) {
    list.AddItem(record.items[i].text);
    if (record.items[i].id == record.current) list.listIndex = static_cast<int>(i);
  }
}

/// Moves the focus from a list that is being hidden to the modem's screen. Otherwise the window system would
/// choose the next control.
void ScreenLists::FocusScreenFrom(const Control& list) {
  if (window_.Active() && list.HasFocus()) window_.CorvexFocus1.SetFocus();
}

void ScreenLists::ShowMenu() {
  menuWanted_ = true;
  ++menus_;
  const int modals = window_.loop().ModalsOpen();
  if (showing_) {
    if (modals == modalsBelow_) return;
    // A message box holds up the first call, so the menu is shown here and without pauses.
    menuWanted_ = false;
    window_.frmMenu.BringToFront();
    RevealMenu();
    return;
  }
  const ScopedFlag showing(showing_);
  modalsBelow_ = modals;
  try {
    ShowInSteps();
  } catch (const WaitAbandoned& wait) {
    if (!wait.overdue || !menuWanted_) throw;
    RevealMenu();  // a pause ran over midnight, but the modem still shows this menu
  }
}

/// A menu that arrives during a pause replaces the one before. Each round shows one menu, however fast menus
/// arrive.
void ScreenLists::ShowInSteps() {
  const auto stillWanted = [&] {
    Pause(window_.loop(), kRepaintTime);
    return menuWanted_ && main_.mode == ModemMode::Terminal;
  };
  do {
    window_.frmMenu.visible = false;
    window_.ListMenu.visible = false;
    FocusScreenFrom(window_.ListMenu);
    if (!stillWanted()) return;
    window_.frmMenu.BringToFront();
    FillMenu();
    if (!stillWanted()) return;
    RevealMenu();
    if (!stillWanted()) return;
  } while (filledMenu_ != menus_);
  if (window_.Active()) window_.ListMenu.SetFocus();
}

void ScreenLists::FillMenu() {
  filledMenu_ = menus_;
  window_.frmMenu.caption = state_.menuScreen.title;
  FillMenuList(window_.ListMenu, state_.menuScreen, state_.menuMailText);
}

void ScreenLists::RevealMenu() {
  if (filledMenu_ != menus_) FillMenu();
  window_.frmMenu.visible = true;
  window_.ListMenu.visible = true;
}

void ScreenLists::HideMenu() {
  menuWanted_ = false;
  if (window_.Active()) window_.frmKeys.BringToFront();
  window_.frmMenu.visible = false;
  window_.ListMenu.visible = false;
  // A service panel that was opened during the burst keeps the focus.
  if (window_.Active() && !window_.frmChoice.visible && main_.mode == ModemMode::Terminal)
    window_.CorvexFocus1.SetFocus();
}

void ScreenLists::ShowChoice() {
  if (main_.screenHold) return;
  FillChoiceList(window_.ListChoice, state_.choiceScreen);
  window_.frmChoice.caption = state_.choiceScreen.title;
  window_.frmChoice.visible = true;
  if (window_.Active()) window_.ListChoice.SetFocus();
  window_.ListChoice.BringToFront();
  // Intentionally repeated: the change of order can take the focus away.
  if (window_.Active()) window_.ListChoice.SetFocus();
}

void ScreenLists::HideChoice() {
  window_.frmChoice.visible = false;
  FocusScreenFrom(window_.ListChoice);
}

}  // namespace corvex
