#include "link/PortPanel.h"

#include <gtest/gtest.h>

#include "support/Program.h"

namespace corvex {
namespace {

/// A program that has not connected.
struct PortPanelTest : ::testing::Test {
  PortPanelTest() { p.windows.activates = false; }
  void Open() {
    p.Start(1);
    p.Do([this] { term.mnuPort.click(); });
    ASSERT_EQ(term.main().mode, ModemMode::PortSetup);
  }
  /// As the window system does when the user presses an arrow.
  void Step(UpDown& arrows, int by) {
    p.Do([&] {
      arrows.AdoptValue(arrows.value + by);
      arrows.change();
    });
  }
  void Click(CheckBox& box, bool value) {
    p.Do([&] {
      box.value.Adopt(value);
      box.click();
    });
  }
  void Key(int keyCode, bool ctrl, bool repeated = false) {
    KeyEvent key{.keyCode = keyCode, .ctrl = ctrl, .repeated = repeated};
    p.Do([&] { term.keyDown(key); });
    p.loop.Run(0.01);
  }
  test::Program p;
  frmTerm& term = p.term;
};

TEST_F(PortPanelTest, StepsChangeTheirOwnFieldAndKeepTheOthers) {
  struct Case {
    std::string before;
    UpDown& arrows;
    int by;
    std::string after;
    const char* shown;
    const char* position;
  };
  const std::string longParity(10'000, 'e');
  const Case cases[] = {
      {"57600,e,8,1", term.UpDownSpeed, 1, "115200,e,8,1", "115200", "6"},
      {"115200,e,8,1", term.UpDownSpeed, 6, "115200,e,8,1", "115200", "6"},
      {"14400,m,8,1", term.UpDownSpeed, 1, "4800,m,8,1", "4800", "1"},
      {"9600,e,8,1", term.UpDownData, -9, "9600,e,4,1", "4", "4"},
      {"9600,e,8,x", term.UpDownStopBits, -1, "9600,e,8,1.5", "1.5", "1"},
      // What the settings file may hold.
      {"", term.UpDownSpeed, 3, "19200,,,", "19200", "3"},
      {",,,,", term.UpDownStopBits, -2, ",,,1", "1", "0"},
      {"99999999999, E ,99,-1,x", term.UpDownData, -1, "99999999999, E ,7,-1", "7", "7"},
      {"9600," + longParity + ",8,1", term.UpDownSpeed, -9, "2400," + longParity + ",8,1", "2400", "0"},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.after.substr(0, 40));
    p.comPort.SetSettings(c.before);
    Step(term.UpDownPort, 1);  // shows everything anew
    Step(c.arrows, c.by);
    EXPECT_EQ(p.comPort.Settings(), c.after);
    EXPECT_EQ(c.arrows.buddy().Text(), c.shown);
    EXPECT_EQ(c.arrows.buddy().tag, c.position);
    EXPECT_EQ(std::to_string(c.arrows.value), c.position);
  }
}

TEST_F(PortPanelTest, ThePortsArrowsWalkAllNumbersAndTellWhatStandsBehindThem) {
  p.serialPorts.devices = {{"/dev/modem", {PortState::Usable, "Adapter", ""}},
                           {"/dev/locked", {PortState::NoPermission, "", "dialout"}},
                           {"/dev/alone", {PortState::NoPermission, "", ""}}};
  p.folder.Write(
      "corvex.ini",
      "[devices]\ncom1=/dev/modem\ncom2=/dev/locked\ncom3=/dev/alone\ncom4=/dev/none\n[port]\ncom=1\n");
  p.Start(0);
  const std::string tip = "Which serial port is the modem connected to?\n";
  EXPECT_EQ(term.txtPort.Text(), "com 1");  // before the panel is ever opened
  EXPECT_TRUE(term.txtPort.enabled);
  EXPECT_EQ(term.txtPort.toolTip, tip + "/dev/modem, Adapter");
  for (const char* told :
       {"usermod -aG dialout USER", "ask the administrator",
        "There is no /dev/none now; connect the adapter,\nor name the device in corvex.ini, section "
        "[devices], key com4.\nPresent: com 1 (/dev/modem), com 2 (/dev/locked), com 3 "}) {
    Step(term.UpDownPort, 1);
    EXPECT_EQ(term.txtPort.enabled, p.comPort.CommPort() != 4);
    EXPECT_NE(term.txtPort.toolTip.Get().find(told), std::string::npos) << term.txtPort.toolTip;
  }
  Step(term.UpDownPort, 20);
  EXPECT_EQ(p.comPort.CommPort(), 16);
  Step(term.UpDownPort, -20);
  p.comPort.Open();
  Step(term.UpDownPort, 1);
  EXPECT_EQ(p.comPort.CommPort(), 1);
  EXPECT_EQ(term.txtPort.Text(), "com 1");
  EXPECT_EQ(term.UpDownPort.value, 1);
  p.serialPorts.devices.clear();  // pulled out before the panel is entered
  p.Do([this] { term.mnuPort.click(); });
  EXPECT_FALSE(term.txtPort.enabled);
}

TEST_F(PortPanelTest, OnlySavingReachesTheSettingsAndLeavesThePanel) {
  Open();
  const std::string before = p.folder.Read("corvex.ini");
  Step(term.UpDownPort, 4);
  Step(term.UpDownSpeed, -2);
  EXPECT_EQ(p.folder.Read("corvex.ini"), before);
  p.Do([this] { term.cmdSaveSettings.click(); });
  EXPECT_TRUE(p.folder.Read("corvex.ini").ends_with("settings=38400,n,8,1\r\nflow=0\r\ncom=5\r\n"));
  EXPECT_EQ(term.main().mode, ModemMode::Offline);
  EXPECT_FALSE(term.fmOnTab[0].visible);
}

TEST_F(PortPanelTest, TheLanPanelStoresTheRouteAndLeaves) {
  Open();
  for (const bool erb : {true, false}) {
    Click(term.chkEnableERB, erb);
    EXPECT_EQ(p.settings.config.erbaccess.Get(), erb);
    EXPECT_EQ(term.mnuTelnet.visible, erb);
  }
  const std::pair<std::string, std::string> addresses[] = {{" unit.ship \r\n", "unit.ship"},
                                                           {"a\r\n[port]\r\ncom=9", "a  [port]  com=9"},
                                                           {std::string(300, 'x'), std::string(255, 'x')},
                                                           {"", ""}};
  for (const auto& address : addresses) {
    Click(term.chkEnableLAN, true);
    EXPECT_TRUE(term.txtLanIP.enabled);
    p.Do([&] {
      term.txtLanIP.AdoptText(address.first);
      term.Command1.click();
    });
    EXPECT_EQ(term.main().mode, ModemMode::Offline);
    EXPECT_TRUE(p.settings.config.lan.Get());
    p.Do([this] { term.mnuPort.click(); });
    EXPECT_EQ(term.txtLanIP.Text(), address.second);
    EXPECT_TRUE(term.frmLan.visible);
  }
  EXPECT_EQ(p.settings.port.com.Get(), "1");
}

TEST_F(PortPanelTest, ALoginOfTheRouteBeforeDoesNotCountOnTheNextOne) {
  p.settings.config.lan.Set(true);
  test::Responder modem(p.sock, test::HeronModem());
  p.Start(1);
  p.Do([this] { term.mnuTerminal.click(); });
  ASSERT_EQ(term.main().mode, ModemMode::Terminal);
  p.Do([this] { term.mnuPort.click(); });
  Click(term.chkEnableLAN, false);
  Click(term.chkEnableERB, true);
  p.Do([this] { term.Command1.click(); });
  EXPECT_TRUE(p.comPort.sent.starts_with("AT+ERB_TRANSPARENT_MODE\r\n")) << p.comPort.sent;
}

TEST_F(PortPanelTest, KeysOfTheWindowWorkWhereTheKeyboardIsNotTheModems) {
  p.Start(1);
  Key(112, false);
  const std::string hints = "Ensure the modem is connected\r\nConfigure the serial port if required (ctrl-p)";
  EXPECT_EQ(p.dialogs.shown, std::vector<std::string>{hints});
  Key('P', true);
  Key('P', true, true);  // held down
  EXPECT_EQ(term.main().mode, ModemMode::PortSetup);
  Key('P', true);
  EXPECT_EQ(term.main().mode, ModemMode::Offline);

  test::Responder modem(p.comPort, test::HeronModem());
  p.Do([this] { term.mnuTerminal.click(); });
  Key('P', true);
  Key(112, false);
  EXPECT_EQ(term.main().mode, ModemMode::Terminal);
  EXPECT_EQ(p.dialogs.shown.size(), 1u);
}

}  // namespace
}  // namespace corvex
