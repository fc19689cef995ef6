#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The small arithmetic of the program's texts. A text is one byte a character, read as Latin-1; positions and
// numbers that the modem deals in are 16 bits wide.

namespace corvex {

inline constexpr std::string_view kCrLf = "\r\n";
inline constexpr char kEsc = '\x1B';

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// The value of a text of one to nine digits and nothing else, as nearly all numbers of the modem are; none
/// for any other. It is the fast way that the functions below try first.
inline std::optional<std::int32_t> FewDigits(std::string_view text) {
  constexpr std::size_t kFew = 9;
  if (text.empty() || text.size() > kFew) return std::nullopt;
  std::int32_t value = 0;
  for (const char c : text) {
    if (!IsDigit(c)) return std::nullopt;
    value = value * 10 + (c - '0');
  }
  return value;
}

/// A number in decimal, with a blank in the place of its sign if it is not negative.
std::string NumberText(std::int64_t number);

/// The value of the number that a text begins with, blanks passed over; 0 if it does not begin with one.
double NumericPrefix(std::string_view text);

/// The same as a whole number, halves to even, limited to 32 bits.
std::int32_t WholePrefix(std::string_view text);

/// The same as a whole number, halves to even, in 16 bits. None if it does not fit.
std::optional<std::int16_t> PrefixInt16(std::string_view text);
/// The same in 32 bits.
std::optional<std::int32_t> PrefixInt32(std::string_view text);

/// Whether a whole text is a number: blanks around it, a sign, a decimal point and an exponent are allowed.
bool IsNumeric(std::string_view text);

/// A whole text as a 16-bit number, halves rounded to even. None if it is no number or does not fit.
std::optional<std::int16_t> ToInt16(std::string_view text);
/// The same in 32 bits.
std::optional<std::int32_t> ToInt32(std::string_view text);

/// Rounds to the nearest whole number, halves to even.
double RoundHalfEven(double value);

/// Latin-1 letters to upper case.
constexpr char UpperCase(char c) {
  const auto u = static_cast<unsigned char>(c);
  const bool ascii = u >= 'a' && u <= 'z';
  const bool latin = u >= 0xE0 && u <= 0xFE && u != 0xF7;  // 0xF7 is the division sign
  return ascii || latin ? static_cast<char>(u - 0x20) : c;
}
std::string UpperCase(std::string_view text);
constexpr char LowerCase(char c) {
  const auto u = static_cast<unsigned char>(c);
  const bool ascii = u >= 'A' && u <= 'Z';
  const bool latin = u >= 0xC0 && u <= 0xDE && u != 0xD7;  // 0xD7 is the multiplication sign
  return ascii || latin ? static_cast<char>(u + 0x20) : c;
}

/// Whether two texts are the same but for the case of letters.
bool EqualNoCase(std::string_view a, std::string_view b);

/// Place of the first occurrence of `what` in `text` from `from` on, without regard to case; npos if none.
/// `what` must not be empty.
std::size_t FindNoCase(std::string_view text, std::string_view what, std::size_t from = 0);

/// Whether a text contains another.
bool Contains(std::string_view text, std::string_view what);

/// Wildcard match of a whole text: "*" in the pattern stands for any run of characters, all others for
/// themselves. Takes time in proportion to the two lengths multiplied at the worst.
bool Matches(std::string_view text, std::string_view pattern);

/// The fields of a text between separators; an empty text has one empty field.
std::vector<std::string_view> Split(std::string_view text, char separator);

/// The same fields one after the other, for those who keep no list of them.
class Fields {
 public:
  Fields(std::string_view text, char separator) : rest_(text), separator_(separator) {}

  bool More() const { return more_; }

  /// Takes the next field; an empty text when there are no more.
  std::string_view Next() {
    const auto end =
        static_cast<std::size_t>(std::find(rest_.begin(), rest_.end(), separator_) - rest_.begin());
    const std::string_view field = rest_.substr(0, end);
    more_ = end < rest_.size();
    rest_.remove_prefix(more_ ? end + 1 : end);
    return field;
  }

 private:
  std::string_view rest_;
  char separator_;
  bool more_ = true;
};

/// Without the blanks at both ends.
std::string_view TrimBlanks(std::string_view text);

}  // namespace corvex
