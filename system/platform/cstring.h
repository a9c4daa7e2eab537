// CString: the host framework's reference-counted, copy-on-write text.
//
// A CString is one pointer to a NUL-terminated character array, in front of
// which sits a header:
//
//   struct Block {
//     std::int32_t nRefs;          // owners; -1 marks the shared empty string
//     std::int32_t nDataLength;    // bytes in use, without the NUL
//     std::int32_t nAllocLength;   // bytes the array can hold, without the NUL
//     char         data[nAllocLength + 1];   // <- m_pchData points here
//   };
//
// Copies share one block and bump its count; every write goes through one
// step that makes the block private first (copy before write). Every empty
// string that was never written points at one static, read-only block whose
// count is -1: no copy, release or write touches it, so it is never freed.
//
// Lengths and positions are bytes of the process code page (mbtext.h). The
// array may hold NULs before its end; comparisons, like the C functions, stop
// at the first one. Exhausted memory, and a length beyond what the 32-bit
// header can hold, throw std::bad_alloc; the string is then unchanged.
//
// Written for one thread: the count is a plain integer.
#ifndef TOVIK_CSTRING_H
#define TOVIK_CSTRING_H

#include <cstdarg>
#include <cstdint>

#include "tovik_export.h"

// The header in front of every array.
struct CStringData {
  std::int32_t nRefs;
  std::int32_t nDataLength;
  std::int32_t nAllocLength;

  char *data() noexcept { return reinterpret_cast<char *>(this + 1); }
};

namespace tovik::platform_detail {
// The block of the shared empty string: a header and its lone NUL.
struct CStringEmptyBlock {
  CStringData header;
  char nul;
};
extern TOVIK_API CStringEmptyBlock const cstringEmptyBlock;
}  // namespace tovik::platform_detail

class TOVIK_API CString {
 public:
  // The longest text a CString can hold.
  static constexpr std::int32_t kMaxLength = INT32_MAX - 64;

  CString() noexcept : m_pchData(EmptyArray()) {}
  CString(CString const &other) noexcept : m_pchData(other.m_pchData) { AddRef(GetData()); }
  // Leaves other empty.
  CString(CString &&other) noexcept : m_pchData(other.m_pchData) { other.m_pchData = EmptyArray(); }
  // ch repeated; a count of 0 or less gives an empty string.
  CString(char ch, int repeat);
  // A copy of the text up to its NUL; null gives an empty string.
  CString(char const *text);  // NOLINT: converts implicitly, as the framework's does
  // The first length bytes of text, NULs among them kept: the caller's
  // buffer must hold them. Null or a length of 0 or less gives empty.
  CString(char const *text, int length);
  // UTF-16 text converted to the process code page: in the single-byte page
  // a code unit below 256 becomes that byte and any other unit '?'; in the
  // double-byte page a unit below 256 that is no lead byte becomes that byte
  // and any other unit '?', so the result never holds a broken character.
  CString(unsigned short const *wide);  // NOLINT: converts implicitly
  ~CString() { Release(GetData()); }

  // Assignments take the new text before they let go of the old, so a
  // string may be assigned from itself or from a pointer into its own array.
  CString const &operator=(CString const &other) noexcept {
    // Count the new block before releasing the old one: they may be the same.
    AddRef(other.GetData());
    Release(GetData());
    m_pchData = other.m_pchData;
    return *this;
  }
  CString const &operator=(CString &&other) noexcept {
    if (this != &other) {
      Release(GetData());
      m_pchData = other.m_pchData;
      other.m_pchData = EmptyArray();
    }
    return *this;
  }
  CString const &operator=(char const *text);
  CString const &operator=(unsigned short const *wide);

  // Appends; the array is private afterwards. Appending grows the capacity
  // geometrically, so a string built by appends costs amortised linear time.
  CString const &operator+=(char ch);
  CString const &operator+=(char const *text);
  CString const &operator+=(CString const &text);

  // Bytes in use, without the NUL.
  int GetLength() const noexcept { return GetData()->nDataLength; }
  bool IsEmpty() const noexcept { return GetData()->nDataLength == 0; }
  // The array: valid until the string is next written or destroyed.
  operator char const *() const noexcept { return m_pchData; }

  // Replaces the content by printf-style formatting, done in the "C" locale.
  // The arguments may point into this string. A null format, or one that
  // formatting rejects, gives an empty string.
  void Format(char const *format, ...) __attribute__((format(printf, 2, 3)));
  void FormatV(char const *format, va_list arguments);

