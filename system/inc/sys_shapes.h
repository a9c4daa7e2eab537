// Shapes: the segment, circle, arc and box values of board geometry.
//
// SYS_Segment is two points, SYS_Circle a centre and a signed radius, SYS_Arc
// a segment and a circle together (counter-clockwise from start to end when
// the radius is positive, clockwise when it is negative), and SYS_Box an
// axis-parallel rectangle kept as its lower-left and upper-right corners.
// Like the points they are plain values: no virtual functions, no heap, no
// state beyond their fields, and no invariant, so the fields are public.
// Nothing here reports a failure or checks a range; IsValid only answers.
//
// A box is not held normalised: constructors and setters store what they are
// given, and only Normalize, Expand, Transform and the operations that say so
// reorder. Three kinds of "nothing" are kept apart:
//   zero box     all four fields 0: SYS_Box() and SetEmpty() give it;
//   empty box    width 0 or height 0, anywhere (IsEmpty);
//   neutral box  left = lower = +SYS_MAX_COORD, right = upper = -SYS_MAX_COORD
//                (SYS_Box::Neutral()): the start of an accumulation, which
//                Combine recognises on either side.
// The edges belong to a box (IsInclude). Coordinate sums, differences and
// halves are 32-bit integer arithmetic that wraps; halves truncate toward
// zero.
#ifndef TOVIK_SYS_SHAPES_H
#define TOVIK_SYS_SHAPES_H

#include <cstdint>

#include "sys_geometry_units.h"
#include "sys_point.h"
#include "tovik_export.h"

class SYS_Box;
class SYS_Transform;

class TOVIK_API SYS_Segment {
 public:
  SYS_Point start;
  SYS_Point end;

  SYS_Segment() = default;
  SYS_Segment(SYS_Point const &s, SYS_Point const &e) : start(s), end(e) {}
  SYS_Segment(std::int32_t sx, std::int32_t sy, std::int32_t ex, std::int32_t ey) : start(sx, sy), end(ex, ey) {}

  void Initiate() { *this = SYS_Segment(); }
  void Set(SYS_Point const &s, SYS_Point const &e) { *this = SYS_Segment(s, e); }
  void Set(std::int32_t sx, std::int32_t sy, std::int32_t ex, std::int32_t ey) {
    *this = SYS_Segment(sx, sy, ex, ey);
  }

  SYS_Point &GetStart() { return start; }
  SYS_Point const &GetStart() const { return start; }
  SYS_Point &GetEnd() { return end; }
  SYS_Point const &GetEnd() const { return end; }
  // Index 0 is the start; every other index is the end.
  SYS_Point &operator[](int index) { return index == 0 ? start : end; }
  SYS_Point const &operator[](int index) const { return index == 0 ? start : end; }
  void SetStart(SYS_Point const &p) { start = p; }
  void SetStart(std::int32_t px, std::int32_t py) { start.Set(px, py); }
  void SetEnd(SYS_Point const &p) { end = p; }
  void SetEnd(std::int32_t px, std::int32_t py) { end.Set(px, py); }

  // Any two points are a segment: always 1.
  int IsValid() const { return 1; }

  int operator==(SYS_Segment const &other) const { return start == other.start && end == other.end; }
  int operator!=(SYS_Segment const &other) const { return !(*this == other); }

  // Both points moved by the vector, or the number added to all four
  // coordinates.
  SYS_Segment operator+(SYS_Point const &d) const { return SYS_Segment(start + d, end + d); }
  SYS_Segment operator-(SYS_Point const &d) const { return SYS_Segment(start - d, end - d); }
  SYS_Segment &operator+=(SYS_Point const &d) { return *this = *this + d; }
  SYS_Segment &operator-=(SYS_Point const &d) { return *this = *this - d; }
  SYS_Segment operator+(std::int32_t d) const { return SYS_Segment(start + d, end + d); }
  SYS_Segment operator-(std::int32_t d) const { return SYS_Segment(start - d, end - d); }
  SYS_Segment &operator+=(std::int32_t d) { return *this = *this + d; }
  SYS_Segment &operator-=(std::int32_t d) { return *this = *this - d; }

