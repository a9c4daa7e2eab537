// The failure manager: how a failure ends, who hears of it, nesting, copies.
#include <cerrno>
#include <stdexcept>
#include <string>
#include <utility>
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
typedef std::vector<std::size_t> Sizes;

int behind = 0;  // how often the code behind AppCheck ran

void AppCheck(SSM_FailureType type) {
  SSM_ASSERT(behind < 0, "App: board has no outline", type, 3);
  ++behind;
}

// A manager with the application's listeners: ask steers to wanted (not at
// all while it is negative); failures and logs only record. Both spoil errno.
class FailureManager : public testing::Test {
 protected:
  SSM::AssertData *At(int line) { return RecordAt(manager, line); }
  void ExpectIdle() {
    EXPECT_EQ(manager.depth, -1);
    EXPECT_EQ(manager.activeAsserts.GetStackSize(), 0);
  }
  // Asked, told and logged since the last look.
  Sizes Heard() {
    Sizes const sizes{ask.heard.size(), failures.heard.size(), logs.heard.size()};
    for (Listener *listener : {&ask, &failures, &logs}) listener->heard.clear();
    return sizes;
  }

  SSM manager;
  int wanted = -1;
  Listener ask{manager.actionEvent, [this](int, SSM::AssertData *r) {
                 errno = EACCES;
                 if (wanted >= 0) Steer(r, wanted);
               }};
  Listener failures{manager.failureEvent}, logs{manager.logEvent, [](int, SSM::AssertData *) { errno = ENOENT; }};
};

TEST_F(FailureManager, FourEnds) {
  // Nobody steers: types 0 and 1 carry on; type 2 throws the record from inside.
  EXPECT_EQ(Fail(10, SSM_FailureNotice) + Fail(11, SSM_FailureError), 2);
  SSM::AssertData *const thrown = Thrown([] { Fail(12, SSM_FailureAssert); });
  ASSERT_EQ(thrown, At(12));
  EXPECT_EQ(thrown->count, 1);
  EXPECT_STREQ(thrown->msg, "Demo: failed");
  EXPECT_EQ(Heard(), Sizes({2, 3, 3}));
  ExpectIdle();

  behind = 0;
  for (wanted = 0; wanted <= 1; ++wanted) {  // 1: returns 0, and the check throws from its place
    errno = EMFILE;
    EXPECT_EQ(Fail(13, SSM_FailureError), 1 - wanted);
    EXPECT_EQ(errno, EMFILE) << "a failure that returns leaves errno alone";
    EXPECT_EQ(Thrown([] { AppCheck(SSM_FailureError); }) != nullptr, wanted == 1);
  }
  EXPECT_EQ(behind, 1);

  wanted = SSM::ActionThrow;  // thrown from inside, after the failure was told
  Listener milder(manager.actionEvent, [](int, SSM::AssertData *r) { Steer(r, 1); });  // cannot lower it
  failures.heard.clear();
  EXPECT_THROW(Fail(14, SSM_FailureError), SSM::AssertData *);
  EXPECT_EQ(failures.heard, decltype(failures.heard)({{1, At(14)}}));
  EXPECT_EQ(At(14)->action, SSM::ActionContinue) << "the action lasts one failure";
  wanted = SSM::ActionThrowFatal;
  EXPECT_THROW(Fail(14, SSM_FailureError), SSM::FatalException);
  EXPECT_EQ(manager.fatalData, At(14));
  EXPECT_THROW(SSM_Throw(), SSM::FatalException);  // until the next failure
  milder.reaction = nullptr;
  wanted = SSM::ActionContinue;
  EXPECT_EQ(Fail(15, SSM_FailureNotice), 1);
  EXPECT_EQ(manager.fatalData, nullptr);
  EXPECT_EQ(Thrown([] { SSM_Throw(); }), At(15)) << "now the last handled record";
  ExpectIdle();
}

// Silent mode and disabled records ask nobody; unlogged ones log nothing;
// every failure is still told and counted.
TEST_F(FailureManager, SilentDisabledAndUnloggedFailures) {
  wanted = SSM::ActionThrow;
  SSM::SetSilentMode(1);
  EXPECT_EQ(SSM::GetSilentMode(), 1);
  for (int type : {0, 1, 5}) {
    EXPECT_EQ(Fail(30 + type, static_cast<SSM_FailureType>(type)), 1);
    EXPECT_EQ(failures.heard.back().first, type);
  }
  EXPECT_THROW(Fail(32, SSM_FailureAssert), SSM::AssertData *);
  EXPECT_EQ(Heard(), Sizes({0, 4, 4}));
  SSM::SetSilentMode(0);

  SSM::AssertObj obj;
  obj.SetHandle(At(30));
  obj.Disable(1);
  obj.SetHandle(At(31));
  obj.SetLogRequired(0);
  EXPECT_EQ(Fail(30, SSM_FailureError), 1);  // disabled
  EXPECT_THROW(Fail(30, SSM_FailureAssert), SSM::AssertData *);  // type 2 still throws
  EXPECT_EQ(At(30)->count, 3);
  EXPECT_EQ(Heard(), Sizes({0, 2, 0}));
  EXPECT_THROW(Fail(31, SSM_FailureError), SSM::AssertData *);  // unlogged
  EXPECT_EQ(Heard(), Sizes({1, 1, 0}));
}

