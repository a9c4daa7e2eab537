// SCC_StdCollection: loading the list from the source, the filter, the sort
// order and the hooks on per-object notifiers.
//
// A reload walks the source from its first object to its last. Each object
// that passes the filter goes into the list behind the items that compare
// equal to it, unless the very handle is there already; so the list ends up
// sorted, with equal items in the source's order and each handle once. Done
// literally, that is an insertion into a sorted array per object, which moves
// half the array each time for a source that is not in order: quadratic.
// When nobody who could see the single insertions listens to the list (only
// cursors of the class that stand on nothing) the walk only collects the handles,
// and the list is made at the end: the later copies of repeated handles are
// dropped and the rest sorted stably, which gives the same list in n log n.
// The walk itself, with its calls of GetSlider, Filter and ConnectEvent per
// object, is the same on both paths.
#include <algorithm>
#include <climits>
#include <cstring>
#include <functional>
#include <typeinfo>
#include <vector>

#include "collection_steps.h"
#include "ssm.h"

namespace {

// The order of the list's comparator as a plain function object: the typed
// comparator's function (or SCC_Compare) called directly when the list has
// the library's own comparator type, its virtual Compare otherwise.
class ListOrder {
 public:
  explicit ListOrder(SCC_ComparatorBase *order)
      : comparator(order), function(nullptr), reversed(false), typed(false) {
    if (typeid(*order) == typeid(SCC_Comparator<SCC_Handle>)) {
      auto *const typedOrder = static_cast<SCC_Comparator<SCC_Handle> *>(order);
      function = typedOrder->function;
      reversed = typedOrder->reversed != 0;
      typed = true;
    }
  }

  // Ordered by handle value alone, ascending (1) or descending (-1); 0 for
  // any other order.
  int ByValue() const {
    if (!typed || function != nullptr) return 0;
    return reversed ? -1 : 1;
  }

  int Compare(SCC_Handle a, SCC_Handle b) const {
    if (!typed) return comparator->Compare(&a, &b);
    int const r = function != nullptr ? function(a, b) : SCC_Compare(a, b);
    if (!reversed) return r;
    return r == INT_MIN ? INT_MAX : -r;
  }

 private:
  SCC_ComparatorBase *comparator;
  SCC_Comparator<SCC_Handle>::CompareFunction function;
  bool reversed;
  bool typed;
};

// A stable merge sort that stays inside its arrays whatever the comparator
// answers: a comparator that is no order gives some order, never a fault.
void StableSort(std::vector<SCC_Handle> &items, ListOrder const &order) {
  std::size_t const n = items.size();
  constexpr std::size_t kRun = 16;
  // Insertion sort of short runs: an item moves left only past greater ones.
  for (std::size_t lo = 0; lo < n; lo += kRun) {
    std::size_t const hi = std::min(lo + kRun, n);
    for (std::size_t i = lo + 1; i < hi; ++i) {
      SCC_Handle const item = items[i];
      std::size_t j = i;
      while (j > lo && order.Compare(items[j - 1], item) > 0) {
        items[j] = items[j - 1];
        --j;
      }
      items[j] = item;
    }
  }
  if (n <= kRun) return;
  std::vector<SCC_Handle> buffer(n);
  std::vector<SCC_Handle> *from = &items;
  std::vector<SCC_Handle> *to = &buffer;
  for (std::size_t width = kRun; width < n; width *= 2) {
    for (std::size_t lo = 0; lo < n; lo += 2 * width) {
      std::size_t const mid = std::min(lo + width, n);
      std::size_t const hi = std::min(lo + 2 * width, n);
      std::size_t a = lo;
      std::size_t b = mid;
      std::size_t out = lo;
      // On a tie the left run goes first: that keeps the sort stable.
      while (a < mid && b < hi) {
        (*to)[out++] = order.Compare((*from)[b], (*from)[a]) < 0 ? (*from)[b++] : (*from)[a++];
      }
      while (a < mid) (*to)[out++] = (*from)[a++];
      while (b < hi) (*to)[out++] = (*from)[b++];
    }
    std::swap(from, to);
  }
  if (from != &items) items.swap(buffer);
}

bool IsSorted(std::vector<SCC_Handle> const &items, ListOrder const &order) {
  for (std::size_t i = 1; i < items.size(); ++i) {
    if (order.Compare(items[i - 1], items[i]) > 0) return false;
  }
  return true;
}

}  // namespace

// ---------------------------------------------------------------------------
// The two walks

class SCC_StdCollection::Steps::Walk {
 public:
  explicit Walk(SCC_StdCollection &collection)
      : notifier(nullptr), hook(nullptr), c(collection), unique(false), guard(*this) {
    guard.JoinAtEnd(&c.eventHooks);
  }

  // The literal walk: each object that passes is inserted as it is met.
  void OneByOne() {
    if (c._GetFirst() == 0) return;
    do {
      SCC_Handle const handle = c.GetSlider();
      if (c.Filter(handle) != 0) Insert(handle);
      c.ConnectEvent(1, &notifier, &hook);
    } while (c._GetNext() != 0);
  }

