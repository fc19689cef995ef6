#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/Files.h"

namespace corvex::test {

/// A system where the user owns all files, or with `othersFiles` none that exists.
class FakeFiles : public Files {
 public:
  bool MakeOwnerOnly(const std::string& path) override {
    std::error_code error;
    if (std::filesystem::exists(std::filesystem::symlink_status(path, error))) return false;
    if (!std::ofstream(path)) return false;
    std::filesystem::permissions(
        path, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write, error);
    return !error;
  }
  bool Replace(const std::string& file, const std::string& by) override {
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    if (!error) std::filesystem::permissions(by, status.permissions(), error);
    if (error || othersFiles) return false;
    std::filesystem::rename(by, file, error);
    return !error;
  }
  bool othersFiles = false;  ///< Existing files belong to another user.
};

}  // namespace corvex::test
