// Wildcard text: IsPattern, IsValidPattern and Match.
//
// Match gives exactly the verdict of the classic recursive walk, in which a
// '*' tries the rest of the pattern at each later text position. That walk
// has three outcomes: a match, no match, and a verdict that no later
// position can change (the text ran out inside the trial, or the pattern is
// bad). A trial that reaches the next '*' can only end in one of the two
// final outcomes, so an outer star is never resumed once an inner one has
// been reached. The walk therefore needs to remember only the innermost star
// and the next text position it will try: it runs as a loop, in time at
// most proportional to the product of the lengths and without recursion,
// however many stars the pattern holds.
#include <cstring>
#include <utility>

#include "sys_string.h"

namespace {

enum class Verdict { NoMatch, Match, Abort };

// Tests byte c against the class at p, which points at its '['. On Match
// and NoMatch, *after receives the byte behind the closing ']'. A bad class
// (empty, unclosed, or a range or escape without its byte) gives Abort.
Verdict MatchClass(char const *p, char c, char const **after) {
  ++p;
  bool const negated = *p == '!' || *p == '^';
  if (negated) ++p;
  if (*p == ']') return Verdict::Abort;
  bool hit = false;
  auto const sc = static_cast<signed char>(c);
  while (*p != ']') {
    if (*p == '\0') return Verdict::Abort;
    if (*p == '\\' && *++p == '\0') return Verdict::Abort;
    auto low = static_cast<signed char>(*p++);
    if (*p == '-') {
      ++p;
      if (*p == ']' || *p == '\0') return Verdict::Abort;
      if (*p == '\\' && *++p == '\0') return Verdict::Abort;
      auto high = static_cast<signed char>(*p++);
      if (low > high) std::swap(low, high);
      if (low <= sc && sc <= high) hit = true;
    } else if (low == sc) {
      hit = true;
    }
  }
  *after = p + 1;
  return hit != negated ? Verdict::Match : Verdict::NoMatch;
}

Verdict Walk(char const *t, char const *p) {
  // The innermost star: the pattern behind it, and the text position at
  // which that pattern was last tried. Null until the first star.
  char const *starPattern = nullptr;
  char const *starText = nullptr;
  for (;;) {
    // One trial: walk pattern and text together up to a verdict or a star.
    Verdict verdict = Verdict::NoMatch;
    bool newStar = false;
    while (!newStar) {
      if (*p == '\0') {
        verdict = *t == '\0' ? Verdict::Match : Verdict::NoMatch;
        break;
      }
      if (*t == '\0') {
        verdict = (p[0] == '*' && p[1] == '\0') ? Verdict::Match : Verdict::Abort;
        break;
      }
      if (*p == '*') {
        for (++p; *p == '*' || *p == '?'; ++p) {
          if (*p == '?') {
            if (*t == '\0') return Verdict::Abort;
            ++t;
          }
        }
        if (*p == '\0') return Verdict::Match;
        // This star's verdict is final for every enclosing one.
        newStar = true;
      } else if (*p == '?') {
        ++p;
        ++t;
      } else if (*p == '[') {
        verdict = MatchClass(p, *t, &p);
        if (verdict != Verdict::Match) break;
        ++t;
      } else if (*p == *t) {
        ++p;
        ++t;
      } else {
        verdict = Verdict::NoMatch;
        break;
      }
    }
    char const *from;
    if (newStar) {
      starPattern = p;
      from = t;
    } else {
      if (verdict != Verdict::NoMatch || starPattern == nullptr) return verdict;
      from = starText + 1;
    }
    // The next position for the innermost star: where the text byte equals
    // the literal behind it, or any position before a class.
    while (*from != '\0' && *starPattern != '[' && *from != *starPattern) ++from;
    if (*from == '\0') return Verdict::Abort;
    starText = from;
    t = from;
    p = starPattern;
  }
}

}  // namespace

int SYS_String::IsPattern() const { return std::strpbrk(m_pchData, "*?[") != nullptr ? 1 : 0; }

int SYS_String::IsValidPattern(int *error) const {
  int found = 0;
  char const *p = m_pchData;
  while (*p != '\0' && found == 0) {
    if (*p++ != '[') continue;
    if (*p == ']') {
      found = -4;
      break;
    }
    while (found == 0 && *p != ']') {
      if (*p == '\0') {
        found = -3;
      } else if (*p == '\\' && p[1] == '\0') {
        found = -1;
      } else {
        p += *p == '\\' ? 2 : 1;
        if (*p != '-') continue;
        ++p;
        if (*p == ']' || *p == '\0') {
          found = -2;
        } else if (*p == '\\' && p[1] == '\0') {
          found = -1;
        } else {
          p += *p == '\\' ? 2 : 1;
        }
      }
    }
    if (found == 0) ++p;  // the closing ']'
  }
  if (error != nullptr) *error = found;
  return found == 0 ? 1 : 0;
}

int SYS_String::Match(CString const &pattern) const {
  return Walk(m_pchData, pattern) == Verdict::Match ? 1 : 0;
}
