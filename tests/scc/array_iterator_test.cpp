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
      {"insert at the end", 1, 6, 2, 0, 5, 5},
      {"insert leaves a cursor on nothing", 1, 0, 2, 0, -1, -1},
      {"delete after the cursor", 2, 2, 2, 0, 1, 1},
      {"delete under the cursor, first of block", 2, 2, 2, 0, 2, -1},
      {"delete under the cursor, last of block", 2, 2, 2, 0, 3, -1},
      {"delete before the cursor", 2, 2, 2, 0, 4, 2},
      {"delete of all before the cursor", 2, 0, 5, 0, 5, 0},
      {"forward: one item under the cursor", 2, 2, 1, 1, 2, 2},
      {"forward: block under the cursor", 2, 2, 3, 1, 2, -1},
      {"forward: cursor on the second of a block", 2, 2, 3, 1, 3, -1},
      {"forward: delete before the cursor", 2, 0, 2, 1, 4, 2},
      {"back: one item under the cursor", 2, 2, 1, -1, 2, -1},
      {"back: delete before the cursor", 2, 1, 1, -1, 3, 2},
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
    if (c.operation == 1) {
      array.Insert(c.index, c.count);
    } else {
      array.Delete(c.index, c.count);
    }
    EXPECT_EQ(cursor.GetFocus(), c.expected);
    // A cursor that kept its element still stands on it.
    if (c.expected >= 0 && c.focus >= 0 && c.operation == 1) {
      EXPECT_EQ(array.GetAt(cursor.GetFocus()), before);
    }
  }
}

TEST(ArrayIterator, ForwardPolicyLandsOnTheFollowingElement) {
  SCC_Array<int> array;
  Fill(array, 4);
  Cursor cursor(array, 1);
  cursor.OnFocusDeleteGoForward();
  array.Delete(1, 1);
  ASSERT_EQ(cursor.IsValid(), 1);
  EXPECT_EQ(array.GetAt(cursor.GetFocus()), 20);
  EXPECT_EQ(cursor.GetHandle(), 2);

  // The last element deleted under a forward cursor leaves it past the end.
  Cursor last(array, 2);
  last.OnFocusDeleteGoForward();
  array.Delete(2, 1);
  EXPECT_EQ(last.GetFocus(), 2);
  EXPECT_EQ(last.IsValid(), 0);
  EXPECT_EQ(last.IsEmpty(), 1);
  EXPECT_EQ(last.HasValidFocus(), 1);

  // Deleting every element under a forward cursor leaves it on nothing.
  Cursor first(array, 0);
  first.OnFocusDeleteGoForward();
  array.Delete(0, array.GetSize());
  EXPECT_EQ(first.GetFocus(), -1);
}

TEST(ArrayIterator, OtherNotificationsLeaveTheFocus) {
  SCC_Array<int> array;
  Fill(array, 5);
  Cursor cursor(array, 3);
  array.SetAt(3, 99);      // EvChanged
  array.SetSize(5);        // EvReload
  EXPECT_EQ(cursor.GetFocus(), 3);

  _SCC_Array::UpdateRecord odd{3, 0, 2};
  cursor.OnUpdatePointers(&odd);
  cursor.OnUpdatePointers(nullptr);
  EXPECT_EQ(cursor.GetFocus(), 3);

  // Clear, and the array's destruction, unplace the cursor and forget the array.
  array.Clear();
  EXPECT_EQ(cursor.GetFocus(), -1);
  EXPECT_EQ(cursor.GetArray(), nullptr);
  EXPECT_EQ(cursor.GetHandle(), 0);
  auto doomed = std::make_unique<SCC_Array<int>>();
  Fill(*doomed, 3);
  Cursor survivor(*doomed, 1);
  doomed.reset();
  EXPECT_EQ(survivor.GetArray(), nullptr);
  EXPECT_EQ(survivor.GetFocus(), -1);
  EXPECT_EQ(survivor.GetOwner(), nullptr);
}

