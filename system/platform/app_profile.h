// The application's profile: an INI file that the application names, read
// and written by section and entry.
//
//   ; comment
//   [general]
//   editor=gedit
//
// Section and entry names compare without regard to ASCII case; blanks
// around names and values are ignored. Every write rewrites the whole file
// beside it and renames it into place, so a crash leaves the old profile or
// the new one, never half of one. Lines the profile does not understand
// (comments among them) are kept as they are. The file is read again at
// each call, so changes by other programs are seen.
#ifndef TOVIK_APP_PROFILE_H
#define TOVIK_APP_PROFILE_H

#include <string>

#include "tovik_export.h"

namespace tovik::app {

// Names the profile file; null or empty means no profile: reads give their
// defaults and writes fail. There is none until the application names one.
TOVIK_API void SetProfilePath(char const *path);
TOVIK_API std::string GetProfilePath();

// The entry's value, or defaultValue (null counts as empty) when the profile,
// the section or the entry is missing.
TOVIK_API std::string GetProfileString(char const *section, char const *entry,
                                       char const *defaultValue);
// Sets the entry; a null value removes the entry, a null entry the whole
// section. 1 when the profile was saved, else 0 (a null section, no profile).
TOVIK_API int WriteProfileString(char const *section, char const *entry, char const *value);
// The entry read as a decimal number (0 when it holds none), or defaultValue
// when it is missing.
TOVIK_API int GetProfileInt(char const *section, char const *entry, int defaultValue);
TOVIK_API int WriteProfileInt(char const *section, char const *entry, int value);

}  // namespace tovik::app

#endif  // TOVIK_APP_PROFILE_H
