#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <functional>
#include <initializer_list>
#include <string>

#include "code_page_guard.h"
#include "sys_string.h"

namespace {

using tovik::mb::CodePage;
using tovik_test::CodePageGuard;

// The bytes of a string, inner NULs included, for exact comparisons.
std::string Bytes(CString const &s) { return std::string(static_cast<char const *>(s), s.GetLength()); }
char const *Data(CString const &s) { return s; }

TEST(SysStringTest, ConstructionSharesOrConverts) {
  unsigned char const raw[] = {'u', 0xE9, 0};
  unsigned short const wide[] = {'w', 0x20AC, 0};
  EXPECT_EQ(Bytes(SYS_String(raw)), "u\xE9");
  EXPECT_EQ(Bytes(SYS_String(wide)), "w?");
  SYS_String s;
  EXPECT_EQ(Bytes(s = raw), "u\xE9");
  CString const base("base");
  EXPECT_EQ(Data(s = base), Data(base)) << "a CString and a SYS_String share the array";
  SYS_StrNoCase const key(s);
  EXPECT_EQ(Data(key), Data(base));
}

// Each row names a call on "abcdef" (or on the string it builds) and the
// text or position it must give.
struct Row {
  char const *name;
  std::function<std::string()> actual;
  std::string expected;
};

void CheckRows(std::initializer_list<Row> rows) {
  for (Row const &row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.actual(), row.expected);
  }
}

SYS_String const kSix("abcdef");
std::string Pos(int position) { return std::to_string(position); }

TEST(SysStringTest, SubstringsClampTheirArguments) {
  CheckRows({
      {"Mid", [] { return Bytes(kSix.Mid(1, 3)); }, "bcd"},
      {"Mid negative first counts as 0", [] { return Bytes(kSix.Mid(-3, 2)); }, "ab"},
      {"Mid negative count", [] { return Bytes(kSix.Mid(2, -1)); }, ""},
      {"Mid count passing the end", [] { return Bytes(kSix.Mid(4, INT_MAX)); }, "ef"},
      {"Mid(first) beyond the end", [] { return Bytes(kSix.Mid(7)); }, ""},
      {"Mid(INT_MIN) is the whole", [] { return Bytes(kSix.Mid(INT_MIN)); }, "abcdef"},
      {"Left negative", [] { return Bytes(kSix.Left(-1)); }, ""},
      {"Left beyond", [] { return Bytes(kSix.Left(10)); }, "abcdef"},
      {"Right", [] { return Bytes(kSix.Right(2)); }, "ef"},
      {"Right beyond", [] { return Bytes(kSix.Right(10)); }, "abcdef"},
      {"SpanIncluding", [] { return Bytes(kSix.SpanIncluding("bac")); }, "abc"},
      {"SpanExcluding", [] { return Bytes(kSix.SpanExcluding("dx")); }, "abc"},
      {"SpanExcluding null set", [] { return Bytes(kSix.SpanExcluding(nullptr)); }, "abcdef"},
  });
  EXPECT_EQ(Data(kSix.Mid(0)), Data(kSix)) << "a whole-string result shares the array";
}

TEST(SysStringTest, SearchesAndTheirBounds) {
  SYS_String const s("abcabc");
  CheckRows({
      {"Find char from start", [&] { return Pos(s.Find('c', 3)); }, "5"},
      {"Find char negative start", [&] { return Pos(s.Find('a', -1)); }, "-1"},
      {"Find char start beyond", [&] { return Pos(s.Find('a', 7)); }, "-1"},
      {"Find NUL at the length", [&] { return Pos(s.Find('\0', 6)); }, "6"},
      {"Find high byte", [] { return Pos(SYS_String("a\xE9").Find('\xE9')); }, "1"},
      {"Find text from start", [&] { return Pos(s.Find("bc", 2)); }, "4"},
      {"Find empty text", [&] { return Pos(s.Find("")); }, "0"},
      {"Find text at the length", [&] { return Pos(s.Find("", 6)); }, "-1"},
      {"Find on an empty string", [] { return Pos(SYS_String().Find("")); }, "-1"},
      {"Find null text", [&] { return Pos(s.Find(static_cast<char const *>(nullptr))); }, "-1"},
      {"FindOneOf from start", [&] { return Pos(s.FindOneOf("ba", 2)); }, "3"},
      {"FindOneOf beyond", [&] { return Pos(s.FindOneOf("a", 7)); }, "-1"},
      {"ReverseFind from the end", [&] { return Pos(s.ReverseFind('a')); }, "3"},
      {"ReverseFind sees start itself", [&] { return Pos(s.ReverseFind('c', 2)); }, "2"},
      {"ReverseFind start at the length", [&] { return Pos(s.ReverseFind('a', 6)); }, "-1"},
      {"ReverseFind on empty", [] { return Pos(SYS_String().ReverseFind('a')); }, "-1"},
      {"ReverseFind NUL from -2", [&] { return Pos(s.ReverseFind('\0')); }, "6"},
      {"ReverseFind NUL at the length", [&] { return Pos(s.ReverseFind('\0', 6)); }, "6"},
      {"ReverseFind NUL elsewhere", [&] { return Pos(s.ReverseFind('\0', 3)); }, "-1"},
      {"ReverseFind NUL on empty", [] { return Pos(SYS_String().ReverseFind('\0')); }, "0"},
      {"ReverseFindOneOf", [&] { return Pos(s.ReverseFindOneOf("ab", 3)); }, "3"},
      {"ReverseFindOneOf only at 0", [] { return Pos(SYS_String("xyz").ReverseFindOneOf("x")); }, "0"},
      {"ReverseFindOneOf start beyond", [&] { return Pos(s.ReverseFindOneOf("a", 6)); }, "-1"},
      {"search ends at an inner NUL", [] { return Pos(SYS_String("ab\0ab", 5).Find('b', 2)); }, "-1"},
  });
}

