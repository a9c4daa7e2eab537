// Fuzzes the value-text parsers of SYS_Convert in every unit, the formatter
// on what they read (parse, format, parse again must settle), and
// TrimStrNumber on any text.
//
// Input: one control byte (unit, decimals, trim mode), then the text.
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "sys_convert.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

void CheckParsers(SYS_Convert const &convert, char const *text) {
  double d = 0;
  std::int32_t l = 0;
  convert.Str2Double(text, &d);
  convert.Str2Long(text, &l);
  if (convert.Str2Base(text, &l) == 1) Require(l >= -SYS_MAX_COORD && l <= SYS_MAX_COORD);
  convert.Str2Base(text, &d);
  convert.Str2Measure(text, &l);
  convert.Str2Measure(text, &d);
  convert.Str2CoordX(text, &l);
  convert.Str2CoordY(text, &d);
  convert.Str2Angle(text, &l);
  errno = 0;
}

// What the user typed, read, shown and read again, shows the same.
void CheckSettles(SYS_Convert const &convert, char const *text) {
  std::int32_t first = 0, second = 0;
  if (convert.Str2Base(text, &first) == 0) return;
  SYS_String const shown = convert.Base2Str(first);
  Require(convert.Str2Base(shown, &second) == 1);
  Require(convert.Base2Str(second) == shown);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
  if (size == 0) return 0;
  std::uint8_t const control = data[0];
  std::string text(reinterpret_cast<char const *>(data) + 1, size - 1);
  char const *const t = text.c_str();

  SYS_Convert convert(static_cast<SYS_UnitType>(control & 3), SYS_Point(1000, -2000));
  CheckParsers(convert, t);
  CheckSettles(convert, t);
  // Any decimals and either trim mode: the text fits its buffer.
  convert.SetUnitPrecision(static_cast<int>(control >> 3) * 20 - 100);
  convert.SetZeroTrimMode(control & 4);
  double d = 0;
  char buffer[SYS_Convert::kMaxNumberText];
  if (convert.Str2Double(t, &d) == 1) {
    Require(std::strlen(convert.Base2Str(buffer, d)) < sizeof buffer);
  }
  convert.SetUnitType(static_cast<SYS_UnitType>(control));
  CheckParsers(convert, t);

  std::size_t const before = std::strlen(t);
  SYS_Convert::TrimStrNumber(&text[0]);
  Require(std::strlen(t) <= before);
  return 0;
}
