#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "forms/Controls.h"
#include "support/FakePlatform.h"
#include "support/VirtualLoop.h"

namespace corvex {
namespace {

struct Recorder : FormObserver {
  void FormChanged(Change change) override { log.emplace_back("form", change); }
  void ControlChanged(Control& control, Change change) override { log.emplace_back(control.name(), change); }
  void TextEdited(TextBox&, std::size_t, std::size_t, std::string_view) override {}
  std::vector<std::pair<std::string, Change>> log;
};

struct TwoControls : Form {
  using Form::Form;
  Label label{*this, {.name = "label", .caption = "a"}};
  Frame frame{*this, {.name = "frame"}};
  TextBox text{frame, {.name = "text", .caption = "abc"}};
  Timer timer{*this, {.name = "timer", .enabled = false, .interval = 100}};
};

class FormTest : public ::testing::Test {
 protected:
  test::VirtualLoop loop;
  test::FakeWindows windows;
  TwoControls form{loop, windows, "form"};
};

TEST_F(FormTest, NotifiesItsObserverOfChangesOnly) {
  Recorder recorder;
  form.observer = &recorder;
  form.label.caption = "a";
  form.label.caption = "b";
  form.label.BringToFront();
  form.label.BringToFront();  // already in front
  form.text.SetFocus();
  const std::vector<std::pair<std::string, Change>> expected{
      {"label", Change::Caption}, {"label", Change::Order}, {"text", Change::Focus}};
  EXPECT_EQ(recorder.log, expected);
  EXPECT_TRUE(form.text.HasFocus());
}

TEST_F(FormTest, AControlThatLosesTheFocusCanTakeItBack) {
  std::string log;
  form.text.gotFocus = [&] { log += "text "; };
  form.label.gotFocus = [&] { log += "label "; };
  form.text.lostFocus = [&] { log += "left "; };
  form.text.SetFocus();
  form.label.SetFocus();
  EXPECT_EQ(log, "text left label ");
  form.text.SetFocus();
  form.text.lostFocus = [&] { form.text.SetFocus(); };
  log.clear();
  form.label.SetFocus();
  EXPECT_EQ(log, "text ");
  EXPECT_TRUE(form.text.HasFocus());
}

TEST_F(FormTest, TimerTicksWhileEnabledAndNeverWithinItsOwnTick) {
  int ticks = 0;
  int depth = 0;
  int deepest = 0;
  form.timer.tick = [&] {
    ++ticks;
    deepest = std::max(deepest, ++depth);
    Pause(loop, 0.35);  // longer than the interval
    --depth;
  };
  form.timer.enabled = true;
  loop.Run(1.05);  // ticks at about 0.1, 0.55 and 1.0
  EXPECT_EQ(ticks, 3);
  EXPECT_EQ(deepest, 1);
  form.timer.enabled = false;
  loop.Run(1.0);
  EXPECT_EQ(ticks, 3);
}

TEST_F(FormTest, AFormMayDestroyItselfInATickOfItsTimer) {
  for (const bool atTheEnd : {false, true}) {
    auto other = std::make_unique<TwoControls>(loop, windows, "other");
    std::string log;
    other->timer.tick = [&] {
      other.reset();
      log += "gone";  // the captures of the tick are still alive
      if (atTheEnd) loop.End();
      Pause(loop, 0.5);
      log += " and done";
    };
    other->timer.enabled = true;
    loop.Run(1);
    EXPECT_EQ(log, atTheEnd ? "gone" : "gone and done");
  }
}

TEST_F(FormTest, TheCaretKeepsItsPlaceInAnEditedText) {
  const auto after = [&](TextBox::Selection selection, std::size_t position, std::size_t removed,
                         std::string_view inserted) {
    form.text.SetText("abcdef");
    form.text.selection = selection;
    form.text.Edit(position, removed, inserted);
    const auto [start, length] = form.text.selection.Get();
    return std::make_pair(start, length);
  };
  using Place = std::pair<std::size_t, std::size_t>;
  EXPECT_EQ(after({6, 0}, 6, 0, "gh"), Place(8, 0)) << "at the end it follows the text";
  EXPECT_EQ(after({2, 0}, 6, 0, "gh"), Place(2, 0));
  EXPECT_EQ(after({4, 1}, 0, 3, ""), Place(1, 1));
  EXPECT_EQ(after({4, 2}, 6, 0, "gh"), Place(4, 2)) << "the marked text stays marked";
  EXPECT_EQ(after({1, 4}, 2, 1, "xyz"), Place(1, 6));
  EXPECT_EQ(after({1, 3}, 0, 6, "xy"), Place(0, 0)) << "all of the marked text is gone";
  form.text.SetText("abcdef");
  form.text.selection = TextBox::Selection{2, 3};
  form.text.ReplaceSelection("-");
  EXPECT_EQ(form.text.Text(), "ab-f");
  EXPECT_EQ(form.text.selection.Get(), (TextBox::Selection{3, 0}));
}

TEST_F(FormTest, ALargeWindowOverASmallOneKeepsItsTitleOnTheScreen) {
  form.Centre({3000, 3000, 9000, 6000}, 3000, 2000);
  EXPECT_EQ(form.rect, (Rect{6000, 5000, 3000, 2000}));
  form.Centre({500, 500, 4000, 4000}, 6000, 8000);
  EXPECT_EQ(form.rect, (Rect{0, 0, 6000, 8000}));
  form.Centre({-9000, 500, 4000, 4000}, 6000, 4000);
  EXPECT_EQ(form.rect, (Rect{-10000, 500, 6000, 4000})) << "on a second screen to the left";
}

TEST_F(FormTest, EnterAndEscClickTheirButtonsUnlessTheFocusOrTheLogicTakesThem) {
  struct Asking : TwoControls {
    using TwoControls::TwoControls;
    Button ok{*this, {.name = "ok"}};
    Button other{*this, {.name = "other"}};
  };
  auto made = std::make_unique<Asking>(loop, windows, "asking");
  Asking& asking = *made;
  asking.visible = true;
  std::string clicks;
  asking.ok.click = [&] { clicks += 'O'; };
  asking.other.click = [&] { clicks += 'X'; };
  asking.defaultButton = &asking.ok;
  asking.cancelButton = &asking.other;
  const auto press = [&](KeyEvent key) {
    asking.TakeKey(key);
    const std::string within = clicks;  // must be empty until the key has been answered
    loop.Run(0);
    return within + '/' + std::exchange(clicks, {}) + (key.handled ? "!" : "");
  };
  EXPECT_EQ(press({.keyCode = 13}), "/O!");
  EXPECT_EQ(press({.keyCode = 27}), "/X!");
  EXPECT_EQ(press({.keyCode = 13, .alt = true}), "/");
  EXPECT_EQ(press({.keyCode = 13, .repeated = true}), "/!");
  asking.other.SetFocus();
  EXPECT_EQ(press({.keyCode = 13}), "/X!");
  asking.text.SetFocus();
  EXPECT_EQ(press({.keyCode = 13}), "/O!");
  asking.text.multiLine = true;
  EXPECT_EQ(press({.keyCode = 13}), "/") << "it types a line end";
  asking.cancelButton->enabled = false;
  EXPECT_EQ(press({.keyCode = 27}), "/");
  asking.cancelButton->enabled = true;
  asking.keyDown = [](KeyEvent& key) { key.handled = key.keyCode == 13; };
  asking.label.SetFocus();
  EXPECT_EQ(press({.keyCode = 13}), "/!");

  // Of two keys at once the first closes the form. The second key and a later one must click nothing.
  asking.keyDown = Event<KeyEvent&>::Handler();
  asking.other.click = [&] { asking.visible = false; };
  for (int keyCode : {27, 13}) {
    KeyEvent key{.keyCode = keyCode};
    asking.TakeKey(key);
  }
  EXPECT_EQ(press({.keyCode = 13}), "/!");
  KeyEvent late{.keyCode = 27};
  asking.visible = true;
  asking.TakeKey(late);
  made.reset();
  loop.Run(0);
}

}  // namespace
}  // namespace corvex
