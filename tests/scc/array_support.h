// Helpers of the array tests: a recording listener and a tiny engine client.
#ifndef TOVIK_TESTS_SCC_ARRAY_SUPPORT_H
#define TOVIK_TESTS_SCC_ARRAY_SUPPORT_H

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "scc_array.h"
#include "test_support.h"

namespace tovik_test {
inline int SCC_Compare(Counted const &a, Counted const &b) {
  return ::SCC_Compare(a.value, b.value);
}
}  // namespace tovik_test

namespace array_test {

// Each notification as {code, data}; code 7 as {7, operation, index, count}.
using Heard = std::vector<SCC_Handle>;

class Recorder : public SCC_EventNode<int> {
 public:
  std::vector<Heard> heard;
  void (*also)(Recorder &, int code) = nullptr;  // runs after recording
  void *context = nullptr;

  int OnNotification(int code, int *data) override {
    if (code == EvRemapped) {
      auto const *r = reinterpret_cast<_SCC_Array::UpdateRecord const *>(data);
      heard.push_back({code, r->operation, r->index, r->count});
    } else {
      heard.push_back({code, SCC_DataToHandle(data)});
    }
    if (also != nullptr) also(*this, code);
    return 0;
  }
};

using Pairs = std::vector<std::pair<std::int32_t, std::int32_t>>;

// The engine with hand-written steps for 16-bit items, recording the virtual
// steps it is driven through.
class TestArray : public _SCC_Array {
 public:
  TestArray() = default;
  ~TestArray() override { Clear(); }

  std::vector<std::uint16_t> Items() const {
    auto const *items = static_cast<std::uint16_t const *>(data);
    return std::vector<std::uint16_t>(items, items + GetSize());
  }
  void Fill(std::vector<std::uint16_t> const &values) {
    SetSize(static_cast<std::int32_t>(values.size()));
    std::copy(values.begin(), values.end(), static_cast<std::uint16_t *>(data));
  }

  Pairs shortSorts, swaps;

 protected:
  _Buffer *AllocData(std::int32_t capacity) override {
    return capacity < 1 ? nullptr : new (AllocateBlock(capacity, 2)) _Buffer(capacity);
  }
  std::int32_t GetElementSize() const override { return 2; }
  void CopyData(_Buffer *target, std::int32_t to, std::int32_t from, std::int32_t count) override {
    if (target == nullptr || data == nullptr) return;
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
};

}  // namespace array_test

#endif  // TOVIK_TESTS_SCC_ARRAY_SUPPORT_H
