#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "unit/Drawing.h"
#include "unit/KeyReader.h"
#include "unit/Screens.h"
#include "unit/Status.h"
#include "unit/Timer.h"

namespace corvex::simulation {

/// The unit's man-machine interface: tracks the user's position in the table of screens, handles keys, and
/// draws the current screen.
class Mmi {
 public:
  /// How long a message is shown, and how long the unit waits for another digit of a number.
  static constexpr EventLoop::Time kMessageTime = std::chrono::milliseconds(2200);
  static constexpr EventLoop::Time kNumberWait = std::chrono::milliseconds(150);

  Mmi(EventLoop& loop, Status& status, std::function<void(std::string_view)> send,
      std::function<void()> onSwitchOff);

  /// Starts a session and draws the idle screen.
  void Start();
  void Stop();

  void Press(Key key);
  /// Sends the rows of the screen that have changed since they were drawn.
  void Refresh();
  /// Returns the name of the current screen, or of the message over it. Empty outside a session.
  std::string_view Shows() const;
  bool AtIdle() const { return path_.size() == 1 && message_ == nullptr; }

 private:
  Place& Here() { return path_.back(); }
  const Place& Here() const { return path_.back(); }

  void PressEnter();
  void PressCharacter(char c);
  void Step(int direction);
  void Follow(std::string_view target);
  void Open(const Screen& screen);
  void Back();
  void Type(char c);
  void TakeDigit(char c);
  void TakeNumber();
  void SelectItem(int number);
  const Screen& MenuHere() const;

  void ShowMessage(const Screen& screen);
  void DismissMessage();
  void Print(const Screen& screen);
  void Draw();
  std::string Drawing();
  std::string LeaveList(Kind next);

  Status& status_;
  std::function<void(std::string_view)> send_;
  std::function<void()> onSwitchOff_;
  std::vector<Place> path_;  // from the idle screen to the current one; empty outside a session
  const Screen* message_ = nullptr;
  Kind listShown_ = Kind::Text;     // Menu or Choice while the PC shows a list of that kind
  std::vector<std::string> drawn_;  // the display's rows as last sent
  std::string number_;
  Timer messageTimer_;
  Timer numberTimer_;
};

}  // namespace corvex::simulation