  // The collecting walk. Should a callback reload the collection during the
  // walk, the nested reload clears what the literal walk would have inserted
  // so far and fills the list again: the handles collected before it are
  // dropped, and the rest of the walk goes on one by one.
  void Collecting() {
    std::uint32_t const reloads = c.reloadCount;
    bool nested = false;
    if (c._GetFirst() != 0) {
      do {
        SCC_Handle const handle = c.GetSlider();
        int const passes = c.Filter(handle);
        nested = nested || c.reloadCount != reloads;
        if (passes != 0) {
          if (nested) {
            Insert(handle);
          } else {
            collected.push_back(handle);
          }
        }
        c.ConnectEvent(1, &notifier, &hook);
        nested = nested || c.reloadCount != reloads;
        if (nested) collected.clear();
      } while (c._GetNext() != 0);
    }
    if (nested || c.reloadCount != reloads) return;
    Materialise();
    unique = true;
  }

  // Whether the list is known to hold each handle once.
  bool IsUnique() const { return unique; }

  SCC_Notifier *notifier;
  EventHook *hook;

 private:
  // Behind the items equal to handle, unless the very handle is among them;
  // a plain store, with no EvChanged from the list.
  void Insert(SCC_Handle handle) {
    std::int32_t first = 0;
    std::int32_t last = 0;
    c.handles.FindItemPosition(handle, first, last);
    SCC_Handle const *const items = c.handles.GetData();
    for (std::int32_t k = first; k < last; ++k) {
      if (items[k] == handle) return;
    }
    c.handles.Insert(last, 1);
    if (c.handles.InBounds(last)) c.handles[last] = handle;
  }

  // The list the literal walk builds from the same handles: each handle
  // once, at its first place, sorted stably.
  void Materialise() {
    if (collected.empty()) return;
    tovik_detail::HandleSet seen(collected.size());
    std::size_t kept = 0;
    for (SCC_Handle const handle : collected) {
      if (seen.Insert(handle)) collected[kept++] = handle;
    }
    collected.resize(kept);
    SCC_SharedPointer<SCC_ComparatorBase> const comparator = c.handles.GetComparator();
    ListOrder const order(comparator);
    if (order.ByValue() != 0) {
      // The handles are the keys and each is there once: any sort is stable.
      if (order.ByValue() > 0) {
        std::sort(collected.begin(), collected.end());
      } else {
        std::sort(collected.begin(), collected.end(), std::greater<SCC_Handle>());
      }
    } else if (!IsSorted(collected, order)) {
      StableSort(collected, order);
    }
    std::int32_t const size = static_cast<std::int32_t>(collected.size());
    c.handles.SetSize(size);
    if (c.handles.GetSize() == size) {
      std::memcpy(&c.handles[0], collected.data(), collected.size() * sizeof(SCC_Handle));
    }
  }

  // The cached hook is forgotten when a callback of the walk removes it, or
  // all hooks, from the collection: the walk listens to the hook map.
  class CacheGuard : public SCC_EventNode<int> {
   public:
    explicit CacheGuard(Walk &w) : walk(w) {}
    int OnNotification(int code, int *data) override {
      bool const gone = code == EvDeleted ? static_cast<void *>(data) == walk.hook
                                          : code == EvCleared || code == EvReload;
      if (gone) {
        walk.notifier = nullptr;
        walk.hook = nullptr;
      }
      return 0;
    }

   private:
    Walk &walk;
  };

  SCC_StdCollection &c;
  std::vector<SCC_Handle> collected;
  bool unique;
  CacheGuard guard;
};

// Whether the collecting walk gives what the literal one would: the list must
// be empty (it was just cleared, unless a nested reload filled it again) and
// have a comparator, and nobody may listen to it who would notice single
// insertions. Cursors of the class that stand on nothing (position, and the
// object cursors of notifications running further out, all cleared with the
// list) ignore them.
bool SCC_StdCollection::Steps::MayCollect(SCC_StdCollection &c) {
  if (c.handles.GetSize() != 0 || !c.handles.GetComparator()) return false;
  SCC_Notifier *const listEvent = c.handles.GetNotifier();
  for (SCC_EventNode<int> const *node = listEvent->next; node != listEvent; node = node->next) {
    if (typeid(*node) != typeid(Position)) return false;
    if (static_cast<Position const *>(node)->GetFocus() >= 0) return false;
  }
  return true;
}

void SCC_StdCollection::Steps::RebuildFocus(SCC_StdCollection &c) {
  SCC_SortableArray<SCC_Handle> const old(c.focusHandles);
  SCC_SortableArray<SCC_Handle> kept;
  kept.SetComparator(new SCC_Comparator<SCC_Handle>());
  for (std::int32_t i = 0; i < old.GetSize(); ++i) {
    SCC_Handle const handle = old.GetData()[i];
    if (handle == 0) continue;
    std::int32_t first = 0;
    std::int32_t last = 0;
    c.handles.FindItemPosition(handle, first, last);
    SCC_Handle const *const items = c.handles.GetData();
    for (std::int32_t k = first; k < last; ++k) {
      if (items[k] == handle) {
        kept.Add(handle);
        break;
      }
    }
  }
  c.focusHandles = kept;
  c.focusHandles.Sort(1);
}

