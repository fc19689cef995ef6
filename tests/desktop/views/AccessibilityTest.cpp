#include <gtest/gtest.h>

#include <QAccessible>

#include "desktop/QtWindowSystem.h"
#include "desktop/Wait.h"
#include "desktop/look/QtText.h"
#include "desktop/views/FormWindow.h"
#include "window/TermControls.h"

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

TEST_F(AccessibilityTest, ControlsAreNamedByTheirMeaning) {
  term.corvexLbl[0].caption = "  CORVEX MARINE";
  term.corvexLbl[2].caption = "Beam  7";
  term.corvexLbl[TermControls::kSignal].caption = "51";
  term.lblTemp.caption = "27C";
  term.lblTemp.toolTip = "Modem unit termperature";
  term.lblZone.caption = "";
  term.lblGps[0].caption = "N 59 54.21\r\nE 010 44.61";
  term.cmdSK[0].caption = "Ma&il";
  term.cmdSK[0].accessible = "";
  term.imgKey[0].picture = "key 1";
  term.imgKey[0].visible = true;
  term.Picture1.accessible = "Logo 5%";
  term.Picture1.click = [this] { ++clicks; };
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
      {term.Picture1, QAccessible::Button, "Logo 5%"},
      {term.cmdSK[0], QAccessible::Button, "Mail"},
      {term.cmdSK[1], QAccessible::Button, "Soft key 2, not in use"},
      {term.cmdTop[1], QAccessible::Button, "Device manager"},  // has only a tool tip
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
  // The tool tip is unchanged.
  EXPECT_EQ(Seen(term.lblTemp).text(QAccessible::Description), QStringLiteral("Modem unit termperature"));
  EXPECT_EQ(Seen(term.ListChoice).child(0)->text(QAccessible::Name), QStringLiteral("Norsk"));

  QAccessibleActionInterface& picture = *Seen(term.Picture1).actionInterface();
  EXPECT_EQ(picture.actionNames(), QStringList{QAccessibleActionInterface::pressAction()});
  picture.doAction(QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(Seen(term.imgMail[0]).actionInterface()->actionNames().isEmpty());
  Turn();
  EXPECT_EQ(clicks, 1);
}

TEST_F(AccessibilityTest, WindowsHaveTheirRoleAndAKeyIsReportedOnce) {
  QAccessibleInterface& window = *QAccessible::queryAccessibleInterface(windows.WindowOf(term));
  EXPECT_EQ(window.role(), QAccessible::Window);
  struct Box : Form {
    Box(EventLoop& l, WindowSystem& w) : Form(l, w, "box") { fixedSize = true; }
    ~Box() override { Withdraw(); }
  } box(loop, windows);
  box.visible = true;
  EXPECT_EQ(QAccessible::queryAccessibleInterface(windows.WindowOf(box))->role(), QAccessible::Dialog);

  for (Image& image : term.imgKey) image.visible = true;
  Turn();
  QAccessibleInterface& keys = Seen(term.frmKeys);
  ASSERT_EQ(keys.childCount(), static_cast<int>(TermControls::kSoftKeys));
  for (int i = 0; i < keys.childCount(); ++i) {
    EXPECT_EQ(keys.child(i), &Seen(term.cmdSK[static_cast<std::size_t>(i)]));
    EXPECT_EQ(keys.indexOfChild(keys.child(i)), i);
    EXPECT_EQ(keys.child(i)->parent(), &keys);
  }
  EXPECT_EQ(keys.child(keys.childCount()), nullptr);
}

}  // namespace
}  // namespace corvex
