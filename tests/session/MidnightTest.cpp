#include <gtest/gtest.h>

#include <optional>

#include "support/Program.h"

namespace corvex {
namespace {

// A pause that runs over midnight does not end by itself. What the user does meanwhile is tested in
// tests/data/streams/midnight.txt.
TEST(Midnight, AnUnattendedSessionIsBackAfterIt) {
  constexpr double kMidnight = 86400;
  // The watchdog ticks every 8 s, and a connect to a silent unit takes two: some of them run over midnight.
  int held = 0;
  for (int i = 0; i < 120; ++i) {
    SCOPED_TRACE(i);
    const double start = kMidnight - 90 - 0.1 * i;
    test::Program p(start);
    std::optional<test::Responder> modem;
    const auto at = [&](double seconds, const EventLoop::Task& act) {
      const std::chrono::duration<double> delay(kMidnight + seconds - start);
      p.loop.After(std::chrono::duration_cast<EventLoop::Time>(delay), act);
    };
    const auto speaks = [&] { modem.emplace(p.comPort, test::HeronModem()); };
    const auto isSilent = [&] {
      modem.reset();
      p.comPort.onSent = nullptr;
    };
    ModemMode mode = ModemMode::Failed;
    speaks();
    at(-60, isSilent);
    at(20, speaks);
    at(45, [&] { held += p.term.main().mode == ModemMode::Terminal ? 0 : 1; });
    for (int second = -100; second < 300; ++second) {
      at(second, [&] {
        if (modem && p.term.main().mode == ModemMode::Terminal) p.comPort.Arrive("<tml><Time>10:00</tml>");
      });
    }
    at(300, [&] { mode = p.term.main().mode; });
    p.Start(3);
    ASSERT_EQ(p.term.main().mode, ModemMode::Terminal);
    p.loop.Run(kMidnight + 300 - start);
    ASSERT_EQ(mode, ModemMode::Terminal);
  }
  EXPECT_GT(held, 10) << "no pause has run over midnight";
}

}  // namespace
}  // namespace corvex
