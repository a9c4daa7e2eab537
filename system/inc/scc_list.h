// Plain intrusive lists: singly and doubly linked lists of nodes that carry
// their own links, and the cursors that walk them.
//
// A node type T derives from SCC_SListNode<T> (a `next` link) or
// SCC_DListNode<T> (`next` and `prev`). A list holds only the end pointers, so
// no list operation allocates. SCC_SList<T> and SCC_DList<T> do not own their
// nodes: when they go, the nodes live on, unlinked. SCC_SDList<T> owns its
// nodes and destroys them with itself. Every change is reported to the list's
// own virtual OnListEvent, so a derived list can keep books; nothing else is
// told. These lists are not safe against a node that leaves during a walk:
// that is what SCC_SafeDList (scc_safe_list.h) is for.
//
//   SCC_SList<T>:  head -> a -> b -> c -> null
//   SCC_DList<T>:  head -> a <-> b <-> c <- tail   (a.prev and c.next null)
//
// A node in no list has null links. The lists and nodes are not copyable: a
// node belongs to one list, and a list cannot share its nodes. Plain lists
// trust their caller and have no checks: linking a node that is still in a
// list, or unlinking a node of another doubly linked list, breaks both lists.
#ifndef TOVIK_SCC_LIST_H
#define TOVIK_SCC_LIST_H

#include <cstdint>

#include "scc_iterator.h"
#include "tovik_export.h"

// The link of a node of a singly linked list; `next` is null at the end.
template <class T>
class TOVIK_API SCC_SListNode {
 public:
  T *next;

  SCC_SListNode() : next(nullptr) {}
  // A copy is a new node, in no list.
  SCC_SListNode(SCC_SListNode const &) : next(nullptr) {}
  // Assignment copies the element, never its place in a list.
  SCC_SListNode &operator=(SCC_SListNode const &) { return *this; }
};

// The links of a node of a doubly linked list; `prev` is null at the front.
template <class T>
class TOVIK_API SCC_DListNode : public SCC_SListNode<T> {
 public:
  T *prev;

  SCC_DListNode() : prev(nullptr) {}
  SCC_DListNode(SCC_DListNode const &other) : SCC_SListNode<T>(other), prev(nullptr) {}
  SCC_DListNode &operator=(SCC_DListNode const &) { return *this; }
};

template <class T>
class TOVIK_API SCC_SListIterator;

// A singly linked list of T. It does not own its nodes: destroying the list
// unlinks them and they live on. Removing a node other than the head walks
// from the head to find its predecessor.
template <class T>
class TOVIK_API SCC_SList {
 public:
  T *head;

  SCC_SList() : head(nullptr) {}
  SCC_SList(SCC_SList const &) = delete;
  SCC_SList &operator=(SCC_SList const &) = delete;

  // Tells OnListEvent(6, null), then unlinks every node.
  virtual ~SCC_SList() {
    OnListEvent(EvCleared, nullptr);
    UnlinkAll();
  }
  // Called at every change: 1 after a node came in, 2 before it leaves,
  // 5 after the list was taken over as a whole, 6 before all nodes go.
  virtual void OnListEvent(int code, T *node) {
    (void)code;
    (void)node;
  }
  // Called with an iterator that starts a walk at this list, before its first step.
  virtual void OnIteratorStart(SCC_SListIterator<T> *iterator) { (void)iterator; }
  // Data a derived list may attach; none here.
  virtual void *GetListData() const { return nullptr; }

  T *GetHead() const { return head; }
  int IsEmpty() const { return head == nullptr; }
  // Walks the list.
  std::int32_t GetCount() const {
    std::int32_t count = 0;
    for (T *node = head; node != nullptr; node = node->next) ++count;
    return count;
  }

