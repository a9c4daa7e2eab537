// Points, locations and positions.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "sys_point.h"

namespace {

std::int32_t const kMax = INT32_MAX;
std::int32_t const kMin = INT32_MIN;

testing::AssertionResult SamePoint(SYS_Point const &actual, std::int32_t x, std::int32_t y) {
  if (actual.x == x && actual.y == y) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "(" << actual.x << ", " << actual.y << ") instead of (" << x
                                     << ", " << y << ")";
}

TEST(Point, IndexingAndByteSwapping) {
  SYS_Point p(3, -4);
  SYS_Point const &cp = p;
  EXPECT_EQ(cp[0], 3);
  EXPECT_EQ(cp[7], -4);   // every index but 0 is y
  EXPECT_EQ(cp[-1], -4);
  p[5] = 20;
  EXPECT_TRUE(SamePoint(p, 3, 20));

  p.Set(0x01020304, -2);
  p.SwapBytes();
  EXPECT_TRUE(SamePoint(p, 0x04030201, -16777217));  // 0xFFFFFFFE becomes 0xFEFFFFFF
  p.SwapBytes();
  EXPECT_TRUE(SamePoint(p, 0x01020304, -2));
}

TEST(Point, ConversionsWithDoublePoints) {
  struct Case {
    char const *name;
    char const *reason;
    double x, y;
    std::int32_t rx, ry;
  };
  Case const cases[] = {
      {"halves", "halves go away from zero", 2.5, -2.5, 3, -3},
      {"below halves", "less than a half goes toward zero", 0.4999, -0.4999, 0, 0},
      {"beyond 32 bits", "a coordinate out of range stops at the limit", 3e9, -3e9, kMax, kMin},
      {"NaN", "no number becomes 0", std::nan(""), 1.5, 0, 2},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << ": " << c.reason);
    SYS_DoublePoint const d(c.x, c.y);
    EXPECT_TRUE(SamePoint(SYS_Point(d), c.rx, c.ry));
    SYS_Point assigned(9, 9);
    assigned = d;
    EXPECT_TRUE(SamePoint(assigned, c.rx, c.ry));
  }
  SYS_DoublePoint const exact = SYS_Point(kMin, kMax);
  EXPECT_EQ(exact, SYS_DoublePoint(-2147483648.0, 2147483647.0));
}

TEST(Point, WrappingArithmetic) {
  EXPECT_TRUE(SamePoint(SYS_Point(kMax, kMin) + SYS_Point(1, -1), kMin, kMax));
  EXPECT_TRUE(SamePoint(SYS_Point(kMin, 0) - SYS_Point(1, 0), kMax, 0));
  EXPECT_TRUE(SamePoint(SYS_Point(kMax, kMin) + 1, kMin, kMin + 1));
  EXPECT_TRUE(SamePoint(SYS_Point(kMin, 5) - 6, kMax - 5, -1));
  EXPECT_TRUE(SamePoint(SYS_Point(65536, -3) * 65536, 0, -196608));
  EXPECT_TRUE(SamePoint(SYS_Point(kMax, kMin) * -1, kMin + 1, kMin));
  // A native long factor is taken modulo 2^32: 2^32 + 3 acts as 3.
  EXPECT_TRUE(SamePoint(SYS_Point(5, -5) * ((1L << 32) + 3L), 15, -15));

  SYS_Point p(kMax, 10);
  p += SYS_Point(2, -20);
  p -= 1;
  EXPECT_TRUE(SamePoint(p, kMin, -11));
}

TEST(Point, ProductTruncatesWhereScaleRounds) {
  struct Case {
    char const *name;
    char const *reason;
    SYS_Point p;
    double factor;
    std::int32_t px, py;  // operator*, truncated
    std::int32_t sx, sy;  // Scale, rounded
  };
  Case const cases[] = {
      {"0.9 of three", "2.7 truncates to 2 and rounds to 3", SYS_Point(3, 0), 0.9, 2, 0, 3, 0},
      {"halves", "truncation toward zero, rounding away from it", SYS_Point(-3, 5), 0.5, -1, 2, -2, 3},
      {"minus half", "-0.5 truncates to 0 and rounds to -1", SYS_Point(5, 0), -0.1, 0, 0, -1, 0},
      {"beyond 32 bits", "products out of range stop at the limits",
       SYS_Point(1000000000, -1000000000), 3.0, kMax, kMin, kMax, kMin},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << ": " << c.reason);
    EXPECT_TRUE(SamePoint(c.p * c.factor, c.px, c.py));
    SYS_Point scaled = c.p;
    scaled.Scale(c.factor);
    EXPECT_TRUE(SamePoint(scaled, c.sx, c.sy));
  }

  SYS_Point p(10, 10);
  p.Scale(0.25, -0.75);
  EXPECT_TRUE(SamePoint(p, 3, -8));  // 2.5 and -7.5, each away from zero
}

