#include <cerrno>
#include <cstring>

#include "numtext.h"
#include "sys_convert.h"

namespace {

constexpr double kDegreesPerAngleUnit = 5.555555555555555e-7;

}  // namespace

// --- Parsing -----------------------------------------------------------------

int SYS_Convert::Str2Double(char const *text, double *out) const {
  if (text == nullptr) return 0;
  if (errno == ERANGE) errno = 0;
  char const *end = nullptr;
  bool outOfRange = false;
  *out = tovik::num::StrToD(text, &end, &outOfRange);
  if (outOfRange) errno = ERANGE;
  if (*end != '\0') return 0;
  return errno == ERANGE ? 0 : 1;
}

int SYS_Convert::Str2Long(char const *text, std::int32_t *out) const {
  if (text == nullptr) return 0;
  if (errno == ERANGE) errno = 0;
  char const *end = nullptr;
  bool outOfRange = false;
  *out = tovik::num::StrToL(text, &end, &outOfRange);
  if (outOfRange) errno = ERANGE;
  if (*end != '\0') return 0;
  return errno == ERANGE ? 0 : 1;
}

int SYS_Convert::Str2Base(char const *text, std::int32_t *out) const {
  double value = 0.0;
  if (Str2Double(text, &value) == 0) return 0;
  std::int32_t const base = User2Base(value);
  if (base < -SYS_MAX_COORD || base > SYS_MAX_COORD) return 0;
  *out = base;
  return 1;
}

int SYS_Convert::Str2Base(char const *text, double *out) const {
  double value = 0.0;
  if (Str2Double(text, &value) == 0) return 0;
  *out = User2BaseDouble(value);
  return 1;
}

int SYS_Convert::Str2Measure(char const *text, std::int32_t *out) const {
  double value = 0.0;
  if (Str2Double(text, &value) == 0 || value < 0.0) return 0;
  *out = User2Base(value);
  return 1;
}

int SYS_Convert::Str2Measure(char const *text, double *out) const {
  double value = 0.0;
  if (Str2Double(text, &value) == 0 || value < 0.0) return 0;
  *out = User2BaseDouble(value);
  return 1;
}

int SYS_Convert::Str2CoordX(char const *text, std::int32_t *out) const {
  std::int32_t measure = 0;
  if (Str2Measure(text, &measure) == 0) return 0;
  *out = SYS_WrapAdd(measure, origin.x);
  return 1;
}

int SYS_Convert::Str2CoordY(char const *text, std::int32_t *out) const {
  std::int32_t measure = 0;
  if (Str2Measure(text, &measure) == 0) return 0;
  *out = SYS_WrapAdd(measure, origin.y);
  return 1;
}

int SYS_Convert::Str2CoordX(char const *text, double *out) const {
  double measure = 0.0;
  if (Str2Measure(text, &measure) == 0) return 0;
  *out = measure + origin.x;
  return 1;
}

int SYS_Convert::Str2CoordY(char const *text, double *out) const {
  double measure = 0.0;
  if (Str2Measure(text, &measure) == 0) return 0;
  *out = measure + origin.y;
  return 1;
}

int SYS_Convert::Str2Angle(char const *text, std::int32_t *out) const {
  double value = 0.0;
  if (Str2Double(text, &value) == 0) return 0;
  *out = SYS_Truncate(value * 1800000.0);
  return 1;
}

// --- Formatting --------------------------------------------------------------

char *SYS_Convert::TrimStrNumber(char const *text) {
  char *const s = const_cast<char *>(text);
  if (s == nullptr || std::strchr(s, '.') == nullptr) return s;
  char *at = s + std::strlen(s) - 1;
  while (*at == '0') --at;  // stops at the period at the latest
  if (*at == '.') {
    *at = '\0';
  } else {
    at[1] = '\0';
  }
  return s;
}

void SYS_Convert::FormatNumber(char *buffer, double value, int decimals) const {
  int const held = decimals < 0 ? 0 : (decimals > kMaxDecimals ? kMaxDecimals : decimals);
  tovik::num::FormatFixed(buffer, kMaxNumberText, value, held);
  if (zeroTrimMode != 0) TrimStrNumber(buffer);
}

char *SYS_Convert::Base2Str(char const *buffer, std::int32_t value) const {
  return Base2Str(buffer, static_cast<double>(value));
}

char *SYS_Convert::Base2Str(char const *buffer, double value) const {
  char text[kMaxNumberText];
  FormatNumber(text, Base2User(value), GetUnitPrecision());
  return std::strcpy(const_cast<char *>(buffer), text);
}

SYS_String SYS_Convert::Base2Str(std::int32_t value) const { return Base2Str(static_cast<double>(value)); }

SYS_String SYS_Convert::Base2Str(double value) const {
  char text[kMaxNumberText];
  FormatNumber(text, Base2User(value), GetUnitPrecision());
  return SYS_String(text);
}

SYS_String SYS_Convert::CoordX2Str(std::int32_t value) const { return Base2Str(SYS_WrapSub(value, origin.x)); }
SYS_String SYS_Convert::CoordX2Str(double value) const { return Base2Str(value - origin.x); }
SYS_String SYS_Convert::CoordY2Str(std::int32_t value) const { return Base2Str(SYS_WrapSub(value, origin.y)); }
SYS_String SYS_Convert::CoordY2Str(double value) const { return Base2Str(value - origin.y); }

SYS_String SYS_Convert::Point2Str(SYS_Point const &point) const {
  SYS_String text("(");
  text << CoordX2Str(point.x) << ',' << CoordY2Str(point.y) << ')';
  return text;
}

SYS_String SYS_Convert::Point2Str(SYS_DoublePoint const &point) const {
  SYS_String text("(");
  text << CoordX2Str(point.x) << ',' << CoordY2Str(point.y) << ')';
  return text;
}

SYS_String SYS_Convert::Measure2String(SYS_String const &prefix, std::int32_t value) const {
  SYS_String text(prefix);
  return text << Measure2String(value);
}

SYS_String SYS_Convert::CoordX2String(SYS_String const &prefix, std::int32_t value) const {
  SYS_String text(prefix);
  return text << CoordX2Str(value);
}

SYS_String SYS_Convert::CoordY2String(SYS_String const &prefix, std::int32_t value) const {
  SYS_String text(prefix);
  return text << CoordY2Str(value);
}

SYS_String SYS_Convert::Point2String(SYS_String const &prefix, SYS_Point const &point) const {
  SYS_String text(prefix);
  return text << Point2Str(point);
}

char *SYS_Convert::Angle2Str(char const *buffer, std::int32_t angle) const {
  char text[kMaxNumberText];
  FormatNumber(text, angle * kDegreesPerAngleUnit, angleDecimals);
  return std::strcpy(const_cast<char *>(buffer), text);
}

SYS_String SYS_Convert::Angle2Str(std::int32_t angle) const {
  char text[kMaxNumberText];
  FormatNumber(text, angle * kDegreesPerAngleUnit, angleDecimals);
  return SYS_String(text);
}
