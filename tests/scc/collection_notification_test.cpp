// SCC_StdCollection: what single changes do to the list, the focus, the
// position and the slider, and what listeners hear, in which order.
#include <algorithm>
#include <cstdlib>
#include <random>

#include "collection_support.h"

namespace tovik_test {
namespace {

// Ten objects, id i with key 10 * i: the sorted list is 1 to 10.
class Notification : public ::testing::Test {
 protected:
  void SetUp() override {
    for (int id = 1; id <= 10; ++id) store.Add(id, 10 * id);
  }
  StoreObject &O(int id) { return *store.Find(id); }
  ObjectStore store;
};

TEST_F(Notification, SingleChangesKeepThePositionsNumberAndTellAtTheRightMoment) {
  Sorted view(store);
  SCC_Handle const h5 = O(5).Handle();
  view.SetFocus(h5, 1);
  view.SetHandleData(h5, 55);
  view.SetPosition(5);
  view.recorder.Reset();
  std::vector<bool> focused;
  view.recorder.action = [&](int, SCC_Handle) { focused.push_back(view.IsInFocus(h5, nullptr)); };
  store.Insert(11, 25);
  store.SetKey(O(5), 95);
  store.SetKey(O(6), 65);  // in place
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvAdded, 11}, {EvDeleted, 5}, {EvAdded, 5}, {EvChanged, 6}}));
  // A move is told at its old place, then at its new one, the slider on it
  // each time, out of the focus while it is out of the list.
  EXPECT_EQ(view.recorder.lists[1], (Ids{1, 2, 11, 3, 4, 5, 6, 7, 8, 9, 10}));
  EXPECT_EQ(view.recorder.lists[2], (Ids{1, 2, 11, 3, 4, 6, 7, 8, 9, 5, 10}));
  EXPECT_EQ(view.recorder.sliders, (Ids{11, 5, 5, 6}));
  EXPECT_EQ(focused, (std::vector<bool>{true, false, true, true}));
  EXPECT_EQ(view.GetHandleData(h5), 55);
  // The same number, now on another object, and the slider with it.
  EXPECT_TRUE(view.GetPosition() == 5 && view.SliderId() == 6);

  // A listener may call back: one that reloads while an object moves has
  // the object taken out where it stands after the rebuild, and nothing else
  // is lost; the position gets its number back afterwards.
  view.recorder.Reset();
  view.recorder.action = [&](int code, SCC_Handle) {
    if (code == EvDeleted) view.Reload(1), view.SetPosition(0);
  };
  store.SetKey(O(2), 85);
  EXPECT_EQ(view.Ids(), (Ids{1, 11, 3, 4, 6, 7, 8, 2, 9, 5, 10}));
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvDeleted, 2}, {EvReload, 0}, {EvAdded, 2}}));
  EXPECT_EQ(view.GetPosition(), 5);
  // A deletion is told while the object is still listed; the position on
  // the last object goes off, and the slider too.
  view.recorder.action = nullptr;
  view.SetPosition(10);
  store.Remove(O(10));
  EXPECT_EQ(view.recorder.lists.back().size(), 11u);
  EXPECT_TRUE(view.GetPosition() == -1 && view.GetSlider() == 0);
  // Leaving the filter is a deletion, coming into it an addition, whatever the code said.
  struct : SYS_Filter {
    int IsTrue(SCC_Handle handle) override { return StoreObject::From(handle)->visible; }
  } visible;
  view.SetFilter(&visible);
  view.recorder.Reset();
  store.SetVisible(O(3), 0);
  store.Changed(O(3), EvFocused);  // still out: nothing
  O(3).visible = 1;
  store.Changed(O(3), EvFocused);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvDeleted, 3}, {EvAdded, 3}}));
  view.SetFilter(nullptr);
}

