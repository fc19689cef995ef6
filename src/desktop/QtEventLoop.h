#pragma once

#include <QObject>
#include <QTimer>

#include "platform/EventLoop.h"

namespace corvex {

/// The program's event loop, implemented on Qt's event loop.
///
/// One precise QTimer is armed for the earliest due task or timer, and its slot runs everything that is due.
/// Tasks and timers therefore also run while Qt runs a nested loop, for example for a menu or a system
/// dialog. Waits of the program sleep in QCoreApplication::processEvents. No exception leaves a slot.
class QtEventLoop : public QObject, public EventLoop {
 public:
  QtEventLoop();

  /// Runs Qt's event loop until the program ends. Returns the exit status.
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
