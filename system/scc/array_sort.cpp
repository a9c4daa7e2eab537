// The array engine's ordering: sort, binary search, order test.
//
// The steps are written once, over an "access" that compares and swaps items
// by index. VirtualAccess goes through the comparator's Compare and the
// array's Swap and ShortSort, as any derived class may override them.
// KeyAccess<K> does the same inline for the built-in keys, when the array is
// one of the library's own typed layers with the default comparator of its
// item type (GetInlineSteps): it answers every comparison exactly as
// SCC_Comparator<K> would, so the steps, and so the results, are the same.
#include <cstdint>
#include <type_traits>
#include <utility>

#include "scc_array.h"

namespace {

// Partitions of fewer items go to ShortSort.
constexpr std::int32_t kShortSortLimit = 9;
// Entries of the partition stacks. Pushing the larger part and going on with
// the smaller one at least halves the range per entry, so 2^31 items need
// fewer than 30.
constexpr int kStackSize = 30;

// How many partitions one line of descent may take before the rest of its
// range is heap-sorted: 2 * floor(log2(n)), as introsort bounds its depth.
// Partitions stop only on strictly greater and strictly smaller items, so
// arrays with few distinct keys would otherwise sort in quadratic time.
int DepthLimit(std::int32_t n) {
  int log2 = 0;
  while (n > 1) {
    n >>= 1;
    ++log2;
  }
  return 2 * log2;
}

inline int Sign(int value) { return (value > 0) - (value < 0); }

}  // namespace

class _SCC_Array::Sorter {
 public:
  // The virtual steps. Items are addressed afresh from data for each
  // comparison: the comparator and Swap may be anything.
  struct VirtualAccess {
    _SCC_Array &array;
    SCC_ComparatorBase &order;
    std::size_t elementSize;

    void const *At(std::int64_t index) const {
      return static_cast<char const *>(array.data) + static_cast<std::size_t>(index) * elementSize;
    }
    int Compare(std::int32_t a, std::int32_t b) const { return order.Compare(At(a), At(b)); }
    int CompareWith(std::int32_t a, void const *item) const { return order.Compare(At(a), item); }
    int CompareItem(void const *item, std::int32_t a) const { return order.Compare(item, At(a)); }
    void Swap(std::int32_t a, std::int32_t b) const { array.Swap(a, b); }
    void ShortSort(std::int32_t lo, std::int32_t hi) const { array.ShortSort(lo, hi); }
  };

  // The same steps inline, for items of a built-in key type.
  template <class K>
  struct KeyAccess {
    K *items;
    bool reversed;

    void const *At(std::int32_t index) const { return items + index; }
    int Compare(std::int32_t a, std::int32_t b) const {
      return Directed(SCC_Compare(items[a], items[b]));
    }
    int CompareWith(std::int32_t a, void const *item) const {
      return Directed(SCC_Compare(items[a], *static_cast<K const *>(item)));
    }
    void Swap(std::int32_t a, std::int32_t b) const { std::swap(items[a], items[b]); }
    void ShortSort(std::int32_t lo, std::int32_t hi) const { Sorter::ShortSort(*this, lo, hi); }
    int Directed(int r) const { return reversed ? -r : r; }  // r is -1, 0 or 1
  };

  // Runs f with the access that fits the array: f(access).
  template <class F>
  static void WithAccess(_SCC_Array &array, SCC_ComparatorBase &order, int key, F &&f) {
    bool const reversed = order.reversed != 0;
    switch (key) {
      case tovik_detail::kKeyInt:
        return f(KeyAccess<int>{static_cast<int *>(array.data), reversed});
      case tovik_detail::kKeyUnsigned:
        return f(KeyAccess<unsigned int>{static_cast<unsigned int *>(array.data), reversed});
      case tovik_detail::kKeyLong:
        return f(KeyAccess<long>{static_cast<long *>(array.data), reversed});
      case tovik_detail::kKeyUnsignedLong:
        return f(KeyAccess<unsigned long>{static_cast<unsigned long *>(array.data), reversed});
      case tovik_detail::kKeyDouble:
        return f(KeyAccess<double>{static_cast<double *>(array.data), reversed});
      case tovik_detail::kKeyPointer:
        return f(KeyAccess<void *>{static_cast<void **>(array.data), reversed});
      default:
        return f(VirtualAccess{array, order, static_cast<std::size_t>(array.GetElementSize())});
    }
  }

