#include "settings/ProfileFile.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <utility>

#include "base/Text.h"
#include "base/TextFile.h"

namespace corvex {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

std::string_view Trim(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The name in a section line, without the blanks around it. Returns nullopt for other lines.
std::optional<std::string_view> SectionName(std::string_view line) {
  line = Trim(line);
  const std::size_t close = line.find(']');
  if (line.empty() || line.front() != '[' || close == std::string_view::npos) return std::nullopt;
  return Trim(line.substr(1, close - 1));
}

/// The position of a key in a text, or the position where a new key is inserted.
struct Place {
  bool hasSection = false;
  bool hasKey = false;
  std::size_t valueBegin = 0;  ///< With hasKey: the value is everything from after the "=" to the line end.
  std::size_t valueEnd = 0;
  std::size_t sectionEnd = 0;  ///< Without hasKey: the position after the section's last non-blank line.
};

Place FindKey(std::string_view text, std::string_view section, std::string_view key) {
  Place place;
  std::size_t next = 0;
  for (std::size_t begin = text.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0; begin < text.size();
       begin = next) {
    const std::size_t lf = text.find('\n', begin);
    std::size_t end = std::min(lf, text.size());
    next = std::min(lf, text.size() - 1) + 1;
    if (lf != std::string_view::npos && lf > begin && text[lf - 1] == '\r') --end;
    const std::string_view line = text.substr(begin, end - begin);

    if (const auto name = SectionName(line)) {
      if (place.hasSection) return place;
      place.hasSection = EqualNoCase(*name, section);
    }
    if (!place.hasSection) continue;
    if (!Trim(line).empty()) place.sectionEnd = next;
    const std::size_t equals = line.find('=');
    if (equals != std::string_view::npos && EqualNoCase(Trim(line.substr(0, equals)), key)) {
      place.hasKey = true;
      place.valueBegin = begin + equals + 1;
      place.valueEnd = end;
      return place;
    }
  }
  return place;
}

std::string_view LineEnd(std::string_view text) {
  const std::size_t first = text.find('\n');
  const bool bare = first != std::string_view::npos && (first == 0 || text[first - 1] != '\r');
  return bare ? kCrLf.substr(1) : kCrLf;
}

}  // namespace

std::string ProfileValue(std::string_view text, std::string_view section, std::string_view key,
                         std::string_view fallback) {
  const Place place = FindKey(text, section, key);
  if (!place.hasKey) return std::string(fallback.substr(0, kMaxProfileValue));
  std::string_view value = Trim(text.substr(place.valueBegin, place.valueEnd - place.valueBegin));
  const bool quoted =
      value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front();
  if (quoted) value = value.substr(1, value.size() - 2);
  return std::string(value.substr(0, kMaxProfileValue));
}

std::string WithProfileValue(std::string_view text, std::string_view section, std::string_view key,
                             std::string_view value) {
  const Place place = FindKey(text, section, key);
  std::string result;
  result.reserve(text.size() + section.size() + key.size() + value.size() + 16);
  if (place.hasKey) {
    result.append(text.substr(0, place.valueBegin)).append(value).append(text.substr(place.valueEnd));
    return result;
  }
  const std::string_view lineEnd = LineEnd(text);
  const std::size_t at = place.hasSection ? place.sectionEnd : text.size();
  result.append(text.substr(0, at));
  if (!result.empty() && result.back() != '\n') result.append(lineEnd);
  if (!place.hasSection) result.append("[").append(section).append("]").append(lineEnd);
  result.append(key).append("=").append(value).append(lineEnd).append(text.substr(at));
  return result;
}

std::optional<std::string> ReadProfile(const std::string& file, std::string_view section,
                                       std::string_view key, std::string_view fallback) noexcept {
  try {
    const auto text = ReadWhole(file, kMaxProfileFile);
    if (!text) return std::nullopt;
    return ProfileValue(*text, section, key, fallback);
  } catch (const std::exception&) {  // Out of memory.
    return std::nullopt;
  }
}

bool WriteProfile(Files& files, const std::string& file, std::string_view section, std::string_view key,
                  std::string_view value) noexcept {
  try {
    const auto text = ReadWhole(file, kMaxProfileFile);
    if (!text) return false;
    const std::string changed = WithProfileValue(*text, section, key, value);
    return changed.size() <= kMaxProfileFile && ReplaceFile(files, file, changed, NewFile::OwnerOnly);
  } catch (const std::exception&) {  // Out of memory.
    return false;
  }
}

}  // namespace corvex
