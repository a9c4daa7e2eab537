// Checks: the one path by which a broken condition leaves library code.
//
// Every check in Tovik is an SSM_ASSERT. A failed check hands its text and
// source position to SSM_AssertFailed, which asks the current failure manager
// (an SSM object created by the application, ssm.h) what to do: carry on
// behind the check, return so that the check throws from its own place, or
// throw. With no manager alive a failed check has no effect at all. The
// library catches no exception of its own.
//
// This header holds only what a check needs. The manager itself is built on
// the arrays and the hash map, and those headers make checks of their own: so
// they, and whatever ssm.h includes, take their checks from here, while every
// other file includes ssm.h.
#ifndef TOVIK_SSM_CHECK_H
#define TOVIK_SSM_CHECK_H

#include "tovik_export.h"

// The kind of a failure, as the caller gives it. The numbers are part of the
// contract: the manager's decision tests them. Any value other than 0 and 2
// behaves like 1, hence the fixed underlying type.
enum SSM_FailureType : int {
  SSM_FailureNotice = 0,  // asks the application; never forced above "continue"
  SSM_FailureError = 1,   // asks the application; a nested one returns failure at least
  SSM_FailureAssert = 2   // always throws; silent mode and disabling do not stop it
};

// The entry point of every failed check. Returns 1 when the check is to carry
// on and 0 when it must call SSM_Throw. With no manager it returns 0, and the
// SSM_Throw that follows does nothing. A null or empty text becomes
// "SSM: Assert ID #<id>, message not available", or "Message not available"
// for id 0. The thread's last error (errno) is the same after a failure that
// returns as before it.
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

#endif  // TOVIK_SSM_CHECK_H
