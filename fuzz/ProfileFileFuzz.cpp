#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "common/ProfileFile.h"
#include "common/Text.h"

// The first line of the input is a value, the rest a settings file of any content. The value is written to
// key com of section port; then it must read back, every other key must read as before, and no byte may be
// lost.

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

struct Entry {
  std::string section;
  std::string key;
  std::string value;
};

/// What can be read from a text under any of the names that appear in it, but for the key that is written.
std::vector<Entry> Entries(std::string_view text) {
  constexpr std::size_t most = 12;  // names of each kind, to keep the runs short
  std::vector<std::string> sections{"port", "config"};
  std::vector<std::string> keys{"com", "flow"};
  for (const std::string_view line : Split(text, '\n')) {
    const std::size_t open = line.find('[');
    const std::size_t close = line.find(']');
    if (open < close && close != std::string_view::npos && sections.size() < most)
      sections.emplace_back(TrimBlanks(line.substr(open + 1, close - open - 1)));
    if (Contains(line, "=") && keys.size() < most)
      keys.emplace_back(TrimBlanks(line.substr(0, line.find('='))));
  }
  std::vector<Entry> entries;
  for (const auto& section : sections) {
    for (const auto& key : keys) {
      if (EqualNoCase(section, "port") && EqualNoCase(key, "com")) continue;
      entries.push_back({section, key, ProfileValue(text, section, key, "none")});
    }
  }
  return entries;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string_view value = input.substr(0, input.find('\n'));
  const std::string_view before = input.substr(std::min(value.size() + 1, size));

  const std::string after = WithProfileValue(before, "port", "com", value);

  Require(ProfileValue(after, "PORT", "Com", "none") == ReadsAs(value));
  for (const Entry& entry : Entries(before))
    Require(ProfileValue(after, entry.section, entry.key, "none") == entry.value);

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
  // A CR at the end of a value joins the line's end, and the next write keeps it there.
  if (!value.ends_with('\r')) Require(WithProfileValue(after, "port", "com", value) == after);
  return 0;
}
