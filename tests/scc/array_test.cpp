// Arrays: growth, copy-on-write, notification and the typed layers.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "array_support.h"
#include "scc_array.h"
#include "ssm.h"
#include "test_support.h"

using array_test::Block;
using array_test::Code;
using array_test::Heard;
using array_test::Recorder;
using array_test::TestArray;
using tovik_test::Counted;

namespace {

std::int32_t Capacity(_SCC_Array const &array) {
  return array.GetBuffer() != nullptr ? array.GetBuffer()->capacity : 0;
}

// ---------------------------------------------------------------------------
// Growth and buffer shapes

TEST(ArrayGrowth, AppendingTriplesUpToStepsOfTenThousand) {
  SCC_Array<int> array;
  std::vector<std::int32_t> capacities;
  for (int i = 0; i < 16562; ++i) {
    array.Append(i);
    if (capacities.empty() || capacities.back() != Capacity(array))
      capacities.push_back(Capacity(array));
  }
  std::vector<std::int32_t> const expected = {1, 3, 9, 27, 81, 243, 729, 2187, 6561, 16561, 26561};
  EXPECT_EQ(capacities, expected);
  EXPECT_EQ(array.GetData()[16561], 16561);
  EXPECT_EQ(array.IsValid(), 1);

  SCC_Array<int> many;
  many.Insert(0, 100);  // beyond capacity + step: exactly the new size
  EXPECT_EQ(Capacity(many), 100);
  EXPECT_EQ(many.GetSize(), 100);
  EXPECT_EQ(many.GetData()[99], 0);  // new items start at zero

  TestArray custom;  // the step is virtual
  custom.growStep = 4;
  for (std::uint16_t i = 0; i < 9; ++i) custom.Put(i, i);
  EXPECT_EQ(Capacity(custom), 12);
}

TEST(ArrayGrowth, SetSizeKeepsOrMakesBuffersAsNeeded) {
  Recorder listener;
  SCC_Array<int> array;
  array.AddListener(listener);
  array.SetSize(0);
  EXPECT_EQ(array.GetBuffer(), nullptr);
  EXPECT_EQ(listener.heard, std::vector<Heard>{Code(EvReload)});

  array.SetSize(5);
  EXPECT_EQ(Capacity(array), 5);
  array[2] = 7;
  array.SetSize(0);  // a private buffer keeps its room
  EXPECT_EQ(array.GetSize(), 0);
  EXPECT_EQ(Capacity(array), 5);
  EXPECT_EQ(array.IsEmpty(), 1);
  array.SetSize(3);
  EXPECT_EQ(array[2], 0);  // regrown items are new ones

  array[10] = 1;  // a write beyond the end extends the array
  EXPECT_EQ(array.GetSize(), 11);
  EXPECT_EQ(array.GetUpperBound(), 11);
  EXPECT_EQ(array.InBounds(10), 1);
  EXPECT_EQ(array.InBounds(11), 0);
}

TEST(ArrayGrowth, InsertedItemsHoldDefaultsOrFormerOccupants) {
  SCC_Array<int> roomy;
  roomy.SetSize(5);
  roomy.SetSize(2);
  roomy[0] = 1;
  roomy[1] = 2;
  roomy.Insert(0, 1);  // in place: the tail moves up, the gap keeps a copy
  EXPECT_EQ(roomy[0], 1);
  EXPECT_EQ(roomy[1], 1);
  EXPECT_EQ(roomy[2], 2);
  SCC_Array<int> grown;
  grown.Append(1);
  grown.Insert(0, 1);  // a new buffer: the gap is a new item
  EXPECT_EQ(grown[0], 0);
  EXPECT_EQ(grown[1], 1);
}

// ---------------------------------------------------------------------------
// Notification

TEST(ArrayNotification, InsertAndDeleteTellBlocksAndItemsInOrder) {
  TestArray array;
  array.Fill({10, 11, 12, 13, 14, 15});
  EXPECT_EQ(array.NotifierIfAny(), nullptr);  // made only when asked for
  Recorder listener;
  array.AddListener(listener);
  ASSERT_NE(array.NotifierIfAny(), nullptr);

  // Every deletion notice arrives while the items are still in place.
  listener.context = &array;
  listener.also = [](Recorder &self, int) {
    auto *a = static_cast<TestArray *>(self.context);
    EXPECT_EQ(a->GetSize(), 6);
    EXPECT_EQ(a->Get(4), 14);
  };
  array.Delete(2, 3);
  EXPECT_EQ(listener.heard, (std::vector<Heard>{Code(EvDeleted, 3), Code(EvDeleted, 3),
                                                Code(EvDeleted, 3), Block(2, 2, 3)}));
  EXPECT_EQ(array.Items(), (std::vector<std::uint16_t>{10, 11, 15}));

  listener.also = nullptr;
  listener.heard.clear();
  array.Insert(1, 3);
  EXPECT_EQ(listener.heard, (std::vector<Heard>{Block(1, 1, 3), Code(EvAdded, 2), Code(EvAdded, 3),
                                                Code(EvAdded, 4)}));
  listener.heard.clear();
  array.Delete(0, 0);
  array.Insert(6, 0);
  EXPECT_EQ(listener.heard, (std::vector<Heard>{Block(2, 0, 0), Block(1, 6, 0)}));
}

TEST(ArrayNotification, SetClearAssignAndDestroy) {
  Recorder listener;
  {
    SCC_Array<int> array;
    array.AddListener(listener);
    array[1] = 5;  // reaching beyond the end inserts
    array.SetAt(0, 4);
    EXPECT_EQ(listener.heard, (std::vector<Heard>{Block(1, 0, 2), Code(EvAdded, 1),
                                                  Code(EvAdded, 2), Code(EvChanged, 1)}));
    listener.heard.clear();

    SCC_Array<int> other;
    other.Append(9);
    SCC_Array<int> &same = array;
    array = same;  // nothing at all
    array = other;
    EXPECT_EQ(listener.heard, std::vector<Heard>{Code(EvReload)});
    EXPECT_EQ(array.GetBuffer(), other.GetBuffer());
    EXPECT_EQ(other.GetNotifier()->HasListeners(), 0);  // notifiers are not shared
    listener.heard.clear();

    array.Clear();
    array.Clear();  // no buffer: nothing to tell
    EXPECT_EQ(listener.heard, std::vector<Heard>{Code(EvCleared)});
    EXPECT_EQ(listener.GetOwner(), array.GetNotifier());  // the notifier stays
    EXPECT_EQ(other.GetSize(), 1);
    array.Append(1);
    listener.heard.clear();
  }
  // Destruction empties the array first and sends the listener away alive.
  EXPECT_EQ(listener.heard, std::vector<Heard>{Code(EvCleared)});
  EXPECT_EQ(listener.GetOwner(), nullptr);
}

// ---------------------------------------------------------------------------
// Copy-on-write

TEST(ArraySharing, WritesNeverShowInAnotherCopy) {
  SCC_Array<int> a;
  for (int i = 0; i < 5; ++i) a.Append(i);
  a.SetComparator(new SCC_Comparator<int>);
  SCC_Array<int> b(a);
  EXPECT_EQ(a.GetBuffer(), b.GetBuffer());
  EXPECT_EQ(a.GetBuffer()->refCount, 2);
  EXPECT_EQ(static_cast<SCC_ComparatorBase *>(b.GetComparator()),
            static_cast<SCC_ComparatorBase *>(a.GetComparator()));

  b[0] = 100;  // separates with no room to spare
  EXPECT_EQ(a[0], 0);
  EXPECT_NE(a.GetBuffer(), b.GetBuffer());
  EXPECT_EQ(Capacity(b), 5);
  b.Append(5);
  EXPECT_EQ(Capacity(b), 15);

  SCC_Array<int> c;
  c = a;
  c.Insert(0, 2);
  c.Delete(3, 1);
  EXPECT_EQ(a.GetSize(), 5);
  EXPECT_EQ(a.GetBuffer()->refCount, 1);
  SCC_Array<int> d(a);
  d.Delete(0, 5);
  d.SetSize(2);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(a[i], i);
  EXPECT_EQ(a.GetData()[4], 4);
}

// ---------------------------------------------------------------------------
// The typed layers over a plain, a copy-on-write and a counted item type

template <class T>
struct Items;
template <>
struct Items<int> {
  static int Of(int v) { return v; }
  static int Value(int v) { return v; }
};
template <>
struct Items<SYS_String> {
  static SYS_String Of(int v) { return SYS_String(std::to_string(v).c_str()); }
  static int Value(SYS_String const &s) { return std::atoi(s); }
};
template <>
struct Items<Counted> {
  static Counted Of(int v) { return Counted(v); }
  static int Value(Counted const &c) { return c.value; }
};

template <class T>
class TypedArray : public ::testing::Test {};
using ItemTypes = ::testing::Types<int, SYS_String, Counted>;
struct ItemNames {
  template <class T>
  static std::string GetName(int) {
    if (std::is_same<T, int>::value) return "int";
    return std::is_same<T, SYS_String>::value ? "SYS_String" : "Counted";
  }
};
TYPED_TEST_SUITE(TypedArray, ItemTypes, ItemNames);

template <class T>
std::vector<int> Values(SCC_Array<T> const &array) {
  std::vector<int> out;
  for (std::int32_t i = 0; i < array.GetSize(); ++i) out.push_back(Items<T>::Value(array.GetAt(i)));
  return out;
}

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
    int const value = static_cast<int>(random() % 1000);
    switch (random() % 8) {
      case 0:
      case 1:
        array.Append(Items<T>::Of(value));
        model.push_back(value);
        break;
      case 2: {
        auto const at = static_cast<std::int32_t>(random() % (size + 1));
        array.InsertAt(at, Items<T>::Of(value));
        model.insert(model.begin() + at, value);
        break;
      }
      case 3:
        if (size > 0) {
          auto const at = static_cast<std::int32_t>(random() % size);
          auto const count = static_cast<std::int32_t>(random() % (size - at + 1));
          array.RemoveAt(at, count);
          model.erase(model.begin() + at, model.begin() + at + count);
        }
        break;
      case 4:
        if (size > 0) {
          auto const at = static_cast<std::int32_t>(random() % size);
          array.SetAt(at, array.GetAt(static_cast<std::int32_t>(random() % size)));  // may alias
          model[at] = Items<T>::Value(array.GetAt(at));
        }
        break;
      case 5: {
        auto const newSize = static_cast<std::int32_t>(random() % 300);
        array.SetSize(newSize);
        model.resize(newSize, Items<T>::Value(T()));
        break;
      }
      case 6:
        arrays[1 - which] = array;
        models[1 - which] = model;
        break;
      case 7:
        if (size > 0) array.InsertAt(0, array[size - 1]);  // an item of the array itself
        if (size > 0) model.insert(model.begin(), model[size - 1]);
        break;
    }
    ASSERT_EQ(Values(arrays[0]), models[0]) << "step " << step;
    ASSERT_EQ(Values(arrays[1]), models[1]) << "step " << step;
  }
  EXPECT_EQ(arrays[0].IsValid(), 1);
}

