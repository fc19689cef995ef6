#include "unit/Unit.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "simulator/Conversation.h"
#include "unit/Wire.h"

namespace corvex::simulation {
namespace {

using test::VirtualLoop;

constexpr std::int64_t kNoon = 1143806400;  // 2006-03-31 12:00

bool Holds(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// A unit alone, ticking so rarely that its ticks do not get in the way.
struct Bench {
  explicit Bench(UnitOptions options = {}, double tickSeconds = 3600)
      : unit(loop, Quiet(std::move(options), tickSeconds), [this](std::string_view bytes) { out += bytes; }) {
  }

  static UnitOptions Quiet(UnitOptions options, double tickSeconds) {
    options.startTime = kNoon;
    options.tick = std::chrono::milliseconds(static_cast<int>(tickSeconds * 1000));
    return options;
  }
  /// What the unit sends within this time, having been told these bytes.
  std::string Say(std::string_view bytes, double seconds = 0.1) {
    out.clear();
    unit.Receive(bytes);
    loop.Run(seconds);
    return out;
  }
  std::string StartTags() { return Say("AT+WQUILSTARTTMLB\r\n"); }

  VirtualLoop loop;
  std::string out;
  Unit unit;
};

TEST(Unit, ConversesAsRecorded) {
  for (const std::string folder : {"modem", "tags"}) {
    for (const auto& path : test::Conversations(folder)) {
      Bench bench;
      if (folder == "tags") bench.StartTags();
      test::Converse(path, bench.loop, bench.out,
                     [&bench](std::string_view bytes) { bench.unit.Receive(bytes); });
    }
  }
}

TEST(Unit, KeepsNoMoreOfALineThanItsLimit) {
  Bench bench;
  bench.Say("ate0\r");
  EXPECT_EQ(bench.Say("at" + std::string(1'000'000, 'x') + "\r"), "\r\nERROR\r\n");
  CommandLine line;
  std::string echo;
  for (int i = 0; i < 100'000; ++i) line.Take('\xfe', echo);
  EXPECT_EQ(echo.size(), CommandLine::kLimit);
  EXPECT_EQ(line.Take('\r', echo)->text.size(), CommandLine::kLimit);
}

TEST(Unit, LeavesTheTagStreamAtCancelAndAtHangUp) {
  for (const bool byHangUp : {false, true}) {
    Bench bench({.tour = true}, 1);
    bench.StartTags();
    bench.Say("\x1b");  // half a key, and a message that would go by itself
    if (byHangUp) {
      bench.unit.LineDown();
    } else {
      bench.unit.Receive("\x18");
    }
    EXPECT_EQ(bench.Say("", 20), "");
    bench.unit.LineUp();
    EXPECT_EQ(bench.Say("at\r"), "at\r\r\nOK\r\n");
  }
}

TEST(Unit, ShowsSignsOfLifeAndTracesBetweenPackets) {
  Bench bench({}, 1);
  bench.StartTags();
  std::string stream = bench.Say("", 100);
  std::size_t times = 0;
  for (std::size_t at = 0; (at = stream.find("<tml><Time>12:0", at)) != std::string::npos; ++at) ++times;
  EXPECT_EQ(times, 99U) << "one a second, but the date at the full minute";
  EXPECT_TRUE(Holds(stream, "<tml><Date>12:01|2006.03.31|UTC</tml>"));
  EXPECT_TRUE(Holds(stream, "<tml><NewMail></tml>"));
  EXPECT_TRUE(Holds(stream, "\x1b[8;2HSignal    5")) << "the idle screen follows its readings";
  const std::size_t trace = stream.find("<Trace>0036");
  ASSERT_NE(trace, std::string::npos);
  const std::string_view before = std::string_view(stream).substr(0, trace);
  EXPECT_TRUE(before.ends_with("</tml>") || before.ends_with("\x1b[H"));
  EXPECT_EQ(stream.substr(trace + 11 + 35, 2), "\r\n");
  EXPECT_FALSE(Holds(bench.Say("\x04", 100), "<Trace>"));
  EXPECT_TRUE(Holds(bench.Say("\x81", 10), "<tml><Channel>1,su tick"));
}

TEST(Screens, LeadSomewhereAndFitTheWireAndTheDisplay) {
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
      const bool step =
          target == kBack || target == kSelect || target == simulation::kUp || target == simulation::kDown;
      EXPECT_TRUE(step || FindScreen(target) != nullptr) << target;
    }
    for (const std::string_view row : screen.rows) EXPECT_LE(row.size(), 48U);
  }
}

TEST(Wire, TraceRecordsHaveALengthThatReadersAccept) {
  EXPECT_EQ(TraceRecord("call setup"), "<Trace>0011call setup\r\n");
  EXPECT_EQ(TraceRecord(""), "<Trace>0003  \r\n");
  EXPECT_EQ(TraceRecord(std::string(500, 'x')), "<Trace>0200" + std::string(199, 'x') + "\r\n");
}

}  // namespace
}  // namespace corvex::simulation
