// World and angle units of board geometry, and the numeric rules every
// geometry type shares.
//
// A coordinate is a std::int32_t count of world units: 1/38100 mil, which is
// 1/1500 micron, so every mil-grid and micron-grid coordinate is whole. The
// working area is the open square of half-width SYS_MAX_COORD around the
// origin; the y axis points up. An angle is a std::int32_t count of
// 1/1800000 degree, 0 along +x and growing counter-clockwise.
//
// A floating value becomes a coordinate or an angle in one of two ways, and
// each operation says which: SYS_Round (halves away from zero) or
// SYS_Truncate (toward zero). Sums and products of coordinates wrap in
// 32 bits (SYS_WrapAdd and its kin) rather than overflow.
//
// Nothing here checks a range or reports a failure.
#ifndef TOVIK_SYS_GEOMETRY_UNITS_H
#define TOVIK_SYS_GEOMETRY_UNITS_H

#include <cmath>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "tovik_export.h"

// World units per unit of length.
constexpr std::int32_t SYS_WORLD_PER_MICRON = 1500;
constexpr std::int32_t SYS_WORLD_PER_MIL = 38100;
constexpr std::int32_t SYS_WORLD_PER_MM = 1500000;
constexpr std::int32_t SYS_WORLD_PER_INCH = 38100000;

// Half-width of the working area: 28 inches. A coordinate at this distance
// from the origin is already outside.
constexpr std::int32_t SYS_MAX_COORD = 1066800000;

// Angle units per degree, per half turn and per full turn.
constexpr std::int32_t SYS_ANGLE_PER_DEGREE = 1800000;
constexpr std::int32_t SYS_HALF_CIRCLE = 324000000;
constexpr std::int32_t SYS_FULL_CIRCLE = 648000000;

// The constants of the angle conversions and of diagonal lengths. Results
// depend on these exact values and on the order in which they are applied,
// so geometry code uses them rather than its own.
constexpr double SYS_PI = 3.141592653589793;
constexpr double SYS_INV_PI = 0.3183098861837907;
constexpr double SYS_HALF_CIRCLE_DOUBLE = 3.24e8;
constexpr double SYS_INV_HALF_CIRCLE = 3.08641975308642e-9;
constexpr double SYS_SQRT2 = 1.4142135623730951;

// Truncates toward zero. A value beyond the 32-bit range gives the nearest
// limit and NaN gives 0, so no input is undefined.
inline std::int32_t SYS_Truncate(double value) {
  if (value > -2147483649.0 && value < 2147483648.0) return static_cast<std::int32_t>(value);
  if (value >= 2147483648.0) return INT32_MAX;
  if (value <= -2147483649.0) return INT32_MIN;
  return 0;
}

// Rounds by adding 0.5 (or -0.5 for a negative value) and truncating, so
// halves go away from zero: 2.5 gives 3 and -2.5 gives -3. The addition is
// done in double, exactly as written; limits as for SYS_Truncate. The half
// takes the value's sign bit rather than a branch on the sign, which would be
// mispredicted half the time over mixed coordinates; so -0.0 gets -0.5 where
// the rule says +0.5, and both truncate to 0.
inline std::int32_t SYS_Round(double value) { return SYS_Truncate(value + std::copysign(0.5, value)); }

#if defined(__SSE2__)
// SYS_Round of both lanes, without a branch: the half of each lane's sign is
// added, NaN is masked to 0, the lanes are capped at 2147483647 and
// truncated. Below the range the conversion itself gives -2147483648, the
// saturated value. So every input gives what SYS_Round gives; the two
// results are the low two 32-bit lanes, in order.
inline __m128i _SYS_RoundPacked(__m128d v) {
  v = _mm_add_pd(v, _mm_or_pd(_mm_and_pd(v, _mm_set1_pd(-0.0)), _mm_set1_pd(0.5)));
  v = _mm_and_pd(v, _mm_cmpeq_pd(v, v));
  return _mm_cvttpd_epi32(_mm_min_pd(v, _mm_set1_pd(2147483647.0)));
}
#endif

// Sum, difference and product modulo 2^32, as 32-bit integer arithmetic on
// coordinates is defined to behave.
inline std::int32_t SYS_WrapAdd(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
inline std::int32_t SYS_WrapSub(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}
inline std::int32_t SYS_WrapMul(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

// The truncating remainder by a full turn: the sign survives, so the result
// lies in -647999999 to 647999999 and -1 stays -1.
inline std::int32_t SYS_ReduceAngle(std::int32_t angle) { return angle % SYS_FULL_CIRCLE; }

// Radians to angle units, not yet made whole: radians x 3.24e8 x (1/pi).
inline double SYS_RadiansToAngle(double radians) {
  return radians * SYS_HALF_CIRCLE_DOUBLE * SYS_INV_PI;
}

// Angle units to radians: angle x pi x (1/324000000).
inline double SYS_AngleToRadians(double angle) { return angle * SYS_PI * SYS_INV_HALF_CIRCLE; }

// The square root with one Newton step on top of std::sqrt:
// r = sqrt(s), then (r*r + s) * 0.5 / r. Gives +0.0 for a zero and NaN for a
// negative or NaN argument; where r*r + s would overflow (s above about
// 9e307) it gives r, and infinity stays infinity.
TOVIK_API double SYS_RefinedSqrt(double value);

#endif  // TOVIK_SYS_GEOMETRY_UNITS_H
