// SCC_StdCollection: construction, the cursor, the focus, handle data,
// copies and destruction.
#include "collection_support.h"

namespace tovik_test {
namespace {

class CollectionCore : public ::testing::Test {
 protected:
  void SetUp() override { Fill(store, {{1, 50}, {2, 10}, {3, 40}, {4, 20}, {5, 30}}); }
  ObjectStore store;
};

TEST_F(CollectionCore, LoadsNothingUntilReloadIsAllowed) {
  StoreCollection view(store);
  IdRecorder heard;
  view.SetNotificationHandler(&heard);
  view.SetSort(&ObjectStore::CompareKey, 0);
  EXPECT_EQ(view.GetSize(), 0);
  EXPECT_EQ(view.IsReloadAllowed(), 0);
  // Not loaded, but the source now has something to offer.
  EXPECT_EQ(heard.heard, (CodeIds{{EvChanged, 0}}));
  EXPECT_EQ(view.FindNextTempItem(0), H(store, 1));
  // A handle not listed puts the slider off, so the walk starts at the first.
  EXPECT_EQ(view.FindNextTempItem(H(store, 3)), H(store, 1));

  heard.Reset();
  view.AllowReload(1);
  EXPECT_EQ(view.Ids(), (Ids{2, 4, 5, 3, 1}));
  EXPECT_EQ(heard.heard, (CodeIds{{EvReload, 0}}));
  view.AllowReload(1);  // from 1 to 1: nothing
  EXPECT_EQ(heard.heard.size(), 1u);
  // Listed now, a handle is a place to start from; the slider comes back.
  view.SetSlider(H(store, 4));
  EXPECT_EQ(view.FindNextTempItem(H(store, 2)), H(store, 3));
  EXPECT_EQ(view.SliderId(), 4);

  view.Clear();
  EXPECT_EQ(view.GetSize(), 0);
  EXPECT_EQ(view.IsReloadAllowed(), 0);
  view.AllowReload(1);
  EXPECT_EQ(view.GetSize(), 5);
}

TEST_F(CollectionCore, CursorWalksListAndSliderTogether) {
  Sorted view(store);
  EXPECT_EQ(view.GetPositionByHandle(0), -1);
  EXPECT_EQ(view.GetPositionByHandle(H(store, 3)), 3);
  EXPECT_EQ(view.GetAt(-1), 0);
  EXPECT_EQ(view.GetAt(view.GetSize()), 0);
  EXPECT_EQ(view.GetPosition(), -1);
  EXPECT_NE(view.IsEmpty(), 0);

  Ids walked;
  for (int more = view.GetFirst(); more != 0; more = view.GetNext()) {
    walked.push_back(view.SliderId());
    EXPECT_EQ(view.GetAt(view.GetPosition()), view.GetSlider());
  }
  EXPECT_EQ(walked, (Ids{2, 4, 5, 3, 1}));
  EXPECT_EQ(view.GetSlider(), 0);
  EXPECT_EQ(view.GetPosition(), -1);
  EXPECT_EQ(view.GetNext(), 0);  // again at the end
  EXPECT_EQ(view.GetSlider(), 0);

  view.SetPosition(4);
  Ids back;
  do {
    back.push_back(view.SliderId());
  } while (view.GetPrev() != 0);
  EXPECT_EQ(back, (Ids{1, 3, 5, 4, 2}));
  EXPECT_EQ(view.GetSlider(), 0);

  view.SetSlider(H(store, 5));
  EXPECT_EQ(view.GetPosition(), 2);
  EXPECT_EQ(view.SliderId(), 5);
  // A handle that is not listed takes both off, not the slider to it.
  StoreObject &stranger = store.Add(9, 0);
  view.SetSlider(stranger.Handle());
  EXPECT_EQ(view.GetSlider(), 0);
  EXPECT_EQ(view.GetPosition(), -1);
  view.SetPosition(7);  // outside the list: both off
  EXPECT_EQ(view.GetSlider(), 0);
  EXPECT_EQ(view.GetPosition(), -1);
  EXPECT_EQ(view.GetNext(), 0);
}

TEST_F(CollectionCore, EmptyCollectionCursor) {
  ObjectStore empty;
  Sorted view(empty);
  EXPECT_EQ(view.GetFirst(), 0);
  EXPECT_EQ(view.GetSlider(), 0);
  EXPECT_EQ(view.GetNext(), 0);
  EXPECT_EQ(view.GetPrev(), 0);
  EXPECT_EQ(view.GetPositionByHandle(12345), -1);
  EXPECT_TRUE(view.recorder.heard.empty());  // nothing loaded, nothing told
}

TEST_F(CollectionCore, SetFocusModes) {
  Sorted view(store);
  IdRecorder &heard = view.recorder;
  SCC_Handle const h3 = H(store, 3);
  SCC_Handle const h5 = H(store, 5);
  view.SetPosition(1);

  view.SetFocus(h3, 1);
  view.SetFocus(h3, 1);  // already focused: told once
  EXPECT_EQ(heard.heard, (CodeIds{{EvFocused, 3}}));
  EXPECT_EQ(heard.sliders, (Ids{3}));  // the slider on the handle while told
  EXPECT_EQ(view.SliderId(), 4);       // and back afterwards
  EXPECT_EQ(view.GetPosition(), 1);

  view.SetFocus(h5, 7);  // an unknown mode adds
  EXPECT_EQ(view.FocusIds().size(), 2u);
  EXPECT_TRUE(view.IsInFocus(h3, nullptr));
  EXPECT_TRUE(view.IsInFocus(h5, nullptr));

  heard.Reset();
  view.SetFocus(h5, 0);  // replaces: emptied first, so told again
  EXPECT_EQ(view.FocusIds(), (Ids{5}));
  EXPECT_EQ(heard.heard, (CodeIds{{EvFocused, 5}}));
  view.SetFocus(h5, 0);
  EXPECT_EQ(heard.heard.size(), 2u);

  heard.Reset();
  view.SetPosition(3);
  view.SetFocus(h3, 2);  // silently: no slider work, nobody told
  EXPECT_TRUE(heard.heard.empty());
  EXPECT_EQ(view.GetPosition(), 3);
  EXPECT_EQ(view.SliderId(), 3);
  EXPECT_TRUE(view.IsInFocus(h3, nullptr));
  view.SetFocus(h3, 2);  // already focused: still no slider work
  EXPECT_EQ(view.GetPosition(), 3);
  EXPECT_TRUE(heard.heard.empty());

  // Removing is told with data 0; removing what is not focused changes
  // nothing and tells nothing.
  view.SetFocus(h3, -1);
  EXPECT_FALSE(view.IsInFocus(h3, nullptr));
  EXPECT_EQ(heard.heard, (CodeIds{{EvFocused, 0}}));
  EXPECT_EQ(heard.sliders, (Ids{3}));
  view.SetFocus(h3, -1);
  EXPECT_EQ(heard.heard.size(), 1u);

  // Handle 0, or one not listed, clears the focus and does nothing else.
  heard.Reset();
  view.SetFocus(h3, 1);
  heard.Reset();
  view.SetFocus(store.Add(8, 1).Handle(), 1);
  EXPECT_FALSE(view.HasFocus());
  EXPECT_TRUE(heard.heard.empty());
  view.SetFocus(h3, 1);
  view.SetFocus(0, -1);
  EXPECT_FALSE(view.HasFocus());
}

TEST_F(CollectionCore, FocusIsSortedByHandleAndAnswersPlaces) {
  Sorted view(store);
  std::vector<SCC_Handle> handles;
  for (int id : {4, 1, 5}) {
    handles.push_back(H(store, id));
    view.SetFocus(handles.back(), 1);
  }
  std::sort(handles.begin(), handles.end());
  for (std::int32_t i = 0; i < 3; ++i) {
    EXPECT_EQ(view.GetFocus(i), handles[static_cast<std::size_t>(i)]);
    std::int32_t index = -1;
    EXPECT_TRUE(view.IsInFocus(handles[static_cast<std::size_t>(i)], &index));
    EXPECT_EQ(index, i);
  }
  EXPECT_EQ(view.GetFocus(3), 0);
  EXPECT_EQ(view.GetFocus(-1), 0);
  std::int32_t index = -1;
  EXPECT_FALSE(view.IsInFocus(handles[0] - 1, &index));
  EXPECT_EQ(index, 0);  // where it would go
  EXPECT_FALSE(view.IsInFocus(handles[2] + 1, &index));
  EXPECT_EQ(index, 3);
}

TEST_F(CollectionCore, HandleDataTravelsThroughTheSource) {
  Sorted view(store);
  Sorted other(store);
  SCC_Handle const h4 = H(store, 4);
  EXPECT_EQ(view.GetHandleData(h4), 0);
  view.SetHandleData(h4, -77);
  EXPECT_EQ(view.GetHandleData(h4), -77);
  EXPECT_EQ(other.GetHandleData(h4), 0);  // data stays with its collection
  // Both collections on the source hear of it as a change in place.
  EXPECT_EQ(view.recorder.heard, (CodeIds{{EvChanged, 4}}));
  EXPECT_EQ(other.recorder.heard, (CodeIds{{EvChanged, 4}}));
  // Pointer-sized data.
  view.SetHandleData(h4, static_cast<std::intptr_t>(INT64_C(0x123456789A)));
  EXPECT_EQ(view.GetHandleData(h4), INT64_C(0x123456789A));

  // Without a source the data is kept and nobody is told.
  StoreCollection loose(store);
  loose.Leave();
  loose.SetHandleData(h4, 5);
  EXPECT_EQ(loose.GetHandleData(h4), 5);
}

TEST_F(CollectionCore, ChildWithoutParentStillHearsTheOldOne) {
  Sorted parentView(store);
  StoreCollection child(store, &parentView);
  IdRecorder heard;
  child.SetNotificationHandler(&heard);
  child.SetParent(nullptr);
  heard.Reset();
  EXPECT_EQ(child.GetParent(), nullptr);
  // Its hook still stands on the old parent's notifier: data 0 passes,
  // a handle does not, for want of a parent to ask.
  EXPECT_EQ(child.HandleNotificationsAllowed(0), 1);
  EXPECT_EQ(child.HandleNotificationsAllowed(H(store, 1)), 0);
  parentView.GetChangeEvent()->Notify(EvSuspend, nullptr);
  EXPECT_NE(child.IsSuspended(), 0);
  parentView.GetChangeEvent()->Notify(EvCleared, SCC_HandleToData(H(store, 1)));
  EXPECT_EQ(heard.heard, (CodeIds{{EvSuspend, 0}}));
}

TEST_F(CollectionCore, CopiesShareTheListAndTakeOverListeners) {
  StoreObject &shared = store.Add(6, 60, true);
  Sorted original(store);
  original.SetFocus(H(store, 3), 1);
  original.SetHandleData(H(store, 2), 22);
  original.SetPosition(2);
  original.recorder.Reset();

  Sorted copyTarget(store);  // assignment target, with a listener of its own
  {
    StoreCollection copy(original);
    EXPECT_EQ(copy.Ids(), original.Ids());
    EXPECT_EQ(copy.FocusIds(), (Ids{3}));
    EXPECT_EQ(copy.GetHandleData(H(store, 2)), 22);
    EXPECT_EQ(copy.GetPosition(), 2);
    // The copy took the listeners; the original has none left.
    EXPECT_EQ(original.GetChangeEvent()->HasListeners(), 0);
    EXPECT_EQ(original.recorder.GetOwner(), copy.GetChangeEvent());
    // The copy stands in the source's ring just before the original.
    EXPECT_EQ(copy.GetOwner(), &store.source);
    EXPECT_EQ(copy.next, &original);
    // Both hear the source; the copy's hook on the object's own notifier
    // reaches the copy.
    store.SetKey(shared, 5);
    EXPECT_EQ(copy.Ids().front(), 6);
    EXPECT_EQ(original.Ids().front(), 6);
    EXPECT_EQ(original.recorder.heard, (CodeIds{{EvDeleted, 6}, {EvAdded, 6}}));
    original.GetChangeEvent()->operator=(*copy.GetChangeEvent());  // listeners back
  }
  // The copy's hook left the object's notifier with the copy.
  store.SetKey(shared, 65);
  EXPECT_EQ(original.Ids().back(), 6);

  SCC_StdCollection &target = copyTarget;
  target = original;
  EXPECT_EQ(copyTarget.Ids(), original.Ids());
  EXPECT_EQ(copyTarget.recorder.GetOwner(), nullptr);  // sent away by the assignment
  EXPECT_EQ(original.recorder.GetOwner(), copyTarget.GetChangeEvent());
  SCC_StdCollection &same = target;
  target = same;  // assigning to itself changes nothing
  EXPECT_EQ(copyTarget.GetSize(), 6);
  EXPECT_EQ(original.recorder.GetOwner(), copyTarget.GetChangeEvent());
}

TEST_F(CollectionCore, DestructionLeavesEverythingItListenedTo) {
  StoreObject &own = store.Add(6, 60, true);
  IdRecorder listener;
  {
    Sorted parentView(store);
    parentView.SetNotificationHandler(&listener);
    StoreCollection child(store, &parentView);
    EXPECT_NE(own.notifier->HasListeners(), 0);
  }
  EXPECT_EQ(own.notifier->HasListeners(), 0);
  EXPECT_EQ(store.source.HasListeners(), 0);
  EXPECT_EQ(listener.GetOwner(), nullptr);  // alive and alone
}

}  // namespace
}  // namespace tovik_test
