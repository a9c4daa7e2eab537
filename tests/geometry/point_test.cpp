// Points, locations and positions.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "sys_point.h"

namespace {

std::int32_t const kMax = INT32_MAX;
std::int32_t const kMin = INT32_MIN;
double const kNaN = std::numeric_limits<double>::quiet_NaN();

#define TRACE_ROW(c) SCOPED_TRACE(testing::Message() << (c).name << ": " << (c).reason)

SYS_Point Scaled(SYS_Point p, double fx, double fy) {
  p.Scale(fx, fy);
  return p;
}

// An integer answer as a row of the double table below.
double D(std::int64_t value) { return static_cast<double>(value); }

TEST(Point, ArithmeticRoundsTruncatesAndWraps) {
  struct { char const *name, *reason; SYS_Point actual; std::int32_t x, y; } const cases[] = {
      {"sum", "wraps in 32 bits", SYS_Point(kMax, kMin) + SYS_Point(1, -1), kMin, kMax},
      {"native long product", "the factor is taken modulo 2^32", SYS_Point(5, -5) * ((1L << 32) + 3L), 15, -15},
      {"product by a half", "truncation goes toward zero", SYS_Point(-3, 5) * 0.5, -1, 2},
      {"Scale per axis", "2.5 and -7.5, each away from zero", Scaled(SYS_Point(10, 10), 0.25, -0.75), 3, -8},
      {"by a negative divisor", "-2.5 and 2.5 go away from zero", SYS_Point(5, -5) / -2, -3, 3},
      {"smallest by minus one", "done in double: no trap", SYS_Point(kMin, kMax) / -1, kMax, -kMax},
      {"by zero", "infinities stop at the limits of their sign", SYS_Point(5, -5) / 0, kMax, kMin},
      {"median of a wrapping sum", "the sum wraps first", SYS_Point(kMax, 0).Median(SYS_Point(1, 0)), -1073741824, 0},
  };
  for (auto const &c : cases) {
    TRACE_ROW(c);
    EXPECT_EQ(c.actual.x, c.x);
    EXPECT_EQ(c.actual.y, c.y);
  }
}

// Every scalar answer of the point types, integers and flags included.
TEST(Point, MeasuresProductsAndComparisons) {
  SYS_DoublePoint const nan(kNaN, 0.0), one(0.0, 1.0);
  struct { char const *name, *reason; double actual, expected; } const cases[] = {
      {"index 7", "every index but 0 is y", D(SYS_Point(3, -4)[7]) + one[7], -3},
      {"diagonal length", "3 * sqrt(2), not sqrt(18), one ulp lower", SYS_Point(3, 3).Length(), 4.242640687119286},
      {"longest diagonal", "magnitudes in double", SYS_Point(kMin, kMin).Length(), 2147483648.0 * 1.4142135623730951},
      {"wrapping distance", "kMax - (-1) wraps to kMin", SYS_Point(kMax, 0).Distance(SYS_Point(-1, 0)), 2147483648.0},
      {"Manhattan wraps", "the sum of magnitudes wraps", D(SYS_Point(kMax, -kMax).MLength()), -2},
      {"scalar product", "in double", SYS_Point(kMax, kMax).ScalarProduct(SYS_Point(kMax, 1)), 4611686016279904256.0},
      {"clockwise", "negative when the other lies clockwise", SYS_Point(0, 1).VectorProduct(SYS_Point(1, 0)), -1},
      {"x decides", "a far smaller y does not matter", D(SYS_Point(1, 100) < SYS_Point(2, -100)), 1},
      {"y on equal x", "y breaks the tie", D(SYS_Point(1, -1) > SYS_Point(1, 0)), 0},
      {"NaN", "is neither equal nor ordered", D((nan == nan) + (nan < one) + (one < nan)), 0},
      {"on the bound", "the bound itself is outside", D(SYS_DoublePoint(1066800000, 0).IsValid()), 0},
      {"NaN coordinate", "is no coordinate", D(SYS_DoublePoint(0, kNaN).IsValid()), 0},
  };
  for (auto const &c : cases) {
    TRACE_ROW(c);
    EXPECT_EQ(c.actual, c.expected);
  }
}

TEST(Point, PolarAngle) {
  struct { char const *name, *reason; double x, y; std::int32_t angle; } const cases[] = {
      {"origin", "the null vector has angle 0", 0, 0, 0},
      {"+y", "a quarter turn, counter-clockwise", 0, 1, 162000000},
      {"-y", "negative, then a full turn added", 0, -1, 486000000},
      {"fourth quadrant", "-95634184.24 truncates toward zero, not down", 3, -4, 552365816},
      {"longest x", "an angle below one unit is 0", kMax, 1, 0},
      {"negative zero y on -x", "-pi becomes a half turn", -1.0, -0.0, 324000000},
      {"NaN", "no number gives 0", kNaN, 1.0, 0},
  };
  for (auto const &c : cases) {
    TRACE_ROW(c);
    SYS_DoublePoint const d(c.x, c.y);
    EXPECT_EQ(d.GetPolarAngle(), c.angle);
    if (SYS_DoublePoint(SYS_Point(d)) == d) {
      EXPECT_EQ(SYS_Point(d).GetPolarAngle(), c.angle) << "the integer point agrees";
    }
  }
}

// Orientations are reduced to one turn keeping their sign; positions add a
// mirror flag, combined by exclusive or.
TEST(Location, OrientationsReduceAndMirrorFlagsCombine) {
  SYS_Location loc(5, -6, -648000001);
  EXPECT_EQ(loc.GetOrientation(), -1) << "the sign survives the reduction";
  loc.SetOrientation(kMin);
  EXPECT_EQ(loc.GetOrientation(), -203483648) << "reduced without overflow";
  loc = SYS_Location(0, 0, -600000000) + SYS_Location(kMax, kMin, -100000000);
  EXPECT_EQ(loc, SYS_Location(kMax, kMin, -52000000)) << "the reduced sum stays negative";
  loc = SYS_Location(1, 2, 100);
  loc.SwapBytes();
  EXPECT_EQ(loc.GetOrigin(), SYS_Point(0x01000000, 0x02000000));
  EXPECT_EQ(loc.GetOrientation(), 0x64000000) << "swapping stores the bytes unreduced";
  EXPECT_EQ(loc.IsValid(), 0);
  EXPECT_EQ((loc + loc).GetOrientation(), -291524096) << "the sum wraps in 32 bits, then is reduced";

  SYS_Position pos(SYS_Point(3, 4), 0, 5);
  pos.Set(7, 8, 648000009);  // a location setter keeps the flag
  EXPECT_EQ(pos, SYS_Position(7, 8, 9, 1));
  EXPECT_EQ(pos.IsValid(), 1);
  for (int flags = 0; flags < 4; ++flags) {
    SCOPED_TRACE(flags);
    SYS_Position const a(1, 2, 600000000, flags & 1), b(3, 4, 100000000, flags >> 1);
    SYS_Position in_place = a;
    in_place += b;
    EXPECT_EQ(in_place, a + b);
    EXPECT_EQ(a + b, SYS_Position(4, 6, 52000000, (flags == 1 || flags == 2) ? 1 : 0));
  }
}

}  // namespace
