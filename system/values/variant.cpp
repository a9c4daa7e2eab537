#include "scc_variant.h"

#include "mbtext.h"
#include "numtext.h"
#include "scc_convertor.h"
#include "sys_exception.h"
#include "sys_scan.h"
#include "sys_translation.h"

namespace {

// A range rule: an opening character, two bounds and a closing character, as
// "%c %lf , %lf %c" reads them: the opening character is the first byte
// whatever it is, and blanks may stand before each following field.
struct Range {
  char open = 0, close = 0;
  double low = 0.0, high = 0.0;
};

char const *SkipSpace(char const *p) {
  while (tovik::mb::IsSpace(static_cast<unsigned char>(*p))) ++p;
  return p;
}

bool ReadBound(char const *&p, double &bound) {
  char const *end = nullptr;
  bound = tovik::num::StrToD(p, &end);
  if (end == p) return false;
  p = end;
  return true;
}

bool ReadRange(char const *rule, Range &range) {
  char const *p = rule;
  if (*p == '\0') return false;
  range.open = *p++;
  if (!ReadBound(p, range.low)) return false;
  p = SkipSpace(p);
  if (*p++ != ',') return false;
  if (!ReadBound(p, range.high)) return false;
  p = SkipSpace(p);
  if (*p == '\0') return false;
  range.close = *p;
  return true;
}

bool Inside(double value, Range const &range) {
  bool const aboveLow = range.open == '[' ? value >= range.low : value > range.low;
  return aboveLow && (range.close == ']' ? value <= range.high : value < range.high);
}

double ConvertBack(SCC_Convertor &convertor, double bound) {
  return static_cast<double>(convertor.Convert(SCC_Variant(bound), 0));
}

double ReadDouble(SYS_String const &text) {
  double value = 0.0;
  SimpleScanf(text, "%f", &value);
  return value;
}

}  // namespace

SCC_Variant::SCC_Variant(long value) : type(ValueLong), longValue(0), doubleValue(0.0) {
  if (value >= INT32_MIN && value <= INT32_MAX) {
    longValue = static_cast<std::int32_t>(value);
  } else {
    type = ValueDouble;
    doubleValue = static_cast<double>(value);
  }
}

void SCC_Variant::Clear() {
  stringValue = SYS_String();
  type = ValueEmpty;
  longValue = 0;
  doubleValue = 0.0;
}

SCC_Variant &SCC_Variant::operator=(SCC_Variant const &other) {
  if (&other == this) return *this;
  Clear();
  type = other.type;
  switch (type) {
    case ValueLong: longValue = other.longValue; break;
    case ValueDouble: doubleValue = other.doubleValue; break;
    case ValueString: stringValue = other.stringValue; break;
    case ValueEmpty: break;
  }
  return *this;
}

int SCC_Variant::operator==(SCC_Variant const &other) const {
  if (type == ValueEmpty && other.type == ValueEmpty) return 1;
  switch (GetSuperiorType(other.type)) {
    case ValueLong:
      return longValue == other.longValue ? 1 : 0;
    case ValueDouble: {
      double const a = *this;
      double const b = other;
      return a < b || a > b ? 0 : 1;
    }
    case ValueString: {
      SYS_String const a = *this;
      SYS_String const b = other;
      return tovik::mb::Cmp(a, b) == 0 ? 1 : 0;
    }
    case ValueEmpty: break;
  }
  return 0;
}

SCC_Variant::operator int() const {
  double value = 0.0;
  switch (type) {
    case ValueLong: return longValue;
    case ValueDouble: value = doubleValue; break;
    case ValueString: value = ReadDouble(stringValue); break;
    case ValueEmpty: return 0;
  }
  // Tested as "not inside", so that NaN fails too.
  if (!(value >= -2147483648.0 && value <= 2147483647.0)) {
    throw SYS_Exception("%s", static_cast<char const *>(TR(45063)));
  }
  return static_cast<std::int32_t>(value);
}

SCC_Variant::operator double() const {
  switch (type) {
    case ValueLong: return longValue;
    case ValueDouble: return doubleValue;
    case ValueString: return ReadDouble(stringValue);
    case ValueEmpty: break;
  }
  return 0.0;
}

SCC_Variant::operator SYS_String() const {
  SYS_String text;
  switch (type) {
    case ValueLong:
      text.Format("%d", longValue);
      break;
    case ValueDouble:
      text.Format("%f", doubleValue);
      if (text.Find('.') >= 0) text.TrimRight("0");
      break;
    case ValueString:
      return stringValue;
    case ValueEmpty:
      break;
  }
  return text;
}

int SCC_Variant::Validate(SYS_String rule, SCC_Convertor *convertor) const {
  if (type == ValueEmpty) return 1;
  SCC_Variant tested = convertor != nullptr ? convertor->Convert(*this, 1) : *this;
  if (rule.IsEmpty()) return 1;
  bool const mark = rule[0] == '#';
  if (mark) rule = rule.Mid(1);
  if (convertor != nullptr && !mark) tested = *this;

  Range range;
  if (ReadRange(rule, range)) {
    if (Inside(static_cast<double>(tested), range)) return 1;
    if (mark && convertor != nullptr) {
      range.low = ConvertBack(*convertor, range.low);
      range.high = ConvertBack(*convertor, range.high);
    }
    SYS_String const message =
        FormattedString(TR(45064), range.open, range.low, range.high, range.close);
    type = ValueString;
    longValue = 0;
    doubleValue = 0.0;
    stringValue = message;
    return 0;
  }
  char const *end = nullptr;
  std::int32_t const length = tovik::num::StrToL(rule, &end);
  if (end == static_cast<char const *>(rule)) return 1;  // neither form: no rule to hold
  return stringValue.GetLength() <= length ? 1 : 0;
}
