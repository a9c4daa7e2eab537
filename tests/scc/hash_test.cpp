// SCC_Hash and SCC_Compare.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include "scc_hash.h"

namespace {

struct Case {
  char const *name;
  std::int64_t got, expected;
};

void Check(std::initializer_list<Case> cases) {
  for (Case const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.got, c.expected);
  }
}

// The text hash term by term, as plainly as it can be written.
std::int32_t ReferenceTextHash(std::string const &text, bool fold, std::uint32_t size) {
  std::uint32_t hash = 0, power = 1;
  for (std::size_t i = 1; i <= text.size(); ++i) {
    auto byte = static_cast<unsigned char>(text[i - 1]);
    if (fold && byte >= 'A' && byte <= 'Z') byte = static_cast<unsigned char>(byte + 32);
    power *= 6293815u;
    hash += static_cast<std::uint32_t>(static_cast<signed char>(byte)) *
            static_cast<std::uint32_t>(i) * power;
  }
  return static_cast<std::int32_t>(hash % size);
}

TEST(HashAndCompare, NumbersAddressesAndTexts) {
  int object = 0;
  auto const low = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(&object));
  Check({
      {"int -7 by 53 wraps up", SCC_Hash(-7, 53), 46},
      {"a multiple of the size", SCC_Hash(106, 53), 0},
      {"int minimum", SCC_Hash(std::numeric_limits<int>::min(), 10), 2},
      {"char is signed", SCC_Hash(static_cast<char>(-1), 10), 9},
      {"unsigned int", SCC_Hash(0xFFFFFFFFu, 7), 0xFFFFFFFFu % 7},
      {"64-bit beyond 32 bits", SCC_Hash(std::int64_t{1} << 40, 1000),
       (std::int64_t{1} << 40) % 1000},
      {"handle", SCC_Hash(SCC_Handle{-3}, 4), 1},
      {"address: its low 32 bits", SCC_Hash(static_cast<void const *>(&object), 1009), low % 1009},
      {"size 0", SCC_Hash(12345, 0), 0},
      {"negative size", SCC_Hash(-12345, -7), 0},
  });
  // Compare: -1, 0 or 1, except for case-blind texts.
  double const nan = std::nan("");
  int objects[2] = {};
  char const *const none = nullptr;
  Check({
      {"int", SCC_Compare(-5, 3), -1},
      {"char is signed", SCC_Compare(static_cast<char>(-1), static_cast<char>(1)), -1},
      {"unsigned int", SCC_Compare(0xFFFFFFFFu, 1u), 1},
      {"addresses", SCC_Compare(static_cast<void *>(&objects[0]), static_cast<void *>(&objects[1])),
       -1},
      {"signed zeros", SCC_Compare(-0.0, 0.0), 0},
      {"NaN left", SCC_Compare(nan, 1.0), 0},
      {"NaN right", SCC_Compare(1.0, nan), 0},
      {"null first", SCC_Compare(none, "a"), -1},
      {"null second", SCC_Compare("", none), 1},
      {"bytes are unsigned", SCC_Compare("\x80", "a"), 1},
      {"string", SCC_Compare(SYS_String("\xE9"), SYS_String("e")), 1},
      // Case-blind: the difference of the first folded bytes that differ.
      {"no case equal", SCC_Compare(SYS_StrNoCase("Abc"), SYS_StrNoCase("aBC")), 0},
      {"no case difference", SCC_Compare(SYS_StrNoCase("abc"), SYS_StrNoCase("ABF")), 'c' - 'f'},
      {"folds to lower case", SCC_Compare(SYS_StrNoCase("_"), SYS_StrNoCase("A")), '_' - 'a'},
      {"end of text", SCC_Compare(SYS_StrNoCase("ab"), SYS_StrNoCase("a")), 'b'},
  });
}

TEST(Hash, TextsMatchTheTermByTermSumOnEveryForm) {
  std::mt19937 random(7);
  // Lengths around the folding block of 64 bytes, bytes above 127 included.
  for (std::size_t length : {0, 1, 63, 64, 65, 129, 300}) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i) text += static_cast<char>(1 + random() % 255);
    SCOPED_TRACE(length);
    std::int32_t const expected = ReferenceTextHash(text, false, 2147483647u);
    EXPECT_EQ(SCC_Hash(text.c_str(), 2147483647), expected);
    EXPECT_EQ(SCC_Hash(SYS_String(text.c_str()), 2147483647), expected);
    EXPECT_EQ(SCC_Hash(SYS_StrNoCase(text.c_str()), 2147483647),
              ReferenceTextHash(text, true, 2147483647u));
  }
  Check({
      {"one byte", SCC_Hash("a", 1000000007), 97u * 6293815u % 1000000007u},
      {"null text", SCC_Hash(static_cast<char const *>(nullptr), 53), 0},
      {"no case", SCC_Hash(SYS_StrNoCase("Abc"), 1021), SCC_Hash(SYS_StrNoCase("aBC"), 1021)},
      {"only A to Z fold", SCC_Hash(SYS_StrNoCase("\xC4x"), 1021), SCC_Hash("\xC4x", 1021)},
      {"string with size -1", SCC_Hash(SYS_String("Abc"), -1), 0},
  });
  EXPECT_NE(SCC_Hash(SYS_String("Abc"), 1021), SCC_Hash(SYS_String("aBC"), 1021));
}

}  // namespace
