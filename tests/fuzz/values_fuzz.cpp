// Fuzzes what turns typed text into values: the number scanners in both code
// pages, piece extraction with any separator (NUL included), SimpleScanf with
// every format, the SYS_Convert parsers in every unit (and a unit outside the
// table) with a parse, format, parse whose value must settle, and SCC_Variant rules
// of any shape.
//
// Input: one control byte, then a text, a NUL and a second text (the rule).
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "mbtext.h"
#include "scc_convertor.h"
#include "sys_convert.h"
#include "sys_exception.h"
#include "sys_scan.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

void CheckScanners(char const *t, std::uint8_t control) {
  std::size_t const length = std::strlen(t);
  for (int kind = 0; kind <= 4; ++kind) {
    char const *const end = kind < 4 ? getinteger(t, kind) : getdouble(t, control & 2);
    Require(end == nullptr || (end > t && end <= t + length));
  }
  char const separators[] = {',', '\0', static_cast<char>(0xE9)};
  char const separator = separators[control % 3];
  SYS_String piece;
  std::size_t pieces = 0;
  while (SysExtractSubString(piece, t, static_cast<int>(pieces), separator) == 1) Require(pieces++ <= length);
  static char const *const formats[] = {"%d", "%sd", "%f", "%sf", "%u", "%x", "%", ""};
  double value[2] = {0, 0};
  try {
    SimpleScanf(t, formats[(control >> 2) % 8], value);
  } catch (SYS_Exception const &) {
  }
}

void CheckValueText(char const *t, std::uint8_t control) {
  SYS_Convert convert(static_cast<SYS_UnitType>(control % 5), SYS_Point(1000, -2000));
  double d = 0;
  std::int32_t first = 0, second = 0, third = 0;
  convert.Str2Long(t, &first);
  convert.Str2CoordX(t, &first);
  convert.Str2CoordY(t, &d);
  convert.Str2Angle(t, &first);
  if (convert.Str2Base(t, &first) == 1) {
    Require(first >= -SYS_MAX_COORD && first <= SYS_MAX_COORD);
    // A tiny negative value shows as "-0" and reads back as 0: values settle, texts may not.
    Require(convert.Str2Base(convert.Base2Str(first), &second) == 1);
    Require(convert.Str2Base(convert.Base2Str(second), &third) == 1 && third == second);
  }
  convert.SetUnitPrecision(static_cast<int>(control) * 5 - 300);
  char buffer[SYS_Convert::kMaxNumberText];
  if (convert.Str2Base(t, &d) == 1) Require(std::strlen(convert.Base2Str(buffer, d)) < sizeof buffer);
}

void CheckRule(char const *t, char const *rule, std::uint8_t control) {
  static SCC_Convertor same;
  SCC_Variant const kinds[] = {SCC_Variant(t), SCC_Variant(static_cast<double>(std::strlen(t)) - 5.5),
                               SCC_Variant()};
  SCC_Variant const value = kinds[control % 3];
  try {
    int const valid = value.Validate(rule, (control & 4) != 0 ? &same : nullptr);
    Require(valid == 1 ? value == kinds[control % 3] : !value.IsEmpty());
  } catch (SYS_Exception const &e) {
    Require(!e.GetText().IsEmpty());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
  if (size == 0) return 0;
  std::uint8_t const control = data[0];
  std::string const rest(reinterpret_cast<char const *>(data) + 1, size - 1);
  std::size_t const split = rest.find('\0');
  std::string const text = rest.substr(0, split);
  std::string const rule = split == std::string::npos ? std::string() : rest.substr(split + 1);
  tovik::mb::SetCodePage((control & 128) != 0 ? tovik::mb::CodePage::DoubleByte : tovik::mb::CodePage::SingleByte);
  CheckScanners(text.c_str(), control);
  tovik::mb::SetCodePage(tovik::mb::CodePage::SingleByte);
  CheckValueText(text.c_str(), control);
  CheckRule(text.c_str(), rule.c_str(), control);
  return 0;
}
