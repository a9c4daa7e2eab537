// SYS_Convert: user units, and the road between what a user types or reads
// and world values.
//
// One object holds the user's current unit, the user's origin, the decimals
// shown for each unit and for angles, and whether trailing zeros are cut. It
// works against one process-wide table of the four user units, whose names
// come from the resource strings (TR) the first time any object is set up.
// World values are the integer world units and angle units of
// sys_geometry_units.h.
//
// Four kinds of value pass as text: a plain number (no unit), a base value (a
// signed length in the user's unit), a measure (a length that is not
// negative) and a coordinate (a measure from the user's origin). Angles are
// plain degrees. Parsing answers 1 or 0 and never raises a message; the
// caller fetches the texts 45000 to 45026 by TR when it tells the user.
// Number text ignores the process locale: the period is the only decimal
// separator.
//
// Formatting uses the decimals set, held to 0 to SYS_Convert::kMaxDecimals;
// the forms that write to a caller's buffer need room for the text, at most
// SYS_Convert::kMaxNumberText bytes.
#ifndef TOVIK_SYS_CONVERT_H
#define TOVIK_SYS_CONVERT_H

#include <cstdint>

#include "sys_point.h"
#include "sys_std_interface.h"
#include "sys_string.h"
#include "tovik_export.h"

enum SYS_UnitType : int {
  SYS_UNIT_MILS = 0,
  SYS_UNIT_MILLIMETERS = 1,
  SYS_UNIT_INCHES = 2,
  SYS_UNIT_MICRONS = 3
};

class TOVIK_API SYS_Convert {
 public:
  // The value of User2Base for a number whose world value does not fit in 32
  // bits: outside the working area, and the same for both signs.
  static constexpr std::int32_t kOverflow = INT32_MIN;
  // The most decimals that formatting shows.
  static constexpr int kMaxDecimals = 30;
  // Room for any number text: sign, 309 digits, point, decimals and NUL.
  static constexpr int kMaxNumberText = 1 + 309 + 1 + kMaxDecimals + 1;

  // Walks the unit table: handles 1 to 4 stand for its rows, 0 is past the
  // end. It does not fill the table: before the first SYS_Convert is set up,
  // names are empty and every row's type is 0.
  class TOVIK_API UnitTypeObj : public SYS_StdInterface {
   public:
    UnitTypeObj() : SYS_StdInterface(4) {}
    UnitTypeObj(UnitTypeObj const &) = default;
    UnitTypeObj &operator=(UnitTypeObj const &) = default;

    // The row of the current handle; "" and -1 when the handle is not in 1 to 4.
    char const *GetName() const;
    SYS_UnitType GetType() const;
  };

  // Mils at (0, 0). The int is ignored.
  SYS_Convert();
  explicit SYS_Convert(int);
  SYS_Convert(SYS_UnitType type);  // NOLINT: a unit is a setting
  explicit SYS_Convert(SYS_Point const &origin);
  SYS_Convert(SYS_UnitType type, SYS_Point const &origin);
  SYS_Convert(SYS_Convert const &) = default;
  SYS_Convert &operator=(SYS_Convert const &) = default;

  // Fills the unit table on the first call of the process; then sets the
  // unit and origin and resets the zero-trim mode (on), every unit's
  // decimals (the table's) and the angle decimals (3).
  void SetData(SYS_UnitType type, SYS_Point const &origin);

  SYS_UnitType GetUnitType() const { return unitType; }
  // Any value is stored. Outside 0 to 3 the unit converts with factor 1, has
  // an empty name, and shows 1 decimal, which cannot be changed.
  void SetUnitType(SYS_UnitType type) { unitType = type; }
  SYS_Point GetOrigin() const { return origin; }
  void SetOrigin(SYS_Point const &point) { origin = point; }
  // The decimals of the current unit; a change of unit brings back that
  // unit's own.
  int GetUnitPrecision() const;
  void SetUnitPrecision(int decimals);
  int GetAnglePrecision() const { return angleDecimals; }
  void SetAnglePrecision(int decimals) { angleDecimals = decimals; }
  int IsZeroTrimMode() const { return zeroTrimMode; }
  void SetZeroTrimMode(int on) { zeroTrimMode = on; }
  char const *GetUnitName() const { return GetUnitName(unitType); }
  // "" for a type outside 0 to 3.
  char const *GetUnitName(SYS_UnitType type) const;

  // --- Numbers.

  // value x factor, rounded (halves away from zero); kOverflow when the
  // product lies beyond 2147483647 on either side, or value is NaN.
  std::int32_t User2Base(double value) const;
  // value x factor, as it is.
  double User2BaseDouble(double value) const;
  // value / factor.
  double Base2User(double value) const;
  double Base2User(std::int32_t value) const { return Base2User(static_cast<double>(value)); }

