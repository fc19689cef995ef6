#include "desktop/QtDspLibrary.h"

#include <gtest/gtest.h>

#include <QLibrary>
#include <vector>

#include "support/FakePlatform.h"

namespace corvex {
namespace {

TEST(QtDspLibrary, SkipsAnInvalidFileAndPassesTheNumbers) {
  const std::vector<std::int16_t> message{4, 1, -2, 456, 0};
  const test::TempFolder empty;
  QtDspLibrary({QString::fromStdString(empty.Name())}).DspMsg(message.data());  // no library: does nothing
  test::TempFolder other;
  other.Write("CorvexDsp.so", "not a library");
  const QString folder = QStringLiteral(CORVEX_TEST_LIBRARY);
  QtDspLibrary({QString::fromStdString(other.Name()), folder}).DspMsg(message.data());
  using Last = const std::vector<std::int16_t>* (*)();
  const auto last =
      reinterpret_cast<Last>(QLibrary(folder + QStringLiteral("/CorvexDsp")).resolve("LastMessage"));
  ASSERT_NE(last, nullptr);
  EXPECT_EQ(*last(), message);
}

}  // namespace
}  // namespace corvex
