// Helpers for the failure manager's tests: a listener that records what it
// hears and runs a test's own reaction, and failures at known positions.
#ifndef TOVIK_SSM_TEST_SUPPORT_H
#define TOVIK_SSM_TEST_SUPPORT_H

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ssm.h"

namespace ssm_test {

class Listener : public SCC_EventNode<int> {
 public:
  typedef std::function<void(int code, SSM::AssertData *record)> Reaction;

  explicit Listener(SCC_Notifier &event, Reaction react = {}) : reaction(std::move(react)) { JoinAtEnd(&event); }
  int OnNotification(int code, int *data) override {
    SSM::AssertData *const record = reinterpret_cast<SSM::AssertData *>(data);
    heard.emplace_back(code, record);
    if (reaction) reaction(code, record);
    return 0;
  }

  std::vector<std::pair<int, SSM::AssertData *>> heard;
  Reaction reaction;
};

// What a listener of the application does to steer a failure.
inline void Steer(SSM::AssertData *record, int action) {
  SSM::AssertObj obj;
  obj.SetHandle(record);
  obj.SetAction(static_cast<SSM::Action>(action));
}

// A failure at "board.cpp(line)".
inline int Fail(int line, SSM_FailureType type, char const *text = "Demo: failed", int id = 0) {
  return SSM_AssertFailed(text, "board.cpp", line, type, id);
}

// The record a call throws, or null if it throws none.
template <class Call>
SSM::AssertData *Thrown(Call call) {
  try { call(); } catch (SSM::AssertData *record) { return record; }
  return nullptr;
}

// The record of a failure at "board.cpp(line)".
inline SSM::AssertData *RecordAt(SSM &manager, int line) {
  return manager.asserts.Find(("board.cpp(" + std::to_string(line) + ")").c_str());
}

}  // namespace ssm_test

#endif  // TOVIK_SSM_TEST_SUPPORT_H
