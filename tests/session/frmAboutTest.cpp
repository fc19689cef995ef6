#include "session/frmAbout.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>

#include "base/Version.h"
#include "support/Program.h"

namespace corvex {
namespace {

struct AboutTest : test::SessionTest {
  /// The about box, from its menu entry until `act` has closed it.
  void Open(const std::function<void(frmAbout&)>& act) {
    p.loop.After(std::chrono::milliseconds(50),
                 [this, act] { act(dynamic_cast<frmAbout&>(*p.windows.attached.back())); });
    p.Do([this] { term.mnuAbout.click(); });
  }
};

TEST_F(AboutTest, TellsTheVersionAndTheSessionGoesOnBehindIt) {
  p.settings.config.brand.Set(std::string("Acme"));
  p.comPort.sent.clear();
  const std::string minor = std::to_string(kVersionMajor) + '.' + std::to_string(kVersionMinor);
  const std::string revision = std::to_string(kVersionRevision);
  Open([&](frmAbout& about) {
    EXPECT_EQ(about.caption, "Corvex Marine");
    EXPECT_EQ(about.lblVersion.caption, " Corvex Mobile 206118/" + minor + '.' + revision);
    EXPECT_EQ(about.lblbuild.caption, " Build(" + revision + ")");
    EXPECT_EQ(about.lblConf.caption, "Designed for Acme  mobile terminals");
    Feed("<tml><Temp>41</tml>");
    about.cmdOK.click();
  });
  for (const int keyCode : {13, 27}) {
    Open([keyCode](frmAbout& about) {
      KeyEvent key{.keyCode = keyCode};
      about.TakeKey(key);
    });
  }
  EXPECT_EQ(p.windows.attached.size(), 1U) << "it is gone";
  EXPECT_EQ(term.lblTemp.caption, "41C");
  EXPECT_EQ(term.main().mode, ModemMode::Terminal);
  EXPECT_EQ(p.comPort.sent, "");
  Open([this](frmAbout&) { term.queryUnload(); });
  EXPECT_TRUE(p.loop.Ended()) << "the program can end while it is open";
}

TEST(About, OpensOverAWindowThatTheSettingsHavePutAnywhere) {
  for (const std::int32_t edge : {INT32_MAX, INT32_MIN}) {
    test::Program p;
    p.settings.positions.termleft.Set(edge);
    p.settings.positions.termtop.Set(edge);
    p.Start(0.2);
    Rect place;
    p.loop.After(std::chrono::milliseconds(50), [&] {
      place = p.windows.attached.back()->rect;
      p.windows.attached.back()->queryUnload();
    });
    p.Do([&] { p.term.mnuAbout.click(); });
    EXPECT_EQ(place.left > 0, edge > 0);
    EXPECT_LT(std::abs(place.left - p.term.rect.Get().left), p.term.rect.Get().width);
  }
}

}  // namespace
}  // namespace corvex
