// The replay recorder: the interface of a recorder of function calls, every
// operation of which does nothing.
//
// Callers may name functions with SYS_TestFncID records and pass them to
// SYS_TestRepeater::Record; nothing is recorded or replayed. The records are
// known only by size (31 and 20 words); no operation of the library gives
// their words a meaning, and the constructors leave them as they are.
#ifndef TOVIK_SYS_TEST_REPEATER_H
#define TOVIK_SYS_TEST_REPEATER_H

#include <cstdint>

#include "tovik_export.h"

// A function's name in a recording: 31 words, free for a future recorder.
class TOVIK_API SYS_TestFncID {
 public:
  // None of the constructors touches the words or keeps its arguments.
  SYS_TestFncID() {}  // NOLINT: the words stay as they were, on purpose
  explicit SYS_TestFncID(char *name);
  SYS_TestFncID(char *name, char *module);
  SYS_TestFncID(SYS_TestFncID const &other);
  // Copies all words.
  SYS_TestFncID &operator=(SYS_TestFncID const &other);

  std::uint32_t words[31];
};

// One recorded call: 20 words, free for a future recorder.
class TOVIK_API SYS_TestRec {
 public:
  SYS_TestRec() {}  // NOLINT: the words stay as they were, on purpose
  SYS_TestRec(SYS_TestRec const &other);
  // Copies all words.
  SYS_TestRec &operator=(SYS_TestRec const &other);

  std::uint32_t words[20];
};

// The recorder: static operations only, each doing nothing.
class TOVIK_API SYS_TestRepeater {
 public:
  SYS_TestRepeater &operator=(SYS_TestRepeater const &) { return *this; }

  static void Start();
  static void Stop();
  static void Record(SYS_TestFncID *function);
  static void FncRegister(SYS_TestFncID *function);
  static void FncProcess();

 private:
  static void WriteRec();
};

#endif  // TOVIK_SYS_TEST_REPEATER_H
