// Collections against peers on the same objects.
//
// A sorted collection on an object store of N objects (keys 0, 10, 20, ...)
// hears one change from the store and keeps its list in order. Peers:
//   Naive  a std::vector of handles, re-sorted with std::sort after each change;
//   Qt     QSortFilterProxyModel with dynamicSortFilter over a minimal
//          QAbstractListModel on the same objects (only when Qt 5 was found).
// Single changes are timed as a change and its undoing, so that every
// iteration starts from the same state. Each case checks its result once,
// before it is timed, so that a fast wrong answer cannot pass.
//
// Run with --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
// for the medians that bench/README.md keeps.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <set>
#include <vector>

#include "object_store.h"
#include "scc_collection.h"

#if TOVIK_HAVE_QT
#include <QAbstractListModel>
#include <QSortFilterProxyModel>
#endif

namespace {

using tovik_test::ObjectStore;
using tovik_test::StoreCollection;
using tovik_test::StoreObject;

constexpr int kGap = 10;       // between neighbouring keys, so that a key fits in between
constexpr int kBatch = 1000;   // changes under one suspension

// The store's N objects: objects[i] has key i * kGap. The store's order is
// the key order, or shuffled.
void Fill(ObjectStore &store, std::int64_t n, bool shuffled) {
  for (int i = 0; i < n; ++i) store.Add(i + 1, i * kGap);
  if (shuffled) store.Shuffle(20240601u);
}

StoreObject &At(ObjectStore &store, std::int64_t i) { return *store.objects[static_cast<std::size_t>(i)]; }

int KeyOf(SCC_Handle handle) { return StoreObject::From(handle)->key; }
bool KeyLess(SCC_Handle a, SCC_Handle b) { return KeyOf(a) < KeyOf(b); }

// Counts what a collection tells its listeners, as a view would hear it.
class Heard : public SCC_EventNode<int> {
 public:
  int OnNotification(int code, int *) override {
    if (code >= 0 && code < static_cast<int>(count.size())) ++count[static_cast<std::size_t>(code)];
    return 0;
  }
  void Reset() { count.fill(0); }
  std::array<long, 16> count{};
};

// A sorted collection on a filled store, with one listener.
struct Sorted {
  Sorted(std::int64_t n, bool shuffled) : collection(store) {
    Fill(store, n, shuffled);
    collection.SetSort(&ObjectStore::CompareKey, 0);
    collection.SetNotificationHandler(&heard);
    collection.AllowReload(1);
  }

  // The whole list in key order, each of the store's objects once (extra
  // objects outside [0, n) excepted).
  bool InOrder(std::int64_t n) {
    if (collection.GetSize() != n) return false;
    std::set<SCC_Handle> seen;
    for (std::int32_t i = 0; i < n; ++i) {
      SCC_Handle const h = collection.GetAt(i);
      if (i > 0 && KeyOf(collection.GetAt(i - 1)) > KeyOf(h)) return false;
      seen.insert(h);
    }
    if (static_cast<std::int64_t>(seen.size()) != n) return false;
    for (std::int64_t i = 0; i < n; ++i) {
      if (seen.count(At(store, i).Handle()) == 0) return false;
    }
    return true;
  }
  std::int32_t IndexOf(StoreObject &object) { return collection.GetPositionByHandle(object.Handle()); }

