// Number text as the runtime library reads and writes it, made locale-proof.
//
// Tovik's numbers travel as text in files, profiles and user input, and a
// decimal comma of the process locale must never change what they mean. So the
// parsers here follow the "C" locale whatever the process has set, and the
// integer parsers have the 32-bit ranges of long and unsigned long that the
// library's texts were written for. None of them touches errno.
#ifndef TOVIK_NUMTEXT_H
#define TOVIK_NUMTEXT_H

#include <cstddef>
#include <cstdint>

#include "tovik_export.h"

namespace tovik::num {

// strtol with base 10 and a 32-bit long: white space, an optional sign, then
// digits. A value outside 32 bits gives INT32_MIN or INT32_MAX. When end is
// not null it receives the byte behind the last digit, or s when no digit
// follows (the white space and sign are then not consumed). A null s reads as
// an empty text.
TOVIK_API std::int32_t StrToL(char const *s, char const **end) noexcept;

// strtoul with base 10 and a 32-bit unsigned long: as StrToL, a minus sign
// negating the value modulo 2^32; a magnitude beyond 32 bits gives UINT32_MAX.
TOVIK_API std::uint32_t StrToUL(char const *s, char const **end) noexcept;

// strtod in the "C" locale: decimal and hexadecimal forms, "inf" and "nan";
// out of range gives a signed HUGE_VAL or a value rounded towards 0.
TOVIK_API double StrToD(char const *s, char const **end) noexcept;

// As StrToL and StrToD, and outOfRange (when not null) tells whether the
// value was beyond the type's range, as strtol and strtod report by ERANGE
// (for a double also an underflow to a tiny or zero value).
TOVIK_API std::int32_t StrToL(char const *s, char const **end, bool *outOfRange) noexcept;
TOVIK_API double StrToD(char const *s, char const **end, bool *outOfRange) noexcept;

// snprintf with "%.*f" in the "C" locale: writes value with decimals digits
// behind the point (a negative count means 0) into buffer, cut to size - 1
// bytes and a NUL. Returns the length the whole text has.
TOVIK_API int FormatFixed(char *buffer, std::size_t size, double value, int decimals) noexcept;

// For its lifetime, makes the printf and scanf families of this thread use
// the "C" locale, so that "%f" writes and reads a decimal point.
class TOVIK_API CLocaleScope {
 public:
  CLocaleScope() noexcept;
  ~CLocaleScope();
  CLocaleScope(CLocaleScope const &) = delete;
  CLocaleScope &operator=(CLocaleScope const &) = delete;

 private:
  void *previous;  // the thread's locale_t before the scope
};

}  // namespace tovik::num

#endif  // TOVIK_NUMTEXT_H
