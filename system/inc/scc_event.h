// Events: the ring of listeners and the notification walk.
//
// A source (SCC_Event<T>, for int data SCC_Notifier) and its listeners
// (SCC_EventNode<T> and the hooks derived from it) form one circular, doubly
// linked ring in which the source stands as the end mark. Nodes are embedded
// in their owners, so joining and leaving never allocate; a node that is
// destroyed leaves its ring by itself, and a source that is destroyed sends its
// nodes away alive and alone. A notification walks the ring in order and calls
// every enabled listener. Listeners may leave, join, disable each other or
// notify again while a walk runs: every running walk is registered with its
// source, so that a node's removal moves the walks standing on it back to its
// predecessor, and no listener is skipped or visited twice.
//
// Layout of a source with two listeners and one running walk:
//
//   SCC_Event  { enabled, owner = null, prev = L2, next = L1, walks = W }
//   L1         { enabled, owner = event, prev = event, next = L2 }
//   L2         { enabled, owner = event, prev = L1, next = event }
//   W (stack)  { current = L1 or L2, outer = walk running before W, event }
//
// The library does not own listeners: whoever embeds a node keeps it alive.
// One thread only; there are no locks.
#ifndef TOVIK_SCC_EVENT_H
#define TOVIK_SCC_EVENT_H

#include <cstdint>

#include "tovik_export.h"

// The notification codes every source of the library shares. Data are a
// handle (see SCC_HandleToData) unless said otherwise.
enum SCC_EventCode {
  EvAdded = 1,        // one element came in
  EvDeleted,          // one element goes; it can still be read
  EvChanged,          // one element changed
  EvFocused,          // the focus changed
  EvReload,           // the contents as a whole changed; no data
  EvCleared,          // all elements go; no data
  EvRemapped,         // a block moved; data point at a record telling which
  EvPropertyChanged,  // a property changed
  EvSuspend,          // a mass change begins
  EvResume            // the mass change ends
};

template <class T>
class SCC_Event;
template <class T>
class SCC_EventIterator;

// A member of a ring. Alone it is a ring of one: owner null, prev and next
// pointing at itself. A copy is a new node, alone and enabled; assignment
// leaves a node's ring membership and enabled flag as they are.
template <class T>
class TOVIK_API SCC_EventNode {
 public:
  int enabled;             // 0: stays in the ring but is skipped
  SCC_Event<T> *owner;     // the source whose ring the node is in; null when alone
  SCC_EventNode<T> *prev;  // previous in the ring
  SCC_EventNode<T> *next;  // next in the ring

  SCC_EventNode() : enabled(1), owner(nullptr), prev(this), next(this) {}
  SCC_EventNode(SCC_EventNode const &) : SCC_EventNode() {}
  SCC_EventNode &operator=(SCC_EventNode const &) { return *this; }

  // Leaves the ring; running walks that stand on the node move back.
  virtual ~SCC_EventNode() { Leave(); }
  // The source whose ring the node is in, or null.
  virtual SCC_Event<T> *GetOwner() const final { return owner; }
  // The node after this one; the walk steps by it.
  virtual SCC_EventNode<T> *GetNextNode() const final { return next; }
  // Where a hook joins by priority: in front of the first node whose priority
  // is at most its own. Plain nodes stand in front of every hook.
  virtual int GetPriority() const { return 0x7FFFFFFF; }
  // Non-zero for the source, the end mark of its ring.
  virtual int IsEvent() const { return 0; }
  // Stores the flag and calls OnEventEnable, only when the value changes.
  virtual void EnableEvent(int on) {
    if (on != enabled) {
      enabled = on;
      OnEventEnable(on);
    }
  }
  // One notification. The walk ignores the result; it is for direct callers.
  virtual int OnNotification(int, T *) { return 0; }
  // Told by a leaving node of its source, before it is unlinked.
  virtual void OnRemoveNode(SCC_EventNode<T> *) {}
  // Told after EnableEvent changed the flag.
  virtual void OnEventEnable(int) {}

  // Takes the node out of its ring, telling the source first; alone afterwards.
  void Leave();
  // Leaves any former ring and joins the end of the event's ring, so that a
  // walk running on the event reaches it. A null event only leaves.
  void JoinAtEnd(SCC_Event<T> *event);
  // Leaves any former ring and joins the ring of other just before it; stays
  // alone when other is alone (or is this node).
  void JoinBefore(SCC_EventNode<T> *other);
};