TEST_F(Notification, MovesKeepListAndCursorsAsADeletionAndAnInsertionWould) {
  // A move is one block move, but must look like a deletion then an
  // insertion behind the equals; an object still in order stays.
  std::mt19937 random(7);
  for (int descending = 0; descending <= 1; ++descending) {
    SCOPED_TRACE(descending);
    ObjectStore local;
    for (int id = 1; id <= 40; ++id) local.Add(id, static_cast<int>(random() % 8));
    Sorted view(local, descending);
    Recorder onList;
    view.ListenToList(onList);
    auto const mayPrecede = [&](int a, int b) { return descending ? a >= b : a <= b; };
    for (int round = 0; round < 200; ++round) {
      Ids const before = view.Ids();
      std::size_t const from = random() % before.size();
      StoreObject &moving = *local.Find(before[from]);
      int const key = moving.key = static_cast<int>(random() % 8);
      auto const keyAt = [&](std::size_t i) { return local.Find(before[i])->key; };
      bool const stays = (from == 0 || mayPrecede(keyAt(from - 1), key)) &&
                         (from + 1 == before.size() || mayPrecede(key, keyAt(from + 1)));
      Ids expected = before;
      std::size_t to = from;
      if (!stays) {
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(from));
        to = 0;
        while (to < expected.size() && mayPrecede(local.Find(expected[to])->key, key)) ++to;
        expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(to), moving.id);
      }
      std::vector<std::unique_ptr<SCC_StdCollection::Position>> cursors(before.size());
      for (std::size_t i = 0; i < before.size(); ++i) {
        cursors[i] = std::make_unique<SCC_StdCollection::Position>();
        view.ListenToList(*cursors[i]);
        cursors[i]->SetFocus(static_cast<std::int32_t>(i));
      }
      onList.heard.clear();
      view.recorder.Reset();
      local.Changed(moving);
      ASSERT_EQ(view.Ids(), expected) << "round " << round;
      EXPECT_EQ(view.recorder.heard, (stays ? CodeIds{{EvChanged, moving.id}}
                                            : CodeIds{{EvDeleted, moving.id}, {EvAdded, moving.id}}));
      if (stays) continue;
      SCC_Handle const at = static_cast<SCC_Handle>(to) + 1;
      EXPECT_EQ(onList.heard, (std::vector<Recorder::Heard>{{EvDeleted, static_cast<SCC_Handle>(from) + 1},
                                                  onList.heard[1], onList.heard[2], {EvAdded, at},
                                                  {EvChanged, at}}));
      for (std::size_t i = 0; i < cursors.size(); ++i) {
        std::int32_t place = i == from ? -1 : static_cast<std::int32_t>(i > from ? i - 1 : i);
        if (place >= at - 1) ++place;
        EXPECT_EQ(cursors[i]->GetFocus(), place) << "cursor " << i;
      }
    }
  }
}

TEST_F(Notification, RemappingMapsListFocusAndQueueEvenWhileSuspended) {
  Sorted view(store);
  view.SetFocus(O(8).Handle(), 1);
  view.SetFocus(O(1).Handle(), 1);
  StoreObject &twin3 = store.Add(13, 30), &twin8 = store.Add(18, 80);  // stand-ins with the same keys
  view.Suspend(1);
  store.SetKey(O(3), 30);
  ObjectStore::Remapping remap{{O(3).Handle(), twin3.Handle()}, {O(8).Handle(), twin8.Handle()}};
  store.Tell(EvRemapped, &remap);
  EXPECT_EQ(view.Ids(), (Ids{1, 2, 13, 4, 5, 6, 7, 18, 9, 10}));
  EXPECT_TRUE(view.IsInFocus(twin8.Handle(), nullptr) && view.GetFocus(0) < view.GetFocus(1));  // sorted again
  view.recorder.Reset();
  view.Suspend(0);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvChanged, 13}}));
}

