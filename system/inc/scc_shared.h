// Shared objects: SCC_SharedBuffer, the reference-counted base class of the
// library's shared objects (comparators, convertors, filters, properties),
// and SCC_SharedPointer<T>, the pointer that owns them.
//
// A shared object may live on the heap, on the stack, in a member or in static
// storage, and one SCC_SharedPointer<T> parameter accepts all of them. The
// class's own operator new remembers each address it hands out until the
// object's first Ref: an object found there came from the heap and starts with
// a true count of 1, to be deleted at its last release; any other object gets
// a count so high (kNotOnHeap) that no number of releases deletes it. Every
// class built on SCC_SharedBuffer has it as its first base, so the object's
// address is the one operator new gave.
//
// Counts are plain integers: one thread only. A pointer that outlives a local
// object it points at is the caller's error.
#ifndef TOVIK_SCC_SHARED_H
#define TOVIK_SCC_SHARED_H

#include <cstddef>
#include <cstdint>

#include "tovik_export.h"

template <class T>
class TOVIK_API SCC_Array;

class TOVIK_API SCC_SharedBuffer {
 public:
  // The count of an object that did not come from operator new.
  static constexpr std::int32_t kNotOnHeap = 0x3FFFFFFF;

  SCC_SharedBuffer() : refCount(0) {}
  // A copy is a new object with no owners (and, on the heap, its own entry).
  SCC_SharedBuffer(SCC_SharedBuffer const &) : refCount(0) {}
  // Each object keeps the count of its own owners.
  SCC_SharedBuffer &operator=(SCC_SharedBuffer const &) { return *this; }
  virtual ~SCC_SharedBuffer();

  // Allocates from the global heap and records the address as pending.
  static void *operator new(std::size_t size);
  // Records place as pending; the memory stays the caller's.
  static void *operator new(std::size_t size, void *place);
  // Forgets a pending address, then frees the memory.
  static void operator delete(void *p);
  // Forgets a pending address; frees nothing.
  static void operator delete(void *p, void *place);

  // Adds an owner and returns the new count. The first Ref decides whether
  // the object came from operator new: self is the object's own address.
  std::int32_t Ref(void *self) {
    if (refCount != 0) return ++refCount;
    refCount = CheckBuffer(self) ? 1 : kNotOnHeap;
    return refCount;
  }
  // Removes an owner and returns the new count; the caller deletes the object
  // when it reaches 0.
  std::int32_t Deref() { return --refCount; }
  // 1 with more than one owner; an object off the heap always reports shared.
  int IsShared() const { return refCount > 1; }
  std::int32_t GetRefCount() const { return refCount; }

  // Forgets every pending address without freeing anything: a heap object
  // that gets its first Ref afterwards is taken for one off the heap and is
  // never deleted by its pointers.
  static void CollectGarbage();
  // How many allocated objects still wait for their first Ref.
  static std::int32_t GetPendingCount();

 protected:
  std::int32_t refCount;

 private:
  // Takes self off the pending list; 1 if it was there.
  static int CheckBuffer(void *self);

  // Addresses from operator new not yet referenced or deleted, newest last.
  static SCC_Array<void *> pendingBuffers;
};

// Owns a shared object through its count. Assignment takes the new object
// before it releases the old one, so self-assignment is safe.
template <class T>
class SCC_SharedPointer {
 public:
  constexpr SCC_SharedPointer() noexcept : pointer(nullptr) {}
  SCC_SharedPointer(T *object) : pointer(object) { Acquire(object); }  // NOLINT: implicit like T *
  SCC_SharedPointer(SCC_SharedPointer const &other) : pointer(other.pointer) { Acquire(pointer); }
  template <class U>
  SCC_SharedPointer(SCC_SharedPointer<U> const &other) : pointer(other) {  // NOLINT
    Acquire(pointer);
  }
  ~SCC_SharedPointer() {
    T *const old = pointer;
    pointer = nullptr;
    Release(old);
  }

  SCC_SharedPointer &operator=(SCC_SharedPointer const &other) { return Assign(other.pointer); }
  template <class U>
  SCC_SharedPointer &operator=(SCC_SharedPointer<U> const &other) {
    return Assign(other);
  }
  SCC_SharedPointer &operator=(T *object) { return Assign(object); }

  T *operator->() const { return pointer; }
  T &operator*() const { return *pointer; }
  operator T *() const { return pointer; }  // NOLINT: also the test for null

 private:
  static void Acquire(T *object) {
    // The complete object's address is what operator new recorded.
    if (object != nullptr) object->Ref(dynamic_cast<void *>(object));
  }
  static void Release(T *object) {
    // Objects that are not on the heap never reach 0, but GCC cannot see
    // that when a local's release is inlined and warns of a delete of it.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wfree-nonheap-object"
#endif
    if (object != nullptr && object->Deref() == 0) delete object;
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif
  }
  SCC_SharedPointer &Assign(T *object) {
    T *const old = pointer;
    pointer = object;
    Acquire(object);
    Release(old);
    return *this;
  }

  T *pointer;
};

// The interface of a memory statistic that the library does not keep: both
// figures are always 0.
class TOVIK_API SYS_Memory {
 public:
  static std::int32_t GetCurrentMemorySize();
  static std::int32_t GetPeakMemorySize();
};

#endif  // TOVIK_SCC_SHARED_H
