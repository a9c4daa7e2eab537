#include "sfm_file.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <string>

#include "file_io.h"
#include "sfm_directory.h"
#include "sfm_manager.h"
#include "ssm.h"

namespace {

template <class U>
U ReverseBits(U value) {
  U result = 0;
  for (unsigned bit = 0; bit < sizeof(U) * 8; ++bit) {
    result = static_cast<U>((result << 1) | (value & 1U));
    value = static_cast<U>(value >> 1);
  }
  return result;
}

template <class U>
void ReverseAs(void *value) {
  U bits;
  std::memcpy(&bits, value, sizeof bits);
  bits = ReverseBits(bits);
  std::memcpy(value, &bits, sizeof bits);
}

// Reverses the order of the bits of a value of 1, 2 or 4 bytes in place.
void ReverseInPlace(void *value, std::int32_t width) {
  if (width == 1) ReverseAs<std::uint8_t>(value);
  if (width == 2) ReverseAs<std::uint16_t>(value);
  if (width == 4) ReverseAs<std::uint32_t>(value);
}

std::int32_t ToPosition(std::int64_t position) {
  return position < 0 || position > INT32_MAX ? -1 : static_cast<std::int32_t>(position);
}

}  // namespace

SFM_File::SFM_File(char const *fileName)
    : stream(nullptr), length(0), tempClosed(0), mapping(nullptr) {
  if (fileName != nullptr && *fileName != '\0') {
    name = fileName;
    length = -1;
  }
  if (SFM *const manager = SFM::GetManager()) {
    manager->fileList.AddHead(this);
    manager->CountName(name, 1);
  }
}

SFM_File::SFM_File(char const *fileName, char const *fileMode) : SFM_File(fileName) {
  bool const named = fileName != nullptr && *fileName != '\0';
  bool const moded = fileMode != nullptr && *fileMode != '\0';
  SSM_CHECK(named && moded, "Tovik: a file opened at construction needs a name and a mode");
  mode = fileMode;
  Open(mode);
}

SFM_File::SFM_File(SFM_File const &other)
    : SCC_SafeDListNode<SFM_File>(other),
      stream(nullptr),
      name(other.name),
      length(other.name.IsEmpty() ? 0 : -1),
      tempClosed(0),
      mapping(nullptr) {}

SFM_File &SFM_File::operator=(SFM_File const &other) {
  if (&other == this) return *this;
  Close();
  Rename(other.name);
  mode = other.mode;
  length = name.IsEmpty() ? 0 : -1;
  return *this;
}

SFM_File::~SFM_File() {
  Close();
  if (SFM *const manager = IsAlone() ? nullptr : SFM::GetManager()) manager->CountName(name, -1);
  if (mapping != nullptr) {
    // Only a view that the system refused to unmap is left here.
    delete mapping;
  }
}

void SFM_File::SetName(SYS_String const &text) {
  SSM_CHECK(!IsOpen(), "Tovik: cannot rename an open file");
  if (IsOpen()) return;
  Rename(text);
  length = -1;  // the cached length was the old file's
}

void SFM_File::Rename(SYS_String const &text) {
  SFM *const manager = IsAlone() ? nullptr : SFM::GetManager();
  if (manager != nullptr) manager->CountName(name, -1);
  name = text;
  if (manager != nullptr) manager->CountName(name, 1);
}

void SFM_File::SetStream(FILE *newStream) {
  int const change = (newStream != nullptr ? 1 : 0) - (stream != nullptr ? 1 : 0);
  stream = newStream;
  if (change == 0 || IsAlone()) return;
  if (SFM *const manager = SFM::GetManager()) manager->CountStream(change);
}

void SFM_File::SetMode(SYS_String const &text) {
  SSM_CHECK(!IsOpen(), "Tovik: cannot change the mode of an open file");
  if (IsOpen()) return;
  mode = text;
}

char const *SFM_File::operator=(char const *text) {
  SetName(text);
  return text;
}

int SFM_File::MayBeTempClosed() const { return stream != nullptr ? 1 : 0; }

