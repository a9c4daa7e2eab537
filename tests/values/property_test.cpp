#include <gtest/gtest.h>

#include <memory>

#include "object_store.h"
#include "scc_property.h"

namespace {

using tovik_test::ObjectStore;
using tovik_test::Recorder;
using tovik_test::StoreCollection;
using tovik_test::StoreObject;

// An object's key as its value. Reading fails for a negative key, writing for
// an invisible object; reads of key 0 give an empty value.
class KeyProperty : public SCC_StdProperty {
 public:
  using SCC_StdProperty::GetValue;
  using SCC_StdProperty::SetValue;
  int GetValue(SCC_Handle handle, SCC_Variant &value) override {
    StoreObject const *const object = StoreObject::From(handle);
    if (object == nullptr || object->key < 0) return 0;
    if (object->key != 0) value = SCC_Variant(object->key);
    return 1;
  }
  int SetValue(SCC_Handle handle, SCC_Variant const &value, int) override {
    StoreObject *const object = StoreObject::From(handle);
    if (object == nullptr || object->visible == 0) return 0;
    object->key = static_cast<int>(value);
    ++writes;
    return 1;
  }
  int writes = 0;
};

class PropertyTest : public ::testing::Test {
 protected:
  PropertyTest() : collection(store) {
    for (int id = 1; id <= 4; ++id) store.Add(id, 0);
    collection.AllowReload(1);
  }
  void Focus(std::initializer_list<int> keys) {
    collection.SetFocus(0, 0);
    int id = 1;
    for (int key : keys) {
      StoreObject &object = *store.Find(id++);
      object.key = key;
      collection.SetFocus(object.Handle(), 1);
    }
  }

  ObjectStore store;
  StoreCollection collection;
  KeyProperty property;
};

TEST_F(PropertyTest, CommonValueOfTheFocus) {
  struct {
    char const *name;
    std::initializer_list<int> keys;
    int result;
    SCC_Variant value;
  } const cases[] = {
      {"no focus", {}, 0, SCC_Variant()},
      {"uniform", {7, 7, 7}, 1, SCC_Variant(7)},
      {"mixed", {7, 7, 8}, 1, SCC_Variant()},
      {"second read fails", {7, -1, 8}, 0, SCC_Variant(7)},
      {"empty reads are replaced", {0, 7, 7}, 1, SCC_Variant(7)},
      {"empty read after a value differs", {7, 0}, 1, SCC_Variant()},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    Focus(c.keys);
    SCC_Variant value;
    EXPECT_EQ(property.GetValue(&collection, value), c.result);
    EXPECT_EQ(value, c.value);
  }
  SCC_Variant value;
  EXPECT_EQ(property.GetValue(static_cast<SCC_StdCollection *>(nullptr), value), 0) << "handle 0";
}

TEST_F(PropertyTest, SetValueAcrossTheFocus) {
  Focus({});
  EXPECT_EQ(property.SetValue(&collection, SCC_Variant(3), 0), 1) << "an empty focus succeeds";
  EXPECT_EQ(property.writes, 0);
  Focus({1, 2, 3});
  store.Find(2)->visible = 0;
  EXPECT_EQ(property.SetValue(&collection, SCC_Variant(9), 0), 0);
  EXPECT_EQ(store.Find(1)->key, 9) << "written before the failure stays written";
  EXPECT_EQ(store.Find(3)->key, 3);

  SCC_StdProperty plain;
  SCC_Variant value;
  EXPECT_EQ(plain.GetValue(store.Find(1)->Handle(), value), 0);
  EXPECT_EQ(plain.SetValue(&collection, value, 0), 0) << "the first single write fails";
}

TEST_F(PropertyTest, IndirectionsAndConvertorEvents) {
  SCC_IndProperty middle(&property);
  SCC_IndProperty top(&middle);
  EXPECT_EQ(top.GetDataSource(), &property);
  top.SetValidation("[0,5]");
  EXPECT_STREQ(property.GetValidation(), "[0,5]");
  Focus({4, 4});
  SCC_Variant value;
  EXPECT_EQ(top.GetValue(&collection, value), 1);
  EXPECT_EQ(value, SCC_Variant(4));

  // A convertor set through the chain reaches the property's listeners as code 8.
  SCC_SharedPointer<SCC_Convertor> const first(new SCC_Convertor);
  SCC_SharedPointer<SCC_Convertor> const chain(new SCC_IndConvertor(first));
  EXPECT_EQ(top.SetConvertor(chain), &property);
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

}  // namespace
