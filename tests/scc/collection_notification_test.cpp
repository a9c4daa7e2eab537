// SCC_StdCollection: what single changes do to the list, the focus, the
// position and the slider, and what listeners hear, in which order.
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

// The visible objects only.
class VisibleOnly : public Sorted {
 public:
  explicit VisibleOnly(ObjectStore &objects) : Sorted(objects) {
    Reload(0);  // the base loaded before this class's Filter was there
    recorder.Reset();
  }
  int Filter(SCC_Handle handle) override { return StoreObject::From(handle)->visible; }
};

TEST_F(Notification, AdditionGoesToItsPlaceAndThePositionKeepsItsNumber) {
  Sorted view(store);
  view.SetPosition(5);
  ASSERT_EQ(view.SliderId(), 6);
  store.Insert(11, 25);
  EXPECT_EQ(view.Ids(), (Ids{1, 2, 11, 3, 4, 5, 6, 7, 8, 9, 10}));
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvAdded, 11}}));
  EXPECT_EQ(view.recorder.sliders, (Ids{11}));
  // The same number, now on another object, and the slider with it.
  EXPECT_EQ(view.GetPosition(), 5);
  EXPECT_EQ(view.SliderId(), 5);

  // An equal key goes behind its equals; a repeated addition is not tested.
  store.Tell(EvAdded, O(11));
  EXPECT_EQ(view.Ids(), (Ids{1, 2, 11, 11, 3, 4, 5, 6, 7, 8, 9, 10}));
  EXPECT_EQ(view.GetPositionByHandle(O(11).Handle()), 2);  // the first one wins
}

TEST_F(Notification, DeletionIsToldWhileTheObjectIsStillListed) {
  Sorted view(store);
  view.SetFocus(O(10).Handle(), 1);
  view.SetHandleData(O(10).Handle(), 99);
  view.recorder.Reset();
  Ids focusWhenTold;
  view.recorder.action = [&](int, SCC_Handle) { focusWhenTold = view.FocusIds(); };
  view.SetPosition(9);

  store.Remove(O(10));
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvDeleted, 10}}));
  EXPECT_EQ(view.recorder.lists[0].size(), 10u);  // still listed while told
  EXPECT_EQ(view.recorder.sliders, (Ids{10}));
  EXPECT_TRUE(focusWhenTold.empty());  // but already out of the focus
  EXPECT_EQ(view.Ids(), (Ids{1, 2, 3, 4, 5, 6, 7, 8, 9}));
  // The position stood on the last object: off now, and the slider too.
  EXPECT_EQ(view.GetPosition(), -1);
  EXPECT_EQ(view.GetSlider(), 0);

  // A deletion of an object that is not listed tells nothing.
  StoreObject &stranger = store.Add(20, 5);
  view.recorder.Reset();
  store.Remove(stranger);
  EXPECT_TRUE(view.recorder.heard.empty());
}

