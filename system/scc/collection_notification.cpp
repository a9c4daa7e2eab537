// SCC_StdCollection: applying what the source, per-object notifiers and the
// parent report, and holding changes back while suspended.
//
// OnNotification applies one change to the list, the focus, the position
// and the slider, and tells the collection's listeners in a fixed order:
//   1. A disabled node ignores everything.
//   2. EvSuspend and EvResume suspend and settle, and are passed on.
//   3. EvRemapped maps every handle (also while suspended) and is passed on.
//   4. An event about a handle that neither passes the filter nor is listed
//      is dropped, and so are additions and changes with no handle.
//   5. While suspended, EvReload, EvCleared and EvDeleted act at once (a
//      deletion also drops what the queue holds about the handle); every
//      other code is queued, unless the queue's last entry is the same event.
//   6. The position is saved as a number; the slider goes on the handle for
//      every code but EvAdded and EvChanged; a cursor on the handle's place
//      follows the list through the change.
//   7. The change itself (below), with the listeners' notifications.
//   8. The position gets its saved number back, whatever moved meanwhile,
//      and the slider goes on the handle standing there.
#include <algorithm>
#include <cstring>

#include "collection_steps.h"

namespace {

int *AsData(SCC_Handle handle) { return static_cast<int *>(SCC_HandleToData(handle)); }

}  // namespace

// ---------------------------------------------------------------------------
// The single changes

// The handle joins the list behind its equals, position and slider on it.
void SCC_StdCollection::Steps::InsertObject(SCC_StdCollection &c, SCC_Handle handle,
                                           bool repeated) {
  std::int32_t const at = AddToList(c, handle);
  if (repeated) c.mayRepeat = 1;
  c.position.Restart(c.handles, at);
  c.lookupHint = at;
  c._SetSlider(handle);
  c.ConnectEvent(1, nullptr, nullptr);
  c.changeEvent.Notify(EvAdded, AsData(handle));
}

// Where handle was listed at index before listeners ran: the same index if
// it still holds the handle, else wherever the handle stands now (-1: gone).
std::int32_t SCC_StdCollection::Steps::StillAt(SCC_StdCollection &c, std::int32_t index,
                                              SCC_Handle handle) {
  if (c.handles.InBounds(index) && c.handles.GetData()[index] == handle) return index;
  return LookUp(c, handle, false);
}

void SCC_StdCollection::Steps::DeleteObject(SCC_StdCollection &c, SCC_Handle handle) {
  std::int32_t first = 0;
  std::int32_t last = 0;
  c.focusHandles.FindItemPosition(handle, first, last);
  for (std::int32_t k = first; k < last; ++k) {
    if (c.focusHandles.GetData()[k] == handle) {
      c.focusHandles.Delete(k, 1);
      break;
    }
  }
  if (c.position.IsValid() == 0) return;  // the handle is not listed
  c.ConnectEvent(0, nullptr, nullptr);
  Position place;
  place.CopyUnattached(c.position);
  c.changeEvent.Notify(EvDeleted, AsData(handle));
  std::int32_t const at = StillAt(c, place.GetFocus(), handle);
  if (at >= 0) c.handles.Delete(at, 1);
  c.handleData.Remove(handle);
}

