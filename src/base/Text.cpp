#include "base/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace corvex {

namespace {

/// The length of the number at the start of a text: an optional sign, digits with an optional decimal point,
/// an optional exponent. 0 if the text does not start with a number.
std::size_t NumberLength(std::string_view text) {
  std::size_t at = 0;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
  std::size_t digits = 0;
  while (at < text.size() && IsDigit(text[at])) ++at, ++digits;
  if (at < text.size() && text[at] == '.') {
    ++at;
    while (at < text.size() && IsDigit(text[at])) ++at, ++digits;
  }
  if (digits == 0) return 0;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    std::size_t exponent = at + 1;
    if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
    if (exponent < text.size() && IsDigit(text[exponent])) {
      at = exponent;
      while (at < text.size() && IsDigit(text[at])) ++at;
    }
  }
  return at;
}

/// For an unsigned number that is out of range for a double: true if it is too large, false if it is too
/// small. The decimal place of the first non-zero digit decides.
bool IsTooLarge(std::string_view number) {
  const std::string_view mantissa = number.substr(0, number.find_first_of("eE"));
  const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
  const auto first = static_cast<std::int64_t>(mantissa.find_first_of("123456789"));
  std::int64_t exponent = 0;
  if (mantissa.size() < number.size()) {
    std::string_view text = number.substr(mantissa.size() + 1);
    const bool negative = text.starts_with('-');
    if (text.starts_with('+')) text.remove_prefix(1);
    const auto result = std::from_chars(text.data(), text.data() + text.size(), exponent);
    if (result.ec != std::errc()) return !negative;
  }
  return exponent > first - point;
}

/// The value of a number in the form that NumberLength accepts. A number that is too large for a double
/// becomes the largest double, and one that is too small becomes 0. The sign is kept.
double ParseNumber(std::string_view number) {
  if (const auto few = FewDigits(number)) return *few;
  const bool negative = number.starts_with('-');
  if (negative || number.starts_with('+')) number.remove_prefix(1);
  double value = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
  if (result.ec == std::errc::result_out_of_range)
    value = IsTooLarge(number) ? std::numeric_limits<double>::max() : 0;
  return negative ? -value : value;
}

template <typename Int, typename Value>
std::optional<Int> Limited(Value value) {
  if (value < std::numeric_limits<Int>::min() || value > std::numeric_limits<Int>::max()) return std::nullopt;
  return static_cast<Int>(value);
}

template <typename Int>
std::optional<Int> ToInt(std::string_view text) {
  if (const auto few = FewDigits(text)) return Limited<Int>(*few);
  if (!IsNumeric(text)) return std::nullopt;
  return Limited<Int>(RoundHalfEven(ParseNumber(TrimBlanks(text))));
}

template <typename Int>
std::optional<Int> PrefixInt(std::string_view text) {
  if (const auto few = FewDigits(text)) return Limited<Int>(*few);
  return Limited<Int>(RoundHalfEven(NumericPrefix(text)));
}

}  // namespace

std::string NumberText(std::int64_t number) {
  return (number < 0 ? "" : " ") + std::to_string(number);
}

double NumericPrefix(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  const std::size_t length = NumberLength(text);
  return length == 0 ? 0 : ParseNumber(text.substr(0, length));
}

std::int32_t WholePrefix(std::string_view text) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(
      std::clamp<double>(RoundHalfEven(NumericPrefix(text)), Limits::min(), Limits::max()));
}

std::optional<std::int16_t> PrefixInt16(std::string_view text) {
  return PrefixInt<std::int16_t>(text);
}

std::optional<std::int32_t> PrefixInt32(std::string_view text) {
  return PrefixInt<std::int32_t>(text);
}

bool IsNumeric(std::string_view text) {
  text = TrimBlanks(text);
  return !text.empty() && NumberLength(text) == text.size();
}

std::optional<std::int16_t> ToInt16(std::string_view text) {
  return ToInt<std::int16_t>(text);
}

std::optional<std::int32_t> ToInt32(std::string_view text) {
  return ToInt<std::int32_t>(text);
}

double RoundHalfEven(double value) {
  return std::nearbyint(value);  // The default rounding mode is to nearest, with halves to even.
}

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), [](char c) { return UpperCase(c); });
  return upper;
}

bool EqualNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return x == y || UpperCase(x) == UpperCase(y); });
}

std::size_t FindNoCase(std::string_view text, std::string_view what, std::size_t from) {
  // Compare the first character in both cases first, which rules out most positions with two comparisons.
  const char upper = UpperCase(what.front());
  const char lower = LowerCase(what.front());
  for (std::size_t at = from; at + what.size() <= text.size(); ++at) {
    if (text[at] != lower && text[at] != upper) continue;
    if (EqualNoCase(text.substr(at, what.size()), what)) return at;
  }
  return std::string_view::npos;
}

bool Contains(std::string_view text, std::string_view what) {
  return text.find(what) != std::string_view::npos;
}

bool Matches(std::string_view text, std::string_view pattern) {
  // After a mismatch, it is enough to let the last "*" match one more character.
  std::size_t t = 0;
  std::size_t p = 0;
  std::size_t star = std::string_view::npos;
  std::size_t mark = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      mark = t;
    } else if (p < pattern.size() && pattern[p] == text[t]) {
      ++p;
      ++t;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      t = ++mark;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> fields;
  for (;;) {
    const std::size_t end = text.find(separator);
    fields.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return fields;
    text.remove_prefix(end + 1);
  }
}

std::string_view TrimBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace corvex
