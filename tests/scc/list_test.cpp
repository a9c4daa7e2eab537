// Plain intrusive lists and their cursors.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "scc_event.h"
#include "scc_list.h"
#include "test_support.h"

using tovik_test::Counted;
using tovik_test::CountedLeakGuard;

namespace {

struct DNode : SCC_DListNode<DNode> {
  explicit DNode(int v = 0) : value(v) {}
  int value;
};

struct SNode : SCC_SListNode<SNode> {
  explicit SNode(int v = 0) : value(v) {}
  int value;
};

// An owned node that carries a counted payload, so a leak or a double
// destruction shows in the counts.
struct OwnedNode : SCC_SListNode<OwnedNode> {
  explicit OwnedNode(int v) : payload(v) {}
  Counted payload;
};

// One OnListEvent call as a list saw it: whether the node was reachable
// from the head at that moment tells "before" from "after".
struct Seen {
  int code;
  int value;  // -1 for a null node
  bool linked;
};

template <class List, class Node>
bool Reachable(List const &list, Node const *node) {
  for (Node const *n = list.head; n != nullptr; n = n->next) {
    if (n == node) return true;
  }
  return false;
}

template <class Base, class Node>
class Recording : public Base {
 public:
  void OnListEvent(int code, Node *node) override {
    seen.push_back({code, node != nullptr ? node->value : -1, node != nullptr && Reachable(*this, node)});
  }
  void OnIteratorStart(SCC_SListIterator<Node> *iterator) override {
    started.push_back(iterator);
    startedAt.push_back(iterator->current);
  }
  std::vector<Seen> seen;
  std::vector<SCC_SListIterator<Node> *> started;
  std::vector<Node *> startedAt;
};

using RecordingDList = Recording<SCC_DList<DNode>, DNode>;
using RecordingSList = Recording<SCC_SList<SNode>, SNode>;

// The values from head to tail, checking every back link on the way.
std::string Forward(SCC_DList<DNode> const &list) {
  std::string text;
  DNode const *before = nullptr;
  for (DNode const *n = list.head; n != nullptr; n = n->next) {
    EXPECT_EQ(n->prev, before) << "broken back link at " << n->value;
    text += std::to_string(n->value);
    before = n;
  }
  EXPECT_EQ(list.tail, before) << "tail is not the last node";
  return text;
}

std::string Forward(SCC_SList<SNode> const &list) {
  std::string text;
  for (SNode const *n = list.head; n != nullptr; n = n->next) text += std::to_string(n->value);
  return text;
}

std::string Codes(std::vector<Seen> const &seen) {
  std::string text;
  for (Seen const &s : seen) {
    if (!text.empty()) text += ' ';
    text += std::to_string(s.code) + ":" + std::to_string(s.value) + (s.linked ? "+" : "-");
  }
  return text;
}

TEST(DList, LinksInEveryPlaceAndReportsAfterLinking) {
  RecordingDList list;
  DNode n1(1), n2(2), n3(3), n4(4), n5(5);

  list.AddTail(&n3);
  list.AddHead(&n1);
  EXPECT_EQ(list.InsertBefore(&n3, &n2), &n2);
  list.InsertAfter(&n3, &n5);
  list.InsertBefore(&n5, &n4);
  EXPECT_EQ(Forward(list), "12345");
  // Code 1 comes once the node is in.
  EXPECT_EQ(Codes(list.seen), "1:3+ 1:1+ 1:2+ 1:5+ 1:4+");

  list.RemoveAll();
  DNode n6(6), n7(7);
  // Null positions: before nothing is the end, after nothing is the front.
  list.InsertBefore(nullptr, &n6);
  list.InsertAfter(nullptr, &n7);
  // Inserting at either end through a position keeps head and tail right.
  list.InsertBefore(&n7, &n1);
  list.InsertAfter(&n6, &n2);
  EXPECT_EQ(Forward(list), "1762");
  list.RemoveAll();
}

TEST(DList, RemovesReportBeforeUnlinkingAndClearLinks) {
  RecordingDList list;
  DNode n1(1), n2(2), n3(3), n4(4);
  for (DNode *n : {&n1, &n2, &n3, &n4}) list.AddTail(n);
  list.seen.clear();

  EXPECT_EQ(list.Remove(&n2), &n2);
  EXPECT_TRUE(n2.next == nullptr && n2.prev == nullptr);
  EXPECT_EQ(list.RemoveHead(), &n1);
  EXPECT_EQ(list.RemoveTail(), &n4);
  EXPECT_EQ(Forward(list), "3");
  EXPECT_EQ(list.RemoveTail(), &n3);
  EXPECT_EQ(list.RemoveHead(), nullptr);
  EXPECT_EQ(list.Remove(nullptr), nullptr);
  for (DNode *n : {&n1, &n2}) list.AddTail(n);
  list.RemoveAll();
  // Code 2 comes while the node can still be reached.
  EXPECT_EQ(Codes(list.seen), "2:2+ 2:1+ 2:4+ 2:3+ 1:1+ 1:2+ 2:1+ 2:2+");

  {  // destroying a list leaves its nodes unlinked
    SCC_DList<DNode> scoped;
    for (DNode *n : {&n1, &n2}) scoped.AddTail(n);
  }
  EXPECT_TRUE(n1.next == nullptr && n2.prev == nullptr);
}

TEST(SList, LinksWalksAndUnlinks) {
  RecordingSList list;
  SNode n1(1), n2(2), n3(3), n4(4), stranger(9);
  list.AddTail(&n3);
  list.AddHead(&n1);
  list.InsertAfter(&n1, &n2);
  list.AddTail(&n4);
  EXPECT_EQ(Forward(list), "1234");
  EXPECT_EQ(Codes(list.seen), "1:3+ 1:1+ 1:2+ 1:4+");
  list.seen.clear();

  // Removing from the middle and the end finds the predecessor.
  EXPECT_EQ(list.Remove(&n3), &n3);
  EXPECT_EQ(list.Remove(&n4), &n4);
  EXPECT_EQ(Forward(list), "12");
  // A node of no list is not found: nothing is told, nothing changes.
  EXPECT_EQ(list.Remove(&stranger), nullptr);
  EXPECT_EQ(list.Remove(nullptr), nullptr);
  list.RemoveAll();
  EXPECT_EQ(Codes(list.seen), "2:3+ 2:4+ 2:1+ 2:2+");

  {
    SCC_SList<SNode> scoped;
    for (SNode *n : {&n1, &n2}) scoped.AddHead(n);
  }
  EXPECT_TRUE(n1.next == nullptr && n2.next == nullptr);
}

TEST(SDList, OwnsItsNodes) {
  struct Watching : SCC_SDList<OwnedNode> {
    // Code 6 must come while the nodes are still there.
    void OnListEvent(int code, OwnedNode *) override {
      if (code == 6) countAtClear.push_back(GetCount());
    }
    std::vector<int> countAtClear;
  };
  CountedLeakGuard guard;
  int const start = Counted::live;
  {
    Watching list;
    for (int i = 0; i < 20; ++i) list.AddHead(new OwnedNode(i));
      // A removed node is the caller's again.
    OwnedNode *taken = list.RemoveHead();
    EXPECT_EQ(taken->next, nullptr);
    delete taken;
    list.DeleteAll();
    EXPECT_EQ(Counted::live, start);
    EXPECT_EQ(list.countAtClear, std::vector<int>{19});
    for (int i = 0; i < 5; ++i) list.AddTail(new OwnedNode(i));
  }
  // The guard sees the five left in the list destroyed with it.
}

TEST(ListIterator, StepsForwardOnly) {
  RecordingDList list;
  DNode n1(1), n2(2), n3(3);
  for (DNode *n : {&n1, &n2, &n3}) list.AddTail(n);

  SCC_DListIterator<DNode> it(list);
  ASSERT_EQ(list.started.size(), 1u);
  EXPECT_EQ(list.started[0], &it);
  EXPECT_EQ(list.startedAt[0], &n1) << "the walk starts on the head";
  EXPECT_EQ(it.GetPrev(), 0);
  EXPECT_EQ(*it, &n1) << "GetPrev must not move";

  SCC_DListIterator<DNode> old = it++;
  EXPECT_EQ(*old, &n1);
  EXPECT_EQ(*it, &n2);
  EXPECT_EQ(it.GetNext(), 1);
  EXPECT_EQ(*it, &n3);
  EXPECT_EQ(it.GetNext(), 0);
  EXPECT_EQ(*it, nullptr);
  EXPECT_EQ(it.GetNext(), 0) << "no node: GetNext stays put";
  list.RemoveAll();
}

TEST(ListIterator, FollowsItsSourceByPolicy) {
  DNode n1(1), n2(2), n3(3);
  SCC_DList<DNode> list;
  for (DNode *n : {&n1, &n2, &n3}) list.AddTail(n);
  SCC_Notifier source;

  // Default policy: the deletion of the node under the cursor invalidates
  // it, and it stops listening.
  // Going forward steps before the node goes; going back has no backward
  // step here, so that cursor stays.
  SCC_DListIterator<DNode> invalidated(&n2), forward(&n2), back(&n2);
  forward.OnFocusDeleteGoForward();
  back.OnFocusDeleteGoBack();
  for (auto *it : {&invalidated, &forward, &back}) it->JoinAtEnd(&source);
  source.Notify(2, SCC_HandleToData(reinterpret_cast<SCC_Handle>(&n1)));
  EXPECT_EQ(*invalidated, &n2) << "another node's deletion is ignored";
  source.Notify(2, SCC_HandleToData(reinterpret_cast<SCC_Handle>(&n2)));
  EXPECT_EQ(*invalidated, nullptr);
  EXPECT_EQ(invalidated.GetOwner(), nullptr);
  EXPECT_EQ(*forward, &n3);
  EXPECT_EQ(*back, &n2);

  // All go: every cursor is cleared.
  source.Notify(6, nullptr);
  EXPECT_EQ(*forward, nullptr);
  EXPECT_EQ(*back, nullptr);

  // A copy keeps the place but listens to nothing.
  SCC_DListIterator<DNode> attached(&n1);
  attached.JoinAtEnd(&source);
  SCC_DListIterator<DNode> copy(attached);
  EXPECT_EQ(*copy, &n1);
  EXPECT_EQ(copy.GetOwner(), nullptr);
  source.Notify(6, nullptr);
  EXPECT_EQ(*copy, &n1);
  EXPECT_EQ(*attached, nullptr);
  list.RemoveAll();
}

}  // namespace