  // The routing grid: one world unit, so every value is aligned already.
  std::int32_t GetMinRoutingGrid() const { return 1; }
  // The nearest multiple of the grid, the exact middle away from zero.
  std::int32_t AlignToMinRoutingGrid(std::int32_t value) const;
  SYS_Point AlignToMinRoutingGrid(SYS_Point point) const;
  int IsAlignedToMinRoutingGrid(std::int32_t value) const;
  int IsAlignedToMinRoutingGrid(SYS_Point point) const;

  // --- Parsing: 1 on success, else 0 with the destination not written,
  // except that Str2Double and Str2Long always write what they read. A null
  // text fails and writes nothing.

  // The whole text as strtod reads it (white space first; "" is 0.0, "1 "
  // fails); fails too when the value is out of range, which leaves errno at
  // ERANGE. An ERANGE already in errno is cleared first, any other errno kept.
  int Str2Double(char const *text, double *out) const;
  // The same with a 32-bit decimal integer.
  int Str2Long(char const *text, std::int32_t *out) const;
  // A number in the user's unit, of either sign, as a world value; refused
  // unless it lies in -SYS_MAX_COORD to SYS_MAX_COORD, bounds included.
  int Str2Base(char const *text, std::int32_t *out) const;
  // The same with no limit and no rounding.
  int Str2Base(char const *text, double *out) const;
  // A number that is not negative ("-0" is not), as a world value with no
  // limit: an overflow gives kOverflow and succeeds.
  int Str2Measure(char const *text, std::int32_t *out) const;
  int Str2Measure(char const *text, double *out) const;
  // A measure plus the origin's x or y (wrapping in 32 bits): a coordinate
  // left of or below the origin cannot be read back.
  int Str2CoordX(char const *text, std::int32_t *out) const;
  int Str2CoordY(char const *text, std::int32_t *out) const;
  int Str2CoordX(char const *text, double *out) const;
  int Str2CoordY(char const *text, double *out) const;
  // Degrees x 1800000, truncated (and held to the 32-bit range), not reduced
  // to one turn.
  int Str2Angle(char const *text, std::int32_t *out) const;

  // --- Formatting: Base2User(value) with the current unit's decimals, then,
  // in zero-trim mode, TrimStrNumber. The buffer forms write into buffer
  // (declared constant and written all the same) and return it.

  char *Base2Str(char const *buffer, std::int32_t value) const;
  char *Base2Str(char const *buffer, double value) const;
  SYS_String Base2Str(std::int32_t value) const;
  SYS_String Base2Str(double value) const;
  SYS_String Measure2Str(std::int32_t value) const { return Base2Str(value); }
  SYS_String Measure2Str(double value) const { return Base2Str(value); }
  SYS_String Measure2String(std::int32_t value) const { return Base2Str(value); }
  // The value less the origin's x or y.
  SYS_String CoordX2Str(std::int32_t value) const;
  SYS_String CoordX2String(std::int32_t value) const { return CoordX2Str(value); }
  SYS_String CoordX2Str(double value) const;
  SYS_String CoordY2Str(std::int32_t value) const;
  SYS_String CoordY2String(std::int32_t value) const { return CoordY2Str(value); }
  SYS_String CoordY2Str(double value) const;
  // "(x,y)" from the two coordinate texts.
  SYS_String Point2Str(SYS_Point const &point) const;
  SYS_String Point2Str(SYS_DoublePoint const &point) const;
  SYS_String Point2String(SYS_Point const &point) const { return Point2Str(point); }
  // prefix followed by the text of the value.
  SYS_String Measure2String(SYS_String const &prefix, std::int32_t value) const;
  SYS_String CoordX2String(SYS_String const &prefix, std::int32_t value) const;
  SYS_String CoordY2String(SYS_String const &prefix, std::int32_t value) const;
  SYS_String Point2String(SYS_String const &prefix, SYS_Point const &point) const;
  // An angle in degrees with the angle decimals, zero-trimmed in that mode.
  char *Angle2Str(char const *buffer, std::int32_t angle) const;
  SYS_String Angle2Str(std::int32_t angle) const;

  // Cuts a number text in place: when it holds a period, the trailing '0's
  // go, and the period too if nothing follows it ("1.500" gives "1.5",
  // "-0.00" gives "-0", ".000" gives ""). Text without a period, or null, is
  // left alone. Returns text.
  static char *TrimStrNumber(char const *text);

 private:
  // The number text of value at the given decimals, zero-trimmed in that
  // mode, into buffer (kMaxNumberText bytes).
  void FormatNumber(char *buffer, double value, int decimals) const;
  double Factor() const;

  SYS_UnitType unitType;
  SYS_Point origin;
  int zeroTrimMode;
  int unitDecimals[4];
  int angleDecimals;
};

#endif  // TOVIK_SYS_CONVERT_H
