#include "sfm_directory.h"

#include <cerrno>
#include <cstring>
#include <string>

#include "file_io.h"
#include "mbtext.h"
#include "sfm_manager.h"
#include "ssm.h"

namespace {

char SeparatorToAdd() {
  return static_cast<char const *>(SFM_FilePath::DirectorySeparators)[SFM_FilePath::DefaultSeparator == 1 ? 1 : 0];
}

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

// A path that begins with a separator is absolute here: there are no drives.
bool IsRooted(char const *text) { return text != nullptr && IsSeparator(text[0]); }

// Whether path itself names a file (not a directory), wildcards aside.
bool IsFile(char const *path) {
  SFM_FindData found;
  return found.Start(path) && (found.attributes & tovik::io::kAttributeDirectory) == 0;
}

// The manager the operations report to; without one, a failed check.
SFM *Manager() {
  SFM *const manager = SFM::GetManager();
  SSM_CHECK(manager != nullptr, "Tovik: directory operations need the file manager");
  return manager;
}

// Runs operation until it succeeds or the answer to code is not a retry.
template <class Operation>
int WithRetries(SFM *manager, SFM::EventCode code, SFM_EventData &data, Operation operation) {
  for (;;) {
    errno = 0;
    if (operation()) return 1;
    if (manager->Event(code, data) != SFM::EvRetry) return 0;
  }
}

}  // namespace

int SFM_FindData::Start(char const *path) {
  Close();
  handle = tovik::io::FindFirst(path, *this);
  return handle != -1 ? 1 : 0;
}

int SFM_FindData::Step() {
  if (handle != -1 && tovik::io::FindNext(handle, *this) != 0) Close();
  return handle != -1 ? 1 : 0;
}

void SFM_FindData::Close() {
  if (handle == -1) return;
  tovik::io::FindClose(handle);
  handle = -1;
}

SFM_Directory::SFM_Directory() : fileSearch(nullptr), subdirSearch(nullptr) {}

SFM_Directory::SFM_Directory(char const *path)
    : SFM_FilePath(path), fileSearch(nullptr), subdirSearch(nullptr) {}

SFM_Directory::SFM_Directory(SFM_Directory const &other)
    : SFM_FilePath(other), fileSearch(nullptr), subdirSearch(nullptr) {}

SFM_Directory &SFM_Directory::operator=(SFM_Directory const &other) {
  if (&other == this) return *this;
  SFM_FilePath::operator=(other);
  // A running search belongs to this object and ends with its old path.
  delete fileSearch;
  delete subdirSearch;
  fileSearch = nullptr;
  subdirSearch = nullptr;
  return *this;
}

SFM_Directory::~SFM_Directory() {
  delete fileSearch;
  delete subdirSearch;
}

void SFM_Directory::operator=(char const *path) { SFM_FilePath::operator=(path); }

void SFM_Directory::operator=(CString const &path) { SFM_FilePath::operator=(path); }

char *SFM_Directory::GetNextItem(SFM_FindData *data, char const *pattern) {
  if (pattern == nullptr) {
    data->Step();
  } else {
    SYS_String text(pattern);
    int const length = text.GetLength();
    if (length > 0 && static_cast<char const *>(text)[length - 1] == SeparatorToAdd()) {
      text = text.Left(length - 1);
    }
    SFM_FilePath path(text);
    if (!IsRooted(text)) path.SetDefPath(fullPath);
    data->Start(path);
  }
  return data->handle != -1 ? data->name : nullptr;
}

char *SFM_Directory::GetNextEntry(char const *pattern) {
  if (fileSearch == nullptr) fileSearch = new SFM_FindData;
  return GetNextItem(fileSearch, pattern);
}

char *SFM_Directory::GetNextFile(char const *pattern) {
  if (fileSearch == nullptr) fileSearch = new SFM_FindData;
  char *name = GetNextItem(fileSearch, pattern);
  while (name != nullptr && (fileSearch->attributes & tovik::io::kAttributeDirectory) != 0) {
    name = GetNextItem(fileSearch, nullptr);
  }
  return name;
}

char *SFM_Directory::GetNextSubdir(char const *pattern) {
  if (subdirSearch == nullptr) subdirSearch = new SFM_FindData;
  char *name = GetNextItem(subdirSearch, pattern);
  while (name != nullptr && ((subdirSearch->attributes & tovik::io::kAttributeDirectory) == 0 ||
                             std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0)) {
    name = GetNextItem(subdirSearch, nullptr);
  }
  return name;
}

SYS_String SFM_Directory::operator+(char const *name) const {
  SFM_FilePath path(name);
  if (!IsRooted(name)) path.SetDefPath(fullPath);
  return path;
}

SYS_String const SFM_Directory::GetCurDir() const {
  SYS_String directory(tovik::io::GetCurrentDirectory().c_str());
  int const length = directory.GetLength();
  if (length > 0 && !IsSeparator(static_cast<char const *>(directory)[length - 1])) {
    directory += SeparatorToAdd();
  }
  return directory;
}

