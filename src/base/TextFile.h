#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Files.h"

// Functions that read or replace whole files. Paths use the system's narrow file name encoding. A failure is
// reported by the result and does not damage any file.

namespace corvex {

/// Returns the content of a file, or an empty text if the file does not exist. Returns nullopt if the path is
/// not a regular file, the file is larger than `limit` bytes, or it cannot be read.
std::optional<std::string> ReadWhole(const std::string& file, std::size_t limit) noexcept;

/// Like ReadWhole, but returns nullopt if the file does not exist.
std::optional<std::string> ReadExisting(const std::string& file, std::size_t limit) noexcept;

/// Who may read and write a newly created file.
enum class NewFile {
  AsUsual,    ///< The system's default for new files in the folder.
  OwnerOnly,  ///< Only the owner of the file.
};

/// Replaces the content of a file with `text`, or creates the file. Returns false and leaves the file
/// unchanged in these cases: the folder does not exist, no file can be created in the folder, the file is not
/// writable by its owner, the path is not a regular file, or the disk is full. Symbolic links are followed.
///
/// An existing file keeps its owner, group and permissions. If the system can keep them, the file is replaced
/// in one step. If the system cannot, for example because the file belongs to another user or has a second
/// hard link, the text is written into the existing file. Until that has succeeded, a complete copy of the
/// text exists next to the file under the name "FILE.safe".
bool ReplaceFile(Files& files, const std::string& file, std::string_view text,
                 NewFile made = NewFile::AsUsual) noexcept;

/// Cleans up if the program was killed during ReplaceFile: writes the text of "FILE.safe" into the file if
/// that copy exists, and removes temporary files. Call it only while no other process writes the file.
void FinishReplacing(const std::string& file) noexcept;

}  // namespace corvex