void SFM_File::TempClose() {
  SSM_CHECK(MayBeTempClosed(), "Tovik: only an open file can be closed for a while");
  if (!MayBeTempClosed()) return;
  // The stack must hold this entry for the reopen, reachable or not.
  if (!PushPosition(0, current)) positions.Push(0);
  tempClosed = 1;
  errno = 0;
  FILE *const closing = stream;
  SetStream(nullptr);
  // A failed close has lost buffered data: its owner hears of it.
  if (tovik::io::Close(closing) != 0) RaiseEvent(SFM::EvWriteFailed);
}

int SFM_File::ReOpen(SYS_String const &newName, SYS_String const &newMode) {
  Close();
  SetName(newName);
  return Open(newMode);
}

void SFM_File::ReOpen() {
  if (tempClosed == 0) return;
  tempClosed = 0;
  RaiseEvent(SFM::EvOpening);
  SYS_String const reopenMode = GetReOpenMode();
  for (;;) {
    errno = 0;
    SetStream(tovik::io::Open(name, reopenMode));
    if (stream != nullptr || RaiseEvent(SFM::EvOpenFailed) != SFM::EvRetry) break;
  }
  if (stream != nullptr) {
    PopPosition();
  } else {
    positions.Pop();  // the file stays closed; its position goes
  }
}

SYS_String SFM_File::GetReOpenMode() const {
  if (static_cast<char const *>(mode)[0] != 'w') return mode;
  SYS_String reopen("a");
  reopen += mode.Mid(1);
  return reopen;
}

int SFM_File::IsValid() const { return 1; }

int SFM_File::Open(SYS_String newMode) {
  SSM_CHECK(!IsOpen(), "Tovik: the file is open already");
  if (IsOpen()) return 0;
  RaiseEvent(SFM::EvOpening);
  for (;;) {
    errno = 0;
    if (!newMode.IsEmpty()) mode = newMode;
    SetStream(tovik::io::Open(name, mode));
    if (stream != nullptr) {
      RaiseEvent(SFM::EvOpened);
      length = -1;
      return 1;
    }
    if (RaiseEvent(SFM::EvOpenFailed) != SFM::EvRetry) return 0;
  }
}

int SFM_File::Copy(char const *target, int overwrite) { return SFM_Directory().CopyFileA(name, target, overwrite); }

int SFM_File::Move(char const *target, int overwrite) { return SFM_Directory().MoveFileA(name, target, overwrite); }

int SFM_File::Delete() { return SFM_Directory().DeleteFileA(name); }

int SFM_File::Exists() { return SFM_Directory().FileExists(name); }

bool SFM_File::Ready() {
  ReOpen();
  SSM_CHECK(stream != nullptr, "Tovik: the file has no stream");
  return stream != nullptr;
}

int SFM_File::Eof() {
  if (!Ready()) return 1;
  if (tovik::io::AtEnd(stream)) return 1;
  return GetPosition() == GetLength() ? 1 : 0;
}

int SFM_File::IsOpen() const { return stream != nullptr || tempClosed != 0 ? 1 : 0; }

void SFM_File::Flush() {
  if (IsOpen() && Ready()) tovik::io::Flush(stream);
}

void SFM_File::Close() {
  if (IsOpen()) {
    ReOpen();
    // A file that could not come back has been reported and is closed.
    if (stream != nullptr) {
      errno = 0;
      tovik::io::ClearError(stream);
      FILE *const closing = stream;
      SetStream(nullptr);
      RaiseEvent(tovik::io::Close(closing) != 0 ? SFM::EvCloseFailed : SFM::EvClosed);
    }
  }
  if (mapping != nullptr) UnmapMemory();
}

void *SFM_File::MapToMemory() {
  if (mapping != nullptr) return mapping->view;
  if (!IsOpen()) return nullptr;
  // The stream lets go of the file first, so that what it buffered is in it.
  if (MayBeTempClosed()) TempClose();
  tovik::io::MappedView record;
  if (!tovik::io::MapFile(name, record)) return nullptr;
  mapping = new tovik::io::MappedView(record);
  return mapping->view;
}

void SFM_File::UnmapMemory() {
  if (mapping == nullptr || !tovik::io::UnmapFile(*mapping)) return;
  delete mapping;
  mapping = nullptr;
  if (tempClosed != 0) ReOpen();
}

int SFM_File::Seek(int offset, SeekType type) {
  if (!IsOpen()) return 0;
  ReOpen();
  if (stream == nullptr) return 0;
  return tovik::io::Seek(stream, offset, type) == 0 ? 1 : 0;
}