void SCC_StdCollection::Steps::ChangeObject(SCC_StdCollection &c, int code, SCC_Handle handle,
                                           int passes, Position &cursor) {
  c.position = cursor;
  c._SetSlider(handle);
  std::int32_t const index = c.position.GetFocus();
  if (passes != 0 && InPlace(c, index)) {
    c.changeEvent.Notify(code, AsData(handle));
    return;
  }

  // It leaves, or moves: listeners see a deletion, then an addition.
  std::int32_t focusIndex = -1;
  bool const focused = c.IsInFocus(handle, &focusIndex);
  if (focused && c.focusHandles.InBounds(focusIndex) != 0) c.focusHandles.Delete(focusIndex, 1);
  c.changeEvent.Notify(EvDeleted, AsData(handle));
  // A moving object keeps its hook: dropped and made again, it would join
  // the ring that may be reporting this very change behind the running walk,
  // and hear it a second time.
  SCC_Notifier *const objectEvent = passes != 0 ? c.GetEvent() : nullptr;
  if (objectEvent != nullptr) {
    EventHook *const hook = c.eventHooks.Find(reinterpret_cast<SCC_Handle>(objectEvent));
    if (hook != nullptr) --hook->count;
  } else {
    c.ConnectEvent(0, nullptr, nullptr);
  }
  std::int32_t const at = StillAt(c, index, handle);
  if (passes == 0) {
    if (at >= 0) c.handles.Delete(at, 1);
    return;  // its handle data stays
  }
  std::int32_t const moved = at >= 0 ? MoveInList(c, at, handle) : AddToList(c, handle);
  c.position.Restart(c.handles, moved);
  c.lookupHint = moved;
  c.ConnectEvent(1, nullptr, nullptr);
  DropIdleHook(c, objectEvent);
  if (focused) c.focusHandles.Add(handle);
  c._SetSlider(handle);
  c.changeEvent.Notify(EvAdded, AsData(handle));
}

// While a batch is settled, objects still waiting in the queue may stand
// where their old keys put them. An object is in place only if it is in order
// with its neighbours and with the nearest settled objects; the bisection's
// place is taken if it lies in order with the nearest settled objects, and
// otherwise the bisection runs again passing over the waiting ones. The
// settled objects thus stay in order, and when the queue is done, all are.
bool SCC_StdCollection::Steps::InPlace(SCC_StdCollection &c, std::int32_t index) {
  if (c.handles.InBounds(index) == 0 || c.handles.ItemInValidPlace(index) == 0) return false;
  return c.settling == nullptr || c.handles.ItemInValidPlace(index, c.settling) != 0;
}

std::int32_t SCC_StdCollection::Steps::PlaceOf(SCC_StdCollection &c, SCC_Handle handle,
                                              std::int32_t skip) {
  if (!c.handles.GetComparator()) return c.handles.GetSize() - (skip >= 0 ? 1 : 0);
  std::int32_t first = 0;
  std::int32_t last = 0;
  c.handles.FindItemPosition(handle, first, last, nullptr, skip);
  if (c.settling != nullptr && c.handles.FitsAt(handle, last, skip, c.settling) == 0) {
    c.handles.FindItemPosition(handle, first, last, nullptr, skip, c.settling);
  }
  return last;
}

std::int32_t SCC_StdCollection::Steps::AddToList(SCC_StdCollection &c, SCC_Handle handle) {
  std::int32_t const at = PlaceOf(c, handle, -1);
  c.handles.InsertAt(at, handle);
  return at;
}

// Delete(from, 1) followed by Add(handle), done as one move of the items
// between the two places, with the notifications of both to the list's
// listeners. Returns the new index.
std::int32_t SCC_StdCollection::Steps::MoveInList(SCC_StdCollection &c, std::int32_t from,
                                                 SCC_Handle handle) {
  std::int32_t const size = c.handles.GetSize();
  SCC_Notifier *const listEvent = c.handles.GetNotifier();
  _SCC_Array::UpdateRecord gone = {_SCC_Array::OpDelete, from, 1};
  listEvent->Notify(EvDeleted, AsData(from + 1));
  listEvent->Notify(EvRemapped, reinterpret_cast<int *>(&gone));
  if (c.handles.GetSize() != size || c.handles.GetData()[from] != handle) {
    // A listener changed the list, which list listeners must not do: the
    // two steps are taken for real.
    std::int32_t const at = LookUp(c, handle, false);
    if (at >= 0) c.handles.Delete(at, 1);
    return AddToList(c, handle);
  }
  std::int32_t const to = PlaceOf(c, handle, from);
  SCC_Handle *const items = &c.handles[0];
  if (to <= from) {
    std::memmove(items + to + 1, items + to, static_cast<std::size_t>(from - to) * sizeof(SCC_Handle));
  } else {
    std::memmove(items + from, items + from + 1,
                 static_cast<std::size_t>(to - from) * sizeof(SCC_Handle));
  }
  items[to] = handle;
  _SCC_Array::UpdateRecord made = {_SCC_Array::OpInsert, to, 1};
  listEvent->Notify(EvRemapped, reinterpret_cast<int *>(&made));
  listEvent->Notify(EvAdded, AsData(to + 1));
  listEvent->Notify(EvChanged, AsData(to + 1));
  return to;
}

