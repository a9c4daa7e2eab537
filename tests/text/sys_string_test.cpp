#include <gtest/gtest.h>

#include <climits>
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
std::string Pos(int position) { return std::to_string(position); }

// An edit made on a string of its own and on a copy: the copy ends the same,
// and neither the original it shared with nor the shared empty string (edited
// as well) shows the edit.
std::string Edited(char const *before, std::function<void(SYS_String &)> const &edit) {
  SYS_String const original(before);
  SYS_String alone(before), shared(original), empty;
  edit(alone);
  edit(shared);
  edit(empty);
  EXPECT_EQ(Bytes(shared), Bytes(alone));
  EXPECT_EQ(Bytes(original), before);
  EXPECT_EQ(Bytes(AfxGetEmptyString()), "");
  return Bytes(alone);
}

// TrimRight, TrimLeft and AllTrim of text by c, joined by '|'.
std::string Trims(char const *text, char const *c) {
  return Edited(text, [c](SYS_String &s) { s.TrimRight(c); }) + "|" +
         Edited(text, [c](SYS_String &s) { s.TrimLeft(c); }) + "|" +
         Edited(text, [c](SYS_String &s) { s.AllTrim(c); });
}

// What quoted extraction writes, and the remainder, joined by '|'.
std::string Quoted(char const *text) {
  CString out("junk");
  SYS_String const rest = SYS_String(text) >> out;
  return Bytes(out) + "|" + Bytes(rest);
}

// A named call and the text (or position) it must give.
struct Row { char const *name; std::function<std::string()> actual; std::string expected; };

void CheckRows(std::initializer_list<Row> rows) {
  for (Row const &row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.actual(), row.expected);
  }
}

SYS_String const kAbc("abcabc");

TEST(SysStringTest, SubstringsSearchesAndEdits) {
  CheckRows({
      {"Mid negative first counts as 0", [] { return Bytes(kAbc.Mid(-3, 2)); }, "ab"},
      {"Mid count passing the end", [] { return Bytes(kAbc.Mid(4, INT_MAX)); }, "bc"},
      {"Mid(INT_MIN) is the whole", [] { return Bytes(kAbc.Mid(INT_MIN)); }, "abcabc"},
      {"Find char from start", [] { return Pos(kAbc.Find('c', 3)); }, "5"},
      {"Find NUL at the length", [] { return Pos(kAbc.Find('\0', 6)); }, "6"},
      {"Find high byte", [] { return Pos(SYS_String("a\xE9").Find('\xE9')); }, "1"},
      {"Find text at the length", [] { return Pos(kAbc.Find("", 6)); }, "-1"},
      {"FindOneOf from start", [] { return Pos(kAbc.FindOneOf("ba", 2)); }, "3"},
      {"ReverseFind sees start itself", [] { return Pos(kAbc.ReverseFind('c', 2)); }, "2"},
      {"ReverseFind NUL from -2", [] { return Pos(kAbc.ReverseFind('\0')); }, "6"},
      {"ReverseFindOneOf only at 0", [] { return Pos(SYS_String("xyz").ReverseFindOneOf("x")); }, "0"},
      {"Insert beyond pads with blanks", [] { return Edited("ab", [](SYS_String &t) { t.Insert(5, "X"); }); },
       "ab   X"},
      {"Insert own text beyond", [] { return Edited("abc", [](SYS_String &t) { t.Insert(4, t); }); }, "abc abc"},
      {"Delete count 0 to the end", [] { return Edited("abc", [](SYS_String &t) { t.Delete(1, 0); }); }, "a"},
      {"Replace count 0: the rest", [] { return Edited("abcd", [](SYS_String &t) { t.Replace(2, 0, "X"); }); },
       "abX"},
      {"Replace by own text, read first",
       [] { return Edited("abcdef", [](SYS_String &t) { t.Replace(0, 3, Data(t) + !t.IsEmpty()); }); },
       "bcdefdef"},
      {"trim white space", [] { return Trims(" \t a b \r\n", nullptr); }, " \t a b|a b \r\n|a b"},
      {"trim: only the first character counts", [] { return Trims("xabab", "ab"); }, "xabab|xabab|xabab"},
      {"trim a named character", [] { return Trims("bbxbab", "b"); }, "bbxba|xbab|xba"},
      {"a high byte is no white space", [] { return Trims("\xA0 a\xA0", ""); }, "\xA0 a\xA0|\xA0 a\xA0|\xA0 a\xA0"},
      {"quoted then more", [] { return Quoted("\"ab\" cd"); }, "ab|\" cd"},
      {"no quotes", [] { return Quoted("plain text"); }, "plain text|"},
      {"doubled quote stays doubled", [] { return Quoted("\"a\"\"b\" c"); }, "a\"\"b|\" c"},
  });
  CString const base("abc");
  SYS_String copy(base);
  copy.TrimRight("x");
  EXPECT_EQ(Data(copy), Data(base)) << "a trim that changes nothing keeps sharing";
}

