#include <gtest/gtest.h>

#include "support/Program.h"

namespace corvex {
namespace {

using test::HeronModem;
using test::Program;
using test::Responder;

TEST(TerminalModel, GoesByTheFirstPartNumberInOrder) {
  const std::pair<const char*, TerminalModel> cases[] = {{"x204417y", TerminalModel::Heron},
                                                         {"205570", TerminalModel::Petrel},
                                                         {"204417 7700413", TerminalModel::Albatross},
                                                         {"20 4417", TerminalModel::Unknown}};
  for (const auto& [text, model] : cases) EXPECT_EQ(TerminalModelFromText(text), model) << text;
  EXPECT_EQ(TerminalModelTitle(TerminalModel::Heron, "Quil"), "Quil Heron ");
  EXPECT_EQ(TerminalModelTitle(TerminalModel::Petrel, "Quil"), " Petrel Deck 100");
  EXPECT_EQ(TerminalModelTitle(static_cast<TerminalModel>(8), "Quil"), " Quil Terminal Emulator");
}

TEST(PortSettings, ALaterStartReadsWhatTheFirstOneSaved) {
  Program saved;
  saved.settings.port.com.Set(std::string("3"));
  LoadPortSettings(saved.comPort, saved.settings);
  EXPECT_EQ(saved.comPort.CommPort(), 3);
  EXPECT_EQ(saved.comPort.Settings(), "38400,n,8,1");  // not the speed of a first start; that is meant
}

TEST(PortSettings, ADeviceNamedInTheSettingsStandsForAComNumber) {
  Program p;
  std::string name = "/dev/serial/by-id/modem";
  p.settings.WriteSetting("devices", "com2", name);
  EXPECT_EQ(ComDeviceName(p.settings, 2), "/dev/serial/by-id/modem");
  EXPECT_NE(ComDeviceName(p.settings, 1), ComDeviceName(p.settings, 13));
}

TEST(Detection, AGoodModemIsNamedAndEnteredWithTheseBytes) {
  for (const bool lan : {false, true}) {
    Program p;
    p.settings.config.lan.Set(lan);
    Responder port(p.comPort, HeronModem());
    Responder socket(p.sock, HeronModem());
    p.Start(5);
    EXPECT_EQ(p.comPort.sent, lan ? "" : test::kConnect);
    EXPECT_EQ(p.sock.sent, lan ? "AT+ERB_TRANSPARENT_MODE\r\n" + test::kConnect : "");
    EXPECT_EQ(p.term.main().mode, ModemMode::Terminal);
    EXPECT_EQ(p.windows.applicationTitle, "Quil Heron ");
    EXPECT_EQ(p.term.caption, "Quil Heron ");
    EXPECT_TRUE(p.term.mnuUpgrade.enabled);
    EXPECT_EQ(p.term.lblPort.caption, lan ? "LAN" : "COM1");
    EXPECT_EQ(p.term.lblPort.toolTip,
              lan ? "Local address 10.0.0.2 server 192.168.1.1 port 3000" : " access is via serial port");
  }
}

TEST(Detection, AnswersInPiecesAndAfterTheSecondQuestionCount) {
  Program p;
  int asked = 0;
  std::string heard;
  p.comPort.onSent = [&](std::string_view bytes) {
    if (bytes != "at+gmm\r\n") return;
    if (++asked == 1) p.comPort.Arrive("\r\n2055");
    if (asked == 2) p.comPort.Arrive("81\r\nERROR\r\n");
  };
  p.Start(4);
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(p.term.state().terminalModel, TerminalModel::Kestrel);
  EXPECT_FALSE(p.term.mnuUpgrade.enabled);  // nothing came to the question for the upgrade
}

TEST(Detection, TheUpgradeEntryFollowsTheAnswer) {
  struct Case {
    const char* answer;
    bool visible;
    bool enabled;
  };
  for (const Case& c :
       {Case{"PROTOCOL 3", true, true}, Case{"pwdisallowed", true, false}, Case{"DISALLOWED", false, false},
        Case{"ERROR", true, false}, Case{"?", true, false}}) {
    Program p;
    Responder modem(p.comPort, {{"at+gmm\r\n", "OK"}, {"at+wquilcswvload\r\n", c.answer}});
    p.term.mnuUpgrade.enabled = !c.enabled;
    p.Start(3);
    EXPECT_EQ(p.term.mnuUpgrade.visible, c.visible) << c.answer;
    EXPECT_EQ(p.term.mnuUpgrade.enabled, c.enabled) << c.answer;
  }
}

TEST(Detection, ASilentModemIsToldOnceAndTriedAgainByTheWatchdog) {
  Program p;
  p.Start(6);
  EXPECT_EQ(p.dialogs.shown, std::vector<std::string>{"No contact - please check connections"});
  EXPECT_EQ(p.term.main().mode, ModemMode::Failed);
  EXPECT_EQ(p.term.pointer, Pointer::Normal);
  p.loop.Run(6);
  EXPECT_TRUE(p.term.frmMsg.visible);
  EXPECT_EQ(p.term.LblMsg[0].caption, "No response.");
  EXPECT_EQ(p.term.LblMsg[1].caption, "Check connection to modem");
  Responder modem(p.comPort, HeronModem());
  p.loop.Run(16);
  EXPECT_EQ(p.term.main().mode, ModemMode::Terminal);
  EXPECT_EQ(p.dialogs.shown.size(), 1u);
}

TEST(Detection, AnUnusableAddressIsTakenForABusyPort) {
  for (const char* port : {"none", "0", "70000", "99999999999"}) {
    Program p;
    p.settings.config.lan.Set(true);
    p.settings.config.lanport.Set(std::string(port));
    p.Start(1);
    EXPECT_EQ(p.term.LblMsg[0].caption, "Port is busy - check running applications") << port;
    EXPECT_EQ(p.term.main().mode, ModemMode::AwaitIntro) << port;
    EXPECT_EQ(p.sock.connects, 0) << port;
  }
}

TEST(Detection, RubbishLeadsToThePortSettingsIfTheUserWants) {
  for (const bool yes : {true, false}) {
    Program p;
    p.comPort.onSent = [&](std::string_view) { p.comPort.Arrive("\xF0\x0F"); };
    p.dialogs.yes = yes;
    p.Start(4);
    EXPECT_EQ(p.dialogs.shown, std::vector<std::string>{"Bad response - try and autodetect modem?"});
    EXPECT_EQ(p.term.main().mode, yes ? ModemMode::Failed : ModemMode::AwaitIntro);
    EXPECT_EQ(p.term.fmOnTab[0].visible, yes);
    const auto sent = p.comPort.sent.size();
    p.loop.Run(30);
    EXPECT_EQ(p.comPort.sent.size(), sent) << "no connect follows by itself";
  }
}

TEST(Detection, AWindowThatIsNotActiveNeverProbes) {
  Program p;
  p.windows.activates = false;
  p.Start(1);
  p.Do([&] { p.term.SetActive(true); });
  p.loop.Run(30);
  EXPECT_EQ(p.comPort.sent, "");
  Responder modem(p.comPort, HeronModem());
  p.Do([&] { p.term.mnuTerminal.click(); });
  EXPECT_EQ(p.term.main().mode, ModemMode::Terminal);
}

TEST(Watchdog, ReconnectsUnlessTheModemSpeaksOfItself) {
  struct Case {
    std::string tag;
    bool lan;
    bool quiet;
  };
  for (const Case& c : {Case{"<tml><Sig>27</tml>", false, true}, Case{"", false, false},
                        Case{"<tml><Time>12:34</tml>", true, true},
                        Case{"<tml><Sig>27</tml>", true, false}}) {  // over the LAN only the time counts
    Program p;
    p.settings.config.lan.Set(c.lan);
    Responder serial(p.comPort, HeronModem());
    Responder socket(p.sock, HeronModem());
    p.Start(3);
    const std::string& sent = c.lan ? p.sock.sent : p.comPort.sent;
    const std::string before = sent;
    for (int i = 0; i < 20; ++i) {
      if (!c.tag.empty()) c.lan ? p.sock.Arrive(c.tag) : p.comPort.Arrive(c.tag);
      p.loop.Run(1);
    }
    EXPECT_EQ(sent == before, c.quiet) << c.tag << c.lan;
    EXPECT_TRUE(sent.ends_with(test::kConnect)) << c.tag << c.lan;
    EXPECT_EQ(p.term.main().mode, ModemMode::Terminal) << c.tag << c.lan;
  }
}

}  // namespace
}  // namespace corvex
