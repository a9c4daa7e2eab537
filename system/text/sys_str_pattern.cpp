#include "sys_str_pattern.h"

#include <cstdint>
#include <cstring>
#include <string>

#include "mbtext.h"
#include "pattern_engine.h"

namespace pattern = tovik::pattern;

namespace {

// The length of a text up to its first NUL, or -1 beyond what positions of
// 32 bits can address.
std::int32_t TextLength(char const *text, std::size_t limit) {
  std::size_t const n = strnlen(text, limit);
  return n > static_cast<std::size_t>(INT32_MAX - 1) ? -1 : static_cast<std::int32_t>(n);
}

}  // namespace

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
  std::int32_t const textLength = TextLength(text, static_cast<std::size_t>(INT32_MAX));
  if (textLength <= 0) return -1;
  pattern::Program const program(compiled, compiled.GetLength());
  std::int32_t matched = 0;
  std::int32_t const position = program.Search(text, textLength, &matched);
  if (position >= 0 && length != nullptr) *length = matched;
  return position;
}

int SYS_StrPattern::Substitute(CString &text, CString const &replacement, int maxCount) const {
  if (compiled.IsEmpty()) return 0;
  // Copies hold the texts while text is rebuilt: replacement may be text.
  CString const source(text);
  CString const insert(replacement);
  char const *const base = source;
  std::int32_t const searched = TextLength(base, static_cast<std::size_t>(source.GetLength()));
  if (searched < 0) return 0;
  pattern::Program const program(compiled, compiled.GetLength());
  std::string result;
  std::int32_t copied = 0;  // source bytes already in result
  std::int32_t offset = 0;  // where the next search starts
  int count = 0;
  while ((maxCount <= 0 || count < maxCount) && offset < searched) {
    std::int32_t length = 0;
    std::int32_t const found = program.Search(base + offset, searched - offset, &length);
    if (found < 0) break;
    std::int32_t const at = offset + found;
    result.append(base + copied, static_cast<std::size_t>(at - copied));
    result.append(insert, static_cast<std::size_t>(insert.GetLength()));
    copied = at + length;
    offset = copied;
    // Behind an empty match the next search starts a character further on.
    if (length == 0) offset += static_cast<std::int32_t>(tovik::mb::CharLen(base + at));
    ++count;
  }
  if (count == 0) return 0;
  result.append(base + copied, static_cast<std::size_t>(source.GetLength() - copied));
  text = CString(result.data(), static_cast<int>(result.size()));
  return count;
}