  // A quicksort without recursion: the middle item is the pivot, and each
  // partition's larger part waits on the stacks while the smaller one goes on.
  template <class Access>
  static void QuickSort(Access const &access, std::int32_t lo, std::int32_t hi) {
    std::int32_t loStack[kStackSize];
    std::int32_t hiStack[kStackSize];
    int depthStack[kStackSize];
    int top = 0;
    int const limit = DepthLimit(hi - lo + 1);
    int depth = 0;
    for (;;) {
      std::int32_t const n = hi - lo + 1;
      if (n < kShortSortLimit) {
        access.ShortSort(lo, hi);
      } else if (depth >= limit) {
        HeapSort(access, lo, hi);
      } else {
        access.Swap(lo + n / 2, lo);
        // The pivot stays at lo until the end: i and j never reach it.
        std::int32_t i = lo;
        std::int32_t j = hi + 1;
        for (;;) {
          do {
            ++i;
          } while (i <= hi && access.Compare(i, lo) <= 0);
          do {
            --j;
          } while (j > lo && access.Compare(j, lo) >= 0);
          if (j < i) break;
          access.Swap(i, j);
        }
        access.Swap(lo, j);
        // Items between j and i equal the pivot and stand where they belong.
        ++depth;
        bool const lowIsLarger = j - lo >= hi - i + 1;  // on a tie the low part waits
        std::int32_t const largeLo = lowIsLarger ? lo : i;
        std::int32_t const largeHi = lowIsLarger ? j - 1 : hi;
        std::int32_t const smallLo = lowIsLarger ? i : lo;
        std::int32_t const smallHi = lowIsLarger ? hi : j - 1;
        if (largeHi > largeLo) {
          if (top < kStackSize) {
            loStack[top] = largeLo;
            hiStack[top] = largeHi;
            depthStack[top] = depth;
            ++top;
          } else {
            HeapSort(access, largeLo, largeHi);  // cannot happen; see kStackSize
          }
        }
        if (smallHi > smallLo) {
          lo = smallLo;
          hi = smallHi;
          continue;
        }
      }
      if (top == 0) return;
      --top;
      lo = loStack[top];
      hi = hiStack[top];
      depth = depthStack[top];
    }
  }

  // Heapsort through the same Compare and Swap: the bound on a quicksort that
  // keeps meeting bad pivots.
  template <class Access>
  static void HeapSort(Access const &access, std::int32_t lo, std::int32_t hi) {
    std::int64_t const n = static_cast<std::int64_t>(hi) - lo + 1;
    auto at = [lo](std::int64_t k) { return static_cast<std::int32_t>(lo + k); };
    auto siftDown = [&](std::int64_t root, std::int64_t end) {
      for (;;) {
        std::int64_t child = 2 * root + 1;
        if (child >= end) return;
        if (child + 1 < end && access.Compare(at(child), at(child + 1)) < 0) ++child;
        if (access.Compare(at(root), at(child)) >= 0) return;
        access.Swap(at(root), at(child));
        root = child;
      }
    };
    for (std::int64_t start = n / 2 - 1; start >= 0; --start) siftDown(start, n);
    for (std::int64_t end = n - 1; end > 0; --end) {
      access.Swap(lo, at(end));
      siftDown(0, end);
    }
  }

