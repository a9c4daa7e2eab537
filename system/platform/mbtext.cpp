#include "mbtext.h"

#include <cstring>

namespace tovik::mb {

namespace detail {
CodePage currentCodePage = CodePage::SingleByte;
}  // namespace detail

namespace {

bool SingleByte() noexcept { return detail::currentCodePage == CodePage::SingleByte; }

char const *OrEmpty(char const *s) noexcept { return s != nullptr ? s : ""; }

int Sign(unsigned a, unsigned b) noexcept { return a < b ? -1 : (a > b ? 1 : 0); }

}  // namespace

void SetCodePage(CodePage page) noexcept { detail::currentCodePage = page; }

char const *Chr(char const *s, unsigned c) noexcept {
  if (s == nullptr) return nullptr;
  if (SingleByte()) return c > 0xFF ? nullptr : std::strchr(s, static_cast<int>(c));
  for (;; s = Inc(s)) {
    if (CharCode(s) == c) return s;
    if (*s == '\0') return nullptr;
  }
}

char const *RChr(char const *s, unsigned c) noexcept {
  if (s == nullptr) return nullptr;
  if (SingleByte()) return c > 0xFF ? nullptr : std::strrchr(s, static_cast<int>(c));
  char const *last = nullptr;
  for (;; s = Inc(s)) {
    if (CharCode(s) == c) last = s;
    if (*s == '\0') return last;
  }
}

char const *Str(char const *s, char const *t) noexcept {
  if (s == nullptr) return nullptr;
  t = OrEmpty(t);
  if (SingleByte()) return std::strstr(s, t);
  if (*t == '\0') return s;
  for (; *s != '\0'; s = Inc(s)) {
    std::size_t i = 0;
    while (t[i] != '\0' && s[i] == t[i]) ++i;
    if (t[i] == '\0') return s;
  }
  return nullptr;
}

char const *PBrk(char const *s, char const *set) noexcept {
  if (s == nullptr) return nullptr;
  set = OrEmpty(set);
  if (SingleByte()) return std::strpbrk(s, set);
  for (; *s != '\0'; s = Inc(s)) {
    if (Chr(set, CharCode(s)) != nullptr) return s;
  }
  return nullptr;
}

std::size_t Spn(char const *s, char const *set) noexcept {
  s = OrEmpty(s);
  set = OrEmpty(set);
  if (SingleByte()) return std::strspn(s, set);
  char const *p = s;
  while (*p != '\0' && Chr(set, CharCode(p)) != nullptr) p = Inc(p);
  return static_cast<std::size_t>(p - s);
}

std::size_t CSpn(char const *s, char const *set) noexcept {
  s = OrEmpty(s);
  set = OrEmpty(set);
  if (SingleByte()) return std::strcspn(s, set);
  char const *p = s;
  while (*p != '\0' && Chr(set, CharCode(p)) == nullptr) p = Inc(p);
  return static_cast<std::size_t>(p - s);
}

int ICmp(char const *a, char const *b) noexcept {
  a = OrEmpty(a);
  b = OrEmpty(b);
  // Only one-byte characters have a case; A-Z fold to a-z whatever the locale.
  auto const fold = [](unsigned c) { return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c; };
  for (;;) {
    unsigned const ca = fold(CharCode(a));
    unsigned const cb = fold(CharCode(b));
    if (ca != cb) return Sign(ca, cb);
    if (ca == 0) return 0;
    a = Inc(a);
    b = Inc(b);
  }
}

int Cmp(char const *a, char const *b) noexcept {
  a = OrEmpty(a);
  b = OrEmpty(b);
  if (SingleByte()) {
    int const r = std::strcmp(a, b);
    return r < 0 ? -1 : (r > 0 ? 1 : 0);
  }
  for (;;) {
    unsigned const ca = CharCode(a);
    unsigned const cb = CharCode(b);
    if (ca != cb) return Sign(ca, cb);
    if (ca == 0) return 0;
    a = Inc(a);
    b = Inc(b);
  }
}

std::int32_t Atoi(char const *s) noexcept {
  s = OrEmpty(s);
  while (IsSpace(static_cast<unsigned char>(*s))) ++s;
  bool const negative = *s == '-';
  if (*s == '-' || *s == '+') ++s;
  // Accumulate the magnitude with a ceiling just past the 32-bit range, so
  // that a long run of digits cannot overflow.
  std::int64_t magnitude = 0;
  for (; IsDigit(static_cast<unsigned char>(*s)); ++s) {
    magnitude = magnitude * 10 + (*s - '0');
    if (magnitude > INT64_C(0x80000000)) magnitude = INT64_C(0x80000000);
  }
  std::int64_t const value = negative ? -magnitude : magnitude;
  if (value > INT32_MAX) return INT32_MAX;
  return static_cast<std::int32_t>(value);
}

int Ultoa(std::uint32_t value, char *buffer) noexcept {
  char digits[kIntTextSize];
  int n = 0;
  do {
    digits[n++] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  for (int i = 0; i < n; ++i) buffer[i] = digits[n - 1 - i];
  buffer[n] = '\0';
  return n;
}

int Ltoa(std::int32_t value, char *buffer) noexcept {
  if (value >= 0) return Ultoa(static_cast<std::uint32_t>(value), buffer);
  buffer[0] = '-';
  // The magnitude is taken in unsigned arithmetic, so INT32_MIN needs no care.
  return 1 + Ultoa(0u - static_cast<std::uint32_t>(value), buffer + 1);
}

std::size_t StrLen(char const *s) noexcept { return s != nullptr ? std::strlen(s) : 0; }

}  // namespace tovik::mb
