#include "session/TestLog.h"

#include <gtest/gtest.h>

#include "session/Route.h"
#include "support/Recorded.h"

// The whole program takes a periodic log from a simulated unit. tests/data/test-log holds the macro's keys
// and the log's file. When a log begins is tested in tests/data/streams/periodic-log.txt.

namespace corvex {
namespace {

using test::Route;
using test::Routed;

const std::string kData = CORVEX_TEST_DATA "/test-log/";
constexpr double kFirstCheck = 50;  // seconds after the start, which is at 10:00

/// A program in the unit's menus with periodic logs switched on, one second before its first check.
struct Logged : Routed {
  Logged() : Routed(Route::Lan, {.unit = {.startTime = 1143806400, .trace = false}}) {
    p.settings.logging.active.Set(true);
    p.settings.logging.lasttime.Set("2006-03-31 09:00:00");
    onHeard = [this](std::string_view bytes) { keys.emplace_back(Now(), bytes); };
    p.Start(kFirstCheck - 1);
    EXPECT_EQ(UnitShows(), "idle");
    keys.clear();
  }
  /// Calls `act` so many seconds after the beginning of the macro.
  void During(double seconds, const EventLoop::Task& act) {
    const std::chrono::duration<double> delay(kFirstCheck + seconds - Now());
    p.loop.After(std::chrono::duration_cast<EventLoop::Time>(delay), [this, act] { p.loop.Enter(act); });
  }
  std::string LastTime() { return p.settings.logging.lasttime.Get(); }
  std::string File(const std::string& name = "Blog03311001.txt") const { return p.folder.Read(name); }

  std::vector<std::pair<double, std::string>> keys;  ///< Each send with its time.
};

TEST(TestLogTest, WalksTheUnitsMenusAndSavesWhatItFinds) {
  Logged r;
  r.During(0.1, [&r] {
    EXPECT_TRUE(r.term.frmMsg.visible);
    EXPECT_EQ(r.term.LblMsg[0].caption.Get(), "Generating Test Logs - please wait");
  });
  r.p.loop.Run(2);
  std::string seen;
  for (std::size_t i = 0; i < r.keys.size(); ++i) {
    std::array<char, 16> time{};
    std::snprintf(time.data(), time.size(), " %.1f", r.keys[i].first - kFirstCheck);
    if (i == 0 || r.keys[i].second != r.keys[i - 1].second)
      seen += (i == 0 ? "" : "\n") + QuoteBytes(r.keys[i].second);
    seen += time.data();
  }
  seen += '\n';
  test::ExpectRecorded(seen, kData + "keys.txt");
  test::ExpectRecorded(r.File(), kData + "Blog03311001.txt");
  EXPECT_EQ(r.UnitShows(), "idle");
  EXPECT_EQ(r.term.main().statusNumber, "002055");
  EXPECT_EQ(r.LastTime(), "2006-03-31 10:00:50");
  EXPECT_FALSE(r.p.windows.attached.back()->visible);

  // The next log follows five minutes later. Each check comes 50 s after the end of the one before.
  r.p.loop.Run(300);
  EXPECT_NE(r.File("Blog03311005.txt"), "") << r.LastTime();
}

TEST(TestLogTest, KeepsItsReadingsWhereEachPrintJobClearsTheView) {
  Logged r;
  r.p.settings.printer.fileuse.SetNew();
  r.During(20, [&r] {
    EXPECT_TRUE(r.p.windows.attached.back()->visible);
    EXPECT_FALSE(r.p.windows.attached.back()->Active()) << "it must not take the focus";
  });
  r.p.loop.Run(45);
  test::ExpectRecorded(r.File(), kData + "Blog03311001.txt");
}

TEST(TestLogTest, SendsNothingMoreAfterTheEndOfItsSession) {
  const struct {
    const char* what;
    std::function<void(Logged&)> end;
    std::vector<double> times = {0.5, 3.4, 9.45, 17.0};
  } ends[]{
      {"upgrade", [](Logged& r) { r.term.mnuUpgrade.click(); }},
      {"port panel", [](Logged& r) { r.term.mnuPort.click(); }},
      {"connected again", [](Logged& r) { r.term.mnuTerminal.click(); }},
      {"offline", [](Logged& r) { r.term.mnuOffline.click(); }},
      {"program ended", [](Logged& r) { r.term.queryUnload(); }},
      {"message box",
       [](Logged& r) {
         r.p.KeepBoxesOpen(std::chrono::seconds(20));
         r.term.mnuManual.click();
       }},
      // Only where the macro types digits: the clear key would leave the question.
      {"PIN is asked for",
       [](Logged& r) {
         r.hear(
             "\0245"
             "3");
       },
       {2.9, 3.4, 20.0}},
  };
  for (const auto& [what, end, times] : ends) {
    for (const double after : times) {
      SCOPED_TRACE(std::string(what) + " after " + std::to_string(after));
      Logged r;
      r.During(after, [&r, act = &end] {
        r.keys.clear();
        (*act)(r);
      });
      r.p.loop.Run(30);
      for (const auto& [at, bytes] : r.keys) {
        EXPECT_TRUE(bytes.size() > 1 || std::string_view("123456789\t\x15").find(bytes) == std::string::npos)
            << QuoteBytes(bytes) << " at " << at - kFirstCheck;
      }
      const std::string log = r.File("Blog03311000.txt") + r.File();
      EXPECT_EQ(log.find("Readings from the Idle Screen") != std::string::npos, after > 9);
      EXPECT_EQ(r.LastTime(), "2006-03-31 10:00:50");
    }
  }
}

}  // namespace
}  // namespace corvex
