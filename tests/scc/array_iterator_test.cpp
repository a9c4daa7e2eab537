#include "scc_array_iterator.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

typedef SCC_ArrayIterator<int> Cursor;

// An array holding 0, 10, 20, ... with a notifier.
void Fill(SCC_Array<int> &array, int size) {
  for (int i = 0; i < size; ++i) array.Append(i * 10);
  array.GetNotifier();
}

TEST(ArrayIterator, BlocksBeforeUnderAndAfter) {
  struct Case {
    char const *name;
    int operation;  // 1 insert, 2 delete
    std::int32_t index;
    std::int32_t count;
    int policy;  // 0 invalidate, 1 forward, -1 back
    std::int32_t focus;
    std::int32_t expected;
  };
  Case const cases[] = {
      {"insert after the cursor", 1, 2, 3, 0, 1, 1},
      {"insert at the cursor moves it with its element", 1, 2, 3, 0, 2, 5},
      {"insert before the cursor", 1, 0, 2, 0, 4, 6},
      {"insert leaves a cursor on nothing", 1, 0, 2, 0, -1, -1},
      {"delete after the cursor", 2, 2, 2, 0, 1, 1},
      {"delete under the cursor, first of block", 2, 2, 2, 0, 2, -1},
      {"delete before the cursor", 2, 2, 2, 0, 4, 2},
      {"delete of all before the cursor", 2, 0, 5, 0, 5, 0},
      {"forward: one item under the cursor", 2, 2, 1, 1, 2, 2},
      {"forward: block under the cursor", 2, 2, 3, 1, 2, -1},
      {"forward: cursor on the second of a block", 2, 2, 3, 1, 3, -1},
      {"back: one item under the cursor", 2, 2, 1, -1, 2, -1},
      {"forward: insert at the cursor", 1, 3, 1, 1, 3, 4},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(c.name);
    SCC_Array<int> array;
    Fill(array, 6);
    Cursor cursor(array, c.focus);
    if (c.policy == 1) cursor.OnFocusDeleteGoForward();
    if (c.policy == -1) cursor.OnFocusDeleteGoBack();
    int const before = cursor.IsValid() ? array.GetAt(cursor.GetFocus()) : -1;
    c.operation == 1 ? array.Insert(c.index, c.count) : array.Delete(c.index, c.count);
    EXPECT_EQ(cursor.GetFocus(), c.expected);
    // A cursor that kept its element still stands on it.
    bool const kept = c.expected >= 0 && c.focus >= 0 && c.operation == 1;
    EXPECT_TRUE(!kept || array.GetAt(cursor.GetFocus()) == before);
  }
}

TEST(ArrayIterator, WalkingPastTheEndAndClearing) {
  SCC_Array<int> array;
  Fill(array, 4);
  Cursor cursor(array, 1);
  std::vector<int> seen;
  do {
    seen.push_back(array.GetAt(cursor.GetFocus()));
  } while (cursor.GetNext());
  EXPECT_EQ(seen, (std::vector<int>{10, 20, 30}));
  EXPECT_EQ(cursor.GetFocus(), 4);  // past the end
  EXPECT_EQ(cursor.GetPrev(), 0);   // does not step back
  Cursor old = cursor--;            // a copy listens to nothing
  --cursor;
  EXPECT_TRUE(old.GetFocus() == 4 && old.GetOwner() == nullptr && cursor.GetFocus() == 2);
  // The last element deleted under a forward cursor leaves it past the end.
  Cursor last(array, 3);
  last.OnFocusDeleteGoForward();
  array.Delete(3, 1);
  EXPECT_EQ(last.IsValid() * 10 + last.HasValidFocus(), 1);
  // Changes of items, sizes and unknown records leave the focus alone.
  array.SetAt(1, 99);
  array.SetSize(3);
  _SCC_Array::UpdateRecord odd{3, 0, 2};
  cursor.OnUpdatePointers(&odd);
  cursor.OnUpdatePointers(nullptr);
  EXPECT_EQ(cursor.GetFocus(), 2);
  // Clear, and the array's destruction, unplace the cursor and forget the array.
  array.Clear();
  EXPECT_TRUE(cursor.GetFocus() == -1 && cursor.GetArray() == nullptr && cursor.GetHandle() == 0);
  auto doomed = std::make_unique<SCC_Array<int>>();
  Fill(*doomed, 3);
  Cursor survivor(*doomed, 1);
  doomed.reset();
  EXPECT_TRUE(survivor.GetArray() == nullptr && survivor.GetFocus() == -1 && survivor.GetOwner() == nullptr);
}

}  // namespace
