// Plain intrusive lists: linking, unlinking, owning, and when each change is told.
#include <gtest/gtest.h>

#include <string>
#include <vector>

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

// Each OnListEvent as "code:value", with + when the node could be reached
// from the head at that moment (after linking, before unlinking).
template <class Base, class Node>
class Recording : public Base {
 public:
  void OnListEvent(int code, Node *node) override {
    bool reachable = false;
    for (Node const *n = this->head; n != nullptr; n = n->next) reachable = reachable || n == node;
    seen += std::to_string(code) + ":" + std::to_string(node != nullptr ? node->value : -1) + (reachable ? "+ " : "- ");
  }
  std::string seen;
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

// Null positions and moves are left to the reference list, which is a DList.
TEST(DList, LinksInEveryPlaceAndReportsWhileTheNodeIsIn) {
  RecordingDList list;
  DNode n1(1), n2(2), n3(3), n4(4), n5(5);
  list.AddTail(&n3);
  list.AddHead(&n1);
  EXPECT_EQ(list.InsertBefore(&n3, &n2), &n2);
  list.InsertAfter(&n3, &n5);
  list.InsertBefore(&n5, &n4);
  EXPECT_EQ(Forward(list), "12345");
  EXPECT_EQ(list.Remove(&n2), &n2);
  EXPECT_TRUE(n2.next == nullptr && n2.prev == nullptr);
  EXPECT_EQ(list.RemoveHead(), &n1);
  EXPECT_EQ(list.RemoveTail(), &n5);
  EXPECT_EQ(Forward(list), "34");
  EXPECT_EQ(list.Remove(nullptr), nullptr);
  list.RemoveAll();
  EXPECT_EQ(list.RemoveHead(), nullptr);
  EXPECT_EQ(list.seen, "1:3+ 1:1+ 1:2+ 1:5+ 1:4+ 2:2+ 2:1+ 2:5+ 2:3+ 2:4+ ");
}

TEST(SList, LinksAndUnlinks) {
  RecordingSList list;
  SNode n1(1), n2(2), n3(3), n4(4), stranger(9);
  list.AddTail(&n3);
  list.AddHead(&n1);
  list.InsertAfter(&n1, &n2);
  list.AddTail(&n4);
  // Removing from the middle and the end finds the predecessor; a node of
  // no list is not found, and nothing is told.
  EXPECT_TRUE(list.Remove(&n3) == &n3 && list.Remove(&n4) == &n4 && list.Remove(&stranger) == nullptr);
  EXPECT_EQ(list.head->next, &n2);
  list.RemoveAll();
  EXPECT_EQ(list.seen, "1:3+ 1:1+ 1:2+ 1:4+ 2:3+ 2:4+ 2:1+ 2:2+ ");
  {  // destroying a list leaves its nodes unlinked
    SCC_SList<SNode> scoped;
    for (SNode *n : {&n1, &n2}) scoped.AddHead(n);
  }
  EXPECT_EQ(n2.next, nullptr);
}

TEST(SDList, OwnsItsNodes) {
  struct OwnedNode : SCC_SListNode<OwnedNode> {
    explicit OwnedNode(int v) : payload(v) {}
    Counted payload;
  };
  struct Watching : SCC_SDList<OwnedNode> {
    // Code 6 must come while the nodes are still there.
    void OnListEvent(int code, OwnedNode *) override {
      if (code == 6) countAtClear.push_back(GetCount());
    }
    std::vector<int> countAtClear;
  };
  CountedLeakGuard guard;  // sees the five left in the list destroyed with it
  Watching list;
  for (int i = 0; i < 20; ++i) list.AddHead(new OwnedNode(i));
  delete list.RemoveHead();  // a removed node is the caller's again
  list.DeleteAll();
  EXPECT_EQ(list.countAtClear, std::vector<int>{19});
  for (int i = 0; i < 5; ++i) list.AddTail(new OwnedNode(i));
}

}  // namespace
