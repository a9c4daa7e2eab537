#include "scc_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
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
  std::int32_t count, tableSize;
  bool operator==(Heard const &o) const { return code == o.code && data == o.data && count == o.count && tableSize == o.tableSize; }
};

class Recorder : public SCC_EventNode<int> {
 public:
  explicit Recorder(CountedMap &m) : map(&m) { JoinAtEnd(&m); }
  int OnNotification(int code, int *data) override {
    heard.push_back({code, SCC_DataToHandle(data), map->count, map->tableSize});
    if (code == EvDeleted) stillFound.push_back(map->Find(deletedKey) != nullptr);
    return 0;
  }
  CountedMap *map;
  std::vector<Heard> heard;
  int deletedKey = 0;
  std::vector<bool> stillFound;
};

std::int32_t ConstantHash(int const &, std::int32_t) { return 0; }
// Out of range on purpose: negative and far above the table size.
std::int32_t WildHash(int const &key, std::int32_t) { return key * 1000003; }

TEST(Map, GrowsThroughTheSizeListWhenTheChainInsertedIntoReachesFive) {
  std::pair<std::int32_t, std::int32_t> const next[] = {{0, 53},           {-100, 53}, {52, 53},    {53, 107},
                                                        {467182, 467183}, {467183, 0}, {INT32_MAX, 0}};
  for (auto const &c : next) EXPECT_EQ(SCC_GetNewTableSize(c.first), c.second) << c.first;
  std::vector<std::int32_t> sizes;
  for (std::int32_t s = SCC_GetNewTableSize(0); s != 0; s = SCC_GetNewTableSize(s)) sizes.push_back(s);
  EXPECT_EQ(sizes, (std::vector<std::int32_t>{53, 107, 223, 449, 907, 1823, 3643, 7297, 14593,
                                              29191, 58391, 116789, 233591, 467183}));

  // 200 keys, at most four in any bucket: no growth, whatever the load.
  IntMap map;
  for (int k = 0; k < 200; ++k) map.Insert(k, -k);
  EXPECT_EQ(map.tableSize, 53);
  // Bucket 0 holds 0, 53, 106 and 159; a fifth key there grows the table,
  // and every entry keeps its place in memory.
  std::vector<int *> handles;
  for (int k = 0; k < 200; ++k) handles.push_back(map.Find(k));
  int *const fifth = map.Insert(212, 7);
  EXPECT_EQ(map.tableSize, 107);
  EXPECT_EQ(map.Find(212), fifth);
  for (int k = 0; k < 200; ++k) ASSERT_EQ(map.Find(k), handles[k]) << k;
  map.Clear();  // keeps the size
  EXPECT_EQ(map.tableSize, 107);
  EXPECT_TRUE(map.count == 0 && map.Find(7) == nullptr && Keys(map).empty());

  // k * 107 lies in bucket k of 53 but in bucket 0 of 107: the rehash leaves
  // six nodes in bucket 0, yet only the chain inserted into counts.
  IntMap skewed;
  for (int key : {0, 107, 214, 321, 428, 535, 53, 106, 159, 212, 1}) skewed.Insert(key);
  EXPECT_EQ(skewed.tableSize, 107);
  skewed.Insert(642);
  EXPECT_EQ(skewed.tableSize, 223);

  // One chain for everything: each insertion from the fifth on grows the
  // table, until the last size, which stays.
  IntMap flat(0, 1, &ConstantHash);  // a size below 1 is one bucket
  EXPECT_EQ(flat.tableSize, 1);
  for (int k = 0; k < 5; ++k) flat.Insert(k);
  EXPECT_EQ(flat.tableSize, 53);
  for (int k = 5; k < 30; ++k) flat.Insert(k);
  EXPECT_EQ(flat.tableSize, 467183);
  for (int k = 0; k < 30; ++k) EXPECT_NE(flat.Find(k), nullptr) << k;
}

