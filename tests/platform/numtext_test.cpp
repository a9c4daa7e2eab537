#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <clocale>
#include <cstdio>

#include "comma_locale.h"
#include "cstring.h"
#include "numtext.h"

namespace {

namespace num = tovik::num;

TEST(NumTextTest, IntegersHaveThe32BitRanges) {
  // value: as a 32-bit long or unsigned long would hold it; consumed: bytes up to end.
  struct { char const *name, *text; bool isUnsigned; long long value; int consumed; } const cases[] = {
      {"white space and sign", " \t-45z", false, -45, 5},
      {"sign without digits", "  -x", false, 0, 0},
      {"overflow saturates", "2147483648", false, INT_MAX, 10},
      {"underflow saturates", "-2147483649", false, INT_MIN, 11},
      {"decimal only", "0x10", false, 0, 1},
      {"unsigned overflow saturates", "4294967296", true, 4294967295LL, 10},
      {"minus negates modulo 2^32", "-1", true, 4294967295LL, 2},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    char const *end = nullptr;
    long long const value = c.isUnsigned ? static_cast<long long>(num::StrToUL(c.text, &end)) : num::StrToL(c.text, &end);
    EXPECT_EQ(value, c.value);
    EXPECT_EQ(end - c.text, c.consumed);
  }
  EXPECT_EQ(num::StrToL(nullptr, nullptr), 0);
}

TEST(NumTextTest, FloatingTextIgnoresTheLocale) {
  char const *end = nullptr;
  EXPECT_EQ(num::StrToD(" 1.5e3x", &end), 1500.0);
  EXPECT_STREQ(end, "x");
  errno = 0;
  num::StrToD("1e999", nullptr);
  EXPECT_EQ(errno, 0) << "errno is left alone";

  double parsed = 0;
  CString formatted;
  char inScope[16], outside[16];
  {
    tovik_test::CommaDecimalLocale const comma(LC_NUMERIC);
    if (!comma.active) GTEST_SKIP() << "no locale with a decimal comma";
    parsed = num::StrToD("2.5", nullptr);
    formatted.Format("%.1f", 2.5);
    {
      num::CLocaleScope const c;
      std::snprintf(inScope, sizeof inScope, "%.1f", 2.5);
    }
    std::snprintf(outside, sizeof outside, "%.1f", 2.5);
  }
  EXPECT_EQ(parsed, 2.5);
  EXPECT_STREQ(formatted, "2.5");
  EXPECT_STREQ(inScope, "2.5");
  EXPECT_STREQ(outside, "2,5") << "the scope restores the thread's locale";
}

}  // namespace
