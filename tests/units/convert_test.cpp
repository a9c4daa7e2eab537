#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "comma_locale.h"
#include "scc_variant.h"
#include "sys_convert.h"

namespace {

constexpr SYS_UnitType kMils = SYS_UNIT_MILS, kMm = SYS_UNIT_MILLIMETERS, kInches = SYS_UNIT_INCHES,
                       kMicrons = SYS_UNIT_MICRONS, kUnknown = static_cast<SYS_UnitType>(9);

TEST(UnitModelTest, UserValuesAndSettings) {
  EXPECT_EQ(SYS_Convert(kInches).User2Base(-56.37), SYS_Convert::kOverflow) << "one marker for both signs";
  EXPECT_EQ(SYS_Convert(kMm).User2Base(std::nan("")), SYS_Convert::kOverflow);
  EXPECT_EQ(SYS_Convert(kMicrons).User2Base(-0.0005), -1) << "0.75 rounds away from zero";
  EXPECT_EQ(SYS_Convert(kUnknown).User2Base(2.5), 3) << "factor 1 outside the table";
  SYS_Convert convert(1);
  convert.SetUnitPrecision(7);
  convert.SetUnitType(kMm);
  EXPECT_EQ(convert.GetUnitPrecision(), 5);
  convert.SetUnitType(kMils);
  EXPECT_EQ(convert.GetUnitPrecision(), 7) << "each unit keeps its own";
  convert.SetData(kMils, SYS_Point());
  EXPECT_EQ(convert.GetUnitPrecision(), 2);
  convert.SetUnitType(kUnknown);
  convert.SetUnitPrecision(4);
  EXPECT_EQ(convert.GetUnitPrecision(), 1) << "no place outside the table";
}

TEST(ValueTextTest, Parsing) {
  enum Parser { Double, Long, Base, Measure, CoordX, Angle };
  // value: what the destination holds afterwards (it starts at -5).
  struct { char const *name; Parser parser; SYS_UnitType unit; char const *text; int result; double value; } const
      cases[] = {
      {"empty text is 0", Double, kMils, "", 1, 0.0},
      {"trailing blank fails but writes", Double, kMils, "1 ", 0, 1.0},
      {"beyond long", Long, kMils, "2147483648", 0, 2147483647.0},
      {"edge of the area", Base, kInches, "-28", 1, -SYS_MAX_COORD},
      {"beyond the area, nothing written", Base, kInches, "28.000001", 0, -5},
      {"minus zero is a measure", Measure, kMils, "-0", 1, 0},
      {"measure has no limit", Measure, kInches, "100", 1, SYS_Convert::kOverflow},
      {"coordinate from the origin", CoordX, kMils, "3", 1, 3 * 38100 + 1000},
      {"left of the origin cannot be read", CoordX, kMils, "-1", 0, -5},
      {"beyond a turn, truncated", Angle, kMils, "720.0000001", 1, 1296000000},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_Convert const convert(c.unit, SYS_Point(1000, 2000));
    double d = -5;
    std::int32_t l = -5;
    int const result = c.parser == Double    ? convert.Str2Double(c.text, &d)
                       : c.parser == Long    ? convert.Str2Long(c.text, &l)
                       : c.parser == Base    ? convert.Str2Base(c.text, &l)
                       : c.parser == Measure ? convert.Str2Measure(c.text, &l)
                       : c.parser == CoordX  ? convert.Str2CoordX(c.text, &l)
                                             : convert.Str2Angle(c.text, &l);
    EXPECT_EQ(result, c.result);
    EXPECT_EQ(c.parser == Double ? d : l, c.value);
  }
}

TEST(ValueTextTest, FormattingAndRoundTrips) {
  SYS_Convert convert(kMils, SYS_Point(38100, -38100));
  EXPECT_STREQ(convert.Base2Str(-0.0), "-0") << "period and zeros go";
  EXPECT_STREQ(convert.Point2String("at ", SYS_Point(0, 57150)), "at (-1,2.5)");
  EXPECT_STREQ(convert.Angle2Str(162000000), "90");
  convert.SetUnitPrecision(0);
  EXPECT_STREQ(convert.Base2Str(3810000), "100") << "no period, nothing cut";
  convert.SetZeroTrimMode(0);
  convert.SetUnitPrecision(-3);
  EXPECT_STREQ(convert.Base2Str(57150), "2") << "negative decimals count as none";
  convert.SetUnitPrecision(600);
  EXPECT_EQ(convert.Base2Str(38100).GetLength(), 2 + SYS_Convert::kMaxDecimals);

  // Parse, format, parse for every unit at its default decimals, on the mil
  // and the micron grids; exact where the decimals hold the grid.
  for (SYS_UnitType unit : {kMils, kMm, kInches, kMicrons}) {
    for (std::int32_t step : {38100, 1500}) {
      SCOPED_TRACE(std::to_string(unit) + " step " + std::to_string(step));
      bool const exact = !(step == 1500 && (unit == kMils || unit == kInches));
      SYS_Convert const units(unit);
      for (std::int32_t k = -SYS_MAX_COORD / step; k <= SYS_MAX_COORD / step; k += 7919) {
        std::int32_t first = 0, second = 0;
        ASSERT_EQ(units.Str2Base(units.Base2Str(k * step), &first), 1);
        ASSERT_EQ(units.Str2Base(units.Base2Str(first), &second), 1);
        ASSERT_EQ(second, first);
        ASSERT_TRUE(!exact || first == k * step) << k;
      }
    }
  }
}

TEST(ValueTextTest, IgnoresTheProcessLocale) {
  tovik_test::CommaDecimalLocale const comma;
  if (!comma.active) GTEST_SKIP() << "no locale with a decimal comma on this machine";
  double d = 0;
  EXPECT_EQ(SYS_Convert().Str2Double("1.5", &d) * d, 1.5);
  EXPECT_STREQ(SYS_Convert().Base2Str(57150), "1.5");
  EXPECT_STREQ(SYS_String(SCC_Variant(2.5)), "2.5");
  EXPECT_EQ(static_cast<double>(SCC_Variant("2.5")), 2.5);
  SCC_Variant const v(3);
  EXPECT_EQ(v.Validate("[0.5,2.5]", nullptr), 0);
  EXPECT_STREQ(SYS_String(v), "Please enter a value within the [0.500000,2.500000] range.");
}

}  // namespace
