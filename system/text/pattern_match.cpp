// The search: runs the byte code over a text with the backtracking rules of
// the pattern language, on a stack of its own rather than the machine's.
//
// Within one code (the whole pattern, or the operand of a '*', '+', '@' or
// '#', which runs as a code of its own) the result of running from an item
// at a position depends on nothing else, except that '^' asks whether the
// attempt began at 0. So a walk is a chain of calls "run from item i at
// position t to the end of the code", each ending at the first branching item
// it reaches ('?', '|' and the repeats), which then owns the rest of the
// call. Branching items become frames on an explicit stack; a frame calls
// again for its alternatives and continuations. Every call starts behind its
// caller's item, so the stack is never deeper than the number of items.
//
// The walk first runs plain. When it has spent more calls than a fixed
// allowance plus a few per text byte searched, it runs again with a memo of
// (item, position) -> result, so that no branching item is evaluated twice at
// one position: a pattern that would backtrack exponentially costs at most a
// polynomial in the lengths of code and text.
#include <algorithm>
#include <cstring>
#include <memory>
#include <unordered_map>

#include "mbtext.h"
#include "pattern_engine.h"
#include "sys_scan.h"

namespace mb = tovik::mb;

namespace tovik::pattern {

namespace {

using Pos = Program::Pos;
constexpr Pos kFail = -1;
constexpr Pos kAbort = -2;

bool DoubleBytePage() { return mb::GetCodePage() == mb::CodePage::DoubleByte; }

bool IsClassLetter(unsigned char c) { return c != '\0' && std::strchr("abcdhlnuxz", c) != nullptr; }

// The one-character classes, on the first byte of a character. A byte of
// 0x80 or above is negative as a signed char and in no class.
bool InClass(unsigned char letter, unsigned char byte) {
  if (byte >= 0x80) return false;
  switch (letter) {
    case 'a': return mb::IsAlnum(byte);
    case 'b': return mb::IsSpace(byte);
    case 'c': return mb::IsAlpha(byte);
    case 'd': return mb::IsDigit(byte);
    case 'l': return mb::IsLower(byte);
    case 'u': return mb::IsUpper(byte);
    case 'x': return mb::IsXDigit(byte);
    default: return false;
  }
}

// The bytes a class can start with: the one-character classes' members, and
// for the number classes their digits and signs (and the dot of a number).
Program::Bitmap ClassStarts(unsigned char letter) {
  Program::Bitmap starts;
  for (unsigned b = 1; b < 128; ++b) {
    bool const sign = b == '+' || b == '-';
    bool const in = letter == 'z'   ? sign || mb::IsDigit(b)
                    : letter == 'h' ? sign || mb::IsXDigit(b)
                    : letter == 'n' ? sign || b == '.' || mb::IsDigit(b)
                                    : InClass(letter, static_cast<unsigned char>(b));
    if (in) starts.Add(static_cast<unsigned char>(b));
  }
  return starts;
}

// Bytes of a set's list, walked as members: a lead byte pairs with the byte
// behind it when that byte is in the list and not NUL.
std::int32_t MemberLength(unsigned char const *list, std::int32_t i, std::int32_t count) {
  return mb::IsLeadByte(list[i]) && i + 1 < count && list[i + 1] != 0 ? 2 : 1;
}

// (item, position) -> result. Positions are kept in pages of consecutive
// positions per item, since a walk visits the positions of an item in runs;
// a small cache of recent pages saves most lookups.
class Memo {
 public:
  bool Find(std::int32_t pc, Pos t, Pos *value) {
    Pos const *page = Page(pc, t, false);
    if (page == nullptr || page[t & kPageMask] == kUnknown) return false;
    *value = page[t & kPageMask];
    return true;
  }

  void Store(std::int32_t pc, Pos t, Pos value) { Page(pc, t, true)[t & kPageMask] = value; }

