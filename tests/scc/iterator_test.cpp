#include <gtest/gtest.h>

#include <string>

#include "scc_iterator.h"

namespace {

// A cursor standing on one handle that records the calls the base makes.
class Cursor : public SCC_Iterator {
 public:
  explicit Cursor(SCC_Handle on = 0, int policy = 0) : handle(on) { focusDeletePolicy = policy; }
  SCC_Handle GetHandle() const override { return handle; }
  void Clear() override { calls += 'C'; }
  int GetNext() override { calls += 'N'; return 1; }
  int GetPrev() override { calls += 'P'; return 1; }
  void Invalidate() override { calls += 'I'; }
  int Policy() const { return focusDeletePolicy; }

  SCC_Handle handle;  // a derived class's place, copied with it
  std::string calls;
};

int *Data(SCC_Handle handle) { return static_cast<int *>(SCC_HandleToData(handle)); }

TEST(Iterator, FocusDeletePolicies) {
  SCC_Handle const wide = SCC_Handle{1} << 40;
  struct {
    char const *name;
    int policy, code;
    SCC_Handle data;
    char const *calls;
  } const cases[] = {
      {"invalidate on the focus", 0, EvDeleted, wide, "I"},
      {"forward on the focus", 1, EvDeleted, wide, "N"},
      {"back on the focus", -1, EvDeleted, wide, "P"},
      {"another handle is ignored", 1, EvDeleted, 11, ""},
      {"a handle beyond 32 bits is compared whole", 0, EvDeleted, wide * 2, ""},
      {"unknown policies ignore the focus", 2, EvDeleted, wide, ""},
      {"cleared, whatever the policy and data", 7, EvCleared, 99, "C"},
      {"other codes are ignored", 0, EvChanged, wide, ""},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SCC_Notifier notifier;
    Cursor cursor(wide, c.policy);
    cursor.JoinAtEnd(&notifier);
    notifier.Notify(c.code, Data(c.data));
    EXPECT_EQ(cursor.calls, c.calls);
  }
  // A base iterator stands on handle 0, so a deletion with data 0 takes the policy path.
  struct : SCC_Iterator {
    void Invalidate() override { ++invalidated; }
    int invalidated = 0;
  } base;
  SCC_Notifier notifier;
  base.JoinAtEnd(&notifier);
  notifier.Notify(EvDeleted, nullptr);
  notifier.Notify(EvDeleted, Data(1));
  EXPECT_EQ(base.invalidated, 1);
}

TEST(Iterator, CopyListensToNothingAssignmentJoins) {
  SCC_Notifier notifier, other;
  Cursor first(1, 1), last(3), assigned(3);
  first.EnableEvent(0);
  first.JoinAtEnd(&notifier);
  last.JoinAtEnd(&notifier);
  Cursor copy(first);
  EXPECT_TRUE(copy.GetOwner() == nullptr && copy.next == &copy && copy.enabled == 1);
  EXPECT_EQ(copy.Policy() * 10 + copy.handle, 11) << "the policy and the derived place are copied";

  // Assignment joins the right side's notifier immediately in front of it and takes its policy.
  assigned.OnFocusDeleteGoBack();
  assigned.JoinAtEnd(&other);
  assigned = last;
  EXPECT_TRUE(other.HasListeners() == 0 && assigned.GetOwner() == &notifier);
  EXPECT_TRUE(first.next == &assigned && assigned.next == &last && last.prev == &assigned);
  EXPECT_EQ(assigned.Policy(), 0);
  notifier.Notify(EvCleared, nullptr);
  EXPECT_EQ(assigned.calls + last.calls + copy.calls, "CC") << "the copy hears nothing";
  assigned = first;
  EXPECT_EQ(assigned.Policy() * 10 + assigned.enabled, 11) << "the policy is assigned, the enabled flag not";
  EXPECT_TRUE(notifier.next == &assigned && assigned.next == &first);
  assigned = static_cast<Cursor &>(static_cast<SCC_Iterator &>(assigned));
  EXPECT_TRUE(notifier.next == &assigned && assigned.next == &first) << "self-assignment changes nothing";
  assigned = copy;
  EXPECT_TRUE(assigned.GetOwner() == nullptr && assigned.next == &assigned && notifier.next == &first);
}

}  // namespace
