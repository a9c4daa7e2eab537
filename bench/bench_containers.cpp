// Containers against the standard library on the same data.
//
// Run with --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
// for the medians that bench/README.md keeps. Every case checks its result
// once, before it is timed, so that a fast wrong answer cannot pass.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

#include "scc_array.h"

namespace {

// ===========================================================================
// Arrays
// ===========================================================================

// n random ints; with distinct > 0, drawn from that many keys.
std::vector<int> RandomInts(std::int64_t n, int distinct) {
  std::mt19937 random(static_cast<unsigned>(n * 31 + distinct));
  std::vector<int> out(static_cast<std::size_t>(n));
  for (int &v : out)
    v = distinct > 0 ? static_cast<int>(random() % distinct) : static_cast<int>(random());
  return out;
}

SCC_Array<int> ToArray(std::vector<int> const &values) {
  SCC_Array<int> array;
  array.SetSize(static_cast<std::int32_t>(values.size()));
  for (std::size_t i = 0; i < values.size(); ++i) array[static_cast<std::int32_t>(i)] = values[i];
  return array;
}

bool SameItems(SCC_Array<int> const &array, std::vector<int> const &values) {
  return array.GetSize() == static_cast<std::int32_t>(values.size()) &&
         std::equal(values.begin(), values.end(), array.GetData());
}

// --- Append one item at a time ----------------------------------------------

void ArrayAppend_Tovik(benchmark::State &state) {
  auto const n = static_cast<int>(state.range(0));
  {
    SCC_Array<int> check;
    for (int i = 0; i < n; ++i) check.Append(i);
    if (check.GetSize() != n || check.GetData()[n - 1] != n - 1) state.SkipWithError("wrong items");
  }
  for (auto _ : state) {
    SCC_Array<int> array;
    for (int i = 0; i < n; ++i) array.Append(i);
    benchmark::DoNotOptimize(array.GetData());
  }
  state.SetItemsProcessed(state.iterations() * n);
}
void ArrayAppend_StdVector(benchmark::State &state) {
  auto const n = static_cast<int>(state.range(0));
  for (auto _ : state) {
    std::vector<int> vector;
    for (int i = 0; i < n; ++i) vector.push_back(i);
    benchmark::DoNotOptimize(vector.data());
  }
  state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(ArrayAppend_Tovik)->Arg(1 << 20)->Unit(benchmark::kMillisecond);
BENCHMARK(ArrayAppend_StdVector)->Arg(1 << 20)->Unit(benchmark::kMillisecond);

// --- Copy: shared at once, private at the first write ------------------------

void ArrayCopy_Tovik(benchmark::State &state) {
  SCC_Array<int> const source = ToArray(RandomInts(state.range(0), 0));
  for (auto _ : state) {
    SCC_Array<int> copy(source);
    benchmark::DoNotOptimize(copy.GetData());
  }
}
void ArrayCopyThenWrite_Tovik(benchmark::State &state) {
  std::vector<int> const values = RandomInts(state.range(0), 0);
  SCC_Array<int> const source = ToArray(values);
  {
    SCC_Array<int> copy(source);
    copy[0] = values[0] + 1;
    if (!SameItems(source, values) || copy.GetData()[1] != values[1]) state.SkipWithError("copy");
  }
  for (auto _ : state) {
    SCC_Array<int> copy(source);
    copy[0] = 1;
    benchmark::DoNotOptimize(copy.GetData());
  }
}
void ArrayCopy_StdVector(benchmark::State &state) {
  std::vector<int> const source = RandomInts(state.range(0), 0);
  for (auto _ : state) {
    std::vector<int> copy(source);
    benchmark::DoNotOptimize(copy.data());
  }
}
BENCHMARK(ArrayCopy_Tovik)->Arg(1 << 20)->Unit(benchmark::kMicrosecond);
BENCHMARK(ArrayCopyThenWrite_Tovik)->Arg(1 << 20)->Unit(benchmark::kMicrosecond);
BENCHMARK(ArrayCopy_StdVector)->Arg(1 << 20)->Unit(benchmark::kMicrosecond);

// --- Sort: each pass copies the unsorted items, then sorts them --------------

int CompareInts(void const *a, void const *b) {
  int const x = *static_cast<int const *>(a);
  int const y = *static_cast<int const *>(b);
  return (x > y) - (x < y);
}

void ArraySort_Tovik(benchmark::State &state) {
  std::vector<int> values = RandomInts(state.range(0), static_cast<int>(state.range(1)));
  SCC_Array<int> const source = ToArray(values);
  SCC_SharedPointer<SCC_ComparatorBase> const order(new SCC_Comparator<int>);
  {
    SCC_Array<int> check(source);
    check.SetComparator(order);
    std::sort(values.begin(), values.end());
    if (!SameItems(check, values)) state.SkipWithError("not sorted");
  }
  SCC_Array<int> array;
  for (auto _ : state) {
    array = source;              // shares the items and their lack of order
    array.SetComparator(order);  // sorts, making the buffer private first
    benchmark::DoNotOptimize(array.GetData());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
void ArraySort_StdSort(benchmark::State &state) {
  std::vector<int> const source = RandomInts(state.range(0), static_cast<int>(state.range(1)));
  for (auto _ : state) {
    std::vector<int> vector(source);
    std::sort(vector.begin(), vector.end());
    benchmark::DoNotOptimize(vector.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
void ArraySort_Qsort(benchmark::State &state) {
  std::vector<int> const source = RandomInts(state.range(0), static_cast<int>(state.range(1)));
  {
    std::vector<int> check(source);
    std::qsort(check.data(), check.size(), sizeof(int), CompareInts);
    if (!std::is_sorted(check.begin(), check.end())) state.SkipWithError("not sorted");
  }
  for (auto _ : state) {
    std::vector<int> vector(source);
    std::qsort(vector.data(), vector.size(), sizeof(int), CompareInts);
    benchmark::DoNotOptimize(vector.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
// Arguments: item count, distinct keys (0: random over all ints).
void SortCases(benchmark::internal::Benchmark *b) {
  b->Args({100000, 0})->Args({1000000, 0})->Args({100000, 2})->Args({100000, 16});
  b->Unit(benchmark::kMillisecond);
}
BENCHMARK(ArraySort_Tovik)->Apply(SortCases);
BENCHMARK(ArraySort_StdSort)->Apply(SortCases);
BENCHMARK(ArraySort_Qsort)->Apply(SortCases);

// --- Binary search for the run of equal items -------------------------------

constexpr int kProbes = 1000;

void ArrayFind_Tovik(benchmark::State &state) {
  std::vector<int> values = RandomInts(state.range(0), static_cast<int>(state.range(0) / 4));
  std::sort(values.begin(), values.end());
  SCC_SortableArray<int> array;
  static_cast<SCC_Array<int> &>(array) = ToArray(values);
  array.SetComparator(new SCC_Comparator<int>);
  std::vector<int> const probes = RandomInts(kProbes, static_cast<int>(state.range(0) / 4));
  for (int probe : probes) {
    std::int32_t first = 0, last = 0;
    array.FindItemPosition(probe, first, last);
    auto const range = std::equal_range(values.begin(), values.end(), probe);
    if (first != range.first - values.begin() || last != range.second - values.begin()) {
      state.SkipWithError("wrong run");
      break;
    }
  }
  for (auto _ : state) {
    for (int probe : probes) {
      std::int32_t first = 0, last = 0;
      array.FindItemPosition(probe, first, last);
      benchmark::DoNotOptimize(first);
      benchmark::DoNotOptimize(last);
    }
  }
  state.SetItemsProcessed(state.iterations() * kProbes);
}
void ArrayFind_StdEqualRange(benchmark::State &state) {
  std::vector<int> values = RandomInts(state.range(0), static_cast<int>(state.range(0) / 4));
  std::sort(values.begin(), values.end());
  std::vector<int> const probes = RandomInts(kProbes, static_cast<int>(state.range(0) / 4));
  for (auto _ : state) {
    for (int probe : probes) {
      auto range = std::equal_range(values.begin(), values.end(), probe);
      benchmark::DoNotOptimize(range);
    }
  }
  state.SetItemsProcessed(state.iterations() * kProbes);
}
BENCHMARK(ArrayFind_Tovik)->Arg(1000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(ArrayFind_StdEqualRange)->Arg(1000000)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
