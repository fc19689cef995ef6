#pragma once

#include <QObject>
#include <QTimer>

#include "platform/EventLoop.h"

namespace corvex {

/// The event loop of the program on that of Qt.
///
/// One precise timer stands for the earliest thing due, and its slot runs what is due: so posted tasks and
/// timers go on while Qt runs a loop of its own, as menus and the system's dialogs do. A wait of the program
/// sleeps in QCoreApplication::processEvents. No exception leaves a slot.
class QtEventLoop : public QObject, public EventLoop {
 public:
  QtEventLoop();

  /// Qt's loop until the end of the program; its exit status.
  int Exec();

  Time Now() const override;
  double SecondsSinceMidnight() const override;
  std::int64_t LocalSeconds() const override;

 protected:
  void Sleep(Time until) override;
  void Poll() override;
  void WakeAt(Time time) override;
  void WakeFromAnyThread() override;
  void Quit() override;
  void customEvent(QEvent* event) override;

 private:
  void Wake();

  QTimer timer_;
  Time armedFor_ = Time::max();
  bool wakePosted_ = false;
};

}  // namespace corvex
