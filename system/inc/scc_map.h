// SCC_Map<K,V>: the library's hash map, chained, with its own notifier.
//
// Each entry is a node that holds a copy of the key, the value and the hash
// the key gave for the present table size. A node never moves once made, so
// the address of its value (the entry's handle) stays good for as long as the
// entry lives, across every rehash. The buckets are SCC_SDList<Node> lists
// that own their nodes; the newest node of a bucket stands at its front.
//
//   SCC_Map { SCC_Notifier; unique; tableSize; count; hashFunction; table }
//   table[i]  SCC_SDList<Node> { vptr; head } -> Node -> Node -> null
//   Node      { next; key; value; hash }       (&value is the handle)
//
// Growth is driven by chain length, not by load: when an insertion leaves
// the bucket it went into with 5 or more nodes, the table moves to the next
// size of a fixed list of primes (53, 107, ..., 467183) and every key is
// hashed again. A map at 467183 buckets, or at a size beyond the list, no
// longer grows. The map never shrinks.
//
// Listeners of the map hear, with the entry's value address as data:
//   EvAdded   (1) after an insertion, and after the rehash it caused
//   EvDeleted (2) before a removal, while the entry can still be read
//   EvReload  (5) after construction, copy and assignment, without data
//   EvCleared (6) before Clear and destruction drop the entries, without data
// A listener must not change the map it is told about.
//
// Iteration (SCC_MapIterator) goes bucket by bucket from 0 up, and along each
// chain from its front, so the newest entry of a bucket comes first. A rehash
// changes the order. Copies are deep: a copy has its own nodes in the same
// order, and its own, empty, ring of listeners.
//
// Memory: a table that cannot be allocated leaves the map without buckets:
// it finds nothing, and Insert tries to make the table again, giving null if
// it still cannot; a growth that cannot get its new table keeps the old one.
// A node that cannot be allocated throws std::bad_alloc from Insert, and the
// map is as it was.
#ifndef TOVIK_SCC_MAP_H
#define TOVIK_SCC_MAP_H

#include <cstdint>
#include <cstring>
#include <new>

#include "scc_event.h"
#include "scc_hash.h"
#include "scc_list.h"
#include "sys_string.h"
#include "tovik_export.h"

// The number of buckets a map grows to from size: the first of the table
// sizes 53, 107, 223, 449, 907, 1823, 3643, 7297, 14593, 29191, 58391,
// 116789, 233591 and 467183 that is larger than size, or 0 if none is.
TOVIK_API std::int32_t SCC_GetNewTableSize(std::int32_t size);

// The default hash function of SCC_Map<K,V>: SCC_Hash(key, size).
template <class K>
TOVIK_API std::int32_t SCC_MapHash(K const &key, std::int32_t size) {
  return SCC_Hash(key, size);
}

namespace tovik_detail {

// SCC_Hash of a signed integer (remainder by size, moved into 0 to size - 1)
// for a size of 1 or more, by the unsigned remainder of the key's magnitude,
// which is cheaper than the signed remainder of a wider type.
template <class S, class U>
inline std::int32_t SignedSlot(S key, std::int32_t size) {
  bool const negative = key < 0;
  U const magnitude = negative ? U(0) - static_cast<U>(key) : static_cast<U>(key);
  auto const r = static_cast<std::int32_t>(magnitude % static_cast<U>(size));
  return negative && r != 0 ? size - r : r;
}

// How a map hashes keys with its default hash function and tells two keys
// equal. Each form gives exactly what SCC_Hash and SCC_Compare(...) == 0
// give; the specialisations are only faster.
template <class K>
struct MapKey {
  static std::int32_t Hash(K const &key, std::int32_t size) { return SCC_Hash(key, size); }
  static bool Equal(K const &a, K const &b) { return SCC_Compare(a, b) == 0; }
};

template <>
struct MapKey<int> {
  static std::int32_t Hash(int key, std::int32_t size) {
    return SignedSlot<int, std::uint32_t>(key, size);
  }
  static bool Equal(int a, int b) { return a == b; }
};

template <>
struct MapKey<std::int64_t> {
  static std::int32_t Hash(std::int64_t key, std::int32_t size) {
    return SignedSlot<std::int64_t, std::uint64_t>(key, size);
  }
  static bool Equal(std::int64_t a, std::int64_t b) { return a == b; }
};

template <>
struct MapKey<SYS_String> {
  static std::int32_t Hash(SYS_String const &key, std::int32_t size) {
    return SCC_Hash(key, size);
  }
  // SCC_Compare(a, b) == 0, without its two calls: texts end at their first NUL.
  static bool Equal(SYS_String const &a, SYS_String const &b) {
    return std::strcmp(a, b) == 0;
  }
};

}  // namespace tovik_detail

