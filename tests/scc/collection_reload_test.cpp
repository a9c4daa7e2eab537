// SCC_StdCollection: loading, filter, sort order, hooks on per-object
// notifiers, and children that follow their parent.
#include "collection_support.h"

namespace tovik_test {
namespace {

class Reloading : public ::testing::Test {
 protected:
  void SetUp() override { Fill(store, {{1, 30}, {2, 10}, {3, 30}, {4, 20}, {5, 10}, {6, 30}}); }
  StoreObject &O(int id) { return *store.Find(id); }
  ObjectStore store;
};

// A filter on the store's visible flag.
class Visible : public SYS_Filter {
 public:
  int IsTrue(SCC_Handle handle) override { return StoreObject::From(handle)->visible; }
};

TEST_F(Reloading, OrderRepeatsAndWhatAReloadTellsAndKeeps) {
  SCC_Comparator<SCC_Handle> byKey(&ObjectStore::CompareKey);  // outlives its user
  store.Repeat(O(4));  // a source that offers a handle twice
  Sorted down(store, 1);
  EXPECT_EQ(down.Ids(), (Ids{1, 3, 6, 4, 2, 5}));  // equal keys in the source's order
  StoreCollection plain(store);
  plain.SetSort(&byKey, 0);
  plain.AllowReload(1);
  EXPECT_EQ(plain.Ids(), (Ids{2, 5, 4, 1, 3, 6}));
  plain.SetSort(static_cast<SCC_Comparator<SCC_Handle> *>(nullptr), 0);  // refused
  EXPECT_EQ(plain.GetSize(), 6);

  Sorted view(store);
  Visible visible;
  view.SetFocus(H(store, 1), 1);
  view.SetFocus(H(store, 4), 1);
  view.recorder.Reset();
  view.Reload(0);  // unchanged: nothing told
  view.Reload(1);
  // A filter drops a focused handle without a word of its own; back in the
  // list it is not focused again.
  O(4).visible = 0;
  view.SetFilter(&visible);
  EXPECT_EQ(view.Ids(), (Ids{2, 5, 1, 3, 6}));
  EXPECT_EQ(view.FocusIds(), (Ids{1}));
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvReload, 0}, {EvReload, 0}}));
  view.SetFilter(nullptr);
  EXPECT_FALSE(view.IsInFocus(H(store, 4), nullptr));

  // With reloading forbidden nothing loads; SetSort empties the list. A
  // reload notes whether the focus had anything, as the temp item answer,
  // and a forbidden reload tells only when that answer changes.
  view.AllowReload(0);
  view.recorder.Reset();
  view.SetFilter(&visible);
  EXPECT_TRUE(view.GetSize() == 6 && view.recorder.heard.empty());  // the focus had 1: same answer
  view.SetSort(&ObjectStore::CompareKey, 1);
  EXPECT_EQ(view.GetSize(), 0);
  view.AllowReload(1);
  EXPECT_EQ(view.Ids(), (Ids{1, 3, 6, 2, 5}));
  view.SetFocus(0, 1);
  view.Reload(1);  // with no focus: answer 0
  view.AllowReload(0);
  view.recorder.Reset();
  view.Reload(0);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvChanged, 0}}));
  view.SetFilter(nullptr);
}

