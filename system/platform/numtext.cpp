#include "numtext.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <locale.h>

namespace tovik::num {

namespace {

// One "C" locale object for the process, made on first use and kept.
locale_t CLocale() noexcept {
  static locale_t const c = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
  return c;
}

bool IsSpace(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }

// The common part of StrToL and StrToUL: the sign and the magnitude, the
// latter capped just above 32 bits so that no run of digits overflows.
struct Parsed {
  bool negative = false;
  std::uint64_t magnitude = 0;
  char const *end = nullptr;
};

constexpr std::uint64_t kCap = UINT64_C(0x100000000);

Parsed ParseDecimal(char const *s) noexcept {
  Parsed result;
  if (s == nullptr) {
    result.end = "";
    return result;
  }
  result.end = s;
  char const *p = s;
  while (IsSpace(*p)) ++p;
  if (*p == '-' || *p == '+') {
    result.negative = *p == '-';
    ++p;
  }
  if (*p < '0' || *p > '9') {
    result.negative = false;
    return result;
  }
  for (; *p >= '0' && *p <= '9'; ++p) {
    result.magnitude = result.magnitude * 10 + static_cast<unsigned>(*p - '0');
    if (result.magnitude > kCap) result.magnitude = kCap;
  }
  result.end = p;
  return result;
}

}  // namespace

std::int32_t StrToL(char const *s, char const **end) noexcept { return StrToL(s, end, nullptr); }

std::int32_t StrToL(char const *s, char const **end, bool *outOfRange) noexcept {
  Parsed const r = ParseDecimal(s);
  if (end != nullptr) *end = r.end;
  std::uint64_t const limit = r.negative ? UINT64_C(0x80000000) : INT32_MAX;
  if (outOfRange != nullptr) *outOfRange = r.magnitude > limit;
  if (r.magnitude >= limit) return r.negative ? INT32_MIN : INT32_MAX;
  return r.negative ? -static_cast<std::int32_t>(r.magnitude) : static_cast<std::int32_t>(r.magnitude);
}

std::uint32_t StrToUL(char const *s, char const **end) noexcept {
  Parsed const r = ParseDecimal(s);
  if (end != nullptr) *end = r.end;
  if (r.magnitude > UINT32_MAX) return UINT32_MAX;
  auto const value = static_cast<std::uint32_t>(r.magnitude);
  return r.negative ? 0u - value : value;
}

double StrToD(char const *s, char const **end) noexcept { return StrToD(s, end, nullptr); }

double StrToD(char const *s, char const **end, bool *outOfRange) noexcept {
  if (s == nullptr) s = "";
  int const savedErrno = errno;
  errno = 0;
  char *stop = nullptr;
  locale_t const c = CLocale();
  double const value = c != static_cast<locale_t>(nullptr) ? strtod_l(s, &stop, c) : std::strtod(s, &stop);
  if (outOfRange != nullptr) *outOfRange = errno == ERANGE;
  errno = savedErrno;
  if (end != nullptr) *end = stop;
  return value;
}

int FormatFixed(char *buffer, std::size_t size, double value, int decimals) noexcept {
  CLocaleScope const cLocale;
  return std::snprintf(buffer, size, "%.*f", decimals < 0 ? 0 : decimals, value);
}

CLocaleScope::CLocaleScope() noexcept : previous(uselocale(CLocale())) {}

CLocaleScope::~CLocaleScope() { uselocale(static_cast<locale_t>(previous)); }

}  // namespace tovik::num
