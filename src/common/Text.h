#pragma once

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
char UpperCase(char c);
std::string UpperCase(std::string_view text);

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

/// One field, counted from 0, of a text between separators. None if it has fewer.
std::optional<std::string_view> Field(std::string_view text, char separator, std::size_t index);

/// Without the blanks at both ends.
std::string_view TrimBlanks(std::string_view text);

}  // namespace corvex
