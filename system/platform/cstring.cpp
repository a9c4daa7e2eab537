#include "cstring.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "mbtext.h"
#include "numtext.h"

namespace tovik::platform_detail {
CStringEmptyBlock const cstringEmptyBlock = {{-1, 0, 0}, '\0'};
}  // namespace tovik::platform_detail

// The array of the empty block must sit where data() of its header points.
static_assert(offsetof(tovik::platform_detail::CStringEmptyBlock, nul) == sizeof(CStringData),
              "the empty string's NUL must follow its header");
static_assert(sizeof(CString) == sizeof(char *), "a CString is one pointer");

CStringData *CString::Allocate(std::int64_t capacity) {
  if (capacity < 0 || capacity > kMaxLength) throw std::bad_alloc();
  void *memory = std::malloc(sizeof(CStringData) + static_cast<std::size_t>(capacity) + 1);
  if (memory == nullptr) throw std::bad_alloc();
  auto *block = static_cast<CStringData *>(memory);
  block->nRefs = 1;
  block->nDataLength = 0;
  block->nAllocLength = static_cast<std::int32_t>(capacity);
  block->data()[0] = '\0';
  return block;
}

void CString::Free(CStringData *block) noexcept { std::free(block); }

void CString::MakeEmpty() noexcept {
  Release(GetData());
  m_pchData = EmptyArray();
}

void CString::Adopt(CStringData *block) noexcept {
  CStringData *const old = GetData();
  m_pchData = block->data();
  Release(old);
}

CString::CString(char ch, int repeat) : m_pchData(EmptyArray()) {
  if (repeat <= 0) return;
  CStringData *const block = Allocate(repeat);
  std::memset(block->data(), ch, static_cast<std::size_t>(repeat));
  block->data()[repeat] = '\0';
  block->nDataLength = repeat;
  m_pchData = block->data();
}

CString::CString(char const *text) : m_pchData(EmptyArray()) {
  AssignCopy(text, static_cast<std::int64_t>(tovik::mb::StrLen(text)));
}

CString::CString(char const *text, int length) : m_pchData(EmptyArray()) {
  if (text != nullptr && length > 0) AssignCopy(text, length);
}

CString::CString(unsigned short const *wide) : m_pchData(EmptyArray()) { *this = wide; }

CString const &CString::operator=(char const *text) {
  AssignCopy(text, static_cast<std::int64_t>(tovik::mb::StrLen(text)));
  return *this;
}

CString const &CString::operator=(unsigned short const *wide) {
  std::int64_t units = 0;
  if (wide != nullptr) {
    while (wide[units] != 0) ++units;
  }
  if (units == 0) {
    MakeEmpty();
    return *this;
  }
  CStringData *const block = Allocate(units);
  char *out = block->data();
  for (std::int64_t i = 0; i < units; ++i) {
    unsigned const unit = wide[i];
    bool const fits = unit < 256 && !tovik::mb::IsLeadByte(static_cast<unsigned char>(unit));
    out[i] = fits ? static_cast<char>(unit) : '?';
  }
  out[units] = '\0';
  block->nDataLength = static_cast<std::int32_t>(units);
  Adopt(block);
  return *this;
}

void CString::AssignCopy(char const *text, std::int64_t length) {
  if (length <= 0) {
    MakeEmpty();
    return;
  }
  CStringData *const block = GetData();
  if (block->nRefs == 1 && length <= block->nAllocLength) {
    // Private and large enough: the text may lie in this very array.
    std::memmove(m_pchData, text, static_cast<std::size_t>(length));
    m_pchData[length] = '\0';
    block->nDataLength = static_cast<std::int32_t>(length);
    return;
  }
  CStringData *const fresh = Allocate(length);
  std::memcpy(fresh->data(), text, static_cast<std::size_t>(length));
  fresh->data()[length] = '\0';
  fresh->nDataLength = static_cast<std::int32_t>(length);
  Adopt(fresh);
}

