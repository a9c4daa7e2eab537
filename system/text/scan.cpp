#include "sys_scan.h"

#include <cstdarg>
#include <cstdint>
#include <cstring>

#include "mbtext.h"
#include "numtext.h"
#include "sys_exception.h"
#include "sys_translation.h"

namespace mb = tovik::mb;

namespace {

bool IsSign(unsigned c) { return c == '+' || c == '-'; }

bool IsHexDigit(unsigned c) { return mb::IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

bool IsIntegerDigit(unsigned c, int kind) {
  if (kind == SYS_INT_HEX) return IsHexDigit(c);
  return mb::IsDigit(c) && (kind != SYS_INT_OCTAL || c <= '7');
}

// Whole when the scanner stopped at the terminator.
int IsWhole(char const *end) { return end != nullptr && *end == '\0' ? 1 : 0; }

// The text goes in as an argument, never as the format, so that a translation
// holding a '%' cannot read arguments that are not there.
[[noreturn]] void ThrowText(int id) { throw SYS_Exception("%s", static_cast<char const *>(TR(id))); }

char const *SkipBlanks(char const *p) {
  while (*p == ' ' || *p == '\t') ++p;
  return p;
}

}  // namespace

char *getinteger(char const *text, int kind) {
  if (text == nullptr) return nullptr;
  bool digit = false;
  char const *p = text;
  for (; *p != '\0'; p = mb::Inc(p)) {
    unsigned const c = mb::CharCode(p);
    if (IsIntegerDigit(c, kind)) {
      digit = true;
    } else if (!IsSign(c)) {
      break;
    }
  }
  return digit ? const_cast<char *>(p) : nullptr;
}

int isinteger(char const *text, int kind) { return IsWhole(getinteger(text, kind)); }
int isdecinteger(char const *text) { return isinteger(text, SYS_INT_DECIMAL); }
int isoctinteger(char const *text) { return isinteger(text, SYS_INT_OCTAL); }
int ishexinteger(char const *text) { return isinteger(text, SYS_INT_HEX); }

char *getdouble(char const *text, int plain) {
  if (text == nullptr) return nullptr;
  enum { NoExponent, ExponentStarted, ExponentDigits } exponent = NoExponent;
  bool mantissaDigit = false;
  bool dot = false;
  char const *p = text;
  for (; *p != '\0'; p = mb::Inc(p)) {
    unsigned const c = mb::CharCode(p);
    if (IsSign(c)) continue;
    if (c == '.') {
      if (dot || exponent != NoExponent) break;
      dot = true;
    } else if (c == 'E' || c == 'e') {
      if (plain != 0 || exponent != NoExponent) break;
      exponent = ExponentStarted;
    } else if (mb::IsDigit(c)) {
      if (exponent == NoExponent) {
        mantissaDigit = true;
      } else {
        exponent = ExponentDigits;
      }
    } else {
      break;
    }
  }
  return mantissaDigit && exponent != ExponentStarted ? const_cast<char *>(p) : nullptr;
}

int isdouble(char const *text, int plain) { return IsWhole(getdouble(text, plain)); }
int isdecdouble(char const *text) { return isdouble(text, 1); }

int SysExtractSubString(SYS_String &out, char const *text, int index, char separator) {
  if (text == nullptr) return 0;
  // A '\0' separator would be found at the terminator: the text is one piece.
  char const *piece = index >= 0 ? text : nullptr;
  for (int i = 0; i < index && piece != nullptr; ++i) {
    piece = separator != '\0' ? std::strchr(piece, separator) : nullptr;
    if (piece != nullptr) ++piece;
  }
  if (piece == nullptr) {
    out = SYS_String();
    return 0;
  }
  char const *const end = separator != '\0' ? std::strchr(piece, separator) : nullptr;
  out = end != nullptr ? SYS_String(piece, static_cast<int>(end - piece)) : SYS_String(piece);
  return 1;
}

SYS_String FormattedString(char const *format, ...) {
  SYS_String result;
  va_list arguments;
  va_start(arguments, format);
  result.FormatV(format, arguments);
  va_end(arguments);
  return result;
}

int SimpleScanf(char const *text, char const *format, ...) {
  if (format == nullptr || format[0] == '\0') return 0;
  char const *letter = format + 1;
  bool const shortResult = *letter == 's';
  if (*letter == 'l' || shortResult) ++letter;
  char const *const start = SkipBlanks(text != nullptr ? text : "");
  char const *end = start;
  double value = 0.0;
  switch (*letter) {
    case 'd': {
      std::int32_t const integer = tovik::num::StrToL(start, &end);
      if (integer == 0 && *start != '0' && *start != '\0') ThrowText(45060);
      value = integer;
      break;
    }
    case 'f':
      value = tovik::num::StrToD(start, &end);
      break;
    case 'u':
      if (*start == '-') ThrowText(45061);
      return 0;
    default:
      return 0;
  }
  if (*SkipBlanks(end) != '\0') ThrowText(*letter == 'd' ? 45060 : 45062);

  va_list arguments;
  va_start(arguments, format);
  void *const destination = va_arg(arguments, void *);
  va_end(arguments);
  if (shortResult) {
    // Written as "not inside" so that NaN is out of range too.
    if (!(value >= -32768.0 && value <= 32767.0)) ThrowText(45063);
    *static_cast<short *>(destination) = static_cast<short>(value);
  } else if (*letter == 'f') {
    *static_cast<double *>(destination) = value;
  } else {
    *static_cast<std::int32_t *>(destination) = static_cast<std::int32_t>(value);
  }
  return 1;
}