TYPED_TEST(TypedArray, StackPushesPopsAndPeeks) {
  using T = TypeParam;
  tovik_test::CountedLeakGuard guard;
  SCC_Stack<T> stack;
  EXPECT_EQ(stack.IsEmpty(), 1);
  for (int i = 0; i < 30; ++i) stack.Push(Items<T>::Of(i));
  EXPECT_EQ(Items<T>::Value(stack.Peek()), 29);
  EXPECT_EQ(Items<T>::Value(stack.Peek(29)), 0);
  SCC_Stack<T> saved(stack);
  for (int i = 29; i >= 10; --i) EXPECT_EQ(Items<T>::Value(stack.Pop()), i);
  EXPECT_EQ(stack.GetStackSize(), 10);
  EXPECT_EQ(stack.GetSize(), 30);  // the array does not shrink
  EXPECT_EQ(stack.IsEmpty(), 0);
  stack.Push(Items<T>::Of(77));
  EXPECT_EQ(Items<T>::Value(saved.Peek()), 29);  // the copy kept its own items
  EXPECT_EQ(saved.GetStackSize(), 30);
  while (stack.GetStackSize() > 0) stack.Pop();
  EXPECT_EQ(stack.IsEmpty(), 1);
  EXPECT_EQ(stack.GetSize(), 30);
}

