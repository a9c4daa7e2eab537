#include <gtest/gtest.h>

#include <string>

#include "code_page_guard.h"
#include "pattern_reference.h"
#include "sys_str_pattern.h"

namespace {

using tovik::mb::CodePage;

enum Pages { kSingle = 1, kDouble = 2, kBoth = 3 };

std::string Code(SYS_StrPattern const &p) { return std::string(p.GetCompiled(), p.GetCompiled().GetLength()); }

// clang-format off
struct MatchCase { char const *name, *pattern, *text; int position, length, pages; };
MatchCase const kMatchCases[] = {
  {"reach includes the rest", "(a|ab)b", "abb", 0, 3, kBoth},
  {"caret tests the attempt", "^b", "ab", -1, 0, kBoth},
  {"caret under a repeat", "(^a)+", "aaa", 0, 3, kBoth},
  {"NUL is no attempt position", "$", "abc", -1, 0, kBoth},
  {"empty repeat cannot reach the NUL", "x*$", "abc", -1, 0, kBoth},
  {"greedy tries the rest behind none only on failure", "a*ab", "ab", -1, 0, kBoth},
  {"greedy gives back one repeat", "a*ab", "aab", 0, 3, kBoth},
  {"question backtracks into its operand", "a?ab", "ab", 0, 2, kBoth},
  {"lazy stops at the first rest", "a@a", "aaa", 0, 2, kBoth},
  {"lazy one-or-more needs one", "a#b", "b", -1, 0, kBoth},
  {"lazy never tries the rest behind none after a repeat", ".@c", "c", -1, 0, kBoth},
  {"empty operand under star", "(a*)*b", "aab", 0, 3, kBoth},
  {"optional operand under star", "(a?)*b", "aab", 0, 3, kBoth},
  {"dollar under star", "b$*", "ab", 1, 1, kBoth},
  {"empty operand under lazy", "(a*)@b", "aab", 0, 3, kBoth},
  {"dash first and last", "[-a][a-]", "--", 0, 2, kBoth},
  {"range goes on from its end", "[a-c-e]+", "-bde", 1, 3, kBoth},
  {"reversed range holds its start", "[z-a]", "az", 1, 1, kBoth},
  {"range end taken raw", "[\\n-\\r]+", "\nZr]", 0, 3, kBoth},
  {"signed range", "[\xF0-a]", "b\xFF", 1, 1, kSingle},
  {"range ending at 0x7F", "[a-\x7F]+", "z~\x7F", 0, 3, kBoth},
  {"empty set never matches", "a[]|b", "ab", 1, 1, kBoth},
  {"negated empty set matches anything", "[^]", "x", 0, 1, kBoth},
  {"colon before a non-class", ":q", "x:q", 1, 2, kBoth},
  {"escapes", "\\t\\x41\\x4a\\x4\\.", "\tAJ\x04.", 0, 5, kBoth},
  {"high byte in no class", ":c", "\xE9" "a", 1, 1, kSingle},
  {"integer takes signs anywhere", ":z", "x12-3", 1, 4, kBoth},
  {"number stops at E", ":n", "1.5E3", 0, 3, kBoth},
  {"hex integer reads no 0x", ":h", "0x1F", 0, 1, kBoth},
  {"number classes never give back", ":z:z", "12", -1, 0, kBoth},
  {"a number started inside a run of numbers ends elsewhere", ":n@\x11", "2t.1.\x11", 3, 3, kBoth},
  {"lead byte is a lone character", "\x82*", "\x82*", 0, 1, kSingle},
  {"trail byte is never an operator", "\x82*", "\x82*", 0, 2, kDouble},
  {"no attempt at a trail byte", "A", "\x82" "A", -1, 0, kDouble},
  {"double-byte range", "[\x82\xA0-\x82\xA2]", "\x82\xA1", 0, 2, kDouble},
  {"double-byte range across leads adds nothing", "[\x82\xA0-\x83\xA2]", "\x82\xA1", -1, 0, kDouble},
  {"lone lead byte before the NUL", "[^a]", "\x82", 0, 1, kDouble},
};
// clang-format on

// Each row under its code pages, and every slice of its text against the
// reference walk.
TEST(StrPatternTest, MatchesAgreeWithTheReference) {
  for (auto const &c : kMatchCases) {
    for (CodePage page : {CodePage::SingleByte, CodePage::DoubleByte}) {
      if ((c.pages & (page == CodePage::SingleByte ? kSingle : kDouble)) == 0) continue;
      SCOPED_TRACE(std::string(c.name) + (page == CodePage::DoubleByte ? " (double-byte)" : ""));
      tovik_test::CodePageGuard const guard(page);
      SYS_StrPattern const pattern(c.pattern);
      int length = -1, expectedLength = -1;
      EXPECT_EQ(pattern.Match(c.text, &length), c.position);
      EXPECT_EQ(length, c.length);
      std::string const text(c.text);
      for (std::size_t from = 0; from <= text.size(); ++from) {
        for (std::size_t to = from; to <= text.size(); ++to) {
          std::string const slice = text.substr(from, to - from);
          int const expected = tovik_test::ReferenceMatch(Code(pattern), slice.c_str(), &expectedLength);
          ASSERT_EQ(pattern.Match(slice.c_str(), &length), expected) << "slice " << from << ".." << to;
          ASSERT_EQ(length, expectedLength) << "slice " << from << ".." << to;
        }
      }
    }
  }
}

TEST(StrPatternTest, CompiledForms) {
  struct { char const *name; std::string pattern, code; } const cases[] = {
      {"repeat", "ab*", std::string("ca*\2cbe")},
      {"range expanded", "[a-c]", std::string("[\3abce")},
      {"alternatives", "a|b", std::string("|caecbe")},
      {"repeated group", "(ab)+", std::string("+\6)cacbee")},
      {"empty set holds a NUL", "[]", std::string("[\0e", 3)},
      {"set beyond 255 bytes", "[\x80-\x7F]", ""},
      {"operand beyond 255 bytes", "(" + std::string(127, 'a') + ")*", ""},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Code(SYS_StrPattern(c.pattern.c_str())), c.code);
  }
  // Misplaced operators, unclosed or empty groups and sets, and patterns
  // that end where an atom or escape is needed.
  for (char const *bad : {"a**", "()", "(a", "a)", "]", "*", "a|", "^", "a^", "[a-", "[abc", "\\x", "\\x0", "a\\"}) {
    SCOPED_TRACE(bad);
    EXPECT_TRUE(SYS_StrPattern(bad).GetCompiled().IsEmpty());
  }
}