  ObjectStore store;
  StoreCollection collection;
  Heard heard;
};

// The naive peer's list: handles in key order.
struct NaiveList {
  explicit NaiveList(ObjectStore &store) {
    for (StoreObject *object : store.order) handles.push_back(object->Handle());
    Sort();
  }
  void Sort() { std::sort(handles.begin(), handles.end(), KeyLess); }
  std::int64_t IndexOf(StoreObject &object) const {
    auto const found = std::find(handles.begin(), handles.end(), object.Handle());
    return found != handles.end() ? found - handles.begin() : -1;
  }
  bool InOrder(std::int64_t n) const {
    return static_cast<std::int64_t>(handles.size()) == n && std::is_sorted(handles.begin(), handles.end(), KeyLess);
  }
  std::vector<SCC_Handle> handles;
};

// Which object a single-change case touches, and the key that it gets.
struct Move {
  std::int64_t from;  // index of the object in key order
  int key;            // its new key
  std::int64_t to;    // its index in the list after the change
};
// In place: the middle object, nudged between its neighbours.
Move InPlace(std::int64_t n) { return Move{n / 2, static_cast<int>(n / 2) * kGap + 1, n / 2}; }
// Moving: the object at a quarter of the list goes behind the one at three
// quarters, a quarter of the list away.
Move Moving(std::int64_t n) {
  std::int64_t const behind = 3 * n / 4;
  return Move{n / 4, static_cast<int>(behind) * kGap + 1, behind};
}

// ===========================================================================
// One code 3 (EvChanged), in place or moving
// ===========================================================================

void Change_Tovik(benchmark::State &state, Move (*pick)(std::int64_t)) {
  std::int64_t const n = state.range(0);
  Sorted s(n, false);
  Move const m = pick(n);
  StoreObject &object = At(s.store, m.from);
  int const key = object.key;
  {
    s.heard.Reset();
    s.store.SetKey(object, m.key);
    bool const moved = m.to != m.from;
    bool ok = s.IndexOf(object) == m.to && s.InOrder(n) &&
              s.heard.count[EvChanged] == (moved ? 0 : 1) && s.heard.count[EvDeleted] == (moved ? 1 : 0) &&
              s.heard.count[EvAdded] == (moved ? 1 : 0);
    s.store.SetKey(object, key);
    ok = ok && s.IndexOf(object) == m.from && s.InOrder(n);
    if (!ok) state.SkipWithError("wrong list after the change");
  }
  for (auto _ : state) {
    s.store.SetKey(object, m.key);
    s.store.SetKey(object, key);
  }
  state.SetItemsProcessed(state.iterations() * 2);
}

// Two objects moved in turn, so that the collection's memory of the last
// handle found never helps: each lookup starts afresh.
void ChangeMovingCold_Tovik(benchmark::State &state) {
  std::int64_t const n = state.range(0);
  Sorted s(n, false);
  StoreObject &a = At(s.store, n / 4);
  StoreObject &b = At(s.store, n / 4 + 2);
  int const keyA = a.key;
  int const keyB = b.key;
  int const behind = static_cast<int>(3 * n / 4) * kGap;
  auto const there = [&] {
    s.store.SetKey(a, behind + 1);
    s.store.SetKey(b, behind + 2);
  };
  auto const back = [&] {
    s.store.SetKey(a, keyA);
    s.store.SetKey(b, keyB);
  };
  {
    there();
    bool ok = s.IndexOf(a) == 3 * n / 4 - 1 && s.IndexOf(b) == 3 * n / 4 && s.InOrder(n);
    back();
    ok = ok && s.IndexOf(a) == n / 4 && s.IndexOf(b) == n / 4 + 2 && s.InOrder(n);
    if (!ok) state.SkipWithError("wrong list after the changes");
  }
  for (auto _ : state) {
    there();
    back();
  }
  state.SetItemsProcessed(state.iterations() * 4);
}

void Change_Naive(benchmark::State &state, Move (*pick)(std::int64_t)) {
  std::int64_t const n = state.range(0);
  ObjectStore store;
  Fill(store, n, false);
  NaiveList list(store);
  Move const m = pick(n);
  StoreObject &object = At(store, m.from);
  int const key = object.key;
  {
    object.key = m.key;
    list.Sort();
    bool ok = list.IndexOf(object) == m.to && list.InOrder(n);
    object.key = key;
    list.Sort();
    ok = ok && list.IndexOf(object) == m.from && list.InOrder(n);
    if (!ok) state.SkipWithError("wrong list after the change");
  }
  for (auto _ : state) {
    object.key = m.key;
    list.Sort();
    object.key = key;
    list.Sort();
    benchmark::DoNotOptimize(list.handles.data());
  }
  state.SetItemsProcessed(state.iterations() * 2);
}

void ChangeInPlace_Tovik(benchmark::State &state) { Change_Tovik(state, InPlace); }
void ChangeMoving_Tovik(benchmark::State &state) { Change_Tovik(state, Moving); }
void ChangeInPlace_Naive(benchmark::State &state) { Change_Naive(state, InPlace); }
void ChangeMoving_Naive(benchmark::State &state) { Change_Naive(state, Moving); }

// ===========================================================================
// One code 1 (EvAdded) undone by code 2, and one code 2 undone by code 1
// ===========================================================================

// The added object is made in the store after the load, with a key that puts
// it behind the middle object; the deleted one is the middle object.
void AddThenDelete_Tovik(benchmark::State &state) {
  std::int64_t const n = state.range(0);
  Sorted s(n, false);
  StoreObject &extra = s.store.Add(static_cast<int>(n) + 1, static_cast<int>(n / 2) * kGap + 5);
  {
    s.store.Tell(EvAdded, extra);
    bool ok = s.collection.GetSize() == n + 1 && s.IndexOf(extra) == n / 2 + 1;
    s.store.Tell(EvDeleted, extra);
    ok = ok && s.IndexOf(extra) == -1 && s.InOrder(n);
    if (!ok) state.SkipWithError("wrong list after the addition");
  }
  for (auto _ : state) {
    s.store.Tell(EvAdded, extra);
    s.store.Tell(EvDeleted, extra);
  }
  state.SetItemsProcessed(state.iterations() * 2);
}

void DeleteThenAdd_Tovik(benchmark::State &state) {
  std::int64_t const n = state.range(0);
  Sorted s(n, false);
  StoreObject &object = At(s.store, n / 2);
  {
    s.store.Tell(EvDeleted, object);
    bool ok = s.collection.GetSize() == n - 1 && s.IndexOf(object) == -1;
    s.store.Tell(EvAdded, object);
    ok = ok && s.IndexOf(object) == n / 2 && s.InOrder(n);
    if (!ok) state.SkipWithError("wrong list after the deletion");
  }
  for (auto _ : state) {
    s.store.Tell(EvDeleted, object);
    s.store.Tell(EvAdded, object);
  }
  state.SetItemsProcessed(state.iterations() * 2);
}

void Erase(NaiveList &list, SCC_Handle handle) {
  list.handles.erase(std::find(list.handles.begin(), list.handles.end(), handle));
  list.Sort();
}
void Append(NaiveList &list, SCC_Handle handle) {
  list.handles.push_back(handle);
  list.Sort();
}

void AddThenDelete_Naive(benchmark::State &state) {
  std::int64_t const n = state.range(0);
  ObjectStore store;
  Fill(store, n, false);
  NaiveList list(store);
  StoreObject &extra = store.Add(static_cast<int>(n) + 1, static_cast<int>(n / 2) * kGap + 5);
  {
    Append(list, extra.Handle());
    bool ok = list.IndexOf(extra) == n / 2 + 1;
    Erase(list, extra.Handle());
    ok = ok && list.IndexOf(extra) == -1 && list.InOrder(n);
    if (!ok) state.SkipWithError("wrong list after the addition");
  }
  for (auto _ : state) {
    Append(list, extra.Handle());
    Erase(list, extra.Handle());
  }
  state.SetItemsProcessed(state.iterations() * 2);
}

void DeleteThenAdd_Naive(benchmark::State &state) {
  std::int64_t const n = state.range(0);
  ObjectStore store;
  Fill(store, n, false);
  NaiveList list(store);
  StoreObject &object = At(store, n / 2);
  {
    Erase(list, object.Handle());
    bool ok = list.IndexOf(object) == -1;
    Append(list, object.Handle());
    ok = ok && list.IndexOf(object) == n / 2 && list.InOrder(n);
    if (!ok) state.SkipWithError("wrong list after the deletion");
  }
  for (auto _ : state) {
    Erase(list, object.Handle());
    Append(list, object.Handle());
  }
  state.SetItemsProcessed(state.iterations() * 2);
}

// ===========================================================================
// kBatch changes under one suspension, then kBatch more that undo them
// ===========================================================================

// kBatch objects spread over the list and new keys for them: nudged between
// their neighbours (in place), or drawn at random (odd, so that they never tie
// with an untouched object).
struct Batch {
  Batch(ObjectStore &store, std::int64_t n, bool moving) {
    std::mt19937 random(17u);
    for (int k = 0; k < kBatch; ++k) {
      which.push_back(&At(store, k * n / kBatch));
      old.push_back(which.back()->key);
      keys.push_back(moving ? static_cast<int>(random() % static_cast<unsigned>(n)) * kGap + 3 : old.back() + 1);
    }
  }
  std::vector<StoreObject *> which;
  std::vector<int> old;
  std::vector<int> keys;
};

void SuspendedRun_Tovik(benchmark::State &state, int smart, bool moving) {
  std::int64_t const n = state.range(0);
  Sorted s(n, false);
  s.collection.SetNotificationSmart(smart);
  Batch const batch(s.store, n, moving);
  auto const run = [&](std::vector<int> const &keys) {
    s.collection.Suspend(1);
    for (std::size_t k = 0; k < keys.size(); ++k) s.store.SetKey(*batch.which[k], keys[k]);
    s.collection.Suspend(0);
  };
  {
    s.heard.Reset();
    run(batch.keys);
    // Every queued change told once, as a change in place or as a move.
    bool ok = s.heard.count[EvChanged] + s.heard.count[EvAdded] == kBatch &&
              s.heard.count[EvDeleted] == s.heard.count[EvAdded] && s.InOrder(n);
    if (!moving) {
      ok = ok && s.heard.count[EvChanged] == kBatch;
      for (int k = 0; k < kBatch; ++k) ok = ok && s.IndexOf(*batch.which[k]) == k * n / kBatch;
    }
    run(batch.old);
    ok = ok && s.collection.GetSize() == n && s.InOrder(n);
    if (!ok) state.SkipWithError("wrong list after the batch");
  }
  for (auto _ : state) {
    run(batch.keys);
    run(batch.old);
  }
  state.SetItemsProcessed(state.iterations() * 2 * kBatch);
}
void Suspended_Tovik(benchmark::State &state) { SuspendedRun_Tovik(state, 0, false); }
void SuspendedSmart_Tovik(benchmark::State &state) { SuspendedRun_Tovik(state, 1, false); }
void SuspendedMoving_Tovik(benchmark::State &state) { SuspendedRun_Tovik(state, 0, true); }
void SuspendedMovingSmart_Tovik(benchmark::State &state) { SuspendedRun_Tovik(state, 1, true); }

// The naive peer's best under a batch: change every key, then sort once.
void SuspendedRun_Naive(benchmark::State &state, bool moving) {
  std::int64_t const n = state.range(0);
  ObjectStore store;
  Fill(store, n, false);
  NaiveList list(store);
  Batch const batch(store, n, moving);
  auto const run = [&](std::vector<int> const &keys) {
    for (std::size_t k = 0; k < keys.size(); ++k) batch.which[k]->key = keys[k];
    list.Sort();
  };
  {
    run(batch.keys);
    bool ok = list.InOrder(n);
    for (int k = 0; !moving && k < kBatch; ++k) ok = ok && list.IndexOf(*batch.which[k]) == k * n / kBatch;
    run(batch.old);
    ok = ok && list.InOrder(n);
    if (!ok) state.SkipWithError("wrong list after the batch");
  }
  for (auto _ : state) {
    run(batch.keys);
    run(batch.old);
    benchmark::DoNotOptimize(list.handles.data());
  }
  state.SetItemsProcessed(state.iterations() * 2 * kBatch);
}
void Suspended_Naive(benchmark::State &state) { SuspendedRun_Naive(state, false); }
void SuspendedMoving_Naive(benchmark::State &state) { SuspendedRun_Naive(state, true); }

// ===========================================================================
// A full reload from a source in key order, and from a shuffled one
// ===========================================================================

void Reload_Tovik(benchmark::State &state, bool shuffled) {
  std::int64_t const n = state.range(0);
  Sorted s(n, shuffled);
  {
    s.heard.Reset();
    s.collection.Reload(1);
    if (!s.InOrder(n) || s.heard.count[EvReload] != 1) state.SkipWithError("wrong list after the reload");
  }
  for (auto _ : state) s.collection.Reload(1);
  state.SetItemsProcessed(state.iterations() * n);
}

void Reload_Naive(benchmark::State &state, bool shuffled) {
  std::int64_t const n = state.range(0);
  ObjectStore store;
  Fill(store, n, shuffled);
  std::vector<SCC_Handle> handles;
  auto const load = [&] {
    handles.clear();
    for (StoreObject *object : store.order) handles.push_back(object->Handle());
    std::sort(handles.begin(), handles.end(), KeyLess);
  };
  load();
  if (static_cast<std::int64_t>(handles.size()) != n || !std::is_sorted(handles.begin(), handles.end(), KeyLess))
    state.SkipWithError("wrong list after the reload");
  for (auto _ : state) {
    load();
    benchmark::DoNotOptimize(handles.data());
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void ReloadSorted_Tovik(benchmark::State &state) { Reload_Tovik(state, false); }
void ReloadShuffled_Tovik(benchmark::State &state) { Reload_Tovik(state, true); }
void ReloadSorted_Naive(benchmark::State &state) { Reload_Naive(state, false); }
void ReloadShuffled_Naive(benchmark::State &state) { Reload_Naive(state, true); }

#if TOVIK_HAVE_QT
// ===========================================================================
// Qt: a sorting proxy over a list model of the same objects
// ===========================================================================

// One column, the key as the display data, rows in the store's order.
class KeyModel : public QAbstractListModel {
 public:
  explicit KeyModel(ObjectStore &store) : rows(store.order) {}

  int rowCount(QModelIndex const &parent) const override {
    return parent.isValid() ? 0 : static_cast<int>(rows.size());
  }
  QVariant data(QModelIndex const &index, int role) const override {
    if (role != Qt::DisplayRole || !index.isValid()) return QVariant();
    return rows[static_cast<std::size_t>(index.row())]->key;
  }

  void SetKey(int row, int key) {
    rows[static_cast<std::size_t>(row)]->key = key;
    QModelIndex const at = index(row);
    emit dataChanged(at, at);
  }
  void InsertAt(int row, StoreObject *object) {
    beginInsertRows(QModelIndex(), row, row);
    rows.insert(rows.begin() + row, object);
    endInsertRows();
  }
  void RemoveAt(int row) {
    beginRemoveRows(QModelIndex(), row, row);
    rows.erase(rows.begin() + row);
    endRemoveRows();
  }
  void Reset() {
    beginResetModel();
    endResetModel();
  }

  std::vector<StoreObject *> rows;
};

struct QtView {
  QtView(std::int64_t n, bool shuffled) : model((Fill(store, n, shuffled), store)) {
    proxy.setDynamicSortFilter(true);
    proxy.setSourceModel(&model);
    proxy.sort(0);
  }
  // Where the row of the source model stands in the proxy.
  std::int64_t ProxyRow(int row) { return proxy.mapFromSource(model.index(row)).row(); }
  bool InOrder(std::int64_t n) {
    if (proxy.rowCount() != n) return false;
    int last = -1;
    for (int r = 0; r < n; ++r) {
      int const key = proxy.data(proxy.index(r, 0)).toInt();
      if (key < last) return false;
      last = key;
    }
    return true;
  }

  ObjectStore store;
  KeyModel model;
  QSortFilterProxyModel proxy;
};

void Change_Qt(benchmark::State &state, Move (*pick)(std::int64_t)) {
  std::int64_t const n = state.range(0);
  QtView v(n, false);
  Move const m = pick(n);
  int const row = static_cast<int>(m.from);  // the source's rows are in key order
  int const key = v.model.rows[static_cast<std::size_t>(row)]->key;
  {
    v.model.SetKey(row, m.key);
    bool ok = v.ProxyRow(row) == m.to && v.InOrder(n);
    v.model.SetKey(row, key);
    ok = ok && v.ProxyRow(row) == m.from && v.InOrder(n);
    if (!ok) state.SkipWithError("wrong view after the change");
  }
  for (auto _ : state) {
    v.model.SetKey(row, m.key);
    v.model.SetKey(row, key);
  }
  state.SetItemsProcessed(state.iterations() * 2);
}
void ChangeInPlace_Qt(benchmark::State &state) { Change_Qt(state, InPlace); }
void ChangeMoving_Qt(benchmark::State &state) { Change_Qt(state, Moving); }

void AddThenDelete_Qt(benchmark::State &state) {
  std::int64_t const n = state.range(0);
  QtView v(n, false);
  StoreObject &extra = v.store.Add(static_cast<int>(n) + 1, static_cast<int>(n / 2) * kGap + 5);
  int const row = static_cast<int>(n);
  {
    v.model.InsertAt(row, &extra);
    bool ok = v.ProxyRow(row) == n / 2 + 1;
    v.model.RemoveAt(row);
    ok = ok && v.InOrder(n);
    if (!ok) state.SkipWithError("wrong view after the addition");
  }
  for (auto _ : state) {
    v.model.InsertAt(row, &extra);
    v.model.RemoveAt(row);
  }
  state.SetItemsProcessed(state.iterations() * 2);
}

void DeleteThenAdd_Qt(benchmark::State &state) {
  std::int64_t const n = state.range(0);
  QtView v(n, false);
  int const row = static_cast<int>(n / 2);
  StoreObject *const object = v.model.rows[static_cast<std::size_t>(row)];
  {
    v.model.RemoveAt(row);
    bool ok = v.proxy.rowCount() == n - 1;
    v.model.InsertAt(row, object);
    ok = ok && v.ProxyRow(row) == n / 2 && v.InOrder(n);
    if (!ok) state.SkipWithError("wrong view after the deletion");
  }
  for (auto _ : state) {
    v.model.RemoveAt(row);
    v.model.InsertAt(row, object);
  }
  state.SetItemsProcessed(state.iterations() * 2);
}

// Qt's way through a batch: dynamic sorting off, the changes, then on again,
// which sorts once. The source's rows are in key order.
void SuspendedRun_Qt(benchmark::State &state, bool moving) {
  std::int64_t const n = state.range(0);
  QtView v(n, false);
  Batch const batch(v.store, n, moving);
  auto const run = [&](std::vector<int> const &keys) {
    v.proxy.setDynamicSortFilter(false);
    for (int k = 0; k < kBatch; ++k) v.model.SetKey(static_cast<int>(k * n / kBatch), keys[static_cast<std::size_t>(k)]);
    v.proxy.setDynamicSortFilter(true);
  };
  {
    run(batch.keys);
    bool ok = v.InOrder(n);
    for (int k = 0; !moving && k < kBatch; ++k) ok = ok && v.ProxyRow(static_cast<int>(k * n / kBatch)) == k * n / kBatch;
    run(batch.old);
    ok = ok && v.InOrder(n);
    if (!ok) state.SkipWithError("wrong view after the batch");
  }
  for (auto _ : state) {
    run(batch.keys);
    run(batch.old);
  }
  state.SetItemsProcessed(state.iterations() * 2 * kBatch);
}
void Suspended_Qt(benchmark::State &state) { SuspendedRun_Qt(state, false); }
void SuspendedMoving_Qt(benchmark::State &state) { SuspendedRun_Qt(state, true); }

void Reload_Qt(benchmark::State &state, bool shuffled) {
  std::int64_t const n = state.range(0);
  QtView v(n, shuffled);
  v.model.Reset();
  if (!v.InOrder(n)) state.SkipWithError("wrong view after the reload");
  for (auto _ : state) v.model.Reset();
  state.SetItemsProcessed(state.iterations() * n);
}
void ReloadSorted_Qt(benchmark::State &state) { Reload_Qt(state, false); }
void ReloadShuffled_Qt(benchmark::State &state) { Reload_Qt(state, true); }
#endif

}  // namespace

#define COLLECTION_CASE(name) BENCHMARK(name)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond)

COLLECTION_CASE(ChangeInPlace_Tovik);
COLLECTION_CASE(ChangeInPlace_Naive);
COLLECTION_CASE(ChangeMoving_Tovik);
COLLECTION_CASE(ChangeMoving_Naive);
COLLECTION_CASE(ChangeMovingCold_Tovik);
COLLECTION_CASE(AddThenDelete_Tovik);
COLLECTION_CASE(AddThenDelete_Naive);
COLLECTION_CASE(DeleteThenAdd_Tovik);
COLLECTION_CASE(DeleteThenAdd_Naive);
COLLECTION_CASE(Suspended_Tovik);
COLLECTION_CASE(SuspendedSmart_Tovik);
COLLECTION_CASE(Suspended_Naive);
COLLECTION_CASE(SuspendedMoving_Tovik);
COLLECTION_CASE(SuspendedMovingSmart_Tovik);
COLLECTION_CASE(SuspendedMoving_Naive);
COLLECTION_CASE(ReloadSorted_Tovik);
COLLECTION_CASE(ReloadSorted_Naive);
COLLECTION_CASE(ReloadShuffled_Tovik);
COLLECTION_CASE(ReloadShuffled_Naive);
#if TOVIK_HAVE_QT
COLLECTION_CASE(ChangeInPlace_Qt);
COLLECTION_CASE(ChangeMoving_Qt);
COLLECTION_CASE(AddThenDelete_Qt);
COLLECTION_CASE(DeleteThenAdd_Qt);
COLLECTION_CASE(Suspended_Qt);
COLLECTION_CASE(SuspendedMoving_Qt);
COLLECTION_CASE(ReloadSorted_Qt);
COLLECTION_CASE(ReloadShuffled_Qt);
#endif

BENCHMARK_MAIN();