// ---------------------------------------------------------------------------
// Bad input, with no failure manager: the check has no effect, and the
// operation does nothing harmful behind it.

TEST(ArrayBadInput, RejectedWithNothingChanged) {
  ASSERT_EQ(SSM::GetManager(), nullptr);
  SCC_Stack<SYS_String> stack;
  EXPECT_EQ(stack.Pop(), SYS_String());  // empty: a default item, the count stays 0
  EXPECT_EQ(stack.GetStackSize(), 0);
  EXPECT_EQ(stack.GetSize(), 0);
  stack.Push("a");
  EXPECT_EQ(stack.Peek(1), SYS_String());
  EXPECT_EQ(stack.Peek(-1), SYS_String());
  EXPECT_EQ(stack.Pop(), SYS_String("a"));

  Recorder listener;
  SCC_Array<int> array;
  array.AddListener(listener);
  array.Append(1);
  array.Append(2);
  listener.heard.clear();
  array[-1] = 99;  // a scratch item outside the array
  EXPECT_EQ(array[-1], 0);
  array.SetAt(-2, 5);
  array.Insert(3, 1);
  array.Insert(-1, 1);
  array.Insert(0, -1);
  array.Delete(1, 2);
  array.Delete(-1, 1);
  array.SetSize(-4);
  array.Sort(5, 1, 1);
  EXPECT_EQ(array.GetAt(2), 0);
  EXPECT_EQ(array.GetAt(-1), 0);
  EXPECT_EQ(array.ItemInValidPlace(0), 1);  // no comparator
  EXPECT_TRUE(listener.heard.empty());
  EXPECT_EQ(Values(array), (std::vector<int>{1, 2}));
  EXPECT_EQ(array.IsValid(), 1);
}

