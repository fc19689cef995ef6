#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Helpers for texts and for numbers in texts. Texts are Latin-1, one byte per character. The modem's
// positions and numbers are 16 bits wide.

namespace corvex {

inline constexpr std::string_view kCrLf = "\r\n";
inline constexpr char kEsc = '\x1B';

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Returns the value of a text that consists of one to nine digits, or nullopt for any other text. Nearly all
/// numbers from the modem have this form, so the functions below try this fast path first.
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

/// Formats a number in decimal. Zero and positive numbers get a leading blank in place of the sign.
std::string NumberText(std::int64_t number);

/// Returns the value of the number at the start of a text, or 0 if the text does not start with a number.
/// Leading blanks, tabs, CR and LF are skipped.
double NumericPrefix(std::string_view text);

/// NumericPrefix as a whole number, with halves rounded to even. A value outside the 32-bit range becomes the
/// nearest limit.
std::int32_t WholePrefix(std::string_view text);

/// NumericPrefix as a 16-bit number, with halves rounded to even. Returns nullopt if the value does not fit.
std::optional<std::int16_t> PrefixInt16(std::string_view text);
/// NumericPrefix as a 32-bit number, with halves rounded to even. Returns nullopt if the value does not fit.
std::optional<std::int32_t> PrefixInt32(std::string_view text);

/// True if the whole text is a number. Leading and trailing blanks, a sign, a decimal point and an exponent
/// are allowed.
bool IsNumeric(std::string_view text);

/// Converts the whole text to a 16-bit number, with halves rounded to even. Returns nullopt if the text is
/// not a number (see IsNumeric) or the value does not fit.
std::optional<std::int16_t> ToInt16(std::string_view text);
/// Like ToInt16, but with 32 bits.
std::optional<std::int32_t> ToInt32(std::string_view text);

/// Rounds to the nearest whole number. Halves are rounded to the even neighbour.
double RoundHalfEven(double value);

// UpperCase and LowerCase convert Latin-1 letters. All other characters stay the same.
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

/// True if two texts are equal when case is ignored.
bool EqualNoCase(std::string_view a, std::string_view b);

/// Returns the position of the first occurrence of `what` in `text` at or after `from`, or npos if `what` is
/// not found. Case is ignored. `what` must not be empty.
std::size_t FindNoCase(std::string_view text, std::string_view what, std::size_t from = 0);

/// True if `text` contains `what`.
bool Contains(std::string_view text, std::string_view what);

/// True if the whole text matches the pattern. "*" in the pattern matches any number of characters, including
/// none. Every other character matches itself. The worst-case running time is proportional to the product of
/// the two lengths.
bool Matches(std::string_view text, std::string_view pattern);

/// Splits a text into fields at each separator. An empty text has one empty field.
std::vector<std::string_view> Split(std::string_view text, char separator);

/// Iterates over the fields that Split returns, without building a list.
class Fields {
 public:
  Fields(std::string_view text, char separator) : rest_(text), separator_(separator) {}

  /// False once Next has returned the last field.
  bool More() const { return more_; }

  /// Returns the next field, or an empty text if no field is left.
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

/// Removes the blanks at both ends. Tabs and line ends stay.
std::string_view TrimBlanks(std::string_view text);

}  // namespace corvex
