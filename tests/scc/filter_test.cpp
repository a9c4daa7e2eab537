#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "sys_filter.h"

namespace {

// A leaf that answers a fixed value, records who asked it and counts its
// destructions.
class Answer : public SYS_Filter {
 public:
  static int destroyed;
  static std::string trace;

  Answer(char name, int value) : name(name), value(value) {}
  ~Answer() override { ++destroyed; }

  int IsTrue(SCC_Handle handle) override {
    trace += name;
    lastHandle = handle;
    return value;
  }

  char name;
  int value;
  SCC_Handle lastHandle = 0;
};

int Answer::destroyed = 0;
std::string Answer::trace;

class FilterTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Answer::destroyed = 0;
    Answer::trace.clear();
  }
};

TEST_F(FilterTest, PlainFilterRefusesEverything) {
  SYS_Filter plain;
  EXPECT_EQ(plain.IsTrue(0), 0);
  EXPECT_EQ(plain.IsTrue(42), 0);
  EXPECT_EQ(plain.function, nullptr);
  EXPECT_EQ(static_cast<SYS_Filter *>(plain.left), nullptr);
}

TEST_F(FilterTest, OperatorsDecideAndStopAtTheDecidingOperand) {
  struct Case {
    char const *name;
    int a, b;
    char op;
    int expected;
    char const *asked;  // which operands were asked, in order
  };
  Case const cases[] = {
      {"and, left false: right not asked", 0, 1, '&', 0, "a"},
      {"and, both true", 1, 1, '&', 1, "ab"},
      {"and, right false", 1, 0, '&', 0, "ab"},
      {"and, negative counts as true", -1, -3, '&', 1, "ab"},
      {"and, result is 1, not right's answer", 7, 9, '&', 1, "ab"},
      {"or, left true: right not asked", 1, 0, '|', 1, "a"},
      {"or, negative left is true", -1, 0, '|', 1, "a"},
      {"or, left false, right true", 0, 5, '|', 1, "ab"},
      {"or, both false", 0, 0, '|', 0, "ab"},
      {"not of true", 3, 0, '!', 0, "a"},
      {"not of false", 0, 0, '!', 1, "a"},
      {"not of negative gives 1", -1, 0, '!', 1, "a"},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(c.name);
    Answer b('b', c.b);  // right operands outlive the expressions that hold them
    Answer a('a', c.a);
    SYS_Filter &expression = c.op == '&' ? (a & b) : c.op == '|' ? (a | b) : !a;
    Answer::trace.clear();
    EXPECT_EQ(expression.IsTrue(77), c.expected);
    EXPECT_EQ(Answer::trace, c.asked);
    EXPECT_EQ(a.lastHandle, 77);
  }
}

TEST_F(FilterTest, ExpressionsNestThroughTheLeftOperand) {
  Answer c('c', 1);
  Answer b('b', 0);
  Answer a('a', 1);
  // (a & b) | c: a holds the first composite, which holds the second.
  SYS_Filter &expression = (a & b) | c;
  SYS_Filter *const first = a.composite;
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->function, &SYS_Filter::And_F);
  EXPECT_EQ(static_cast<SYS_Filter *>(first->composite), &expression);
  EXPECT_EQ(expression.function, &SYS_Filter::Or_F);
  EXPECT_EQ(static_cast<SYS_Filter *>(expression.left), first);
  EXPECT_EQ(static_cast<SYS_Filter *>(expression.right), &c);
  EXPECT_EQ(static_cast<SYS_Filter *>(b.composite), nullptr);
  EXPECT_EQ(expression.IsTrue(1), 1);
  EXPECT_EQ(Answer::trace, "abc");

  SYS_Filter &negated = !expression;
  EXPECT_EQ(negated.IsTrue(1), 0);
  EXPECT_EQ(static_cast<SYS_Filter *>(negated.right), nullptr);
  // Each composite and its left operand hold each other: released from the
  // top, the whole chain goes.
  negated.DetachFromOperands();
  EXPECT_EQ(static_cast<SYS_Filter *>(a.composite), nullptr);
}

TEST_F(FilterTest, NextExpressionReplacesTheCompositeSlot) {
  Answer c('c', 0);
  Answer b('b', 1);
  Answer a('a', 1);
  SCC_SharedPointer<SYS_Filter> kept;
  {
    SYS_Filter &first = a & b;
    kept = &first;  // somebody else shares the first composite
  }
  SYS_Filter &second = a & c;
  EXPECT_EQ(static_cast<SYS_Filter *>(a.composite), &second);
  // The first one lives on through its other owner, and still works.
  EXPECT_EQ(kept->GetRefCount(), 1);
  EXPECT_EQ(kept->IsTrue(5), 1);
  EXPECT_EQ(second.IsTrue(5), 0);

  // Without another owner the replaced composite goes at once; its operands,
  // locals here, are never deleted by their pointers.
  Answer *heapLeaf = new Answer('h', 1);
  SCC_SharedPointer<SYS_Filter> leaf(heapLeaf);
  (void)(a | *heapLeaf);
  EXPECT_EQ(heapLeaf->GetRefCount(), 2);
  (void)(a | c);  // releases (a | h), which releases h
  EXPECT_EQ(heapLeaf->GetRefCount(), 1);
  EXPECT_EQ(Answer::destroyed, 0);
  leaf = nullptr;
  EXPECT_EQ(Answer::destroyed, 1);
}

