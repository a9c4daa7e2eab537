#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <cstring>
#include <functional>
#include <string>

#include "code_page_guard.h"
#include "sys_string.h"

namespace {

using tovik::mb::CodePage;
using tovik_test::CodePageGuard;

// The bytes of a string, embedded NULs included, for exact comparisons.
std::string Bytes(CString const &s) { return std::string(static_cast<char const *>(s), s.GetLength()); }

char const *Data(CString const &s) { return s; }

// ------------------------------------------------------------- construction

TEST(SysStringTest, ConstructionAndAssignmentForms) {
  EXPECT_EQ(Bytes(SYS_String('x', 3)), "xxx");
  EXPECT_EQ(Bytes(SYS_String("abcdef", 4)), "abcd");
  unsigned char const raw[] = {'u', 0xE9, 0};
  EXPECT_EQ(Bytes(SYS_String(raw)), "u\xE9");
  unsigned short const wide[] = {'w', 0x20AC, 0};
  EXPECT_EQ(Bytes(SYS_String(wide)), "w?");

  SYS_String s;
  EXPECT_EQ(Bytes(s = "text"), "text");
  EXPECT_EQ(Bytes(s = raw), "u\xE9");
  EXPECT_EQ(Bytes(s = wide), "w?");
  CString const base("base");
  EXPECT_EQ(Bytes(s = base), "base");
  EXPECT_EQ(Data(s), Data(base)) << "assignment from CString shares the array";
  SYS_String const fromBase(base);
  EXPECT_EQ(Data(fromBase), Data(base));

  SYS_StrNoCase key("Key");
  SYS_StrNoCase const fromString(fromBase);
  EXPECT_EQ(Data(fromString), Data(base));
  key = "other";
  EXPECT_EQ(Bytes(key), "other");
}

// ----------------------------------------------------------------- substrings

struct SliceCase {
  char const *name;
  std::function<SYS_String(SYS_String const &)> slice;
  char const *expected;
};

TEST(SysStringTest, SubstringsClampTheirArguments) {
  SYS_String const s("abcdef");
  SliceCase const cases[] = {
      {"Mid(1, 3)", [](SYS_String const &x) { return x.Mid(1, 3); }, "bcd"},
      {"Mid negative first counts as 0", [](SYS_String const &x) { return x.Mid(-3, 2); }, "ab"},
      {"Mid negative count gives empty", [](SYS_String const &x) { return x.Mid(2, -1); }, ""},
      {"Mid count passing the end", [](SYS_String const &x) { return x.Mid(4, 100); }, "ef"},
      {"Mid first at the end", [](SYS_String const &x) { return x.Mid(6, 1); }, ""},
      {"Mid huge count", [](SYS_String const &x) { return x.Mid(1, INT_MAX); }, "bcdef"},
      {"Mid(first) to the end", [](SYS_String const &x) { return x.Mid(2); }, "cdef"},
      {"Mid(first) beyond the end", [](SYS_String const &x) { return x.Mid(7); }, ""},
      {"Mid(first) negative", [](SYS_String const &x) { return x.Mid(-3); }, "abcdef"},
      {"Mid(INT_MIN)", [](SYS_String const &x) { return x.Mid(INT_MIN); }, "abcdef"},
      {"Left", [](SYS_String const &x) { return x.Left(2); }, "ab"},
      {"Left negative", [](SYS_String const &x) { return x.Left(-1); }, ""},
      {"Left beyond", [](SYS_String const &x) { return x.Left(10); }, "abcdef"},
      {"Right", [](SYS_String const &x) { return x.Right(2); }, "ef"},
      {"Right negative", [](SYS_String const &x) { return x.Right(-5); }, ""},
      {"Right beyond", [](SYS_String const &x) { return x.Right(10); }, "abcdef"},
      {"SpanIncluding", [](SYS_String const &x) { return x.SpanIncluding("bac"); }, "abc"},
      {"SpanIncluding nothing", [](SYS_String const &x) { return x.SpanIncluding("x"); }, ""},
      {"SpanExcluding", [](SYS_String const &x) { return x.SpanExcluding("dx"); }, "abc"},
      {"SpanExcluding null set", [](SYS_String const &x) { return x.SpanExcluding(nullptr); }, "abcdef"},
  };
  for (SliceCase const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Bytes(c.slice(s)), c.expected);
  }
  EXPECT_EQ(Data(s.Mid(0)), Data(s)) << "a whole-string result shares the array";
  EXPECT_EQ(Data(s.Left(6)), Data(s));
}

