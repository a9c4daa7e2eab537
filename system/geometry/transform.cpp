// The placement transform: setters, composition, inversion and the angle
// conversion.
#include <cmath>

#include "ssm_check.h"
#include "sys_transform.h"

namespace {

constexpr double kHalfPi = 1.5707963267948966;
constexpr double kQuarterPi = 0.7853981633974483;
constexpr double kThreeHalfPi = 4.71238898038469;
constexpr double kTwoPi = 6.283185307179586;

std::int32_t Negate(std::int32_t v) { return SYS_WrapSub(0, v); }

// The direction's angle in radians, 0 up to 2 pi, from the arc tangent of
// the smaller magnitude over the larger. It is not atan2: the two can differ
// in the last bit, and so in the last angle unit.
double FullPolarAngle(double x, double y) {
  if (y == 0.0) return x >= 0.0 ? 0.0 : SYS_PI;
  if (x == 0.0) return y >= 0.0 ? kHalfPi : kThreeHalfPi;
  double const a = std::fabs(x);
  double const b = std::fabs(y);
  double t;
  if (a == b) {
    t = kQuarterPi;
  } else if (a < b) {
    t = kHalfPi - std::atan(a / b);
  } else {
    t = std::atan(b / a);
  }
  if (x > 0.0) return y >= 0.0 ? t : kTwoPi - t;
  return y >= 0.0 ? SYS_PI - t : SYS_PI + t;
}

// A direction (c, s) of squared length other than exactly 1.0 is divided by
// its length, or replaced by (1, 0) when the squared length is below the
// limit.
void NormaliseDirection(double &c, double &s, double limit) {
  double const q = c * c + s * s;
  if (q == 1.0) return;
  if (q < limit) {
    c = 1.0;
    s = 0.0;
    return;
  }
  double const length = SYS_RefinedSqrt(q);
  c /= length;
  s /= length;
}

// Brings an angle into 0 to 648000000 by whole turns; 648000000 stays.
std::int32_t IntoOneTurn(std::int32_t angle) {
  if (angle < 0) {
    angle %= SYS_FULL_CIRCLE;
    return angle < 0 ? angle + SYS_FULL_CIRCLE : angle;
  }
  return angle > SYS_FULL_CIRCLE ? (angle - 1) % SYS_FULL_CIRCLE + 1 : angle;
}

// The matrix of a rotation around p with cosine c and sine s, and the
// factors of a transform without mirror or scale. Angle fields untouched.
void SetRotation(SYS_Transform &t, SYS_Point const &p, double c, double s) {
  double const px = p.x;
  double const py = p.y;
  t.xx = c;
  t.xy = -s;
  t.dx = px - c * px + s * py;
  t.yx = s;
  t.yy = c;
  t.dy = py - s * px - c * py;
  t.angleFactor = t.sweepFactor = t.scale = 1.0;
  t.sweepShift = 0.0;
  t.sweepOffset = 0;
}

// The matrix of a reflection through p, with C and S the cosine and sine of
// twice the line's angle. Angle fields untouched.
void SetReflection(SYS_Transform &t, SYS_Point const &p, double c, double s) {
  double const px = p.x;
  double const py = p.y;
  t.xx = c;
  t.xy = s;
  t.dx = px - c * px - s * py;
  t.yx = s;
  t.yy = -c;
  t.dy = py - s * px + c * py;
  t.angleFactor = t.sweepFactor = -1.0;
  t.scale = 1.0;
  t.sweepShift = 0.0;
  t.sweepOffset = 0;
}

SYS_Transform Move(SYS_Point const &p) {
  SYS_Transform move;
  move.SetMove(p.x, p.y);
  return move;
}

}  // namespace

SYS_Transform SYS_Transform::operator=(SYS_Transform const &other) {
  xx = other.xx;
  xy = other.xy;
  dx = other.dx;
  yx = other.yx;
  yy = other.yy;
  dy = other.dy;
  angleFactor = other.angleFactor;
  angleShift = other.angleShift;
  orientation = other.orientation;
  sweepFactor = other.sweepFactor;
  sweepShift = other.sweepShift;
  sweepOffset = other.sweepOffset;
  scale = other.scale;
  return *this;
}

SYS_Transform SYS_Transform::operator=(SYS_Transform const *other) {
  SSM_CHECK(other != nullptr, "SYS_Transform: assignment from a null transform");
  if (other != nullptr) *this = *other;
  return *this;
}

