#include "desktop/views/FormWindow.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QClipboard>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

#include "desktop/QtDialogs.h"
#include "desktop/look/QtText.h"
#include "desktop/views/ShownForm.h"
#include "forms/Controls.h"

namespace corvex {
namespace {

using test::Becomes;

/// A form with at least one control of each kind. Some controls are inside a frame where that makes a
/// difference.
struct Sample : Form {
  Sample(EventLoop& l, WindowSystem& w) : Form(l, w, "sample") {
    rect = Rect{1500, 1500, 9000, 6000};
    pages.multiLine = true;
    bits.locked = true;
    line.drop = [this](const Drop&) { ++drops; };
  }
  ~Sample() override { Withdraw(); }
  MenuItem mnuMode{*this, {.name = "mnuMode", .caption = "&Mode"}};
  MenuItem mnuTerminal{mnuMode, {.name = "mnuTerminal", .caption = "Terminal &MMI", .shortcut = "Ctrl+P"}};
  MenuItem mnuSound{mnuMode, {.name = "mnuSound", .caption = "Sou&nd"}};
  MenuItem mnuOff{mnuSound, {.name = "mnuOff", .caption = "Off"}};
  Frame frame{*this, {.name = "frame", .rect = {150, 150, 4500, 3000}, .caption = "Title"}};
  Label label{frame, {.name = "label", .rect = {150, 300, 1500, 300}, .caption = "<b>1</b>"}};
  Button button{frame, {.name = "button", .rect = {150, 750, 1500, 450}, .caption = "&Menu"}};
  OptionButton up{frame, {.name = "up", .rect = {150, 1350, 1500, 300}, .caption = "Up"}};
  OptionButton down{frame, {.name = "down", .rect = {150, 1650, 1500, 300}, .caption = "Down"}};
  Image image{frame, {.name = "image", .rect = {1800, 300, 480, 480}, .picture = "mail"}};
  TextBox line{*this, {.name = "line", .rect = {4800, 150, 1500, 330}, .caption = "115200"}};
  TextBox pages{*this, {.name = "pages", .rect = {4800, 600, 3000, 900}}};
  ListView list{*this, {.name = "list", .rect = {150, 3300, 4500, 1500}}};
  ListBox box{*this, {.name = "box", .rect = {4800, 1650, 1500, 1200}}};
  TabStrip tabs{*this, {.name = "tabs", .rect = {4800, 3300, 3000, 375}}, {"Serial", "LAN"}};
  CheckBox check{*this, {.name = "check", .rect = {6600, 150, 1500, 330}, .caption = "LAN"}};
  Label bitsLabel{*this, {.name = "bitsLabel", .rect = {4800, 3900, 1500, 270}, .caption = "Data"}};
  TextBox bits{*this, {.name = "bits", .rect = {4800, 4200, 1500, 360}}};
  UpDown arrows{*this, {.name = "arrows", .rect = {6300, 4200, 240, 360}}, bits, 4, 8};
  KeySource keys{*this, {.name = "keys"}};
  int drops = 0;
};

class FormWindowTest : public test::ShownFormTest {
 protected:
  FormWindowTest() {
    form->list.Add({"ESC", "Exit Menu", 53});
    form->list.Add({" 1Men", " 1. Call", 5});
    form->list.Add({" 2Men", " 2. Setup", 7});
    form->list.selected = 2;
    form->box.AddItem("one");
    form->box.AddItem("two");
    form->box.AddItem("2 more");
    Show(*form);
  }
  FormWindow& window() { return *windows.WindowOf(*form); }
  template <typename Widget>
  Widget* Find(const char* name) {
    return window().findChild<Widget*>(QString::fromLatin1(name));
  }