// Failures inside the handling of another cannot end below the action chosen
// so far; one at the same position passes through at once.
TEST_F(FailureManager, NestedFailuresSeeTheirFloor) {
  std::vector<std::pair<int, int>> asked;  // depth and floor, per question
  std::vector<int> nested;                 // results of the nested failures
  ask.reaction = [&](int, SSM::AssertData *r) {
    asked.emplace_back(manager.depth, r->action);
    if (r->lineNo == 50) {
      nested.push_back(Fail(50, SSM_FailureAssert));  // the same position
      nested.push_back(Fail(51, SSM_FailureNotice));
      nested.push_back(Fail(52, SSM_FailureError));
      nested.push_back(Fail(53, static_cast<SSM_FailureType>(7)));
    }
    if (r->lineNo == 52) Steer(r, 0);  // cannot go below the floor
  };
  EXPECT_EQ(Fail(50, SSM_FailureError, "outer"), 1);
  std::vector<std::pair<int, int>> const floors = {{0, 0}, {1, 0}, {1, 1}, {1, 1}};
  EXPECT_EQ(asked, floors);
  EXPECT_EQ(nested, std::vector<int>({1, 1, 0, 0}));
  EXPECT_EQ(At(50)->count, 1);
  EXPECT_STREQ(At(50)->msg, "outer");
  // The outer failure's remaining steps work through currentAssert, which the
  // last nested failure left on its own record; the pop puts it back.
  ASSERT_EQ(failures.heard.size(), 4u);
  EXPECT_EQ(failures.heard[3].second, At(53));
  EXPECT_EQ(manager.currentAssert.GetHandle(), reinterpret_cast<SCC_Handle>(At(50)));
  ExpectIdle();
}

// A listener that throws, or answers an invalid action, leaves the failure
// before its pop: its position stays active, one level deeper from then on.
TEST_F(FailureManager, AbandonedFailureStaysActive) {
  ask.reaction = [](int, SSM::AssertData *r) {
    if (r->lineNo == 70) throw std::runtime_error("dialog closed");
  };
  EXPECT_THROW(Fail(70, SSM_FailureError), std::runtime_error);
  EXPECT_EQ(manager.activeAsserts.Peek(), At(70));
  EXPECT_EQ(Fail(70, SSM_FailureAssert), 1);  // passes through; nothing counted
  EXPECT_EQ(At(70)->count, 1);
  EXPECT_EQ(Fail(71, SSM_FailureError), 0);  // floor 1
  EXPECT_EQ(manager.depth, 0);

  SSM other;
  Listener invalid(other.actionEvent, [](int, SSM::AssertData *r) { Steer(r, 7); });
  Listener told(other.failureEvent);
  SSM::AssertData *const inner = Thrown([] { Fail(90, SSM_FailureError); });
  ASSERT_NE(inner, nullptr);
  EXPECT_STREQ(inner->msg, "Assert handler encountered invalid action code.");
  EXPECT_EQ(told.heard, decltype(told.heard)({{2, inner}}));
  ASSERT_EQ(other.activeAsserts.GetStackSize(), 1);
  EXPECT_EQ(other.activeAsserts.Peek(), RecordAt(other, 90));
}

TEST_F(FailureManager, LibraryCheckReachesTheApplicationsHandler) {
  wanted = SSM::ActionContinue;
  SCC_Stack<int> stack;
  SSM::AssertData *const record = Thrown([&] { stack.Pop(); });
  ASSERT_NE(record, nullptr);
  EXPECT_STREQ(record->msg, "Tovik: Pop on an empty stack");
  EXPECT_NE(std::string(record->fileName).find("system/inc/scc_array.h"), std::string::npos);
  EXPECT_EQ(logs.heard, decltype(logs.heard)({{2, record}}));
  EXPECT_TRUE(ask.heard.empty());  // type 2 asks nobody, so nobody can let it pass
  EXPECT_EQ(stack.GetStackSize(), 0);
}

TEST_F(FailureManager, CopiesTakeListenersAndOwnTheirRecords) {
  std::int32_t const count = SSM::InstanceCount;
  ask.reaction = [](int, SSM::AssertData *r) {
    if (r->lineNo == 131) throw std::runtime_error("left active");
  };
  EXPECT_EQ(Fail(130, SSM_FailureError), 1);
  EXPECT_THROW(Fail(131, SSM_FailureError), std::runtime_error);
  {
    SSM copy(manager);
    EXPECT_EQ(SSM::GetManager(), &manager);  // a copy never becomes current
    EXPECT_EQ(failures.GetOwner(), &copy.failureEvent);
    SSM::AssertData *const mine = RecordAt(copy, 131);
    ASSERT_NE(mine, nullptr);
    EXPECT_NE(mine, At(131));
    EXPECT_EQ(copy.activeAsserts.Peek(), mine);
    EXPECT_EQ(copy.AssertFailed("x", "board.cpp", 130, SSM_FailureError, 0), 0);  // depth 1: floor 1
    EXPECT_EQ(At(130)->count, 1);

    manager = copy;  // and back, by assignment
    EXPECT_EQ(failures.GetOwner(), &manager.failureEvent);
    EXPECT_EQ(At(130)->count, 2);
    EXPECT_EQ(manager.activeAsserts.Peek(), At(131));
  }
  // Any destruction ends the current manager, though this one lives on.
  EXPECT_EQ(SSM::GetManager(), nullptr);
  EXPECT_EQ(SSM::InstanceCount, count - 1);  // the copy was counted out, never in
  EXPECT_EQ(Fail(132, SSM_FailureAssert), 0);
  EXPECT_EQ(manager.asserts.GetCount(), 2);
  SSM::InstanceCount = count;
}

}  // namespace
