#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/VirtualLoop.h"
#include "unit/Faults.h"
#include "unit/PacedLine.h"

namespace corvex::simulation {
namespace {

using namespace std::chrono_literals;
using test::VirtualLoop;

struct Faulty {
  explicit Faulty(Faults faults)
      : line(
            loop, faults, [this](std::string_view bytes) { pieces.emplace_back(bytes); },
            [this] { ++hangUps; }) {}
  std::string Text() const {
    std::string text;
    for (const std::string& piece : pieces) text += piece;
    return text;
  }
  VirtualLoop loop;
  std::vector<std::string> pieces;
  int hangUps = 0;
  FaultyLine line;
};

const std::string kText = [] {
  std::string text;
  for (int i = 0; i < 500; ++i) text += "<tml><Sig>" + std::to_string(i) + "</tml>";
  return text;
}();

TEST(FaultyLine, DoesTheSameForTheSameSeed) {
  const auto played = [](std::uint32_t seed) {
    Faulty faulty({.seed = seed, .garble = 0.01, .drop = 0.02, .cut = true});
    faulty.line.Send(kText);
    faulty.loop.Run(60);
    return faulty.pieces;
  };
  EXPECT_EQ(played(7), played(7));
  EXPECT_NE(played(7), played(8));
}

TEST(FaultyLine, IsLateAndCutsButKeepsTheOrder) {
  Faulty faulty({.late = 2s, .cut = true});
  faulty.line.Send("<tml><Time>12:34</tml>");
  faulty.loop.Run(1);
  faulty.line.Send("<tml><Sig>27</tml>");
  faulty.loop.Run(0.9);
  EXPECT_TRUE(faulty.pieces.empty());
  faulty.loop.Run(5);
  EXPECT_EQ(faulty.Text(), "<tml><Time>12:34</tml><tml><Sig>27</tml>");
  EXPECT_GE(faulty.pieces.size(), 6U);
  for (int i = 0; i < 100; ++i) faulty.line.Send(kText);
  faulty.pieces.clear();
  faulty.loop.Run(1000);
  EXPECT_LE(faulty.Text().size(), FaultyLine::kLimit);
}

TEST(FaultyLine, KeepsTheOrderWhenItsFaultsEnd) {
  Faulty faulty({.late = 1s});
  faulty.line.Send("late, ");
  faulty.line.SetFaults({});
  faulty.line.Send("in time");
  faulty.loop.Run(2);
  EXPECT_EQ(faulty.Text(), "late, in time");
}

TEST(FaultyLine, HangsUpOnceAfterItsBytesAndStartsAfresh) {
  Faulty faulty({.hangUpAfter = 5});
  faulty.line.Send("abc");
  faulty.line.Send("defg");
  faulty.line.Send("hij");
  EXPECT_EQ(faulty.Text(), "abcde");
  EXPECT_EQ(faulty.hangUps, 1);
  faulty.line.Reset();
  faulty.line.Send("xyz");
  EXPECT_EQ(faulty.Text(), "abcdexyz");
}

TEST(PacedLine, TakesTheTimeOfItsBits) {
  for (const int speed : {300, 9600, 115200}) {
    VirtualLoop loop;
    std::string out;
    double last = 0;
    std::size_t largest = 0;
    PacedLine line(loop, speed, [&](std::string_view bytes) {
      out += bytes;
      largest = std::max(largest, bytes.size());
      last = std::chrono::duration<double>(loop.Now()).count();
    });
    const std::string text(1000, 'x');
    line.Send(text.substr(0, 10));
    line.Send(text.substr(10));
    loop.Run(60);
    EXPECT_EQ(out, text);
    EXPECT_NEAR(last, 10000.0 / speed, 0.001) << speed;
    EXPECT_LE(largest, static_cast<std::size_t>(speed / 1000 + 1)) << "some ten milliseconds a piece";
  }
}

TEST(PacedLine, LosesWholeTextsThatDoNotFit) {
  VirtualLoop loop;
  std::string out;
  PacedLine line(loop, 9600, [&](std::string_view bytes) { out += bytes; });
  for (int i = 0; i < 10'000; ++i) line.Send("<tml><Sig>27</tml>");
  loop.Run(1000);
  EXPECT_LE(out.size(), PacedLine::kLimit);
  EXPECT_EQ(out.size() % 18, 0U);
  line.Send("after");
  loop.Run(1);
  EXPECT_TRUE(out.ends_with("after"));
}

}  // namespace
}  // namespace corvex::simulation
