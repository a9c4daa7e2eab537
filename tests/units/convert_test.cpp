#include <gtest/gtest.h>

#include <cerrno>
#include <clocale>
#include <cmath>
#include <cstring>
#include <string>

#include "scc_variant.h"
#include "sys_convert.h"
#include "sys_scan.h"

namespace {

constexpr SYS_UnitType kMils = SYS_UNIT_MILS, kMm = SYS_UNIT_MILLIMETERS, kInches = SYS_UNIT_INCHES,
                       kMicrons = SYS_UNIT_MICRONS;
constexpr SYS_UnitType kUnknown = static_cast<SYS_UnitType>(9);
constexpr std::int32_t kOverflow = SYS_Convert::kOverflow;

TEST(UnitModelTest, UserValuesToWorldValues) {
  struct {
    char const *name;
    SYS_UnitType unit;
    double value;
    std::int32_t world;
  } const cases[] = {
      {"one mil", kMils, 1.0, 38100},
      {"negative zero", kMils, -0.0, 0},
      {"edge of the working area", kInches, 28.0, SYS_MAX_COORD},
      {"largest mils", kMils, 56364.39, 2147483259},
      {"overflow", kInches, 56.37, kOverflow},
      {"negative overflow has the same marker", kInches, -56.37, kOverflow},
      {"NaN is no value", kMm, std::nan(""), kOverflow},
      {"three quarters round up", kMicrons, 0.0005, 1},
      {"and down, away from zero", kMicrons, -0.0005, -1},
      {"unknown unit: factor 1, half away from zero", kUnknown, 2.5, 3},
      {"unknown unit: negative half", kUnknown, -2.5, -3},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_Convert const convert(c.unit);
    EXPECT_EQ(convert.User2Base(c.value), c.world);
  }
  EXPECT_EQ(SYS_Convert(kMils).Base2User(38100), 1.0);
  EXPECT_EQ(SYS_Convert(kMils).AlignToMinRoutingGrid(-7), -7);
}

TEST(UnitModelTest, DecimalsAndNamesPerUnit) {
  SYS_Convert convert(1);
  EXPECT_EQ(convert.GetUnitType(), kMils);
  convert.SetUnitPrecision(7);
  convert.SetUnitType(kMm);
  EXPECT_EQ(convert.GetUnitPrecision(), 5);
  convert.SetUnitType(kMils);
  EXPECT_EQ(convert.GetUnitPrecision(), 7) << "each unit keeps its own";
  convert.SetZeroTrimMode(0);
  convert.SetData(kMils, SYS_Point());
  EXPECT_EQ(convert.GetUnitPrecision(), 2);
  EXPECT_EQ(convert.IsZeroTrimMode(), 1);

  convert.SetUnitType(kUnknown);
  convert.SetUnitPrecision(4);
  EXPECT_EQ(convert.GetUnitPrecision(), 1) << "no place outside the table";
  EXPECT_STREQ(convert.GetUnitName(), "");
  EXPECT_STREQ(convert.GetUnitName(kMicrons), "Microns");

  SYS_Convert::UnitTypeObj units;
  std::string walked;
  for (units.GetFirst(nullptr); units.IsValid(); units.GetNext()) {
    walked += std::to_string(units.GetType()) + units.GetName() + " ";
  }
  EXPECT_EQ(walked, "0Mils 1Millimeters 2Inches 3Microns ");
  EXPECT_EQ(units.GetType(), -1);
}

enum Parser { Double, Long, Base, Measure, CoordX, CoordY, Angle };

TEST(ValueTextTest, Parsing) {
  struct {
    char const *name;
    Parser parser;
    SYS_UnitType unit;
    char const *text;
    int result;
    double value;  // what the destination holds afterwards (it starts at -5)
  } const cases[] = {
      {"empty text is 0", Double, kMils, "", 1, 0.0},
      {"leading blanks", Double, kMils, " 1.5", 1, 1.5},
      {"trailing blank fails but writes", Double, kMils, "1 ", 0, 1.0},
      {"no number", Double, kMils, "-", 0, 0.0},
      {"beyond double", Double, kMils, "1e999", 0, HUGE_VAL},
      {"32-bit long", Long, kMils, "-2147483648", 1, -2147483648.0},
      {"beyond long", Long, kMils, "2147483648", 0, 2147483647.0},
      {"edge of the area", Base, kInches, "28", 1, SYS_MAX_COORD},
      {"negative edge", Base, kInches, "-28", 1, -SYS_MAX_COORD},
      {"beyond the area", Base, kInches, "28.000001", 0, -5},
      {"overflow refused", Base, kInches, "100", 0, -5},
      {"NaN refused", Base, kMils, "nan", 0, -5},
      {"negative base", Base, kMils, "-1", 1, -38100},
      {"negative measure", Measure, kMils, "-1", 0, -5},
      {"minus zero is a measure", Measure, kMils, "-0", 1, 0},
      {"measure has no limit", Measure, kInches, "100", 1, kOverflow},
      {"coordinate from the origin", CoordX, kMils, "3", 1, 3 * 38100 + 1000},
      {"y from the origin", CoordY, kMils, "3", 1, 3 * 38100 + 2000},
      {"left of the origin cannot be read", CoordX, kMils, "-1", 0, -5},
      {"right angle", Angle, kMils, "90", 1, 162000000},
      {"beyond a turn", Angle, kMils, "720", 1, 1296000000},
      {"truncated toward zero", Angle, kMils, "-0.0000005", 1, 0},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_Convert const convert(c.unit, SYS_Point(1000, 2000));
    double d = -5;
    std::int32_t l = -5;
    int result = 0;
    switch (c.parser) {
      case Double: result = convert.Str2Double(c.text, &d); break;
      case Long: result = convert.Str2Long(c.text, &l); break;
      case Base: result = convert.Str2Base(c.text, &l); break;
      case Measure: result = convert.Str2Measure(c.text, &l); break;
      case CoordX: result = convert.Str2CoordX(c.text, &l); break;
      case CoordY: result = convert.Str2CoordY(c.text, &l); break;
      case Angle: result = convert.Str2Angle(c.text, &l); break;
    }
    EXPECT_EQ(result, c.result);
    EXPECT_EQ(c.parser == Double ? d : l, c.value);
  }
  SYS_Convert const convert;
  double d = 0;
  errno = EINVAL;
  EXPECT_EQ(convert.Str2Double("1", &d), 1);
  EXPECT_EQ(errno, EINVAL) << "other errors are left alone";
  errno = ERANGE;
  EXPECT_EQ(convert.Str2Double("1", &d), 1) << "a stale range error is cleared";
  EXPECT_EQ(convert.Str2Double(nullptr, &d), 0);
}

TEST(ValueTextTest, Formatting) {
  struct {
    char const *name;
    SYS_UnitType unit;
    int decimals, trim;
    double world;
    char const *text;
  } const cases[] = {
      {"whole mil", kMils, 2, 1, 38100, "1"},
      {"half mil", kMils, 2, 1, 57150, "1.5"},
      {"untrimmed", kMils, 2, 0, 57150, "1.50"},
      {"zero", kMils, 2, 1, 0, "0"},
      {"negative zero", kMils, 2, 1, -0.0, "-0"},
      {"no period, nothing cut", kMils, 0, 1, 3810000, "100"},
      {"inches", kInches, 5, 1, -38100, "-0.001"},
      {"negative decimals count as none", kMils, -3, 0, 57150, "2"},
      {"huge decimals are held", kMils, 600, 0, 38100, "1.000000000000000000000000000000"},
      {"huge value fits", kMils, 2, 1, 1e300, nullptr},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_Convert convert(c.unit);
    convert.SetUnitPrecision(c.decimals);
    convert.SetZeroTrimMode(c.trim);
    char buffer[SYS_Convert::kMaxNumberText];
    SYS_String const text = convert.Base2Str(c.world);
    EXPECT_STREQ(convert.Base2Str(buffer, c.world), text);
    if (c.text != nullptr) {
      EXPECT_STREQ(text, c.text);
    }
  }
  SYS_Convert const convert(kMils, SYS_Point(38100, -38100));
  EXPECT_STREQ(convert.Point2Str(SYS_Point(38100, -38100)), "(0,0)");
  EXPECT_STREQ(convert.Point2String("at ", SYS_Point(0, 0)), "at (-1,1)");
  EXPECT_STREQ(convert.Angle2Str(162000000), "90");
  struct {
    char const *text, *trimmed;
  } const trims[] = {{"-0.00", "-0"}, {".000", ""}, {"100", "100"}, {"1.500", "1.5"}, {"", ""}};
  for (auto const &t : trims) {
    char text[16];
    std::strcpy(text, t.text);
    EXPECT_STREQ(SYS_Convert::TrimStrNumber(text), t.trimmed) << t.text;
  }
}

TEST(ValueTextTest, TextRoundTrips) {
  struct {
    char const *name;
    SYS_UnitType unit;
    std::int32_t step;  // the grid
    bool exact;         // the unit's default decimals hold the grid
  } const cases[] = {
      {"mils on the mil grid", kMils, 38100, true},       {"mils on the micron grid", kMils, 1500, false},
      {"mm on the mil grid", kMm, 38100, true},           {"mm on the micron grid", kMm, 1500, true},
      {"inches on the mil grid", kInches, 38100, true},   {"inches on the micron grid", kInches, 1500, false},
      {"microns on the mil grid", kMicrons, 38100, true}, {"microns on the micron grid", kMicrons, 1500, true},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_Convert const convert(c.unit);
    for (std::int32_t k = -SYS_MAX_COORD / c.step; k <= SYS_MAX_COORD / c.step; k += 7919) {
      std::int32_t const world = k * c.step;
      SYS_String const text = convert.Base2Str(world);
      std::int32_t first = 0, second = 0;
      ASSERT_EQ(convert.Str2Base(text, &first), 1) << text;
      ASSERT_EQ(convert.Str2Base(convert.Base2Str(first), &second), 1);
      ASSERT_EQ(second, first) << text;
      if (c.exact) {
        ASSERT_EQ(first, world) << text;
      }
    }
  }
}

// Selects a locale with a decimal comma for the scope, if the machine has one.
class CommaLocale {
 public:
  CommaLocale() : saved(std::setlocale(LC_ALL, nullptr)) {
    for (char const *name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "nl_NL.UTF-8"}) {
      if (std::setlocale(LC_ALL, name) != nullptr) {
        active = true;
        return;
      }
    }
  }
  ~CommaLocale() { std::setlocale(LC_ALL, saved.c_str()); }
  bool active = false;

 private:
  std::string saved;
};

TEST(ValueTextTest, IgnoresTheProcessLocale) {
  CommaLocale const locale;
  if (!locale.active) GTEST_SKIP() << "no locale with a decimal comma on this machine";
  ASSERT_STREQ(std::localeconv()->decimal_point, ",");
  SYS_Convert const convert;
  double d = 0;
  EXPECT_EQ(convert.Str2Double("1.5", &d), 1);
  EXPECT_EQ(d, 1.5);
  EXPECT_EQ(convert.Str2Double("1,5", &d), 0);
  EXPECT_STREQ(convert.Base2Str(57150), "1.5");
  EXPECT_STREQ(SYS_String(SCC_Variant(2.5)), "2.5");
  EXPECT_EQ(static_cast<double>(SCC_Variant("2.5")), 2.5);
  SCC_Variant const v(3);
  EXPECT_EQ(v.Validate("[0.5,2.5]", nullptr), 0);
  EXPECT_STREQ(SYS_String(v), "Please enter a value within the [0.500000,2.500000] range.");
  EXPECT_EQ(SimpleScanf("0.25", "%f", &d), 1);
  EXPECT_EQ(d, 0.25);
}

}  // namespace
