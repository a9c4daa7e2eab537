// Rings of geometry nodes.
#include <gtest/gtest.h>

#include "sys_geom_node.h"

namespace {

struct Node : SYS_GeomNode {
  explicit Node(short type = SGN_NONE) { SetNodeType(type); }
};

// Links a ring in the given order: first -> second -> ... -> first.
void Ring(std::initializer_list<Node *> nodes) {
  for (auto it = nodes.begin(); it != nodes.end(); ++it) (*it)->SetRoot(it + 1 == nodes.end() ? *nodes.begin() : it[1]);
}

TEST(GeomNode, WalksAndBarrier) {
  Node a(SGN_GEOM_A), b(SGN_DB_ROOT), c(SGN_DB_ROOT);
  EXPECT_EQ(a.GetRoot(), nullptr) << "alone";
  EXPECT_EQ(a.GetNextGeomRoot(), nullptr) << "the node itself is not looked at";
  a.IncludeRoot(&b);
  a.IncludeRoot(&c);
  a.IncludeRoot(&a);  // would cut the ring behind a
  a.IncludeRoot(nullptr);
  EXPECT_EQ(a.GetRoot(), &c) << "the ring is a, c, b";
  EXPECT_EQ(b.GetDBRoot(), &c) << "the nearer one, forward";
  EXPECT_EQ(c.GetNextGeomRoot(), &a);
  EXPECT_EQ(a.NextRoot(&c, SGN_DB_ROOT), &b) << "behind from";
  EXPECT_EQ(a.GetPrevRoot(&a), &b);
  EXPECT_EQ(a.GetNextRoot(&b), nullptr) << "after b comes a itself";

  Node end(SGN_GEOM_END);
  b.IncludeRoot(&end);  // a, c, b, end
  EXPECT_EQ(a.GetPrevRoot(&a), nullptr) << "the barrier stops the walk";
  a.ExcludeRoot(&a);
  EXPECT_EQ(end.GetRoot(), &a) << "barrier: nothing changes";
  b.ExcludeRoot(&b);  // the barrier right behind b is not tested
  EXPECT_TRUE(b.GetRoot() == nullptr && c.GetRoot() == &end) << "b alone; c took b's link";

  Node x(SGN_GEOM_B), y(SGN_GEOM_B), z(SGN_BRT_ROOT);
  Ring({&x, &y, &z});
  x.ExcludeRoot(&x);
  EXPECT_TRUE(x.GetRoot() == nullptr && y.GetRoot() == &z && z.GetRoot() == &y);
  Ring({&x, &y, &z});
  x.ExcludeNearType(SGN_GEOM_B);
  EXPECT_EQ(x.GetRoot(), &z);
  EXPECT_EQ(y.GetRoot(), &z) << "a dropped node keeps its link";
  Ring({&x, &y, &z});
  y.SetNodeType(SGN_BRT_ROOT);
  x.ExcludeByType(SGN_BRT_ROOT);
  EXPECT_EQ(x.GetRoot(), nullptr);
  Ring({&x, &y, &z});  // no node may point at a dead one when they go
}

// Links that do not form a ring through the node: no walk reads through a
// null link or goes round a loop for ever.
TEST(GeomNode, BrokenRingsEndTheWalks) {
  Node x(SGN_GEOM_B), y(SGN_GEOM_B);
  Node n(SGN_GEOM_A);  // goes first, while the nodes it points at live
  n.SetRoot(nullptr);
  EXPECT_EQ(n.GetRoot(SGN_GEOM_B), nullptr);
  EXPECT_EQ(n.NextRoot(&n, SGN_GEOM_B), nullptr);
  n.ExcludeOwnRoot();
  n.ExcludeNearType(SGN_GEOM_B);
  n.ExcludeByType(SGN_GEOM_B);
  EXPECT_EQ(n.GetPrevRoot(&n), nullptr);
  EXPECT_EQ(n.GetNextRoot(nullptr), nullptr);
  n.ExcludeRoot(&n);

  Ring({&x, &y});
  n = x;  // n now leads into the ring of x, which never leads back
  EXPECT_EQ(n.GetRoot(), &y);
  EXPECT_EQ(n.GetDBRoot(), nullptr);
  EXPECT_EQ(n.GetPrevRoot(&n), nullptr);
  n.ExcludeRoot(&n);
  n.ExcludeNearType(SGN_GEOM_B);
  EXPECT_EQ(n.GetRoot(), &y) << "round the loop and back to y";
  n.ExcludeByType(SGN_GEOM_B);
  EXPECT_TRUE(x.GetRoot() == &y && y.GetRoot() == &x) << "the ring of x is untouched";
}

TEST(GeomNode, CopiesStartAloneAndDestroyedNodesLeave) {
  Node a(SGN_GEOM_A), b(SGN_GEOM_B);
  a.IncludeRoot(&b);
  Node const copy(a);
  EXPECT_TRUE(copy.GetRoot() == nullptr && copy.GetNodeType() == SGN_GEOM_A);
  {
    Node passing(SGN_DB_ROOT);
    b.IncludeRoot(&passing);
    EXPECT_EQ(a.GetDBRoot(), &passing);
  }
  EXPECT_EQ(b.GetRoot(), &a);
  EXPECT_EQ(a.GetDBRoot(), nullptr);
}

}  // namespace