TEST_F(Notification, ChangeInPlaceIsToldAsChange) {
  Sorted view(store);
  view.SetPosition(2);
  store.SetKey(O(5), 55);
  store.Changed(O(6), EvFocused);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvChanged, 5}, {EvFocused, 6}}));
  EXPECT_EQ(view.recorder.sliders, (Ids{5, 6}));
  EXPECT_EQ(view.Ids(), (Ids{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  EXPECT_EQ(view.GetPosition(), 2);
  EXPECT_EQ(view.SliderId(), 3);
}

TEST_F(Notification, ChangeThatMovesIsADeletionThenAnAddition) {
  Sorted view(store);
  SCC_Handle const h5 = O(5).Handle();
  view.SetFocus(h5, 1);
  view.SetHandleData(h5, 55);
  view.recorder.Reset();
  std::vector<bool> focusedWhenTold;
  view.recorder.action = [&](int, SCC_Handle) { focusedWhenTold.push_back(view.IsInFocus(h5, nullptr)); };

  store.SetKey(O(5), 95);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvDeleted, 5}, {EvAdded, 5}}));
  // Told 2 at its old place, 1 at its new one, the slider on it each time.
  EXPECT_EQ(view.recorder.lists[0], (Ids{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  EXPECT_EQ(view.recorder.lists[1], (Ids{1, 2, 3, 4, 6, 7, 8, 9, 5, 10}));
  EXPECT_EQ(view.recorder.sliders, (Ids{5, 5}));
  EXPECT_EQ(focusedWhenTold, (std::vector<bool>{false, true}));
  EXPECT_EQ(view.FocusIds(), (Ids{5}));
  EXPECT_EQ(view.GetHandleData(h5), 55);

  // Backwards, to the very front, and onto a tie (behind its equals).
  view.recorder.Reset();
  store.SetKey(O(9), 5);
  store.SetKey(O(1), 95);
  EXPECT_EQ(view.Ids(), (Ids{9, 2, 3, 4, 6, 7, 8, 5, 1, 10}));
  EXPECT_EQ(view.recorder.heard,
            (CodeIds{{EvDeleted, 9}, {EvAdded, 9}, {EvDeleted, 1}, {EvAdded, 1}}));
}

TEST_F(Notification, MovesKeepListAndCursorsAsADeletionAndAnInsertionWould) {
  // A move is made as one block move; what the list holds, what its
  // listeners hear and where cursors on it land must be those of a deletion
  // followed by an insertion behind the equals.
  std::mt19937 random(7);
  for (int descending = 0; descending <= 1; ++descending) {
    SCOPED_TRACE(descending);
    ObjectStore local;
    for (int id = 1; id <= 40; ++id) local.Add(id, static_cast<int>(random() % 8));
    Sorted view(local, descending);
    std::vector<std::unique_ptr<SCC_StdCollection::Position>> cursors;
    Recorder onList;
    view.ListenToList(onList);
    for (int round = 0; round < 200; ++round) {
      Ids before = view.Ids();
      std::int32_t const from = static_cast<std::int32_t>(random() % before.size());
      StoreObject &moving = *local.Find(before[static_cast<std::size_t>(from)]);
      int const key = static_cast<int>(random() % 8);
      // The expected list: where it is, if it still stands in order there;
      // otherwise out, and in again behind every equal key.
      moving.key = key;
      auto const mayPrecede = [&](int a, int b) { return descending ? a >= b : a <= b; };
      auto const keyAt = [&](std::size_t i) { return local.Find(before[i])->key; };
      std::size_t const f = static_cast<std::size_t>(from);
      bool const stays = (f == 0 || mayPrecede(keyAt(f - 1), key)) &&
                         (f + 1 == before.size() || mayPrecede(key, keyAt(f + 1)));
      Ids expected = before;
      std::size_t to = f;
      if (!stays) {
        expected.erase(expected.begin() + from);
        to = 0;
        while (to < expected.size() && mayPrecede(local.Find(expected[to])->key, key)) ++to;
        expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(to), moving.id);
      }
      // A cursor on every place.
      cursors.clear();
      for (std::int32_t i = 0; i < static_cast<std::int32_t>(before.size()); ++i) {
        cursors.push_back(std::make_unique<SCC_StdCollection::Position>());
        view.ListenToList(*cursors.back());
        cursors.back()->SetFocus(i);
      }
      onList.heard.clear();
      view.recorder.Reset();
      local.Changed(moving);
      ASSERT_EQ(view.Ids(), expected) << "round " << round;
      std::int32_t const at = static_cast<std::int32_t>(to);
      if (stays) {
        EXPECT_EQ(view.recorder.heard, (CodeIds{{EvChanged, moving.id}}));
        continue;
      }
      EXPECT_EQ(view.recorder.heard, (CodeIds{{EvDeleted, moving.id}, {EvAdded, moving.id}}));
      ASSERT_EQ(onList.heard.size(), 5u);
      EXPECT_EQ(onList.heard[0], (Recorder::Heard{EvDeleted, from + 1}));
      EXPECT_EQ(onList.heard[1].code, EvRemapped);
      EXPECT_EQ(onList.heard[2].code, EvRemapped);
      EXPECT_EQ(onList.heard[3], (Recorder::Heard{EvAdded, at + 1}));
      EXPECT_EQ(onList.heard[4], (Recorder::Heard{EvChanged, at + 1}));
      for (std::int32_t i = 0; i < static_cast<std::int32_t>(cursors.size()); ++i) {
        std::int32_t place = i == from ? -1 : i > from ? i - 1 : i;
        if (place >= at) ++place;
        EXPECT_EQ(cursors[static_cast<std::size_t>(i)]->GetFocus(), place) << "cursor " << i;
      }
    }
  }
}

TEST_F(Notification, ChangesThatFilterOutAndBringIn) {
  O(7).visible = 0;
  VisibleOnly view(store);
  ASSERT_EQ(view.Ids(), (Ids{1, 2, 3, 4, 5, 6, 8, 9, 10}));
  view.SetFocus(O(3).Handle(), 1);
  view.SetHandleData(O(3).Handle(), 33);
  view.recorder.Reset();

  store.SetVisible(O(3), 0);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvDeleted, 3}}));
  EXPECT_EQ(view.Ids(), (Ids{1, 2, 4, 5, 6, 8, 9, 10}));
  EXPECT_FALSE(view.HasFocus());
  EXPECT_EQ(view.GetHandleData(O(3).Handle()), 33);  // its data stays

  // Coming into view is an addition, whatever the code said.
  store.SetVisible(O(7), 1);
  store.Changed(O(3), EvFocused);  // still invisible: nothing
  O(3).visible = 1;
  store.Changed(O(3), EvFocused);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvDeleted, 3}, {EvAdded, 7}, {EvAdded, 3}}));
  EXPECT_EQ(view.Ids(), (Ids{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  EXPECT_FALSE(view.HasFocus());  // it lost its focus on the way out
}

TEST_F(Notification, ReloadClearAndPassedOnCodes) {
  Sorted view(store);
  view.SetFocus(O(2).Handle(), 1);
  view.SetHandleData(O(2).Handle(), 2);
  view.recorder.Reset();

  store.Tell(EvReload);  // nothing changed: nothing told
  EXPECT_TRUE(view.recorder.heard.empty());
  store.Add(11, 5);
  store.Tell(EvReload);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvReload, 0}}));
  EXPECT_EQ(view.Ids().front(), 11);
  EXPECT_EQ(view.FocusIds(), (Ids{2}));

  view.recorder.Reset();
  store.Tell(EvSuspend, SCC_HandleToData(7));
  store.Tell(EvResume, SCC_HandleToData(8));
  store.Tell(EvPropertyChanged, O(3));
  store.Tell(42, O(3));
  store.Tell(EvCleared);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvSuspend, 7}, {EvResume, 8}, {EvCleared, 0}}));
  EXPECT_EQ(view.recorder.lists.back().size(), 11u);  // told before it empties
  EXPECT_EQ(view.GetSize(), 0);
  EXPECT_FALSE(view.HasFocus());
  EXPECT_EQ(view.GetHandleData(O(2).Handle()), 0);
}

