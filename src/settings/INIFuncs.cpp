#include "settings/INIFuncs.h"

#include <algorithm>
#include <filesystem>

#include "base/Text.h"
#include "base/TextFile.h"
#include "settings/ProfileFile.h"

namespace corvex {

namespace {

constexpr std::string_view kFileName = "corvex.ini";
constexpr std::string_view kUnset = "?";

}  // namespace

std::string Setting::Read(std::string_view fallback) const {
  return store_.ReadSetting(section_, key_, fallback);
}

void Setting::Write(std::string& value) const {
  store_.WriteSetting(section_, key_, value);
}

std::int32_t NumberSetting::Get() const {
  return WholePrefix(Read());
}

void UnreadNumber::Set(std::int32_t number) const {
  WriteWord(std::to_string(number));
}

std::string PhoneSetting::Get() const {
  return UpperCase(Read());
}

std::string UnsetFile::Get() const {
  const std::string file = Read();
  return file == kUnset ? "" : file;
}

std::string FolderSetting::Get() const {
  const std::string folder = Read();
  return folder == kUnset ? Store().InAppFolder("") : folder;
}

std::string PrinterPath::Get() const {
  std::string path = Read();
  if (path == kUnset) {
    path = Store().InAppFolder("printer.txt");
    Write(path);
  }
  return path;
}

std::string AppFolderOf(std::string_view applicationPath) {
  if (applicationPath.ends_with('/')) applicationPath.remove_suffix(1);
  return std::string(applicationPath);
}

std::string SettingsStore::Devices::Get(std::int16_t comPort) const {
  if (comPort < 1 || comPort > 16) return "";
  return ini.ReadSetting("devices", "com" + std::to_string(comPort), "");
}

std::string SettingsStore::ReadSetting(std::string_view section, std::string_view key,
                                       std::string_view fallback) const {
  const auto value = ReadProfile(File(), section, key, fallback);
  if (!value) failed(Failure::Reading);
  return value.value_or(std::string(fallback));
}

void SettingsStore::WriteSetting(std::string_view section, std::string_view key, std::string& value) const {
  const std::string passed = value;
  std::replace_if(
      value.begin(), value.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  if (!WriteProfile(files_, File(), section, key, passed)) failed(Failure::Writing);
}

std::string SettingsStore::File() const {
  return InAppFolder(kFileName);
}

void SettingsStore::TidyUp() const {
  FinishReplacing(File());
}

std::string SettingsStore::OwnName(std::string_view name, std::string_view ending) const {
  const std::string number = copy_ > 1 ? '-' + std::to_string(copy_) : std::string();
  return std::string(name).append(number).append(ending);
}

std::string SettingsStore::InAppFolder(std::string_view name) const {
  const auto separator = static_cast<char>(std::filesystem::path::preferred_separator);
  return appFolder_ + separator + std::string(name);
}

}  // namespace corvex
