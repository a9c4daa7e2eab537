#include "sys_string.h"

#include <charconv>
#include <cstdint>
#include <cstring>
#include <new>

#include "mbtext.h"
#include "numtext.h"

static_assert(sizeof(SYS_String) == sizeof(CString), "SYS_String adds no data to CString");
static_assert(sizeof(SYS_StrNoCase) == sizeof(CString), "SYS_StrNoCase adds no data");
static_assert(sizeof(short) == 2 && sizeof(int) == 4, "Value relies on 16- and 32-bit integers");

namespace mb = tovik::mb;

namespace {

bool SingleBytePage() noexcept { return mb::GetCodePage() == mb::CodePage::SingleByte; }

// True when p points into the text of s, its NUL included: such a pointer
// dies when s is written.
bool PointsInto(CString const &s, char const *p) noexcept {
  auto const at = reinterpret_cast<std::uintptr_t>(p);
  auto const first = reinterpret_cast<std::uintptr_t>(static_cast<char const *>(s));
  return at >= first && at <= first + static_cast<std::uintptr_t>(s.GetLength());
}

// The character that a trim removes: white space for an empty argument,
// else the first character of the argument.
class TrimCharacter {
 public:
  explicit TrimCharacter(char const *c) noexcept : white(c == nullptr || *c == '\0'), ch(c) {}

  bool operator()(char const *p) const noexcept {
    // White space is judged on the first byte widened as a signed char, so
    // no byte of 0x80 or above counts.
    if (white) return mb::IsSpace(static_cast<unsigned>(static_cast<int>(static_cast<signed char>(*p))));
    return mb::NCmp1(p, ch) == 0;
  }

 private:
  bool white;
  char const *ch;
};

// The position of the last character before limit whose code satisfies
// match, or -1. The text behind limit is not seen: a two-byte character
// that limit cuts counts as its lead byte alone, and a NUL before limit ends
// the text.
template <class Match>
int LastBefore(char const *text, int limit, Match match) {
  if (SingleBytePage()) {
    auto const end = static_cast<int>(strnlen(text, static_cast<std::size_t>(limit)));
    for (int i = end - 1; i >= 0; --i) {
      if (match(static_cast<unsigned char>(text[i]))) return i;
    }
    return -1;
  }
  int last = -1;
  for (int i = 0; i < limit && text[i] != '\0';) {
    int const length = (i + 1 < limit) ? static_cast<int>(mb::CharLen(text + i)) : 1;
    unsigned const code = length == 2 ? mb::CharCode(text + i) : static_cast<unsigned char>(text[i]);
    if (match(code)) last = i;
    i += length;
  }
  return last;
}

}  // namespace

// ---------------------------------------------------------------- substrings

SYS_String SYS_String::Slice(std::int64_t first, std::int64_t count) const {
  std::int64_t const length = GetLength();
  if (first < 0) first = 0;
  if (count < 0) count = 0;
  if (first >= length || count == 0) return SYS_String();
  if (count > length - first) count = length - first;
  if (first == 0 && count == length) return *this;
  SYS_String part;
  AllocCopy(part, static_cast<int>(count), static_cast<int>(first), 0);
  return part;
}

SYS_String SYS_String::Mid(int first, int count) const { return Slice(first, count); }

SYS_String SYS_String::Mid(int first) const {
  return Slice(first, static_cast<std::int64_t>(GetLength()) - first);
}

SYS_String SYS_String::Left(int count) const { return Slice(0, count); }

SYS_String SYS_String::Right(int count) const {
  std::int64_t const length = GetLength();
  std::int64_t const n = count < 0 ? 0 : (count > length ? length : count);
  return Slice(length - n, n);
}

SYS_String SYS_String::SpanIncluding(char const *set) const {
  return Slice(0, static_cast<std::int64_t>(mb::Spn(m_pchData, set)));
}

SYS_String SYS_String::SpanExcluding(char const *set) const {
  return Slice(0, static_cast<std::int64_t>(mb::CSpn(m_pchData, set)));
}

// ------------------------------------------------------------------ searches

int SYS_String::Find(char c, int start) const {
  if (start < 0 || start > GetLength()) return -1;
  char const *hit = mb::Chr(m_pchData + start, static_cast<unsigned char>(c));
  return hit != nullptr ? static_cast<int>(hit - m_pchData) : -1;
}

int SYS_String::Find(char const *text, int start) const {
  if (text == nullptr || start < 0 || start >= GetLength()) return -1;
  char const *hit = mb::Str(m_pchData + start, text);
  return hit != nullptr ? static_cast<int>(hit - m_pchData) : -1;
}

