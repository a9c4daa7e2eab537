// Copy-on-write arrays: the engine _SCC_Array and its typed layers
// SCC_Array<T>, SCC_SortableArray<T> and SCC_Stack<T>, with the comparators
// SCC_ComparatorBase and SCC_Comparator<T>.
//
// _SCC_Array does everything that does not depend on the item type, once:
// growth, sharing and separating buffers, insertion and deletion, sorting,
// binary search and change notification. The typed layers add no data; they
// cast and forward, and supply the few item steps (allocate, copy, swap,
// construct, destroy) through the engine's virtual operations.
//
// Arrays copy by sharing their buffer; the first write to a shared buffer
// gives the writer a private copy. An array makes no buffer until it has an
// item, and no notifier until somebody asks for one. With a notifier its
// listeners hear, with positions counted from 1 (index + 1):
//   EvAdded     (1) after an insertion, once per new item
//   EvDeleted   (2) before a deletion, once per item, all with the first one's
//                   position, since each in turn stands there as the others go
//   EvChanged   (3) after SetAt stored an item
//   EvReload    (5) after SetSize, assignment, or a sort of 2 or more items
//   EvCleared   (6) before Clear lets go of the buffer
//   EvRemapped  (7) a block moved: data point at an UpdateRecord; sent after
//                   the change for an insertion, before it for a deletion
// A listener must not change the array it hears about.
//
// Layout (LP64):
//   _SCC_Array    { vptr; comparator (SCC_SharedPointer); notifier; data }
//   buffer block  { _Buffer { vptr; refCount; capacity; size }, padded to
//                   alignof(std::max_align_t); then capacity items, of which
//                   the first size are constructed }
// data points at the first item of the block, or is null with no buffer.
//
// Indices are std::int32_t. Bad indices, counts and sizes fail a check
// ("Tovik: ..."); with no failure manager the code behind the check runs on
// and does nothing to the array (each operation says what it gives). Sort
// alone returns quietly on bad bounds, without a check.
#ifndef TOVIK_SCC_ARRAY_H
#define TOVIK_SCC_ARRAY_H

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include "scc_event.h"
#include "scc_hash.h"
#include "scc_shared.h"
#include "ssm_check.h"
#include "tovik_export.h"

// The order of an array's items, shared by reference count between arrays
// that were assigned to each other. reversed makes the order descending;
// a sort sets it from its order argument.
class TOVIK_API SCC_ComparatorBase : public SCC_SharedBuffer {
 public:
  SCC_ComparatorBase() : reversed(0) {}
  SCC_ComparatorBase(SCC_ComparatorBase const &other)
      : SCC_SharedBuffer(other), reversed(other.reversed) {}
  SCC_ComparatorBase &operator=(SCC_ComparatorBase const &other) {
    SCC_SharedBuffer::operator=(other);
    reversed = other.reversed;
    return *this;
  }
  ~SCC_ComparatorBase() override;

  // Orders the items at a and b: negative, 0 or positive. This base knows no
  // item type: a failed check, and 0.
  virtual int Compare(void const *a, void const *b);

  unsigned char reversed;
};

namespace tovik_detail {
// Whether SCC_Compare(T, T) exists, found as usual or next to T.
template <class T, class = void>
struct HasCompare : std::false_type {};
template <class T>
struct HasCompare<
    T, std::void_t<decltype(SCC_Compare(std::declval<T const &>(), std::declval<T const &>()))>>
    : std::true_type {};

// The built-in item types whose default order the engine may apply inline:
// 0 for every other type.
enum InlineKey {
  kNoInlineKey = 0,
  kKeyInt = 1,
  kKeyUnsigned = 2,
  kKeyLong = 3,  // std::int64_t, SCC_Handle
  kKeyUnsignedLong = 4,
  kKeyDouble = 5,
  kKeyPointer = 6
};
template <class T>
struct InlineKeyOf : std::integral_constant<int, kNoInlineKey> {};
template <>
struct InlineKeyOf<int> : std::integral_constant<int, kKeyInt> {};
template <>
struct InlineKeyOf<unsigned int> : std::integral_constant<int, kKeyUnsigned> {};
template <>
struct InlineKeyOf<long> : std::integral_constant<int, kKeyLong> {};
template <>
struct InlineKeyOf<unsigned long> : std::integral_constant<int, kKeyUnsignedLong> {};
template <>
struct InlineKeyOf<double> : std::integral_constant<int, kKeyDouble> {};
template <>
struct InlineKeyOf<void *> : std::integral_constant<int, kKeyPointer> {};
}  // namespace tovik_detail

