// Clean-ups that run at process exit: the process-wide caches and managers
// that the library makes on demand are destroyed here, once.
#ifndef TOVIK_EXITCLEANUP_H
#define TOVIK_EXITCLEANUP_H

#include "tovik_export.h"

namespace tovik::platform {

// Runs cleanup at process exit, in the reverse order of registration among
// the clean-ups; a function registered twice runs once. Returns false when
// it could not be registered (then it never runs).
TOVIK_API bool RegisterExitCleanup(void (*cleanup)()) noexcept;

}  // namespace tovik::platform

#endif  // TOVIK_EXITCLEANUP_H
