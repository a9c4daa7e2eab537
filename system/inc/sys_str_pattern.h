// SYS_StrPattern: the library's regular expressions, for searching and
// replacing in text.
//
// A pattern is compiled once, on construction or assignment, into a compact
// byte code that the object holds as its only data; copies share it. A bad
// pattern compiles to nothing: the compiled form is then empty, Match gives
// -1 and Substitute 0. The language is the library's own:
//
//   x  .  $          a character, any character, the end of the text
//   ^                at the start of a branch: the attempt began at the start
//                    of the text
//   (...)  a|b       groups; of alternatives the one that reaches furthest
//                    (with the rest of the pattern) wins, a tie goes to the
//                    later one
//   [...]  [^...]    sets, with ranges "a-z" (signed bytes) and escapes
//   * + ?            greedy repeats; '?' prefers one
//   @ #              lazy zero-or-more and one-or-more
//   :a :b :c :d :l :u :x    one alphanumeric, blank, letter, digit, lower,
//                    upper, hexadecimal character
//   :z :h :n         a whole decimal integer, hexadecimal integer, decimal
//                    number, as getinteger and getdouble read them
//   \b \f \n \r \t \xHH \<c>    escapes
//
// A greedy repeat matches its operand as often as it can, each time on its
// own, and gives repeats back one at a time down to the first; behind none
// it tries the rest only when the operand fails at once ("a*ab" does not
// match "ab"). Texts and patterns are in the process code page; matching
// steps by its characters. Patterns nest at most 250 groups deep.
//
// Cost: the search runs on its own heap stack, never deeper than the
// compiled pattern is long, and evaluates each branching item at most once
// per text position once plain backtracking has grown costly.
#ifndef TOVIK_SYS_STR_PATTERN_H
#define TOVIK_SYS_STR_PATTERN_H

#include "cstring.h"
#include "tovik_export.h"

class TOVIK_API SYS_StrPattern {
 public:
  SYS_StrPattern() = default;
  // Compiles text; null or empty text gives an empty pattern.
  SYS_StrPattern(char const *text) { MakePattern(text); }  // NOLINT: a pattern converts from its text
  SYS_StrPattern(CString const &text) { MakePattern(text); }  // NOLINT
  SYS_StrPattern(SYS_StrPattern const &other) = default;
  SYS_StrPattern &operator=(SYS_StrPattern const &other) = default;
  SYS_StrPattern &operator=(char const *text) {
    MakePattern(text);
    return *this;
  }
  SYS_StrPattern &operator=(CString const &text) {
    MakePattern(text);
    return *this;
  }
  ~SYS_StrPattern() = default;

  // The compiled form. It may hold NUL bytes (an empty set has a length
  // byte of 0): GetCompiled() tells its length.
  operator char const *() const { return compiled; }
  CString const &GetCompiled() const { return compiled; }

  // The byte position of the first match in text, or -1. *length (when
  // length is not null) receives the match's length in bytes, 0 when there
  // is none. Attempts start at every character of the text, not at its
  // terminating NUL, so an empty text never matches and "$" alone never
  // does either. Null text counts as empty.
  int Match(char const *text, int *length) const;

  // Replaces matches in text by replacement, taken literally, left to right,
  // at most maxCount of them (0 or less: all), and returns how many. Each
  // search starts afresh behind the last replacement, so '^' holds there
  // too; the replacement is never searched. Behind a match of nothing the
  // next search starts one character further on, so a pattern that matches
  // the empty text replaces at most once per character. The search stops at
  // the first NUL in text; text is left untouched (and shared) when nothing
  // is replaced.
  int Substitute(CString &text, CString const &replacement, int maxCount) const;

 private:
  void MakePattern(char const *text);

  CString compiled;
};

#endif  // TOVIK_SYS_STR_PATTERN_H
