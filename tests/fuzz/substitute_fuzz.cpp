// Fuzzes Substitute against its definition: search from the offset, splice
// the replacement in, go on behind it (one character further behind an
// empty match), in both code pages and with a replacement that is the text
// itself.
//
// Input: one control byte, then the pattern, the text and the replacement
// separated by NULs.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "mbtext.h"
#include "sys_str_pattern.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

std::string Piece(std::string const &s, std::size_t &at) {
  std::size_t const end = s.find('\0', at);
  std::string const piece = s.substr(at, end == std::string::npos ? std::string::npos : end - at);
  at = end == std::string::npos ? s.size() : end + 1;
  return piece;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
  if (size == 0) return 0;
  std::uint8_t const control = data[0];
  std::string const rest(reinterpret_cast<char const *>(data) + 1, size - 1);
  std::size_t at = 0;
  std::string const source = Piece(rest, at);
  std::string text = Piece(rest, at);
  bool const itself = (control & 2) != 0;
  std::string const replacement = itself ? text : Piece(rest, at);
  int const maxCount = (control >> 2) % 8 - 1;
  tovik::mb::SetCodePage((control & 1) != 0 ? tovik::mb::CodePage::DoubleByte : tovik::mb::CodePage::SingleByte);

  SYS_StrPattern const pattern(source.c_str());
  CString subject(text.c_str());
  int const count = itself ? pattern.Substitute(subject, subject, maxCount)
                           : pattern.Substitute(subject, CString(replacement.c_str()), maxCount);

  int expected = 0;
  std::size_t offset = 0;
  while ((maxCount <= 0 || expected < maxCount) && offset < text.size()) {
    int n = 0;
    int const m = pattern.Match(text.c_str() + offset, &n);
    if (m < 0) break;
    std::size_t const found = offset + static_cast<std::size_t>(m);
    text = text.substr(0, found) + replacement + text.substr(found + static_cast<std::size_t>(n));
    offset = found + replacement.size();
    if (n == 0) offset += tovik::mb::CharLen(text.c_str() + offset);
    ++expected;
  }
  Require(count == expected);
  Require(std::string(subject, static_cast<std::size_t>(subject.GetLength())) == text);
  tovik::mb::SetCodePage(tovik::mb::CodePage::SingleByte);
  return 0;
}