TEST(SysStringTest, CharactersOfTheDoubleBytePage) {
  CodePageGuard const page(CodePage::DoubleByte);
  // Two-byte characters with trail bytes 'a', '@' and 'b':
  //                    0   1   2  3   4   5  6   7
  SYS_String const d("\x81\x61" "a\xE0\x40" "b\x9F\x62");
  CheckRows({
      {"Find skips the trail byte 'a'", [&] { return Pos(d.Find('a')); }, "2"},
      {"a text never starts on a trail byte", [&] { return Pos(d.Find("\x40" "b")); }, "-1"},
      {"FindOneOf skips the trail byte '@'", [&] { return Pos(d.FindOneOf("b@")); }, "5"},
      {"ReverseFind skips the trail byte 'b'", [&] { return Pos(d.ReverseFind('b')); }, "5"},
      {"start 3 cuts the character to its lead byte", [&] { return Pos(d.ReverseFindOneOf("\xE0\x40", 3)); }, "-1"},
      // "\x81\x20" is a character whose trail byte is a blank: no white space.
      {"trail byte blank", [] { return Trims("\x81\x20 ", ""); }, "\x81\x20|\x81\x20 |\x81\x20"},
      {"two-byte trim character", [] { return Trims("\x81\x40\x81\x40x\x81\x40", "\x81\x40"); },
       "\x81\x40\x81\x40x|x\x81\x40|x"},
      {"trail byte equal to the trim character", [] { return Trims("b\x81\x62" "b", "b"); },
       "b\x81\x62|\x81\x62" "b|\x81\x62"},
  });
}

TEST(SysStringTest, AppendingExtractingAndValues) {
  SYS_String t;
  t << "R" << 10 << '-' << -5 << ' ' << 7u << static_cast<char const *>(nullptr) << CString("c") << ' ' << INT_MIN;
  EXPECT_EQ(Bytes(t), "R10--5 7c -2147483648");
  t = "";
  t << UINT_MAX << ' ' << LONG_MIN << ' ' << ULONG_MAX << ' ' << 1.5 << ' ' << -0.25f;
  EXPECT_EQ(Bytes(t), "4294967295 -9223372036854775808 18446744073709551615 1.500000 -0.250000");

  unsigned int n = 99, m = 0;
  char set[] = " ,";
  EXPECT_EQ(Bytes(((SYS_String(" , 12, 34x") >> set) >> n >> set) >> m), "x");
  EXPECT_EQ(n * 100 + m, 1234u);
  SYS_String const minus("-1 r");
  EXPECT_EQ(Bytes(minus >> n), " r");
  EXPECT_EQ(Bytes(minus) + std::to_string(n), "-1 r4294967295") << "the string itself is left alone";
  SYS_String self("\"in\" out");
  EXPECT_EQ(Bytes(self >> self), "\" out");
  EXPECT_EQ(Bytes(self), "in") << "the target may be the string itself";

  char const *end = nullptr;
  int i = 0;
  SYS_String const text(" -123x");
  EXPECT_EQ(text.Value(&i, &end), -123);
  EXPECT_EQ(end, Data(text) + 5) << "end points into the string's own array";
  EXPECT_EQ(minus.Value(static_cast<double *>(nullptr), &end), -1.0) << "a null out is allowed";
  EXPECT_EQ(self.Value(&n, &end), 0u);
  EXPECT_EQ(end, Data(self)) << "no number: end at the start";
}

}  // namespace