// Inputs that would exhaust the stack or run for ages if repeats recursed,
// groups nested without limit or backtracking were left to itself.
TEST(StrPatternTest, DepthAndCostStayBounded) {
  auto match = [](std::string const &pattern, std::string const &text) {
    int length = 0;
    int const at = SYS_StrPattern(pattern.c_str()).Match(text.c_str(), &length);
    return std::to_string(at) + "," + std::to_string(length);
  };
  EXPECT_EQ(match(std::string(100000, '(') + "a" + std::string(100000, ')'), "a"), "-1,0") << "too deep to compile";
  EXPECT_EQ(match("a*b", std::string(1000000, 'a') + "b"), "0,1000001");
  EXPECT_EQ(match("(a|b)*c", std::string(100000, 'a')), "-1,0") << "quadratic without a memo";
  EXPECT_EQ(match("a@c", std::string(100000, 'a')), "-1,0");
  std::string exponential;
  for (int i = 0; i < 30; ++i) exponential += "a?";
  EXPECT_EQ(match(exponential + std::string(30, 'a'), std::string(30, 'a')), "0,30");
  EXPECT_EQ(match("(" + std::string(100, 'a') + ")+", std::string(250, 'a')), "0,200") << "length byte above 127";
}

TEST(StrPatternTest, Substitute) {
  struct { char const *name, *pattern, *text, *replacement; int maxCount, count; char const *result; } const cases[] = {
      {"caret holds at each search", "^a", "aaa", "b", 0, 3, "bbb"},
      {"empty matches step on", "x*", "abc", "-", 0, 3, "-a-b-c"},
      {"empty match behind a match", "a*", "baac", "-", 0, 3, "-b--c"},
      {"limit", "a", "banana", "o", 2, 2, "bonona"},
      {"replacement not searched again", "an", "banana", "xanx", 0, 2, "bxanxxanxa"},
      {"replacement is the text itself", "b", "ab", nullptr, 0, 1, "aab"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    CString text(c.text);
    SYS_StrPattern const pattern(c.pattern);
    int const count = c.replacement != nullptr ? pattern.Substitute(text, c.replacement, c.maxCount)
                                               : pattern.Substitute(text, text, c.maxCount);
    EXPECT_EQ(count, c.count);
    EXPECT_STREQ(text, c.result);
  }
}

}  // namespace
