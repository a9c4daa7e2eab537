// Lists: the cost of a safe walk, and of removing nodes during a walk,
// against std::list on the same values.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <list>
#include <vector>

#include "scc_list.h"
#include "scc_safe_list.h"

namespace {

struct SafeItem : SCC_SafeDListNode<SafeItem> {
  std::int64_t value = 0;
};

struct PlainItem : SCC_DListNode<PlainItem> {
  std::int64_t value = 0;
};

std::int64_t SumBelow(std::int64_t n) { return n * (n - 1) / 2; }

void Verify(benchmark::State &state, bool right) {
  if (!right) state.SkipWithError("wrong result");
}

// The usual safe walk: every step registers the cursor at its node.
void SafeListWalk(benchmark::State &state) {
  std::int64_t const n = state.range(0);
  std::vector<SafeItem> items(static_cast<std::size_t>(n));
  SCC_SafeDList<SafeItem> list;
  for (std::int64_t i = 0; i < n; ++i) {
    items[static_cast<std::size_t>(i)].value = i;
    list.AddTail(&items[static_cast<std::size_t>(i)]);
  }
  std::int64_t sum = 0;
  for (auto _ : state) {
    sum = 0;
    SCC_SafeDListIterator<SafeItem> it(list.GetHead());
    while (*it != nullptr) {
      SCC_SafeDListIterator<SafeItem> here = it++;
      sum += (*here)->value;
    }
    benchmark::DoNotOptimize(sum);
  }
  Verify(state, sum == SumBelow(n));
  state.SetItemsProcessed(state.iterations() * n);
}

void PlainListWalk(benchmark::State &state) {
  std::int64_t const n = state.range(0);
  std::vector<PlainItem> items(static_cast<std::size_t>(n));
  SCC_DList<PlainItem> list;
  for (std::int64_t i = 0; i < n; ++i) {
    items[static_cast<std::size_t>(i)].value = i;
    list.AddTail(&items[static_cast<std::size_t>(i)]);
  }
  std::int64_t sum = 0;
  for (auto _ : state) {
    sum = 0;
    for (SCC_DListIterator<PlainItem> it(list); it.IsValid(); it.GetNext()) sum += (*it)->value;
    benchmark::DoNotOptimize(sum);
  }
  Verify(state, sum == SumBelow(n));
  state.SetItemsProcessed(state.iterations() * n);
}

void StdListWalk(benchmark::State &state) {
  std::int64_t const n = state.range(0);
  std::list<std::int64_t> list;
  for (std::int64_t i = 0; i < n; ++i) list.push_back(i);
  std::int64_t sum = 0;
  for (auto _ : state) {
    sum = 0;
    for (std::int64_t value : list) sum += value;
    benchmark::DoNotOptimize(sum);
  }
  Verify(state, sum == SumBelow(n));
  state.SetItemsProcessed(state.iterations() * n);
}

// Fill, walk removing every odd value, then empty: the nodes live outside the
// safe list, while std::list allocates and frees each one.
void SafeListRemoveDuringWalk(benchmark::State &state) {
  std::int64_t const n = state.range(0);
  std::vector<SafeItem> items(static_cast<std::size_t>(n));
  for (std::int64_t i = 0; i < n; ++i) items[static_cast<std::size_t>(i)].value = i;
  SCC_SafeDList<SafeItem> list;
  std::int64_t kept = 0;
  for (auto _ : state) {
    for (SafeItem &item : items) list.AddTail(&item);
    SCC_SafeDListIterator<SafeItem> it(list.GetHead());
    while (*it != nullptr) {
      SCC_SafeDListIterator<SafeItem> here = it++;
      if ((*here)->value % 2 != 0) list.Remove(*here);
    }
    kept = list.GetCount();
    list.RemoveAll();
  }
  Verify(state, kept == n / 2);
  state.SetItemsProcessed(state.iterations() * n);
}

void StdListEraseDuringWalk(benchmark::State &state) {
  std::int64_t const n = state.range(0);
  std::list<std::int64_t> list;
  std::int64_t kept = 0;
  for (auto _ : state) {
    for (std::int64_t i = 0; i < n; ++i) list.push_back(i);
    for (auto it = list.begin(); it != list.end();) {
      if (*it % 2 != 0) {
        it = list.erase(it);
      } else {
        ++it;
      }
    }
    kept = static_cast<std::int64_t>(list.size());
    list.clear();
  }
  Verify(state, kept == n / 2);
  state.SetItemsProcessed(state.iterations() * n);
}

BENCHMARK(SafeListWalk)->Arg(1 << 8)->Arg(1 << 14);
BENCHMARK(PlainListWalk)->Arg(1 << 8)->Arg(1 << 14);
BENCHMARK(StdListWalk)->Arg(1 << 8)->Arg(1 << 14);
BENCHMARK(SafeListRemoveDuringWalk)->Arg(1 << 8)->Arg(1 << 14);
BENCHMARK(StdListEraseDuringWalk)->Arg(1 << 8)->Arg(1 << 14);

}  // namespace

BENCHMARK_MAIN();
