// Saved handles over objects of the test store, and the synchronisation client.
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "object_store.h"
#include "scc_nsync_client.h"
#include "scc_saved_handles.h"

namespace {

using tovik_test::ObjectStore;
using tovik_test::StoreObject;

// An entry on its object's notifier that follows a remapping of the store.
class StoreEntry : public SCC_HandleWithEvent {
 public:
  using SCC_HandleWithEvent::SCC_HandleWithEvent;
  SCC_Notifier *GetChangeEvent() override { return StoreObject::From(handle)->notifier.get(); }
  void OnUpdatePointers(void *data) override {
    auto const &table = *static_cast<ObjectStore::Remapping const *>(data);
    auto const found = table.find(handle);
    if (found != table.end()) handle = found->second;
  }
};

class StoreHandles : public SCC_SavedHandles {
 public:
  // (handle, type) of every entry, in the set's order.
  std::vector<std::pair<SCC_Handle, int>> Entries() const {
    std::vector<std::pair<SCC_Handle, int>> all;
    for (std::int32_t i = 0; i < GetSize(); ++i) all.emplace_back(GetAt(i)->GetHandle(), GetAt(i)->GetType());
    return all;
  }

 protected:
  Entry CreateByType(SCC_Handle handle, std::int32_t type) override {
    return new StoreEntry(handle, type, this);
  }
};

TEST(SavedHandles, SaveFindDeleteKeepTheOrderByTypeThenHandle) {
  ObjectStore store;
  SCC_Handle const a = store.Add(1, 0, true).Handle();
  SCC_Handle const b = store.Add(2, 0, true).Handle();
  SCC_SavedHandles plain;
  EXPECT_EQ(plain.Save(a, 1), 0) << "the base set makes no entries";

  StoreHandles set;
  EXPECT_TRUE(set.Save(b, 2) && set.Save(b, 1) && set.Save(a, 2));
  EXPECT_EQ(set.Save(b, 1), 0) << "the pair is there already";
  EXPECT_EQ(set.Entries()[0], std::make_pair(b, 1));
  EXPECT_EQ(set.Entries()[1], std::make_pair(a < b ? a : b, 2));
  SCC_Notifier const &ring = *store.Find(2)->notifier;
  std::int32_t index = -1;
  EXPECT_TRUE(!set.Find(a, 1, &index) && index == (a < b ? 0 : 1)) << "where (a, 1) would go";
  EXPECT_TRUE(set.Delete(b, 1) && !set.Delete(b, 1));
  SCC_EventNode<int> *const kept = set.Find(b, 2, nullptr);
  EXPECT_TRUE(ring.next == kept && ring.prev == kept) << "only the deleted entry left";
}

TEST(SavedHandles, ObjectNotificationsKeepTheSetRight) {
  ObjectStore store;
  StoreObject &a = store.Add(1, 0, true);
  StoreObject &b = store.Add(2, 0);
  b.notifier = a.notifier;  // one notifier for both objects
  StoreObject &quiet = store.Add(3, 0);
  StoreHandles set;
  set.Save(a.Handle(), 1);
  set.Save(b.Handle(), 1);
  set.Save(b.Handle(), 2);
  set.Save(quiet.Handle(), 1);

  // The entry of a hears first and deletes (b, 1), the next node of the
  // ring; (b, 2) then deletes itself inside its own notification.
  store.Changed(b, EvDeleted);
  SCC_Handle const low = std::min(a.Handle(), quiet.Handle());
  SCC_Handle const high = std::max(a.Handle(), quiet.Handle());
  EXPECT_EQ(set.Entries(), (std::vector<std::pair<SCC_Handle, int>>{{low, 1}, {high, 1}}));

  set.Save(b.Handle(), 1);
  ObjectStore::Remapping const remap{{a.Handle(), 20}, {b.Handle(), 10}};
  a.notifier->Notify(EvRemapped, const_cast<ObjectStore::Remapping *>(&remap));
  EXPECT_TRUE(set.Find(10, 1, nullptr) && set.Find(20, 1, nullptr)) << "sorted before the lookup";
  EXPECT_EQ(set.Entries()[0].first, 10);

  StoreHandles const copy(set);
  a.notifier->Notify(EvCleared, nullptr);
  EXPECT_TRUE(set.GetSize() == 0 && copy.GetSize() == 3) << "the copy keeps the entries";
  auto *gone = new StoreHandles;
  gone->Save(a.Handle(), 1);
  StoreHandles const survivor(*gone);
  delete gone;  // its entry now reports to no set
  a.notifier->Notify(EvCleared, nullptr);
  EXPECT_EQ(survivor.GetSize(), 1);
}

struct HeardNode : SCC_DListRefNode {
  int OnNotification(int code, void *data) override { return heard.emplace_back(code, data), code; }
  std::vector<std::pair<int, void *>> heard;
};

TEST(NSyncClient, DestructionTellsEveryNodeOnce) {
  HeardNode first;
  HeardNode second;
  (NSYNC_Client() += first) += second;  // a temporary: gone at the semicolon
  std::vector<std::pair<int, void *>> const once{{0, nullptr}};
  EXPECT_TRUE(first.heard == once && second.heard == once && second.GetList() == nullptr);
}

}  // namespace
