#include <gtest/gtest.h>

#include <QAccessible>

#include "Wait.h"
#include "desktop/FormWindow.h"
#include "desktop/QtText.h"
#include "desktop/QtWindowSystem.h"
#include "session/TermControls.h"

namespace corvex {
namespace {

struct Window : TermControls {
  using TermControls::TermControls;
  ~Window() override { Withdraw(); }
};

class AccessibilityTest : public ::testing::Test {
 protected:
  AccessibilityTest() {
    term.rect = Rect{1500, 1500, TermControls::kWidth, TermControls::kCompactHeight};
    term.imgKey[0].click = [this] { ++clicks; };
    term.visible = true;
    Turn();
  }
  void Turn() { test::Elapse(loop, std::chrono::milliseconds(30)); }
  QAccessibleInterface& Seen(const Control& control) {
    return *QAccessible::queryAccessibleInterface(windows.WindowOf(term)->ViewOf(control)->widget());
  }

  QtEventLoop loop;
  QtWindowSystem windows{loop};
  Window term{loop, windows};
  int clicks = 0;
};

TEST_F(AccessibilityTest, WhatIsShownIsNamedWithItsMeaning) {
  term.corvexLbl[0].caption = "  CORVEX MARINE";
  term.corvexLbl[2].caption = "Beam  7";
  term.corvexLbl[TermControls::kSignal].caption = "51";
  term.lblTemp.caption = "27C";
  term.lblTemp.toolTip = "Modem unit termperature";
  term.lblZone.caption = "";
  term.lblGps[0].caption = "N 59 54.21\r\nE 010 44.61";
  term.cmdSK[0].caption = "Ma&il";
  term.imgKey[0].accessible = "Mail 5%";
  term.imgKey[0].picture = "key 1";
  term.imgKey[0].visible = true;
  term.imgMail[0].visible = true;
  term.frmMenu.caption = "4 Setup";
  term.LblMsg[0].caption = "Calling";
  term.LblMsg[1].caption = "busy";
  term.ListChoice.AddItem("Norsk");
  Turn();
  const struct {
    const Control& control;
    QAccessible::Role role;
    const char* name;
  } table[] = {
      {term.corvexLbl[TermControls::kSignal], QAccessible::StaticText, "Signal to noise ratio: 51 dB/Hz"},
      {term.lblTemp, QAccessible::StaticText, "Temperature of the modem unit: 27C"},
      {term.lblZone, QAccessible::StaticText, "Time zone: none"},
      {term.lblGps[0], QAccessible::StaticText, "Position: N 59 54.21\nE 010 44.61"},
      {term.imgMail[0], QAccessible::Graphic, "Mail waiting"},
      {term.imgKey[0], QAccessible::Button, "Mail 5%"},
      {term.cmdSK[0], QAccessible::Button, "Mail"},
      {term.cmdTop[1], QAccessible::Button, "Device manager"},  // has no words but its tool tip
      {term.frmMenu, QAccessible::Grouping, "4 Setup"},
      {term.frmMsg, QAccessible::AlertMessage, "Calling\nbusy"},
      {term.frmScreen, QAccessible::Terminal, "Screen of the modem unit"},
      {term.CorvexFocus1, QAccessible::Client, "Keys to the modem unit"},
  };
  for (const auto& row : table) {
    EXPECT_EQ(Seen(row.control).role(), row.role) << row.name;
    EXPECT_EQ(FromQt(Seen(row.control).text(QAccessible::Name)), row.name);
  }
  EXPECT_EQ(Seen(term.frmScreen).text(QAccessible::Value), QStringLiteral("CORVEX MARINE\nBeam  7"));
  // The tool tip stays as it is.
  EXPECT_EQ(Seen(term.lblTemp).text(QAccessible::Description), QStringLiteral("Modem unit termperature"));
  EXPECT_EQ(Seen(term.ListChoice).child(0)->text(QAccessible::Name), QStringLiteral("Norsk"));

  QAccessibleActionInterface& key = *Seen(term.imgKey[0]).actionInterface();
  EXPECT_EQ(key.actionNames(), QStringList{QAccessibleActionInterface::pressAction()});
  key.doAction(QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(Seen(term.imgMail[0]).actionInterface()->actionNames().isEmpty());
  Turn();
  EXPECT_EQ(clicks, 1);
}

}  // namespace
}  // namespace corvex