TEST(SysStringTest, SpansWalkCharactersInTheDoubleBytePage) {
  CodePageGuard const page(CodePage::DoubleByte);
  // "\x81\x61" is one character whose trail byte is 'a'.
  SYS_String const s("a\x81\x61" "b");
  EXPECT_EQ(Bytes(s.SpanIncluding("a")), "a") << "the trail byte 'a' is not a character 'a'";
  EXPECT_EQ(Bytes(s.SpanIncluding("a\x81\x61")), "a\x81\x61");
  EXPECT_EQ(Bytes(s.SpanExcluding("b")), "a\x81\x61");
  EXPECT_EQ(Bytes(SYS_String("\x81\x61" "a").SpanExcluding("a")), "\x81\x61");
}

// ------------------------------------------------------------------- searches

struct FindCase {
  char const *name;
  std::function<int(SYS_String const &)> find;
  int expected;
};

TEST(SysStringTest, SearchesAndTheirBounds) {
  SYS_String const s("abcabc");  // length 6
  SYS_String const empty;
  FindCase const cases[] = {
      {"Find char", [](SYS_String const &x) { return x.Find('c'); }, 2},
      {"Find char from start", [](SYS_String const &x) { return x.Find('c', 3); }, 5},
      {"Find char absent", [](SYS_String const &x) { return x.Find('z'); }, -1},
      {"Find char negative start", [](SYS_String const &x) { return x.Find('a', -1); }, -1},
      {"Find char start beyond", [](SYS_String const &x) { return x.Find('a', 7); }, -1},
      {"Find NUL at the length", [](SYS_String const &x) { return x.Find('\0', 6); }, 6},
      {"Find NUL from 0", [](SYS_String const &x) { return x.Find('\0'); }, 6},
      {"Find high byte as unsigned", [](SYS_String const &) { return SYS_String("a\xE9").Find('\xE9'); }, 1},
      {"Find text", [](SYS_String const &x) { return x.Find("ca"); }, 2},
      {"Find text from start", [](SYS_String const &x) { return x.Find("bc", 2); }, 4},
      {"Find empty text", [](SYS_String const &x) { return x.Find(""); }, 0},
      {"Find text at the length", [](SYS_String const &x) { return x.Find("", 6); }, -1},
      {"Find text on empty string", [](SYS_String const &) { return SYS_String().Find(""); }, -1},
      {"Find null text", [](SYS_String const &x) { return x.Find(static_cast<char const *>(nullptr)); }, -1},
      {"FindOneOf", [](SYS_String const &x) { return x.FindOneOf("xc"); }, 2},
      {"FindOneOf from start", [](SYS_String const &x) { return x.FindOneOf("ba", 2); }, 3},
      {"FindOneOf at the length", [](SYS_String const &x) { return x.FindOneOf("a", 6); }, -1},
      {"FindOneOf beyond", [](SYS_String const &x) { return x.FindOneOf("a", 7); }, -1},
      {"ReverseFind from the end", [](SYS_String const &x) { return x.ReverseFind('a'); }, 3},
      {"ReverseFind from start", [](SYS_String const &x) { return x.ReverseFind('c', 4); }, 2},
      {"ReverseFind sees start itself", [](SYS_String const &x) { return x.ReverseFind('c', 2); }, 2},
      {"ReverseFind start at length", [](SYS_String const &x) { return x.ReverseFind('a', 6); }, -1},
      {"ReverseFind start -1", [](SYS_String const &x) { return x.ReverseFind('a', -1); }, -1},
      {"ReverseFind on empty", [](SYS_String const &) { return SYS_String().ReverseFind('a'); }, -1},
      {"ReverseFind NUL from -2", [](SYS_String const &x) { return x.ReverseFind('\0'); }, 6},
      {"ReverseFind NUL at length", [](SYS_String const &x) { return x.ReverseFind('\0', 6); }, 6},
      {"ReverseFind NUL elsewhere", [](SYS_String const &x) { return x.ReverseFind('\0', 3); }, -1},
      {"ReverseFind NUL on empty", [](SYS_String const &) { return SYS_String().ReverseFind('\0'); }, 0},
      {"ReverseFindOneOf", [](SYS_String const &x) { return x.ReverseFindOneOf("ab"); }, 4},
      {"ReverseFindOneOf only at 0", [](SYS_String const &) { return SYS_String("xyz").ReverseFindOneOf("x"); }, 0},
      {"ReverseFindOneOf from start", [](SYS_String const &x) { return x.ReverseFindOneOf("c", 4); }, 2},
      {"ReverseFindOneOf empty set", [](SYS_String const &x) { return x.ReverseFindOneOf(""); }, -1},
      {"ReverseFindOneOf start beyond", [](SYS_String const &x) { return x.ReverseFindOneOf("a", 6); }, -1},
  };
  for (FindCase const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.find(s), c.expected);
  }
  EXPECT_EQ(Bytes(s), "abcabc") << "the reverse searches leave the string alone";
  EXPECT_EQ(empty.ReverseFindOneOf("a"), -1);
}

