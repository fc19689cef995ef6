// What no stream shows: bounds beyond its length.

#include <gtest/gtest.h>

#include <string>

#include "session/TextGrid.h"
#include "session/modTML.h"

namespace corvex {
namespace {

TEST(TagStream, PrintJobWithoutEndIsKeptUpToABoundAndHandedOverWhole) {
  SessionState state;
  TextGrid grid(state);
  TagStream tags(state, grid, [](int, int, int) { return std::string(); });
  const std::string packet = "<tml><Print>001" + std::string(30000, 'x') + "</tml>";
  for (int i = 0; i < 600; ++i) {
    state.printData = false;
    tags.HandleTagPacket(packet);
    ASSERT_EQ(state.printLine.size(), 30000u);
  }
  EXPECT_EQ(state.printText.size(), 16u << 20);
}

}  // namespace
}  // namespace corvex
