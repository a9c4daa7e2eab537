// The engine behind SYS_StrPattern: the compiler from pattern text to byte
// code, and the search that runs the byte code over a text. Internal to the
// library.
//
// Byte code: a sequence of items, each one operation byte and its operands;
// the whole expression ends in an 'e'. Length bytes are read unsigned.
//
//   c <char>           one character (one or two bytes)
//   .  $  ^            any character / end of the text / the attempt began
//                      at the start of the text
//   : <letter>         a class
//   [ <n> <n bytes>    one character out of the list; ']' one not in it
//   ) ... e            a group
//   | A... e B...      alternatives; the last one ends in the e that closes
//                      the enclosing group or expression
//   * + ? @ # <n> <n bytes of operand>     repeats
#ifndef TOVIK_PATTERN_ENGINE_H
#define TOVIK_PATTERN_ENGINE_H

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <string>
#include <vector>

namespace tovik::pattern {

// Groups may nest this deep; deeper patterns fail to compile, so that the
// recursive descent has a bounded depth.
constexpr int kMaxNesting = 250;

// Compiles text into out. False for a bad pattern (out is then undefined).
bool Compile(char const *text, std::string &out);

// A compiled pattern prepared for searching: jump targets, set bitmaps and a
// filter for the first bytes of a match, derived from the byte code once per
// Match or Substitute. Small patterns are prepared and searched without a
// heap allocation: the program's tables and stacks live in an arena inside
// it, and only what outgrows the arena goes to the heap.
class Program {
 public:
  // Positions in a text.
  using Pos = std::int64_t;

  // Plain backtracking may spend this many calls, plus kPlainCallsPerByte
  // per byte searched, before the search turns to the memo.
  static constexpr std::int64_t kPlainCalls = 20000;
  static constexpr std::int64_t kPlainCallsPerByte = 32;

  // code must stay alive and unchanged while the program is used. A code
  // that does not parse under the current code page gives a program that
  // never matches.
  Program(char const *code, std::int32_t size);
  Program(Program const &) = delete;
  Program &operator=(Program const &) = delete;

  // Searches text up to its first NUL for the first attempt position that
  // matches. Gives the position and sets *matchLength, or -1. plainCalls 0
  // searches with the memo from the start. Not const: the search keeps its
  // stacks in the program, to use them again.
  Pos Search(char const *text, Pos *matchLength, std::int64_t plainCalls = kPlainCalls);

  struct Bitmap {
    std::uint64_t bits[4] = {0, 0, 0, 0};
    bool Has(unsigned char byte) const { return ((bits[byte >> 6] >> (byte & 63)) & 1) != 0; }
    void Add(unsigned char byte) { bits[byte >> 6] |= std::uint64_t{1} << (byte & 63); }
    bool Disjoint(Bitmap const &other) const {
      return ((bits[0] & other.bits[0]) | (bits[1] & other.bits[1]) | (bits[2] & other.bits[2]) |
              (bits[3] & other.bits[3])) == 0;
    }
  };

  // What the search needs of an item, by the position of its operation byte.
  struct Item {
    std::int32_t next;   // the item behind (for a terminating 'e' of an
                         // alternative: behind the enclosing 'e'; for a
                         // repeat: behind its operand)
    std::int32_t extra;  // '|': start of the other alternatives; set: index
                         // into sets; 'c': operand bytes; repeat: 1 when the
                         // operand is a single item, 2 when it also never
                         // needs to give back
  };

  struct Set {
    Bitmap single;           // the one-byte members
    bool pairs = false;      // the list holds two-byte members too
    std::int32_t list = 0;   // where the list starts in the code
    std::int32_t count = 0;  // its bytes
  };

  // A branching item evaluated at t, in the code that ends at end. state
  // says what its last call was; a and b hold positions between calls; base
  // is where its positions on the chain begin.
  struct Frame {
    std::int32_t pc, end;
    Pos t;
    std::int32_t state;
    Pos a, b;
    std::size_t base;
  };

 private:
  alignas(std::max_align_t) unsigned char arena[3072];
  std::pmr::monotonic_buffer_resource resource{arena, sizeof arena};

 public:
  unsigned char const *code;
  std::int32_t size;
  bool valid = false;
  std::pmr::vector<Item> items{&resource};
  std::pmr::vector<Set> sets{&resource};
  // Every match starts with a byte of firstBytes (when filtered), with
  // prefix when it is not empty, and with anchored only at the start.
  bool filtered = false;
  bool anchored = false;
  Bitmap firstBytes;
  int firstLiteral = -1;  // the one byte of firstBytes, when there is one
  std::pmr::string prefix{&resource};
  bool caret = false;            // the code holds a '^'
  std::int32_t leadRepeat = -1;  // a repeat of a single item that every match begins with
  // The search's stacks.
  std::pmr::vector<Frame> frames{&resource};
  std::pmr::vector<Pos> chain{&resource};  // positions reached by repeats, per frame

 private:
  bool Analyse();
  void FindFirstBytes();
  // The bytes a match of the one-character item at pc (a character, set or
  // class) can start with; false for other items.
  bool FirstBytesOf(std::int32_t pc, Bitmap &bytes) const;
  Pos NextCandidate(char const *text, Pos p) const;
};

}  // namespace tovik::pattern

#endif  // TOVIK_PATTERN_ENGINE_H
