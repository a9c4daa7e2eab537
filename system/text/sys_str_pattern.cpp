#include "sys_str_pattern.h"

#include <climits>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <utility>
#include <vector>

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
  using Pos = pattern::Program::Pos;
  if (compiled.IsEmpty()) return 0;
  char const *const base = text;
  pattern::Program program(compiled, compiled.GetLength());
  std::vector<std::pair<Pos, Pos>> found;  // where each match starts and ends
  for (Pos offset = 0; (maxCount <= 0 || found.size() < static_cast<std::size_t>(maxCount)) && base[offset] != '\0';) {
    Pos length = 0;
    Pos const at = program.Search(base + offset, &length);
    if (at < 0) break;
    found.emplace_back(offset + at, offset + at + length);
    offset += at + length;
    // Behind an empty match the next search starts a character further on.
    if (length == 0) offset += static_cast<Pos>(tovik::mb::CharLen(base + offset));
  }
  if (found.empty()) return 0;
  Pos const insertLength = replacement.GetLength();
  Pos size = text.GetLength();
  for (auto const &match : found) size += insertLength - (match.second - match.first);
  if (size > CString::kMaxLength) throw std::bad_alloc();
  // Writes a new string, so that replacement may be text itself.
  CString result;
  char *out = result.GetBuffer(static_cast<int>(size));
  Pos copied = 0;
  for (auto const &match : found) {
    std::memcpy(out, base + copied, static_cast<std::size_t>(match.first - copied));
    out += match.first - copied;
    std::memcpy(out, static_cast<char const *>(replacement), static_cast<std::size_t>(insertLength));
    out += insertLength;
    copied = match.second;
  }
  std::memcpy(out, base + copied, static_cast<std::size_t>(text.GetLength() - copied));
  result.ReleaseBuffer(static_cast<int>(size));
  text = result;
  return static_cast<int>(found.size());
}
