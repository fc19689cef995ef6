#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace corvex::test {

/// The bytes of a file; empty if there is none.
inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// Expects a text to be that of a file. With CORVEX_RENEW_RECORDINGS the file is written first; see
/// scripts/recordings.sh.
inline void ExpectRecorded(const std::string& got, const std::filesystem::path& path) {
  if (std::getenv("CORVEX_RENEW_RECORDINGS") != nullptr) std::ofstream(path, std::ios::binary) << got;
  EXPECT_EQ(got, ReadFile(path)) << path;
}

}  // namespace corvex::test
