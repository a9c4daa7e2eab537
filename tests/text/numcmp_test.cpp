#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "code_page_guard.h"
#include "sys_string.h"

namespace {

using tovik::mb::CodePage;
using tovik_test::CodePageGuard;

int Sign(int v) { return v < 0 ? -1 : (v > 0 ? 1 : 0); }

struct NumCmpCase {
  char const *name;
  char const *a;
  char const *b;
  int sign;
};

// clang-format off
NumCmpCase const kCases[] = {
  {"equal texts", "a", "a", 0},
  {"both empty", "", "", 0},
  {"empty before text", "", "a", -1},
  {"prefix first", "ab", "abc", -1},
  {"letters by byte", "abc", "abd", -1},
  {"numbers by value", "R2", "R10", -1},
  {"leading zeros do not count", "R007", "R7", 0},
  {"equal numbers, text decides", "R7a", "R7b", -1},
  {"number then nothing", "R7", "R7a", -1},
  {"dollar after letters", "a$", "ab", 1},
  {"dollar after end", "a$", "a", 1},
  {"dollar against dollar", "a$", "a$", 0},
  {"digit against letter by code", "a1", "ab", -1},
  {"numbers beyond 32 bits count as the bound", "x99999999999", "x99999999998", 0},
  {"several numbers", "U1.2.10", "U1.2.9", 1},
  {"high bytes above ASCII", "a\xE9", "az", 1},
};
// clang-format on

TEST(NumCmpTest, Table) {
  for (NumCmpCase const &c : kCases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Sign(_tcsnumcmp(c.a, c.b)), c.sign);
    EXPECT_EQ(Sign(_tcsnumcmp(c.b, c.a)), -c.sign) << "reversed";
    EXPECT_EQ(Sign(SYS_String(c.a).CompareAlNum(c.b)), c.sign);
  }
  EXPECT_EQ(_tcsnumcmp(nullptr, ""), 0);
  EXPECT_LT(_tcsnumcmp(nullptr, "a"), 0);
}

TEST(NumCmpTest, SortsDesignatorsNaturally) {
  std::vector<std::string> names{"R10", "C1", "R2", "R1", "R$", "U3", "R100", "C10", "C2"};
  std::sort(names.begin(), names.end(),
            [](std::string const &x, std::string const &y) { return _tcsnumcmp(x.c_str(), y.c_str()) < 0; });
  std::vector<std::string> const expected{"C1", "C2", "C10", "R1", "R2", "R10", "R100", "R$", "U3"};
  EXPECT_EQ(names, expected);
}

// The sort above relies on a consistent order: check antisymmetry and
// transitivity on random texts rich in digits and '$'.
TEST(NumCmpTest, IsAConsistentOrder) {
  std::mt19937 random(7);
  std::string const alphabet = "ab0129$";
  std::vector<std::string> texts;
  for (int i = 0; i < 150; ++i) {
    std::string s;
    for (std::size_t n = random() % 6; n > 0; --n) s += alphabet[random() % alphabet.size()];
    texts.push_back(s);
  }
  int faults = 0;
  for (auto const &x : texts) {
    for (auto const &y : texts) {
      int const xy = Sign(_tcsnumcmp(x.c_str(), y.c_str()));
      if (xy != -Sign(_tcsnumcmp(y.c_str(), x.c_str()))) ++faults;
      for (auto const &z : texts) {
        if (xy < 0 && _tcsnumcmp(y.c_str(), z.c_str()) < 0 && _tcsnumcmp(x.c_str(), z.c_str()) >= 0) ++faults;
      }
    }
  }
  EXPECT_EQ(faults, 0);
}

TEST(NumCmpTest, DoubleBytePageWalksCharacters) {
  CodePageGuard const page(CodePage::DoubleByte);
  // 0x24 is '$' and 0x31 is '1' as trail bytes: inside a character they are
  // neither a dollar nor a digit.
  EXPECT_LT(_tcsnumcmp("a\x81\x24", "a$"), 0) << "a trail byte 0x24 is no dollar";
  EXPECT_GT(_tcsnumcmp("a$", "a\x81\x24"), 0);
  EXPECT_GT(_tcsnumcmp("x\x81\x31", "x9"), 0) << "a trail byte 0x31 is no digit";
  EXPECT_EQ(_tcsnumcmp("\x81\x40R2", "\x81\x40R2"), 0);
  EXPECT_LT(_tcsnumcmp("\x81\x40R2", "\x81\x40R10"), 0);
  // Two-byte characters order by code, above every one-byte character.
  EXPECT_GT(_tcsnumcmp("\x81\x40", "\xA1"), 0);
  EXPECT_EQ(_tcsnumcmp("a\x81", "a\x81"), 0) << "a lone lead byte at the end";
}

}  // namespace
