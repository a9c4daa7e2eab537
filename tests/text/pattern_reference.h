// A slow, obviously correct pattern matcher: the recursive walk over the
// byte code written out rule by rule, with each alternative and repeat run
// on a copy of its code, as the rules are stated. Tests and the fuzzer
// compare the library's search with it. Its time can be exponential and its
// recursion grows with the text: feed it small inputs only.
#ifndef TOVIK_TEST_PATTERN_REFERENCE_H
#define TOVIK_TEST_PATTERN_REFERENCE_H

#include <string>

#include "mbtext.h"
#include "sys_scan.h"

namespace tovik_test {

class PatternReference {
 public:
  PatternReference(char const *text, int start) : text(text), start(start) {}

  // Where running code from t ends, or -1.
  int M(int t, std::string const &code) const {
    for (std::size_t pc = 0; pc < code.size();) {
      char const op = code[pc];
      std::size_t const n = pc + 1 < code.size() ? static_cast<unsigned char>(code[pc + 1]) : 0;
      std::size_t const len = Len(text + t);
      if (op == 'c') {
        std::size_t const own = Len(code.c_str() + pc + 1);
        if (len != own || code.compare(pc + 1, own, text + t, own) != 0) return -1;
        t += static_cast<int>(own);
        pc += 1 + own;
      } else if (op == '.' || op == '[' || op == ']') {
        if (text[t] == '\0' || (op != '.' && InList(code.substr(pc + 2, n), text + t) != (op == '['))) return -1;
        t += static_cast<int>(len);
        pc += op == '.' ? 1 : 2 + n;
      } else if (op == '$' || op == '^') {
        if (op == '$' ? text[t] != '\0' : start != 0) return -1;
        ++pc;
      } else if (op == ':') {
        if ((t = Class(code[pc + 1], t)) < 0) return -1;
        pc += 2;
      } else if (op == '?') {
        int const r = M(t, code.substr(pc + 2));
        return r >= 0 ? r : M(t, code.substr(pc + 2 + n));
      } else if (op == '|') {
        std::size_t const b = EndOf(code, pc + 1);
        int const r1 = M(t, code.substr(pc + 1, b - pc - 1) + code.substr(EndOf(code, b)));
        if (r1 >= 0 && text[r1] == '\0') return r1;
        int const r2 = M(t, code.substr(b));
        return r1 >= 0 && (r2 < 0 || r1 > r2) ? r1 : r2;
      } else if (op == '*' || op == '+') {
        return Greedy(op, t, code.substr(pc + 2, n), code.substr(pc + 2 + n));
      } else if (op == '@' || op == '#') {
        std::string const operand = code.substr(pc + 2, n), rest = code.substr(pc + 2 + n);
        int last = t;
        for (int p = M(t, operand); p >= 0; p = M(p, operand)) {
          bool const stuck = p == last;  // would repeat forever
          last = p;
          int const r = M(p, rest);
          if (r >= 0 || stuck) return r;
        }
        return op == '#' ? -1 : M(last, rest);
      } else {  // ')' and 'e'
        ++pc;
      }
    }
    return t;
  }

 private:
  char const *text;
  int start;

  static std::size_t Len(char const *p) { return tovik::mb::CharLen(p); }

  // An operand that matches nothing ends the repeats there.
  int Greedy(char op, int t, std::string const &operand, std::string const &rest) const {
    int const p = M(t, operand);
    if (p < 0) return op == '*' ? M(t, rest) : -1;
    if (p == t) return M(t, rest);
    int const r = Greedy(op, p, operand, rest);
    return r >= 0 ? r : M(p, rest);
  }

  static bool InList(std::string const &list, char const *c) {
    for (std::size_t i = 0; i < list.size(); i += Len(list.c_str() + i)) {
      if (list.compare(i, Len(list.c_str() + i), c, Len(c)) == 0) return true;
    }
    return false;
  }

  int Class(char letter, int t) const {
    if (letter == 'h' || letter == 'z' || letter == 'n') {
      char const *end = letter == 'n' ? getdouble(text + t, 1) : getinteger(text + t, letter == 'h' ? 3 : 1);
      return end != nullptr ? static_cast<int>(end - text) : -1;
    }
    auto const c = static_cast<unsigned>(static_cast<int>(static_cast<signed char>(text[t])));
    using namespace tovik::mb;
    bool const in = letter == 'a' ? IsAlnum(c) : letter == 'b' ? IsSpace(c) : letter == 'c' ? IsAlpha(c)
                    : letter == 'd' ? IsDigit(c) : letter == 'l' ? IsLower(c) : letter == 'u' ? IsUpper(c)
                                                                                : IsXDigit(c);
    return in ? t + 1 : -1;
  }

  // The index behind the 'e' that closes what is open at from.
  static std::size_t EndOf(std::string const &code, std::size_t pc) {
    for (int depth = 1; depth > 0 && pc < code.size(); ++pc) {
      char const op = code[pc];
      depth += op == ')' || op == '|' ? 1 : op == 'e' ? -1 : 0;
      if (op == 'c') pc += Len(code.c_str() + pc + 1);
      if (op == ':') ++pc;
      if (std::string("[]*+?@#").find(op) != std::string::npos) pc += 1 + static_cast<unsigned char>(code[pc + 1]);
    }
    return pc;
  }
};

// The first match of code in text, as Match reports it: position and length.
inline int ReferenceMatch(std::string const &code, char const *text, int *length) {
  int p = 0, end = -1;
  while (text[p] != '\0' && (end = PatternReference(text, p).M(p, code)) < 0) {
    p += static_cast<int>(tovik::mb::CharLen(text + p));
  }
  *length = end >= 0 ? end - p : 0;
  return end >= 0 ? p : -1;
}

}  // namespace tovik_test

#endif  // TOVIK_TEST_PATTERN_REFERENCE_H
