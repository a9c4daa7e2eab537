// Points: the value types all board geometry is built from.
//
// SYS_Point is an integer point or vector in world units, SYS_DoublePoint the
// same in floating point for intermediate results, SYS_Location a point with
// an orientation, and SYS_Position a location that may also be mirrored. They
// are plain values: no virtual functions, no heap, no state beyond their
// fields, copied freely. Units and the rounding words used below are those of
// sys_geometry_units.h.
//
// Comparisons answer int 0 or 1; < and > are lexicographic (x decides, y
// only on equal x). Integer arithmetic wraps in 32 bits, and nothing checks a
// range or a divisor: IsValid only answers.
#ifndef TOVIK_SYS_POINT_H
#define TOVIK_SYS_POINT_H

#include <cstdint>

#include "sys_geometry_units.h"
#include "tovik_export.h"

class SYS_DoublePoint;
class SYS_Transform;

class TOVIK_API SYS_Point {
 public:
  std::int32_t x;
  std::int32_t y;

  SYS_Point() : x(0), y(0) {}
  SYS_Point(std::int32_t px, std::int32_t py) : x(px), y(py) {}

  void Initiate() { x = y = 0; }
  void Set(std::int32_t px, std::int32_t py) { x = px; y = py; }

  // Each coordinate rounded.
  inline SYS_Point &operator=(SYS_DoublePoint const &other);
  // Each coordinate exactly, as a double.
  inline operator SYS_DoublePoint() const;

  std::int32_t GetX() const { return x; }
  std::int32_t GetY() const { return y; }
  void SetX(std::int32_t px) { x = px; }
  void SetY(std::int32_t py) { y = py; }

  // Index 0 is x; every other index, negative ones included, is y.
  std::int32_t &operator[](int index) { return index == 0 ? x : y; }
  std::int32_t operator[](int index) const { return index == 0 ? x : y; }

  // Any pair of coordinates is a point: always 1.
  int IsValid() const { return 1; }
  // A bare point has nothing to draw.
  void Draw() const {}
  // Reverses the byte order of x, then of y, for data of the other byte order.
  void SwapBytes();

  SYS_Point operator+(SYS_Point const &other) const {
    return SYS_Point(SYS_WrapAdd(x, other.x), SYS_WrapAdd(y, other.y));
  }
  SYS_Point operator-(SYS_Point const &other) const {
    return SYS_Point(SYS_WrapSub(x, other.x), SYS_WrapSub(y, other.y));
  }
  SYS_Point &operator+=(SYS_Point const &other) { return *this = *this + other; }
  SYS_Point &operator-=(SYS_Point const &other) { return *this = *this - other; }
  // The number is added to, or taken from, both coordinates.
  SYS_Point operator+(std::int32_t d) const { return SYS_Point(SYS_WrapAdd(x, d), SYS_WrapAdd(y, d)); }
  SYS_Point operator-(std::int32_t d) const { return SYS_Point(SYS_WrapSub(x, d), SYS_WrapSub(y, d)); }
  SYS_Point &operator+=(std::int32_t d) { return *this = *this + d; }
  SYS_Point &operator-=(std::int32_t d) { return *this = *this - d; }
  // Both coordinates times the factor, wrapping in 32 bits.
  SYS_Point operator*(std::int32_t f) const { return SYS_Point(SYS_WrapMul(x, f), SYS_WrapMul(y, f)); }
  // The native long factor is taken modulo 2^32, then as above.
  SYS_Point operator*(long f) const { return *this * static_cast<std::int32_t>(static_cast<std::uint32_t>(f)); }
  // Each coordinate times the factor, truncated: (3, 0) * 0.9 is (2, 0).
  SYS_Point operator*(double f) const;
  // Each coordinate divided in double, rounded: (7, -7) / 2 is (4, -4). A zero
  // divisor gives the 32-bit limit of each coordinate's sign, and 0 for 0.
  SYS_Point operator/(std::int32_t d) const;
  // In place, each coordinate times the factor, rounded: (3, 0) becomes (3, 0)
  // under 0.9, where operator* would truncate to 2.
  void Scale(double f);
  void Scale(double fx, double fy);

  int operator==(SYS_Point const &other) const { return x == other.x && y == other.y; }
  int operator!=(SYS_Point const &other) const { return !(*this == other); }
  int operator<(SYS_Point const &other) const { return x < other.x || (x == other.x && y < other.y); }
  int operator>(SYS_Point const &other) const { return other < *this; }

