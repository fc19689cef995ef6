#include "common/ProfileFile.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <system_error>
#include <utility>

#include "common/Text.h"

namespace corvex {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

std::string_view Trim(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The name in a section line without the blanks around it; none for other lines.
std::optional<std::string_view> SectionName(std::string_view line) {
  line = Trim(line);
  const std::size_t close = line.find(']');
  if (line.empty() || line.front() != '[' || close == std::string_view::npos) return std::nullopt;
  return Trim(line.substr(1, close - 1));
}

/// Where a key stands in a text, or would go.
struct Place {
  bool hasSection = false;
  bool hasKey = false;
  std::size_t valueBegin = 0;  ///< With hasKey: all behind the "=", to the end of its line.
  std::size_t valueEnd = 0;
  std::size_t sectionEnd = 0;  ///< Without hasKey: behind the section's last line that is not blank.
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

/// The whole of a file; empty if there is none. Nothing for what is no file, is too large or cannot be read.
std::optional<std::string> ReadWhole(const fs::path& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (status.type() == fs::file_type::not_found) return std::string();
  if (!fs::is_regular_file(status)) return std::nullopt;
  const std::uintmax_t size = fs::file_size(file, error);
  if (error || size > kMaxProfileFile) return std::nullopt;
  std::ifstream in(file, std::ios::binary);
  std::string text(static_cast<std::size_t>(size), '\0');
  in.read(text.data(), static_cast<std::streamsize>(size));
  const bool whole = in && in.peek() == std::ifstream::traits_type::eof();
  return whole ? std::optional(std::move(text)) : std::nullopt;
}

/// The file that a path leads to, which need not exist. Only for paths whose status could be read: their
/// links end.
fs::path FollowLinks(fs::path file) {
  std::error_code error;
  while (fs::is_symlink(fs::symlink_status(file, error))) file = file.parent_path() / fs::read_symlink(file);
  return file;
}

bool WriteNewOwnerOnly(const fs::path& file, std::string_view text) {
  std::ofstream out(file, std::ios::binary);
  if (!out) return false;
  std::error_code error;
  // Before there is a secret in it.
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write, error);
  if (error) return false;
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
  out.close();
  return out.good();
}

/// Puts a text in the place of a file, or leaves the file as it is and gives false.
bool Replace(const fs::path& file, std::string_view text) {
  // A name that nobody else has, as two running copies of the program may write at the same time.
  std::random_device random;
  fs::path temporary = file;
  temporary += "." + std::to_string(random()) + std::to_string(random()) + ".tmp";
  std::error_code error;
  if (fs::exists(fs::symlink_status(temporary, error))) return false;

  if (WriteNewOwnerOnly(temporary, text)) {
    fs::rename(temporary, file, error);
    if (!error) return true;
  }
  fs::remove(temporary, error);
  return false;
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

std::string ReadProfile(const std::string& file, std::string_view section, std::string_view key,
                        std::string_view fallback) noexcept {
  try {
    return ProfileValue(ReadWhole(file).value_or(""), section, key, fallback);
  } catch (const std::exception&) {  // of a path that the system cannot name, or of memory
    return std::string(fallback);
  }
}

bool WriteProfile(const std::string& file, std::string_view section, std::string_view key,
                  std::string_view value) noexcept {
  try {
    const auto text = ReadWhole(file);
    if (!text) return false;
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    const bool readOnly = (status.permissions() & fs::perms::owner_write) == fs::perms::none;
    if (fs::exists(status) && readOnly) return false;
    const std::string changed = WithProfileValue(*text, section, key, value);
    return changed.size() <= kMaxProfileFile && Replace(FollowLinks(file), changed);
  } catch (const std::exception&) {  // of a path that the system cannot name, of a link that vanished, or of
                                     // memory
    return false;
  }
}

}  // namespace corvex
