#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <clocale>
#include <cstdio>
#include <string>

#include "numtext.h"

namespace {

namespace num = tovik::num;

struct IntCase {
  char const *name;
  char const *text;
  long long value;  // as a 32-bit long would hold it
  int consumed;     // bytes up to end
};

TEST(NumTextTest, StrToLHasThe32BitRange) {
  IntCase const cases[] = {
      {"white space and sign", " \t-45z", -45, 5},
      {"plus sign", "+6", 6, 2},
      {"sign without digits", "  -x", 0, 0},
      {"overflow saturates", "2147483648", INT_MAX, 10},
      {"smallest", "-2147483648", INT_MIN, 11},
      {"underflow saturates", "-2147483649", INT_MIN, 11},
      {"very long", "123456789012345678901234567890", INT_MAX, 30},
      {"decimal only", "0x10", 0, 1},
  };
  for (IntCase const &c : cases) {
    SCOPED_TRACE(c.name);
    char const *end = nullptr;
    EXPECT_EQ(num::StrToL(c.text, &end), c.value);
    EXPECT_EQ(end - c.text, c.consumed);
  }
  EXPECT_EQ(num::StrToL(nullptr, nullptr), 0);
}

TEST(NumTextTest, StrToULHasThe32BitRange) {
  IntCase const cases[] = {
      {"overflow saturates", "4294967296", 4294967295LL, 10},
      {"minus negates modulo 2^32", "-1", 4294967295LL, 2},
      {"minus of a large value", "-4294967295", 1, 11},
      {"minus beyond the range", "-4294967296", 4294967295LL, 11},
      {"no digits", " -", 0, 0},
  };
  for (IntCase const &c : cases) {
    SCOPED_TRACE(c.name);
    char const *end = nullptr;
    EXPECT_EQ(num::StrToUL(c.text, &end), c.value);
    EXPECT_EQ(end - c.text, c.consumed);
  }
}

TEST(NumTextTest, StrToDAndTheLocale) {
  char const *end = nullptr;
  EXPECT_EQ(num::StrToD(" 1.5e3x", &end), 1500.0);
  EXPECT_STREQ(end, "x");
  EXPECT_EQ(num::StrToD("0x10", nullptr), 16.0);
  EXPECT_EQ(num::StrToD("none", &end), 0.0);
  EXPECT_STREQ(end, "none");
  errno = 0;
  num::StrToD("1e999", nullptr);
  EXPECT_EQ(errno, 0) << "errno is left alone";

  char const *previous = std::setlocale(LC_NUMERIC, nullptr);
  std::string const saved = previous != nullptr ? previous : "C";
  if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") == nullptr) GTEST_SKIP() << "no locale with a decimal comma";
  double const parsed = num::StrToD("2.5", nullptr);
  char inScope[16];
  {
    num::CLocaleScope const c;
    std::snprintf(inScope, sizeof inScope, "%.1f", 2.5);
  }
  char outside[16];
  std::snprintf(outside, sizeof outside, "%.1f", 2.5);
  std::setlocale(LC_NUMERIC, saved.c_str());
  EXPECT_EQ(parsed, 2.5);
  EXPECT_STREQ(inScope, "2.5");
  EXPECT_STREQ(outside, "2,5") << "the scope restores the thread's locale";
}

}  // namespace
