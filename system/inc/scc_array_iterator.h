// Array iterators: cursors over a _SCC_Array that stay right while the
// array changes.
//
// An array iterator holds an index, focus (-1: on nothing), and listens to
// the array's notifier. It hears of blocks inserted and deleted before and
// under it (EvRemapped with an _SCC_Array::UpdateRecord) and moves its index
// with its element; an element deleted under it leaves it on nothing, or,
// with the policy OnFocusDeleteGoForward, on the element that followed. Its
// handle is focus + 1, so that 0 means nothing, as array notifications count.
//
// SCC_ArrayIteratorBase knows no array (GetArray gives null, so its handle
// is 0 and it is never valid); SCC_ArrayIterator<T> adds the array it walks.
// The iterator does not own the array. Nothing is reported: a cursor that
// fell off the array is only seen by IsValid or IsEmpty. A focus at or beyond
// the size is "past the end": IsValid gives 0 but HasValidFocus gives 1.
// GetPrev does not step, so OnFocusDeleteGoBack has the effect of the
// default policy.
#ifndef TOVIK_SCC_ARRAY_ITERATOR_H
#define TOVIK_SCC_ARRAY_ITERATOR_H

#include <cstdint>

#include "scc_array.h"
#include "scc_iterator.h"
#include "tovik_export.h"

class TOVIK_API SCC_ArrayIteratorBase : public SCC_Iterator {
 public:
  // On nothing, listening to nothing, policy "invalidate".
  SCC_ArrayIteratorBase() : focus(-1) {}
  // Copies focus and policy; the copy listens to nothing, so it keeps its
  // number while the array changes.
  SCC_ArrayIteratorBase(SCC_ArrayIteratorBase const &other) : SCC_Iterator(other), focus(other.focus) {}
  // Leaves its ring and joins other's in front of other, under the same
  // notifier; takes other's policy and focus. Nothing on self-assignment.
  SCC_ArrayIteratorBase &operator=(SCC_ArrayIteratorBase const &other);
  ~SCC_ArrayIteratorBase() override;

  // With an array: focus + 1; without one: 0.
  SCC_Handle GetHandle() const override;
  // Invalidate.
  void Clear() override;
  // One step forward, without a bounds check; 1 if then on an element.
  int GetNext() override;
  // focus becomes -1.
  void Invalidate() override;
  // An array, and 0 <= focus < its size.
  int IsValid() const override;
  int IsEmpty() const override;

  // The array walked; none here.
  virtual _SCC_Array *GetArray() const;
  // Listens to array (leaving any former ring) and stands at newFocus; a
  // negative focus is stored as -1.
  virtual void Restart(_SCC_Array &array, std::int32_t newFocus);
  // Restart on the last element: focus size - 1, or -1 for an empty array.
  virtual void RestartFromEnd(_SCC_Array &array);

  // Restart on array (on GetArray() if array is null) at handle - 1, so that
  // handle 0 listens without standing anywhere. Nothing without an array.
  void SetHandle(SCC_Handle handle, void *array);
  // Restart on the first element of array; nothing for a null array.
  void GetFirst(void *array);
  // The notifier of array, made if needed; null for a null array.
  static SCC_Notifier *GetChangeEvent(_SCC_Array *array);
  // Moves focus by the block record of an EvRemapped notification: after an
  // insertion at or before it, up by the count; after a deletion before it,
  // down by the count; a deletion under it leaves it at -1. A null record, or
  // another operation, changes nothing.
  void OnUpdatePointers(void *record);

  // Move focus by one, without a bounds check.
  SCC_ArrayIteratorBase &operator++() {
    ++focus;
    return *this;
  }
  SCC_ArrayIteratorBase &operator--() {
    --focus;
    return *this;
  }
  // A copy at the old place (listening to nothing), then the step.
  SCC_ArrayIteratorBase operator++(int) {
    SCC_ArrayIteratorBase old(*this);
    ++focus;
    return old;
  }
  SCC_ArrayIteratorBase operator--(int) {
    SCC_ArrayIteratorBase old(*this);
    --focus;
    return old;
  }

  // a - b, as handles are ordered.
  static int DefaultSort(int const &a, int const &b);

  // focus >= 0; the array is not looked at.
  int HasValidFocus() const { return focus >= 0; }
  std::int32_t GetFocus() const { return focus; }
  void SetFocus(std::int32_t newFocus) { focus = newFocus; }

 protected:
  // EvRemapped: OnUpdatePointers. Everything else as SCC_Iterator.
  int OnNotification(int code, int *data) override;

  std::int32_t focus;  // the index of the cursor; -1: on nothing
};

// An array iterator that knows its array. T is the item type of the arrays
// it is meant for; the cursor itself works on any _SCC_Array.
template <class T>
class TOVIK_API SCC_ArrayIterator : public SCC_ArrayIteratorBase {
 public:
  SCC_ArrayIterator() : array(nullptr) {}
  // Listens to a and stands at newFocus.
  explicit SCC_ArrayIterator(_SCC_Array &a, std::int32_t newFocus = 0) : array(nullptr) {
    Restart(a, newFocus);
  }
  // Same place and array; listens to nothing.
  SCC_ArrayIterator(SCC_ArrayIterator const &other)
      : SCC_ArrayIteratorBase(other), array(other.array) {}
  SCC_ArrayIterator &operator=(SCC_ArrayIterator const &other) {
    SCC_ArrayIteratorBase::operator=(other);
    array = other.array;
    return *this;
  }

  void Invalidate() override {
    SCC_ArrayIteratorBase::Invalidate();
    array = nullptr;
  }
  _SCC_Array *GetArray() const override { return array; }
  void Restart(_SCC_Array &a, std::int32_t newFocus) override {
    SCC_ArrayIteratorBase::Restart(a, newFocus);
    array = &a;
  }
  void RestartFromEnd(_SCC_Array &a) override {
    SCC_ArrayIteratorBase::RestartFromEnd(a);
    array = &a;
  }

  SCC_ArrayIterator &operator++() {
    ++focus;
    return *this;
  }
  SCC_ArrayIterator &operator--() {
    --focus;
    return *this;
  }
  // A copy at the old place (listening to nothing), then the step.
  SCC_ArrayIterator operator++(int) {
    SCC_ArrayIterator old(*this);
    ++focus;
    return old;
  }
  SCC_ArrayIterator operator--(int) {
    SCC_ArrayIterator old(*this);
    --focus;
    return old;
  }

 protected:
  _SCC_Array *array;  // the array walked, or null
};

extern template class SCC_ArrayIterator<int>;

#endif  // TOVIK_SCC_ARRAY_ITERATOR_H
