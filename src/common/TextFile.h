#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// Files as a whole. Paths are in the encoding of the system's narrow file names; what cannot be done is told
// by the result and harms no file.

namespace corvex {

/// The whole of a file; empty if there is none. Nothing for what is no file, is larger than `limit` bytes, or
/// cannot be read.
std::optional<std::string> ReadWhole(const std::string& file, std::size_t limit) noexcept;

enum class FileAccess {
  Kept,       ///< As the file had it, or as new files get it here.
  OwnerOnly,  ///< Only its owner may read or write it.
};

/// Puts a text in the place of a file in one step, or leaves the file as it was and gives false: where its
/// folder does not exist or takes no new file, its owner may not write it, it is none, or the disk is full. A
/// link is followed.
bool ReplaceFile(const std::string& file, std::string_view text,
                 FileAccess access = FileAccess::Kept) noexcept;

}  // namespace corvex
