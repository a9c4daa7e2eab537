// The registry of failed positions: keys, walks, lookups and the record
// operations of SSM::AssertObj.
#include <cstdint>
#include <set>

#include <gtest/gtest.h>

#include "ssm.h"
#include "ssm_test_support.h"

namespace {

using ssm_test::Fail;
using ssm_test::RecordAt;

SCC_Handle HandleOf(SSM::AssertData const *record) { return reinterpret_cast<SCC_Handle>(record); }

TEST(AssertRegistry, OneRecordPerFileAndLine) {
  SSM manager;
  Fail(2, SSM_FailureNotice, "b");
  Fail(2, SSM_FailureError, "c");
  SSM_AssertFailed("no file", nullptr, -1, SSM_FailureNotice, 0);
  Fail(3, SSM_FailureNotice, "", 7);
  Fail(4, SSM_FailureNotice, nullptr, 0);
  EXPECT_EQ(manager.asserts.GetCount(), 4);
  EXPECT_STREQ(RecordAt(manager, 3)->msg, "SSM: Assert ID #7, message not available");
  EXPECT_STREQ(RecordAt(manager, 4)->msg, "Message not available");
  EXPECT_STREQ(RecordAt(manager, 2)->msg, "c");
  EXPECT_EQ(RecordAt(manager, 2)->count, 2);
  SSM::AssertData const *const odd = manager.asserts.Find("(4294967295)");  // the line as unsigned
  ASSERT_NE(odd, nullptr);
  EXPECT_EQ(odd->lineNo, -1);
  EXPECT_STREQ(odd->fileName, "");
}

TEST(AssertRegistry, WalkVisitsEachRecordOnceAcrossGrowth) {
  SSM manager;
  for (int line = 1; line <= 600; ++line) Fail(line, SSM_FailureNotice);
  ASSERT_GT(manager.asserts.GetTableSize(), 53);
  std::set<SCC_Handle> seen;
  SSM::AssertObj walk;
  for (walk.GetFirst(&manager); walk.IsValid(); walk.GetNext()) EXPECT_TRUE(seen.insert(walk.GetHandle()).second);
  EXPECT_EQ(seen.size(), 600u);
}

TEST(AssertRegistry, RecordOperations) {
  SSM manager;
  Fail(5, SSM_FailureError, "text", 4);
  SSM::AssertObj obj;
  obj.GetFirst();
  ASSERT_EQ(obj.GetHandle(), HandleOf(RecordAt(manager, 5)));
  obj.SetAction(SSM::ActionThrow);
  obj.SetAction(SSM::ActionReturnFailure);
  EXPECT_EQ(obj.GetAction(), SSM::ActionThrow);  // only rises
  obj.ClearAction();
  obj.SetAction(SSM::ActionReturnFailure);
  obj.SetAction(static_cast<SSM::Action>(-4));
  EXPECT_EQ(obj.GetAction(), SSM::ActionReturnFailure);
  SSM::AssertObj none;  // on no record: reads as empty and changes nothing
  none.IncreaseCount();
  none.SetAction(SSM::ActionThrowFatal);
  EXPECT_EQ(none.GetCount() + none.GetAction(), 0);
  EXPECT_STREQ(none.GetMsg(), "");
}

TEST(AssertRegistry, SetHandleStandsOnlyOnTheManagersOwnRecord) {
  std::int32_t const start = SSM::InstanceCount;
  {
    SSM manager;
    Fail(7, SSM_FailureNotice);
    SSM::AssertData *const record = RecordAt(manager, 7);
    SSM::AssertData copy = *record;  // same file and line, another address
    SSM other(manager);              // the same positions in records of its own
    SSM::AssertObj obj, theirs;
    obj.SetHandle(record);
    EXPECT_EQ(obj.GetHandle(), HandleOf(record));
    for (SSM::AssertData *foreign : {&copy, RecordAt(other, 7)}) {
      obj.SetHandle(foreign);
      EXPECT_EQ(obj.IsValid(), 0);
    }
    theirs.GetFirst(&other);
    { SSM gone(manager); }  // any destruction leaves no current manager
    ASSERT_EQ(SSM::GetManager(), nullptr);
    theirs.SetHandle(RecordAt(other, 7));  // looked up where it walks
    EXPECT_EQ(theirs.GetHandle(), HandleOf(RecordAt(other, 7)));
    obj.SetHandle(record);  // walks nothing: nowhere to look
    EXPECT_EQ(obj.IsValid(), 0);
  }
  SSM::InstanceCount = start;
}

TEST(AssertRegistry, CopyAndAssignment) {
  SSM manager;
  for (int line = 1; line <= 200; ++line) Fail(line, SSM_FailureNotice);
  SSM::AssertMap const &map = manager.asserts;
  SSM::AssertObj walker;
  walker.GetFirst();
  while (walker.IsValid() && walker.current == map.table[walker.bucket].head) walker.GetNext();
  ASSERT_EQ(walker.IsValid(), 1) << "no bucket holds two records";
  walker.JoinAtEnd(&manager.actionEvent);

  SSM::AssertObj copy(walker);  // the same record, in no ring
  EXPECT_EQ(copy.GetHandle(), walker.GetHandle());
  EXPECT_EQ(copy.GetOwner(), nullptr);
  SSM::AssertObj assigned;  // joins the ring, and stands on its bucket's first record
  assigned = walker;
  EXPECT_EQ(assigned.GetOwner(), &manager.actionEvent);
  EXPECT_EQ(assigned.current, map.table[walker.bucket].head);
  while (walker.GetNext()) continue;
  assigned = walker;  // from past the end: nothing
  EXPECT_EQ(assigned.IsValid(), 0);
}

TEST(AssertRegistry, ChangeEventAndDefaultSort) {
  EXPECT_EQ(SSM::AssertObj::GetChangeEvent(nullptr), nullptr);
  SSM manager;
  EXPECT_EQ(SSM::AssertObj::GetChangeEvent(nullptr), &manager.actionEvent);
  EXPECT_EQ(SSM::AssertObj::DefaultSort(-8, 8), -1) << "signed";
  EXPECT_EQ(SSM::AssertObj::DefaultSort(static_cast<SCC_Handle>(INTPTR_MAX - 1), 1), 1) << "no int overflow";
  EXPECT_EQ(SSM::AssertObj::DefaultSort(1, static_cast<SCC_Handle>(INTPTR_MAX - 1)), -1);
}

}  // namespace
