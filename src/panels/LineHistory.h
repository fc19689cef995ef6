#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace corvex {

/// The history of sent lines, newest first. Also keeps the line that the user was typing before browsing the
/// history.
class LineHistory {
 public:
  static constexpr std::int16_t kEntries = 10;

  /// Adds a sent line as the newest entry. Empty lines are ignored.
  void RecordLine(const std::string& text);
  /// Moves to the next older entry and returns it; at the oldest entry it stays there. The first call returns
  /// the second entry, because the first is still in the text box.
  const std::string& RecallOlder();
  /// Moves to the next newer entry and returns it. At the newest entry it returns the line that the user was
  /// typing.
  const std::string& RecallNewer();
  /// Stores the current text of the text box. Ignored while the user is browsing older entries.
  void NoteScratch(const std::string& text);
  const std::string& LastLine() const { return history_[0]; }
  const std::string& scratch() const { return scratch_; }

 private:
  const std::string& Entry() const { return history_[static_cast<std::size_t>(historyPos_ - 1)]; }

  std::array<std::string, kEntries> history_;
  std::int16_t historyPos_ = 1;
  std::string scratch_;
};

}  // namespace corvex
