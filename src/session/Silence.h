#pragma once

#include <string>

#include "platform/EventLoop.h"
#include "state/MainState.h"
#include "window/TermControls.h"

namespace corvex {

/// Sees to it that nobody takes an old screen for a current one: when the modem has sent nothing for some
/// seconds in its session, which it does not do as long as it lives, the screen is dimmed, with the position
/// beside it, and the port indicator says since when. It does not depend on the window's timers, which stop
/// with a minimised window.
class Silence {
 public:
  /// A modem sends its time every second, and after 8 to 16 s of silence the watchdog connects again.
  static constexpr EventLoop::Time kLimit = std::chrono::seconds(5);

  Silence(TermControls& window, const MainState& main) : window_(window), main_(main) {}
  ~Silence();
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

  /// A session has begun.
  void Watch();
  /// The modem has sent something in it.
  void Heard();
  /// It has ended.
  void Stop();

 private:
  void Check();
  void Show();
  void Hide();
  void SetDimmed(bool dimmed);

  TermControls& window_;
  const MainState& main_;
  EventLoop::Time heard_{0};
  EventLoop::TimerId timer_ = 0;
  std::string port_;  ///< What the port indicator showed before.
  std::string portTip_;
};

}  // namespace corvex
