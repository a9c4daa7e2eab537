// Internal: the library's string table.
#ifndef TOVIK_SFM_LIBRARY_STRINGS_H
#define TOVIK_SFM_LIBRARY_STRINGS_H

namespace tovik::sfm_detail {

// Puts the library's table into the resource-string search (once). Called at
// load, and again by TR before its first search, so that a static build that
// drops the load-time registration still finds the texts.
void RegisterLibraryStrings();

}  // namespace tovik::sfm_detail

#endif  // TOVIK_SFM_LIBRARY_STRINGS_H
