#include "session/Keys.h"

#include <array>
#include <cstdlib>
#include <string>

#include "base/ScopedFlag.h"
#include "base/Text.h"
#include "session/RowPainter.h"
#include "session/WindowKeys.h"

namespace corvex {

namespace {

constexpr std::array<char, 5> kSoftKeys{21, 9, 15, 16, 20};
constexpr std::string_view kEscape = "\x1B";
constexpr std::string_view kCursorDown = "\x1B[B";
constexpr std::string_view kCursorUp = "\x1B[A";
constexpr std::string_view kEnter = "\r";
constexpr std::string_view kRefresh = "\x12";

/// The row of a table that has the modem's cursor.
constexpr int kCursorRow = 2;

// Virtual key codes.
constexpr int kTab = 9;
constexpr int kPrint = 42;
constexpr int kF4 = 115;
constexpr int kF7 = 118;

/// Returns whether a key code is that of a letter or a digit. The code is the upper-case character.
bool IsCharacterKey(int keyCode) {
  return (keyCode >= '0' && keyCode <= '9') || (keyCode >= 'A' && keyCode <= 'Z') ||
         (keyCode >= 0xC0 && keyCode <= 0xFF);
}

/// Whether a screen of this kind covers another one, as messages and print jobs do. The modem keeps the
/// covered screen. `screenKind` has the kind of the covering screen until the modem's next answer.
bool LiesOver(ScreenKind kind) {
  return kind == ScreenKind::MsgScreen || kind == ScreenKind::PrintScreen;
}

}  // namespace

/// A walk of the modem's cursor on a screen of one kind. The object exists as long as the walk lasts.
class Keys::Walk {
 public:
  Walk(Keys& keys, ScreenKind kind)
      : keys_(keys),
        walking_(keys.walking_),
        kind_(kind),
        began_(keys.p_.state.screenKind),
        escapes_(keys.escapes_) {}

  /// Returns false if the walk must stop, because the next key could reach another screen.
  bool GoesOn() const {
    const ScreenKind kind = keys_.p_.state.screenKind;
    return keys_.p_.main.mode == ModemMode::Terminal && keys_.escapes_ == escapes_ &&
           (kind == kind_ || kind == began_ || LiesOver(kind));
  }

