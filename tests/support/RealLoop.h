#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <ctime>
#include <functional>
#include <mutex>

#include "platform/EventLoop.h"

namespace corvex::test {

/// An event loop on the real clock, with nothing but timers, tasks and other threads to wake it.
class RealLoop : public EventLoop {
 public:
  Time Now() const override { return std::chrono::steady_clock::now().time_since_epoch(); }
  double SecondsSinceMidnight() const override {
    return 36000 + std::chrono::duration<double>(Now() - start_).count();
  }
  std::int64_t LocalSeconds() const override { return static_cast<std::int64_t>(SecondsSinceMidnight()); }

 protected:
  void Sleep(Time until) override {
    std::unique_lock lock(mutex_);
    const auto latest = std::min(until, Now() + std::chrono::hours(1));
    wake_.wait_for(lock, latest - Now(), [this] { return woken_; });
    woken_ = false;
  }
  void Poll() override {}
  void WakeAt(Time) override {}
  void WakeFromAnyThread() override {
    const std::lock_guard lock(mutex_);
    woken_ = true;
    wake_.notify_one();
  }

 private:
  const Time start_ = Now();
  std::mutex mutex_;
  std::condition_variable wake_;
  bool woken_ = false;  // guarded by mutex_
};

/// Pumps until the condition holds; fails the test if it does not within the time.
inline ::testing::AssertionResult Becomes(EventLoop& loop, const std::function<bool()>& condition,
                                          double seconds = 5) {
  const auto until =
      loop.Now() + std::chrono::duration_cast<EventLoop::Time>(std::chrono::duration<double>(seconds));
  while (!condition()) {
    if (loop.Now() >= until) return ::testing::AssertionFailure() << "not within " << seconds << " s";
    loop.Pump(std::min(until, loop.Now() + std::chrono::milliseconds(20)));
  }
  return ::testing::AssertionSuccess();
}

/// Lets the given time pass.
inline void Elapse(EventLoop& loop, std::chrono::milliseconds time) {
  for (const auto until = loop.Now() + time; loop.Now() < until;) loop.Pump(until);
}

/// Processor time of this process, all threads included, in milliseconds.
inline double CpuMilliseconds() {
  return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

}  // namespace corvex::test
