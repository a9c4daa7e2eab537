// Helpers for the file tests: a fresh directory per test, a subscriber that
// records file events and answers them, and a fault hook that fails the n-th
// transfer.
#ifndef TOVIK_SFM_TEST_SUPPORT_H
#define TOVIK_SFM_TEST_SUPPORT_H

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "file_io.h"
#include "sfm_manager.h"
#include "ssm.h"

namespace sfm_test {

// A new directory, removed with all it holds at the end of the scope.
class TempDir {
 public:
  TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tovik-XXXXXX").string();
    path = ::mkdtemp(&pattern[0]);
  }
  ~TempDir() { std::filesystem::remove_all(path); }
  std::string operator/(std::string const &name) const { return path + "/" + name; }

  std::string path;
};

inline std::string ReadAll(std::string const &path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void WriteAll(std::string const &path, std::string const &bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

// Subscribes to the manager's events for its lifetime, records each and
// answers with what `answer` gives (EvNone by default).
class Recorder : public SCC_EventNode<SFM_EventData> {
 public:
  struct Heard {
    int code;
    std::string text;
  };
  std::function<SFM::EventCode(int code, SFM_EventData &data)> answer;
  std::vector<Heard> heard;

  Recorder() { JoinAtEnd(&SFM::GetManager()->GetEvent()); }
  int OnNotification(int code, SFM_EventData *data) override {
    heard.push_back({code, static_cast<char const *>(data->GetText())});
    SFM::EventCode const result = answer ? answer(code, *data) : SFM::EvNone;
    if (result != SFM::EvNone) data->SetResult(result);
    return 0;
  }
  std::vector<int> Codes() const {
    std::vector<int> codes;
    for (Heard const &h : heard) codes.push_back(h.code);
    return codes;
  }
};

// While it lives, fails the n-th call of the platform layer whose operation
// is one of `kinds` (0 fails every one) with `error`; Count() tells how many
// such calls there were.
class FailNth {
 public:
  FailNth(int n, int error, std::vector<tovik::io::Operation> kinds) {
    target = n;
    seen = 0;
    code = error;
    operations = std::move(kinds);
    tovik::io::SetFaultHook(&Hook);
  }
  ~FailNth() { tovik::io::SetFaultHook(nullptr); }
  static int Count() { return seen; }

 private:
  static int Hook(tovik::io::Operation operation) {
    for (tovik::io::Operation kind : operations) {
      if (kind == operation) return ++seen == target || target == 0 ? code : 0;
    }
    return 0;
  }
  static inline int target = 0;
  static inline int seen = 0;
  static inline int code = 0;
  static inline std::vector<tovik::io::Operation> operations;
};

// Whether call fails a check (the manager made here throws its record).
template <class Call>
bool FailsCheck(Call call) {
  SSM manager;
  try {
    call();
  } catch (SSM::AssertData *) {
    return true;
  }
  return false;
}

}  // namespace sfm_test

#endif  // TOVIK_SFM_TEST_SUPPORT_H