int SFM_File::PushPosition(int offset, SeekType type) {
  std::int32_t const old = GetPosition();
  if (Seek(offset, type)) {
    positions.Push(old);
    return 1;
  }
  Seek(old, begin);
  return 0;
}

void SFM_File::PopPosition() {
  SSM_CHECK(positions.GetStackSize() > 0, "Tovik: no saved position to go back to");
  if (positions.GetStackSize() == 0) return;
  Seek(positions.Pop(), begin);
}

std::int32_t SFM_File::GetPosition() {
  if (!IsOpen()) return -1;
  ReOpen();
  if (stream == nullptr) return -1;
  return ToPosition(tovik::io::Tell(stream));
}

std::int32_t SFM_File::GetLength() {
  if (length != -1 || name.IsEmpty()) return length;
  if (IsOpen()) {
    ReOpen();
    if (stream == nullptr) return length;
    std::int64_t const position = tovik::io::Tell(stream);
    if (tovik::io::Seek(stream, 0, end) == 0) length = ToPosition(tovik::io::Tell(stream));
    tovik::io::Seek(stream, position, begin);
    return length;
  }
  FILE *const probe = tovik::io::Open(name, "r");
  if (probe == nullptr) return length;
  if (tovik::io::Seek(probe, 0, end) == 0) length = ToPosition(tovik::io::Tell(probe));
  tovik::io::Close(probe);
  return length;
}

void SFM_File::CheckLength() {
  if (IsOpen() && GetPosition() < length) return;
  length = -1;
}

int SFM_File::RaiseEvent(int code) {
  SFM *const manager = SFM::GetManager();
  if (manager == nullptr) return SFM::EvNone;
  SFM_EventData data(name, nullptr);
  return manager->Event(static_cast<SFM::EventCode>(code), data, this);
}

bool SFM_File::TransferFailed(int code) {
  if (stream == nullptr || !tovik::io::HasError(stream)) return false;
  // Cleared first: a subscriber may close this very file for a while.
  tovik::io::ClearError(stream);
  RaiseEvent(code);
  return true;
}

std::int32_t SFM_File::Read(void *buffer, std::int32_t count) {
  SSM_CHECK(buffer != nullptr, "Tovik: Read into a null buffer");
  if (buffer == nullptr || count <= 0 || !IsOpen() || !Ready()) return 0;
  errno = 0;
  tovik::io::ClearError(stream);
  std::size_t const got = tovik::io::Read(buffer, static_cast<std::size_t>(count), stream);
  TransferFailed(SFM::EvReadFailed);
  return static_cast<std::int32_t>(got);
}

int SFM_File::Write(void const *buffer, std::int32_t count) {
  SSM_CHECK(buffer != nullptr, "Tovik: Write from a null buffer");
  if (buffer == nullptr || count < 0 || !IsOpen() || !Ready()) return 0;
  errno = 0;
  tovik::io::ClearError(stream);
  std::size_t const put = tovik::io::Write(buffer, static_cast<std::size_t>(count), stream);
  bool const failed = TransferFailed(SFM::EvWriteFailed);
  CheckLength();
  return !failed && put == static_cast<std::size_t>(count) ? 1 : 0;
}

bool SFM_File::IsBinary() const { return mode.Find('b') >= 0; }

bool SFM_File::GetBytes(void *value, std::int32_t width, int reverse) {
  SSM_CHECK(IsBinary(), "Tovik: Can't call Get on text file");
  bool const whole = Read(value, width) == width;
  if (reverse != 0) ReverseInPlace(value, width);
  return whole;
}

int SFM_File::PutBytes(void const *value, std::int32_t width, int reverse) {
  SSM_CHECK(IsBinary(), "Tovik: Can't call Put on text file");
  unsigned char bytes[8];
  std::memcpy(bytes, value, static_cast<std::size_t>(width));
  if (reverse != 0) ReverseInPlace(bytes, width);
  return Write(bytes, width);
}

double SFM_File::Get(double &value) {
  GetBytes(&value, sizeof value, 0);
  return value;
}

std::uint32_t SFM_File::Get(std::uint32_t &value, int reverse) {
  GetBytes(&value, sizeof value, reverse);
  return value;
}

