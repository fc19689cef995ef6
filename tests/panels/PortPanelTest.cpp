#include "panels/PortPanel.h"

#include <gtest/gtest.h>

#include "support/Program.h"

namespace corvex {
namespace {

using test::Program;

TEST(PortPanel, TheArrowsStepThroughAllNumbersAndTheTipDescribesEachPort) {
  Program p;
  p.windows.activates = false;  // so the program does not connect
  frmTerm& term = p.term;
  const auto step = [&](int by) {
    p.Do([&] {
      term.UpDownPort.AdoptValue(term.UpDownPort.value + by);
      term.UpDownPort.change();
    });
  };
  p.serialPorts.devices = {{"/dev/modem", {PortState::Usable, "Adapter", ""}},
                           {"/dev/locked", {PortState::NoPermission, "", "dialout"}},
                           {"/dev/alone", {PortState::NoPermission, "", ""}}};
  p.folder.Write(
      "corvex.ini",
      "[devices]\ncom1=/dev/modem\ncom2=/dev/locked\ncom3=/dev/alone\ncom4=/dev/none\n[port]\ncom=1\n");
  p.Start(0);
  const std::string tip = "Which serial port is the modem connected to?\n";
  EXPECT_EQ(term.txtPort.Text(), "com 1");  // before the panel is first opened
  EXPECT_TRUE(term.txtPort.enabled);
  EXPECT_EQ(term.txtPort.toolTip, tip + "/dev/modem, Adapter");
  for (const char* expected :
       {"usermod -aG dialout USER", "ask the administrator",
        "/dev/none is not present. Connect the adapter,\nor set the device in corvex.ini, section "
        "[devices], key com4.\nPresent: com 1 (/dev/modem), com 2 (/dev/locked), com 3 "}) {
    step(1);
    EXPECT_EQ(term.txtPort.enabled, p.comPort.CommPort() != 4);
    EXPECT_NE(term.txtPort.toolTip.Get().find(expected), std::string::npos) << term.txtPort.toolTip;
  }
  EXPECT_NE(ComDeviceName(p.settings, 5), ComDeviceName(p.settings, 13));
  step(20);
  EXPECT_EQ(p.comPort.CommPort(), 16);
  step(-20);
  p.comPort.Open();
  step(1);
  EXPECT_EQ(p.comPort.CommPort(), 1);
  EXPECT_EQ(term.txtPort.Text(), "com 1");
  EXPECT_EQ(term.UpDownPort.value, 1);
  p.serialPorts.devices.clear();  // pulled out before the panel is opened
  p.Do([&] { term.mnuPort.click(); });
  EXPECT_FALSE(term.txtPort.enabled);
}

}  // namespace
}  // namespace corvex
