#include "scc_map.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include "test_support.h"

using tovik_test::Counted;
using tovik_test::CountedLeakGuard;

namespace {

typedef SCC_Map<int, int> IntMap;
typedef SCC_Map<int, Counted> CountedMap;

// The keys of a map in iteration order.
template <class K, class V>
std::vector<K> Keys(SCC_Map<K, V> &map) {
  std::vector<K> keys;
  for (SCC_MapIterator<K, V> it(map); it.IsValid(); it.GetNext()) keys.push_back(it.GetKey());
  return keys;
}

// Every (code, data) a map sends, with the map's count and size at the time.
struct Heard {
  int code;
  SCC_Handle data;
  std::int32_t count;
  std::int32_t tableSize;
};

template <class K, class V>
class Recorder : public SCC_EventNode<int> {
 public:
  explicit Recorder(SCC_Map<K, V> &m) : map(&m) { JoinAtEnd(&m); }
  int OnNotification(int code, int *data) override {
    heard.push_back({code, SCC_DataToHandle(data), map->count, map->tableSize});
    if (code == EvDeleted) stillFound.push_back(map->Find(deletedKey) != nullptr);
    return 0;
  }
  SCC_Map<K, V> *map;
  std::vector<Heard> heard;
  K deletedKey{};
  std::vector<bool> stillFound;
};

// A value whose copy throws once a countdown reaches zero.
struct Fragile {
  static int countdown;
  Counted payload;
  Fragile() = default;
  Fragile(int v) : payload(v) {}  // NOLINT: implicit like an int
  Fragile(Fragile const &other) : payload(other.payload) {
    if (countdown > 0 && --countdown == 0) throw std::runtime_error("copy failed");
  }
  Fragile &operator=(Fragile const &) = default;
};
int Fragile::countdown = 0;

std::int32_t ConstantHash(int const &, std::int32_t) { return 0; }
// Out of range on purpose: negative and far above the table size.
std::int32_t WildHash(int const &key, std::int32_t) { return key * 1000003; }

TEST(Map, NewTableSize) {
  struct Case {
    char const *name;
    std::int32_t size;
    std::int32_t expected;
  };
  Case const cases[] = {
      {"below the first size", 52, 53},
      {"the first size itself", 53, 107},
      {"zero", 0, 53},
      {"negative", -100, 53},
      {"between two sizes", 108, 223},
      {"just below the last", 467182, 467183},
      {"the last size", 467183, 0},
      {"beyond all sizes", 1000000, 0},
      {"largest int", INT32_MAX, 0},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(SCC_GetNewTableSize(c.size), c.expected);
  }
  // The whole list, each entry a little above twice the one before.
  std::vector<std::int32_t> sizes;
  for (std::int32_t s = SCC_GetNewTableSize(0); s != 0; s = SCC_GetNewTableSize(s)) sizes.push_back(s);
  EXPECT_EQ(sizes, (std::vector<std::int32_t>{53, 107, 223, 449, 907, 1823, 3643, 7297, 14593,
                                              29191, 58391, 116789, 233591, 467183}));
}

TEST(Map, GrowsWhenOneChainReachesFive) {
  IntMap map;
  EXPECT_EQ(map.tableSize, 53);
  // 200 keys with at most four in any bucket: no growth, whatever the load.
  for (int k = 0; k < 200; ++k) ASSERT_NE(map.Insert(k, -k), nullptr);
  EXPECT_EQ(map.tableSize, 53);
  EXPECT_EQ(map.count, 200);
  // Bucket 0 now holds 0, 53, 106 and 159; the fifth key there grows the table.
  int *const handle = map.Insert(212, 7);
  EXPECT_EQ(map.tableSize, 107);
  EXPECT_EQ(map.count, 201);
  EXPECT_EQ(map.Find(212), handle);
  for (int k = 0; k < 200; ++k) {
    ASSERT_NE(map.Find(k), nullptr) << k;
    EXPECT_EQ(*map.Find(k), -k);
  }

  // Four keys in one bucket of a fresh map do not grow it; duplicates count
  // as nodes of their chain.
  IntMap dups(53, 0);
  for (int i = 0; i < 4; ++i) dups.Insert(1, i);
  EXPECT_EQ(dups.tableSize, 53);
  dups.Insert(54, 4);
  EXPECT_EQ(dups.tableSize, 107);

  // A size below 1 is a table of one bucket, which grows like any other.
  IntMap tiny(0);
  EXPECT_EQ(tiny.tableSize, 1);
  for (int k = 0; k < 4; ++k) tiny.Insert(k * 1000);
  EXPECT_EQ(tiny.tableSize, 1);
  tiny.Insert(5000);
  EXPECT_EQ(tiny.tableSize, 53);
  EXPECT_EQ(IntMap(-7).tableSize, 1);
  // A size outside the list grows to the next size of the list.
  IntMap odd(60);
  for (int k = 0; k < 5; ++k) odd.Insert(k * 60);
  EXPECT_EQ(odd.tableSize, 107);
}

TEST(Map, OnlyTheBucketInsertedIntoIsLooked) {
  IntMap map;
  // k * 107 lands in bucket k of 53 buckets but in bucket 0 of 107.
  for (int k = 0; k < 6; ++k) map.Insert(k * 107);
  for (int key : {53, 106, 159}) map.Insert(key);
  EXPECT_EQ(map.tableSize, 53);
  map.Insert(212);  // fifth in bucket 0
  ASSERT_EQ(map.tableSize, 107);
  // The rehash left six nodes in bucket 0; an insertion elsewhere ignores them.
  map.Insert(1);
  EXPECT_EQ(map.tableSize, 107);
  map.Insert(6 * 107);
  EXPECT_EQ(map.tableSize, 223);
  EXPECT_EQ(map.count, 12);
}

TEST(Map, LargestTableKeepsItsSize) {
  for (std::int32_t size : {467183, 500000}) {
    SCOPED_TRACE(size);
    IntMap map(size);
    for (int k = 0; k < 40; ++k) map.Insert(k * size, k);
    EXPECT_EQ(map.tableSize, size);
    for (int k = 0; k < 40; ++k) EXPECT_EQ(*map.Find(k * size), k);
    std::vector<int> keys = Keys(map);
    ASSERT_EQ(keys.size(), 40u);
    EXPECT_EQ(keys.front(), 39 * size);  // newest first in the one long chain
    EXPECT_EQ(keys.back(), 0);
  }
}

TEST(Map, HandlesSurviveRehashing) {
  CountedLeakGuard guard;
  {
    CountedMap map;
    std::vector<Counted *> handles;
    for (int k = 0; k < 5000; ++k) handles.push_back(map.Insert(k * 7, Counted(k)));
    EXPECT_GT(map.tableSize, 223);
    for (int k = 0; k < 5000; ++k) {
      ASSERT_EQ(map.Find(k * 7), handles[k]) << k;
      EXPECT_EQ(handles[k]->value, k);
    }
  }
}

TEST(Map, IterationOrderFollowsBucketsAndChains) {
  IntMap map;
  // Bucket 1 takes 1 then 54, bucket 2 takes 2: newest first within a chain.
  map.Insert(1);
  map.Insert(2);
  map.Insert(54);
  EXPECT_EQ(Keys(map), (std::vector<int>{54, 1, 2}));

  // A rehash takes each old chain from its front, in bucket order, and links
  // each node at the end of its new chain.
  IntMap grown;
  for (int key : {0, 5671, 1, 108, 53, 106}) grown.Insert(key);  // 5671 = 53 * 107
  EXPECT_EQ(Keys(grown), (std::vector<int>{106, 53, 5671, 0, 1, 108}));
  grown.Insert(159);
  ASSERT_EQ(grown.tableSize, 107);
  EXPECT_EQ(Keys(grown), (std::vector<int>{5671, 0, 1, 108, 159, 53, 106}));
  // The stored hashes were made again with the new size.
  for (SCC_MapIterator<int, int> it(grown); it.IsValid(); it.GetNext()) {
    EXPECT_EQ(it.current->hash, SCC_Hash(it.GetKey(), 107));
  }
}

TEST(Map, DuplicateKeys) {
  CountedLeakGuard guard;
  CountedMap multi(53, 0);
  Counted *older = multi.Insert(7, Counted(1));
  Counted *newer = multi.Insert(7, Counted(2));
  ASSERT_NE(older, nullptr);
  ASSERT_NE(newer, nullptr);
  EXPECT_NE(older, newer);
  EXPECT_EQ(multi.count, 2);
  EXPECT_EQ(multi.Find(7), newer);
  EXPECT_EQ(multi.Remove(7), 1);  // the newest goes first
  EXPECT_EQ(multi.Find(7), older);
  EXPECT_EQ(multi.Remove(7), 1);
  EXPECT_EQ(multi.Find(7), nullptr);
  EXPECT_EQ(multi.Remove(7), 0);
  EXPECT_EQ(multi.count, 0);

  CountedMap single;
  Counted *first = single.Insert(7, Counted(1));
  Recorder<int, Counted> recorder(single);
  Counted const second(2);
  int const copiesBefore = Counted::copies;
  EXPECT_EQ(single.Insert(7, second), nullptr);
  EXPECT_EQ(single.Insert(7), nullptr);
  EXPECT_EQ(Counted::copies, copiesBefore);  // a refused key costs no copy
  EXPECT_EQ(single.Find(7), first);
  EXPECT_EQ(first->value, 1);
  EXPECT_EQ(single.count, 1);
  EXPECT_TRUE(recorder.heard.empty());
}

TEST(Map, NotificationsInOrderWithTheirData) {
  CountedLeakGuard guard;
  auto map = new CountedMap;
  Recorder<int, Counted> recorder(*map);
  Counted *a = map->Insert(0, Counted(10));
  for (int key : {53, 106, 159}) map->Insert(key);
  Counted *grower = map->Insert(212, Counted(5));
  recorder.deletedKey = 53;
  Counted *doomed = map->Find(53);
  EXPECT_EQ(map->Remove(53), 1);
  EXPECT_EQ(map->Remove(999), 0);
  map->Clear();
  delete map;

  ASSERT_EQ(recorder.heard.size(), 8u);
  Heard const &first = recorder.heard[0];
  EXPECT_EQ(first.code, EvAdded);
  EXPECT_EQ(first.data, reinterpret_cast<SCC_Handle>(a));
  EXPECT_EQ(first.count, 1);  // told after the entry is counted
  // The insertion that grew the table is told after the rehash.
  EXPECT_EQ(recorder.heard[3].tableSize, 53);
  Heard const &grown = recorder.heard[4];
  EXPECT_EQ(grown.code, EvAdded);
  EXPECT_EQ(grown.data, reinterpret_cast<SCC_Handle>(grower));
  EXPECT_EQ(grown.tableSize, 107);
  EXPECT_EQ(grown.count, 5);
  // A removal is told while the entry is still in the map and counted.
  Heard const &removed = recorder.heard[5];
  EXPECT_EQ(removed.code, EvDeleted);
  EXPECT_EQ(removed.data, reinterpret_cast<SCC_Handle>(doomed));
  EXPECT_EQ(removed.count, 5);
  EXPECT_EQ(recorder.stillFound, std::vector<bool>{true});
  // Clear and destruction: EvCleared without data, before the entries go.
  for (int i : {6, 7}) {
    EXPECT_EQ(recorder.heard[i].code, EvCleared);
    EXPECT_EQ(recorder.heard[i].data, 0);
  }
  EXPECT_EQ(recorder.heard[6].count, 4);
  EXPECT_EQ(recorder.heard[6].tableSize, 107);
  EXPECT_EQ(recorder.heard[7].count, 0);
  // The dying map sent its listener away.
  EXPECT_EQ(recorder.GetOwner(), nullptr);
}

TEST(Map, CopyAndAssignmentAreDeep) {
  CountedLeakGuard guard;
  CountedMap original(53, 0, &SCC_MapHash<int>);
  for (int k = 0; k < 300; ++k) original.Insert(k % 250, Counted(k));
  Recorder<int, Counted> originalRecorder(original);
  std::vector<int> const order = Keys(original);

  CountedMap copy(original);
  EXPECT_EQ(copy.tableSize, original.tableSize);
  EXPECT_EQ(copy.unique, 0);
  EXPECT_EQ(copy.count, 300);
  EXPECT_EQ(copy.hashFunction, original.hashFunction);
  EXPECT_EQ(copy.HasListeners(), 0);  // listeners stay with the original
  EXPECT_EQ(original.HasListeners(), 1);
  EXPECT_EQ(Keys(copy), order);
  // Same values and stored hashes in the same places, in nodes of its own.
  SCC_MapIterator<int, Counted> a(original), b(copy);
  for (; a.IsValid() && b.IsValid(); a.GetNext(), b.GetNext()) {
    EXPECT_EQ(a.GetValue().value, b.GetValue().value);
    EXPECT_EQ(a.current->hash, b.current->hash);
    EXPECT_NE(a.current, b.current);
  }
  EXPECT_FALSE(a.IsValid() || b.IsValid());
  copy.Find(3)->value = 1000;
  copy.Remove(4);
  EXPECT_EQ(original.Find(3)->value, 253);  // the newer of the two entries for 3
  EXPECT_NE(original.Find(4), nullptr);

  // Assignment drops the old entries, copies, and tells its own listeners.
  CountedMap target(107);
  target.Insert(1, Counted(1));
  Recorder<int, Counted> targetRecorder(target);
  target = original;
  EXPECT_EQ(target.tableSize, original.tableSize);
  EXPECT_EQ(target.unique, 0);
  EXPECT_EQ(Keys(target), order);
  ASSERT_EQ(targetRecorder.heard.size(), 1u);
  EXPECT_EQ(targetRecorder.heard[0].code, EvReload);
  EXPECT_EQ(targetRecorder.heard[0].count, 300);
  EXPECT_TRUE(originalRecorder.heard.empty());

  // Self-assignment changes and tells nothing.
  CountedMap &alias = target;
  Counted *const kept = target.Find(10);
  target = alias;
  EXPECT_EQ(target.Find(10), kept);
  EXPECT_EQ(targetRecorder.heard.size(), 1u);

  // A custom hash function travels with the copy.
  IntMap wild(53, 1, &WildHash);
  for (int k = -20; k < 20; ++k) wild.Insert(k, k);
  IntMap wildCopy(wild);
  EXPECT_EQ(wildCopy.hashFunction, &WildHash);
  for (int k = -20; k < 20; ++k) EXPECT_EQ(*wildCopy.Find(k), k);
}

TEST(Map, ClearKeepsTheTableSize) {
  CountedLeakGuard guard;
  CountedMap map;
  for (int k = 0; k < 1000; ++k) map.Insert(k, Counted(k));
  std::int32_t const size = map.tableSize;
  EXPECT_GT(size, 53);
  int const live = Counted::live;
  map.Clear();
  EXPECT_EQ(map.tableSize, size);
  EXPECT_EQ(map.count, 0);
  EXPECT_EQ(Counted::live, live - 1000);
  EXPECT_EQ(map.Find(5), nullptr);
  SCC_MapIterator<int, Counted> none(map);
  EXPECT_FALSE(none.IsValid());
  map.Insert(5, Counted(6));
  EXPECT_EQ(map.Find(5)->value, 6);
  EXPECT_EQ(map.count, 1);
}

TEST(Map, RemoveFromEveryPlaceOfAChain) {
  CountedLeakGuard guard;
  for (int victim : {0, 53, 106, 159}) {
    SCOPED_TRACE(victim);
    CountedMap map;
    for (int key : {0, 53, 106, 159}) map.Insert(key, Counted(key));  // chain 159, 106, 53, 0
    int const destructions = Counted::destructions;
    EXPECT_EQ(map.Remove(victim), 1);
    EXPECT_EQ(Counted::destructions, destructions + 1);
    EXPECT_EQ(map.count, 3);
    EXPECT_EQ(map.Find(victim), nullptr);
    std::vector<int> expected;
    for (int key : {159, 106, 53, 0}) {
      if (key != victim) expected.push_back(key);
    }
    EXPECT_EQ(Keys(map), expected);
    EXPECT_EQ(map.Remove(victim), 0);
    EXPECT_EQ(map.Remove(1), 0);  // an empty bucket
  }
}

TEST(Map, DefaultHashMatchesSCC_Hash) {
  std::vector<std::int32_t> sizes{1, 2, 52, 60, 100, 1000003};
  for (std::int32_t s = SCC_GetNewTableSize(0); s != 0; s = SCC_GetNewTableSize(s)) sizes.push_back(s);
  int const keys[] = {0, 1, -1, 7, -7, 52, 53, -53, 54, 467182, 467183, -467184, 1 << 30,
                      INT_MAX, INT_MIN, INT_MIN + 1};
  IntMap ints;
  SCC_Map<std::int64_t, int> wides;
  for (std::int32_t size : sizes) {
    SCOPED_TRACE(size);
    for (int key : keys) {
      EXPECT_EQ(ints.HashOf(key, size), SCC_Hash(key, size)) << key;
      std::int64_t const wide = static_cast<std::int64_t>(key) * 1000003;
      EXPECT_EQ(wides.HashOf(wide, size), SCC_Hash(wide, size)) << wide;
    }
    EXPECT_EQ(wides.HashOf(INT64_MIN, size), SCC_Hash(INT64_MIN, size));
    EXPECT_EQ(wides.HashOf(INT64_MAX, size), SCC_Hash(INT64_MAX, size));
  }
  EXPECT_EQ(ints.HashOf(-7, 53), 46);
  // A null hash function is the default one.
  IntMap nullHash(53, 1, nullptr);
  nullHash.Insert(-7, 1);
  EXPECT_EQ(*nullHash.Find(-7), 1);
  EXPECT_EQ(nullHash.HashOf(-7, 53), 46);
}

TEST(Map, CustomHashFunctions) {
  // Values far out of range and negative still name a bucket.
  IntMap wild(53, 1, &WildHash);
  for (int k = -500; k < 500; ++k) ASSERT_NE(wild.Insert(k, k), nullptr);
  for (int k = -500; k < 500; ++k) ASSERT_EQ(*wild.Find(k), k);
  EXPECT_EQ(wild.Find(500), nullptr);
  for (int k = -500; k < 500; k += 2) EXPECT_EQ(wild.Remove(k), 1);
  EXPECT_EQ(wild.count, 500);

  // One chain for everything: each insertion from the fifth on grows the
  // table, until the last size.
  IntMap flat(53, 1, &ConstantHash);
  for (int k = 0; k < 4; ++k) flat.Insert(k);
  EXPECT_EQ(flat.tableSize, 53);
  flat.Insert(4);
  EXPECT_EQ(flat.tableSize, 107);
  for (int k = 5; k < 30; ++k) flat.Insert(k);
  EXPECT_EQ(flat.tableSize, 467183);
  for (int k = 0; k < 30; ++k) EXPECT_EQ(flat.Find(k) != nullptr, true) << k;
  EXPECT_EQ(flat.Insert(3), nullptr);
}

TEST(Map, TextKeys) {
  SCC_Map<SYS_String, SYS_String> map;
  for (int k = 0; k < 2000; ++k) {
    SYS_String key;
    key << "net" << k;
    SYS_String value;
    value << "pad" << k;
    ASSERT_NE(map.Insert(key, value), nullptr);
  }
  EXPECT_GT(map.tableSize, 53);
  EXPECT_EQ(map.HashOf("net5", map.tableSize), SCC_Hash(SYS_String("net5"), map.tableSize));
  SYS_String const *found = map.Find(SYS_String("net1234"));
  ASSERT_NE(found, nullptr);
  EXPECT_STREQ(*found, "pad1234");
  EXPECT_EQ(map.Find(SYS_String("net2000")), nullptr);
  EXPECT_EQ(map.Find(SYS_String("Net5")), nullptr);
  EXPECT_EQ(map.Insert(SYS_String("net7"), SYS_String("x")), nullptr);

  // Keys are equal exactly when SCC_Compare says so: texts end at their
  // first NUL.
  struct Case {
    char const *name;
    SYS_String stored;
    SYS_String sought;
  };
  Case const cases[] = {
      {"same text", "abc", "abc"},
      {"prefix", "abc", "ab"},
      {"longer", "ab", "abc"},
      {"one byte differs", "abc", "abd"},
      {"empty and empty", "", ""},
      {"empty and text", "", "a"},
      {"NUL inside, same bytes before it", SYS_String("ab\0x", 4), SYS_String("ab\0y", 4)},
      {"NUL inside against its prefix", SYS_String("ab\0x", 4), "ab"},
      {"high bytes", "\xe4\xf6", "\xe4\xf6"},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(c.name);
    SCC_Map<SYS_String, int> texts;
    texts.Insert(c.stored, 1);
    bool const equal = SCC_Compare(c.stored, c.sought) == 0;
    EXPECT_EQ(texts.Find(c.sought) != nullptr, equal);
    EXPECT_EQ(texts.Insert(c.sought, 2) == nullptr, equal);
  }

  SCC_Map<int, SYS_String> names;
  names.Insert(3, "three");
  EXPECT_STREQ(*names.Find(3), "three");
  EXPECT_STREQ(*names.Insert(4), "");
}

TEST(Map, MapIterator) {
  IntMap map;
  SCC_MapIterator<int, int> empty(map);
  EXPECT_EQ(empty.IsValid(), 0);
  EXPECT_EQ(empty.IsEmpty(), 1);
  EXPECT_EQ(empty.GetHandle(), 0);
  EXPECT_EQ(empty.GetNext(), 0);

  for (int key : {1, 54, 2}) map.Insert(key, key * 10);
  SCC_MapIterator<int, int> it;
  EXPECT_EQ(it.IsValid(), 0);
  it.Start(map);
  EXPECT_EQ(it.map, &map);
  EXPECT_EQ(it.bucket, 1);
  EXPECT_EQ(it.GetHandle(), reinterpret_cast<SCC_Handle>(map.Find(54)));
  SCC_MapIterator<int, int> old = it++;
  EXPECT_EQ(old.GetKey(), 54);
  EXPECT_EQ(old.GetOwner(), nullptr);
  EXPECT_EQ(it.GetKey(), 1);
  EXPECT_EQ(it.GetNext(), 1);
  EXPECT_EQ(it.bucket, 2);
  EXPECT_EQ(it.GetValue(), 20);
  EXPECT_EQ(it.GetNext(), 0);
  EXPECT_EQ(it.IsEmpty(), 1);
  EXPECT_EQ(it.GetHandle(), 0);
  EXPECT_EQ(it.GetNext(), 0);  // stays at the end

  // SeekBucket stands on the first entry from a bucket on.
  EXPECT_EQ(it.SeekBucket(2), 1);
  EXPECT_EQ(it.GetKey(), 2);
  EXPECT_EQ(it.SeekBucket(3), 0);
  EXPECT_EQ(it.bucket, 53);
  EXPECT_EQ(it.SeekBucket(-4), 1);
  EXPECT_EQ(it.GetKey(), 54);

  // As a listener of the map it follows the policy of SCC_Iterator.
  SCC_MapIterator<int, int> cursor(map);
  cursor.OnFocusDeleteGoForward();
  cursor.JoinAtEnd(&map);
  map.Remove(54);
  ASSERT_EQ(cursor.IsValid(), 1);
  EXPECT_EQ(cursor.GetKey(), 1);
  SCC_MapIterator<int, int> joined;
  joined = cursor;  // joins the map's ring in front of cursor
  EXPECT_EQ(joined.GetOwner(), &map);
  EXPECT_EQ(joined.GetKey(), 1);
  map.Clear();
  EXPECT_EQ(cursor.IsValid(), 0);
  EXPECT_EQ(joined.IsValid(), 0);
  joined.Invalidate();
  EXPECT_EQ(joined.GetOwner(), nullptr);
  EXPECT_EQ(joined.map, nullptr);
  EXPECT_EQ(joined.bucket, 0);
}

TEST(Map, ThrowingCopiesLoseNothing) {
  CountedLeakGuard guard;
  SCC_Map<int, Fragile> map;
  for (int k = 0; k < 10; ++k) map.Insert(k, Fragile(k));
  Fragile::countdown = 1;
  EXPECT_THROW(map.Insert(10, Fragile(10)), std::runtime_error);
  EXPECT_EQ(map.count, 10);
  EXPECT_EQ(map.Find(10), nullptr);

  Fragile::countdown = 4;
  typedef SCC_Map<int, Fragile> FragileMap;
  EXPECT_THROW(FragileMap{map}, std::runtime_error);

  SCC_Map<int, Fragile> target;
  target.Insert(99, Fragile(99));
  Fragile::countdown = 4;
  EXPECT_THROW(target = map, std::runtime_error);
  // What was copied before the failure is a sound map.
  EXPECT_EQ(target.count, static_cast<std::int32_t>(Keys(target).size()));
  EXPECT_EQ(target.count, 3);
  Fragile::countdown = 0;
}

}  // namespace
