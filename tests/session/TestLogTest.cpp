#include "session/TestLog.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "session/Route.h"

// Periodic logs: the whole program takes one from a simulated unit. The macro's keys and the file that comes
// of them stand in tests/data/test-log; scripts/recordings.sh writes them anew.

namespace corvex {
namespace {

using test::Route;
using test::Routed;

constexpr const char* kLongAgo = "2006-03-31 09:00:00";
constexpr double kFirstCheck = 50;  // seconds after the start, which is at 10:00

/// A program whose periodic log is on, in the unit's screens, shortly before its first check.
struct Logged : Routed {
  explicit Logged(const std::string& lastTime = kLongAgo, double timeOfDay = 36000)
      : Routed(Route::Lan, {.unit = {.startTime = 1143806400, .trace = false}}, timeOfDay) {
    p.settings.logging.active.Set(true);
    if (!lastTime.empty()) p.settings.logging.lasttime.Set(lastTime);
    onHeard = [this](std::string_view bytes) { keys.emplace_back(Now(), bytes); };
    p.Start(kFirstCheck - 1);
    EXPECT_EQ(UnitShows(), "idle");
    keys.clear();
  }
  void Show(const std::string& row) { p.sock.Arrive("\x1B[5;2H" + row + "<tml><Sig>30</tml>"); }
  void Press(const std::string& digits) {
    for (const char digit : digits) {
      p.Do([&] { term.link().WriteText({&digit, 1}); });
      p.loop.Run(0.1);
    }
  }
  /// In the middle of the macro that the first check begins, so many seconds from its beginning.
  void During(double seconds, const EventLoop::Task& act) {
    const std::chrono::duration<double> delay(kFirstCheck + seconds - Now());
    p.loop.After(std::chrono::duration_cast<EventLoop::Time>(delay), [this, act] { p.loop.Enter(act); });
  }
  std::string LastTime() { return p.settings.logging.lasttime.Get(); }
  std::string File(const std::string& name = "Blog03311001.txt") const { return p.folder.Read(name); }
  std::string Sent() const {
    std::string sent;
    for (const auto& [at, bytes] : keys) sent += bytes;
    return sent;
  }
  std::vector<std::pair<double, std::string>> keys;
};

void ExpectAsInFile(const std::string& got, const std::string& name) {
  const std::string path = CORVEX_TEST_DATA "/test-log/" + name;
  if (std::getenv("CORVEX_RENEW_RECORDINGS") != nullptr) std::ofstream(path, std::ios::binary) << got;
  std::ifstream in(path, std::ios::binary);
  EXPECT_EQ(got, std::string(std::istreambuf_iterator<char>(in), {})) << name;
}

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
  ExpectAsInFile(seen, "keys.txt");
  ExpectAsInFile(r.File(), "Blog03311001.txt");
  EXPECT_EQ(r.UnitShows(), "idle");
  EXPECT_EQ(r.term.main().statusNumber, "002055");
  EXPECT_EQ(r.LastTime(), "2006-03-31 10:00:50");
  EXPECT_FALSE(r.p.windows.attached.back()->visible);

  // Five minutes later the next one, by checks that begin 50 s after the one before has ended.
  r.p.loop.Run(300);
  EXPECT_NE(r.File("Blog03311005.txt"), "") << r.LastTime();
}

TEST(TestLogTest, KeepsItsReadingsWhereEachPrintoutBeginsAnew) {
  Logged r;
  r.Show("SHIPPING Pins 1-4");  // does not ask for a PIN
  r.p.settings.printer.fileuse.SetNew();
  r.During(20, [&r] {
    EXPECT_TRUE(r.p.windows.attached.back()->visible);
    EXPECT_FALSE(r.p.windows.attached.back()->Active()) << "it takes the keyboard";
  });
  r.p.loop.Run(45);
  ExpectAsInFile(r.File(), "Blog03311001.txt");
}

TEST(TestLogTest, SaysNothingMoreOnceItsSessionHasEnded) {
  const struct {
    const char* what;
    std::function<void(Logged&)> end;
    std::vector<double> times = {0.5, 3.4, 9.45, 17.0};
  } ends[]{
      {"upgrade", [](Logged& r) { r.term.mnuUpgrade.click(); }},
      {"port panel", [](Logged& r) { r.term.mnuPort.click(); }},
      {"connected anew", [](Logged& r) { r.term.mnuTerminal.click(); }},
      {"offline", [](Logged& r) { r.term.mnuOffline.click(); }},
      {"program ended", [](Logged& r) { r.term.queryUnload(); }},
      {"message box",
       [](Logged& r) {
         r.p.KeepBoxesOpen(std::chrono::seconds(20));
         r.term.mnuManual.click();
       }},
      // The clear key would leave the question again, so this is where the macro types.
      {"PIN is asked for",
       [](Logged& r) {
         r.hear(
             "\x14"
             "53");
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
