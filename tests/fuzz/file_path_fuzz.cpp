// Fuzzes path splitting: every part of a parse must join to the full path,
// a full path must parse to the same parts again, and the setters must keep
// the parts consistent, in both code pages and with either default
// separator.
//
// Input: one control byte, then a path and a second text separated by the
// first NUL.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "mbtext.h"
#include "sfm_file_path.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

std::string Text(SYS_String const &s) { return std::string(s, static_cast<std::size_t>(s.GetLength())); }

void CheckConsistent(SFM_FilePath &path) {
  std::string const full = Text(path);
  Require(full == Text(path.GetFileDirectory()) + Text(path.GetFileNameExt()));
  Require(Text(path.GetFileNameExt()) == Text(path.GetFileName()) + Text(path.GetFileExtension()));
  SFM_FilePath again(full.c_str());
  Require(Text(again.GetBasePath()) == Text(path.GetBasePath()));
  Require(Text(again.GetRelPath()) == Text(path.GetRelPath()));
  Require(Text(again.GetFileName()) == Text(path.GetFileName()));
  Require(Text(again.GetFileExtension()) == Text(path.GetFileExtension()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
  if (size == 0) return 0;
  std::uint8_t const control = data[0];
  std::string const rest(reinterpret_cast<char const *>(data) + 1, size - 1);
  std::size_t const split = rest.find('\0');
  std::string const first = rest.substr(0, split);
  std::string const second = split == std::string::npos ? std::string() : rest.substr(split + 1);
  char const *text = second.c_str();

  tovik::mb::SetCodePage((control & 1) != 0 ? tovik::mb::CodePage::DoubleByte : tovik::mb::CodePage::SingleByte);
  SFM_FilePath::DefaultSeparator = (control >> 1) & 1;
  SFM_FilePath path(first.c_str());
  std::size_t const length = first.size();
  CheckConsistent(path);
  Require(Text(path).size() <= length);
  switch ((control >> 2) % 10) {
    case 0: path.SetBasePath(text); break;
    case 1: path.SetRelPath(text); break;
    case 2: path.SetFileDirectory(text); break;
    case 3: path.SetFileName(text, control >> 7); break;
    case 4: path.SetFileExtension(text); break;
    case 5: path.SetFileNameExt(text); break;
    case 6: path.SetDefault(text); break;
    case 7: path.SetDefPath(text); break;
    case 8: path.AddSeparator(); break;
    default: path.SetFileName(first.c_str(), text, 0); break;
  }
  std::string const full = Text(path);
  Require(full == Text(path.GetFileDirectory()) + Text(path.GetFileNameExt()));
  Require(Text(path.GetFileNameExt()) == Text(path.GetFileName()) + Text(path.GetFileExtension()));
  tovik::mb::SetCodePage(tovik::mb::CodePage::SingleByte);
  SFM_FilePath::DefaultSeparator = 0;
  return 0;
}
