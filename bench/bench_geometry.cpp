// Geometry: the hot numeric operations of points, transforms and shapes
// against the standard library, hand-written loops and Eigen doing the same
// job.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

#if TOVIK_HAVE_EIGEN
#include <Eigen/Geometry>
#endif

#include "sys_point.h"
#include "sys_shapes.h"
#include "sys_transform.h"

namespace {

// Board-sized vectors, the same for every case.
std::vector<SYS_Point> const &Points() {
  static std::vector<SYS_Point> const points = [] {
    std::mt19937 random(20240601);
    std::uniform_int_distribution<std::int32_t> coordinate(-SYS_MAX_COORD + 1, SYS_MAX_COORD - 1);
    std::vector<SYS_Point> result(4096);
    for (SYS_Point &p : result) p.Set(coordinate(random), coordinate(random));
    return result;
  }();
  return points;
}

std::vector<double> const &Squares() {
  static std::vector<double> const squares = [] {
    std::vector<double> result;
    for (SYS_Point const &p : Points()) result.push_back(p.ScalarProduct(p));
    return result;
  }();
  return squares;
}

double const kPi = 3.14159265358979323846;

// The standard library's way to the same angle: atan2 in degrees, scaled.
std::int32_t StdPolarAngle(SYS_Point const &p) {
  double const degrees = std::atan2(static_cast<double>(p.y), static_cast<double>(p.x)) * (180.0 / kPi);
  auto angle = static_cast<std::int32_t>(degrees * SYS_ANGLE_PER_DEGREE);
  return angle < 0 ? angle + SYS_FULL_CIRCLE : angle;
}

bool Near(double a, double b) { return std::fabs(a - b) <= 1e-6 * std::fabs(b) + 1e-9; }

void BM_RefinedSqrt(benchmark::State &state) {
  std::vector<double> const &squares = Squares();
  if (SYS_RefinedSqrt(2147395600.0) != 46340.0 || !Near(SYS_RefinedSqrt(squares[7]), std::sqrt(squares[7])))
    state.SkipWithError("wrong root");
  for (auto _ : state) {
    double sum = 0.0;
    for (double s : squares) sum += SYS_RefinedSqrt(s);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(squares.size()));
}
BENCHMARK(BM_RefinedSqrt);

void BM_StdSqrt(benchmark::State &state) {
  std::vector<double> const &squares = Squares();
  if (std::sqrt(2147395600.0) != 46340.0) state.SkipWithError("wrong root");
  for (auto _ : state) {
    double sum = 0.0;
    for (double s : squares) sum += std::sqrt(s);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(squares.size()));
}
BENCHMARK(BM_StdSqrt);

void BM_PointLength(benchmark::State &state) {
  std::vector<SYS_Point> const &points = Points();
  if (SYS_Point(3, -4).Length() != 5.0 || !Near(points[3].Length(), std::hypot(points[3].x, points[3].y)))
    state.SkipWithError("wrong length");
  for (auto _ : state) {
    double sum = 0.0;
    for (SYS_Point const &p : points) sum += p.Length();
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(points.size()));
}
BENCHMARK(BM_PointLength);

void BM_StdHypot(benchmark::State &state) {
  std::vector<SYS_Point> const &points = Points();
  if (std::hypot(3.0, -4.0) != 5.0) state.SkipWithError("wrong length");
  for (auto _ : state) {
    double sum = 0.0;
    for (SYS_Point const &p : points) sum += std::hypot(static_cast<double>(p.x), static_cast<double>(p.y));
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(points.size()));
}
BENCHMARK(BM_StdHypot);

void BM_PolarAngle(benchmark::State &state) {
  std::vector<SYS_Point> const &points = Points();
  if (SYS_Point(0, -1).GetPolarAngle() != 486000000 || SYS_Point(3, -4).GetPolarAngle() != 552365816)
    state.SkipWithError("wrong angle");
  for (auto _ : state) {
    std::int64_t sum = 0;
    for (SYS_Point const &p : points) sum += p.GetPolarAngle();
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(points.size()));
}
BENCHMARK(BM_PolarAngle);

void BM_StdAtan2Angle(benchmark::State &state) {
  std::vector<SYS_Point> const &points = Points();
  if (StdPolarAngle(SYS_Point(-1, 0)) != SYS_HALF_CIRCLE) state.SkipWithError("wrong angle");
  for (auto _ : state) {
    std::int64_t sum = 0;
    for (SYS_Point const &p : points) sum += StdPolarAngle(p);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(points.size()));
}
BENCHMARK(BM_StdAtan2Angle);

void BM_Round(benchmark::State &state) {
  std::vector<double> const &squares = Squares();
  if (SYS_Round(-2.5) != -3 || SYS_Round(1e300) != INT32_MAX) state.SkipWithError("wrong rounding");
  for (auto _ : state) {
    std::int64_t sum = 0;
    for (double s : squares) sum += SYS_Round(s * 1e-10);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(squares.size()));
}
BENCHMARK(BM_Round);

void BM_StdLround(benchmark::State &state) {
  std::vector<double> const &squares = Squares();
  if (std::lround(-2.5) != -3) state.SkipWithError("wrong rounding");
  for (auto _ : state) {
    std::int64_t sum = 0;
    for (double s : squares) sum += std::lround(s * 1e-10);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(squares.size()));
}
BENCHMARK(BM_StdLround);

// --- Transforms ------------------------------------------------------------

constexpr std::size_t kMillion = 1000000;

// A placement with an odd rotation and a mirror: every matrix entry counts.
SYS_Transform const &Placement() {
  static SYS_Transform const t(SYS_Position(SYS_Point(12345678, -8765432), 30 * SYS_ANGLE_PER_DEGREE + 7, 1), 0, 1,
                               0);
  return t;
}

std::vector<SYS_Point> const &MillionPoints() {
  static std::vector<SYS_Point> const points = [] {
    std::mt19937 random(7);
    std::uniform_int_distribution<std::int32_t> coordinate(-SYS_MAX_COORD / 2, SYS_MAX_COORD / 2);
    std::vector<SYS_Point> result(kMillion);
    for (SYS_Point &p : result) p.Set(coordinate(random), coordinate(random));
    return result;
  }();
  return points;
}

std::vector<SYS_Box> const &MillionBoxes() {
  static std::vector<SYS_Box> const boxes = [] {
    std::mt19937 random(8);
    std::uniform_int_distribution<std::int32_t> size(1, 50 * SYS_WORLD_PER_MM);
    std::vector<SYS_Box> result;
    result.reserve(kMillion);
    for (SYS_Point const &p : MillionPoints()) result.emplace_back(p, p + SYS_Point(size(random), size(random)));
    return result;
  }();
  return boxes;
}

// Halves away from zero without a branch; no saturation, as the data stays
// well inside 32 bits.
inline std::int32_t RoundHalfAway(double v) { return static_cast<std::int32_t>(v + std::copysign(0.5, v)); }

// The hand-written loop: the same products and sums as the transform, by
// plain arithmetic on the six coefficients.
struct HandTransform {
  double m[6];
  explicit HandTransform(SYS_Transform const &t) : m{t.xx, t.xy, t.dx, t.yx, t.yy, t.dy} {}
  SYS_Point operator()(SYS_Point const &p) const {
    double const x = p.x, y = p.y;
    return SYS_Point(RoundHalfAway(m[0] * x + m[1] * y + m[2]), RoundHalfAway(m[3] * x + m[4] * y + m[5]));
  }
};

template <class Map>
SYS_Box BoxOfCorners(SYS_Box const &b, Map const &map) {
  SYS_Point const c[4] = {map(b.lowerLeft), map(b.GetUpperLeft()), map(b.upperRight), map(b.GetLowerRight())};
  SYS_Box box(c[0], c[0]);
  for (SYS_Point const &p : c) {
    box.lowerLeft.Set(std::min(box.lowerLeft.x, p.x), std::min(box.lowerLeft.y, p.y));
    box.upperRight.Set(std::max(box.upperRight.x, p.x), std::max(box.upperRight.y, p.y));
  }
  return box;
}

// Runs `map` over every point (or box) into an output array; the caller
// checked the first results against the library's.
template <class Item, class Map>
void MapAll(benchmark::State &state, std::vector<Item> const &in, Map const &map) {
  std::vector<Item> out(in.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < in.size(); ++i) out[i] = map(in[i]);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(in.size()));
}

