// SCC_Variant: the tagged value in which properties and convertors pass their
// data: a 32-bit integer, a double, a text, or nothing.
//
// A variant converts freely between its kinds, compares across kinds by the
// superior of the two (integer < double < text < empty), and checks itself
// against a validation rule, the small language in which a property says what
// it accepts:
//   "[0,100]", "(0,1]"   a range: "[" and "]" include their bound, any other
//                        opening or closing character excludes it; blanks may
//                        stand between the fields;
//   "#[0.1,5]"           the same range, meant for the value after the
//                        property's convertor;
//   "32"                 a length: the text may hold at most 32 bytes.
// Numbers are read and written in the "C" locale: the period is the only
// decimal separator. Text that is no number throws SYS_Exception when it is
// read as a number, and so does a double outside the 32-bit range when it is
// read as an integer. A variant is a plain value with no virtual function.
#ifndef TOVIK_SCC_VARIANT_H
#define TOVIK_SCC_VARIANT_H

#include <cstdint>

#include "sys_string.h"
#include "tovik_export.h"

class SCC_Convertor;

class TOVIK_API SCC_Variant {
 public:
  // The numbers give the order of superiority used by comparison.
  enum ValueType { ValueLong = 1, ValueDouble = 2, ValueString = 3, ValueEmpty = 4 };

  SCC_Variant() : type(ValueEmpty), longValue(0), doubleValue(0.0) {}
  SCC_Variant(int value) : type(ValueLong), longValue(value), doubleValue(0.0) {}  // NOLINT: implicit
  // A native long inside the 32-bit range is an integer; beyond it, a double,
  // so that no value is cut.
  SCC_Variant(long value);  // NOLINT: implicit
  SCC_Variant(double value) : type(ValueDouble), longValue(0), doubleValue(value) {}  // NOLINT
  SCC_Variant(CString const &text) : type(ValueString), longValue(0), doubleValue(0.0), stringValue(text) {}  // NOLINT
  // A null text gives an empty text (not an empty variant).
  SCC_Variant(char const *text) : type(ValueString), longValue(0), doubleValue(0.0), stringValue(text) {}  // NOLINT
  SCC_Variant(SCC_Variant const &other) = default;
  ~SCC_Variant() = default;

  // Empty, with the numbers 0 and the text empty.
  void Clear();
  bool IsEmpty() const { return type == ValueEmpty; }
  ValueType GetType() const { return type; }

  // Takes other's type and value; assigning a variant to itself keeps it.
  SCC_Variant &operator=(SCC_Variant const &other);

  // Two empty variants are equal; one empty side is never equal. Otherwise
  // both sides are compared as the superior type: as integers, as doubles
  // (equal unless one is less or greater), or as texts, character by
  // character. So 2.0 equals "2." but not "2", and 1 equals 1.0.
  int operator==(SCC_Variant const &other) const;
  int operator!=(SCC_Variant const &other) const { return operator==(other) ? 0 : 1; }

  // The value as a 32-bit integer: a double truncated toward 0 when it lies
  // in -2147483648.0 to 2147483647.0 (bounds included), else SYS_Exception
  // "Value out of range." (NaN and infinities too); a text read as a double
  // first (SimpleScanf "%f": blank text is 0, other non-numbers throw); 0
  // when empty.
  operator int() const;
  // The same value, for callers with a native long.
  operator long() const { return operator int(); }
  // The value as a double: text read as above; 0.0 when empty.
  operator double() const;
  // The value as text: an integer in decimal; a double by "%f" with the zeros
  // behind the point cut but the point kept (2.0 gives "2.", 1e-7 "0.");
  // empty when empty.
  operator SYS_String() const;

  // 1 when the variant passes rule, else 0. An empty variant and an empty
  // rule pass. With a range rule the value is read as a double (a text that
  // is no number throws); with a convertor and a "#" rule, the value after
  // convertor->Convert(*this, 1) is tested instead. When the value fails a
  // range, the variant becomes the text "Please enter a value within the
  // [lo,hi] range." (TR 45064; with "#" and a convertor the bounds are
  // converted back with direction 0): this is how the caller gets the reason,
  // and why a constant variant changes. A length rule compares the length of
  // the variant's own text (0 for a number). A rule of neither form passes.
  int Validate(SYS_String rule, SCC_Convertor *convertor) const;

 protected:
  // The greater of type and other, by number.
  ValueType GetSuperiorType(ValueType other) const { return other > type ? other : type; }

  // Mutable because Validate, a constant operation, stores its message here.
  mutable ValueType type;
  mutable std::int32_t longValue;
  mutable double doubleValue;
  mutable SYS_String stringValue;
};

#endif  // TOVIK_SCC_VARIANT_H