std::int32_t SFM_File::Get(std::int32_t &value, int reverse) {
  GetBytes(&value, sizeof value, reverse);
  return value;
}

unsigned char SFM_File::Get(unsigned char &value, int reverse) {
  GetBytes(&value, sizeof value, reverse);
  return value;
}

char SFM_File::Get(char &value, int reverse) {
  GetBytes(&value, sizeof value, reverse);
  return value;
}

unsigned short SFM_File::Get(unsigned short &value, int reverse) {
  GetBytes(&value, sizeof value, reverse);
  return value;
}

short SFM_File::Get(short &value, int reverse) {
  GetBytes(&value, sizeof value, reverse);
  return value;
}

int SFM_File::Put(double value) { return PutBytes(&value, sizeof value, 0); }
int SFM_File::Put(std::uint32_t value, int reverse) { return PutBytes(&value, sizeof value, reverse); }
int SFM_File::Put(std::int32_t value, int reverse) { return PutBytes(&value, sizeof value, reverse); }
int SFM_File::Put(unsigned char value, int reverse) { return PutBytes(&value, sizeof value, reverse); }
int SFM_File::Put(char value, int reverse) { return PutBytes(&value, sizeof value, reverse); }
int SFM_File::Put(unsigned short value, int reverse) { return PutBytes(&value, sizeof value, reverse); }
int SFM_File::Put(short value, int reverse) { return PutBytes(&value, sizeof value, reverse); }

char SFM_File::GetChar() {
  if (!IsOpen() || !Ready()) return -1;
  SSM_CHECK(!IsBinary(), "Tovik: Can't call GetChar on binary file");
  errno = 0;
  tovik::io::ClearError(stream);
  int c = tovik::io::GetChar(stream);
  if (c == '\r') {
    int const next = tovik::io::GetChar(stream);
    if (next == '\n') {
      c = '\n';
    } else if (next != EOF) {
      tovik::io::UngetChar(next, stream);
    }
  }
  if (TransferFailed(SFM::EvReadFailed) || c == EOF) return -1;
  return static_cast<char>(c);
}

int SFM_File::PutChar(char c) {
  if (!IsOpen() || !Ready()) return 0;
  errno = 0;
  tovik::io::ClearError(stream);
  int const put = tovik::io::PutChar(static_cast<unsigned char>(c), stream);
  bool const failed = TransferFailed(SFM::EvWriteFailed);
  CheckLength();
  return failed || put == EOF ? 0 : 1;
}

SYS_String SFM_File::GetLine(std::int32_t size) {
  if (!IsOpen() || !Ready()) return SYS_String();
  std::uint32_t const asked = static_cast<std::uint32_t>(size);
  int const limit = asked == 0 || asked >= 511 ? 511 : static_cast<int>(asked);
  char buffer[512];
  errno = 0;
  tovik::io::ClearError(stream);
  char const *const line = tovik::io::GetLine(buffer, limit, stream);
  bool const failed = TransferFailed(SFM::EvReadFailed);
  SSM_CHECK(!IsBinary(), "Tovik: Can't call GetLine on binary file");
  if (failed || line == nullptr) return SYS_String();
  return SYS_String(buffer);
}

int SFM_File::WriteLine(SYS_String const &text) {
  if (!IsOpen() || !Ready()) return 0;
  std::string block(static_cast<char const *>(text), static_cast<std::size_t>(text.GetLength()));
  block += '\n';
  errno = 0;
  tovik::io::ClearError(stream);
  std::size_t const put = tovik::io::Write(block.data(), block.size(), stream);
  bool const failed = TransferFailed(SFM::EvWriteFailed);
  CheckLength();
  return !failed && put == block.size() ? 1 : 0;
}

std::int32_t SFM_File::Printf(char const *format, ...) {
  SSM_CHECK(format != nullptr, "Tovik: Printf with a null format");
  if (format == nullptr || !IsOpen() || !Ready()) return 0;
  errno = 0;
  tovik::io::ClearError(stream);
  va_list arguments;
  va_start(arguments, format);
  int const written = tovik::io::PrintV(stream, format, arguments);
  va_end(arguments);
  bool const failed = TransferFailed(SFM::EvWriteFailed);
  CheckLength();
  return failed || written < 0 ? 0 : written;
}
