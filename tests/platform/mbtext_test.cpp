#include <gtest/gtest.h>

#include <climits>

#include "code_page_guard.h"
#include "mbtext.h"

namespace {

namespace mb = tovik::mb;
using mb::CodePage;
using tovik_test::CodePageGuard;

TEST(MbTextTest, LeadBytesAndWalks) {
  for (unsigned char byte : {0x80, 0x81, 0x9F, 0xA0, 0xDF, 0xE0, 0xFC, 0xFD}) {
    SCOPED_TRACE(static_cast<int>(byte));
    EXPECT_FALSE(mb::IsLeadByte(byte)) << "no lead bytes in the single-byte page";
    CodePageGuard const page(CodePage::DoubleByte);
    EXPECT_EQ(mb::IsLeadByte(byte), (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC));
  }
  // "\x81\x61" is one character with trail byte 'a'.
  char const *const s = "\x81\x61" "ba\x81\x61";
  EXPECT_EQ(mb::RChr(s, 'a'), s + 5) << "single-byte page: every byte is a character";
  CodePageGuard const page(CodePage::DoubleByte);
  EXPECT_EQ(mb::CharCode("\x81"), 0x81u) << "a lead byte before the NUL stands alone";
  EXPECT_EQ(mb::RChr(s, 'a'), s + 3);
  EXPECT_EQ(mb::RChr(s, 0x8161), s + 4);
  EXPECT_EQ(mb::PBrk(s, "\x81"), nullptr) << "a lone lead byte is no two-byte character";
  EXPECT_GT(mb::NCmp1("\x81\x40", "\x81"), 0) << "a two-byte character against its lone lead byte";
  EXPECT_EQ(mb::Atoi("2147483648"), INT_MAX) << "saturates";
}

}  // namespace
