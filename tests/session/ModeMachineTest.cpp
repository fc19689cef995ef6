#include "session/ModeMachine.h"

#include <gtest/gtest.h>

#include <optional>

#include "support/Program.h"

namespace corvex {
namespace {

using test::HeronModem;
using test::kConnect;
using test::Program;
using test::Responder;

struct Session : test::SessionTest {
  Session() { Sent(); }
  /// What has been sent since the last call.
  std::string Sent() { return std::exchange(p.comPort.sent, {}); }
  void Click(MenuItem& entry) {
    p.Do([&] { entry.click(); });
  }
};

TEST(Start, TheMenusAndThePositionFollowTheSettings) {
  Program p;
  p.settings.config.testmode.Set(true);
  p.settings.config.atmode.Set(false);
  p.settings.config.configmode.Set(false);
  p.settings.positions.termleft.Set(1200);
  p.settings.positions.termtop.Set(900);
  p.settings.config.brand.Set(std::string("Acme"));
  p.Start(0);
  EXPECT_TRUE(p.term.mnuTest.visible);
  EXPECT_FALSE(p.term.mnuAT.visible);
  EXPECT_FALSE(p.term.mnuMapping.visible);
  EXPECT_FALSE(p.term.cmdTop[1].visible);
  EXPECT_FALSE(p.term.mnuTrace.visible);
  EXPECT_EQ(p.term.rect, (Rect{1200, 900, 8950, 4095}));
  EXPECT_EQ(p.term.caption, "");
  EXPECT_FALSE(p.term.Picture1.visible);
  EXPECT_TRUE(p.term.imgLogo.picture.Get().starts_with("file:"));
  EXPECT_TRUE(p.term.imgLogo.picture.Get().ends_with("logo.gif"));
}

TEST(Start, LeavesOnlyThePortAndThePrinterPathInTheSettings) {
  Program p;
  p.Start(0.01);
  std::string path = p.settings.printer.path.Get();
  EXPECT_EQ(p.folder.Read("corvex.ini"),
            "[printer]\r\npath=" + path + "\r\n[port]\r\nsettings=115200,n,8,1\r\nflow=2\r\ncom=1\r\n");
  EXPECT_EQ(p.folder.Count(), 1) << "no recording unless asked for";
}

// One after the other, each from where the one before has led.
TEST_F(Session, AClickSendsTheseBytesAndLeadsToThisModeAndItsPanel) {
  struct Case {
    MenuItem& entry;
    std::string sent;
    ModemMode mode;
    bool open;
  };
  const std::string toTest = "at+wquiltest\r\n";
  const Case cases[] = {
      {term.mnuPort, "\x18", ModemMode::PortSetup, false},
      {term.mnuPort, kConnect, ModemMode::Terminal, true},
      {term.mnuTest, "\x18\x18\x18" + toTest, ModemMode::TestInterface, true},
      {term.mnuTerminal, "quit\r\n\x18" + kConnect, ModemMode::Terminal, true},
      {term.mnuTest, "\x18\x18\x18" + toTest, ModemMode::TestInterface, true},
      // As a toggle it leaves the test shell once more.
      {term.mnuTest, "quit\r\nat\r\nquit\r\n\x18" + kConnect, ModemMode::Terminal, true},
      {term.mnuAT, "\x18\x18", ModemMode::AtMode, true},
      {term.mnuTest, "\x18" + toTest, ModemMode::TestInterface, true},
      {term.mnuAT, "quit\r\nat\r\n", ModemMode::AtMode, true},
      {term.mnuTest, "\x18" + toTest, ModemMode::TestInterface, true},
      {term.mnuPort, "quit\r\nat\r\n", ModemMode::PortSetup, false},
      {term.mnuTerminal, kConnect, ModemMode::Terminal, true},
      {term.mnuSlaveONSlave,
       "\x18"
       "AT+ERB_TRANSPARENT_MODE\x18" +
           kConnect,
       ModemMode::Terminal, true},
      // Offline closes the link first and sends through the one that this opens.
      {term.mnuOffline, "\x18", ModemMode::Offline, true},
      {term.mnuOffline, "", ModemMode::Offline, false},
      {term.mnuAT, "", ModemMode::AtMode, true},
      {term.mnuAT, "", ModemMode::Offline, false},
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    SCOPED_TRACE(i);
    Click(cases[i].entry);
    EXPECT_EQ(Sent(), cases[i].sent);
    const ModemMode mode = term.main().mode;
    EXPECT_EQ(mode, cases[i].mode);
    EXPECT_EQ(p.comPort.PortOpen(), cases[i].open);
    EXPECT_EQ(term.tmrWatchdog.enabled, mode == ModemMode::Terminal);
    EXPECT_EQ(term.mnuPort.checked, mode == ModemMode::PortSetup);
    EXPECT_EQ(term.mnuTerminal.checked, mode == ModemMode::Terminal);
    EXPECT_EQ(term.fmOnTab[0].visible, mode == ModemMode::PortSetup);
    EXPECT_EQ(term.fmOnTab[1].visible, mode == ModemMode::TestInterface);
    EXPECT_EQ(term.fmOnTab[4].visible, mode == ModemMode::AtMode);
  }
  EXPECT_EQ(p.settings.config.mubselect.Get(), "3");
  EXPECT_TRUE(term.mnuSlaveONSlave.checked);
  EXPECT_FALSE(term.mnuMasterONMaster.checked);
}

TEST_F(Session, ThePanelsShowTheSideThatTheRouteUses) {
  p.settings.config.lan.Set(true);
  Click(term.mnuPort);
  EXPECT_EQ(term.tabConnect.selected, 2);
  EXPECT_TRUE(term.frmLan.visible);
  EXPECT_FALSE(term.frmSerial.visible);
  EXPECT_EQ(term.rect.Get().height, 4095 + term.frmAux.rect.Get().height);
  p.Do([&] {
    term.tabConnect.selected = 1;
    term.tabConnect.click();
  });
  EXPECT_TRUE(term.frmSerial.visible);
  EXPECT_FALSE(term.frmLan.visible);
}

TEST_F(Session, ThePanelShowsBytesInItsView) {
  Click(term.mnuAT);
  p.comPort.Arrive("OK");
  p.loop.Run(0.1);
  term.OptBase[1].value = true;
  p.comPort.Arrive(std::string("\0\xFF", 2));
  p.loop.Run(0.1);
  term.OptBase[1].value = false;
  term.OptBase[0].value = true;
  p.comPort.Arrive("\r\xA5");
  p.loop.Run(0.1);
  EXPECT_EQ(term.txtRx.Text(), "OKd 0 d 255 hD hA5 ");
}

TEST_F(Session, APanelThatNeedsTheLinkIsNotEnteredWithoutOne) {
  p.settings.config.lan.Set(true);
  p.sock.reachable = false;
  Click(term.mnuTest);
  Click(term.mnuAT);
  EXPECT_EQ(term.main().mode, ModemMode::Terminal);
  Click(term.mnuPort);  // the way to mend the address stays open
  EXPECT_EQ(term.main().mode, ModemMode::PortSetup);
}

TEST_F(Session, OfflineClearsTheScreenAndItsIndicators) {
  p.comPort.Arrive(
      "<tml><TextScreen></tml>\x1B[2;2Hrow one<tml><Paint></tml><tml><Sk>A|1|B|2|C|3|D|4</tml>"
      "<tml><Sig>27</tml><tml><Sim></tml><tml><Temp>31</tml>");
  p.loop.Run(0.2);
  EXPECT_TRUE(term.corvexLbl[0].caption.Get().starts_with("row one"));
  EXPECT_TRUE(term.lblsim.visible);
  Click(term.mnuOffline);
  EXPECT_EQ(term.corvexLbl[0].caption, std::string(39, ' '));
  EXPECT_FALSE(term.lblsim.visible);
  EXPECT_FALSE(term.lblTemp.visible);
  EXPECT_FALSE(term.corvexLbl[7].visible);
  EXPECT_FALSE(term.cmdSK[0].enabled);
}

TEST_F(Session, AShutdownOfTheTerminalEndsTheSession) {
  p.comPort.Arrive("<tml><Shutdown></tml>");
  p.loop.Run(1);
  EXPECT_EQ(term.main().mode, ModemMode::Offline);
  EXPECT_EQ(Sent(), "\x18");
  EXPECT_FALSE(p.comPort.PortOpen());
}

TEST_F(Session, AModalWindowReturnsToTheMenus) {
  for (const bool byModem : {true, false}) {
    ModemMode during = ModemMode::Closing;
    p.loop.After(std::chrono::seconds(1), [&] {
      during = term.main().mode;
      p.loop.Enter([&] { p.windows.attached.back()->queryUnload(); });
    });
    if (byModem) {
      Feed("<tml><BookMode></tml>", 5);
    } else {
      p.Do([&] { term.cmdTop[1].click(); });
    }
    EXPECT_EQ(during, byModem ? ModemMode::Offline : ModemMode::DeviceManager);
    EXPECT_EQ(Sent(), "\x18\x18" + kConnect);
    EXPECT_EQ(term.main().mode, ModemMode::Terminal);
    EXPECT_EQ(p.windows.attached.size(), 1u);  // released by its closing
  }
}

TEST_F(Session, TheUpgradeWindowIsModelessAndKeepsTheBytes) {
  Click(term.mnuUpgrade);
  EXPECT_EQ(Sent(), "\x18");
  EXPECT_EQ(term.main().mode, ModemMode::Upgrade);
  p.comPort.Arrive("reply");
  p.loop.Run(0.1);
  EXPECT_EQ(term.received().TakeRx(), "reply");
}

TEST_F(Session, MinimisingStopsTheTimersUntilTheNextModeChange) {
  p.Do([&] {
    term.windowState = WindowState::Minimized;
    term.resize();
  });
  p.loop.Run(60);
  EXPECT_EQ(Sent(), "");
  EXPECT_FALSE(term.tmrWatchdog.enabled);
  Click(term.mnuTerminal);
  EXPECT_TRUE(term.tmrWatchdog.enabled);
}

TEST(Closing, SavesAPositionOnTheScreen) {
  for (const Twips left : {1920 * 15, 3000}) {
    Program closed;
    closed.Start(3);
    closed.Do([&] { closed.term.rect = Rect{left, 2000, 8950, 4095}; });
    closed.Do([&] { closed.term.mnuExit.click(); });
    EXPECT_TRUE(closed.loop.Ended());
    EXPECT_EQ(closed.settings.ReadSetting("positions", "termleft", "none"), left == 3000 ? "3000" : "none");
  }
}

TEST_F(Session, AClickWhileClosingStartsNothing) {
  for (MenuItem* entry : {&term.mnuTerminal, &term.mnuPort, &term.mnuTest, &term.mnuSlaveONMaster}) {
    p.loop.After(std::chrono::milliseconds(100), [this, entry] { p.loop.Enter([&] { entry->click(); }); });
  }
  p.Do([&] { term.queryUnload(); });
  EXPECT_TRUE(p.loop.Ended());
  EXPECT_EQ(Sent(), "\x18\x18");
  EXPECT_EQ(term.main().mode, ModemMode::Closing);
  EXPECT_FALSE(p.comPort.PortOpen());
}

TEST(Closing, EndsEveryWaitWithinASecond) {
  struct Case {
    const char* name;
    double at;  // seconds after the start
    std::function<void(Program&)> setUp;
  };
  const Case cases[] = {
      {"in the first probe", 0.5, [](Program&) {}},
      {"in a LAN connect that never counts down", 0.5,
       [](Program& p) {
         p.settings.config.lan.Set(true);
         p.sock.fallsBack = true;
       }},
      {"in a login", 2,
       [](Program& p) {
         p.settings.config.lan.Set(true);
         p.settings.config.erbaccess.Set(true);
       }},
      {"in a pause over midnight", 0.5, [](Program&) {}},
      {"connected over the LAN", 5, [](Program& p) { p.settings.config.lan.Set(true); }},
      {"offline", 5, [](Program& p) { p.windows.activates = false; }},
  };
  for (const Case& c : cases) {
    const bool overMidnight = std::string_view(c.name).find("midnight") != std::string_view::npos;
    Program p(overMidnight ? 86399.8 : 36000);
    Responder modem(p.sock, HeronModem());
    c.setUp(p);
    EventLoop::Time asked{0};
    EventLoop::Time ended{0};
    p.loop.After(std::chrono::duration_cast<EventLoop::Time>(std::chrono::duration<double>(c.at)), [&] {
      asked = p.loop.Now();
      p.loop.Enter([&] { p.term.queryUnload(); });
      ended = p.loop.Now();
    });
    p.Start(c.at + 3);
    EXPECT_TRUE(p.loop.Ended()) << c.name;
    EXPECT_LE(ended - asked, std::chrono::seconds(1)) << c.name;
  }
}

TEST(Closing, AMessageBoxInTheWayEndsToo) {
  Program p;
  p.dialogs.onBox = [&] {
    p.loop.After(std::chrono::seconds(1), [&] { p.loop.Enter([&] { p.term.queryUnload(); }); });
    for (;;) p.loop.Pump();
  };
  p.Start(10);
  EXPECT_TRUE(p.loop.Ended());
}

TEST(Overtaken, AProbeEndsWithoutAFurtherByteWhenTheUserGoesElsewhere) {
  struct Case {
    MenuItem frmTerm::*entry;
    ModemMode mode;  // with a modem that answers
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
      std::size_t sentThen = 0;  // when what was clicked had run to its end
      p.loop.After(std::chrono::milliseconds(after), [&] {
        p.loop.Enter([&] { (p.term.*c.entry).click(); });
        sentThen = p.comPort.sent.size();
      });
      p.Start(6);
      EXPECT_EQ(p.term.main().mode, answers ? c.mode : c.silent);
      EXPECT_EQ(p.comPort.sent.size(), sentThen);
      EXPECT_EQ(p.term.pointer, Pointer::Normal);
      EXPECT_EQ(p.term.fmOnTab[0].visible, c.mode == ModemMode::PortSetup);
    }
  }
}

TEST(Overtaken, WhatLeavesTheMenusSendsNothingMoreWhenTheUserGoesElsewhere) {
  for (MenuItem frmTerm::*first :
       {&frmTerm::mnuAT, &frmTerm::mnuTest, &frmTerm::mnuPort, &frmTerm::mnuSlaveONSlave}) {
    for (MenuItem frmTerm::*second : {&frmTerm::mnuOffline, &frmTerm::mnuTerminal}) {
      for (int after = 10; after < 300; after += 40) {
        test::Session s;
        std::size_t sentThen = 0;  // when what was clicked second had run to its end
        s.p.loop.After(std::chrono::milliseconds(after), [&] {
          s.p.loop.Enter([&] { (s.term.*second).click(); });
          sentThen = s.p.comPort.sent.size();
        });
        s.p.Do([&] { (s.term.*first).click(); });
        s.p.loop.Run(2);
        SCOPED_TRACE((s.term.*first).name() + ' ' + (s.term.*second).name() + ' ' + std::to_string(after));
        const bool online = second == &frmTerm::mnuTerminal;
        EXPECT_EQ(s.term.main().mode, online ? ModemMode::Terminal : ModemMode::Offline);
        EXPECT_EQ(s.p.comPort.sent.size(), sentThen);
        EXPECT_EQ(s.term.main().tagSession, online);
      }
    }
  }
}

TEST(Overtaken, TheWayIntoThePortPanelDoesNotFailASessionBegunMeanwhile) {
  Program p;
  std::optional<Responder> modem;
  p.comPort.onSent = [&](std::string_view) { p.comPort.Arrive("\xF0\x0F"); };
  p.dialogs.yes = true;  // to the port panel after rubbish
  p.dialogs.onBox = [&] {
    modem.emplace(p.comPort, HeronModem());
    p.loop.After(std::chrono::milliseconds(20), [&] { p.loop.Enter([&] { p.term.mnuTerminal.click(); }); });
  };
  p.Start(6);
  EXPECT_EQ(p.dialogs.shown.size(), 1u);
  EXPECT_EQ(p.term.main().mode, ModemMode::Terminal);
}

TEST(Overtaken, ALanConnectThatIsLeftStaysClosed) {
  for (const bool fallsBack : {true, false}) {
    Program p;
    p.settings.config.lan.Set(true);
    p.sock.fallsBack = fallsBack;
    p.sock.answers = false;
    p.loop.After(std::chrono::milliseconds(500), [&] { p.loop.Enter([&] { p.term.mnuOffline.click(); }); });
    p.Start(0.4);
    p.loop.Run(20);
    EXPECT_EQ(p.term.main().mode, ModemMode::Offline);
    EXPECT_EQ(p.sock.GetState(), SocketControl::kClosed);
    EXPECT_TRUE(p.dialogs.shown.empty());
  }
}

TEST(Connect, AModemThatRefusesTheTagStreamIsToldAndLeft) {
  for (const bool byMenu : {true, false}) {
    Program p;
    Responder modem(p.comPort, {{"at+gmm\r\n", "OK"}});
    p.windows.activates = !byMenu;
    p.Start(byMenu ? 0.2 : 3);
    if (byMenu) p.Do([&] { p.term.mnuTerminal.click(); });
    EXPECT_EQ(p.term.main().mode, ModemMode::Offline);
    EXPECT_FALSE(p.comPort.PortOpen());
    EXPECT_EQ(p.term.LblMsg[0].caption, "No Valid Response");
    EXPECT_TRUE(p.term.frmMsg.visible);
  }
  Program lan;
  lan.settings.config.lan.Set(true);
  Responder modem(lan.sock, {{"at+gmm\r\n", "OK"}});
  lan.Start(4);
  EXPECT_EQ(lan.term.main().mode, ModemMode::AwaitIntro);  // stays where it is
  EXPECT_FALSE(lan.term.frmMsg.visible);
}

TEST(Connect, ARepeatedConnectAtAWrongSpeedNamesTheParameters) {
  Program p;
  p.windows.activates = false;
  p.comPort.onSent = [&](std::string_view) { p.comPort.Arrive("\xF0\x0F"); };
  p.Start(0.2);
  p.Do([&] { p.term.mnuTerminal.click(); });
  EXPECT_EQ(p.term.LblMsg[0].caption, "Invalid response at 115200,n,8,1");
  EXPECT_EQ(p.term.LblMsg[1].caption, "Check parameters and try again");
  EXPECT_EQ(p.term.main().mode, ModemMode::AwaitIntro);
}

TEST(Gps, TheEntryAndThePanelFollowTheSetting) {
  Program p;
  p.Start(0);
  EXPECT_TRUE(p.term.lblGps[0].visible);
  for (const bool shown : {false, true}) {
    p.Do([&] { p.term.mnuGPS.click(); });
    EXPECT_EQ(p.term.lblGps[0].visible, shown);
    EXPECT_EQ(p.settings.config.showgps.Get(), shown);
    EXPECT_FALSE(p.term.mnuGPS.checked) << "the mark comes back with the next activation only";
  }
  p.Do([&] {
    p.term.SetActive(false);
    p.term.SetActive(true);
  });
  EXPECT_TRUE(p.term.mnuGPS.checked);
}

}  // namespace
}  // namespace corvex