  std::unique_ptr<Sample> form = std::make_unique<Sample>(loop, windows);
};

TEST_F(FormWindowTest, ShowsTheControlsOfTheForm) {
  EXPECT_EQ(Find<QLabel>("label")->text(), QStringLiteral("<b>1</b>"));
  EXPECT_EQ(Find<QLabel>("label")->textFormat(), Qt::PlainText);
  EXPECT_EQ(Find<QWidget>("label")->parentWidget(), Find<QWidget>("frame"));
  EXPECT_EQ(Find<QWidget>("frame")->geometry(), QRect(10, 10, 300, 200));
  EXPECT_EQ(Find<QListView>("list")->currentIndex().row(), 1);
  EXPECT_FALSE(Find<QListView>("box")->currentIndex().isValid());
  // The area for the controls has exactly the form's inner size, whatever window frame the system draws.
  EXPECT_EQ(Find<QWidget>("frame")->parentWidget()->size(),
            QSize(form->InnerWidth() / 15, form->InnerHeight() / 15));

  form->label.caption = "\xE6 & \x01";
  form->label.toolTip = "<i>tip</i>";
  form->button.enabled = false;
  form->button.caption = "&Exit";
  form->down.value = true;
  form->list.Clear();
  form->list.Add({"ESC", "Exit Menu", 53});
  form->list.selected = 1;
  QTest::keyClick(Find<QListView>("list"), Qt::Key_Right);  // still acts on the old list
  EXPECT_EQ(form->list.selected, 1) << "an outdated selection of the user has replaced it";
  form->box.listIndex = 1;
  form->tabs.selected = 2;
  form->line.SetText("9600");
  form->image.visible = false;
  form->mnuTerminal.checked = true;
  form->mnuOff.enabled = false;
  form->mnuSound.visible = false;
  form->caption = "title";
  form->pointer = Pointer::Hourglass;
  Turn();
  EXPECT_EQ(Find<QLabel>("label")->text(), QStringLiteral(u"\u00E6 &  "));
  EXPECT_EQ(Find<QLabel>("label")->toolTip(), QStringLiteral("<qt>&lt;i&gt;tip&lt;/i&gt;</qt>"));
  EXPECT_FALSE(Find<QPushButton>("button")->isEnabled());
  EXPECT_EQ(Find<QPushButton>("button")->text(), QStringLiteral("&Exit"));
  EXPECT_TRUE(Find<QAbstractButton>("down")->isChecked());
  EXPECT_EQ(Find<QListView>("list")->model()->rowCount(), 1);
  EXPECT_EQ(Find<QListView>("list")->currentIndex().row(), 0);
  EXPECT_EQ(Find<QListView>("box")->currentIndex().row(), 1);
  EXPECT_EQ(Find<QTabBar>("tabs")->currentIndex(), 1);
  EXPECT_EQ(Find<QLineEdit>("line")->text(), QStringLiteral("9600"));
  EXPECT_FALSE(Find<QWidget>("image")->isVisible());
  const QList<QAction*> entries = Find<QMenuBar>("")->actions().front()->menu()->actions();
  EXPECT_TRUE(entries[0]->isChecked());
  EXPECT_FALSE(entries[1]->isVisible());
  EXPECT_FALSE(entries[1]->menu()->actions().front()->isEnabled());
  EXPECT_EQ(window().windowTitle(), QStringLiteral("title"));
  EXPECT_EQ(window().cursor().shape(), Qt::WaitCursor);
}

TEST_F(FormWindowTest, ReportsTheUsersActions) {
  std::string log;
  form->label.click = [&] { log += "label "; };
  form->image.click = [&] { log += "image "; };
  form->down.click = [&] { log += "down "; };
  form->tabs.click = [&] { log += "tab "; };
  form->mnuTerminal.click = [&] { log += "menu "; };
  form->list.keyPress = [&](char c) { log += c; };
  form->up.value = true;
  form->mnuTerminal.checked = true;
  Turn();
  for (const char* name : {"label", "image", "down"}) {
    QTest::mouseClick(Find<QWidget>(name), Qt::LeftButton, {}, QPoint(8, 8));
  }
  EXPECT_EQ(log, "");  // no handler runs inside a widget's code
  auto* tabs = Find<QTabBar>("tabs");
  QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(1).center());
  const QAction* entry = Find<QMenuBar>("")->actions().front()->menu()->actions().front();
  const_cast<QAction*>(entry)->trigger();
  for (const int key : {Qt::Key_1, Qt::Key_E}) QTest::keyClick(Find<QListView>("list"), Qt::Key(key));
  QTest::keyClick(Find<QWidget>("box"), Qt::Key_2);
  Turn();
  EXPECT_EQ(log, "label image down tab menu 1e");
  EXPECT_TRUE(form->down.value);
  EXPECT_FALSE(form->up.value);
  EXPECT_EQ(form->tabs.selected, 2);
  EXPECT_EQ(form->list.selected, 1) << "a letter searches the list, a digit does not";
  EXPECT_EQ(form->box.listIndex, 2) << "in a plain list, a digit does";
  EXPECT_TRUE(entry->isChecked()) << "only the logic changes the check mark";
}

TEST_F(FormWindowTest, ADoubleClickIsOneClickOnALabelAndTwoOnAnImage) {
  int labels = 0;
  int images = 0;
  form->label.click = [&] { ++labels; };
  form->image.click = [&] { ++images; };
  Turn();
  for (const char* name : {"label", "image"}) {
    const QPoint at = Find<QWidget>(name)->mapTo(&window(), QPoint(8, 8));
    QTest::mouseDClick(window().windowHandle(), Qt::LeftButton, {}, at);  // two complete clicks
    Turn();
  }
  EXPECT_EQ(labels, 1);
  EXPECT_EQ(images, 2);
}

TEST_F(FormWindowTest, ATinyControlIsPaintedWithoutWarnings) {
  static QStringList said;
  const auto before =
      qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) { said << text; });
  form->button.picture = "save";
  for (const Twips side : {0, 15, 60, 120, 150}) {
    form->button.rect = form->image.rect = form->list.rect = Rect{0, 0, side, side};
    Turn();
    window().grab();
  }
  qInstallMessageHandler(before);
  EXPECT_EQ(FromQt(said.join(u'\n')), "");
}