// The source: the end mark of its own ring, whose next is the first listener.
// It is never in another ring (its owner stays null), and its enabled flag
// switches the whole source. Copies take over the listeners and the running
// walks of the source they copy (see SCC_Notifier).
template <class T>
class TOVIK_API SCC_Event : public SCC_EventNode<T> {
 public:
  // The innermost running walk; each walk links to the one running before it.
  SCC_EventIterator<T> *walks;

  SCC_Event() : walks(nullptr) {}
  // Takes over other's ring and running walks; other ends up empty.
  SCC_Event(SCC_Event &other) : SCC_EventNode<T>(other), walks(nullptr) { TakeOver(other); }
  // Sends its own listeners away, then takes over other's ring and walks.
  // Walks running on this event itself end quietly. Self-assignment does nothing.
  SCC_Event &operator=(SCC_Event &other) {
    if (&other != this) {
      Detach();
      TakeOver(other);
    }
    return *this;
  }
  // Sends every listener away, front first; they live on alone, their enabled
  // flags untouched. Walks still running on the event end quietly.
  ~SCC_Event() override { Detach(); }

  int IsEvent() const final { return 1; }
  // Moves every running walk that stands on the node back to its predecessor.
  void OnRemoveNode(SCC_EventNode<T> *node) final;

  // Calls OnNotification of every enabled listener in ring order, while the
  // source stays enabled. Listeners may change the ring meanwhile.
  void Notify(int code, T *data);

  // A source is the end mark of its own ring: it never leaves or joins one.
  void Leave() = delete;
  void JoinAtEnd(SCC_Event<T> *) = delete;
  void JoinBefore(SCC_EventNode<T> *) = delete;

 private:
  void Detach();
  void TakeOver(SCC_Event &other);
};

// A running notification walk, a local of Notify. Its own node stays alone.
template <class T>
class TOVIK_API SCC_EventIterator : public SCC_EventNode<T> {
 public:
  SCC_EventNode<T> *current;    // the node being visited; null ends the walk
  SCC_EventIterator<T> *outer;  // the walk that was running when this one started
  SCC_Event<T> *event;          // the source walked; null once it has gone

// The walk registers its own address with the source and takes it back in its
// destructor, which GCC cannot see.
#if defined(__GNUC__) && !defined(__clang__) && __GNUC__ >= 12
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdangling-pointer"
#endif
  explicit SCC_EventIterator(SCC_Event<T> *source)
      : current(source->next), outer(source->walks), event(source) {
    source->walks = this;
  }
#if defined(__GNUC__) && !defined(__clang__) && __GNUC__ >= 12
#pragma GCC diagnostic pop
#endif
  SCC_EventIterator(SCC_EventIterator const &) = delete;
  SCC_EventIterator &operator=(SCC_EventIterator const &) = delete;
  // Unregisters the walk, also when an exception passes through it.
  ~SCC_EventIterator() override {
    if (event == nullptr) return;
    for (SCC_EventIterator<T> **link = &event->walks; *link != nullptr; link = &(*link)->outer) {
      if (*link == this) {
        *link = outer;
        break;
      }
    }
  }
};

// A listener that calls a plain function. It must have one, or a derived class
// overrides OnNotification.
template <class T>
class TOVIK_API SCC_EventHook : public SCC_EventNode<T> {
 public:
  int priority;                 // higher stands further to the front
  int (*function)(int, T *);    // called with each notification

  SCC_EventHook() : priority(0), function(nullptr) {}
  explicit SCC_EventHook(int (*fn)(int, T *), int prio = 0) : priority(prio), function(fn) {}

  int GetPriority() const override { return priority; }
  int OnNotification(int code, T *data) override { return function(code, data); }

  // Leaves any former ring and joins the event's ring in front of the first
  // node whose priority is at most this hook's, else at the end: the ring runs
  // from high priority to low, the newest first among equals. A null event
  // only leaves.
  void AddHook(SCC_Event<T> *event);
};

// A listener that calls a member function of an object; function stays null.
template <class C, class T>
class TOVIK_API SCC_ObjectEventHook : public SCC_EventHook<T> {
 public:
  C *object;
  int (C::*method)(int, T *);

  SCC_ObjectEventHook() : object(nullptr), method(nullptr) {}
  SCC_ObjectEventHook(C *obj, int (C::*meth)(int, T *), int prio = 0)
      : object(obj), method(meth) {
    this->priority = prio;
  }

