#include "desktop/QtEventLoop.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QEvent>
#include <algorithm>

namespace corvex {

namespace {

constexpr EventLoop::Time kLongestTimer = std::chrono::hours(24);

/// Rounds a duration up to whole milliseconds, the unit of QTimer, and limits it to 24 hours.
std::chrono::milliseconds Cover(EventLoop::Time distance) {
  return std::chrono::ceil<std::chrono::milliseconds>(
      std::clamp(distance, EventLoop::Time::zero(), kLongestTimer));
}

}  // namespace

QtEventLoop::QtEventLoop() {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);  // a coarse timer can be 5% late
  QObject::connect(&timer_, &QTimer::timeout, this, &QtEventLoop::Wake);
}

int QtEventLoop::Exec() {
  return Ended() ? 0 : QCoreApplication::exec();
}

EventLoop::Time QtEventLoop::Now() const {
  return std::chrono::steady_clock::now().time_since_epoch();
}

double QtEventLoop::SecondsSinceMidnight() const {
  return QTime::currentTime().msecsSinceStartOfDay() / 1000.0;
}

std::int64_t QtEventLoop::LocalSeconds() const {
  const QDateTime now = QDateTime::currentDateTime();
  return now.toSecsSinceEpoch() + now.offsetFromUtc();
}

void QtEventLoop::Sleep(Time until) {
  if (until <= Now()) {
    Poll();
    return;
  }
  QTimer deadline;
  if (until < NextDue()) {  // otherwise timer_ wakes the loop in time
    deadline.setSingleShot(true);
    deadline.setTimerType(Qt::PreciseTimer);
    deadline.start(Cover(until - Now()));
  }
  QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void QtEventLoop::Poll() {
  QCoreApplication::processEvents();
}

void QtEventLoop::WakeAt(Time time) {
  if (time == armedFor_) return;
  armedFor_ = time;
  if (time <= Now()) {
    timer_.stop();
    if (wakePosted_) return;
    wakePosted_ = true;
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
  } else if (time == Time::max()) {
    timer_.stop();
  } else {
    timer_.start(Cover(time - Now()));
  }
}

void QtEventLoop::WakeFromAnyThread() {
  // Only post the event: the timer and the other members belong to the loop's thread.
  QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void QtEventLoop::customEvent(QEvent*) {
  wakePosted_ = false;
  Wake();
}

void QtEventLoop::Wake() {
  // Forget the armed time, so that WakeAt arms a new wake-up even while a task below is still waiting.
  armedFor_ = Time::min();
  Enter([this] { RunDue(); });
}

void QtEventLoop::Quit() {
  // quit() is not used: it asks the windows to close first, and FormWindow always refuses.
  QCoreApplication::exit(0);
}

}  // namespace corvex
