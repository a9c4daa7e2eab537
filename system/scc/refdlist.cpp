// The reference list and its nodes.
#include "scc_refdlist.h"

#include "ssm.h"

template class SCC_SList<SCC_DListRefNode>;
template class SCC_DList<SCC_DListRefNode>;
template class SCC_SListIterator<SCC_DListRefNode>;
template class SCC_DListIterator<SCC_DListRefNode>;

// --- SCC_DListRefNode ------------------------------------------------------

SCC_DListRefNode::SCC_DListRefNode(SCC_RefDList *startList) : list(nullptr) {
  if (startList != nullptr) startList->AddHead(this);
}

SCC_DListRefNode::SCC_DListRefNode(SCC_DListRefNode &other) : SCC_DListNode(other), list(nullptr) {
  if (other.list != nullptr) other.list->InsertBefore(&other, this);
}

SCC_DListRefNode &SCC_DListRefNode::operator=(SCC_DListRefNode &other) {
  if (&other == this) return *this;
  // InsertBefore leaves the old list itself, so the new list hears only the
  // node coming in.
  if (other.list != nullptr) {
    other.list->InsertBefore(&other, this);
  } else {
    ChangeList(nullptr);
  }
  return *this;
}

SCC_DListRefNode::~SCC_DListRefNode() {
  if (list != nullptr) list->Remove(this);
}

int SCC_DListRefNode::OnNotification(int code, void *data) {
  (void)data;
  return code;
}

void SCC_DListRefNode::ChangeList(SCC_RefDList *newList) {
  // The plain list's Remove tells OnListEvent(2, node) before it unlinks, and
  // corrects only end pointers that name the node, so a node that was given
  // a list but never linked into it leaves that list's chain alone.
  if (list != nullptr) list->SCC_DList<SCC_DListRefNode>::Remove(this);
  list = newList;
}

// --- SCC_RefDList ----------------------------------------------------------

SCC_RefDList::SCC_RefDList(SCC_RefDList &other) : SCC_DList<SCC_DListRefNode>() {
  TakeNodes(other);
}

SCC_RefDList &SCC_RefDList::operator=(SCC_RefDList &other) {
  TakeNodes(other);
  return *this;
}

void SCC_RefDList::TakeNodes(SCC_RefDList &other) {
  if (head == other.head) return;  // the same list, or both empty
  OnListEvent(EvCleared, nullptr);
  while (SCC_DListRefNode *node = head) {
    head = node->next;
    node->next = nullptr;
    node->prev = nullptr;
    node->list = nullptr;
  }
  head = other.head;
  tail = other.tail;
  other.OnListEvent(EvCleared, nullptr);
  other.head = nullptr;
  other.tail = nullptr;
  // The nodes name their new list before anyone hears of the change, so a
  // listener that moves a node finds the list it is really in.
  for (SCC_DListRefNode *node = head; node != nullptr; node = node->next) node->list = this;
  OnListEvent(EvReload, nullptr);
}

SCC_RefDList::~SCC_RefDList() { RemoveAll(); }

int SCC_RefDList::PrepareInsert(SCC_DListRefNode *&position, SCC_DListRefNode *node) {
  SSM_CHECK(node != nullptr, "");
  if (node == nullptr) return 0;
  SSM_CHECK(position != nullptr && position->list == this, "");
  if (position == node) return 0;
  if (position != nullptr && position->list != this) position = nullptr;
  node->ChangeList(this);
  return 1;
}

SCC_DListRefNode *SCC_RefDList::InsertBefore(SCC_DListRefNode *position, SCC_DListRefNode *node) {
  if (PrepareInsert(position, node) == 0) return node;
  return SCC_DList<SCC_DListRefNode>::InsertBefore(position, node);
}

SCC_DListRefNode *SCC_RefDList::InsertAfter(SCC_DListRefNode *position, SCC_DListRefNode *node) {
  if (PrepareInsert(position, node) == 0) return node;
  return SCC_DList<SCC_DListRefNode>::InsertAfter(position, node);
}

SCC_DListRefNode *SCC_RefDList::AddHead(SCC_DListRefNode *node) {
  SSM_CHECK(node != nullptr, "");
  if (node == nullptr) return nullptr;
  node->ChangeList(this);
  return SCC_DList<SCC_DListRefNode>::AddHead(node);
}

SCC_DListRefNode *SCC_RefDList::AddTail(SCC_DListRefNode *node) {
  SSM_CHECK(node != nullptr, "");
  if (node == nullptr) return nullptr;
  node->ChangeList(this);
  return SCC_DList<SCC_DListRefNode>::AddTail(node);
}

SCC_DListRefNode *SCC_RefDList::Remove(SCC_DListRefNode *node) {
  SSM_CHECK(node != nullptr, "");
  if (node == nullptr) return nullptr;
  node->ChangeList(nullptr);
  return node;
}

SCC_DListRefNode *SCC_RefDList::RemoveHead() {
  SSM_CHECK(head != nullptr, "");
  if (head == nullptr) return nullptr;
  return Remove(head);
}

SCC_DListRefNode *SCC_RefDList::RemoveTail() {
  SSM_CHECK(tail != nullptr, "");
  if (tail == nullptr) return nullptr;
  return Remove(tail);
}

void SCC_RefDList::RemoveAll() {
  while (head != nullptr) Remove(head);
}

void SCC_RefDList::Merge(SCC_RefDList &other) {
  if (&other == this) return;  // moving each head to the tail would never end
  while (other.head != nullptr) AddTail(other.head);
}

int SCC_RefDList::IsValid() const {
  for (SCC_DListRefNode const *node = head; node != nullptr; node = node->next) {
    if (node->list != this) return 0;
  }
  return 1;
}

int SCC_RefDList::NotifyNodes(int code, void *data) {
  SCC_DListIterator<SCC_DListRefNode> walk(head);
  walk.OnFocusDeleteGoForward();
  OnIteratorStart(&walk);
  int result = 0;
  while (walk.current != nullptr) {
    result = walk.current->OnNotification(code, data);
    walk.GetNext();
  }
  return result;
}
