#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "support/VirtualLoop.h"
#include "unit/WireLog.h"

namespace corvex::test {

/// The conversations in a folder of tests/data/unit, whose README describes them.
inline std::vector<std::filesystem::path> Conversations(const std::string& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& file : std::filesystem::directory_iterator(CORVEX_TEST_DATA "/unit/" + folder)) {
    if (file.path().extension() == ".log") files.push_back(file.path());
  }
  return files;
}

/// Holds a conversation with what stands at the far end of a line and adds what it sends to `out`. `receive`
/// tells it something; `line`, if there is one, that its line comes up (true) or goes down.
inline void Converse(const std::filesystem::path& path, VirtualLoop& loop, std::string& out,
                     const std::function<void(std::string_view)>& receive,
                     const std::function<void(bool)>& line = nullptr) {
  using simulation::WireEvent;
  SCOPED_TRACE(path);
  std::ifstream in(path);
  const auto log = simulation::ParseWireLog(std::string(std::istreambuf_iterator<char>(in), {}));
  const auto seconds = [&loop] { return std::chrono::duration<double>(loop.Now()).count(); };
  const double began = seconds();
  out.clear();
  std::string expected;
  for (const WireEvent& event : std::get<std::vector<WireEvent>>(log)) {
    loop.Run(began + event.at - seconds());
    if (event.kind == WireEvent::Kind::FromModem) {
      expected += event.bytes;
      continue;
    }
    EXPECT_EQ(out, expected) << "up to " << event.at;
    out.clear();
    expected.clear();
    const bool opens = event.kind == WireEvent::Kind::Open;
    if (line && (opens || event.kind == WireEvent::Kind::Close)) line(opens);
    receive(event.bytes);
  }
  EXPECT_EQ(out, expected) << "at the end";
}

}  // namespace corvex::test
