// SCC_StdCollection: construction, copying, the cursor, the focus, handle
// data, and the lookups everything else stands on. Loading lives in
// collection_reload.cpp, notification in collection_notification.cpp.
#include <algorithm>
#include <cstring>

#include "collection_steps.h"
#include "ssm.h"

#if (defined(__x86_64__) || defined(__i386__)) && (defined(__GNUC__) || defined(__clang__))
#include <immintrin.h>
#define TOVIK_SCAN_AVX2 1
#else
#define TOVIK_SCAN_AVX2 0
#endif

// ---------------------------------------------------------------------------
// The scan for a handle. Every notification looks its handle up, so this is
// the hot loop of the class: blocks of 16 handles are compared without an
// early exit, which vectorises, and only the block that holds a match is
// searched item by item. Where the processor has AVX2 the block is compared
// four handles at a time.

namespace {

constexpr std::int32_t kScanBlock = 16;

std::int32_t ScanTail(SCC_Handle const *items, std::int32_t from, std::int32_t count,
                      SCC_Handle handle) {
  for (std::int32_t i = from; i < count; ++i) {
    if (items[i] == handle) return i;
  }
  return -1;
}

std::int32_t ScanPortable(SCC_Handle const *items, std::int32_t count, SCC_Handle handle) {
  std::int32_t i = 0;
  for (; count - i >= kScanBlock; i += kScanBlock) {
    SCC_Handle hit = 0;
    for (std::int32_t k = 0; k < kScanBlock; ++k) hit |= items[i + k] == handle ? -1 : 0;
    if (hit != 0) break;
  }
  return ScanTail(items, i, count, handle);
}

#if TOVIK_SCAN_AVX2
__attribute__((target("avx2"))) std::int32_t ScanAvx2(SCC_Handle const *items, std::int32_t count,
                                                      SCC_Handle handle) {
  __m256i const key = _mm256_set1_epi64x(static_cast<long long>(handle));
  std::int32_t i = 0;
  for (; count - i >= kScanBlock; i += kScanBlock) {
    auto const *const block = reinterpret_cast<__m256i const *>(items + i);
    __m256i const a = _mm256_cmpeq_epi64(_mm256_loadu_si256(block), key);
    __m256i const b = _mm256_cmpeq_epi64(_mm256_loadu_si256(block + 1), key);
    __m256i const c = _mm256_cmpeq_epi64(_mm256_loadu_si256(block + 2), key);
    __m256i const d = _mm256_cmpeq_epi64(_mm256_loadu_si256(block + 3), key);
    __m256i const any = _mm256_or_si256(_mm256_or_si256(a, b), _mm256_or_si256(c, d));
    if (_mm256_testz_si256(any, any) == 0) break;
  }
  return ScanTail(items, i, count, handle);
}
#endif

typedef std::int32_t (*ScanFunction)(SCC_Handle const *, std::int32_t, SCC_Handle);

ScanFunction ChooseScan() {
#if TOVIK_SCAN_AVX2
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx2")) return &ScanAvx2;
#endif
  return &ScanPortable;
}

}  // namespace

std::int32_t SCC_StdCollection::Steps::Scan(SCC_Handle const *items, std::int32_t count,
                                           SCC_Handle handle) {
  static ScanFunction const scan = ChooseScan();
  if (items == nullptr || count <= 0) return -1;
  return scan(items, count, handle);
}

std::int32_t SCC_StdCollection::Steps::LookUp(SCC_StdCollection &c, SCC_Handle handle,
                                             bool byOrder) {
  if (c.handles.GetSize() == 0) return -1;
  // Without repeated handles any place where the handle stands is the first,
  // so the last place found, or the comparator's range, can answer for the
  // scan when the handle is really there.
  if (c.mayRepeat == 0) {
    std::int32_t const hint = c.lookupHint;
    if (c.handles.InBounds(hint) && c.handles.GetData()[hint] == handle) return hint;
    if (byOrder) {
      std::int32_t first = 0;
      std::int32_t last = 0;
      c.handles.FindItemPosition(handle, first, last);
      // The comparator is the caller's code: the list is read afresh.
      SCC_Handle const *const items = c.handles.GetData();
      last = std::min(last, c.handles.GetSize());
      for (std::int32_t k = std::max(first, 0); c.mayRepeat == 0 && k < last; ++k) {
        if (items[k] == handle) return c.lookupHint = k;
      }
    }
  }
  std::int32_t const found = Scan(c.handles.GetData(), c.handles.GetSize(), handle);
  if (found >= 0 && c.mayRepeat == 0) c.lookupHint = found;
  return found;
}

