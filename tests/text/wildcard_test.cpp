#include <gtest/gtest.h>

#include <random>
#include <string>

#include "sys_string.h"
#include "wildcard_reference.h"

namespace {

using tovik_test::ReferenceMatch;

// clang-format off
struct {
  char const *name, *text, *pattern;
  int match, error;  // error: what IsValidPattern reports, 0 for a sound pattern
} const kCases[] = {
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
    EXPECT_EQ(ReferenceMatch(c.text, c.pattern), c.match) << "reference disagrees with the table";
    int error = 99;
    EXPECT_EQ(SYS_String(c.pattern).IsValidPattern(&error), c.error == 0 ? 1 : 0);
    EXPECT_EQ(error, c.error);
  }
  EXPECT_EQ(SYS_String("a*").IsPattern() + SYS_String("a?").IsPattern() + SYS_String("[").IsPattern(), 3);
  EXPECT_EQ(SYS_String("a]\\.txt").IsPattern(), 0);
  EXPECT_EQ(SYS_String("[").IsValidPattern(nullptr), 0) << "a null error pointer is allowed";
}

// Random pairs, each on every slice of the text, with texts drawn from the
// pattern's own bytes so that matches are frequent: the library and the
// reference walk must agree everywhere.
TEST(WildcardTest, AgreesWithTheReferenceMatcher) {
  std::mt19937 random(20240611);
  auto draw = [&random](std::string const &alphabet, std::size_t length) {
    std::string s;
    while (s.size() < length) s += alphabet[random() % alphabet.size()];
    return s;
  };
  int disagreements = 0;
  for (int round = 0; round < 4000; ++round) {
    std::string const pattern = draw("ab*?*[]!^-\\c", random() % 9);
    std::string const text = draw("abc-]\\", random() % 10);
    for (std::size_t from = 0; from <= text.size(); ++from) {
      char const *const slice = text.c_str() + from;
      if (SYS_String(slice).Match(pattern.c_str()) == ReferenceMatch(slice, pattern.c_str())) continue;
      if (++disagreements < 10) ADD_FAILURE() << "text \"" << slice << "\" pattern \"" << pattern << "\"";
    }
  }
  EXPECT_EQ(disagreements, 0);
}

// Patterns that would make a recursive walk deep or exponential: answered,
// by the same rules.
TEST(WildcardTest, AbsurdPatternsStayBounded) {
  EXPECT_EQ(SYS_String("abc").Match((std::string(20000, '*') + "c").c_str()), 1);
  std::string pattern;
  for (int i = 0; i < 3000; ++i) pattern += "*a";
  std::string const text(6000, 'a');
  EXPECT_EQ(SYS_String(text.c_str()).Match((pattern + "b").c_str()), 0);
  EXPECT_EQ(SYS_String(text.c_str()).Match(pattern.c_str()), 1);
  EXPECT_EQ(SYS_String(text.substr(0, 2999).c_str()).Match(pattern.c_str()), 0);
}

}  // namespace
