#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Files.h"

// Settings files in the ini format, read and written as the Windows profile calls do, on any system.
//
//   [section]          a section lasts until the next such line; blanks in and around the brackets do not
//   count key = value        blanks around the key and the value do not count ; comment          this, and
//   every line of no known form, is passed over
//
// Names are compared without case. Of sections or keys with the same name the first counts. A file is at most
// 16 MiB; what is larger, or is no regular file, or cannot be read, is left alone by every function here.
//
// The file belongs to its user: a write changes the one value, and all other bytes stay as they are, whatever
// they are. Lines end in LF, and a CR before it belongs to the line's end; new lines take the form of the
// file's first line, those of a new file end in CR LF. A UTF-8 mark at the start of the file is passed over.

namespace corvex {

/// Longest value that a read gives; more is cut off.
inline constexpr std::size_t kMaxProfileValue = 255;
/// Largest file that is read, and that a write may lead to.
inline constexpr std::size_t kMaxProfileFile = std::size_t{16} << 20;

/// The value of a key in a profile's text, without blanks (tabs, CR) around it, then without one pair of
/// enclosing quotes, single or double; `fallback` if the key is not there. Either is cut to kMaxProfileValue.
std::string ProfileValue(std::string_view text, std::string_view section, std::string_view key,
                         std::string_view fallback);

/// A profile's text after a key was given a value. A new key goes to the end of its section, before the blank
/// lines there; a new section to the end of the text.
///
/// The value is written as it comes, so it reads back without the blanks and the quotes that ProfileValue
/// takes away, and a value with an LF reads back up to it: what follows is lines of their own, as the profile
/// calls have it. Names must not be empty, nor hold line ends, brackets, "=", outer blanks or a leading ";".
std::string WithProfileValue(std::string_view text, std::string_view section, std::string_view key,
                             std::string_view value);

/// ProfileValue of a file. A file that is absent gives `fallback`, one that cannot be read nothing.
std::optional<std::string> ReadProfile(const std::string& file, std::string_view section,
                                       std::string_view key, std::string_view fallback) noexcept;

/// WithProfileValue of a file by ReplaceFile, so that a failure at any point leaves it as it was, and its
/// rights are kept. If it is absent it is made, readable for its owner alone; its folder is not made. False
/// if nothing was written: the file cannot be read, its owner may not write it, or the folder takes no new
/// file.
bool WriteProfile(Files& files, const std::string& file, std::string_view section, std::string_view key,
                  std::string_view value) noexcept;

}  // namespace corvex
