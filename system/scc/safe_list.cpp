// The engine of the safe list: ring links and iterators, for every element type.
#include "scc_safe_list.h"

// --- _SCC_SafeDListNode ------------------------------------------------------

_SCC_SafeDListNode::_SCC_SafeDListNode() : SCC_RefDList(), SCC_DListNode<_SCC_SafeDListNode>() {
  next = this;
  prev = this;
}

_SCC_SafeDListNode::_SCC_SafeDListNode(_SCC_SafeDListNode const &)
    : SCC_RefDList(), SCC_DListNode<_SCC_SafeDListNode>() {
  next = this;
  prev = this;
}

_SCC_SafeDListNode::~_SCC_SafeDListNode() {
  // The node finds its list by the end mark of its ring, so it needs no
  // pointer to the list; a node alone meets itself and has nothing to do.
  if (_SCC_SafeDListNode *root = FindRoot()) root->RemoveFromList(this);
  ReleaseIterators(true);
}

void _SCC_SafeDListNode::RemoveFromList(_SCC_SafeDListNode *node) { (void)node; }

int _SCC_SafeDListNode::IsNode() const { return 1; }

void _SCC_SafeDListNode::LinkBefore(_SCC_SafeDListNode *position) {
  next = position;
  prev = position->prev;
  prev->next = this;
  position->prev = this;
}

void _SCC_SafeDListNode::LinkAfter(_SCC_SafeDListNode *position) {
  prev = position;
  next = position->next;
  next->prev = this;
  position->next = this;
}

void _SCC_SafeDListNode::LeaveRing() {
  prev->next = next;
  next->prev = prev;
  next = this;
  prev = this;
}

void _SCC_SafeDListNode::Detach() {
  LeaveRing();
  ReleaseIterators(false);
}

void _SCC_SafeDListNode::RemoveSelf() {
  NotifyNodes(EvDeleted, this);
  Detach();
}

_SCC_SafeDListNode *_SCC_SafeDListNode::FindRoot() {
  // Walking back reaches the end mark first for nodes near the front, which
  // is where lists add most of their nodes.
  for (_SCC_SafeDListNode *node = prev; node != this; node = node->prev) {
    if (!node->IsNode()) return node;
  }
  return nullptr;
}

void _SCC_SafeDListNode::EmptyRing() {
  while (next != this) next->LeaveRing();
}

void _SCC_SafeDListNode::TakeRing(_SCC_SafeDListNode &other) {
  if (other.next == &other) return;
  next = other.next;
  prev = other.prev;
  next->prev = this;
  prev->next = this;
  other.next = &other;
  other.prev = &other;
}

void _SCC_SafeDListNode::ReleaseIterators(bool forget) {
  // Iterators told of the removal stepped on but stayed registered here, so
  // that the notification walk over this list ran undisturbed. Now that it is
  // over, they register where they stand, and will hear if that node goes too.
  SCC_DListRefNode *ref = head;
  while (ref != nullptr) {
    SCC_DListRefNode *following = ref->next;
    if (_SCC_SafeDListIterator *iterator = dynamic_cast<_SCC_SafeDListIterator *>(ref)) {
      if (iterator->current != this) {
        iterator->Follow();
      } else if (forget) {
        iterator->current = nullptr;
        Remove(iterator);
      }
    }
    ref = following;
  }
}

// --- _SCC_SafeDListIterator --------------------------------------------------

_SCC_SafeDListIterator::_SCC_SafeDListIterator(_SCC_SafeDListNode *node) : current(node) {
  if (node != nullptr) node->AddHead(this);
}

_SCC_SafeDListIterator::_SCC_SafeDListIterator(_SCC_SafeDListIterator &other)
    : SCC_DListRefNode(other), current(other.current) {}

_SCC_SafeDListIterator &_SCC_SafeDListIterator::operator=(_SCC_SafeDListIterator &other) {
  SCC_DListRefNode::operator=(other);
  current = other.current;
  return *this;
}

namespace {
// The node behind node in its list, or null at the end mark and for a node
// alone, whose link names itself.
_SCC_SafeDListNode *Following(_SCC_SafeDListNode *node) {
  _SCC_SafeDListNode *after = node->next;
  return (after == node || !after->IsNode()) ? nullptr : after;
}
}  // namespace

int _SCC_SafeDListIterator::OnNotification(int code, void *data) {
  if (code == EvDeleted) {
    if (current != nullptr && data == static_cast<void *>(current)) current = Following(current);
  } else if (code == EvCleared) {
    current = nullptr;
  }
  return code;
}

void _SCC_SafeDListIterator::Step() {
  if (current == nullptr) return;
  current = Following(current);
  Follow();
}

void _SCC_SafeDListIterator::Follow() {
  if (current != nullptr) {
    current->AddHead(this);
  } else if (list != nullptr) {
    list->Remove(this);
  }
}
