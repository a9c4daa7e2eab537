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
  int expected;
} const kMatchCases[] = {
  {"empty pattern, text left", "a", "", 0},
  {"backslash outside a class is a literal", "a\\b", "a\\b", 1},
  {"star alone matches empty text", "", "*", 1},
  {"two stars on empty text", "", "**", 0},
  {"stars met while text is left", "abc", "a**", 1},
  {"two stars left when text ran out", "ab", "ab**", 0},
  {"one star left when text ran out", "ab", "ab*", 1},
  {"star needs the last literal at the end", "axxxbx", "a*b", 0},
  {"star before a class", "xyz3", "*[0-9]", 1},
  {"reversed range", "m", "[z-a]", 1},
  {"negated with !", "a", "[!a]", 0},
  {"negated with ^", "b", "[^a]", 1},
  {"escaped closing bracket", "]", "[\\]]", 1},
  {"escaped range end", "b", "[a-\\c]", 1},
  {"range compares signed chars", "\xF0", "[\xE0-a]", 1},
  {"signed range excludes ASCII above its top", "b", "[\xE0-a]", 0},
  {"empty negated class", "a", "[!]", 0},
  {"range without upper end", "a", "[a-]", 0},
  {"bad class behind a star", "xa", "*[a", 0},
};
// clang-format on

TEST(WildcardTest, MatchAndPatternChecks) {
  for (auto const &c : kMatchCases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(SYS_String(c.text).Match(c.pattern), c.expected);
    EXPECT_EQ(ReferenceMatch(c.text, c.pattern), c.expected) << "reference disagrees with the table";
  }
  EXPECT_EQ(SYS_String("a*").IsPattern() + SYS_String("a?").IsPattern() + SYS_String("[").IsPattern(), 3);
  EXPECT_EQ(SYS_String("a]\\.txt").IsPattern(), 0);

  struct {
    char const *name, *pattern;
    int error;  // 0 for a sound pattern
  } const validity[] = {
      {"negation sign is a member here", "[!]", 0},
      {"escaped range end", "[a-\\]]", 0},
      {"backslash at the end of a class", "[a\\", -1},
      {"backslash as missing range end", "[a-\\", -1},
      {"range without upper end before ]", "[a-]", -2},
      {"range without upper end at the end", "[a-", -2},
      {"class not closed", "[abc", -3},
      {"empty class after a good one", "[a][]", -4},
  };
  for (auto const &c : validity) {
    SCOPED_TRACE(c.name);
    int error = 99;
    EXPECT_EQ(SYS_String(c.pattern).IsValidPattern(&error), c.error == 0 ? 1 : 0);
    EXPECT_EQ(error, c.error);
  }
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
      std::string const slice = text.substr(from);
      if (SYS_String(slice.c_str()).Match(pattern.c_str()) == ReferenceMatch(slice.c_str(), pattern.c_str())) continue;
      if (++disagreements < 10) ADD_FAILURE() << "text \"" << slice << "\" pattern \"" << pattern << "\"";
    }
  }
  EXPECT_EQ(disagreements, 0);
}

// Patterns that would make a recursive walk deep or exponential: answered,
// by the same rules.
TEST(WildcardTest, AbsurdPatternsStayBounded) {
  std::string const stars(20000, '*');
  EXPECT_EQ(SYS_String("abc").Match((stars + "c").c_str()), 1);
  EXPECT_EQ(SYS_String("abc").Match((stars + "d").c_str()), 0);
  std::string pattern;
  for (int i = 0; i < 3000; ++i) pattern += "*a";
  std::string const text(6000, 'a');
  EXPECT_EQ(SYS_String(text.c_str()).Match((pattern + "b").c_str()), 0);
  EXPECT_EQ(SYS_String(text.c_str()).Match(pattern.c_str()), 1);
  EXPECT_EQ(SYS_String(text.substr(0, 2999).c_str()).Match(pattern.c_str()), 0);
}

}  // namespace