  void Clear() {
    pages.clear();
    for (auto &entry : recent) entry = Recent{};
  }

 private:
  static constexpr int kPageBits = 10;
  static constexpr Pos kPageMask = (1 << kPageBits) - 1;
  static constexpr Pos kUnknown = -3;
  struct Recent {
    std::uint64_t key = ~std::uint64_t{0};
    Pos *page = nullptr;
  };
  std::unordered_map<std::uint64_t, std::unique_ptr<Pos[]>> pages;
  Recent recent[16];

  Pos *Page(std::int32_t pc, Pos t, bool create) {
    std::uint64_t const key = (static_cast<std::uint64_t>(pc) << 32) | static_cast<std::uint32_t>(t >> kPageBits);
    Recent &cached = recent[(static_cast<std::uint32_t>(pc) * 7 + static_cast<std::uint32_t>(t >> kPageBits)) & 15];
    if (cached.key == key) return cached.page;
    auto found = pages.find(key);
    if (found == pages.end()) {
      if (!create) return nullptr;
      std::unique_ptr<Pos[]> page(new Pos[kPageMask + 1]);
      std::fill(page.get(), page.get() + kPageMask + 1, kUnknown);
      found = pages.emplace(key, std::move(page)).first;
    }
    cached = Recent{key, found->second.get()};
    return cached.page;
  }
};

class Searcher {
 public:
  Searcher(Program &program, char const *subject)
      : prog(program), code(program.code), items(program.items.data()), text(subject),
        doubleByte(DoubleBytePage()), frames(program.frames), chain(program.chain) {}

  // The end of the match of the attempt at start, kFail, or kAbort when the
  // plain walk (memo null) passed limit calls.
  Pos Attempt(Pos attemptStart, Memo *memoToUse, std::int64_t limit) {
    start = attemptStart;
    memo = memoToUse;
    callLimit = limit;
    Pos const end = Evaluate(0, prog.size, start);
    frames.clear();
    chain.clear();
    return end;
  }

  // Where the repeats of the single-item operand of the repeat at pc end,
  // from t on.
  Pos RepeatEnd(std::int32_t pc, Pos t) const {
    for (Pos next = RunOne(pc + 2, items[pc].next, t); next > t; next = RunOne(pc + 2, items[pc].next, t)) t = next;
    return t;
  }

 private:
  // A branching item evaluated at t, in the code that ends at end. state
  // says what its last call was; a and b hold positions between calls; base
  // is where its positions on chain begin.
  using Frame = Program::Frame;
  enum RunResult { kDone, kFailed, kBranch };

  Program const &prog;
  unsigned char const *const code;
  Program::Item const *const items;
  char const *const text;
  bool const doubleByte;
  Pos start = 0;
  Memo *memo = nullptr;
  std::int64_t calls = 0;
  std::int64_t callLimit = 0;
  std::pmr::vector<Frame> &frames;
  std::pmr::vector<Pos> &chain;

  Pos CharLength(Pos t) const { return doubleByte ? static_cast<Pos>(mb::CharLen(text + t)) : 1; }

  bool InSet(std::int32_t index, Pos t, Pos charLength) const {
    Program::Set const &set = prog.sets[static_cast<std::size_t>(index)];
    if (charLength == 1) return set.single.Has(static_cast<unsigned char>(text[t]));
    if (!set.pairs) return false;
    unsigned char const *list = code + set.list;
    for (std::int32_t i = 0; i < set.count;) {
      std::int32_t const n = MemberLength(list, i, set.count);
      if (n == 2 && list[i] == static_cast<unsigned char>(text[t]) &&
          list[i + 1] == static_cast<unsigned char>(text[t + 1])) {
        return true;
      }
      i += n;
    }
    return false;
  }

