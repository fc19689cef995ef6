#include "unit/Playback.h"

#include <gtest/gtest.h>

#include <string>

#include "support/VirtualLoop.h"

namespace corvex::simulation {
namespace {

using test::VirtualLoop;

std::vector<WireEvent> Log(const std::string& lines) {
  auto parsed = ParseWireLog("# corvex wire log 1\n" + lines);
  if (const auto* error = std::get_if<WireLogError>(&parsed)) {
    ADD_FAILURE() << error->line << ": " << error->text;
    return {};
  }
  return std::get<std::vector<WireEvent>>(parsed);
}

TEST(WireLog, NamesTheLineThatIsBad) {
  const std::string_view bad[] = {
      "? 1 \"x\"",     ">",        "> x \"x\"",    "> -1 \"x\"",  "> nan \"x\"",           "> 1e300 \"x\"",
      "> 1 x",         "> 1 \"x",  "> 1 \"x\" y",  "> 1 \"\\q\"", "> 1 \"\\x4\"",          "> 1 \"\\x",
      "> 1 \"\\xg0\"", "> 1 \"\\", "> 1 \"\xe6\"", "= 1",         "< 0.1 \"back in time\""};
  for (const std::string_view line : bad) {
    const auto parsed =
        ParseWireLog("# corvex wire log 1\n# comment\n= 0.5 open\n" + std::string(line) + "\n= 9 close");
    const auto* error = std::get_if<WireLogError>(&parsed);
    ASSERT_NE(error, nullptr) << line;
    EXPECT_EQ(error->line, 4) << line;
    EXPECT_FALSE(error->text.empty());
  }
  EXPECT_TRUE(std::holds_alternative<WireLogError>(ParseWireLog("")));
}

struct Player {
  explicit Player(const std::string& lines)
      : playback(
            loop, Log(lines),
            [this](std::string_view bytes) { out += std::string(bytes) + "@" + Clock() + " "; },
            [this] {
              out += "hang-up@" + Clock() + " ";
              playback.LineDown();
            }) {}
  /// Tenths of a second since the start.
  std::string Clock() const {
    return std::to_string(std::chrono::round<std::chrono::milliseconds>(loop.Now()).count() / 100);
  }

  VirtualLoop loop;
  std::string out;
  Playback playback;
};

constexpr const char* kTwoSessions =
    "= 0.0 open\n> 0.5 \"at\\r\"\n< 1.0 \"OK\"\n< 1.2 \"more\"\n= 2.0 close\n= 3.0 open\n< 3.1 \"second\"\n";

TEST(Playback, LosesTheLineWhereTheRecordDoesAndTakesAnyPassword) {
  Player player(
      "= 0 open serial COM1\n> 0.1 \"(password)\\r\\n\"\n= 0.4 a note\n< 0.5 \"in\"\n= 0.8 line lost\n= 8 "
      "close\n");
  player.playback.LineUp();
  player.playback.Receive("se");
  player.loop.Run(1);
  player.playback.Receive("same\r\n");
  player.loop.Run(9);
  EXPECT_EQ(player.out, "in@14 hang-up@17 ");
}

TEST(Playback, GoesOnWithoutAPcThatDoesNotPlayItsPart) {
  Player player(kTwoSessions);
  player.playback.LineUp();
  player.playback.Receive("something else");
  player.loop.Run(20);
  EXPECT_EQ(player.out, "OK@60 more@62 hang-up@120 ");
  player.playback.LineUp();
  player.loop.Run(1);
  EXPECT_TRUE(player.out.ends_with("second@201 "));
}

}  // namespace
}  // namespace corvex::simulation
