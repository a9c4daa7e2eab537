// A slow, obviously correct wildcard matcher: the recursive walk written out
// rule by rule, with nothing clever in it. Tests and the fuzzer compare the
// library's matcher with it. Its recursion grows with the stars of the
// pattern and its time can be exponential: feed it small patterns only.
#ifndef TOVIK_TEST_WILDCARD_REFERENCE_H
#define TOVIK_TEST_WILDCARD_REFERENCE_H

namespace tovik_test {

namespace wildcard_reference {

enum Result { kNoMatch, kMatch, kAbort };

// The class at p (p at its '['), tested against byte c. Sets *next behind
// the ']' unless the class is bad.
inline Result Class(char const *p, char c, char const **next) {
  p++;
  bool const negate = *p == '!' || *p == '^';
  if (negate) p++;
  if (*p == ']') return kAbort;  // nothing in the class
  // One member byte, escaped or not; false when the pattern ends first.
  auto member = [&p](char *out) {
    if (*p == '\\') p++;
    if (*p == '\0') return false;
    *out = *p++;
    return true;
  };
  bool in = false;
  while (*p != ']') {
    char lo = 0, hi = 0;
    if (!member(&lo)) return kAbort;  // ran out before ']'
    if (*p != '-') {
      in = in || lo == c;
      continue;
    }
    p++;
    if (*p == ']' || !member(&hi)) return kAbort;  // no upper end
    signed char const a = static_cast<signed char>(lo), b = static_cast<signed char>(hi);
    signed char const x = static_cast<signed char>(c);
    in = in || (a <= x && x <= b) || (b <= x && x <= a);
  }
  *next = p + 1;
  return in != negate ? kMatch : kNoMatch;
}

inline Result Walk(char const *t, char const *p) {
  for (;;) {
    if (*p == '\0') return *t == '\0' ? kMatch : kNoMatch;
    if (*t == '\0') return (p[0] == '*' && p[1] == '\0') ? kMatch : kAbort;
    if (*p == '?') {
      p++;
      t++;
    } else if (*p == '[') {
      char const *next = nullptr;
      Result const r = Class(p, *t, &next);
      if (r != kMatch) return r;
      p = next;
      t++;
    } else if (*p == '*') {
      p++;
      while (*p == '*' || *p == '?') {
        if (*p == '?') {
          if (*t == '\0') return kAbort;
          t++;
        }
        p++;
      }
      if (*p == '\0') return kMatch;
      for (; *t != '\0'; t++) {
        if (*p == '[' || *p == *t) {
          Result const r = Walk(t, p);
          if (r != kNoMatch) return r;
        }
      }
      return kAbort;
    } else {
      if (*p != *t) return kNoMatch;
      p++;
      t++;
    }
  }
}

}  // namespace wildcard_reference

// 1 when text matches pattern, else 0.
inline int ReferenceMatch(char const *text, char const *pattern) {
  return wildcard_reference::Walk(text, pattern) == wildcard_reference::kMatch ? 1 : 0;
}

}  // namespace tovik_test

#endif  // TOVIK_TEST_WILDCARD_REFERENCE_H
