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

/// The unit's man-machine interface: where its user is in the table of screens, how keys move him, and what
/// is sent to draw what he sees.
class Mmi {
 public:
  /// How long a message stands. A number that could go on waits this long for its next digit.
  static constexpr EventLoop::Time kMessageTime = std::chrono::milliseconds(2200);
  static constexpr EventLoop::Time kNumberWait = std::chrono::milliseconds(150);

  Mmi(EventLoop& loop, Status& status, std::function<void(std::string_view)> send,
      std::function<void()> onSwitchOff);

  /// From the idle screen, which is drawn.
  void Start();
  void Stop();

  void Press(Key key);
  /// Sends those rows of the screen that have changed since they were drawn.
  void Refresh();
  /// The name of the screen that is shown, a message over another before that; empty while there is no
  /// session.
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
  std::vector<Place> path_;  // from the idle screen to the present one; empty while there is no session
  const Screen* message_ = nullptr;
  Kind listShown_ = Kind::Text;     // Menu or Choice while the PC shows such a list
  std::vector<std::string> drawn_;  // rows of the display as they were sent
  std::string number_;
  Timer messageTimer_;
  Timer numberTimer_;
};

}  // namespace corvex::simulation