void SCC_StdCollection::Steps::CheckRepeats(SCC_StdCollection &c) {
  std::int32_t const size = c.handles.GetSize();
  SCC_Handle const *const items = c.handles.GetData();
  tovik_detail::HandleSet seen(static_cast<std::size_t>(size));
  c.mayRepeat = 0;
  for (std::int32_t i = 0; i < size; ++i) {
    if (!seen.Insert(items[i])) {
      c.mayRepeat = 1;
      return;
    }
  }
}

void SCC_StdCollection::Steps::AdoptHooks(SCC_StdCollection &c, SCC_StdCollection &other) {
  for (SCC_MapIterator<SCC_Handle, EventHook> at(c.eventHooks); at.IsValid(); at.GetNext()) {
    EventHook &hook = at.GetValue();
    hook.object = &c;
    EventHook const *const theirs = other.eventHooks.Find(at.GetKey());
    if (theirs != nullptr && theirs->GetOwner() != nullptr) hook.AddHook(theirs->GetOwner());
  }
}

// ---------------------------------------------------------------------------
// The handle set

namespace tovik_detail {

HandleSet::HandleSet(std::size_t expected) : used(0), shift(60), hasZero(false) {
  std::size_t size = 16;
  while (size < 2 * expected) {
    size *= 2;
    --shift;
  }
  slots.assign(size, 0);
}

std::size_t HandleSet::Slot(SCC_Handle handle) const {
  // Fibonacci hashing: handles that are addresses differ in their low bits
  // only by the object size; the multiplication spreads them over the top.
  std::uint64_t const mixed =
      static_cast<std::uint64_t>(handle) * UINT64_C(0x9E3779B97F4A7C15);
  return static_cast<std::size_t>(mixed >> shift);
}

bool HandleSet::Insert(SCC_Handle handle) {
  if (handle == 0) {
    bool const fresh = !hasZero;
    hasZero = true;
    return fresh;
  }
  std::size_t const mask = slots.size() - 1;
  for (std::size_t at = Slot(handle);; at = (at + 1) & mask) {
    if (slots[at] == handle) return false;
    if (slots[at] == 0) {
      slots[at] = handle;
      if (2 * ++used > slots.size()) Grow();
      return true;
    }
  }
}

void HandleSet::Grow() {
  std::vector<SCC_Handle> previous(slots.size() * 2, 0);
  previous.swap(slots);  // slots is now the larger, empty table
  --shift;
  std::size_t const mask = slots.size() - 1;
  for (SCC_Handle const handle : previous) {
    if (handle == 0) continue;
    std::size_t at = Slot(handle);
    while (slots[at] != 0) at = (at + 1) & mask;
    slots[at] = handle;
  }
}

}  // namespace tovik_detail

// ---------------------------------------------------------------------------
// Inner types

SCC_StdCollection::Position::~Position() = default;

void SCC_StdCollection::Position::CopyUnattached(Position const &other) {
  Leave();
  focus = other.focus;
  array = other.array;
  data = other.data;
  focusDeletePolicy = other.focusDeletePolicy;
}

SCC_StdCollection::EventHook::EventHook()
    : SCC_ObjectEventHook<SCC_StdCollection, int>(nullptr, &SCC_StdCollection::OnNotification, 0),
      count(0) {}

SCC_StdCollection::EventHook::~EventHook() = default;

// ---------------------------------------------------------------------------
// Construction, copies, destruction

namespace {

constexpr std::int32_t kFirstTableSize = 53;

}  // namespace

SCC_StdCollection::SCC_StdCollection(SCC_StdCollection *newParent)
    : eventHooks(kFirstTableSize),
      changeEvent(0),
      handleData(kFirstTableSize),
      event(nullptr),
      parent(nullptr),
      suspended(0),
      reloadAllowed(0),
      tempItemsSeen(0),
      notificationSmart(0),
      parentHook(this, &SCC_StdCollection::OnParentNotification),
      mayRepeat(0),
      lookupHint(-1),
      reloadCount(0),
      settling(nullptr) {
  focusHandles.SetComparator(new SCC_Comparator<SCC_Handle>());
  handles.SetComparator(new SCC_Comparator<SCC_Handle>());
  SetParent(newParent);
}

SCC_StdCollection::SCC_StdCollection(SCC_StdCollection &other)
    : SCC_EventNode<int>(),
      focusHandles(other.focusHandles),
      eventHooks(other.eventHooks),
      changeEvent(other.changeEvent),
      suspendedEvents(other.suspendedEvents),
      handles(other.handles),
      handleData(other.handleData),
      filter(other.filter),
      position(other.position),
      event(other.event),
      parent(other.parent),
      suspended(other.suspended),
      reloadAllowed(other.reloadAllowed),
      tempItemsSeen(other.tempItemsSeen),
      notificationSmart(other.notificationSmart),
      parentHook(this, &SCC_StdCollection::OnParentNotification),
      mayRepeat(other.mayRepeat),
      lookupHint(other.lookupHint),
      reloadCount(0),
      settling(nullptr) {
  JoinBefore(&other);
  Steps::AdoptHooks(*this, other);
  parentHook.JoinBefore(&other.parentHook);
}

