#include "board_picture.h"

#include <cmath>
#include <utility>

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr std::int32_t kSilkWidth = Mm(0.15);
constexpr std::int32_t kReferenceHeight = Mm(1.0);
constexpr std::int32_t kPen = 0;  // one pixel wide
constexpr int kRoundCap = 0, kFlatCap = 2;

SYS_Arc ArcAround(SYS_Point center, std::int32_t radius, double fromDeg, double toDeg) {
  auto at = [&](double deg) {
    SYS_DoublePoint const p(center.x + radius * std::cos(deg * kPi / 180),
                            center.y + radius * std::sin(deg * kPi / 180));
    return SYS_Point(p);
  };
  return SYS_Arc(at(fromDeg), at(toDeg), center, radius);
}

Footprint MakeChip() {
  Footprint f;
  for (int side : {-1, 1})
    f.pads.push_back(Pad{SYS_Point(side * Mm(1.0), 0), Mm(1.0), Mm(1.3), false});
  // A stadium around the pads: two sides and two half circles.
  for (int side : {-1, 1}) f.lines.emplace_back(-Mm(1.4), side * Mm(1.0), Mm(1.4), side * Mm(1.0));
  f.arcs.push_back(ArcAround(SYS_Point(Mm(1.4), 0), Mm(1.0), -90, 90));
  f.arcs.push_back(ArcAround(SYS_Point(-Mm(1.4), 0), Mm(1.0), 90, 270));
  return f;
}

Footprint MakeSmallOutline8() {
  Footprint f;
  for (int i = 0; i < 4; ++i) {
    std::int32_t const y = Mm(1.905 - 1.27 * i);
    f.pads.push_back(Pad{SYS_Point(-Mm(2.7), y), Mm(1.5), Mm(0.6), false});  // pins 1 to 4
    f.pads.push_back(Pad{SYS_Point(Mm(2.7), y), Mm(1.5), Mm(0.6), false});   // pins 8 to 5
  }
  std::int32_t const x = Mm(1.6), y = Mm(2.5), notch = Mm(0.5);
  f.lines.emplace_back(-x, -y, x, -y);
  f.lines.emplace_back(-x, -y, -x, y);
  f.lines.emplace_back(x, -y, x, y);
  f.lines.emplace_back(-x, y, -notch, y);
  f.lines.emplace_back(notch, y, x, y);
  f.arcs.push_back(ArcAround(SYS_Point(0, y), notch, 180, 360));  // the pin-1 notch
  return f;
}

Footprint MakeRadial() {
  Footprint f;
  for (int side : {-1, 1})
    f.pads.push_back(Pad{SYS_Point(side * Mm(1.25), 0), Mm(1.6), Mm(1.6), true});
  // The body, open where the + mark stands.
  f.arcs.push_back(ArcAround(SYS_Point(), Mm(3.0), -150, 150));
  f.lines.emplace_back(-Mm(3.2), -Mm(0.5), -Mm(3.2), Mm(0.5));
  f.lines.emplace_back(-Mm(3.7), 0, -Mm(2.7), 0);
  return f;
}

Footprint MakeHeader4() {
  Footprint f;
  for (int i = 0; i < 4; ++i) {
    f.pads.push_back(Pad{SYS_Point(Mm(2.54 * (i - 1.5)), 0), Mm(1.7), Mm(1.7), i != 0});
  }
  std::int32_t const x = Mm(5.1), y = Mm(1.3);
  SYS_Point const corners[] = {{-x, -y}, {x, -y}, {x, y}, {-x, y}};
  for (int i = 0; i < 4; ++i) f.lines.emplace_back(corners[i], corners[(i + 1) % 4]);
  return f;
}

// The box of a footprint in its own frame.
SYS_Box LocalBox(Footprint const &f) {
  SYS_Box box = SYS_Box::Neutral();
  for (Pad const &pad : f.pads) {
    SYS_Point const half(pad.width / 2, pad.height / 2);
    box.Combine(SYS_Box(pad.center - half, pad.center + half));
  }
  for (SYS_Segment const &line : f.lines) box.Combine(line.GetBox());
  for (SYS_Arc const &arc : f.arcs) box.Combine(arc.GetBox());
  return box;
}

