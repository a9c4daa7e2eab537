// Resource strings: the registry of numbered string tables that TR(int)
// searches.
//
// Each table is an array of (id, text) entries that its owner keeps alive.
// Application tables are searched first, in the order they were registered,
// then the library tables in theirs; the first table that holds an id with a
// non-empty text answers. Tovik registers its own table when it is loaded;
// an application or another library registers its own the same way, and
// takes it out again before unloading the code that holds it. The registry
// copies no text and caches nothing: TR(int) does the caching.
#ifndef TOVIK_RESSTRINGS_H
#define TOVIK_RESSTRINGS_H

#include <cstddef>

#include "tovik_export.h"

namespace tovik::res {

struct StringEntry {
  int id;
  char const *text;
};

enum class TableOwner {
  Application,  // searched before every library table
  Library
};

// Adds a table of count entries. A table already registered stays where it
// is; a null table or a count of 0 is ignored.
TOVIK_API void RegisterStringTable(StringEntry const *entries, std::size_t count, TableOwner owner);
// Takes the table out of the search; unknown tables are ignored.
TOVIK_API void UnregisterStringTable(StringEntry const *entries) noexcept;

// Copies the text of id into buffer as the desktop platform's string loader
// does: at most limit - 1 bytes and a NUL. Returns the bytes copied, 0 when
// no table has a non-empty text for id (the buffer then holds an empty text)
// or when limit is below 1 (the buffer is then not touched).
TOVIK_API int LoadString(int id, char *buffer, int limit) noexcept;

}  // namespace tovik::res

#endif  // TOVIK_RESSTRINGS_H
