#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QAccessible>
#include <QCheckBox>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStyleOptionButton>
#include <QTabBar>
#include <QTest>
#include <deque>
#include <set>
#include <type_traits>

#include "desktop/QtWindowSystem.h"
#include "desktop/Wait.h"
#include "desktop/look/QtText.h"
#include "desktop/views/FormWindow.h"
#include "devices/frmDev.h"
#include "session/frmTerm.h"
#include "support/FakePlatform.h"
#include "support/ShownForms.h"
#include "support/UnitLink.h"

// The main window as the user sees it, with the real renderer, the real clock and a simulated unit on the
// line.

namespace corvex {
namespace {

using namespace std::chrono_literals;
using test::Becomes;

using ScreenFakes = test::FakesWith<QtEventLoop, test::WindowsWithForms<QtWindowSystem>>;

class TermWindowTest : public ::testing::Test, protected ScreenFakes {
 protected:
  TermWindowTest() {
    loop.Enter([this] { term.Load(); });
    shown =
        Becomes(loop, [this] { return term.main().mode == ModemMode::Terminal && term.cmdSK[0].enabled; });
    test::Elapse(loop, 300ms);  // until the unit has sent its screen twice
  }
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
  std::string TakeSent() { return std::exchange(comPort.sent, {}); }

  test::UnitLink<test::FakeSerial> unit{loop, comPort};
  frmTerm term{platform, settings};
  bool shown = false;
};

#define NEEDS_SESSION() \
  if (!shown) GTEST_SKIP() << "no session: the window did not become active; is there a window manager?"

TEST_F(TermWindowTest, TheModemsScreensNeedOnlyTheKeyboard) {
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
  for (int i = 0; i < 5 && !atIdle(); ++i) {  // leaves the message, the sub-menu and the menu
    Press(Qt::Key_Escape);
    test::Elapse(loop, 300ms);
  }
  ASSERT_TRUE(atIdle());
  TakeSent();
  Press(Qt::Key_2);
  ASSERT_TRUE(Becomes(loop, [&] { return term.state().screenKind == ScreenKind::FieldScreen; }));
  Press(Qt::Key_Tab);  // goes to the modem's next field, not to the window's next control
  EXPECT_TRUE(Focused("CorvexFocus1"));
  EXPECT_EQ(TakeSent(), "2\x1B[B");
}

TEST_F(TermWindowTest, TheModemsScreensNeedOnlyTheMouse) {
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
  EXPECT_TRUE(Becomes(loop, [&] { return Focused("ListMenu"); }));  // the focus returns to the list
}

TEST_F(TermWindowTest, TheByteEditorNeedsOnlyTheKeyboard) {
  NEEDS_SESSION();
  loop.Enter([&] { term.mnuAT.click(); });
  ASSERT_TRUE(Becomes(loop, [&] { return Focused("txtRawBytes"); }));
  TakeSent();
  QTest::keyClicks(window().focusWidget(), QStringLiteral("ati"));  // replaces the selected line
  Press(Qt::Key_Return);
  EXPECT_EQ(TakeSent(), "ati\r");
  Press(Qt::Key_Tab);
  EXPECT_TRUE(Focused("cmdRawBytes"));
  Press(Qt::Key_Backtab, Qt::ShiftModifier);
  Press(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_TRUE(Focused("optAutoSend"));
  Press(Qt::Key_Space);
  ASSERT_TRUE(Focused("CorvexFocus1"));
  Press(Qt::Key_Return);
  Press(Qt::Key_X);
  EXPECT_EQ(TakeSent(), "\rx");
}

/// Returns what is wrong if a widget does not fit into its container, or its text into the widget. Returns an
/// empty string if both fit.
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
    QStyleOptionButton option;
    option.rect = button->rect();
    const QStyle& style = *button->style();
    if (qobject_cast<const QRadioButton*>(button) != nullptr) {
      room = style.subElementRect(QStyle::SE_RadioButtonContents, &option, button);
    } else if (qobject_cast<const QCheckBox*>(button) != nullptr) {
      room = style.subElementRect(QStyle::SE_CheckBoxContents, &option, button);
    }
  }
  return text.width() <= room.width() && text.height() <= room.height() ? "" : "text cut off";
}

/// Expects that each control that takes input has a name of its own for a screen reader.
void ExpectNames(QtWindowSystem& windows, const Form& form) {
  std::set<std::string> names;
  for (const Control* control : form.controls()) {
    const std::string_view type = control->TypeName();
    if (type != "CommandButton" && type != "TextBox" && type != "ComboBox" && type != "CheckBox" &&
        type != "TreeView" && type != "Toolbar") {
      continue;
    }
    QWidget* const widget = windows.WindowOf(form)->ViewOf(*control)->widget();
    if (!widget->isVisible()) continue;
    const QString name = QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
    EXPECT_TRUE(names.insert(FromQt(name)).second && !name.isEmpty())
        << form.name() << '.' << control->name() << control->index() << ": " << FromQt(name);
  }
  EXPECT_GT(names.size(), 1U) << form.name();
}

TEST_F(TermWindowTest, TheDeviceManagerNeedsOnlyTheKeyboard) {
  NEEDS_SESSION();
  /// What the user does next, as soon as it is possible.
  struct Step {
    std::function<bool()> possible;
    std::function<void()> act;
  };
  std::deque<Step> steps;
  const auto press = [&steps](std::initializer_list<Qt::Key> keys) {
    for (const Qt::Key key : keys) {
      steps.push_back({[] { return QApplication::focusWidget() != nullptr; },
                       [key] { QTest::keyClick(QApplication::focusWidget(), key); }});
    }
  };
  const auto type = [&steps](const char* text) {
    steps.push_back({[] { return true; }, [text] { QTest::keyClicks(QApplication::focusWidget(), text); }});
  };
  const auto see = [this]<typename Window>(std::type_identity<Window>) -> Step {
    return {[this] {
              auto* const found = windows.Shown<Window>();
              return found != nullptr && windows.WindowOf(*found)->isActiveWindow();
            },
            [this] { ExpectNames(windows, *windows.Shown<Window>()); }};
  };
  const auto seeEntries = [&, this](std::size_t count) {
    steps.push_back({[this, count] {
                       const auto* const manager = windows.Shown<frmDev>();
                       return unit.unit.Config().Entries().size() == count && manager->Toolbar1.Enabled(1) &&
                              manager->pointer == Pointer::Normal;
                     },
                     [] {}});
  };
  steps.push_back(see(std::type_identity<frmDev>()));
  seeEntries(8);
  press({Qt::Key_Insert});
  steps.push_back(see(std::type_identity<frmLogin>()));
  type("owner");
  press({Qt::Key_Return});
  steps.push_back(see(std::type_identity<frmNewISDN>()));
  press({Qt::Key_Return, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Return});  // the Id, the service, "Continue"
  steps.push_back(see(std::type_identity<frmNewISDN>()));             // the second page
  type("88");
  for (int i = 0; i < 7; ++i) press({Qt::Key_Tab});
  press({Qt::Key_Return});
  seeEntries(9);
  press({Qt::Key_Delete});  // the new device is selected
  seeEntries(8);

  dialogs.answer = Answer::Ok;
  const std::function<void()> next = [&] {
    if (steps.empty()) return loop.End();
    loop.After(50ms, next);  // before the step, because the program may wait in it
    if (!steps.front().possible()) return;
    const auto act = std::move(steps.front().act);
    steps.pop_front();
    act();
  };
  next();
  loop.After(20s, [this] { loop.End(); });
  loop.Enter([this] { term.cmdTop[1].click(); });
  EXPECT_EQ(steps.size(), 0U);
}

TEST_F(TermWindowTest, ARowsFontOfAnySizeIsQuicklyMadeToFit) {
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

TEST_F(TermWindowTest, NothingIsMisplacedOrCutOffAtAnyZoomStep) {
  NEEDS_SESSION();
  comPort.Arrive(
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
  const auto zoomThrough = [&](MenuItem& entry, ModemMode mode, const char* box) {
    click(entry);
    ASSERT_TRUE(Becomes(loop, [&] { return term.main().mode == mode; }));
    for (int step = 3; step >= -1; --step) {
      test::Elapse(loop, 150ms);
      EXPECT_FALSE(Find<QWidget>(box).visibleRegion().isEmpty());
      look(step);
      click(term.mnuZoomOut);
    }
  };
  zoomThrough(term.mnuPort, ModemMode::PortSetup, "tabConnect");
  for (int step = 0; step < 4; ++step) click(term.mnuZoomIn);
  zoomThrough(term.mnuTest, ModemMode::TestInterface, "txtRaw");
  for (int step = 0; step < 4; ++step) click(term.mnuZoomIn);
  zoomThrough(term.mnuAT, ModemMode::AtMode, "txtRawBytes");
  click(term.mnuTerminal);
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

TEST_F(TermWindowTest, AWindowOfAnyProportionIsQuicklyLaidOut) {
  NEEDS_SESSION();
  ASSERT_TRUE(Becomes(loop, [&] { return term.mnuZoomOut.enabled.Get(); }));
  for (const QSize size : {QSize(16'000, 300), QSize(300, 10'000), QSize(6000, 4000)}) {
    window().resize(size);
    EventLoop::Time longest{};
    for (const auto until = loop.Now() + 300ms; loop.Now() < until;) {
      const auto began = loop.Now();
      loop.Pump(began + 10ms);
      longest = std::max(longest, loop.Now() - began);
    }
    EXPECT_LT(longest, 1s);
    EXPECT_EQ(window().size(), size);
  }
}

TEST_F(TermWindowTest, TheTraceWindowLeavesTheKeyboardToTheUnitAndResizesItsControls) {
  NEEDS_SESSION();
  TakeSent();
  loop.Enter([this] { term.mnuTrace.click(); });
  test::Elapse(loop, 300ms);
  QWidget* trace = nullptr;
  for (QWidget* other : QApplication::topLevelWidgets()) {
    if (other->objectName() == u"frmTracer" && other->isVisible()) trace = other;
  }
  ASSERT_NE(trace, nullptr);
  EXPECT_TRUE(window().isActiveWindow());
  Press(Qt::Key_M, Qt::AltModifier);
  EXPECT_EQ(TakeSent(), "\x03\x15");
  auto* page = trace->findChild<QPlainTextEdit*>();
  const auto spoken = [](QObject* widget) {
    return FromQt(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name));
  };
  EXPECT_EQ(spoken(page), "Trace of the unit");
  comPort.Arrive("<tml><Channel>7,one</tml>");
  ASSERT_TRUE(Becomes(loop, [&] {
    const auto all = QApplication::topLevelWidgets();
    return std::any_of(all.begin(), all.end(), [&](QWidget* other) {
      auto* channel = other->findChild<QPlainTextEdit*>();
      return channel != nullptr && spoken(channel) == "Trace of channel 7";
    });
  }));
  trace->resize(trace->size() + QSize(100, 80));
  test::Elapse(loop, 200ms);
  const auto buttons = trace->findChildren<QPushButton*>();
  ASSERT_EQ(buttons.size(), 4);
  for (const QPushButton* button : buttons) {
    EXPECT_EQ(Cut(*button), "") << button->text().toStdString();
    EXPECT_GT(button->y(), page->geometry().bottom());
  }
  EXPECT_EQ(page->width(), trace->width() - 500 / kTwipsPerPixel);
  QTest::mouseClick(buttons[1], Qt::LeftButton);
  ASSERT_TRUE(Becomes(loop, [&] { return !trace->isVisible(); }));
}

TEST_F(TermWindowTest, TheEndOfABurstOfTraceIsVisible) {
  NEEDS_SESSION();
  std::string burst;
  for (int i = 0; i < 700; ++i) burst += "<tml><Channel>1," + std::string(150, 'x') + "</tml>";
  for (int i = 0; i < 20; ++i) comPort.Arrive(burst);
  comPort.Arrive("<tml><Channel>1,end</tml>");
  QPlainTextEdit* page = nullptr;
  ASSERT_TRUE(Becomes(loop, [&] {
    for (QWidget* other : QApplication::topLevelWidgets()) {
      if (other->objectName() == u"frmTraceInstance") page = other->findChild<QPlainTextEdit*>();
    }
    return page != nullptr && page->toPlainText().endsWith(u"end\n");
  }));
  test::Elapse(loop, 300ms);
  EXPECT_LE(page->toPlainText().size(), 1000);
  const QScrollBar& bar = *page->verticalScrollBar();
  EXPECT_EQ(bar.value(), bar.maximum());
  EXPECT_LE(bar.maximum(), 20) << "rows above the visible ones";
  QTextCursor end(page->document());
  end.movePosition(QTextCursor::End);
  EXPECT_TRUE(page->viewport()->rect().contains(page->cursorRect(end).center()));
}

TEST_F(TermWindowTest, ClosingDuringACursorWalkSendsTheFarewellAndEnds) {
  NEEDS_SESSION();
  comPort.Arrive("<tml><ChoiceScreen><Title>L<1>A<2>B<3>C<4>D<INDEXLINE>1</tml>");
  ASSERT_TRUE(Becomes(loop, [&] { return Focused("ListChoice"); }));
  Press(Qt::Key_End);
  TakeSent();
  const auto began = loop.Now();
  loop.After(60ms, [&] { window().close(); });
  QTest::keyClick(window().focusWidget(), Qt::Key_Return);
  loop.Exec();
  EXPECT_LT(loop.Now() - began, 2500ms);
  const std::string sent = TakeSent();
  EXPECT_TRUE(sent.starts_with("\x1B[B") && sent.ends_with("\x18\x18")) << sent;
  EXPECT_EQ(sent.find('\r'), sent.npos) << "the choice was made";
}

}  // namespace
}  // namespace corvex
