#include <gtest/gtest.h>

#include <algorithm>

#include "support/Program.h"
#include "support/UnitLink.h"

// Whole sessions with the simulated terminal unit, in virtual time.

namespace corvex {
namespace {

using simulation::Faults;
using simulation::UnitOptions;
using test::Program;
using test::UnitLink;

std::string Row(const frmTerm& term, std::size_t row) {
  const std::string& text = term.corvexLbl[row].caption;
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

/// What is to be seen of the idle screen once a session stands.
void ExpectIdleScreen(const frmTerm& term) {
  EXPECT_EQ(term.main().mode, ModemMode::Terminal);
  EXPECT_NE(Row(term, 0).find("CORVEX MARINE"), std::string::npos) << Row(term, 0);
  EXPECT_TRUE(Row(term, 2).starts_with("Network")) << Row(term, 2);
  EXPECT_TRUE(term.cmdSK[0].enabled);
  EXPECT_TRUE(term.lblsim.visible);
  EXPECT_TRUE(term.corvexLbl[7].visible);
  EXPECT_FALSE(term.frmMenu.visible);
  // A late line can let the answer to the first command pass for the one that names the terminal.
  EXPECT_TRUE(term.caption.Get().starts_with("Quil Heron ") ||
              term.caption.Get().starts_with(" Quil Terminal Emulator "))
      << term.caption;
}

/// A program with a unit at the end of each route, and the settings for one of them.
struct Routes {
  explicit Routes(bool lan) { p.settings.config.lan.Set(lan); }
  Program p;
  UnitLink<test::FakeSerial> serial{p.loop, p.comPort};
  UnitLink<test::FakeSocket> tcp{p.loop, p.sock};
};

TEST(SessionWithUnit, ATickingUnitKeepsTheSessionForAnHour) {
  for (const bool lan : {false, true}) {
    Routes routes(lan);
    Program& p = routes.p;
    p.Start(3600);
    ExpectIdleScreen(p.term);
    const std::string& sent = lan ? p.sock.sent : p.comPort.sent;
    EXPECT_EQ(std::count(sent.begin(), sent.end(), 'g'), 1) << "one probe: " << sent;
  }
}

TEST(SessionWithUnit, ALostLineIsReconnectedWhenItIsBack) {
  for (const bool lan : {false, true}) {
    Routes routes(lan);
    Program& p = routes.p;
    p.Start(4);
    p.sock.reachable = false;
    p.comPort.Vanish();
    routes.tcp.unit.LineDown();
    p.sock.PeerCloses();
    p.loop.Run(60);
    EXPECT_EQ(p.term.main().mode, ModemMode::Failed);
    EXPECT_FALSE(p.comPort.PortOpen());
    p.comPort.available = p.sock.reachable = true;
    p.loop.Run(20);
    ExpectIdleScreen(p.term);
  }
}

TEST(SessionWithUnit, EndsInItsScreenHoweverTheLineCutsOrDelays) {
  for (std::uint32_t seed = 1; seed <= 20; ++seed) {
    Program p;
    Faults faults{.seed = seed, .cut = true};
    if (seed % 2 == 0) faults.late = std::chrono::milliseconds(10 * seed);
    UnitLink unit(p.loop, p.comPort, {.seed = seed}, faults);
    p.Start(6);
    ExpectIdleScreen(p.term);
  }
}

TEST(SessionWithUnit, SurvivesAGarblingLineAndIsWholeOnceItIsGoodAgain) {
  for (std::uint32_t seed = 1; seed <= 20; ++seed) {
    Program p;
    {
      UnitLink bad(p.loop, p.comPort, {.tour = true, .seed = seed},
                   {.seed = seed, .garble = 0.02, .drop = 0.02, .cut = true});
      p.Start(60);
    }
    p.comPort.Vanish();
    p.comPort.available = true;
    UnitLink good(p.loop, p.comPort);
    p.loop.Run(40);
    // What the bad line left in the scanner may cost the screen; the next painting mends it.
    p.Do([&] { p.term.mnuTerminal.click(); });
    p.loop.Run(3);
    EXPECT_EQ(p.term.main().mode, ModemMode::Terminal) << seed;
    EXPECT_TRUE(Row(p.term, 2).starts_with("Network")) << seed << ' ' << Row(p.term, 2);
  }
}

}  // namespace
}  // namespace corvex
