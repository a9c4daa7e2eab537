// Fuzzes the message database loaders: the input is a whole file, read in
// the text form, or in the compiled form when built with
// TOVIK_FUZZ_COMPILED. Every key's text is fetched and every section walked.
#include <stdlib.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "sfm_message_db.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
  static std::string const path = [] {
    std::freopen("/dev/null", "w", stdout);  // the text loader's reports
    char name[] = "/dev/shm/tovik-fuzz-XXXXXX";  // memory: the file is rewritten per input
    ::close(::mkstemp(name));
    return std::string(name);
  }();
  FILE *const file = std::fopen(path.c_str(), "wb");
  std::fwrite(data, 1, size, file);
  std::fclose(file);
#ifdef TOVIK_FUZZ_COMPILED
  SFM_MessageDB db(path.c_str());
#else
  SFM_MessageDB db(path.c_str(), 0);
#endif
  if (db.GetKeys() == nullptr) return 0;
  SCC_Map<int, SFM_MessageDB::keyTableElem> keys(*db.GetKeys());
  for (SCC_MapIterator<int, SFM_MessageDB::keyTableElem> it(keys); it.IsValid(); it.GetNext()) {
    if (db.getTxt(it.GetKey()).GetLength() > 199) std::abort();
  }
  for (SFM_MessageDB::SectionTableNode const *node = db.GetSections().GetHead(); node != nullptr;
       node = node->GetNextInList()) {
    // A walk reaches every key at most once, and no text is longer than 199 bytes.
    std::int32_t steps = 0;
    for (SFM_MessageDB::SectionIterator it(&db, node->name, 0); !it.IsEmpty(); ++it) {
      if (SYS_String(it).GetLength() > 199 || ++steps > keys.GetCount()) std::abort();
    }
  }
  return 0;
}
