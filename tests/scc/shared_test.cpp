// SCC_SharedBuffer and SCC_SharedPointer: heap objects against all others.
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

// A second base in front of nothing: the shared part stays first.
class Derived : public Shared {
 public:
  int extra = 7;
};

class SharedPointerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    destroyed = 0;
    pending = SCC_SharedBuffer::GetPendingCount();
  }
  std::int32_t pending = 0;
};

TEST_F(SharedPointerTest, LocalObjectIsNeverDeleted) {
  Shared local;
  EXPECT_EQ(local.GetRefCount(), 0);
  {
    SCC_SharedPointer<Shared> p(&local);
    EXPECT_EQ(local.GetRefCount(), SCC_SharedBuffer::kNotOnHeap);
    EXPECT_EQ(local.IsShared(), 1);  // one owner, yet shared
    SCC_SharedPointer<Shared> q(p);
    SCC_SharedPointer<Shared> r;
    r = q;
    EXPECT_EQ(local.GetRefCount(), SCC_SharedBuffer::kNotOnHeap + 2);
  }
  EXPECT_EQ(destroyed, 0);
  EXPECT_EQ(local.GetRefCount(), SCC_SharedBuffer::kNotOnHeap - 1);  // far from 0
}

TEST_F(SharedPointerTest, HeapObjectDiesAtItsLastRelease) {
  auto *object = new Derived;
  EXPECT_EQ(SCC_SharedBuffer::GetPendingCount(), pending + 1);
  SCC_SharedPointer<Shared> p(object);
  EXPECT_EQ(SCC_SharedBuffer::GetPendingCount(), pending);
  EXPECT_EQ(object->GetRefCount(), 1);
  EXPECT_EQ(object->IsShared(), 0);
  {
    SCC_SharedPointer<Derived> q(object);
    SCC_SharedPointer<Shared> widened(q);
    EXPECT_EQ(object->GetRefCount(), 3);
  }
  EXPECT_EQ(destroyed, 0);
  p = nullptr;
  EXPECT_EQ(destroyed, 1);
}

TEST_F(SharedPointerTest, PendingEntriesFollowNewAndDelete) {
  auto *never = new Shared;
  auto *copy = new Shared(*never);  // a copy is a new object with an entry of its own
  EXPECT_EQ(copy->GetRefCount(), 0);
  EXPECT_EQ(SCC_SharedBuffer::GetPendingCount(), pending + 2);
  delete never;
  EXPECT_EQ(SCC_SharedBuffer::GetPendingCount(), pending + 1);
  SCC_SharedPointer<Shared> p(copy);  // still recognised after an older entry went
  EXPECT_EQ(copy->GetRefCount(), 1);
  EXPECT_EQ(SCC_SharedBuffer::GetPendingCount(), pending);
}

TEST_F(SharedPointerTest, AssignmentKeepsEachObjectsOwnCount) {
  auto *a = new Shared(1);
  auto *b = new Shared(2);
  SCC_SharedPointer<Shared> a1(a), a2(a);
  SCC_SharedPointer<Shared> b1(b), b2(b), b3(b), b4(b), b5(b);
  *a = *b;
  EXPECT_EQ(a->value, 2);
  EXPECT_EQ(a->GetRefCount(), 2);
  EXPECT_EQ(b->GetRefCount(), 5);
}

TEST_F(SharedPointerTest, CollectGarbageForgetsPendingObjects) {
  auto *object = new Shared;
  SCC_SharedBuffer::CollectGarbage();
  EXPECT_EQ(SCC_SharedBuffer::GetPendingCount(), 0);
  {
    SCC_SharedPointer<Shared> p(object);
    EXPECT_EQ(object->GetRefCount(), SCC_SharedBuffer::kNotOnHeap);
  }
  EXPECT_EQ(destroyed, 0);
  delete object;  // by hand: no pointer will
  EXPECT_EQ(destroyed, 1);
}

// Assignment stores the new object, takes it, then lets go of the old one;
// the destructor empties the pointer before the last release.
SCC_SharedPointer<Shared> *watched = nullptr;
Shared *seenAtDestruction = reinterpret_cast<Shared *>(1);

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
    EXPECT_EQ(destroyed, 0);
    p = next;
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(seenAtDestruction, next);
    EXPECT_EQ(next->GetRefCount(), 1);
    p = new Watching;
    EXPECT_EQ(destroyed, 2);  // next went with its last owner
  }
  EXPECT_EQ(destroyed, 3);
  EXPECT_EQ(seenAtDestruction, nullptr);
  watched = nullptr;
}

TEST(Memory, KeepsNoFigures) {
  EXPECT_EQ(SYS_Memory::GetCurrentMemorySize(), 0);
  EXPECT_EQ(SYS_Memory::GetPeakMemorySize(), 0);
}

}  // namespace