TEST(ArrayIterator, HandlesAndPlacing) {
  SCC_Array<int> array;
  Fill(array, 4);
  SCC_ArrayIteratorBase base;
  EXPECT_EQ(base.GetHandle(), 0);
  base.SetFocus(2);
  EXPECT_EQ(base.GetHandle(), 0);  // no array of its own
  EXPECT_EQ(base.IsValid(), 0);
  EXPECT_EQ(base.HasValidFocus(), 1);
  base.Restart(array, 2);
  EXPECT_EQ(base.GetArray(), nullptr);
  EXPECT_EQ(base.GetOwner(), array.GetNotifier());
  array.Insert(0, 1);
  EXPECT_EQ(base.GetFocus(), 3);  // it listens all the same

  Cursor cursor;
  EXPECT_EQ(cursor.GetFocus(), -1);
  EXPECT_EQ(cursor.GetHandle(), 0);
  cursor.GetFirst(&array);
  EXPECT_EQ(cursor.GetHandle(), 1);
  cursor.SetHandle(0, &array);
  EXPECT_EQ(cursor.GetFocus(), -1);
  EXPECT_EQ(cursor.GetOwner(), array.GetNotifier());
  cursor.SetHandle(3, nullptr);  // on its own array
  EXPECT_EQ(cursor.GetFocus(), 2);
  EXPECT_EQ(cursor.GetHandle(), 3);
  cursor.Restart(array, -5);
  EXPECT_EQ(cursor.GetFocus(), -1);
  cursor.RestartFromEnd(array);
  EXPECT_EQ(cursor.GetFocus(), 4);

  Cursor loose;
  loose.SetHandle(3, nullptr);  // no array at all: nothing happens
  loose.GetFirst(nullptr);
  EXPECT_EQ(loose.GetFocus(), -1);
  EXPECT_EQ(loose.GetOwner(), nullptr);

  SCC_Array<int> empty;
  loose.RestartFromEnd(empty);
  EXPECT_EQ(loose.GetFocus(), -1);
  EXPECT_EQ(loose.GetArray(), &empty);

  // Restarting moves the cursor from one array's ring to the other's.
  cursor.Restart(empty, 0);
  EXPECT_EQ(cursor.GetOwner(), empty.GetNotifier());
  array.Insert(0, 3);
  EXPECT_EQ(cursor.GetFocus(), 0);

  EXPECT_EQ(SCC_ArrayIteratorBase::GetChangeEvent(&array), array.GetNotifier());
  EXPECT_EQ(SCC_ArrayIteratorBase::GetChangeEvent(nullptr), nullptr);
  EXPECT_EQ(SCC_ArrayIteratorBase::DefaultSort(3, 5), -2);
  EXPECT_EQ(SCC_ArrayIteratorBase::DefaultSort(5, 5), 0);
}

TEST(ArrayIterator, WalkingAndStepping) {
  SCC_Array<int> array;
  Fill(array, 3);
  Cursor cursor(array, 0);
  std::vector<int> seen;
  do {
    seen.push_back(array.GetAt(cursor.GetFocus()));
  } while (cursor.GetNext());
  EXPECT_EQ(seen, (std::vector<int>{0, 10, 20}));
  EXPECT_EQ(cursor.GetFocus(), 3);  // past the end
  EXPECT_EQ(cursor.GetPrev(), 0);   // does not step back
  EXPECT_EQ(cursor.GetFocus(), 3);

  Cursor old = cursor--;
  EXPECT_EQ(old.GetFocus(), 3);
  EXPECT_EQ(old.GetOwner(), nullptr);
  EXPECT_EQ(cursor.GetFocus(), 2);
  EXPECT_EQ((--cursor).GetFocus(), 1);
  EXPECT_EQ((++cursor).GetFocus(), 2);
  old = cursor++;
  EXPECT_EQ(old.GetFocus(), 2);
  EXPECT_EQ(cursor.GetFocus(), 3);

  // Without bounds: stepping back from -1 gives -2, which is on nothing.
  Cursor low(array, 0);
  --low;
  --low;
  EXPECT_EQ(low.GetFocus(), -2);
  EXPECT_EQ(low.HasValidFocus(), 0);
  EXPECT_EQ(low.GetHandle(), -1);
  EXPECT_EQ(low.IsValid(), 0);
}

TEST(ArrayIterator, CopiesKeepTheirNumberAssignmentsListen) {
  SCC_Array<int> array;
  Fill(array, 5);
  Cursor cursor(array, 2);
  cursor.OnFocusDeleteGoForward();
  Cursor copy(cursor);
  EXPECT_EQ(copy.GetFocus(), 2);
  EXPECT_EQ(copy.GetArray(), &array);
  EXPECT_EQ(copy.GetOwner(), nullptr);

  Cursor assigned;
  assigned = cursor;
  EXPECT_EQ(assigned.GetOwner(), array.GetNotifier());
  EXPECT_EQ(assigned.next, &cursor);  // joins directly in front of the other
  EXPECT_EQ(assigned.GetArray(), &array);

  array.Insert(0, 1);
  EXPECT_EQ(copy.GetFocus(), 2);
  EXPECT_EQ(cursor.GetFocus(), 3);
  EXPECT_EQ(assigned.GetFocus(), 3);
  // The policy came with the assignment.
  array.Delete(3, 1);
  EXPECT_EQ(assigned.GetFocus(), 3);
  EXPECT_EQ(array.GetAt(3), 30);

  Cursor &alias = assigned;
  assigned = alias;
  EXPECT_EQ(assigned.GetOwner(), array.GetNotifier());
  EXPECT_EQ(assigned.next, &cursor);

  // Destroyed before the array: it leaves the ring quietly.
  {
    Cursor shortLived(array, 1);
  }
  array.Insert(0, 1);
  EXPECT_EQ(cursor.GetFocus(), 4);
}

}  // namespace