// ---------------------------------------------------------------------------
// Reload

void SCC_StdCollection::Reload(int force) {
  if (reloadAllowed == 0) {
    int const seen = FindNextTempItem(0) != 0 ? 1 : 0;
    if (seen == tempItemsSeen) return;
    tempItemsSeen = seen;
    changeEvent.Notify(EvChanged, nullptr);
    return;
  }
  ++reloadCount;
  SCC_SortableArray<SCC_Handle> const before(handles);
  handles.Clear();
  mayRepeat = 0;
  SCC_Handle parentSlider = 0;
  if (parent != nullptr) {
    parent->AllowReload(1);
    parentSlider = parent->GetSlider();
  }
  SetSlider(0);
  Steps::Walk walk(*this);
  ConnectEvent(1, &walk.notifier, &walk.hook);
  if (Steps::MayCollect(*this)) {
    walk.Collecting();
  } else {
    walk.OneByOne();
  }
  if (walk.IsUnique()) {
    mayRepeat = 0;
  } else {
    Steps::CheckRepeats(*this);
  }
  if (parent != nullptr) parent->SetSlider(parentSlider);

  std::int32_t const size = handles.GetSize();
  bool const same = before.GetSize() == size &&
                    (size == 0 || std::memcmp(before.GetData(), handles.GetData(),
                                              static_cast<std::size_t>(size) * sizeof(SCC_Handle)) == 0);
  if (same && force == 0) return;
  tempItemsSeen = focusHandles.GetSize() > 0 ? 1 : 0;
  Steps::RebuildFocus(*this);
  changeEvent.Notify(EvReload, nullptr);
}

void SCC_StdCollection::AllowReload(int allow) {
  int const was = reloadAllowed;
  reloadAllowed = allow;
  if (was == 0 && allow == 1) Reload(0);
}

int SCC_StdCollection::IsReloadAllowed() { return reloadAllowed; }

// ---------------------------------------------------------------------------
// Filter and order

int SCC_StdCollection::Filter(SCC_Handle handle) {
  if (!filter) return 1;
  return filter->IsTrue(handle);
}

void SCC_StdCollection::SetFilter(SCC_SharedPointer<SYS_Filter> const &newFilter) {
  filter = newFilter;
  Reload(0);
}

void SCC_StdCollection::SetSort(SCC_Comparator<SCC_Handle> *comparator, int descending) {
  SSM_CHECK(comparator != nullptr, "Tovik: SetSort needs a comparator");
  if (comparator == nullptr) return;
  handles.Clear();
  mayRepeat = 0;
  handles.SetComparator(comparator);
  comparator->reversed = descending != 0 ? 1 : 0;
  Reload(0);
}

void SCC_StdCollection::SetSort(int (*compare)(SCC_Handle const &, SCC_Handle const &),
                                int descending) {
  SetSort(new SCC_Comparator<SCC_Handle>(compare), descending);
}

// ---------------------------------------------------------------------------
// Hooks on per-object notifiers

void SCC_StdCollection::ConnectEvent(int connect, SCC_Notifier **notifier, EventHook **hook) {
  SCC_Notifier *const objectEvent = GetEvent();
  if (objectEvent == nullptr) return;
  SCC_Handle const key = reinterpret_cast<SCC_Handle>(objectEvent);
  EventHook *found = nullptr;
  if (notifier != nullptr && *notifier == objectEvent) {
    found = hook != nullptr ? *hook : nullptr;
  } else {
    found = eventHooks.Find(key);
    if (found == nullptr && connect != 0 && objectEvent != owner) {
      found = eventHooks.Insert(key);
      if (found != nullptr) {
        found->object = this;
        found->AddHook(objectEvent);
      }
    }
    if (notifier != nullptr) *notifier = objectEvent;
    if (hook != nullptr) *hook = found;
  }
  if (found == nullptr) return;
  if (connect != 0) {
    // A notifier that went away sent its hooks off; one at the same address
    // later is joined again rather than counted without hearing anything.
    if (found->GetOwner() != objectEvent) found->AddHook(objectEvent);
    ++found->count;
    return;
  }
  if (--found->count > 0) return;
  if (notifier != nullptr && *notifier == objectEvent) *notifier = nullptr;
  if (hook != nullptr && *hook == found) *hook = nullptr;
  eventHooks.Remove(key);
}

void SCC_StdCollection::Steps::DropIdleHook(SCC_StdCollection &c, SCC_Notifier *notifier) {
  if (notifier == nullptr) return;
  SCC_Handle const key = reinterpret_cast<SCC_Handle>(notifier);
  EventHook const *const hook = c.eventHooks.Find(key);
  if (hook != nullptr && hook->count <= 0) c.eventHooks.Remove(key);
}