TEST_F(Notification, RemappingMapsListFocusAndQueue) {
  Sorted view(store);
  StoreObject &twin3 = store.Add(13, 30);  // stands in for 3, same key
  StoreObject &twin8 = store.Add(18, 80);
  view.SetFocus(O(8).Handle(), 1);
  view.SetFocus(O(1).Handle(), 1);
  view.Suspend(1);
  store.SetKey(O(3), 30);  // queued, about 3
  view.recorder.Reset();

  ObjectStore::Remapping remap{{O(3).Handle(), twin3.Handle()}, {O(8).Handle(), twin8.Handle()}};
  store.Tell(EvRemapped, &remap);
  ASSERT_EQ(view.recorder.heard.size(), 1u);
  EXPECT_EQ(view.recorder.heard[0].first, EvRemapped);
  EXPECT_EQ(view.Ids(), (Ids{1, 2, 13, 4, 5, 6, 7, 18, 9, 10}));
  Ids focus = view.FocusIds();
  std::sort(focus.begin(), focus.end());
  EXPECT_EQ(focus, (Ids{1, 18}));
  EXPECT_LT(view.GetFocus(0), view.GetFocus(1));  // sorted again
  // The queued change is now about the twin.
  view.recorder.Reset();
  view.Suspend(0);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvChanged, 13}}));
}

TEST_F(Notification, SuspendedQueueKeepsTheNewestEventPerHandle) {
  Sorted view(store);
  view.Suspend(1);
  view.Suspend(1);  // does not nest
  EXPECT_NE(view.IsSuspended(), 0);

  store.SetKey(O(2), 21);
  store.SetKey(O(2), 22);  // equal to the last: dropped at once
  store.Changed(O(4), EvChanged);
  store.Changed(O(4), EvFocused);
  store.Changed(O(4), EvChanged);  // three queued, one replayed: the newest
  store.SetKey(O(6), 65);
  EXPECT_TRUE(view.recorder.heard.empty());

  view.Suspend(0);
  EXPECT_EQ(view.IsSuspended(), 0);
  // Newest first.
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvChanged, 6}, {EvChanged, 4}, {EvChanged, 2}}));
  view.recorder.Reset();
  view.Suspend(0);  // not suspended: nothing
  EXPECT_TRUE(view.recorder.heard.empty());
}