TEST(SysStringTest, SearchesStopAtAnEmbeddedNul) {
  SYS_String const s("ab\0ab", 5);
  EXPECT_EQ(s.Find('b', 2), -1) << "the C walk ends at the NUL";
  EXPECT_EQ(s.Find('\0'), 2);
  EXPECT_EQ(s.ReverseFind('a'), 0);
}

TEST(SysStringTest, SearchesWalkCharactersInTheDoubleBytePage) {
  CodePageGuard const page(CodePage::DoubleByte);
  // Two-byte characters with trail bytes 'a' (0x61), '@' (0x40) and 'b'.
  SYS_String const s("\x81\x61" "a\xE0\x40" "b\x9F\x62");
  // bytes:             0   1     2  3   4     5  6   7
  EXPECT_EQ(s.Find('a'), 2) << "the trail byte at 1 is no 'a'";
  EXPECT_EQ(s.Find('@'), -1);
  EXPECT_EQ(s.Find('b'), 5);
  EXPECT_EQ(s.Find("a"), 2);
  EXPECT_EQ(s.Find("\x40" "b"), -1) << "a text never starts on a trail byte";
  EXPECT_EQ(s.Find("\xE0\x40"), 3);
  EXPECT_EQ(s.FindOneOf("b@"), 5);
  EXPECT_EQ(s.FindOneOf("\x9F\x62"), 6);
  EXPECT_EQ(s.ReverseFind('b'), 5) << "the trail byte at 7 is no 'b'";
  EXPECT_EQ(s.ReverseFind('a'), 2);
  EXPECT_EQ(s.ReverseFindOneOf("ab"), 5);
  EXPECT_EQ(s.ReverseFindOneOf("\xE0\x40"), 3);
  EXPECT_EQ(s.ReverseFindOneOf("\xE0\x40", 3), -1) << "start 3 cuts the character to its lead byte";
  EXPECT_EQ(SYS_String("a\x81\x61").ReverseFind('\x81', 1), 1) << "a cut lead byte counts alone";
  EXPECT_EQ(SYS_String("a\x81\x61").ReverseFind('\x81'), -1);
  // A lone lead byte before the NUL is a character of one byte.
  EXPECT_EQ(SYS_String("ab\x81").Find('\x81'), 2);
  EXPECT_EQ(SYS_String("ab\x81").ReverseFind('\x81'), 2);
}

