// Recursive descent from pattern text to byte code. Each piece is built in a
// string of its own, so that a repeat can put its operator and the operand's
// length in front of the operand.
#include <cstring>

#include "cstring.h"
#include "mbtext.h"
#include "pattern_engine.h"

namespace mb = tovik::mb;

namespace tovik::pattern {

namespace {

constexpr std::size_t kMaxOperand = 255;

bool IsRepeat(char c) { return c != '\0' && std::strchr("#*+?@", c) != nullptr; }

// Characters that end a branch: what cannot begin an atom.
bool EndsBranch(char c) { return c != '\0' && std::strchr("#)*+?@]^|", c) != nullptr; }

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

class Compiler {
 public:
  explicit Compiler(char const *text) : p(text), doubleByte(mb::GetCodePage() == mb::CodePage::DoubleByte) {}

  bool Run(std::string &out) { return Expression(out) && *p == '\0'; }

 private:
  char const *p;
  bool const doubleByte;
  int depth = 0;

  bool Expression(std::string &out) {
    std::string branch;
    if (!Branch(branch)) return false;
    while (*p == '|') {
      ++p;
      out += '|';
      out += branch;
      out += 'e';
      branch.clear();
      if (!Branch(branch)) return false;
    }
    out += branch;
    out += 'e';
    return true;
  }

  bool Branch(std::string &out) {
    if (*p == '^') {
      out += '^';
      ++p;
    }
    bool any = false;
    std::string atom;
    while (*p != '\0' && !EndsBranch(*p)) {
      atom.clear();
      if (!Atom(atom)) return false;
      if (IsRepeat(*p)) {
        if (atom.size() > kMaxOperand) return false;
        out += *p++;
        out += static_cast<char>(atom.size());
      }
      out += atom;
      any = true;
    }
    return any;
  }

  bool Atom(std::string &out) {
    switch (*p) {
      case '.':
      case '$':
        out += *p++;
        return true;
      case '(': {
        if (++depth > kMaxNesting) return false;
        ++p;
        out += ')';
        if (!Expression(out) || *p != ')') return false;
        ++p;
        --depth;
        return true;
      }
      case '[':
        return Set(out);
      case '\\': {
        ++p;
        unsigned code = 0;
        return Escape(&code) && Literal(out, code);
      }
      case ':':
        if (p[1] != '\0' && std::strchr("abcdhlnuxz", p[1]) != nullptr) {
          out += ':';
          out += p[1];
          p += 2;
          return true;
        }
        ++p;
        return Literal(out, ':');
      default:
        return Literal(out, Take());
    }
  }

  // The character at p, stepped over.
  unsigned Take() {
    unsigned const code = mb::CharCode(p);
    p += mb::CharLen(p);
    return code;
  }

  // The value of the escape whose backslash stands before p.
  bool Escape(unsigned *code) {
    switch (*p) {
      case '\0':
        return false;
      case 'b': *code = 8; break;
      case 'f': *code = 12; break;
      case 'n': *code = 10; break;
      case 'r': *code = 13; break;
      case 't': *code = 9; break;
      case 'x': {
        int value = 0;
        int digits = 0;
        while (digits < 2 && HexValue(p[1]) >= 0) {
          value = value * 16 + HexValue(p[1]);
          ++p;
          ++digits;
        }
        if (digits == 0 || value == 0) return false;
        *code = static_cast<unsigned>(value);
        break;
      }
      default:
        *code = Take();
        return true;
    }
    ++p;
    return true;
  }

  // A lone lead byte is no character of the double-byte page, and the byte
  // code could not tell it from the first byte of a pair.
  bool IsCharacter(unsigned code) const {
    return code > 0xFF || !doubleByte || !mb::IsLeadByte(static_cast<unsigned char>(code));
  }

  static void Append(std::string &out, unsigned code) {
    if (code > 0xFF) out += static_cast<char>(code >> 8);
    out += static_cast<char>(code & 0xFF);
  }

  bool Literal(std::string &out, unsigned code) {
    if (!IsCharacter(code)) return false;
    out += 'c';
    Append(out, code);
    return true;
  }

  bool Set(std::string &out) {
    ++p;
    bool const negate = *p == '^';
    if (negate) ++p;
    std::string list;
    if (*p == ']') {
      ++p;
    } else {
      bool lastIsPair = false;  // the last member placed has two bytes
      for (bool first = true;; first = false) {
        if (*p == '\0') return false;
        if (*p == ']') {
          ++p;
          break;
        }
        if (*p == '-' && !first && p[1] != ']') {
          ++p;
          if (*p == '\0') return false;
          if (!Range(list, lastIsPair, Take())) return false;
          continue;
        }
        unsigned code = 0;
        if (*p == '\\') {
          ++p;
          if (!Escape(&code)) return false;
        } else {
          code = Take();
        }
        if (!IsCharacter(code)) return false;
        Append(list, code);
        lastIsPair = code > 0xFF;
      }
    }
    if (list.size() > kMaxOperand) return false;
    out += negate ? ']' : '[';
    out += static_cast<char>(list.size());
    out += list;
    return true;
  }

  // Adds the characters above the last member placed up to end, comparing
  // bytes as signed chars. A pair runs over the trail bytes of one lead
  // byte; an end of the other width, or with another lead byte, adds
  // nothing. The loop counts in int, so an end of 0x7F stops.
  bool Range(std::string &list, bool lastIsPair, unsigned end) {
    int const from = static_cast<signed char>(list.back());
    if (lastIsPair) {
      if (end <= 0xFF || static_cast<char>(end >> 8) != list[list.size() - 2]) return true;
      char const lead = list[list.size() - 2];
      for (int c = from + 1; c <= static_cast<signed char>(end & 0xFF); ++c) {
        if (c == 0) continue;  // no trail byte
        list += lead;
        list += static_cast<char>(c);
        if (list.size() > kMaxOperand) return false;
      }
      return true;
    }
    if (end > 0xFF) return true;
    for (int c = from + 1; c <= static_cast<signed char>(end); ++c) {
      if (!IsCharacter(static_cast<unsigned char>(c))) return false;
      list += static_cast<char>(c);
      if (list.size() > kMaxOperand) return false;
    }
    return true;
  }
};

}  // namespace

bool Compile(char const *text, std::string &out) {
  out.clear();
  if (text == nullptr || *text == '\0') return false;
  Compiler compiler(text);
  return compiler.Run(out) && out.size() <= static_cast<std::size_t>(CString::kMaxLength);
}

}  // namespace tovik::pattern