// One entry of a map. Its address, and that of its value, never change.
template <class K, class V>
class TOVIK_API SCC_MapNode : public SCC_SListNode<SCC_MapNode<K, V>> {
 public:
  K key;
  V value;               // its address is the handle of the entry
  std::int32_t hash;     // the hash of key for the present table size

  SCC_MapNode(K const &k, std::int32_t h) : key(k), value(), hash(h) {}
  SCC_MapNode(K const &k, V const &v, std::int32_t h) : key(k), value(v), hash(h) {}
};

template <class K, class V>
class TOVIK_API SCC_Map : public SCC_Notifier {
 public:
  typedef SCC_MapNode<K, V> Node;
  typedef SCC_SDList<Node> Bucket;
  typedef std::int32_t (*HashFunction)(K const &, std::int32_t);

  int unique;                 // non-zero: inserting a key already there is refused
  std::int32_t tableSize;     // number of buckets
  std::int32_t count;         // number of entries
  HashFunction hashFunction;  // called with the key and tableSize; null means SCC_Hash
  Bucket *table;              // tableSize buckets, or null without memory

  // A table of size buckets (a size below 1 counts as 1), then EvReload.
  explicit SCC_Map(std::int32_t size = 53, int uniqueKeys = 1,
                   HashFunction hash = &SCC_MapHash<K>)
      : unique(uniqueKeys),
        tableSize(size < 1 ? 1 : size),
        count(0),
        hashFunction(hash),
        table(NewTable(tableSize)) {
    Tell(EvReload, nullptr);
  }
  // A deep copy: same size, hash function, unique flag and entries, each
  // bucket in the same order with the same stored hashes. The listeners stay
  // with other. Ends with EvReload.
  SCC_Map(SCC_Map const &other)
      : SCC_Notifier(),
        unique(other.unique),
        tableSize(other.tableSize),
        count(0),
        hashFunction(other.hashFunction),
        table(nullptr) {
    // A copy constructor that throws runs no destructor: drop the nodes made.
    struct Guard {
      SCC_Map *map;
      ~Guard() {
        if (map != nullptr) map->DropTable();
      }
    } guard{this};
    CopyEntries(other);
    guard.map = nullptr;
    Tell(EvReload, nullptr);
  }
  // Drops the entries, then copies other's as the copy constructor does; the
  // listeners of both maps stay where they are. Ends with EvReload. Nothing
  // happens on self-assignment.
  SCC_Map &operator=(SCC_Map const &other) {
    if (&other == this) return *this;
    DropTable();
    unique = other.unique;
    tableSize = other.tableSize;
    hashFunction = other.hashFunction;
    CopyEntries(other);
    Tell(EvReload, nullptr);
    return *this;
  }
  // EvCleared, then the entries go.
  ~SCC_Map() override {
    Tell(EvCleared, nullptr);
    DropTable();
  }

  // Adds a copy of key and value. In a unique map a key already there is
  // refused: the result is null and nothing changes, nobody is told. Without
  // unique a duplicate is added in front of the older ones, so Find gives the
  // newest. Returns the handle of the new entry.
  V *Insert(K const &key, V const &value) { return Add(key, &value); }
  // The same with a default-constructed value.
  V *Insert(K const &key) { return Add(key, static_cast<V const *>(nullptr)); }

  // The handle of the newest entry with an equal key, or null.
  V *Find(K const &key) {
    Node *const node = FindNode(key);
    return node != nullptr ? &node->value : nullptr;
  }
  V const *Find(K const &key) const {
    Node const *const node = FindNode(key);
    return node != nullptr ? &node->value : nullptr;
  }

  // Removes the newest entry with an equal key, after EvDeleted. 1 if there
  // was one, else 0.
  int Remove(K const &key);

  // EvCleared, then every entry goes; the table keeps its size.
  void Clear() {
    Tell(EvCleared, nullptr);
    DropTable();
    table = NewTable(tableSize);
  }

  std::int32_t GetCount() const { return count; }
  int IsEmpty() const { return count == 0; }
  std::int32_t GetTableSize() const { return tableSize; }