TEST_F(FormWindowTest, AControlCanGetTheFocusInTheTurnThatShowsItAndNeverWhileHidden) {
  NEEDS_ACTIVE_WINDOW();
  form->frame.visible = false;
  form->keys.SetFocus();
  Turn();
  form->button.SetFocus();
  form->frame.visible = true;
  Turn();
  EXPECT_EQ(QApplication::focusWidget(), Find<QWidget>("button"));
  // The user moves the focus in the order of the controls. When the focused control is hidden, none has the
  // focus.
  std::string log;
  form->button.lostFocus = [&] { log += form->up.HasFocus() ? "left " : "early "; };
  form->up.gotFocus = [&] { log += "entered"; };
  QTest::keyClick(&window(), Qt::Key_Tab);
  EXPECT_EQ(form->Focused(), &form->up);
  Turn();
  EXPECT_EQ(log, "left entered");
  form->frame.visible = false;
  Turn();
  EXPECT_EQ(form->Focused(), nullptr) << "another control got the focus without the user's choice";
  form->check.SetFocus();
  Turn();
  form->check.enabled = false;
  Turn();
  EXPECT_EQ(form->Focused(), nullptr);
  // A list without a selection keeps none when it gets the focus.
  form->box.SetFocus();
  Turn();
  ASSERT_TRUE(form->box.HasFocus());
  EXPECT_EQ(form->box.listIndex, -1);
  QTest::keyClick(Find<QWidget>("box"), Qt::Key_Down);
  EXPECT_EQ(form->box.listIndex, 0);
  // A hidden control does not get the focus.
  form->keys.SetFocus();
  form->button.SetFocus();
  Turn();
  EXPECT_FALSE(form->button.HasFocus());
}

TEST_F(FormWindowTest, TheFormSeesKeysFirst) {
  NEEDS_ACTIVE_WINDOW();
  std::string log;
  form->keyDown = [&](KeyEvent& key) {
    log += std::to_string(key.keyCode) + (key.alt ? "a" : "") + (key.shift ? "s" : "") + ' ';
    key.handled = key.keyCode == 9 || (key.alt && key.keyCode == 'M');
  };
  form->keys.keys = [&](std::string_view text) { log += '<' + std::string(text) + "> "; };
  form->button.click = [&] { log += "click "; };
  form->keys.SetFocus();
  Turn();
  struct Stroke {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    char text;
  };
  for (const Stroke& stroke : {Stroke{Qt::Key_A, {}, 'a'}, Stroke{Qt::Key_A, Qt::ShiftModifier, 'A'},
                               Stroke{Qt::Key_F4, {}, 0}, Stroke{Qt::Key_Tab, {}, '\t'},
                               Stroke{Qt::Key_M, Qt::AltModifier, 'm'}, Stroke{Qt::Key_Return, {}, '\r'}}) {
    QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), stroke.key, stroke.text, stroke.modifiers);
    Turn();
  }
  EXPECT_EQ(log, "65 <a> 16s 65s <A> 115 9 18a 77a 13 <\r> ");
  EXPECT_TRUE(form->keys.HasFocus());
}

