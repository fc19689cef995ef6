#include <gtest/gtest.h>

#include <algorithm>

#include "session/DeviceUser.h"

// Whole visits to the device manager on each route, from the start of the program to its end.

namespace corvex {
namespace {

using test::DeviceUser;
using test::Routed;

class DeviceVisitTest : public ::testing::TestWithParam<test::Route> {};

// tests/data/routes holds the bytes of both directions and their times.
TEST_P(DeviceVisitTest, PassesTheBytesOfItsRecording) {
  simulation::ErbOptions options;
  options.unit = {.tick = std::chrono::seconds(5), .trace = false};
  Routed r(GetParam(), options);
  r.p.settings.logging.wirelog.Set(true);
  r.p.Start(3);
  DeviceUser user(r,
                  {"save", "add", "edit", "remove", "port", "handset", "serial", "ring", "buzzer", "load"});
  user.Visit();
  r.p.loop.Run(30);
  EXPECT_EQ(r.UnitShows(), "idle");
  EXPECT_TRUE(user.plan.empty());
  user.ExpectNothingAfterTheEnd();
  r.p.Do([&] { r.term.mnuExit.click(); });

  const std::string name = test::RouteName(GetParam());
  test::ExpectRecorded(test::WireLog(r), CORVEX_TEST_DATA "/routes/devices-" + name + ".log");
}

INSTANTIATE_TEST_SUITE_P(All, DeviceVisitTest, ::testing::ValuesIn(test::kRoutes), [](const auto& test) {
  std::string name = test::RouteName(test.param);
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

}  // namespace
}  // namespace corvex
