#include "session/frmAbout.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "base/Version.h"
#include "support/FakePlatform.h"

namespace corvex {
namespace {

// How the about box opens and closes is tested in tests/data/streams/about.txt.
TEST(frmAboutTest, ShowsTheVersionOverAWindowInAnyPlace) {
  test::FakePlatform p;
  Form owner(p.loop, p.windows, "owner");
  for (const Twips edge : {1'000'000'000, -1'000'000'000}) {
    owner.rect = Rect{edge, edge, 9000, 4000};
    const frmAbout about(owner, p.settings);
    const std::string minor = std::to_string(kVersionMajor) + '.' + std::to_string(kVersionMinor);
    const std::string revision = std::to_string(kVersionRevision);
    EXPECT_EQ(about.lblVersion.caption, " Corvex Mobile 206118/" + minor + '.' + revision);
    EXPECT_EQ(about.lblbuild.caption, " Build(" + revision + ")");
    EXPECT_LT(std::abs(about.rect.Get().left - edge), 9000);
  }
}

}  // namespace
}  // namespace corvex