// Orders items of type T by a function, or by SCC_Compare without one; the
// result is negated when reversed is set. For an item type without an
// SCC_Compare, a comparator with no function fails a check and gives 0.
template <class T>
class TOVIK_API SCC_Comparator : public SCC_ComparatorBase {
 public:
  typedef int (*CompareFunction)(T const &, T const &);

  explicit SCC_Comparator(CompareFunction compare = nullptr) : function(compare) {}

  int Compare(void const *a, void const *b) override {
    T const &x = *static_cast<T const *>(a);
    T const &y = *static_cast<T const *>(b);
    int const r = function != nullptr ? function(x, y) : Default(x, y);
    if (reversed == 0) return r;
    return r == INT_MIN ? INT_MAX : -r;  // -INT_MIN does not exist
  }

  CompareFunction function;

 private:
  static int Default(T const &x, T const &y) {
    if constexpr (tovik_detail::HasCompare<T>::value) {
      return SCC_Compare(x, y);
    } else {
      SSM_CHECK(false, "Tovik: no SCC_Compare for this item type");
      return 0;
    }
  }
};

class TOVIK_API _SCC_Array {
 public:
  // The header of a buffer; the items follow it in the same allocation.
  class alignas(alignof(std::max_align_t)) _Buffer {
   public:
    explicit _Buffer(std::int32_t initialCapacity)
        : refCount(0), capacity(initialCapacity), size(0) {}
    _Buffer(_Buffer const &) = default;
    _Buffer &operator=(_Buffer const &) = default;
    // Destroys the size constructed items (in the typed buffer).
    virtual ~_Buffer();
    // Default-construct or destroy count items from index on; nothing here.
    virtual void ConstructElements(std::int32_t index, std::int32_t count);
    virtual void DestructElements(std::int32_t index, std::int32_t count);

    // Checks refCount > 0, size >= 0 and capacity >= size, each a check of
    // its own; 1 when all hold.
    int IsValid() const;

    void *GetItems() { return reinterpret_cast<char *>(this) + sizeof(_Buffer); }

    std::int32_t refCount;  // arrays sharing this buffer
    std::int32_t capacity;  // items the allocation holds
    std::int32_t size;      // items in use
  };

  // The data of notification EvRemapped: a block of count items at index was
  // inserted (operation 1) or is being deleted (operation 2).
  struct UpdateRecord {
    std::int32_t operation;
    std::int32_t index;
    std::int32_t count;
  };

  // The shapes of change CreateBuffer knows.
  enum Operation { OpInsert = 1, OpDelete = 2, OpResize = 3, OpReserve = 4 };

  // Items that a search is to pass over (FindItemPosition, FitsAt): they may
  // stand out of order, and each counts as if it had the order of the nearest
  // item before it that is not passed over (before everything if none is).
  class TOVIK_API ItemSet {
   public:
    virtual ~ItemSet();
    // Non-zero for an item to pass over.
    virtual int Contains(void const *item) const = 0;
  };

 protected:
  // Fresh arrays have no buffer and no notifier, so that a static array is
  // ready before any constructor of the library runs.
  constexpr _SCC_Array() noexcept : comparator(), notifier(nullptr), data(nullptr) {}
  // Sizes the array through this class's own operations, which make bare
  // headers: a typed layer sizes itself after construction instead.
  explicit _SCC_Array(std::int32_t size);
  // Shares other's buffer and comparator; the notifier is not copied.
  _SCC_Array(_SCC_Array const &other);
  // Destroys the notifier (its listeners live on, alone) and lets go of the
  // comparator and the buffer.
  virtual ~_SCC_Array();
  _SCC_Array &operator=(_SCC_Array const &other);