int SYS_String::FindOneOf(char const *set, int start) const {
  if (set == nullptr || start < 0 || start > GetLength()) return -1;
  char const *hit = mb::PBrk(m_pchData + start, set);
  return hit != nullptr ? static_cast<int>(hit - m_pchData) : -1;
}

int SYS_String::ReverseFind(char c, int start) const {
  int const length = GetLength();
  if (c == '\0') return (start == -2 || start == length) ? length : -1;
  if (start == -2) start = length - 1;
  if (start < 0 || start >= length) return -1;
  unsigned const wanted = static_cast<unsigned char>(c);
  return LastBefore(m_pchData, start + 1, [wanted](unsigned code) { return code == wanted; });
}

int SYS_String::ReverseFindOneOf(char const *set, int start) const {
  int const length = GetLength();
  if (set == nullptr || *set == '\0') return -1;
  if (start == -2) start = length - 1;
  if (start < 0 || start >= length) return -1;
  return LastBefore(m_pchData, start + 1, [set](unsigned code) { return mb::Chr(set, code) != nullptr; });
}

// ------------------------------------------------------------------- editing

void SYS_String::Keep(int first, int count) {
  if (count <= 0) {
    CString::operator=(AfxGetEmptyString());
    return;
  }
  if (first == 0 && count == GetLength()) return;
  if (GetData()->nRefs > 1) {
    SYS_String part;
    AllocCopy(part, count, first, 0);
    *this = std::move(part);
    return;
  }
  std::memmove(m_pchData, m_pchData + first, static_cast<std::size_t>(count));
  ReleaseBuffer(count);
}

void SYS_String::Insert(int pos, char const *text) {
  std::size_t const textLength = mb::StrLen(text);
  if (textLength == 0) return;
  if (pos < 0) pos = 0;
  // A text inside this array must outlive the write below: holding a second
  // reference makes GetBuffer copy, and keeps the old array alive.
  SYS_String const keepAlive(PointsInto(*this, text) ? *this : SYS_String());
  std::int64_t const length = GetLength();
  std::int64_t const newLength = (pos > length ? pos : length) + static_cast<std::int64_t>(textLength);
  if (newLength > kMaxLength) throw std::bad_alloc();
  char *buffer = GetBuffer(static_cast<int>(newLength));
  if (pos < length) {
    std::memmove(buffer + pos + textLength, buffer + pos, static_cast<std::size_t>(length - pos));
  } else {
    std::memset(buffer + length, ' ', static_cast<std::size_t>(pos - length));
  }
  std::memcpy(buffer + pos, text, textLength);
  ReleaseBuffer(static_cast<int>(newLength));
}

void SYS_String::Delete(int pos, int count) {
  if (count < 0) return;
  if (pos < 0) pos = 0;
  int const length = GetLength();
  if (pos >= length) return;
  if (count == 0 || count > length - pos) count = length - pos;
  if (count == length) {
    CString::operator=(AfxGetEmptyString());
    return;
  }
  CopyBeforeWrite();
  std::memmove(m_pchData + pos, m_pchData + pos + count, static_cast<std::size_t>(length - pos - count));
  ReleaseBuffer(length - count);
}

void SYS_String::Replace(int pos, int count, char const *text) {
  // The delete may move or overwrite the bytes a text of our own lies in.
  bool const own = PointsInto(*this, text);
  SYS_String const ownText(own ? SYS_String(text) : SYS_String());
  Delete(pos, count);
  Insert(pos, own ? static_cast<char const *>(ownText) : text);
}

SYS_String &SYS_String::TrimRight(char const *c) {
  TrimCharacter const isTrim(c);
  char const *const text = m_pchData;
  int cut = -1;
  if (SingleBytePage()) {
    // Every byte is a character: the run of trim characters before the
    // first NUL can be found from behind.
    auto const end = static_cast<int>(std::strlen(text));
    int i = end;
    while (i > 0 && isTrim(text + i - 1)) --i;
    if (i < end) cut = i;
  } else {
    // A two-byte character can only be told from the front.
    char const *run = nullptr;
    for (char const *p = text; *p != '\0'; p = mb::Inc(p)) {
      if (!isTrim(p)) {
        run = nullptr;
      } else if (run == nullptr) {
        run = p;
      }
    }
    if (run != nullptr) cut = static_cast<int>(run - text);
  }
  if (cut >= 0) Keep(0, cut);
  return *this;
}

