#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <memory>
#include <random>

#include "code_page_guard.h"
#include "mbtext.h"

namespace {

namespace mb = tovik::mb;
using mb::CodePage;
using tovik_test::CodePageGuard;

TEST(MbTextTest, LeadBytesAndCharacterLengths) {
  struct Case {
    unsigned char byte;
    bool lead;
  };
  Case const cases[] = {{0x00, false}, {0x41, false}, {0x80, false}, {0x81, true}, {0x9F, true},
                        {0xA0, false}, {0xDF, false}, {0xE0, true},  {0xFC, true}, {0xFD, false}};
  for (Case const &c : cases) {
    SCOPED_TRACE(static_cast<int>(c.byte));
    EXPECT_FALSE(mb::IsLeadByte(c.byte)) << "no lead bytes in the single-byte page";
    CodePageGuard const page(CodePage::DoubleByte);
    EXPECT_EQ(mb::IsLeadByte(c.byte), c.lead);
  }
  CodePageGuard const page(CodePage::DoubleByte);
  EXPECT_EQ(mb::CharCode("\x81\x40"), 0x8140u);
  EXPECT_EQ(mb::CharCode("\x81"), 0x81u) << "a lead byte before the NUL stands alone";
}

// Walks over random bytes, many of them lead bytes, in buffers of the exact
// size: AddressSanitizer reports any read past the terminator.
TEST(MbTextTest, NoWalkPassesTheTerminator) {
  CodePageGuard const page(CodePage::DoubleByte);
  std::mt19937 random(1);
  for (int round = 0; round < 2000; ++round) {
    std::size_t const n = random() % 9;
    std::unique_ptr<char[]> text(new char[n + 1]);
    for (std::size_t i = 0; i < n; ++i) text[i] = static_cast<char>(random() % 3 == 0 ? 'a' : 0x81 + random() % 2);
    text[n] = '\0';
    char const *s = text.get();
    char const *p = s;
    while (*p != '\0') p = mb::Inc(p);
    EXPECT_EQ(p, s + n);
    mb::Chr(s, 'z');
    mb::RChr(s, 'z');
    mb::Str(s, "\x81\x81\x81");
    mb::PBrk(s, "z");
    EXPECT_LE(mb::Spn(s, "\x81\x81\x82\x82" "a"), n);
    EXPECT_EQ(mb::CSpn(s, "z"), n);
    EXPECT_EQ(mb::Cmp(s, s), 0);
  }
}

TEST(MbTextTest, SearchesMatchWholeCharactersOnly) {
  // "\x81\x61" is one character with trail byte 'a'.
  char const *const s = "\x81\x61" "ba\x81\x61";
  EXPECT_EQ(mb::Chr(s, 'a'), s + 1) << "single-byte page: every byte is a character";
  CodePageGuard const page(CodePage::DoubleByte);
  EXPECT_EQ(mb::Chr(s, 'a'), s + 3);
  EXPECT_EQ(mb::Chr(s, 0x8161), s);
  EXPECT_EQ(mb::Chr(s, 0), s + 6);
  EXPECT_EQ(mb::RChr(s, 'a'), s + 3);
  EXPECT_EQ(mb::RChr(s, 0x8161), s + 4);
  EXPECT_EQ(mb::RChr(s, 0), s + 6);
  EXPECT_EQ(mb::Str(s, "ab"), nullptr) << "no match starting on a trail byte";
  EXPECT_EQ(mb::Str(s, "a\x81"), s + 3);
  EXPECT_EQ(mb::PBrk(s, "a"), s + 3);
  EXPECT_EQ(mb::PBrk(s, "\x81\x61"), s);
  EXPECT_EQ(mb::PBrk(s, "\x81"), nullptr) << "a lone lead byte is no two-byte character";
  EXPECT_EQ(mb::Spn(s, "\x81\x61" "b"), 3u);
  EXPECT_EQ(mb::CSpn(s, "a"), 3u);
  EXPECT_EQ(mb::Chr(nullptr, 'a'), nullptr);
}

TEST(MbTextTest, ComparisonsByCharacterCode) {
  EXPECT_LT(mb::Cmp("\x81\x40", "\xA1"), 0) << "single-byte: bytes";
  EXPECT_LT(mb::Cmp("ab", "abc"), 0);
  EXPECT_GT(mb::Cmp("\xE9", "z"), 0);
  EXPECT_EQ(mb::NCmp1("ax", "ay"), 0);
  CodePageGuard const page(CodePage::DoubleByte);
  EXPECT_GT(mb::Cmp("\x81\x40", "\xA1"), 0);
  EXPECT_LT(mb::Cmp("\x81\x40", "\x81\x41"), 0);
  EXPECT_GT(mb::NCmp1("\x81\x40", "\x81"), 0) << "a two-byte character against its lone lead byte";
}

TEST(MbTextTest, CharacterClassesAndNumbers) {
  for (unsigned c : {9u, 10u, 11u, 12u, 13u, 32u}) EXPECT_TRUE(mb::IsSpace(c)) << c;
  for (unsigned c : {0u, 8u, 14u, 0xA0u, 0x85u, 0xFFFFFFA0u}) EXPECT_FALSE(mb::IsSpace(c)) << c;
  EXPECT_TRUE(mb::IsDigit('0') && mb::IsDigit('9') && !mb::IsDigit('a') && !mb::IsDigit(0x8230));

  EXPECT_EQ(mb::Atoi("  -42x"), -42);
  EXPECT_EQ(mb::Atoi("x1"), 0);
  EXPECT_EQ(mb::Atoi("2147483648"), INT_MAX);
  EXPECT_EQ(mb::Atoi("-2147483648"), INT_MIN);
  EXPECT_EQ(mb::Atoi("-99999999999999999999999"), INT_MIN);

  char buffer[mb::kIntTextSize];
  EXPECT_EQ(mb::Ltoa(INT_MIN, buffer), 11);
  EXPECT_STREQ(buffer, "-2147483648");
  EXPECT_EQ(mb::Ultoa(4294967295u, buffer), 10);
  EXPECT_STREQ(buffer, "4294967295");
}

}  // namespace
