#include "exitcleanup.h"

#include <cstdlib>

namespace tovik::platform {

namespace {
// The library has a handful of clean-ups; plain storage, so that nothing here
// is destroyed before they run.
constexpr int kMaxCleanups = 16;
void (*registered[kMaxCleanups])() = {};
int registeredCount = 0;
}  // namespace

bool RegisterExitCleanup(void (*cleanup)()) noexcept {
  if (cleanup == nullptr) return false;
  for (int i = 0; i < registeredCount; ++i) {
    if (registered[i] == cleanup) return true;
  }
  if (registeredCount == kMaxCleanups || std::atexit(cleanup) != 0) return false;
  registered[registeredCount++] = cleanup;
  return true;
}

}  // namespace tovik::platform