void CString::Append(char const *text, std::int64_t length) {
  if (length <= 0) return;
  CStringData *const block = GetData();
  std::int64_t const oldLength = block->nDataLength;
  std::int64_t const newLength = oldLength + length;
  if (newLength > kMaxLength) throw std::bad_alloc();
  if (block->nRefs == 1 && newLength <= block->nAllocLength) {
    // The text may be this string's own: it then ends at or before the old
    // end, so it cannot overlap the bytes written behind that end.
    std::memmove(m_pchData + oldLength, text, static_cast<std::size_t>(length));
    m_pchData[newLength] = '\0';
    block->nDataLength = static_cast<std::int32_t>(newLength);
    return;
  }
  std::int64_t capacity = newLength;
  if (block->nRefs == 1) {
    std::int64_t const grown = static_cast<std::int64_t>(block->nAllocLength) * 3 / 2 + 16;
    if (grown > capacity) capacity = grown < kMaxLength ? grown : kMaxLength;
  }
  CStringData *const fresh = Allocate(capacity);
  // The old block stays alive until Adopt, so text may point into it.
  std::memcpy(fresh->data(), m_pchData, static_cast<std::size_t>(oldLength));
  std::memcpy(fresh->data() + oldLength, text, static_cast<std::size_t>(length));
  fresh->data()[newLength] = '\0';
  fresh->nDataLength = static_cast<std::int32_t>(newLength);
  Adopt(fresh);
}

CString const &CString::operator+=(char ch) {
  Append(&ch, 1);
  return *this;
}

CString const &CString::operator+=(char const *text) {
  Append(text, static_cast<std::int64_t>(tovik::mb::StrLen(text)));
  return *this;
}

CString const &CString::operator+=(CString const &text) {
  Append(text.m_pchData, text.GetLength());
  return *this;
}

void CString::Format(char const *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  FormatV(format, arguments);
  va_end(arguments);
}

void CString::FormatV(char const *format, va_list arguments) {
  if (format == nullptr) {
    MakeEmpty();
    return;
  }
  tovik::num::CLocaleScope const cLocale;
  // Most results are short: format into the stack first, and a second time
  // into a block of the exact size only when that did not fit.
  char small[256];
  va_list first;
  va_copy(first, arguments);
  int const length = std::vsnprintf(small, sizeof small, format, first);
  va_end(first);
  if (length <= 0) {
    MakeEmpty();
    return;
  }
  if (static_cast<std::size_t>(length) < sizeof small) {
    AssignCopy(small, length);
    return;
  }
  CStringData *const fresh = Allocate(length);
  va_list second;
  va_copy(second, arguments);
  std::vsnprintf(fresh->data(), static_cast<std::size_t>(length) + 1, format, second);
  va_end(second);
  fresh->nDataLength = length;
  Adopt(fresh);
}

char *CString::GetBuffer(int minLength) {
  CStringData *const block = GetData();
  if (block->nRefs == 1 && minLength <= block->nAllocLength) return m_pchData;
  std::int64_t const length = block->nDataLength;
  CStringData *const fresh = Allocate(minLength > length ? minLength : length);
  std::memcpy(fresh->data(), m_pchData, static_cast<std::size_t>(length) + 1);
  fresh->nDataLength = static_cast<std::int32_t>(length);
  Adopt(fresh);
  return m_pchData;
}

void CString::ReleaseBuffer(int newLength) {
  CopyBeforeWrite();
  CStringData *const block = GetData();
  if (block->nRefs < 0) return;  // the shared empty string: nothing was written
  if (newLength < 0) {
    // The NUL slot behind the capacity is searched too, and written below
    // in any case, so a writer that overran by its NUL is still cut safely.
    auto const slots = static_cast<std::size_t>(block->nAllocLength) + 1;
    void const *nul = std::memchr(m_pchData, '\0', slots);
    newLength = nul != nullptr ? static_cast<int>(static_cast<char const *>(nul) - m_pchData)
                               : block->nAllocLength;
  }
  if (newLength > block->nAllocLength) newLength = block->nAllocLength;
  block->nDataLength = newLength;
  m_pchData[newLength] = '\0';
}

