// Checks: the one path by which a broken condition leaves library code.
//
// Every check in Tovik is an SSM_ASSERT. A failed check hands its text and
// source position to SSM_AssertFailed, which asks the current failure manager
// (an SSM object created by the application) what to do: carry on behind the
// check, return so that the check throws from its own place, or throw. With no
// manager alive a failed check has no effect at all. The library catches no
// exception of its own.
#ifndef TOVIK_SSM_H
#define TOVIK_SSM_H

#include "tovik_export.h"

// The kind of a failure, as the caller gives it. The numbers are part of the
// contract: the manager's decision tests them.
enum SSM_FailureType {
  SSM_FailureNotice = 0,  // asks the application; never forced above "continue"
  SSM_FailureError = 1,   // asks the application; a nested one returns failure at least
  SSM_FailureAssert = 2   // always throws; silent mode and disabling do not stop it
};

// The failure manager. The application creates one; the newest object is the
// manager that checks reach. Its registry and notifiers are declared with the
// rest of the manager; here stand only the statics every check reads.
class TOVIK_API SSM {
 public:
  // The current manager, or null.
  static SSM *Instance;
  // How many manager objects are alive.
  static std::int32_t InstanceCount;

  // The current manager, or null until the application creates one.
  static SSM *GetManager() { return Instance; }

  // Handles one failure: 1 when the check is to carry on, 0 when it must now
  // call SSM_Throw. May throw by itself.
  int AssertFailed(char const *msg, char const *file, int line, SSM_FailureType type, int id);
  // Throws the failure in progress, if any.
  void Throw();
};

// The entry point of every failed check. Returns 1 when the check is to carry
// on and 0 when it must call SSM_Throw. With no manager it returns 0, and the
// SSM_Throw that follows does nothing. The thread's last error (errno) is the
// same after a failure that returns as before it.
TOVIK_API int SSM_AssertFailed(char const *msg, char const *file, int line, SSM_FailureType type,
                               int id);

// Throws the manager's failure in progress; does nothing without a manager.
TOVIK_API void SSM_Throw();

// SSM_ASSERT(condition, text, type, id): tests the condition; when it fails,
// reports the failure and throws if the manager says so. The library is built
// with its source root mapped away from __FILE__, so its checks are keyed by
// paths such as "system/scc/array.cpp" in every build directory.
#define SSM_ASSERT(condition, text, type, id)                                              \
  do {                                                                                     \
    if (!(condition)) {                                                                    \
      if (SSM_AssertFailed((text), __FILE__, __LINE__, (type), (id)) == 0) SSM_Throw(); \
    }                                                                                      \
  } while (0)

// The form the library's own checks take: type SSM_FailureAssert, id 0.
#define SSM_CHECK(condition, text) SSM_ASSERT(condition, text, SSM_FailureAssert, 0)

#endif  // TOVIK_SSM_H
