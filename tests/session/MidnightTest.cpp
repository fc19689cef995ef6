// A pause that runs over midnight does not end by itself. It must not disable the program either.

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "support/Program.h"

namespace corvex {
namespace {

constexpr double kMidnight = 86400;

/// A session over the serial port whose unit can fall silent.
struct Unattended {
  explicit Unattended(double timeOfDay) : p(timeOfDay) {
    Speak();
    Tick();
    p.Start(3);
    EXPECT_EQ(p.term.main().mode, ModemMode::Terminal);
  }
  /// A unit that lives says so every second.
  void Tick() {
    p.loop.After(std::chrono::seconds(1), [this] { Tick(); });
    if (modem && p.term.main().mode == ModemMode::Terminal) p.comPort.Arrive("<tml><Time>10:00</tml>");
  }
  void Silence() {
    modem.reset();
    p.comPort.onSent = nullptr;
  }
  void Speak() { modem.emplace(p.comPort, test::HeronModem()); }
  /// So many seconds after midnight, or before it; a wait may be going on.
  void At(double seconds, const EventLoop::Task& act) {
    const std::chrono::duration<double> delay(kMidnight + seconds - p.loop.SecondsSinceMidnight());
    p.loop.After(std::chrono::duration_cast<EventLoop::Time>(delay), [this, act] { p.loop.Enter(act); });
  }

  test::Program p;
  std::optional<test::Responder> modem;
};

TEST(Midnight, AnUnattendedSessionIsBackAfterIt) {
  // The watchdog ticks every 8 s, and a connect to a silent unit takes two: some of these are in it.
  int held = 0;
  for (int i = 0; i < 120; ++i) {
    SCOPED_TRACE(i);
    Unattended u(kMidnight - 90 - 0.1 * i);
    u.At(-60, [&u] { u.Silence(); });
    u.At(20, [&u] { u.Speak(); });
    u.At(45, [&] { held += u.p.term.main().mode == ModemMode::Terminal ? 0 : 1; });
    ModemMode mode = ModemMode::Failed;
    u.At(300, [&] { mode = u.p.term.main().mode; });
    u.p.loop.Run(90 + 0.1 * i + 300);
    ASSERT_EQ(mode, ModemMode::Terminal);
  }
  EXPECT_GT(held, 10) << "this shows nothing if midnight falls into no pause";
}

}  // namespace
}  // namespace corvex