void SCC_StdCollection::Steps::Remap(SCC_StdCollection &c, int *data) {
  for (std::int32_t i = 0; i < c.handles.GetSize(); ++i) {
    c.handles.SetAt(i, c.UpdateHandle(c.handles.GetData()[i], data));
  }
  for (std::int32_t i = 0; i < c.focusHandles.GetSize(); ++i) {
    c.focusHandles.SetAt(i, c.UpdateHandle(c.focusHandles.GetData()[i], data));
  }
  for (std::int32_t i = 0; i < c.suspendedEvents.GetSize(); ++i) {
    SCC_Handle const mapped = c.UpdateHandle(c.suspendedEvents.GetAt(i).handle, data);
    if (c.suspendedEvents.InBounds(i) != 0) c.suspendedEvents[i].handle = mapped;
  }
  c.focusHandles.Sort(1);
  CheckRepeats(c);
  c.changeEvent.Notify(EvRemapped, data);
}

// ---------------------------------------------------------------------------
// OnNotification

int SCC_StdCollection::OnNotification(int code, int *data) {
  if (enabled == 0) return 0;
  switch (code) {
    case EvSuspend:
      Suspend(1);
      changeEvent.Notify(code, data);
      return 0;
    case EvResume:
      Suspend(0);
      changeEvent.Notify(code, data);
      return 0;
    case EvRemapped:
      Steps::Remap(*this, data);
      return 0;
    default:
      break;
  }

  SCC_Handle const handle = SCC_DataToHandle(data);
  // Additions and changes must name an object: with no handle there is
  // nothing to put into the list.
  if (handle == 0 && (code == EvAdded || code == EvChanged || code == EvFocused)) return 0;
  int passes = 1;
  std::int32_t index = -1;
  if (handle != 0) {
    passes = Filter(handle);
    // An event that passes and is queued needs no place in the list yet.
    bool const queues =
        suspended != 0 && code != EvDeleted && code != EvReload && code != EvCleared;
    if (passes == 0 || !queues) {
      // Codes 1 to 4 name an object of the source, which the comparator can read.
      index = Steps::LookUp(*this, handle, code >= EvAdded && code <= EvFocused);
      if (passes == 0 && index < 0) return 0;
    }
  }
  bool const present = index >= 0;

  if (suspended != 0) {
    if (code == EvReload || code == EvCleared) {
      suspendedEvents.Clear();
    } else if (code == EvDeleted) {
      for (std::int32_t k = suspendedEvents.GetSize() - 1; k >= 0; --k) {
        if (suspendedEvents.GetAt(k).handle == handle) suspendedEvents.Delete(k, 1);
      }
    } else {
      std::int32_t const queued = suspendedEvents.GetSize();
      if (queued > 0) {
        SuspendedEvent const &newest = suspendedEvents.GetAt(queued - 1);
        if (newest.code == code && newest.handle == handle) return 0;
      }
      suspendedEvents.Append(SuspendedEvent{code, handle});
      return 0;
    }
  }

  Position saved;
  saved.CopyUnattached(position);
  Position cursor;
  if (code != EvAdded && code != EvChanged) {
    if (present) lookupHint = index;
    SetSlider(handle);
  }
  if (present) cursor.Restart(handles, index);

  switch (code) {
    case EvAdded:
      Steps::InsertObject(*this, handle, present);
      break;
    case EvDeleted:
      Steps::DeleteObject(*this, handle);
      break;
    case EvChanged:
    case EvFocused:
      if (!present) {
        Steps::InsertObject(*this, handle, false);  // brought into view
      } else {
        Steps::ChangeObject(*this, code, handle, passes, cursor);
      }
      break;
    case EvReload:
      Reload(0);
      break;
    case EvCleared:
      changeEvent.Notify(code, data);
      handleData.Clear();
      eventHooks.Clear();
      handles.Clear();
      focusHandles.Clear();
      mayRepeat = 0;
      break;
    default:
      break;
  }

  // The saved number, not the element that stood there.
  position = saved;
  position.data = saved.data;
  if (IsEmpty() != 0) {
    SetSlider(0);
  } else {
    std::int32_t const at = position.GetFocus();
    lookupHint = at;
    SetSlider(handles.GetData()[at]);
  }
  return 0;
}

