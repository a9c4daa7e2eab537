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
// Assignment stores the new object, takes it, then lets go of the old one;
// the destructor empties the pointer before the last release.
SCC_SharedPointer<Shared> *watched = nullptr;
Shared *seenAtDestruction = nullptr;

class Watching : public Shared {
 public:
  ~Watching() override { seenAtDestruction = *watched; }
};

TEST(SharedPointerTest, LocalObjectsStayOrderOfAssignmentAndDestruction) {
  Shared local;  // an object off the heap is never destroyed by its owners
  { SCC_SharedPointer<Shared> p(&local), q(p); }
  EXPECT_EQ(destroyed, 0);
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
