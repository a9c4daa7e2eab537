// Geometry nodes: the walks over a ring of nodes and the ways to leave it.
#include <cstddef>

#include "sys_geom_node.h"

namespace {

// Tells a walk that it has gone round a loop: fed each node the walk steps
// to, it answers true once a node comes round a second time. The mark moves
// to the node reached after 1, 2, 4, ... steps (Brent's method), so a loop is
// found within a few turns of it, at the cost of one comparison a step. A
// sound ring never trips it before the walk reaches the node it stops at.
class LoopGuard {
 public:
  explicit LoopGuard(SYS_GeomNode const *start) : mark(start) {}

  bool Repeats(SYS_GeomNode const *node) {
    if (node == mark) return true;
    if (++steps == limit) {
      mark = node;
      steps = 0;
      limit *= 2;
    }
    return false;
  }

 private:
  SYS_GeomNode const *mark;
  std::size_t steps = 0;
  std::size_t limit = 1;
};

}  // namespace

SYS_GeomNode::~SYS_GeomNode() {
  if (root == nullptr || root == this) return;
  LoopGuard guard(root);
  SYS_GeomNode *before = root;
  while (before->root != this) {
    before = before->root;
    if (before == nullptr || guard.Repeats(before)) return;
  }
  before->root = root;
}

SYS_GeomNode *SYS_GeomNode::Find(SYS_GeomNode const *from, short type, int anyGeom) const {
  if (from == nullptr) return nullptr;
  LoopGuard guard(from);
  for (SYS_GeomNode *node = from->root; node != nullptr && node != this && !guard.Repeats(node);
       node = node->root) {
    if (anyGeom ? IsGeom(node->nodeType) : node->nodeType == type) return node;
  }
  return nullptr;
}

SYS_GeomNode *SYS_GeomNode::GetNextRoot(SYS_GeomNode const *from) const {
  SYS_GeomNode *const next = from == nullptr ? nullptr : from->root;
  return next == this ? nullptr : next;
}

SYS_GeomNode *SYS_GeomNode::GetRoot(short type) const { return Find(this, type, 0); }

SYS_GeomNode *SYS_GeomNode::NextRoot(SYS_GeomNode *from, short type) const { return Find(from, type, 0); }

SYS_GeomNode *SYS_GeomNode::GetNextRoot(SYS_GeomNode const *from, SGN_Type type) const {
  return Find(from, type, 0);
}

SYS_GeomNode *SYS_GeomNode::GetNextGeomRoot() const { return Find(this, SGN_NONE, 1); }

SYS_GeomNode *SYS_GeomNode::GetPrevRoot(SYS_GeomNode const *from) const {
  SYS_GeomNode *before = from == nullptr ? nullptr : from->root;
  if (before == nullptr || before == this) return nullptr;
  LoopGuard guard(before);
  for (SYS_GeomNode *node = before->root; node != this; node = node->root) {
    if (node == nullptr || node->nodeType == SGN_GEOM_END || guard.Repeats(node)) return nullptr;
    before = node;
  }
  return before;
}

void SYS_GeomNode::IncludeRoot(SYS_GeomNode *node) {
  if (node == nullptr || node == this) return;
  node->root = root;
  root = node;
}

void SYS_GeomNode::ExcludeRoot(SYS_GeomNode *start) {
  SYS_GeomNode *before = start == nullptr ? nullptr : start->root;
  if (before == nullptr || before == start) return;
  // The node right behind `start` is not tested for the barrier.
  LoopGuard guard(before);
  for (SYS_GeomNode *node = before->root; node != start; node = node->root) {
    if (node == nullptr || node->nodeType == SGN_GEOM_END || guard.Repeats(node)) return;
    before = node;
  }
  before->root = root;
  root = this;
}

void SYS_GeomNode::ExcludeOwnRoot() {
  if (root != nullptr) root = root->root;
}

void SYS_GeomNode::ExcludeNearType(short type) {
  LoopGuard guard(this);
  while (root != nullptr && root != this && root->nodeType == type && !guard.Repeats(root)) root = root->root;
}

void SYS_GeomNode::ExcludeByType(short type) {
  LoopGuard guard(this);
  SYS_GeomNode *kept = this;
  for (SYS_GeomNode *node = root; node != nullptr && node != this && !guard.Repeats(node); node = kept->root) {
    if (node->nodeType == type) {
      kept->root = node->root;
    } else {
      kept = node;
    }
  }
}

SYS_GeometryType SYS_Geometry::GetGeometry() { return SYS_GEOMETRY_NONE; }

int SYS_Geometry::IsValid() const { return 0; }

SYS_Geometry::~SYS_Geometry() = default;
