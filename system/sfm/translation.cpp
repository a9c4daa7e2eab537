#include "sys_translation.h"

#include "exitcleanup.h"
#include "library_strings.h"
#include "resstrings.h"
#include "scc_map.h"

namespace {

// The hand search of the desktop platform read a string into a buffer of this
// size, so a longer text is cut to one byte less.
constexpr int kSearchLimit = 1000;

SCC_Map<int, SYS_String> *numberCache = nullptr;
SCC_Map<SYS_String, SYS_String> *textCache = nullptr;
bool cachesClosed = false;

void DestroyCaches() {
  delete numberCache;
  numberCache = nullptr;
  delete textCache;
  textCache = nullptr;
  cachesClosed = true;
}

SYS_String Search(int id) {
  tovik::sfm_detail::RegisterLibraryStrings();
  char buffer[kSearchLimit];
  tovik::res::LoadString(id, buffer, kSearchLimit);
  return SYS_String(buffer);
}

// Makes a cache on first use; null once the clean-up at exit has run.
template <class Map>
Map *Cache(Map *&cache) {
  if (cache == nullptr && !cachesClosed) {
    tovik::platform::RegisterExitCleanup(&DestroyCaches);
    cache = new Map(53, 1);
  }
  return cache;
}

}  // namespace

SYS_String TR(int id) {
  SCC_Map<int, SYS_String> *const cache = Cache(numberCache);
  if (cache == nullptr) return Search(id);
  if (SYS_String const *const hit = cache->Find(id)) return *hit;
  // Entered before the search, so that a miss stays cached as empty.
  SYS_String *const value = cache->Insert(id);
  if (value == nullptr) return Search(id);  // no memory for the table
  *value = Search(id);
  return *value;
}

SYS_String TR(char const *text) {
  if (text == nullptr) return SYS_String();
  SCC_Map<SYS_String, SYS_String> *const cache = Cache(textCache);
  if (cache == nullptr) return SYS_String(text);
  SYS_String const key(text);
  if (SYS_String const *const hit = cache->Find(key)) return *hit;
  SYS_String const *const entered = cache->Insert(key, key);
  return entered != nullptr ? *entered : key;
}
