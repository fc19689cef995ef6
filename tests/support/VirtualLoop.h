#pragma once

#include <algorithm>
#include <stdexcept>

#include "platform/EventLoop.h"

namespace corvex::test {

/// An event loop in virtual time. It jumps to the next due time instead of sleeping, so a wait costs nothing
/// and every run has the same order of events.
class VirtualLoop : public EventLoop {
 public:
  /// `timeOfDay`: the time at which the loop starts, in seconds after midnight.
  explicit VirtualLoop(double timeOfDay = 36000) : start_(timeOfDay) {}

  Time Now() const override { return now_; }
  double SecondsSinceMidnight() const override {
    const double t = start_ + std::chrono::duration<double>(now_).count();
    return t - 86400 * static_cast<double>(static_cast<long long>(t / 86400));
  }
  std::int64_t LocalSeconds() const override {
    return kToday + static_cast<std::int64_t>(start_ + std::chrono::duration<double>(now_).count());
  }

  /// Runs all that becomes due within the given time, like the platform's own loop.
  void Run(double seconds) {
    const Time until = now_ + std::chrono::duration_cast<Time>(std::chrono::duration<double>(seconds));
    while (!Ended() && NextDue() <= until) {
      now_ = std::max(now_, NextDue());
      Enter([this] { RunDue(); });
    }
    if (!Ended()) now_ = std::max(now_, until);
  }

  /// A longer wait with nothing due counts as a hang and fails the test.
  static constexpr Time kHang = std::chrono::hours(48);

 protected:
  void Sleep(Time until) override {
    if (until == Time::max() || until - now_ > kHang) {
      // Nothing can wake this wait. A real program would hang here until it is closed.
      throw std::runtime_error("the program waits for ever");
    }
    now_ = std::max(now_, until);
  }
  void Poll() override {}
  void WakeAt(Time) override {}
  void WakeFromAnyThread() override {}  // threads cannot run in virtual time

 private:
  static constexpr std::int64_t kToday = 1143763200;  // 2006-03-31
  double start_;
  Time now_{0};
};

}  // namespace corvex::test