TEST_F(Reloading, HooksAreCountedPerNotifier) {
  ObjectStore local;
  StoreObject &a = local.Add(1, 10, true);
  StoreObject &b = local.Add(2, 20);
  StoreObject &c = local.Add(3, 30);
  local.Add(4, 40);
  b.notifier = a.notifier;  // three objects, one notifier
  c.notifier = a.notifier;
  StoreObject &d = local.Add(5, 50);
  d.notifier = std::shared_ptr<SCC_Notifier>(&local.source, [](SCC_Notifier *) {});
  Sorted view(local);
  SCC_Notifier &shared = *a.notifier;
  // One hook for the three; none on the source itself.
  EXPECT_EQ(shared.next->next, static_cast<SCC_EventNode<int> *>(&shared));
  EXPECT_TRUE(local.source.next == static_cast<SCC_EventNode<int> *>(&view) && view.next == &local.source);

  local.SetKey(c, 5);
  EXPECT_EQ(view.Ids(), (Ids{3, 1, 2, 4, 5}));
  for (StoreObject *gone : {&a, &b}) shared.Notify(EvDeleted, SCC_HandleToData(gone->Handle()));
  EXPECT_NE(shared.HasListeners(), 0);
  shared.Notify(EvDeleted, SCC_HandleToData(c.Handle()));
  EXPECT_EQ(shared.HasListeners(), 0);  // the last one took the hook along

  // A reload only adds: after two loads one deletion leaves the hook.
  Sorted twice(local);
  twice.Reload(1);
  shared.Notify(EvDeleted, SCC_HandleToData(a.Handle()));
  EXPECT_NE(shared.HasListeners(), 0);

  // A callback that drops the hooks while a reload walks does not leave the
  // walk holding a hook that is gone (the sanitizer would see it).
  struct Clearing : Sorted {
    using Sorted::Sorted;
    int Filter(SCC_Handle handle) override {
      if (armed && StoreObject::From(handle)->id == 2) {
        armed = false;
        Clear();
      }
      return 1;
    }
    bool armed = false;
  } clearing(local);
  clearing.armed = true;
  clearing.Reload(1);
  EXPECT_NE(shared.HasListeners(), 0);

  // A notifier that sent its listeners away gets the hook back at the next
  // connection instead of counting on a hook that hears nothing.
  SCC_Notifier nobody;
  shared = nobody;
  EXPECT_EQ(shared.HasListeners(), 0);
  twice.Reload(0);
  EXPECT_NE(shared.HasListeners(), 0);
  twice.recorder.Reset();
  local.SetKey(b, 45);
  EXPECT_EQ(twice.recorder.heard, (CodeIds{{EvDeleted, 2}, {EvAdded, 2}}));
}

// The parts and their pins: the child lists the pins of the focused parts.
class ParentAndChild : public ::testing::Test {
 protected:
  void SetUp() override {
    for (int id = 1; id <= 4; ++id) parts.Add(id, 10 * id);
    for (int id = 1; id <= 4; ++id) {
      for (int pin = 1; pin <= 3; ++pin) pins.Add(10 * id + pin, 10 * id + 4 - pin, false, parts.Find(id));
    }
  }
  ObjectStore parts;
  ObjectStore pins;
};

TEST_F(ParentAndChild, ChildFollowsTheParentsFocus) {
  Sorted parent(parts);
  ChildCollection child(pins, parent);
  IdRecorder heard(&child);
  child.SetNotificationHandler(&heard);
  child.SetSort(&ObjectStore::CompareKey, 0);
  child.AllowReload(1);  // nothing focused: nothing listed
  EXPECT_EQ(child.GetSize(), 0);
  parent.SetPosition(3);
  parent.SetFocus(H(parts, 2), 1);
  EXPECT_EQ(child.Ids(), (Ids{23, 22, 21}));
  EXPECT_EQ(parent.SliderId(), 4);  // put back after the child's walk
  parent.SetFocus(H(parts, 1), 0);
  EXPECT_EQ(child.Ids(), (Ids{13, 12, 11}));

  // A moving change of a focused part: the deletion is refused (it has left
  // the focus by then), the addition reloads, which finds nothing new.
  heard.Reset();
  parts.SetKey(*parts.Find(1), 45);
  EXPECT_EQ(parent.Ids(), (Ids{2, 3, 4, 1}));
  EXPECT_TRUE(heard.heard.empty());
  // An event about a part outside the focus does not reach the child; one
  // with no handle does.
  pins.Find(12)->key = 9;
  parts.Changed(*parts.Find(3));
  EXPECT_EQ(child.Ids(), (Ids{13, 12, 11}));
  parts.Tell(EvReload);  // the parent's list is the same: nobody told
  parent.GetChangeEvent()->Notify(EvReload, nullptr);
  EXPECT_EQ(child.Ids(), (Ids{12, 13, 11}));
  parts.Tell(EvSuspend);  // passes down
  EXPECT_NE(child.IsSuspended(), 0);
  parts.Tell(EvResume);
  // A deletion under the parent's slider, as a parent whose focus still
  // holds the object would send it: the child walks that object's pins.
  parent.SetFocus(H(parts, 3), 1);
  parent.SetSlider(H(parts, 3));
  heard.Reset();
  child.OnParentNotification(EvDeleted, nullptr);
  EXPECT_EQ(heard.heard, (CodeIds{{EvDeleted, 31}, {EvDeleted, 32}, {EvDeleted, 33}}));
  heard.Reset();
  parts.Tell(EvCleared);
  EXPECT_EQ(heard.heard, (CodeIds{{EvCleared, 0}}));
  EXPECT_TRUE(heard.lists[0].size() == 3u && child.GetSize() == 0);  // told before it empties
}

}  // namespace
}  // namespace tovik_test