  // The hash of key for a table of size buckets, by hashFunction.
  std::int32_t HashOf(K const &key, std::int32_t size) const {
    std::int32_t hash;
    Place(key, size, hash);
    return hash;
  }
  // The bucket of a hash: the hash modulo size, taken unsigned, so that a
  // hash function giving a value out of range still names a bucket.
  static std::int32_t BucketOf(std::int32_t hash, std::int32_t size) {
    std::uint32_t const h = static_cast<std::uint32_t>(hash);
    std::uint32_t const n = static_cast<std::uint32_t>(size);
    return static_cast<std::int32_t>(h < n ? h : h % n);
  }

 private:
  // Stores the hash of key for a table of size buckets in hash and returns
  // its bucket. The default function gives a bucket already, and is inline.
  std::int32_t Place(K const &key, std::int32_t size, std::int32_t &hash) const {
    if (hashFunction == &SCC_MapHash<K> || hashFunction == nullptr) {
      hash = tovik_detail::MapKey<K>::Hash(key, size);
      return hash;
    }
    hash = hashFunction(key, size);
    return BucketOf(hash, size);
  }

  // A chain this long makes the map grow.
  static constexpr int kLongChain = 5;

  // The buckets are made here and only here, as plain SCC_SDList<Node>: so
  // their list events are called directly, without the virtual dispatch.
  // Sizes are at least 1; taken unsigned, no size can overflow the request.
  static Bucket *NewTable(std::int32_t size) {
    return new (std::nothrow) Bucket[static_cast<std::uint32_t>(size)];
  }

  Node *FindNode(K const &key) const {
    if (table == nullptr) return nullptr;
    std::int32_t h;
    Node *node = table[Place(key, tableSize, h)].head;
    while (node != nullptr && (node->hash != h || !tovik_detail::MapKey<K>::Equal(node->key, key))) {
      node = node->next;
    }
    return node;
  }

  // Notifies only when somebody listens: a walk over no listener is a no-op.
  void Tell(int code, void *data) {
    if (HasListeners()) Notify(code, data);
  }

  V *Add(K const &key, V const *value);
  void Grow();
  void CopyEntries(SCC_Map const &other);
  // Destroys the table with its nodes; count becomes 0.
  void DropTable() {
    delete[] table;
    table = nullptr;
    count = 0;
  }
};

// A cursor over the entries of a map, in the map's iteration order. Its
// handle is the address of the value it stands on. It does not listen to the
// map by itself: after the entry it stands on was removed, or the map was
// cleared or destroyed, it must be started again. A rehash leaves it on its
// entry, but the rest of the walk then follows the new order.
template <class K, class V>
class TOVIK_API SCC_MapIterator : public SCC_SListIterator<SCC_MapNode<K, V>> {
  typedef SCC_SListIterator<SCC_MapNode<K, V>> Base;

 public:
  typedef SCC_MapNode<K, V> Node;

  std::int32_t bucket;   // the bucket current is in
  SCC_Map<K, V> *map;    // the map walked, or null

  SCC_MapIterator() : bucket(0), map(nullptr) {}
  explicit SCC_MapIterator(SCC_Map<K, V> &m) : bucket(0), map(nullptr) { Start(m); }
  // A copy stands on the same entry and listens to nothing.
  SCC_MapIterator(SCC_MapIterator const &other)
      : Base(other), bucket(other.bucket), map(other.map) {}
  // Takes other's place and its link to its source, as SCC_Iterator does.
  SCC_MapIterator &operator=(SCC_MapIterator &other) {
    Base::operator=(other);
    bucket = other.bucket;
    map = other.map;
    return *this;
  }

  // Stands on the first entry of m: the front of the first non-empty bucket
  // from 0 up, whose OnIteratorStart is told. On nothing for an empty map.
  void Start(SCC_Map<K, V> &m) {
    map = &m;
    if (SeekBucket(0)) Base::Start(m.table[bucket]);
  }
  // Stands on the front of the first non-empty bucket from first up; on
  // nothing, with bucket at the table size, if there is none. 1 if on an entry.
  int SeekBucket(std::int32_t first) {
    this->current = nullptr;
    if (map == nullptr) return 0;
    bucket = first < 0 ? 0 : first;
    if (map->table != nullptr) {
      for (; bucket < map->tableSize; ++bucket) {
        if (map->table[bucket].head != nullptr) {
          this->current = map->table[bucket].head;
          return 1;
        }
      }
    }
    bucket = map->tableSize;
    return 0;
  }

