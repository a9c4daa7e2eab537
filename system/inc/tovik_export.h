// The export macro and the few types every Tovik header shares.
//
// The library is built with hidden visibility: only what carries TOVIK_API is
// part of its ABI. Templates stay header-only and need no mark.
#ifndef TOVIK_EXPORT_H
#define TOVIK_EXPORT_H

#include <cstdint>

#if defined(TOVIK_BUILDING_LIBRARY)
#define TOVIK_API __attribute__((visibility("default")))
#else
#define TOVIK_API
#endif

// A handle names one object of a source; 0 names none. It may hold an address,
// so it is as wide as a pointer.
typedef std::intptr_t SCC_Handle;

// Notification data travel as the pointer-sized word of the notifier's data
// pointer. These two convert between that word and a handle.
inline void *SCC_HandleToData(SCC_Handle handle) { return reinterpret_cast<void *>(handle); }
inline SCC_Handle SCC_DataToHandle(void const *data) { return reinterpret_cast<SCC_Handle>(data); }

#endif  // TOVIK_EXPORT_H
