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

TEST_F(FormTest, TellsItsObserverOfChangesAndOnlyOfThose) {
  Recorder recorder;
  form.observer = &recorder;
  form.label.caption = "a";
  form.label.caption = "b";
  form.label.BringToFront();
  form.label.BringToFront();  // is in front already
  form.text.SetFocus();
  const std::vector<std::pair<std::string, Change>> expected{
      {"label", Change::Caption}, {"label", Change::Order}, {"text", Change::Focus}};
  EXPECT_EQ(recorder.log, expected);
  EXPECT_TRUE(form.text.HasFocus());
}

TEST_F(FormTest, TimerTicksWhileEnabledAndNeverInsideItsOwnTick) {
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
  loop.Run(1.05);  // ticks begin at about 0.1, 0.55 and 1.0
  EXPECT_EQ(ticks, 3);
  EXPECT_EQ(deepest, 1);
  form.timer.enabled = false;
  loop.Run(1.0);
  EXPECT_EQ(ticks, 3);
}

TEST_F(FormTest, TimerEnabledAnewBeginsAnew) {
  int ticks = 0;
  form.timer.tick = [&] {
    ++ticks;
    form.timer.enabled = false;
  };
  form.timer.enabled = true;
  loop.Run(0.08);
  form.timer.enabled = false;
  form.timer.enabled = true;
  loop.Run(0.08);
  EXPECT_EQ(ticks, 0);
  loop.Run(1);
  EXPECT_EQ(ticks, 1);
}

TEST_F(FormTest, AFormMayDestroyItselfInATickOfItsTimer) {
  for (const bool atTheEnd : {false, true}) {
    auto other = std::make_unique<TwoControls>(loop, windows, "other");
    std::string log;
    other->timer.tick = [&] {
      other.reset();
      log += "gone";  // what the tick has captured is still there
      if (atTheEnd) loop.End();
      Pause(loop, 0.5);
      log += " and done";
    };
    other->timer.enabled = true;
    loop.Run(1);
    EXPECT_EQ(log, atTheEnd ? "gone" : "gone and done");
  }
}

}  // namespace
}  // namespace corvex
