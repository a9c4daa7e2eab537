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

#include <cstdint>
#include <string>
#include <vector>

namespace tovik::pattern {

// Groups may nest this deep; deeper patterns fail to compile, so that the
// recursive descent has a bounded depth.
constexpr int kMaxNesting = 250;

// Compiles text into out. False for a bad pattern (out is then undefined).
bool Compile(char const *text, std::string &out);

// A compiled pattern prepared for searching: jump targets, set bitmaps and a
// first-byte filter, derived from the byte code once per search run.
class Program {
 public:
  // code must stay alive and unchanged while the program is used. A code
  // that does not parse under the current code page gives a program that
  // never matches.
  Program(char const *code, std::int32_t size);

  // Positions in a text.
  using Pos = std::int64_t;

  // Plain backtracking may spend this many calls, plus kPlainCallsPerByte
  // per byte searched, before the search turns to the memo.
  static constexpr std::int64_t kPlainCalls = 20000;
  static constexpr std::int64_t kPlainCallsPerByte = 32;

  // Searches text up to its first NUL for the first attempt position that
  // matches. Gives the position and sets *matchLength, or -1. plainCalls 0
  // searches with the memo from the start. Not const: the search keeps its
  // stacks in the program, to use them again.
  Pos Search(char const *text, Pos *matchLength, std::int64_t plainCalls = kPlainCalls);

  struct Bitmap {
    std::uint64_t bits[4] = {0, 0, 0, 0};
    bool Has(unsigned char byte) const { return ((bits[byte >> 6] >> (byte & 63)) & 1) != 0; }
    void Add(unsigned char byte) { bits[byte >> 6] |= std::uint64_t{1} << (byte & 63); }
  };

  // What the search needs of an item, by the position of its operation byte.
  struct Item {
    std::int32_t next;   // the item behind (for a terminating 'e' of an
                         // alternative: behind the enclosing 'e'; for a
                         // repeat: behind its operand)
    std::int32_t extra;  // '|': start of the other alternatives; set: index
                         // into sets; 'c': operand bytes
  };

  struct Set {
    Bitmap single;         // the one-byte members
    bool pairs = false;    // the list holds two-byte members too
    std::int32_t list = 0;   // where the list starts in the code
    std::int32_t count = 0;  // its bytes
  };

  unsigned char const *code;
  std::int32_t size;
  bool valid = false;
  std::vector<Item> items;
  std::vector<Set> sets;
  // Every match starts with a byte of firstBytes (when filtered); with
  // anchored only at the start of the text.
  bool filtered = false;
  bool anchored = false;
  Bitmap firstBytes;
  int firstLiteral = -1;  // the one byte of firstBytes, when there is one

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
  struct Scratch {
    std::vector<Frame> frames;
    std::vector<Pos> chain;  // positions reached by repeats, per frame
  };
  Scratch scratch;

 private:
  bool Analyse();
  void FindFirstBytes();
  Pos NextCandidate(char const *text, Pos p) const;
};

}  // namespace tovik::pattern

#endif  // TOVIK_PATTERN_ENGINE_H