TEST(Point, DivisionRoundsHalvesAwayFromZero) {
  struct Case {
    char const *name;
    char const *reason;
    SYS_Point p;
    std::int32_t divisor;
    std::int32_t x, y;
  };
  Case const cases[] = {
      {"sevens by two", "3.5 and -3.5 go away from zero", SYS_Point(7, -7), 2, 4, -4},
      {"negative divisor", "-2.5 and 2.5 go away from zero", SYS_Point(5, -5), -2, -3, 3},
      {"thirds", "a third goes down, two thirds up", SYS_Point(1, 2), 3, 0, 1},
      {"smallest by minus one", "done in double: no trap, the result stops at the limit",
       SYS_Point(kMin, kMax), -1, kMax, -kMax},
      {"by zero", "infinities stop at the limits of their sign", SYS_Point(5, -5), 0, kMax, kMin},
      {"zero by zero", "no number gives 0", SYS_Point(0, 0), 0, 0, 0},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << ": " << c.reason);
    EXPECT_TRUE(SamePoint(c.p / c.divisor, c.x, c.y));
  }
}

TEST(Point, Median) {
  struct Case {
    char const *name;
    char const *reason;
    SYS_Point a, b;
    std::int32_t x, y;
  };
  Case const cases[] = {
      {"unit square", "the half goes away from zero", SYS_Point(0, 0), SYS_Point(1, 1), 1, 1},
      {"negative unit square", "the half goes away from zero, downwards",
       SYS_Point(0, 0), SYS_Point(-1, -1), -1, -1},
      {"even sums", "exact midpoint", SYS_Point(2, 4), SYS_Point(4, 8), 3, 6},
      {"mixed signs", "-1.5 and 1.5 both go outward", SYS_Point(-3, 3), SYS_Point(0, 0), -2, 2},
      {"wrapping sum", "the sum wraps in 32 bits before it is halved",
       SYS_Point(kMax, 0), SYS_Point(1, 0), -1073741824, 0},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << ": " << c.reason);
    EXPECT_TRUE(SamePoint(c.a.Median(c.b), c.x, c.y));
    EXPECT_TRUE(SamePoint(c.b.Median(c.a), c.x, c.y));
  }
}

TEST(Point, LexicographicOrder) {
  struct Case {
    char const *name;
    char const *reason;
    SYS_Point lower, upper;
  };
  Case const cases[] = {
      {"x decides", "a far smaller y does not matter", SYS_Point(1, 100), SYS_Point(2, -100)},
      {"y on equal x", "y breaks the tie", SYS_Point(1, -1), SYS_Point(1, 0)},
      {"signed x", "negative coordinates come first", SYS_Point(-1, 5), SYS_Point(0, 0)},
      {"extremes", "compared signed, without wrapping", SYS_Point(kMin, 0), SYS_Point(kMax, 0)},
      {"not by length", "the shorter vector may be the greater",
       SYS_Point(-100, -100), SYS_Point(1, 0)},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << ": " << c.reason);
    EXPECT_EQ(c.lower < c.upper, 1);
    EXPECT_EQ(c.upper > c.lower, 1);
    EXPECT_EQ(c.upper < c.lower, 0);
    EXPECT_EQ(c.lower > c.upper, 0);
    EXPECT_EQ(c.lower == c.upper, 0);
    EXPECT_EQ(c.lower != c.upper, 1);
    SYS_DoublePoint const dl = c.lower, du = c.upper;
    EXPECT_EQ(dl < du, 1);
    EXPECT_EQ(du > dl, 1);
    EXPECT_EQ(du < dl, 0);
  }
  SYS_Point const p(4, -4);
  EXPECT_EQ(p < p, 0);
  EXPECT_EQ(p > p, 0);
  EXPECT_EQ(p == SYS_Point(4, -4), 1);
}