  // A selection sort: from the top down, the largest item of those left (the
  // first of equal ones) is swapped into place, onto itself too.
  template <class Access>
  static void ShortSort(Access const &access, std::int32_t lo, std::int32_t hi) {
    for (std::int32_t top = hi; top > lo; --top) {
      std::int32_t largest = lo;
      for (std::int32_t k = lo + 1; k <= top; ++k) {
        if (access.Compare(k, largest) > 0) largest = k;
      }
      access.Swap(largest, top);
    }
  }

  // The array as a search sees it: without the item at skip (indices count
  // without it), and with each item of passOver ordered as the nearest item
  // before it that is not passed over, or before everything. Items not passed
  // over are taken to be in order, so the view is in order too.
  template <class Access>
  struct View {
    Access const &access;
    std::int32_t skip;  // -1: none
    ItemSet const *passOver;

    std::int32_t Real(std::int32_t k) const { return skip >= 0 && k >= skip ? k + 1 : k; }
    bool Passed(std::int32_t k) const {
      return passOver != nullptr && passOver->Contains(access.At(Real(k))) != 0;
    }
    // The nearest index from k on, stepping by step, that is not passed over;
    // it may leave [0, size).
    std::int32_t Nearest(std::int32_t k, std::int32_t step, std::int32_t size) const {
      while (k >= 0 && k < size && Passed(k)) k += step;
      return k;
    }
    int CompareWith(std::int32_t k, void const *item) const {
      k = Nearest(k, -1, k + 1);
      return k >= 0 ? access.CompareWith(Real(k), item) : -1;
    }
  };

  // Whether an item (the array's item at subject, or else item) stands in
  // order between the items of the view around index.
  template <class Access>
  static int Fits(View<Access> const &view, std::int32_t subject, void const *item,
                  std::int32_t index, std::int32_t size) {
    auto const compare = [&](std::int32_t k) {
      void const *const own = subject >= 0 ? view.access.At(subject) : item;
      return view.access.CompareItem(own, view.Real(k));
    };
    std::int32_t const before = view.Nearest(index - 1, -1, size);
    if (before >= 0 && compare(before) < 0) return 0;
    std::int32_t const after = view.Nearest(index, 1, size);
    if (after < size && compare(after) > 0) return 0;
    return 1;
  }

  // The bisection of FindItemPosition, after its quick answers.
  template <class Access>
  static void Find(Access const &access, void const *item, std::int32_t size, std::int32_t &first,
                   std::int32_t &last) {
    first = 0;
    last = size - 1;
    // Only the signs of the comparisons matter: their products cannot overflow.
    int c1 = Sign(access.CompareWith(first, item));
    int c2 = Sign(access.CompareWith(last, item));
    if (c1 > 0) {
      last = first;
      return;
    }
    if (c1 == 0 && c2 == 0) {
      ++last;
      return;
    }
    if (c2 < 0) {
      ++last;
      first = last;
      return;
    }
    // c1 * c2 <= 0 holds throughout, so every step narrows the range, whatever
    // the comparator answers.
    while (!(c1 == 0 && c2 == 0) && last - first > 0) {
      std::int32_t mid = first + (last - first) / 2;
      int const c = Sign(access.CompareWith(mid, item));
      if (c * c1 <= 0) {
        c2 = c;
        if (last == mid && c != 0) --mid;
        last = mid;
      }
      if (c * c2 <= 0) {
        c1 = c;
        if (first == mid && c != 0) ++mid;
        first = mid;
      }
    }
    while (first > 0 && access.CompareWith(first - 1, item) == 0) --first;
    while (last < size && access.CompareWith(last, item) == 0) ++last;
  }
};

_SCC_Array::ItemSet::~ItemSet() = default;

void _SCC_Array::Sort(int order) { Sort(0, GetSize(), order); }