 private:
  Keys& keys_;
  ScopedFlag walking_;
  ScreenKind kind_;
  ScreenKind began_;
  unsigned escapes_;
};

void Keys::Connect() {
  TermControls& window = p_.window;
  // These events have no effect outside the mode Terminal and while the session is being closed.
  const auto inTerminal = [this](auto action) {
    return [this, action](auto... argument) {
      if (p_.main.mode == ModemMode::Terminal && !p_.main.leaving) action(argument...);
    };
  };
  for (std::size_t i = 0; i < TermControls::kSoftKeys; ++i) {
    window.cmdSK[i].click = inTerminal([this, i] { ClickSoftKey(i); });
    window.imgKey[i].click = inTerminal([this, i] { ClickSoftKey(i); });
  }
  for (int row = 0; row < TermControls::kSignal; ++row) {
    window.corvexLbl[static_cast<std::size_t>(row)].click = inTerminal([this, row] { ClickRow(row); });
  }
  window.cmdESC.click = [this] { ClickEscape(); };
  window.ListMenu.keyPress = inTerminal([this](char key) { PressInMenu(key); });
  window.ListMenu.doubleClick = inTerminal([this] { ChooseFromMenu(); });
  window.ListChoice.keyPress = inTerminal([this](char key) { PressInChoice(key); });
  window.ListChoice.doubleClick = inTerminal([this] { ChooseFromList(); });
  window.CorvexFocus1.keys = [this](std::string_view text) {
    if (TypingGoesOut()) TakeTyped(text);
  };
  window.keyDown = [this](KeyEvent& key) {
    key.handled = TakeWindowKey(key, p_.main, p_.window, p_.platform.dialogs);
    if (!key.handled && panelKey) key.handled = panelKey(key);
    if (!key.handled) KeyDown(key);
  };
  window.tmrRefresh.tick = [this] { Refresh(); };
}

void Keys::Send(std::string_view bytes) {
  // Opening the link can take seconds. Ignore the keys that the user presses in that time.
  if (opening_) return;
  {
    const ScopedFlag opening(opening_);
    p_.link.EnsureLinkOpen();
  }
  p_.link.WriteText(bytes);
}

void Keys::PressSoftKey(int key) {
  if (key < 1 || key > static_cast<int>(kSoftKeys.size())) return;
  Send({&kSoftKeys[static_cast<std::size_t>(key - 1)], 1});
}

void Keys::SendEscape() {
  Send(kEscape);
}

void Keys::SendCursorDown() {
  Send(kCursorDown);
}

void Keys::SendCursorUp() {
  Send(kCursorUp);
}

void Keys::SendMenuItem(int item) {
  const auto& items = p_.state.menuScreen.items;
  if (item < 1 || item > static_cast<int>(items.size())) return;
  p_.link.WriteText(NumberText(items[static_cast<std::size_t>(item - 1)].id));
}

void Keys::SendEscapeSeries() {
  constexpr int kTimes = 7;
  Pause(p_.window.loop(), 0.3);
  for (int i = 0; i < kTimes; ++i) {
    SendEscape();
    Pause(p_.window.loop(), 0.3);
  }
}

bool Keys::TypingGoesOut() const {
  return (p_.main.mode == ModemMode::Terminal && !p_.main.leaving) ||
         (p_.main.mode == ModemMode::AtMode && p_.window.atPanel.optAutoSend.value);
}

void Keys::RestoreFocus() {
  TermControls& window = p_.window;
  if (!window.Active() || !TypingGoesOut()) return;
  if (window.frmChoice.visible) {
    window.ListChoice.SetFocus();
  } else if (window.ListMenu.visible) {
    window.ListMenu.SetFocus();
  } else {
    window.CorvexFocus1.SetFocus();
  }
}

void Keys::ClickSoftKey(std::size_t index) {
  if (walking_) return;
  // A message may cover the choice list. The soft key still applies to the list.
  const ScreenKind kind = p_.state.screenKind;
  const bool inChoice = kind == ScreenKind::ChoiceScreen || (LiesOver(kind) && p_.window.frmChoice.visible);
  if (!inChoice || MoveChoiceTo()) {
    PressSoftKey(static_cast<int>(index) + 1);
  }
  RestoreFocus();
}

void Keys::ClickEscape() {
  if (LinkTaken(p_.main)) return;
  ++escapes_;
  SendEscape();
  RestoreFocus();
}

/// Moves the modem's cursor to the chosen row. Returns false if the walk stopped early. In that case the list
/// may open again.
bool Keys::MoveChoiceTo() {
  const int chosen = p_.window.ListChoice.listIndex;
  // If the user has chosen no row, the modem's cursor stays where it is.
  const int distance = chosen < 0 ? 0 : chosen - ChoiceIndexOfCurrent(p_.state.choiceScreen);
  p_.window.frmChoice.visible = false;
  RestoreFocus();
  if (distance == 0) return true;
  const Walk walk(*this, ScreenKind::ChoiceScreen);
  // The modem answers each step with the list, which must not be shown again.
  p_.main.screenHold = true;
  try {
    WalkChoice(distance, walk);
  } catch (const WaitAbandoned&) {
    ShowChoiceAgain();
    throw;
  }
  if (walk.GoesOn()) return true;
  p_.main.screenHold = false;
  return false;
}

/// Called after a walk was abandoned. Shows the list again if the modem still shows it.
void Keys::ShowChoiceAgain() {
  const ScreenKind kind = p_.state.screenKind;
  p_.main.screenHold = false;
  p_.state.choiceChanged = kind == ScreenKind::ChoiceScreen || LiesOver(kind);
}

void Keys::WalkChoice(int distance, const Walk& walk) {
  EventLoop& loop = p_.window.loop();
  for (int step = 0; step < std::abs(distance) && walk.GoesOn(); ++step) {
    if (distance > 0) {
      SendCursorDown();
      HandleEvents();
      Pause(loop, 0.1);
    } else {
      Pause(loop, 0.2);
      if (!walk.GoesOn()) break;
      SendCursorUp();
      HandleEvents();
    }
  }
}

void Keys::HandleEvents() {
  EventLoop& loop = p_.window.loop();
  EventLoop::Wait(loop).Pump(loop.Now());
}

void Keys::ChooseFromList() {
  // After a reset of the screen model, a list that is still visible is out of date.
  if (walking_ || !p_.window.frmChoice.visible || p_.state.screenKind == ScreenKind::NoScreen) return;
  if (!MoveChoiceTo()) return;
  const Walk walk(*this, ScreenKind::ChoiceScreen);
  try {
    Pause(p_.window.loop(), 0.2);
  } catch (const WaitAbandoned&) {
    ShowChoiceAgain();
    throw;
  }
  if (walk.GoesOn()) p_.link.WriteText(kEnter);
}

void Keys::PressInChoice(char key) {
  if (key == kEnter[0]) ChooseFromList();
  if (key == kEsc) ClickEscape();
}

void Keys::PressInMenu(char key) {
  if (key == kEnter[0]) {
    ChooseFromMenu();
  } else if (key == kEsc) {
    SendEscape();
  } else if (IsDigit(key)) {
    p_.link.WriteText({&key, 1});
  }
}

void Keys::ChooseFromMenu() {
  const auto& list = p_.window.ListMenu;
  const int selected = list.selected;
  if (selected < 1 || selected > static_cast<int>(list.Items().size())) return;
  const struct Busy {
    explicit Busy(TermControls& busy) : window(busy) { window.pointer = Pointer::Hourglass; }
    ~Busy() { window.pointer = Pointer::Normal; }
    TermControls& window;
  } busy(p_.window);
  const std::string& key = list.Items()[static_cast<std::size_t>(selected - 1)].key;
  if (key == "MAIL") {
    PressSoftKey(2);
  } else if (key == "LOCK") {  // only modems that can lock their menu have this entry
    PressSoftKey(1);
  } else if (key == "ESC") {
    SendEscape();
  } else {
    SendMenuItem(selected - 1);  // the first entry is "Exit Menu"
  }
}

/// Sets `key.handled` immediately. The action of the key is posted, so that it runs after the actions of
/// earlier keys.
void Keys::KeyDown(KeyEvent& key) {
  const auto post = [this](auto action) { p_.window.loop().Post(action); };
  switch (p_.main.mode) {
    case ModemMode::Closing:
    case ModemMode::Offline:
    case ModemMode::PortSetup:
      return;
    case ModemMode::Failed:
      // After a wrong line speed the port panel is shown in this mode.
      if (p_.window.frmAux.visible && p_.window.fmOnTab[0].visible) return;
      break;
    default:
      break;
  }
  switch (key.keyCode) {
    case kF4:
      if (key.alt) post([this] { ClickEscape(); });  // instead of closing the window
      break;
    case kF7:
    case kPrint:
      if (key.alt) post([this] { PrintWindow(); });
      break;
    case kTab:
      // Tab moves through the controls of these panels.
      if (p_.main.mode == ModemMode::TestInterface || p_.main.mode == ModemMode::AtMode) return;
      post([this] {
        if (p_.state.screenKind == ScreenKind::FieldScreen && !LinkTaken(p_.main)) SendCursorDown();
      });
      break;
    default:
      if (!key.alt || p_.main.mode != ModemMode::Terminal) return;
      post([this, code = key.keyCode] {
        if (p_.main.mode == ModemMode::Terminal) PressHotKey(code);
      });
      break;
  }
  key.handled = true;
}

/// Presses the soft key whose letter was pressed with Alt.
///
/// Intentional: only the first two characters of a key's text count, of which the first may be "&". A letter
/// further to the right is underlined but does not work. The modem's cursor is not walked to the chosen row
/// of a choice list first.
void Keys::PressHotKey(int keyCode) {
  if (!IsCharacterKey(keyCode) || walking_) return;
  for (std::size_t place = 0; place < 2; ++place) {
    for (std::size_t i = 0; i < p_.state.softKeyText.size(); ++i) {
      const std::string& text = p_.state.softKeyText[i];
      if (place < text.size() && UpperCase(text[place]) == static_cast<char>(keyCode)) {
        PressSoftKey(static_cast<int>(i) + 1);
        return;
      }
    }
  }
}

void Keys::TakeTyped(std::string_view text) {
  if (p_.window.frmChoice.visible) {
    p_.window.ListChoice.SetFocus();  // the typed key itself is not sent
    return;
  }
  if (text == kEscape) ++escapes_;
  if (!walking_ || text == kEscape) p_.link.WriteText(text);
}

void Keys::ClickRow(int row) {
  // Frozen rows do not show the current position of the modem's cursor. Without this check, the second click
  // of a double click would move the cursor too far.
  if (p_.state.screenKind != ScreenKind::TableScreen || walking_ || p_.main.rowsFrozen) return;
  FreezeRows();  // the modem's painting during the walk is not shown
  try {
    if (!WalkTable(row)) {
      p_.main.rowsFrozen = false;
      return;
    }
  } catch (const WaitAbandoned&) {
    p_.main.rowsFrozen = false;
    throw;
  }
  ResyncScreen();
  if (p_.window.Active()) p_.window.CorvexFocus1.SetFocus();
}

/// Walks the modem's cursor to a row. If the cursor is in that row already, sends enter. Returns false if the
/// walk stopped early.
bool Keys::WalkTable(int row) {
  const Walk walk(*this, ScreenKind::TableScreen);
  if (row == kCursorRow) p_.link.WriteText(kEnter);
  for (int step = row; step > kCursorRow && walk.GoesOn(); --step) SendCursorDown();
  for (int step = row; step < kCursorRow && walk.GoesOn(); ++step) SendCursorUp();
  return walk.GoesOn();
}

void Keys::ResyncScreen() {
  p_.received.DiscardRx();
  p_.link.WriteText(kRefresh);
  FreezeRows();
  p_.window.tmrRefresh.enabled = true;
}

void Keys::Refresh() {
  p_.main.rowsFrozen = false;
  p_.window.tmrRefresh.enabled = false;
  if (LinkTaken(p_.main)) return;
  p_.link.WriteText(kRefresh);
  p_.state.rowClean.fill(false);
  PaintRows(p_.window, p_.main, p_.state, p_.grid);
}

void Keys::PrintWindow() {
  if (p_.platform.printers.Count() == 0) {
    p_.platform.dialogs.MessageBox(kNoPrinter);
  } else if (!p_.platform.printers.PrintWindow(p_.window)) {
    p_.platform.dialogs.MessageBox(kPrintFailed);
  }
}

}  // namespace corvex