TEST_F(FilterTest, CopiesShareOperandsAndAssignmentKeepsTheSlot) {
  Answer b('b', 0);
  Answer a('a', 1);
  SYS_Filter &composite = a | b;
  SYS_Filter &outer = composite & b;  // lands in composite's slot
  SYS_Filter copy(composite);
  EXPECT_EQ(copy.function, &SYS_Filter::Or_F);
  EXPECT_EQ(static_cast<SYS_Filter *>(copy.left), &a);
  EXPECT_EQ(static_cast<SYS_Filter *>(copy.right), &b);
  EXPECT_EQ(static_cast<SYS_Filter *>(copy.composite), &outer);
  EXPECT_EQ(copy.GetRefCount(), 0);  // a new object with no owners
  EXPECT_EQ(copy.IsTrue(3), 1);

  SYS_Filter target;
  SYS_Filter &targetSlot = !target;
  target = composite;
  EXPECT_EQ(target.function, &SYS_Filter::Or_F);
  EXPECT_EQ(static_cast<SYS_Filter *>(target.left), &a);
  EXPECT_EQ(static_cast<SYS_Filter *>(target.composite), &targetSlot);
  outer.DetachFromOperands();  // composite and outer hold each other
}

TEST_F(FilterTest, AskingAnUnownedHeapCompositeDoesNotDeleteIt) {
  Answer b('b', 1);
  Answer a('a', 1);
  auto *loose = new SYS_Filter(&a, &b, &SYS_Filter::And_F);
  EXPECT_EQ(loose->IsTrue(1), 1);
  EXPECT_EQ(loose->IsTrue(2), 1);
  EXPECT_EQ(loose->GetRefCount(), 0);
  // Its first owner still finds it on the heap and deletes it at the end.
  SCC_SharedPointer<SYS_Filter> owner(loose);
  EXPECT_EQ(loose->GetRefCount(), 1);
  owner = nullptr;
  EXPECT_EQ(SCC_SharedBuffer::GetPendingCount(), 0);
}

TEST_F(FilterTest, DetachFromOperandsBreaksTheMutualHolds) {
  auto *a = new Answer('a', 1);
  auto *b = new Answer('b', 1);
  auto *c = new Answer('c', 0);
  SCC_SharedPointer<SYS_Filter> ownA(a);
  SCC_SharedPointer<SYS_Filter> ownB(b);
  SCC_SharedPointer<SYS_Filter> ownC(c);
  SCC_SharedPointer<SYS_Filter> expression(&((*a & *b) | *c));
  SYS_Filter *const inner = a->composite;
  ownA = ownB = ownC = nullptr;
  EXPECT_EQ(Answer::destroyed, 0);
  EXPECT_EQ(expression->IsTrue(1), 1);
  // The expression has an owner of its own: its operands let go of it.
  expression->DetachFromOperands();
  EXPECT_EQ(static_cast<SYS_Filter *>(a->composite), nullptr);
  EXPECT_EQ(static_cast<SYS_Filter *>(inner->composite), nullptr);
  EXPECT_EQ(expression->GetRefCount(), 1);
  EXPECT_EQ(expression->IsTrue(1), 1);
  expression = nullptr;
  EXPECT_EQ(Answer::destroyed, 3);

  // A later composite of the operand stays in its slot; an expression that
  // nobody owns goes at once.
  Answer d('d', 1);
  Answer e('e', 1);
  SCC_SharedPointer<SYS_Filter> first(&(e & d));
  SYS_Filter &later = e | d;
  first->DetachFromOperands();
  EXPECT_EQ(static_cast<SYS_Filter *>(e.composite), &later);
  first = nullptr;
  later.DetachFromOperands();
  EXPECT_EQ(static_cast<SYS_Filter *>(e.composite), nullptr);
  EXPECT_EQ(SCC_SharedBuffer::GetPendingCount(), 0);
}

// A filter whose answer drops the expression that is asking it: the
// composite holds itself for the call, so it survives until the call ends.
TEST_F(FilterTest, CompositeSurvivesAnOperandThatDropsIt) {
  struct Dropper : SYS_Filter {
    SCC_SharedPointer<SYS_Filter> *victim = nullptr;
    int IsTrue(SCC_Handle) override {
      *victim = nullptr;
      return 1;
    }
  };
  Dropper dropper;
  Answer b('b', 1);
  SCC_SharedPointer<SYS_Filter> owner(&(dropper & b));
  owner->DetachFromOperands();
  dropper.victim = &owner;
  SYS_Filter *const expression = owner;
  EXPECT_EQ(expression->IsTrue(9), 1);
  EXPECT_EQ(static_cast<SYS_Filter *>(owner), nullptr);
  EXPECT_EQ(Answer::trace, "b");
}

}  // namespace
