// A small object store to put collections on: the source that the tests, the
// benchmark and the example use.
//
// Objects live in the store (their addresses never change) and are walked in
// the store's order, in which one object may stand more than once, as a
// careless source may offer it. An object's handle is its address, so that a
// sort function needs nothing but the handle to find the object's key. Some
// objects carry a notifier of their own; the store has one for all.
//
// StoreCollection is an SCC_StdCollection on a store: it walks the store's
// order with a slider of its own and answers the object's notifier from
// GetEvent. ChildCollection walks the objects of a second store that belong
// to the objects in its parent's focus, as the pins of the selected parts.
// Header only.
#ifndef TOVIK_TEST_OBJECT_STORE_H
#define TOVIK_TEST_OBJECT_STORE_H

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <random>
#include <unordered_map>
#include <utility>
#include <vector>

#include "scc_collection.h"

namespace tovik_test {

struct StoreObject {
  int id = 0;                              // a name for people
  int key = 0;                             // what the store sorts by
  int visible = 1;                         // what the store filters by
  StoreObject *owner = nullptr;            // for a child object: whom it belongs to
  std::shared_ptr<SCC_Notifier> notifier;  // its notifier, for some objects; may be shared

  SCC_Handle Handle() const { return reinterpret_cast<SCC_Handle>(this); }
  static StoreObject *From(SCC_Handle handle) { return reinterpret_cast<StoreObject *>(handle); }
};

class ObjectStore {
 public:
  typedef std::unordered_map<SCC_Handle, SCC_Handle> Remapping;

  // A new object at the end of the order, told to nobody.
  StoreObject &Add(int id, int key, bool ownNotifier = false, StoreObject *owner = nullptr) {
    objects.push_back(std::make_unique<StoreObject>(
        StoreObject{id, key, 1, owner, ownNotifier ? std::make_shared<SCC_Notifier>(0) : nullptr}));
    Append(*objects.back());
    return *objects.back();
  }
  // A new object, told to the store's listeners (EvAdded).
  StoreObject &Insert(int id, int key, bool ownNotifier = false, StoreObject *owner = nullptr) {
    return Tell(EvAdded, Add(id, key, ownNotifier, owner));
  }
  // The object stands once more at the end of the order.
  void Repeat(StoreObject &object) { Append(object); }
  // Tells EvDeleted while the object can still be read, then forgets it.
  void Remove(StoreObject &object) {
    Tell(EvDeleted, object);
    order.erase(std::remove(order.begin(), order.end(), &object), order.end());
    Reindex();
    objects.erase(std::find_if(objects.begin(), objects.end(), [&](auto const &o) { return o.get() == &object; }));
  }
  // A new key, told as EvChanged through the object's notifier if it has
  // one, else through the store's.
  void SetKey(StoreObject &object, int key) { object.key = key; Changed(object); }
  void SetVisible(StoreObject &object, int visible) { object.visible = visible; Changed(object); }
  void Changed(StoreObject &object, int code = EvChanged) {
    (object.notifier ? *object.notifier : source).Notify(code, SCC_HandleToData(object.Handle()));
  }
  StoreObject &Tell(int code, StoreObject &object) {
    source.Notify(code, SCC_HandleToData(object.Handle()));
    return object;
  }
  void Tell(int code, void *data = nullptr) { source.Notify(code, data); }

  // The order shuffled, told to nobody.
  void Shuffle(unsigned seed) {
    std::shuffle(order.begin(), order.end(), std::mt19937(seed));
    Reindex();
  }

  StoreObject *Find(int id) const {
    auto const found = std::find_if(objects.begin(), objects.end(), [id](auto const &o) { return o->id == id; });
    return found != objects.end() ? found->get() : nullptr;
  }
  // Where the object first stands in the order, or -1.
  std::ptrdiff_t IndexOf(SCC_Handle handle) const {
    auto const found = firstIndex.find(handle);
    return found != firstIndex.end() ? static_cast<std::ptrdiff_t>(found->second) : -1;
  }

  // By key alone.
  static int CompareKey(SCC_Handle const &a, SCC_Handle const &b) {
    int const x = StoreObject::From(a)->key, y = StoreObject::From(b)->key;
    return (x > y) - (x < y);
  }

  SCC_Notifier source;
  std::vector<StoreObject *> order;
  std::vector<std::unique_ptr<StoreObject>> objects;

 private:
  void Append(StoreObject &object) { firstIndex.emplace(object.Handle(), order.size()); order.push_back(&object); }
  void Reindex() {
    firstIndex.clear();
    for (std::size_t i = 0; i < order.size(); ++i) firstIndex.emplace(order[i]->Handle(), i);
  }

  std::unordered_map<SCC_Handle, std::size_t> firstIndex;
};

// A collection whose source is a store.
class StoreCollection : public SCC_StdCollection {
 public:
  explicit StoreCollection(ObjectStore &objects, SCC_StdCollection *parentCollection = nullptr)
      : SCC_StdCollection(parentCollection), store(objects), at(kOff) {
    SetEvent(&store.source);
  }