 public:
  // The buffer that data lies in, or null.
  virtual _Buffer *GetBuffer() const;

 protected:
  // Takes the new buffer (if any), then lets go of the old one, destroying it
  // and its items when no other array shares it.
  virtual void SetBuffer(_Buffer *buffer);
  // A buffer for capacity items, or null. Here a bare header.
  virtual _Buffer *AllocData(std::int32_t capacity);
  // The size of one item in bytes; 0 here.
  virtual std::int32_t GetElementSize() const;
  // Copies count items from this array's data at sourceIndex into target at
  // targetIndex; a negative count copies -count items walking downwards.
  // Nothing for a null target, no data or count 0. Here a failed check.
  virtual void CopyData(_Buffer *target, std::int32_t targetIndex, std::int32_t sourceIndex,
                        std::int32_t count);
  // Exchanges two items; nothing here.
  virtual void Swap(std::int32_t a, std::int32_t b);
  // Selection sort of lo..hi by the comparator, ascending.
  virtual void ShortSort(std::int32_t lo, std::int32_t hi);
  // Twice the present size, at least 1 and at most 10000.
  virtual std::int32_t GetGrowByAmount() const;

 public:
  // No buffer, or no items.
  virtual int IsEmpty() const;
  // 1 with no buffer or a sound one; otherwise a failed check and 0.
  virtual int IsValid() const;
  // Sorts count items from first on, ascending by the comparator's Compare;
  // order -1 sets the comparator's reversed flag, 1 (or any other value)
  // clears it, 0 keeps the comparator's direction. Not stable. Returns with
  // nothing done when first or first + count - 1 lies outside the array;
  // without a comparator it only makes the buffer private.
  virtual void Sort(std::int32_t first, std::int32_t count, int order);
  // Sort(0, GetSize(), order).
  virtual void Sort(int order);

 protected:
  // Flags for GetInlineSteps.
  enum {
    kInlineKeyMask = 0xFF,  // a tovik_detail::InlineKey: compare and swap inline
    kPlainItems = 0x100     // items are plain bytes: relocate and copy them as such
  };
  // What the engine may do without its virtual item steps: nothing here.
  // The library's own typed layers answer for themselves, since they know
  // that they override none of those steps.
  virtual int GetInlineSteps() const;

 public:
  // The number of items; GetUpperBound too is the first index behind the end.
  std::int32_t GetSize() const { return data != nullptr ? Header()->size : 0; }
  std::int32_t GetCount() const { return GetSize(); }
  std::int32_t GetUpperBound() const { return GetSize(); }
  int InBounds(std::int32_t index) const { return index >= 0 && index < GetSize(); }

  // Makes size items (new ones default-constructed) and sends EvReload.
  void SetSize(std::int32_t size);
  // Opens count items at index (0 <= index <= size). New items hold default
  // values in a new buffer and copies of their former occupants when the
  // buffer had room; callers set them. Sends EvRemapped, then EvAdded each.
  void Insert(std::int32_t index, std::int32_t count);
  // Removes count items at index, which must lie inside the array; nothing
  // with no buffer. Sends EvDeleted for each item, then EvRemapped, while the
  // items are still in place.
  void Delete(std::int32_t index, std::int32_t count);
  void RemoveAt(std::int32_t index, std::int32_t count = 1) { Delete(index, count); }
  // With a buffer: EvCleared, then the buffer goes. The notifier stays.
  void Clear();
  void RemoveAll() { Clear(); }

  // The notifier, made on first use and owned by the array.
  SCC_Notifier *GetNotifier();
  // Moves the node from any ring it is in to the end of this array's ring.
  void AddListener(SCC_EventNode<int> &node);

  // A new owner of the comparator (null for an array with no order).
  SCC_SharedPointer<SCC_ComparatorBase> GetComparator() const { return comparator; }
  // Replaces the comparator; a non-null one sorts the array ascending at once.
  void SetComparator(SCC_ComparatorBase *newComparator);

  // Whether the item at index still stands in order with its neighbours:
  // 1 without a comparator or with one item. With passOver its neighbours are
  // the nearest items that passOver does not contain. An index outside the
  // array fails a check and gives 0.
  int ItemInValidPlace(std::int32_t index, ItemSet const *passOver = nullptr);

