// The numeric rules shared by all geometry: rounding, truncation, 32-bit
// wrapping, angle conversion and the refined square root.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "sys_geometry_units.h"
#include "sys_point.h"

namespace {

double const kInf = std::numeric_limits<double>::infinity();
double const kNaN = std::numeric_limits<double>::quiet_NaN();

#define TRACE_ROW(c) SCOPED_TRACE(testing::Message() << (c).name << ": " << (c).reason)

TEST(GeometryUnits, RoundTruncateAndWrap) {
  struct { char const *name, *reason; double value; std::int32_t rounded, truncated; } const cases[] = {
      {"negative zero", "-0.0 is not negative: +0.5 is added", -0.0, 0, 0},
      {"minus half", "halves go away from zero on the negative side too", -0.5, -1, 0},
      {"two and a half", "no banker's rounding to the even neighbour", 2.5, 3, 2},
      {"just below half", "the rule adds 0.5 in double, and that sum is 1.0", 0.49999999999999994, 1, 0},
      {"minus almost eight", "truncation goes toward zero, not down", -7.9999, -8, -7},
      {"largest int plus half", "rounding leaves the range and stops at the limit", 2147483647.5, INT32_MAX,
       INT32_MAX},
      {"below smallest int", "truncation of -2147483648.9 is still in range", -2147483648.9, INT32_MIN, INT32_MIN},
      {"infinity", "the upper limit", kInf, INT32_MAX, INT32_MAX},
      {"NaN", "no number gives 0", kNaN, 0, 0},
  };
  for (auto const &c : cases) {
    TRACE_ROW(c);
    EXPECT_EQ(SYS_Round(c.value), c.rounded);
    EXPECT_EQ(SYS_Truncate(c.value), c.truncated);
    // A double point rounds both coordinates at once, by its own path.
    SYS_Point const both = SYS_DoublePoint(c.value, -c.value);
    EXPECT_TRUE(both.x == c.rounded && both.y == SYS_Round(-c.value));
  }
  EXPECT_EQ(SYS_WrapMul(46341, 46341), -2147479015) << "the first square beyond 31 bits";
  EXPECT_EQ(SYS_WrapMul(INT32_MIN, -1), INT32_MIN);
}

TEST(GeometryUnits, AngleConversionsUseTheirConstantsInOrder) {
  // Multiplying by the product of the constants, or dividing by pi, gives a
  // different last bit for these arguments.
  EXPECT_EQ(SYS_RadiansToAngle(4.864072317121257), 501643467.0314407);
  EXPECT_EQ(SYS_RadiansToAngle(-0.7645792832327798), -78852898.85827658);
  EXPECT_EQ(SYS_AngleToRadians(86740), 0.0008410547739888232);
}

TEST(GeometryUnits, RefinedSqrt) {
  struct { char const *name, *reason; double value, root; } const cases[] = {
      {"zero", "a zero root is answered at once", 0.0, 0.0},
      {"two", "the Newton step lands one ulp below the library root", 2.0, 0x1.6a09e667f3bccp+0},
      {"three", "the Newton step lands one ulp above the library root", 3.0, 0x1.bb67ae8584cabp+0},
      {"huge", "the step would overflow: the library root is kept", 9e307, std::sqrt(9e307)},
      {"infinity", "stays infinite", kInf, kInf},
  };
  for (auto const &c : cases) {
    TRACE_ROW(c);
    EXPECT_EQ(SYS_RefinedSqrt(c.value), c.root);
  }
  EXPECT_FALSE(std::signbit(SYS_RefinedSqrt(-0.0)));
  EXPECT_TRUE(std::isnan(SYS_RefinedSqrt(-1.0)));
}

}  // namespace
