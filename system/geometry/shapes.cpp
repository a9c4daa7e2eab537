// Segments, circles, arcs and boxes: arc angles, extremes and box, and the
// box operations that combine, intersect and clip.
#include <algorithm>
#include <type_traits>
#include <utility>

#include "sys_shapes.h"
#include "sys_transform.h"

static_assert(sizeof(SYS_Segment) == 16 && std::is_trivially_copyable<SYS_Segment>::value,
              "a segment is two points, copied as bytes");
static_assert(sizeof(SYS_Circle) == 12 && std::is_trivially_copyable<SYS_Circle>::value,
              "a circle is a point and a 32-bit radius");
static_assert(sizeof(SYS_Arc) == 28 && std::is_trivially_copyable<SYS_Arc>::value,
              "an arc is start, end, centre and radius, and nothing more");
static_assert(sizeof(SYS_Box) == 16 && std::is_trivially_copyable<SYS_Box>::value,
              "a box is its lower-left and upper-right corners");

namespace {

std::int32_t Negate(std::int32_t v) { return SYS_WrapSub(0, v); }

// The one walk behind both nearest-extreme questions, on one axis ("along")
// with the other axis ("across") telling which way round the point goes.
// All offsets are already turned by the arc's direction: `across` is
// negative where the walk runs toward the low extreme, `along` is the
// point's offset from the centre on the axis, `toEnd` the end's offset
// across. `p`, `e`, `c` are the point's, the end's and the centre's
// coordinates along the axis. Answers -1, +1 or 0 and the extreme's
// coordinate along the axis.
int NearestExtreme(std::int32_t across, std::int32_t along, std::int32_t toEnd, std::int32_t p,
                   std::int32_t e, std::int32_t c, std::int32_t radius, std::int32_t *extreme) {
  std::int32_t const magnitude = radius < 0 ? Negate(radius) : radius;
  // From the extreme itself (along == +-radius) the opposite extreme is next;
  // p <= e and p >= e catch an end behind p on the same half, so the arc
  // runs round past the extreme before it gets there.
  if ((across < 0 || along == radius) && (toEnd > 0 || p <= e)) {
    *extreme = SYS_WrapSub(c, magnitude);
    return -1;
  }
  if ((across > 0 || along == Negate(radius)) && (toEnd < 0 || p >= e)) {
    *extreme = SYS_WrapAdd(c, magnitude);
    return 1;
  }
  *extreme = c;
  return 0;
}

std::int32_t EndAngle(SYS_Point const &end, SYS_Point const &center) {
  return SYS_DoublePoint(static_cast<double>(end.x) - center.x, static_cast<double>(end.y) - center.y)
      .GetPolarAngle();
}

int IsOnCircle(SYS_Point const &end, SYS_Point const &center, double radiusSquared) {
  SYS_Point const offset = end - center;
  std::int32_t const error = SYS_Round(offset.ScalarProduct(offset) - radiusSquared);
  return error >= -1 && error <= 1;
}

// One axis of the clipping sweep. A breakpoint is where this box (delta
// +-1) or the other box (+-2) begins or ends on the axis.
struct Breakpoint {
  std::int32_t value;
  int delta;
};

struct AxisSweep {
  std::int32_t values[4];  // distinct breakpoint values, ascending
  int states[3];           // bit 1: inside this box, bit 2: inside the other
  int intervals;           // values[i] to values[i + 1] has states[i]
};

AxisSweep SweepAxis(std::int32_t thisLow, std::int32_t thisHigh, std::int32_t otherLow, std::int32_t otherHigh) {
  // An inverted box counts from its high to its low value, so it acts as its
  // normalised form; a box of no extent adds +1 and -1 at one value.
  int const thisSign = thisLow >= thisHigh ? -1 : 1;
  int const otherSign = otherLow >= otherHigh ? -1 : 1;
  Breakpoint table[4] = {
      {thisLow, thisSign}, {thisHigh, -thisSign}, {otherLow, 2 * otherSign}, {otherHigh, -2 * otherSign}};
  // A sorting network of five compare-exchanges, written as selects: the
  // order of random boxes' edges is not predictable, a branch would miss.
  auto const order = [&table](int i, int j) {
    bool const swap = table[j].value < table[i].value;
    Breakpoint const low = swap ? table[j] : table[i];
    Breakpoint const high = swap ? table[i] : table[j];
    table[i] = low;
    table[j] = high;
  };
  order(0, 1);
  order(2, 3);
  order(0, 2);
  order(1, 3);
  order(1, 2);

  AxisSweep sweep{};
  int deltas[4];
  int distinct = 0;
  for (Breakpoint const &point : table) {
    if (distinct > 0 && sweep.values[distinct - 1] == point.value) {
      deltas[distinct - 1] += point.delta;
    } else {
      sweep.values[distinct] = point.value;
      deltas[distinct++] = point.delta;
    }
  }
  sweep.intervals = distinct - 1;
  int state = 0;
  for (int i = 0; i < sweep.intervals; ++i) sweep.states[i] = state += deltas[i];
  return sweep;
}

}  // namespace

