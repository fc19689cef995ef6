#include <gtest/gtest.h>

#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <filesystem>
#include <random>

#include "desktop/QtWindowSystem.h"
#include "desktop/Wait.h"
#include "desktop/views/FormWindow.h"
#include "print/frmSDI.h"
#include "support/FakePlatform.h"

// The print view as the user sees it, with the real renderer and the real clock.

namespace corvex {
namespace {

using namespace std::chrono_literals;
using test::Becomes;

class PrintViewTest : public ::testing::Test, protected test::FakesWith<QtEventLoop, QtWindowSystem> {
 protected:
  void Show() {
    owner.rect = Rect{3000, 3000, 9000, 4000};
    loop.Enter([this] { view.NewPrintJob(); });
    EXPECT_TRUE(Becomes(loop, [this] { return windows.WindowOf(view)->isVisible(); }));
    test::Elapse(loop, 100ms);
  }
  void Print(const std::string& text) {
    loop.Enter([&] { view.PrintLine(text); });
  }
  QWidget& Window() { return *windows.WindowOf(view); }
  QPlainTextEdit& Page() { return *Window().findChild<QPlainTextEdit*>(); }
  void Press(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&widget, key, modifiers);
    test::Elapse(loop, 30ms);
  }

  Form owner{loop, windows, "owner"};
  frmSDI view{owner, platform, settings};
};

TEST_F(PrintViewTest, PrintedTextFollowsTheCaretAndTheSelection) {
  Show();
  Print("one\r\n");
  test::Elapse(loop, 30ms);
  QTest::keyClicks(&Page(), "a");
  Print("t");
  QTest::keyClicks(&Page(), "b");  // the "t" is not shown yet
  Print("wo\r\n");
  test::Elapse(loop, 30ms);
  EXPECT_EQ(view.txtNote.Text(), "one\r\nabtwo\r\n");
  EXPECT_EQ(Page().toPlainText(), "one\nabtwo\n");
  EXPECT_TRUE(view.noteDirty());

  // The user selects "ne" and a line end. Both stay in the text and stay selected.
  Press(Page(), Qt::Key_Home, Qt::ControlModifier);
  Press(Page(), Qt::Key_Right);
  for (int i = 0; i < 3; ++i) Press(Page(), Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(view.txtNote.SelText(), "ne\r\n");
  for (const char* line : {"x", "y"}) {
    Print(line);
    test::Elapse(loop, 30ms);
  }
  EXPECT_EQ(Page().toPlainText(), "one\nyxabtwo\n");
  EXPECT_EQ(Page().textCursor().selectedText(), QStringLiteral(u"ne\u2029"));
  EXPECT_EQ(view.txtNote.SelText(), "ne\r\n");

  Press(Page(), Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(shell.clipboard, "ne\r\n");
  EXPECT_EQ(Page().toPlainText(), "oyxabtwo\n");
  Press(Page(), Qt::Key_V, Qt::ControlModifier);
  Press(Page(), Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Page().toPlainText(), "one\nne\nyxabtwo\n");
  Press(Page(), Qt::Key_Delete);
  Press(Page(), Qt::Key_Insert, Qt::ShiftModifier);  // pastes the system's clipboard, which is empty
  EXPECT_EQ(view.txtNote.Text(), "one\r\nne\r\nxabtwo\r\n");

  Page().insertPlainText(QStringLiteral(u"\u03A9"));  // not in Latin-1: shown as it will be saved
  test::Elapse(loop, 30ms);
  EXPECT_EQ(view.txtNote.Text(), "one\r\nne\r\n?xabtwo\r\n");
  EXPECT_EQ(Page().toPlainText(), "one\nne\n?xabtwo\n");
  EXPECT_EQ(Page().textCursor().position(), 8);

  loop.Enter([this] { EXPECT_TRUE(view.ClosePrintForm()); });
  Show();
  Press(Page(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(view.txtNote.Text(), "") << "undo restored an old printout";
}

TEST_F(PrintViewTest, SearchSelectsTheMatchAndScrollsToIt) {
  Show();
  for (int i = 0; i < 500; ++i) Print("line " + std::to_string(i) + "\r\n");
  test::Elapse(loop, 50ms);
  const auto seen = [this] { return Page().viewport()->rect().contains(Page().cursorRect().center()); };
  EXPECT_TRUE(seen()) << "the end of the printout is not visible";
  Press(Page(), Qt::Key_Home, Qt::ControlModifier);
  bool asked = false;
  loop.After(300ms, [&] {
    QWidget* box = QApplication::activeModalWidget();
    ASSERT_NE(box, nullptr);
    QTest::keyClicks(box->focusWidget(), QStringLiteral("LINE 33"));
    test::Elapse(loop, 50ms);
    Press(*box->focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(Becomes(loop, [&] { return Page().textCursor().blockNumber() == 33; }));
    EXPECT_EQ(view.txtNote.SelText(), "line 33");
    Press(*box->focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(Becomes(loop, [&] { return Page().textCursor().blockNumber() == 330; }));
    EXPECT_TRUE(seen());
    EXPECT_FALSE(box->geometry().intersects(Window().geometry())) << "the box hides what it finds";
    asked = true;
    QTest::keyClick(box->focusWidget(), Qt::Key_Escape);
  });
  Press(Page(), Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(asked);
  Press(Page(), Qt::Key_F3);
  EXPECT_TRUE(Becomes(loop, [&] { return Page().textCursor().blockNumber() == 331; }));
}

TEST_F(PrintViewTest, TextAndPageStayEqualUnderAnyEditing) {
  Show();
  Print("one\r\ntwo\nthree\r\r\n\r\n\tfour\r\n");
  const struct {
    Qt::Key key;
    Qt::KeyboardModifiers with;
  } keys[]{{Qt::Key_A, Qt::NoModifier},         {Qt::Key_Return, Qt::NoModifier},
           {Qt::Key_Backspace, Qt::NoModifier}, {Qt::Key_Backspace, Qt::ControlModifier},
           {Qt::Key_Left, Qt::ShiftModifier},   {Qt::Key_Up, Qt::NoModifier},
           {Qt::Key_Up, Qt::ShiftModifier},     {Qt::Key_End, Qt::NoModifier},
           {Qt::Key_Z, Qt::ControlModifier},    {Qt::Key_Y, Qt::ControlModifier},
           {Qt::Key_End, Qt::ShiftModifier},    {Qt::Key_Home, Qt::ControlModifier},
           {Qt::Key_Delete, Qt::NoModifier},    {Qt::Key_End, Qt::ControlModifier}};
  std::minstd_rand random(4);
  std::size_t longest = 0;
  for (int i = 0; i < 600; ++i) {
    const auto& [key, with] = keys[random() % std::size(keys)];
    QTest::keyClick(&Page(), key, with);
    if (i % 20 == 0) Print("printed\r\n");
    if (i % 3 == 0) test::Elapse(loop, 1ms);  // what is printed is often not on the page yet
    if (i % 50 != 0) continue;
    test::Elapse(loop, 30ms);
    std::string text = view.txtNote.Text();
    std::erase(text, '\r');
    ASSERT_EQ(Page().toPlainText().toStdString(), text) << "after key " << i;
    longest = std::max(longest, text.size());
  }
  EXPECT_GT(longest, 100u) << "there was too little text to compare";
}

// The cost of a line must not depend on the length of the text. If it did, it would be about forty times as
// high here.
TEST_F(PrintViewTest, LongPrintoutsAndLongLinesStayFast) {
  Show();
  const auto cost = [this](int prints, const std::string& text) {
    const double began = test::CpuMilliseconds();
    for (int i = 0; i < prints; ++i) {
      Print(text);
      if (i % 10 == 0) loop.Pump(loop.Now());
    }
    test::Elapse(loop, 50ms);
    return test::CpuMilliseconds() - began;
  };
  std::string text = "A line of a printout as long as those of a modem, and a few characters more\r\n";
  const double first = cost(500, text);
  while (text.size() < 8'000'000) text += text;
  Print(text);
  test::Elapse(loop, 50ms);
  text.resize(77);
  EXPECT_LT(cost(500, text), 5 * first);
  loop.Enter([this] { view.txtNote.SetText({}); });

  std::string piece(1023, 'x');
  piece[511] = '\0';
  piece += ' ';
  const double begun = cost(32, piece);
  cost(192, piece);
  EXPECT_LT(cost(32, piece), 5 * begun);
  EXPECT_EQ(view.txtNote.Text().size(), 256u * 1024u + 63u * 2u) << "a line end every 4096 characters";
}

}  // namespace
}  // namespace corvex
