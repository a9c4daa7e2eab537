// Array order: Sort, FindItemPosition, ItemInValidPlace and ordered insertion.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "array_support.h"
#include "scc_array.h"
#include "test_support.h"

using array_test::ByKey;
using array_test::Code;
using array_test::Heard;
using array_test::Recorder;
using array_test::Tagged;
using array_test::TestArray;

namespace tovik_test {
inline int SCC_Compare(Counted const &a, Counted const &b) {
  return ::SCC_Compare(a.value, b.value);
}
}  // namespace tovik_test

namespace {

using Swaps = std::vector<std::pair<std::int32_t, std::int32_t>>;

// The sort steps as first written, without the bound on the depth: the
// reference the engine must follow step for step until the bound is reached.
template <class T>
struct ReferenceSort {
  ReferenceSort(std::vector<T> &sorted, int (*order)(T const &, T const &))
      : items(sorted), compare(order) {}

  std::vector<T> &items;
  int (*compare)(T const &, T const &);
  Swaps swaps;
  Swaps shortSorts;
  int maxDepth = -1;  // the deepest partition, counted from 0

  int Compare(int a, int b) const { return compare(items[a], items[b]); }
  void Swap(int a, int b) {
    swaps.emplace_back(a, b);
    std::swap(items[a], items[b]);
  }
  void ShortSort(int lo, int hi) {
    shortSorts.emplace_back(lo, hi);
    for (int top = hi; top > lo; --top) {
      int largest = lo;
      for (int k = lo + 1; k <= top; ++k) {
        if (Compare(k, largest) > 0) largest = k;
      }
      Swap(largest, top);
    }
  }
  void Run(int lo, int hi) {
    std::vector<int> los, his, depths;
    int depth = 0;
    for (;;) {
      if (hi - lo + 1 < 9) {
        ShortSort(lo, hi);
      } else {
        maxDepth = std::max(maxDepth, depth);
        Swap(lo + (hi - lo + 1) / 2, lo);
        int i = lo, j = hi + 1;
        for (;;) {
          do ++i;
          while (i <= hi && Compare(i, lo) <= 0);
          do --j;
          while (j > lo && Compare(j, lo) >= 0);
          if (j < i) break;
          Swap(i, j);
        }
        Swap(lo, j);
        ++depth;
        bool const lowLarger = j - lo >= hi - i + 1;
        int const bigLo = lowLarger ? lo : i, bigHi = lowLarger ? j - 1 : hi;
        int const smallLo = lowLarger ? i : lo, smallHi = lowLarger ? hi : j - 1;
        if (bigHi > bigLo) {
          los.push_back(bigLo);
          his.push_back(bigHi);
          depths.push_back(depth);
        }
        if (smallHi > smallLo) {
          lo = smallLo;
          hi = smallHi;
          continue;
        }
      }
      if (los.empty()) return;
      lo = los.back(), hi = his.back(), depth = depths.back();
      los.pop_back(), his.pop_back(), depths.pop_back();
    }
  }
};

int DepthLimit(int n) {
  int log2 = 0;
  while (n > 1) n >>= 1, ++log2;
  return 2 * log2;
}

int Ascending(std::uint16_t const &a, std::uint16_t const &b) { return SCC_Compare(a, b); }
int Descending(std::uint16_t const &a, std::uint16_t const &b) { return -SCC_Compare(a, b); }

std::vector<std::uint16_t> RandomKeys(std::size_t n, int distinct, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<std::uint16_t> keys(n);
  if (distinct == 0) {  // all distinct
    std::iota(keys.begin(), keys.end(), std::uint16_t{0});
    std::shuffle(keys.begin(), keys.end(), random);
  } else {
    for (auto &k : keys) k = static_cast<std::uint16_t>(random() % distinct);
  }
  return keys;
}

// ---------------------------------------------------------------------------

TEST(ArraySort, FollowsTheSortStepsExactlyBelowTheDepthBound) {
  struct Case {
    char const *name;
    std::size_t n;
    int distinct;  // 0: all keys distinct
    int order;
  };
  Case const cases[] = {
      {"two items", 2, 0, 1},
      {"eight: one short sort", 8, 0, 1},
      {"nine: one partition", 9, 0, 1},
      {"small descending", 40, 0, -1},
      {"distinct", 1000, 0, 1},
      {"distinct descending", 5000, 0, -1},
      {"repeated keys", 1000, 500, 1},
      {"repeated keys descending", 800, 300, -1},
      {"fifteen copies each", 300, 20, 1},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(c.name);
    std::vector<std::uint16_t> keys = RandomKeys(c.n, c.distinct, static_cast<unsigned>(c.n));
    TestArray array;
    array.SetComparator(new SCC_Comparator<std::uint16_t>);
    array.Fill(keys);
    array.Sort(c.order);

    ReferenceSort<std::uint16_t> reference(keys, c.order == -1 ? Descending : Ascending);
    reference.Run(0, static_cast<int>(c.n) - 1);
    ASSERT_LT(reference.maxDepth, DepthLimit(static_cast<int>(c.n))) << "pick other keys";
    EXPECT_EQ(array.swaps, reference.swaps);
    EXPECT_EQ(array.shortSorts, reference.shortSorts);
    EXPECT_EQ(array.Items(), keys);
  }
}

TEST(ArraySort, EightItemsShortSortNineItemsPartitionOnce) {
  TestArray array;
  array.SetComparator(new SCC_Comparator<std::uint16_t>);
  array.Fill({8, 7, 6, 5, 4, 3, 2, 1});
  array.Sort(1);
  EXPECT_EQ(array.shortSorts, (Swaps{{0, 7}}));
  EXPECT_EQ(array.swaps.size(), 7u);  // one per position, even onto itself

  array.Fill({9, 8, 7, 6, 5, 4, 3, 2, 1});
  array.swaps.clear();
  array.shortSorts.clear();
  array.Sort(1);
  ASSERT_FALSE(array.swaps.empty());
  EXPECT_EQ(array.swaps.front(), std::make_pair(4, 0));  // the middle item becomes the pivot
  EXPECT_EQ(array.shortSorts.size(), 2u);
  for (auto const &part : array.shortSorts) EXPECT_LT(part.second - part.first + 1, 9);
  EXPECT_EQ(array.Items(), (std::vector<std::uint16_t>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST(ArraySort, DirectionFlagBoundsAndNotification) {
  SCC_Array<int> array;
  Recorder listener;
  array.AddListener(listener);
  for (int v : {3, 1, 2}) array.Append(v);
  array.SetComparator(new SCC_Comparator<int>);  // ascending at once
  EXPECT_EQ((std::vector<int>(array.GetData(), array.GetData() + 3)), (std::vector<int>{1, 2, 3}));
  SCC_ComparatorBase *const order = array.GetComparator();

  array.Sort(-1);
  EXPECT_EQ(order->reversed, 1);
  EXPECT_EQ(array[0], 3);
  array.Sort(0);  // keeps the comparator's direction
  EXPECT_EQ(array[0], 3);
  EXPECT_EQ(order->reversed, 1);
  array.Sort(1);
  EXPECT_EQ(order->reversed, 0);
  EXPECT_EQ(array[0], 1);
  array.Sort(7);  // any other order is ascending
  EXPECT_EQ(order->reversed, 0);

  listener.heard.clear();
  array.Sort(2, 1, -1);  // one item: the flag is set, nothing else happens
  EXPECT_EQ(order->reversed, 1);
  array.Sort(0, 0, 1);  // first + count - 1 is negative
  array.Sort(3, 1, 1);  // first outside
  array.Sort(1, 3, 1);  // end outside
  EXPECT_EQ(order->reversed, 1);
  EXPECT_TRUE(listener.heard.empty());
  array.Sort(1, 2, -1);  // a part of the array
  EXPECT_EQ(listener.heard, std::vector<Heard>{Code(EvReload)});
  EXPECT_EQ((std::vector<int>(array.GetData(), array.GetData() + 3)), (std::vector<int>{1, 3, 2}));

  SCC_Array<int> sharer(array);
  array.SetComparator(nullptr);  // leaves the order alone
  array.Sort(1);
  EXPECT_EQ(array[1], 3);
  array.SetComparator(order);
  EXPECT_EQ(array[1], 2);
  EXPECT_EQ(sharer[1], 3);  // sorting made the buffer private first
}

TEST(ArraySort, FewDistinctKeysFinishThroughTheDepthBound) {
  // Unbounded, each partition here peels off only a few items.
  std::vector<std::uint16_t> small = RandomKeys(3000, 2, 5);
  ReferenceSort<std::uint16_t> reference(small, Ascending);
  reference.Run(0, 2999);
  EXPECT_GT(reference.maxDepth, 10 * DepthLimit(3000));

  for (int distinct : {1, 2, 16}) {
    SCOPED_TRACE(distinct);
    std::vector<std::uint16_t> keys = RandomKeys(100000, distinct, 9);
    SCC_Array<int> array;
    for (auto k : keys) array.Append(k);
    array.SetComparator(new SCC_Comparator<int>);
    std::sort(keys.begin(), keys.end());
    EXPECT_TRUE(std::equal(keys.begin(), keys.end(), array.GetData()));
  }

  // The bound leaves equal items in some order, and every item in place.
  std::vector<Tagged> tagged(5000);
  std::mt19937 random(3);
  for (int i = 0; i < 5000; ++i) tagged[i] = {static_cast<int>(random() % 3), i};
  SCC_SortableArray<Tagged> array;
  for (Tagged const &t : tagged) array.Append(t);
  array.SetComparator(new SCC_Comparator<Tagged>(ByKey));
  std::vector<int> tags;
  for (int i = 0; i < 5000; ++i) {
    if (i > 0) {
      EXPECT_LE(array[i - 1].key, array[i].key);
    }
    tags.push_back(array[i].tag);
  }
  std::sort(tags.begin(), tags.end());
  for (int i = 0; i < 5000; ++i) EXPECT_EQ(tags[i], i);
}

int Erratic(int const &, int const &) { return std::rand() % 3 - 1; }

TEST(ArraySort, AnInconsistentComparatorCannotBreakTheArray) {
  std::srand(1);
  SCC_SortableArray<int> array;
  for (int i = 0; i < 2000; ++i) array.Append(i);
  array.SetComparator(new SCC_Comparator<int>(Erratic));
  std::vector<int> seen(array.GetData(), array.GetData() + 2000);
  std::sort(seen.begin(), seen.end());
  for (int i = 0; i < 2000; ++i) ASSERT_EQ(seen[i], i);
  for (int probe = 0; probe < 200; ++probe) {
    std::int32_t first = -1, last = -1;
    array.FindItemPosition(probe, first, last);
    EXPECT_LE(0, first);
    EXPECT_LE(first, last);
    EXPECT_LE(last, 2000);
  }
}

template <class T>
class TypedSort : public ::testing::Test {};
using SortTypes = ::testing::Types<int, SYS_String, tovik_test::Counted>;
struct SortNames {
  template <class T>
  static std::string GetName(int i) {
    char const *const names[] = {"int", "SYS_String", "Counted"};
    return names[i];
  }
};
TYPED_TEST_SUITE(TypedSort, SortTypes, SortNames);

TYPED_TEST(TypedSort, SortsAndKeepsEveryItem) {
  using T = TypeParam;
  tovik_test::CountedLeakGuard guard;
  std::mt19937 random(21);
  for (int n : {0, 1, 8, 9, 10, 27, 28, 300}) {
    SCC_SortableArray<T> array;
    std::vector<T> model;
    for (int i = 0; i < n; ++i) {
      int const v = static_cast<int>(random() % 50);
      T item{};
      if constexpr (std::is_same<T, SYS_String>::value) {
        item = SYS_String(std::to_string(v).c_str());
      } else {
        item = T(v);
      }
      array.Append(item);
      model.push_back(item);
    }
    array.SetComparator(new SCC_Comparator<T>);
    std::sort(model.begin(), model.end(),
              [](T const &a, T const &b) { return SCC_Compare(a, b) < 0; });
    for (int i = 0; i < n; ++i) EXPECT_TRUE(SCC_Compare(array.GetAt(i), model[i]) == 0);
  }
}

// A derived class that overrides Swap: its arrays go through the virtual
// steps, while the library's own layers compare and swap built-in keys inline.
template <class T>
class Overriding : public SCC_SortableArray<T> {
 public:
  int swaps = 0;

 protected:
  void Swap(std::int32_t a, std::int32_t b) override {
    ++swaps;
    SCC_SortableArray<T>::Swap(a, b);
  }
};

template <class T>
T KeyOf(unsigned r) {
  if constexpr (std::is_pointer<T>::value) {
    return reinterpret_cast<T>(static_cast<std::uintptr_t>(r % 40) * 8);
  } else if constexpr (std::is_floating_point<T>::value) {
    // Zeros of both signs compare equal yet differ in their bits, and a NaN
    // equals everything: the two paths must still agree bit for bit.
    return r % 7 == 0 ? -0.0 : (r % 7 == 1 ? 0.0 : (r % 31 == 2 ? std::nan("") : r % 40 - 20.0));
  } else {
    return static_cast<T>(r % 40 - 20);
  }
}

template <class T>
class InlineKeys : public ::testing::Test {};
using KeyTypes = ::testing::Types<int, unsigned int, SCC_Handle, unsigned long, double, void *>;
struct KeyNames {
  template <class T>
  static std::string GetName(int i) {
    char const *const names[] = {"int", "unsigned", "long", "unsigned_long", "double", "pointer"};
    return names[i];
  }
};
TYPED_TEST_SUITE(InlineKeys, KeyTypes, KeyNames);

TYPED_TEST(InlineKeys, TakeTheSameStepsAsTheVirtualOnes) {
  using T = TypeParam;
  std::mt19937 random(17);
  for (int n : {2, 9, 100, 3000}) {
    for (int order : {1, -1, 0}) {
      SCOPED_TRACE(testing::Message() << n << " items, order " << order);
      SCC_SortableArray<T> fast;
      Overriding<T> slow;
      for (int i = 0; i < n; ++i) {
        T const key = KeyOf<T>(random());
        fast.Append(key);
        slow.Append(key);
      }
      fast.SetComparator(new SCC_Comparator<T>);
      slow.SetComparator(new SCC_Comparator<T>);
      fast.Sort(order);
      slow.Sort(order);
      EXPECT_GT(slow.swaps, 0);
      EXPECT_EQ(std::memcmp(fast.GetData(), slow.GetData(), n * sizeof(T)), 0);
      for (int probe = 0; probe < 40; ++probe) {
        T const key = KeyOf<T>(static_cast<unsigned>(probe));
        std::int32_t fastFirst, fastLast, slowFirst, slowLast;
        fast.FindItemPosition(key, fastFirst, fastLast);
        slow.FindItemPosition(key, slowFirst, slowLast);
        EXPECT_EQ(fastFirst, slowFirst);
        EXPECT_EQ(fastLast, slowLast);
      }
    }
  }
}

// ---------------------------------------------------------------------------
// Searching and ordered insertion

TEST(ArraySearch, FindItemPositionGivesTheRunOfEqualItems) {
  SCC_SortableArray<int> array;
  for (int v : {1, 3, 3, 5}) array.Append(v);
  std::int32_t first = -1, last = -1;
  array.FindItemPosition(3, first, last);  // no comparator at all
  EXPECT_EQ(first, 0);
  EXPECT_EQ(last, 3);

  auto *fresh = new SCC_Comparator<int>;  // the caller's: the search must not take it over
  struct Probe {
    int item;
    std::int32_t first, last;
    char const *why;
  };
  Probe const probes[] = {
      {0, 0, 0, "before everything"}, {1, 0, 1, "the first item"},  {2, 1, 1, "between 1 and 3"},
      {3, 1, 3, "a run of two"},      {4, 3, 3, "between 3 and 5"}, {5, 3, 4, "the last item"},
      {6, 4, 4, "behind everything"},
  };
  for (Probe const &p : probes) {
    SCOPED_TRACE(p.why);
    array.FindItemPosition(p.item, first, last, fresh);
    EXPECT_EQ(first, p.first);
    EXPECT_EQ(last, p.last);
  }
  array.SetComparator(fresh);
  array.Sort(-1);  // 5 3 3 1, and the search follows the comparator's direction
  array.FindItemPosition(3, first, last);
  EXPECT_EQ(first, 1);
  EXPECT_EQ(last, 3);
  array.FindItemPosition(4, first, last);
  EXPECT_EQ(first, 1);
  EXPECT_EQ(last, 1);

  SCC_SortableArray<int> same;
  for (int i = 0; i < 4; ++i) same.Append(7);
  same.SetComparator(new SCC_Comparator<int>);
  same.FindItemPosition(7, first, last);
  EXPECT_EQ(first, 0);
  EXPECT_EQ(last, 4);
  SCC_SortableArray<int> empty;
  empty.FindItemPosition(7, first, last);
  EXPECT_EQ(first, 0);
  EXPECT_EQ(last, 0);
}

TEST(ArraySearch, AddGoesBehindEqualItemsAndItemInValidPlaceLooksAtNeighbours) {
  SCC_SortableArray<Tagged> array;
  EXPECT_EQ(array.Add({5, 0}), 0);  // no comparator: at the end
  EXPECT_EQ(array.Add({1, 1}), 1);
  array.SetComparator(new SCC_Comparator<Tagged>(ByKey));
  EXPECT_EQ(array.Add({3, 2}), 1);
  EXPECT_EQ(array.Add({3, 3}), 2);
  EXPECT_EQ(array.Add({0, 4}), 0);
  EXPECT_EQ(array.Add({9, 5}), 5);
  std::vector<int> tags;
  for (std::int32_t i = 0; i < array.GetSize(); ++i) tags.push_back(array.GetAt(i).tag);
  EXPECT_EQ(tags, (std::vector<int>{4, 1, 2, 3, 0, 5}));  // keys 0 1 3 3 5 9

  struct Case {
    std::int32_t index;
    int key;
    int valid;
    char const *why;
  };
  Case const cases[] = {
      {0, 1, 1, "first, equal to the next"},      {0, 2, 0, "first, above the next"},
      {2, 1, 1, "middle, equal to the previous"}, {2, 0, 0, "middle, below the previous"},
      {2, 6, 0, "middle, above the next"},        {5, 5, 1, "last, equal to the previous"},
      {5, 4, 0, "last, below the previous"},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(c.why);
    SCC_SortableArray<Tagged> copy(array);
    copy[c.index].key = c.key;
    EXPECT_EQ(copy.ItemInValidPlace(c.index), c.valid);
  }
  SCC_SortableArray<Tagged> one;
  one.Append({42, 0});
  one.SetComparator(new SCC_Comparator<Tagged>(ByKey));
  EXPECT_EQ(one.ItemInValidPlace(0), 1);
}

}  // namespace