TEST_F(Notification, SuspendedDeletionsAndReloadsAreNeverPutOff) {
  Sorted view(store);
  view.Suspend(1);
  StoreObject &passing = store.Insert(11, 5);
  store.SetKey(O(3), 35);
  store.Remove(passing);  // drops what was queued about it, and is not listed
  store.Remove(O(9));     // acts at once
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvDeleted, 9}}));
  view.Suspend(0);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvDeleted, 9}, {EvChanged, 3}}));
  EXPECT_EQ(view.Ids(), (Ids{1, 2, 3, 4, 5, 6, 7, 8, 10}));

  // Reload and clear empty the queue and act.
  view.recorder.Reset();
  view.Suspend(1);
  store.SetKey(O(4), 45);
  store.Add(12, 1);
  store.Tell(EvReload);
  view.Suspend(0);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvReload, 0}}));
  view.recorder.Reset();
  view.Suspend(1);
  store.SetKey(O(4), 46);
  store.Tell(EvCleared);
  view.Suspend(0);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvCleared, 0}}));
}

TEST_F(Notification, SmartSettlingReloadsForALongQueue) {
  struct Case {
    char const *name;
    int smart;
    int changes;  // distinct objects changed while suspended
    CodeIds expected;
  };
  Case const cases[] = {
      {"half the list: one reload", 1, 5, {{EvReload, 0}}},
      {"less than half: replayed, newest first", 1, 4,
       {{EvFocused, 10}, {EvChanged, 4}, {EvChanged, 3}, {EvChanged, 2}, {EvChanged, 1}}},
      {"not smart: always replayed", 0, 5,
       {{EvFocused, 10}, {EvChanged, 5}, {EvChanged, 4}, {EvChanged, 3}, {EvChanged, 2},
        {EvChanged, 1}}},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(c.name);
    ObjectStore local;
    for (int id = 1; id <= 10; ++id) local.Add(id, 10 * id);
    Sorted view(local);
    view.SetNotificationSmart(c.smart);
    view.Suspend(1);
    for (int id = 1; id <= c.changes; ++id) local.Changed(*local.Find(id));
    local.Changed(*local.Find(10), EvFocused);  // kept, but no reason to reload
    view.Suspend(0);
    EXPECT_EQ(view.recorder.heard, c.expected);
  }
  // An empty list with an empty queue reloads by force.
  ObjectStore empty;
  Sorted view(empty);
  view.SetNotificationSmart(1);
  view.Suspend(1);
  view.Suspend(0);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvReload, 0}}));
}

TEST_F(Notification, DisabledNodeIgnoresEverythingAndReloadsWhenEnabled) {
  Sorted view(store);
  view.Suspend(1);
  store.SetKey(O(2), 21);  // queued while enabled
  view.EnableEvent(0);
  EXPECT_TRUE(view.recorder.heard.empty());
  store.SetKey(O(3), 31);
  store.Tell(EvResume);  // ignored: still suspended
  EXPECT_NE(view.IsSuspended(), 0);
  store.Remove(O(10));
  store.Insert(11, 1);
  EXPECT_EQ(view.GetSize(), 10);
  view.Suspend(0);  // the replay comes to nothing
  EXPECT_TRUE(view.recorder.heard.empty());
  view.EnableEvent(1);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvReload, 0}}));
  EXPECT_EQ(view.Ids(), (Ids{11, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
  view.recorder.Reset();
  view.OnEventEnable(0);
  view.OnEventEnable(1);  // a forced reload, though nothing changed
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvReload, 0}}));
}

TEST_F(Notification, FilterRefusalComesFirstInEveryState) {
  VisibleOnly view(store);
  StoreObject &hidden = store.Add(11, 1);
  hidden.visible = 0;
  for (int code : {1, 2, 3, 4, 105}) {
    SCOPED_TRACE(code);
    store.Tell(code, hidden);
    view.Suspend(1);
    store.Tell(code, hidden);
    view.Suspend(0);
  }
  EXPECT_TRUE(view.recorder.heard.empty());
}