// --------------------------------------------------------------------- editing

struct EditCase {
  char const *name;
  char const *before;
  std::function<void(SYS_String &)> edit;
  char const *after;
};

TEST(SysStringTest, InsertDeleteReplace) {
  EditCase const cases[] = {
      {"Insert in the middle", "abcd", [](SYS_String &s) { s.Insert(2, "XY"); }, "abXYcd"},
      {"Insert at 0", "abc", [](SYS_String &s) { s.Insert(0, "X"); }, "Xabc"},
      {"Insert at the length", "ab", [](SYS_String &s) { s.Insert(2, "X"); }, "abX"},
      {"Insert beyond pads with blanks", "ab", [](SYS_String &s) { s.Insert(5, "X"); }, "ab   X"},
      {"Insert into empty beyond", "", [](SYS_String &s) { s.Insert(2, "X"); }, "  X"},
      {"Insert empty text", "ab", [](SYS_String &s) { s.Insert(5, ""); }, "ab"},
      {"Insert null text", "ab", [](SYS_String &s) { s.Insert(1, nullptr); }, "ab"},
      {"Insert negative pos clamps", "ab", [](SYS_String &s) { s.Insert(-4, "X"); }, "Xab"},
      {"Delete middle", "abcdef", [](SYS_String &s) { s.Delete(1, 2); }, "adef"},
      {"Delete count 0 to the end", "abc", [](SYS_String &s) { s.Delete(1, 0); }, "a"},
      {"Delete count beyond", "abc", [](SYS_String &s) { s.Delete(1, 10); }, "a"},
      {"Delete at the length", "abc", [](SYS_String &s) { s.Delete(3, 1); }, "abc"},
      {"Delete everything", "abc", [](SYS_String &s) { s.Delete(0, 0); }, ""},
      {"Delete negative pos clamps", "abc", [](SYS_String &s) { s.Delete(-2, 1); }, "bc"},
      {"Delete negative count does nothing", "abc", [](SYS_String &s) { s.Delete(1, -1); }, "abc"},
      {"Replace range", "abcdef", [](SYS_String &s) { s.Replace(1, 2, "XYZ"); }, "aXYZdef"},
      {"Replace count 0 replaces the rest", "abcdef", [](SYS_String &s) { s.Replace(2, 0, "X"); }, "abX"},
      {"Replace beyond the end pads", "ab", [](SYS_String &s) { s.Replace(4, 1, "X"); }, "ab  X"},
      {"Replace by nothing", "abcdef", [](SYS_String &s) { s.Replace(1, 4, ""); }, "af"},
      {"Replace all texts", "a-b-c", [](SYS_String &s) { EXPECT_EQ(s.Replace("-", "--"), 2); }, "a--b--c"},
      {"Replace all chars", "a-b-c", [](SYS_String &s) { EXPECT_EQ(s.Replace('-', '+'), 2); }, "a+b+c"},
  };
  for (EditCase const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_String s(c.before);
    c.edit(s);
    EXPECT_EQ(Bytes(s), c.after);
    EXPECT_EQ(static_cast<std::size_t>(s.GetLength()), std::strlen(c.after));
  }
}

TEST(SysStringTest, EditsAcceptTextFromTheStringItself) {
  SYS_String s("abc");
  s.Insert(1, s);
  EXPECT_EQ(Bytes(s), "aabcbc");
  s = "abcdef";
  s.Insert(0, Data(s) + 4);
  EXPECT_EQ(Bytes(s), "efabcdef");
  s = "abcdef";
  s.Replace(0, 3, Data(s) + 1);  // the text is read before the delete
  EXPECT_EQ(Bytes(s), "bcdefdef");
  s = "abc";
  s.Replace(0, 0, Data(s) + 3);  // an empty text at our own end
  EXPECT_EQ(Bytes(s), "");
  s = "abc";
  s.Insert(10, s);
  EXPECT_EQ(Bytes(s), "abc       abc");
}