  // Where a class that starts at t ends, or kFail.
  Pos Class(unsigned char letter, Pos t) const {
    char const *end = nullptr;
    switch (letter) {
      case 'h': end = getinteger(text + t, SYS_INT_HEX); break;
      case 'n': end = getdouble(text + t, 1); break;
      case 'z': end = getinteger(text + t, SYS_INT_DECIMAL); break;
      default:
        return InClass(letter, static_cast<unsigned char>(text[t])) ? t + 1 : kFail;
    }
    return end != nullptr ? end - text : kFail;
  }

  // Runs the items that do not branch, from pc at t. kDone with t at the
  // end of the code, kFailed, or kBranch with pc and t at a branching item.
  RunResult Run(std::int32_t &pc, std::int32_t end, Pos &t) const {
    while (pc < end) {
      Program::Item const &item = items[pc];
      switch (code[pc]) {
        case 'c':
          if (text[t] != static_cast<char>(code[pc + 1])) return kFailed;
          if (item.extra == 2) {
            if (text[t + 1] != static_cast<char>(code[pc + 2])) return kFailed;
          } else if (CharLength(t) != 1) {
            return kFailed;
          }
          t += item.extra;
          break;
        case '.':
          if (text[t] == '\0') return kFailed;
          t += CharLength(t);
          break;
        case '$':
          if (text[t] != '\0') return kFailed;
          break;
        case '^':
          if (start != 0) return kFailed;
          break;
        case ':':
          t = Class(code[pc + 1], t);
          if (t == kFail) return kFailed;
          break;
        case '[':
        case ']': {
          if (text[t] == '\0') return kFailed;
          Pos const n = CharLength(t);
          if (InSet(item.extra, t, n) != (code[pc] == '[')) return kFailed;
          t += n;
          break;
        }
        case ')':
        case 'e':
          break;
        default:
          return kBranch;
      }
      pc = item.next;
    }
    return kDone;
  }

  // Runs a single-item operand at t: its end, or kFail.
  Pos RunOne(std::int32_t pc, std::int32_t end, Pos t) const {
    return Run(pc, end, t) == kDone ? t : kFail;
  }

  // Runs the code from pc at t to the end of the code that ends at end.
  Pos Evaluate(std::int32_t pc, std::int32_t end, Pos t) {
    Pos result = kFail;
    bool call = true;
    for (;;) {
      if (call) {
        if (memo == nullptr && ++calls > callLimit) return kAbort;
        RunResult const run = Run(pc, end, t);
        if (run == kBranch && (memo == nullptr || !memo->Find(pc, t, &result))) {
          frames.push_back(Frame{pc, end, t, 0, 0, 0, chain.size()});
          call = Step(result, pc, end, t);
          continue;
        }
        if (run != kBranch) result = run == kDone ? t : kFail;
      }
      if (frames.empty()) return result;
      call = Step(result, pc, end, t);
    }
  }

  static bool Call(std::int32_t toPc, std::int32_t toEnd, Pos at, std::int32_t &pc, std::int32_t &end, Pos &t) {
    pc = toPc;
    end = toEnd;
    t = at;
    return true;
  }

  // Ends the top frame with value: remembers it, and hands it on.
  bool Complete(Pos value, Pos &result) {
    Frame const &f = frames.back();
    if (memo != nullptr) memo->Store(f.pc, f.t, value);
    chain.resize(f.base);
    frames.pop_back();
    result = value;
    return false;
  }