void _SCC_Array::Sort(std::int32_t first, std::int32_t count, int order) {
  std::int32_t const size = GetSize();
  if (first < 0 || first >= size) return;
  std::int64_t const lastIndex = static_cast<std::int64_t>(first) + count - 1;
  if (lastIndex < 0 || lastIndex >= size) return;
  CheckArray(first);
  // Held for the whole sort, in case a comparison replaces the array's.
  SCC_SharedPointer<SCC_ComparatorBase> const held(comparator);
  if (!held) return;
  if (order == 0) order = held->reversed != 0 ? -1 : 1;
  held->reversed = order == -1 ? 1 : 0;
  if (count < 2) return;
  if (GetElementSize() > 0) {
    Sorter::WithAccess(*this, *held, GetInlineSteps() & kInlineKeyMask, [&](auto const &access) {
      Sorter::QuickSort(access, first, static_cast<std::int32_t>(lastIndex));
    });
  }
  NotifyListeners(EvReload, nullptr);
}

void _SCC_Array::ShortSort(std::int32_t lo, std::int32_t hi) {
  std::int32_t const elementSize = GetElementSize();
  if (data == nullptr || !comparator || elementSize <= 0) return;
  if (lo < 0 || hi >= GetSize()) return;
  SCC_SharedPointer<SCC_ComparatorBase> const held(comparator);
  Sorter::ShortSort(Sorter::VirtualAccess{*this, *held, static_cast<std::size_t>(elementSize)}, lo,
                    hi);
}

void _SCC_Array::FindItemPosition(void const *item, std::int32_t &first, std::int32_t &last,
                                  SCC_ComparatorBase *order, std::int32_t skip,
                                  ItemSet const *passOver) {
  if (InBounds(skip) == 0) skip = -1;
  std::int32_t const size = GetSize() - (skip >= 0 ? 1 : 0);
  if (size <= 0) {
    first = last = 0;
    return;
  }
  first = 0;
  last = size - 1;
  // The array's own comparator is held for the search; a caller's one is the
  // caller's to keep alive (holding it would delete a fresh heap object).
  bool const own = order == nullptr || order == static_cast<SCC_ComparatorBase *>(comparator);
  SCC_SharedPointer<SCC_ComparatorBase> const held(own ? comparator : nullptr);
  SCC_ComparatorBase *const compare = own ? static_cast<SCC_ComparatorBase *>(held) : order;
  if (compare == nullptr || GetElementSize() <= 0) return;
  int const key = own ? GetInlineSteps() & kInlineKeyMask : 0;
  Sorter::WithAccess(*this, *compare, key, [&](auto const &access) {
    if (skip < 0 && passOver == nullptr) {
      Sorter::Find(access, item, size, first, last);
    } else {
      using Access = std::decay_t<decltype(access)>;
      Sorter::Find(Sorter::View<Access>{access, skip, passOver}, item, size, first, last);
    }
  });
}

int _SCC_Array::FitsAt(void const *item, std::int32_t index, std::int32_t skip,
                       ItemSet const *passOver) {
  return Fits(-1, item, index, skip, passOver);
}

int _SCC_Array::Fits(std::int32_t subject, void const *item, std::int32_t index,
                     std::int32_t skip, ItemSet const *passOver) {
  std::int32_t const elementSize = GetElementSize();
  if (!comparator || elementSize <= 0) return 1;
  if (InBounds(skip) == 0) skip = -1;
  SCC_SharedPointer<SCC_ComparatorBase> const held(comparator);
  Sorter::VirtualAccess const access{*this, *held, static_cast<std::size_t>(elementSize)};
  Sorter::View<Sorter::VirtualAccess> const view{access, skip, passOver};
  return Sorter::Fits(view, subject, item, index, GetSize() - (skip >= 0 ? 1 : 0));
}

int _SCC_Array::ItemInValidPlace(std::int32_t index, ItemSet const *passOver) {
  if (!comparator) return 1;
  bool const inside = InBounds(index) != 0;
  SSM_CHECK(inside, "Tovik: array index out of range");
  if (!inside) return 0;
  // The item's own place, in the array without it, is its index.
  return Fits(index, nullptr, index, index, passOver);
}