TEST_F(FormWindowTest, AShortcutIsLeftToTheForm) {
  NEEDS_ACTIVE_WINDOW();
  std::string log;
  form->mnuTerminal.click = [&] { log += "menu "; };
  form->keys.keys = [&](std::string_view text) { log += text == "\x10" ? "byte " : "other "; };
  form->keys.SetFocus();
  Turn();
  for (const bool taken : {false, true}) {
    form->keyDown = [taken](KeyEvent& key) { key.handled = taken && key.keyCode == 'P' && key.ctrl; };
    QTest::sendKeyEvent(QTest::Click, Find<QWidget>("keys"), Qt::Key_P, QStringLiteral("\x10"),
                        Qt::ControlModifier);
    Turn();
  }
  EXPECT_EQ(log, "byte ");
}

TEST_F(FormWindowTest, AnUpDownIsSteppedByKeysAndReportsItsMeaning) {
  NEEDS_ACTIVE_WINDOW();
  form->arrows.change = [&] { form->bits.SetText(form->bits.tag + " bits"); };
  form->check.SetFocus();
  Turn();
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
  EXPECT_TRUE(form->check.value);
  QTest::keyClick(&window(), Qt::Key_Tab);
  ASSERT_EQ(form->Focused(), &form->arrows) << "Tab stopped at a read-only text";
  auto* arrows = Find<QSpinBox>("arrows");
  for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Up, Qt::Key_8, Qt::Key_Down}) QTest::keyClick(arrows, key);
  EXPECT_EQ(form->bits.tag, "5");
  Turn();
  Turn();  // the text is updated one turn after the value
  const auto* spoken = QAccessible::queryAccessibleInterface(arrows);
  EXPECT_EQ(spoken->text(QAccessible::Name), QStringLiteral("Data"));
  EXPECT_EQ(spoken->text(QAccessible::Value), QStringLiteral("5 bits"));
  form->arrows.value = 99;  // the logic's value takes precedence and is limited to the range
  Turn();
  QTest::keyClick(arrows, Qt::Key_Down);
  EXPECT_EQ(form->bits.tag, "7");
}

TEST_F(FormWindowTest, AltAloneAndF10OpenTheMenuBarWhateverTheFormHandles) {
  NEEDS_ACTIVE_WINDOW();
  std::string log;
  form->keyDown = [&](KeyEvent& key) {
    log += std::to_string(key.keyCode) + ' ';
    key.handled = key.alt;
  };
  form->keys.SetFocus();
  Turn();
  auto* bar = Find<QMenuBar>("");
  QTest::keyClick(Find<QWidget>("keys"), Qt::Key_Alt, Qt::AltModifier);
  EXPECT_EQ(QApplication::focusWidget(), bar);
  log.clear();
  QTest::keyClick(bar, Qt::Key_Tab);  // moves through the menus and does not go to the modem
  EXPECT_EQ(log, "");
  QTest::keyClick(bar, Qt::Key_Escape);
  EXPECT_EQ(QApplication::focusWidget(), Find<QWidget>("keys"));
  QTest::keyClick(Find<QWidget>("keys"), Qt::Key_F10);
  EXPECT_EQ(QApplication::activePopupWidget(), bar->actions().front()->menu());
  EXPECT_EQ(log, "121 ");
  QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
}

TEST_F(FormWindowTest, LongTextsFollowEachEdit) {
  const auto check = [this] {
    Turn();
    std::string text = form->pages.Text();
    std::erase(text, '\r');
    EXPECT_EQ(FromQt(Find<QPlainTextEdit>("pages")->toPlainText()), text);
  };
  form->pages.Append("one\r");  // a line end in two pieces, and in two turns
  Turn();
  form->pages.Append("\ntwo\r\n");
  form->pages.Append("three\r\nfour");
  check();
  form->pages.Edit(0, 5, "");          // removes the oldest line
  form->pages.Edit(5, 5, "2b\r\n2c");  // replaces the third line with two
  form->pages.Append("!");
  form->pages.Edit(4, 1, "");  // separates CR from LF
  check();
  for (int i = 0; i < 5000; ++i) form->pages.Edit(0, 1, i % 3 == 0 ? "\r\nx" : "ab");
  check();
}

