#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "sys_filter.h"

namespace {

// A leaf that answers a fixed value and records that it was asked.
class Answer : public SYS_Filter {
 public:
  static int destroyed;
  static std::string trace;

  Answer(char n, int v) : name(n), value(v) {}
  ~Answer() override { ++destroyed; }
  int IsTrue(SCC_Handle) override {
    trace += name;
    return value;
  }

  char name;
  int value;
};

int Answer::destroyed = 0;
std::string Answer::trace;

TEST(Filter, OperatorsDecideAndStopAtTheDecidingOperand) {
  EXPECT_EQ(SYS_Filter().IsTrue(42), 0);  // unconfigured: refuses everything
  struct Case {
    char const *name;
    int a, b;
    char op;
    int expected;
    char const *asked;
  };
  Case const cases[] = {
      {"and, left false: right not asked", 0, 1, '&', 0, "a"},
      {"and, both true, negative counts", -1, 7, '&', 1, "ab"},
      {"or, left true: right not asked", -1, 0, '|', 1, "a"},
      {"or, left false, right decides", 0, 5, '|', 1, "ab"},
      {"not of true", 3, 0, '!', 0, "a"},
      {"not of negative gives 1", -1, 0, '!', 1, "a"},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(c.name);
    Answer b('b', c.b);  // operands outlive the composites that hold them
    Answer a('a', c.a);
    SYS_Filter &expression = c.op == '&' ? (a & b) : c.op == '|' ? (a | b) : !a;
    Answer::trace.clear();
    EXPECT_EQ(expression.IsTrue(77), c.expected);
    EXPECT_EQ(Answer::trace, c.asked);
  }
}

TEST(Filter, CompositesLiveInTheirLeftOperandsSlot) {
  Answer c('c', 0), b('b', 1), a('a', 1);  // operands outlive the composites that hold them
  SYS_Filter &first = a & b;
  SYS_Filter &nested = first | c;
  SYS_Filter *const slots[] = {a.composite, first.composite, b.composite};  // b's slot untouched
  EXPECT_EQ(std::vector<SYS_Filter *>(slots, slots + 3), (std::vector<SYS_Filter *>{&first, &nested, nullptr}));
  EXPECT_EQ(nested.IsTrue(1), 1);

  // Copies share operands and the slot; assignment keeps its own slot.
  SYS_Filter target;
  SYS_Filter &targetSlot = !target;
  target = first;
  EXPECT_TRUE(target.function == &SYS_Filter::And_F && target.composite == &targetSlot);

  // A later expression on a releases the first, which lives on only where
  // somebody else holds it.
  SCC_SharedPointer<SYS_Filter> kept(&first);
  SYS_Filter &second = a | c;
  EXPECT_EQ(static_cast<SYS_Filter *>(a.composite), &second);
  EXPECT_EQ(kept->GetRefCount(), 2);  // kept, and nested's left operand
  kept->DetachFromOperands();  // nothing of first stands in a's slot any more
  nested.DetachFromOperands();  // first and nested hold each other
  EXPECT_EQ(kept->GetRefCount(), 1);
}

TEST(Filter, HeapExpressionsGoWithTheirOwners) {
  Answer::destroyed = 0;
  auto *a = new Answer('a', 1), *b = new Answer('b', 1), *c = new Answer('c', 0);
  SCC_SharedPointer<SYS_Filter> ownA(a), ownB(b), ownC(c);
  SCC_SharedPointer<SYS_Filter> expression(&((*a & *b) | *c));
  ownA = ownB = ownC = nullptr;
  EXPECT_EQ(Answer::destroyed, 0);
  expression->DetachFromOperands();
  EXPECT_EQ(static_cast<SYS_Filter *>(a->composite), nullptr);
  EXPECT_EQ(expression->IsTrue(1), 1);
  expression = nullptr;
  EXPECT_EQ(Answer::destroyed, 3);

  // A heap composite asked before anybody owns it is not deleted by the
  // call, and its first owner still finds it on the heap; one whose operand
  // drops the last owner during the call lives to the end of the call
  // (ASan would see a use after free).
  struct Dropper : SYS_Filter {
    int IsTrue(SCC_Handle) override {
      if (victim != nullptr) *victim = nullptr;
      return 1;
    }
    SCC_SharedPointer<SYS_Filter> *victim = nullptr;
  } dropper;
  auto *loose = new SYS_Filter(&dropper, &dropper, &SYS_Filter::And_F);
  EXPECT_EQ(loose->IsTrue(1), 1);
  SCC_SharedPointer<SYS_Filter> owner(loose);
  dropper.victim = &owner;
  EXPECT_EQ(loose->IsTrue(9), 1);
  EXPECT_EQ(SCC_SharedBuffer::GetPendingCount(), 0);
}

}  // namespace
