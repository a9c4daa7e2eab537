// The reference list: nodes that know their list, moves, taking over, Merge
// and NotifyNodes.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "scc_refdlist.h"

namespace {

std::vector<std::string> journal;

struct Ref : SCC_DListRefNode {
  explicit Ref(char n) : name(n) {}
  Ref(Ref &other, char n) : SCC_DListRefNode(other), name(n) {}
  int OnNotification(int code, void *data) override {
    journal.push_back(std::string(1, name) + "<" + std::to_string(code));
    lastData = data;
    if (onNotify) onNotify();
    return code * 10 + (name - 'a');
  }
  char name;
  void *lastData = nullptr;
  std::function<void()> onNotify;
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
  void OnIteratorStart(SCC_SListIterator<SCC_DListRefNode> *iterator) override {
    journal.push_back(std::string(1, name) + "start" + NameOf(iterator->current));
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
  EXPECT_EQ(node.GetList(), nullptr);
  EXPECT_EQ(node.next, nullptr);
  EXPECT_EQ(node.prev, nullptr);
}

class RefDListTest : public ::testing::Test {
 protected:
  void SetUp() override { journal.clear(); }
};

TEST_F(RefDListTest, MovingANodeLeavesTheOldListFirst) {
  Journaled a('A'), b('B');
  Ref x('x'), y('y');
  a.AddTail(&x);
  a.AddTail(&y);
  Journal();
  b.AddTail(&x);
  EXPECT_EQ(Journal(), "A2x B1x");
  EXPECT_EQ(Names(a), "y");
  EXPECT_EQ(Names(b), "x");

  // The tail added again stays the tail, through a leave and a join.
  b.AddHead(&y);
  Journal();
  b.AddTail(&x);
  EXPECT_EQ(Journal(), "B2x B1x");
  EXPECT_EQ(Names(b), "yx");

  b.InsertBefore(&y, &x);
  EXPECT_EQ(Names(b), "xy");

  // Remove goes by the node's own list, whichever list it is called on.
  Journal();
  EXPECT_EQ(a.Remove(&y), &y);
  EXPECT_EQ(Journal(), "B2y");
  ExpectFree(y);
  EXPECT_EQ(a.Remove(&y), &y) << "a free node stays free";
  EXPECT_EQ(Journal(), "");
}

TEST_F(RefDListTest, EndsAndFallbacks) {
  Journaled a('A'), other('O');
  Ref p('p'), q('q'), r('r'), s('s'), foreign('f');
  a.AddTail(&q);
  a.AddHead(&p);
  a.InsertAfter(&q, &r);
  EXPECT_EQ(Names(a), "pqr");
  Journal();

  // Without a manager a failed check returns: a null position means the
  // tail before and the head after; a null node changes nothing.
  a.InsertBefore(nullptr, &s);
  EXPECT_EQ(Names(a), "pqrs");
  a.InsertAfter(nullptr, &s);
  EXPECT_EQ(Names(a), "spqr");
  EXPECT_EQ(a.AddTail(nullptr), nullptr);
  EXPECT_EQ(a.Remove(nullptr), nullptr);
  // A position of another list is treated as no position.
  other.AddTail(&foreign);
  a.InsertBefore(&foreign, &s);
  EXPECT_EQ(Names(a), "pqrs");
  EXPECT_EQ(Names(other), "f");
  // A node placed beside itself stays where it is, and nobody hears of it.
  Journal();
  a.InsertBefore(&q, &q);
  a.InsertAfter(&q, &q);
  EXPECT_EQ(Journal(), "");
  EXPECT_EQ(Names(a), "pqrs");

  EXPECT_EQ(a.RemoveHead(), &p);
  EXPECT_EQ(a.RemoveTail(), &s);
  a.RemoveAll();
  EXPECT_EQ(Journal(), "A2p A2s A2q A2r");
  EXPECT_EQ(a.RemoveHead(), nullptr);
}

TEST_F(RefDListTest, MergeMovesFrontFirstToTheTail) {
  Journaled a('A'), b('B'), empty('E');
  Ref n1('1'), n2('2'), n3('3');
  for (Ref *r : {&n1, &n2}) b.AddTail(r);
  a.AddTail(&n3);
  Journal();

  a.Merge(empty);
  EXPECT_EQ(Journal(), "") << "an empty list merges without a sound";
  a.Merge(b);
  EXPECT_EQ(Names(a), "312");
  EXPECT_EQ(b.tail, nullptr);
  EXPECT_EQ(Journal(), "B21 A11 B22 A12");

  // Into an empty list, and into itself.
  empty.Merge(a);
  empty.Merge(empty);
  EXPECT_EQ(Names(empty), "312");
}

TEST_F(RefDListTest, AssignmentTakesTheNodes) {
  Journaled a('A'), b('B');
  Ref old1('o'), old2('p'), n1('1'), n2('2');
  for (Ref *r : {&old1, &old2}) a.AddTail(r);
  for (Ref *r : {&n1, &n2}) b.AddTail(r);
  Journal();

  SCC_RefDList &listA = a;
  listA = b;
  EXPECT_EQ(Journal(), "A6- B6- A5-");
  EXPECT_EQ(Names(a), "12");
  EXPECT_EQ(b.tail, nullptr);
  ExpectFree(old1);
  ExpectFree(old2);

  SCC_RefDList &self = a;
  listA = self;
  EXPECT_EQ(Journal(), "");
  EXPECT_EQ(Names(a), "12");

  // The copy constructor takes the nodes the same way.
  Journaled copy(a, 'K');
  EXPECT_EQ(Names(copy), "12");
  EXPECT_TRUE(a.IsEmpty());
}

TEST_F(RefDListTest, NodesOutliveTheirListAndLeaveByThemselves) {
  Ref survivor('s');
  {
    SCC_RefDList list;
    list.AddTail(&survivor);
    {
      Ref shortLived('t');
      list.AddHead(&shortLived);
      EXPECT_EQ(Names(list), "ts");
    }
    EXPECT_EQ(Names(list), "s") << "a destroyed node takes itself out";
  }
  ExpectFree(survivor);
  // Destroying the free node touches no list (the sanitizer would see it).
}

TEST_F(RefDListTest, CopiedNodesStandInFrontOfTheOriginal) {
  SCC_RefDList list;
  Ref a('a'), b('b'), loose('l');
  list.AddTail(&a);
  list.AddTail(&b);

  Ref copyOfB(b, 'c');
  EXPECT_EQ(Names(list), "acb");
  Ref copyOfA(a, 'd');
  EXPECT_EQ(Names(list), "dacb");

  // Assignment moves the node in front of the other one, or out of any list.
  SCC_DListRefNode &moving = copyOfA;
  moving = b;
  EXPECT_EQ(Names(list), "acdb");
  moving = loose;
  ExpectFree(copyOfA);
  EXPECT_EQ(Names(list), "acb");
}

TEST_F(RefDListTest, ChangeListOnlyRecordsTheNewList) {
  Journaled a('A'), b('B');
  Ref x('x'), y('y');
  a.AddTail(&x);
  a.AddTail(&y);
  Journal();

  x.ChangeList(&b);
  EXPECT_EQ(Journal(), "A2x");
  EXPECT_EQ(x.GetList(), &b);
  EXPECT_EQ(b.head, nullptr) << "the node is in no chain of its new list";
  EXPECT_EQ(Names(a), "y");

  // Leaving a list it was never linked into leaves that list's chain alone.
  Ref z('z');
  b.AddTail(&z);
  b.Remove(&x);
  EXPECT_EQ(Names(b), "z");
  ExpectFree(x);

  // A node that names another list makes IsValid fail.
  EXPECT_TRUE(a.IsValid());
  y.list = &b;
  EXPECT_FALSE(a.IsValid());
  y.list = &a;
}

TEST_F(RefDListTest, NotifyNodesWalksFromTheHead) {
  Journaled list('L');
  EXPECT_EQ(list.NotifyNodes(3, nullptr), 0) << "an empty list answers 0";
  EXPECT_EQ(Journal(), "Lstart-");

  Ref a('a'), b('b'), c('c');
  for (Ref *r : {&a, &b, &c}) list.AddTail(r);
  Journal();
  int data = 0;
  EXPECT_EQ(list.NotifyNodes(4, &data), 42) << "the last node's answer";
  EXPECT_EQ(Journal(), "Lstarta a<4 b<4 c<4");
  EXPECT_EQ(b.lastData, &data);

  // A node that leaves during its own call ends the walk.
  b.onNotify = [&] { list.Remove(&b); };
  EXPECT_EQ(list.NotifyNodes(1, nullptr), 11);
  EXPECT_EQ(Journal(), "Lstarta a<1 b<1 L2b");
  b.onNotify = nullptr;

  // A node that removes the one behind it is not walked past.
  a.onNotify = [&] { list.Remove(&c); };
  list.NotifyNodes(1, nullptr);
  EXPECT_EQ(Journal(), "Lstarta a<1 L2c");
  EXPECT_EQ(Names(list), "a");
}

}  // namespace