TEST(SysStringTest, SearchesWalkCharactersInTheDoubleBytePage) {
  CodePageGuard const page(CodePage::DoubleByte);
  // Two-byte characters with trail bytes 'a', '@' and 'b':
  //                     0   1   2  3   4   5  6   7
  SYS_String const s("\x81\x61" "a\xE0\x40" "b\x9F\x62");
  EXPECT_EQ(s.Find('a'), 2) << "the trail byte at 1 is no 'a'";
  EXPECT_EQ(s.Find('@'), -1);
  EXPECT_EQ(s.Find("\x40" "b"), -1) << "a text never starts on a trail byte";
  EXPECT_EQ(s.Find("\xE0\x40"), 3);
  EXPECT_EQ(s.FindOneOf("b@"), 5);
  EXPECT_EQ(s.ReverseFind('b'), 5) << "the trail byte at 7 is no 'b'";
  EXPECT_EQ(s.ReverseFindOneOf("\xE0\x40"), 3);
  EXPECT_EQ(s.ReverseFindOneOf("\xE0\x40", 3), -1) << "start 3 cuts the character to its lead byte";
  EXPECT_EQ(SYS_String("a\x81\x61").ReverseFind('\x81', 1), 1) << "a cut lead byte counts alone";
  EXPECT_EQ(SYS_String("ab\x81").Find('\x81'), 2) << "a lone lead byte before the NUL";
  EXPECT_EQ(Bytes(s.SpanIncluding("\x81\x61" "a")), "\x81\x61" "a");
  EXPECT_EQ(Bytes(s.SpanExcluding("@")), Bytes(s));
}

// Each row edits a copy of `before`.
struct EditRow {
  char const *name;
  char const *before;
  std::function<void(SYS_String &)> edit;
  std::string after;
};

TEST(SysStringTest, InsertDeleteReplace) {
  EditRow const rows[] = {
      {"Insert in the middle", "abcd", [](SYS_String &s) { s.Insert(2, "XY"); }, "abXYcd"},
      {"Insert beyond pads with blanks", "ab", [](SYS_String &s) { s.Insert(5, "X"); }, "ab   X"},
      {"Insert null text", "ab", [](SYS_String &s) { s.Insert(5, nullptr); }, "ab"},
      {"Insert negative pos clamps", "ab", [](SYS_String &s) { s.Insert(-4, "X"); }, "Xab"},
      {"Delete middle", "abcdef", [](SYS_String &s) { s.Delete(1, 2); }, "adef"},
      {"Delete count 0 to the end", "abc", [](SYS_String &s) { s.Delete(1, 0); }, "a"},
      {"Delete at the length", "abc", [](SYS_String &s) { s.Delete(3, 1); }, "abc"},
      {"Delete negative pos clamps", "abc", [](SYS_String &s) { s.Delete(-2, 1); }, "bc"},
      {"Delete negative count does nothing", "abc", [](SYS_String &s) { s.Delete(1, -1); }, "abc"},
      {"Replace range", "abcdef", [](SYS_String &s) { s.Replace(1, 2, "XYZ"); }, "aXYZdef"},
      {"Replace count 0 replaces the rest", "abcdef", [](SYS_String &s) { s.Replace(2, 0, "X"); }, "abX"},
      {"Replace beyond the end pads", "ab", [](SYS_String &s) { s.Replace(4, 1, "X"); }, "ab  X"},
      {"Replace by own text, read first", "abcdef", [](SYS_String &s) { s.Replace(0, 3, Data(s) + 1); }, "bcdefdef"},
      {"Insert own text", "abc", [](SYS_String &s) { s.Insert(1, s); }, "aabcbc"},
      {"Insert own text beyond", "abc", [](SYS_String &s) { s.Insert(4, s); }, "abc abc"},
  };
  for (EditRow const &row : rows) {
    SCOPED_TRACE(row.name);
    SYS_String s(row.before);
    row.edit(s);
    EXPECT_EQ(Bytes(s), row.after);
  }
}

