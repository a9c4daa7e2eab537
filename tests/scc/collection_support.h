// Helpers shared by the collection tests.
#ifndef TOVIK_TESTS_COLLECTION_SUPPORT_H
#define TOVIK_TESTS_COLLECTION_SUPPORT_H

#include <functional>
#include <initializer_list>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "object_store.h"

namespace tovik_test {

typedef std::vector<int> Ids;

// Objects made from (id, key) pairs in this order, told to nobody.
inline void Fill(ObjectStore &store, std::initializer_list<std::pair<int, int>> objects) {
  for (auto const &object : objects) store.Add(object.first, object.second);
}

inline SCC_Handle H(ObjectStore &store, int id) {
  StoreObject *const object = store.Find(id);
  EXPECT_NE(object, nullptr) << "no object " << id;
  return object != nullptr ? object->Handle() : 0;
}

typedef std::vector<std::pair<int, int>> CodeIds;

// A listener that records (code, id of the object named) as it hears them,
// and what the collection showed at that moment; it may act on each.
class IdRecorder : public SCC_EventNode<int> {
 public:
  explicit IdRecorder(StoreCollection *watched = nullptr) : collection(watched) {}

  int OnNotification(int code, int *data) override {
    SCC_Handle const handle = SCC_DataToHandle(data);
    bool const names = code >= EvAdded && code <= EvFocused && handle != 0;
    heard.emplace_back(code, names ? StoreCollection::IdOf(handle) : static_cast<int>(handle));
    if (collection != nullptr) {
      lists.push_back(collection->Ids());
      sliders.push_back(collection->SliderId());
    }
    if (action) action(code, handle);
    return 0;
  }
  void Reset() {
    heard.clear();
    lists.clear();
    sliders.clear();
  }

  StoreCollection *collection;
  CodeIds heard;
  std::vector<Ids> lists;   // the list when each was heard
  std::vector<int> sliders;  // the slider when each was heard
  std::function<void(int, SCC_Handle)> action;
};

// A collection on the store sorted by key, loaded, with a recorder on its
// change notifier.
class Sorted : public StoreCollection {
 public:
  explicit Sorted(ObjectStore &objects, int descending = 0)
      : StoreCollection(objects), recorder(this) {
    SetSort(&ObjectStore::CompareKey, descending);
    SetNotificationHandler(&recorder);
    AllowReload(1);
    recorder.Reset();
  }
  IdRecorder recorder;
};

}  // namespace tovik_test

#endif  // TOVIK_TESTS_COLLECTION_SUPPORT_H