int SFM_Directory::SetCurDir(SYS_String path) { return tovik::io::SetCurrentDirectory(path); }

int SFM_Directory::FileExists(char const *name) {
  int const found = GetNextFile(name) != nullptr ? 1 : 0;
  fileSearch->Close();
  return found;
}

int SFM_Directory::DirExists(char const *name) {
  int const found = GetNextSubdir(name) != nullptr ? 1 : 0;
  subdirSearch->Close();
  return found;
}

SYS_String SFM_Directory::OperationPath(char const *name) const {
  SFM_FilePath path(name);
  if (!basePath.IsEmpty() && path.GetBasePath().IsEmpty()) path.SetBasePath(basePath);
  return path;
}

int SFM_Directory::_CopyFile(char const *from, char const *to) { return tovik::io::CopyFile(from, to); }

int SFM_Directory::CopyFileA(char const *from, char const *to, int overwrite) {
  SFM *const manager = Manager();
  if (manager == nullptr) return 0;
  SYS_String const source = OperationPath(from);
  SYS_String const target = OperationPath(to);
  SFM_EventData data(source, target);
  if (overwrite == 0 && IsFile(source) && IsFile(target)) {
    errno = EEXIST;
    if (manager->Event(SFM::EvOverwrite, data) != SFM::EvYes) return 0;
  }
  return WithRetries(manager, SFM::EvCopyFailed, data, [&] { return _CopyFile(source, target) != 0; });
}

int SFM_Directory::MoveFileA(char const *from, char const *to, int overwrite) {
  SFM *const manager = Manager();
  if (manager == nullptr) return 0;
  SYS_String const source = OperationPath(from);
  SYS_String const target = OperationPath(to);
  SFM_EventData data(source, target);
  // The system's rename replaces a target in one step, so the target is
  // replaced only where the question allowed it, and never lost on the way.
  bool mayReplace = true;
  if (IsFile(target)) {
    mayReplace = tovik::io::CanOpenForReading(source) != 0;
    if (mayReplace && overwrite == 0) {
      errno = EEXIST;
      if (manager->Event(SFM::EvOverwrite, data) != SFM::EvYes) return 0;
    }
  }
  return WithRetries(manager, SFM::EvMoveFailed, data, [&] {
    if (!mayReplace && IsFile(target)) {
      errno = EEXIST;
      return false;
    }
    return tovik::io::Rename(source, target) == 0;
  });
}

int SFM_Directory::DeleteFileA(char const *name) {
  SFM *const manager = Manager();
  if (manager == nullptr) return 0;
  SYS_String const path = OperationPath(name);
  SFM_EventData data(path, nullptr);
  return WithRetries(manager, SFM::EvDeleteFailed, data, [&] { return tovik::io::Remove(path) == 0; });
}

int SFM_Directory::MakeDirectory(SYS_String path) { return tovik::io::MakeDirectory(path); }

int SFM_Directory::MakePath(SYS_String path) {
  if (path.IsEmpty()) return 0;
  SYS_String rest(path);
  if (static_cast<char const *>(rest)[rest.GetLength() - 1] != '\\') rest += '\\';
  SYS_String prefix;
  int result = 1;
  for (int slash = rest.Find('\\'); slash >= 0; slash = rest.Find('\\')) {
    prefix += rest.Left(slash);
    rest = rest.Mid(slash + 1);
    int const length = prefix.GetLength();
    if (length > 0 && static_cast<char const *>(prefix)[length - 1] != ':') result = MakeDirectory(prefix);
    prefix += '\\';
  }
  return result;
}

int SFM_Directory::DeleteSubdir(char const *name) {
  SFM *const manager = Manager();
  if (manager == nullptr) return 0;
  SYS_String const path = OperationPath(name);
  if (tovik::mb::Cmp(GetCurDir(), SFM_FilePath(path).GetFileDirectory()) == 0) SetCurDir(fullPath);
  SFM_EventData data(path, nullptr);
  return WithRetries(manager, SFM::EvDeleteFailed, data,
                     [&] { return tovik::io::RemoveDirectory(path) == 0; });
}

int SFM_Directory::DeleteAll() {
  SFM_FilePath entry(fullPath);
  entry.AddSeparator();
  for (char const *name = GetNextFile("*.*"); name != nullptr; name = GetNextFile(nullptr)) {
    entry.SetFileNameExt(name);
    if (!DeleteFileA(entry)) return 0;
  }
  for (char const *name = GetNextSubdir("*.*"); name != nullptr; name = GetNextSubdir(nullptr)) {
    entry.SetFileNameExt(name);
    SFM_Directory subdirectory(entry);
    if (!subdirectory.DeleteAll() || !DeleteSubdir(entry)) return 0;
  }
  return 1;
}
