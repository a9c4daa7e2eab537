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
      int const n = pc + 1 < code.size() ? static_cast<unsigned char>(code[pc + 1]) : 0;
      std::string const rest = pc + 2 + n <= code.size() ? code.substr(pc + 2 + n) : "";
      switch (op) {
        case 'c': {
          std::size_t const len = Len(code.c_str() + pc + 1);
          if (Len(text + t) != len || code.compare(pc + 1, len, text + t, len) != 0) return -1;
          t += static_cast<int>(len);
          pc += 1 + len;
          break;
        }
        case '.':
          if (text[t] == '\0') return -1;
          t += static_cast<int>(Len(text + t));
          ++pc;
          break;
        case '$':
        case '^':
          if (op == '$' ? text[t] != '\0' : start != 0) return -1;
          ++pc;
          break;
        case ':':
          t = Class(code[pc + 1], t);
          if (t < 0) return -1;
          pc += 2;
          break;
        case '[':
        case ']':
          if (text[t] == '\0' || InList(code.substr(pc + 2, n), text + t) != (op == '[')) return -1;
          t += static_cast<int>(Len(text + t));
          pc += 2 + n;
          break;
        case '?': {
          int const r = M(t, code.substr(pc + 2));
          return r >= 0 ? r : M(t, rest);
        }
        case '|': {
          std::size_t const b = EndOf(code, pc + 1);
          std::string const after = code.substr(EndOf(code, b));
          int const r1 = M(t, code.substr(pc + 1, b - pc - 1) + after);
          if (r1 >= 0 && text[r1] == '\0') return r1;
          int const r2 = M(t, code.substr(b));
          return r1 >= 0 && (r2 < 0 || r1 > r2) ? r1 : r2;
        }
        case '*':
        case '+':
          return Greedy(op, t, code.substr(pc + 2, n), rest);
        case '@':
        case '#': {
          std::string const operand = code.substr(pc + 2, n);
          int last = t;
          for (int p = M(t, operand); p >= 0; p = M(p, operand)) {
            bool const stuck = p == last;  // would repeat forever
            last = p;
            int const r = M(p, rest);
            if (r >= 0) return r;
            if (stuck) return -1;
          }
          return op == '#' ? -1 : M(last, rest);
        }
        default:  // ')' and 'e'
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
      if (Len(list.c_str() + i) == Len(c) && list.compare(i, Len(c), c, Len(c)) == 0) return true;
    }
    return false;
  }

  int Class(char letter, int t) const {
    char const *end = nullptr;
    if (letter == 'h' || letter == 'z') end = getinteger(text + t, letter == 'h' ? 3 : 1);
    if (letter == 'n') end = getdouble(text + t, 1);
    if (end != nullptr) return static_cast<int>(end - text);
    int const c = static_cast<signed char>(text[t]);
    bool const lower = c >= 'a' && c <= 'z', upper = c >= 'A' && c <= 'Z', digit = c >= '0' && c <= '9';
    bool in = false;
    switch (letter) {
      case 'a': in = lower || upper || digit; break;
      case 'b': in = c == ' ' || (c >= '\t' && c <= '\r'); break;
      case 'c': in = lower || upper; break;
      case 'd': in = digit; break;
      case 'l': in = lower; break;
      case 'u': in = upper; break;
      case 'x': in = digit || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); break;
      default: return -1;
    }
    return in ? t + 1 : -1;
  }

  // The index behind the 'e' that closes what is open at from.
  static std::size_t EndOf(std::string const &code, std::size_t from) {
    int depth = 1;
    std::size_t pc = from;
    while (depth > 0 && pc < code.size()) {
      char const op = code[pc];
      if (op == ')' || op == '|') ++depth;
      if (op == 'e') --depth;
      if (op == 'c') pc += Len(code.c_str() + pc + 1);
      if (op == ':') ++pc;
      if (std::string("[]*+?@#").find(op) != std::string::npos) pc += 1 + static_cast<unsigned char>(code[pc + 1]);
      ++pc;
    }
    return pc;
  }
};

// The first match of code in text, as Match reports it: position and length.
inline int ReferenceMatch(std::string const &code, char const *text, int *length) {
  *length = 0;
  for (int p = 0; text[p] != '\0'; p += static_cast<int>(tovik::mb::CharLen(text + p))) {
    int const end = PatternReference(text, p).M(p, code);
    if (end >= 0) {
      *length = end - p;
      return p;
    }
  }
  return -1;
}

}  // namespace tovik_test

#endif  // TOVIK_TEST_PATTERN_REFERENCE_H
