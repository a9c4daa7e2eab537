// The failure manager: how a failure ends, who hears of it, nesting, copies.
#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "scc_array.h"
#include "ssm.h"
#include "ssm_test_support.h"

namespace {

using ssm_test::Fail;
using ssm_test::Listener;
using ssm_test::RecordAt;
using ssm_test::Steer;
using ssm_test::Thrown;

int behind = 0;  // how often the code behind AppCheck ran

void AppCheck(SSM_FailureType type) {
  SSM_ASSERT(behind < 0, "App: board has no outline", type, 3);
  ++behind;
}

void ExpectIdle(SSM &manager) {
  EXPECT_EQ(manager.depth, -1);
  EXPECT_EQ(manager.activeAsserts.GetStackSize(), 0);
}

TEST(FailureManager, FourEnds) {
  SSM manager;
  Listener failures(manager.failureEvent), logs(manager.logEvent);

  // Nobody asked: types 0 and 1 carry on; type 2 throws the record from inside.
  EXPECT_EQ(Fail(10, SSM_FailureNotice), 1);
  EXPECT_EQ(Fail(11, SSM_FailureError), 1);
  SSM::AssertData *const thrown = Thrown([] { Fail(12, SSM_FailureAssert); });
  ASSERT_EQ(thrown, RecordAt(manager, "board.cpp(12)"));
  EXPECT_EQ(thrown->count, 1);
  EXPECT_STREQ(thrown->msg, "Demo: failed");
  EXPECT_EQ(thrown->action, SSM::ActionContinue);
  EXPECT_EQ(failures.heard.size(), 3u);
  EXPECT_EQ(logs.heard.size(), 3u);
  ExpectIdle(manager);

  // The application's listener decides for its own checks.
  int wanted = 0;
  Listener ask(manager.actionEvent, [&](int, SSM::AssertData *r) { Steer(r, wanted); });
  behind = 0;
  AppCheck(SSM_FailureError);  // 0: the code behind the check runs
  EXPECT_EQ(behind, 1);

  wanted = SSM::ActionReturnFailure;  // returns 0, and the check throws from its place
  EXPECT_EQ(Fail(13, SSM_FailureError), 0);
  EXPECT_THROW(AppCheck(SSM_FailureError), SSM::AssertData *);
  EXPECT_EQ(behind, 1);

  wanted = SSM::ActionThrow;  // thrown from inside, after the failure was told
  failures.heard.clear();
  EXPECT_THROW(Fail(14, SSM_FailureError), SSM::AssertData *);
  ASSERT_EQ(failures.heard.size(), 1u);
  EXPECT_EQ(failures.heard[0].second, RecordAt(manager, "board.cpp(14)"));

  wanted = SSM::ActionThrowFatal;
  SSM::AssertData *const fatal = RecordAt(manager, "board.cpp(14)");
  try {
    Fail(14, SSM_FailureError);
    ADD_FAILURE() << "action 3 returned";
  } catch (SSM::FatalException const &e) {
    EXPECT_EQ(e.data, fatal);
    EXPECT_EQ(e.data->count, 2);
  }
  EXPECT_EQ(manager.fatalData, fatal);
  EXPECT_THROW(SSM_Throw(), SSM::FatalException);  // until the next failure
  wanted = 0;
  EXPECT_EQ(Fail(15, SSM_FailureNotice), 1);
  EXPECT_EQ(manager.fatalData, nullptr);
  try {  // now the last handled record, which a handler may take as void *
    SSM_Throw();
    ADD_FAILURE() << "nothing thrown";
  } catch (void *record) {
    EXPECT_EQ(record, RecordAt(manager, "board.cpp(15)"));
  }
  ExpectIdle(manager);
}

TEST(FailureManager, SilentModeAsksNobodyButStillTellsAndCounts) {
  SSM::SetSilentMode(1);  // no manager: nothing to set
  EXPECT_EQ(SSM::GetSilentMode(), 0);
  {
    SSM manager;
    SSM::SetSilentMode(1);
    EXPECT_EQ(SSM::GetSilentMode(), 1);
    Listener ask(manager.actionEvent, [](int, SSM::AssertData *r) { Steer(r, 2); });
    Listener failures(manager.failureEvent), logs(manager.logEvent);
    for (int type : {0, 1, 5}) {
      EXPECT_EQ(Fail(20 + type, static_cast<SSM_FailureType>(type)), 1);
      EXPECT_EQ(failures.heard.back().first, type);
    }
    EXPECT_THROW(Fail(22, SSM_FailureAssert), SSM::AssertData *);
    EXPECT_TRUE(ask.heard.empty());
    EXPECT_EQ(failures.heard.size(), 4u);
    EXPECT_EQ(logs.heard.size(), 4u);
    EXPECT_EQ(RecordAt(manager, "board.cpp(21)")->count, 1);
    EXPECT_EQ(RecordAt(manager, "board.cpp(22)")->count, 1);
  }
  EXPECT_EQ(SSM::GetSilentMode(), 0);
}

TEST(FailureManager, DisabledAndUnloggedRecords) {
  SSM manager;
  Listener ask(manager.actionEvent, [](int, SSM::AssertData *r) { Steer(r, 2); });
  Listener failures(manager.failureEvent), logs(manager.logEvent);
  EXPECT_THROW(Fail(30, SSM_FailureError), SSM::AssertData *);
  EXPECT_THROW(Fail(31, SSM_FailureError), SSM::AssertData *);
  SSM::AssertObj obj;
  obj.SetHandle(RecordAt(manager, "board.cpp(30)"));
  obj.Disable(1);
  obj.SetHandle(RecordAt(manager, "board.cpp(31)"));
  obj.SetLogRequired(0);
  ask.heard.clear();
  failures.heard.clear();
  logs.heard.clear();

  EXPECT_EQ(Fail(30, SSM_FailureError), 1);  // disabled: nobody asked, not logged
  EXPECT_THROW(Fail(30, SSM_FailureAssert), SSM::AssertData *);  // type 2 still throws
  EXPECT_EQ(RecordAt(manager, "board.cpp(30)")->count, 3);
  EXPECT_TRUE(ask.heard.empty());
  EXPECT_EQ(failures.heard.size(), 2u);
  EXPECT_TRUE(logs.heard.empty());

  EXPECT_THROW(Fail(31, SSM_FailureError), SSM::AssertData *);  // asked, told, not logged
  EXPECT_EQ(ask.heard.size(), 1u);
  EXPECT_EQ(failures.heard.size(), 3u);
  EXPECT_TRUE(logs.heard.empty());
}

TEST(FailureManager, MostSevereListenerWins) {
  SSM manager;
  Listener first(manager.actionEvent, [](int, SSM::AssertData *r) { Steer(r, 2); });
  Listener second(manager.actionEvent, [](int, SSM::AssertData *r) { Steer(r, 1); });
  EXPECT_THROW(Fail(40, SSM_FailureError), SSM::AssertData *);
  first.reaction = [](int, SSM::AssertData *r) { Steer(r, 1); };
  second.reaction = [](int, SSM::AssertData *r) { Steer(r, 2); };
  EXPECT_THROW(Fail(40, SSM_FailureError), SSM::AssertData *);
  EXPECT_EQ(RecordAt(manager, "board.cpp(40)")->action, SSM::ActionContinue);
}

TEST(FailureManager, NestedFailuresSeeTheirFloor) {
  SSM manager;
  std::vector<std::pair<int, int>> asked;  // depth and floor, per question
  std::vector<int> nested;                 // results of the nested failures
  Listener ask(manager.actionEvent, [&](int, SSM::AssertData *r) {
    asked.emplace_back(manager.depth, r->action);
    if (r->lineNo == 50) {
      nested.push_back(Fail(51, SSM_FailureNotice));
      nested.push_back(Fail(52, SSM_FailureError));
      nested.push_back(Fail(53, static_cast<SSM_FailureType>(7)));
    }
    if (r->lineNo == 52) Steer(r, 0);  // cannot go below the floor
  });
  Listener failures(manager.failureEvent);

  EXPECT_EQ(Fail(50, SSM_FailureError), 1);
  std::vector<std::pair<int, int>> const floors = {{0, 0}, {1, 0}, {1, 1}, {1, 1}};
  EXPECT_EQ(asked, floors);
  EXPECT_EQ(nested, std::vector<int>({1, 0, 0}));
  // The outer failure's remaining steps work through currentAssert, which the
  // last nested failure left on its own record; the pop puts it back.
  ASSERT_EQ(failures.heard.size(), 4u);
  EXPECT_EQ(failures.heard[3].second, RecordAt(manager, "board.cpp(53)"));
  EXPECT_EQ(manager.currentAssert.GetHandle(),
            reinterpret_cast<SCC_Handle>(RecordAt(manager, "board.cpp(50)")));
  ExpectIdle(manager);
}

TEST(FailureManager, SamePositionInsideItsOwnHandlingPassesThrough) {
  SSM manager;
  std::vector<int> again;
  Listener failures(manager.failureEvent, [&](int, SSM::AssertData *) {
    again.push_back(Fail(60, SSM_FailureAssert, "again"));
  });
  EXPECT_EQ(Fail(60, SSM_FailureError), 1);
  EXPECT_EQ(again, std::vector<int>({1}));  // at once, without a throw, even for type 2
  SSM::AssertData *const record = RecordAt(manager, "board.cpp(60)");
  EXPECT_EQ(record->count, 1);
  EXPECT_STREQ(record->msg, "Demo: failed");
  EXPECT_EQ(failures.heard.size(), 1u);
  ExpectIdle(manager);
}

TEST(FailureManager, ThrowingListenerLeavesItsPositionActive) {
  SSM manager;
  Listener ask(manager.actionEvent, [](int, SSM::AssertData *r) {
    if (r->lineNo == 70) throw std::runtime_error("dialog closed");
  });
  EXPECT_THROW(Fail(70, SSM_FailureError), std::runtime_error);
  SSM::AssertData *const record = RecordAt(manager, "board.cpp(70)");
  EXPECT_EQ(manager.depth, 0);
  EXPECT_EQ(manager.activeAsserts.Peek(), record);

  EXPECT_EQ(Fail(70, SSM_FailureAssert), 1);  // passes through; nothing counted
  EXPECT_EQ(record->count, 1);
  EXPECT_EQ(Fail(71, SSM_FailureError), 0);  // one level deeper from now on: floor 1
  EXPECT_EQ(manager.depth, 0);
}

TEST(FailureManager, ErrnoSurvivesAFailureThatReturns) {
  SSM manager;
  int wanted = 0;
  Listener ask(manager.actionEvent, [&](int, SSM::AssertData *r) {
    errno = EACCES;
    Steer(r, wanted);
  });
  Listener logs(manager.logEvent, [](int, SSM::AssertData *) {
    std::FILE *const f = std::fopen("/nonexistent-dir/log.txt", "w");  // sets errno
    if (f != nullptr) std::fclose(f);
  });
  for (int action : {0, 1}) {
    wanted = action;
    errno = EMFILE;
    EXPECT_EQ(Fail(80, SSM_FailureError), 1 - action);
    EXPECT_EQ(errno, EMFILE);
  }
}

TEST(FailureManager, InvalidActionFailsACheckOfItsOwn) {
  SSM manager;
  Listener ask(manager.actionEvent, [](int, SSM::AssertData *r) { Steer(r, 7); });
  Listener failures(manager.failureEvent);
  SSM::AssertData *const inner = Thrown([] { Fail(90, SSM_FailureError); });
  ASSERT_NE(inner, nullptr);
  EXPECT_STREQ(inner->fileName, "system/ssm/manager.cpp");
  EXPECT_STREQ(inner->msg, "Assert handler encountered invalid action code.");
  EXPECT_EQ(failures.heard, decltype(failures.heard)({{2, inner}}));
  // The outer failure was left before its pop.
  EXPECT_EQ(manager.depth, 0);
  ASSERT_EQ(manager.activeAsserts.GetStackSize(), 1);
  EXPECT_EQ(manager.activeAsserts.Peek(), RecordAt(manager, "board.cpp(90)"));
}

TEST(FailureManager, LibraryCheckReachesTheApplicationsHandler) {
  SSM manager;
  Listener ask(manager.actionEvent, [](int, SSM::AssertData *r) { Steer(r, 0); });
  Listener logs(manager.logEvent);
  SCC_Stack<int> stack;
  SSM::AssertData *const record = Thrown([&] { stack.Pop(); });
  ASSERT_NE(record, nullptr);
  EXPECT_STREQ(record->msg, "Tovik: Pop on an empty stack");
  std::string const file(record->fileName);
  EXPECT_NE(file.find("system/inc/scc_array.h"), std::string::npos) << file;
  EXPECT_EQ(logs.heard, decltype(logs.heard)({{2, record}}));
  EXPECT_TRUE(ask.heard.empty());  // type 2 asks nobody, so nobody can let it pass
  EXPECT_EQ(stack.GetStackSize(), 0);
}

TEST(FailureManager, CopiesTakeListenersAndOwnTheirRecords) {
  std::int32_t const start = SSM::InstanceCount;
  SSM manager;
  Listener failures(manager.failureEvent);
  Listener ask(manager.actionEvent, [](int, SSM::AssertData *r) {
    if (r->lineNo == 131) throw std::runtime_error("left active");
  });
  EXPECT_EQ(Fail(130, SSM_FailureError), 1);
  EXPECT_THROW(Fail(131, SSM_FailureError), std::runtime_error);
  {
    SSM copy(manager);
    EXPECT_EQ(SSM::GetManager(), &manager);  // a copy never becomes current
    EXPECT_EQ(failures.GetOwner(), &copy.failureEvent);
    SSM::AssertData *const mine = RecordAt(copy, "board.cpp(131)");
    ASSERT_NE(mine, nullptr);
    EXPECT_NE(mine, RecordAt(manager, "board.cpp(131)"));
    EXPECT_EQ(copy.depth, 0);
    EXPECT_EQ(copy.activeAsserts.Peek(), mine);
    EXPECT_EQ(copy.AssertFailed("x", "board.cpp", 130, SSM_FailureError, 0), 0);  // depth 1: floor 1
    EXPECT_EQ(RecordAt(copy, "board.cpp(130)")->count, 2);
    EXPECT_EQ(RecordAt(manager, "board.cpp(130)")->count, 1);

    manager = copy;  // and back, by assignment
    EXPECT_EQ(failures.GetOwner(), &manager.failureEvent);
    EXPECT_EQ(RecordAt(manager, "board.cpp(130)")->count, 2);
    EXPECT_EQ(manager.activeAsserts.Peek(), RecordAt(manager, "board.cpp(131)"));
  }
  // Any destruction ends the current manager, though this one lives on.
  EXPECT_EQ(SSM::GetManager(), nullptr);
  EXPECT_EQ(SSM::InstanceCount, start);  // the copy was counted out, never in
  EXPECT_EQ(Fail(132, SSM_FailureAssert), 0);
  EXPECT_EQ(manager.asserts.GetCount(), 2);
  SSM::InstanceCount = start + 1;
}

}  // namespace
