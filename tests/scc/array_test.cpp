// Arrays: growth, notification, copy-on-write, the typed layers, bad input.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "array_support.h"
#include "scc_array.h"
#include "ssm.h"
#include "test_support.h"

using array_test::Heard;
using array_test::Recorder;
using tovik_test::Counted;

namespace {

std::int32_t Capacity(_SCC_Array const &array) {
  return array.GetBuffer() != nullptr ? array.GetBuffer()->capacity : 0;
}

// The typed layers over a plain, a copy-on-write and a counted item type.
template <class T>
T Make(int v) {
  if constexpr (std::is_same<T, SYS_String>::value)
    return SYS_String(std::to_string(v).c_str());
  else
    return T(v);
}
int ValueOf(int v) { return v; }
int ValueOf(SYS_String const &s) { return std::atoi(s); }
int ValueOf(Counted const &c) { return c.value; }

template <class T>
std::vector<int> Values(SCC_Array<T> const &array) {
  std::vector<int> out;
  for (std::int32_t i = 0; i < array.GetSize(); ++i) out.push_back(ValueOf(array.GetAt(i)));
  return out;
}

TEST(ArrayGrowth, CapacitiesFollowTheGrowthRuleAndCopiesShare) {
  SCC_Array<int> array;
  std::vector<std::int32_t> capacities;
  for (int i = 0; i < 16562; ++i) {
    array.Append(i);
    if (capacities.empty() || capacities.back() != Capacity(array)) capacities.push_back(Capacity(array));
  }
  EXPECT_EQ(capacities,
            (std::vector<std::int32_t>{1, 3, 9, 27, 81, 243, 729, 2187, 6561, 16561, 26561}));

  SCC_Array<int> many;
  many.Insert(0, 100);  // beyond capacity + step: exactly the new size, new items at zero
  EXPECT_TRUE(Capacity(many) == 100 && many.GetData()[99] == 0);
  many.SetSize(0);  // a private buffer keeps its room
  EXPECT_EQ(Capacity(many), 100);
  many[10] = 1;  // a write beyond the end extends the array
  EXPECT_EQ(many.GetSize(), 11);

  // Copies share the buffer; a write never shows in another copy.
  SCC_Array<int> a;
  for (int i = 0; i < 5; ++i) a.Append(i);
  SCC_Array<int> b(a);
  EXPECT_EQ(a.GetBuffer()->refCount, 2);
  b[0] = 100;  // separates with no room to spare...
  EXPECT_TRUE(a[0] == 0 && Capacity(b) == 5);
  b.Append(5);  // ...so the next append grows at once
  EXPECT_EQ(Capacity(b), 15);
  SCC_Array<int> c(a), d(a);
  c.Insert(0, 2);
  d.Delete(0, 5);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(a.GetAt(i), i);
  EXPECT_EQ(a.GetBuffer()->refCount, 1);
}

TEST(ArrayNotification, CodesAndDataInOrder) {
  SCC_Array<int> array;
  for (int v : {10, 11, 12, 13, 14, 15}) array.Append(v);
  Recorder listener;
  array.AddListener(listener);
  listener.context = &array;
  listener.also = [](Recorder &self, int) {  // the items are still in place
    EXPECT_EQ(static_cast<SCC_Array<int> *>(self.context)->GetSize(), 6);
  };
  array.Delete(2, 3);
  EXPECT_EQ(
      listener.heard,
      (std::vector<Heard>{{EvDeleted, 3}, {EvDeleted, 3}, {EvDeleted, 3}, {EvRemapped, 2, 2, 3}}));
  EXPECT_EQ(Values(array), (std::vector<int>{10, 11, 15}));
  listener.also = nullptr;
  listener.heard.clear();
  array.Insert(1, 2);
  EXPECT_EQ(listener.heard,
            (std::vector<Heard>{{EvRemapped, 1, 1, 2}, {EvAdded, 2}, {EvAdded, 3}}));

  Recorder typed;
  {
    SCC_Array<int> a, other;
    other.Append(9);
    a.AddListener(typed);
    a[1] = 5;  // reaching beyond the end inserts
    a.SetAt(0, 4);
    SCC_Array<int> &same = a;
    a = same;  // nothing at all
    a = other;
    a.Clear();
    a.Clear();  // no buffer: nothing to tell
    EXPECT_EQ(typed.heard, (std::vector<Heard>{
                               {EvRemapped, 1, 0, 2}, {EvAdded, 1}, {EvAdded, 2}, {EvChanged, 1}, {EvReload, 0}, {EvCleared, 0}}));
    EXPECT_EQ(typed.GetOwner(), a.GetNotifier());       // the notifier stays
    EXPECT_EQ(other.GetNotifier()->HasListeners(), 0);  // and is never shared
    a.Append(1);
    typed.heard.clear();
  }
  EXPECT_EQ(typed.heard, (std::vector<Heard>{{EvCleared, 0}}));  // destruction
  EXPECT_EQ(typed.GetOwner(), nullptr);                          // sends it away alive
}

template <class T>
class TypedArray : public ::testing::Test {};
using ItemTypes = ::testing::Types<int, SYS_String, Counted>;
TYPED_TEST_SUITE(TypedArray, ItemTypes, );

// Random edits on two arrays that keep sharing buffers, checked against
// vectors after every step, over sizes that cross several growth steps.
TYPED_TEST(TypedArray, RandomEditsMatchAPlainVector) {
  using T = TypeParam;
  tovik_test::CountedLeakGuard guard;
  std::mt19937 random(11);
  SCC_Array<T> arrays[2];
  std::vector<int> models[2];
  for (int step = 0; step < 1500; ++step) {
    int const which = static_cast<int>(random() % 2);
    SCC_Array<T> &array = arrays[which];
    std::vector<int> &model = models[which];
    auto const size = static_cast<std::int32_t>(model.size());
    auto const at = static_cast<std::int32_t>(random() % (size + 1));
    int const value = static_cast<int>(random() % 1000);
    switch (random() % 8) {
      case 0: case 1:  // NOLINT: inserting twice as often as anything else
        array.InsertAt(at, Make<T>(value));
        model.insert(model.begin() + at, value);
        break;
      case 2:
        array.Append(Make<T>(value));
        model.push_back(value);
        break;
      case 3: {
        auto const count = static_cast<std::int32_t>(random() % (size - at + 1));
        array.RemoveAt(at, count);
        model.erase(model.begin() + at, model.begin() + at + count);
        break;
      }
      case 4:  // an item of the array itself, which may move meanwhile
        if (size > 0) array.InsertAt(at, array[size - 1]), model.insert(model.begin() + at, model[size - 1]);
        break;
      case 5:
        array.SetSize(static_cast<std::int32_t>(random() % 300));
        model.resize(static_cast<std::size_t>(array.GetSize()), 0);
        break;
      case 6:
        arrays[1 - which] = array;
        models[1 - which] = model;
        break;
      case 7:  // sorting swaps through the item type and keeps every item
        array.SetComparator(new SCC_Comparator<T>);
        array.SetComparator(nullptr);
        std::sort(model.begin(), model.end(),
                  [](int a, int b) { return SCC_Compare(Make<T>(a), Make<T>(b)) < 0; });
        break;
    }
    ASSERT_EQ(Values(arrays[0]), models[0]) << "step " << step;
    ASSERT_EQ(Values(arrays[1]), models[1]) << "step " << step;
    ASSERT_EQ(array.IsEmpty(), model.empty() ? 1 : 0) << "step " << step;
  }
}

// With no failure manager a failed check has no effect: the code behind it
// runs on, and does nothing to the array.
TEST(ArrayBadInput, RejectedWithNothingChanged) {
  ASSERT_EQ(SSM::GetManager(), nullptr);
  SCC_Stack<SYS_String> stack;
  EXPECT_TRUE(stack.Pop() == SYS_String() && stack.GetStackSize() == 0);  // empty: a default item, the count stays 0
  for (char const *item : {"a", "b", "c"}) stack.Push(item);
  SCC_Stack<SYS_String> saved(stack);
  EXPECT_EQ(stack.Pop(), "c");
  stack.Push("d");
  EXPECT_TRUE(stack.Peek(2) == "a" && saved.Peek() == "c");  // the copy kept its own items
  EXPECT_TRUE(stack.Peek(3) == SYS_String() && stack.Peek(-1) == SYS_String());

  Recorder listener;
  SCC_Array<int> array;
  for (int v : {1, 2}) array.Append(v);
  array.AddListener(listener);
  array[-1] = 99;  // a scratch item outside the array
  EXPECT_EQ(array[-1], 0);
  array.SetAt(-2, 5);
  array.Insert(3, 1);
  array.Insert(0, -1);
  array.Delete(1, 2);
  array.SetSize(-4);
  EXPECT_EQ(array.GetAt(2), 0);
  EXPECT_TRUE(listener.heard.empty());
  EXPECT_EQ(Values(array), (std::vector<int>{1, 2}));

  // A listener must not change the array it hears about; one that does still
  // cannot make the array reach outside its buffer.
  listener.context = &array;
  listener.also = [](Recorder &self, int code) {
    if (code == EvDeleted || code == EvAdded) static_cast<SCC_Array<int> *>(self.context)->Clear();
  };
  array.Delete(0, 2);  // the first notice empties the array
  array[10] = 3;       // grows, is emptied again, and writes nothing
  EXPECT_TRUE(array.GetSize() == 0 && array.IsValid() == 1);
}

}  // namespace
