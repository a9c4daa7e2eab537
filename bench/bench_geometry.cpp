// Geometry: the hot numeric operations of points against the standard
// library doing the same job.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "sys_point.h"

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

}  // namespace

BENCHMARK_MAIN();
