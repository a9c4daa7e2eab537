// The safe list: a doubly linked ring whose nodes can leave, or be destroyed,
// in the middle of a walk, while every iterator on them moves on unharmed.
//
// A node type T derives from SCC_SafeDListNode<T>. Each node is itself a
// reference list (scc_refdlist.h) of the iterators standing on it; when the
// node leaves its list those iterators hear it and step to the node that
// followed. The list does not own its nodes: destroying the list leaves them
// alone and alive, unless DeleteAll was called. A node that is destroyed
// while in a list takes itself out, and needs no pointer to its list for it.
//
//   root (end mark, in the list object) -> a <-> b <-> c -> root (a ring)
//   empty list:  root.next == root.prev == &root
//   node in no list: next == prev == the node itself
//
// The usual walk, safe against any removal or destruction of nodes:
//
//   SCC_SafeDListIterator<T> it(list.GetHead());
//   while (*it != nullptr) {
//     SCC_SafeDListIterator<T> here = it++;  // `it` is one step ahead
//     Work(*here);                           // may destroy any node
//   }
//
// The ring's links name the node part of each node (_SCC_SafeDListNode), not
// T, because the root is not a T; GetHead, GetTail, the iterators and
// GetNextInList/GetPrevInList give T pointers. Iterators told of a removal
// hear the node's _SCC_SafeDListNode address as data.
#ifndef TOVIK_SCC_SAFE_LIST_H
#define TOVIK_SCC_SAFE_LIST_H

#include <cstdint>

#include "scc_event.h"
#include "scc_refdlist.h"
#include "tovik_export.h"

template <class T>
class TOVIK_API SCC_SafeDList;

// The node part of a safe list node, the same for every element type: ring
// links, the reference list of iterators standing on the node, and the steps
// that link and unlink it. Typed lists and iterators are thin layers on it.
class TOVIK_API _SCC_SafeDListNode : public SCC_RefDList, public SCC_DListNode<_SCC_SafeDListNode> {
 public:
  // A new node is alone.
  _SCC_SafeDListNode();
  // A copy is a new node, alone, with no iterators on it.
  _SCC_SafeDListNode(_SCC_SafeDListNode const &other);
  // Assignment copies the element, never its place or its iterators.
  _SCC_SafeDListNode &operator=(_SCC_SafeDListNode const &) { return *this; }
  // A node in a list takes itself out, and its iterators step on as for any
  // removal; iterators left on a destroyed node stand nowhere.
  ~_SCC_SafeDListNode() override;

  // Called by a dying node on the end mark of its ring; nothing in a node.
  virtual void RemoveFromList(_SCC_SafeDListNode *node);
  // 1 for a node, 0 for the end mark of a list.
  virtual int IsNode() const;

  // 1 when the node is in no list.
  int IsAlone() const { return next == this; }

 protected:
  template <class T>
  friend class SCC_SafeDList;

  // Links this (alone) node directly in front of / behind position.
  void LinkBefore(_SCC_SafeDListNode *position);
  void LinkAfter(_SCC_SafeDListNode *position);
  // Takes the node out of its ring and leaves it alone; no one is told.
  void LeaveRing();
  // The removal after the iterators on the node were told: unlinks, then
  // moves the iterators that stepped on into the lists of their new nodes.
  void Detach();
  // Tells the iterators on the node that it goes, and detaches it.
  void RemoveSelf();
  // The end mark of the node's ring, or null for a node alone.
  _SCC_SafeDListNode *FindRoot();
  // On an end mark: unlinks every node, front first, each ending alone.
  void EmptyRing();
  // On an end mark: takes the nodes of other's ring, leaving other empty.
  void TakeRing(_SCC_SafeDListNode &other);

 private:
  // Moves each iterator registered here whose node is no longer this one to
  // where it now stands; with `forget`, iterators still on this node stand
  // nowhere afterwards.
  void ReleaseIterators(bool forget);
};

// The cursor engine of a safe list: a reference node in the iterator list of
// the node it stands on, so that the node can tell it when it goes.
class TOVIK_API _SCC_SafeDListIterator : public SCC_DListRefNode {
 public:
  // The node the iterator stands on, or null.
  _SCC_SafeDListNode *current;