TEST_F(Notification, PerObjectNotifiersReachTheCollectionOnce) {
  ObjectStore local;
  for (int id = 1; id <= 6; ++id) local.Add(id, 10 * id, id % 2 == 0);
  Sorted view(local);
  StoreObject &even = *local.Find(4);
  EXPECT_NE(even.notifier->HasListeners(), 0);
  local.SetKey(even, 65);  // moves: its hook must survive, and hear it once
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvDeleted, 4}, {EvAdded, 4}}));
  EXPECT_EQ(view.Ids(), (Ids{1, 2, 3, 5, 6, 4}));
  local.SetKey(even, 66);
  EXPECT_EQ(view.recorder.heard.back(), (std::pair<int, int>{EvChanged, 4}));
  // A deletion drops the hook with the last object on it.
  view.recorder.Reset();
  even.notifier->Notify(EvDeleted, SCC_HandleToData(even.Handle()));
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvDeleted, 4}}));
  EXPECT_EQ(even.notifier->HasListeners(), 0);
}

TEST_F(Notification, ListenersMayCallBack) {
  Sorted view(store);
  // Focus what comes in, look around while something goes, and move the
  // cursor meanwhile: the position gets its number back afterwards.
  view.recorder.action = [&](int code, SCC_Handle handle) {
    if (code == EvAdded) view.SetFocus(handle, 1);
    if (code == EvDeleted) {
      EXPECT_EQ(view.GetAt(view.GetPositionByHandle(handle)), handle);
      view.SetPosition(0);
    }
  };
  view.SetPosition(3);
  StoreObject &added = store.Insert(11, 15);
  EXPECT_TRUE(view.IsInFocus(added.Handle(), nullptr));
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvAdded, 11}, {EvFocused, 11}}));
  store.Remove(O(7));
  EXPECT_EQ(view.GetPosition(), 3);
  EXPECT_EQ(view.SliderId(), 3);

  // A listener that reloads while an object moves: the object's cursor
  // follows the list through the rebuild, and nothing is lost.
  view.recorder.Reset();
  bool reloading = false;
  view.recorder.action = [&](int code, SCC_Handle) {
    if (code == EvDeleted && !reloading) {
      reloading = true;
      view.Reload(1);
    }
  };
  store.SetKey(O(2), 85);
  EXPECT_EQ(view.Ids(), (Ids{1, 11, 3, 4, 5, 6, 8, 2, 9, 10}));
  EXPECT_EQ(view.recorder.heard.front(), (std::pair<int, int>{EvDeleted, 2}));

  // A listener that leaves in the middle does not disturb the others.
  IdRecorder second;
  view.recorder.action = [&](int, SCC_Handle) { view.recorder.Leave(); };
  view.SetNotificationHandler(&second);
  view.recorder.Reset();
  store.SetKey(O(4), 41);
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvChanged, 4}}));
  EXPECT_EQ(second.heard, (CodeIds{{EvChanged, 4}}));
}

// Every code of the table in the three states: what listeners hear, and in
// which order, for one script of source events.
TEST_F(Notification, EveryCodeInEveryState) {
  enum State { kActive, kSuspended, kDisabled };
  struct Case {
    char const *name;
    State state;
    CodeIds whileRunning;  // heard during the script
    CodeIds afterResume;   // heard when the state ends
  };
  // Script: add 11 (key 55), change 2 in place, move 3 behind 8, focus-code
  // on 4, delete 5, a code 8 and an unknown code on 6, remap nothing, then
  // suspend and resume from the source.
  Case const cases[] = {
      {"active", kActive,
       {{EvAdded, 11}, {EvChanged, 2}, {EvDeleted, 3}, {EvAdded, 3}, {EvFocused, 4}, {EvDeleted, 5},
        {EvRemapped, -1}, {EvSuspend, 0}, {EvResume, 0}},
       {}},
      // The deletion acts at once; the resume from the source settles the
      // queue, newest first, one event per object, before it is passed on.
      // When 4 is replayed, 3 has not yet been moved away from before it,
      // so 4 no longer stands in order and moves too.
      {"suspended", kSuspended,
       {{EvDeleted, 5}, {EvRemapped, -1}, {EvSuspend, 0}, {EvDeleted, 4}, {EvAdded, 4}, {EvDeleted, 3},
        {EvAdded, 3}, {EvChanged, 2}, {EvAdded, 11}, {EvResume, 0}},
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
    if (c.state == kDisabled) view.EnableEvent(1);
    EXPECT_EQ(view.recorder.heard, c.afterResume);
  }
}

}  // namespace
}  // namespace tovik_test
