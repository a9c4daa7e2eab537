// SCC_StdCollection: the observable view of a set of objects that live
// somewhere else.
//
// A collection owns no object. It holds handles (SCC_Handle, 0 for none) of
// the objects of a source, keeps those that pass its filter in a list sorted by
// its comparator, tracks which of them are selected (the focus, kept sorted by
// handle value), and keeps that picture right while the objects come, go and
// change. A derived class supplies the source through the protected virtual
// operations _GetFirst, _GetNext, _GetPrev, _GetSlider, _SetSlider, GetEvent
// and UpdateHandle; in this base class they answer 0 or do nothing.
//
// Words used below:
//   list      the sorted handles that passed the filter at the last load
//   slider    the source's cursor, told as the handle it stands on (0: off)
//   position  the cursor in the list, an index (-1 or past the end: off)
//   focus     the selected handles, a subset of the list
//   temp item an object that passes the filter, found by walking the source
//             while reloading is not allowed
//   parent    a collection whose slider and focus this one's content follows
//
// The collection is a listener (its own node) on its source's notifier
// (SetEvent), hears per-object notifiers through EventHook listeners that
// ConnectEvent keeps, and follows its parent through parentHook. Everything
// it reports leaves through its own notifier, GetChangeEvent(), with the
// codes of SCC_EventCode: EvAdded after a handle joined the list, EvDeleted
// before one leaves it (the slider on it), EvChanged when an object changed in
// place (data 0: the temp item answer changed), EvFocused when a handle joined
// the focus, EvReload after a rebuild, and EvCleared, EvRemapped, EvSuspend,
// EvResume passed on. An object whose change moves it in the order is reported
// as EvDeleted, then EvAdded, keeping its focus and handle data.
//
// Reloading rebuilds the list from a walk over the source: see Reload. While
// notifications are suspended (Suspend, or EvSuspend from the source) single
// changes queue up and are settled, newest first, when the suspension ends;
// the list is in order after every settling.
//
// Handles are looked up as if by a scan of the list from its start (the first
// equal handle wins); lookups are linear in the list's size at worst. One
// thread only. Listeners run inside the operation that notifies them and may
// call back into the collection.
#ifndef TOVIK_SCC_COLLECTION_H
#define TOVIK_SCC_COLLECTION_H

#include <cstdint>

#include "scc_array.h"
#include "scc_array_iterator.h"
#include "scc_event.h"
#include "scc_map.h"
#include "sys_filter.h"
#include "tovik_export.h"

class TOVIK_API SCC_StdCollection : public SCC_EventNode<int> {
 public:
  // One notification held back while suspended.
  struct SuspendedEvent {
    int code;
    SCC_Handle handle;
  };

  // A cursor in the list, and the value type of the handle data. As the
  // collection's cursor only the iterator part is used, as handle data only
  // data. A copy keeps index, array and data, and listens to nothing;
  // assignment joins the other's notifier, as array iterators do.
  class TOVIK_API Position : public SCC_ArrayIterator<SCC_Handle> {
   public:
    Position() : data(0) {}
    Position(Position const &other) : SCC_ArrayIterator<SCC_Handle>(other), data(other.data) {}
    Position &operator=(Position const &other) {
      SCC_ArrayIterator<SCC_Handle>::operator=(other);
      data = other.data;
      return *this;
    }
    ~Position() override;

    // Takes other's index, array, data and policy, and listens to nothing.
    void CopyUnattached(Position const &other);

    // What a caller attached to a handle. Pointer-sized, so that it can hold
    // an address or a handle.
    std::intptr_t data;
  };

  // The listener on one per-object notifier, shared by every listed object
  // that reports through it. It calls OnNotification of its collection.
  class TOVIK_API EventHook : public SCC_ObjectEventHook<SCC_StdCollection, int> {
   public:
    // Target null (the collection sets itself), handler OnNotification,
    // priority 0, count 0.
    EventHook();
    ~EventHook() override;

    int count;  // how many connected objects share the hook
  };

  // An empty collection that loads nothing until AllowReload(1); then as
  // SetParent(parent).
  explicit SCC_StdCollection(SCC_StdCollection *parent = nullptr);
  // The copy stands in other's source ring just before it. It shares other's
  // arrays and filter, copies the handle data and hooks (the hooks, targeted
  // at the copy, join the notifiers where other's hooks stand), and takes
  // over other's listeners (other's change notifier ends up empty). Its
  // position is other's, unattached, and its parent hook joins other's.
  SCC_StdCollection(SCC_StdCollection &other);
  // As the copy constructor, on an existing collection. Nothing on self-assignment.
  SCC_StdCollection &operator=(SCC_StdCollection &other);
  // Leaves the parent, the list and the source in that order (see the class
  // description of the fields); listeners on the change notifier are sent
  // away alive.
  ~SCC_StdCollection() override;

