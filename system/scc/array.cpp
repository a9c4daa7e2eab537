// The array engine: buffers, growth, copy-on-write and notification.
// Sorting and searching live in array_sort.cpp.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>

#include "scc_array.h"

// The typed layers add no data: an array is the engine, whatever its items.
static_assert(sizeof(_SCC_Array) == 4 * sizeof(void *), "vptr, comparator, notifier, data");
static_assert(sizeof(SCC_Array<char>) == sizeof(_SCC_Array), "typed arrays add no data");
static_assert(sizeof(SCC_SortableArray<double>) == sizeof(_SCC_Array),
              "sortable arrays add no data");
static_assert(sizeof(SCC_SharedPointer<SCC_ComparatorBase>) == sizeof(void *), "one pointer");
static_assert(sizeof(_SCC_Array::_Buffer) % alignof(std::max_align_t) == 0,
              "items behind the header are aligned for any fundamental type");
static_assert(sizeof(_SCC_Buffer<char>) == sizeof(_SCC_Array::_Buffer),
              "typed buffers add no data");
static_assert(sizeof(_SCC_Array::UpdateRecord) == 3 * sizeof(std::int32_t), "three 32-bit fields");

namespace {

constexpr std::int32_t kMaxItems = INT32_MAX;
constexpr std::int32_t kLargestGrowStep = 10000;

}  // namespace

// ---------------------------------------------------------------------------
// Comparators

SCC_ComparatorBase::~SCC_ComparatorBase() = default;

int SCC_ComparatorBase::Compare(void const *, void const *) {
  SSM_CHECK(false, "SCC_ComparatorBase::Compare called.");
  return 0;
}

// ---------------------------------------------------------------------------
// Buffers

_SCC_Array::_Buffer::~_Buffer() = default;

void _SCC_Array::_Buffer::ConstructElements(std::int32_t, std::int32_t) {}

void _SCC_Array::_Buffer::DestructElements(std::int32_t, std::int32_t) {}

int _SCC_Array::_Buffer::IsValid() const {
  bool const referenced = refCount > 0;
  bool const sized = size >= 0;
  bool const fits = capacity >= size;
  SSM_CHECK(referenced, "");
  SSM_CHECK(sized, "");
  SSM_CHECK(fits, "");
  return referenced && sized && fits ? 1 : 0;
}