TEST(Point, LengthAndDistance) {
  struct Case {
    char const *name;
    char const *reason;
    SYS_Point p;
    double length;
  };
  Case const cases[] = {
      {"negative y axis", "an axis vector is the absolute coordinate", SYS_Point(0, -5), 5.0},
      {"diagonal", "3 * sqrt(2), not sqrt(18), which is one ulp lower", SYS_Point(3, 3),
       4.242640687119286},
      {"3-4-5", "the square root is exact here", SYS_Point(3, 4), 5.0},
      {"1-2", "the library square root of 5", SYS_Point(1, 2), std::sqrt(5.0)},
      {"smallest x", "its magnitude does not overflow", SYS_Point(kMin, 0), 2147483648.0},
      {"smallest diagonal", "magnitudes are taken in double", SYS_Point(kMin, kMin),
       2147483648.0 * 1.4142135623730951},
      {"largest near axis", "squares are summed in double", SYS_Point(kMax, 1), 2147483647.0},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << ": " << c.reason);
    EXPECT_EQ(c.p.Length(), c.length);
    EXPECT_EQ(SYS_Point(0, 0).Distance(c.p), c.length);
  }
  EXPECT_EQ(SYS_Point(1, 1).Distance(SYS_Point(4, 5)), 5.0);
  // The difference wraps: kMax - (-1) is kMin, whose length is 2^31.
  EXPECT_EQ(SYS_Point(kMax, 0).Distance(SYS_Point(-1, 0)), 2147483648.0);
}

TEST(Point, ManhattanLength) {
  EXPECT_EQ(SYS_Point(3, -4).MLength(), 7);
  EXPECT_EQ(SYS_Point(1, 1).MDistance(SYS_Point(-2, -3)), 7);
  // Magnitudes and their sum wrap in 32 bits.
  EXPECT_EQ(SYS_Point(kMin, 0).MLength(), kMin);
  EXPECT_EQ(SYS_Point(kMax, 1).MLength(), kMin);
  EXPECT_EQ(SYS_Point(kMax, -kMax).MLength(), -2);
}

TEST(Point, PolarRadiusUsesTheRefinedRoot) {
  // Length takes the diagonal shortcut, the radius the refined root of 2:
  // they differ in the last bit.
  EXPECT_EQ(SYS_Point(1, 1).Length(), 0x1.6a09e667f3bcdp+0);
  EXPECT_EQ(SYS_Point(1, 1).GetPolarRadius(), 0x1.6a09e667f3bccp+0);
  EXPECT_EQ(SYS_Point(3, -4).GetPolarRadius(), 5.0);
  EXPECT_EQ(SYS_Point(kMin, 0).GetPolarRadius(), 2147483648.0);
  EXPECT_EQ(SYS_Point(0, 0).GetPolarRadius(), 0.0);
  EXPECT_EQ(SYS_DoublePoint(1e200, 0.0).GetPolarRadius(), std::numeric_limits<double>::infinity());
}

struct PolarCase {
  char const *name;
  char const *reason;
  SYS_Point p;
  std::int32_t angle;
};

TEST(Point, PolarAngle) {
  PolarCase const cases[] = {
      {"origin", "the null vector has angle 0", SYS_Point(0, 0), 0},
      {"+x", "angle 0 points along +x", SYS_Point(1, 0), 0},
      {"+y", "a quarter turn, counter-clockwise", SYS_Point(0, 1), 162000000},
      {"-x", "a half turn", SYS_Point(-1, 0), 324000000},
      {"-y", "negative, then a full turn added", SYS_Point(0, -1), 486000000},
      {"third diagonal", "225 degrees", SYS_Point(-1, -1), 405000000},
      {"fourth diagonal", "315 degrees", SYS_Point(1, -1), 567000000},
      {"first quadrant", "95634184.24 truncates down", SYS_Point(3, 4), 95634184},
      {"second quadrant", "228365815.76 truncates down", SYS_Point(-3, 4), 228365815},
      {"third quadrant", "-228365815.76 truncates toward zero, then a turn is added",
       SYS_Point(-3, -4), 419634185},
      {"fourth quadrant", "-95634184.24 truncates toward zero, not down", SYS_Point(3, -4),
       552365816},
      {"just below +x", "-103.13 truncates to -103", SYS_Point(1000000, -1), 647999897},
      {"just above -x", "323999896.87 truncates down", SYS_Point(-1000000, 1), 323999896},
      {"just below -x", "-323999896.87 truncates toward zero", SYS_Point(-1000000, -1), 324000104},
      {"near -y", "-162000103.13 truncates toward zero", SYS_Point(-1, -1000000), 485999897},
      {"longest x", "an angle below one unit is 0", SYS_Point(kMax, 1), 0},
      {"longest -y", "-161999999.95 truncates to -161999999", SYS_Point(1, -kMax), 486000001},
      {"smallest x", "-323999999.95 truncates to -323999999", SYS_Point(kMin, -1), 324000001},
      {"smallest on -x", "exactly a half turn", SYS_Point(kMin, 0), 324000000},
  };
  for (PolarCase const &c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << ": " << c.reason);
    EXPECT_EQ(c.p.GetPolarAngle(), c.angle);
    EXPECT_EQ(SYS_DoublePoint(c.p).GetPolarAngle(), c.angle);
  }
}

