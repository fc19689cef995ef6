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

/// Turns the user's actions in the terminal area into exactly the bytes that the modem's own handset sends:
///
///   soft keys 1 to 5   characters 21, 9, 15, 16, 20     clear     ESC
///   cursor up, down    ESC [ A, ESC [ B                 enter     character 13
///   menu item          its id as number text            refresh   character 18
///
/// The modem has its own cursor. If the user chooses another row of a choice list or a table, this class
/// sends cursor keys until the modem's cursor is on that row: a walk. Events are handled between the keys.
/// During a walk the user can only send the clear key, because any other key would reach a screen that the
/// user has not seen. A walk stops early when the user presses clear, when the modem leaves the list, or when
/// another passage begins.
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
  /// Connects the window's events that send keys to the modem.
  void Connect();
  /// Called first for each key. Returns true if a service panel has handled the key.
  std::function<bool(const KeyEvent&)> panelKey;

  /// `key` is 1 to 5. For any other number, nothing is sent.
  void PressSoftKey(int key);
  void SendEscape();
  void SendCursorDown();
  void SendCursorUp();
  /// `item` is the number of an entry in the session's menu, counted from 1.
  void SendMenuItem(int item);
  /// Returns to the top level of the modem's menus: sends clear seven times, with pauses. Takes 2.4 seconds.
  void SendEscapeSeries();

  /// Returns whether a walk is in progress or a key is waiting for the link to open.
  bool Busy() const { return walking_ || opening_; }

  /// Gives the focus to the control that receives keys in the current state. Does nothing if the window is
  /// not active or if typed keys are not sent to the modem. Typed keys are sent in the mode Terminal, and in
  /// the byte editor with auto send.
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
  /// Opens the link if necessary and sends. Does nothing while another key waits for the link to open.
  void Send(std::string_view bytes);

  Parts p_;
  bool walking_ = false;
  bool opening_ = false;
  unsigned escapes_ = 0;  ///< How many times the user has pressed clear.
};

}  // namespace corvex