  // Advances the top frame with the result of its last call. True when it
  // makes a new call (pc, end, t); false when it is done (result set).
  bool Step(Pos &result, std::int32_t &pc, std::int32_t &end, Pos &t) {
    Frame &f = frames.back();
    std::int32_t const operand = f.pc + 2;
    std::int32_t const rest = items[f.pc].next;
    switch (code[f.pc]) {
      case '?':
        // The operand and the rest; failing that, the rest alone.
        if (f.state == 0) {
          f.state = 1;
          return Call(operand, f.end, f.t, pc, end, t);
        }
        if (f.state == 1 && result == kFail) {
          f.state = 2;
          return Call(rest, f.end, f.t, pc, end, t);
        }
        return Complete(result, result);
      case '|':
        // The alternative that reaches furthest wins; a tie goes to the later
        // ones, and the end of the text stops the search.
        if (f.state == 0) {
          f.state = 1;
          return Call(f.pc + 1, f.end, f.t, pc, end, t);
        }
        if (f.state == 1) {
          if (result != kFail && text[result] == '\0') return Complete(result, result);
          f.a = result;
          f.state = 2;
          return Call(items[f.pc].extra, f.end, f.t, pc, end, t);
        }
        return Complete(f.a != kFail && (result == kFail || f.a > result) ? f.a : result, result);
      case '*':
      case '+':
        return StepGreedy(f, operand, rest, result, pc, end, t);
      default:
        return StepLazy(f, operand, rest, result, pc, end, t);
    }
  }

  // '*' and '+': repeat the operand while it moves on, then try the rest
  // behind the repeats from the last back to the first. Behind none only
  // when the operand fails at once ('*'), or matches nothing (both).
  bool StepGreedy(Frame &f, std::int32_t operand, std::int32_t rest, Pos &result, std::int32_t &pc,
                  std::int32_t &end, Pos &t) {
    bool const single = items[f.pc].extra != 0;  // 2: never gives back
    switch (f.state) {
      case 0:
        if (!single) {
          f.state = 1;
          return Call(operand, rest, f.t, pc, end, t);
        }
        f.state = 1;
        result = RunOne(operand, rest, f.t);
        [[fallthrough]];
      case 1:
        for (;;) {
          Pos const reached = chain.size() > f.base ? chain.back() : f.t;
          if (result == kFail || result <= reached) break;
          chain.push_back(result);
          Pos known = kFail;
          if (memo != nullptr && memo->Find(f.pc, result, &known)) {
            if (known != kFail) return CompleteGreedy(f, known, result);
            f.state = 2;
            return Call(rest, f.end, result, pc, end, t);
          }
          if (!single) return Call(operand, rest, result, pc, end, t);
          result = RunOne(operand, rest, result);
        }
        if (chain.size() == f.base) {
          if (result == kFail && code[f.pc] == '+') return Complete(kFail, result);
          f.state = 3;
          return Call(rest, f.end, f.t, pc, end, t);
        }
        f.state = 2;
        return Call(rest, f.end, chain.back(), pc, end, t);
      case 2:
        if (result != kFail || items[f.pc].extra == 2) return CompleteGreedy(f, result, result);
        chain.pop_back();
        if (chain.size() == f.base) return Complete(kFail, result);
        if (memo != nullptr) memo->Store(f.pc, chain.back(), kFail);
        return Call(rest, f.end, chain.back(), pc, end, t);
      default:
        return Complete(result, result);
    }
  }

  // Every repeat position below the top of the chain leads to value too.
  bool CompleteGreedy(Frame const &f, Pos value, Pos &result) {
    if (memo != nullptr) {
      for (std::size_t i = f.base; i + 1 < chain.size(); ++i) memo->Store(f.pc, chain[i], value);
    }
    return Complete(value, result);
  }