  // End minus start on one axis.
  std::int32_t GetDX() const { return SYS_WrapSub(end.x, start.x); }
  std::int32_t GetDY() const { return SYS_WrapSub(end.y, start.y); }
  // The polar radius of end - start (the refined root, not Length()).
  double GetLength() const { return (end - start).GetPolarRadius(); }
  // The normalised box of the two points.
  inline SYS_Box GetBox() const;
  // Both points become their images, rounded.
  void Transform(SYS_Transform const &t);
};

class TOVIK_API SYS_Circle {
 public:
  SYS_Point center;
  // Signed: an arc takes its direction from the sign, and no operation of
  // the circle takes the absolute value.
  std::int32_t radius = 0;

  SYS_Circle() = default;
  SYS_Circle(SYS_Point const &c, std::int32_t r) : center(c), radius(r) {}
  SYS_Circle(std::int32_t cx, std::int32_t cy, std::int32_t r) : center(cx, cy), radius(r) {}

  void Initiate() { *this = SYS_Circle(); }
  void Set(SYS_Point const &c, std::int32_t r) { *this = SYS_Circle(c, r); }
  void Set(std::int32_t cx, std::int32_t cy, std::int32_t r) { *this = SYS_Circle(cx, cy, r); }

  SYS_Point &GetCenter() { return center; }
  SYS_Point const &GetCenter() const { return center; }
  void SetCenter(SYS_Point const &c) { center = c; }
  void SetCenter(std::int32_t cx, std::int32_t cy) { center.Set(cx, cy); }
  std::int32_t GetRadius() const { return radius; }
  void SetRadius(std::int32_t r) { radius = r; }

  // 1 when the radius lies strictly between -SYS_MAX_COORD and +SYS_MAX_COORD.
  int IsValid() const { return radius > -SYS_MAX_COORD && radius < SYS_MAX_COORD; }

  int operator==(SYS_Circle const &other) const { return center == other.center && radius == other.radius; }
  int operator!=(SYS_Circle const &other) const { return !(*this == other); }

  // (cx - r, cy - r, cx + r, cy + r) with the radius as stored: a negative
  // radius gives an inverted box.
  inline SYS_Box GetBox() const;
  // The centre becomes its image; the radius stays as it is, also under a
  // scale or a mirror.
  void Transform(SYS_Transform const &t);
};

// An arc: the segment's start and end on the circle, in the order start, end,
// centre, radius. The extremes and the box walk the circle from the start in
// the arc's direction.
class TOVIK_API SYS_Arc : public SYS_Segment, public SYS_Circle {
 public:
  SYS_Arc() = default;
  SYS_Arc(SYS_Point const &s, SYS_Point const &e, SYS_Point const &c, std::int32_t r)
      : SYS_Segment(s, e), SYS_Circle(c, r) {}

  void Initiate() { *this = SYS_Arc(); }
  void Set(SYS_Point const &s, SYS_Point const &e, SYS_Point const &c, std::int32_t r) {
    *this = SYS_Arc(s, e, c, r);
  }

  // All seven values.
  int operator==(SYS_Arc const &other) const {
    return SYS_Segment::operator==(other) && SYS_Circle::operator==(other);
  }
  int operator!=(SYS_Arc const &other) const { return !(*this == other); }

  // The radius test of the circle.
  int IsValid() const { return SYS_Circle::IsValid(); }
  // 1 when both ends lie on the circle: the squared distance from the centre
  // minus the squared radius, rounded, is -1, 0 or 1. The only tolerance.
  int IsValidArc() const;

