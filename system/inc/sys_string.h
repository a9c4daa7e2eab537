// SYS_String: the text type of the whole library.
//
// A SYS_String is a CString (cstring.h) with no data and no virtual function
// of its own, so the two convert to each other by a copy of one pointer.
// Copies share their array until one of them is written; passing a string by
// value costs one reference count. On top of CString it offers substrings and
// searches that take a start position and give -1 for a failed or bad search,
// stream-like appending and extraction, conversions to numbers, trimming by
// one named character, positional insert, delete and replace, and a
// shell-style wildcard test.
//
// All positions, lengths and counts are bytes of the process code page
// (mbtext.h). The searches, spans and trims walk by characters of the code
// page; Mid, Left, Right, Insert, Delete, the extractions, Value and the
// wildcard functions work on bytes. No operation reports a failure: positions
// out of range are clamped or give -1, as each says. Exhausted memory throws
// std::bad_alloc.
#ifndef TOVIK_SYS_STRING_H
#define TOVIK_SYS_STRING_H

#include <cstdint>
#include <utility>

#include "cstring.h"
#include "tovik_export.h"

class TOVIK_API SYS_String : public CString {
 public:
  SYS_String() noexcept = default;
  SYS_String(SYS_String const &other) noexcept = default;
  SYS_String(SYS_String &&other) noexcept = default;
  SYS_String(CString const &other) noexcept : CString(other) {}  // NOLINT: shares the array
  SYS_String(CString &&other) noexcept : CString(std::move(other)) {}  // NOLINT
  // ch repeated count times; a count of 0 or less gives an empty string.
  SYS_String(char ch, int count) : CString(ch, count) {}
  SYS_String(char const *text) : CString(text) {}  // NOLINT: null gives empty
  // The first count bytes of text; the caller's buffer must hold them.
  SYS_String(char const *text, int count) : CString(text, count) {}
  SYS_String(unsigned char const *text) : CString(reinterpret_cast<char const *>(text)) {}  // NOLINT
  // UTF-16 text, converted to the code page as CString converts it.
  SYS_String(unsigned short const *wide) : CString(wide) {}  // NOLINT
  ~SYS_String() = default;

  SYS_String const &operator=(SYS_String const &other) noexcept {
    CString::operator=(other);
    return *this;
  }
  SYS_String const &operator=(SYS_String &&other) noexcept {
    CString::operator=(std::move(other));
    return *this;
  }
  SYS_String const &operator=(CString const &other) noexcept {
    CString::operator=(other);
    return *this;
  }
  SYS_String const &operator=(char const *text) {
    CString::operator=(text);
    return *this;
  }
  SYS_String const &operator=(unsigned char const *text) {
    CString::operator=(reinterpret_cast<char const *>(text));
    return *this;
  }
  SYS_String const &operator=(unsigned short const *wide) {
    CString::operator=(wide);
    return *this;
  }

  // --- Substrings: each returns a new string; a whole-string result shares
  // the array. Byte positions.

  // count bytes from first. A negative first or count counts as 0; a count
  // passing the end stops at the end; a first beyond the end gives empty.
  SYS_String Mid(int first, int count) const;
  // From first to the end (a negative first gives the whole string).
  SYS_String Mid(int first) const;
  // The first count bytes: a negative count gives empty, a count beyond the
  // end the whole string.
  SYS_String Left(int count) const;
  // The last count bytes, clamped as Left.
  SYS_String Right(int count) const;
  // The leading run of characters that are in set / not in set.
  SYS_String SpanIncluding(char const *set) const;
  SYS_String SpanExcluding(char const *set) const;

  // --- Searches: a byte position, or -1. They walk by characters of the code
  // page from start on, so a byte inside a two-byte character never matches.

  // First c at or after start, the terminating NUL included: Find('\0', n)
  // gives the length for any n up to the length. -1 when start < 0 or
  // start > length.
  int Find(char c, int start = 0) const;
  // First occurrence of text at or after start. -1 when start < 0 or
  // start >= length (so always on an empty string), and for a null text.
  int Find(char const *text, int start = 0) const;
  // First character of set at or after start; -1 when start < 0 or
  // start > length, and for a null set.
  int FindOneOf(char const *set, int start = 0) const;
  // Last c at or before start. A start of -2 means the end (length - 1);
  // otherwise -1 unless 0 <= start < length. For c = '\0' the result is the
  // length when start is -2 or the length, else -1. The text behind start
  // is not seen at all: a two-byte character cut by start + 1 counts as its
  // lead byte alone.
  int ReverseFind(char c, int start = -2) const;
  // Last character of set at or before start, with ReverseFind's bounds;
  // -1 for a null or empty set.
  int ReverseFindOneOf(char const *set, int start = -2) const;

  // --- Editing. Positions are bytes; the array is made private first.

  // Inserts text at pos. Below the length the tail moves up; at or beyond it
  // the gap from the end to pos is filled with blanks first, so the new
  // length is pos + the text's length. A null or empty text does nothing;
  // a negative pos counts as 0.
  void Insert(int pos, char const *text);
  // Deletes count bytes from pos; a count of 0, or one passing the end,
  // deletes to the end. pos at or beyond the length does nothing; a negative
  // pos counts as 0, and a negative count deletes nothing.
  void Delete(int pos, int count);
  // Delete(pos, count), then Insert(pos, text); text is read before the
  // delete, even when it points into this string.
  void Replace(int pos, int count, char const *text);
  // CString's replaces: all occurrences, their number returned.
  int Replace(char const *oldText, char const *newText) { return CString::Replace(oldText, newText); }
  int Replace(char oldChar, char newChar) { return CString::Replace(oldChar, newChar); }

