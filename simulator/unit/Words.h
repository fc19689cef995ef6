#pragma once

#include <algorithm>
#include <string_view>
#include <vector>

namespace corvex::simulation {

/// Splits a line at its blanks. Several blanks count as one.
inline std::vector<std::string_view> Words(std::string_view line) {
  std::vector<std::string_view> words;
  while (true) {
    const std::size_t begin = line.find_first_not_of(' ');
    if (begin == std::string_view::npos) return words;
    line.remove_prefix(begin);
    const std::size_t length = std::min(line.find(' '), line.size());
    words.push_back(line.substr(0, length));
    line.remove_prefix(length);
  }
}

}  // namespace corvex::simulation
