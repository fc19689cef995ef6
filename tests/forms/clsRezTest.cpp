#include "forms/clsRez.h"

#include <gtest/gtest.h>

#include <limits>

#include "forms/Controls.h"
#include "support/FakePlatform.h"

namespace corvex {
namespace {

/// A control whose kind is only a part of a name in the table of kinds.
struct Other : Control {
  Other(Container& parent, std::string_view type)
      : Control(parent, {.rect = {100, 200, 300, 400}}), type_(type) {}
  std::string_view TypeName() const override { return type_; }
  std::string_view type_;
};

struct Sample : Form {
  using Form::Form;
  TabStrip tabs{*this, {.rect = {100, 200, 300, 400}}, {}};
  Frame frame{*this, {.rect = {1000, 500, 4000, 2000}, .font = {.size = 10}}};
  Label label{frame, {.rect = {200, 100, 1000, 300}, .font = {.name = "Courier", .size = 9.5}}};
  Line line{*this, {.rect = {400, 800, 2000, 0}}};
  Image image{*this, {.rect = {100, 200, 300, 400}, .font = {.size = 10}}};
  Other box{*this, "Box"};
  Other lines{*this, "Lines"};
};

class clsRezTest : public ::testing::Test {
 protected:
  /// Gives the window an inner size.
  void Size(Twips width, Twips height) {
    form.rect = Rect{500, 500, width + kFrameWidth, height + kFrameHeight};
  }
  test::VirtualLoop loop;
  test::FakeWindows windows;
  Sample form{loop, windows, "sample"};
  clsRez rez;
};

TEST_F(clsRezTest, ControlsAreScaledByTheirKind) {
  Size(8000, 4000);
  rez.Register(form);
  rez.AdjustControls(form, 6000, 16000);
  EXPECT_EQ(form.frame.rect, (Rect{2000, 750, 8000, 3000}));
  EXPECT_EQ(form.frame.font.Get().size, 21)
      << "in proportion to the width, which has grown more, plus a point";
  EXPECT_EQ(form.label.rect, (Rect{400, 150, 2000, 450}));
  EXPECT_EQ(form.label.font.Get(), (Font{.name = "Courier", .size = 20}));
  EXPECT_EQ(form.line.ends, (LineEnds{800, 1200, 4800, 1200}));
  EXPECT_EQ(form.image.rect, (Rect{200, 300, 600, 600}));
  EXPECT_EQ(form.image.font.Get().size, 10);
  EXPECT_EQ(form.box.rect, (Rect{200, 300, 600, 600})) << "a part of a kind's name counts";
  EXPECT_EQ(form.lines.rect, (Rect{100, 200, 300, 400}));
  EXPECT_EQ(form.tabs.rect, (Rect{100, 200, 300, 400}));
  // At the first size again all is as before, except for the added point.
  rez.AdjustControls(form, 4000, 8000);
  EXPECT_EQ(form.frame.rect, (Rect{1000, 500, 4000, 2000}));
  EXPECT_EQ(form.frame.font.Get().size, 11);
  EXPECT_EQ(form.label.font.Get().size, 10) << "a half is rounded to the even number";
}

TEST_F(clsRezTest, ScalesOnlyWhileEnabledAndRegistered) {
  rez.Register(form);
  EXPECT_FALSE(rez.HasRegistered()) << "the window has no inner size";
  Size(8000, 4000);
  rez.Register(form);
  Other late(form, "Image");
  rez.DisableRez();
  rez.AdjustControls(form, 8000, 16000);
  EXPECT_EQ(form.frame.rect, (Rect{1000, 500, 4000, 2000}));
  EXPECT_TRUE(rez.HasRegistered());
  rez.EnableRez();
  rez.AdjustControls(form, 8000, 16000);
  EXPECT_EQ(form.frame.rect, (Rect{2000, 1000, 8000, 4000}));
  EXPECT_EQ(late.rect, (Rect{100, 200, 300, 400}));
  // Registered again: the present sizes are the measure. Excessive sizes end at a bound.
  rez.Register(form);
  constexpr Twips kMost = std::numeric_limits<Twips>::max();
  rez.AdjustControls(form, kMost, 4000);
  EXPECT_EQ(form.frame.rect, (Rect{1000, 536'870'912, 4000, 1'000'000'000}));
  EXPECT_EQ(form.frame.font.Get().size, 21) << "no font can be that large";
  EXPECT_EQ(late.rect.Get().width, 150);
}

}  // namespace
}  // namespace corvex
