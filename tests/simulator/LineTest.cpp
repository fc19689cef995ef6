#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/VirtualLoop.h"
#include "unit/Faults.h"
#include "unit/PacedLine.h"

namespace corvex::simulation {
namespace {

using namespace std::chrono_literals;

/// The bytes that leave a line, and their time.
struct Bench {
  double Now() const { return std::chrono::duration<double>(loop.Now()).count(); }
  const std::function<void(std::string_view)> send = [this](std::string_view bytes) {
    pieces.emplace_back(bytes);
    text += bytes;
    last = Now();
  };
  const std::function<void()> hangUp = [this] { text += '#'; };
  test::VirtualLoop loop;
  std::vector<std::string> pieces;
  std::string text;
  double last = 0;
};

TEST(FaultyLine, DoesTheSameForTheSameSeed) {
  const auto played = [](std::uint32_t seed) {
    Bench bench;
    FaultyLine line(bench.loop, {.seed = seed, .garble = 0.01, .drop = 0.02, .cut = true}, bench.send,
                    bench.hangUp);
    line.Send(std::string(5000, 'x'));
    bench.loop.Run(60);
    return bench.pieces;
  };
  EXPECT_EQ(played(7), played(7));
  EXPECT_NE(played(7), played(8));
}

TEST(FaultyLine, IsLateAndCutsButKeepsTheOrder) {
  Bench bench;
  FaultyLine line(bench.loop, {.late = 2s, .cut = true}, bench.send, bench.hangUp);
  line.Send("<tml><Time>12:34</tml>");
  bench.loop.Run(1);
  line.SetFaults({});
  line.Send("<tml><Sig>27</tml>");
  bench.loop.Run(0.9);
  EXPECT_EQ(bench.text, "");
  bench.loop.Run(5);
  EXPECT_EQ(bench.text, "<tml><Time>12:34</tml><tml><Sig>27</tml>");
  EXPECT_GE(bench.pieces.size(), 4U);
}

TEST(FaultyLine, HangsUpOnceAfterItsBytesUntilItIsReset) {
  Bench bench;
  FaultyLine line(bench.loop, {.hangUpAfter = 5}, bench.send, bench.hangUp);
  for (const char* text : {"abc", "defg", "hij"}) line.Send(text);
  EXPECT_EQ(bench.text, "abcde#");
  line.Reset();
  line.Send("xyz");
  EXPECT_EQ(bench.text, "abcde#xyz");
}

TEST(PacedLine, TakesTenBitsAByteAndDropsWholeTextsThatDoNotFit) {
  for (const int speed : {300, 9600, 115200}) {
    Bench bench;
    PacedLine line(bench.loop, speed, bench.send);
    line.Send("0123456789");
    line.Send(std::string(990, 'x'));
    bench.loop.Run(60);
    EXPECT_EQ(bench.text, "0123456789" + std::string(990, 'x'));
    EXPECT_NEAR(bench.last, 10000.0 / speed, 0.001) << speed;
    for (int i = 0; i < 10'000; ++i) line.Send("<tml><Sig>27</tml>");
    bench.loop.Run(3000);
    EXPECT_LE(bench.text.size(), 1000 + PacedLine::kLimit);
    EXPECT_EQ((bench.text.size() - 1000) % 18, 0U);
  }
}

}  // namespace
}  // namespace corvex::simulation
