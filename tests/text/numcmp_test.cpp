#include <gtest/gtest.h>

#include <initializer_list>

#include "code_page_guard.h"
#include "sys_string.h"

namespace {

using tovik::mb::CodePage;
using tovik_test::CodePageGuard;

int Sign(int v) { return v < 0 ? -1 : (v > 0 ? 1 : 0); }

struct NumCmpCase { char const *name, *a, *b; int sign; };

void CheckTable(std::initializer_list<NumCmpCase> cases) {
  for (NumCmpCase const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Sign(_tcsnumcmp(c.a, c.b)), c.sign);
    EXPECT_EQ(Sign(SYS_String(c.b).CompareAlNum(c.a)), -c.sign) << "reversed";
  }
}

TEST(NumCmpTest, NumbersByValueAndDollarLast) {
  CheckTable({
      {"empty before text", "", "a", -1},
      {"prefix first", "ab", "abc", -1},
      {"numbers by value", "R2", "R10", -1},
      {"leading zeros do not count", "R007", "R7", 0},
      {"equal numbers, text decides", "R7a", "R7b", -1},
      {"the walk goes on behind equal numbers", "U1.2.10", "U1.2.9", 1},
      {"dollar after letters", "a$", "ab", 1},
      {"dollar after end", "a$", "a", 1},
      {"numbers beyond 32 bits count as the bound", "x99999999999", "x99999999998", 0},
      {"high bytes above ASCII", "a\xE9", "az", 1},
      {"null counts as empty", nullptr, "", 0},
  });
  CodePageGuard const page(CodePage::DoubleByte);
  // '$', '1' and '5' as trail bytes are neither a dollar nor digits.
  CheckTable({
      {"trail byte 0x24 is no dollar", "a\x81\x24", "a$", -1},
      {"trail byte 0x31 is no digit", "x\x81\x31", "x9", 1},
      {"numbers behind a two-byte character", "\x81\x40R2", "\x81\x40R10", -1},
      {"two-byte characters above one-byte ones", "\x81\x40", "\xA1", 1},
  });
}

}  // namespace
