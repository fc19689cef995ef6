#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "link/modComSock.h"
#include "platform/Platform.h"
#include "state/MainState.h"
#include "state/ReceiveBuffer.h"
#include "state/SessionState.h"
#include "stream/TextGrid.h"
#include "window/TermControls.h"

namespace corvex {

/// What the user does in the terminal area, turned into exactly the bytes that the modem's own handset would
/// send:
///
///   soft keys 1 to 5   characters 21, 9, 15, 16, 20     clear     ESC
///   cursor up, down    ESC [ A, ESC [ B                 enter     character 13
///   menu item          its id as number text            refresh   character 18
///
/// The modem has a cursor of its own. Where the user has chosen another row of a choice list or a table, that
/// cursor is walked there step by step, with events handled between the steps. Meanwhile the user can only
/// clear: any other key would reach a screen that the user has not seen. A walk ends where it is when it is
/// cleared, when the modem leaves the list, or when another passage between modes begins.
class Keys {
 public:
  struct Parts {
    const Platform& platform;
    TermControls& window;
    MainState& main;
    SessionState& state;
    ReceiveBuffer& received;
    TextGrid& grid;
    TerminalLink& link;
  };

  explicit Keys(const Parts& parts) : p_(parts) {}
  /// Fills the events of the window that are keys to the modem.
  void Connect();
  /// Keys of a service panel come before; true if it was one.
  std::function<bool(const KeyEvent&)> panelKey;

  /// Keys 1 to 5; any other sends nothing.
  void PressSoftKey(int key);
  void SendEscape();
  void SendCursorDown();
  void SendCursorUp();
  /// An entry of the session's menu, from 1.
  void SendMenuItem(int item);
  /// Walks the modem back to its top level.
  void SendEscapeSeries();

  /// Whether a walk of the modem's cursor or a key is still on its way.
  bool Busy() const { return walking_ || opening_; }

  /// Gives the focus to what takes keys at the moment, if the window is active and what is typed goes to the
  /// modem: on its screen, and in the byte editor with auto send.
  void RestoreFocus();

 private:
  class Walk;

  void ClickSoftKey(std::size_t index);
  void ClickEscape();
  void KeyDown(KeyEvent& key);
  void PressHotKey(int keyCode);
  bool TypingGoesOut() const;
  void TakeTyped(std::string_view text);

  void PressInMenu(char key);
  void ChooseFromMenu();
  void PressInChoice(char key);
  void ChooseFromList();
  bool MoveChoiceTo();
  void ShowChoiceAgain();
  void WalkChoice(int distance, const Walk& walk);
  void HandleEvents();

  void ClickRow(int row);
  bool WalkTable(int row);
  void FreezeRows() { p_.main.rowsFrozen = true; }
  void ResyncScreen();
  void Refresh();

  void PrintWindow();
  /// Opens the link if need be and sends; nothing while another key is waiting for the link.
  void Send(std::string_view bytes);

  Parts p_;
  bool walking_ = false;
  bool opening_ = false;
  unsigned escapes_ = 0;  ///< How often the user has cleared.
};

}  // namespace corvex
