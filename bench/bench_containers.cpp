// Containers against the standard library on the same data.
//
// Run with --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
// for the medians that bench/README.md keeps. Every case checks its result
// once, before it is timed, so that a fast wrong answer cannot pass.
#include <benchmark/benchmark.h>

#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#if TOVIK_HAVE_ABSL
#include <absl/container/node_hash_map.h>
#endif

#include "scc_array.h"
#include "scc_map.h"
#include "sys_string.h"

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

// ===========================================================================
// Hash map
// ===========================================================================

// Every allocation of the program is counted by its usable size, so that a
// map's footprint per entry (nodes, buckets and the allocator's rounding)
// can be read off around its construction.
namespace {
std::size_t liveBytes = 0;

void *Allocate(std::size_t n) {
  void *const p = std::malloc(n == 0 ? 1 : n);
  if (p == nullptr) throw std::bad_alloc();
  liveBytes += malloc_usable_size(p);
  return p;
}
void Release(void *p) noexcept {
  if (p == nullptr) return;
  liveBytes -= malloc_usable_size(p);
  std::free(p);
}
}  // namespace

void *operator new(std::size_t n) { return Allocate(n); }
void *operator new[](std::size_t n) { return Allocate(n); }
void *operator new(std::size_t n, std::nothrow_t const &) noexcept {
  try {
    return Allocate(n);
  } catch (std::bad_alloc const &) {
    return nullptr;
  }
}
void *operator new[](std::size_t n, std::nothrow_t const &) noexcept {
  return operator new(n, std::nothrow);
}
void operator delete(void *p) noexcept { Release(p); }
void operator delete[](void *p) noexcept { Release(p); }
void operator delete(void *p, std::size_t) noexcept { Release(p); }
void operator delete[](void *p, std::size_t) noexcept { Release(p); }
void operator delete(void *p, std::nothrow_t const &) noexcept { Release(p); }
void operator delete[](void *p, std::nothrow_t const &) noexcept { Release(p); }

