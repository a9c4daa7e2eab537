#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "sys_string.h"
#include "wildcard_reference.h"

namespace {

struct MatchCase {
  char const *name;
  char const *text;
  char const *pattern;
  int expected;
};

// clang-format off
MatchCase const kMatchCases[] = {
  // Plain text and '?'
  {"empty pattern, empty text", "", "", 1},
  {"empty pattern, text left", "a", "", 0},
  {"case-sensitive", "abc", "ABC", 0},
  {"question mark is one byte", "abc", "a?c", 1},
  {"question mark needs a byte", "ac", "a?c", 0},
  {"backslash outside a class is a literal", "a\\b", "a\\b", 1},
  {"backslash does not escape a star", "a*", "a\\*", 0},
  {"closing bracket outside a class", "a]", "a]", 1},
  // Stars
  {"star alone matches empty text", "", "*", 1},
  {"two stars on empty text", "", "**", 0},
  {"stars met while text is left", "abc", "a**", 1},
  {"two stars left when text ran out", "ab", "ab**", 0},
  {"one star left when text ran out", "ab", "ab*", 1},
  {"star then literal", "abcd", "*d", 1},
  {"star between literals", "axxxb", "a*b", 1},
  {"star needs the last literal at the end", "axxxbx", "a*b", 0},
  {"later position of the star", "abab", "*ab", 1},
  {"star and question marks", "abcd", "*??d", 1},
  {"question marks behind a star run out", "ab", "a*??", 0},
  {"star before a class", "xyz3", "*[0-9]", 1},
  {"text runs out inside a trial", "ab", "*b?", 0},
  {"star question star", "a", "*?*", 1},
  {"star question on empty text", "", "*?", 0},
  // Classes
  {"class member", "b", "[abc]", 1},
  {"range", "m", "[a-z]", 1},
  {"reversed range", "m", "[z-a]", 1},
  {"negated with !", "a", "[!a]", 0},
  {"negated with ^", "b", "[^a]", 1},
  {"escaped closing bracket", "]", "[\\]]", 1},
  {"escaped range end", "b", "[a-\\c]", 1},
  {"dash first is a member", "-", "[-a]", 1},
  {"range compares signed chars", "\xF0", "[\xE0-a]", 1},
  {"signed range excludes ASCII above its top", "b", "[\xE0-a]", 0},
  // Bad classes make the whole test fail where the walk reaches them
  {"empty class", "]", "[]]", 0},
  {"empty negated class", "a", "[!]", 0},
  {"unclosed class", "a", "[a", 0},
  {"range without upper end", "a", "[a-]", 0},
  {"bad class behind a star", "xa", "*[a", 0},
  {"bad class not reached", "b", "a[", 0},
};
// clang-format on

TEST(WildcardTest, MatchTable) {
  for (MatchCase const &c : kMatchCases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(SYS_String(c.text).Match(c.pattern), c.expected);
    EXPECT_EQ(tovik_test::ReferenceMatch(c.text, c.pattern), c.expected) << "reference disagrees with the table";
  }
}

TEST(WildcardTest, IsPattern) {
  EXPECT_EQ(SYS_String("plain.txt").IsPattern(), 0);
  EXPECT_EQ(SYS_String("").IsPattern(), 0);
  EXPECT_EQ(SYS_String("a*").IsPattern(), 1);
  EXPECT_EQ(SYS_String("a?").IsPattern(), 1);
  EXPECT_EQ(SYS_String("a[").IsPattern(), 1);
  EXPECT_EQ(SYS_String("a]\\").IsPattern(), 0);
}

struct ValidityCase {
  char const *name;
  char const *pattern;
  int error;  // 0 for a sound pattern
};

// clang-format off
ValidityCase const kValidityCases[] = {
  {"empty", "", 0},
  {"no class", "a*b?c", 0},
  {"range", "x[a-z]y", 0},
  {"negation sign is a member here", "[!]", 0},
  {"escaped bracket", "[\\]]", 0},
  {"escaped range end", "[a-\\]]", 0},
  {"backslash at the end of a class", "[a\\", -1},
  {"backslash as missing range end", "[a-\\", -1},
  {"range without upper end before ]", "[a-]", -2},
  {"range without upper end at the end", "[a-", -2},
  {"class not closed", "[abc", -3},
  {"empty class", "[]", -4},
  {"empty class after a good one", "[a][]", -4},
  {"backslash outside a class", "a\\", 0},
};
// clang-format on

TEST(WildcardTest, IsValidPatternTable) {
  for (ValidityCase const &c : kValidityCases) {
    SCOPED_TRACE(c.name);
    int error = 99;
    EXPECT_EQ(SYS_String(c.pattern).IsValidPattern(&error), c.error == 0 ? 1 : 0);
    EXPECT_EQ(error, c.error);
  }
  EXPECT_EQ(SYS_String("[").IsValidPattern(nullptr), 0) << "a null error pointer is allowed";
}

// Every pattern of up to five bytes over an alphabet of the special bytes,
// against every text of up to four bytes: the library and the reference walk
// must agree everywhere.
TEST(WildcardTest, AgreesWithReferenceExhaustively) {
  std::string const patternBytes = "a*?[]!-";
  std::string const textBytes = "ab-";
  std::vector<std::string> texts{""};
  for (std::size_t i = 0; texts[i].size() < 4; ++i) {
    for (char b : textBytes) texts.push_back(texts[i] + b);
  }
  std::vector<std::string> patterns{""};
  for (std::size_t i = 0; patterns[i].size() < 5; ++i) {
    for (char b : patternBytes) patterns.push_back(patterns[i] + b);
  }
  int disagreements = 0;
  for (std::string const &pattern : patterns) {
    SYS_String const compiled(pattern.c_str());
    for (std::string const &text : texts) {
      if (SYS_String(text.c_str()).Match(compiled) != tovik_test::ReferenceMatch(text.c_str(), pattern.c_str())) {
        if (++disagreements < 10) ADD_FAILURE() << "text \"" << text << "\" pattern \"" << pattern << "\"";
      }
    }
  }
  EXPECT_EQ(disagreements, 0);
}

// Random longer pairs, each also on every slice of the text, with texts
// drawn from the pattern's own bytes so that matches are frequent.
TEST(WildcardTest, AgreesWithReferenceOnRandomPairs) {
  std::mt19937 random(20240611);
  std::string const patternBytes = "ab*?*[]!^-\\c";
  std::string const textBytes = "abc-]\\";
  auto draw = [&random](std::string const &alphabet, std::size_t length) {
    std::string s;
    for (std::size_t i = 0; i < length; ++i) s += alphabet[random() % alphabet.size()];
    return s;
  };
  int disagreements = 0;
  for (int round = 0; round < 4000; ++round) {
    std::string const pattern = draw(patternBytes, random() % 10);
    std::string const text = draw(textBytes, random() % 12);
    SYS_String const compiled(pattern.c_str());
    for (std::size_t from = 0; from <= text.size(); ++from) {
      std::string const slice = text.substr(from);
      if (SYS_String(slice.c_str()).Match(compiled) != tovik_test::ReferenceMatch(slice.c_str(), pattern.c_str())) {
        if (++disagreements < 10) ADD_FAILURE() << "text \"" << slice << "\" pattern \"" << pattern << "\"";
      }
    }
  }
  EXPECT_EQ(disagreements, 0);
}

// Patterns that would make the recursive walk exponential or deep: the
// library answers them, and by the same rules.
TEST(WildcardTest, AbsurdPatternsStayBounded) {
  std::string stars(20000, '*');
  EXPECT_EQ(SYS_String("abc").Match((stars + "c").c_str()), 1);
  EXPECT_EQ(SYS_String("abc").Match((stars + "d").c_str()), 0);

  // "*a*a*a...*a b" against a long run of 'a': each star would try every
  // later position in the recursive walk.
  std::string pattern;
  for (int i = 0; i < 3000; ++i) pattern += "*a";
  std::string const text(6000, 'a');
  EXPECT_EQ(SYS_String(text.c_str()).Match((pattern + "b").c_str()), 0);
  EXPECT_EQ(SYS_String(text.c_str()).Match(pattern.c_str()), 1);
  EXPECT_EQ(SYS_String(text.substr(0, 2999).c_str()).Match(pattern.c_str()), 0);

  std::string classes;
  for (int i = 0; i < 2000; ++i) classes += "*[a-b]";
  EXPECT_EQ(SYS_String(std::string(2000, 'b').c_str()).Match(classes.c_str()), 1);
}

}  // namespace
