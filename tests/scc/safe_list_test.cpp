// The safe list: walks that survive the removal and destruction of any node.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "scc_safe_list.h"
#include "test_support.h"

using tovik_test::Counted;
using tovik_test::CountedLeakGuard;

namespace {

struct Item : SCC_SafeDListNode<Item> {
  explicit Item(char n) : name(n), payload(n) {}
  char name;
  Counted payload;
};

using List = SCC_SafeDList<Item>;
using Iterator = SCC_SafeDListIterator<Item>;

// Makes heap items named by the letters of names, added at the tail.
std::map<char, Item *> Fill(List &list, char const *names) {
  std::map<char, Item *> items;
  for (char const *c = names; *c != '\0'; ++c) items[*c] = list.AddTail(new Item(*c));
  return items;
}

// The names from head to tail; checks the ring both ways on the way.
std::string Names(List const &list) {
  std::string text;
  _SCC_SafeDListNode const *before = &list.root;
  for (Item *item = list.GetHead(); item != nullptr; item = item->GetNextInList()) {
    EXPECT_EQ(item->prev, before) << "broken back link at " << item->name;
    text += item->name;
    before = item;
  }
  EXPECT_EQ(list.root.prev, before) << "the ring does not close at the root";
  return text;
}

// The usual walk: the main iterator steps before the work on each node.
std::string Walk(List &list, std::function<void(Item *)> const &work) {
  std::string seen;
  Iterator it(list.GetHead());
  while (*it != nullptr) {
    Iterator here = it++;
    seen += (*here)->name;
    work(*here);
  }
  EXPECT_EQ(it.GetList(), nullptr) << "a finished walk stands in no node's iterator list";
  return seen;
}

void ExpectAlone(Item const &item) {
  EXPECT_TRUE(item.IsAlone());
  EXPECT_EQ(item.next, &item);
  EXPECT_EQ(item.prev, &item);
}

// A list that records what its NotifyList is told.
class Recording : public List {
 public:
  void NotifyList(int code, Item *node) override {
    told += std::to_string(code) + (node != nullptr ? node->name : '-') + " ";
    List::NotifyList(code, node);
  }
  std::string told;
};

// A reference node a user hangs in an item's iterator list.
struct Watcher : SCC_DListRefNode {
  int OnNotification(int code, void *data) override {
    heard += std::to_string(code) + " ";
    lastData = data;
    return code;
  }
  std::string heard;
  void *lastData = nullptr;
};

TEST(SafeList, LinksAndUnlinks) {
  Recording list;
  EXPECT_EQ(list.root.next, &list.root) << "an empty ring closes on the root";
  Item c('c'), a('a'), e('e'), b('b'), d('d');
  list.AddTail(&c);
  list.AddHead(&a);
  list.AddTail(&e);
  EXPECT_EQ(list.InsertAfter(&a, &b), &b);
  EXPECT_EQ(list.InsertBefore(&e, &d), &d);
  EXPECT_EQ(Names(list), "abcde");
  EXPECT_EQ(list.GetCount(), 5);

  // A null or loose position means the tail before and the head after.
  Item f('f'), g('g'), loose('l');
  list.InsertBefore(nullptr, &f);
  list.InsertAfter(&loose, &g);
  EXPECT_EQ(Names(list), "gabcdef");
  ExpectAlone(loose);
  list.told.clear();

  EXPECT_EQ(list.Remove(&b), &b);
  ExpectAlone(b);
  EXPECT_EQ(list.RemoveHead(), &g);
  EXPECT_EQ(list.RemoveTail(), &f);
  EXPECT_EQ(list.Remove(nullptr), nullptr);
  EXPECT_EQ(Names(list), "acde");
  EXPECT_EQ(list.told, "2b 2g 2f ");
  {  // a removed node's destruction touches no list
    Item gone('x');
    list.AddTail(&gone);
    list.Remove(&gone);
  }
  EXPECT_EQ(Names(list), "acde");
  list.RemoveAll();
  EXPECT_EQ(list.RemoveTail(), nullptr);
}

TEST(SafeList, WalkSurvivesDestructionOfAnyNode) {
  CountedLeakGuard guard;
  struct Case {
    char const *name;
    char const *names;
    char workOn;
    char const *destroy;  // nodes the work on workOn destroys
    char const *walked;
    char const *left;
  };
  Case const cases[] = {
      {"the next node", "abc", 'a', "b", "ac", "ac"},
      {"the current node", "abc", 'a', "a", "abc", "bc"},
      {"an earlier node", "abc", 'b', "a", "abc", "bc"},
      {"the last node, from itself", "abc", 'c', "c", "abc", "ab"},
      {"the next two nodes", "abcd", 'a', "bc", "ad", "ad"},
      {"the next node, then the current", "abcd", 'b', "cb", "abd", "ad"},
      {"every node", "abcd", 'b', "dcab", "ab", ""},
  };
  for (Case const &c : cases) {
    SCOPED_TRACE(c.name);
    List list;
    std::map<char, Item *> items = Fill(list, c.names);
    std::string const walked = Walk(list, [&](Item *item) {
      if (item->name != c.workOn) return;
      for (char const *d = c.destroy; *d != '\0'; ++d) delete items[*d];
    });
    EXPECT_EQ(walked, c.walked);
    EXPECT_EQ(Names(list), c.left);
    list.DeleteAll();
  }
}

TEST(SafeList, WalkSurvivesRemovalOfNodes) {
  CountedLeakGuard guard;
  List list;
  std::map<char, Item *> items = Fill(list, "abcd");
  // The work on b takes c out (it lives on, alone) and puts it back at the end.
  std::string const walked = Walk(list, [&](Item *item) {
    if (item->name == 'b') {
      list.Remove(items['c']);
      ExpectAlone(*items['c']);
      list.AddTail(items['c']);
    }
  });
  EXPECT_EQ(walked, "abdc");
  EXPECT_EQ(Names(list), "abdc");

  // Removing everything from inside a walk ends it: the nodes are alone, and
  // an iterator on a node alone steps off.
  std::string const cut = Walk(list, [&](Item *item) {
    if (item->name == 'a') list.RemoveAll();
  });
  EXPECT_EQ(cut, "ab") << "nobody is told of RemoveAll: the walk ends one step later";
  for (auto const &entry : items) ExpectAlone(*entry.second);
  for (auto const &entry : items) delete entry.second;
}

TEST(SafeList, NestedWalks) {
  CountedLeakGuard guard;
  List list;
  std::map<char, Item *> items = Fill(list, "abcde");
  std::string inner;
  std::string const outer = Walk(list, [&](Item *item) {
    if (item->name != 'b') return;
    // The outer walk stands ahead on c while this walk runs over the list.
    inner = Walk(list, [&](Item *innerItem) {
      if (innerItem->name == 'a') delete items['c'];  // under the outer iterator
      if (innerItem->name == 'd') delete items['d'];  // where both walks stand
    });
  });
  EXPECT_EQ(inner, "abde");
  EXPECT_EQ(outer, "abe");
  EXPECT_EQ(Names(list), "abe");
  list.DeleteAll();
}

TEST(SafeList, IteratorsHearRemovalsFromOutside) {
  List list;
  Item a('a'), b('b'), c('c');
  for (Item *item : {&a, &b, &c}) list.AddTail(item);

  Iterator onLast(&c);
  Iterator onMiddle(&b);
  EXPECT_EQ(onLast.GetList(), &c) << "an iterator stands in its node's iterator list";
  list.Remove(&c);
  EXPECT_EQ(onLast.GetList(), nullptr);
  list.Remove(&b);
  EXPECT_EQ(*onMiddle, nullptr) << "b's follower was the root";
  list.AddTail(&b);
  list.AddTail(&c);

  // Sent on to the next node, the iterator hears when that one goes too.
  Iterator onA(&a);
  list.Remove(&a);
  EXPECT_EQ(onA.GetList(), &b);
  list.Remove(&b);
  EXPECT_EQ(*onA, &c);
  list.RemoveAll();
}

TEST(SafeList, DeleteAllAndListDestructionLeaveIteratorsSafe) {
  CountedLeakGuard guard;
  Recording list;
  std::map<char, Item *> items = Fill(list, "abc");
  list.told.clear();
  Iterator first(items['a']);
  Iterator second(items['c']);

  list.DeleteAll();  // the guard sees the items go
  EXPECT_TRUE(first.GetList() == nullptr && second.GetList() == nullptr);
  EXPECT_EQ(*second, nullptr);
  EXPECT_EQ(list.told, "6- 2a 2b 2c ");

  // From inside a walk, DeleteAll ends the walk.
  items = Fill(list, "abc");
  EXPECT_EQ(Walk(list, [&](Item *) { list.DeleteAll(); }), "a");

  // Nodes outlive their list; an iterator on a node alone steps off.
  Item a('a'), b('b');
  Iterator onB(&b);
  {
    List scoped;
    scoped.AddTail(&a);
    scoped.AddTail(&b);
  }
  ExpectAlone(a);
  EXPECT_EQ(*onB, &b) << "nobody hears the list go";
  onB.Step();
  EXPECT_EQ(*onB, nullptr);

  // A node destroyed while iterators still stand on it leaves them nowhere.
  Item *doomed = new Item('x');
  Iterator stuck(doomed);
  delete doomed;
  EXPECT_TRUE(*stuck == nullptr && stuck.GetList() == nullptr);
}

TEST(SafeList, TakeOver) {
  CountedLeakGuard guard;
  Recording list;
  List other;
  Item mine('m'), x('x'), y('y'), z('z');
  list.AddTail(&mine);
  for (Item *item : {&x, &y, &z}) other.AddTail(item);
  Iterator onY(&y);
  list.told.clear();

  list.TakeOver(other);
  EXPECT_EQ(list.told, "6- 5- ");
  EXPECT_EQ(Names(other), "");
  EXPECT_EQ(Names(list), "xyz");
  ExpectAlone(mine);
  // An iterator goes on in the list that took its node.
  onY.Step();
  EXPECT_EQ(*onY, &z);
  // A destroyed node finds its new list.
  {
    Item w('w');
    list.InsertAfter(&x, &w);
    EXPECT_EQ(Names(list), "xwyz");
  }
  EXPECT_EQ(Names(list), "xyz");

  list.told.clear();
  list.TakeOver(list);
  EXPECT_EQ(Names(list), "xyz");
  EXPECT_EQ(list.told, "");
  list.RemoveAll();
}

TEST(SafeList, InsertingANodeOfAnotherListMovesIt) {
  Recording from;
  Recording to;
  Item a('a'), b('b'), c('c');
  from.AddTail(&a);
  from.AddTail(&b);
  to.AddTail(&c);
  Iterator onA(&a);
  to.told.clear();

  to.AddTail(&a);
  EXPECT_EQ(from.told, "1a 1b 2a ");
  EXPECT_EQ(to.told, "1a ");
  EXPECT_EQ(*onA, &b) << "the iterator stays in the list it walked";
  EXPECT_EQ(Names(from), "b");
  EXPECT_EQ(Names(to), "ca");

  // Within one list: a move, but a node at its place already stays put.
  to.told.clear();
  to.AddHead(&a);
  to.AddHead(&a);
  to.InsertBefore(&a, &a);
  EXPECT_EQ(to.told, "2a 1a ") << "moved once";
  EXPECT_EQ(Names(to), "ac");
  from.RemoveAll();
  to.RemoveAll();
}

TEST(SafeList, NodesTellTheirReferences) {
  List list;
  Item a('a'), b('b');
  list.AddTail(&a);
  Watcher watcher;
  b.AddTail(&watcher);

  list.AddTail(&b);
  list.Remove(&b);
  EXPECT_EQ(watcher.heard, "1 2 ");
  _SCC_SafeDListNode *node = &b;
  EXPECT_EQ(watcher.lastData, static_cast<void *>(node));
  EXPECT_EQ(watcher.GetList(), &b) << "a reference that is no iterator stays";

  // The list is sound only while each node's references name that node.
  list.AddTail(&b);
  EXPECT_TRUE(list.IsValid());
  watcher.list = &a;
  EXPECT_FALSE(list.IsValid());
  watcher.list = &b;
  list.RemoveAll();
}

TEST(SafeList, CopiesOfNodesAndIterators) {
  List list;
  Item a('a'), b('b');
  list.AddTail(&a);
  list.AddTail(&b);
  Iterator onA(&a);

  Item copy(a);
  ExpectAlone(copy);
  EXPECT_TRUE(copy.IsEmpty()) << "a copy has no iterators";
  copy.name = 'c';
  a = copy;  // the element is copied, not its place
  EXPECT_EQ(Names(list), "cb");

  Iterator second(onA);
  EXPECT_EQ(a.GetCount(), 2);
  Iterator third(&b);
  third = onA;
  EXPECT_TRUE(b.IsEmpty());
  list.Remove(&a);
  EXPECT_EQ(*second, &b);
  EXPECT_EQ(b.GetCount(), 3);
  list.RemoveAll();
}

}  // namespace
