// The array engine's ordering: sort, binary search, order test.
#include <cstdint>

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

// The address of an item. Callers read data afresh for each comparison: the
// comparator and Swap are virtual and may be anything.
inline void const *At(void *items, std::int64_t index, std::size_t elementSize) {
  return static_cast<char const *>(items) + static_cast<std::size_t>(index) * elementSize;
}

}  // namespace

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
  std::int32_t const elementSize = GetElementSize();
  if (elementSize > 0) {
    SortRange(first, static_cast<std::int32_t>(lastIndex), *held,
              static_cast<std::size_t>(elementSize));
  }
  NotifyListeners(EvReload, nullptr);
}

// A quicksort without recursion: the middle item is the pivot, and each
// partition's larger part waits on the stacks while the smaller one goes on.
void _SCC_Array::SortRange(std::int32_t lo, std::int32_t hi, SCC_ComparatorBase &order,
                           std::size_t elementSize) {
  std::int32_t loStack[kStackSize];
  std::int32_t hiStack[kStackSize];
  int depthStack[kStackSize];
  int top = 0;
  int const limit = DepthLimit(hi - lo + 1);
  int depth = 0;
  for (;;) {
    std::int32_t const n = hi - lo + 1;
    if (n < kShortSortLimit) {
      ShortSort(lo, hi);
    } else if (depth >= limit) {
      HeapSort(lo, hi, order, elementSize);
    } else {
      Swap(lo + n / 2, lo);
      // The pivot stays at lo until the end: i and j never reach it.
      std::int32_t i = lo;
      std::int32_t j = hi + 1;
      for (;;) {
        do {
          ++i;
        } while (i <= hi &&
                 order.Compare(At(data, i, elementSize), At(data, lo, elementSize)) <= 0);
        do {
          --j;
        } while (j > lo && order.Compare(At(data, j, elementSize), At(data, lo, elementSize)) >= 0);
        if (j < i) break;
        Swap(i, j);
      }
      Swap(lo, j);
      // Items between j and i equal the pivot and stand where they belong.
      ++depth;
      std::int32_t const lowCount = j - lo;
      std::int32_t const highCount = hi - i + 1;
      bool const lowIsLarger = lowCount >= highCount;  // on a tie the low part waits
      std::int32_t const largeLo = lowIsLarger ? lo : i;
      std::int32_t const largeHi = lowIsLarger ? j - 1 : hi;
      std::int32_t const smallLo = lowIsLarger ? i : lo;
      std::int32_t const smallHi = lowIsLarger ? hi : j - 1;
      if (largeHi - largeLo + 1 > 1) {
        if (top < kStackSize) {
          loStack[top] = largeLo;
          hiStack[top] = largeHi;
          depthStack[top] = depth;
          ++top;
        } else {
          HeapSort(largeLo, largeHi, order, elementSize);  // cannot happen; see kStackSize
        }
      }
      if (smallHi - smallLo + 1 > 1) {
        lo = smallLo;
        hi = smallHi;
        continue;
      }
    }
    if (top == 0) break;
    --top;
    lo = loStack[top];
    hi = hiStack[top];
    depth = depthStack[top];
  }
}

// Heapsort of lo..hi through the same Compare and Swap: the bound on a
// quicksort that keeps meeting bad pivots.
void _SCC_Array::HeapSort(std::int32_t lo, std::int32_t hi, SCC_ComparatorBase &order,
                          std::size_t elementSize) {
  std::int64_t const n = static_cast<std::int64_t>(hi) - lo + 1;
  auto siftDown = [&](std::int64_t root, std::int64_t end) {
    for (;;) {
      std::int64_t child = 2 * root + 1;
      if (child >= end) return;
      if (child + 1 < end && order.Compare(At(data, lo + child, elementSize),
                                           At(data, lo + child + 1, elementSize)) < 0) {
        ++child;
      }
      if (order.Compare(At(data, lo + root, elementSize), At(data, lo + child, elementSize)) >= 0)
        return;
      Swap(static_cast<std::int32_t>(lo + root), static_cast<std::int32_t>(lo + child));
      root = child;
    }
  };
  for (std::int64_t start = n / 2 - 1; start >= 0; --start) siftDown(start, n);
  for (std::int64_t end = n - 1; end > 0; --end) {
    Swap(lo, static_cast<std::int32_t>(lo + end));
    siftDown(0, end);
  }
}

void _SCC_Array::ShortSort(std::int32_t lo, std::int32_t hi) {
  std::int32_t const elementSize32 = GetElementSize();
  if (data == nullptr || !comparator || elementSize32 <= 0) return;
  if (lo < 0 || hi >= GetSize()) return;
  std::size_t const elementSize = static_cast<std::size_t>(elementSize32);
  SCC_SharedPointer<SCC_ComparatorBase> const order(comparator);
  for (std::int32_t topIndex = hi; topIndex > lo; --topIndex) {
    std::int32_t largest = lo;
    for (std::int32_t k = lo + 1; k <= topIndex; ++k) {
      if (order->Compare(At(data, k, elementSize), At(data, largest, elementSize)) > 0) largest = k;
    }
    Swap(largest, topIndex);
  }
}

void _SCC_Array::FindItemPosition(void const *item, std::int32_t &first, std::int32_t &last,
                                  SCC_ComparatorBase *order) {
  std::int32_t const size = GetSize();
  if (size == 0) {
    first = last = 0;
    return;
  }
  first = 0;
  last = size - 1;
  // The array's own comparator is held for the search; a caller's one is the
  // caller's to keep alive (holding it would delete a fresh heap object).
  SCC_SharedPointer<SCC_ComparatorBase> const own(order == nullptr ? comparator : nullptr);
  SCC_ComparatorBase *const held =
      order != nullptr ? order : static_cast<SCC_ComparatorBase *>(own);
  std::int32_t const elementSize32 = GetElementSize();
  if (held == nullptr || elementSize32 <= 0) return;
  std::size_t const elementSize = static_cast<std::size_t>(elementSize32);
  SCC_ComparatorBase &compare = *held;
  // Only the signs of the comparisons matter: their products cannot overflow.
  int c1 = Sign(compare.Compare(At(data, first, elementSize), item));
  int c2 = Sign(compare.Compare(At(data, last, elementSize), item));
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
    int const c = Sign(compare.Compare(At(data, mid, elementSize), item));
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
  while (first > 0 && compare.Compare(At(data, first - 1, elementSize), item) == 0) --first;
  while (last < size && compare.Compare(At(data, last, elementSize), item) == 0) ++last;
}

int _SCC_Array::ItemInValidPlace(std::int32_t index) {
  if (!comparator) return 1;
  std::int32_t const size = GetSize();
  bool const inside = index >= 0 && index < size;
  SSM_CHECK(inside, "Tovik: array index out of range");
  if (!inside) return 0;
  std::int32_t const elementSize32 = GetElementSize();
  if (size == 1 || elementSize32 <= 0) return 1;
  std::size_t const elementSize = static_cast<std::size_t>(elementSize32);
  SCC_SharedPointer<SCC_ComparatorBase> const order(comparator);
  if (index > 0 &&
      order->Compare(At(data, index, elementSize), At(data, index - 1, elementSize)) < 0)
    return 0;
  if (index < size - 1 &&
      order->Compare(At(data, index, elementSize), At(data, index + 1, elementSize)) > 0)
    return 0;
  return 1;
}
