// Multi-byte text: the character-walking functions of the process code page.
//
// Every byte of text in Tovik is in one process-wide code page. The default is
// a single-byte page, in which every byte is a character and these functions
// reduce to the plain byte functions. A double-byte page can be selected: in
// it a lead byte (0x81-0x9F or 0xE0-0xFC) and the byte behind it, which may be
// any byte but NUL, form one character. A lead byte followed by NUL counts as
// a character of one byte, so no walk ever passes the terminator, whatever
// the text holds.
//
// A character is named by its code: the byte for a one-byte character, and
// lead * 256 + trail for a two-byte one. Positions and lengths are bytes.
// A null text counts as an empty one everywhere.
#ifndef TOVIK_MBTEXT_H
#define TOVIK_MBTEXT_H

#include <cstddef>
#include <cstdint>

#include "tovik_export.h"

namespace tovik::mb {

enum class CodePage {
  SingleByte,  // every byte is a character
  DoubleByte   // lead bytes 0x81-0x9F and 0xE0-0xFC start a two-byte character
};

namespace detail {
// The current page; read inline by the walks below, written by SetCodePage.
extern TOVIK_API CodePage currentCodePage;
}  // namespace detail

// Selects the process code page. Strings already made keep their bytes.
TOVIK_API void SetCodePage(CodePage page) noexcept;
inline CodePage GetCodePage() noexcept { return detail::currentCodePage; }

// True when byte starts a two-byte character in the current page.
inline bool IsLeadByte(unsigned char byte) noexcept {
  return detail::currentCodePage == CodePage::DoubleByte &&
         ((byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC));
}

// Bytes in the character at p: 2 for a lead byte with a non-NUL byte behind
// it, else 1 (also at the terminator).
inline std::size_t CharLen(char const *p) noexcept {
  return (IsLeadByte(static_cast<unsigned char>(p[0])) && p[1] != '\0') ? 2 : 1;
}

// The character behind the one at p. At the terminator this is p + 1, so a
// walk must stop at the NUL itself.
inline char const *Inc(char const *p) noexcept { return p + CharLen(p); }
inline char *Inc(char *p) noexcept { return p + CharLen(p); }

// The code of the character at p; 0 at the terminator.
inline unsigned CharCode(char const *p) noexcept {
  unsigned const first = static_cast<unsigned char>(p[0]);
  return CharLen(p) == 2 ? (first << 8) | static_cast<unsigned char>(p[1]) : first;
}

// The first character of s whose code is c; c = 0 finds the terminator.
// Null when there is none.
TOVIK_API char const *Chr(char const *s, unsigned c) noexcept;
// The last character of s whose code is c; c = 0 finds the terminator.
TOVIK_API char const *RChr(char const *s, unsigned c) noexcept;
// The first character of s at which the bytes of t follow; s itself for an
// empty t. A match starts only where a character starts.
TOVIK_API char const *Str(char const *s, char const *t) noexcept;
// The first character of s that is also a character of set; null if none.
TOVIK_API char const *PBrk(char const *s, char const *set) noexcept;
// Byte length of the leading run of s made of characters of set.
TOVIK_API std::size_t Spn(char const *s, char const *set) noexcept;
// Byte length of the leading run of s made of characters not in set.
TOVIK_API std::size_t CSpn(char const *s, char const *set) noexcept;
// Compares the first characters of a and b by code: -1, 0 or 1.
inline int NCmp1(char const *a, char const *b) noexcept {
  unsigned const ca = CharCode(a != nullptr ? a : "");
  unsigned const cb = CharCode(b != nullptr ? b : "");
  return ca < cb ? -1 : (ca > cb ? 1 : 0);
}
// Compares a and b character by character, by code: -1, 0 or 1.
TOVIK_API int Cmp(char const *a, char const *b) noexcept;
// As Cmp, with the one-byte letters A-Z taken as a-z: -1, 0 or 1.
TOVIK_API int ICmp(char const *a, char const *b) noexcept;

// White space: tab, line feed, vertical tab, form feed, carriage return and
// blank. No other code, and no two-byte character, is white space.
inline bool IsSpace(unsigned c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }
// A decimal digit '0'-'9'.
inline bool IsDigit(unsigned c) noexcept { return c >= '0' && c <= '9'; }
// Letters are 'A'-'Z' and 'a'-'z'; hexadecimal digits add 'a'-'f' and 'A'-'F'
// to the decimal ones. No other code, and no two-byte character, is either.
inline bool IsLower(unsigned c) noexcept { return c >= 'a' && c <= 'z'; }
inline bool IsUpper(unsigned c) noexcept { return c >= 'A' && c <= 'Z'; }
inline bool IsAlpha(unsigned c) noexcept { return IsLower(c) || IsUpper(c); }
inline bool IsAlnum(unsigned c) noexcept { return IsAlpha(c) || IsDigit(c); }
inline bool IsXDigit(unsigned c) noexcept { return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

// The value of the decimal number at s, as atoi reads it: leading white space,
// an optional sign, digits. A value outside 32 bits gives the nearest bound.
TOVIK_API std::int32_t Atoi(char const *s) noexcept;

// Room for the digits of any 32-bit value, a minus sign and the NUL.
constexpr int kIntTextSize = 12;
// Writes the decimal digits of value (a leading minus when negative) and a NUL
// into buffer, which holds kIntTextSize bytes. Returns the digits written.
TOVIK_API int Ltoa(std::int32_t value, char *buffer) noexcept;
TOVIK_API int Ultoa(std::uint32_t value, char *buffer) noexcept;

// Byte length of s, 0 for null.
TOVIK_API std::size_t StrLen(char const *s) noexcept;

}  // namespace tovik::mb

#endif  // TOVIK_MBTEXT_H
