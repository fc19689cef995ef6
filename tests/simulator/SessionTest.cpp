#include <gtest/gtest.h>

#include "support/Program.h"
#include "support/UnitLink.h"

namespace corvex {
namespace {

/// The whole program on the simulated unit, which is neither told how the program reads its stream nor where
/// the program's reads will cut it.
TEST(SimulatedSession, ShowsTheUnitsScreensThroughALineThatCuts) {
  test::Program p;
  test::UnitLink unit(p.loop, p.comPort, {.startTime = 1143806400}, {.cut = true});
  p.Start(3);
  auto& term = p.term;
  ASSERT_EQ(term.main().mode, ModemMode::Terminal);
  const auto press = [&](std::string_view bytes, double seconds = 1) {
    p.comPort.Output(bytes);
    p.loop.Run(seconds);
  };
  const auto row = [&](std::size_t index) { return term.corvexLbl[index].caption.Get(); };

  EXPECT_EQ(p.windows.applicationTitle, "Quil Heron ");
  EXPECT_EQ(row(2), "Network   Atlantic East                ");
  EXPECT_EQ(term.lblTime.caption, "12:00");
  EXPECT_EQ(term.cmdSK[1].caption, "&Mail box");

  press("\r");
  EXPECT_TRUE(term.frmMenu.visible);
  ASSERT_EQ(term.ListMenu.Items().size(), 11U) << "Exit Menu, nine items and the mail";
  EXPECT_EQ(term.ListMenu.Items()[4].text, " 4. Setup");
  press(" 4");
  EXPECT_EQ(term.frmMenu.caption, "4 Setup");
  press("1");
  EXPECT_TRUE(term.frmChoice.visible);
  EXPECT_FALSE(term.frmMenu.visible);
  press("\x1b[B\x1b[B");
  EXPECT_EQ(term.ListChoice.listIndex, 2);
  press("\r");
  EXPECT_FALSE(term.frmChoice.visible);
  EXPECT_EQ(term.LblMsg[1].caption, "Norsk");
  p.loop.Run(3);
  EXPECT_TRUE(term.frmMenu.visible) << "back in Setup when the message has gone";

  press("\x14");
  EXPECT_FALSE(term.frmMenu.visible);
  press("1");
  press("1");
  press("\x1b[B\x1b[B");
  EXPECT_TRUE(row(2).starts_with(" > Chandler"));
  EXPECT_TRUE(row(1).starts_with("   Bridge"));

  p.loop.Run(60);
  EXPECT_EQ(p.comPort.opens, 1) << "the time tags kept the watchdog quiet";
  press("\x14");
  press("8", 3);
  EXPECT_EQ(term.main().mode, ModemMode::Offline);
  EXPECT_FALSE(p.comPort.PortOpen());
}

TEST(SimulatedSession, ComesBackAfterTheAdapterWasPulledOut) {
  test::Program p;
  test::UnitLink unit(p.loop, p.comPort);
  p.Start(3);
  p.comPort.Vanish();
  p.loop.Run(20);
  EXPECT_FALSE(unit.unit.InTagMode());
  p.comPort.available = true;
  p.loop.Run(20);
  EXPECT_EQ(p.term.main().mode, ModemMode::Terminal);
  EXPECT_TRUE(unit.unit.InTagMode());
}

}  // namespace
}  // namespace corvex