TEST(DoublePoint, PolarAngleOfSignedZerosAndTinyValues) {
  struct Case {
    char const *name;
    char const *reason;
    SYS_DoublePoint p;
    std::int32_t angle;
  };
  Case const cases[] = {
      {"both zeros negative", "still the null vector", SYS_DoublePoint(-0.0, -0.0), 0},
      {"negative zero x", "still the null vector", SYS_DoublePoint(-0.0, 0.0), 0},
      {"negative zero y on -x", "-pi becomes a half turn", SYS_DoublePoint(-1.0, -0.0), 324000000},
      {"negative zero y on +x", "-0 is not negative", SYS_DoublePoint(1.0, -0.0), 0},
      {"tiny below +x", "truncates to 0, which is not negative", SYS_DoublePoint(1.0, -1e-300), 0},
      {"tiny below -x", "-323999999.9 truncates toward zero", SYS_DoublePoint(-1.0, -1e-9), 324000001},
      {"huge diagonal", "atan2 does not overflow", SYS_DoublePoint(1e300, 1e300), 81000000},
      {"NaN", "no number gives 0", SYS_DoublePoint(std::nan(""), 1.0), 0},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << ": " << c.reason);
    EXPECT_EQ(c.p.GetPolarAngle(), c.angle);
  }
}

TEST(Point, ScalarAndVectorProducts) {
  // Computed in double: the squares of 32-bit coordinates do not overflow.
  EXPECT_EQ(SYS_Point(kMax, kMax).ScalarProduct(SYS_Point(kMax, kMax)), 9223372028264841216.0);
  EXPECT_EQ(SYS_Point(kMin, 0).ScalarProduct(SYS_Point(kMin, 5)), 4611686018427387904.0);
  EXPECT_EQ(SYS_Point(3, 4).ScalarProduct(SYS_Point(-4, 3)), 0.0);
  // Positive when the other vector lies counter-clockwise of this one.
  EXPECT_EQ(SYS_Point(1, 0).VectorProduct(SYS_Point(0, 1)), 1.0);
  EXPECT_EQ(SYS_Point(0, 1).VectorProduct(SYS_Point(1, 0)), -1.0);
  EXPECT_EQ(SYS_Point(kMax, 0).VectorProduct(SYS_Point(0, kMax)), 4611686014132420609.0);
  EXPECT_EQ(SYS_Point(2, 4).VectorProduct(SYS_Point(-1, -2)), 0.0);

  SYS_DoublePoint const a(0.5, -1.5), b(2.0, 3.0);
  EXPECT_EQ(a.ScalarProduct(b), -3.5);
  EXPECT_EQ(a.VectorProduct(b), 4.5);
}

TEST(DoublePoint, IsValidOnlyStrictlyInsideTheWorkingArea) {
  struct Case {
    char const *name;
    char const *reason;
    SYS_DoublePoint p;
    int valid;
  };
  Case const cases[] = {
      {"x on the bound", "the bound itself is outside", SYS_DoublePoint(1066800000.0, 0.0), 0},
      {"x below the bound", "the last whole coordinate inside", SYS_DoublePoint(1066799999.0, 0.0), 1},
      {"x just below the bound", "fractions count", SYS_DoublePoint(1066799999.9, 0.0), 1},
      {"negative bound", "the bound is outside on both sides", SYS_DoublePoint(-1066800000.0, 0.0), 0},
      {"y on the bound", "y is checked too", SYS_DoublePoint(0.0, 1066800000.0), 0},
      {"negative y inside", "the last whole coordinate inside", SYS_DoublePoint(0.0, -1066799999.0), 1},
      {"NaN", "no number is no coordinate", SYS_DoublePoint(0.0, std::nan("")), 0},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << ": " << c.reason);
    EXPECT_EQ(c.p.IsValid(), c.valid);
  }
}

