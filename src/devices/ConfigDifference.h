#pragma once

#include <string>
#include <vector>

#include "devices/DeviceRecord.h"
#include "state/TerminalModel.h"

namespace corvex {

/// Describes for the user what changes if the terminal's configuration `now` is replaced by `next`. Both are
/// lists of entries in their wire form. Entries are matched by their Terminal Ids; of entries with the same
/// Id, the first is matched with the first. Returns one line of text each, a summary first: entries added,
/// removed and changed, lines that are not a complete entry, Ids and MSNs that occur twice, and entries that
/// the device manager cannot show for this model. Lines beyond the first 10,000 are only counted, and long
/// texts are shortened.
std::vector<std::string> DescribeLoad(const std::vector<std::string>& now,
                                      const std::vector<std::string>& next, TerminalModel model);

/// The comparison of entries that were sent with the entries that were then read.
struct ReadBack {
  std::size_t sent = 0;
  std::size_t same = 0;                       ///< Sent entries that were read as they were sent.
  std::size_t removed = 0;                    ///< Entries that were to be removed.
  std::size_t gone = 0;                       ///< Of these, the ones that were not read.
  std::vector<std::string> differences = {};  ///< For the user, one line each.

  /// For example "132 of 132 entries read back as sent".
  std::string Summary() const;
  ReadBack& operator+=(const ReadBack& other);
};

/// Compares all entries of a replacement. An entry that was read but not sent is a difference too.
ReadBack CompareReplacement(const std::vector<std::string>& sent, const std::vector<std::string>& read);
/// Looks for changed entries among all that were read.
ReadBack CompareChange(const std::vector<DeviceRecord>& sent, const std::vector<std::string>& read);
/// Expects that no entry with this Id was read.
ReadBack CompareRemoval(std::int16_t id, const std::vector<std::string>& read);

}  // namespace corvex