  // Polar angle, 0 to 647999999, of the vector from the centre to that end
  // (differences taken in double).
  std::int32_t GetStartAngle() const;
  std::int32_t GetEndAngle() const;
  // The signed sweep: 0 to 647999999 counter-clockwise, -647999999 to 0
  // clockwise; 0 when start and end coincide. A radius of 0 leaves the plain
  // difference of the angles, which may have either sign.
  std::int32_t GetSizeAngle() const;
  // Sweep in radians times the radius: not negative, as the two share a sign.
  double GetLength() const;

  // From p on the arc, going in the arc's direction: is an x extreme of the
  // circle reached before the end? -1 for the leftmost point, +1 for the
  // rightmost, 0 when the end comes first. `out` (which must not be null)
  // receives that extreme, or the centre when the answer is 0.
  int GetXNearestExtrem(SYS_Point const &p, SYS_Point *out) const;
  // The same for y: -1 for the lowest point, +1 for the highest.
  int GetYNearestExtrem(SYS_Point const &p, SYS_Point *out) const;

  // The box of the two ends and of every extreme the arc passes. Start equal
  // to end is the full circle here, though its sweep is 0.
  SYS_Box GetBox() const;
  // The three points move; the radius, and with it the direction, stays.
  void Transform(SYS_Transform const &t);
};

class TOVIK_API SYS_Box {
 public:
  SYS_Point lowerLeft;   // left, lower
  SYS_Point upperRight;  // right, upper

  SYS_Box() = default;
  SYS_Box(SYS_Point const &ll, SYS_Point const &ur) : lowerLeft(ll), upperRight(ur) {}
  SYS_Box(std::int32_t left, std::int32_t lower, std::int32_t right, std::int32_t upper)
      : lowerLeft(left, lower), upperRight(right, upper) {}
  // A square of the given size from the point: up and right for a size that
  // is not negative, down and left (the point is then the upper right) for a
  // negative one.
  SYS_Box(SYS_Point const &p, std::int32_t size)
      : lowerLeft(size < 0 ? p + size : p), upperRight(size < 0 ? p : p + size) {}

  // The neutral box, from which Combine accumulates.
  static SYS_Box Neutral() { return SYS_Box(SYS_MAX_COORD, SYS_MAX_COORD, -SYS_MAX_COORD, -SYS_MAX_COORD); }

  void SetEmpty() { *this = SYS_Box(); }
  void Set(SYS_Point const &ll, SYS_Point const &ur) { *this = SYS_Box(ll, ur); }
  void Set(std::int32_t left, std::int32_t lower, std::int32_t right, std::int32_t upper) {
    *this = SYS_Box(left, lower, right, upper);
  }
  void Set(SYS_Point const &p, std::int32_t size) { *this = SYS_Box(p, size); }

  std::int32_t GetLeft() const { return lowerLeft.x; }
  std::int32_t GetLower() const { return lowerLeft.y; }
  std::int32_t GetRight() const { return upperRight.x; }
  std::int32_t GetUpper() const { return upperRight.y; }
  void SetLeft(std::int32_t v) { lowerLeft.x = v; }
  void SetLower(std::int32_t v) { lowerLeft.y = v; }
  void SetRight(std::int32_t v) { upperRight.x = v; }
  void SetUpper(std::int32_t v) { upperRight.y = v; }

  SYS_Point &GetLowerLeft() { return lowerLeft; }
  SYS_Point const &GetLowerLeft() const { return lowerLeft; }
  SYS_Point &GetUpperRight() { return upperRight; }
  SYS_Point const &GetUpperRight() const { return upperRight; }
  void SetLowerLeft(SYS_Point const &p) { lowerLeft = p; }
  void SetLowerLeft(std::int32_t px, std::int32_t py) { lowerLeft.Set(px, py); }
  void SetUpperRight(SYS_Point const &p) { upperRight = p; }
  void SetUpperRight(std::int32_t px, std::int32_t py) { upperRight.Set(px, py); }
  SYS_Point GetUpperLeft() const { return SYS_Point(lowerLeft.x, upperRight.y); }
  SYS_Point GetLowerRight() const { return SYS_Point(upperRight.x, lowerLeft.y); }