template <class Item, class Map, class Reference>
bool Agrees(std::vector<Item> const &in, Map const &map, Reference const &reference) {
  for (std::size_t i = 0; i < 1000; ++i) {
    if (!(map(in[i]) == reference(in[i]))) return false;
  }
  return true;
}

SYS_Point TovikPoint(SYS_Point const &p) { return Placement().Transform(p); }

SYS_Box TovikBox(SYS_Box b) {
  b.Transform(Placement());
  return b;
}

void BM_TransformPoints(benchmark::State &state) {
  SYS_Transform const t = Placement();
  MapAll(state, MillionPoints(), [&t](SYS_Point const &p) { return t.Transform(p); });
}
BENCHMARK(BM_TransformPoints)->Unit(benchmark::kMillisecond);

void BM_HandLoopPoints(benchmark::State &state) {
  HandTransform const hand(Placement());
  if (!Agrees(MillionPoints(), hand, TovikPoint)) state.SkipWithError("the hand loop disagrees");
  MapAll(state, MillionPoints(), hand);
}
BENCHMARK(BM_HandLoopPoints)->Unit(benchmark::kMillisecond);

void BM_TransformBoxes(benchmark::State &state) {
  SYS_Transform const t = Placement();
  MapAll(state, MillionBoxes(), [&t](SYS_Box b) {
    b.Transform(t);
    return b;
  });
}
BENCHMARK(BM_TransformBoxes)->Unit(benchmark::kMillisecond);