namespace {

// n distinct keys in random order, and n other keys that none of them equals.
struct KeySet {
  std::vector<int> present;
  std::vector<int> absent;
};

KeySet const &Keys(std::int64_t n) {
  static std::unordered_map<std::int64_t, std::unique_ptr<KeySet>> cache;
  std::unique_ptr<KeySet> &slot = cache[n];
  if (!slot) {
    std::mt19937 random(static_cast<unsigned>(n));
    std::vector<int> all;
    while (static_cast<std::int64_t>(all.size()) < 2 * n) {
      for (std::int64_t i = static_cast<std::int64_t>(all.size()); i < 3 * n; ++i) {
        all.push_back(static_cast<int>(random() & 0x7FFFFFFF));
      }
      std::sort(all.begin(), all.end());
      all.erase(std::unique(all.begin(), all.end()), all.end());
    }
    std::shuffle(all.begin(), all.end(), random);
    slot.reset(new KeySet);
    slot->present.assign(all.begin(), all.begin() + n);
    slot->absent.assign(all.begin() + n, all.begin() + 2 * n);
  }
  return *slot;
}

// The adapters give every map the same three operations. Text keys are made
// once, before timing, in each map's own string type.
std::string Text(int key) { return "net" + std::to_string(key); }

template <class Key>
std::vector<Key> MakeKeys(std::vector<int> const &keys) {
  std::vector<Key> out;
  out.reserve(keys.size());
  for (int k : keys) {
    if constexpr (std::is_same<Key, int>::value) {
      out.push_back(k);
    } else {
      out.push_back(Key(Text(k).c_str()));
    }
  }
  return out;
}

template <class K>
struct TovikMap {
  typedef K Key;
  SCC_Map<K, int> map;
  void Insert(K const &key, int value) { map.Insert(key, value); }
  int const *Find(K const &key) const { return map.Find(key); }
  std::size_t Size() const { return static_cast<std::size_t>(map.GetCount()); }
  double Load() const { return static_cast<double>(map.GetCount()) / map.GetTableSize(); }
};

template <class K>
struct StdMap {
  typedef K Key;
  std::unordered_map<K, int> map;
  void Insert(K const &key, int value) { map.emplace(key, value); }
  int const *Find(K const &key) const {
    auto const it = map.find(key);
    return it != map.end() ? &it->second : nullptr;
  }
  std::size_t Size() const { return map.size(); }
  double Load() const { return map.load_factor(); }
};

#if TOVIK_HAVE_ABSL
template <class K>
struct AbslMap {
  typedef K Key;
  absl::node_hash_map<K, int> map;
  void Insert(K const &key, int value) { map.emplace(key, value); }
  int const *Find(K const &key) const {
    auto const it = map.find(key);
    return it != map.end() ? &it->second : nullptr;
  }
  std::size_t Size() const { return map.size(); }
  double Load() const { return static_cast<double>(map.size()) / static_cast<double>(map.capacity()); }
};
#endif

template <class Map>
std::unique_ptr<Map> Build(std::vector<typename Map::Key> const &keys) {
  std::unique_ptr<Map> map(new Map);
  int value = 0;
  for (auto const &key : keys) map->Insert(key, value++);
  return map;
}

// Builds a map of n keys, one insertion at a time; reports bytes per entry
// and the entries per bucket (or slot) of the finished map.
template <class Map>
void MapInsert(benchmark::State &state) {
  auto const keys = MakeKeys<typename Map::Key>(Keys(state.range(0)).present);
  {
    std::size_t const before = liveBytes;
    auto const map = Build<Map>(keys);
    std::size_t const bytes = liveBytes - before;
    if (map->Size() != keys.size() || *map->Find(keys.back()) != static_cast<int>(keys.size()) - 1) {
      state.SkipWithError("wrong map");
    }
    state.counters["bytes/entry"] = static_cast<double>(bytes) / static_cast<double>(keys.size());
    state.counters["load"] = map->Load();
  }
  for (auto _ : state) {
    auto map = Build<Map>(keys);
    benchmark::DoNotOptimize(map.get());
    state.PauseTiming();
    map.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(keys.size()));
}

// Looks every key up once, in an order unrelated to the insertion order.
template <class Map>
void MapFindHit(benchmark::State &state) {
  KeySet const &set = Keys(state.range(0));
  auto const map = Build<Map>(MakeKeys<typename Map::Key>(set.present));
  std::vector<int> order(set.present.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<int>(i);
  std::shuffle(order.begin(), order.end(), std::mt19937(7));
  std::vector<int> probeKeys;
  std::int64_t expected = 0;
  for (int i : order) {
    probeKeys.push_back(set.present[static_cast<std::size_t>(i)]);
    expected += i;
  }
  auto const probes = MakeKeys<typename Map::Key>(probeKeys);
  std::int64_t sum = 0;
  for (auto const &key : probes) sum += *map->Find(key);
  if (sum != expected) state.SkipWithError("wrong values");
  for (auto _ : state) {
    for (auto const &key : probes) benchmark::DoNotOptimize(map->Find(key));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(probes.size()));
}

// Looks up as many keys that are not in the map.
template <class Map>
void MapFindMiss(benchmark::State &state) {
  KeySet const &set = Keys(state.range(0));
  auto const map = Build<Map>(MakeKeys<typename Map::Key>(set.present));
  auto const probes = MakeKeys<typename Map::Key>(set.absent);
  for (auto const &key : probes) {
    if (map->Find(key) != nullptr) {
      state.SkipWithError("found an absent key");
      break;
    }
  }
  for (auto _ : state) {
    for (auto const &key : probes) benchmark::DoNotOptimize(map->Find(key));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(probes.size()));
}

void MapSizes(benchmark::internal::Benchmark *b) {
  b->Arg(1000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond);
}

#define TOVIK_MAP_BENCH(Map)                   \
  BENCHMARK_TEMPLATE(MapInsert, Map)->Apply(MapSizes); \
  BENCHMARK_TEMPLATE(MapFindHit, Map)->Apply(MapSizes); \
  BENCHMARK_TEMPLATE(MapFindMiss, Map)->Apply(MapSizes)

typedef TovikMap<int> TovikIntMap;
typedef StdMap<int> StdIntMap;
typedef TovikMap<SYS_String> TovikTextMap;
typedef StdMap<std::string> StdTextMap;
TOVIK_MAP_BENCH(TovikIntMap);
TOVIK_MAP_BENCH(StdIntMap);
#if TOVIK_HAVE_ABSL
typedef AbslMap<int> AbslIntMap;
TOVIK_MAP_BENCH(AbslIntMap);
#endif
TOVIK_MAP_BENCH(TovikTextMap);
TOVIK_MAP_BENCH(StdTextMap);
#if TOVIK_HAVE_ABSL
typedef AbslMap<std::string> AbslTextMap;
TOVIK_MAP_BENCH(AbslTextMap);
#endif

}  // namespace

BENCHMARK_MAIN();
