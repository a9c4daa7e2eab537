// Segments, circles, arcs and boxes.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <set>
#include <utility>

#include "sys_shapes.h"

void PrintTo(SYS_Box const &b, std::ostream *os) {
  *os << "(" << b.GetLeft() << ", " << b.GetLower() << ", " << b.GetRight() << ", " << b.GetUpper() << ")";
}

namespace {

double const kPi = 3.14159265358979323846;

#define TRACE_ROW(c) SCOPED_TRACE(testing::Message() << (c).name << ": " << (c).reason)

template <class Change>
SYS_Box After(SYS_Box box, Change change) {
  change(box);
  return box;
}

// Every ordered pair of twelve lattice points of a circle of radius 5000, in
// both directions: each quadrant, arcs that pass one to four extremes, and
// start equal to end. The box must match the extremes of a dense sampling.
TEST(Arc, BoxAndSweepMatchASampledArc) {
  SYS_Point const center(-7, 11);
  SYS_Point const lattice[12] = {{5, 0}, {4, 3},   {3, 4},  {0, 5},  {-3, 4}, {-4, 3},
                                 {-5, 0}, {-4, -3}, {0, -5}, {3, -4}, {4, -3}, {-3, -4}};
  for (SYS_Point const &s : lattice) {
    for (SYS_Point const &e : lattice) {
      for (std::int32_t const radius : {5000, -5000}) {
        SYS_Arc const arc(center + s * 1000, center + e * 1000, center, radius);
        SCOPED_TRACE(testing::Message() << s.x << "," << s.y << " to " << e.x << "," << e.y << " radius " << radius);
        double const from = std::atan2(s.y, s.x);
        double turn = std::fmod(std::atan2(e.y, e.x) - from + 4 * kPi, 2 * kPi);
        if (radius < 0) turn = turn == 0.0 ? 0.0 : turn - 2 * kPi;
        EXPECT_NEAR(arc.GetSizeAngle(), turn * 324000000.0 / kPi, 2.0) << "each angle truncated";
        EXPECT_NEAR(arc.GetLength(), std::fabs(turn) * 5000.0, 1e-3);
        if (turn == 0.0) turn = 2 * kPi;  // the box of a closed arc is the circle's
        double low[2] = {1e9, 1e9}, high[2] = {-1e9, -1e9};  // x, y
        for (int i = 0; i <= 20000; ++i) {
          double const a = from + turn * i / 20000;
          double const at[2] = {center.x + 5000 * std::cos(a), center.y + 5000 * std::sin(a)};
          for (int k : {0, 1}) low[k] = std::fmin(low[k], at[k]), high[k] = std::fmax(high[k], at[k]);
        }
        SYS_Box const box = arc.GetBox();
        for (int k : {0, 1}) {
          EXPECT_NEAR(box.GetLowerLeft()[k], low[k], 0.01);
          EXPECT_NEAR(box.GetUpperRight()[k], high[k], 0.01);
        }
      }
    }
  }
}

TEST(Arc, EdgesOfTheCircleTests) {
  // The tolerance is 1 square unit: (1, 2) is 5 from a squared radius of 4.
  EXPECT_EQ(SYS_Arc(SYS_Point(2, 0), SYS_Point(1, 2), SYS_Point(0, 0), 2).IsValidArc(), 1);
  EXPECT_EQ(SYS_Arc(SYS_Point(2, 0), SYS_Point(1, 1), SYS_Point(0, 0), 2).IsValidArc(), 0);
  EXPECT_EQ(SYS_Arc(SYS_Point(1, 1), SYS_Point(2, 0), SYS_Point(0, 0), 2).IsValidArc(), 0) << "start tested";
  // A radius of 0 keeps the plain difference of the angles, of either sign.
  EXPECT_EQ(SYS_Arc(SYS_Point(0, 1), SYS_Point(1, 0), SYS_Point(0, 0), 0).GetSizeAngle(), -162000000);
  EXPECT_EQ(SYS_Arc(SYS_Point(1, 0), SYS_Point(0, 1), SYS_Point(0, 0), 0).GetSizeAngle(), 162000000);
  SYS_Arc const quarter(SYS_Point(100, 0), SYS_Point(0, 100), SYS_Point(0, 0), 100);
  SYS_Point out(9, 9);
  EXPECT_EQ(quarter.GetXNearestExtrem(SYS_Point(100, 0), &out), 0);
  EXPECT_EQ(out, SYS_Point(0, 0)) << "no extreme: the centre";
  EXPECT_EQ(SYS_Segment(0, 0, 1, 1).GetLength(), SYS_Point(1, 1).GetPolarRadius()) << "not Length()";
}

TEST(Box, Operations) {
  SYS_Box const neutral = SYS_Box::Neutral();
  SYS_Box const square(0, 0, 10, 10);
  struct {
    char const *name, *reason;
    SYS_Box actual, expected;
  } const cases[] = {
      {"neutral combined", "takes the other box", After(neutral, [&](SYS_Box &b) { b.Combine(square); }), square},
      {"combined with neutral", "unchanged", After(square, [&](SYS_Box &b) { b.Combine(neutral); }), square},
      {"zero box combined", "the origin is taken in", After(SYS_Box(), [](SYS_Box &b) { b.Combine({5, 5, 9, 9}); }),
       {0, 0, 9, 9}},
      {"negative centre", "-3 / 2 truncates to -1", SYS_Box(SYS_Box(-3, -3, 0, 0).GetCenter(), 0), {-1, -1, -1, -1}},
      {"centred", "-5 / 2 truncates to -2, width kept",
       After({0, 0, 5, -5}, [](SYS_Box &b) { b.SetCenter(SYS_Point(0, 0)); }), {-2, 2, 3, -3}},
      {"shrunk past the middle", "inside out, then normalised",
       After(square, [](SYS_Box &b) { b.Expand(-10); }), square},
      {"increased when inverted", "each side on its own",
       After({10, 0, 0, 10}, [](SYS_Box &b) { b.Increase(5, 20); }), {5, 0, 5, 20}},
      {"negative square", "the point is the upper right", SYS_Box(SYS_Point(3, 4), -2), {1, 2, 3, 4}},
      {"negative radius", "an inverted box", SYS_Circle(0, 0, -5).GetBox(), {5, 5, -5, -5}},
  };
  for (auto const &c : cases) {
    TRACE_ROW(c);
    EXPECT_EQ(c.actual, c.expected);
  }
  SYS_Box both;
  EXPECT_EQ(both.SetAsIntersection(square, {10, 0, 20, 10}), 0) << "touching";
  EXPECT_EQ(both, SYS_Box(10, 0, 10, 10));
  EXPECT_EQ(both.SetAsIntersection(square, {2, 12, 8, 20}), 0) << "apart on y only";
  EXPECT_EQ(both, SYS_Box(2, 10, 8, 10)) << "lower collapses onto upper";
}

// The cells [i, i+1) x [j, j+1) of a box, as its normalised form.
std::set<std::pair<int, int>> Cells(SYS_Box box) {
  box.Normalize();
  std::set<std::pair<int, int>> cells;
  for (int i = box.GetLeft(); i < box.GetRight(); ++i)
    for (int j = box.GetLower(); j < box.GetUpper(); ++j) cells.insert({i, j});
  return cells;
}

// Random small boxes, inverted and flat ones included: the pieces have area,
// never overlap, and cover exactly the cells of `other` outside this box.
TEST(Box, ClipCoversTheOtherBoxOutsideThisOne) {
  std::mt19937 random(7);
  std::uniform_int_distribution<int> coordinate(-3, 6);
  auto const box = [&] {
    return SYS_Box(coordinate(random), coordinate(random), coordinate(random), coordinate(random));
  };
  for (int round = 0; round < 4000; ++round) {
    SYS_Box const cut = box(), other = box();
    SCOPED_TRACE("clip " + testing::PrintToString(cut) + " from " + testing::PrintToString(other));
    SYS_Box pieces[4];
    int const count = cut.Clip(other, pieces);
    ASSERT_TRUE(count >= 0 && count <= 4);
    std::set<std::pair<int, int>> expected = Cells(other), covered;
    for (auto const &cell : Cells(cut)) expected.erase(cell);
    for (int i = 0; i < count; ++i) {
      EXPECT_TRUE(pieces[i].IsValid() && !pieces[i].IsEmpty());
      for (auto const &cell : Cells(pieces[i])) EXPECT_TRUE(covered.insert(cell).second) << "piece " << i;
    }
    EXPECT_EQ(covered, expected);
  }
  // The order: left strip, below, above, right strip.
  SYS_Box pieces[4];
  SYS_Box const order[4] = {{0, 0, 2, 6}, {2, 0, 4, 2}, {2, 4, 4, 6}, {4, 0, 6, 6}};
  ASSERT_EQ(SYS_Box(2, 2, 4, 4).Clip({0, 0, 6, 6}, pieces), 4);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(pieces[i], order[i]);
}

}  // namespace