void BM_HandLoopBoxes(benchmark::State &state) {
  HandTransform const hand(Placement());
  auto const map = [&hand](SYS_Box const &b) { return BoxOfCorners(b, hand); };
  if (!Agrees(MillionBoxes(), map, TovikBox)) state.SkipWithError("the hand loop disagrees");
  MapAll(state, MillionBoxes(), map);
}
BENCHMARK(BM_HandLoopBoxes)->Unit(benchmark::kMillisecond);

#if TOVIK_HAVE_EIGEN
struct EigenTransform {
  Eigen::Affine2d a;
  explicit EigenTransform(SYS_Transform const &t) {
    a.matrix() << t.xx, t.xy, t.dx, t.yx, t.yy, t.dy, 0.0, 0.0, 1.0;
  }
  SYS_Point operator()(SYS_Point const &p) const {
    Eigen::Vector2d const v = a * Eigen::Vector2d(p.x, p.y);
    return SYS_Point(RoundHalfAway(v.x()), RoundHalfAway(v.y()));
  }
};

void BM_EigenPoints(benchmark::State &state) {
  EigenTransform const eigen(Placement());
  if (!Agrees(MillionPoints(), eigen, TovikPoint)) state.SkipWithError("Eigen disagrees");
  MapAll(state, MillionPoints(), eigen);
}
BENCHMARK(BM_EigenPoints)->Unit(benchmark::kMillisecond);

void BM_EigenBoxes(benchmark::State &state) {
  EigenTransform const eigen(Placement());
  auto const map = [&eigen](SYS_Box const &b) { return BoxOfCorners(b, eigen); };
  if (!Agrees(MillionBoxes(), map, TovikBox)) state.SkipWithError("Eigen disagrees");
  MapAll(state, MillionBoxes(), map);
}
BENCHMARK(BM_EigenBoxes)->Unit(benchmark::kMillisecond);
#endif

// --- Arcs and clipping --------------------------------------------------------

// Arcs of random centre, radius, ends and direction.
std::vector<SYS_Arc> const &Arcs() {
  static std::vector<SYS_Arc> const arcs = [] {
    std::mt19937 random(9);
    std::uniform_int_distribution<std::int32_t> coordinate(-SYS_MAX_COORD / 2, SYS_MAX_COORD / 2);
    std::uniform_int_distribution<std::int32_t> radius(1000, 50 * SYS_WORLD_PER_MM);
    std::uniform_real_distribution<double> angle(0.0, 6.283185307179586);
    std::vector<SYS_Arc> result(4096);
    for (SYS_Arc &arc : result) {
      SYS_Point const c(coordinate(random), coordinate(random));
      std::int32_t const r = radius(random);
      double const a = angle(random), b = angle(random);
      SYS_Point const s = c + SYS_Point(SYS_Round(r * std::cos(a)), SYS_Round(r * std::sin(a)));
      SYS_Point const e = c + SYS_Point(SYS_Round(r * std::cos(b)), SYS_Round(r * std::sin(b)));
      arc.Set(s, e, c, random() % 2 ? r : -r);
    }
    return result;
  }();
  return arcs;
}

// The usual way with the standard library: the angles of the ends by atan2,
// and each axis direction the sweep passes extends the box.
SYS_Box TrigArcBox(SYS_Arc const &arc) {
  double const twoPi = 6.283185307179586;
  double const from = std::atan2(double(arc.start.y) - arc.center.y, double(arc.start.x) - arc.center.x);
  double const to = std::atan2(double(arc.end.y) - arc.center.y, double(arc.end.x) - arc.center.x);
  double const low = arc.radius > 0 ? from : to;
  double sweep = std::fmod((arc.radius > 0 ? to - from : from - to) + 2 * twoPi, twoPi);
  if (sweep == 0.0) sweep = twoPi;
  SYS_Box box = arc.SYS_Segment::GetBox();
  std::int32_t const r = std::abs(arc.radius);
  SYS_Point const axis[4] = {{r, 0}, {0, r}, {-r, 0}, {0, -r}};
  for (int k = 0; k < 4; ++k) {
    if (std::fmod(k * (twoPi / 4) - low + 2 * twoPi, twoPi) < sweep) {
      SYS_Point const p = arc.center + axis[k];
      box.Increase(p.x, p.y);
    }
  }
  return box;
}

