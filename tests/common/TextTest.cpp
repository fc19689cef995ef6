#include "common/Text.h"

#include <gtest/gtest.h>

#include <limits>

namespace corvex {
namespace {

TEST(Text, NumbersAreReadFromTheirPrefixOrAsAWhole) {
  constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
  const auto none = std::nullopt;
  struct Case {
    std::string text;
    double prefix;
    std::int32_t whole;
    std::optional<std::int32_t> number;
  };
  const std::string zeros(400, '0');
  const Case cases[] = {
      {"", 0, 0, none},
      {"x7", 0, 0, none},
      {"+-5", 0, 0, none},
      {"7", 7, 7, 7},
      {" 7 ", 7, 7, 7},
      {"\t7", 7, 7, none},
      {"-7", -7, -7, -7},
      {"12,5", 12, 12, none},
      {"115200,n,8,1", 115200, 115200, none},
      {"2.5", 2.5, 2, 2},
      {"3.5", 3.5, 4, 4},
      {"-2.5", -2.5, -2, -2},
      {".5", .5, 0, 0},
      {"5.", 5, 5, 5},
      {"1e3", 1000, 1000, 1000},
      {"1e", 1, 1, none},
      {"0x10", 0, 0, none},
      {"inf", 0, 0, none},
      {"2147483647", kMax, kMax, kMax},
      {"2147483648", 2147483648.0, kMax, none},
      {"-2147483648", kMin, kMin, kMin},
      {"1e999", std::numeric_limits<double>::max(), kMax, none},
      {"1e99999999999999999999", std::numeric_limits<double>::max(), kMax, none},
      {"-1e-99999999999999999999", 0, 0, 0},
      {"1" + zeros, std::numeric_limits<double>::max(), kMax, none},
      {"1" + zeros + "e-400", 1, 1, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(NumericPrefix(c.text), c.prefix);
    EXPECT_EQ(WholePrefix(c.text), c.whole);
    EXPECT_EQ(ToInt32(c.text), c.number);
  }
}

TEST(Text, SixteenBitsEndAtTheirLimits) {
  EXPECT_EQ(ToInt16("32767"), 32767);
  EXPECT_EQ(ToInt16("32767.5"), std::nullopt);
  EXPECT_EQ(ToInt16("-32768.5"), -32768);
  EXPECT_EQ(ToInt16("-32769"), std::nullopt);
}

TEST(Text, CaseIsThatOfLatin1) {
  EXPECT_EQ(UpperCase("az AZ 09 {\xE5\xF8\xFE\xE0"), "AZ AZ 09 {\xC5\xD8\xDE\xC0");
  const std::string_view noCase =
      "\xDF\xF7\xD7\xFF`@[\x7F";  // sharp s, division, times, y with dots, and the neighbours
  EXPECT_EQ(UpperCase(noCase), noCase);
  EXPECT_TRUE(EqualNoCase("Com\xE5", "cOM\xC5"));
  EXPECT_FALSE(EqualNoCase("com", "com1"));
  EXPECT_FALSE(EqualNoCase("@", "`"));
}

TEST(Text, FindsWithoutCaseFromAPlaceOn) {
  EXPECT_EQ(FindNoCase("a Login LOGIN", "login"), 2u);
  EXPECT_EQ(FindNoCase("a Login LOGIN", "login", 3), 8u);
  EXPECT_EQ(FindNoCase("a Login LOGIN", "login", 9), std::string_view::npos);
  EXPECT_EQ(FindNoCase("log", "login"), std::string_view::npos);
  EXPECT_EQ(FindNoCase("log", "log", 4), std::string_view::npos);
}

TEST(Text, WildcardMatchesTheWholeText) {
  struct Case {
    std::string_view text;
    std::string_view pattern;
    bool matches;
  };
  const Case cases[] = {
      {"", "", true},        {"", "*", true},        {"", "a", false},         {"a", "", false},
      {"OK", "OK", true},    {"xOK", "OK", false},   {"OKx", "OK", false},     {"\r\nOK\r\n", "*OK*", true},
      {"ok", "OK", false},   {"ab", "a**b", true},   {"aXbXc", "a*b*c", true}, {"acb", "a*b*c", false},
      {"aab", "*ab", true},  {"abcab", "*ab", true}, {"abcabx", "*ab", false}, {"a?c[#", "a?c[#", true},
      {"abc", "a?c", false},
  };
  for (const Case& c : cases)
    EXPECT_EQ(Matches(c.text, c.pattern), c.matches) << c.text << " / " << c.pattern;

  // A pattern that would take exponential time if every "*" were tried again.
  std::string stars;
  for (int i = 0; i < 50; ++i) stars += "a*";
  EXPECT_FALSE(Matches(std::string(10000, 'a'), stars + "b"));
}

TEST(Text, OnlyBlanksAreTrimmed) {
  EXPECT_EQ(TrimBlanks("  a b "), "a b");
  EXPECT_EQ(TrimBlanks("\ta\r"), "\ta\r");
  EXPECT_EQ(TrimBlanks("   "), "");
}

}  // namespace
}  // namespace corvex
