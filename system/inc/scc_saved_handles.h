// Saved handles: a sorted set of (handle, type) entries that stays right while
// the objects it names are deleted, cleared or moved.
//
// Each entry is an SCC_HandleWithEvent, a shared object that listens to its
// object's change notifier and hands every notification to the set it belongs
// to: EvDeleted drops the entry of that object, EvCleared empties the set, and
// EvRemapped (after the entry has updated its handle in OnUpdatePointers)
// makes the set sort itself again before its next lookup. The set holds its
// entries by shared pointer and keeps them ordered by type, then handle; the
// base class makes no entries: a derived set says in CreateByType what kind
// of entry (and so which notifier) belongs to a type.
//
// The set owns its entries; it owns neither the objects nor their notifiers.
// An entry that deletes itself (or its set clears) inside its own notification
// is not touched afterwards, and the walk of the notifier goes on.
#ifndef TOVIK_SCC_SAVED_HANDLES_H
#define TOVIK_SCC_SAVED_HANDLES_H

#include <cstdint>

#include "scc_array.h"
#include "scc_event.h"
#include "scc_shared.h"
#include "tovik_export.h"

class TOVIK_API SCC_SavedHandles;

// One saved handle: the object, its kind, and the set it reports to.
class TOVIK_API SCC_HandleWithEvent : public SCC_SharedBuffer, public SCC_EventNode<int> {
 public:
  SCC_HandleWithEvent(SCC_Handle objectHandle, std::int32_t objectType, SCC_SavedHandles *set)
      : type(objectType), handle(objectHandle), container(set) {}
  // The copy joins other's ring just in front of other and takes its fields.
  SCC_HandleWithEvent(SCC_HandleWithEvent &other);
  // Leaves its own ring, joins other's just in front of other and takes its
  // fields. Self-assignment changes nothing.
  SCC_HandleWithEvent &operator=(SCC_HandleWithEvent &other);
  ~SCC_HandleWithEvent() override;

  // The notifier of the object, which Save joins the entry to; null here: such
  // an entry stays in its set and hears nothing.
  virtual SCC_Notifier *GetChangeEvent();
  // Told of EvRemapped before the set is; a derived entry rewrites its handle
  // from the data. Nothing here.
  virtual void OnUpdatePointers(void *data);

  std::int32_t GetType() const { return type; }
  SCC_Handle GetHandle() const { return handle; }
  void SetContainer(SCC_SavedHandles *set) { container = set; }

  // EvRemapped goes to OnUpdatePointers first; then every code goes to the
  // set's HandleNotification, whose answer is returned. With no set, nothing
  // happens and the answer is 0. The entry may be gone when this returns.
  int OnNotification(int code, int *data) override;

 protected:
  friend class SCC_SavedHandles;

  std::int32_t type;
  SCC_Handle handle;
  SCC_SavedHandles *container;  // not owned
};

// The order of a set: by type, then by handle.
TOVIK_API int SCC_Compare(SCC_SharedPointer<SCC_HandleWithEvent> const &a,
                          SCC_SharedPointer<SCC_HandleWithEvent> const &b);

// The set. Copies share the entries (the array's buffer) and the needsSort
// flag; the entries keep reporting to the set that saved them, and to no set
// once that one is destroyed.
class TOVIK_API SCC_SavedHandles : public SCC_SortableArray<SCC_SharedPointer<SCC_HandleWithEvent>> {
 public:
  typedef SCC_SharedPointer<SCC_HandleWithEvent> Entry;

  SCC_SavedHandles();
  SCC_SavedHandles(SCC_SavedHandles const &other);
  SCC_SavedHandles &operator=(SCC_SavedHandles const &other);
  // The entries that report here report to no set from now on.
  ~SCC_SavedHandles() override;

 protected:
  // The entry for a new (handle, type); empty here, so that the base set
  // saves nothing.
  virtual Entry CreateByType(SCC_Handle handle, std::int32_t type);

 public:
  // What an entry heard: EvDeleted deletes (data as a handle, type), EvCleared
  // empties the set, EvRemapped sets needsSort; every other code is ignored.
  // Always 0.
  virtual int HandleNotification(SCC_Handle handle, std::int32_t type, int code, int *data);
  // Makes an entry by CreateByType, joins it to the end of its object's
  // notifier and inserts it in order. 1 when saved; 0 when the pair is
  // already there or CreateByType gave nothing.
  virtual int Save(SCC_Handle handle, std::int32_t type);
  // Removes the pair's entry: 1 when there was one, else 0.
  virtual int Delete(SCC_Handle handle, std::int32_t type);
  // The pair's entry, or an empty pointer. index, if not null, receives the
  // entry's index, or where it would be inserted. Sorts first if needsSort.
  virtual Entry Find(SCC_Handle handle, std::int32_t type, std::int32_t *index);

  unsigned char needsSort;  // handles may have changed: sort before the next lookup
};

#endif  // TOVIK_SCC_SAVED_HANDLES_H