TEST_F(FormWindowTest, TypingWorksTogetherWithEditsOfTheLogicNotYetShown) {
  int changes = 0;
  form->pages.change = [&] { ++changes; };
  form->pages.Append("a\x0C\xA0\r\n");
  Turn();
  auto* pages = Find<QPlainTextEdit>("pages");
  pages->setFocus();
  pages->moveCursor(QTextCursor::Start);
  form->pages.Append("z");  // not shown yet
  QTest::keyClick(pages, Qt::Key_Q);
  EXPECT_EQ(form->pages.Text(), "qa\x0C\xA0\r\nz");
  Turn();
  QTest::keyClick(pages, Qt::Key_Return);
  EXPECT_EQ(form->pages.Text(), "q\r\na\x0C\xA0\r\nz");
  Turn();  // the event is posted, like all events
  EXPECT_EQ(changes, 2);
  auto* line = Find<QLineEdit>("line");
  line->selectAll();
  QTest::keyClick(line, Qt::Key_7);
  EXPECT_EQ(form->line.Text(), "7");
  QApplication::clipboard()->setText(QStringLiteral("8\r\n\u20AC9\n"));
  line->paste();
  EXPECT_EQ(form->line.Text(), "78 9") << "only characters that the user sees may be sent";
  EXPECT_EQ(line->text(), QStringLiteral("78 9"));
  QApplication::clipboard()->clear();  // other tests start with an empty clipboard
}

TEST_F(FormWindowTest, TheCaretOfALongTextIsTheSameInFormAndWidget) {
  auto* pages = Find<QPlainTextEdit>("pages");
  form->pages.SetText("one\r\ntwo\r\n");
  form->pages.selection = TextBox::Selection{5, 3};
  Turn();
  EXPECT_EQ(pages->textCursor().selectedText(), QStringLiteral("two"));
  QTest::keyClick(pages, Qt::Key_Home, Qt::ControlModifier);
  QTest::keyClick(pages, Qt::Key_Down);
  QTest::keyClick(pages, Qt::Key_Right);
  EXPECT_EQ(form->pages.selection, (TextBox::Selection{6, 0}));
  form->pages.Edit(form->pages.selection.Get().start, 0, "1\r\n2");
  QTest::keyClick(pages, Qt::Key_Left);  // acts on the page, which does not show the edit yet
  Turn();
  EXPECT_EQ(form->pages.selection, (TextBox::Selection{5, 0}));
  form->pages.SetText("three");
  Turn();
  EXPECT_EQ(pages->textCursor().position(), 5);
  QTest::keyClicks(pages, QStringLiteral("s"));
  Turn();
  EXPECT_EQ(form->pages.Text(), "threes");
  EXPECT_EQ(form->pages.selection, (TextBox::Selection{6, 0}));
}

TEST_F(FormWindowTest, ATextBoxShowsItsSelectionColourAndLock) {
  auto* line = Find<QLineEdit>("line");
  form->line.selection = TextBox::Selection{2, 3};
  form->line.backColor = 0x0000FFU;
  form->line.locked = form->pages.locked = true;
  Turn();
  EXPECT_EQ(line->selectedText(), QStringLiteral("520"));
  EXPECT_EQ(line->palette().color(QPalette::Base), QColor(Qt::red));
  EXPECT_TRUE(line->isReadOnly() && Find<QPlainTextEdit>("pages")->isReadOnly());
  line->setSelection(0, 2);
  EXPECT_EQ(form->line.SelText(), "11");
}

