#include "devices/ConfigFile.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

#include "base/Text.h"
#include "base/TextFile.h"
#include "devices/DeviceRecord.h"

namespace corvex {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kEnding = ".cfg";
/// The form of the time in a file name. "#" is a digit.
constexpr std::string_view kStampForm = " ####-##-## ######";

std::string Stamp(std::int64_t localSeconds) {
  using namespace std::chrono;
  const sys_seconds time{seconds(localSeconds)};
  const auto day = floor<days>(time);
  const year_month_day date(day);
  const hh_mm_ss clock(time - day);
  std::string text(64, '\0');
  const int length =
      std::snprintf(text.data(), text.size(), " %04d-%02u-%02u %02d%02d%02d", static_cast<int>(date.year()),
                    static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                    static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                    static_cast<int>(clock.seconds().count()));
  text.resize(static_cast<std::size_t>(std::max(length, 0)));
  return text;
}

/// Keeps letters, digits and single blanks, which every file system accepts.
std::string NameForFile(std::string_view terminal) {
  std::string name;
  for (const char c : terminal) {
    const char upper = UpperCase(c);
    const bool plain = IsDigit(c) || (upper >= 'A' && upper <= 'Z');
    if (plain) {
      name += c;
    } else if (!name.empty() && name.back() != ' ') {
      name += ' ';
    }
  }
  while (name.ends_with(' ')) name.pop_back();
  return name.empty() ? "terminal" : name;
}

/// Returns the part of a backup's name that orders backups by age: the time and a number after it. Empty if
/// the file is not a backup.
std::string AgeOf(const std::string& name) {
  if (!name.ends_with(kEnding)) return {};
  for (std::size_t at = 0; at + kStampForm.size() + kEnding.size() <= name.size(); ++at) {
    const bool matches =
        std::equal(kStampForm.begin(), kStampForm.end(), name.begin() + static_cast<long>(at),
                   [](char form, char c) { return form == '#' ? IsDigit(c) : form == c; });
    if (matches) return name.substr(at);
  }
  return {};
}

}  // namespace

std::string ConfigText(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) {
    std::copy_if(line.begin(), line.end(), std::back_inserter(text),
                 [](char c) { return c != '\r' && c != '\n'; });
    text += kCrLf;
  }
  return text;
}

std::optional<std::vector<std::string>> ConfigLines(std::string_view text) {
  std::vector<std::string> lines;
  for (Fields fields(text, '\n'); fields.More();) {
    std::string_view line = fields.Next();
    if (!fields.More() && line.empty()) break;  // the end of the last line
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (!AddEntry(lines, line)) return std::nullopt;
  }
  return lines;
}

std::optional<std::vector<std::string>> ReadConfigFile(const std::string& path) {
  const auto text = ReadExisting(path, kMostConfigFile);
  return text ? ConfigLines(*text) : std::nullopt;
}

bool WriteConfigFile(Files& files, const std::string& path, const std::vector<std::string>& lines) {
  return ReplaceFile(files, path, ConfigText(lines));
}

std::optional<std::string> ConfigBackups::Save(std::string_view terminal, std::int64_t localSeconds,
                                               const std::vector<std::string>& lines) {
  try {
    std::error_code error;
    fs::create_directories(folder_, error);
    const std::string name = NameForFile(terminal) + Stamp(localSeconds);
    for (int number = 1; number < 1000; ++number) {
      const std::string suffix = number == 1 ? "" : '-' + std::to_string(number);
      const fs::path path = fs::path(folder_) / (name + suffix + std::string(kEnding));
      if (fs::exists(fs::symlink_status(path, error))) continue;
      if (!WriteConfigFile(files_, path.string(), lines)) return std::nullopt;
      RemoveOldest(path.filename().string());
      return path.string();
    }
  } catch (const std::exception&) {  // The path is invalid, or out of memory.
  }
  return std::nullopt;
}

/// Removes backups only, and never the one that was just made, whatever time the clock shows.
void ConfigBackups::RemoveOldest(const std::string& kept) const {
  std::error_code error;
  std::vector<std::pair<std::string, fs::path>> backups;
  for (fs::directory_iterator it(folder_, error), end; !error && it != end; it.increment(error)) {
    const std::string name = it->path().filename().string();
    if (std::string age = AgeOf(name); !age.empty() && name != kept && it->is_regular_file(error))
      backups.emplace_back(std::move(age), it->path());
  }
  std::sort(backups.begin(), backups.end());
  for (std::size_t i = 0; i + kMost <= backups.size(); ++i) fs::remove(backups[i].second, error);
}

}  // namespace corvex
