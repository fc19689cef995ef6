#include <gtest/gtest.h>

#include "support/Program.h"

// What else the user does while a key is on its way. The keys themselves are tested by tests/data/streams.

namespace corvex {
namespace {

using namespace std::chrono_literals;
using test::Program;
using test::Responder;
using test::SessionTest;

constexpr const char* kList = "<tml><ChoiceScreen><Title>Language<1>A<2>B<3>C<4>D<5>E<INDEXLINE>1</tml>";

TEST_F(SessionTest, AWalkTakesNoKeyButTheOneThatEndsIt) {
  struct Case {
    std::string name;
    std::function<void(frmTerm&)> act;
    std::string sent;
  };
  const std::string down = "\x1B[B";
  const std::string walk = down + down + down + down + "\r";
  const Case cases[] = {
      {"another row", [](frmTerm& t) { t.ListChoice.doubleClick(); }, walk},
      {"soft key", [](frmTerm& t) { t.cmdSK[0].click(); }, walk},
      {"typed", [](frmTerm& t) { t.CorvexFocus1.keys("x"); }, walk},
      {"row of the screen", [](frmTerm& t) { t.corvexLbl[5].click(); }, walk},
      {"clear", [](frmTerm& t) { t.cmdESC.click(); }, down + down + "\x1B"},
      {"typed clear", [](frmTerm& t) { t.CorvexFocus1.keys("\x1B"); }, down + down + "\x1B"},
      {"offline", [](frmTerm& t) { t.mnuOffline.click(); }, down + down + "\x18"},
  };
  for (const Case& c : cases) {
    Feed("<tml><TextScreen></tml><tml><Sk>OK|5|||||Back|4</tml><tml><Paint></tml>");
    Feed(kList);
    term.ListChoice.listIndex.Adopt(4);
    p.comPort.sent.clear();
    p.loop.After(150ms, [&] { c.act(term); });
    p.Do([&] { term.ListChoice.doubleClick(); });
    p.loop.Run(1);
    EXPECT_EQ(p.comPort.sent, c.sent) << c.name;
  }
}

TEST(Keys, PressedAgainWhileTheLinkIsOpenedTheyAreNotSentTwice) {
  Program p;
  p.settings.config.lan.Set(true);
  const Responder modem(p.sock, test::HeronModem());
  p.Start(3);
  ASSERT_EQ(p.term.main().mode, ModemMode::Terminal);
  p.sock.PeerCloses();
  p.loop.Run(0.01);
  p.sock.sent.clear();
  for (const auto delay : {20ms, 60ms, 100ms}) p.loop.After(delay, [&] { p.term.cmdESC.click(); });
  p.Do([&] { p.term.cmdESC.click(); });
  p.loop.Run(0.5);
  EXPECT_EQ(p.sock.sent, "AT+ERB_TRANSPARENT_MODE\r\n\x1B");
}

TEST_F(SessionTest, RowsDoNotStandStillWhereTheirTimerIsStopped) {
  Feed("<tml><TableScreen></tml><tml><Paint></tml>");
  p.Do([&] { term.corvexLbl[4].click(); });
  Feed("\x1B[4;5Hnews<tml><Sig>31</tml>");
  EXPECT_EQ(term.corvexLbl[2].caption.Get().find("news"), std::string::npos);
  term.windowState.Adopt(WindowState::Minimized);
  p.Do([&] { term.resize(); });
  EXPECT_NE(term.corvexLbl[2].caption.Get().find("news"), std::string::npos);
}

TEST_F(SessionTest, TheFocusGoesBackToTheScreenWhereverItsPlaceIsGone) {
  const char* const menu = "<tml><MenuScreen><Title>Main menu<1>001Call|5<INDEXLINE>1</tml>";
  const auto focusMenu = [&] {
    Feed(menu, 0.1);
    ASSERT_TRUE(term.ListMenu.HasFocus());
  };
  focusMenu();
  term.SetActive(false);
  Feed("<tml><TextScreen></tml><tml><Paint></tml>");
  term.SetActive(true);
  EXPECT_TRUE(term.CorvexFocus1.HasFocus()) << "a screen that came while another window was active";
  p.Do([&] { term.mnuPort.click(); });
  ASSERT_TRUE(term.tabConnect.HasFocus());
  p.Do([&] { term.mnuAT.click(); });
  EXPECT_TRUE(term.CorvexFocus1.HasFocus()) << "from one panel to another";
  for (MenuItem* way : {&term.mnuTest, &term.mnuOffline}) {
    p.Do([&] { term.mnuTerminal.click(); });
    focusMenu();
    p.Do([&] { way->click(); });
    EXPECT_TRUE(term.CorvexFocus1.HasFocus()) << way->name();
    EXPECT_FALSE(term.ListMenu.visible);
  }
}

TEST_F(SessionTest, ATableThatIsLeftDoesNotDisturbTheProbe) {
  Feed("<tml><TableScreen></tml><tml><Paint></tml>");
  p.Do([&] { term.corvexLbl[2].click(); });
  p.loop.Run(0.6);
  p.comPort.sent.clear();
  p.Do([&] { term.mnuTerminal.click(); });
  EXPECT_LT(p.comPort.sent.find("WQUILSTARTTMLB"), p.comPort.sent.find('\x12')) << p.comPort.sent;
}

TEST_F(SessionTest, TheWayBackToTheTopIsSevenTimesClear) {
  p.comPort.sent.clear();
  p.Do([&] { term.keys().SendEscapeSeries(); });
  EXPECT_EQ(p.comPort.sent, std::string(7, '\x1B'));
  p.loop.After(1s, [&] { term.mnuOffline.click(); });
  p.Do([&] { term.keys().SendEscapeSeries(); });
  EXPECT_EQ(p.comPort.sent, std::string(10, '\x1B') + "\x18");
}

TEST_F(SessionTest, ThePictureOfTheWindowGoesToThePrinterIfThereIsOne) {
  KeyEvent key{.keyCode = 118, .alt = true};
  for (const bool present : {true, false}) {
    p.printers.present = present;
    p.Do([&] { term.keyDown(key); });
    p.loop.Run(0.01);
  }
  EXPECT_EQ(p.printers.printed, std::vector<std::string>{"picture of frmTerm"});
  EXPECT_EQ(p.dialogs.shown, std::vector<std::string>{"No printer configured"});
}

}  // namespace
}  // namespace corvex