// A listener must not change the array it hears about; one that does still
// cannot make the array read or write outside its buffer.
TEST(ArrayBadInput, AListenerThatChangesTheArrayCannotCorruptIt) {
  SCC_Array<SYS_String> array;
  for (char const *text : {"a", "b", "c", "d", "e"}) array.Append(text);
  Recorder listener;
  listener.context = &array;
  listener.also = [](Recorder &self, int code) {
    if (code == EvDeleted) static_cast<SCC_Array<SYS_String> *>(self.context)->Clear();
  };
  array.AddListener(listener);
  array.Delete(1, 3);  // the first notice empties the array
  EXPECT_EQ(array.GetSize(), 0);

  listener.also = [](Recorder &self, int code) {
    if (code == EvAdded) static_cast<SCC_Array<SYS_String> *>(self.context)->SetSize(0);
  };
  array[10] = "x";  // grows, is shrunk by the listener, and writes nothing
  EXPECT_EQ(array.GetSize(), 0);
  EXPECT_EQ(array.IsValid(), 1);
}

// An item whose constructors and assignment throw once a budget runs out.
struct Fragile {
  static int budget;
  static int live;
  int value;
  static void Spend() {
    if (budget >= 0 && budget-- == 0) throw std::runtime_error("out of budget");
  }
  Fragile(int v = 0) : value(v) {
    Spend();
    ++live;
  }  // NOLINT: implicit like an int
  Fragile(Fragile const &other) : value(other.value) {
    Spend();
    ++live;
  }
  Fragile &operator=(Fragile const &other) {
    Spend();
    value = other.value;
    return *this;
  }
  ~Fragile() { --live; }
};
int Fragile::budget = -1;
int Fragile::live = 0;

TEST(ArrayExceptions, ThrowingItemsLeaveTheArrayWholeAndLeakNothing) {
  // Growth copies into a new buffer: fail every copy and construction in turn.
  bool threw = true;
  for (int failAt = 0; threw; ++failAt) {
    SCOPED_TRACE(failAt);
    {
      SCC_Array<Fragile> array;
      for (int i = 0; i < 9; ++i) array.Append(i);
      SCC_Array<Fragile> sharer(array);
      Fragile::budget = failAt;
      threw = false;
      try {
        array.Append(9);
      } catch (std::runtime_error const &) {
        threw = true;
      }
      Fragile::budget = -1;
      // Either the item is in, or the array is as it was, or (the item's own
      // assignment having thrown) it holds one default item more.
      ASSERT_GE(array.GetSize(), 9);
      ASSERT_LE(array.GetSize(), 10);
      for (int i = 0; i < 9; ++i) EXPECT_EQ(array.GetAt(i).value, i);
      if (array.GetSize() == 10) {
        EXPECT_EQ(array.GetAt(9).value, threw ? 0 : 9);
      }
      EXPECT_EQ(sharer.GetSize(), 9);
      for (int i = 0; i < 9; ++i) EXPECT_EQ(sharer.GetAt(i).value, i);
    }
    EXPECT_EQ(Fragile::live, 0);
  }
}

}  // namespace