  // Right - left and upper - lower: negative for an inverted box.
  std::int32_t GetWidth() const { return SYS_WrapSub(upperRight.x, lowerLeft.x); }
  std::int32_t GetDX() const { return GetWidth(); }
  std::int32_t GetHeight() const { return SYS_WrapSub(upperRight.y, lowerLeft.y); }
  std::int32_t GetDY() const { return GetHeight(); }

  // Left <= right and lower <= upper: an empty box can be valid.
  int IsValid() const { return lowerLeft.x <= upperRight.x && lowerLeft.y <= upperRight.y; }
  // Width 0 or height 0.
  int IsEmpty() const { return lowerLeft.x == upperRight.x || lowerLeft.y == upperRight.y; }

  int operator==(SYS_Box const &other) const {
    return lowerLeft == other.lowerLeft && upperRight == other.upperRight;
  }
  int operator!=(SYS_Box const &other) const { return !(*this == other); }

  // The edges belong to the box.
  int IsInclude(SYS_Point const &p) const {
    return lowerLeft.x <= p.x && p.x <= upperRight.x && lowerLeft.y <= p.y && p.y <= upperRight.y;
  }

  // Half the sums of the opposite sides, truncated toward zero: (-3, -3, 0, 0)
  // has the centre (-1, -1).
  SYS_Point GetCenter() const {
    return SYS_Point(SYS_WrapAdd(lowerLeft.x, upperRight.x) / 2, SYS_WrapAdd(lowerLeft.y, upperRight.y) / 2);
  }
  // Moves the box, keeping width w and height h, so that its lower left is
  // the point minus half of w and h (truncated toward zero).
  void SetCenter(SYS_Point const &p);
  // Adds the vector to both corners.
  void Move(SYS_Point const &d) {
    lowerLeft += d;
    upperRight += d;
  }
  // Grows the box just enough to hold the point: left and lower take the
  // smaller, right and upper the larger value, each on its own, so that
  // IsInclude(x, y) holds afterwards even for an inverted box.
  void Increase(std::int32_t px, std::int32_t py);
  // Each side moves out by the amount (in for a negative amount), then the
  // box is normalised: an amount that passes the middle turns it inside out
  // and back, so (0, 0, 10, 10) expanded by -10 is (0, 0, 10, 10) again.
  void Expand(std::int32_t amount);
  // Swaps left and right if left > right, lower and upper if lower > upper.
  void Normalize();

  // Becomes the smallest box holding both. A neutral box on either side
  // gives the other box unchanged; a zero box is a real box at the origin.
  void Combine(SYS_Box const &other);
  // Left and lower become the larger, right and upper the smaller of the two
  // boxes' values. Returns 1 when the boxes overlap with area. Otherwise 0,
  // and the first axis that fails (x before y) is collapsed onto its upper
  // value, leaving an empty box; boxes that only touch give 0.
  int SetAsIntersection(SYS_Box const &a, SYS_Box const &b);
  // Writes to out[0..3] disjoint boxes that together cover the part of
  // `other` outside this box, and returns how many (0 to 4, never more). An
  // inverted box acts as its normalised form; a box of no extent on an axis
  // takes nothing away. With this box inside `other` the pieces are the full
  // strip to the left, the piece below, the piece above and the full strip
  // to the right. Pieces share edges but no area. `out` must not be null.
  int Clip(SYS_Box const &other, SYS_Box *out) const;
  // Becomes the normalised box of the images of its four corners (rounded),
  // each side starting from the working area's limit: larger than before
  // under a rotation that is not a multiple of 90 degrees.
  void Transform(SYS_Transform const &t);
};

inline SYS_Box SYS_Segment::GetBox() const {
  SYS_Box box(start, end);
  box.Normalize();
  return box;
}

inline SYS_Box SYS_Circle::GetBox() const {
  return SYS_Box(center - radius, center + radius);
}

#endif  // TOVIK_SYS_SHAPES_H
