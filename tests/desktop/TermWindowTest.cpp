#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QStyleOptionButton>
#include <QTabBar>
#include <QTest>

#include "Wait.h"
#include "desktop/FormWindow.h"
#include "desktop/QtWindowSystem.h"
#include "session/frmTerm.h"
#include "support/FakePlatform.h"
#include "support/UnitLink.h"

// The main window as its user has it before him: the real renderer and its clock, a simulated unit on the
// line.

namespace corvex {
namespace {

using namespace std::chrono_literals;
using test::Becomes;

class TermWindowTest : public ::testing::Test {
 protected:
  TermWindowTest() {
    loop.Enter([this] { term.Load(); });
    shown =
        Becomes(loop, [this] { return term.main().mode == ModemMode::Terminal && term.cmdSK[0].enabled; });
    test::Elapse(loop, 300ms);  // the second painting
  }
  ~TermWindowTest() override { std::filesystem::current_path(before); }

  FormWindow& window() { return *windows.WindowOf(term); }
  template <typename Widget>
  Widget& Find(const char* name) {
    return *window().findChild<Widget*>(QString::fromLatin1(name));
  }
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(window().focusWidget() == nullptr ? &window() : window().focusWidget(), key, modifiers);
    test::Elapse(loop, 30ms);
  }
  bool Focused(const char* name) {
    return window().focusWidget() == window().findChild<QWidget*>(QString::fromLatin1(name));
  }
  std::string TakeSent() { return std::exchange(port.sent, {}); }

