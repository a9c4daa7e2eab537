// Shared objects: the pending list that tells heap objects from others.
#include <new>

#include "scc_array.h"
#include "scc_shared.h"

// Constant-initialized (the array's constructors are constexpr), so objects
// that static constructors of any library allocate are recorded correctly.
SCC_Array<void *> SCC_SharedBuffer::pendingBuffers;

SCC_SharedBuffer::~SCC_SharedBuffer() = default;

void *SCC_SharedBuffer::operator new(std::size_t size) {
  void *const memory = ::operator new(size);
  struct FreeOnThrow {  // recording may itself run out of memory
    void *memory;
    ~FreeOnThrow() { ::operator delete(memory); }
  } guard{memory};
  SCC_SharedBuffer::operator new(size, memory);
  guard.memory = nullptr;
  return memory;
}

void *SCC_SharedBuffer::operator new(std::size_t, void *place) {
  pendingBuffers.Append(place);
  return place;
}

void SCC_SharedBuffer::operator delete(void *p) {
  CheckBuffer(p);  // what operator delete(p, p) does
  ::operator delete(p);
}

void SCC_SharedBuffer::operator delete(void *p, void *) { CheckBuffer(p); }

int SCC_SharedBuffer::CheckBuffer(void *self) {
  // Newest first: a first Ref usually follows its allocation at once.
  void *const *const entries = pendingBuffers.GetData();
  for (std::int32_t i = pendingBuffers.GetSize() - 1; i >= 0; --i) {
    if (entries[i] == self) {
      pendingBuffers.Delete(i, 1);
      return 1;
    }
  }
  return 0;
}

void SCC_SharedBuffer::CollectGarbage() { pendingBuffers.Clear(); }

std::int32_t SCC_SharedBuffer::GetPendingCount() { return pendingBuffers.GetSize(); }

std::int32_t SYS_Memory::GetCurrentMemorySize() { return 0; }

std::int32_t SYS_Memory::GetPeakMemorySize() { return 0; }
