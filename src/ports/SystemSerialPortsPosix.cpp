#ifndef _WIN32

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "ports/SystemSerialPorts.h"

namespace corvex {

namespace {

namespace fs = std::filesystem;

constexpr int kMostParents = 8;

std::string ReadLine(const fs::path& path) {
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  return line;
}

bool Exists(const fs::path& path) {
  std::error_code failed;
  return fs::exists(path, failed);
}

/// Returns whether an entry of the kernel's list has real hardware. Consoles have no device. Entries that are
/// reserved for ports on the main board have a device, but their type is 0.
bool IsReal(const fs::path& entry) {
  return Exists(entry / "device") && ReadLine(entry / "type") != "0";
}

/// Converts UTF-8 to Latin-1; other characters become "?".
std::string Latin1(const std::string& utf8) {
  std::string text;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    if (lead < 0x80) {
      text += utf8[i];
    } else if ((lead == 0xC2 || lead == 0xC3) && i + 1 < utf8.size()) {
      text += static_cast<char>((lead & 3) << 6 | (static_cast<unsigned char>(utf8[++i]) & 0x3F));
    } else if (lead >= 0xC0) {  // its continuation bytes are skipped
      text += '?';
    }
  }
  return text;
}

/// Returns the adapter's product name, which is stored a few folders above its terminal; empty if there is
/// none.
std::string Product(const fs::path& entry) {
  std::error_code failed;
  fs::path folder = fs::canonical(entry / "device", failed);
  for (int i = 0; i < kMostParents && folder.has_relative_path(); ++i, folder = folder.parent_path()) {
    const std::string product = ReadLine(folder / "product");
    if (!product.empty()) return Latin1(product);
  }
  return {};
}

/// Returns the group that may read and write the device. Empty if there is none, or if the group is root,
/// which a user should not be told to join.
std::string GroupOf(const fs::path& device) {
  struct stat status {};
  constexpr mode_t kReadAndWrite = S_IRGRP | S_IWGRP;
  if (stat(device.c_str(), &status) != 0 || status.st_gid == 0 ||
      (status.st_mode & kReadAndWrite) != kReadAndWrite) {
    return {};
  }
  const group* const found = getgrgid(status.st_gid);
  return found == nullptr ? std::string() : found->gr_name;
}

}  // namespace

std::vector<std::string> SystemSerialPorts::Devices() const {
  std::vector<std::string> devices;
  std::error_code failed;
  for (fs::directory_iterator it(list_, failed), end; !failed && it != end; it.increment(failed)) {
    if (IsReal(it->path())) devices.push_back("/dev/" + it->path().filename().string());
  }
  std::sort(devices.begin(), devices.end());
  return devices;
}

PortInfo SystemSerialPorts::Probe(const std::string& device) const {
  std::error_code failed;
  const fs::path file = fs::canonical(fs::path("/dev") / device, failed);  // an absolute path is kept
  if (failed) return {};
  const fs::file_status status = fs::status(file, failed);
  if (failed || fs::is_regular_file(status) || fs::is_directory(status)) return {};
  // Devices that are not in the list, such as pseudo terminals, are accepted if they exist.
  const fs::path entry = fs::path(list_) / file.filename();
  const bool listed = Exists(entry);
  if (listed && !IsReal(entry)) return {};
  PortInfo info{.state = PortState::Usable, .description = listed ? Product(entry) : "", .group = {}};
  if (access(file.c_str(), R_OK | W_OK) != 0) {
    info.state = PortState::NoPermission;
    info.group = GroupOf(file);
  }
  return info;
}

}  // namespace corvex

#endif
