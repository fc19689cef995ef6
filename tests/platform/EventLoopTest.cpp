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
TEST(EventLoop, ATaskThatPostsItselfDoesNotHoldThePump) {
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

TEST(EventLoop, TasksFromAnotherThreadEndASleepAndKeepTheirOrder) {
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
    loop.Pump(limit);  // a lost wake-up would take all of the time
  other.join();
  EXPECT_LT(loop.Now(), limit);
  EXPECT_EQ(order.size(), static_cast<std::size_t>(kTasks));
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));

  loop.End();
  loop.PostFromAnyThread([&order] { order.clear(); });
  EXPECT_THROW(loop.Pump(), ProgramEnded);
  EXPECT_FALSE(order.empty()) << "the program has ended";
}

TEST(Pause, OverMidnightNeverReturnsAndIsAbandonedAMinuteLater) {
  VirtualLoop loop(86399.95);
  bool returned = false;
  bool overdue = false;
  loop.Enter([&] {
    try {
      Pause(loop, 0.1);
      returned = true;
    } catch (const WaitAbandoned& wait) {
      overdue = wait.overdue;
      throw;
    }
  });
  EXPECT_FALSE(returned);
  EXPECT_TRUE(overdue);
  EXPECT_GE(loop.Now(), 60s);
  EXPECT_LE(loop.Now(), 61s);
}

TEST(Pause, ReturnsLateAfterALongBox) {
  VirtualLoop loop;
  loop.After(50ms, [&] {
    for (const auto until = loop.Now() + 1h; loop.Now() < until;) loop.Pump(until);
  });
  EXPECT_NO_THROW(Pause(loop, 0.1));
}

/// A task that waits, and a record of its steps.
struct Waiting {
  void Begin(const std::string& name) {
    struct Guard {
      Waiting& waiting;
      const std::string& name;
      ~Guard() { waiting.order += ' ' + name + "-left"; }
    };
    order += ' ' + name;
    const Guard guard{*this, name};
    Pause(loop, 1);
    order += ' ' + name + "-returned";
  }
  VirtualLoop loop;
  std::string order;
};

TEST(Waits, UnwindBeforeTheirReplacementBegins) {
  Waiting w;
  w.loop.After(10ms, [&] { w.Begin("inner"); });
  w.loop.After(20ms, [&] {
    w.loop.AbandonWaits([&] { w.order += " never"; });
    w.loop.AbandonWaits([&] { w.Begin("next"); });
    w.order += " asked";
  });
  w.loop.Enter([&] { w.Begin("outer"); });
  EXPECT_EQ(w.order, " outer inner asked inner-left outer-left next next-returned next-left");
  EXPECT_EQ(w.loop.Waits(), 0);
}

TEST(Waits, DoNotHoldUpAReplacementThatBeginsInAModalWindow) {
  Waiting w;
  w.loop.After(10ms, [&] {
    const EventLoop::Modal modal(w.loop);
    EXPECT_EQ(w.loop.ModalsOpen(), 1);
    w.loop.After(10ms, [&] { w.Begin("above"); });
    w.loop.After(20ms, [&] { w.loop.AbandonWaits([&] { w.order += " next"; }); });
    for (const auto until = w.loop.Now() + 100ms; w.loop.Now() < until;) w.loop.Pump(until);
    w.order += " closed";
  });
  w.loop.Enter([&] { w.Begin("below"); });
  EXPECT_EQ(w.order, " below above above-left next closed below-left");
}

}  // namespace
}  // namespace corvex