 protected:
  void Init() { notifier = nullptr; }
  // Makes index writable: extends the array to index + 1 items (with the
  // notifications of Insert), or else makes a shared buffer private.
  void CheckArray(std::int32_t index);
  // Gives the array a private copy of its buffer, with no room to spare.
  void SeparateBuffers();
  // The one place where a buffer changes shape (see Operation).
  void CreateBuffer(int operation, std::int32_t index, std::int32_t count);
  // The run of items equal to item, by comparator (null: the array's own):
  // first is the first equal item and last one past the last; with none equal
  // both are where the item belongs. Without any comparator first is 0 and
  // last is size - 1. The search sees the array without the item at skip
  // (-1: none), and counts indices without it; passOver (null: none) names
  // items to pass over (see ItemSet).
  void FindItemPosition(void const *item, std::int32_t &first, std::int32_t &last,
                        SCC_ComparatorBase *order, std::int32_t skip = -1,
                        ItemSet const *passOver = nullptr);
  // Whether item, put at index of the array seen as FindItemPosition sees it
  // (without skip, passing over passOver), would stand in order with its
  // neighbours there: 1 without a comparator.
  int FitsAt(void const *item, std::int32_t index, std::int32_t skip, ItemSet const *passOver);

  // Typed layers' fast path: index is inside a private buffer.
  bool IsWritable(std::int32_t index) const {
    return data != nullptr &&
           static_cast<std::uint32_t>(index) < static_cast<std::uint32_t>(Header()->size) &&
           Header()->refCount == 1;
  }
  // CheckArray for a typed access; false when index cannot be made an item
  // (it is negative or INT32_MAX: a failed check).
  bool MakeWritable(std::int32_t index);
  // Sends a notification if there is a notifier.
  void NotifyListeners(int code, void *what) {
    if (notifier != nullptr) notifier->Notify(code, what);
  }
  // Memory for a header and capacity items of elementSize bytes.
  static void *AllocateBlock(std::int32_t capacity, std::size_t elementSize);

  _Buffer *Header() const {
    return reinterpret_cast<_Buffer *>(static_cast<char *>(data) - sizeof(_Buffer));
  }

  SCC_SharedPointer<SCC_ComparatorBase> comparator;
  SCC_Notifier *notifier;
  void *data;  // the first item, or null

 private:
  class Sorter;  // the sort and search steps, over virtual or inline item steps
  // FitsAt for the item at subject, or for item when subject is -1.
  int Fits(std::int32_t subject, void const *item, std::int32_t index, std::int32_t skip,
           ItemSet const *passOver);
  static void DestroyBuffer(_Buffer *buffer);
  // Grows the private buffer of plain items to capacity where it lies
  // (realloc), moving it only when it must.
  void GrowInPlace(std::int64_t capacity);
};

// The buffer of an array of T: the items follow the header.
template <class T>
class TOVIK_API _SCC_Buffer : public _SCC_Array::_Buffer {
 public:
  static_assert(alignof(T) <= alignof(_SCC_Array::_Buffer),
                "array items may not be aligned more strictly than std::max_align_t");

  explicit _SCC_Buffer(std::int32_t initialCapacity) : _Buffer(initialCapacity) {}
  ~_SCC_Buffer() override { Destroy(Items(), size); }

  // Items are value-initialized: plain types start at zero.
  void ConstructElements(std::int32_t index, std::int32_t count) override {
    T *const first = Items() + index;
    std::int32_t built = 0;
    struct Rollback {  // a throwing constructor leaves nothing half-built
      T *first;
      std::int32_t &built;
      ~Rollback() { Destroy(first, built); }
    } rollback{first, built};
    for (; built < count; ++built) new (first + built) T();
    built = 0;
  }
  void DestructElements(std::int32_t index, std::int32_t count) override {
    Destroy(Items() + index, count);
  }

  T *Items() { return static_cast<T *>(GetItems()); }

 private:
  static void Destroy(T *first, std::int32_t count) {
    if (!std::is_trivially_destructible<T>::value) {
      for (std::int32_t k = 0; k < count; ++k) first[k].~T();
    }
  }
};

