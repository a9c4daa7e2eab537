// The reference list: a doubly linked list of SCC_DListRefNode objects that
// know which list they are in.
//
// A node moves between lists with one call and leaves its list by itself when
// it is destroyed, so an SCC_RefDList is the way to keep weak back-references:
// a safe list node keeps in one the iterators standing on it. The list owns no
// node: when it goes, its nodes live on in no list. Copying a list does not
// copy: the copy takes the other list's nodes, and the other ends empty.
// NotifyNodes is how the owner of a list talks to everything that refers to it.
//
//   SCC_RefDList:     head -> a <-> b <-> c <- tail
//   SCC_DListRefNode: list (the list it is in, or null), prev, next
//
// A node with a list is linked in it (null prev at the head, null next at the
// tail); a node with no list has null links. Null list or node arguments are
// failed checks; where the check returns, the operation does nothing and
// returns null.
#ifndef TOVIK_SCC_REFDLIST_H
#define TOVIK_SCC_REFDLIST_H

#include "scc_list.h"
#include "tovik_export.h"

class TOVIK_API SCC_RefDList;
class TOVIK_API SCC_DListRefNode;

// The instances over reference nodes live in the library.
extern template class SCC_SList<SCC_DListRefNode>;
extern template class SCC_DList<SCC_DListRefNode>;
extern template class SCC_SListIterator<SCC_DListRefNode>;
extern template class SCC_DListIterator<SCC_DListRefNode>;

// A node of a reference list. Polymorphic: derived nodes hear NotifyNodes
// through OnNotification.
class TOVIK_API SCC_DListRefNode : public SCC_DListNode<SCC_DListRefNode> {
 public:
  // The list the node is in, or null.
  SCC_RefDList *list;

  SCC_DListRefNode() : list(nullptr) {}
  // Joins list at its head; a null list leaves the node in none.
  explicit SCC_DListRefNode(SCC_RefDList *startList);
  // Joins other's list directly in front of other, or no list if other is in none.
  SCC_DListRefNode(SCC_DListRefNode &other);
  // Moves into other's list directly in front of other, or out of any list if
  // other is in none. Self-assignment changes nothing.
  SCC_DListRefNode &operator=(SCC_DListRefNode &other);
  // Leaves its list, if any.
  virtual ~SCC_DListRefNode();
  // What the list's owner tells through NotifyNodes; returns code here.
  virtual int OnNotification(int code, void *data);

  SCC_RefDList *GetList() const { return list; }
  // Leaves the present list (its OnListEvent(2, node) first) and records
  // newList, without linking the node into it: linking is for the caller.
  void ChangeList(SCC_RefDList *newList);
};

// A doubly linked list of reference nodes. It owns no node.
class TOVIK_API SCC_RefDList : public SCC_DList<SCC_DListRefNode> {
 public:
  SCC_RefDList() = default;
  // Takes over other's nodes; other ends empty.
  SCC_RefDList(SCC_RefDList &other);
  // Lets its own nodes go, then takes over other's; other ends empty. Does
  // nothing when both lists have the same head (self-assignment, two empty lists).
  SCC_RefDList &operator=(SCC_RefDList &other);
  // Removes every node: they live on, in no list.
  ~SCC_RefDList() override;

  // Moves node from wherever it is to directly in front of position. A
  // position that is null, or not in this list, means the tail.
  SCC_DListRefNode *InsertBefore(SCC_DListRefNode *position, SCC_DListRefNode *node);
  // Moves node to directly behind position. A position that is null, or not
  // in this list, means the head.
  SCC_DListRefNode *InsertAfter(SCC_DListRefNode *position, SCC_DListRefNode *node);
  // Moves node to the front, from wherever it is. Returns node.
  SCC_DListRefNode *AddHead(SCC_DListRefNode *node);
  // Moves node to the end, from wherever it is. Returns node.
  SCC_DListRefNode *AddTail(SCC_DListRefNode *node);
  SCC_RefDList &operator+=(SCC_DListRefNode &node) {
    AddTail(&node);
    return *this;
  }
  // Takes node out of the list it is in, whichever that is. Returns node.
  SCC_DListRefNode *Remove(SCC_DListRefNode *node);
  // Removes the front node and returns it; on an empty list a failed check,
  // then null.
  SCC_DListRefNode *RemoveHead();
  // Removes the end node and returns it; on an empty list a failed check,
  // then null.
  SCC_DListRefNode *RemoveTail();
  // Removes the head until the list is empty.
  void RemoveAll();
  // Moves every node of other, front first, to the end of this list. Merging
  // a list into itself changes nothing.
  void Merge(SCC_RefDList &other);
  // 1 if every node names this list as its own, else 0.
  int IsValid() const;
  // Calls OnNotification(code, data) on each node from the head, reading the
  // next node after each call from the node just called, so a node that
  // leaves the list during its call ends the walk. A node must not be
  // destroyed from inside its call. Returns the last result, or 0 for an
  // empty list.
  int NotifyNodes(int code, void *data);

 private:
  void TakeNodes(SCC_RefDList &other);
  // The checks and hand-over of both insertions: takes node out of its old
  // list and mends a foreign position. 0 when there is nothing to insert
  // (no node, or node next to itself).
  int PrepareInsert(SCC_DListRefNode *&position, SCC_DListRefNode *node);
};

#endif  // TOVIK_SCC_REFDLIST_H