SCC_StdCollection &SCC_StdCollection::operator=(SCC_StdCollection &other) {
  if (&other == this) return *this;
  JoinBefore(&other);
  focusHandles = other.focusHandles;
  eventHooks = other.eventHooks;
  Steps::AdoptHooks(*this, other);
  changeEvent = other.changeEvent;
  suspendedEvents = other.suspendedEvents;
  handles = other.handles;
  handleData = other.handleData;
  filter = other.filter;
  position.CopyUnattached(other.position);
  event = other.event;
  parent = other.parent;
  suspended = other.suspended;
  reloadAllowed = other.reloadAllowed;
  tempItemsSeen = other.tempItemsSeen;
  notificationSmart = other.notificationSmart;
  parentHook.JoinBefore(&other.parentHook);
  mayRepeat = other.mayRepeat;
  lookupHint = other.lookupHint;
  return *this;
}

// The members go in the reverse of their order: parentHook leaves the parent,
// position the list, then the filter, the handle data (EvCleared on its own
// notifier), the list, the queue, the change notifier (its listeners live on
// alone), the hooks (each leaves its notifier), the focus, and last the node
// leaves the source.
SCC_StdCollection::~SCC_StdCollection() = default;

// ---------------------------------------------------------------------------
// The source, for derived classes

SCC_Handle SCC_StdCollection::_GetSlider() { return 0; }

void SCC_StdCollection::_SetSlider(SCC_Handle) {}

int SCC_StdCollection::_GetFirst() { return 0; }

int SCC_StdCollection::_GetNext() { return 0; }

int SCC_StdCollection::_GetPrev() { return 0; }

int SCC_StdCollection::_GetFirstByParentSlider() { return _GetFirst(); }

int SCC_StdCollection::_GetNextByParentSlider() { return _GetNext(); }

SCC_Notifier *SCC_StdCollection::GetEvent() { return nullptr; }

SCC_Handle SCC_StdCollection::UpdateHandle(SCC_Handle, void *) { return 0; }

// ---------------------------------------------------------------------------
// Links

void SCC_StdCollection::SetParent(SCC_StdCollection *newParent) {
  parent = newParent;
  if (newParent != nullptr) {
    newParent->AllowReload(1);
    newParent->SetNotificationHandler(&parentHook);
  }
  Reload(0);
}

void SCC_StdCollection::SetEvent(SCC_Notifier *source) {
  if (source == nullptr) return;
  JoinAtEnd(source);
  event = source;
}

void SCC_StdCollection::SetNotificationHandler(SCC_EventNode<int> *node) {
  if (node != nullptr) node->JoinAtEnd(&changeEvent);
}

void SCC_StdCollection::Clear() {
  handleData.Clear();
  eventHooks.Clear();
  handles.Clear();
  focusHandles.Clear();
  mayRepeat = 0;
  AllowReload(0);
}

SCC_Handle SCC_StdCollection::FindNextTempItem(SCC_Handle handle) {
  SCC_Handle const slider = GetSlider();
  SetSlider(handle);
  SCC_Handle found = 0;
  for (;;) {
    _GetNext();
    found = GetSlider();
    if (found == 0 || Filter(found) != 0) break;
  }
  SetSlider(slider);
  return found;
}

// ---------------------------------------------------------------------------
// The cursor

int SCC_StdCollection::IsEmpty() { return position.IsEmpty(); }

SCC_Handle SCC_StdCollection::GetSlider() { return _GetSlider(); }

void SCC_StdCollection::SetSlider(SCC_Handle handle) {
  std::int32_t const index = handle != 0 ? Steps::LookUp(*this, handle, false) : -1;
  if (index < 0) {
    position.Clear();
    _SetSlider(0);
    return;
  }
  position.Restart(handles, index);
  _SetSlider(handle);
}

std::int32_t SCC_StdCollection::GetPosition() {
  return position.IsValid() != 0 ? position.GetFocus() : -1;
}

void SCC_StdCollection::SetPosition(std::int32_t index) {
  position.Restart(handles, index);
  SCC_Handle const handle = GetAt(index);
  if (handle != 0) lookupHint = index;
  _SetSlider(handle);
}

std::int32_t SCC_StdCollection::GetSize() { return handles.GetSize(); }

SCC_Handle SCC_StdCollection::GetAt(std::int32_t index) {
  return handles.InBounds(index) != 0 ? handles.GetData()[index] : 0;
}

