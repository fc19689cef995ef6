#pragma once

#include <QObject>
#include <functional>

#include "platform/EventLoop.h"

namespace corvex {

/// Ends the program when the system asks for it, in the same way as the main window's close button.
///
/// Reacts to the end of the desktop session and, on Unix, to SIGTERM, SIGHUP and SIGINT. On Windows, the
/// program has no console and therefore receives no console events.
class SystemEnd : public QObject {
 public:
  /// Time limit for closing. After this time the program ends even if the session with the modem has not been
  /// ended.
  static constexpr EventLoop::Time kLimit = std::chrono::seconds(3);

  /// `callOff` closes open dialogs and menus; `close` does what the close button does. Both are called
  /// repeatedly until the program has ended, because nested waits end only one after the other.
  SystemEnd(EventLoop& loop, std::function<void()> callOff, std::function<void()> close);
  ~SystemEnd() override;

  /// Begins to end the program and returns at once.
  void Request();
  /// Ends the program. Returns only when it has ended, because the system may kill the process right
  /// afterwards. Intentional: the program ends even if another program then cancels the end of the desktop
  /// session.
  void EndNow();

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void ListenToSignals();
  void Try();

  EventLoop& loop_;
  std::function<void()> callOff_;
  std::function<void()> close_;
  bool requested_ = false;
};

}  // namespace corvex
