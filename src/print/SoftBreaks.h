#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace corvex {

/// The soft breaks of a displayed text: line ends (CR LF) that the view has inserted because a line is too
/// long to be laid out at once. They are not part of the text and are removed from everything that leaves the
/// view.
///
/// This class records every edit of the displayed text, and translates positions and contents between the
/// displayed text and the real text.
class SoftBreaks {
 public:
  /// To be called when `removed` characters at position `place` of the displayed text have been replaced by
  /// `inserted` others. If only a part of a soft break was removed, the rest belongs to the real text.
  void Edited(std::size_t place, std::size_t removed, std::size_t inserted);
  /// Marks the line end at this position of the displayed text as a soft break.
  void Add(std::size_t place);

  /// Converts a position in the displayed text to one in the real text.
  std::size_t InText(std::size_t shown) const;
  /// Converts a position in the real text to one in the displayed text. At a soft break, AfterBreak returns
  /// the position after the line end and BeforeBreak the one before it.
  std::size_t AfterBreak(std::size_t place) const;
  std::size_t BeforeBreak(std::size_t place) const;
  /// Returns the real text between two positions of the displayed text `shown`.
  std::string Text(std::string_view shown, std::size_t from = 0, std::size_t to = std::string::npos) const;

 private:
  std::vector<std::size_t> places_;  ///< Positions of the soft breaks in the displayed text, ascending.
};

}  // namespace corvex
