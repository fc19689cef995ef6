#include "print/SoftBreaks.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace corvex {
namespace {

// Compares with a list of characters, each of which knows to which soft line end it belongs.
TEST(SoftBreaks, KeepTheirPlacesThroughAnyEdits) {
  struct Character {
    char c;
    int lineEnd = 0;  ///< The number of its soft line end, or 0.
  };
  std::minstd_rand random(7);
  for (int round = 0; round < 50; ++round) {
    SoftBreaks breaks;
    std::vector<Character> shown;
    const auto place = [&](std::size_t most) { return static_cast<std::size_t>(random() % (most + 1)); };
    const auto edit = [&](std::size_t at, std::size_t removed, const std::vector<Character>& inserted) {
      const auto from = shown.begin() + static_cast<std::ptrdiff_t>(at);
      shown.insert(shown.erase(from, from + static_cast<std::ptrdiff_t>(removed)), inserted.begin(),
                   inserted.end());
      breaks.Edited(at, removed, inserted.size());
      // Half a line end is text, and so is one with text inserted in it.
      for (std::size_t i = 0; i < shown.size(); ++i) {
        const int end = shown[i].lineEnd;
        const bool whole =
            (i + 1 < shown.size() && shown[i + 1].lineEnd == end) || (i > 0 && shown[i - 1].lineEnd == end);
        if (end != 0 && !whole) shown[i].lineEnd = 0;
      }
    };
    for (int step = 1; step < 60; ++step) {
      const std::size_t at = place(shown.size());
      const std::size_t removed = random() % 4 == 0 ? place(std::min<std::size_t>(shown.size() - at, 6)) : 0;
      if (random() % 2 == 0) {
        edit(at, 0, {{'\r', step}, {'\n', step}});
        breaks.Add(at);
      } else {
        edit(at, removed, std::vector<Character>(place(3), {static_cast<char>('a' + step % 26)}));
      }
    }
    std::string all;
    for (const Character& character : shown) all += character.c;
    std::string text;
    for (std::size_t i = 0; i <= shown.size(); ++i) {
      ASSERT_EQ(breaks.InText(i), text.size()) << "round " << round << ", place " << i;
      const bool inside =
          i > 0 && i < shown.size() && shown[i].lineEnd != 0 && shown[i].lineEnd == shown[i - 1].lineEnd;
      if (!inside) {
        ASSERT_EQ(breaks.Text(all, 0, i), text);
        ASSERT_EQ(text + breaks.Text(all, i), breaks.Text(all));
        const std::size_t before = breaks.BeforeBreak(text.size());
        const std::size_t after = breaks.AfterBreak(text.size());
        ASSERT_TRUE(before <= i && i <= after);
        ASSERT_TRUE(breaks.InText(before) == text.size() && breaks.InText(after) == text.size());
      }
      if (i < shown.size() && shown[i].lineEnd == 0) text += shown[i].c;
    }
    ASSERT_EQ(breaks.Text(all), text);
  }
}

}  // namespace
}  // namespace corvex