  std::filesystem::path before = std::filesystem::current_path();
  test::TempFolder folder;
  SettingsStore settings{folder.Name()};
  QtEventLoop loop;
  QtWindowSystem windows{loop};
  test::FakeSerial port{loop};
  test::FakeSerialPorts serialPorts;
  test::FakeSocket sock{loop};
  test::FakeDialogs dialogs;
  test::FakePrinters printers;
  test::FakeSound sound;
  test::UnitLink<test::FakeSerial> unit{loop, port};
  const Platform platform{
      loop, windows, port, serialPorts, sock, dialogs, printers, sound, test::FakePlatform::LongDate};
  frmTerm term{platform, settings};
  bool shown = false;
};

#define NEEDS_SESSION() \
  if (!shown) GTEST_SKIP() << "no session: the window did not become active, as without a window manager"

TEST_F(TermWindowTest, AKeyboardIsEnoughForTheModemsScreens) {
  NEEDS_SESSION();
  EXPECT_TRUE(Focused("CorvexFocus1"));
  TakeSent();
  Press(Qt::Key_M, Qt::AltModifier);  // the soft key, not the menu bar's "Mode"
  EXPECT_EQ(TakeSent(), "\x15");
  EXPECT_EQ(window().findChild<QMenuBar*>()->activeAction(), nullptr);
  ASSERT_TRUE(Becomes(loop, [&] { return Focused("ListMenu"); }));
  Press(Qt::Key_4);
  ASSERT_TRUE(Becomes(loop, [&] { return term.frmMenu.caption == "4 Setup" && Focused("ListMenu"); }));
  Press(Qt::Key_Return);
  ASSERT_TRUE(Becomes(loop, [&] { return Focused("ListChoice"); }));
  EXPECT_EQ(TakeSent(), "4 1");
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  Press(Qt::Key_Return);
  ASSERT_TRUE(Becomes(loop, [&] { return Focused("ListMenu"); }));
  EXPECT_EQ(TakeSent(), "\x1B[B\x1B[B\r");
  const auto atIdle = [&] { return Focused("CorvexFocus1") && term.cmdSK[0].enabled; };
  for (int i = 0; i < 5 && !atIdle(); ++i) {  // the message, the sub-menu and the menu
    Press(Qt::Key_Escape);
    test::Elapse(loop, 300ms);
  }
  ASSERT_TRUE(atIdle());
  TakeSent();
  Press(Qt::Key_2);
  ASSERT_TRUE(Becomes(loop, [&] { return term.state().screenKind == ScreenKind::FieldScreen; }));
  Press(Qt::Key_Tab);  // the modem's next field, and not the window's next control
  EXPECT_TRUE(Focused("CorvexFocus1"));
  EXPECT_EQ(TakeSent(), "2\x1B[B");
}

TEST_F(TermWindowTest, AMouseIsEnoughForTheModemsScreens) {
  NEEDS_SESSION();
  TakeSent();
  QTest::mouseClick(&Find<QPushButton>("cmdSK"), Qt::LeftButton);
  ASSERT_TRUE(Becomes(loop, [&] { return Focused("ListMenu"); }));
  const auto doubleClick = [&](const char* name, int row) {
    auto& list = Find<QAbstractItemView>(name);
    test::Elapse(loop, 30ms);
    const QPoint at = list.visualRect(list.model()->index(row, 0)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, at);
  };
  doubleClick("ListMenu", 4);
  ASSERT_TRUE(Becomes(loop, [&] { return term.frmMenu.caption == "4 Setup" && Focused("ListMenu"); }));
  doubleClick("ListMenu", 1);
  ASSERT_TRUE(Becomes(loop, [&] { return Focused("ListChoice"); }));
  doubleClick("ListChoice", 1);
  ASSERT_TRUE(Becomes(loop, [&] { return Focused("ListMenu"); }));
  EXPECT_EQ(TakeSent(), "\x15 4 1\x1B[B\r");
  QTest::mouseClick(&Find<QPushButton>("cmdESC"), Qt::LeftButton);
  ASSERT_TRUE(Becomes(loop, [&] { return term.frmMenu.caption == "Main menu"; }));
  EXPECT_TRUE(Becomes(loop, [&] { return Focused("ListMenu"); }));  // it goes back to the screen
}

/// What of a widget and of its text does not fit where it stands; empty if all does.
std::string Cut(const QWidget& widget) {
  const QRect place = widget.geometry();
  if (!widget.parentWidget()->rect().contains(place)) return "outside its container";
  QSize text;
  QRect room = widget.contentsRect();
  if (const auto* label = dynamic_cast<const QLabel*>(&widget)) {
    const int flags = label->wordWrap() ? Qt::TextWordWrap : 0;
    text = label->fontMetrics().boundingRect(room, flags, label->text()).size();
  } else if (const auto* button = dynamic_cast<const QAbstractButton*>(&widget)) {
    text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
  }
  return text.width() <= room.width() && text.height() <= room.height() ? "" : "text cut off";
}

TEST_F(TermWindowTest, ARowsFontOfAnySizeIsMadeToFitAtOnce) {
  NEEDS_SESSION();
  const QLabel& row = Find<QLabel>("corvexLbl");
  for (const double size : {30'000.0, 2'147'483'647.0}) {
    loop.Enter([&] { term.corvexLbl[0].font = Font{.name = "Courier", .size = size}; });
    QElapsedTimer timer;
    timer.start();
    test::Elapse(loop, 50ms);
    EXPECT_LT(timer.elapsed(), 1000);
    EXPECT_LE(row.fontMetrics().horizontalAdvance(QString(40, u'M')), row.width() - row.indent());
    EXPECT_GT(row.font().pixelSize(), 5);
  }
}

TEST_F(TermWindowTest, AtEachZoomAllIsInItsPlaceAndNoTextIsCutOff) {
  NEEDS_SESSION();
  port.Arrive(
      "<tml><Gps>N 59 54.21 E 010 44.61</tml><tml><Date>12:34|2006.03.31|UTC</tml><tml><Temp>41</tml>");
  ASSERT_TRUE(Becomes(loop, [&] { return term.mnuZoomOut.enabled.Get(); }));
  const auto click = [this](auto& control) {
    loop.Enter([&control] { control.click(); });
    test::Elapse(loop, 150ms);
  };
  const auto look = [this](int step) {
    SCOPED_TRACE(step);
    for (const QWidget* widget : window().findChildren<QWidget*>()) {
      if (widget->objectName().isEmpty() || widget->objectName().startsWith(u"qt_")) continue;
      if (widget->visibleRegion().isEmpty()) continue;
      EXPECT_EQ(Cut(*widget), "") << widget->objectName().toStdString();
    }
    const QLabel& row = Find<QLabel>("corvexLbl");
    EXPECT_LE(row.fontMetrics().horizontalAdvance(QString(40, u'M')), row.width() - row.indent());
  };
  const QSize compact = window().size();
  click(term.mnuZoomOut);
  for (int step = -1; step <= 3; ++step) {
    look(step);
    if (step < 3) click(term.mnuZoomIn);
  }
  click(term.mnuPort);
  ASSERT_TRUE(Becomes(loop, [&] { return term.main().mode == ModemMode::PortSetup; }));
  for (int step = 3; step >= -1; --step) {
    test::Elapse(loop, 150ms);
    EXPECT_FALSE(Find<QTabBar>("tabConnect").visibleRegion().isEmpty());
    look(step);
    click(term.mnuZoomOut);
  }
  click(term.mnuPort);
  click(term.mnuZoomIn);
  EXPECT_TRUE(Becomes(loop, [&] { return window().size() == compact; }));

  ASSERT_TRUE(
      Becomes(loop, [&] { return term.main().mode == ModemMode::Terminal && term.cmdSK[0].enabled.Get(); }));
  click(term.cmdSK[0]);
  const auto& menu = Find<QAbstractItemView>("ListMenu");
  EXPECT_TRUE(Becomes(loop, [&] { return menu.isVisible(); }));
  const int small = menu.font().pixelSize();
  for (const QSize size : {QSize(1400, 300), QSize(500, 700), QSize(1590, 950)}) {
    window().resize(size);
    test::Elapse(loop, 150ms);
    look(size.width());
  }
  EXPECT_GT(menu.font().pixelSize(), 2 * small);
}

TEST_F(TermWindowTest, ClosingInTheMiddleOfAWalkSaysGoodbyeAndEnds) {
  NEEDS_SESSION();
  port.Arrive("<tml><ChoiceScreen><Title>L<1>A<2>B<3>C<4>D<INDEXLINE>1</tml>");
  ASSERT_TRUE(Becomes(loop, [&] { return Focused("ListChoice"); }));
  Press(Qt::Key_End);
  TakeSent();
  const auto began = loop.Now();
  loop.After(60ms, [&] { window().close(); });
  QTest::keyClick(window().focusWidget(), Qt::Key_Return);
  loop.Exec();
  EXPECT_LT(loop.Now() - began, 1500ms);
  const std::string sent = TakeSent();
  EXPECT_TRUE(sent.starts_with("\x1B[B") && sent.ends_with("\x18\x18")) << sent;
  EXPECT_EQ(sent.find('\r'), sent.npos) << "the choice was not made";
}

}  // namespace
}  // namespace corvex
