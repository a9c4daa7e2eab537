// Fuzzes path splitting, in both code pages and with either default
// separator: the parts always join to the full path, a full path parses to
// the same parts again, and each setter keeps the parts consistent.
//
// Input: one control byte, then a path and a second text separated by the
// first NUL.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "mbtext.h"
#include "sfm_file_path.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

// The parts, joined with a separator that no parsed text holds.
std::string Parts(SFM_FilePath &path) {
  std::string const nameExt(path.GetFileNameExt());
  Require(std::string(path) == std::string(path.GetFileDirectory()) + nameExt);
  Require(nameExt == std::string(path.GetFileName()) + std::string(path.GetFileExtension()));
  return std::string(path.GetBasePath()) + '\0' + std::string(path.GetRelPath()) + '\0' + nameExt + '\0' +
         std::string(path.GetFileExtension());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
  if (size == 0) return 0;
  std::string const rest(reinterpret_cast<char const *>(data) + 1, size - 1);
  std::string const first = rest.c_str();
  char const *text = rest.c_str() + std::min(first.size() + 1, rest.size());
  tovik::mb::SetCodePage((data[0] & 1) != 0 ? tovik::mb::CodePage::DoubleByte : tovik::mb::CodePage::SingleByte);
  SFM_FilePath::DefaultSeparator = (data[0] >> 1) & 1;

  SFM_FilePath path(first.c_str());
  SFM_FilePath again(static_cast<char const *>(path));
  Require(Parts(path) == Parts(again) && std::string(path).size() <= first.size());
  switch ((data[0] >> 2) % 10) {
    case 0: path.SetBasePath(text); break;
    case 1: path.SetRelPath(text); break;
    case 2: path.SetFileDirectory(text); break;
    case 3: path.SetFileName(text, data[0] >> 7); break;
    case 4: path.SetFileExtension(text); break;
    case 5: path.SetFileNameExt(text); break;
    case 6: path.SetDefault(text); break;
    case 7: path.SetDefPath(text); break;
    case 8: path.AddSeparator(); break;
    default: path.SetFileName(first.c_str(), text, 0); break;
  }
  Parts(path);
  return 0;
}
