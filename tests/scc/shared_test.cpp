// SCC_SharedBuffer and SCC_SharedPointer: heap objects and all others.
#include <gtest/gtest.h>

#include "scc_shared.h"

namespace {

int destroyed = 0;

class Shared : public SCC_SharedBuffer {
 public:
  explicit Shared(int v = 0) : value(v) {}
  ~Shared() override { ++destroyed; }
  int value;
};
class Derived : public Shared {};

class SharedPointerTest : public ::testing::Test {
 protected:
  void SetUp() override { destroyed = 0; }
  std::int32_t const pending = SCC_SharedBuffer::GetPendingCount();
};

TEST_F(SharedPointerTest, LocalAndHeapObjectsThroughOnePointerType) {
  Shared local;
  auto *heap = new Derived;
  EXPECT_EQ(SCC_SharedBuffer::GetPendingCount(), pending + 1);
  {
    SCC_SharedPointer<Shared> p(&local), q(heap);
    EXPECT_EQ(SCC_SharedBuffer::GetPendingCount(), pending);
    EXPECT_TRUE(local.GetRefCount() == SCC_SharedBuffer::kNotOnHeap && heap->GetRefCount() == 1);
    EXPECT_TRUE(local.IsShared() == 1 && heap->IsShared() == 0);  // one owner, yet shared
    SCC_SharedPointer<Derived> narrow(heap);
    SCC_SharedPointer<Shared> copy(narrow);
    EXPECT_EQ(heap->GetRefCount(), 3);
    copy = nullptr;
    narrow = nullptr;
    q = p;  // the last owner of the heap object lets go
    EXPECT_EQ(destroyed, 1);
  }
  EXPECT_EQ(destroyed, 1);                                           // never the local one
  EXPECT_EQ(local.GetRefCount(), SCC_SharedBuffer::kNotOnHeap - 1);  // far from 0
}

// Assignment stores the new object, takes it, then lets go of the old one;
// the destructor empties the pointer before the last release.
SCC_SharedPointer<Shared> *watched = nullptr;
Shared *seenAtDestruction = nullptr;

class Watching : public Shared {
 public:
  ~Watching() override { seenAtDestruction = *watched; }
};

TEST_F(SharedPointerTest, OrderOfAssignmentAndDestruction) {
  auto *next = new Shared(2);
  {
    SCC_SharedPointer<Shared> p(new Watching);
    watched = &p;
    SCC_SharedPointer<Shared> &same = p;
    p = same;  // self-assignment at count 1 keeps the object
    p = next;
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(seenAtDestruction, next);
    p = new Watching;
    EXPECT_EQ(destroyed, 2);  // next went with its last owner
  }
  EXPECT_EQ(destroyed, 3);
  EXPECT_EQ(seenAtDestruction, nullptr);
  EXPECT_EQ(SYS_Memory::GetCurrentMemorySize() + SYS_Memory::GetPeakMemorySize(), 0);
}

}  // namespace
