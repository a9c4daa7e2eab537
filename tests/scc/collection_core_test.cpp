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
  // Not loaded, but the source has something to offer now: a temp item.
  EXPECT_TRUE(view.GetSize() == 0 && heard.heard == (CodeIds{{EvChanged, 0}}));
  EXPECT_EQ(view.FindNextTempItem(0), H(store, 1));
  heard.Reset();
  view.AllowReload(1);
  view.AllowReload(1);  // from 1 to 1: nothing
  EXPECT_EQ(view.Ids(), (Ids{2, 4, 5, 3, 1}));
  EXPECT_EQ(heard.heard, (CodeIds{{EvReload, 0}}));
  // The walk is in the source's order, from the handle on; the slider comes back.
  view.SetSlider(H(store, 4));
  EXPECT_EQ(view.FindNextTempItem(H(store, 2)), H(store, 3));
  EXPECT_EQ(view.SliderId(), 4);
}

TEST_F(CollectionCore, CursorWalksListAndSliderTogether) {
  Sorted view(store);
  EXPECT_TRUE(view.GetPositionByHandle(H(store, 3)) == 3 && view.GetAt(view.GetSize()) == 0);
  Ids walked;
  for (int more = view.GetFirst(); more != 0; more = view.GetNext()) {
    walked.push_back(view.SliderId());
    EXPECT_EQ(view.GetAt(view.GetPosition()), view.GetSlider());
  }
  EXPECT_EQ(walked, (Ids{2, 4, 5, 3, 1}));
  EXPECT_EQ(view.GetSlider(), 0);
  view.SetPosition(1);
  EXPECT_EQ(view.GetPrev(), 1);
  EXPECT_TRUE(view.GetPrev() == 0 && view.GetSlider() == 0);
  // A handle that is not listed takes both off; so does an index outside.
  view.SetSlider(store.Add(9, 0).Handle());
  EXPECT_TRUE(view.GetSlider() == 0 && view.GetPosition() == -1);
  view.SetPosition(2);
  view.SetPosition(7);
  EXPECT_TRUE(view.GetSlider() == 0 && view.GetPosition() == -1);
}

TEST_F(CollectionCore, SetFocusModes) {
  Sorted view(store);
  IdRecorder &heard = view.recorder;
  SCC_Handle const h3 = H(store, 3);
  SCC_Handle const h5 = H(store, 5);
  view.SetPosition(1);
  view.SetFocus(h3, 1);
  view.SetFocus(h3, 1);  // already focused: told once
  view.SetFocus(h5, 7);  // an unknown mode adds
  EXPECT_EQ(heard.heard, (CodeIds{{EvFocused, 3}, {EvFocused, 5}}));
  EXPECT_EQ(heard.sliders, (Ids{3, 5}));  // the slider on the handle while told,
  EXPECT_EQ(view.SliderId(), 4);          // and back afterwards
  std::int32_t index = -1;
  EXPECT_FALSE(view.IsInFocus(std::max(h3, h5) + 1, &index));
  EXPECT_EQ(index, 2);  // sorted by handle value: where it would go

  heard.Reset();
  view.SetFocus(h5, 0);  // replaces: emptied first, so told again
  EXPECT_EQ(view.FocusIds(), (Ids{5}));
  view.SetPosition(3);
  view.SetFocus(h3, 2);  // silently: no slider work, nobody told
  EXPECT_EQ(view.SliderId(), 3);
  EXPECT_EQ(heard.heard, (CodeIds{{EvFocused, 5}}));
  // Removing is told with data 0; removing what is not focused tells nothing.
  view.SetFocus(h3, -1);
  view.SetFocus(h3, -1);
  EXPECT_EQ(heard.heard, (CodeIds{{EvFocused, 5}, {EvFocused, 0}}));
  EXPECT_EQ(heard.sliders.back(), 3);
  // A handle not listed only clears the focus.
  view.SetFocus(store.Add(8, 1).Handle(), 1);
  EXPECT_TRUE(!view.HasFocus() && heard.heard.size() == 2u);

  // Handle data (pointer-sized) stays with its collection, and every
  // collection on the source hears of it as a change in place.
  Sorted other(store);
  heard.Reset();
  view.SetHandleData(h3, static_cast<std::intptr_t>(INT64_C(0x123456789A)));
  EXPECT_TRUE(view.GetHandleData(h3) == INT64_C(0x123456789A) && other.GetHandleData(h3) == 0);
  EXPECT_EQ(heard.heard, (CodeIds{{EvChanged, 3}}));
  EXPECT_EQ(other.recorder.heard, (CodeIds{{EvChanged, 3}}));
}

TEST_F(CollectionCore, CopiesShareTheListAndTakeOverListeners) {
  StoreObject &own = store.Add(6, 60, true);
  Sorted original(store);
  original.SetFocus(H(store, 3), 1);
  original.SetHandleData(H(store, 2), 22);
  original.SetPosition(2);
  original.recorder.Reset();
  {
    StoreCollection copy(original);
    EXPECT_EQ(copy.Ids(), original.Ids());
    EXPECT_EQ(copy.FocusIds(), (Ids{3}));
    EXPECT_TRUE(copy.GetHandleData(H(store, 2)) == 22 && copy.GetPosition() == 2);
    EXPECT_EQ(original.recorder.GetOwner(), copy.GetChangeEvent());  // taken over
    EXPECT_EQ(copy.next, &original);  // just before it in the source's ring
    // Its hook on the object's notifier reaches the copy, once.
    store.SetKey(own, 5);
    EXPECT_TRUE(copy.Ids().front() == 6 && original.Ids().front() == 6);
    EXPECT_EQ(original.recorder.heard, (CodeIds{{EvDeleted, 6}, {EvAdded, 6}}));
    *original.GetChangeEvent() = *copy.GetChangeEvent();  // listeners back
  }
  store.SetKey(own, 65);  // the copy's hook went with the copy
  EXPECT_EQ(original.Ids().back(), 6);

  Sorted assigned(store);
  SCC_StdCollection &target = assigned;
  target = original;
  EXPECT_EQ(assigned.Ids(), original.Ids());
  EXPECT_TRUE(assigned.recorder.GetOwner() == nullptr && original.recorder.GetOwner() == assigned.GetChangeEvent());
}

TEST_F(CollectionCore, DestructionLeavesEverythingItListenedTo) {
  StoreObject &own = store.Add(6, 60, true);
  IdRecorder listener;
  {
    Sorted parentView(store);
    parentView.SetNotificationHandler(&listener);
    StoreCollection child(store, &parentView);
    // Without a parent any more it still hears the old one, but only data 0.
    child.SetParent(nullptr);
    EXPECT_TRUE(child.HandleNotificationsAllowed(0) == 1 && child.HandleNotificationsAllowed(H(store, 1)) == 0);
    parentView.GetChangeEvent()->Notify(EvSuspend, nullptr);
    EXPECT_TRUE(child.IsSuspended() != 0 && own.notifier->HasListeners() != 0);
  }
  EXPECT_EQ(own.notifier->HasListeners() + store.source.HasListeners(), 0);
  EXPECT_EQ(listener.GetOwner(), nullptr);  // alive and alone
}

}  // namespace
}  // namespace tovik_test