// Carries the footprint's frame to the board: flipped first for the bottom
// side, then turned, then moved to the component's point.
SYS_Transform Placement(Component const &part) { return SYS_Transform(part.position, 1, 1, 0); }

}  // namespace

Footprint const &Chip() {
  static Footprint const f = MakeChip();
  return f;
}
Footprint const &SmallOutline8() {
  static Footprint const f = MakeSmallOutline8();
  return f;
}
Footprint const &Radial() {
  static Footprint const f = MakeRadial();
  return f;
}
Footprint const &Header4() {
  static Footprint const f = MakeHeader4();
  return f;
}

void DrawEdge(CDynamic &recording, SYS_Box const &board, std::int32_t r) {
  std::int32_t const l = board.GetLeft(), b = board.GetLower(), rt = board.GetRight(),
                     u = board.GetUpper();
  recording.PenCap(kRoundCap);
  recording.DrawLine(SYS_Point(l + r, b), SYS_Point(rt - r, b), kPen, kEdge);
  recording.DrawLine(SYS_Point(rt, b + r), SYS_Point(rt, u - r), kPen, kEdge);
  recording.DrawLine(SYS_Point(rt - r, u), SYS_Point(l + r, u), kPen, kEdge);
  recording.DrawLine(SYS_Point(l, u - r), SYS_Point(l, b + r), kPen, kEdge);
  SYS_Point const centers[] = {{rt - r, b + r}, {rt - r, u - r}, {l + r, u - r}, {l + r, b + r}};
  for (int i = 0; i < 4; ++i) {
    SYS_Arc const corner = ArcAround(centers[i], r, -90 + 90 * i, 90 * i);
    recording.DrawArc(SYS_Circle(corner.center, r).GetBox(), corner.start, corner.end, kPen, kEdge);
  }
}

void DrawComponent(CDynamic &recording, Component const &part) {
  Footprint const &f = *part.footprint;
  SYS_Transform const place = Placement(part);
  bool const bottom = part.position.GetMirror() != 0;
  int const copper = bottom ? kBottomCopper : kTopCopper;
  int const silk = bottom ? kBottomSilk : kTopSilk;

  // A rectangular pad is a line as long as the pad and as wide as it, with
  // flat ends: it turns with the component at any angle.
  recording.PenCap(kFlatCap);
  for (Pad const &pad : f.pads) {
    if (pad.round) {
      SYS_Point const center = place.Transform(pad.center);
      recording.PenColor(copper);
      recording.FastPaintOval(SYS_Box(center - pad.width / 2, center + pad.width / 2));
      continue;
    }
    bool const wide = pad.width >= pad.height;
    SYS_Point const half = wide ? SYS_Point(pad.width / 2, 0) : SYS_Point(0, pad.height / 2);
    recording.DrawLine(place.Transform(pad.center - half), place.Transform(pad.center + half),
                       wide ? pad.height : pad.width, copper);
  }

  recording.PenCap(kRoundCap);
  for (SYS_Segment line : f.lines) {
    line.Transform(place);
    recording.DrawLine(line.start, line.end, kSilkWidth, silk);
  }
  for (SYS_Arc arc : f.arcs) {
    arc.Transform(place);
    // A mirror turns the arc's direction round: swap its ends to keep it
    // counter-clockwise.
    if (bottom) std::swap(arc.start, arc.end);
    recording.DrawArc(SYS_Circle(arc.center, arc.radius).GetBox(), arc.start, arc.end, kSilkWidth,
                      silk);
  }

  // The designator above the part, upright or turned by a quarter.
  std::int32_t angle = part.position.GetOrientation() % (SYS_FULL_CIRCLE / 2);
  if (angle > SYS_FULL_CIRCLE / 4) angle -= SYS_FULL_CIRCLE / 2;
  SYS_Box const local = LocalBox(f);
  recording.TextAlign(1, 1);
  recording.TextPath(angle);
  recording.DrawXorText(part.reference, kReferenceHeight, silk,
                        place.Transform(SYS_Point(0, local.GetUpper() + kReferenceHeight)), 0);
  recording.TextPath(0);
}

SYS_Box ComponentBox(Component const &part) {
  SYS_Box box = LocalBox(*part.footprint);
  box.Transform(Placement(part));
  return box;
}