  int OnNotification(int code, T *data) final { return (object->*method)(code, data); }
};

// The everyday source, with int data. Copying takes the listeners over: after
// `b = a`, or a copy of a into b, a has none and every listener's owner is b,
// and walks running on a go on in b. Hence the non-const parameters.
class TOVIK_API SCC_Notifier : public SCC_Event<int> {
 public:
  explicit SCC_Notifier(int = 0) {}
  SCC_Notifier(SCC_Notifier &other) : SCC_Event<int>(other) {}
  SCC_Notifier &operator=(SCC_Notifier &other) {
    SCC_Event<int>::operator=(other);
    return *this;
  }
  ~SCC_Notifier() override;

  // The walk, with data as an int pointer.
  void Notify(int code, void *data) { SCC_Event<int>::Notify(code, static_cast<int *>(data)); }
  // 1 when the ring holds a node besides the notifier itself.
  int HasListeners() const { return next != this; }
  SCC_Notifier *GetNotifier() const { return const_cast<SCC_Notifier *>(this); }
  // From how many single changes on a source should send one general
  // notification instead. Nothing in the library reads it.
  static std::int32_t GetMassNotificationTreshold();
};

// ---------------------------------------------------------------------------
// Inline steps. Kept in the header so that walks and joins compile down to a
// few loads and stores at the caller.

template <class T>
inline void SCC_EventNode<T>::Leave() {
  if (owner != nullptr) owner->OnRemoveNode(this);
  prev->next = next;
  next->prev = prev;
  owner = nullptr;
  prev = next = this;
}

template <class T>
inline void SCC_EventNode<T>::JoinAtEnd(SCC_Event<T> *event) {
  Leave();
  if (event == nullptr) return;
  owner = event;
  prev = event->prev;
  next = event;
  prev->next = this;
  event->prev = this;
}

template <class T>
inline void SCC_EventNode<T>::JoinBefore(SCC_EventNode<T> *other) {
  Leave();
  if (other == this || other->owner == nullptr) return;
  owner = other->owner;
  prev = other->prev;
  next = other;
  prev->next = this;
  other->prev = this;
}

template <class T>
inline void SCC_EventHook<T>::AddHook(SCC_Event<T> *event) {
  this->Leave();
  if (event == nullptr) return;
  SCC_EventNode<T> *behind = event->next;
  while (behind != event && behind->GetPriority() > priority) behind = behind->next;
  this->owner = event;
  this->next = behind;
  this->prev = behind->prev;
  this->prev->next = this;
  behind->prev = this;
}

template <class T>
inline void SCC_Event<T>::OnRemoveNode(SCC_EventNode<T> *node) {
  for (SCC_EventIterator<T> *walk = walks; walk != nullptr; walk = walk->outer) {
    if (walk->current == node) walk->current = node->prev;
  }
}

template <class T>
inline void SCC_Event<T>::Notify(int code, T *data) {
  SCC_EventIterator<T> walk(this);
  // The current node is read again after every call, because a listener may
  // have left, and the source after every call, because it may have been
  // disabled, taken over by a copy or destroyed (which nulls current first).
  for (SCC_EventNode<T> *node = walk.current;
       node != nullptr && walk.event->enabled != 0 && node->IsEvent() == 0; node = walk.current) {
    if (node->enabled != 0) node->OnNotification(code, data);
    node = walk.current;
    if (node == nullptr) break;
    walk.current = node->GetNextNode();
  }
}

template <class T>
void SCC_Event<T>::Detach() {
  for (SCC_EventIterator<T> *walk = walks; walk != nullptr; walk = walk->outer) {
    walk->current = nullptr;
    walk->event = nullptr;
  }
  walks = nullptr;
  while (this->next != this) this->next->Leave();
}

template <class T>
void SCC_Event<T>::TakeOver(SCC_Event &other) {
  if (other.next != &other) {
    this->next = other.next;
    this->prev = other.prev;
    this->next->prev = this;
    this->prev->next = this;
    other.next = other.prev = &other;
    for (SCC_EventNode<T> *node = this->next; node != this; node = node->next) node->owner = this;
  }
  walks = other.walks;
  other.walks = nullptr;
  for (SCC_EventIterator<T> *walk = walks; walk != nullptr; walk = walk->outer) {
    walk->event = this;
    if (walk->current == &other) walk->current = this;
  }
}

#endif  // TOVIK_SCC_EVENT_H