  // Euclidean length. Vectors along an axis or a diagonal are exact multiples
  // of a coordinate and do not depend on the square root.
  double Length() const;
  // Length of this - other (the difference wraps in 32 bits).
  double Distance(SYS_Point const &other) const { return (*this - other).Length(); }
  // |x| + |y|, wrapping in 32 bits.
  std::int32_t MLength() const;
  std::int32_t MDistance(SYS_Point const &other) const { return (*this - other).MLength(); }
  // The midpoint: sums wrap in 32 bits, then each is halved and rounded, so
  // (0, 0) and (1, 1) meet at (1, 1), and (0, 0) and (-1, -1) at (-1, -1).
  SYS_Point Median(SYS_Point const &other) const;

  // Angle from +x in 0 to 647999999, negative angles being truncated toward
  // zero before a full turn is added; (0, 0) gives 0.
  std::int32_t GetPolarAngle() const;
  // The refined square root of x*x + y*y; may differ from Length() by an ulp.
  double GetPolarRadius() const;
  // x1*x2 + y1*y2 in double, so it cannot overflow.
  double ScalarProduct(SYS_Point const &other) const;
  // x1*y2 - y1*x2 in double: positive when other lies counter-clockwise of this.
  double VectorProduct(SYS_Point const &other) const;

  // Becomes its image under the transform, each coordinate rounded.
  void Transform(SYS_Transform const &t);
};

class TOVIK_API SYS_DoublePoint {
 public:
  double x;
  double y;

  SYS_DoublePoint() : x(0.0), y(0.0) {}
  SYS_DoublePoint(double px, double py) : x(px), y(py) {}

  void Initiate() { x = y = 0.0; }
  void Set(double px, double py) { x = px; y = py; }

  // Exact.
  SYS_DoublePoint &operator=(SYS_Point const &other) {
    x = other.x;
    y = other.y;
    return *this;
  }
  // Each coordinate rounded. On x86-64 both in one vector register without
  // a branch: this is the last step of every transformed point.
  operator SYS_Point() const {
#if defined(__SSE2__)
    SYS_Point p;
    _mm_storel_epi64(reinterpret_cast<__m128i *>(&p), _SYS_RoundPacked(_mm_set_pd(y, x)));
    return p;
#else
    return SYS_Point(SYS_Round(x), SYS_Round(y));
#endif
  }

  double GetX() const { return x; }
  double GetY() const { return y; }
  void SetX(double px) { x = px; }
  void SetY(double py) { y = py; }

  // Index 0 is x; every other index is y.
  double &operator[](int index) { return index == 0 ? x : y; }
  double operator[](int index) const { return index == 0 ? x : y; }

  // 1 when both coordinates lie strictly inside the working area; the bounds
  // themselves and NaN are invalid.
  int IsValid() const {
    return x > -SYS_MAX_COORD && x < SYS_MAX_COORD && y > -SYS_MAX_COORD && y < SYS_MAX_COORD;
  }

  SYS_DoublePoint operator+(SYS_DoublePoint const &other) const {
    return SYS_DoublePoint(x + other.x, y + other.y);
  }
  SYS_DoublePoint operator-(SYS_DoublePoint const &other) const {
    return SYS_DoublePoint(x - other.x, y - other.y);
  }
  SYS_DoublePoint &operator+=(SYS_DoublePoint const &other) { return *this = *this + other; }
  SYS_DoublePoint &operator-=(SYS_DoublePoint const &other) { return *this = *this - other; }
  SYS_DoublePoint operator+(double d) const { return SYS_DoublePoint(x + d, y + d); }
  SYS_DoublePoint operator-(double d) const { return SYS_DoublePoint(x - d, y - d); }
  SYS_DoublePoint &operator+=(double d) { return *this = *this + d; }
  SYS_DoublePoint &operator-=(double d) { return *this = *this - d; }

  // Exact comparison, no tolerance.
  int operator==(SYS_DoublePoint const &other) const { return x == other.x && y == other.y; }
  int operator!=(SYS_DoublePoint const &other) const { return !(*this == other); }
  int operator<(SYS_DoublePoint const &other) const {
    return x < other.x || (x == other.x && y < other.y);
  }
  int operator>(SYS_DoublePoint const &other) const { return other < *this; }

  // As SYS_Point::GetPolarAngle; (0, 0) gives 0 whatever the signs of the zeros.
  std::int32_t GetPolarAngle() const;
  // The refined square root of x*x + y*y.
  double GetPolarRadius() const;
  double ScalarProduct(SYS_DoublePoint const &other) const;
  double VectorProduct(SYS_DoublePoint const &other) const;

  // Plain products, no rounding.
  void Scale(double f) { Scale(f, f); }
  void Scale(double fx, double fy) {
    x *= fx;
    y *= fy;
  }

  // Becomes its image under the transform, not rounded.
  void Transform(SYS_Transform const &t);
};

inline SYS_Point &SYS_Point::operator=(SYS_DoublePoint const &other) {
  return *this = SYS_Point(other);
}
inline SYS_Point::operator SYS_DoublePoint() const { return SYS_DoublePoint(x, y); }

