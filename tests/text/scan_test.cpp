#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "code_page_guard.h"
#include "sys_exception.h"
#include "sys_scan.h"

namespace {

constexpr int kNone = -1;  // the scanner gives null

int Stop(char const *text, char const *end) { return end != nullptr ? static_cast<int>(end - text) : kNone; }

TEST(ScanTest, IntegerScanner) {
  struct {
    char const *name, *text;
    int kind, stop;
  } const cases[] = {
      {"empty", "", 1, kNone},
      {"sign alone", "+", 1, kNone},
      {"signs anywhere", "1-2", 1, 3},
      {"doubled sign", "--5", 1, 3},
      {"no white space skipped", " 5", 1, kNone},
      {"decimal stops at a letter", "12ab", 1, 2},
      {"hex takes letters", "12ab", 3, 4},
      {"hex has no prefix", "0x1F", 3, 1},
      {"octal stops at 8", "789", 2, 1},
      {"unknown kind reads decimal", "12ab", 7, 2},
      {"high byte ends the walk", "7\xE9", 1, 1},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Stop(c.text, getinteger(c.text, c.kind)), c.stop);
    EXPECT_EQ(isinteger(c.text, c.kind), c.stop == static_cast<int>(std::string(c.text).size()) ? 1 : 0);
  }
  EXPECT_EQ(getinteger(nullptr, 1), nullptr);
  EXPECT_EQ(ishexinteger("fF0"), 1);
  EXPECT_EQ(isoctinteger("8"), 0);
  tovik_test::CodePageGuard const page(tovik::mb::CodePage::DoubleByte);
  EXPECT_EQ(Stop("5\x82\x35", getinteger("5\x82\x35", 1)), 1) << "a trail byte is no digit";
}

TEST(ScanTest, FloatingScanner) {
  struct {
    char const *name, *text;
    int plain, stop;
  } const cases[] = {
      {"plain number", "1.5", 0, 3},
      {"no leading digit", ".5", 0, 2},
      {"no trailing digit", "5.", 0, 2},
      {"dot alone", ".", 0, kNone},
      {"exponent without mantissa", "E5", 0, kNone},
      {"exponent without digit", "1E", 0, kNone},
      {"exponent", "1E5", 0, 3},
      {"plain stops at E", "1E5", 1, 1},
      {"plain E without mantissa", "E5", 1, kNone},
      {"second dot", "1.2.3", 0, 3},
      {"dot in the exponent", "1e5.2", 0, 3},
      {"second E", "1e5e2", 0, 3},
      {"signs anywhere", "-1.5e-3+", 0, 8},
      {"empty", "", 0, kNone},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Stop(c.text, getdouble(c.text, c.plain)), c.stop);
  }
  EXPECT_EQ(isdecdouble("1E5"), 0);
  EXPECT_EQ(isdouble("1E5", 0), 1);
  EXPECT_EQ(isdouble(nullptr, 0), 0);
}

TEST(ScanTest, ExtractSubString) {
  struct {
    char const *name, *text;
    int index;
    char separator;
    int result;
    char const *piece;
  } const cases[] = {
      {"middle piece", "a,b,c", 1, ',', 1, "b"},
      {"last piece", "a,b,c", 2, ',', 1, "c"},
      {"past the end", "a,b,c", 3, ',', 0, ""},
      {"empty last piece", "a,b,", 2, ',', 1, ""},
      {"negative index", "a,b", -1, ',', 0, ""},
      {"NUL separator: one piece", "a,b", 0, '\0', 1, "a,b"},
      {"NUL separator: no second", "a,b", 1, '\0', 0, ""},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_String out("old");
    EXPECT_EQ(SysExtractSubString(out, c.text, c.index, c.separator), c.result);
    EXPECT_STREQ(out, c.piece);
  }
  SYS_String out("kept");
  EXPECT_EQ(SysExtractSubString(out, nullptr, 0, ','), 0);
  EXPECT_STREQ(out, "kept");
}

TEST(ScanTest, SimpleScanf) {
  struct {
    char const *name, *text, *format;
    double value;         // what was stored
    char const *thrown;   // or the text of the exception
  } const cases[] = {
      {"blanks around", " \t12 ", "%d", 12, nullptr},
      {"long mark", "-7", "%ld", -7, nullptr},
      {"zero", "0", "%d", 0, nullptr},
      {"only blanks", "  ", "%d", 0, nullptr},
      {"minus zero", "-0", "%d", 0, "Invalid integer"},
      {"letters", "x", "%d", 0, "Invalid integer"},
      {"tail", "12x", "%d", 0, "Invalid integer"},
      {"saturates", "99999999999", "%d", 2147483647, nullptr},
      {"floating", " 2.5 ", "%f", 2.5, nullptr},
      {"floating tail", "2.5.", "%f", 0, "Invalid floating point format."},
      {"floating blank", "", "%f", 0, nullptr},
      {"short", "-32768", "%sd", -32768, nullptr},
      {"short too big", "70000", "%sd", 0, "Value out of range."},
      {"short NaN", "nan", "%sf", 0, "Value out of range."},
      {"unsigned minus", "-1", "%u", 0, "Value should be unsigned integer."},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    double d = -1;
    std::int32_t l = -1;
    short s = -1;
    char const letter = c.format[std::string(c.format).size() - 1];
    void *const destination = c.format[1] == 's' ? static_cast<void *>(&s)
                                                 : letter == 'f' ? static_cast<void *>(&d) : static_cast<void *>(&l);
    try {
      EXPECT_EQ(SimpleScanf(c.text, c.format, destination), 1);
      EXPECT_EQ(c.format[1] == 's' ? s : letter == 'f' ? d : l, c.value);
      EXPECT_EQ(c.thrown, nullptr);
    } catch (SYS_Exception const &e) {
      EXPECT_STREQ(e.GetText(), c.thrown != nullptr ? c.thrown : "(no throw)");
    }
  }
  std::int32_t l = 5;
  EXPECT_EQ(SimpleScanf("3", "%u", &l), 0);
  EXPECT_EQ(SimpleScanf("3", "%", &l), 0);
  EXPECT_EQ(SimpleScanf("3", "", &l), 0);
  EXPECT_EQ(l, 5);
  EXPECT_STREQ(FormattedString("%d-%s", 4, "x"), "4-x");
}

}  // namespace
