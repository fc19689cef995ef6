#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Files.h"

// Files as a whole. Paths are in the encoding of the system's narrow file names; what cannot be done is told
// by the result and harms no file.

namespace corvex {

/// The whole of a file; empty if there is none. Nothing for what is no file, is larger than `limit` bytes, or
/// cannot be read.
std::optional<std::string> ReadWhole(const std::string& file, std::size_t limit) noexcept;

/// Who may read and write a file that is made.
enum class NewFile {
  AsUsual,    ///< As the system has it for new files in the folder.
  OwnerOnly,  ///< Its owner alone.
};

/// Puts a text in the place of a file, or leaves the file as it was and gives false: where its folder does
/// not exist or takes no new file, its owner may not write it, it is none, or the disk is full. A link is
/// followed.
///
/// A file that exists keeps its owner, group and rights. It is replaced in one step where the system can keep
/// them. Where it cannot (the file belongs to somebody else, it has a second name), the text is written into
/// the file, and until that is done a whole copy of the text lies beside it, "FILE.safe".
bool ReplaceFile(Files& files, const std::string& file, std::string_view text,
                 NewFile made = NewFile::AsUsual) noexcept;

/// Cleans up after a ReplaceFile that was killed: finishes what the copy beside the file holds, and removes
/// temporary files. To be called only while nobody else writes the file.
void FinishReplacing(const std::string& file) noexcept;

}  // namespace corvex
