// The shared numeric rules of board geometry.
#include <cmath>

#include "sys_geometry_units.h"

static_assert(SYS_FULL_CIRCLE == 2 * SYS_HALF_CIRCLE, "a full turn is two half turns");
static_assert(SYS_HALF_CIRCLE == 180 * SYS_ANGLE_PER_DEGREE, "a half turn is 180 degrees");
static_assert(SYS_MAX_COORD == 28 * SYS_WORLD_PER_INCH, "the working area is 28 inches each way");
static_assert(SYS_WORLD_PER_INCH == 1000 * SYS_WORLD_PER_MIL, "an inch is 1000 mils");
static_assert(SYS_WORLD_PER_MM == 1000 * SYS_WORLD_PER_MICRON, "a millimetre is 1000 microns");

double SYS_RefinedSqrt(double value) {
  double const root = std::sqrt(value);
  if (root == 0.0) return 0.0;
  // Separate statements, so that a compiler contracting within an expression
  // cannot fuse the multiply and the add: callers compare results bit for bit.
  double const square = root * root;
  double const sum = square + value;
  // Beyond about 9e307 the sum overflows and the step would give infinity;
  // the plain root is then the better answer. NaN and infinity pass as well.
  if (!std::isfinite(sum)) return root;
  double const half = sum * 0.5;
  return half / root;
}
