// Checks with no failure manager, and SYS_Exception.
#include <cerrno>

#include <gtest/gtest.h>

#include "ssm.h"
#include "sys_exception.h"

namespace {

int reached = 0;

void FailingCheck(SSM_FailureType type) {
  SSM_ASSERT(1 + 1 == 3, "Tovik: demo", type, 0);
  ++reached;  // the code behind the check
}

TEST(ChecksWithoutManager, PassThroughAndLeaveErrnoAlone) {
  ASSERT_EQ(SSM::GetManager(), nullptr);
  errno = EMFILE;
  EXPECT_EQ(SSM_AssertFailed("x", __FILE__, __LINE__, SSM_FailureAssert, 0), 0);
  SSM_Throw();  // nothing to throw without a manager
  SSM::SetSilentMode(1);  // nothing to set
  EXPECT_EQ(SSM::GetSilentMode(), 0);
  reached = 0;
  for (SSM_FailureType type : {SSM_FailureNotice, SSM_FailureError, SSM_FailureAssert}) FailingCheck(type);
  EXPECT_EQ(reached, 3);
  EXPECT_EQ(errno, EMFILE);
  SSM_CHECK(true, nullptr);  // a passing check does not evaluate its text
}

TEST(SysException, FormatsAndCopiesItsText) {
  SYS_Exception const e("Invalid number \"%s\" at %d", "12x", 4);
  SYS_Exception assigned("other");
  assigned = SYS_Exception(e);
  EXPECT_STREQ(assigned.GetText(), "Invalid number \"12x\" at 4");
  EXPECT_STREQ(SYS_Exception(7, 1, 2).GetText(), "");
}

}  // namespace
