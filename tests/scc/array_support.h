// Helpers of the array tests: a recording listener, a tiny engine client and
// a tagged item whose order leaves room for equal keys.
#ifndef TOVIK_TESTS_SCC_ARRAY_SUPPORT_H
#define TOVIK_TESTS_SCC_ARRAY_SUPPORT_H

#include <cstdint>
#include <cstring>
#include <ostream>
#include <utility>
#include <vector>

#include "scc_array.h"

namespace array_test {

// One notification as a listener saw it; code 7 is decoded from its record.
struct Heard {
  int code;
  SCC_Handle data;                       // codes other than 7
  std::int32_t operation, index, count;  // code 7

  bool operator==(Heard const &o) const {
    return code == o.code && data == o.data && operation == o.operation && index == o.index &&
           count == o.count;
  }
};
inline Heard Code(int code, SCC_Handle data = 0) { return {code, data, 0, 0, 0}; }
inline Heard Block(std::int32_t operation, std::int32_t index, std::int32_t count) {
  return {EvRemapped, 0, operation, index, count};
}
inline std::ostream &operator<<(std::ostream &out, Heard const &h) {
  if (h.code == EvRemapped)
    return out << "{7: " << h.operation << "," << h.index << "," << h.count << "}";
  return out << "{" << h.code << ": " << h.data << "}";
}

class Recorder : public SCC_EventNode<int> {
 public:
  std::vector<Heard> heard;
  // Called with each notification after it is recorded, to look at the array.
  void (*also)(Recorder &, int code) = nullptr;
  void *context = nullptr;

  int OnNotification(int code, int *data) override {
    Heard h = Code(code);
    if (code == EvRemapped) {
      auto const *record = reinterpret_cast<_SCC_Array::UpdateRecord const *>(data);
      h.operation = record->operation;
      h.index = record->index;
      h.count = record->count;
    } else {
      h.data = SCC_DataToHandle(data);
    }
    heard.push_back(h);
    if (also != nullptr) also(*this, code);
    return 0;
  }
};

// The engine with hand-written item steps for 16-bit items, counting the
// virtual steps it is driven through.
class TestArray : public _SCC_Array {
 public:
  TestArray() = default;
  TestArray(TestArray const &other) : _SCC_Array(other) {}
  TestArray &operator=(TestArray const &other) {
    _SCC_Array::operator=(other);
    return *this;
  }
  ~TestArray() override { Clear(); }

  using _SCC_Array::CreateBuffer;
  using _SCC_Array::FindItemPosition;
  using _SCC_Array::SeparateBuffers;

  std::uint16_t Get(std::int32_t i) const { return static_cast<std::uint16_t const *>(data)[i]; }
  void Put(std::int32_t i, std::uint16_t value) {
    CheckArray(i);
    static_cast<std::uint16_t *>(data)[i] = value;
  }
  void Fill(std::vector<std::uint16_t> const &values) {
    SetSize(static_cast<std::int32_t>(values.size()));
    for (std::size_t i = 0; i < values.size(); ++i) Put(static_cast<std::int32_t>(i), values[i]);
  }
  std::vector<std::uint16_t> Items() const {
    std::vector<std::uint16_t> out;
    for (std::int32_t i = 0; i < GetSize(); ++i) out.push_back(Get(i));
    return out;
  }
  SCC_Notifier *NotifierIfAny() const { return notifier; }

  std::vector<std::pair<std::int32_t, std::int32_t>> shortSorts;
  std::vector<std::pair<std::int32_t, std::int32_t>> swaps;
  int copies = 0;
  std::int32_t growStep = 0;  // 0: the engine's own

 protected:
  _Buffer *AllocData(std::int32_t capacity) override {
    if (capacity < 1) return nullptr;
    return new (AllocateBlock(capacity, sizeof(std::uint16_t))) _Buffer(capacity);
  }
  std::int32_t GetElementSize() const override { return sizeof(std::uint16_t); }
  void CopyData(_Buffer *target, std::int32_t to, std::int32_t from, std::int32_t count) override {
    ++copies;
    if (target == nullptr || data == nullptr || count == 0) return;
    auto *out = static_cast<std::uint16_t *>(target->GetItems());
    auto const *in = static_cast<std::uint16_t const *>(data);
    for (std::int32_t k = 0; k != count; k += count > 0 ? 1 : -1) out[to + k] = in[from + k];
  }
  void Swap(std::int32_t a, std::int32_t b) override {
    swaps.emplace_back(a, b);
    std::swap(static_cast<std::uint16_t *>(data)[a], static_cast<std::uint16_t *>(data)[b]);
  }
  void ShortSort(std::int32_t lo, std::int32_t hi) override {
    shortSorts.emplace_back(lo, hi);
    _SCC_Array::ShortSort(lo, hi);
  }
  std::int32_t GetGrowByAmount() const override {
    return growStep != 0 ? growStep : _SCC_Array::GetGrowByAmount();
  }
};

// An item ordered by key alone, so that a tag tells equal items apart.
struct Tagged {
  int key = 0;
  int tag = 0;
};
inline int ByKey(Tagged const &a, Tagged const &b) {
  return a.key < b.key ? -1 : (a.key > b.key ? 1 : 0);
}

}  // namespace array_test

#endif  // TOVIK_TESTS_SCC_ARRAY_SUPPORT_H
