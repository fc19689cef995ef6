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

/// Turns the user's actions in the terminal area into bytes. They are exactly those that the modem's own
/// handset sends for the same actions:
///
///   soft keys 1 to 5   characters 21, 9, 15, 16, 20     clear     ESC
///   cursor up, down    ESC [ A, ESC [ B                 enter     character 13
///   menu item          its id in decimal digits         refresh   character 18
///
/// The modem has a cursor of its own. If the user chooses another row of a choice list or a table, the class
/// sends cursor keys until the modem's cursor is in that row. This is called a walk. Events are handled
/// between the keys. During a walk the user can send no key except clear, since any other key would reach a
/// screen that the user has not seen. A walk stops early when the user presses clear, when the modem leaves
/// the list, or when a new passage between modes begins.
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
  /// Sets the handlers of the window's events that send keys to the modem.
  void Connect();
  /// Called for each key that is not one of the window's own, before the key is handled here. Returns true if
  /// a service panel has handled the key.
  std::function<bool(const KeyEvent&)> panelKey;

  /// `key` is 1 to 5. For any other number, nothing is sent.
  void PressSoftKey(int key);
  void SendEscape();
  void SendCursorDown();
  void SendCursorUp();
  /// `item`: an entry of the session's menu, from 1. Nothing is sent for any other number.
  void SendMenuItem(int item);
  /// Returns the modem to its top level. Sends clear seven times, with a pause of 0.3 s before the first and
  /// after each.
  void SendEscapeSeries();

  /// Whether a walk is in progress or a key waits for the link.
  bool Busy() const { return walking_ || opening_; }

  /// Gives the focus to the control that takes keys now. Has an effect only while the window is active and
  /// typed keys go to the modem: in the mode Terminal, and in the byte editor with auto send.
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
  /// Opens the link if necessary and sends `bytes`. Does nothing while another key waits for the link.
  void Send(std::string_view bytes);

  Parts p_;
  bool walking_ = false;
  bool opening_ = false;
  unsigned escapes_ = 0;  ///< How many times the user has pressed clear.
};

}  // namespace corvex
