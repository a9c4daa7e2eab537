// The numeric rules shared by all geometry: rounding, truncation, 32-bit
// wrapping, angle conversion and the refined square root.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "sys_geometry_units.h"

namespace {

double const kInf = std::numeric_limits<double>::infinity();
double const kNaN = std::numeric_limits<double>::quiet_NaN();

struct RoundCase {
  char const *name;
  char const *reason;
  double value;
  std::int32_t rounded;
  std::int32_t truncated;
};

TEST(GeometryUnits, RoundAndTruncate) {
  RoundCase const cases[] = {
      {"negative zero", "-0.0 is not negative: +0.5 is added", -0.0, 0, 0},
      {"plus half", "halves go away from zero", 0.5, 1, 0},
      {"minus half", "halves go away from zero on the negative side too", -0.5, -1, 0},
      {"two and a half", "no banker's rounding to the even neighbour", 2.5, 3, 2},
      {"minus two and a half", "no banker's rounding, negative", -2.5, -3, -2},
      {"just below half", "the rule adds 0.5 in double, and that sum is 1.0", 0.49999999999999994, 1, 0},
      {"just above minus half", "the same on the negative side", -0.49999999999999994, -1, 0},
      {"minus almost eight", "truncation goes toward zero, not down", -7.9999, -8, -7},
      {"edge of the working area", "a half beyond the last coordinate", 1066800000.5, 1066800001,
       1066800000},
      {"largest int", "exactly representable, unchanged", 2147483647.0, INT32_MAX, INT32_MAX},
      {"largest int plus half", "rounding leaves the range and stops at the limit", 2147483647.5,
       INT32_MAX, INT32_MAX},
      {"below smallest int", "truncation of -2147483648.9 is still in range", -2147483648.9,
       INT32_MIN, INT32_MIN},
      {"far above", "beyond 32 bits: the upper limit", 1e10, INT32_MAX, INT32_MAX},
      {"far below", "beyond 32 bits: the lower limit", -1e10, INT32_MIN, INT32_MIN},
      {"infinity", "the upper limit", kInf, INT32_MAX, INT32_MAX},
      {"NaN", "no number gives 0", kNaN, 0, 0},
  };
  for (RoundCase const &c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << ": " << c.reason);
    EXPECT_EQ(SYS_Round(c.value), c.rounded);
    EXPECT_EQ(SYS_Truncate(c.value), c.truncated);
  }
}

struct WrapCase {
  char const *name;
  char const *reason;
  std::int32_t a, b;
  std::int32_t sum, difference, product;
};

TEST(GeometryUnits, WrappingArithmetic) {
  WrapCase const cases[] = {
      {"max plus one", "the sum wraps to the smallest value", INT32_MAX, 1, INT32_MIN, INT32_MAX - 1,
       INT32_MAX},
      {"min minus one", "the difference wraps to the largest value", INT32_MIN, 1, INT32_MIN + 1,
       INT32_MAX, INT32_MIN},
      {"min times minus one", "negation of the smallest value is itself", INT32_MIN, -1, INT32_MAX,
       INT32_MIN + 1, INT32_MIN},
      {"2^16 squared", "the product is 2^32, that is 0", 65536, 65536, 131072, 0, 0},
      {"46341 squared", "the first square beyond 31 bits", 46341, 46341, 92682, 0, -2147479015},
      {"max doubled", "0xFFFFFFFE", INT32_MAX, 2, INT32_MIN + 1, INT32_MAX - 2, -2},
      {"min and max", "sum -1, difference 1", INT32_MIN, INT32_MAX, -1, 1, INT32_MIN},
  };
  for (WrapCase const &c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << ": " << c.reason);
    EXPECT_EQ(SYS_WrapAdd(c.a, c.b), c.sum);
    EXPECT_EQ(SYS_WrapSub(c.a, c.b), c.difference);
    EXPECT_EQ(SYS_WrapMul(c.a, c.b), c.product);
  }
}

TEST(GeometryUnits, AngleConversionsUseTheirConstantsInOrder) {
  EXPECT_EQ(SYS_RadiansToAngle(SYS_PI), 324000000.0);
  EXPECT_EQ(SYS_RadiansToAngle(1.5707963267948966), 162000000.0);
  EXPECT_EQ(SYS_AngleToRadians(SYS_HALF_CIRCLE), SYS_PI);
  EXPECT_EQ(SYS_AngleToRadians(SYS_FULL_CIRCLE), 6.283185307179586);
  EXPECT_EQ(SYS_AngleToRadians(162000000), 1.5707963267948966);
  // Multiplying by the product of the constants, or dividing by pi, gives a
  // different last bit for these arguments.
  EXPECT_EQ(SYS_RadiansToAngle(4.864072317121257), 501643467.0314407);
  EXPECT_EQ(SYS_RadiansToAngle(-0.7645792832327798), -78852898.85827658);
  EXPECT_EQ(SYS_AngleToRadians(86740), 0.0008410547739888232);
  EXPECT_EQ(SYS_AngleToRadians(175473), 0.0017014342213066721);
}

struct SqrtCase {
  char const *name;
  char const *reason;
  double value;
  double root;
};

TEST(GeometryUnits, RefinedSqrt) {
  SqrtCase const cases[] = {
      {"zero", "a zero root is answered at once", 0.0, 0.0},
      {"two", "the Newton step lands one ulp below the library root", 2.0, 0x1.6a09e667f3bccp+0},
      {"three", "the Newton step lands one ulp above the library root", 3.0, 0x1.bb67ae8584cabp+0},
      {"46340 squared", "largest square below 2^31", 2147395600.0, 46340.0},
      {"2^31", "one ulp below the library root", 2147483648.0, 0x1.6a09e667f3bccp+15},
      {"2^32 - 1", "just below a perfect square", 4294967295.0, 0x1.ffffffff00000p+15},
      {"2^32", "perfect square at the 32-bit limit", 4294967296.0, 65536.0},
      {"46341 squared plus 1", "just above a perfect square", 2147488282.0, 0x1.6a0a00016a09dp+15},
      {"largest int squared", "the length of the longest 32-bit axis vector",
       4611686014132420609.0, 2147483647.0},
      {"2^63", "squared length of a diagonal at the 32-bit limits", 9223372036854775808.0,
       0x1.6a09e667f3bccp+31},
      {"huge", "the step would overflow: the library root is kept", 9e307, std::sqrt(9e307)},
      {"infinity", "stays infinite", kInf, kInf},
  };
  for (SqrtCase const &c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << ": " << c.reason);
    EXPECT_EQ(SYS_RefinedSqrt(c.value), c.root);
  }
  EXPECT_FALSE(std::signbit(SYS_RefinedSqrt(-0.0)));
  EXPECT_TRUE(std::isnan(SYS_RefinedSqrt(-1.0)));
  EXPECT_TRUE(std::isnan(SYS_RefinedSqrt(kNaN)));
}

}  // namespace