  // Stands on node (joining its iterator list at the head), or nowhere.
  explicit _SCC_SafeDListIterator(_SCC_SafeDListNode *node = nullptr);
  // Stands on the same node, registered in the same list.
  _SCC_SafeDListIterator(_SCC_SafeDListIterator &other);
  _SCC_SafeDListIterator &operator=(_SCC_SafeDListIterator &other);

  // Code 2 for the node stood on: moves to the node that follows it, or to
  // null at the end, without registering there yet. Code 6: stands nowhere.
  // Returns code.
  int OnNotification(int code, void *data) override;

  // Moves to the next node and registers there; at the end of the list (or
  // on a node in no list) stands nowhere.
  void Step();

 private:
  friend class _SCC_SafeDListNode;
  // Registers in the iterator list of the node stood on, or in none.
  void Follow();
};

// The base of a user node type T in a safe list.
template <class T>
class TOVIK_API SCC_SafeDListNode : public _SCC_SafeDListNode {
 public:
  SCC_SafeDListNode() = default;
  SCC_SafeDListNode(SCC_SafeDListNode const &other) : _SCC_SafeDListNode(other) {}
  SCC_SafeDListNode &operator=(SCC_SafeDListNode const &) { return *this; }

  // The node behind / in front of this one, or null at the end of the list
  // and for a node in no list.
  T *GetNextInList() const { return Typed(next); }
  T *GetPrevInList() const { return Typed(prev); }

 private:
  friend class SCC_SafeDList<T>;

  // The T of a neighbour, or null for an end mark or a node's link to itself.
  T *Typed(_SCC_SafeDListNode *node) const {
    if (node == this || !node->IsNode()) return nullptr;
    return static_cast<T *>(static_cast<SCC_SafeDListNode *>(node));
  }
};

// A cursor on a safe list. It survives the removal and the destruction of
// any node, including the one it stands on.
template <class T>
class TOVIK_API SCC_SafeDListIterator : public _SCC_SafeDListIterator {
 public:
  explicit SCC_SafeDListIterator(T *node = nullptr) : _SCC_SafeDListIterator(node) {}
  SCC_SafeDListIterator(SCC_SafeDListIterator &other) : _SCC_SafeDListIterator(other) {}
  SCC_SafeDListIterator &operator=(SCC_SafeDListIterator &other) {
    _SCC_SafeDListIterator::operator=(other);
    return *this;
  }

  // The node stood on, or null.
  T *operator*() const {
    return current == nullptr ? nullptr : static_cast<T *>(static_cast<SCC_SafeDListNode<T> *>(current));
  }
  // Returns a new iterator on the present node, then steps this one.
  SCC_SafeDListIterator operator++(int) {
    SCC_SafeDListIterator old(**this);
    Step();
    return old;
  }
};

// A safe list of T. The end mark `root` lives in the list object.
template <class T>
class TOVIK_API SCC_SafeDList {
 public:
  // The end mark of the ring: its next is the head, its prev the tail.
  class RootNode : public SCC_SafeDListNode<T> {
   public:
    SCC_SafeDList *list;

    explicit RootNode(SCC_SafeDList *owner) : list(owner) {}
    RootNode(RootNode const &) = delete;
    RootNode &operator=(RootNode const &) = delete;

    // A node of this list is being destroyed: its iterators hear code 2 and
    // it leaves. The node is no longer a T, so the typed NotifyList is not
    // called for it.
    void RemoveFromList(_SCC_SafeDListNode *node) override { list->RemoveDestroyed(node); }
    int IsNode() const override { return 0; }
  };

  RootNode root;

  SCC_SafeDList() : root(this) {}
  SCC_SafeDList(SCC_SafeDList const &) = delete;
  SCC_SafeDList &operator=(SCC_SafeDList const &) = delete;