struct TrimCase {
  char const *name;
  char const *before;
  char const *c;
  char const *right;
  char const *left;
  char const *all;
};

TEST(SysStringTest, TrimByOneCharacter) {
  // clang-format off
  TrimCase const cases[] = {
      {"white space", " \t a b \r\n", "", " \t a b", "a b \r\n", "a b"},
      {"null means white space", "  a  ", nullptr, "  a", "a  ", "a"},
      {"blanks alone", "   ", "", "", "", ""},
      {"empty", "", "", "", "", ""},
      {"nothing to trim", "abc", "", "abc", "abc", "abc"},
      {"only the first character counts", "xabab", "ab", "xabab", "xabab", "xabab"},
      {"named character", "xabab", "b", "xaba", "xabab", "xaba"},
      {"named character both ends", "bbxbb", "b", "bbx", "xbb", "x"},
      {"high byte is not white space", "\xA0 a \xA0", "", "\xA0 a \xA0", "\xA0 a \xA0", "\xA0 a \xA0"},
      {"named high byte", "\xA0" "a\xA0", "\xA0", "\xA0" "a", "a\xA0", "a"},
  };
  // clang-format on
  for (TrimCase const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_String right(c.before), left(c.before), all(c.before);
    EXPECT_EQ(Bytes(right.TrimRight(c.c)), c.right);
    EXPECT_EQ(Bytes(left.TrimLeft(c.c)), c.left);
    EXPECT_EQ(Bytes(all.AllTrim(c.c)), c.all);
  }
  SYS_String defaults(" x ");
  EXPECT_EQ(Bytes(defaults.TrimRight().TrimLeft()), "x");
}

TEST(SysStringTest, TrimsInTheDoubleBytePage) {
  CodePageGuard const page(CodePage::DoubleByte);
  // "\x81\x20" is a character whose trail byte is a blank: no white space.
  SYS_String s("a \x81\x20");
  EXPECT_EQ(Bytes(s.TrimRight()), "a \x81\x20");
  s = "\x81\x20 ";
  EXPECT_EQ(Bytes(s.TrimRight()), "\x81\x20");
  // Trimming by a two-byte character compares whole characters.
  s = "\x81\x40\x81\x40x\x81\x40";
  EXPECT_EQ(Bytes(SYS_String(s).TrimLeft("\x81\x40")), "x\x81\x40");
  EXPECT_EQ(Bytes(SYS_String(s).TrimRight("\x81\x40")), "\x81\x40\x81\x40x");
  EXPECT_EQ(Bytes(SYS_String(s).AllTrim("\x81\x40")), "x");
  // 'b' as the trail of "\x81\x62" is not the character 'b'.
  s = "ab\x81\x62";
  EXPECT_EQ(Bytes(s.TrimRight("b")), "ab\x81\x62");
  s = "\x81\x62" "bb";
  EXPECT_EQ(Bytes(s.TrimRight("b")), "\x81\x62");
  // A lone lead byte at the end is a character of its own.
  s = "a\x81";
  EXPECT_EQ(Bytes(s.TrimRight("\x81")), "a");
}

TEST(SysStringTest, TrimsKeepEmbeddedNulSemantics) {
  SYS_String s(" a \0 b ", 7);
  EXPECT_EQ(Bytes(SYS_String(s).TrimRight()), " a") << "the walk ends at the first NUL";
  EXPECT_EQ(Bytes(SYS_String(s).TrimLeft()), std::string("a \0 b ", 6));
  EXPECT_EQ(Bytes(SYS_String(s).AllTrim()), "a");
  SYS_String const nulFirst("\0ab", 3);
  EXPECT_EQ(Bytes(SYS_String(nulFirst).AllTrim()), Bytes(nulFirst));
}