// --- Segment and circle ------------------------------------------------------

void SYS_Segment::Transform(SYS_Transform const &t) {
  t.Transform(&start);
  t.Transform(&end);
}

void SYS_Circle::Transform(SYS_Transform const &t) { t.Transform(&center); }

// --- SYS_Arc -----------------------------------------------------------------

int SYS_Arc::IsValidArc() const {
  double const r = radius;
  double const radiusSquared = r * r;
  return IsOnCircle(start, center, radiusSquared) && IsOnCircle(end, center, radiusSquared);
}

std::int32_t SYS_Arc::GetStartAngle() const { return EndAngle(start, center); }

std::int32_t SYS_Arc::GetEndAngle() const { return EndAngle(end, center); }

std::int32_t SYS_Arc::GetSizeAngle() const {
  // Both angles lie in 0 to 647999999, so neither the difference nor the
  // turn added to it can overflow.
  std::int32_t sweep = GetEndAngle() - GetStartAngle();
  if (sweep > 0 && radius < 0) sweep -= SYS_FULL_CIRCLE;
  if (sweep < 0 && radius > 0) sweep += SYS_FULL_CIRCLE;
  return sweep;
}

double SYS_Arc::GetLength() const { return SYS_AngleToRadians(GetSizeAngle()) * radius; }

int SYS_Arc::GetXNearestExtrem(SYS_Point const &p, SYS_Point *out) const {
  // A clockwise arc is the counter-clockwise walk with every offset negated.
  auto const turned = [this](std::int32_t v) { return radius < 0 ? Negate(v) : v; };
  SYS_Point extreme = center;  // p or out may be a field of this arc
  int const side = NearestExtreme(turned(SYS_WrapSub(center.y, p.y)), turned(SYS_WrapSub(p.x, center.x)),
                                  turned(SYS_WrapSub(center.y, end.y)), p.x, end.x, center.x, radius, &extreme.x);
  *out = extreme;
  return side;
}

int SYS_Arc::GetYNearestExtrem(SYS_Point const &p, SYS_Point *out) const {
  auto const turned = [this](std::int32_t v) { return radius < 0 ? Negate(v) : v; };
  SYS_Point extreme = center;
  int const side = NearestExtreme(turned(SYS_WrapSub(p.x, center.x)), turned(SYS_WrapSub(p.y, center.y)),
                                  turned(SYS_WrapSub(end.x, center.x)), p.y, end.y, center.y, radius, &extreme.y);
  *out = extreme;
  return side;
}

SYS_Box SYS_Arc::GetBox() const {
  SYS_Box box = SYS_Segment::GetBox();
  // An arc passes at most two extremes on each axis: the nearest from the
  // start, then the nearest from that one.
  SYS_Point extreme;
  int side = GetXNearestExtrem(start, &extreme);
  for (int pass = 0; pass < 2 && side != 0; ++pass) {
    (side > 0 ? box.upperRight.x : box.lowerLeft.x) = extreme.x;
    if (pass == 0) side = GetXNearestExtrem(extreme, &extreme);
  }
  side = GetYNearestExtrem(start, &extreme);
  for (int pass = 0; pass < 2 && side != 0; ++pass) {
    (side > 0 ? box.upperRight.y : box.lowerLeft.y) = extreme.y;
    if (pass == 0) side = GetYNearestExtrem(extreme, &extreme);
  }
  return box;
}

void SYS_Arc::Transform(SYS_Transform const &t) {
  SYS_Segment::Transform(t);
  SYS_Circle::Transform(t);
}

// --- SYS_Box -----------------------------------------------------------------