  // '@' and '#': after each repeat try the rest; when the operand fails,
  // '@' tries the rest behind none if it never matched, '#' fails. An
  // operand that matches nothing gets the rest once, then fails.
  bool StepLazy(Frame &f, std::int32_t operand, std::int32_t rest, Pos &result, std::int32_t &pc,
                std::int32_t &end, Pos &t) {
    bool const single = items[f.pc].extra != 0;
    for (;;) {
      switch (f.state) {
        case 0:
          f.a = f.t;
          f.state = 1;
          if (!single) return Call(operand, rest, f.t, pc, end, t);
          result = RunOne(operand, rest, f.t);
          break;
        case 1:
          if (result == kFail) {
            if (f.a != f.t || code[f.pc] == '#') return CompleteLazy(f, kFail, result);
            f.state = 3;
            return Call(rest, f.end, f.t, pc, end, t);
          }
          f.b = result;
          f.state = result == f.a ? 3 : 2;
          return Call(rest, f.end, result, pc, end, t);
        case 2: {
          if (result != kFail) return CompleteLazy(f, result, result);
          Pos known = kFail;
          if (memo != nullptr) {
            if (memo->Find(f.pc, f.b, &known)) return CompleteLazy(f, known, result);
            chain.push_back(f.b);
          }
          f.a = f.b;
          f.state = 1;
          if (!single) return Call(operand, rest, f.a, pc, end, t);
          result = RunOne(operand, rest, f.a);
          break;
        }
        default:
          return CompleteLazy(f, result, result);
      }
    }
  }