  using SCC_StdCollection::ListenToList;
  using SCC_StdCollection::Reload;

  // The list, the focus and the slider by object id (0 for none).
  std::vector<int> Ids() { return IdsOf([this](std::int32_t i) { return i < GetSize() ? GetAt(i) : 0; }); }
  std::vector<int> FocusIds() { return IdsOf([this](std::int32_t i) { return GetFocus(i); }); }
  int SliderId() { return IdOf(GetSlider()); }
  static int IdOf(SCC_Handle handle) { return handle != 0 ? StoreObject::From(handle)->id : 0; }
  // The ids of at(0), at(1)... up to the first 0.
  template <class At>
  static std::vector<int> IdsOf(At at) {
    std::vector<int> ids;
    for (std::int32_t i = 0; i < 1000000 && at(i) != 0; ++i) ids.push_back(IdOf(at(i)));
    return ids;
  }

  ObjectStore &store;

 protected:
  static constexpr std::size_t kOff = static_cast<std::size_t>(-1);

  int _GetFirst() override { return Go(0); }
  int _GetNext() override { return Go(at == kOff ? 0 : at + 1); }
  int _GetPrev() override { return Go(at == kOff || at == 0 ? kOff : at - 1); }
  // The slider to index i, off when it is beyond the order.
  int Go(std::size_t i) { return (at = i < store.order.size() ? i : kOff) != kOff; }
  SCC_Handle _GetSlider() override { return at < store.order.size() ? store.order[at]->Handle() : 0; }
  // IndexOf's -1 becomes kOff.
  void _SetSlider(SCC_Handle handle) override {
    Go(handle != 0 ? static_cast<std::size_t>(store.IndexOf(handle)) : kOff);
  }
  SCC_Notifier *GetEvent() override { return at < store.order.size() ? store.order[at]->notifier.get() : nullptr; }
  // The data of EvRemapped is an ObjectStore::Remapping; unnamed handles stay.
  SCC_Handle UpdateHandle(SCC_Handle handle, void *data) override {
    auto const &table = *static_cast<ObjectStore::Remapping const *>(data);
    auto const found = table.find(handle);
    return found != table.end() ? found->second : handle;
  }

  std::size_t at;  // index in the store's order, kOff for none
};

// The objects of a child store that belong to the objects in the parent's
// focus, walked focus object by focus object.
class ChildCollection : public StoreCollection {
 public:
  ChildCollection(ObjectStore &children, SCC_StdCollection &parentCollection)
      : StoreCollection(children, &parentCollection) {}

 protected:
  int _GetFirst() override { return FromFocus(0); }
  int _GetNext() override {
    if (at == kOff) return FromFocus(0);
    StoreObject *const owner = store.order[at]->owner;
    if (FirstOf(owner != nullptr ? owner->Handle() : 0, at + 1)) return 1;
    // On to the objects of the next focused object.
    SCC_StdCollection *const up = GetParent();
    std::int32_t k = 0;
    return up != nullptr && owner != nullptr && up->IsInFocus(owner->Handle(), &k) ? FromFocus(k + 1) : Go(kOff);
  }
  int _GetFirstByParentSlider() override { return FirstOf(ParentSlider(), 0); }
  int _GetNextByParentSlider() override { return FirstOf(ParentSlider(), at == kOff ? 0 : at + 1); }

 private:
  SCC_Handle ParentSlider() { return GetParent() != nullptr ? GetParent()->GetSlider() : 0; }
  // The first object of the focused objects from the k-th on; the parent's
  // slider stands on its owner.
  bool FromFocus(std::int32_t k) {
    SCC_StdCollection *const up = GetParent();
    for (; up != nullptr && up->GetFocus(k) != 0; ++k) {
      up->SetSlider(up->GetFocus(k));
      if (FirstOf(up->GetSlider(), 0)) return true;
    }
    return Go(kOff);
  }
  // The first object of owner from index from on; the slider goes there or off.
  bool FirstOf(SCC_Handle owner, std::size_t from) {
    for (std::size_t i = from; owner != 0 && i < store.order.size(); ++i) {
      if (store.order[i]->owner != nullptr && store.order[i]->owner->Handle() == owner) return Go(i);
    }
    return Go(kOff);
  }
};

// A listener that records what it hears as (code, data) pairs and may act
// on each notification.
class Recorder : public SCC_EventNode<int> {
 public:
  struct Heard {
    int code;
    SCC_Handle data;
    bool operator==(Heard const &other) const { return code == other.code && data == other.data; }
  };

  int OnNotification(int code, int *data) override {
    heard.push_back(Heard{code, SCC_DataToHandle(data)});
    if (action) action(code, SCC_DataToHandle(data));
    return 0;
  }

  std::vector<Heard> heard;
  std::function<void(int, SCC_Handle)> action;
};

}  // namespace tovik_test

#endif  // TOVIK_TEST_OBJECT_STORE_H
