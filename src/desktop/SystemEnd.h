#pragma once

#include <QObject>
#include <functional>

#include "platform/EventLoop.h"

namespace corvex {

/// Ends the program when the operating system requests it, in the same way as the main window's close box.
///
/// Reacts to the end of the desktop session and, on Unix, to SIGTERM, SIGHUP and SIGINT. On Windows, the
/// program has no console and therefore receives no console events.
class SystemEnd : public QObject {
 public:
  /// Time limit for closing. After this time the program ends even if it has not yet sent the modem the
  /// characters that end a session.
  static constexpr EventLoop::Time kLimit = std::chrono::seconds(3);

  /// `callOff` closes open dialogs and menus. `close` does what the close box does. Both are called again and
  /// again until the program has ended, because several dialogs on top of each other end one at a time.
  SystemEnd(EventLoop& loop, std::function<void()> callOff, std::function<void()> close);
  ~SystemEnd() override;

  /// Starts ending the program and returns immediately.
  void Request();
  /// Ends the program and returns when it has ended, because the system may kill the process after the call.
  /// Intentional: the program also ends if another program then cancels the end of the desktop session.
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
