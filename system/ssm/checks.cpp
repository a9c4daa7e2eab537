// The entry points of every failed check.
#include <cerrno>
#include <cstdio>

#include "ssm.h"

SSM *SSM::Instance = nullptr;
std::int32_t SSM::InstanceCount = 0;

int SSM_AssertFailed(char const *msg, char const *file, int line, SSM_FailureType type, int id) {
  // A failure that returns must not disturb the caller's error state: the
  // manager's listeners may well touch files.
  int const savedError = errno;
  SSM *const manager = SSM::Instance;

  int result = 0;
  if (manager != nullptr) {
    char fallback[64];
    if (msg == nullptr || *msg == '\0') {
      if (id != 0) {
        std::snprintf(fallback, sizeof fallback, "SSM: Assert ID #%d, message not available", id);
      } else {
        std::snprintf(fallback, sizeof fallback, "Message not available");
      }
      msg = fallback;
    }
    result = manager->AssertFailed(msg, file, line, type, id) != 0 ? 1 : 0;
  }

  errno = savedError;
  return result;
}

void SSM_Throw() {
  if (SSM *const manager = SSM::Instance) manager->Throw();
}