  // Applies one notification from the source or a per-object notifier, as
  // the class comment says: a disabled node ignores it; the filter and the
  // list decide whether it concerns the collection; while suspended most
  // codes are queued; the position keeps its number. Always 0.
  int OnNotification(int code, int *data) override;
  // Enabling the node reloads by force (EvReload always follows); disabling
  // does nothing.
  void OnEventEnable(int on) override;

 protected:
  // Rebuilds the list from the source. force 0: listeners hear EvReload only
  // if the list changed; otherwise always. With reloading not allowed only the
  // temp item answer is brought up to date (EvChanged with data 0 if it
  // changed). While the source is walked the list is being rebuilt: Filter,
  // the source operations and GetEvent must not read or change it.
  virtual void Reload(int force);
  // The source, for derived classes. _GetNext from slider 0 reaches the first
  // object; each answers non-zero while the slider stands on an object.
  virtual SCC_Handle _GetSlider();
  virtual void _SetSlider(SCC_Handle handle);
  virtual int _GetFirst();
  virtual int _GetNext();
  virtual int _GetPrev();
  // As _GetFirst and _GetNext, among the objects that belong to the object
  // under the parent's slider. Here _GetFirst and _GetNext.
  virtual int _GetFirstByParentSlider();
  virtual int _GetNextByParentSlider();

 public:
  // Links the collection to a parent (null: none; the old parent's hook stays
  // where it was): the parent is allowed to reload and gets parentHook as a
  // listener. Then Reload(0).
  virtual void SetParent(SCC_StdCollection *newParent);
  // Stores the flag; from 0 to 1 it loads (Reload(0)).
  virtual void AllowReload(int allow);
  virtual int IsReloadAllowed();
  // The next object after handle in the source's order that passes the
  // filter, or 0; the list is not looked at and the slider is put back.
  virtual SCC_Handle FindNextTempItem(SCC_Handle handle);
  // Empties handle data, hooks, list and focus, and forbids reloading.
  virtual void Clear();

 protected:
  // The notifier of the object under the slider, or null (here always null).
  virtual SCC_Notifier *GetEvent();

 public:
  // Joins source's ring at its end; null is ignored.
  virtual void SetEvent(SCC_Notifier *source);
  // Moves node to the end of this collection's change notifier; null is ignored.
  virtual void SetNotificationHandler(SCC_EventNode<int> *node);
  // What the parent tells: EvAdded, EvChanged, EvFocused, EvReload reload;
  // EvDeleted deletes the objects under the parent's slider; EvCleared,
  // EvSuspend, EvResume go to OnNotification. Only events that
  // HandleNotificationsAllowed lets through. Always 0.
  virtual int OnParentNotification(int code, int *data);
  // Sets the enabled flag of the change notifier; returns the previous one.
  virtual int EnableNotifications(int on);
  // 1 for data 0; otherwise whether the handle is in the parent's focus (0
  // without a parent).
  virtual int HandleNotificationsAllowed(SCC_Handle data);
  virtual int IsSuspended() const;
  // 1 queues single changes; 0 settles the queue (once, however many 1s came).
  virtual void Suspend(int on);
  virtual int IsNotificationSmart() const;
  // With the flag, settling a long queue may reload instead of replaying it.
  virtual void SetNotificationSmart(int on);
  // Non-zero when the position is off.
  virtual int IsEmpty();
  virtual int HasFocus();
  // 1 without a filter, else the filter's answer. Derived classes may add tests.
  virtual int Filter(SCC_Handle handle);
  // The index-th focused handle; 0 for an index outside the focus.
  virtual SCC_Handle GetFocus(std::int32_t index);
  // mode 0 replaces the focus by the handle, 1 adds it, 2 adds it silently
  // (no slider work, no notification), -1 removes it; other values act as 1.
  // Handle 0, or one not in the list, only clears the focus. A handle that
  // joins the focus is reported by EvFocused with the slider on it; one that
  // leaves it (mode -1) by EvFocused with data 0.
  virtual void SetFocus(SCC_Handle handle, int mode);
  // Whether the handle is focused; index, if given, receives its place in
  // the focus, or where it would go.
  virtual bool IsInFocus(SCC_Handle handle, std::int32_t *index);
  virtual SCC_Handle GetSlider();
  // Puts position and slider on a listed handle; any other handle, or 0,
  // takes both off.
  virtual void SetSlider(SCC_Handle handle);
  // The index of the position; -1 when off.
  virtual std::int32_t GetPosition();
  // Puts position and slider on the index; outside the list both are off.
  virtual void SetPosition(std::int32_t index);
  virtual std::int32_t GetSize();
  // The handle at the index; 0 outside the list.
  virtual SCC_Handle GetAt(std::int32_t index);
  // The index of the handle; -1 for 0 or a handle not in the list.
  virtual std::int32_t GetPositionByHandle(SCC_Handle handle);
  // The data attached to the handle; 0 when there is none (nothing is made).
  virtual std::intptr_t GetHandleData(SCC_Handle handle);
  // Attaches data, then tells the source's notifier EvChanged with the
  // handle, so that every collection on the source hears of it. Without a
  // source the data is stored and nobody is told.
  virtual void SetHandleData(SCC_Handle handle, std::intptr_t data);
  // Walk the list with position and slider together: 1 while on an element.
  virtual int GetFirst();
  virtual int GetNext();
  virtual int GetPrev();