void BM_ArcBox(benchmark::State &state) {
  std::vector<SYS_Arc> const &arcs = Arcs();
  for (auto _ : state) {
    for (SYS_Arc const &arc : arcs) benchmark::DoNotOptimize(arc.GetBox());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(arcs.size()));
}
BENCHMARK(BM_ArcBox);

void BM_TrigArcBox(benchmark::State &state) {
  std::vector<SYS_Arc> const &arcs = Arcs();
  for (SYS_Arc const &arc : arcs) {
    if (TrigArcBox(arc) != arc.GetBox()) state.SkipWithError("the trigonometric box disagrees");
  }
  for (auto _ : state) {
    for (SYS_Arc const &arc : arcs) benchmark::DoNotOptimize(TrigArcBox(arc));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(arcs.size()));
}
BENCHMARK(BM_TrigArcBox);

// Pairs of overlapping boxes, some containing, some crossing, some apart.
std::vector<SYS_Box> const &ClipPairs() {
  static std::vector<SYS_Box> const boxes = [] {
    std::mt19937 random(10);
    std::uniform_int_distribution<std::int32_t> coordinate(0, 1000), size(1, 500);
    std::vector<SYS_Box> result(8192);
    for (SYS_Box &b : result) {
      SYS_Point const corner(coordinate(random), coordinate(random));
      b.Set(corner, corner + SYS_Point(size(random), size(random)));
    }
    return result;
  }();
  return boxes;
}

// Cutting one rectangle out of another by hand: the intersection, then the
// strips left and right of it at full height, and the pieces below and above.
int HandClip(SYS_Box const &cut, SYS_Box const &other, SYS_Box *out) {
  std::int32_t const l = std::max(cut.lowerLeft.x, other.lowerLeft.x);
  std::int32_t const b = std::max(cut.lowerLeft.y, other.lowerLeft.y);
  std::int32_t const r = std::min(cut.upperRight.x, other.upperRight.x);
  std::int32_t const u = std::min(cut.upperRight.y, other.upperRight.y);
  if (other.IsEmpty()) return 0;
  if (l >= r || b >= u) {
    out[0] = other;
    return 1;
  }
  int n = 0;
  if (other.lowerLeft.x < l) out[n++] = SYS_Box(other.lowerLeft.x, other.lowerLeft.y, l, other.upperRight.y);
  if (other.lowerLeft.y < b) out[n++] = SYS_Box(l, other.lowerLeft.y, r, b);
  if (u < other.upperRight.y) out[n++] = SYS_Box(l, u, r, other.upperRight.y);
  if (r < other.upperRight.x) out[n++] = SYS_Box(r, other.lowerLeft.y, other.upperRight.x, other.upperRight.y);
  return n;
}

template <class Clipper>
void ClipAll(benchmark::State &state, Clipper const &clip) {
  std::vector<SYS_Box> const &boxes = ClipPairs();
  SYS_Box out[4];
  for (auto _ : state) {
    int pieces = 0;
    for (std::size_t i = 0; i + 1 < boxes.size(); i += 2) pieces += clip(boxes[i], boxes[i + 1], out);
    benchmark::DoNotOptimize(pieces);
    benchmark::DoNotOptimize(out);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(boxes.size() / 2));
}

int TovikClip(SYS_Box const &cut, SYS_Box const &other, SYS_Box *out) { return cut.Clip(other, out); }

void BM_BoxClip(benchmark::State &state) { ClipAll(state, TovikClip); }
BENCHMARK(BM_BoxClip);

void BM_HandClip(benchmark::State &state) {
  std::vector<SYS_Box> const &boxes = ClipPairs();
  SYS_Box mine[4], theirs[4];
  // The two agree where the boxes overlap with area; apart, the sweep also
  // cuts `other` at this box's edges.
  for (std::size_t i = 0; i + 1 < boxes.size(); i += 2) {
    if (SYS_Box().SetAsIntersection(boxes[i], boxes[i + 1]) == 0) continue;
    int const n = boxes[i].Clip(boxes[i + 1], mine);
    if (HandClip(boxes[i], boxes[i + 1], theirs) != n || !std::equal(mine, mine + n, theirs))
      state.SkipWithError("the hand clip disagrees");
  }
  ClipAll(state, HandClip);
}
BENCHMARK(BM_HandClip);

}  // namespace

BENCHMARK_MAIN();
