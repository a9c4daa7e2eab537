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

TEST(CStringTest, CopiesShareUntilOneIsWritten) {
  Probe a("shared text");
  {
    Probe b(a), c;
    c = b;
    EXPECT_TRUE(Data(b) == Data(a) && Data(c) == Data(a));
    EXPECT_EQ(a.Refs(), 3);
    c += "!";
    b.MakePrivate();
    EXPECT_TRUE(Data(b) != Data(a) && Data(c) != Data(a));
    EXPECT_EQ(Bytes(a) + Bytes(b) + Bytes(c), "shared textshared textshared text!");
    EXPECT_EQ(a.Refs(), 1);
  }
  // The shared empty string is never counted, copied or written.
  Probe const empty;
  Probe copies[3] = {empty, empty, Probe("")};
  copies[0].MakePrivate();
  copies[1].ReleaseBuffer(5);
  EXPECT_EQ(copies[2].Replace('a', 'b'), 0);
  for (Probe const &copy : copies) EXPECT_EQ(Data(copy), Data(AfxGetEmptyString()));
  EXPECT_EQ(empty.Refs(), -1);
  char *buffer = copies[0].GetBuffer(0);
  EXPECT_NE(buffer, Data(empty)) << "GetBuffer always hands out a private array";
  buffer[0] = '\0';
  copies[0].ReleaseBuffer();
  EXPECT_EQ(Bytes(AfxGetEmptyString()), "");
}

TEST(CStringTest, ConstructionAndAssignmentFromItself) {
  EXPECT_EQ(Bytes(CString("a\0b", 3)), std::string("a\0b", 3)) << "a length keeps inner NULs";
  EXPECT_EQ(Bytes(CString("abc", -1)) + Bytes(CString(nullptr, 4)), "");
  EXPECT_THROW(CString('x', INT_MAX), std::bad_alloc);
  unsigned short const wide[] = {'A', 0xE9, 0x81, 0xA0, 0x20AC, 0xD83D, 0xDE00, 0};
  EXPECT_EQ(Bytes(CString(wide)), "A\xE9\x81\xA0???");
  {
    CodePageGuard const page(CodePage::DoubleByte);
    EXPECT_EQ(Bytes(CString(wide)), "A??\xA0???") << "a lead byte alone would break the text";
  }
  Probe s("abcdef");
  Probe &alias = s;
  s = alias;
  s = Data(s) + 2;  // a pointer into the own array
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
  s.Format(nullptr);
  EXPECT_EQ(Bytes(s), "");
}

TEST(CStringTest, BuffersAndCopies) {
  Probe s("abc");
  Probe const other(s);
  char *buffer = s.GetBuffer(10);
  EXPECT_STREQ(buffer, "abc") << "the text is kept";
  std::memcpy(buffer, "wxyz12", 7);
  s.ReleaseBuffer();
  EXPECT_EQ(Bytes(s) + Bytes(other), "wxyz12abc");
  s.GetBuffer(2);  // smaller than the text: the text stays whole
  s.ReleaseBuffer(3);
  EXPECT_EQ(Bytes(s), "wxy");
  s.ReleaseBuffer(s.Capacity() + 100);
  EXPECT_EQ(s.GetLength(), s.Capacity()) << "a length beyond the room is cut";
  EXPECT_THROW(s.GetBuffer(INT_MAX), std::bad_alloc);
  EXPECT_EQ(s.GetLength(), s.Capacity()) << "a failed GetBuffer changes nothing";
  // A writer that filled every byte, the NUL slot included, is cut safely.
  Probe full("abcd");
  std::memset(full.GetBuffer(4), 'q', static_cast<std::size_t>(full.Capacity()) + 1);
  full.ReleaseBuffer();
  EXPECT_EQ(full.GetLength(), full.Capacity());

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
  EXPECT_EQ(s.Replace('x', 'y') + s.Replace('.', '.'), 2);
  EXPECT_EQ(Data(s), Data(shared)) << "nothing to change, no copy";
  EXPECT_EQ(s.Replace('.', '/'), 2);
  EXPECT_EQ(Bytes(s) + Bytes(shared), "a/b/ca.b.c");
  EXPECT_EQ(Replaced("a-b-c", "-", "<->"), "2:a<->b<->c");
  EXPECT_EQ(Replaced("aaaa", "aa", "b"), "2:bb") << "left to right, no overlap";
  EXPECT_EQ(Replaced("abc", "", "y"), "0:abc");
  EXPECT_EQ(Replaced("abc", "b", nullptr), "1:ac");
  EXPECT_EQ(Replaced(CString("ab\0ab", 5), "b", "xy"), std::string("2:axy\0axy", 9)) << "both sides of a NUL";
  CString self("abcabc");
  EXPECT_EQ(self.Replace(Data(self) + 4, Data(self)), 2) << "texts from the string itself";
  EXPECT_EQ(Bytes(self), "aabcabcaabcabc");

  CodePageGuard const page(CodePage::DoubleByte);
  CString dbcs("@\x81@x@a\x81");
  EXPECT_EQ(dbcs.Replace('@', '#') + dbcs.Replace('\x81', 'b'), 3) << "a trail byte '@' is left alone";
  EXPECT_EQ(Bytes(dbcs), "#\x81@x#ab") << "a lone lead byte at the end is a character";
}

TEST(CStringTest, Comparisons) {
  CString const b("b");
  EXPECT_TRUE(b == "b" && b != CString() && "a" < b && b <= "b" && b > "a" && CString("ab") < CString("abc"));
  EXPECT_TRUE(CString() == static_cast<char const *>(nullptr));
  EXPECT_TRUE(CString("\x81\x40") < CString("\xA1")) << "bytes compare unsigned";
  CodePageGuard const page(CodePage::DoubleByte);
  EXPECT_TRUE(CString("\x81\x40") > CString("\xA1")) << "a two-byte character sorts by its code";
}

}  // namespace
