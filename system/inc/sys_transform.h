// SYS_Transform: the placement operator of board geometry.
//
// One plain value says how a point, an orientation, a length and an arc's
// angle and sweep pass from one frame to another: an affine map of the plane
// (x' = xx x + xy y + dx, y' = yx x + yy y + dy) and beside it separate
// conversions for angles (angleFactor, angleShift in radians, orientation in
// angle units), sweeps (sweepFactor, sweepShift, sweepOffset) and lengths
// (scale), since an orientation or a radius does not follow from the matrix.
// Objects are placed by a transform built from a SYS_Position, or from
// simple steps (move, rotate, scale, mirror) composed with AddConv.
//
// Every setter replaces the whole transform, except that SetRotate and
// SetMirror on an integer angle keep angleShift; only AddConv and the
// operators built on it compose. A transform is never normalised: its
// orientation may lie outside one turn after composition. Points are
// rounded when they become whole (sys_geometry_units.h); values outside
// 32 bits saturate and NaN gives 0, so a degenerate transform gives
// meaningless but defined results. The fields are public: a transform has no
// invariant, and callers may read and build one directly.
#ifndef TOVIK_SYS_TRANSFORM_H
#define TOVIK_SYS_TRANSFORM_H

#include <cstdint>

#include "sys_geometry_units.h"
#include "sys_point.h"
#include "sys_shapes.h"
#include "tovik_export.h"

class TOVIK_API SYS_Transform {
 public:
  double xx = 1.0;           // x' coefficient of x
  double xy = 0.0;           // x' coefficient of y
  double dx = 0.0;           // x' constant
  double yx = 0.0;           // y' coefficient of x
  double yy = 1.0;           // y' coefficient of y
  double dy = 0.0;           // y' constant
  double angleFactor = 1.0;  // an orientation is multiplied by it: -1 in a mirror
  double angleShift = 0.0;   // the added rotation in radians
  std::int32_t orientation = 0;  // the same rotation in angle units
  double sweepFactor = 1.0;  // a sweep is multiplied by it: -1 in a mirror
  double sweepShift = 0.0;   // added to a sweep
  std::int32_t sweepOffset = 0;  // integer twin of sweepShift
  // Length factor. Mutable because SetRConv, a constant operation, resets a
  // zero scale to 1.0.
  mutable double scale = 1.0;

  // The identity.
  SYS_Transform() = default;
  SYS_Transform(SYS_Transform const &) = default;
  // Both assignments answer a copy. The pointer must not be null: a null one
  // is a failed check and leaves the transform unchanged.
  SYS_Transform operator=(SYS_Transform const &other);
  SYS_Transform operator=(SYS_Transform const *other);

  // Placement by a position (point P, orientation A, mirror flag M):
  //   1. a move by -P, or none when noEntryMove is non-zero;
  //   2. the mirror x -> -x, here if mirrorFirst and M are both set;
  //   3. the rotation by A, if A is not 0;
  //   4. the mirror, here if M is set and mirrorFirst is not;
  //   5. a move by +P, unless noExitMove is non-zero.
  // So with neither move flag the object turns and flips around P; with
  // noEntryMove local coordinates are carried to P; with noExitMove world
  // coordinates are carried into the local frame.
  SYS_Transform(SYS_Position const &position, int mirrorFirst, int noEntryMove, int noExitMove);
  SYS_Transform(std::int32_t x, std::int32_t y, std::int32_t orientation, int mirror, int mirrorFirst,
                int noEntryMove, int noExitMove);
  SYS_Transform(SYS_Point const &point, std::int32_t orientation, int mirror, int mirrorFirst, int noEntryMove,
                int noExitMove);

  // --- Setters -----------------------------------------------------------

  // The identity moved by (x, y).
  void SetMove(double x, double y);
  void SetMove(std::int32_t x, std::int32_t y);
  // Rotation around P by the angle; orientation is the angle as given (not
  // reduced) and angleShift keeps the value it had.
  void SetRotate(SYS_Point const &p, std::int32_t angle);
  // Rotation around P by the angle with this cosine and sine. A pair of
  // length other than 1 is normalised, and one shorter than about 3e-5
  // (squared length below 1e-9) stands for angle 0. Fills angleShift with the
  // direction's angle in 0 to 2 pi and orientation with it in angle units,
  // truncated.
  void SetRotate(SYS_Point const &p, double cosine, double sine);
  // Scaling around P. A negative factor is a half turn as well (orientation
  // 324000000, angleShift pi), but not a mirror.
  void SetScale(SYS_Point const &p, double factor);
  // Reflection in the line through P at the angle; orientation is twice the
  // angle (wrapping in 32 bits) and angleShift keeps the value it had.
  void SetMirror(SYS_Point const &p, std::int32_t angle);
  // Reflection in the line through P with this direction. A direction of
  // squared length below 4.0 (other than exactly 1.0) is replaced by (1, 0);
  // a longer one is normalised. SetMirror(P, 0.0, 1.0) is x -> 2 Px - x, the
  // flip of a mirrored position.
  void SetMirror(SYS_Point const &p, double cosine, double sine);
  // From world coordinates to a frame with its origin at P and its x axis at
  // the angle: SetRotate(P, -angle), then a move by -P.
  void SetCoordSys(SYS_Point const &p, std::int32_t angle);
  // SetRotate(P, -sine, -cosine), then a move by -P: the two numbers change
  // places as well as sign.
  void SetCoordSys(SYS_Point const &p, double cosine, double sine);
  // Fits the rectangle spanned by p1 and p2 into the box, keeping its
  // proportions, centre on centre. The centres are halved sums truncated
  // toward zero. p1 and p2 sharing a coordinate give an infinite or NaN
  // scale, whose images saturate or become 0.
  void SetBoxConv(SYS_Point const &p1, SYS_Point const &p2, SYS_Box const &box);