TEST_F(Notification, SuspendedQueueSettlesNewestFirstOneEventPerObject) {
  Sorted view(store);
  view.Suspend(1);
  store.SetKey(O(2), 21);
  store.SetKey(O(2), 22);
  store.Changed(O(4), EvChanged);
  store.Changed(O(4), EvFocused);
  store.Changed(O(4), EvChanged);
  StoreObject &passing = store.Insert(11, 5);
  store.Remove(passing);  // drops what was queued about it; not listed
  store.Remove(O(9));     // never put off
  store.SetKey(O(6), 65);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvDeleted, 9}}));
  view.Suspend(0);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvDeleted, 9}, {EvChanged, 6}, {EvChanged, 4}, {EvChanged, 2}}));

  // Reload and clear empty the queue and act at once; clear is told before
  // the list, the focus and the handle data go.
  view.SetFocus(O(1).Handle(), 1);
  view.SetHandleData(O(1).Handle(), 1);
  view.recorder.Reset();
  view.Suspend(1);
  store.SetKey(O(4), 45);
  store.Add(12, 1);
  store.Tell(EvReload);
  view.Suspend(0);
  view.Suspend(1);
  store.SetKey(O(4), 46);
  store.Tell(EvCleared);
  view.Suspend(0);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvReload, 0}, {EvCleared, 0}}));
  EXPECT_EQ(view.recorder.lists.back().size(), 10u);
  EXPECT_TRUE(view.GetSize() == 0 && !view.HasFocus() && view.GetHandleData(O(1).Handle()) == 0);

  // A smart collection reloads once for a queue of changes to half the list
  // or more; code 4 does not count.
  struct Case {
    char const *name;
    int smart, changes;  // objects changed while suspended, then a code 4 on 10
    CodeIds expected;
  };
  Case const cases[] = {
      {"half the list changed: one reload", 1, 5, {{EvReload, 0}}},
      {"less than half: replayed", 1, 4, {{EvFocused, 10}, {EvChanged, 4}, {EvChanged, 3}, {EvChanged, 2}, {EvChanged, 1}}},
      {"not smart: replayed", 0, 5, {{EvFocused, 10}, {EvChanged, 5}, {EvChanged, 4}, {EvChanged, 3}, {EvChanged, 2}, {EvChanged, 1}}},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(c.name);
    ObjectStore local;
    for (int id = 1; id <= 10; ++id) local.Add(id, 10 * id);
    Sorted smart(local);
    smart.SetNotificationSmart(c.smart);
    smart.Suspend(1);
    for (int id = 1; id <= c.changes; ++id) local.Changed(*local.Find(id));
    local.Changed(*local.Find(10), EvFocused);
    smart.Suspend(0);
    EXPECT_EQ(smart.recorder.heard, c.expected);
  }
}

// Every code of the table in the three states: what listeners hear, and in
// which order, for one script of source events.
TEST_F(Notification, EveryCodeInEveryState) {
  enum State { kActive, kSuspended, kDisabled };
  struct Case {
    char const *name;
    State state;
    CodeIds whileRunning;  // heard during the script
    CodeIds afterwards;    // heard when the node is enabled again
  };
  // Script: add 11 (key 55), change 2 in place, move 3 behind 8, code 4 on
  // 4, delete 5, codes 8 and 77 on 6, a remapping, then suspend and resume
  // from the source.
  Case const cases[] = {
      {"active", kActive,
       {{EvAdded, 11}, {EvChanged, 2}, {EvDeleted, 3}, {EvAdded, 3}, {EvFocused, 4}, {EvDeleted, 5},
        {EvRemapped, -1}, {EvSuspend, 0}, {EvResume, 0}},
       {}},
      // The deletion acts at once; the resume settles the queue, newest
      // first, before it is passed on. When 4 is replayed, 3 has not yet
      // moved away from before it, so 4 stands out of order and moves too.
      {"suspended", kSuspended,
       {{EvDeleted, 5}, {EvRemapped, -1}, {EvSuspend, 0}, {EvDeleted, 4}, {EvAdded, 4},
        {EvDeleted, 3}, {EvAdded, 3}, {EvChanged, 2}, {EvAdded, 11}, {EvResume, 0}},
       {}},
      {"disabled", kDisabled, {}, {{EvReload, 0}}},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(c.name);
    ObjectStore local;
    for (int id = 1; id <= 10; ++id) local.Add(id, 10 * id);
    Sorted view(local);
    if (c.state == kSuspended) view.Suspend(1);
    if (c.state == kDisabled) view.EnableEvent(0);
    ObjectStore::Remapping none;
    local.Insert(11, 55);
    local.SetKey(*local.Find(2), 21);
    local.SetKey(*local.Find(3), 85);
    local.Changed(*local.Find(4), EvFocused);
    local.Remove(*local.Find(5));
    local.Changed(*local.Find(6), EvPropertyChanged);
    local.Changed(*local.Find(6), 77);
    local.Tell(EvRemapped, &none);
    local.Tell(EvSuspend);
    local.Tell(EvResume);
    CodeIds heard = view.recorder.heard;
    for (auto &entry : heard) {
      if (entry.first == EvRemapped) entry.second = -1;
    }
    EXPECT_EQ(heard, c.whileRunning);
    view.recorder.Reset();
    view.Suspend(0);  // a disabled node replays nothing
    view.EnableEvent(1);
    EXPECT_EQ(view.recorder.heard, c.afterwards);
    EXPECT_EQ(view.GetSize(), 10);
  }
}

