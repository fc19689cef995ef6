#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace corvex {

/// Where in a text that is shown line ends (CR LF) stand that are not of the text: a line that is too long to
/// be laid out at once is broken by them. Whatever leaves the view leaves without them. Told of every edit,
/// this translates between what is shown and the text itself.
class SoftBreaks {
 public:
  /// So many characters at a place of what is shown have given way to so many others. A line end of which a
  /// part is gone counts no longer.
  void Edited(std::size_t place, std::size_t removed, std::size_t inserted);
  /// The line end at this place of what is shown is one of these.
  void Add(std::size_t place);

  /// A place of what is shown as one of the text.
  std::size_t InText(std::size_t shown) const;
  /// A place of the text as one of what is shown: of both sides of a line end the one after it or before it.
  std::size_t AfterBreak(std::size_t place) const;
  std::size_t BeforeBreak(std::size_t place) const;
  /// The text itself between two places of what is shown.
  std::string Text(std::string_view shown, std::size_t from = 0, std::size_t to = std::string::npos) const;

 private:
  std::vector<std::size_t> places_;  ///< As shown, in order.
};

}  // namespace corvex