  // Every position the lazy loop stood on leads to value too.
  bool CompleteLazy(Frame const &f, Pos value, Pos &result) {
    if (memo != nullptr) {
      for (std::size_t i = f.base; i < chain.size(); ++i) memo->Store(f.pc, chain[i], value);
    }
    return Complete(value, result);
  }
};

}  // namespace

Program::Program(char const *compiled, std::int32_t compiledSize)
    : code(reinterpret_cast<unsigned char const *>(compiled)), size(compiledSize) {
  valid = compiled != nullptr && size > 0 && Analyse();
  if (valid) FindFirstBytes();
}

// One walk over the code: checks that it parses under the current code page
// and records what the search needs of each item.
bool Program::Analyse() {
  bool const doubleByte = DoubleBytePage();
  enum Kind { kTop, kGroup, kAlternative, kOperand };
  struct Open {
    Kind kind;
    std::int32_t pc;
    std::int32_t end;     // kOperand: end of the operand
    std::size_t pending;  // kTop, kGroup: first of its entries in pending
  };
  std::pmr::vector<Open> open(&resource);
  std::pmr::vector<std::int32_t> limits(&resource);   // end of the innermost operand
  std::pmr::vector<std::int32_t> pending(&resource);  // alternatives' 'e's waiting for their target
  std::pmr::vector<std::int32_t> greedy(&resource);   // the '*' and '+' items
  // Room for what small patterns need, taken from the arena at once.
  for (auto *stack : {&limits, &pending, &greedy}) stack->reserve(16);
  open.reserve(16);
  sets.reserve(8);
  frames.reserve(16);
  chain.reserve(64);
  open.push_back({kTop, 0, size, 0});
  limits.push_back(size);
  items.assign(static_cast<std::size_t>(size), Item{0, 0});
  for (std::int32_t pc = 0;;) {
    std::int32_t const limit = limits.back();
    if (pc == limit) {
      if (open.back().kind != kOperand) return false;
      open.pop_back();
      limits.pop_back();
      continue;
    }
    Item &item = items[static_cast<std::size_t>(pc)];
    std::int32_t next = pc + 1;
    switch (code[pc]) {
      case 'c':
        if (pc + 1 >= limit || code[pc + 1] == 0) return false;
        item.extra = doubleByte && MemberLength(code + pc + 1, 0, limit - pc - 1) == 2 ? 2 : 1;
        next = pc + 1 + item.extra;
        break;
      case '^':
        caret = true;
        break;
      case '.':
      case '$':
        break;
      case ':':
        if (pc + 1 >= limit || !IsClassLetter(code[pc + 1])) return false;
        next = pc + 2;
        break;
      case '[':
      case ']': {
        if (pc + 1 >= limit || pc + 2 + code[pc + 1] > limit) return false;
        Set set;
        set.list = pc + 2;
        set.count = code[pc + 1];
        for (std::int32_t i = 0; i < set.count;) {
          std::int32_t const n = doubleByte ? MemberLength(code + set.list, i, set.count) : 1;
          if (n == 1) set.single.Add(code[set.list + i]);
          set.pairs = set.pairs || n == 2;
          i += n;
        }
        item.extra = static_cast<std::int32_t>(sets.size());
        sets.push_back(set);
        next = pc + 2 + set.count;
        break;
      }
      case ')':
        open.push_back({kGroup, pc, 0, pending.size()});
        break;
      case '|':
        open.push_back({kAlternative, pc, 0, 0});
        break;
      case 'e': {
        Open const top = open.back();
        open.pop_back();
        if (top.kind == kAlternative) {
          // The first alternative ends here; its 'e' jumps behind the 'e'
          // that closes the enclosing group, found later.
          if (open.empty() || (open.back().kind != kGroup && open.back().kind != kTop)) return false;
          items[static_cast<std::size_t>(top.pc)].extra = pc + 1;
          pending.push_back(pc);
          break;
        }
        if (top.kind == kOperand) return false;
        for (std::size_t i = top.pending; i < pending.size(); ++i) {
          items[static_cast<std::size_t>(pending[i])].next = pc + 1;
        }
        pending.resize(top.pending);
        if (top.kind == kTop) {
          item.next = pc + 1;
          if (pc + 1 != size) return false;
          // A repeat of a single item followed by an item that cannot start
          // where the operand can: the rest can only follow the last repeat,
          // so the repeat never gives back.
          for (std::int32_t at : greedy) {
            Item &repeat = items[static_cast<std::size_t>(at)];
            Bitmap operand, rest;
            if (repeat.extra == 1 && repeat.next < size && FirstBytesOf(at + 2, operand) &&
                FirstBytesOf(repeat.next, rest) && operand.Disjoint(rest)) {
              repeat.extra = 2;
            }
          }
          return true;
        }
        break;
      }
      case '*':
      case '+':
      case '?':
      case '@':
      case '#': {
        if (pc + 1 >= limit || pc + 2 + code[pc + 1] > limit) return false;
        std::int32_t const operandEnd = pc + 2 + code[pc + 1];
        item.next = operandEnd;
        if (code[pc] == '*' || code[pc] == '+') greedy.push_back(pc);
        open.push_back({kOperand, pc, operandEnd, 0});
        limits.push_back(operandEnd);
        pc += 2;
        continue;
      }
      default:
        return false;
    }
    // An operand that is one item taking one character at most runs
    // without a call.
    Open const &parent = open.back();
    if (parent.kind == kOperand && parent.pc + 2 == pc && parent.end == next &&
        std::strchr(")|e", code[pc]) == nullptr) {
      items[static_cast<std::size_t>(parent.pc)].extra = 1;
    }
    item.next = next;
    pc = next;
  }
}

// The bytes a match can start with, from the first item every match must
// pass (behind groups and the operands of '+' and '#').
void Program::FindFirstBytes() {
  std::int32_t pc = 0;
  while (code[pc] == ')') ++pc;
  // Only an operand of one character per repeat: a number class started
  // inside a run of its repeats ends elsewhere ("1." inside ".1.").
  bool const numberOperand = code[pc + 2] == ':' && std::strchr("hnz", code[pc + 3]) != nullptr;
  if (std::strchr("*+@#", code[pc]) != nullptr && items[static_cast<std::size_t>(pc)].extra != 0 && !numberOperand) {
    leadRepeat = pc;
  }
  pc = 0;
  std::int32_t limit = size;  // the end of the operand entered last
  while (code[pc] == ')' || ((code[pc] == '+' || code[pc] == '#') && code[pc + 1] != 0)) {
    if (code[pc] != ')') limit = items[static_cast<std::size_t>(pc)].next;
    pc += code[pc] == ')' ? 1 : 2;
  }
  if (code[pc] == '^') {
    anchored = true;
    return;
  }
  filtered = FirstBytesOf(pc, firstBytes);
  if (filtered && code[pc] == 'c') {
    firstLiteral = code[pc + 1];
    // A run of one-byte characters that every match begins with.
    for (std::int32_t at = pc; at < limit && code[at] == 'c' && items[static_cast<std::size_t>(at)].extra == 1;
         at += 2) {
      prefix += static_cast<char>(code[at + 1]);
    }
  }
}

bool Program::FirstBytesOf(std::int32_t pc, Bitmap &bytes) const {
  bytes = Bitmap();
  switch (code[pc]) {
    case 'c':
      bytes.Add(code[pc + 1]);
      return true;
    case '[':
    case ']': {
      Set const &set = sets[static_cast<std::size_t>(items[static_cast<std::size_t>(pc)].extra)];
      bytes = set.single;
      if (code[pc] == ']') {
        for (auto &word : bytes.bits) word = ~word;
        bytes.bits[0] &= ~std::uint64_t{1};
      }
      // A pair is known by its lead byte only.
      for (unsigned b = 0x81; (set.pairs || code[pc] == ']') && b <= 0xFC; ++b) {
        if (mb::IsLeadByte(static_cast<unsigned char>(b))) bytes.Add(static_cast<unsigned char>(b));
      }
      return true;
    }
    case ':':
      bytes = ClassStarts(code[pc + 1]);
      return true;
    default:
      return false;
  }
}

// The first attempt position from p on whose first byte a match can start
// with; the position of the NUL when there is none.
Program::Pos Program::NextCandidate(char const *text, Pos p) const {
  if (!filtered) return p;
  if (DoubleBytePage()) {
    while (text[p] != '\0' && !firstBytes.Has(static_cast<unsigned char>(text[p]))) {
      p += static_cast<Pos>(mb::CharLen(text + p));
    }
    return p;
  }
  if (prefix.size() > 1) {
    char const *hit = std::strstr(text + p, prefix.c_str());
    return hit != nullptr ? hit - text : p + static_cast<Pos>(std::strlen(text + p));
  }
  if (firstLiteral > 0) {
    char const *hit = std::strchr(text + p, firstLiteral);
    return hit != nullptr ? hit - text : p + static_cast<Pos>(std::strlen(text + p));
  }
  while (text[p] != '\0' && !firstBytes.Has(static_cast<unsigned char>(text[p]))) ++p;
  return p;
}

Program::Pos Program::Search(char const *text, Pos *matchLength, std::int64_t plainCalls) {
  *matchLength = 0;
  if (!valid) return -1;
  bool const doubleByte = DoubleBytePage();
  Searcher searcher(*this, text);
  std::unique_ptr<Memo> memo;
  bool memoAtZero = false;  // the memo holds results of the attempt at 0
  for (Pos p = 0; text[p] != '\0'; p += doubleByte ? static_cast<Pos>(mb::CharLen(text + p)) : 1) {
    if (anchored && p > 0) break;
    p = NextCandidate(text, p);
    if (text[p] == '\0') break;
    if (memoAtZero && p > 0) {
      memo->Clear();
      memoAtZero = false;
    }
    Pos end = kAbort;
    if (memo == nullptr && plainCalls > 0) end = searcher.Attempt(p, nullptr, plainCalls + kPlainCallsPerByte * p);
    if (end == kAbort) {
      if (memo == nullptr) memo.reset(new Memo);
      memoAtZero = p == 0;
      end = searcher.Attempt(p, memo.get(), 0);
    }
    if (end != kFail) {
      *matchLength = end - p;
      return p;
    }
    // A leading repeat of one item tried the rest behind each of its
    // repeats, up to where the operand failed: the attempts in between
    // would try the same again, and the one there too. Which attempt began
    // at 0 only matters to '^'.
    if (leadRepeat >= 0 && (p > 0 || !caret)) {
      p = searcher.RepeatEnd(leadRepeat, p);
      if (text[p] == '\0') break;
    }
  }
  return -1;
}

}  // namespace tovik::pattern
