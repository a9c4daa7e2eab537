#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>

#include "code_page_guard.h"
#include "cstring.h"

namespace {

using tovik::mb::CodePage;
using tovik_test::CodePageGuard;

// A test-only client that can see the header and the protected steps.
class Probe : public CString {
 public:
  using CString::CString;
  using CString::operator=;
  Probe(CString const &other) : CString(other) {}  // NOLINT

  int Refs() const { return GetData()->nRefs; }
  int Capacity() const { return GetData()->nAllocLength; }
  void MakePrivate() { CopyBeforeWrite(); }
  void CopyInto(CString &target, int count, int index, int extra) const { AllocCopy(target, count, index, extra); }
};

std::string Bytes(CString const &s) { return std::string(static_cast<char const *>(s), s.GetLength()); }
char const *Data(CString const &s) { return s; }

TEST(CStringTest, CopiesShareUntilOneIsWritten) {
  Probe a("shared text");
  {
    Probe b(a);
    Probe c;
    c = b;
    EXPECT_TRUE(Data(b) == Data(a) && Data(c) == Data(a));
    EXPECT_EQ(a.Refs(), 3);
    c += "!";
    b.MakePrivate();
    EXPECT_TRUE(Data(b) != Data(a) && Data(c) != Data(a));
    EXPECT_EQ(Bytes(a) + Bytes(b) + Bytes(c), "shared textshared textshared text!");
    EXPECT_EQ(a.Refs(), 1);
  }
  Probe moved(std::move(a));
  EXPECT_EQ(moved.Refs(), 1);
  EXPECT_TRUE(a.IsEmpty());  // NOLINT: a moved-from string is empty by contract
}

TEST(CStringTest, TheSharedEmptyStringIsNeverCountedOrWritten) {
  Probe const empty;
  EXPECT_EQ(Data(empty), Data(AfxGetEmptyString()));
  EXPECT_EQ(empty.Refs(), -1);
  {
    Probe copies[3] = {empty, empty, Probe("")};
    EXPECT_EQ(Data(copies[2]), Data(empty));
    copies[0].MakePrivate();
    EXPECT_EQ(Data(copies[0]), Data(empty)) << "nothing to write, nothing to copy";
    copies[1].ReleaseBuffer(5);
    EXPECT_EQ(copies[1].GetLength(), 0);
    EXPECT_EQ(copies[2].Replace('a', 'b'), 0);
  }
  EXPECT_EQ(empty.Refs(), -1);
  // GetBuffer always hands out a private array, even of room 0.
  Probe written;
  char *buffer = written.GetBuffer(0);
  EXPECT_NE(buffer, Data(empty));
  buffer[0] = '\0';
  written.ReleaseBuffer();
  EXPECT_EQ(written.GetLength(), 0);
  EXPECT_EQ(Bytes(AfxGetEmptyString()), "");
}

TEST(CStringTest, Construction) {
  EXPECT_EQ(Bytes(CString('\0', 2)), std::string(2, '\0'));
  EXPECT_EQ(Bytes(CString("a\0b", 3)), std::string("a\0b", 3)) << "a length keeps inner NULs";
  EXPECT_EQ(Bytes(CString("abc", -1)), "");
  EXPECT_EQ(Bytes(CString(nullptr, 4)), "");
}

TEST(CStringTest, WideTextFollowsTheCodePage) {
  unsigned short const wide[] = {'A', 0xE9, 0x81, 0xA0, 0x20AC, 0xD83D, 0xDE00, 0};
  EXPECT_EQ(Bytes(CString(wide)), "A\xE9\x81\xA0???");
  {
    CodePageGuard const page(CodePage::DoubleByte);
    // A lead byte (0xE9 and 0x81 here) alone would break the text: it becomes '?'.
    EXPECT_EQ(Bytes(CString(wide)), "A??\xA0???");
  }
  CString s("old");
  s = static_cast<unsigned short const *>(nullptr);
  EXPECT_EQ(Bytes(s), "");
}

TEST(CStringTest, AssignmentFromItself) {
  Probe s("abcdef");
  Probe &alias = s;
  s = alias;
  EXPECT_EQ(Bytes(s), "abcdef");
  s = Data(s) + 2;  // a pointer into the own array
  EXPECT_EQ(Bytes(s), "cdef");
  Probe shared(s);
  s = Data(s) + 1;
  EXPECT_EQ(Bytes(s), "def");
  EXPECT_EQ(Bytes(shared), "cdef");
  s += s;
  EXPECT_EQ(Bytes(s), "defdef");
  s += Data(s) + 3;
  EXPECT_EQ(Bytes(s), "defdefdef");
  s = static_cast<char const *>(nullptr);
  EXPECT_EQ(Bytes(s), "");
}

TEST(CStringTest, AppendingGrowsGeometrically) {
  Probe s;
  int reallocations = 0;
  char const *last = Data(s);
  for (int i = 0; i < 10000; ++i) {
    s += static_cast<char>('a' + i % 26);
    if (Data(s) != last) ++reallocations;
    last = Data(s);
  }
  EXPECT_EQ(Data(s)[9999], static_cast<char>('a' + 9999 % 26));
  EXPECT_LT(reallocations, 40);
  s += '\0';
  EXPECT_EQ(s.GetLength(), 10001) << "a NUL appended is kept";
}

TEST(CStringTest, FormatV) {
  CString s;
  s.Format("%s-%d-%.2f", "R", 12, 0.5);
  EXPECT_EQ(Bytes(s), "R-12-0.50");
  std::string const big(1000, 'x');
  s.Format("<%s>", big.c_str());
  EXPECT_EQ(Bytes(s), "<" + big + ">");
  s.Format("%s%s", Data(s), "!");  // an argument from the string itself, long path
  EXPECT_EQ(s.GetLength(), 1003);
  s = "ab";
  s.Format("%s%s", Data(s), Data(s));  // and the short path
  EXPECT_EQ(Bytes(s), "abab");
  s.Format(nullptr);
  EXPECT_EQ(Bytes(s), "");
}

TEST(CStringTest, GetBufferAndReleaseBuffer) {
  Probe s("abc");
  Probe const other(s);
  char *buffer = s.GetBuffer(10);
  EXPECT_STREQ(buffer, "abc") << "the text is kept";
  std::memcpy(buffer, "wxyz12", 7);
  s.ReleaseBuffer();
  EXPECT_EQ(Bytes(s), "wxyz12");
  EXPECT_EQ(Bytes(other), "abc");
  s.GetBuffer(2);  // smaller than the text: the text stays whole
  s.ReleaseBuffer(3);
  EXPECT_EQ(Bytes(s), "wxy");
  int const capacity = s.Capacity();
  s.GetBuffer(0);
  s.ReleaseBuffer(capacity + 100);
  EXPECT_EQ(s.GetLength(), capacity) << "a length beyond the room is cut";
  // A writer that filled every byte, the NUL slot included, is cut safely.
  Probe full("abcd");
  buffer = full.GetBuffer(4);
  std::memset(buffer, 'q', static_cast<std::size_t>(full.Capacity()) + 1);
  full.ReleaseBuffer();
  EXPECT_EQ(full.GetLength(), full.Capacity());
}

TEST(CStringTest, AllocCopyClampsToTheText) {
  Probe const s("abcdef");
  CString target("old");
  s.CopyInto(target, 3, 1, 5);
  EXPECT_EQ(Bytes(target), "bcd");
  EXPECT_GE(Probe(target).Capacity(), 8);
  s.CopyInto(target, 100, 4, 0);
  EXPECT_EQ(Bytes(target), "ef");
  Probe self("abcdef");
  self.CopyInto(self, 2, 2, 0);
  EXPECT_EQ(Bytes(self), "cd");
}

TEST(CStringTest, ReplaceCountsAndCopiesOnlyOnChange) {
  Probe s("a.b.c");
  Probe const shared(s);
  EXPECT_EQ(s.Replace('x', 'y') + s.Replace('.', '.'), 2);
  EXPECT_EQ(Data(s), Data(shared)) << "nothing to change, no copy";
  EXPECT_EQ(s.Replace('.', '/'), 2);
  EXPECT_EQ(Bytes(s), "a/b/c");
  EXPECT_EQ(Bytes(shared), "a.b.c");

  struct Case {
    char const *name;
    char const *text;
    char const *oldText;
    char const *newText;
    int count;
    char const *result;
  };
  Case const cases[] = {
      {"grow", "a-b-c", "-", "<->", 2, "a<->b<->c"},
      {"no overlap, left to right", "aaaa", "aa", "b", 2, "bb"},
      {"empty old", "abc", "", "y", 0, "abc"},
      {"null new", "abc", "b", nullptr, 1, "ac"},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(c.name);
    CString t(c.text);
    EXPECT_EQ(t.Replace(c.oldText, c.newText), c.count);
    EXPECT_EQ(Bytes(t), c.result);
  }
  CString inner("ab\0ab", 5);
  EXPECT_EQ(inner.Replace("b", "xy"), 2) << "both sides of an inner NUL";
  EXPECT_EQ(Bytes(inner), std::string("axy\0axy", 7));
  CString self("abcabc");
  EXPECT_EQ(self.Replace(Data(self) + 4, Data(self)), 2) << "texts from the string itself";
  EXPECT_EQ(Bytes(self), "aabcabcaabcabc");
}

TEST(CStringTest, ReplaceWalksCharactersInTheDoubleBytePage) {
  CodePageGuard const page(CodePage::DoubleByte);
  CString s("@\x81@x@");
  EXPECT_EQ(s.Replace('@', '#'), 2) << "the trail byte '@' is left alone";
  EXPECT_EQ(Bytes(s), "#\x81@x#");
  CString lone("a\x81");
  EXPECT_EQ(lone.Replace('\x81', 'b'), 1) << "a lone lead byte at the end is a character";
  EXPECT_EQ(Bytes(lone), "ab");
}

TEST(CStringTest, Comparisons) {
  CString const b("b");
  EXPECT_TRUE(b == CString("b") && b == "b" && "b" == b);
  EXPECT_TRUE(b != "c" && "a" != b && b != CString());
  EXPECT_TRUE(b < "c" && "a" < b && b <= "b" && b >= CString("b") && b > "a" && "c" > b);
  EXPECT_TRUE(CString("ab") < CString("abc"));
  EXPECT_TRUE(CString("\xE9") > CString("z")) << "bytes compare unsigned";
  EXPECT_TRUE(CString() == static_cast<char const *>(nullptr));
  EXPECT_TRUE(CString("\x81\x40") < CString("\xA1"));
  CodePageGuard const page(CodePage::DoubleByte);
  EXPECT_TRUE(CString("\x81\x40") > CString("\xA1")) << "a two-byte character sorts by its code";
}

TEST(CStringTest, LengthsBeyondTheHeaderThrowAndChangeNothing) {
  CString s("keep");
  EXPECT_THROW(s.GetBuffer(INT_MAX), std::bad_alloc);
  EXPECT_EQ(Bytes(s), "keep");
  EXPECT_THROW(CString('x', INT_MAX), std::bad_alloc);
}

}  // namespace