void SYS_Box::SetCenter(SYS_Point const &p) {
  std::int32_t const width = GetWidth();
  std::int32_t const height = GetHeight();
  lowerLeft.Set(SYS_WrapSub(p.x, width / 2), SYS_WrapSub(p.y, height / 2));
  upperRight.Set(SYS_WrapAdd(lowerLeft.x, width), SYS_WrapAdd(lowerLeft.y, height));
}

void SYS_Box::Increase(std::int32_t px, std::int32_t py) {
  lowerLeft.Set(std::min(lowerLeft.x, px), std::min(lowerLeft.y, py));
  upperRight.Set(std::max(upperRight.x, px), std::max(upperRight.y, py));
}

void SYS_Box::Expand(std::int32_t amount) {
  lowerLeft -= amount;
  upperRight += amount;
  Normalize();
}

void SYS_Box::Normalize() {
  if (lowerLeft.x > upperRight.x) std::swap(lowerLeft.x, upperRight.x);
  if (lowerLeft.y > upperRight.y) std::swap(lowerLeft.y, upperRight.y);
}

void SYS_Box::Combine(SYS_Box const &other) {
  SYS_Box const neutral = Neutral();
  if (*this == neutral) {
    *this = other;
  } else if (other != neutral) {
    lowerLeft.Set(std::min(lowerLeft.x, other.lowerLeft.x), std::min(lowerLeft.y, other.lowerLeft.y));
    upperRight.Set(std::max(upperRight.x, other.upperRight.x), std::max(upperRight.y, other.upperRight.y));
  }
}

int SYS_Box::SetAsIntersection(SYS_Box const &a, SYS_Box const &b) {
  SYS_Box const both(std::max(a.lowerLeft.x, b.lowerLeft.x), std::max(a.lowerLeft.y, b.lowerLeft.y),
                     std::min(a.upperRight.x, b.upperRight.x), std::min(a.upperRight.y, b.upperRight.y));
  *this = both;
  if (lowerLeft.x >= upperRight.x) {
    lowerLeft.x = upperRight.x;
    return 0;
  }
  if (lowerLeft.y >= upperRight.y) {
    lowerLeft.y = upperRight.y;
    return 0;
  }
  return 1;
}

int SYS_Box::Clip(SYS_Box const &other, SYS_Box *out) const {
  // The sweep can give at most four pieces (a strip on each side of a box
  // inside `other`); the cap only makes that bound explicit, since the
  // caller's room is four.
  constexpr int kMaxPieces = 4;
  AxisSweep const xs = SweepAxis(lowerLeft.x, upperRight.x, other.lowerLeft.x, other.upperRight.x);
  AxisSweep const ys = SweepAxis(lowerLeft.y, upperRight.y, other.lowerLeft.y, other.upperRight.y);
  int count = 0;
  auto const emit = [&](int xi, std::int32_t low, std::int32_t high) {
    if (count < kMaxPieces) out[count++] = SYS_Box(xs.values[xi], low, xs.values[xi + 1], high);
  };
  for (int i = 0; i < xs.intervals; ++i) {
    if (xs.states[i] == 2) {
      // Outside this box on x: all of `other`'s height in one piece.
      int first = -1, last = -1;
      for (int j = 0; j < ys.intervals; ++j) {
        if ((ys.states[j] & 2) == 0) continue;
        if (first < 0) first = j;
        last = j;
      }
      if (first >= 0) emit(i, ys.values[first], ys.values[last + 1]);
    } else if (xs.states[i] == 3) {
      // Across this box: the pieces of `other` below and above it.
      for (int j = 0; j < ys.intervals; ++j) {
        if (ys.states[j] == 2) emit(i, ys.values[j], ys.values[j + 1]);
      }
    }
  }
  return count;
}

void SYS_Box::Transform(SYS_Transform const &t) {
  SYS_Point const corners[4] = {lowerLeft, GetUpperLeft(), upperRight, GetLowerRight()};
  lowerLeft.Set(SYS_MAX_COORD, SYS_MAX_COORD);
  upperRight.Set(-SYS_MAX_COORD, -SYS_MAX_COORD);
  for (SYS_Point const &corner : corners) {
    SYS_Point const image = t.Transform(corner);
    lowerLeft.Set(std::min(lowerLeft.x, image.x), std::min(lowerLeft.y, image.y));
    upperRight.Set(std::max(upperRight.x, image.x), std::max(upperRight.y, image.y));
  }
}
