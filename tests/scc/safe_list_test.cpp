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

void ExpectAlone(Item const &item) { EXPECT_TRUE(item.IsAlone() && item.prev == &item) << item.name; }

// A list that records what its NotifyList is told.
class Recording : public List {
 public:
  void NotifyList(int code, Item *node) override {
    told += std::to_string(code) + (node != nullptr ? node->name : '-') + " ";
    List::NotifyList(code, node);
  }
  std::string told;
};

TEST(SafeList, LinksAndUnlinks) {
  Recording list;
  Item c('c'), a('a'), e('e'), b('b'), d('d');
  list.AddTail(&c);
  list.AddHead(&a);
  list.AddTail(&e);
  EXPECT_TRUE(list.InsertAfter(&a, &b) == &b && list.InsertBefore(&e, &d) == &d);
  EXPECT_EQ(Names(list), "abcde");

  // A null or loose position means the tail before and the head after.
  Item f('f'), g('g'), loose('l');
  list.InsertBefore(nullptr, &f);
  list.InsertAfter(&loose, &g);
  EXPECT_EQ(Names(list), "gabcdef");
  ExpectAlone(loose);
  list.told.clear();

  EXPECT_EQ(list.Remove(&b), &b);
  ExpectAlone(b);
  EXPECT_TRUE(list.RemoveHead() == &g && list.RemoveTail() == &f && list.Remove(nullptr) == nullptr);
  EXPECT_EQ(Names(list), "acde");
  EXPECT_EQ(list.told, "2b 2g 2f ");
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

TEST(SafeList, WalksSurviveRemovalsAndNestedWalks) {
  CountedLeakGuard guard;
  List list;
  std::map<char, Item *> items = Fill(list, "abcde");
  // The work on b takes c out (it lives on, alone) and puts it back at the end.
  EXPECT_EQ(Walk(list, [&](Item *item) {
              if (item->name != 'b') return;
              list.Remove(items['c']);
              ExpectAlone(*items['c']);
              list.AddTail(items['c']);
            }),
            "abdec");
  // An inner walk destroys the node the outer walk stands ahead on, and the
  // node where both stand.
  std::string inner;
  std::string const outer = Walk(list, [&](Item *item) {
    if (item->name != 'b') return;
    inner = Walk(list, [&](Item *innerItem) {
      if (innerItem->name == 'a') delete items['d'];
      if (innerItem->name == 'e') delete items['e'];
    });
  });
  EXPECT_EQ(inner, "abec");
  EXPECT_EQ(outer, "abc");
  // Removing everything from inside a walk ends it one step later: nobody is
  // told of RemoveAll, and an iterator on a node alone steps off.
  EXPECT_EQ(Walk(list, [&](Item *item) {
              if (item->name == 'a') list.RemoveAll();
            }),
            "ab");
  for (char name : {'a', 'b', 'c'}) ExpectAlone(*items[name]);
  for (char name : {'a', 'b', 'c'}) delete items[name];
}

TEST(SafeList, IteratorsHearRemovalsFromOutsideAndDeletions) {
  CountedLeakGuard guard;
  Recording list;
  // An iterator sent on to the next node hears when that one goes too; b's
  // follower is the root.
  Item a('a'), b('b'), c('c');
  for (Item *item : {&a, &b, &c}) list.AddTail(item);
  Iterator onA(&a), onC(&c);
  list.Remove(&a);
  EXPECT_EQ(onA.GetList(), &b);
  list.Remove(&b);
  list.Remove(&c);
  EXPECT_TRUE(*onA == nullptr && onC.GetList() == nullptr);
  std::map<char, Item *> items = Fill(list, "abc");
  Iterator first(items['a']), second(items['c']);
  list.told.clear();
  list.DeleteAll();  // the guard sees the items go
  EXPECT_TRUE(first.GetList() == nullptr && *second == nullptr && second.GetList() == nullptr);
  EXPECT_EQ(list.told, "6- 2a 2b 2c ");
  items = Fill(list, "abc");
  EXPECT_EQ(Walk(list, [&](Item *) { list.DeleteAll(); }), "a");

  // A node destroyed while iterators stand on it leaves them nowhere.
  Item *doomed = new Item('x');
  Iterator stuck(doomed);
  delete doomed;
  EXPECT_TRUE(*stuck == nullptr && stuck.GetList() == nullptr);
}

TEST(SafeList, NodesMoveBetweenLists) {
  Recording list, other;
  Item mine('m'), x('x'), y('y'), z('z');
  list.AddTail(&mine);
  for (Item *item : {&x, &y, &z}) other.AddTail(item);
  Iterator onY(&y), onX(&x);
  list.told.clear();
  other.told.clear();
  list.TakeOver(other);
  EXPECT_EQ(list.told, "6- 5- ");
  EXPECT_EQ(Names(list) + Names(other), "xyz");
  ExpectAlone(mine);
  onY.Step();  // an iterator goes on in the list that took its node
  EXPECT_EQ(*onY, &z);
  {
    Item w('w');  // a destroyed node finds its new list
    list.InsertAfter(&x, &w);
    EXPECT_EQ(Names(list), "xwyz");
  }

  // Inserting a node of another list moves it; its iterator stays in the
  // list it walked.
  other.AddTail(&mine);
  list.told.clear();
  other.told.clear();
  other.AddTail(&x);
  EXPECT_EQ(list.told + other.told, "2x 1x ");
  EXPECT_EQ(*onX, &y);
  EXPECT_EQ(Names(list) + Names(other), "yzmx");
  // Within one list: a move, but a node at its place already stays put.
  other.told.clear();
  other.AddHead(&x);
  other.AddHead(&x);
  other.InsertBefore(&x, &x);
  EXPECT_EQ(other.told, "2x 1x ") << "moved once";
  list.RemoveAll();
  other.RemoveAll();
}

}  // namespace
