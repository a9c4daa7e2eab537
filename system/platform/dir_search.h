// Directories on the operating system: searching entries by wildcard,
// creating and removing directories, and the process's current directory.
//
// Paths may use either separator (see NativePath in file_io.h). A search
// pattern is a directory part and a name part; the name part may hold '*'
// (any run of characters, dots included) and '?' (exactly one character),
// and a trailing ".*" also matches a name without a dot, so "*.*" matches
// every name. Matching is by characters of the process code page and
// case-sensitive, as the file system is. A name part without wildcards looks
// the one entry up directly. Entries are described as lstat sees them: a
// link to a directory is not a directory.
#ifndef TOVIK_DIR_SEARCH_H
#define TOVIK_DIR_SEARCH_H

#include <cstdint>
#include <string>

#include "tovik_export.h"

namespace tovik::io {

// One entry found by a search.
struct FindRecord {
  unsigned int attributes;    // kAttributeDirectory, kAttributeReadOnly
  std::int32_t creationTime;  // seconds since 1970; the status change time here
  std::int32_t accessTime;
  std::int32_t writeTime;
  std::uint32_t size;         // bytes; UINT32_MAX for larger files
  char name[260];             // the entry's name, without its directory
};

constexpr unsigned int kAttributeReadOnly = 1;
constexpr unsigned int kAttributeDirectory = 16;

// Starts a search and fills record with the first match. Returns a handle
// (0 or above), or -1 when nothing matches or the directory cannot be read.
TOVIK_API std::int32_t FindFirst(char const *pattern, FindRecord &record);
// The next match into record: 0, or -1 at the end (the search stays open
// until FindClose).
TOVIK_API int FindNext(std::int32_t handle, FindRecord &record);
// Ends a search; 0, or -1 for a handle that names none.
TOVIK_API int FindClose(std::int32_t handle);
// 1 when name matches pattern by the rules above.
TOVIK_API int MatchName(char const *name, char const *pattern);

// 1 when the directory was created, else 0.
TOVIK_API int MakeDirectory(char const *path);
// 0 when the (empty) directory was removed, else -1.
TOVIK_API int RemoveDirectory(char const *path);
// The current directory without a closing separator; empty on failure.
TOVIK_API std::string GetCurrentDirectory();
// 0 on success, -1 on failure.
TOVIK_API int SetCurrentDirectory(char const *path);

}  // namespace tovik::io

#endif  // TOVIK_DIR_SEARCH_H
