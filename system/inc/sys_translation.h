// TR: the texts that users read, fetched by number from the resource strings
// (resstrings.h) or passed through by text.
//
// Both forms keep what they return in a cache of their own for the life of
// the process, so the first answer for a number or a text is the answer for
// good: a number that no table could give stays empty, even if a table that
// has it is registered later. A hit returns the cached string itself (the
// copy shares its array). The caches are made on first use and destroyed by
// a clean-up at process exit; a call after that searches again and caches
// nothing. TR never reads the message database.
#ifndef TOVIK_SYS_TRANSLATION_H
#define TOVIK_SYS_TRANSLATION_H

#include "sys_string.h"
#include "tovik_export.h"

// The resource string with that number, at most 999 bytes of it, or the
// empty text when no table holds it.
TOVIK_API SYS_String TR(int id);
// The text itself (nothing is translated); a null pointer gives the empty text.
TOVIK_API SYS_String TR(char const *text);

#endif  // TOVIK_SYS_TRANSLATION_H