  // Tells the iterators standing on node (code 2 moves them on); a null node
  // tells nobody.
  virtual void NotifyList(int code, T *node) {
    if (node == nullptr) return;
    _SCC_SafeDListNode *part = node;
    part->NotifyNodes(code, part);
  }
  // Data a derived list may attach; none here.
  virtual void *GetListData() const { return nullptr; }
  // Tells NotifyList(6, null), then leaves every node alone and alive.
  virtual ~SCC_SafeDList() {
    NotifyList(EvCleared, nullptr);
    root.EmptyRing();
  }
  virtual int IsEmpty() const { return root.next == &root; }
  // Walks the list with a safe iterator: the list does not store its length.
  virtual std::int32_t GetCount() const {
    std::int32_t count = 0;
    for (SCC_SafeDListIterator<T> it(GetHead()); it.current != nullptr; it.Step()) ++count;
    return count;
  }
  // The first / last node, or null for an empty list.
  virtual T *GetHead() const { return root.Typed(root.next); }
  virtual T *GetTail() const { return root.Typed(root.prev); }
  // Links node directly in front of / behind position, then NotifyList(1,
  // node); returns node. A node still in a list is removed from it first.
  // A null position, or one in no list, means the tail for InsertBefore and
  // the head for InsertAfter; a position in another list takes node into
  // that list. Inserting a node beside itself changes nothing.
  virtual T *InsertBefore(T *position, T *node) { return Insert(position, node, true); }
  virtual T *InsertAfter(T *position, T *node) { return Insert(position, node, false); }
  // NotifyList(2, node), then unlinks node, which ends alone. Returns node;
  // null for a null node.
  virtual T *Remove(T *node) {
    if (node == nullptr) return nullptr;
    NotifyList(EvDeleted, node);
    static_cast<_SCC_SafeDListNode *>(node)->Detach();
    return node;
  }
  // Link node at the front / end, then NotifyList(1, node); return node.
  virtual T *AddHead(T *node) { return Insert(GetHead(), node, true); }
  virtual T *AddTail(T *node) { return Insert(GetTail(), node, false); }
  // Remove on the first / last node; null on an empty list.
  virtual T *RemoveHead() { return Remove(GetHead()); }
  virtual T *RemoveTail() { return Remove(GetTail()); }
  // NotifyList(6, null), then unlinks every node, front first, each ending
  // alone. Iterators on them end their walks at their next step.
  virtual void RemoveAll() {
    NotifyList(EvCleared, nullptr);
    root.EmptyRing();
  }
  // NotifyList(6, null), then destroys every node, front first; iterators on
  // them step on as each goes, and end null.
  virtual void DeleteAll() {
    NotifyList(EvCleared, nullptr);
    while (T *node = GetHead()) delete Remove(node);
  }
  virtual void OnListChanged(void *data) { (void)data; }
  // 1 if the iterator list of every node is sound, else 0.
  virtual int IsValid() const {
    for (_SCC_SafeDListNode const *node = root.next; node != &root; node = node->next) {
      if (!node->SCC_RefDList::IsValid()) return 0;
    }
    return 1;
  }
  // Lets its own nodes go (RemoveAll), takes over other's nodes, leaving
  // other empty, then NotifyList(5, null). Taking over itself changes nothing.
  virtual void TakeOver(SCC_SafeDList &other) {
    if (&other == this) return;
    RemoveAll();
    root.TakeRing(other.root);
    NotifyList(EvReload, nullptr);
  }

 private:
  T *Insert(T *position, T *node, bool before) {
    if (node == nullptr) return nullptr;
    _SCC_SafeDListNode *part = node;
    _SCC_SafeDListNode *place = position;
    if (place == part) return node;
    if (!part->IsAlone()) {
      // Linking a node that is still in a ring would break that ring.
      _SCC_SafeDListNode *owner = part->FindRoot();
      if (owner != nullptr) {
        static_cast<RootNode *>(owner)->list->Remove(node);
      } else {
        part->Detach();
      }
    }
    if (place == nullptr || place->IsAlone()) {
      if (before) {
        part->LinkBefore(&root);
      } else {
        part->LinkAfter(&root);
      }
    } else if (before) {
      part->LinkBefore(place);
    } else {
      part->LinkAfter(place);
    }
    NotifyList(EvAdded, node);
    return node;
  }

  void RemoveDestroyed(_SCC_SafeDListNode *node) { node->RemoveSelf(); }
};

#endif  // TOVIK_SCC_SAFE_LIST_H