std::int32_t SCC_StdCollection::GetPositionByHandle(SCC_Handle handle) {
  return handle != 0 ? Steps::LookUp(*this, handle, false) : -1;
}

int SCC_StdCollection::GetFirst() {
  if (handles.GetSize() > 0) {
    SetPosition(0);
  } else {
    position.Clear();
    SetSlider(0);
  }
  return position.IsValid();
}

int SCC_StdCollection::GetNext() {
  if (position.IsValid() != 0) ++position;
  if (position.IsValid() == 0) {
    _SetSlider(0);
    return 0;
  }
  _SetSlider(handles.GetData()[position.GetFocus()]);
  return 1;
}

int SCC_StdCollection::GetPrev() {
  if (position.IsValid() != 0) --position;
  if (position.IsValid() == 0) {
    _SetSlider(0);
    return 0;
  }
  _SetSlider(handles.GetData()[position.GetFocus()]);
  return 1;
}

// ---------------------------------------------------------------------------
// The focus

int SCC_StdCollection::HasFocus() { return focusHandles.GetSize() > 0 ? 1 : 0; }

SCC_Handle SCC_StdCollection::GetFocus(std::int32_t index) {
  return focusHandles.InBounds(index) != 0 ? focusHandles.GetData()[index] : 0;
}

bool SCC_StdCollection::IsInFocus(SCC_Handle handle, std::int32_t *index) {
  std::int32_t first = 0;
  std::int32_t last = 0;
  focusHandles.FindItemPosition(handle, first, last);
  SCC_Handle const *const items = focusHandles.GetData();
  for (std::int32_t k = first; k < last; ++k) {
    if (items[k] == handle) {
      if (index != nullptr) *index = k;
      return true;
    }
  }
  if (index != nullptr) *index = last;
  return false;
}

void SCC_StdCollection::SetFocus(SCC_Handle handle, int mode) {
  std::int32_t index = -1;
  if (handle != 0) {
    index = Steps::LookUp(*this, handle, false);
    if (index < 0) handle = 0;
  }
  if (mode == 0 || handle == 0) focusHandles.Clear();
  if (handle == 0) return;

  std::int32_t first = 0;
  std::int32_t last = 0;
  focusHandles.FindItemPosition(handle, first, last);
  bool const wasFocused = first < last;
  bool changed = false;
  if (mode == -1) {
    if (wasFocused) {
      focusHandles.Delete(first, 1);
      changed = true;
    }
  } else {
    if (!wasFocused) {
      focusHandles.InsertAt(last, handle);
      changed = true;
    }
    if (mode == 2) return;
  }

  Position cursor;
  cursor.CopyUnattached(position);
  position.Restart(handles, index);
  SCC_Handle const slider = GetSlider();
  lookupHint = index;
  SetSlider(handle);
  // A handle that joins is named; one that leaves is told with data 0, which
  // names no handle and reaches children whatever their parent's focus holds.
  if (changed) changeEvent.Notify(EvFocused, SCC_HandleToData(mode == -1 ? 0 : handle));
  SetSlider(slider);
  position = cursor;
}

// ---------------------------------------------------------------------------
// Handle data

std::intptr_t SCC_StdCollection::GetHandleData(SCC_Handle handle) {
  Position const *const entry = handleData.Find(handle);
  return entry != nullptr ? entry->data : 0;
}

void SCC_StdCollection::SetHandleData(SCC_Handle handle, std::intptr_t data) {
  Position *entry = handleData.Find(handle);
  if (entry == nullptr) entry = handleData.Insert(handle);
  if (entry != nullptr) entry->data = data;
  // Through the source, so that every collection on it hears of the change.
  if (owner != nullptr) owner->Notify(EvChanged, static_cast<int *>(SCC_HandleToData(handle)));
}

// ---------------------------------------------------------------------------
// Flags

int SCC_StdCollection::IsSuspended() const { return suspended; }

int SCC_StdCollection::IsNotificationSmart() const { return notificationSmart; }

void SCC_StdCollection::SetNotificationSmart(int on) { notificationSmart = on; }

int SCC_StdCollection::EnableNotifications(int on) {
  int const was = changeEvent.enabled;
  changeEvent.EnableEvent(on);
  return was;
}

// ---------------------------------------------------------------------------
// The instances the collection is built with. The header declares none, as
// for arrays: the inline members stay local to each user.

template class SCC_ArrayIterator<SCC_Handle>;
template class _SCC_Buffer<SCC_StdCollection::SuspendedEvent>;
template class SCC_Array<SCC_StdCollection::SuspendedEvent>;
template class SCC_Map<SCC_Handle, SCC_StdCollection::EventHook>;
template class SCC_Map<SCC_Handle, SCC_StdCollection::Position>;
template class SCC_Map<SCC_Handle, int>;