// A write to one copy never shows in another, and the shared empty string is
// never written: each writing operation runs on a copy of a shared string.
TEST(SysStringTest, WritesNeverShowInOtherCopies) {
  std::function<void(SYS_String &)> const writes[] = {
      [](SYS_String &s) { s.Insert(1, "X"); },
      [](SYS_String &s) { s.Delete(1, 1); },
      [](SYS_String &s) { s.Delete(0, 0); },
      [](SYS_String &s) { s.Replace(1, 1, "X"); },
      [](SYS_String &s) { s.Replace("b", "X"); },
      [](SYS_String &s) { s.Replace('b', 'X'); },
      [](SYS_String &s) { s.TrimRight("c"); },
      [](SYS_String &s) { s.TrimLeft(" "); },
      [](SYS_String &s) { s.AllTrim(); },
      [](SYS_String &s) { s << "X" << 1 << 2u << 3.0 << 'c'; },
      [](SYS_String &s) { s.Format("%s!", "x"); },
      [](SYS_String &s) { s.GetBuffer(10)[0] = 'X'; s.ReleaseBuffer(); },
      [](SYS_String &s) { s = "other"; },
  };
  for (auto const &write : writes) {
    SYS_String const original(" abc ");
    SYS_String copy(original);
    write(copy);
    EXPECT_EQ(Bytes(original), " abc ");
    SYS_String emptyCopy;
    write(emptyCopy);
    EXPECT_EQ(Bytes(AfxGetEmptyString()), "");
    EXPECT_EQ(Bytes(SYS_String()), "");
  }
  SYS_String const original("abc");
  SYS_String copy(original);
  copy.TrimRight("x");
  EXPECT_EQ(Data(copy), Data(original)) << "a trim that changes nothing keeps sharing";
}

// ------------------------------------------------------------------ appending

TEST(SysStringTest, AppendingOperators) {
  SYS_String s;
  s << "R" << 10 << '-' << -5 << ' ' << 7u;
  EXPECT_EQ(Bytes(s), "R10--5 7");
  s = "";
  s << INT_MIN << ' ' << UINT_MAX << ' ' << LONG_MIN << ' ' << ULONG_MAX;
  EXPECT_EQ(Bytes(s), "-2147483648 4294967295 -9223372036854775808 18446744073709551615");
  s = "";
  s << 1.5 << ' ' << -0.25f << ' ' << 1e10;
  EXPECT_EQ(Bytes(s), "1.500000 -0.250000 10000000000.000000");
  s = "";
  s << static_cast<char const *>(nullptr) << CString("c") << static_cast<short>(-3) << true;
  EXPECT_EQ(Bytes(s), "c-31");
  s << s;
  EXPECT_EQ(Bytes(s), "c-31c-31");
}

