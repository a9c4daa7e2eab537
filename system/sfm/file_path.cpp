#include "sfm_file_path.h"

#include <cstring>

namespace {

// The separators as a constant, so that paths made by static constructors in
// other files never depend on the order in which statics come up.
constexpr char kSeparators[] = "\\/";

bool IsSeparator(char c) { return c != '\0' && std::strchr(kSeparators, c) != nullptr; }

char DefaultSeparatorChar() { return kSeparators[SFM_FilePath::DefaultSeparator == 1 ? 1 : 0]; }

char LastByte(SYS_String const &text) {
  int const length = text.GetLength();
  return length > 0 ? text[length - 1] : '\0';
}

}  // namespace

SYS_String const SFM_FilePath::DirectorySeparators(kSeparators);
int SFM_FilePath::DefaultSeparator = 0;

SFM_FilePath::SFM_FilePath(char const *text) { Process(SYS_String(text)); }

SFM_FilePath::SFM_FilePath(CString const &text) { Process(text); }

SYS_String SFM_FilePath::operator=(char const *text) {
  if (text == nullptr) {
    Clear();
  } else {
    Process(SYS_String(text));
  }
  return fullPath;
}

SYS_String SFM_FilePath::operator=(CString const &text) {
  if (text.IsEmpty()) {
    Clear();
  } else {
    Process(text);
  }
  return fullPath;
}

void SFM_FilePath::Process(SYS_String const &path) {
  SYS_String const text(path);  // path may be one of our own fields
  int const length = text.GetLength();
  int baseLength = 0;
  int const colon = text.Find(':');
  if (colon >= 0) {
    baseLength = colon + 1;
  } else if (length > 2 && IsSeparator(text[0]) && text[1] == text[0]) {
    // A network root: two equal separators, server, separator, share, separator.
    int const server = text.FindOneOf(kSeparators, 2);
    int const share = server < 0 ? -1 : text.FindOneOf(kSeparators, server + 1);
    baseLength = share < 0 ? length : share + 1;
  }
  basePath = text.Left(baseLength);

  int const last = text.ReverseFindOneOf(kSeparators, -2);
  if (last < baseLength) {
    relPath = SYS_String();
    fileNameExt = text.Mid(baseLength);
  } else {
    relPath = text.Mid(baseLength, last + 1 - baseLength);
    fileNameExt = text.Mid(last + 1);
  }
  fileNameExt.TrimRight(".");
  int const dot = fileNameExt.ReverseFind('.', -2);
  if (dot < 0) {
    fileName = fileNameExt;
    fileExtension = SYS_String();
  } else {
    fileName = fileNameExt.Left(dot);
    fileExtension = fileNameExt.Mid(dot);
  }
  Regenerate();
}

void SFM_FilePath::Regenerate() {
  SYS_String nameExt(fileName);
  nameExt << fileExtension;
  fileNameExt = nameExt;
  SYS_String full(basePath);
  full << relPath << fileNameExt;
  fullPath = full;
}

void SFM_FilePath::Clear() {
  fileName = SYS_String();
  fileExtension = SYS_String();
  relPath = SYS_String();
  basePath = SYS_String();
  Regenerate();
}

void SFM_FilePath::Prepare(char const *path) {
  if (path != nullptr) *this = path;
  Regenerate();
}

// ------------------------------------------------------------------- getters

SYS_String SFM_FilePath::GetBasePath(char const *path) {
  Prepare(path);
  return basePath;
}

SYS_String SFM_FilePath::GetRelPath(char const *path) {
  Prepare(path);
  return relPath;
}

SYS_String SFM_FilePath::GetFileDirectory(char const *path) {
  Prepare(path);
  SYS_String directory(basePath);
  directory << relPath;
  return directory;
}

SYS_String SFM_FilePath::GetFileNameExt(char const *path) {
  Prepare(path);
  return fileNameExt;
}

SYS_String SFM_FilePath::GetFileName(char const *path) {
  Prepare(path);
  return fileName;
}

SYS_String SFM_FilePath::GetFileExtension(char const *path) {
  Prepare(path);
  return fileExtension;
}

// ------------------------------------------------------------------- setters

