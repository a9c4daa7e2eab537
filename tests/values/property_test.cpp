#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "object_store.h"
#include "scc_property.h"

namespace {

using tovik_test::ObjectStore;
using tovik_test::Recorder;
using tovik_test::StoreCollection;
using tovik_test::StoreObject;

// An object's key as its value: key 0 reads as nothing, a negative key fails
// to read and refuses to be written.
class KeyProperty : public SCC_StdProperty {
 public:
  using SCC_StdProperty::GetValue;
  using SCC_StdProperty::SetValue;
  int GetValue(SCC_Handle handle, SCC_Variant &value) override {
    int const key = StoreObject::From(handle)->key;
    if (key != 0) value = SCC_Variant(key);
    return key >= 0;
  }
  int SetValue(SCC_Handle handle, SCC_Variant const &value, int) override {
    StoreObject *const object = StoreObject::From(handle);
    return object->key >= 0 ? (object->key = static_cast<int>(value), 1) : 0;
  }
};

TEST(PropertyTest, CommonValueAndWritesAcrossTheFocus) {
  ObjectStore store;
  for (int id = 1; id <= 3; ++id) store.Add(id, 0);
  StoreCollection collection(store);
  collection.AllowReload(1);
  KeyProperty property;
  // The focus is kept in handle order: give the keys in that order.
  std::vector<StoreObject *> byHandle = {store.Find(1), store.Find(2), store.Find(3)};
  std::sort(byHandle.begin(), byHandle.end());
  auto focus = [&](std::vector<int> const &keys) {
    collection.SetFocus(0, 0);
    for (std::size_t i = 0; i < keys.size(); ++i) {
      byHandle[i]->key = keys[i];
      collection.SetFocus(byHandle[i]->Handle(), 1);
    }
  };
  struct { char const *name; std::vector<int> keys; int result; SCC_Variant value; } const cases[] = {
      {"no focus", {}, 0, SCC_Variant()},
      {"uniform", {7, 7}, 1, SCC_Variant(7)},
      {"mixed", {7, 7, 8}, 1, SCC_Variant()},
      {"second read fails", {7, -1, 8}, 0, SCC_Variant(7)},
      {"empty reads are replaced", {0, 7}, 1, SCC_Variant(7)},
      {"empty read after a value differs", {7, 0}, 1, SCC_Variant()},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    focus(c.keys);
    SCC_Variant value;
    EXPECT_EQ(property.GetValue(&collection, value), c.result);
    EXPECT_EQ(value, c.value);
  }
  focus({});
  EXPECT_EQ(property.SetValue(&collection, SCC_Variant(3), 0), 1) << "an empty focus succeeds";
  focus({1, -2, 3});
  EXPECT_EQ(property.SetValue(&collection, SCC_Variant(9), 0), 0);
  EXPECT_EQ(byHandle[0]->key * 10 + byHandle[2]->key, 93) << "written before the failure stays";
}

TEST(PropertyTest, IndirectionsAndConvertorEvents) {
  KeyProperty property;
  SCC_IndProperty middle(&property);
  SCC_IndProperty top(&middle);
  EXPECT_EQ(top.GetDataSource(), &property);

  // A convertor's event, through a chain of convertors, reaches the property's
  // listeners as code 8 with the property as data.
  SCC_SharedPointer<SCC_Convertor> const first(new SCC_Convertor);
  EXPECT_EQ(top.SetConvertor(new SCC_IndConvertor(first)), &property);
  Recorder listener;
  listener.JoinAtEnd(top.GetPropEvent());
  first->Notify(4, nullptr);
  EXPECT_EQ(listener.heard, (std::vector<Recorder::Heard>{{EvPropertyChanged, SCC_DataToHandle(&property)}}));
  property.SetConvertor(nullptr);
  first->Notify(4, nullptr);
  EXPECT_EQ(listener.heard.size(), 1u) << "the old convertor is no longer heard";

  // Closing a loop of indirections is refused; an empty source answers as the base.
  SCC_IndProperty loop(&top);
  middle = loop;
  EXPECT_EQ(top.GetDataSource(), &property);
  SCC_IndProperty orphan(nullptr);
  EXPECT_EQ(orphan.GetDataSource(), &orphan);
}

// Adds 1 in direction 1 and subtracts 1 in direction 0.
class PlusOne : public SCC_Convertor {
 public:
  SCC_Variant Convert(SCC_Variant value, int direction) override {
    return SCC_Variant(static_cast<int>(value) + (direction == 1 ? 1 : -1));
  }
};

TEST(ConvertorTest, ConversionsAndEventsClimbTheChain) {
  SCC_SharedPointer<SCC_Convertor> const target(new PlusOne);
  SCC_RevConvertor reverse(target);
  EXPECT_EQ(reverse.Convert(SCC_Variant(5), 0), SCC_Variant(6));
  EXPECT_EQ(reverse.Convert(SCC_Variant(5), 7), SCC_Variant(4)) << "any non-zero direction counts as 1";
  SCC_IndConvertor first(target);
  SCC_IndConvertor second(&first);
  Recorder onSecond;
  onSecond.JoinAtEnd(&second);
  int data = 0;
  target->Notify(4, &data);
  EXPECT_EQ(onSecond.heard, (std::vector<Recorder::Heard>{{4, SCC_DataToHandle(&data)}}));

  // The copy takes first's listeners, and its hook calls first while first lives.
  SCC_IndConvertor const copy(first);
  Recorder onFirst;
  onFirst.JoinAtEnd(&first);
  target->Notify(3, nullptr);
  EXPECT_EQ(onSecond.heard.size(), 1u) << "the copy's own listeners hear nothing";
  EXPECT_EQ(onFirst.heard.size(), 2u) << "both hooks call first";

  // Once the original is gone, the copy's hook calls the copy.
  auto original = std::make_unique<SCC_IndConvertor>(target);
  SCC_IndConvertor heir(*original);
  Recorder onHeir;
  onHeir.JoinAtEnd(&heir);
  original.reset();
  target->Notify(5, nullptr);
  EXPECT_EQ(onHeir.heard.size(), 1u);

  // Closing a loop of indirections is refused.
  SCC_IndConvertor loop(&second);
  first = loop;
  EXPECT_EQ(first.Convert(SCC_Variant(1), 1), SCC_Variant(2)) << "first keeps its target";
}

}  // namespace
