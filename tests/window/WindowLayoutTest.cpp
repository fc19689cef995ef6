#include "window/WindowLayout.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "base/Text.h"
#include "support/Program.h"

namespace corvex {
namespace {

constexpr Rect kScreen{0, 0, 24000, 15000};

/// A window system that reports new sizes and chooses the size of a maximised window itself.
struct Sizer : FormObserver {
  explicit Sizer(test::Program& program) : p(program) { p.term.observer = this; }
  ~Sizer() override { p.term.observer = nullptr; }
  void FormChanged(Change change) override {
    if (change == Change::Rect) Tell();
  }
  void ControlChanged(Control&, Change) override {}
  void TextEdited(TextBox&, std::size_t, std::size_t, std::string_view) override {}

  void Tell() {
    p.loop.Post([this] {
      if (p.term.windowState == WindowState::Maximized) p.term.rect.Adopt(kScreen);
      p.term.resize();
    });
  }
  void Drag(Twips width, Twips height) {
    p.term.rect.Adopt({500, 500, width, height});
    Tell();
  }
  void Maximize() {
    normal = p.term.rect;
    p.term.windowState.Adopt(WindowState::Maximized);
    Tell();
  }
  void Restore() {
    p.term.windowState.Adopt(WindowState::Normal);
    Tell();  // the state comes first, the size a little later
    p.loop.After(std::chrono::milliseconds(30), [this] { Drag(normal.width, normal.height); });
  }
  test::Program& p;
  Rect normal;
};

struct WindowLayoutTest : test::SessionTest {
  Rect R(const Control& control) { return control.rect; }
  /// The layout must always fill the window, with and without the panels.
  void ExpectWhole() {
    const bool full = term.main().mode == ModemMode::PortSetup;
    const auto near = [](Twips a, Twips b) { return std::abs(a - b) <= 15; };
    const Twips bottom = R(term.frmAux).top + (full ? R(term.frmAux).height : 0);
    EXPECT_TRUE(near(bottom, term.InnerHeight())) << bottom << ' ' << term.InnerHeight();
    const Twips right = R(term.frmScreen).left + R(term.frmScreen).width;
    const auto margin = static_cast<Twips>(70.0 * term.InnerWidth() / 8860);
    EXPECT_TRUE(near(right + margin, term.InnerWidth())) << right << ' ' << term.InnerWidth();
    EXPECT_EQ(term.mnuZoomIn.enabled, term.windowState == WindowState::Normal);
  }
  void Do(std::string_view step) {
    SCOPED_TRACE(step);
    const auto click = [this](MenuItem& entry) {
      if (entry.enabled) p.Do([&entry] { entry.click(); });
    };
    if (step == "in") click(term.mnuZoomIn);
    if (step == "out") click(term.mnuZoomOut);
    if (step == "port") click(term.mnuPort);
    if (step == "drag") sizer.Drag(11000, 9000);
    if (step == "max") sizer.Maximize();
    if (step == "restore") sizer.Restore();
    if (step == "minimise") {
      term.windowState.Adopt(WindowState::Minimized);
      p.Do([this] { term.resize(); });
      term.windowState.Adopt(WindowState::Normal);
      sizer.Tell();
    }
    p.loop.Run(3);
    ExpectWhole();
  }
  Sizer sizer{p};
};

TEST_F(WindowLayoutTest, FillsTheWindowAfterAnyOrderOfSteps) {
  const Rect compact = term.rect;
  EXPECT_EQ(compact, (Rect{500, 500, 8950, 4095}));
  for (const char* steps :
       {"in,port,out,port", "port,in,in,port,out,out", "drag,port,in,port,out", "out,out,in",
        "port,drag,port,in,out", "max,restore", "max,port,restore,port", "port,max,port,restore",
        "in,max,port,port,restore,out", "port,minimise,in,out,port", "in,in,in,in,port,out,out,out,port"}) {
    SCOPED_TRACE(steps);
    for (const std::string_view step : Split(steps, ',')) Do(step);
    EXPECT_EQ(term.rect, compact);
    EXPECT_EQ(R(term.frmKeys), (Rect{1260, 2840, 6330, 630}));
  }
}

TEST_F(WindowLayoutTest, APanelAddsItsHeightAndRemovesItAgain) {
  Do("port");
  EXPECT_EQ(term.rect.Get().height, 4095 + 2400);
  EXPECT_EQ(term.lblPort.font.Get().size, 8) << "the layout has not been scaled";
  Do("in");
  EXPECT_EQ(term.rect.Get().width, 11635);
  Do("port");
  EXPECT_EQ(term.rect, (Rect{500, 500, 11635, 5324}));
  for (const char* step : {"port", "drag", "port"}) Do(step);
  EXPECT_NEAR(term.rect.Get().height, 570 + (9000 - 570) * 3525 / 5925, 15)
      << "the dragged height included the panel";
}

TEST_F(WindowLayoutTest, TheTimeStaysBesideItsZone) {
  Feed("<tml><Date>10:30|2006.03.31|UTC</tml>");
  for (const char* step : {"in", "max", "restore", "out"}) {
    Do(step);
    EXPECT_LE(R(term.lblTime).left + R(term.lblTime).width, R(term.lblZone).left);
    EXPECT_GT(R(term.lblTime).left, R(term.lblPort).left + R(term.lblPort).width);
  }
  EXPECT_EQ(R(term.lblTime).left, 4905);
  EXPECT_GT(term.lblTime.order(), term.lblZone.order()) << "it is in front where the two overlap";
}

TEST(Scaling, BeginsLaterIfTheWindowStartsMinimised) {
  test::Program p;
  const Sizer sizer(p);
  p.term.windowState.Adopt(WindowState::Minimized);
  p.Start(1);
  p.Do([&p] { p.term.mnuPort.click(); });
  p.loop.Run(1);
  EXPECT_FALSE(p.term.mnuZoomIn.enabled);
  p.term.windowState.Adopt(WindowState::Normal);
  p.Do([&p] { p.term.resize(); });
  p.loop.Run(1);
  EXPECT_EQ(p.term.rect.Get().height, 4095 + 2400);
  EXPECT_TRUE(p.term.mnuZoomIn.enabled && p.term.mnuZoomOut.enabled);
  p.Do([&p] { p.term.mnuZoomIn.click(); });
  p.loop.Run(1);
  EXPECT_EQ(p.term.frmScreen.rect.Get().width, 9812);
  EXPECT_EQ(p.term.InnerHeight(), p.term.frmAux.rect.Get().top + p.term.frmAux.rect.Get().height);
}

}  // namespace
}  // namespace corvex
