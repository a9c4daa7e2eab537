// The reference list: nodes that know their list, moves, taking over and Merge.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "scc_refdlist.h"

namespace {

std::vector<std::string> journal;

struct Ref : SCC_DListRefNode {
  explicit Ref(char n) : name(n) {}
  char name;
};

// '-' for no node; '~' for a node in its base destructor, no longer a Ref.
char NameOf(SCC_DListRefNode const *node) {
  if (node == nullptr) return '-';
  Ref const *ref = dynamic_cast<Ref const *>(node);
  return ref != nullptr ? ref->name : '~';
}

// A list that writes each of its events to the journal as "L1a", "L2-", ...
class Journaled : public SCC_RefDList {
 public:
  explicit Journaled(char n) : name(n) {}
  Journaled(Journaled &other, char n) : SCC_RefDList(other), name(n) {}
  ~Journaled() override { RemoveAll(); }
  // A "!" marks a list that is not sound when it tells of a change.
  void OnListEvent(int code, SCC_DListRefNode *node) override {
    journal.push_back(std::string(1, name) + std::to_string(code) + NameOf(node) +
                      (code == 5 && !IsValid() ? "!" : ""));
  }
  char name;
};

// Head to tail, checking both links, each node's list and the tail.
std::string Names(SCC_RefDList const &list) {
  std::string text;
  SCC_DListRefNode const *before = nullptr;
  for (SCC_DListRefNode const *n = list.head; n != nullptr; n = n->next) {
    EXPECT_EQ(n->prev, before);
    EXPECT_EQ(n->GetList(), &list);
    text += NameOf(n);
    before = n;
  }
  EXPECT_EQ(list.tail, before);
  return text;
}

std::string Journal() {
  std::string text;
  for (std::string const &entry : journal) text += (text.empty() ? "" : " ") + entry;
  journal.clear();
  return text;
}

void ExpectFree(SCC_DListRefNode const &node) {
  EXPECT_TRUE(node.GetList() == nullptr && node.next == nullptr && node.prev == nullptr) << NameOf(&node);
}

class RefDListTest : public ::testing::Test {
 protected:
  void SetUp() override { journal.clear(); }
};

TEST_F(RefDListTest, LinksMovesAndFallbacks) {
  Journaled a('A'), other('O');
  Ref p('p'), q('q'), r('r'), s('s'), foreign('f');
  a.AddTail(&q);
  a.AddHead(&p);
  a.InsertAfter(&q, &r);
  EXPECT_EQ(Names(a), "pqr");
  // Without a manager a failed check returns: a null position means the
  // tail before and the head after; a null node changes nothing.
  a.InsertBefore(nullptr, &s);
  EXPECT_EQ(Names(a), "pqrs");
  a.InsertAfter(nullptr, &s);
  EXPECT_EQ(Names(a), "spqr");
  EXPECT_TRUE(a.AddTail(nullptr) == nullptr && a.Remove(nullptr) == nullptr);
  // A position of another list is treated as no position.
  other.AddTail(&foreign);
  a.InsertBefore(&foreign, &s);
  EXPECT_EQ(Names(a) + Names(other), "pqrsf");
  // A node placed beside itself stays where it is, and nobody hears of it;
  // the tail added again leaves and joins.
  Journal();
  a.InsertBefore(&q, &q);
  a.InsertAfter(&q, &q);
  EXPECT_EQ(Journal(), "");
  a.AddTail(&s);
  EXPECT_EQ(Journal(), "A2s A1s");
  // A node moving to another list leaves the old one first.
  other.AddHead(&r);
  EXPECT_EQ(Journal(), "A2r O1r");
  EXPECT_EQ(Names(other), "rf");
  // Remove goes by the node's own list, whichever list it is called on.
  EXPECT_EQ(a.Remove(&r), &r);
  ExpectFree(r);
  EXPECT_EQ(a.Remove(&r), &r) << "a free node stays free";
  EXPECT_EQ(a.RemoveHead(), &p);
  EXPECT_EQ(a.RemoveTail(), &s);
  a.RemoveAll();
  EXPECT_EQ(a.RemoveHead(), nullptr);
  EXPECT_EQ(Journal(), "O2r A2p A2s A2q");
}

TEST_F(RefDListTest, MergeAndAssignmentTakeTheNodes) {
  Journaled a('A'), b('B'), empty('E');
  Ref n1('1'), n2('2'), n3('3'), old('o'), older('p');
  for (Ref *r : {&n1, &n2}) b.AddTail(r);
  a.AddTail(&n3);
  Journal();
  a.Merge(empty);
  EXPECT_EQ(Journal(), "") << "an empty list merges without a sound";
  a.Merge(b);  // front first, to the tail
  EXPECT_EQ(Names(a), "312");
  EXPECT_EQ(b.tail, nullptr);
  EXPECT_EQ(Journal(), "B21 A11 B22 A12");
  empty.Merge(a);
  empty.Merge(empty);
  EXPECT_EQ(Names(empty), "312");

  for (Ref *r : {&older, &old}) b.AddTail(r);
  Journal();
  SCC_RefDList &listB = b;
  listB = empty;
  EXPECT_EQ(Journal(), "B6- E6- B5-");
  EXPECT_EQ(Names(b), "312");
  EXPECT_EQ(empty.tail, nullptr);
  ExpectFree(old);
  ExpectFree(older);
  listB = static_cast<SCC_RefDList &>(b);
  EXPECT_EQ(Journal(), "");
  Journaled copy(b, 'K');  // the copy constructor takes the nodes the same way
  EXPECT_EQ(Names(copy), "312");
  EXPECT_TRUE(b.IsEmpty());
}

}  // namespace