TEST(DoublePoint, ArithmeticAndExactComparison) {
  SYS_DoublePoint p(1.5, -2.0);
  p += SYS_DoublePoint(1.0, 1.0);
  p -= 0.5;
  EXPECT_EQ(p, SYS_DoublePoint(2.0, -1.5));
  p.Scale(0.25, 0.1);
  EXPECT_EQ(p, SYS_DoublePoint(0.5, -1.5 * 0.1));  // no rounding to whole units

  // No tolerance: 0.1 + 0.2 is not 0.3; signed zeros are equal; NaN is unequal.
  EXPECT_EQ(SYS_DoublePoint(0.1 + 0.2, 0.0) == SYS_DoublePoint(0.3, 0.0), 0);
  EXPECT_EQ(SYS_DoublePoint(0.1 + 0.2, 0.0) > SYS_DoublePoint(0.3, 0.0), 1);
  EXPECT_EQ(SYS_DoublePoint(-0.0, 0.0) == SYS_DoublePoint(0.0, -0.0), 1);
  SYS_DoublePoint const nan(std::nan(""), 0.0);
  EXPECT_EQ(nan == nan, 0);
  EXPECT_EQ(nan != nan, 1);
  EXPECT_EQ(nan < SYS_DoublePoint(0.0, 1.0), 0);
  EXPECT_EQ(SYS_DoublePoint(0.0, 1.0) < nan, 0);
}

TEST(Location, EveryStoreReducesTheOrientation) {
  struct Case {
    char const *name;
    char const *reason;
    std::int32_t angle;
    std::int32_t stored;
  };
  Case const cases[] = {
      {"full turn", "one turn is no turn", 648000000, 0},
      {"minus one", "a negative orientation stays negative", -1, -1},
      {"minus a turn and one", "the sign survives the reduction", -648000001, -1},
      {"two turns and one", "two turns are taken off", 1296000001, 1},
      {"last unit", "already reduced", 647999999, 647999999},
      {"largest int", "three turns are taken off", kMax, 203483647},
      {"smallest int", "reduced without overflow", kMin, -203483648},
  };
  SYS_Point const o(5, -6);
  for (Case const &c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << ": " << c.reason);
    EXPECT_EQ(SYS_Location(o, c.angle).GetOrientation(), c.stored);
    EXPECT_EQ(SYS_Location(5, -6, c.angle).GetOrientation(), c.stored);
    SYS_Location set;
    set.Set(o, c.angle);
    EXPECT_EQ(set.GetOrientation(), c.stored);
    set.Set(1, 2, c.angle);
    EXPECT_EQ(set.GetOrientation(), c.stored);
    set.SetOrientation(c.angle);
    EXPECT_EQ(set.GetOrientation(), c.stored);
    EXPECT_EQ(set.IsValid(), 1);
    SYS_Position const pos(o, c.angle, 0);
    EXPECT_EQ(pos.GetOrientation(), c.stored);
  }
}

TEST(Location, Equality) {
  SYS_Location loc(1, 2, 3);
  loc.GetOrigin().x = 11;
  EXPECT_EQ(loc, SYS_Location(11, 2, 3));
  EXPECT_NE(loc, SYS_Location(11, 2, 4));
  EXPECT_NE(loc, SYS_Location(11, 3, 3));
  // Orientations compare as stored: -1 and 647999999 point the same way but differ.
  EXPECT_EQ(SYS_Location(0, 0, -1) == SYS_Location(0, 0, 647999999), 0);
  EXPECT_EQ(SYS_Location(0, 0, -1) != SYS_Location(0, 0, 647999999), 1);
}