// A point with an orientation. Every operation that stores an orientation
// stores it reduced by the truncating remainder by a full turn: the sign
// survives, so -1 stays -1 and differs from 647999999.
class TOVIK_API SYS_Location {
 public:
  SYS_Location() : origin(), orientation(0) {}
  SYS_Location(SYS_Point const &o, std::int32_t angle) : origin(o), orientation(SYS_ReduceAngle(angle)) {}
  SYS_Location(std::int32_t ox, std::int32_t oy, std::int32_t angle)
      : origin(ox, oy), orientation(SYS_ReduceAngle(angle)) {}

  void Initiate() { *this = SYS_Location(); }
  void Set(SYS_Point const &o, std::int32_t angle) { *this = SYS_Location(o, angle); }
  void Set(std::int32_t ox, std::int32_t oy, std::int32_t angle) { *this = SYS_Location(ox, oy, angle); }

  SYS_Point &GetOrigin() { return origin; }
  SYS_Point const &GetOrigin() const { return origin; }
  void SetOrigin(SYS_Point const &o) { origin = o; }
  void SetOrigin(std::int32_t ox, std::int32_t oy) { origin.Set(ox, oy); }

  // As stored: possibly negative.
  std::int32_t GetOrientation() const { return orientation; }
  void SetOrientation(std::int32_t angle) { orientation = SYS_ReduceAngle(angle); }

  // 1 when the orientation lies in -647999999 to 647999999 (only byte
  // swapping or raw data can put it elsewhere).
  int IsValid() const { return orientation > -SYS_FULL_CIRCLE && orientation < SYS_FULL_CIRCLE; }

  // All fields, orientations as stored.
  int operator==(SYS_Location const &other) const {
    return origin == other.origin && orientation == other.orientation;
  }
  int operator!=(SYS_Location const &other) const { return !(*this == other); }

  // Origins added; orientations added in 32 bits, then reduced.
  SYS_Location &operator+=(SYS_Location const &other);
  SYS_Location operator+(SYS_Location const &other) const {
    SYS_Location sum(*this);
    sum += other;
    return sum;
  }

  // Reverses the byte order of x, y and the orientation.
  void SwapBytes();

  // The origin becomes its image; the transform's orientation is added
  // (then reduced), and under a mirror the orientation o becomes a half turn
  // minus o, plus a full turn if that is negative, stored reduced.
  void Transform(SYS_Transform const &t);

 protected:
  SYS_Point origin;
  std::int32_t orientation;
};

// A location that may also be mirrored. The flag is stored as 0 or 1: any
// non-zero argument is 1.
class TOVIK_API SYS_Position : public SYS_Location {
 public:
  SYS_Position() : SYS_Location(), mirror(0) {}
  // The location as it is, unreduced if it came so.
  SYS_Position(SYS_Location const &location, int flag) : SYS_Location(location), mirror(flag != 0) {}
  SYS_Position(SYS_Point const &o, std::int32_t angle, int flag) : SYS_Location(o, angle), mirror(flag != 0) {}
  SYS_Position(std::int32_t ox, std::int32_t oy, std::int32_t angle, int flag)
      : SYS_Location(ox, oy, angle), mirror(flag != 0) {}

  void Initiate() { *this = SYS_Position(); }
  // The location's own setters stay available and keep the flag.
  using SYS_Location::Set;
  void Set(SYS_Point const &o, std::int32_t angle, int flag) { *this = SYS_Position(o, angle, flag); }
  void Set(std::int32_t ox, std::int32_t oy, std::int32_t angle, int flag) {
    *this = SYS_Position(ox, oy, angle, flag);
  }

  int GetMirror() const { return mirror; }
  void SetMirror(int flag) { mirror = flag != 0; }

  // The orientation is valid and the flag is 0 or 1.
  int IsValid() const { return SYS_Location::IsValid() && (mirror == 0 || mirror == 1); }

  int operator==(SYS_Position const &other) const {
    return SYS_Location::operator==(other) && mirror == other.mirror;
  }
  int operator!=(SYS_Position const &other) const { return !(*this == other); }

  // The location sum; the other's set flag inverts this one's.
  SYS_Position &operator+=(SYS_Position const &other) {
    SYS_Location::operator+=(other);
    if (other.mirror != 0) mirror = !mirror;
    return *this;
  }
  // The location sum with the exclusive or of the flags.
  SYS_Position operator+(SYS_Position const &other) const {
    return SYS_Position(SYS_Location::operator+(other), (mirror != 0) != (other.mirror != 0));
  }

  // As a location's, and a mirroring transform inverts the flag.
  void Transform(SYS_Transform const &t);

 protected:
  int mirror;
};

#endif  // TOVIK_SYS_POINT_H
