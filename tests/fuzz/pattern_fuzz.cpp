// Fuzzes pattern compiling and matching: whatever the pattern, compiling ends
// with a form or nothing, and the search gives a match inside the text; the
// plain search and the memoised one agree, and on small inputs both agree
// with the reference walk, in both code pages.
//
// Input: one control byte, then the pattern and the text separated by the
// first NUL.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "../../system/text/pattern_engine.h"
#include "../text/pattern_reference.h"
#include "mbtext.h"
#include "sys_str_pattern.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
  if (size == 0) return 0;
  std::string const rest(reinterpret_cast<char const *>(data) + 1, size - 1);
  std::size_t const split = rest.find('\0');
  std::string const source = rest.substr(0, split);
  std::string const text = split == std::string::npos ? std::string() : rest.substr(split + 1).c_str();
  tovik::mb::SetCodePage((data[0] & 1) != 0 ? tovik::mb::CodePage::DoubleByte : tovik::mb::CodePage::SingleByte);

  SYS_StrPattern const pattern(source.c_str());
  CString const &compiled = pattern.GetCompiled();
  int length = -1;
  int const position = pattern.Match(text.c_str(), &length);
  auto const textLength = static_cast<int>(text.size());
  if (compiled.IsEmpty()) {
    Require(position == -1 && length == 0);
  } else {
    Require(compiled[compiled.GetLength() - 1] == 'e');
    Require(position >= -1 && position < textLength && length >= 0 && position + length <= textLength);
    Require(position >= 0 || length == 0);
    tovik::pattern::Program program(compiled, compiled.GetLength());
    tovik::pattern::Program::Pos memoLength = -1;
    Require(program.Search(text.c_str(), &memoLength, 0) == position && memoLength == length);
    if (text.size() <= 24 && compiled.GetLength() <= 48) {
      int referenceLength = -1;
      std::string const code(compiled, static_cast<std::size_t>(compiled.GetLength()));
      Require(tovik_test::ReferenceMatch(code, text.c_str(), &referenceLength) == position);
      Require(referenceLength == length);
    }
  }
  tovik::mb::SetCodePage(tovik::mb::CodePage::SingleByte);
  return 0;
}