template <class T>
class TOVIK_API SCC_SortableArray;
template <class T>
class TOVIK_API SCC_Stack;

// A dynamic array of T that shares its buffer with its copies until one of
// them writes.
template <class T>
class TOVIK_API SCC_Array : public _SCC_Array {
 public:
  constexpr SCC_Array() noexcept {}
  // size default-constructed items.
  explicit SCC_Array(std::int32_t size) { SetSize(size); }
  SCC_Array(SCC_Array const &other) : _SCC_Array(other) {}
  SCC_Array &operator=(SCC_Array const &other) {
    _SCC_Array::operator=(other);
    return *this;
  }
  ~SCC_Array() override { Clear(); }

  // The item at index, writable: an index at or beyond the end extends the
  // array to index + 1 items, and a shared buffer is made private first. A
  // negative index fails a check; with no manager the result is a scratch
  // item outside the array, reset to T().
  T &operator[](std::int32_t index) {
    if (IsWritable(index) || MakeWritable(index)) return static_cast<T *>(data)[index];
    return Scratch();
  }
  // Reads without copying or extending. An index outside the array fails a
  // check; with no manager the result is a default item.
  T const &GetAt(std::int32_t index) const {
    if (InBounds(index)) return static_cast<T const *>(data)[index];
    SSM_CHECK(false, "Tovik: array index out of range");
    static T const none{};
    return none;
  }
  // Stores the item as operator[] does, then sends EvChanged with index + 1.
  // A negative index stores nothing and sends nothing.
  void SetAt(std::int32_t index, T const &item) {
    if (IsWritable(index)) {
      static_cast<T *>(data)[index] = item;
    } else {
      T const copy(item);  // item may stand in the buffer about to be replaced
      if (!MakeWritable(index)) return;
      static_cast<T *>(data)[index] = copy;
    }
    NotifyListeners(EvChanged, SCC_HandleToData(index + 1));
  }
  // Insert(index, 1), then SetAt(index, item).
  void InsertAt(std::int32_t index, T const &item) {
    T const copy(item);
    std::int32_t const size = GetSize();
    Insert(index, 1);
    if (GetSize() == size + 1) SetAt(index, copy);
  }
  // InsertAt at the end; returns the new item's index.
  std::int32_t Append(T const &item) {
    std::int32_t const index = GetSize();
    InsertAt(index, item);
    return index;
  }
  // The items, for reading only; null with no buffer.
  T const *GetData() const { return static_cast<T const *>(data); }

 protected:
  _Buffer *AllocData(std::int32_t capacity) override {
    if (capacity < 1) return nullptr;
    return new (AllocateBlock(capacity, sizeof(T))) _SCC_Buffer<T>(capacity);
  }
  std::int32_t GetElementSize() const override { return static_cast<std::int32_t>(sizeof(T)); }
  void CopyData(_Buffer *target, std::int32_t targetIndex, std::int32_t sourceIndex,
                std::int32_t count) override {
    if (target == nullptr || data == nullptr || count == 0) return;
    T *const to = static_cast<T *>(target->GetItems()) + targetIndex;
    T const *const from = static_cast<T const *>(data) + sourceIndex;
    if (std::is_trivially_copyable<T>::value) {
      // memmove moves overlapping blocks in the safe direction by itself.
      std::size_t const n = static_cast<std::size_t>(count > 0 ? count : -count);
      std::ptrdiff_t const start = count > 0 ? 0 : count + 1;
      std::memmove(static_cast<void *>(to + start), static_cast<void const *>(from + start),
                   n * sizeof(T));
    } else if (count > 0) {
      for (std::int32_t k = 0; k < count; ++k) to[k] = from[k];
    } else {
      for (std::int32_t k = 0; k > count; --k) to[k] = from[k];
    }
  }
  void Swap(std::int32_t a, std::int32_t b) override {
    using std::swap;
    T *const items = static_cast<T *>(data);
    swap(items[a], items[b]);
  }
  int GetInlineSteps() const override {
    // A derived class of an application may override any item step.
    std::type_info const &self = typeid(*this);
    if (self != typeid(SCC_Array<T>) && self != typeid(SCC_SortableArray<T>) &&
        self != typeid(SCC_Stack<T>)) {
      return 0;
    }
    int steps = std::is_trivial<T>::value ? kPlainItems : 0;
    if constexpr (tovik_detail::InlineKeyOf<T>::value != tovik_detail::kNoInlineKey) {
      SCC_ComparatorBase const *const order = comparator;
      if (order != nullptr && typeid(*order) == typeid(SCC_Comparator<T>) &&
          static_cast<SCC_Comparator<T> const *>(order)->function == nullptr) {
        steps |= tovik_detail::InlineKeyOf<T>::value;
      }
    }
    return steps;
  }