// ---------------------------------------------------------------------------
// Suspension

void SCC_StdCollection::Suspend(int on) {
  if (on != 0) {
    suspended = 1;
    return;
  }
  if (suspended == 0) return;
  suspended = 0;
  // The queue is taken before anything is settled, so that events queued by
  // a listener that suspends again are kept for the next settling.
  SCC_Array<SuspendedEvent> const queue(suspendedEvents);
  suspendedEvents.Clear();

  // Newest first, one event per handle; seen gives each handle's place in kept.
  std::int32_t const queued = queue.GetSize();
  SCC_Map<SCC_Handle, int> seen(std::max<std::int32_t>(queued, 1));
  SCC_Array<SuspendedEvent> kept;
  std::int32_t additions = 0;
  for (std::int32_t k = queued - 1; k >= 0; --k) {
    SuspendedEvent const entry = queue.GetAt(k);
    int *const place = seen.Insert(entry.handle);
    if (place == nullptr) continue;
    *place = kept.Append(entry);
    if (entry.code == EvAdded || entry.code == EvChanged) ++additions;
  }

  if (IsNotificationSmart() != 0 && 2 * static_cast<std::int64_t>(additions) >= GetSize()) {
    Reload(1);
    return;
  }
  Settling waiting(*this, seen);
  for (std::int32_t k = 0; k < kept.GetSize(); ++k) {
    waiting.next = k;
    SuspendedEvent const entry = kept.GetAt(k);
    OnNotification(entry.code, AsData(entry.handle));
  }
}

SCC_StdCollection::Settling::Settling(SCC_StdCollection &c,
                                      SCC_Map<SCC_Handle, int> const &queued)
    : next(0), collection(c), keptAt(queued), outer(c.settling) {
  c.settling = this;
}

SCC_StdCollection::Settling::~Settling() { collection.settling = outer; }

int SCC_StdCollection::Settling::Contains(void const *item) const {
  int const *const place = keptAt.Find(*static_cast<SCC_Handle const *>(item));
  if (place != nullptr && *place >= next) return 1;
  return outer != nullptr ? outer->Contains(item) : 0;
}

// ---------------------------------------------------------------------------
// The parent

int SCC_StdCollection::HandleNotificationsAllowed(SCC_Handle data) {
  if (data == 0) return 1;
  if (parent == nullptr) return 0;
  return parent->IsInFocus(data, nullptr) ? 1 : 0;
}

int SCC_StdCollection::OnParentNotification(int code, int *data) {
  if (HandleNotificationsAllowed(SCC_DataToHandle(data)) == 0) return 0;
  switch (code) {
    case EvAdded:
    case EvChanged:
    case EvFocused:
    case EvReload:
      Reload(0);
      break;
    case EvDeleted:
      SetSlider(0);
      while (_GetNextByParentSlider() != 0) {
        SCC_Handle const handle = GetSlider();
        if (Filter(handle) == 0) continue;
        OnNotification(EvDeleted, AsData(handle));
        _SetSlider(handle);  // the walk goes on from there
      }
      break;
    case EvCleared:
    case EvSuspend:
    case EvResume:
      OnNotification(code, data);
      break;
    default:
      break;
  }
  return 0;
}

void SCC_StdCollection::OnEventEnable(int on) {
  if (on != 0) Reload(1);
}