  // Links node at the front. Returns node.
  T *AddHead(T *node) {
    node->next = head;
    head = node;
    OnListEvent(EvAdded, node);
    return node;
  }
  // Links node at the end, walking there first. Returns node.
  T *AddTail(T *node) {
    node->next = nullptr;
    if (head == nullptr) {
      head = node;
    } else {
      T *last = head;
      while (last->next != nullptr) last = last->next;
      last->next = node;
    }
    OnListEvent(EvAdded, node);
    return node;
  }
  // Links node directly behind position; a null position means the front.
  T *InsertAfter(T *position, T *node) {
    if (position == nullptr) return AddHead(node);
    node->next = position->next;
    position->next = node;
    OnListEvent(EvAdded, node);
    return node;
  }
  // Unlinks node, telling OnListEvent(2, node) first. Returns node, or null
  // (and nothing is told) when node is not in this list.
  T *Remove(T *node) {
    if (node == nullptr) return nullptr;
    if (node == head) return RemoveHead();
    T *before = head;
    while (before != nullptr && before->next != node) before = before->next;
    if (before == nullptr) return nullptr;
    OnListEvent(EvDeleted, node);
    before->next = node->next;
    node->next = nullptr;
    return node;
  }
  // Unlinks the front node and returns it; null on an empty list.
  T *RemoveHead() {
    T *node = head;
    if (node == nullptr) return nullptr;
    OnListEvent(EvDeleted, node);
    head = node->next;
    node->next = nullptr;
    return node;
  }
  // Unlinks every node, front first, each with its OnListEvent(2, node).
  void RemoveAll() {
    while (head != nullptr) RemoveHead();
  }

 protected:
  // Unlinks every node without telling anyone; for destructors.
  void UnlinkAll() {
    while (T *node = head) {
      head = node->next;
      node->next = nullptr;
    }
  }
};

// A singly linked list that owns its nodes: they must come from new, and the
// list destroys those it still holds when it goes. Removing a node hands it
// back to the caller.
template <class T>
class TOVIK_API SCC_SDList : public SCC_SList<T> {
 public:
  SCC_SDList() = default;

  // Tells OnListEvent(6, null), then destroys every node, front first.
  ~SCC_SDList() override {
    this->OnListEvent(EvCleared, nullptr);
    DestroyAll();
  }

  // Tells OnListEvent(6, null), then destroys every node, front first.
  void DeleteAll() {
    this->OnListEvent(EvCleared, nullptr);
    DestroyAll();
  }

 private:
  void DestroyAll() {
    // Each node is unlinked before it is destroyed, so a node's destructor
    // never sees a list that still holds it.
    while (T *node = this->head) {
      this->head = node->next;
      node->next = nullptr;
      delete node;
    }
  }
};

// A doubly linked list of T with head and tail. It does not own its nodes:
// destroying the list unlinks them, clearing both links, and they live on.
template <class T>
class TOVIK_API SCC_DList : public SCC_SList<T> {
 public:
  T *tail;

  SCC_DList() : tail(nullptr) {}

  // Tells OnListEvent(6, null), then unlinks every node, clearing both links.
  ~SCC_DList() override {
    this->OnListEvent(EvCleared, nullptr);
    UnlinkAll();
  }

  T *GetTail() const { return tail; }

  // Links node at the front. Returns node.
  T *AddHead(T *node) {
    node->prev = nullptr;
    node->next = this->head;
    if (this->head != nullptr) {
      this->head->prev = node;
    } else {
      tail = node;
    }
    this->head = node;
    this->OnListEvent(EvAdded, node);
    return node;
  }
  // Links node at the end. Returns node.
  T *AddTail(T *node) {
    node->next = nullptr;
    node->prev = tail;
    if (tail != nullptr) {
      tail->next = node;
    } else {
      this->head = node;
    }
    tail = node;
    this->OnListEvent(EvAdded, node);
    return node;
  }
  // Links node directly in front of position; a null position means the end.
  T *InsertBefore(T *position, T *node) {
    if (position == nullptr) return AddTail(node);
    if (position == this->head) return AddHead(node);
    node->next = position;
    node->prev = position->prev;
    position->prev->next = node;
    position->prev = node;
    this->OnListEvent(EvAdded, node);
    return node;
  }
  // Links node directly behind position; a null position means the front.
  T *InsertAfter(T *position, T *node) {
    if (position == nullptr) return AddHead(node);
    if (position == tail) return AddTail(node);
    node->prev = position;
    node->next = position->next;
    position->next->prev = node;
    position->next = node;
    this->OnListEvent(EvAdded, node);
    return node;
  }
  // Tells OnListEvent(2, node), then unlinks node and clears its links.
  // Returns node. The node must be in this list.
  T *Remove(T *node) {
    if (node == nullptr) return nullptr;
    this->OnListEvent(EvDeleted, node);
    Unlink(node);
    return node;
  }
  // Unlinks the front node and returns it; null on an empty list.
  T *RemoveHead() { return Remove(this->head); }
  // Unlinks the end node and returns it; null on an empty list.
  T *RemoveTail() { return Remove(tail); }
  // Unlinks every node, front first, each with its OnListEvent(2, node).
  void RemoveAll() {
    while (this->head != nullptr) Remove(this->head);
  }

