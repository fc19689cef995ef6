#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Files.h"

// File and search functions of the print view.

namespace corvex {

/// The search settings, kept for the whole run of the program.
struct FindState {
  enum Direction { kUp = 0, kDown = 1 };

  std::string findText;
  bool findMatchCase = false;
  int findDirection = kDown;
  std::size_t findLastPos = 0;  ///< Start of the selection after the last search.
  bool findChanged = false;     ///< The user has opened the find dialog since the last search.
};

/// Returns the position of the next match, counted from 0, for a selection that starts at `selStart`; none if
/// there is no match.
std::optional<std::size_t> FindPlace(std::string_view text, std::size_t selStart, const FindState& state);

/// Writes a header line and the text to a file. Replaces the whole file, or leaves it unchanged if that
/// fails.
bool WriteNote(Files& files, const std::string& path, std::string_view text) noexcept;

/// Saves a growing text to the same file again and again. If text was only added since the last save, only
/// the added text is written. The total cost of all saves is then proportional to the length of the text, not
/// to its square.
class AutoSave {
 public:
  AutoSave(Files& files, std::string path) : files_(files), path_(std::move(path)) {}

  /// Saves the text; `from` returns the text from a given position to its end. Returns false on failure: the
  /// file then holds the previous text, and as much of the added text as the disk had room for.
  bool Save(const std::function<std::string(std::size_t place)>& from) noexcept;

  /// To be called when the text has changed at this position. If that part has been saved already, the next
  /// Save writes the whole text.
  void ChangedAt(std::size_t position) {
    if (position < written_) written_ = kNothing;
  }

 private:
  static constexpr std::size_t kNothing = 0;

  bool StillOurs() const;
  bool Extend(std::string_view added) const;

  Files& files_;
  std::string path_;
  std::size_t written_ = kNothing;  ///< Number of leading characters that are in the file.
  /// Size and modification time of the file after the last save.
  std::uintmax_t size_ = 0;
  std::filesystem::file_time_type time_;
};

}  // namespace corvex
