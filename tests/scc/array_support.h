// Helpers of the array tests: a recording listener and a comparison of counted items.
#ifndef TOVIK_TESTS_SCC_ARRAY_SUPPORT_H
#define TOVIK_TESTS_SCC_ARRAY_SUPPORT_H

#include <cstdint>
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

}  // namespace array_test

#endif  // TOVIK_TESTS_SCC_ARRAY_SUPPORT_H
