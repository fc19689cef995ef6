#pragma once

#include <string>

#include "platform/EventLoop.h"
#include "state/MainState.h"
#include "window/TermControls.h"

namespace corvex {

/// Marks the screen as old when the modem falls silent. If the modem has sent nothing for kLimit during its
/// session, the screen and the position are dimmed, and the port indicator shows the time of the last byte.
///
/// Uses a timer of the event loop, since the window's timers stop while the window is minimised.
class Silence {
 public:
  /// A working modem sends its time every second. The watchdog connects again after 8 to 16 s of silence.
  static constexpr EventLoop::Time kLimit = std::chrono::seconds(5);

  Silence(TermControls& window, const MainState& main) : window_(window), main_(main) {}
  ~Silence();
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

  /// A session has begun.
  void Watch();
  /// Something has been received in the session.
  void Heard();
  /// The session has ended.
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
  std::string port_;     ///< The caption of the port indicator before the silence.
  std::string portTip_;  ///< Its tool tip before the silence.
};

}  // namespace corvex