void CString::CopyBeforeWrite() {
  CStringData *const block = GetData();
  if (block->nRefs <= 1) return;
  CStringData *const fresh = Allocate(block->nDataLength);
  std::memcpy(fresh->data(), m_pchData, static_cast<std::size_t>(block->nDataLength) + 1);
  fresh->nDataLength = block->nDataLength;
  Adopt(fresh);
}

void CString::AllocCopy(CString &target, int count, int index, int extra) const {
  std::int64_t const length = GetLength();
  std::int64_t first = index < 0 ? 0 : (index > length ? length : index);
  std::int64_t bytes = count < 0 ? 0 : count;
  if (bytes > length - first) bytes = length - first;
  std::int64_t const room = bytes + (extra > 0 ? extra : 0);
  if (room == 0) {
    target.MakeEmpty();
    return;
  }
  CStringData *const fresh = Allocate(room);
  std::memcpy(fresh->data(), m_pchData + first, static_cast<std::size_t>(bytes));
  fresh->data()[bytes] = '\0';
  fresh->nDataLength = static_cast<std::int32_t>(bytes);
  target.Adopt(fresh);
}

int CString::Replace(char oldChar, char newChar) {
  // Only whole one-byte characters count: a byte of a two-byte character is
  // no occurrence. The first is found before copying, so that a string
  // without one stays shared.
  int const length = GetLength();
  auto const isOccurrence = [this, oldChar](int at) {
    return m_pchData[at] == oldChar && tovik::mb::CharLen(m_pchData + at) == 1;
  };
  auto const next = [this](int at) { return at + static_cast<int>(tovik::mb::CharLen(m_pchData + at)); };
  int at = 0;
  while (at < length && !isOccurrence(at)) at = next(at);
  if (at >= length) return 0;
  bool const writes = oldChar != newChar;
  if (writes) CopyBeforeWrite();
  int count = 0;
  for (; at < length; at = next(at)) {
    if (!isOccurrence(at)) continue;
    if (writes) m_pchData[at] = newChar;
    ++count;
  }
  return count;
}

int CString::Replace(char const *oldText, char const *newText) {
  std::int64_t const oldLength = static_cast<std::int64_t>(tovik::mb::StrLen(oldText));
  if (oldLength == 0) return 0;
  std::int64_t const newLength = static_cast<std::int64_t>(tovik::mb::StrLen(newText));
  char const *const begin = m_pchData;
  char const *const end = begin + GetLength();

  // Count first, segment by segment between NULs inside the array.
  std::int64_t count = 0;
  for (char const *segment = begin; segment < end; segment += std::strlen(segment) + 1) {
    for (char const *hit = segment; (hit = tovik::mb::Str(hit, oldText)) != nullptr; hit += oldLength) {
      ++count;
    }
  }
  if (count == 0) return 0;

  std::int64_t const resultLength = GetLength() + count * (newLength - oldLength);
  // Build into a new block while the old one, which oldText and newText may
  // point into, is still alive.
  CStringData *const fresh = Allocate(resultLength);
  char *out = fresh->data();
  for (char const *segment = begin; segment < end;) {
    char const *hit = tovik::mb::Str(segment, oldText);
    if (hit == nullptr) {
      std::size_t const rest = std::strlen(segment) + 1;  // the segment and its NUL
      std::size_t const copied = segment + rest > end ? rest - 1 : rest;
      std::memcpy(out, segment, copied);
      out += copied;
      segment += rest;
      continue;
    }
    std::memcpy(out, segment, static_cast<std::size_t>(hit - segment));
    out += hit - segment;
    if (newLength > 0) std::memcpy(out, newText, static_cast<std::size_t>(newLength));
    out += newLength;
    segment = hit + oldLength;
  }
  fresh->data()[resultLength] = '\0';
  fresh->nDataLength = static_cast<std::int32_t>(resultLength);
  Adopt(fresh);
  return static_cast<int>(count);
}

CString const &AfxGetEmptyString() noexcept {
  static CString const empty;
  return empty;
}

int CStringCompare(char const *a, char const *b) noexcept { return tovik::mb::Cmp(a, b); }
