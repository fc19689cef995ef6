// Every test of the files in tests/data/streams, each fed as written and byte by byte.

#include <gtest/gtest.h>

#include <cctype>
#include <tuple>

#include "support/StreamScript.h"

namespace corvex {
namespace {

using test::Feeding;
using test::StreamTest;

class StreamFiles : public testing::TestWithParam<std::tuple<StreamTest, Feeding>> {};

TEST_P(StreamFiles, Test) {
  const auto& [script, feeding] = GetParam();
  if (feeding == Feeding::ByteByByte && script.dependsOnPieces) return;
  test::RunStreamTest(script, feeding);
}

std::string TestName(const testing::TestParamInfo<StreamFiles::ParamType>& info) {
  const auto& [script, feeding] = info.param;
  std::string name = std::filesystem::path(script.file).stem().string() + '_' + script.name;
  for (char& c : name) {
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  }
  return name + (feeding == Feeding::ByteByByte ? "__byte_by_byte" : "");
}

INSTANTIATE_TEST_SUITE_P(All, StreamFiles,
                         testing::Combine(testing::ValuesIn(test::LoadStreamTests(CORVEX_TEST_DATA
                                                                                  "/streams")),
                                          testing::Values(Feeding::AsWritten, Feeding::ByteByByte)),
                         TestName);

}  // namespace
}  // namespace corvex
