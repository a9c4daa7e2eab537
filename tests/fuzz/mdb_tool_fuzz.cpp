// Fuzzes what tovik-mdb does with a text catalog: load it, dump it, read the
// dump back, and take every text as a printf format. A dump that reports no
// problem must give back the same keys, texts and sections.
#include <stdlib.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>

#include "mdb.h"

namespace {
std::string TempFile() {
  char name[] = "/dev/shm/tovik-fuzz-XXXXXX";  // memory: rewritten per input
  ::close(::mkstemp(name));
  return name;
}

void Write(std::string const &path, char const *data, std::size_t size) {
  FILE *const file = std::fopen(path.c_str(), "wb");
  std::fwrite(data, 1, size, file);
  std::fclose(file);
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
  static std::string const input = TempFile(), dumped = TempFile();
  Write(input, reinterpret_cast<char const *>(data), size);
  Catalog catalog(input);
  if (!catalog.Opened()) return 0;
  for (auto const &entry : catalog.Texts()) Placeholders(entry.second);
  std::ostringstream text;
  if (!Dump(catalog, text).empty()) return 0;
  Write(dumped, text.str().data(), text.str().size());
  Catalog again(dumped);
  if (again.Texts() != catalog.Texts()) std::abort();
  std::size_t const n = catalog.Sections().size();
  if (again.Sections().size() != n) std::abort();
  for (std::size_t i = 0; i < n; ++i) {
    Section const &a = catalog.Sections()[i], &b = again.Sections()[i];
    if (a.name != b.name || a.base != b.base || a.largest != b.largest) std::abort();
  }
  return 0;
}