 protected:
  // Maps a handle at EvRemapped; data is what the source sent. Here 0.
  virtual SCC_Handle UpdateHandle(SCC_Handle handle, void *data);

 public:
  // Takes the filter (empty: none), then Reload(0).
  void SetFilter(SCC_SharedPointer<SYS_Filter> const &newFilter);
  // Empties the list, gives it the comparator (which must not be null) with
  // its reversed flag set for descending, then Reload(0). Items that compare
  // equal keep the source's order.
  void SetSort(SCC_Comparator<SCC_Handle> *comparator, int descending);
  // The same with a new comparator around compare; null orders by handle value.
  void SetSort(int (*compare)(SCC_Handle const &, SCC_Handle const &), int descending);

  // The notifier through which the collection reports.
  SCC_Notifier *GetChangeEvent() { return &changeEvent; }
  SCC_StdCollection *GetParent() const { return parent; }

 protected:
  // Keeps the collection hooked to the notifier of the object under the
  // slider: connect non-zero counts one more object on it (making the hook
  // unless the notifier is the collection's own source), 0 one less (dropping
  // the hook at none). The two pointers cache the last notifier and hook for
  // a caller in a loop; either may be null.
  void ConnectEvent(int connect, SCC_Notifier **notifier, EventHook **hook);
  // Joins node to the list's own notifier, so that it hears the array
  // notifications of the list (rows in, rows out, moves).
  void ListenToList(SCC_EventNode<int> &node) { handles.AddListener(node); }

 private:
  class Steps;  // the algorithms, in the collection*.cpp files
  friend class Steps;
  class Settling;  // the handles that a settling queue still holds

  SCC_SortableArray<SCC_Handle> focusHandles;    // the focus, by handle value
  SCC_Map<SCC_Handle, EventHook> eventHooks;     // by the notifier's address
  SCC_Notifier changeEvent;                      // what the collection reports
  SCC_Array<SuspendedEvent> suspendedEvents;     // held back, oldest first
  SCC_SortableArray<SCC_Handle> handles;         // the list
  SCC_Map<SCC_Handle, Position> handleData;      // by handle
  SCC_SharedPointer<SYS_Filter> filter;          // empty: all pass
  Position position;                             // the cursor in the list
  SCC_Notifier *event;                           // the source, not owned
  SCC_StdCollection *parent;                     // not owned; may be null
  int suspended;
  int reloadAllowed;
  int tempItemsSeen;                             // last answer of the temp item test
  int notificationSmart;
  SCC_ObjectEventHook<SCC_StdCollection, int> parentHook;  // on the parent's notifier

  // Lookup state: whether the list may hold a handle twice (a repeated
  // EvAdded, a remapping), and the index of the handle last found.
  int mayRepeat;
  std::int32_t lookupHint;
  // Counts reloads, so that a walk knows when a nested one rebuilt the list.
  std::uint32_t reloadCount;
  // While a suspended batch is settled: the handles still waiting, whose
  // places in the list may be out of order; null otherwise.
  Settling *settling;
};

#endif  // TOVIK_SCC_COLLECTION_H
