// Fuzzes patterns, in both code pages. fuzz_pattern: whatever the pattern,
// compiling ends with a form or nothing, the match lies inside the text, the
// plain and the memoised search agree, and on small inputs both agree with
// the reference walk. fuzz_substitute (TOVIK_FUZZ_SUBSTITUTE set):
// Substitute agrees with its definition, searching from the offset and
// splicing the replacement in, also when the replacement is the text itself.
//
// Input: one control byte, then pattern, text and replacement separated by
// NULs.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "../../system/text/pattern_engine.h"
#include "../text/pattern_reference.h"
#include "sys_str_pattern.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

void CheckMatch(SYS_StrPattern const &pattern, std::string const &text) {
  CString const &compiled = pattern.GetCompiled();
  if (compiled.IsEmpty()) return Require(pattern.Match(text.c_str(), nullptr) == -1);
  // A small allowance for the plain walk, so that it often turns to the memo.
  tovik::pattern::Program program(compiled, compiled.GetLength());
  tovik::pattern::Program::Pos length = -1, memoLength = -1;
  auto const position = program.Search(text.c_str(), &length, 64);
  Require(position + length <= static_cast<int>(text.size()) && (position >= 0 || length == 0));
  Require(program.Search(text.c_str(), &memoLength, 0) == position && memoLength == length);
  std::string const code(compiled, static_cast<std::size_t>(compiled.GetLength()));
  // The reference takes time of the order of the text's length to the power
  // of the branching items: keep both small.
  auto const branching = [](char op) { return std::string("*+?@#|").find(op) != std::string::npos; };
  if (text.size() > 20 || std::count_if(code.begin(), code.end(), branching) > 4) return;
  int matchLength = -1, referenceLength = -1;
  Require(pattern.Match(text.c_str(), &matchLength) == position && matchLength == length);
  Require(tovik_test::ReferenceMatch(code, text.c_str(), &referenceLength) == position && referenceLength == length);
}

void CheckSubstitute(SYS_StrPattern const &pattern, std::string text, std::string const &replacement, int control) {
  int const maxCount = (control >> 2) % 8 - 1;
  std::string const insert = (control & 2) != 0 ? text : replacement;  // the text itself
  CString subject(text.c_str());
  int const count = (control & 2) != 0 ? pattern.Substitute(subject, subject, maxCount)
                                       : pattern.Substitute(subject, CString(insert.c_str()), maxCount);
  // The definition, searched with the memo from the start (and so quickly).
  tovik::pattern::Program program(pattern.GetCompiled(), pattern.GetCompiled().GetLength());
  int expected = 0;
  for (std::size_t offset = 0; (maxCount <= 0 || expected < maxCount) && offset < text.size(); ++expected) {
    tovik::pattern::Program::Pos length = 0;
    auto const m = static_cast<std::size_t>(program.Search(text.c_str() + offset, &length, 0));
    if (m == static_cast<std::size_t>(-1)) break;
    auto const n = static_cast<std::size_t>(length);
    text = text.substr(0, offset + m) + insert + text.substr(offset + m + n);
    offset += m + insert.size();
    if (n == 0) offset += tovik::mb::CharLen(text.c_str() + offset);
  }
  Require(count == expected && std::string(subject, static_cast<std::size_t>(subject.GetLength())) == text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
  if (size == 0) return 0;
  std::string parts[3];
  for (std::size_t i = 1, part = 0; i < size && part < 3; part += data[i++] == 0) {
    if (data[i] != 0) parts[part] += static_cast<char>(data[i]);
  }
  tovik::mb::SetCodePage((data[0] & 1) != 0 ? tovik::mb::CodePage::DoubleByte : tovik::mb::CodePage::SingleByte);
  SYS_StrPattern const pattern(parts[0].c_str());
  if (TOVIK_FUZZ_SUBSTITUTE) {
    CheckSubstitute(pattern, parts[1], parts[2], data[0]);
  } else {
    CheckMatch(pattern, parts[1]);
  }
  return 0;
}
