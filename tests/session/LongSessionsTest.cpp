#include <gtest/gtest.h>

#include <algorithm>

#include "session/Route.h"

namespace corvex {
namespace {

TEST(LongSessions, ATickingUnitKeepsItForAnHour) {
  for (const test::Route route : test::kRoutes) {
    test::Routed r(route);
    r.p.Start(3600);
    EXPECT_EQ(r.term.main().mode, ModemMode::Terminal);
    EXPECT_EQ(r.UnitShows(), "idle");
    const std::string& sent = r.Sent();
    EXPECT_EQ(std::count(sent.begin(), sent.end(), 'g'), 1) << "one probe: " << sent;
  }
}

}  // namespace
}  // namespace corvex