TEST(Location, SumAddsOriginsAndReducesTheOrientation) {
  struct Case {
    char const *name;
    char const *reason;
    SYS_Location a, b, sum;
  };
  Case const cases[] = {
      {"past a turn", "700000000 is reduced", SYS_Location(1, 2, 600000000),
       SYS_Location(3, 4, 100000000), SYS_Location(4, 6, 52000000)},
      {"negative past a turn", "the reduced sum stays negative", SYS_Location(0, 0, -600000000),
       SYS_Location(0, 0, -100000000), SYS_Location(0, 0, -52000000)},
      {"wrapping origin", "origins wrap in 32 bits", SYS_Location(kMax, kMin, 0),
       SYS_Location(1, -1, 0), SYS_Location(kMin, kMax, 0)},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << ": " << c.reason);
    EXPECT_EQ(c.a + c.b, c.sum);
    SYS_Location in_place = c.a;
    in_place += c.b;
    EXPECT_EQ(in_place, c.sum);
  }
}

TEST(Location, SwapBytesAndValidity) {
  SYS_Location loc(1, 2, 100);
  loc.SwapBytes();
  EXPECT_TRUE(SamePoint(loc.GetOrigin(), 0x01000000, 0x02000000));
  EXPECT_EQ(loc.GetOrientation(), 0x64000000);
  EXPECT_EQ(loc.IsValid(), 0);  // 1677721600 is beyond a turn

  // Two such orientations sum past 32 bits: the sum wraps, then is reduced.
  SYS_Location twice = loc + loc;
  EXPECT_EQ(twice.GetOrientation(), -291524096);
  EXPECT_EQ(twice.IsValid(), 1);

  loc.SwapBytes();
  EXPECT_EQ(loc, SYS_Location(1, 2, 100));
  EXPECT_EQ(loc.IsValid(), 1);
}

TEST(Position, MirrorFlagIsZeroOrOne) {
  SYS_Point const p(3, 4);
  EXPECT_EQ(SYS_Position(p, 0, 5).GetMirror(), 1);
  EXPECT_EQ(SYS_Position(3, 4, 0, -2).GetMirror(), 1);
  EXPECT_EQ(SYS_Position(SYS_Location(p, 0), 7).GetMirror(), 1);
  SYS_Position pos(p, 0, 0);
  EXPECT_EQ(pos.GetMirror(), 0);
  pos.SetMirror(-3);
  EXPECT_EQ(pos.GetMirror(), 1);
  pos.Set(p, 10, 9);
  EXPECT_EQ(pos.GetMirror(), 1);
  EXPECT_EQ(pos.IsValid(), 1);
  EXPECT_NE(pos, SYS_Position(p, 10, 0));  // the flag takes part in equality

  // A flag that is neither 0 nor 1 can only come from raw data.
  int const raw = 2;
  std::memcpy(reinterpret_cast<unsigned char *>(&pos) + sizeof(SYS_Location), &raw, sizeof raw);
  EXPECT_EQ(pos.GetMirror(), 2);
  EXPECT_EQ(pos.IsValid(), 0);
}

TEST(Position, ConstructionKeepsTheLocationAndLocationSettersKeepTheFlag) {
  SYS_Location swapped(0, 0, 100);
  swapped.SwapBytes();
  SYS_Position const from_location(swapped, 1);
  EXPECT_EQ(from_location.GetOrientation(), 0x64000000);  // taken unchanged
  EXPECT_EQ(from_location.IsValid(), 0);

  SYS_Position pos(1, 2, 3, 1);
  pos.Set(SYS_Point(4, 5), 648000006);
  EXPECT_EQ(pos, SYS_Position(4, 5, 6, 1));
  pos.Set(7, 8, -9);
  EXPECT_EQ(pos, SYS_Position(7, 8, -9, 1));
  pos.Initiate();
  EXPECT_EQ(pos, SYS_Position());
  EXPECT_EQ(pos.GetMirror(), 0);
}

TEST(Position, SumCombinesTheFlagsByExclusiveOr) {
  struct Case {
    char const *name;
    char const *reason;
    int a, b, sum;
  };
  Case const cases[] = {
      {"neither", "no flip", 0, 0, 0},
      {"this one", "one flip", 1, 0, 1},
      {"the other", "one flip", 0, 1, 1},
      {"both", "two flips cancel", 1, 1, 0},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << ": " << c.reason);
    SYS_Position const a(1, 2, 600000000, c.a);
    SYS_Position const b(3, 4, 100000000, c.b);
    SYS_Position const expected(4, 6, 52000000, c.sum);
    EXPECT_EQ(a + b, expected);
    SYS_Position in_place = a;
    in_place += b;
    EXPECT_EQ(in_place, expected);
  }
}

}  // namespace
