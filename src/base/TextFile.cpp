#include "base/TextFile.h"

#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <system_error>
#include <vector>

namespace corvex {

namespace fs = std::filesystem;

namespace {

/// Follows symbolic links and returns the path of the target, which need not exist. Call it only if the
/// status of `file` could be read. Otherwise the links may form a cycle, and the loop would not end.
fs::path FollowLinks(fs::path file) {
  std::error_code error;
  while (fs::is_symlink(fs::symlink_status(file, error))) file = file.parent_path() / fs::read_symlink(file);
  return file;
}

bool WriteText(std::ostream& out, std::string_view text) {
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
  out.flush();
  return out.good();
}

bool WriteTo(const fs::path& file, std::string_view text) {
  std::ofstream out(file, std::ios::binary);
  if (!out || !WriteText(out, text)) return false;
  out.close();
  return out.good();
}

/// Overwrites the content of an existing file. Write permission is enough; the user need not own the file.
bool WriteOver(const fs::path& file, std::string_view text) {
  std::fstream out(file, std::ios::in | std::ios::out | std::ios::binary);
  if (!out || !WriteText(out, text)) return false;
  out.close();
  std::error_code error;
  fs::resize_file(file, text.size(), error);
  return out.good() && !error;
}

constexpr std::size_t kAnySize = std::numeric_limits<std::size_t>::max();

fs::path SafeCopyOf(fs::path file) {
  return file += ".safe";
}

/// Writes a text into a file that cannot be replaced. `temporary` must already contain the text. If the
/// program is interrupted at any point, either the file or its safe copy is complete.
bool WriteInto(const fs::path& file, const fs::path& temporary, std::string_view text) {
  const auto before = ReadWhole(file.string(), kAnySize);
  if (!before) return false;
  const fs::path safe = SafeCopyOf(file);
  fs::rename(temporary, safe);
  std::error_code error;
  if (!fs::exists(file, error)) {  // A failed replacement may have removed the file on some systems.
    fs::rename(safe, file, error);
    return !error;
  }
  const bool written = WriteOver(file, text);
  // If the disk is full, the old content still fits, so it can be restored.
  if (written || ReadWhole(file.string(), before->size()) == before || WriteOver(file, *before)) {
    fs::remove(safe, error);
  }
  return written;
}

/// True if `name` is the name of a temporary file that ReplaceFile created for `file`: the file's name, ".",
/// a decimal number and ".tmp".
bool IsTemporary(std::u8string_view name, std::u8string_view file) {
  constexpr std::u8string_view kEnding = u8".tmp";
  if (!name.starts_with(file) || !name.ends_with(kEnding)) return false;
  if (name.size() < file.size() + 2 + kEnding.size() || name[file.size()] != '.') return false;
  name.remove_prefix(file.size() + 1);
  name.remove_suffix(kEnding.size());
  return name.find_first_not_of(u8"0123456789") == name.npos;
}

}  // namespace

std::optional<std::string> ReadWhole(const std::string& file, std::size_t limit) noexcept {
  try {
    std::error_code error;
    if (fs::status(file, error).type() == fs::file_type::not_found) return std::string();
  } catch (const std::exception&) {  // The path is invalid, or out of memory.
    return std::nullopt;
  }
  return ReadExisting(file, limit);
}

std::optional<std::string> ReadExisting(const std::string& file, std::size_t limit) noexcept {
  try {
    std::error_code error;
    if (!fs::is_regular_file(fs::status(file, error))) return std::nullopt;
    const std::uintmax_t size = fs::file_size(file, error);
    if (error || size > limit) return std::nullopt;
    std::ifstream in(file, std::ios::binary);
    std::string text(static_cast<std::size_t>(size), '\0');
    in.read(text.data(), static_cast<std::streamsize>(size));
    const bool whole = in && in.peek() == std::ifstream::traits_type::eof();
    return whole ? std::optional(std::move(text)) : std::nullopt;
  } catch (const std::exception&) {  // The path is invalid, or out of memory.
    return std::nullopt;
  }
}

bool ReplaceFile(Files& files, const std::string& file, std::string_view text, NewFile made) noexcept {
  fs::path temporary;
  bool replaced = false;
  try {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    const bool there = fs::exists(status);
    if (there && !fs::is_regular_file(status)) return false;
    if (there && (status.permissions() & fs::perms::owner_write) == fs::perms::none) return false;

    const fs::path target = FollowLinks(file);
    // The name must be unique, because two running copies of the program may write at the same time.
    std::random_device random;
    fs::path unique = target;
    unique += "." + std::to_string(random()) + std::to_string(random()) + ".tmp";
    if (fs::exists(fs::symlink_status(unique, error))) return false;
    // Nobody else may read the temporary file before it has the permissions of the file that it replaces.
    if ((there || made == NewFile::OwnerOnly) && !files.MakeOwnerOnly(unique.string())) return false;
    temporary = unique;
    if (WriteTo(temporary, text)) {
      if (!there) {
        fs::rename(temporary, target, error);
        replaced = !error;
      } else {
        replaced = files.Replace(target.string(), temporary.string()) || WriteInto(target, temporary, text);
      }
    }
  } catch (const std::exception&) {  // The path is invalid, a link has disappeared, or out of memory.
  }
  std::error_code ignored;
  if (!replaced && !temporary.empty()) fs::remove(temporary, ignored);
  return replaced;
}

void FinishReplacing(const std::string& file) noexcept {
  try {
    std::error_code error;
    if (!fs::status_known(fs::status(file, error))) return;  // For example, a cycle of links.
    const fs::path target = FollowLinks(file);
    const fs::path safe = SafeCopyOf(target);
    if (fs::is_regular_file(fs::symlink_status(safe, error))) {
      const auto text = ReadWhole(safe.string(), kAnySize);
      if (!fs::exists(target, error)) {
        fs::rename(safe, target, error);
      } else if (text && WriteOver(target, *text)) {
        fs::remove(safe, error);
      }
    }
    std::vector<fs::path> old;
    for (fs::directory_iterator it(target.parent_path(), error), end; !error && it != end;
         it.increment(error)) {
      const bool ours = IsTemporary(it->path().filename().u8string(), target.filename().u8string());
      if (ours && fs::is_regular_file(it->symlink_status(error))) old.push_back(it->path());
    }
    for (const fs::path& path : old) fs::remove(path, error);
  } catch (const std::exception&) {  // The path is invalid, or out of memory.
  }
}

}  // namespace corvex
