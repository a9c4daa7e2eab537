#include "sys_str_pattern.h"

#include <climits>
#include <cstdint>
#include <new>
#include <string>

#include "mbtext.h"
#include "pattern_engine.h"

namespace pattern = tovik::pattern;

void SYS_StrPattern::MakePattern(char const *text) {
  std::string code;
  if (pattern::Compile(text, code)) {
    compiled = CString(code.data(), static_cast<int>(code.size()));
  } else {
    compiled = CString();
  }
}

int SYS_StrPattern::Match(char const *text, int *length) const {
  if (length != nullptr) *length = 0;
  if (text == nullptr || compiled.IsEmpty()) return -1;
  pattern::Program program(compiled, compiled.GetLength());
  pattern::Program::Pos matched = 0;
  pattern::Program::Pos const position = program.Search(text, &matched);
  // Positions beyond what an int holds cannot be told.
  if (position < 0 || position + matched > INT_MAX) return -1;
  if (length != nullptr) *length = static_cast<int>(matched);
  return static_cast<int>(position);
}

int SYS_StrPattern::Substitute(CString &text, CString const &replacement, int maxCount) const {
  if (compiled.IsEmpty()) return 0;
  // Copies hold the texts while text is rebuilt: replacement may be text.
  CString const source(text);
  CString const insert(replacement);
  char const *const base = source;
  pattern::Program program(compiled, compiled.GetLength());
  std::string result;
  pattern::Program::Pos copied = 0;  // source bytes already in result
  pattern::Program::Pos offset = 0;  // where the next search starts
  int count = 0;
  while ((maxCount <= 0 || count < maxCount) && base[offset] != '\0') {
    pattern::Program::Pos length = 0;
    pattern::Program::Pos const found = program.Search(base + offset, &length);
    if (found < 0) break;
    pattern::Program::Pos const at = offset + found;
    result.append(base + copied, static_cast<std::size_t>(at - copied));
    result.append(insert, static_cast<std::size_t>(insert.GetLength()));
    copied = at + length;
    offset = copied;
    // Behind an empty match the next search starts a character further on.
    if (length == 0) offset += static_cast<pattern::Program::Pos>(tovik::mb::CharLen(base + at));
    ++count;
  }
  if (count == 0) return 0;
  result.append(base + copied, static_cast<std::size_t>(source.GetLength() - copied));
  if (result.size() > static_cast<std::size_t>(CString::kMaxLength)) throw std::bad_alloc();
  text = CString(result.data(), static_cast<int>(result.size()));
  return count;
}