SYS_Transform::SYS_Transform(SYS_Position const &position, int mirrorFirst, int noEntryMove, int noExitMove) {
  Place(position.GetOrigin(), position.GetOrientation(), position.GetMirror(), mirrorFirst, noEntryMove,
        noExitMove);
}

SYS_Transform::SYS_Transform(std::int32_t x, std::int32_t y, std::int32_t angle, int mirror, int mirrorFirst,
                             int noEntryMove, int noExitMove) {
  Place(SYS_Point(x, y), angle, mirror, mirrorFirst, noEntryMove, noExitMove);
}

SYS_Transform::SYS_Transform(SYS_Point const &point, std::int32_t angle, int mirror, int mirrorFirst,
                             int noEntryMove, int noExitMove) {
  Place(point, angle, mirror, mirrorFirst, noEntryMove, noExitMove);
}

void SYS_Transform::Place(SYS_Point const &point, std::int32_t angle, int mirror, int mirrorFirst,
                          int noEntryMove, int noExitMove) {
  if (noEntryMove != 0) {
    SetMove(0, 0);
  } else {
    SetMove(Negate(point.x), Negate(point.y));
  }
  SYS_Point const origin;
  SYS_Transform flip;
  flip.SetMirror(origin, 0.0, 1.0);
  if (mirrorFirst != 0 && mirror != 0) AddConv(flip);
  if (angle != 0) {
    SYS_Transform turn;
    turn.SetRotate(origin, angle);
    AddConv(turn);
  }
  if (mirrorFirst == 0 && mirror != 0) AddConv(flip);
  if (noExitMove == 0) AddConv(Move(point));
}

void SYS_Transform::SetMove(double x, double y) {
  *this = SYS_Transform();
  dx = x;
  dy = y;
}

void SYS_Transform::SetMove(std::int32_t x, std::int32_t y) {
  SetMove(static_cast<double>(x), static_cast<double>(y));
}

void SYS_Transform::SetRotate(SYS_Point const &p, std::int32_t angle) {
  double const kept = angleShift;
  double const radians = SYS_AngleToRadians(angle);
  *this = SYS_Transform();
  SetRotation(*this, p, std::cos(radians), std::sin(radians));
  angleShift = kept;
  orientation = angle;
}

void SYS_Transform::SetRotate(SYS_Point const &p, double cosine, double sine) {
  NormaliseDirection(cosine, sine, 1e-9);
  *this = SYS_Transform();
  SetRotation(*this, p, cosine, sine);
  angleShift = FullPolarAngle(cosine, sine);
  orientation = SYS_Truncate(SYS_RadiansToAngle(angleShift));
}

void SYS_Transform::SetScale(SYS_Point const &p, double factor) {
  double const px = p.x;
  double const py = p.y;
  *this = SYS_Transform();
  xx = yy = scale = factor;
  dx = px - px * factor;
  dy = py - py * factor;
  if (factor < 0.0) {
    angleShift = SYS_PI;
    orientation = SYS_HALF_CIRCLE;
  }
}

void SYS_Transform::SetMirror(SYS_Point const &p, std::int32_t angle) {
  double const kept = angleShift;
  double const twice = SYS_AngleToRadians(angle) * 2.0;
  *this = SYS_Transform();
  SetReflection(*this, p, std::cos(twice), std::sin(twice));
  angleShift = kept;
  orientation = SYS_WrapAdd(angle, angle);
}

void SYS_Transform::SetMirror(SYS_Point const &p, double cosine, double sine) {
  NormaliseDirection(cosine, sine, 4.0);
  double const c = cosine * cosine - sine * sine;
  double const s = 2.0 * cosine * sine;
  *this = SYS_Transform();
  SetReflection(*this, p, c, s);
  angleShift = FullPolarAngle(c, s);
  orientation = SYS_Truncate(SYS_RadiansToAngle(angleShift));
}

void SYS_Transform::SetCoordSys(SYS_Point const &p, std::int32_t angle) {
  SetRotate(p, Negate(angle));
  AddConv(Move(SYS_Point(Negate(p.x), Negate(p.y))));
}

void SYS_Transform::SetCoordSys(SYS_Point const &p, double cosine, double sine) {
  SetRotate(p, -sine, -cosine);
  AddConv(Move(SYS_Point(Negate(p.x), Negate(p.y))));
}

void SYS_Transform::SetBoxConv(SYS_Point const &p1, SYS_Point const &p2, SYS_Box const &box) {
  SYS_Point const center = box.GetCenter();
  SYS_Point const middle(SYS_WrapAdd(p1.x, p2.x) / 2, SYS_WrapAdd(p1.y, p2.y) / 2);
  double const sx = static_cast<double>(box.GetWidth()) / SYS_WrapSub(p2.x, p1.x);
  double const sy = static_cast<double>(box.GetHeight()) / SYS_WrapSub(p2.y, p1.y);
  SetScale(middle, sy < sx ? sy : sx);
  dx += SYS_WrapSub(center.x, middle.x);
  dy += SYS_WrapSub(center.y, middle.y);
}

