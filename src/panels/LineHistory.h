#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace corvex {

/// The lines that were sent last, newest first, and the one that was being typed before they were looked at.
class LineHistory {
 public:
  static constexpr std::int16_t kEntries = 10;

  /// A line has been sent; an empty one does not count.
  void RecordLine(const std::string& text);
  /// The next older entry; at the last one it stays. The first step leads to the second entry, as the first
  /// is the line that still stands in the box.
  const std::string& RecallOlder();
  /// The next newer entry, and before the first the line that was being typed.
  const std::string& RecallNewer();
  /// The text of the box, which is kept if the looking back begins with it.
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
