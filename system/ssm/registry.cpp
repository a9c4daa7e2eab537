// The registry of failed source positions: the map of records and the cursor
// through which the application reads and steers them.
#include "ssm.h"

SSM::AssertMap::AssertMap() = default;
SSM::AssertMap::AssertMap(AssertMap const &other) = default;
SSM::AssertMap &SSM::AssertMap::operator=(AssertMap const &other) = default;
SSM::AssertMap::~AssertMap() = default;

SSM::AssertObj::AssertObj() { OnFocusDeleteGoForward(); }

SSM::AssertObj::AssertObj(AssertObj const &other) = default;

SSM::AssertObj &SSM::AssertObj::operator=(AssertObj &other) {
  if (&other == this) return *this;
  SCC_Iterator::operator=(other);
  map = other.map;
  SeekBucket(other.bucket);
  return *this;
}

SSM::AssertObj::~AssertObj() = default;

void SSM::AssertObj::GetFirst(SSM *manager) {
  if (manager == nullptr) manager = SSM::GetManager();
  if (manager != nullptr) Start(manager->asserts);
}

void SSM::AssertObj::SetHandle(AssertData *data) {
  if (SSM *const manager = SSM::GetManager()) Start(manager->asserts);
  if (data == nullptr || map == nullptr) {
    Invalidate();
    return;
  }
  Seek(*map, SSM::KeyOf(data->fileName, data->lineNo), data);
}

void SSM::AssertObj::SetHandle(SCC_Handle handle, SSM *) {
  SetHandle(reinterpret_cast<AssertData *>(handle));
}

int SSM::AssertObj::Seek(SCC_Map<SYS_String, AssertData> &in, SYS_String const &key,
                         AssertData const *record) {
  map = &in;
  if (in.table != nullptr) {
    std::int32_t const hash = in.HashOf(key, in.tableSize);
    bucket = in.BucketOf(hash, in.tableSize);
    for (current = in.table[bucket].head; current != nullptr; current = current->next) {
      if (current->hash == hash && SCC_Compare(current->key, key) == 0) break;
    }
    // Only the record the map holds under the key counts: a copy of it, or
    // the record of another manager at the same position, does not.
    if (current != nullptr && &current->value == record) return 1;
  }
  Invalidate();
  return 0;
}

SCC_Notifier *SSM::AssertObj::GetChangeEvent(void *) {
  SSM *const manager = SSM::GetManager();
  return manager != nullptr ? &manager->actionEvent : nullptr;
}

int SSM::AssertObj::DefaultSort(SCC_Handle const &a, SCC_Handle const &b) {
  return a < b ? -1 : (a > b ? 1 : 0);
}

void SSM::AssertObj::OnUpdatePointers(void *) {}

SSM::AssertData *SSM::AssertObj::Record() const { return IsValid() ? &current->value : nullptr; }

SYS_String SSM::AssertObj::GetFileName() const {
  AssertData const *const record = Record();
  return record != nullptr ? record->fileName : SYS_String();
}

std::int32_t SSM::AssertObj::GetLineNo() const {
  AssertData const *const record = Record();
  return record != nullptr ? record->lineNo : 0;
}

std::int32_t SSM::AssertObj::GetID() const {
  AssertData const *const record = Record();
  return record != nullptr ? record->id : 0;
}

std::int32_t SSM::AssertObj::GetCount() const {
  AssertData const *const record = Record();
  return record != nullptr ? record->count : 0;
}

void SSM::AssertObj::IncreaseCount() {
  if (AssertData *const record = Record()) ++record->count;
}

SYS_String SSM::AssertObj::GetMsg() const {
  AssertData const *const record = Record();
  return record != nullptr ? record->msg : SYS_String();
}

void SSM::AssertObj::SetMsg(SYS_String msg) {
  if (AssertData *const record = Record()) record->msg = msg;
}

SYS_String SSM::AssertObj::GetLogMsg() const {
  AssertData const *const record = Record();
  return record != nullptr ? record->logMsg : SYS_String();
}

void SSM::AssertObj::SetLogMsg(SYS_String msg) {
  if (AssertData *const record = Record()) record->logMsg = msg;
}

int SSM::AssertObj::IsDisabled() const {
  AssertData const *const record = Record();
  return record != nullptr && record->enabled == 0;
}

void SSM::AssertObj::Disable(int disable) {
  if (AssertData *const record = Record()) record->enabled = !disable;
}

int SSM::AssertObj::IsLogRequired() const {
  AssertData const *const record = Record();
  return record != nullptr ? record->logRequired : 0;
}

void SSM::AssertObj::SetLogRequired(int required) {
  if (AssertData *const record = Record()) record->logRequired = required;
}

SSM::Action SSM::AssertObj::GetAction() const {
  AssertData const *const record = Record();
  return record != nullptr ? record->action : ActionContinue;
}

void SSM::AssertObj::SetAction(Action action) {
  AssertData *const record = Record();
  if (record != nullptr && action > record->action) record->action = action;
}

void SSM::AssertObj::ClearAction() {
  if (AssertData *const record = Record()) record->action = ActionContinue;
}
