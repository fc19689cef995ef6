#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>

#include "support/Program.h"

namespace corvex {
namespace {

// Tests of the main window that cannot be scripts in tests/data/streams.

using test::HeronModem;
using test::kConnect;
using test::Program;
using test::Responder;

TEST(Start, FollowsTheSettingsAndStoresOnlyAPositionOnTheScreen) {
  for (const Twips left : {3000, 1920 * 15}) {
    Program p;
    p.settings.positions.termleft.Set(1200);
    p.settings.positions.termtop.Set(900);
    p.settings.config.brand.Set(std::string("Acme"));
    Responder modem(p.comPort, HeronModem());
    p.Start(3);
    EXPECT_EQ(p.term.rect, (Rect{1200, 900, 8950, 4095}));
    EXPECT_EQ(p.windows.applicationTitle, "Acme Heron ");
    EXPECT_TRUE(p.term.imgLogo.picture.Get().starts_with("file:"));
    EXPECT_TRUE(p.term.imgLogo.picture.Get().ends_with("logo.gif"));
    p.Do([&] { p.term.rect = Rect{left, 2000, 8950, 4095}; });
    p.Do([&] { p.term.mnuExit.click(); });
    EXPECT_TRUE(p.loop.Ended());
    EXPECT_EQ(p.settings.positions.termleft.Get(), left == 3000 ? 3000 : 1200);
    EXPECT_EQ(p.settings.positions.termtop.Get(), left == 3000 ? 2000 : 900);
  }
}

/// The bytes that a connect sends to a silent modem.
const std::string kFruitless =
    "\x18"
    "ate1\r\nat+gmm\r\n"
    "\x18"
    "at+gmm\r\n";

TEST(Overtaken, AProbeSendsNothingMoreWhenTheUserChangesTheMode) {
  struct Case {
    MenuItem frmTerm::*entry;
    ModemMode mode;  // with an answering modem
    ModemMode silent;
  };
  for (const Case& c : {Case{&frmTerm::mnuTerminal, ModemMode::Terminal, ModemMode::Failed},
                        Case{&frmTerm::mnuOffline, ModemMode::Offline, ModemMode::Offline},
                        Case{&frmTerm::mnuPort, ModemMode::PortSetup, ModemMode::PortSetup}}) {
    for (int i = 0; i < 66; ++i) {
      const bool answers = i % 2 == 0;
      const int after = 120 + 35 * i;  // milliseconds
      SCOPED_TRACE(after);
      Program p;
      std::optional<Responder> modem;
      if (answers) modem.emplace(p.comPort, HeronModem());
      std::size_t sentThen = 0;
      std::string farewell;
      p.loop.After(std::chrono::milliseconds(after), [&] {
        p.comPort.LetLeave();
        sentThen = p.comPort.sent.size();
        if (p.term.main().mode == ModemMode::Terminal) farewell = "\x18";
        p.loop.Enter([&] { (p.term.*c.entry).click(); });
      });
      p.Start(6);
      EXPECT_EQ(p.term.main().mode, answers ? c.mode : c.silent);
      const bool connects = c.entry == &frmTerm::mnuTerminal;
      EXPECT_EQ(p.comPort.sent.substr(sentThen), !connects ? farewell : answers ? kConnect : kFruitless);
      EXPECT_EQ(p.term.pointer, Pointer::Normal);
      EXPECT_EQ(p.term.fmOnTab[0].visible, c.mode == ModemMode::PortSetup);
    }
  }
}

TEST(Overtaken, AModeChangeSendsNothingMoreWhenTheUserChangesTheModeAgain) {
  for (MenuItem frmTerm::*first :
       {&frmTerm::mnuAT, &frmTerm::mnuTest, &frmTerm::mnuPort, &frmTerm::mnuSlaveONSlave}) {
    for (MenuItem frmTerm::*second : {&frmTerm::mnuOffline, &frmTerm::mnuTerminal}) {
      for (int after = 10; after < 300; after += 40) {
        test::Session s;
        std::size_t sentThen = 0;
        s.p.loop.After(std::chrono::milliseconds(after), [&] {
          s.p.comPort.LetLeave();
          sentThen = s.p.comPort.sent.size();
          s.p.loop.Enter([&] { (s.term.*second).click(); });
        });
        s.p.Do([&] { (s.term.*first).click(); });
        s.p.loop.Run(2);
        SCOPED_TRACE((s.term.*first).name() + ' ' + (s.term.*second).name() + ' ' + std::to_string(after));
        const bool online = second == &frmTerm::mnuTerminal;
        EXPECT_EQ(s.term.main().mode, online ? ModemMode::Terminal : ModemMode::Offline);
        const std::set<std::string> expected =
            online ? std::set<std::string>{kConnect, "quit\r\n\x18" + kConnect}
                   : std::set<std::string>{"", "\x18"};
        const std::string sent = s.p.comPort.sent.substr(sentThen);
        EXPECT_TRUE(expected.contains(sent)) << testing::PrintToString(sent);
        EXPECT_EQ(s.term.main().tagSession, online);
      }
    }
  }
}

}  // namespace
}  // namespace corvex
