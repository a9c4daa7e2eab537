// Shared test support: a counted element type for container tests.
#ifndef TOVIK_TEST_SUPPORT_H
#define TOVIK_TEST_SUPPORT_H

#include <gtest/gtest.h>

namespace tovik_test {

// An element that counts its live instances and copies, so container tests
// can tell a leak, a double destruction or a missed copy. A destroyed one
// holds a value no test uses, so a read after destruction shows.
class Counted {
 public:
  static int live;
  static int copies;

  Counted(int v = 0) : value(v) { ++live; }  // NOLINT: implicit on purpose, like an int
  Counted(Counted const &other) : value(other.value) { ++live; ++copies; }
  Counted &operator=(Counted const &other) { value = other.value; ++copies; return *this; }
  ~Counted() { --live; value = -999999; }

  bool operator==(Counted const &other) const { return value == other.value; }
  bool operator<(Counted const &other) const { return value < other.value; }

  int value;
};

// Asserts, at the end of a scope, that every Counted made in it was destroyed.
class CountedLeakGuard {
 public:
  CountedLeakGuard() : start(Counted::live) {}
  ~CountedLeakGuard() { EXPECT_EQ(Counted::live, start) << "Counted instances leaked"; }

 private:
  int start;
};

}  // namespace tovik_test

#endif  // TOVIK_TEST_SUPPORT_H
