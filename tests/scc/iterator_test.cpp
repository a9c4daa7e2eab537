#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "scc_iterator.h"

namespace {

// A cursor over a list of handles that counts the calls the base makes.
class ListCursor : public SCC_Iterator {
 public:
  explicit ListCursor(std::vector<SCC_Handle> const *h = nullptr, int at = -1)
      : handles(h), index(at) {}

  SCC_Handle GetHandle() const override { return IsValid() ? (*handles)[index] : 0; }
  void Clear() override {
    calls += 'C';
    index = -1;
  }
  int GetNext() override {
    calls += 'N';
    if (IsValid() && ++index == static_cast<int>(handles->size())) index = -1;
    return IsValid();
  }
  int GetPrev() override {
    calls += 'P';
    if (IsValid()) --index;
    return IsValid();
  }
  void Invalidate() override {
    calls += 'I';
    index = -1;
  }
  int IsValid() const override { return handles != nullptr && index >= 0; }
  int IsEmpty() const override { return !IsValid(); }

  int Policy() const { return focusDeletePolicy; }
  void SetPolicy(int policy) { focusDeletePolicy = policy; }
  using SCC_Iterator::OnNotification;

  std::vector<SCC_Handle> const *handles;
  int index;
  std::string calls;
};

// Keeps the base's walking operations; records only what the base calls.
class BaseCursor : public SCC_Iterator {
 public:
  void Clear() override { calls += 'C'; }
  void Invalidate() override { calls += 'I'; }
  using SCC_Iterator::OnNotification;
  std::string calls;
};

// Handle data as a listener receives them.
int *Data(SCC_Handle handle) { return static_cast<int *>(SCC_HandleToData(handle)); }

void Delete(SCC_Notifier &notifier, SCC_Handle handle) {
  notifier.Notify(EvDeleted, SCC_HandleToData(handle));
}

TEST(Iterator, FocusDeletePolicies) {
  std::vector<SCC_Handle> const handles{11, 22, 33};
  struct Case {
    char const *name;
    int policy;
    SCC_Handle deleted;
    std::string calls;
    int index;
  };
  Case const cases[] = {
      {"invalidate on the focus", 0, 22, "I", -1},
      {"forward on the focus", 1, 22, "N", 2},
      {"back on the focus", -1, 22, "P", 0},
      {"another handle is ignored", 0, 33, "", 1},
      {"another handle, forward", 1, 11, "", 1},
      {"no handle is ignored", -1, 0, "", 1},
      {"unknown policy ignores the focus", 2, 22, "", 1},
      {"negative unknown policy", -2, 22, "", 1},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(c.name);
    SCC_Notifier notifier;
    ListCursor cursor(&handles, 1);
    cursor.SetPolicy(c.policy);
    cursor.JoinAtEnd(&notifier);
    Delete(notifier, c.deleted);
    EXPECT_EQ(cursor.calls, c.calls);
    EXPECT_EQ(cursor.index, c.index);
  }

  ListCursor cursor;
  cursor.OnFocusDeleteGoBack();
  EXPECT_EQ(cursor.Policy(), -1);
  cursor.OnFocusDeleteGoForward();
  EXPECT_EQ(cursor.Policy(), 1);
  cursor.OnFocusDeleteInvalidate();
  EXPECT_EQ(cursor.Policy(), 0);
}

TEST(Iterator, ClearedAndOtherCodes) {
  std::vector<SCC_Handle> const handles{5, 6};
  for (int policy : {0, 1, -1, 7}) {
    SCOPED_TRACE(policy);
    ListCursor cursor(&handles, 0);
    cursor.SetPolicy(policy);
    EXPECT_EQ(cursor.OnNotification(EvCleared, Data(99)), 0);
    EXPECT_EQ(cursor.calls, "C");
    EXPECT_EQ(cursor.IsEmpty(), 1);
  }
  ListCursor cursor(&handles, 0);
  int const others[] = {0,          EvAdded,           EvChanged, EvFocused, EvReload,
                        EvRemapped, EvPropertyChanged, EvSuspend, EvResume,  11,
                        -1};
  for (int code : others) {
    EXPECT_EQ(cursor.OnNotification(code, Data(5)), 0);
  }
  EXPECT_EQ(cursor.calls, "");
  EXPECT_EQ(cursor.OnNotification(EvDeleted, Data(5)), 0);
  EXPECT_EQ(cursor.calls, "I");
}

TEST(Iterator, BaseOperations) {
  // The base stands on handle 0, so a deletion with data 0 takes the policy path.
  BaseCursor base;
  EXPECT_EQ(base.GetHandle(), 0);
  EXPECT_EQ(base.IsValid(), 1);
  EXPECT_EQ(base.IsEmpty(), 1);
  EXPECT_EQ(base.GetNext(), 0);
  EXPECT_EQ(base.GetPrev(), 0);
  base.OnNotification(EvDeleted, nullptr);
  EXPECT_EQ(base.calls, "I");
  base.OnNotification(EvDeleted, Data(1));
  EXPECT_EQ(base.calls, "I");
  base.OnFocusDeleteGoForward();
  base.OnNotification(EvDeleted, nullptr);  // base GetNext: no movement, no call recorded
  EXPECT_EQ(base.calls, "I");

  // A handle wider than 32 bits is compared whole.
  std::vector<SCC_Handle> const wide{SCC_Handle{1} << 40};
  ListCursor cursor(&wide, 0);
  cursor.OnNotification(EvDeleted, Data(0));
  EXPECT_EQ(cursor.calls, "");
  cursor.OnNotification(EvDeleted, Data(SCC_Handle{1} << 40));
  EXPECT_EQ(cursor.calls, "I");
}

TEST(Iterator, CopyListensToNothingAssignmentJoins) {
  std::vector<SCC_Handle> const handles{1, 2, 3};
  SCC_Notifier notifier;
  ListCursor first(&handles, 0);
  first.OnFocusDeleteGoForward();
  first.EnableEvent(0);
  first.JoinAtEnd(&notifier);
  ListCursor last(&handles, 2);
  last.JoinAtEnd(&notifier);

  ListCursor copy(first);
  EXPECT_EQ(copy.GetOwner(), nullptr);
  EXPECT_EQ(copy.next, &copy);
  EXPECT_EQ(copy.prev, &copy);
  EXPECT_EQ(copy.enabled, 1);
  EXPECT_EQ(copy.Policy(), 1);
  EXPECT_EQ(copy.index, 0);  // the derived class copied its place
  Delete(notifier, 1);
  EXPECT_EQ(copy.calls, "");

  // Assignment: joins the right side's notifier, immediately in front of it,
  // and takes its policy.
  ListCursor assigned(&handles, 2);
  SCC_Notifier other;
  assigned.JoinAtEnd(&other);
  assigned = last;
  EXPECT_EQ(other.HasListeners(), 0);
  EXPECT_EQ(assigned.GetOwner(), &notifier);
  EXPECT_EQ(assigned.next, &last);
  EXPECT_EQ(last.prev, &assigned);
  EXPECT_EQ(notifier.next, &first);
  EXPECT_EQ(first.next, &assigned);
  EXPECT_EQ(notifier.prev, &last);
  EXPECT_EQ(assigned.Policy(), 0);
  EXPECT_EQ(assigned.index, 2);  // the base assignment leaves the place to derived classes
  Delete(notifier, 3);
  EXPECT_EQ(assigned.calls, "I");
  EXPECT_EQ(last.calls, "I");

  // The policy comes with assignment; the enabled flag does not.
  assigned = first;
  EXPECT_EQ(assigned.Policy(), 1);
  EXPECT_EQ(assigned.enabled, 1);
  EXPECT_EQ(notifier.next, &assigned);
  EXPECT_EQ(assigned.next, &first);

  // Self-assignment leaves the links as they are.
  SCC_Iterator &alias = assigned;
  SCC_EventNode<int> *prevBefore = assigned.prev;
  SCC_EventNode<int> *nextBefore = assigned.next;
  assigned = static_cast<ListCursor &>(alias);
  EXPECT_EQ(assigned.prev, prevBefore);
  EXPECT_EQ(assigned.next, nextBefore);
  EXPECT_EQ(assigned.GetOwner(), &notifier);

  // Assigning from an unattached iterator detaches.
  assigned = copy;
  EXPECT_EQ(assigned.GetOwner(), nullptr);
  EXPECT_EQ(assigned.next, &assigned);
  EXPECT_EQ(notifier.next, &first);
  EXPECT_EQ(copy.next, &copy);
}

TEST(Iterator, LeavesItsNotifierWhenDestroyed) {
  std::vector<SCC_Handle> const handles{1, 2, 3};
  SCC_Notifier notifier;
  ListCursor before(&handles, 1), after(&handles, 1);
  before.JoinAtEnd(&notifier);
  auto *doomed = new ListCursor(&handles, 1);
  doomed->JoinAtEnd(&notifier);
  after.JoinAtEnd(&notifier);
  // Destroyed from inside its own notification: the walk goes on behind it.
  struct SelfDeleting : ListCursor {
    using ListCursor::ListCursor;
    void Invalidate() override { delete this; }
  };
  auto *self = new SelfDeleting(&handles, 1);
  self->JoinAtEnd(&notifier);
  ListCursor tail(&handles, 1);
  tail.JoinAtEnd(&notifier);
  delete doomed;
  EXPECT_EQ(before.next, &after);
  Delete(notifier, 2);
  EXPECT_EQ(before.calls, "I");
  EXPECT_EQ(after.calls, "I");
  EXPECT_EQ(tail.calls, "I");
  EXPECT_EQ(after.next, &tail);

  // A notifier that goes away leaves its iterators unattached, alive and with
  // their policy; they can be attached again.
  before.index = 1;
  before.OnFocusDeleteGoBack();
  {
    SCC_Notifier shortLived;
    before.JoinAtEnd(&shortLived);
  }
  EXPECT_EQ(before.GetOwner(), nullptr);
  EXPECT_EQ(before.next, &before);
  before.JoinAtEnd(&notifier);
  Delete(notifier, 2);
  EXPECT_EQ(before.calls, "IP");
  EXPECT_EQ(before.index, 0);
}

}  // namespace
