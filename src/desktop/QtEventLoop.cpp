#include "desktop/QtEventLoop.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QEvent>
#include <algorithm>

namespace corvex {

namespace {

constexpr EventLoop::Time kLongestTimer = std::chrono::hours(24);

/// Whole milliseconds that cover a distance, as QTimer counts them.
std::chrono::milliseconds Cover(EventLoop::Time distance) {
  return std::chrono::ceil<std::chrono::milliseconds>(
      std::clamp(distance, EventLoop::Time::zero(), kLongestTimer));
}

}  // namespace

QtEventLoop::QtEventLoop() {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);  // the coarse one is late by up to a twentieth
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
  if (until < NextDue()) {  // otherwise the loop's own timer wakes it
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
  // Nothing but this event: the timer and its marks belong to the loop's thread.
  QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void QtEventLoop::customEvent(QEvent*) {
  wakePosted_ = false;
  Wake();
}

void QtEventLoop::Wake() {
  // From here on anything due needs a new wake-up, even from within a task that does not return yet.
  armedFor_ = Time::min();
  Enter([this] { RunDue(); });
}

void QtEventLoop::Quit() {
  // Not quit(): that asks the windows first, and theirs is to refuse.
  QCoreApplication::exit(0);
}

}  // namespace corvex