struct TrimRow {
  char const *name;
  char const *before;
  char const *c;
  char const *right;
  char const *left;
  char const *all;
};

void CheckTrims(std::initializer_list<TrimRow> rows) {
  for (TrimRow const &row : rows) {
    SCOPED_TRACE(row.name);
    SYS_String right(row.before), left(row.before), all(row.before);
    EXPECT_EQ(Bytes(right.TrimRight(row.c)), row.right);
    EXPECT_EQ(Bytes(left.TrimLeft(row.c)), row.left);
    EXPECT_EQ(Bytes(all.AllTrim(row.c)), row.all);
  }
}

TEST(SysStringTest, TrimByOneCharacter) {
  CheckTrims({
      {"white space", " \t a b \r\n", "", " \t a b", "a b \r\n", "a b"},
      {"null means white space", " a ", nullptr, " a", "a ", "a"},
      {"blanks alone", "   ", "", "", "", ""},
      {"only the first character counts", "xabab", "ab", "xabab", "xabab", "xabab"},
      {"named character", "bbxbab", "b", "bbxba", "xbab", "xba"},
      {"a high byte is no white space", "\xA0 a \xA0", "", "\xA0 a \xA0", "\xA0 a \xA0", "\xA0 a \xA0"},
      {"named high byte", "\xA0" "a\xA0", "\xA0", "\xA0" "a", "a\xA0", "a"},
  });
  // The walks end at the first NUL; what lies behind it stays unless cut.
  SYS_String const inner(" a \0 b ", 7);
  EXPECT_EQ(Bytes(SYS_String(inner).TrimRight()), " a");
  EXPECT_EQ(Bytes(SYS_String(inner).TrimLeft()), std::string("a \0 b ", 6));
}

TEST(SysStringTest, TrimsInTheDoubleBytePage) {
  CodePageGuard const page(CodePage::DoubleByte);
  CheckTrims({
      // "\x81\x20" is a character whose trail byte is a blank: no white space.
      {"trail byte blank", "\x81\x20 ", "", "\x81\x20", "\x81\x20 ", "\x81\x20"},
      {"two-byte trim character", "\x81\x40\x81\x40x\x81\x40", "\x81\x40", "\x81\x40\x81\x40x", "x\x81\x40", "x"},
      // 'b' as the trail byte of "\x81\x62" is not the character 'b'.
      {"trail byte equal to the trim character", "b\x81\x62" "b", "b", "b\x81\x62", "\x81\x62" "b", "\x81\x62"},
      {"lone lead byte at the end", "a\x81", "\x81", "a", "a\x81", "a"},
  });
}

// A write to one copy never shows in another, and the shared empty string is
// never written: each writing operation runs on a copy of a shared string
// and on an empty one.
TEST(SysStringTest, WritesNeverShowInOtherCopies) {
  std::function<void(SYS_String &)> const writes[] = {
      [](SYS_String &s) { s.Insert(1, "X"); },
      [](SYS_String &s) { s.Delete(1, 1); },
      [](SYS_String &s) { s.Replace(1, 1, "X"); },
      [](SYS_String &s) { s.Replace("b", "X"); },
      [](SYS_String &s) { s.Replace('b', 'X'); },
      [](SYS_String &s) { s.TrimRight(" "); },
      [](SYS_String &s) { s.TrimLeft(); },
      [](SYS_String &s) { s.AllTrim(); },
      [](SYS_String &s) { s << "X" << 1 << 2u << 3.0 << 'c'; },
      [](SYS_String &s) { s.Format("%s!", "x"); },
      [](SYS_String &s) { s.GetBuffer(10)[0] = 'X'; s.ReleaseBuffer(); },
  };
  for (auto const &write : writes) {
    SYS_String const original(" abc ");
    SYS_String copy(original);
    write(copy);
    EXPECT_EQ(Bytes(original), " abc ");
    SYS_String empty;
    write(empty);
    EXPECT_EQ(Bytes(AfxGetEmptyString()), "");
  }
  SYS_String const original("abc");
  SYS_String copy(original);
  copy.TrimRight("x");
  EXPECT_EQ(Data(copy), Data(original)) << "a trim that changes nothing keeps sharing";
}

