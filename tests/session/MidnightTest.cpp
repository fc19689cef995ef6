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

TEST(Midnight, AKeyAWalkAndAMenuGoOnAfterIt) {
  const std::string list = "<tml><ChoiceScreen><Title>Beam<1>A<2>B<3>C<4>D<INDEXLINE>1</tml>";
  const std::string menu = "<tml><MenuScreen><Title>Main menu<1>001Call|5<INDEXLINE>1</tml>";
  for (const bool walk : {true, false}) {
    SCOPED_TRACE(walk);
    Unattended u(kMidnight - 5);
    test::Program& p = u.p;
    if (walk) {
      u.At(-0.5, [&] { p.comPort.Arrive(list); });
      u.At(-0.15, [&] {
        p.term.ListChoice.listIndex = 3;
        p.term.ListChoice.doubleClick();
      });
    } else {
      u.At(-0.01, [&] { p.comPort.Arrive(menu); });
    }
    u.At(30, [&] { EXPECT_EQ(p.loop.Waits(), 1); });
    p.loop.Run(90);
    EXPECT_EQ(p.loop.Waits(), 0);
    EXPECT_FALSE(p.term.keys().Busy());
    EXPECT_EQ(p.term.frmChoice.visible, walk) << "the unit is in the list";
    EXPECT_EQ(p.term.frmMenu.visible, !walk);
    EXPECT_EQ(p.term.lblTime.caption, "10:00");
    p.comPort.sent.clear();
    p.Do([&p] { p.term.cmdSK[0].click(); });
    p.comPort.LetLeave();
    EXPECT_TRUE(p.comPort.sent.ends_with("\x15"));
  }
}

TEST(Midnight, WhatTheUserChoosesInAHeldPauseIsDoneAtOnce) {
  Unattended u(kMidnight - 5);
  u.At(-0.03, [&u] { u.p.term.mnuAT.click(); });
  u.At(10, [&u] {
    EXPECT_EQ(u.p.term.main().mode, ModemMode::Terminal) << "the farewell is held";
    u.p.term.mnuTerminal.click();
  });
  u.At(13, [&u] { EXPECT_EQ(u.p.loop.Waits(), 0); });
  u.p.loop.Run(90);
  EXPECT_EQ(u.p.term.main().mode, ModemMode::Terminal) << "what was given up does not come again";
}

}  // namespace
}  // namespace corvex
