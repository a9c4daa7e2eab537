#include <gtest/gtest.h>

#include <string>

#include "sys_string.h"

namespace {

// clang-format off
// error: what IsValidPattern reports, 0 for a sound pattern
struct { char const *name, *text, *pattern; int match, error; } const kCases[] = {
  {"empty pattern, text left", "a", "", 0, 0},
  {"backslash outside a class is a literal", "a\\b", "a\\b", 1, 0},
  {"star alone matches empty text", "", "*", 1, 0},
  {"two stars on empty text", "", "**", 0, 0},
  {"stars met while text is left", "abc", "a**", 1, 0},
  {"two stars left when text ran out", "ab", "ab**", 0, 0},
  {"star needs the last literal at the end", "axxxbx", "a*b", 0, 0},
  {"star before a class", "xyz3", "*[0-9]", 1, 0},
  {"reversed range", "m", "[z-a]", 1, 0},
  {"negated with !", "a", "[!a]", 0, 0},
  {"negated with ^", "b", "[^a]", 1, 0},
  {"escaped closing bracket", "]", "[\\]]", 1, 0},
  {"escaped range end", "b", "[a-\\c]", 1, 0},
  {"range compares signed chars", "\xF0", "[\xE0-a]", 1, 0},
  {"signed range excludes ASCII above its top", "b", "[\xE0-a]", 0, 0},
  {"[!] matches nothing, yet checks as sound", "a", "[!]", 0, 0},
  {"range without upper end", "a", "[a-]", 0, -2},
  {"bad class behind a star", "xa", "*[a", 0, -3},
  {"backslash at the end of a class", "a", "[a\\", 0, -1},
  {"backslash as missing range end", "a", "[a-\\", 0, -1},
  {"range without upper end at the end", "a", "[a-", 0, -2},
  {"empty class after a good one", "a", "[a][]", 0, -4},
};
// clang-format on

TEST(WildcardTest, MatchAndPatternChecks) {
  for (auto const &c : kCases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(SYS_String(c.text).Match(c.pattern), c.match);
    int error = 99;
    EXPECT_EQ(SYS_String(c.pattern).IsValidPattern(&error), c.error == 0 ? 1 : 0);
    EXPECT_EQ(error, c.error);
  }
  EXPECT_EQ(SYS_String("a*").IsPattern() + SYS_String("a?").IsPattern() + SYS_String("[").IsPattern(), 3);
  EXPECT_EQ(SYS_String("a]\\.txt").IsPattern(), 0);
  EXPECT_EQ(SYS_String("[").IsValidPattern(nullptr), 0) << "a null error pointer is allowed";
}

// Patterns that would make a recursive walk deep or exponential: answered,
// by the same rules.
TEST(WildcardTest, AbsurdPatternsStayBounded) {
  EXPECT_EQ(SYS_String("abc").Match((std::string(20000, '*') + "c").c_str()), 1);
  std::string pattern;  // "*a" 3000 times
  while (pattern.size() < 6000) pattern += "*a";
  std::string const text(6000, 'a');
  EXPECT_EQ(SYS_String(text.c_str()).Match((pattern + "b").c_str()), 0);
  EXPECT_EQ(SYS_String(text.c_str()).Match(pattern.c_str()), 1);
  EXPECT_EQ(SYS_String(text.substr(0, 2999).c_str()).Match(pattern.c_str()), 0);
}

}  // namespace
