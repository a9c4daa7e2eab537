#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <vector>

#include "tovik.h"

namespace {

std::vector<SCC_Handle> Walk(SYS_StdInterface &cursor) {
  std::vector<SCC_Handle> seen;
  for (cursor.GetFirst(nullptr); cursor.IsValid(); cursor.GetNext()) seen.push_back(cursor.GetHandle());
  return seen;
}

TEST(StdInterfaceTest, WalksOneToTheMaximumAndEndsOff) {
  SYS_StdInterface cursor(3);
  EXPECT_EQ(Walk(cursor), (std::vector<SCC_Handle>{1, 2, 3}));
  EXPECT_EQ(cursor.GetHandle(), 0);
  cursor.GetNext();  // from off, the walk starts again
  EXPECT_EQ(cursor.GetHandle(), 1);

  SYS_StdInterface none;
  none.GetFirst(nullptr);
  EXPECT_FALSE(none.IsValid());
  none.GetNext();
  EXPECT_EQ(none.GetHandle(), 0);

  // A stored handle is not tested, and the next step leaves the range.
  cursor.SetHandle(7, nullptr);
  EXPECT_EQ(cursor.GetHandle(), 7);
  cursor.GetNext();
  EXPECT_EQ(cursor.GetHandle(), 0);
  cursor.SetMaxHandle(INTPTR_MAX);
  cursor.SetHandle(INTPTR_MAX, nullptr);
  cursor.GetNext();
  EXPECT_EQ(cursor.GetHandle(), 0);

  SYS_StdInterface copy(cursor);
  copy.SetHandle(2, nullptr);
  cursor = copy;
  EXPECT_EQ(cursor.GetHandle(), 2);
  EXPECT_EQ(cursor.GetChangeEvent(nullptr), nullptr);
}

TEST(StdInterfaceTest, DefaultSortIsTheDifferenceKeepingItsSign) {
  EXPECT_EQ(SYS_StdInterface::DefaultSort(3, 5), -2);
  EXPECT_EQ(SYS_StdInterface::DefaultSort(5, 3), 2);
  EXPECT_EQ(SYS_StdInterface::DefaultSort(INTPTR_MIN, INTPTR_MAX), INT_MIN);
  EXPECT_EQ(SYS_StdInterface::DefaultSort(INTPTR_MAX, -1), INT_MAX);
  EXPECT_EQ(SYS_StdInterface::DefaultSort(INT_MIN, 0), INT_MIN);
}

TEST(StdInterfaceTest, GeomIteratorBaseAnswersNothing) {
  SYS_GeomIterator it;
  EXPECT_EQ(it.GetObjectType(), SYS_GEOMETRY_NONE);
  EXPECT_EQ(it.GetPointValue(), nullptr);
  EXPECT_EQ(it.GetRectangleValue(), nullptr);
  EXPECT_EQ(it.GetArcValue(), nullptr);
}

}  // namespace