// Blocks come from malloc, so that a private buffer of plain items can grow
// by realloc, which moves large blocks without copying them.
void *_SCC_Array::AllocateBlock(std::int32_t capacity, std::size_t elementSize) {
  void *const block =
      std::malloc(sizeof(_Buffer) + static_cast<std::size_t>(capacity) * elementSize);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void _SCC_Array::DestroyBuffer(_Buffer *buffer) {
  buffer->~_Buffer();
  std::free(buffer);
}

void _SCC_Array::GrowInPlace(std::int64_t capacity) {
  std::size_t const bytes = sizeof(_Buffer) + static_cast<std::size_t>(capacity) *
                                                  static_cast<std::size_t>(GetElementSize());
  // The header is a vptr and three integers: it moves with the bytes.
  void *const block = std::realloc(static_cast<void *>(GetBuffer()), bytes);
  if (block == nullptr) throw std::bad_alloc();
  auto *const buffer = static_cast<_Buffer *>(block);
  buffer->capacity = static_cast<std::int32_t>(capacity);
  data = buffer->GetItems();
}

// ---------------------------------------------------------------------------
// Construction and assignment

_SCC_Array::_SCC_Array(std::int32_t size) : _SCC_Array() { SetSize(size); }

_SCC_Array::_SCC_Array(_SCC_Array const &other) : _SCC_Array() { operator=(other); }

_SCC_Array::~_SCC_Array() {
  delete notifier;
  notifier = nullptr;
  if (data != nullptr) _SCC_Array::SetBuffer(nullptr);
}

_SCC_Array &_SCC_Array::operator=(_SCC_Array const &other) {
  if (&other == this) return *this;
  SetBuffer(other.GetBuffer());
  comparator = other.comparator;
  NotifyListeners(EvReload, nullptr);
  return *this;
}

// ---------------------------------------------------------------------------
// The virtual steps of an array without item type

_SCC_Array::_Buffer *_SCC_Array::GetBuffer() const { return data != nullptr ? Header() : nullptr; }

void _SCC_Array::SetBuffer(_Buffer *buffer) {
  _Buffer *const old = GetBuffer();
  if (buffer != nullptr) ++buffer->refCount;
  data = buffer != nullptr ? buffer->GetItems() : nullptr;
  if (old != nullptr && --old->refCount == 0) DestroyBuffer(old);
}

_SCC_Array::_Buffer *_SCC_Array::AllocData(std::int32_t capacity) {
  return new (AllocateBlock(0, 0)) _Buffer(capacity);
}

std::int32_t _SCC_Array::GetElementSize() const { return 0; }

void _SCC_Array::CopyData(_Buffer *, std::int32_t, std::int32_t, std::int32_t) {
  SSM_CHECK(false, "Tovik: CopyData called on an array without item type");
}

void _SCC_Array::Swap(std::int32_t, std::int32_t) {}

std::int32_t _SCC_Array::GetGrowByAmount() const {
  std::int32_t const size = GetSize();
  if (size >= kLargestGrowStep / 2) return kLargestGrowStep;
  return size < 1 ? 1 : 2 * size;
}

int _SCC_Array::GetInlineSteps() const { return 0; }

int _SCC_Array::IsEmpty() const { return GetSize() == 0; }

int _SCC_Array::IsValid() const {
  if (data == nullptr || Header()->IsValid()) return 1;
  SSM_CHECK(false, "");
  return 0;
}

// ---------------------------------------------------------------------------
// Shape changes

void _SCC_Array::CreateBuffer(int operation, std::int32_t index, std::int32_t count) {
  _Buffer *const old = GetBuffer();
  std::int64_t const size = old != nullptr ? old->size : 0;
  std::int64_t capacity = old != nullptr ? old->capacity : 0;
  bool needNew = old == nullptr || old->refCount >= 2;

  // The shape of the change: the new size, and one block move from the old
  // items to their new places (a negative count moves downwards).
  std::int64_t newSize = 0;
  std::int64_t from = 0;
  std::int64_t to = 0;
  std::int64_t move = 0;
  bool valid = count >= 0;
  switch (operation) {
    case OpInsert:
      valid = valid && index >= 0 && index <= size && size + count <= kMaxItems;
      newSize = size + count;
      from = size - 1;
      to = newSize - 1;
      move = index - size;
      break;
    case OpDelete:
      valid = valid && index >= 0 && index + static_cast<std::int64_t>(count) <= size;
      newSize = size - count;
      from = static_cast<std::int64_t>(index) + count;
      to = index;
      move = size - from;
      break;
    case OpResize:
      newSize = count;
      move = std::min<std::int64_t>(size, count);
      break;
    case OpReserve:
      newSize = size;
      move = std::min<std::int64_t>(size, count);
      capacity = count;
      needNew = true;
      break;
    default:
      valid = false;
      break;
  }
  SSM_CHECK(valid, "Tovik: array operation outside the array");
  if (!valid) return;

  if (newSize > capacity) {
    std::int64_t const step = GetGrowByAmount();
    capacity =
        newSize <= capacity + step ? std::min<std::int64_t>(capacity + step, kMaxItems) : newSize;
    needNew = true;
  }

  // Work in place: room enough in a private buffer.
  auto const inPlace = [&](_Buffer *buffer) {
    std::int64_t const oldSize = buffer->size;
    if (oldSize < newSize) {
      buffer->ConstructElements(static_cast<std::int32_t>(oldSize),
                                static_cast<std::int32_t>(newSize - oldSize));
    }
    // A move onto itself (a resize) would only assign each item to itself.
    if (move != 0 && from != to) {
      CopyData(buffer, static_cast<std::int32_t>(to), static_cast<std::int32_t>(from),
               static_cast<std::int32_t>(move));
    }
    if (oldSize > newSize) {
      buffer->DestructElements(static_cast<std::int32_t>(newSize),
                               static_cast<std::int32_t>(oldSize - newSize));
    }
    buffer->size = static_cast<std::int32_t>(newSize);
  };
  if (!needNew) {
    inPlace(old);
    return;
  }

  bool const plain = (GetInlineSteps() & kPlainItems) != 0;
  if (plain && old != nullptr && old->refCount == 1 && operation != OpReserve) {
    // A private buffer of plain items that must grow: it grows where it lies
    // and the change is made in place. What the new buffer would hold, it
    // holds: the gap of an insertion gets new items, not the former occupants.
    GrowInPlace(capacity);
    inPlace(GetBuffer());
    if (operation == OpInsert && count > 0) GetBuffer()->ConstructElements(index, count);
    return;
  }

  _Buffer *const fresh = AllocData(static_cast<std::int32_t>(capacity));
  if (fresh == nullptr) {
    if (old != nullptr) SetBuffer(nullptr);
    return;
  }
  struct ReleaseOnThrow {  // a throwing item copy must not leak the new buffer
    _Buffer *buffer;
    ~ReleaseOnThrow() {
      if (buffer != nullptr) DestroyBuffer(buffer);
    }
  } guard{fresh};
  std::int64_t const copiedHead =
      index != 0 && old != nullptr ? std::min<std::int64_t>(index, size) : 0;
  std::int64_t const movedLo = move > 0 ? to : to + move + 1;
  std::int64_t const movedHi = move > 0 ? to + move : to + 1;
  if (plain && move != 0) {
    // Plain items that a copy fills need no construction first: only the
    // gap between the head and the moved block, and what lies behind both.
    if (movedLo > copiedHead) {
      fresh->ConstructElements(static_cast<std::int32_t>(copiedHead),
                               static_cast<std::int32_t>(movedLo - copiedHead));
    }
    if (newSize > movedHi) {
      fresh->ConstructElements(static_cast<std::int32_t>(movedHi),
                               static_cast<std::int32_t>(newSize - movedHi));
    }
  } else if (plain) {
    fresh->ConstructElements(static_cast<std::int32_t>(copiedHead),
                             static_cast<std::int32_t>(newSize - copiedHead));
  } else {
    fresh->ConstructElements(0, static_cast<std::int32_t>(newSize));
  }
  fresh->size = static_cast<std::int32_t>(newSize);
  if (copiedHead > 0) CopyData(fresh, 0, 0, static_cast<std::int32_t>(copiedHead));
  if (move != 0) {
    CopyData(fresh, static_cast<std::int32_t>(to), static_cast<std::int32_t>(from),
             static_cast<std::int32_t>(move));
  }
  guard.buffer = nullptr;
  SetBuffer(fresh);
}

void _SCC_Array::SeparateBuffers() { CreateBuffer(OpReserve, 0, GetSize()); }

void _SCC_Array::CheckArray(std::int32_t index) {
  std::int32_t const size = GetSize();
  if (index >= size) {
    Insert(size, static_cast<std::int32_t>(static_cast<std::int64_t>(index) + 1 - size));
  } else if (Header()->refCount > 1) {
    SeparateBuffers();
  }
}

bool _SCC_Array::MakeWritable(std::int32_t index) {
  bool const reachable = index >= 0 && index < kMaxItems;
  SSM_CHECK(reachable, "Tovik: array index out of range");
  if (!reachable) return false;
  CheckArray(index);
  // A listener that changed the array while it grew has broken its contract;
  // the index is checked again rather than trusted.
  return IsWritable(index);
}

// ---------------------------------------------------------------------------
// Public changes and their notifications

void _SCC_Array::SetSize(std::int32_t size) {
  SSM_CHECK(size >= 0, "Tovik: negative array size");
  if (size < 0) return;
  CreateBuffer(OpResize, 0, size);
  NotifyListeners(EvReload, nullptr);
}

void _SCC_Array::Insert(std::int32_t index, std::int32_t count) {
  std::int32_t const size = GetSize();
  bool const valid = index >= 0 && index <= size && count >= 0 && count <= kMaxItems - size;
  SSM_CHECK(valid, "Tovik: Insert outside the array");
  if (!valid) return;
  CreateBuffer(OpInsert, index, count);
  if (notifier == nullptr) return;
  UpdateRecord record = {OpInsert, index, count};
  NotifyListeners(EvRemapped, &record);
  for (std::int32_t k = 1; k <= count; ++k) NotifyListeners(EvAdded, SCC_HandleToData(index + k));
}

void _SCC_Array::Delete(std::int32_t index, std::int32_t count) {
  if (data == nullptr) return;
  bool const valid = index >= 0 && count >= 0 && index <= GetSize() - count;
  SSM_CHECK(valid, "Tovik: Delete outside the array");
  if (!valid) return;
  if (notifier != nullptr) {
    // Each item in turn stands at index as the ones before it go.
    for (std::int32_t k = 0; k < count; ++k) {
      NotifyListeners(EvDeleted, SCC_HandleToData(index + 1));
    }
    UpdateRecord record = {OpDelete, index, count};
    NotifyListeners(EvRemapped, &record);
  }
  CreateBuffer(OpDelete, index, count);
}

void _SCC_Array::Clear() {
  if (data == nullptr) return;
  NotifyListeners(EvCleared, nullptr);
  SetBuffer(nullptr);
}

SCC_Notifier *_SCC_Array::GetNotifier() {
  if (notifier == nullptr) notifier = new SCC_Notifier(0);
  return notifier;
}

void _SCC_Array::AddListener(SCC_EventNode<int> &node) { node.JoinAtEnd(GetNotifier()); }

void _SCC_Array::SetComparator(SCC_ComparatorBase *newComparator) {
  comparator = newComparator;
  if (newComparator != nullptr) Sort(1);
}

// ---------------------------------------------------------------------------
// The instances the library is built with.

template class SCC_Comparator<int>;
template class SCC_Comparator<SCC_Handle>;
template class _SCC_Buffer<int>;
template class _SCC_Buffer<SCC_Handle>;
template class _SCC_Buffer<void *>;
template class SCC_Array<int>;
template class SCC_SortableArray<int>;
template class SCC_Stack<int>;
template class SCC_Array<SCC_Handle>;
template class SCC_SortableArray<SCC_Handle>;
template class SCC_Array<void *>;