TEST_F(FormWindowTest, ADropIsReportedOnlyToTheLogic) {
  auto* widget = Find<QLineEdit>("line");
  QMimeData data;
  data.setText(QStringLiteral("dropped"));
  QDragEnterEvent enters(QPoint(3, 3), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(widget, &enters);
  QDropEvent dropped(QPointF(3, 3), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                     Qt::ShiftModifier);
  QCoreApplication::sendEvent(widget, &dropped);
  EXPECT_TRUE(dropped.isAccepted());
  EXPECT_EQ(dropped.dropAction(), Qt::CopyAction) << "after a move, the source would delete the file";
  Turn();
  EXPECT_EQ(form->drops, 1);
  EXPECT_EQ(widget->text(), QStringLiteral("115200"));
}

TEST_F(FormWindowTest, ABurstIsPaintedOnce) {
  struct Painted : QObject {
    int count = 0;
    bool eventFilter(QObject*, QEvent* event) override {
      count += event->type() == QEvent::Paint;
      return false;
    }
  } painted;
  test::Elapse(loop, std::chrono::milliseconds(50));  // until the first painting has finished
  Find<QWidget>("label")->installEventFilter(&painted);
  for (int i = 0; i < 100'000; ++i) form->label.caption = std::to_string(i);
  ASSERT_TRUE(Becomes(loop, [&] { return painted.count > 0; }));
  test::Elapse(loop, std::chrono::milliseconds(50));
  EXPECT_EQ(painted.count, 1);
  EXPECT_EQ(Find<QLabel>("label")->text(), QStringLiteral("99999"));
}

TEST_F(FormWindowTest, PositionAndSizeAreTransferredBothWays) {
  NEEDS_ACTIVE_WINDOW();
  const Rect before = form->rect;
  EXPECT_EQ(before, (Rect{1500, 1500, 9000, 6000})) << "showing must not move the window";
  int resizes = 0;
  form->resize = [&] { ++resizes; };
  window().resize(window().size() + QSize(20, 10));
  ASSERT_TRUE(Becomes(loop, [&] { return resizes == 1; }));
  window().move(window().pos() + QPoint(30, 40));
  const Rect after{before.left + 450, before.top + 600, before.width + 300, before.height + 150};
  ASSERT_TRUE(Becomes(loop, [&] { return form->rect == after; }));
  EXPECT_EQ(resizes, 1);

  form->rect = before;
  ASSERT_TRUE(Becomes(loop, [&] { return resizes == 2; }));
  // A late report of the old position by the window system must not last.
  ASSERT_TRUE(Becomes(loop, [&] { return window().pos() == QPoint(100, 100) && form->rect == before; }));
  test::Elapse(loop, std::chrono::milliseconds(50));
  EXPECT_EQ(form->rect.Get(), before);
  form->rect = Rect{900'000, 1500, 9000, 6000};  // on a screen that no longer exists
  Turn();
  EXPECT_LT(window().pos().x(), 5000);
}

TEST_F(FormWindowTest, ReportsMinimising) {
  if (QGuiApplication::platformName() != QStringLiteral("offscreen")) NEEDS_ACTIVE_WINDOW();
  int resizes = 0;
  form->resize = [&] { ++resizes; };
  Turn();
  resizes = 0;
  window().showMinimized();
  ASSERT_TRUE(Becomes(loop, [&] { return form->windowState == WindowState::Minimized; }));
  ASSERT_TRUE(Becomes(loop, [&] { return resizes == 1; }));
  EXPECT_EQ(form->rect.Get().width, 9000);
  test::Elapse(loop, std::chrono::milliseconds(200));  // a window manager takes its time
  form->windowState = WindowState::Normal;
  ASSERT_TRUE(Becomes(loop, [&] { return !window().isMinimized(); }));
}

TEST_F(FormWindowTest, AWindowThatTakesNoFocusIsShownAndRestoredWithoutIt) {
  NEEDS_ACTIVE_WINDOW();
  if (QGuiApplication::platformName() == QStringLiteral("offscreen")) {
    GTEST_SKIP() << "offscreen there is no window manager that activates windows";
  }
  Form* const owners[] = {nullptr, form.get()};
  for (Form* owner : owners) {
    struct Page : Form {
      Page(EventLoop& l, WindowSystem& w, Form* o) : Form(l, w, "page", o) {
        rect = Rect{3000, 3000, 4500, 3000};
        takesFocus = false;
      }
      ~Page() override { Withdraw(); }
      TextBox text{*this, {.name = "text", .rect = {0, 0, 3000, 900}}};
    } page(loop, windows, owner);
    bool wasActive = false;
    page.activate = [&] { wasActive = true; };
    page.text.SetFocus();
    page.visible = true;
    ASSERT_TRUE(Becomes(loop, [&] { return windows.WindowOf(page)->isVisible(); }));
    test::Elapse(loop, std::chrono::milliseconds(200));
    QWidget& shown = *windows.WindowOf(page);
    shown.showMinimized();
    ASSERT_TRUE(Becomes(loop, [&] { return page.windowState == WindowState::Minimized; }));
    test::Elapse(loop, std::chrono::milliseconds(200));
    page.windowState = WindowState::Normal;
    ASSERT_TRUE(Becomes(loop, [&] { return shown.isVisible() && !shown.isMinimized(); }));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&shown));
    test::Elapse(loop, std::chrono::milliseconds(300));
    EXPECT_TRUE(shown.isVisible() && !shown.isMinimized());
    EXPECT_EQ(page.rect.Get(), (Rect{3000, 3000, 4500, 3000}));
    EXPECT_TRUE(window().isActiveWindow());
    ASSERT_NE(shown.focusWidget(), nullptr);
    QTest::keyClicks(shown.focusWidget(), QStringLiteral("x"));
    EXPECT_EQ(page.text.Text(), "x") << "the restored window does not work";
    page.visible = false;
    Turn();
    page.visible = true;
    test::Elapse(loop, std::chrono::milliseconds(300));
    EXPECT_TRUE(window().isActiveWindow());
    EXPECT_FALSE(wasActive);
    if (owner == nullptr) continue;
    shown.activateWindow();  // the user clicks into it
    EXPECT_TRUE(Becomes(loop, [&] { return page.Active(); }));
  }
}

TEST_F(FormWindowTest, ReportsActivation) {
  NEEDS_ACTIVE_WINDOW();
  if (QGuiApplication::platformName() == QStringLiteral("offscreen")) {
    GTEST_SKIP() << "offscreen a window does not become active again";
  }
  EXPECT_TRUE(form->Active());
  std::string log;
  form->activate = [&] { log += '+'; };
  form->deactivate = [&] { log += '-'; };
  {
    Sample other(loop, windows);
    other.visible = true;
    ASSERT_TRUE(Becomes(loop, [&] { return other.Active(); }));
    EXPECT_FALSE(form->Active());
  }
  ASSERT_TRUE(Becomes(loop, [&] { return form->Active(); }));
  EXPECT_EQ(log, "-+");
}

TEST_F(FormWindowTest, AFormMayBeDestroyedInItsOwnHandler) {
  form->button.click = [&] { form.reset(); };
  QTest::mouseClick(Find<QWidget>("button"), Qt::LeftButton);
  QTest::mouseClick(Find<QWidget>("button"), Qt::LeftButton);  // arrives after the form is destroyed
  ASSERT_TRUE(Becomes(loop, [&] { return form == nullptr; }));
  Turn();
}

TEST_F(FormWindowTest, AFormMayBeDestroyedWhileItsHandlerWaits) {
  const QPointer<QWidget> shown(&window());
  const auto wait = [&] {
    QTimer::singleShot(0, qApp, [&] { form.reset(); });
    test::Elapse(loop, std::chrono::milliseconds(50));
    EXPECT_NE(shown, nullptr) << "the window was deleted while its handler waited";
  };
  form->keyDown = [&wait](KeyEvent&) { wait(); };
  QTimer::singleShot(0, qApp, [this] {
    Find<QWidget>("keys")->setFocus();
    QTest::sendKeyEvent(QTest::Press, Find<QWidget>("keys"), Qt::Key_F2, QString(), Qt::NoModifier);
    loop.Post([this] { loop.End(); });
  });
  loop.Exec();
  EXPECT_EQ(form, nullptr);
}

TEST(FormWindowEndTest, AWindowMayBeDestroyedWhileAMenuIsOpen) {
  QtEventLoop loop;
  auto windows = std::make_unique<QtWindowSystem>(loop);
  auto form = std::make_unique<Sample>(loop, *windows);
  form->visible = true;
  ASSERT_TRUE(Becomes(loop, [&] { return windows->WindowOf(*form)->isVisible(); }));
  const QPointer<FormWindow> window(windows->WindowOf(*form));
  EXPECT_TRUE(QTest::qWaitForWindowExposed(window));
  QTest::keyClick(window, Qt::Key_F10);
  EXPECT_NE(QApplication::activePopupWidget(), nullptr);
  form.reset();
  // When the menu closes, its focus change must not reach the half-destroyed window. The sanitizers would
  // report that.
  windows.reset();
  EXPECT_EQ(window, nullptr);
}

TEST_F(FormWindowTest, AQuestionIsCancelledWhenItsWindowIsDestroyed) {
  QtDialogs dialogs(loop, windows);
  loop.After(std::chrono::milliseconds(50), [&] { form.reset(); });
  EXPECT_FALSE(dialogs.AskYesNo("Sure?"));
}

}  // namespace
}  // namespace corvex
