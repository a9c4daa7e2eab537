#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "code_page_guard.h"
#include "sys_exception.h"
#include "sys_scan.h"

namespace {

constexpr int kNone = -1;  // the scanner gives null

int Stop(char const *text, char const *end) { return end != nullptr ? static_cast<int>(end - text) : kNone; }

TEST(ScanTest, Scanners) {
  // kind: 1 to 3 and 7 for getinteger, 10 + plain for getdouble.
  struct { char const *name, *text; int kind; int stop; } const cases[] = {
      {"signs anywhere", "1-2", 1, 3},
      {"no white space skipped", " 5", 1, kNone},
      {"hex takes letters", "12ab", 3, 4},
      {"octal stops at 8", "789", 2, 1},
      {"high byte ends the walk", "7\xE9", 1, 1},
      {"no leading digit", ".5", 10, 2},
      {"exponent without digit", "1E", 10, kNone},
      {"plain stops at E", "1E5", 11, 1},
      {"second dot", "1.2.3", 10, 3},
      {"signs anywhere in a double", "-1.5e-3+", 10, 8},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    char const *const end = c.kind < 10 ? getinteger(c.text, c.kind) : getdouble(c.text, c.kind - 10);
    EXPECT_EQ(Stop(c.text, end), c.stop);
    int const whole = c.kind < 10 ? isinteger(c.text, c.kind) : isdouble(c.text, c.kind - 10);
    EXPECT_EQ(whole, c.stop == static_cast<int>(std::strlen(c.text)) ? 1 : 0);
  }
  EXPECT_EQ(getdouble(nullptr, 0), nullptr);
  auto piece = [](char const *text, int index, char separator) {
    SYS_String out("old");
    int const found = SysExtractSubString(out, text, index, separator);
    return std::to_string(found) + ":" + static_cast<char const *>(out);
  };
  EXPECT_EQ(piece("a,b,c", 1, ','), "1:b");
  EXPECT_EQ(piece("a,b,", 2, ','), "1:") << "an empty last piece";
  EXPECT_EQ(piece("a,b", 0, '\0'), "1:a,b") << "a NUL separator makes one piece";
  EXPECT_EQ(piece("a,b", 1, '\0'), "0:");
  tovik_test::CodePageGuard const page(tovik::mb::CodePage::DoubleByte);
  EXPECT_EQ(Stop("5\x82\x35", getinteger("5\x82\x35", 1)), 1) << "a trail byte is no digit";
}

TEST(ScanTest, SimpleScanf) {
  // value: what was stored; thrown: or the text of the exception.
  struct { char const *name, *text, *format; double value; char const *thrown; } const cases[] = {
      {"blanks around", " \t12 ", "%ld", 12, nullptr},
      {"minus zero", "-0", "%d", 0, "Invalid integer"},
      {"tail", "12x", "%d", 0, "Invalid integer"},
      {"floating tail", "2.5.", "%f", 0, "Invalid floating point format."},
      {"short too big", "70000", "%sd", 0, "Value out of range."},
      {"short NaN", "nan", "%sf", 0, "Value out of range."},
      {"unsigned minus", "-1", "%u", 0, "Value should be unsigned integer."},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    union {
      double d;
      std::int32_t l;
      short s;
    } stored{-1};
    try {
      EXPECT_EQ(SimpleScanf(c.text, c.format, &stored), 1);
      EXPECT_EQ(c.format[1] == 's' ? stored.s : c.format[1] == 'f' ? stored.d : stored.l, c.value);
      EXPECT_EQ(c.thrown, nullptr);
    } catch (SYS_Exception const &e) {
      EXPECT_STREQ(e.GetText(), c.thrown != nullptr ? c.thrown : "(no throw)");
    }
  }
  std::int32_t l = 5;
  EXPECT_EQ(SimpleScanf("3", "%u", &l) + SimpleScanf("3", "%", &l) + SimpleScanf("3", "", &l) + l, 5);
}

}  // namespace