SYS_String &SYS_String::TrimLeft(char const *c) {
  TrimCharacter const isTrim(c);
  char const *p = m_pchData;
  while (*p != '\0' && isTrim(p)) p = mb::Inc(p);
  auto const first = static_cast<int>(p - m_pchData);
  if (first > 0) Keep(first, GetLength() - first);
  return *this;
}

SYS_String &SYS_String::AllTrim(char const *c) {
  TrimCharacter const isTrim(c);
  char const *const text = m_pchData;
  char const *first = nullptr;  // first character that stays
  char const *run = nullptr;    // start of the current run of trim characters
  char const *p = text;
  for (; *p != '\0'; p = mb::Inc(p)) {
    if (isTrim(p)) {
      if (run == nullptr) run = p;
    } else {
      if (first == nullptr) first = p;
      run = nullptr;
    }
  }
  // Without a character that stays, the walk's stop is where the kept text
  // would begin; behind a final run it is then empty.
  int const begin = static_cast<int>((first != nullptr ? first : p) - text);
  int const end = run != nullptr ? static_cast<int>(run - text) : GetLength();
  Keep(begin, end - begin);
  return *this;
}

// ----------------------------------------------------------------- appending

SYS_String &SYS_String::operator<<(int value) {
  char digits[mb::kIntTextSize];
  mb::Ltoa(value, digits);
  *this += digits;
  return *this;
}

SYS_String &SYS_String::operator<<(unsigned int value) {
  char digits[mb::kIntTextSize];
  mb::Ultoa(value, digits);
  *this += digits;
  return *this;
}

SYS_String &SYS_String::operator<<(long value) {
  char digits[24];
  *std::to_chars(digits, digits + sizeof digits - 1, value).ptr = '\0';
  *this += digits;
  return *this;
}

SYS_String &SYS_String::operator<<(unsigned long value) {
  char digits[24];
  *std::to_chars(digits, digits + sizeof digits - 1, value).ptr = '\0';
  *this += digits;
  return *this;
}

SYS_String &SYS_String::operator<<(double value) {
  SYS_String text;
  text.Format("%f", value);
  *this += text;
  return *this;
}

// ---------------------------------------------------------------- extraction

SYS_String SYS_String::operator>>(unsigned int &out) const {
  char const *end = nullptr;
  out = tovik::num::StrToUL(m_pchData, &end);
  return Mid(static_cast<int>(end - m_pchData));
}

SYS_String SYS_String::operator>>(char const *set) const {
  if (set == nullptr) return *this;
  return Mid(static_cast<int>(std::strspn(m_pchData, set)));
}

SYS_String SYS_String::operator>>(CString &out) const {
  SYS_String const self(*this);  // out may be this very string
  char const *const text = self;
  int begin = 0;
  char const *p = text;
  for (;;) {
    if (*p == '\0') break;
    if (*p != '"') {
      ++p;
    } else if (p[1] == '"') {
      p += 2;  // a doubled quote is text, and stays doubled
    } else if (p == text) {
      begin = 1;  // the opening quote
      ++p;
    } else {
      // The closing quote: it stays in the remainder.
      auto const stop = static_cast<int>(p - text);
      out = self.Mid(begin, stop - begin);
      return self.Mid(stop);
    }
  }
  out = self.Mid(begin, static_cast<int>(p - text) - begin);
  return SYS_String();
}

// ------------------------------------------------------------------- numbers

short SYS_String::Value(short *out, char const **end) const {
  auto const wide = static_cast<std::uint32_t>(tovik::num::StrToL(m_pchData, end));
  auto const value = static_cast<short>(static_cast<std::uint16_t>(wide));
  if (out != nullptr) *out = value;
  return value;
}

int SYS_String::Value(int *out, char const **end) const {
  int const value = tovik::num::StrToL(m_pchData, end);
  if (out != nullptr) *out = value;
  return value;
}

unsigned int SYS_String::Value(unsigned int *out, char const **end) const {
  unsigned int const value = tovik::num::StrToUL(m_pchData, end);
  if (out != nullptr) *out = value;
  return value;
}

float SYS_String::Value(float *out, char const **end) const {
  auto const value = static_cast<float>(tovik::num::StrToD(m_pchData, end));
  if (out != nullptr) *out = value;
  return value;
}

double SYS_String::Value(double *out, char const **end) const {
  double const value = tovik::num::StrToD(m_pchData, end);
  if (out != nullptr) *out = value;
  return value;
}

int SYS_String::CompareAlNum(char const *other) const { return _tcsnumcmp(m_pchData, other); }