  // The address of the value stood on, or 0.
  SCC_Handle GetHandle() const override {
    return this->current != nullptr ? reinterpret_cast<SCC_Handle>(&this->current->value) : 0;
  }
  // Along the chain, then on to the next non-empty bucket. 1 while valid.
  int GetNext() override {
    if (map == nullptr || this->current == nullptr) return 0;
    this->current = this->current->next;
    if (this->current == nullptr) SeekBucket(bucket + 1);
    return IsValid();
  }
  // Leaves any ring and stands on nothing, with no map.
  void Invalidate() override {
    this->Leave();
    this->current = nullptr;
    bucket = 0;
    map = nullptr;
  }
  int IsValid() const override {
    return map != nullptr && this->current != nullptr && bucket < map->tableSize;
  }
  int IsEmpty() const override { return !IsValid(); }

  K const &GetKey() const { return this->current->key; }
  V &GetValue() const { return this->current->value; }

  // Returns a copy at the old place, then steps.
  SCC_MapIterator operator++(int) {
    SCC_MapIterator old(*this);
    GetNext();
    return old;
  }
};

// ---------------------------------------------------------------------------

template <class K, class V>
V *SCC_Map<K, V>::Add(K const &key, V const *value) {
  if (table == nullptr && (table = NewTable(tableSize)) == nullptr) return nullptr;
  std::int32_t h;
  Bucket &chain = table[Place(key, tableSize, h)];
  if (unique != 0) {
    for (Node const *node = chain.head; node != nullptr; node = node->next) {
      if (node->hash == h && tovik_detail::MapKey<K>::Equal(node->key, key)) return nullptr;
    }
  }
  Node *const node = value != nullptr ? new Node(key, *value, h) : new Node(key, h);
  node->next = chain.head;
  chain.head = node;
  chain.Bucket::OnListEvent(EvAdded, node);
  ++count;
  int length = 0;
  for (Node const *at = node; at != nullptr && length < kLongChain; at = at->next) ++length;
  if (length >= kLongChain) Grow();
  V *const handle = &node->value;
  Tell(EvAdded, handle);
  return handle;
}

template <class K, class V>
int SCC_Map<K, V>::Remove(K const &key) {
  Node *const node = FindNode(key);
  if (node == nullptr) return 0;
  Tell(EvDeleted, &node->value);
  // Found again after the notification, should a listener have broken the
  // rule and changed the map meanwhile.
  if (table == nullptr) return 1;
  Bucket &chain = table[BucketOf(node->hash, tableSize)];
  Node *before = nullptr;
  Node *at = chain.head;
  while (at != nullptr && at != node) {
    before = at;
    at = at->next;
  }
  if (at == nullptr) return 1;
  --count;
  chain.Bucket::OnListEvent(EvDeleted, node);
  if (before != nullptr) {
    before->next = node->next;
  } else {
    chain.head = node->next;
  }
  node->next = nullptr;
  delete node;
  return 1;
}

template <class K, class V>
void SCC_Map<K, V>::Grow() {
  std::int32_t const newSize = SCC_GetNewTableSize(tableSize);
  if (newSize == 0) return;
  Bucket *const newTable = NewTable(newSize);
  if (newTable == nullptr) return;
  // Each node is linked at the end of its new chain. Linking at the front
  // and turning every chain round afterwards gives the same order without a
  // walk to the end or a table of ends.
  for (std::int32_t b = 0; b < tableSize; ++b) {
    Bucket &from = table[b];
    while (Node *const node = from.head) {
      from.Bucket::OnListEvent(EvDeleted, node);
      from.head = node->next;
      Bucket &to = newTable[Place(node->key, newSize, node->hash)];
      node->next = to.head;
      to.head = node;
      to.Bucket::OnListEvent(EvAdded, node);
    }
  }
  for (std::int32_t b = 0; b < newSize; ++b) {
    Node *reversed = nullptr;
    for (Node *node = newTable[b].head; node != nullptr;) {
      Node *const next = node->next;
      node->next = reversed;
      reversed = node;
      node = next;
    }
    newTable[b].head = reversed;
  }
  delete[] table;
  table = newTable;
  tableSize = newSize;
}

template <class K, class V>
void SCC_Map<K, V>::CopyEntries(SCC_Map const &other) {
  table = NewTable(tableSize);
  if (table == nullptr || other.table == nullptr) return;
  for (std::int32_t b = 0; b < tableSize; ++b) {
    Bucket &to = table[b];
    Node *last = nullptr;
    for (Node const *node = other.table[b].head; node != nullptr; node = node->next) {
      Node *const copy = new Node(node->key, node->value, node->hash);
      if (last != nullptr) {
        last->next = copy;
      } else {
        to.head = copy;
      }
      last = copy;
      to.Bucket::OnListEvent(EvAdded, copy);
      ++count;
    }
  }
}

#endif  // TOVIK_SCC_MAP_H
