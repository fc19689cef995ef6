#include "common/TextFile.h"

#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>

namespace corvex {

namespace fs = std::filesystem;

namespace {

/// The file that a path leads to, which need not exist. Only for paths whose status could be read: their
/// links end.
fs::path FollowLinks(fs::path file) {
  std::error_code error;
  while (fs::is_symlink(fs::symlink_status(file, error))) file = file.parent_path() / fs::read_symlink(file);
  return file;
}

bool WriteNew(const fs::path& file, std::string_view text, const fs::perms* permissions) {
  std::ofstream out(file, std::ios::binary);
  if (!out) return false;
  std::error_code error;
  // Before there is a secret in it.
  if (permissions != nullptr) fs::permissions(file, *permissions, error);
  if (error) return false;
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
  out.close();
  return out.good();
}

}  // namespace

std::optional<std::string> ReadWhole(const std::string& file, std::size_t limit) noexcept {
  try {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::not_found) return std::string();
    if (!fs::is_regular_file(status)) return std::nullopt;
    const std::uintmax_t size = fs::file_size(file, error);
    if (error || size > limit) return std::nullopt;
    std::ifstream in(file, std::ios::binary);
    std::string text(static_cast<std::size_t>(size), '\0');
    in.read(text.data(), static_cast<std::streamsize>(size));
    const bool whole = in && in.peek() == std::ifstream::traits_type::eof();
    return whole ? std::optional(std::move(text)) : std::nullopt;
  } catch (const std::exception&) {  // of a path that the system cannot name, or of memory
    return std::nullopt;
  }
}

bool ReplaceFile(const std::string& file, std::string_view text, FileAccess access) noexcept {
  try {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    const bool there = fs::exists(status);
    if (there && !fs::is_regular_file(status)) return false;
    if (there && (status.permissions() & fs::perms::owner_write) == fs::perms::none) return false;
    const fs::perms ownerOnly = fs::perms::owner_read | fs::perms::owner_write;
    const fs::perms wanted = access == FileAccess::OwnerOnly ? ownerOnly : status.permissions();
    const bool asNewFiles = access == FileAccess::Kept && !there;

    const fs::path target = FollowLinks(file);
    // A name that nobody else has, as two running copies of the program may write at the same time.
    std::random_device random;
    fs::path temporary = target;
    temporary += "." + std::to_string(random()) + std::to_string(random()) + ".tmp";
    if (fs::exists(fs::symlink_status(temporary, error))) return false;
    if (WriteNew(temporary, text, asNewFiles ? nullptr : &wanted)) {
      fs::rename(temporary, target, error);
      if (!error) return true;
    }
    fs::remove(temporary, error);
    return false;
  } catch (const std::exception&) {  // of a path that the system cannot name, of a link that vanished, or of
                                     // memory
    return false;
  }
}

}  // namespace corvex
