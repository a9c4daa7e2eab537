// Saved handles and their entries.
#include "scc_saved_handles.h"

template class _SCC_Buffer<SCC_SharedPointer<SCC_HandleWithEvent>>;
template class SCC_Comparator<SCC_SharedPointer<SCC_HandleWithEvent>>;
template class SCC_Array<SCC_SharedPointer<SCC_HandleWithEvent>>;
template class SCC_SortableArray<SCC_SharedPointer<SCC_HandleWithEvent>>;

// --- SCC_HandleWithEvent ---------------------------------------------------

SCC_HandleWithEvent::SCC_HandleWithEvent(SCC_HandleWithEvent &other)
    : SCC_SharedBuffer(other),
      SCC_EventNode<int>(other),
      type(other.type),
      handle(other.handle),
      container(other.container) {
  JoinBefore(&other);
}

SCC_HandleWithEvent &SCC_HandleWithEvent::operator=(SCC_HandleWithEvent &other) {
  if (&other == this) return *this;
  JoinBefore(&other);
  type = other.type;
  handle = other.handle;
  container = other.container;
  return *this;
}

SCC_HandleWithEvent::~SCC_HandleWithEvent() = default;

SCC_Notifier *SCC_HandleWithEvent::GetChangeEvent() { return nullptr; }

void SCC_HandleWithEvent::OnUpdatePointers(void *data) { (void)data; }

int SCC_HandleWithEvent::OnNotification(int code, int *data) {
  if (code == EvRemapped) OnUpdatePointers(data);
  if (container == nullptr) return 0;
  // The set may destroy this entry; nothing of it is read after the call.
  return container->HandleNotification(handle, type, code, data);
}

int SCC_Compare(SCC_SharedPointer<SCC_HandleWithEvent> const &a,
                SCC_SharedPointer<SCC_HandleWithEvent> const &b) {
  int const byType = SCC_Compare(a->GetType(), b->GetType());
  return byType != 0 ? byType : SCC_Compare(a->GetHandle(), b->GetHandle());
}

// --- SCC_SavedHandles ------------------------------------------------------

SCC_SavedHandles::SCC_SavedHandles() : needsSort(0) {
  SetComparator(new SCC_Comparator<Entry>());
}

SCC_SavedHandles::SCC_SavedHandles(SCC_SavedHandles const &other)
    : SCC_SortableArray<Entry>(other), needsSort(other.needsSort) {}

SCC_SavedHandles &SCC_SavedHandles::operator=(SCC_SavedHandles const &other) {
  SCC_SortableArray<Entry>::operator=(other);
  needsSort = other.needsSort;
  return *this;
}

SCC_SavedHandles::~SCC_SavedHandles() {
  // A copy may keep the entries alive; they must not report to a dead set.
  Entry const *const entries = GetData();
  for (std::int32_t i = 0; i < GetSize(); ++i) {
    if (entries[i]->container == this) entries[i]->SetContainer(nullptr);
  }
}

SCC_SavedHandles::Entry SCC_SavedHandles::CreateByType(SCC_Handle handle, std::int32_t type) {
  (void)handle;
  (void)type;
  return Entry();
}

int SCC_SavedHandles::HandleNotification(SCC_Handle handle, std::int32_t type, int code,
                                         int *data) {
  (void)handle;
  switch (code) {
    case EvDeleted:
      Delete(SCC_DataToHandle(data), type);
      break;
    case EvCleared:
      Clear();
      break;
    case EvRemapped:
      needsSort = 1;
      break;
    default:
      break;
  }
  return 0;
}

int SCC_SavedHandles::Save(SCC_Handle handle, std::int32_t type) {
  std::int32_t index = 0;
  if (Find(handle, type, &index)) return 0;
  Entry const entry = CreateByType(handle, type);
  if (!entry) return 0;
  if (SCC_Notifier *const event = entry->GetChangeEvent()) entry->JoinAtEnd(event);
  InsertAt(index, entry);
  return 1;
}

int SCC_SavedHandles::Delete(SCC_Handle handle, std::int32_t type) {
  std::int32_t index = 0;
  // The local pointer keeps the entry alive while the array tells its
  // listeners that it goes; it dies when this returns.
  Entry const entry = Find(handle, type, &index);
  if (!entry) return 0;
  RemoveAt(index);
  return 1;
}

SCC_SavedHandles::Entry SCC_SavedHandles::Find(SCC_Handle handle, std::int32_t type,
                                               std::int32_t *index) {
  if (needsSort != 0) {
    needsSort = 0;
    Sort(1);
  }
  SCC_HandleWithEvent probe(handle, type, this);
  Entry const key(&probe);
  std::int32_t first = 0;
  std::int32_t last = 0;
  FindItemPosition(key, first, last);
  if (index != nullptr) *index = first;
  return last > first ? GetAt(first) : Entry();
}