TEST(SysStringTest, AppendingOperators) {
  SYS_String s;
  s << "R" << 10 << '-' << -5 << ' ' << 7u << static_cast<char const *>(nullptr) << CString("c") << true;
  EXPECT_EQ(Bytes(s), "R10--5 7c1");
  s = "";
  s << INT_MIN << ' ' << UINT_MAX << ' ' << LONG_MIN << ' ' << ULONG_MAX;
  EXPECT_EQ(Bytes(s), "-2147483648 4294967295 -9223372036854775808 18446744073709551615");
  s = "";
  s << 1.5 << ' ' << -0.25f << ' ' << 1e10;
  std::string const doubles = "1.500000 -0.250000 10000000000.000000";
  EXPECT_EQ(Bytes(s), doubles);
  s << s;
  EXPECT_EQ(Bytes(s), doubles + doubles);
}

TEST(SysStringTest, NumberTextIgnoresTheLocale) {
  char const *previous = std::setlocale(LC_NUMERIC, nullptr);
  std::string const saved = previous != nullptr ? previous : "C";
  if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") == nullptr) GTEST_SKIP() << "no locale with a decimal comma";
  SYS_String s;
  s << 2.5;
  double parsed = 0;
  SYS_String("3.25").Value(&parsed, nullptr);
  std::setlocale(LC_NUMERIC, saved.c_str());
  EXPECT_EQ(Bytes(s), "2.500000");
  EXPECT_EQ(parsed, 3.25);
}

TEST(SysStringTest, ExtractionLeavesTheStringAndReturnsTheRest) {
  SYS_String const s("  42abc");
  unsigned int n = 99;
  EXPECT_EQ(Bytes(s >> n), "abc");
  EXPECT_EQ(n, 42u);
  EXPECT_EQ(Bytes(s), "  42abc");
  EXPECT_EQ(Bytes(SYS_String("xyz") >> n), "xyz");
  EXPECT_EQ(n, 0u);
  EXPECT_EQ(Bytes(SYS_String("-1 r") >> n), " r");
  EXPECT_EQ(n, 4294967295u);

  char set[] = " ,";
  EXPECT_EQ(Bytes(SYS_String(" , a, b") >> set), "a, b");
  EXPECT_STREQ(set, " ,") << "nothing is written through the set";
  unsigned int a = 0, b = 0;
  ((SYS_String("12 34") >> a) >> " ") >> b;
  EXPECT_EQ(a * 100 + b, 1234u);

  CodePageGuard const page(CodePage::DoubleByte);
  EXPECT_EQ(Bytes(SYS_String("\x81\x40x") >> "\x81"), "\x40x") << "the set is byte-wise: a character is split";
}

TEST(SysStringTest, QuotedExtraction) {
  struct {
    char const *name;
    char const *text;
    char const *out;
    char const *rest;
  } const rows[] = {
      {"quoted then more", "\"ab\" cd", "ab", "\" cd"},
      {"no quotes", "plain text", "plain text", ""},
      {"doubled quote stays doubled", "\"a\"\"b\" c", "a\"\"b", "\" c"},
      {"doubled quote at the start", "\"\"ab\"", "\"\"ab", "\""},
      {"quote inside unquoted text", "ab\"cd", "ab", "\"cd"},
      {"opening quote alone", "\"", "", ""},
      {"no closing quote", "\"abc", "abc", ""},
      {"three quotes", "\"\"\"x", "\"\"", "\"x"},
  };
  for (auto const &row : rows) {
    SCOPED_TRACE(row.name);
    CString out("junk");
    SYS_String const rest = SYS_String(row.text) >> out;
    EXPECT_EQ(Bytes(out), row.out);
    EXPECT_EQ(Bytes(rest), row.rest);
  }
  SYS_String self("\"in\" out");
  EXPECT_EQ(Bytes(self >> self), "\" out");
  EXPECT_EQ(Bytes(self), "in") << "the target may be the string itself";
}

TEST(SysStringTest, ValueConversions) {
  SYS_String const text(" -123x");
  char const *end = nullptr;
  int i = 0;
  EXPECT_EQ(text.Value(&i, &end), -123);
  EXPECT_EQ(i, -123);
  EXPECT_EQ(end, Data(text) + 5) << "end points into the string's own array";
  short sh = 0;
  EXPECT_EQ(SYS_String("70000").Value(&sh), static_cast<short>(70000 - 65536));
  EXPECT_EQ(SYS_String("99999999999").Value(&sh), -1) << "low 16 bits of INT32_MAX";
  EXPECT_EQ(SYS_String("-2147483649").Value(&i), INT_MIN);
  unsigned int u = 0;
  EXPECT_EQ(SYS_String("4294967296").Value(&u), 4294967295u);
  float f = 0;
  EXPECT_TRUE(std::isinf(SYS_String("1e300").Value(&f)));
  double d = 0;
  SYS_String const none("abc");
  EXPECT_EQ(none.Value(&d, &end), 0.0);
  EXPECT_EQ(end, Data(none)) << "no number: end at the start";
  EXPECT_EQ(SYS_String("2").Value(static_cast<double *>(nullptr)), 2.0) << "a null out is allowed";
}

}  // namespace
