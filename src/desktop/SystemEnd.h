#pragma once

#include <QObject>
#include <functional>

#include "platform/EventLoop.h"

namespace corvex {

/// Ends the program as its main window's close box does when the system wants it to end: SIGTERM, SIGHUP and
/// SIGINT where there are signals, and the end of the desktop session everywhere. A program with windows has
/// no console on Windows, so nothing of a console comes to it there.
class SystemEnd : public QObject {
 public:
  /// The end takes at most this long, whatever holds it up; the last resort is an end without a farewell.
  static constexpr EventLoop::Time kLimit = std::chrono::seconds(3);

  /// `callOff` takes away the boxes and menus that are open, and `close` is the close box. Both are called
  /// again and again until the program has ended: what waits for a box finds out only when its turn comes.
  SystemEnd(EventLoop& loop, std::function<void()> callOff, std::function<void()> close);
  ~SystemEnd() override;

  /// The system wants the program to end. Returns at once.
  void Request();
  /// The same, and returns when it has ended: the system may kill the program right after. Meant even where
  /// another program may still call the end of the session off.
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