TEST(Map, ChainsKeepTheNewestFirstAndLoseOnlyWhatIsRemoved) {
  // A rehash takes each old chain from its front, in bucket order, and links
  // each node at the end of its new chain.
  IntMap grown;
  for (int key : {0, 5671, 1, 108, 53, 106, 159}) grown.Insert(key);  // 5671 = 53 * 107
  ASSERT_EQ(grown.tableSize, 107);
  EXPECT_EQ(Keys(grown), (std::vector<int>{5671, 0, 1, 108, 159, 53, 106}));

  CountedLeakGuard guard;
  for (int victim : {0, 53, 106, 159}) {
    SCOPED_TRACE(victim);
    CountedMap chain;
    for (int key : {0, 53, 106, 159}) chain.Insert(key, Counted(key));  // chain 159, 106, 53, 0
    EXPECT_EQ(chain.Remove(victim), 1);
    std::vector<int> expected{159, 106, 53, 0};
    expected.erase(std::find(expected.begin(), expected.end(), victim));
    EXPECT_EQ(Keys(chain), expected);
    EXPECT_EQ(chain.Remove(victim) + chain.Remove(1), 0);
  }

  // Without unique keys the newest duplicate is found and removed first.
  CountedMap multi(53, 0);
  Counted *older = multi.Insert(7, Counted(1));
  Counted *newer = multi.Insert(7, Counted(2));
  EXPECT_EQ(multi.Find(7), newer);
  EXPECT_EQ(multi.Remove(7), 1);
  EXPECT_EQ(multi.Find(7), older);
  // A unique map refuses the key without a copy or a word.
  CountedMap single;
  Counted *first = single.Insert(7, Counted(1));
  Recorder recorder(single);
  int const copies = Counted::copies;
  EXPECT_EQ(single.Insert(7, Counted(2)), nullptr);
  EXPECT_EQ(Counted::copies, copies);
  EXPECT_TRUE(single.Find(7) == first && first->value == 1 && recorder.heard.empty());
}

TEST(Map, NotificationsInOrderWithTheirData) {
  CountedLeakGuard guard;
  auto map = new CountedMap;
  Recorder recorder(*map);
  std::vector<SCC_Handle> added;  // the fifth grows the table
  for (int key : {0, 53, 106, 159, 212}) added.push_back(reinterpret_cast<SCC_Handle>(map->Insert(key, Counted(key))));
  recorder.deletedKey = 53;
  EXPECT_EQ(map->Remove(53), 1);
  EXPECT_EQ(map->Remove(999), 0);
  map->Clear();
  delete map;
  // Told after the entry is counted, a growing insertion after the rehash; a
  // removal while the entry is still in the map and counted; clear and
  // destruction without data, before the entries go.
  std::vector<Heard> expected;
  for (int i = 0; i < 5; ++i) expected.push_back({EvAdded, added[i], i + 1, i < 4 ? 53 : 107});
  expected.push_back({EvDeleted, added[1], 5, 107});
  expected.push_back({EvCleared, 0, 4, 107});
  expected.push_back({EvCleared, 0, 0, 107});
  EXPECT_EQ(recorder.heard, expected);
  EXPECT_EQ(recorder.stillFound, std::vector<bool>{true});
  EXPECT_EQ(recorder.GetOwner(), nullptr);  // the dying map sent it away
}

TEST(Map, CopiesAreDeep) {
  CountedLeakGuard guard;
  // Hashes far out of range, and negative, still name a bucket: the hash
  // taken unsigned, modulo the size.
  CountedMap original(53, 0, &WildHash);
  for (int k = 0; k < 300; ++k) original.Insert(k % 250 - 125, Counted(k));
  Recorder originalRecorder(original);
  std::vector<int> const order = Keys(original);

  CountedMap copy(original);
  EXPECT_TRUE(copy.tableSize == original.tableSize && copy.unique == 0 && copy.hashFunction == &WildHash);
  EXPECT_EQ(copy.HasListeners(), 0);  // listeners stay with the original
  EXPECT_EQ(Keys(copy), order);
  copy.Find(3)->value = 1000;
  copy.Remove(4);
  EXPECT_EQ(original.Find(3)->value, 128);
  EXPECT_NE(original.Find(4), nullptr);

  // Assignment drops the old entries, copies, and tells its own listeners.
  CountedMap target(107);
  target.Insert(1, Counted(1));
  Recorder targetRecorder(target);
  target = original;
  EXPECT_EQ(Keys(target), order);
  EXPECT_EQ(*target.Find(-125), 250);
  ASSERT_EQ(targetRecorder.heard.size(), 1u);
  EXPECT_TRUE(targetRecorder.heard[0].code == EvReload && targetRecorder.heard[0].count == 300);
  EXPECT_TRUE(originalRecorder.heard.empty());
  Counted *const kept = target.Find(10);
  target = static_cast<CountedMap &>(target);  // self-assignment changes and tells nothing
  EXPECT_TRUE(target.Find(10) == kept && targetRecorder.heard.size() == 1u);

}

TEST(Map, TextKeys) {
  SCC_Map<SYS_String, int> numbered;  // text keys through several rehashes
  for (int k = 0; k < 500; ++k) {
    SYS_String key;
    numbered.Insert(key << "net" << k, k);
  }
  EXPECT_EQ(*numbered.Find("net123"), 123);
  // Keys are equal exactly when SCC_Compare says so: texts end at their first NUL.
  struct Case {
    char const *name;
    SYS_String stored;
    SYS_String sought;
  };
  Case const cases[] = {
      {"same text", "abc", "abc"},
      {"prefix", "abc", "ab"},
      {"one byte differs", "abc", "abd"},
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
}

}  // namespace
