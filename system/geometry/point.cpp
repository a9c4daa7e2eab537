// Points, locations and positions: the operations that round, measure or swap.
#include <cmath>
#include <type_traits>

#include "sys_point.h"
#include "sys_transform.h"

static_assert(sizeof(SYS_Point) == 8 && std::is_trivially_copyable<SYS_Point>::value,
              "a point is two 32-bit coordinates, copied as bytes");
static_assert(sizeof(SYS_DoublePoint) == 16 && std::is_trivially_copyable<SYS_DoublePoint>::value,
              "a floating point is two doubles, copied as bytes");
static_assert(sizeof(SYS_Location) == 12 && std::is_trivially_copyable<SYS_Location>::value,
              "a location is a point and a 32-bit orientation");
static_assert(sizeof(SYS_Position) == 16 && std::is_trivially_copyable<SYS_Position>::value,
              "a position adds one int flag to a location");

namespace {

std::int32_t SwapBytes32(std::int32_t value) {
  return static_cast<std::int32_t>(__builtin_bswap32(static_cast<std::uint32_t>(value)));
}

// |v| modulo 2^32: the magnitude of INT32_MIN stays INT32_MIN, as 32-bit
// arithmetic gives it.
std::uint32_t Magnitude(std::int32_t v) {
  std::uint32_t const u = static_cast<std::uint32_t>(v);
  return v < 0 ? 0u - u : u;
}

std::int32_t PolarAngle(double x, double y) {
  // Signed zeros would otherwise turn the null vector into a half turn.
  if (x == 0.0 && y == 0.0) return 0;
  std::int32_t const angle = SYS_Truncate(SYS_RadiansToAngle(std::atan2(y, x)));
  return angle < 0 ? angle + SYS_FULL_CIRCLE : angle;
}

}  // namespace

void SYS_Point::SwapBytes() {
  x = SwapBytes32(x);
  y = SwapBytes32(y);
}

SYS_Point SYS_Point::operator*(double f) const {
  return SYS_Point(SYS_Truncate(x * f), SYS_Truncate(y * f));
}

SYS_Point SYS_Point::operator/(std::int32_t d) const {
  double const divisor = d;
  return SYS_Point(SYS_Round(x / divisor), SYS_Round(y / divisor));
}

void SYS_Point::Scale(double f) { Scale(f, f); }

void SYS_Point::Scale(double fx, double fy) {
  x = SYS_Round(x * fx);
  y = SYS_Round(y * fy);
}

double SYS_Point::Length() const {
  double const ax = std::fabs(static_cast<double>(x));
  double const ay = std::fabs(static_cast<double>(y));
  if (x == 0) return ay;
  if (y == 0) return ax;
  if (ax == ay) return ax * SYS_SQRT2;
  double const xx = ax * ax;
  double const yy = ay * ay;
  return std::sqrt(xx + yy);
}

std::int32_t SYS_Point::MLength() const {
  return static_cast<std::int32_t>(Magnitude(x) + Magnitude(y));
}

SYS_Point SYS_Point::Median(SYS_Point const &other) const {
  return SYS_Point(SYS_Round(SYS_WrapAdd(x, other.x) * 0.5), SYS_Round(SYS_WrapAdd(y, other.y) * 0.5));
}

std::int32_t SYS_Point::GetPolarAngle() const { return PolarAngle(x, y); }

double SYS_Point::GetPolarRadius() const { return SYS_DoublePoint(*this).GetPolarRadius(); }

double SYS_Point::ScalarProduct(SYS_Point const &other) const {
  return SYS_DoublePoint(*this).ScalarProduct(other);
}

double SYS_Point::VectorProduct(SYS_Point const &other) const {
  return SYS_DoublePoint(*this).VectorProduct(other);
}

std::int32_t SYS_DoublePoint::GetPolarAngle() const { return PolarAngle(x, y); }

double SYS_DoublePoint::GetPolarRadius() const { return SYS_RefinedSqrt(ScalarProduct(*this)); }

// Each product is its own statement, so that a compiler contracting within
// an expression cannot fuse it with the sum: results must not depend on the
// target's instruction set.
double SYS_DoublePoint::ScalarProduct(SYS_DoublePoint const &other) const {
  double const px = x * other.x;
  double const py = y * other.y;
  return px + py;
}

double SYS_DoublePoint::VectorProduct(SYS_DoublePoint const &other) const {
  double const a = x * other.y;
  double const b = y * other.x;
  return a - b;
}

SYS_Location &SYS_Location::operator+=(SYS_Location const &other) {
  origin += other.origin;
  orientation = SYS_ReduceAngle(SYS_WrapAdd(orientation, other.orientation));
  return *this;
}

void SYS_Location::SwapBytes() {
  origin.SwapBytes();
  orientation = SwapBytes32(orientation);
}

void SYS_Point::Transform(SYS_Transform const &t) { t.Transform(this); }

void SYS_DoublePoint::Transform(SYS_Transform const &t) { t.Transform(this); }

void SYS_Location::Transform(SYS_Transform const &t) {
  t.Transform(&origin);
  std::int32_t angle = SYS_ReduceAngle(SYS_WrapAdd(SYS_ReduceAngle(orientation), t.GetOrientation()));
  if (t.GetMirror()) {
    angle = SYS_HALF_CIRCLE - angle;
    if (angle < 0) angle += SYS_FULL_CIRCLE;
  }
  // Below minus a half turn the mirrored angle passes a full turn; it is
  // stored reduced like every orientation.
  orientation = SYS_ReduceAngle(angle);
}

void SYS_Position::Transform(SYS_Transform const &t) {
  SYS_Location::Transform(t);
  if (t.GetMirror()) mirror = !mirror;
}