 private:
  static T &Scratch() {
    static T item{};
    item = T();
    return item;
  }
};

// An array that its user keeps in the order of its comparator.
template <class T>
class TOVIK_API SCC_SortableArray : public SCC_Array<T> {
 public:
  constexpr SCC_SortableArray() noexcept {}
  SCC_SortableArray(SCC_SortableArray const &other) : SCC_Array<T>(other) {}
  SCC_SortableArray &operator=(SCC_SortableArray const &other) {
    SCC_Array<T>::operator=(other);
    return *this;
  }

  // Inserts the item behind every item that compares equal to it, or at the
  // end without a comparator, sending the notifications of InsertAt. Returns
  // the item's index.
  std::int32_t Add(T const &item) {
    T const copy(item);
    std::int32_t first = 0;
    std::int32_t last = this->GetSize();
    if (this->comparator) _SCC_Array::FindItemPosition(&copy, first, last, nullptr);
    this->InsertAt(last, copy);
    return last;
  }
  // The run of items equal to item: [first, last). With none equal, both are
  // where the item belongs. order null means the array's own comparator. The
  // search may leave out the item at skip (indices then count without it)
  // and pass over the items of passOver, as _SCC_Array::FindItemPosition says.
  void FindItemPosition(T const &item, std::int32_t &first, std::int32_t &last,
                        SCC_ComparatorBase *order = nullptr, std::int32_t skip = -1,
                        _SCC_Array::ItemSet const *passOver = nullptr) {
    _SCC_Array::FindItemPosition(&item, first, last, order, skip, passOver);
  }
  // Whether item would stand in order at index, seen as FindItemPosition
  // with skip and passOver sees the array.
  int FitsAt(T const &item, std::int32_t index, std::int32_t skip = -1,
             _SCC_Array::ItemSet const *passOver = nullptr) {
    return _SCC_Array::FitsAt(&item, index, skip, passOver);
  }
};

// A stack on an array: Push and Pop move a count and never shrink the array.
template <class T>
class TOVIK_API SCC_Stack : public SCC_Array<T> {
 public:
  SCC_Stack() : count(0) {}
  SCC_Stack(SCC_Stack const &other) : SCC_Array<T>(other), count(other.count) {}
  SCC_Stack &operator=(SCC_Stack const &other) {
    SCC_Array<T>::operator=(other);
    count = other.count;
    return *this;
  }

  int IsEmpty() const override { return count == 0; }
  // The number of items on the stack.
  std::int32_t GetStackSize() const { return count; }

  void Push(T const &item) {
    T const copy(item);
    std::int32_t const at = count++;
    (*this)[at] = copy;
  }
  // Takes the top item. On an empty stack a failed check; with no manager
  // the result is T() and the stack stays empty.
  T Pop() {
    SSM_CHECK(count > 0, "Tovik: Pop on an empty stack");
    if (count < 1) return T();
    --count;
    return (*this)[count];
  }
  // The item depth places below the top (0: the top). Beyond the stack a
  // failed check; with no manager the result is T().
  T Peek(std::int32_t depth = 0) {
    bool const inside = depth >= 0 && depth < count;
    SSM_CHECK(inside, "Tovik: Peek beyond the stack");
    if (!inside) return T();
    return (*this)[count - 1 - depth];
  }

 protected:
  std::int32_t count;
};

#endif  // TOVIK_SCC_ARRAY_H
