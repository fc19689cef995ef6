#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/Text.h"
#include "settings/ProfileFile.h"

// The first line of the input is a value, the rest is an arbitrary settings file. The value is written to key
// com of section port. It must then read back, and no byte of the file may be lost except the key's previous
// value.

namespace {

using namespace corvex;

void Require(bool promise) {
  if (!promise) std::abort();
}

std::string ReadsAs(std::string_view value) {
  const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (!value.empty() && blank(value.back())) value.remove_suffix(1);
  while (!value.empty() && blank(value.front())) value.remove_prefix(1);
  if (value.size() > 1 && value.front() == value.back() && (value.front() == '"' || value.front() == '\''))
    value = value.substr(1, value.size() - 2);
  return std::string(value.substr(0, 255));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string_view value = input.substr(0, input.find('\n'));
  const std::string_view before = input.substr(std::min(value.size() + 1, size));

  const std::string after = WithProfileValue(before, "port", "com", value);

  Require(ProfileValue(after, "PORT", "Com", "none") == ReadsAs(value));

  const auto head = static_cast<std::size_t>(
      std::mismatch(before.begin(), before.end(), after.begin(), after.end()).first - before.begin());
  const auto tail = static_cast<std::size_t>(
      std::mismatch(before.rbegin(), before.rend(), after.rbegin(), after.rend()).first - before.rbegin());
  const bool replaced = ProfileValue(before, "port", "com", "a") == ProfileValue(before, "port", "com", "b");
  if (replaced) {
    const std::string_view gone = before.substr(head, before.size() - std::min(before.size(), head + tail));
    Require(!Contains(gone, "\n"));
  } else {
    Require(head + tail >= before.size());
  }
  // A CR at the end of a value becomes part of the line end, and the next write keeps it there.
  if (!value.ends_with('\r')) Require(WithProfileValue(after, "port", "com", value) == after);
  return 0;
}
