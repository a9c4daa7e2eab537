// The placement transform and the Transform members of points and shapes.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "sys_transform.h"

namespace {

#define TRACE_ROW(c) SCOPED_TRACE(testing::Message() << (c).name << ": " << (c).reason)

std::int32_t const kDegree = SYS_ANGLE_PER_DEGREE;
SYS_Point const kP(1000, 2000);

// A transform made by one setter: MADE(SetScale(kP, 2.0)).
#define MADE(call) [] { SYS_Transform t; t.call; return t; }()

// Images of single points: the placement steps in order, the direction
// rules of the setters, and the rounding and saturation of the result.
TEST(Transform, Images) {
  SYS_Position const placed(kP, 90 * kDegree, 1);
  struct {
    char const *name, *reason;
    SYS_Transform t;
    SYS_Point in, out;
  } const cases[] = {
      {"flip after turn", "(10, 0) turns to (0, 10), flips, moves to P", {placed, 0, 1, 0}, {10, 0}, {1000, 2010}},
      {"flip before turn", "(10, 0) flips to (-10, 0), then turns", {placed, 1, 1, 0}, {10, 0}, {1000, 1990}},
      {"around P", "P + (10, 0) as local (10, 0)", {placed, 0, 0, 0}, {1010, 2000}, {1000, 2010}},
      {"into the frame", "minus P, turn, flip", {placed, 0, 0, 1}, {1000, 2010}, {10, 0}},
      {"mirror flag alone", "reflected in the vertical through P", {kP, 0, 1, 0, 0, 0}, {1010, 7}, {990, 7}},
      {"mirror by angle", "the line at 90 degrees", MADE(SetMirror(kP, 90 * kDegree)), {1010, 7}, {990, 7}},
      {"mirror direction (0, 2)", "q = 4: normalised", MADE(SetMirror(kP, 0.0, 2.0)), {1010, 7}, {990, 7}},
      {"mirror direction (0, 1.5)", "q < 4: (1, 0)", MADE(SetMirror(kP, 0.0, 1.5)), {1010, 7}, {1010, 3993}},
      {"rotation direction (0, 1.5)", "normalised", MADE(SetRotate(kP, 0.0, 1.5)), {1010, 2000}, {1000, 2010}},
      {"null rotation direction", "angle 0", MADE(SetRotate(kP, 0.0, 0.0)), {3, 4}, {3, 4}},
      {"swapped frame", "places and signs trade: -90", MADE(SetCoordSys(kP, 1.0, 0.0)), {1000, 2010}, {10, 0}},
      {"scale by -2", "a half turn around P", MADE(SetScale(kP, -2.0)), {1001, 2003}, {998, 1994}},
      {"box fit", "scale 2", MADE(SetBoxConv({0, 0}, {100, 50}, {1000, 1000, 1400, 1100})), {100, 50}, {1300, 1100}},
      {"degenerate fit", "NaN images: 0", MADE(SetBoxConv({5, 5}, {5, 5}, {0, 0, 10, 10})), {7, 9}, {0, 0}},
      {"beyond 32 bits", "saturates", {SYS_Point(SYS_MAX_COORD, 0), 0, 0, 0, 1, 0}, {2000000000, -5}, {INT32_MAX, -5}},
  };
  for (auto const &c : cases) {
    TRACE_ROW(c);
    EXPECT_EQ(c.t + c.in, c.out);
  }
}

// A placement taken back through its inverse, at the edge of the working
// area: exact at quarter turns, within a unit otherwise.
TEST(Transform, PlacementsRoundTripThroughTheirInverse) {
  std::int32_t const edge = SYS_MAX_COORD - 1;
  struct {
    char const *name;
    SYS_Position position;
    int mirrorFirst, tolerance;
  } const cases[] = {
      {"quarter turn, flipped", {SYS_Point(-edge, edge), 270 * kDegree, 1}, 0, 0},
      {"flipped first", {SYS_Point(edge, 0), 90 * kDegree, 1}, 1, 0},
      {"odd angle", {SYS_Point(12345, -67890), 123456789, 0}, 0, 1},
      {"odd angle flipped", {SYS_Point(edge / 2, -edge / 2), -987654321 % SYS_FULL_CIRCLE, 1}, 1, 1},
  };
  SYS_Point const points[] = {{0, 0}, {edge / 2, -edge / 2}, {-edge / 3, edge / 3}, {1, -1}};
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SYS_Transform const place(c.position, c.mirrorFirst, 1, 0);
    for (SYS_Point const &p : points) {
      SYS_Point const back = place - (place + p);
      EXPECT_LE(std::abs(back.x - p.x), c.tolerance);
      EXPECT_LE(std::abs(back.y - p.y), c.tolerance);
    }
  }
}

