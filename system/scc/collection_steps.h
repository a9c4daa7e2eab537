// The algorithms behind SCC_StdCollection, shared by the collection*.cpp
// files of the library. Not installed.
#ifndef TOVIK_SCC_COLLECTION_STEPS_H
#define TOVIK_SCC_COLLECTION_STEPS_H

#include <cstdint>
#include <vector>

#include "scc_collection.h"

namespace tovik_detail {

// A set of handles by open addressing, for the passes that must tell a
// handle met before: linear in the number of handles, whatever their values.
class HandleSet {
 public:
  explicit HandleSet(std::size_t expected);
  // Adds the handle; false if it was there already.
  bool Insert(SCC_Handle handle);

 private:
  void Grow();
  std::size_t Slot(SCC_Handle handle) const;

  std::vector<SCC_Handle> slots;  // 0 marks a free slot; handle 0 has its own flag
  std::size_t used;
  int shift;
  bool hasZero;
};

}  // namespace tovik_detail

class SCC_StdCollection::Steps {
 public:
  // --- Lookups (collection.cpp) -------------------------------------------

  // The index of the first item equal to handle among count items, or -1.
  static std::int32_t Scan(SCC_Handle const *items, std::int32_t count, SCC_Handle handle);
  // The index of the handle in the list, as a scan from the start finds it,
  // or -1. byOrder lets the lookup try the comparator's binary search first,
  // for handles that the source has named as its objects (the comparator may
  // read them).
  static std::int32_t LookUp(SCC_StdCollection &c, SCC_Handle handle, bool byOrder);
  // Whether the list holds a handle twice; resets the repeat flag to match.
  static void CheckRepeats(SCC_StdCollection &c);
  // Copies other's hooks' ring places for the hooks c copied from it, with c
  // as their target.
  static void AdoptHooks(SCC_StdCollection &c, SCC_StdCollection &other);

  // --- Reload (collection_reload.cpp) -------------------------------------

  class Walk;
  // Whether a reload may collect the handles and sort them at the end.
  static bool MayCollect(SCC_StdCollection &c);
  // Keeps the focused handles that are still listed, in a new focus array.
  static void RebuildFocus(SCC_StdCollection &c);
  // Removes the hook of a notifier when no object counts on it any more.
  static void DropIdleHook(SCC_StdCollection &c, SCC_Notifier *notifier);

  // --- Notification (collection_notification.cpp) -------------------------

  // EvAdded, and EvChanged or EvFocused for a handle that came into view.
  static void InsertObject(SCC_StdCollection &c, SCC_Handle handle, bool repeated);
  // EvDeleted, with position and slider on the handle.
  static void DeleteObject(SCC_StdCollection &c, SCC_Handle handle);
  // EvChanged or EvFocused for a listed handle, on which cursor stands.
  static void ChangeObject(SCC_StdCollection &c, int code, SCC_Handle handle, int passes,
                           Position &cursor);
  // EvRemapped.
  static void Remap(SCC_StdCollection &c, int *data);
  // Where the handle stands after listeners ran, index being where it stood.
  static std::int32_t StillAt(SCC_StdCollection &c, std::int32_t index, SCC_Handle handle);
  // Whether the listed handle at index stands in order.
  static bool InPlace(SCC_StdCollection &c, std::int32_t index);
  // Where the handle goes: behind its equals in the list without the item at
  // skip (-1: none), counted without it.
  static std::int32_t PlaceOf(SCC_StdCollection &c, SCC_Handle handle, std::int32_t skip);
  // Inserts the handle at its place; its index.
  static std::int32_t AddToList(SCC_StdCollection &c, SCC_Handle handle);
  // Moves the handle at from to its sorted place; the new index.
  static std::int32_t MoveInList(SCC_StdCollection &c, std::int32_t from, SCC_Handle handle);
};

// The handles that a settling queue has not replayed yet (the one being
// replayed included), and those of any settling that this one runs inside.
// They may stand where their old keys put them, so the order of the list is
// judged without them. Made on the stack by Suspend(0), which it tells the
// collection of for its lifetime.
class SCC_StdCollection::Settling : public _SCC_Array::ItemSet {
 public:
  // queued maps each queued handle to its place in the replay order.
  Settling(SCC_StdCollection &c, SCC_Map<SCC_Handle, int> const &queued);
  ~Settling() override;
  Settling(Settling const &) = delete;
  Settling &operator=(Settling const &) = delete;

  int Contains(void const *item) const override;

  std::int32_t next;  // the place in the replay order being replayed

 private:
  SCC_StdCollection &collection;
  SCC_Map<SCC_Handle, int> const &keptAt;
  Settling *const outer;
};

#endif  // TOVIK_SCC_COLLECTION_STEPS_H
