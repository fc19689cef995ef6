#include <QDialog>
#include <QMenu>
#include <QTimer>
#include <thread>

#include "desktop/Wait.h"

namespace corvex {
namespace {

using namespace std::chrono_literals;

TEST(QtEventLoopTest, PauseSleepsAndEndsOnTime) {
  QtEventLoop loop;
  const double cpu = test::CpuMilliseconds();
  EventLoop::Time quickest = 1h;  // of several pauses, because a busy machine can delay one
  for (int i = 0; i < 5; ++i) {
    const auto start = loop.Now();
    Pause(loop, 0.2);
    const auto took = loop.Now() - start;
    // Pause reads the time of day in single precision. Late in the day its resolution is 8 ms.
    EXPECT_GE(took, 191ms);
    quickest = std::min<EventLoop::Time>(quickest, took);
  }
  EXPECT_LE(quickest, 215ms);
  EXPECT_LT(test::CpuMilliseconds() - cpu, 100);
}

TEST(QtEventLoopTest, RunsTimersInOrderWhileATimerTaskWaits) {
  QtEventLoop loop;
  std::string order;
  loop.After(10ms, [&] {
    order += 'a';
    // The two timers started outside this task must fire during this wait.
    test::Elapse(loop, 60ms);
    order += 'd';
  });
  loop.After(40ms, [&] { order += 'c'; });
  loop.After(20ms, [&] { order += 'b'; });
  ASSERT_TRUE(test::Becomes(loop, [&] { return order.size() == 4; }));
  EXPECT_EQ(order, "abcd");
}

TEST(QtEventLoopTest, TimersRunDuringNestedQtLoops) {
  QtEventLoop loop;
  for (const bool menu : {false, true}) {  // a menu opened by the user, and a dialog opened by a task
    QDialog dialog;
    QMenu popup;
    popup.addAction(QStringLiteral("entry"));
    int ticks = 0;
    std::function<void()> tick = [&] {
      if (++ticks < 5) {
        loop.After(5ms, tick);
      } else {
        dialog.reject();
        popup.close();
      }
    };
    loop.After(5ms, tick);
    QTimer::singleShot(3000, &dialog, &QDialog::reject);
    QTimer::singleShot(3000, &popup, &QMenu::close);
    if (menu) {
      popup.exec(QPoint(50, 50));
    } else {
      bool done = false;
      loop.Post([&] { done = dialog.exec() == QDialog::Rejected; });
      ASSERT_TRUE(test::Becomes(loop, [&] { return done; }));
    }
    EXPECT_EQ(ticks, 5);
  }
}

TEST(QtEventLoopTest, EndUnwindsNestedWaits) {
  QtEventLoop loop;
  int unwound = 0;
  struct Guard {
    int& count;
    ~Guard() { ++count; }
  };
  loop.Post([&] {
    const Guard outer{unwound};
    loop.After(5ms, [&] {
      const Guard inner{unwound};
      QTimer::singleShot(5, &loop, [&] { loop.Enter([&] { loop.End(); }); });
      for (;;) loop.Pump();
    });
    QDialog dialog;  // a loop of Qt between the two waits
    dialog.exec();
    for (;;) loop.Pump();
  });
  const QObject here;  // cancels the time limit at the end of the test
  QTimer::singleShot(5000, &here, [] { QCoreApplication::exit(1); });
  EXPECT_EQ(loop.Exec(), 0);
  EXPECT_EQ(unwound, 2);
  EXPECT_FALSE(loop.Enter([] { FAIL() << "the program has ended"; }));
}

TEST(QtEventLoopTest, TasksFromAnotherThreadRunInEveryLoop) {
  QtEventLoop loop;
  for (const bool inDialog : {false, true}) {
    int runs = 0;
    QDialog dialog;
    std::thread other([&] {
      for (int i = 0; i < 100; ++i) {
        std::this_thread::sleep_for(1ms);
        loop.PostFromAnyThread([&] {
          if (++runs == 100) dialog.reject();
        });
      }
    });
    const auto began = loop.Now();
    if (inDialog) {
      QTimer::singleShot(5000, &dialog, &QDialog::reject);
      dialog.exec();
    } else {
      while (runs < 100 && loop.Now() < began + 5s) loop.Pump(began + 5s);
    }
    other.join();
    EXPECT_EQ(runs, 100);
    EXPECT_LT(loop.Now() - began, 2s);
  }
}

TEST(QtEventLoopTest, ReportsLocalTime) {
  QtEventLoop loop;
  const std::time_t now = std::time(nullptr);
  const std::tm local = *std::localtime(&now);
  const double seconds = local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec;
  EXPECT_NEAR(loop.SecondsSinceMidnight(), seconds, 2);
  EXPECT_NEAR(static_cast<double>(loop.LocalSeconds() % 86400), seconds, 2);
}

}  // namespace
}  // namespace corvex
