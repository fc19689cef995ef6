#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <functional>

#include "platform/EventLoop.h"

namespace corvex::test {

/// Pumps until the condition holds. Fails if that takes longer than `seconds`.
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

/// Processor time of all threads of this process in milliseconds.
inline double CpuMilliseconds() {
  return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

}  // namespace corvex::test
