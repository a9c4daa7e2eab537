#include "sfm_manager.h"

#include <cerrno>
#include <string>

#include "app_profile.h"
#include "exitcleanup.h"
#include "file_io.h"
#include "mbtext.h"
#include "process.h"
#include "sfm_message_db.h"
#include "ssm.h"
#include "sys_scan.h"
#include "sys_translation.h"

template class SCC_EventNode<SFM_EventData>;
template class SCC_Event<SFM_EventData>;
template class SCC_EventIterator<SFM_EventData>;
template class SCC_SafeDListNode<SFM_File>;
template class SCC_SafeDListIterator<SFM_File>;
template class SCC_SafeDList<SFM_File>;
template class _SCC_Buffer<SFM_Directory>;
template class SCC_Array<SFM_Directory>;

SFM *SFM::Instance = nullptr;
std::int32_t SFM::InstanceCount = 0;

namespace {

void DestroyManager() { delete SFM::GetManager(); }

}  // namespace

SFM *SFM::GetManager() {
  if (Instance != nullptr || InstanceCount != 0) return Instance;
  new SFM();
  tovik::platform::RegisterExitCleanup(&DestroyManager);
  return Instance;
}

SFM::SFM() : messageDB(nullptr), streamFiles(0) {
  SSM_CHECK(InstanceCount == 0 && Instance == nullptr, "Tovik: there is a file manager already");
  if (InstanceCount != 0 || Instance != nullptr) return;
  Instance = this;
  InstanceCount = 1;
}

SFM::SFM(SFM &other) : messageDB(nullptr), event(other.event), streamFiles(0) {}

SFM &SFM::operator=(SFM &other) {
  event = other.event;
  return *this;
}

SFM::~SFM() {
  // The database's file still raises its events here, with the list intact.
  delete messageDB;
  messageDB = nullptr;
  if (Instance != this) return;
  Instance = nullptr;
  InstanceCount = -1;
}

void SFM::Initiate(char const *name) {
  if (messageDB != nullptr || name == nullptr) return;
  if (tovik::mb::ICmp(SFM_FilePath(name).GetFileExtension(), ".mdb") == 0) {
    messageDB = new SFM_MessageDB(name);
  } else {
    messageDB = new SFM_MessageDB(name, 0);
  }
}

int SFM::IsValid() const {
  bool const database = messageDB != nullptr && messageDB->IsValid();
  SSM_CHECK(database, "Tovik: the message database is missing or broken");
  bool const list = fileList.IsValid() != 0;
  SSM_CHECK(list, "Tovik: the file list is broken");
  if (!list) return 0;
  bool files = true;
  for (SFM_File const *file = fileList.GetHead(); file != nullptr; file = file->GetNextInList()) {
    bool const valid = file->IsValid() != 0;
    SSM_CHECK(valid, "Tovik: a file of the list is broken");
    files = files && valid;
  }
  return database && files ? 1 : 0;
}

SYS_String SFM::ReadProfileString(char const *section, char const *entry, char const *defaultValue) {
  return SYS_String(tovik::app::GetProfileString(section, entry, defaultValue).c_str());
}

int SFM::SetProfileString(char const *section, char const *entry, char const *value) {
  return tovik::app::WriteProfileString(section, entry, value);
}

int SFM::GetProfileIntA(char const *section, char const *entry, int defaultValue) {
  return tovik::app::GetProfileInt(section, entry, defaultValue);
}

int SFM::SetProfileInt(char const *section, char const *entry, int value) {
  return tovik::app::WriteProfileInt(section, entry, value);
}

void SFM::ShowFile(char const *name) {
  SYS_String const editor = ReadProfileString("general", "editor", "");
  if (editor.IsEmpty()) return;
  tovik::os::StartCommand(editor, tovik::io::NativePath(name).c_str());
}

SYS_String SFM::GetExternalFileName(int index, char const *name) {
  return directories.GetAt(index) + name;
}

SFM::EventCode SFM::Event(EventCode code, SFM_EventData &data) { return Event(code, data, nullptr); }

SFM::EventCode SFM::Event(EventCode code, SFM_EventData &data, SFM_File *raiser) {
  data.SetResult(EvNone);
  data.error = errno;
  // Out of handles: the open is simply tried again once another file let go.
  if (code == EvOpenFailed && (data.error == EMFILE || data.error == ENFILE) && TempCloseSomeFile()) {
    return EvRetry;
  }
  if (code >= EvOverwrite) CreateMessage(code, data);
  if (code == EvOpening) {
    SFM_File *const file = FindFirstFile(data.fileName1, raiser);
    if (file != nullptr && file != fileList.GetHead()) {
      fileList.Remove(file);
      fileList.AddHead(file);
    }
  }
  event.Notify(code, &data);
  if (code < EvOverwrite) return data.GetResult();
  if (SFM_File *const file = FindFirstFile(data.fileName1, raiser)) file->SetMsg(data.GetText());
  return data.GetResult();
}

void SFM::CreateMessage(EventCode, SFM_EventData &data) {
  std::string text;
  if (tovik::os::ErrorText(data.error, text)) {
    data.SetText(text.c_str());
  } else {
    data.SetText(FormattedString(TR(45103), data.error));
  }
}

int SFM::TempCloseSomeFile() {
  // The files that hold a stream are counted, so the walk stops once it has
  // met them all; the last of them that may go is the least recently opened.
  SFM_File *chosen = nullptr;
  std::int32_t seen = 0;
  for (SFM_File *file = fileList.GetHead(); file != nullptr && seen < streamFiles;
       file = file->GetNextInList()) {
    if (file->stream == nullptr) continue;
    ++seen;
    if (file->MayBeTempClosed()) chosen = file;
  }
  if (chosen == nullptr) return 0;
  chosen->TempClose();
  return 1;
}

SFM_File *SFM::FindFirstFile(SYS_String const &fileName, SFM_File *raiser) {
  if (raiser != nullptr && !raiser->IsAlone() && raiser->GetName() == fileName) {
    std::int32_t const *const count = nameCounts.Find(fileName);
    if (count != nullptr && *count == 1) return raiser;
  }
  int const length = fileName.GetLength();
  for (SFM_File *file = fileList.GetHead(); file != nullptr; file = file->GetNextInList()) {
    SYS_String const &candidate = file->GetName();
    if (candidate.GetLength() == length && candidate == fileName) return file;
  }
  return nullptr;
}

void SFM::CountName(SYS_String const &fileName, int change) {
  std::int32_t *count = nameCounts.Find(fileName);
  if (count == nullptr) count = nameCounts.Insert(fileName, 0);
  if (count == nullptr) return;
  *count += change;
  if (*count <= 0) nameCounts.Remove(fileName);
}

SFM_EventData::SFM_EventData(char const *name1, char const *name2)
    : error(0), fileName1(name1), fileName2(name2), result(SFM::EvNone) {}

void SFM_EventData::SetResult(SFM::EventCode code) {
  if (code != SFM::EvNone) {
    SSM_CHECK(result == SFM::EvNone, "Tovik: the event has been answered already");
    if (result != SFM::EvNone) return;
  }
  result = code;
}

SYS_String SFM_EventData::GetText() const {
  SYS_String full = text;
  for (SYS_String const *name : {&fileName1, &fileName2}) {
    if (name->IsEmpty()) continue;
    full << "\r\n\"" << *name << "\"";
  }
  return full;
}