 protected:
  // Takes node out of its chain without telling anyone. Only end pointers
  // that name the node are corrected, so a node whose links are already
  // null leaves the list untouched.
  void Unlink(T *node) {
    if (node->prev != nullptr) {
      node->prev->next = node->next;
    } else if (this->head == node) {
      this->head = node->next;
    }
    if (node->next != nullptr) {
      node->next->prev = node->prev;
    } else if (tail == node) {
      tail = node->prev;
    }
    node->next = nullptr;
    node->prev = nullptr;
  }

  // Unlinks every node without telling anyone; for destructors.
  void UnlinkAll() {
    while (T *node = this->head) {
      this->head = node->next;
      node->next = nullptr;
      node->prev = nullptr;
    }
    tail = nullptr;
  }
};

// A forward cursor over a plain list. Its handle is the address of the node
// it stands on. It steps forward only: GetPrev does nothing and returns 0.
// It listens to nothing by itself; a derived list or container attaches it
// where it needs to hear of removals.
template <class T>
class TOVIK_API SCC_SListIterator : public SCC_Iterator {
 public:
  T *current;

  explicit SCC_SListIterator(T *node = nullptr) : current(node) {}
  // Stands on the head of list and tells the list that a walk starts.
  explicit SCC_SListIterator(SCC_SList<T> &list) : current(nullptr) { Start(list); }
  // A copy stands on the same node and listens to nothing.
  SCC_SListIterator(SCC_SListIterator const &other) : SCC_Iterator(other), current(other.current) {}
  // Takes the other iterator's place and its link to its source.
  SCC_SListIterator &operator=(SCC_SListIterator &other) {
    SCC_Iterator::operator=(other);
    current = other.current;
    return *this;
  }

  // Moves to the head of list and calls the list's OnIteratorStart.
  void Start(SCC_SList<T> &list) {
    current = list.head;
    list.OnIteratorStart(this);
  }

  SCC_Handle GetHandle() const override { return reinterpret_cast<SCC_Handle>(current); }
  void Clear() override { current = nullptr; }
  int GetNext() override {
    if (current != nullptr) current = current->next;
    return current != nullptr;
  }
  void Invalidate() override {
    Leave();
    current = nullptr;
  }
  int IsValid() const override { return current != nullptr; }
  int IsEmpty() const override { return current == nullptr; }
  // Stores node and returns the node stood on before.
  virtual T *SetCurrent(T *node) {
    T *previous = current;
    current = node;
    return previous;
  }

  T *operator*() const { return current; }
  // Returns a copy at the old place, then steps.
  SCC_SListIterator operator++(int) {
    SCC_SListIterator old(*this);
    GetNext();
    return old;
  }
};

// The cursor of SCC_DList<T>. It steps forward only, like its base.
template <class T>
class TOVIK_API SCC_DListIterator : public SCC_SListIterator<T> {
 public:
  explicit SCC_DListIterator(T *node = nullptr) : SCC_SListIterator<T>(node) {}
  explicit SCC_DListIterator(SCC_SList<T> &list) : SCC_SListIterator<T>(list) {}
  SCC_DListIterator(SCC_DListIterator const &other) : SCC_SListIterator<T>(other) {}
  SCC_DListIterator &operator=(SCC_DListIterator &other) {
    SCC_SListIterator<T>::operator=(other);
    return *this;
  }

  SCC_DListIterator operator++(int) {
    SCC_DListIterator old(*this);
    this->GetNext();
    return old;
  }
};

#endif  // TOVIK_SCC_LIST_H
