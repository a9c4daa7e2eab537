#include "scc_array_iterator.h"

SCC_ArrayIteratorBase &SCC_ArrayIteratorBase::operator=(SCC_ArrayIteratorBase const &other) {
  if (&other == this) return *this;
  // Joining other's ring links other to this node; other's place and policy
  // are only read.
  SCC_Iterator::operator=(const_cast<SCC_ArrayIteratorBase &>(other));
  focus = other.focus;
  return *this;
}

// Out of line so that the class's virtual table has one home.
SCC_ArrayIteratorBase::~SCC_ArrayIteratorBase() = default;

SCC_Handle SCC_ArrayIteratorBase::GetHandle() const {
  return GetArray() != nullptr ? static_cast<SCC_Handle>(focus) + 1 : 0;
}

void SCC_ArrayIteratorBase::Clear() { Invalidate(); }

int SCC_ArrayIteratorBase::GetNext() {
  ++focus;
  return IsEmpty() == 0 ? 1 : 0;
}

void SCC_ArrayIteratorBase::Invalidate() { focus = -1; }

int SCC_ArrayIteratorBase::IsValid() const {
  _SCC_Array const *const array = GetArray();
  return array != nullptr && focus >= 0 && focus < array->GetSize();
}

int SCC_ArrayIteratorBase::IsEmpty() const { return IsValid() == 0; }

_SCC_Array *SCC_ArrayIteratorBase::GetArray() const { return nullptr; }

void SCC_ArrayIteratorBase::Restart(_SCC_Array &array, std::int32_t newFocus) {
  focus = newFocus < 0 ? -1 : newFocus;
  array.AddListener(*this);
}

void SCC_ArrayIteratorBase::RestartFromEnd(_SCC_Array &array) {
  focus = array.GetSize() - 1;  // -1 without items
  array.AddListener(*this);
}

void SCC_ArrayIteratorBase::SetHandle(SCC_Handle handle, void *array) {
  _SCC_Array *const target = array != nullptr ? static_cast<_SCC_Array *>(array) : GetArray();
  if (target == nullptr) return;
  // Handles beyond the index range cannot name an element: on nothing.
  std::int32_t const index =
      handle >= 1 && handle <= INT32_MAX ? static_cast<std::int32_t>(handle - 1) : -1;
  Restart(*target, index);
}

void SCC_ArrayIteratorBase::GetFirst(void *array) {
  if (array != nullptr) Restart(*static_cast<_SCC_Array *>(array), 0);
}

SCC_Notifier *SCC_ArrayIteratorBase::GetChangeEvent(_SCC_Array *array) {
  return array != nullptr ? array->GetNotifier() : nullptr;
}

void SCC_ArrayIteratorBase::OnUpdatePointers(void *record) {
  if (record == nullptr) return;
  _SCC_Array::UpdateRecord const &block = *static_cast<_SCC_Array::UpdateRecord const *>(record);
  // 64-bit sums: index + count of a corrupt record cannot overflow.
  std::int64_t const at = focus;
  if (block.operation == _SCC_Array::OpInsert) {
    if (at >= block.index) focus = static_cast<std::int32_t>(at + block.count);
  } else if (block.operation == _SCC_Array::OpDelete) {
    if (at >= static_cast<std::int64_t>(block.index) + block.count) {
      focus = static_cast<std::int32_t>(at - block.count);
    } else if (at >= block.index) {
      focus = -1;
    }
  }
}

int SCC_ArrayIteratorBase::DefaultSort(int const &a, int const &b) {
  // Wrapping difference, as handles of one array never lie 2^31 apart.
  return static_cast<int>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

int SCC_ArrayIteratorBase::OnNotification(int code, int *data) {
  if (code == EvRemapped) {
    OnUpdatePointers(data);
    return 0;
  }
  return SCC_Iterator::OnNotification(code, data);
}

template class SCC_ArrayIterator<int>;
