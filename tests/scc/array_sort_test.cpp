// Array order: Sort, FindItemPosition, ItemInValidPlace and ordered insertion.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "array_support.h"
#include "scc_array.h"

using array_test::Heard;
using array_test::Recorder;

namespace {

using Keys = std::vector<std::uint16_t>;
using Pairs = std::vector<std::pair<std::int32_t, std::int32_t>>;

// An array that goes through the virtual sort steps and records them.
struct Stepping : SCC_SortableArray<std::uint16_t> {
  void Swap(std::int32_t a, std::int32_t b) override {
    swaps.emplace_back(a, b);
    SCC_SortableArray<std::uint16_t>::Swap(a, b);
  }
  void ShortSort(std::int32_t lo, std::int32_t hi) override {
    shortSorts.emplace_back(lo, hi);
    SCC_SortableArray<std::uint16_t>::ShortSort(lo, hi);
  }
  Pairs swaps, shortSorts;
};

// The sort steps as first written, with no bound on the depth: the engine
// must take the same steps while it stays below its bound (the cases below do).
struct ReferenceSort {
  ReferenceSort(Keys &keys, int order) : items(keys), direction(order) {}

  Keys &items;
  int direction;  // 1 ascending, -1 descending
  Pairs swaps, shortSorts;

  int Compare(int a, int b) const { return direction * SCC_Compare(items[a], items[b]); }
  void Swap(int a, int b) {
    swaps.emplace_back(a, b);
    std::swap(items[a], items[b]);
  }
  void Run(int lo, int hi) {
    std::vector<int> los, his;
    for (;;) {
      if (hi - lo + 1 < 9) {
        shortSorts.emplace_back(lo, hi);
        for (int top = hi; top > lo; --top) {
          int largest = lo;
          for (int k = lo + 1; k <= top; ++k) largest = Compare(k, largest) > 0 ? k : largest;
          Swap(largest, top);
        }
      } else {
        Swap(lo + (hi - lo + 1) / 2, lo);
        int i = lo, j = hi + 1;
        for (;;) {
          while (++i <= hi && Compare(i, lo) <= 0) {}
          while (--j > lo && Compare(j, lo) >= 0) {}
          if (j < i) break;
          Swap(i, j);
        }
        Swap(lo, j);
        bool const lowLarger = j - lo >= hi - i + 1;
        int const bigLo = lowLarger ? lo : i, bigHi = lowLarger ? j - 1 : hi;
        int const smallLo = lowLarger ? i : lo, smallHi = lowLarger ? hi : j - 1;
        if (bigHi > bigLo) los.push_back(bigLo), his.push_back(bigHi);
        if (smallHi > smallLo) {
          lo = smallLo, hi = smallHi;
          continue;
        }
      }
      if (los.empty()) return;
      lo = los.back(), hi = his.back();
      los.pop_back(), his.pop_back();
    }
  }
};

Keys RandomKeys(std::size_t n, unsigned distinct) {  // distinct 0: a permutation
  std::mt19937 random(static_cast<unsigned>(n));
  Keys keys(n);
  std::iota(keys.begin(), keys.end(), std::uint16_t{0});
  if (distinct == 0) std::shuffle(keys.begin(), keys.end(), random);
  for (auto &k : keys) k = distinct == 0 ? k : static_cast<std::uint16_t>(random() % distinct);
  return keys;
}

TEST(ArraySort, TakesTheSortStepsExactlyBelowTheDepthBound) {
  struct Case {
    char const *name;
    std::size_t n;
    unsigned distinct;
    int order;
  };
  Case const cases[] = {
      {"eight: one short sort", 8, 0, 1},
      {"nine: one partition", 9, 0, 1},
      {"small descending", 40, 0, -1},
      {"distinct descending", 5000, 0, -1},
      {"repeated keys", 1000, 500, 1},
      {"fifteen copies each", 300, 20, 1},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(c.name);
    Keys keys = RandomKeys(c.n, c.distinct);
    Stepping array;
    array.SetComparator(new SCC_Comparator<std::uint16_t>);
    for (auto k : keys) array.Append(k);
    array.Sort(c.order);
    ReferenceSort reference(keys, c.order);
    reference.Run(0, static_cast<int>(c.n) - 1);
    EXPECT_EQ(array.swaps, reference.swaps);
    EXPECT_EQ(array.shortSorts, reference.shortSorts);
    EXPECT_TRUE(std::equal(keys.begin(), keys.end(), array.GetData()));
  }
}

TEST(ArraySort, DirectionBoundsAndNotification) {
  SCC_Array<int> array;
  Recorder listener;
  array.AddListener(listener);
  for (int v : {3, 1, 2}) array.Append(v);
  array.SetComparator(new SCC_Comparator<int>);  // ascending at once
  SCC_ComparatorBase *const order = array.GetComparator();
  auto items = [&array] { return std::vector<int>(array.GetData(), array.GetData() + 3); };
  // 0 keeps the comparator's direction; anything but -1 is ascending.
  for (std::pair<int, int> step : {std::make_pair(-1, 321), std::make_pair(0, 321), std::make_pair(1, 123),
                                   std::make_pair(7, 123)}) {
    array.Sort(step.first);
    EXPECT_EQ(items()[0] * 100 + items()[1] * 10 + items()[2], step.second) << step.first;
  }
  listener.heard.clear();
  array.Sort(2, 1, -1);  // one item: the flag is set, nothing else happens
  array.Sort(0, 0, 1);   // first + count - 1 is negative: nothing at all
  array.Sort(1, 3, 1);   // the end outside: nothing at all
  EXPECT_TRUE(order->reversed == 1 && listener.heard.empty());
  array.Sort(0, 2, -1);  // a part of the array
  EXPECT_EQ(listener.heard, (std::vector<Heard>{{EvReload, 0}}));
  EXPECT_EQ(items(), (std::vector<int>{2, 1, 3}));
  SCC_Array<int> sharer(array);
  array.SetComparator(nullptr);  // leaves the order alone
  array.SetComparator(order);
  EXPECT_EQ(items(), (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(sharer[0], 2);  // sorting made the buffer private first
}

TEST(ArraySort, FewDistinctKeysFinishThroughTheDepthBound) {
  for (unsigned distinct : {1, 2, 16}) {
    SCOPED_TRACE(distinct);
    Keys keys = RandomKeys(100000, distinct);
    SCC_Array<int> array;
    for (auto k : keys) array.Append(k);
    array.SetComparator(new SCC_Comparator<int>);
    std::sort(keys.begin(), keys.end());
    EXPECT_TRUE(std::equal(keys.begin(), keys.end(), array.GetData()));
  }
}

// An item ordered by key alone, so that a tag tells equal items apart.
struct Tagged {
  int key, tag;
};
int ByKey(Tagged const &a, Tagged const &b) { return SCC_Compare(a.key, b.key); }

TEST(ArraySearch, RunsOfEqualItemsOrderedInsertionAndValidPlaces) {
  SCC_SortableArray<int> array;
  for (int v : {1, 3, 3, 5}) array.Append(v);
  std::int32_t first = -1, last = -1;
  array.FindItemPosition(3, first, last);  // no comparator at all: the whole array
  EXPECT_EQ(std::make_pair(first, last), std::make_pair(0, 3));
  auto *fresh = new SCC_Comparator<int>;  // the caller's: the search must not take it over
  struct Probe {
    int item;
    std::int32_t first, last;
  };
  for (Probe const &p : {Probe{0, 0, 0}, Probe{1, 0, 1}, Probe{2, 1, 1}, Probe{3, 1, 3},
                         Probe{4, 3, 3}, Probe{5, 3, 4}, Probe{6, 4, 4}}) {
    array.FindItemPosition(p.item, first, last, fresh);
    EXPECT_EQ(std::make_pair(first, last), std::make_pair(p.first, p.last)) << p.item;
  }
  array.SetComparator(fresh);
  array.Sort(-1);  // 5 3 3 1: the search follows the comparator's direction
  array.FindItemPosition(3, first, last);
  EXPECT_EQ(std::make_pair(first, last), std::make_pair(1, 3));

  SCC_SortableArray<Tagged> tagged;
  EXPECT_TRUE(tagged.Add({5, 0}) == 0 && tagged.Add({1, 1}) == 1);  // no comparator: at the end
  tagged.SetComparator(new SCC_Comparator<Tagged>(ByKey));
  for (Tagged t : {Tagged{3, 2}, Tagged{3, 3}, Tagged{0, 4}, Tagged{9, 5}}) tagged.Add(t);
  std::vector<int> tags;
  for (std::int32_t i = 0; i < tagged.GetSize(); ++i) tags.push_back(tagged.GetAt(i).tag);
  EXPECT_EQ(tags, (std::vector<int>{4, 1, 2, 3, 0, 5}));  // keys 0 1 3 3 5 9, equals in order of arrival
  EXPECT_EQ(tagged.ItemInValidPlace(6), 0);  // outside the array: a failed check, and 0
  // ItemInValidPlace looks at both neighbours, or the one there is.
  struct Case {
    std::int32_t index;
    int key, valid;
  };
  for (Case const &c :
       {Case{0, 1, 1}, Case{0, 2, 0}, Case{2, 1, 1}, Case{2, 0, 0}, Case{5, 5, 1}, Case{5, 4, 0}}) {
    SCC_SortableArray<Tagged> copy(tagged);
    copy[c.index].key = c.key;
    EXPECT_EQ(copy.ItemInValidPlace(c.index), c.valid) << "key " << c.key << " at " << c.index;
  }
}

}  // namespace
