#include "unit/ErbFront.h"

#include <gtest/gtest.h>

#include "simulator/Conversation.h"

namespace corvex::simulation {
namespace {

struct Bench {
  explicit Bench(ErbOptions options = {})
      : front(loop, std::move(options), [this](std::string_view bytes) { out += bytes; }) {}
  std::string Say(std::string_view bytes) {
    out.clear();
    front.Receive(bytes);
    loop.Run(0.1);
    return out;
  }
  test::VirtualLoop loop;
  std::string out;
  ErbFront front;
};

constexpr std::string_view kLogIn = "root\r\nzzz\r\nmodem 1\r\n";
constexpr std::string_view kLoginPrompt = "\r\nERB login: ";

TEST(ErbFront, ConversesAsRecorded) {
  for (const auto& path : test::Conversations("erb")) {
    Bench bench({.mubs = {MubState::Free, MubState::Free, MubState::InUse, MubState::Broken}});
    test::Converse(
        path, bench.loop, bench.out, [&bench](std::string_view bytes) { bench.front.Receive(bytes); },
        [&bench](bool up) { up ? bench.front.LineUp() : bench.front.LineDown(); });
  }
}

TEST(ErbFront, KeepsItsSessionBehindASerialPortAndEndsItOnTcp) {
  for (const bool serial : {false, true}) {
    Bench bench({.serial = serial});
    bench.front.LineUp();
    EXPECT_EQ(bench.out, serial ? "" : kLoginPrompt);
    bench.Say(kLogIn);
    bench.Say("AT+WQUILSTARTTMLB\r\n");
    ASSERT_TRUE(bench.front.Mub() != nullptr && bench.front.Mub()->InTagMode());
    bench.front.LineDown();
    bench.out.clear();
    bench.loop.Run(10);
    EXPECT_EQ(bench.out.empty(), !serial);
    bench.front.LineUp();
    EXPECT_EQ(bench.front.Mub() != nullptr, serial);
    EXPECT_TRUE(bench.Say("AT+ERB_TRANSPARENT_MODE").ends_with(kLoginPrompt));
    EXPECT_EQ(bench.front.Mub(), nullptr);
    EXPECT_TRUE(bench.Say(kLogIn).ends_with("connected to modem 1\r\n")) << "in either case";
  }
}

TEST(ErbFront, LeavesAMubInUseWhoseUserHasVanished) {
  Bench bench({.lingers = true});
  bench.front.LineUp();
  bench.Say(kLogIn);
  bench.front.LineDown();
  bench.front.LineUp();
  EXPECT_TRUE(bench.Say(kLogIn).ends_with("modem 1 already in use\r\nERB> "));
}

TEST(ErbFront, TakesItsTimeForEachAnswer) {
  Bench bench({.answerTime = std::chrono::milliseconds(300)});
  bench.front.LineUp();
  EXPECT_EQ(bench.Say("root\r\nzzz\r\n"), "root\r");
  bench.out.clear();
  bench.loop.Run(1);
  EXPECT_EQ(bench.out, "\r\nPassword: ") << "what came too early is lost";
}

TEST(ErbFront, KeepsNoMoreThanALineOfWhatItHears) {
  Bench bench;
  bench.front.LineUp();
  bench.Say("root\r\nzzz\r\n");
  const std::string noise(1'000'000, '\xfe');
  EXPECT_LE(bench.Say(noise + "\r\n").size(), 3 * CommandLine::kLimit);
  EXPECT_TRUE(bench.Say("modem 0\r\n").ends_with("connected to modem 0\r\n"));
  EXPECT_LE(bench.Say(noise).size(), CommandLine::kLimit);
  EXPECT_TRUE(bench.Say("AT+ERB_TRANSPARENT_MODE").ends_with(kLoginPrompt));
}

}  // namespace
}  // namespace corvex::simulation