bool InKeyOrder(StoreCollection &view) {
  for (std::int32_t i = 1; i < view.GetSize(); ++i) {
    if (ObjectStore::CompareKey(view.GetAt(i - 1), view.GetAt(i)) > 0) return false;
  }
  return true;
}

// Replayed changes are placed while other queued objects still stand where
// their old keys put them; the list must still end in order. Random batches
// of moves, ties, additions and deletions, after a seven-object trace.
TEST(SettledBatches, LeaveTheListSorted) {
  ObjectStore seven;
  for (int id = 1; id <= 7; ++id) seven.Add(id, 10 * id);
  Sorted trace(seven);
  trace.Suspend(1);
  seven.SetKey(*seven.Find(5), 100);
  seven.SetKey(*seven.Find(1), 65);  // replayed first, while 5 still stands at 50
  trace.Suspend(0);
  EXPECT_EQ(trace.Ids(), (Ids{2, 3, 4, 6, 1, 7, 5}));
  EXPECT_EQ(trace.recorder.heard, (CodeIds{{EvDeleted, 1}, {EvAdded, 1}, {EvDeleted, 5}, {EvAdded, 5}}));

  for (int n : {1000, 10000}) {
    SCOPED_TRACE(n);
    std::mt19937 random(static_cast<unsigned>(n));
    ObjectStore local;
    for (int id = 1; id <= n; ++id) local.Add(id, static_cast<int>(random() % 5000));
    Sorted view(local);
    view.recorder.collection = nullptr;
    int nextId = n + 1;
    for (int batch = 0; batch < 20; ++batch) {
      view.Suspend(1);
      for (int k = 0, changes = 1 + static_cast<int>(random() % 200); k < changes; ++k) {
        StoreObject &object = *local.order[random() % local.order.size()];
        switch (random() % 8) {
          case 0: local.Insert(nextId++, static_cast<int>(random() % 5000)); break;
          case 1: local.Remove(object); break;
          default: local.SetKey(object, static_cast<int>(random() % 5000)); break;
        }
      }
      view.Suspend(0);
      ASSERT_TRUE(InKeyOrder(view)) << "batch " << batch;
      ASSERT_EQ(view.GetSize(), static_cast<std::int32_t>(local.order.size()));
    }
  }
}

// With one object moving and the others changed in place away from it,
// listeners hear, newest first, a change for each and a deletion and an
// addition for the one that moves.
TEST(SettledBatches, OneMoveAmongChangesInPlaceIsToldAsSuch) {
  for (int n : {1000, 10000}) {
    SCOPED_TRACE(n);
    std::mt19937 random(static_cast<unsigned>(n) + 1);
    for (int batch = 0; batch < 10; ++batch) {
      ObjectStore local;
      for (int id = 1; id <= n; ++id) local.Add(id, 10 * id);  // at index id - 1
      Sorted view(local);
      view.recorder.collection = nullptr;
      int const mover = 1 + static_cast<int>(random() % n);
      std::vector<int> changed{mover};
      while (changed.size() < 51) {
        int const id = 1 + static_cast<int>(random() % n);
        if (std::abs(id - mover) >= 2 && std::count(changed.begin(), changed.end(), id) == 0) changed.push_back(id);
      }
      std::swap(changed[0], changed[random() % 51]);
      view.Suspend(1);
      CodeIds expected;
      for (int id : changed) {
        // + 1 stays between the neighbours; a key ending in 5 moves unless it
        // falls next to the old one.
        int const key = id == mover ? 10 * static_cast<int>(random() % n) + 5 : 10 * id + 1;
        local.SetKey(*local.Find(id), key);
        bool const moves = id == mover && std::abs(key - 10 * id) > 10;
        CodeIds const told = moves ? CodeIds{{EvDeleted, id}, {EvAdded, id}} : CodeIds{{EvChanged, id}};
        expected.insert(expected.begin(), told.begin(), told.end());
      }
      view.Suspend(0);
      ASSERT_EQ(view.recorder.heard, expected) << "batch " << batch;
      ASSERT_TRUE(InKeyOrder(view));
    }
  }
}

}  // namespace
}  // namespace tovik_test
