#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "support/Recorded.h"
#include "support/VirtualLoop.h"
#include "unit/ErbFront.h"
#include "unit/Unit.h"
#include "unit/WireLog.h"

// The simulated units alone. tests/data/routes holds what they say in whole sessions.

namespace corvex::simulation {
namespace {

/// A unit without a program.
template <typename FarSide>
struct Bench {
  explicit Bench(typename FarSide::Options options)
      : unit(loop, std::move(options), [this](std::string_view bytes) { out += bytes; }) {}
  /// Sends bytes to the unit and returns what it answers within the given time.
  std::string Say(std::string_view bytes, double seconds = 0.1) {
    out.clear();
    unit.Receive(bytes);
    loop.Run(seconds);
    return out;
  }
  /// Runs a conversation of tests/data/unit. The README there describes them.
  void Converse(const std::filesystem::path& path) {
    SCOPED_TRACE(path);
    const std::string text = test::ReadFile(path);
    const auto log = ParseWireLog(text);
    const auto seconds = [this] { return std::chrono::duration<double>(loop.Now()).count(); };
    const double began = seconds();
    out.clear();
    std::string expected;
    for (const WireEvent& event : std::get<std::vector<WireEvent>>(log)) {
      loop.Run(began + event.at - seconds());
      if (event.kind == WireEvent::Kind::FromModem) {
        expected += event.bytes;
        continue;
      }
      EXPECT_EQ(out, expected) << "up to " << event.at;
      out.clear();
      expected.clear();
      if (event.at > 0 || std::is_same_v<FarSide, ErbFront>) {
        if (event.kind == WireEvent::Kind::Open) unit.LineUp();
        if (event.kind == WireEvent::Kind::Close) unit.LineDown();
      }
      unit.Receive(event.bytes);
    }
    EXPECT_EQ(out, expected) << "at the end";
  }
  test::VirtualLoop loop;
  std::string out;
  FarSide unit;
};

/// By default the unit does not tick during a test.
UnitOptions AtNoon(EventLoop::Time tick = std::chrono::hours(1)) {
  return {.startTime = 1143806400, .tick = tick};
}
constexpr const char* kStartTags = "AT+WQUILSTARTTMLB\r\n";

TEST(Conversations, AreAsRecorded) {
  for (const std::string folder : {"modem", "tags", "erb"}) {
    for (const auto& file : std::filesystem::directory_iterator(CORVEX_TEST_DATA "/unit/" + folder)) {
      if (folder == "erb") {
        Bench<ErbFront>({.mubs = {MubState::Free, MubState::Free, MubState::InUse, MubState::Broken}})
            .Converse(file);
      } else {
        Bench<Unit> bench(AtNoon());
        if (folder == "tags") bench.Say(kStartTags);
        bench.Converse(file);
      }
    }
  }
}

TEST(Unit, LeavesTheTagStreamAtCancelAndAtHangUp) {
  for (const bool byHangUp : {false, true}) {
    Bench<Unit> bench(AtNoon(std::chrono::seconds(1)));
    bench.Say(kStartTags);
    EXPECT_NE(bench.Say("\x1b", 3).find("<tml><Time>12:0"), std::string::npos);
    byHangUp ? bench.unit.LineDown() : bench.unit.Receive("\x18");
    EXPECT_EQ(bench.Say("", 20), "");
    bench.unit.LineUp();
    EXPECT_EQ(bench.Say("at\r"), "at\r\r\nOK\r\n");
  }
}

TEST(Unit, PrintsALongLog) {
  Bench<Unit> bench(AtNoon());
  bench.Say(kStartTags);
  const std::string job = bench.Say("944\x15");
  for (const char* row :
       {"<Print>0001  frames", "<Print>000200  frames 2400  errors 0  52 dB/Hz\r\n</tml><tml><EndPrint>"}) {
    EXPECT_NE(job.find(row), std::string::npos) << row;
  }
}

TEST(ErbFront, CanBeSlowAndCanLeaveAMubInUse) {
  Bench<ErbFront> bench({.lingers = true, .answerTime = std::chrono::milliseconds(300)});
  for (const char* answer : {"connected to modem 1\r\n", "modem 1 already in use\r\nERB> "}) {
    bench.unit.LineUp();
    EXPECT_EQ(bench.Say("root\r\nzzz\r\n"), "root\r");
    EXPECT_EQ(bench.Say("", 1), "\r\nPassword: ") << "the text that came too early is lost";
    bench.Say("zzz\r\n", 1);
    EXPECT_TRUE(bench.Say("modem 1\r\n", 1).ends_with(answer));
    bench.unit.LineDown();
  }
}

TEST(Screens, LeadToScreensAndFitTheWireAndTheDisplay) {
  std::set<std::string_view> names;
  for (const Screen& screen : Screens()) {
    SCOPED_TRACE(screen.name);
    EXPECT_TRUE(names.insert(screen.name).second);
    std::vector<std::string_view> targets;
    for (const Item& item : screen.items) {
      targets.push_back(item.target);
      EXPECT_TRUE(item.icon >= 1 && item.icon <= 63 && item.number >= 1 && item.number <= 999);
    }
    for (const SoftKey& key : screen.keys) {
      if (!key.text.empty()) targets.push_back(key.target);
    }
    const bool needsTarget =
        screen.kind == Kind::Choice || screen.kind == Kind::Field || screen.kind == Kind::Table;
    if (needsTarget || !screen.target.empty()) targets.push_back(screen.target);
    for (const std::string_view target : targets) {
      const bool step = target == kBack || target == kSelect || target == kPrint ||
                        target == simulation::kUp || target == simulation::kDown;
      EXPECT_TRUE(step || FindScreen(target) != nullptr) << target;
    }
    for (const std::string_view row : screen.rows) EXPECT_LE(row.size(), 48U);
  }
}

}  // namespace
}  // namespace corvex::simulation