  // Trimming by one character: an empty (or null) c means white space (tab
  // to carriage return, and blank); otherwise the first character of c,
  // compared as one character of the code page. The rest of c is ignored.
  // A string left unchanged keeps sharing its array.
  SYS_String &TrimRight(char const *c = "");
  SYS_String &TrimLeft(char const *c = "");
  SYS_String &AllTrim(char const *c = "");

  // --- Appending.
  SYS_String &operator<<(char c) {
    *this += c;
    return *this;
  }
  SYS_String &operator<<(char const *text) {
    *this += text;
    return *this;
  }
  SYS_String &operator<<(CString const &text) {
    *this += text;
    return *this;
  }
  // Decimal digits, a leading minus for negative values.
  SYS_String &operator<<(int value);
  SYS_String &operator<<(long value);
  SYS_String &operator<<(unsigned int value);
  SYS_String &operator<<(unsigned long value);
  // "%f": six decimals, a decimal point whatever the locale.
  SYS_String &operator<<(double value);
  SYS_String &operator<<(float value) { return *this << static_cast<double>(value); }

  // --- Extraction. The string itself is left alone; the result is what
  // remains of it behind the extraction, so extractions chain.

  // Decimal digits as strtoul reads them (white space and a sign first);
  // 0 when there are none. The remainder begins behind the last digit.
  SYS_String operator>>(unsigned int &out) const;
  // Skips the leading bytes that occur in set (byte by byte, so a two-byte
  // character may be split); writes nothing through the pointer.
  SYS_String operator>>(char const *set) const;
  SYS_String operator>>(char *set) const { return *this >> static_cast<char const *>(set); }
  // Quoted text: out receives the text up to the closing quote, an opening
  // quote at the very start skipped and doubled quotes kept doubled; the
  // remainder begins at the closing quote. Text without quotes goes to out
  // whole and leaves an empty remainder. out may be this string.
  SYS_String operator>>(CString &out) const;

  // --- Numbers. Each stores the number in *out (when out is not null) and
  // returns it; *end (when end is not null) receives the position in this
  // string's array behind the last byte read, or the start when there is no
  // number, and the result is then 0. Integers are decimal with the 32-bit
  // ranges of strtol and strtoul (out-of-range values give the nearest
  // bound); a short takes the low 16 bits of the 32-bit result. Floating
  // values are read in the "C" locale.
  short Value(short *out, char const **end = nullptr) const;
  int Value(int *out, char const **end = nullptr) const;
  unsigned int Value(unsigned int *out, char const **end = nullptr) const;
  float Value(float *out, char const **end = nullptr) const;
  double Value(double *out, char const **end = nullptr) const;

  // Natural order with other, as _tcsnumcmp: below 0, 0 or above 0.
  int CompareAlNum(char const *other) const;

  // --- Wildcards, byte by byte and case-sensitive.

  // 1 when the string holds any of '*', '?' and '['.
  int IsPattern() const;
  // 1 when the brackets of the string are sound as a pattern (an empty
  // string is), else 0 with *error (when error is not null) set to: -1 a
  // backslash with nothing behind it in a class, -2 a range with no upper
  // end, -3 a class not closed, -4 an empty class "[]". *error is 0 on
  // success. '!' and '^' are ordinary members here.
  int IsValidPattern(int *error) const;
  // 1 when the whole string matches pattern: '*' any run of bytes, '?' one
  // byte, "[...]" one byte of a class ("[!...]" or "[^...]" negated, "a-z"
  // ranges in either order compared as signed chars, '\' taking the next
  // byte literally), anything else itself. Text running out leaves a match
  // only when exactly one '*' is left of the pattern; a bad class reached
  // by the walk fails the test. Time is at most proportional to the product
  // of the two lengths, and no recursion is used.
  int Match(CString const &pattern) const;

 private:
  SYS_String Slice(std::int64_t first, std::int64_t count) const;
  // Makes the string its count bytes from first on, in place when private.
  void Keep(int first, int count);
};

// SYS_String's case-blind twin for map keys: the same representation and
// operations; hashing and comparing it fold case.
struct TOVIK_API SYS_StrNoCase : SYS_String {
  using SYS_String::SYS_String;
  using SYS_String::operator=;
  SYS_StrNoCase() noexcept = default;
  SYS_StrNoCase(SYS_StrNoCase const &other) noexcept = default;
  SYS_StrNoCase(SYS_StrNoCase &&other) noexcept = default;
  SYS_StrNoCase(SYS_String const &other) noexcept : SYS_String(other) {}  // NOLINT
  SYS_StrNoCase &operator=(SYS_StrNoCase const &other) noexcept = default;
  SYS_StrNoCase &operator=(SYS_StrNoCase &&other) noexcept = default;
  ~SYS_StrNoCase() = default;
};

// Compares two texts so that numbers in them count by value ("R2" before
// "R10", "R007" equal to "R7") and '$' sorts after every other character
// ("a$" after "ab"). Below 0, 0 or above 0; null counts as empty. A number
// beyond 32 bits counts as the 32-bit bound.
TOVIK_API int _tcsnumcmp(char const *a, char const *b);

#endif  // TOVIK_SYS_STRING_H