TEST(Transform, AnglesAndComposition) {
  SYS_Transform turn, flip = MADE(SetMirror(SYS_Point(), 0.0, 1.0));
  turn.SetRotate(kP, 90 * kDegree);
  EXPECT_TRUE((turn - turn).GetOrientation() == 0 && std::fabs((turn - turn).xy) < 1e-15);
  EXPECT_EQ((flip - flip).GetOrientation(), -SYS_FULL_CIRCLE) << "truncated(o * -1) + (-o)";
  EXPECT_EQ(MADE(SetRotate(kP, 3.0, -4.0)).GetOrientation(), 552365815) << "not atan2, which gives ...816";
  EXPECT_FALSE(MADE(SetScale(kP, -2.0)).GetMirror());
  SYS_Transform kept = flip;  // angleShift pi
  kept.SetMirror(kP, 45 * kDegree);
  EXPECT_EQ(kept.GetOrientation(), 90 * kDegree) << "twice the angle";
  kept.SetRotate(kP, 5);
  EXPECT_EQ(kept.angleShift, SYS_PI) << "the integer-angle setters keep angleShift";
  // The same matrix from an integer angle and from its cosine and sine; only
  // angleShift tells them apart.
  SYS_Transform fromCosine;
  fromCosine.SetRotate(kP, turn.xx, turn.yx);
  EXPECT_TRUE(fromCosine.xx == turn.xx && fromCosine.dx == turn.dx && fromCosine.dy == turn.dy);
  EXPECT_NE(fromCosine, turn);

  struct {
    char const *name, *reason;
    SYS_Transform t;
    std::int32_t angle, sweep, angleOut, sweepOut;
  } const cases[] = {
      {"negative angle", "brought into one turn", {}, -1, -700000000, 647999999, SYS_FULL_CIRCLE},
      {"two turns", "a turn stays", {}, 2 * SYS_FULL_CIRCLE, -SYS_FULL_CIRCLE, SYS_FULL_CIRCLE, -SYS_FULL_CIRCLE},
      {"turned by a quarter", "orientation added", turn, SYS_FULL_CIRCLE - 1, 5, 161999999, 5},
      {"mirrored", "-100 plus pi radians, rounded, then one turn", flip, 100, 5, 647999903, -5},
      {"orientation past 32 bits", "wraps", MADE(SetRotate(SYS_Point(), INT32_MAX)), 600000000, 0, 396516351, 0},
  };
  for (auto const &c : cases) {
    TRACE_ROW(c);
    std::int32_t angle = c.angle, sweep = c.sweep;
    c.t.Convert(angle, sweep);
    EXPECT_EQ(angle, c.angleOut);
    EXPECT_EQ(sweep, c.sweepOut);
  }

  // A zero scale cannot be inverted: the inverse keeps the identity matrix,
  // and this transform's scale is reset.
  SYS_Transform squash = MADE(SetScale(kP, 0.0));
  EXPECT_EQ(squash - SYS_Point(3, 4), SYS_Point(3, 4));
  EXPECT_EQ(squash - 5, INT32_MAX) << "5 / 0 saturates";
  SYS_Transform thin, inverse;
  thin.scale = 0.0;
  EXPECT_TRUE(thin.SetRConv(inverse) == 0 && thin.scale == 1.0);
}

TEST(Transform, MembersOfPointsAndShapes) {
  SYS_Transform const flip(kP, 0, 1, 0, 0, 0);
  SYS_Position position(kP, 10 * kDegree, 0);
  position.Transform(flip);
  EXPECT_EQ(position, SYS_Position(kP, 350 * kDegree, 1)) << "a half turn minus (10 + 180) degrees, plus a turn";
  SYS_Location location(kP, -400000000);
  location.Transform(MADE(SetMirror(SYS_Point(), 0)));
  EXPECT_EQ(location.GetOrientation(), 76000000) << "324000000 + 400000000, reduced";

  SYS_Arc arc(SYS_Point(10, 0), SYS_Point(0, 10), SYS_Point(), -10);
  arc.Transform(MADE(SetScale(SYS_Point(), 3.0)));
  EXPECT_EQ(arc, SYS_Arc(SYS_Point(30, 0), SYS_Point(0, 30), SYS_Point(), -10)) << "radius and direction kept";

  SYS_Box box(-10, -10, 10, 10);
  box.Transform(MADE(SetRotate(SYS_Point(), 1.0, 1.0)));
  EXPECT_EQ(box, SYS_Box(-14, -14, 14, 14)) << "the corners of a 45-degree turn";
  SYS_Box far(SYS_MAX_COORD - 4, 0, SYS_MAX_COORD - 2, 2);
  far.Transform(MADE(SetScale(SYS_Point(), 2.0)));
  EXPECT_EQ(far, SYS_Box(SYS_MAX_COORD, 0, 2133599996, 4)) << "extremes start at the working area's limits";
}

}  // namespace