  // Makes the array private with room for at least minLength bytes and a
  // NUL, keeps the text, and returns the array for writing. Always a private
  // block, even for an empty string and a length of 0.
  char *GetBuffer(int minLength);
  // Ends the writing begun by GetBuffer: the length becomes newLength, or
  // the bytes before the first NUL when newLength is negative; a length
  // beyond the capacity is cut to it.
  void ReleaseBuffer(int newLength = -1);

  // Replaces every occurrence, walking by characters of the code page, and
  // returns how many there were. The array is copied only if one was found.
  int Replace(char oldChar, char newChar);
  // Replaces every occurrence of oldText, left to right and not overlapping,
  // also behind NULs inside the array; returns their number. A null or empty
  // oldText replaces nothing; a null newText counts as empty.
  int Replace(char const *oldText, char const *newText);

 protected:
  CStringData *GetData() const noexcept { return reinterpret_cast<CStringData *>(m_pchData) - 1; }
  // Makes the array private; an empty string has nothing to write and stays
  // on the shared block.
  void CopyBeforeWrite();
  // Makes target a new string of count bytes of this one from index on, with
  // room for extra bytes more. Out-of-range arguments are clamped to the text.
  void AllocCopy(CString &target, int count, int index, int extra) const;

  char *m_pchData;

 private:
  static char *EmptyArray() noexcept {
    return const_cast<char *>(&tovik::platform_detail::cstringEmptyBlock.nul);
  }
  static void AddRef(CStringData *block) noexcept {
    if (block->nRefs > 0) ++block->nRefs;
  }
  static void Release(CStringData *block) noexcept {
    if (block->nRefs > 0 && --block->nRefs == 0) Free(block);
  }
  // Out of line so that the inline copy and destruction stay small.
  static void Free(CStringData *block) noexcept;
  // A new private block of capacity bytes, holding an empty text.
  static CStringData *Allocate(std::int64_t capacity);
  // Points this string at block, which it then owns, and releases the old.
  void Adopt(CStringData *block) noexcept;
  void MakeEmpty() noexcept;
  void AssignCopy(char const *text, std::int64_t length);
  void Append(char const *text, std::int64_t length);
};

// The shared empty string.
TOVIK_API CString const &AfxGetEmptyString() noexcept;

// Code-page order of two texts, each up to its first NUL; null counts as
// empty. Below 0, 0 or above 0.
TOVIK_API int CStringCompare(char const *a, char const *b) noexcept;

inline bool operator==(CString const &a, CString const &b) noexcept {
  return static_cast<char const *>(a) == static_cast<char const *>(b) || CStringCompare(a, b) == 0;
}
inline bool operator==(CString const &a, char const *b) noexcept { return CStringCompare(a, b) == 0; }
inline bool operator==(char const *a, CString const &b) noexcept { return CStringCompare(a, b) == 0; }
inline bool operator!=(CString const &a, CString const &b) noexcept { return !(a == b); }
inline bool operator!=(CString const &a, char const *b) noexcept { return !(a == b); }
inline bool operator!=(char const *a, CString const &b) noexcept { return !(a == b); }
inline bool operator<(CString const &a, CString const &b) noexcept { return CStringCompare(a, b) < 0; }
inline bool operator<(CString const &a, char const *b) noexcept { return CStringCompare(a, b) < 0; }
inline bool operator<(char const *a, CString const &b) noexcept { return CStringCompare(a, b) < 0; }
inline bool operator>(CString const &a, CString const &b) noexcept { return CStringCompare(a, b) > 0; }
inline bool operator>(CString const &a, char const *b) noexcept { return CStringCompare(a, b) > 0; }
inline bool operator>(char const *a, CString const &b) noexcept { return CStringCompare(a, b) > 0; }
inline bool operator<=(CString const &a, CString const &b) noexcept { return CStringCompare(a, b) <= 0; }
inline bool operator<=(CString const &a, char const *b) noexcept { return CStringCompare(a, b) <= 0; }
inline bool operator<=(char const *a, CString const &b) noexcept { return CStringCompare(a, b) <= 0; }
inline bool operator>=(CString const &a, CString const &b) noexcept { return CStringCompare(a, b) >= 0; }
inline bool operator>=(CString const &a, char const *b) noexcept { return CStringCompare(a, b) >= 0; }
inline bool operator>=(char const *a, CString const &b) noexcept { return CStringCompare(a, b) >= 0; }

#endif  // TOVIK_CSTRING_H