TEST(SysStringTest, AppendingDoublesIgnoresTheLocale) {
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

// ------------------------------------------------------------------ extraction

TEST(SysStringTest, ExtractionLeavesTheStringAndReturnsTheRest) {
  SYS_String const s("  42abc");
  unsigned int n = 99;
  SYS_String rest = s >> n;
  EXPECT_EQ(n, 42u);
  EXPECT_EQ(Bytes(rest), "abc");
  EXPECT_EQ(Bytes(s), "  42abc");
  rest = SYS_String("xyz") >> n;
  EXPECT_EQ(n, 0u);
  EXPECT_EQ(Bytes(rest), "xyz");
  rest = SYS_String("-1 r") >> n;
  EXPECT_EQ(n, 4294967295u);
  EXPECT_EQ(Bytes(rest), " r");

  char set[] = " ,";
  EXPECT_EQ(Bytes(SYS_String(" , a, b") >> " ,"), "a, b");
  EXPECT_EQ(Bytes(SYS_String(" , a, b") >> set), "a, b");
  EXPECT_STREQ(set, " ,") << "nothing is written through the set";
  EXPECT_EQ(Bytes(SYS_String("abc") >> static_cast<char const *>(nullptr)), "abc");

  // Chained: "12 34" -> 12, skip blank, 34.
  unsigned int a = 0, b = 0;
  ((SYS_String("12 34") >> a) >> " ") >> b;
  EXPECT_EQ(a, 12u);
  EXPECT_EQ(b, 34u);
}

TEST(SysStringTest, SetExtractionIsByteWise) {
  CodePageGuard const page(CodePage::DoubleByte);
  // The trail byte 0x40 of "\x81\x40" is skipped when it leads: a split
  // character is what the byte-wise skip gives.
  EXPECT_EQ(Bytes(SYS_String("\x40\x81\x40") >> "\x40"), "\x81\x40");
  EXPECT_EQ(Bytes(SYS_String("\x81\x40x") >> "\x81"), "\x40x");
}

struct QuotedCase {
  char const *name;
  char const *text;
  char const *out;
  char const *rest;
};

TEST(SysStringTest, QuotedExtraction) {
  // clang-format off
  QuotedCase const cases[] = {
      {"quoted then more", "\"ab\" cd", "ab", "\" cd"},
      {"no quotes", "plain text", "plain text", ""},
      {"empty", "", "", ""},
      {"doubled quote stays doubled", "\"a\"\"b\" c", "a\"\"b", "\" c"},
      {"doubled quote at the start", "\"\"ab\"", "\"\"ab", "\""},
      {"quote inside unquoted text", "ab\"cd", "ab", "\"cd"},
      {"opening quote alone", "\"", "", ""},
      {"opening quote, no closing one", "\"abc", "abc", ""},
      {"empty quoted", "\"\" x", "\"\" x", ""},
      {"three quotes", "\"\"\"x", "\"\"", "\"x"},
  };
  // clang-format on
  for (QuotedCase const &c : cases) {
    SCOPED_TRACE(c.name);
    CString out("junk");
    SYS_String const rest = SYS_String(c.text) >> out;
    EXPECT_EQ(Bytes(out), c.out);
    EXPECT_EQ(Bytes(rest), c.rest);
  }
  SYS_String self("\"in\" out");
  SYS_String const rest = self >> self;
  EXPECT_EQ(Bytes(self), "in");
  EXPECT_EQ(Bytes(rest), "\" out");
}

// -------------------------------------------------------------------- numbers

TEST(SysStringTest, ValueConversions) {
  SYS_String const text(" -123x");
  char const *end = nullptr;
  int i = 0;
  EXPECT_EQ(text.Value(&i, &end), -123);
  EXPECT_EQ(i, -123);
  EXPECT_EQ(end, Data(text) + 5) << "end points into the string's own array";

  short sh = 0;
  EXPECT_EQ(SYS_String("70000").Value(&sh, nullptr), static_cast<short>(70000 - 65536));
  EXPECT_EQ(SYS_String("-32769").Value(&sh), 32767);
  EXPECT_EQ(SYS_String("99999999999").Value(&sh), -1) << "low 16 bits of INT32_MAX";

  EXPECT_EQ(SYS_String("2147483648").Value(&i), INT_MAX);
  EXPECT_EQ(SYS_String("-2147483649").Value(&i), INT_MIN);
  unsigned int u = 0;
  EXPECT_EQ(SYS_String("4294967296").Value(&u), 4294967295u);
  EXPECT_EQ(SYS_String("-2").Value(&u), 4294967294u);

  double d = 0;
  SYS_String const scientific("1.25e2 rest");
  EXPECT_EQ(scientific.Value(&d, &end), 125.0);
  EXPECT_STREQ(end, " rest");
  float f = 0;
  EXPECT_EQ(SYS_String("0.5").Value(&f), 0.5f);
  EXPECT_TRUE(std::isinf(SYS_String("1e300").Value(&f)));
  EXPECT_EQ(SYS_String("x").Value(static_cast<double *>(nullptr)), 0.0) << "a null out is allowed";

  SYS_String const none("abc");
  EXPECT_EQ(none.Value(&i, &end), 0);
  EXPECT_EQ(end, Data(none));
  EXPECT_EQ(none.Value(&d, &end), 0.0);
  EXPECT_EQ(end, Data(none));
}

}  // namespace
