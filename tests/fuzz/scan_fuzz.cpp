// Fuzzes the scanning helpers: the integer and floating scanners in both code
// pages, piece extraction with any separator (NUL included) and SimpleScanf
// with every format the library knows and some it does not.
//
// Input: one control byte, then the text (up to the first NUL).
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "mbtext.h"
#include "numtext.h"
#include "sys_exception.h"
#include "sys_scan.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

// A scanner's end lies in the text, and it is whole exactly at the end.
void CheckEnd(char const *text, char const *end, int whole) {
  std::size_t const length = std::strlen(text);
  Require(end == nullptr || (end > text && end <= text + length));
  Require(whole == (end != nullptr && end == text + length ? 1 : 0));
}

void CheckScanners(char const *text) {
  for (int kind = 0; kind <= 3; ++kind) CheckEnd(text, getinteger(text, kind), isinteger(text, kind));
  for (int plain = 0; plain <= 1; ++plain) CheckEnd(text, getdouble(text, plain), isdouble(text, plain));
}

void CheckPieces(char const *text, char separator) {
  std::size_t const length = std::strlen(text);
  std::size_t total = 0;
  int index = 0;
  for (SYS_String piece; SysExtractSubString(piece, text, index, separator) == 1; ++index) {
    Require(separator == '\0' || std::strchr(piece, separator) == nullptr);
    total += static_cast<std::size_t>(piece.GetLength());
    Require(index <= static_cast<int>(length));
  }
  // The pieces and the separators between them make the whole text.
  Require(total + static_cast<std::size_t>(index - 1) == length);
}

void CheckScanf(char const *text, char const *format) {
  union {
    double d;
    std::int32_t l;
    short s;
  } value;
  value.d = 0;
  try {
    if (SimpleScanf(text, format, &value) == 1 && std::strcmp(format, "%d") == 0) {
      Require(value.l == tovik::num::StrToL(text, nullptr));
    }
  } catch (SYS_Exception const &e) {
    Require(!e.GetText().IsEmpty());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
  if (size == 0) return 0;
  std::uint8_t const control = data[0];
  std::string const text(reinterpret_cast<char const *>(data) + 1, size - 1);
  char const *const t = text.c_str();  // up to the first NUL, as the helpers see it

  static char const *const formats[] = {"%d", "%ld", "%sd", "%f", "%lf", "%sf", "%u", "%x", "%", "", "%s", "%l"};
  tovik::mb::SetCodePage((control & 1) != 0 ? tovik::mb::CodePage::DoubleByte : tovik::mb::CodePage::SingleByte);
  CheckScanners(t);
  char const separators[] = {',', '\0', ';', static_cast<char>(0xE9)};
  CheckPieces(t, separators[(control >> 1) & 3]);
  CheckScanf(t, formats[(control >> 3) % (sizeof formats / sizeof formats[0])]);
  tovik::mb::SetCodePage(tovik::mb::CodePage::SingleByte);
  return 0;
}