short SYS_Transform::operator==(SYS_Transform const &other) const {
  return xx == other.xx && xy == other.xy && dx == other.dx && yx == other.yx && yy == other.yy &&
         dy == other.dy && angleFactor == other.angleFactor && angleShift == other.angleShift &&
         orientation == other.orientation && sweepFactor == other.sweepFactor &&
         sweepShift == other.sweepShift && sweepOffset == other.sweepOffset && scale == other.scale;
}

SYS_Point SYS_Transform::operator-(SYS_Point const &p) const {
  SYS_Transform inverse;
  SetRConv(inverse);
  return inverse.Transform(p);
}

void SYS_Transform::Convert(std::int32_t &angle, std::int32_t &sweep) const {
  std::int32_t a = IntoOneTurn(angle);
  if (std::fabs(angleFactor - 1.0) <= 1e-9) {
    a = SYS_WrapAdd(a, orientation);
  } else {
    a = SYS_Round(a * angleFactor + angleShift);
  }
  angle = IntoOneTurn(a);
  std::int32_t const w = SYS_Truncate(sweep * sweepFactor + sweepShift);
  sweep = (w > SYS_FULL_CIRCLE || w < -SYS_FULL_CIRCLE) ? SYS_FULL_CIRCLE : w;
}

void SYS_Transform::AddConv(SYS_Transform const &other) {
  SYS_Transform const t = *this;
  SYS_Transform const o = other;  // other may be this transform
  xx = t.xx * o.xx + t.yx * o.xy;
  xy = t.xy * o.xx + t.yy * o.xy;
  dx = t.dx * o.xx + t.dy * o.xy + o.dx;
  yx = t.yx * o.yy + t.xx * o.yx;
  yy = t.yy * o.yy + t.xy * o.yx;
  dy = t.dy * o.yy + t.dx * o.yx + o.dy;
  angleFactor = t.angleFactor * o.angleFactor;
  angleShift = t.angleShift * o.angleFactor + o.angleShift;
  orientation = SYS_WrapAdd(SYS_Truncate(t.orientation * o.angleFactor), o.orientation);
  sweepFactor = t.sweepFactor * o.sweepFactor;
  sweepShift = t.sweepShift * o.sweepFactor + o.sweepShift;
  sweepOffset = SYS_WrapAdd(SYS_Truncate(t.sweepOffset * o.sweepFactor), o.sweepOffset);
  scale = t.scale * o.scale;
}

short SYS_Transform::SetRConv(SYS_Transform &r) const {
  r.SetMove(0.0, 0.0);
  double const det = xx * yy - xy * yx;
  if (std::fabs(det) < 1e-12) return 0;
  r.xx = yy / det;
  r.xy = -(xy / det);
  r.dx = (dy * xy - dx * yy) / det;
  r.yx = -(yx / det);
  r.yy = xx / det;
  r.dy = (dx * yx - dy * xx) / det;
  if (std::fabs(angleFactor) < 1e-12) return 0;
  r.angleFactor = std::fabs(angleFactor - 1.0) > 1e-12 ? 1.0 / angleFactor : angleFactor;
  r.angleShift = -angleShift;
  r.orientation = Negate(orientation);
  if (std::fabs(sweepFactor) < 1e-12) return 0;
  r.sweepFactor = 1.0 / sweepFactor;
  r.sweepShift = -sweepShift;
  r.sweepOffset = Negate(sweepOffset);
  if (std::fabs(scale) < 1e-12) {
    scale = 1.0;
    return 0;
  }
  r.scale = 1.0 / scale;
  return 1;
}

void SYS_Transform::RConv() {
  SYS_Transform inverse;
  SetRConv(inverse);
  *this = inverse;
}

void SYS_Transform::SubConv(SYS_Transform const &other) {
  SYS_Transform inverse;
  other.SetRConv(inverse);
  AddConv(inverse);
}

SYS_Transform SYS_Transform::operator+(SYS_Transform const &other) const {
  SYS_Transform sum(*this);
  sum.AddConv(other);
  return sum;
}

SYS_Transform SYS_Transform::operator-(SYS_Transform const &other) const {
  SYS_Transform difference(*this);
  difference.SubConv(other);
  return difference;
}
