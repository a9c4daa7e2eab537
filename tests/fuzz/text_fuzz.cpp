// Fuzzes the text parsers: wildcard matching and checking, quoted extraction, natural comparison, number conversion,
// and the character walks of the searches and trims in both code pages.
//
// Input: one control byte, then two texts separated by the first NUL.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "mbtext.h"
#include "sys_string.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

int Sign(int v) { return v < 0 ? -1 : (v > 0 ? 1 : 0); }

void CheckWildcards(SYS_String const &text, SYS_String const &pattern) {
  int const match = text.Match(pattern);
  Require(match == 0 || match == 1);
  int error = 1;
  int const valid = pattern.IsValidPattern(&error);
  Require((valid == 1 && error == 0) || (valid == 0 && error <= -1 && error >= -4));
  if (pattern.IsPattern() == 0) Require(match == (text == pattern ? 1 : 0));
}

void CheckQuoted(SYS_String const &text) {
  CString out("x");
  SYS_String const rest = text >> out;
  std::string const whole(text);  // up to the first NUL, as the walk sees it
  bool const opened = whole.size() >= 1 && whole[0] == '"' && (whole.size() < 2 || whole[1] != '"');
  Require((opened ? "\"" : "") + std::string(out) + std::string(rest) == whole);
  Require(rest.IsEmpty() || rest[0] == '"');
}

void CheckNumbers(SYS_String const &text) {
  char const *const begin = text;
  auto value = [&](auto *out) {
    char const *end = nullptr;
    text.Value(out, &end);
    Require(end >= begin && end <= begin + text.GetLength());
  };
  short s = 0;
  int i = 0;
  unsigned u = 0;
  double d = 0;
  float f = 0;
  value(&s), value(&i), value(&u), value(&f), value(&d);
  Require((text >> u).GetLength() <= text.GetLength());
}

void CheckWalks(SYS_String const &a, SYS_String const &b, int start) {
  int const length = a.GetLength();
  Require(Sign(_tcsnumcmp(a, b)) == -Sign(_tcsnumcmp(b, a)));
  Require(_tcsnumcmp(a, a) == 0);
  for (int found : {a.Find(b, start), a.Find(b.IsEmpty() ? 'x' : b[0], start), a.FindOneOf(b, start),
                    a.ReverseFind(b.IsEmpty() ? 'x' : b[0], start), a.ReverseFindOneOf(b, start)}) {
    Require(found >= -1 && found <= length);
  }
  for (SYS_String const &part : {a.SpanIncluding(b), a.SpanExcluding(b), SYS_String(a).TrimRight(b),
                                  SYS_String(a).TrimLeft(b), SYS_String(a).AllTrim(b)}) {
    Require(part.GetLength() <= length);
  }
  SYS_String edited(a);
  edited.Replace(start % 40, start / 40, b);
  edited.Insert(start % 50, b);
  edited.Delete(start % 7, start % 5);
  Require(edited.GetLength() >= 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
  if (size == 0) return 0;
  std::uint8_t const control = data[0];
  std::string const rest(reinterpret_cast<char const *>(data) + 1, size - 1);
  std::size_t const split = rest.find('\0');
  SYS_String const a(rest.substr(0, split).c_str());
  SYS_String const b(split == std::string::npos ? "" : rest.substr(split + 1).c_str());

  tovik::mb::SetCodePage((control & 1) != 0 ? tovik::mb::CodePage::DoubleByte : tovik::mb::CodePage::SingleByte);
  CheckWildcards(a, b);
  CheckQuoted(a);
  CheckNumbers(a);
  CheckWalks(a, b, static_cast<int>(control >> 1) - 4);
  tovik::mb::SetCodePage(tovik::mb::CodePage::SingleByte);
  return 0;
}
