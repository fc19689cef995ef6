#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Files.h"

// Settings files in the ini format. On every system, they are read and written like the Windows profile
// functions do.
//
//     [section]
//     key = value
//     ; comment
//
// - A section ends at the next section line. Blanks inside and around the brackets are ignored.
// - Blanks around the key and the value are ignored.
// - Comments and all lines of any other form are ignored.
// - Names of sections and keys are not case-sensitive. If a name occurs more than once, the first one counts.
// - A file can have up to 16 MiB. No function changes a larger file, an unreadable file, or anything that is
//   not a regular file.
//
// The file belongs to the user. A write changes one value and keeps every other byte of the file. Lines end
// in LF or CR LF. New lines get the same line end as the first line of the file, or CR LF in a new file. A
// UTF-8 byte order mark at the start of the file is skipped.

namespace corvex {

/// The maximum length of a value that is read. Longer values are cut off.
inline constexpr std::size_t kMaxProfileValue = 255;
/// The maximum size of a settings file in bytes, for reading and for writing.
inline constexpr std::size_t kMaxProfileFile = std::size_t{16} << 20;

/// Returns the value of a key in the text of a settings file, or `fallback` if the key does not exist. First,
/// blanks, tabs and CRs around the value are removed, then one pair of enclosing single or double quotes. The
/// result, including `fallback`, is cut to kMaxProfileValue.
std::string ProfileValue(std::string_view text, std::string_view section, std::string_view key,
                         std::string_view fallback);

/// Returns the text of a settings file after the value of a key has been set. A new key is added at the end
/// of its section, before the blank lines there. A new section is added at the end of the text.
///
/// The value is written unchanged. ProfileValue therefore returns it without enclosing blanks and quotes. If
/// the value contains an LF, the rest of the value becomes separate lines, as with the Windows profile
/// functions, and ProfileValue returns only the part before the LF. Names must not be empty. They must not
/// contain line ends, brackets or "=", have blanks at either end, or start with ";".
std::string WithProfileValue(std::string_view text, std::string_view section, std::string_view key,
                             std::string_view value);

/// Calls ProfileValue for a file. Returns `fallback` if the file does not exist, and nullopt if it cannot be
/// read.
std::optional<std::string> ReadProfile(const std::string& file, std::string_view section,
                                       std::string_view key, std::string_view fallback) noexcept;

/// Sets a value in a file, using WithProfileValue and ReplaceFile. A failure at any point leaves the file
/// unchanged, and the permissions of the file are kept. If the file does not exist, it is created with access
/// for its owner only; its folder is not created. Returns false if nothing was written: the file cannot be
/// read, its owner may not write it, its size would exceed kMaxProfileFile, the folder allows no new file, or
/// the disk is full.
bool WriteProfile(Files& files, const std::string& file, std::string_view section, std::string_view key,
                  std::string_view value) noexcept;

}  // namespace corvex
