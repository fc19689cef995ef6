#include "platform/EventLoop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "support/RealLoop.h"
#include "support/VirtualLoop.h"

namespace corvex {
namespace {

using namespace std::chrono_literals;
using test::VirtualLoop;

TEST(EventLoop, RunsTasksInOrderAndTimersByTime) {
  VirtualLoop loop;
  std::string order;
  loop.After(20ms, [&] { order += 'c'; });
  loop.After(10ms, [&] { order += 'b'; });
  const auto cancelled = loop.After(15ms, [&] { order += 'x'; });
  loop.Post([&] { order += 'a'; });
  loop.Cancel(cancelled);
  loop.Run(0.05);
  EXPECT_EQ(order, "abc");
}

TEST(EventLoop, TaskThatPostsItselfDoesNotHoldThePumpForEver) {
  VirtualLoop loop;
  int runs = 0;
  std::function<void()> again = [&] {
    ++runs;
    loop.Post(again);
  };
  loop.Post(again);
  loop.Pump();
  EXPECT_EQ(runs, 1);
}

TEST(EventLoop, TasksOfAnotherThreadEndASleepAndKeepTheirOrder) {
  test::RealLoop loop;
  std::vector<int> order;
  constexpr int kTasks = 20'000;
  std::thread other([&] {
    for (int i = 0; i < kTasks; ++i) {
      loop.PostFromAnyThread([&order, i] { order.push_back(i); });
      if (i % 1000 == 0) std::this_thread::sleep_for(1ms);
    }
  });
  const auto limit = loop.Now() + 10s;
  while (order.size() < kTasks && loop.Now() < limit)
    loop.Pump(limit);  // a wake-up that is lost takes all of it
  other.join();
  EXPECT_LT(loop.Now(), limit);
  EXPECT_EQ(order.size(), static_cast<std::size_t>(kTasks));
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));

  loop.End();
  loop.PostFromAnyThread([&order] { order.clear(); });
  EXPECT_THROW(loop.Pump(), ProgramEnded);
  EXPECT_FALSE(order.empty()) << "the program has ended";
}

TEST(Pause, WaitsOutItsTimeAndNoLonger) {
  for (const double seconds : {0.0, 0.005, 0.02, 0.1, 15.0}) {
    VirtualLoop loop(80000);  // late in the day, where the clock in single precision is coarse
    Pause(loop, seconds);
    const double waited = std::chrono::duration<double>(loop.Now()).count();
    EXPECT_GE(waited, seconds - 0.004) << seconds;
    EXPECT_LE(waited, seconds + 0.009) << seconds;
  }
}

TEST(Pause, OverMidnightDoesNotEnd) {
  VirtualLoop loop(86399.95);
  bool returned = false;
  loop.After(std::chrono::hours(30), [&] { loop.End(); });
  loop.Enter([&] {
    Pause(loop, 0.1);
    returned = true;
  });
  EXPECT_FALSE(returned);
}

}  // namespace
}  // namespace corvex
