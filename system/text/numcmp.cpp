// Natural order: numbers inside texts compare by value, '$' sorts last.
#include <cstdint>

#include "mbtext.h"
#include "sys_string.h"

namespace mb = tovik::mb;

namespace {

// In the single-byte page every byte is a character; walking bytes directly
// keeps the common case free of code-page tests.
struct ByteWalk {
  static unsigned Code(char const *p) { return static_cast<unsigned char>(*p); }
  static char const *Next(char const *p) { return p + 1; }
};

struct CharacterWalk {
  static unsigned Code(char const *p) { return mb::CharCode(p); }
  static char const *Next(char const *p) { return mb::Inc(p); }
};

// The value atoi reads at p, which stands on a digit, and the end of the
// digits. Digits are one-byte characters in every code page, so the run is
// walked by bytes. Values beyond 32 bits stay at INT32_MAX, as Atoi's do.
std::int32_t ReadNumber(char const *&p) {
  std::int32_t value = 0;
  for (; mb::IsDigit(static_cast<unsigned char>(*p)); ++p) {
    int const digit = *p - '0';
    value = value > (INT32_MAX - digit) / 10 ? INT32_MAX : value * 10 + digit;
  }
  return value;
}

template <class Walk>
int NumCmp(char const *a, char const *b) {
  while (*a != '\0' && *b != '\0') {
    unsigned const ca = Walk::Code(a);
    unsigned const cb = Walk::Code(b);
    if (mb::IsDigit(ca) && mb::IsDigit(cb)) {
      std::int32_t const va = ReadNumber(a);
      std::int32_t const vb = ReadNumber(b);
      if (va != vb) return va < vb ? -1 : 1;
      continue;
    }
    if (ca != cb) break;
    a = Walk::Next(a);
    b = Walk::Next(b);
  }
  unsigned const x = Walk::Code(a);
  unsigned const y = Walk::Code(b);
  if (x == '$' && y != '$') return 1;
  if (y == '$' && x != '$') return -1;
  return x < y ? -1 : (x > y ? 1 : 0);
}

}  // namespace

int _tcsnumcmp(char const *a, char const *b) {
  if (a == nullptr) a = "";
  if (b == nullptr) b = "";
  return mb::GetCodePage() == mb::CodePage::SingleByte ? NumCmp<ByteWalk>(a, b)
                                                       : NumCmp<CharacterWalk>(a, b);
}