SYS_String SFM_FilePath::WithPath(char const *path, char const *text, SYS_String (SFM_FilePath::*set)(char const *)) {
  SYS_String const keep(text);  // text may point into this object
  Prepare(path);
  return (this->*set)(keep);
}

SYS_String SFM_FilePath::SetBasePath(char const *text) {
  basePath = SFM_FilePath(text).basePath;
  Regenerate();
  return fullPath;
}

SYS_String SFM_FilePath::SetBasePath(char const *path, char const *text) {
  return WithPath(path, text, &SFM_FilePath::SetBasePath);
}

SYS_String SFM_FilePath::SetRelPath(char const *text) {
  relPath = SFM_FilePath(text).relPath;
  Regenerate();
  return fullPath;
}

SYS_String SFM_FilePath::SetRelPath(char const *path, char const *text) {
  return WithPath(path, text, &SFM_FilePath::SetRelPath);
}

SYS_String SFM_FilePath::SetFileDirectory(char const *text) {
  SYS_String directory(text);
  if (directory.GetLength() > 0 && !IsSeparator(LastByte(directory))) directory << DefaultSeparatorChar();
  SFM_FilePath const parse(directory);
  basePath = parse.basePath;
  relPath = parse.relPath;
  Regenerate();
  return fullPath;
}

SYS_String SFM_FilePath::SetFileDirectory(char const *path, char const *text) {
  return WithPath(path, text, &SFM_FilePath::SetFileDirectory);
}

SYS_String SFM_FilePath::SetFileName(char const *text, int dropExtension) {
  SFM_FilePath const parse(text);
  fileName = parse.fileName;
  if (dropExtension == 0) fileName << parse.fileExtension;
  Regenerate();
  return fullPath;
}

SYS_String SFM_FilePath::SetFileName(char const *path, char const *text, int dropExtension) {
  SYS_String const keep(text);  // text may point into this object
  Prepare(path);
  return SetFileName(keep, dropExtension);
}

SYS_String SFM_FilePath::SetFileExtension(char const *text) {
  SYS_String extension(text);
  if (extension.GetLength() == 0 || extension[0] != '.') extension.Insert(0, ".");
  fileExtension = SFM_FilePath(extension).fileExtension;
  Regenerate();
  return fullPath;
}

SYS_String SFM_FilePath::SetFileExtension(char const *path, char const *text) {
  return WithPath(path, text, &SFM_FilePath::SetFileExtension);
}

SYS_String SFM_FilePath::SetFileNameExt(char const *text) {
  SFM_FilePath const parse(text);
  fileName = parse.fileName;
  fileExtension = parse.fileExtension;
  Regenerate();
  return fullPath;
}

SYS_String SFM_FilePath::SetFileNameExt(char const *path, char const *text) {
  return WithPath(path, text, &SFM_FilePath::SetFileNameExt);
}

SYS_String SFM_FilePath::SetDefault(char const *text) {
  SFM_FilePath const parse(text);
  if (basePath.GetLength() == 0) basePath = parse.basePath;
  if (relPath.GetLength() == 0) relPath = parse.relPath;
  if (fileName.GetLength() == 0) fileName = parse.fileName;
  if (fileExtension.GetLength() == 0) fileExtension = parse.fileExtension;
  Regenerate();
  return fullPath;
}

SYS_String SFM_FilePath::SetDefPath(char const *text) {
  if (basePath.GetLength() == 0) {
    char const separator = DefaultSeparatorChar();
    SFM_FilePath const parse(text);
    basePath = parse.basePath;
    SYS_String directory(parse.relPath);
    directory << parse.fileNameExt;
    if (directory.GetLength() > 0 && LastByte(directory) != separator) directory << separator;
    directory << relPath;
    if (directory.GetLength() > 0 && LastByte(directory) != separator) directory << separator;
    relPath = directory;
  }
  Regenerate();
  return fullPath;
}

SYS_String SFM_FilePath::AddSeparator() {
  Regenerate();
  char const separator = DefaultSeparatorChar();
  if (fullPath.GetLength() > 0 && LastByte(fullPath) != separator) {
    SYS_String closed(fullPath);
    closed << separator;
    Process(closed);
  }
  return fullPath;
}
