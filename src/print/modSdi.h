#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Files.h"

// What the print view does with its text apart from showing it: files and searching.

namespace corvex {

/// What the user looks for; kept for the whole run of the program.
struct FindState {
  enum Direction { kUp = 0, kDown = 1 };

  std::string findText;
  bool findMatchCase = false;
  int findDirection = kDown;
  std::size_t findLastPos = 0;  ///< Where the selection began after the last search.
  bool findChanged = false;     ///< The user has begun anew since.
};

/// Where the next search finds something, from 0, with the selection beginning at `selStart`; none if it
/// finds nothing.
std::optional<std::size_t> FindPlace(std::string_view text, std::size_t selStart, const FindState& state);

/// Writes a text into a file below a header line. The file is replaced as a whole, or nothing of it is
/// changed.
bool WriteNote(Files& files, const std::string& path, std::string_view text) noexcept;

/// The file that a growing text is written to again and again: what has only been added to the text is added
/// to the file, so that all of them together cost what the text is long and not its square.
class AutoSave {
 public:
  AutoSave(Files& files, std::string path) : files_(files), path_(std::move(path)) {}

  /// Brings the file up to date with a text of which `from` gives what is behind a place. False if that
  /// failed: it then holds the text of before, and what of the new one the disk had room for.
  bool Save(const std::function<std::string(std::size_t place)>& from) noexcept;

  /// The text has changed at a place from which on the file must be written again.
  void ChangedAt(std::size_t position) {
    if (position < written_) written_ = kNothing;
  }

 private:
  static constexpr std::size_t kNothing = 0;

  bool StillOurs() const;
  bool Extend(std::string_view added) const;

  Files& files_;
  std::string path_;
  std::size_t written_ = kNothing;  ///< So much of the text, from its beginning, is known to be in the file.
  std::uintmax_t size_ = 0;         ///< The file as it was left.
  std::filesystem::file_time_type time_;
};

}  // namespace corvex
