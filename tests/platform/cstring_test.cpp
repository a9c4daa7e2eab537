#include <gtest/gtest.h>

#include <climits>
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
unsigned short const kWide[] = {'A', 0xE9, 0x81, 0xA0, 0x20AC, 0xD83D, 0xDE00, 0};

TEST(CStringTest, CopiesShareUntilOneIsWrittenAndReadTheirOwnText) {
  Probe a("shared text");
  {
    Probe b(a), c;
    c = b;
    EXPECT_EQ(a.Refs(), 3);
    c += "!";
    b.MakePrivate();
    EXPECT_TRUE(Data(b) != Data(a) && Data(c) != Data(a));
    EXPECT_EQ(Bytes(a) + Bytes(b) + Bytes(c), "shared textshared textshared text!");
    EXPECT_EQ(a.Refs(), 1);
  }
  // The shared empty string is never counted or written.
  Probe empty;
  empty.MakePrivate();
  empty.ReleaseBuffer(5);
  EXPECT_EQ(Data(empty), Data(AfxGetEmptyString()));
  EXPECT_EQ(empty.Refs(), -1);
  char *buffer = empty.GetBuffer(0);
  EXPECT_NE(buffer, Data(AfxGetEmptyString())) << "GetBuffer always hands out a private array";
  empty.ReleaseBuffer();

  EXPECT_EQ(Bytes(CString("a\0b", 3)) + Bytes(CString(nullptr, 4)), std::string("a\0b", 3));
  EXPECT_EQ(Bytes(CString(kWide)), "A\xE9\x81\xA0???");
  // Assignments and appends whose text points into the string's own array.
  Probe s("abcdef");
  s = Data(s) + 2;
  Probe const shared(s);
  s = Data(s) + 1;
  EXPECT_EQ(Bytes(s) + Bytes(shared), "defcdef");
  s += s;
  s += Data(s) + 3;
  EXPECT_EQ(Bytes(s), "defdefdef");
}

TEST(CStringTest, AppendingGrowsGeometricallyAndFormatting) {
  Probe s;
  int reallocations = 0;
  for (int i = 0; i < 10000; ++i) {
    char const *last = Data(s);
    s += static_cast<char>('a' + i % 26);
    if (Data(s) != last) ++reallocations;
  }
  EXPECT_LT(reallocations, 40);
  std::string const big(1000, 'x');
  s.Format("<%s>", big.c_str());
  s.Format("%s%s", Data(s), "!");  // an argument from the string itself, long path
  EXPECT_EQ(Bytes(s), "<" + big + ">!");
  s = "ab";
  s.Format("%s-%d-%s", Data(s), 12, Data(s));  // and the short path
  EXPECT_EQ(Bytes(s), "ab-12-ab");
}

TEST(CStringTest, BuffersAndCopies) {
  Probe s("abc");
  Probe const other(s);
  char *buffer = s.GetBuffer(10);
  std::memcpy(buffer + 3, "z12", 4);
  s.ReleaseBuffer();
  EXPECT_EQ(Bytes(s) + Bytes(other), "abcz12abc") << "the text is kept, and the copy not written";
  s.GetBuffer(2);  // smaller than the text: the text stays whole
  s.ReleaseBuffer(3);
  EXPECT_EQ(Bytes(s), "abc");
  EXPECT_THROW(s.GetBuffer(INT_MAX), std::bad_alloc);
  // A writer that filled every byte, the NUL slot included, is cut safely.
  std::memset(s.GetBuffer(4), 'q', static_cast<std::size_t>(s.Capacity()) + 1);
  s.ReleaseBuffer();
  EXPECT_EQ(s.GetLength(), s.Capacity());
  s.ReleaseBuffer(s.Capacity() + 100);
  EXPECT_EQ(s.GetLength(), s.Capacity()) << "a length beyond the room is cut";

  CString target("old");
  Probe("abcdef").CopyInto(target, 3, 1, 5);
  EXPECT_EQ(Bytes(target), "bcd");
  EXPECT_GE(Probe(target).Capacity(), 8);
  Probe self("abcdef");
  self.CopyInto(self, 100, 4, 0);
  EXPECT_EQ(Bytes(self), "ef");
}

// The count and the result of a replace, joined by ':'.
std::string Replaced(CString s, char const *oldText, char const *newText) {
  std::string const count = std::to_string(s.Replace(oldText, newText));
  return count + ":" + Bytes(s);
}

TEST(CStringTest, ReplaceCountsAndCopiesOnlyOnChange) {
  Probe s("a.b.c");
  Probe const shared(s);
  EXPECT_EQ(s.Replace('x', 'y') + s.Replace('.', '.') + CString().Replace('a', 'b'), 2);
  EXPECT_EQ(Data(s), Data(shared)) << "nothing to change, no copy";
  EXPECT_EQ(s.Replace('.', '/'), 2);
  EXPECT_EQ(Bytes(s) + Bytes(shared), "a/b/ca.b.c");
  EXPECT_EQ(Replaced("aaaa", "aa", "b"), "2:bb") << "left to right, no overlap";
  EXPECT_EQ(Replaced("abc", "", "y") + Replaced("abc", "x", "y"), "0:abc0:abc");
  EXPECT_EQ(Replaced("abc", "b", nullptr), "1:ac");
  EXPECT_EQ(Replaced(CString("ab\0ab", 5), "b", "xy"), std::string("2:axy\0axy", 9)) << "both sides of a NUL";
  CString self("abcabc");
  EXPECT_EQ(self.Replace(Data(self) + 4, Data(self)), 2) << "texts from the string itself";
  EXPECT_EQ(Bytes(self), "aabcabcaabcabc");

  CodePageGuard const page(CodePage::DoubleByte);
  CString dbcs("@\x81@x@a\x81");
  EXPECT_EQ(dbcs.Replace('@', '#') + dbcs.Replace('\x81', 'b'), 3) << "a trail byte '@' is left alone";
  EXPECT_EQ(Bytes(dbcs), "#\x81@x#ab") << "a lone lead byte at the end is a character";
  EXPECT_EQ(Bytes(CString(kWide)), "A??\xA0???") << "a lead byte alone would break the text";
}

TEST(CStringTest, Comparisons) {
  CString const b("b");
  EXPECT_TRUE(b == "b" && b != CString() && "a" < b && b <= "b" && b > "a" && CString("ab") < CString("abc"));
  EXPECT_TRUE(CString("\x81\x40") < CString("\xA1")) << "bytes compare unsigned";
  CodePageGuard const page(CodePage::DoubleByte);
  EXPECT_TRUE(CString("\x81\x40") > CString("\xA1")) << "a two-byte character sorts by its code";
}

}  // namespace