  // --- Queries -----------------------------------------------------------

  std::int32_t GetOrientation() const { return orientation; }
  // 1 when angleFactor is not exactly 1.0 or orientation is not 0: a pure
  // mirror counts as a rotation.
  short IsRotate() const { return angleFactor != 1.0 || orientation != 0; }
  // 1 when sweepFactor is not exactly 1.0 or sweepOffset is not 0.
  short GetMirror() const { return sweepFactor != 1.0 || sweepOffset != 0; }
  short IsScale() const { return scale != 1.0; }
  // All thirteen fields, compared exactly.
  short operator==(SYS_Transform const &other) const;
  short operator!=(SYS_Transform const &other) const { return !(*this == other); }

  // --- Applying ----------------------------------------------------------

  // The image, no rounding.
  SYS_DoublePoint Transform(SYS_DoublePoint const &p) const {
    double const ax = xx * p.x;
    double const bx = xy * p.y;
    double const ay = yx * p.x;
    double const by = yy * p.y;
    return SYS_DoublePoint(ax + bx + dx, ay + by + dy);
  }
  void Transform(SYS_DoublePoint *p) const { *p = Transform(*p); }
  // The image, each coordinate rounded. On x86-64 both coordinates are
  // computed in one vector register, lane by lane the same products and sums
  // in the same order, so the result is the same to the last bit.
  SYS_Point Transform(SYS_Point const &p) const {
#if defined(__SSE2__)
    __m128d const x = _mm_set1_pd(p.x);
    __m128d const y = _mm_set1_pd(p.y);
    __m128d const sum = _mm_add_pd(_mm_mul_pd(_mm_set_pd(yx, xx), x), _mm_mul_pd(_mm_set_pd(yy, xy), y));
    SYS_Point image;
    _mm_storel_epi64(reinterpret_cast<__m128i *>(&image), _SYS_RoundPacked(_mm_add_pd(sum, _mm_set_pd(dy, dx))));
    return image;
#else
    return SYS_Point(Transform(SYS_DoublePoint(p.x, p.y)));
#endif
  }
  void Transform(SYS_Point *p) const { *p = Transform(*p); }
  void Convert(SYS_Point &p) const { p = Transform(p); }
  SYS_Point operator+(SYS_Point const &p) const { return Transform(p); }
  // The image under the inverse (see SetRConv; a singular transform's
  // inverse acts as the identity in its matrix).
  SYS_Point operator-(SYS_Point const &p) const;

  // A length times scale, rounded; operator- divides by scale instead (a
  // zero scale gives the 32-bit limit of the length's sign, or 0).
  void Convert(std::int32_t &length) const { length = *this + length; }
  std::int32_t operator+(std::int32_t length) const { return SYS_Round(length * scale); }
  std::int32_t operator-(std::int32_t length) const { return SYS_Round(length / scale); }

  // An arc's start angle and sweep:
  //   1. the angle is brought into 0 to 648000000 by whole turns (a full
  //      turn itself stays);
  //   2. with angleFactor 1.0 (within 1e-9) the orientation is added,
  //      wrapping in 32 bits; otherwise angle x angleFactor + angleShift,
  //      rounded (angleShift is added as it is, in radians);
  //   3. the angle is brought into 0 to 648000000 again;
  //   4. sweep x sweepFactor + sweepShift, truncated; beyond a full turn
  //      either way it becomes +648000000 (-648000000 itself stays).
  void Convert(std::int32_t &angle, std::int32_t &sweep) const;

  // --- Composition -------------------------------------------------------

  // This transform, followed by the other: a point goes through this one
  // first. Orientations compose as truncated(orientation x other's
  // angleFactor) + other's orientation, so a mirror followed by its own
  // inverse has orientation -648000000.
  void AddConv(SYS_Transform const &other);
  // Writes the inverse into r and answers 1, or 0 when the matrix, the angle
  // factor, the sweep factor or the scale is 0 (within 1e-12). r starts as
  // the identity and keeps what the steps before the failure wrote; a zero
  // scale also sets this transform's own scale to 1.0.
  short SetRConv(SYS_Transform &r) const;
  // Becomes its inverse as SetRConv leaves it, failure or not.
  void RConv();
  // AddConv of the other's inverse (failure or not).
  void SubConv(SYS_Transform const &other);
  SYS_Transform operator+(SYS_Transform const &other) const;
  SYS_Transform operator-(SYS_Transform const &other) const;

 private:
  void Place(SYS_Point const &point, std::int32_t angle, int mirror, int mirrorFirst, int noEntryMove,
             int noExitMove);
};

#endif  // TOVIK_SYS_TRANSFORM_H
