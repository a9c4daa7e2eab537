#include "file_io.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <vector>

#include "mbtext.h"
#include "numtext.h"

namespace tovik::io {

namespace {

FaultHook faultHook = nullptr;

// The library runs on one thread, so the streams' own locks are skipped
// (the *_unlocked calls): a lookup of a text takes two fewer lock pairs.

// Streams whose error state was set by the hook; cleared with the real one.
// Never destroyed: files are still closed by the clean-ups at exit.
std::vector<FILE *> &Faulted() {
  static std::vector<FILE *> *const streams = new std::vector<FILE *>();
  return *streams;
}

// The hook's verdict on one call: 0 to go ahead, else errno is set and the
// value returned.
int Fault(Operation operation) {
  if (faultHook == nullptr) return 0;
  int const error = faultHook(operation);
  if (error != 0) errno = error;
  return error;
}

// An injected failure on a stream: its error state is set like a real one's.
bool FaultStream(Operation operation, FILE *stream) {
  if (Fault(operation) == 0) return false;
  Faulted().push_back(stream);
  return true;
}

void Forget(FILE *stream) {
  std::vector<FILE *> &streams = Faulted();
  if (streams.empty()) return;
  streams.erase(std::remove(streams.begin(), streams.end(), stream), streams.end());
}

// Keeps errno of the failure that is being reported across the clean-up.
class ErrnoKeeper {
 public:
  ErrnoKeeper() : saved(errno) {}
  ~ErrnoKeeper() { errno = saved; }
  ErrnoKeeper(ErrnoKeeper const &) = delete;
  ErrnoKeeper &operator=(ErrnoKeeper const &) = delete;

 private:
  int saved;
};

// The transfers of a copy: false with errno set on a failure.
bool ReadAll(int fd, char *buffer, std::size_t size, std::size_t &got) {
  if (Fault(Operation::Read) != 0) return false;
  for (;;) {
    ssize_t const n = ::read(fd, buffer, size);
    if (n >= 0) {
      got = static_cast<std::size_t>(n);
      return true;
    }
    if (errno != EINTR) return false;
  }
}

bool WriteAll(int fd, char const *buffer, std::size_t size) {
  if (Fault(Operation::Write) != 0) return false;
  while (size > 0) {
    ssize_t const n = ::write(fd, buffer, size);
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    buffer += n;
    size -= static_cast<std::size_t>(n);
  }
  return true;
}

}  // namespace

std::string NativePath(char const *path) {
  std::string result;
  if (path == nullptr) return result;
  for (char const *p = path; *p != '\0';) {
    std::size_t const n = mb::CharLen(p);
    if (n == 1 && *p == '\\') {
      result += '/';
    } else {
      result.append(p, n);
    }
    p += n;
  }
  return result;
}

FaultHook SetFaultHook(FaultHook hook) noexcept {
  FaultHook const old = faultHook;
  faultHook = hook;
  return old;
}

FILE *Open(char const *path, char const *mode) {
  if (Fault(Operation::Open) != 0) return nullptr;
  FILE *const stream = std::fopen(NativePath(path).c_str(), mode != nullptr ? mode : "");
  if (stream == nullptr) return nullptr;
  int const fd = fileno(stream);
  struct stat info;
  if (::fstat(fd, &info) == 0 && S_ISDIR(info.st_mode)) {
    // Some systems open a directory as a stream; a file is never one.
    std::fclose(stream);
    errno = EISDIR;
    return nullptr;
  }
  // An editor started later must not inherit the library's files.
  ::fcntl(fd, F_SETFD, FD_CLOEXEC);
  return stream;
}

int Close(FILE *stream) {
  Forget(stream);
  int const error = Fault(Operation::Close);
  int const result = std::fclose(stream);
  if (error != 0) {
    errno = error;
    return EOF;
  }
  return result;
}

std::size_t Read(void *buffer, std::size_t count, FILE *stream) {
  if (FaultStream(Operation::Read, stream)) return 0;
  return ::fread_unlocked(buffer, 1, count, stream);
}

std::size_t Write(void const *buffer, std::size_t count, FILE *stream) {
  if (FaultStream(Operation::Write, stream)) return 0;
  return ::fwrite_unlocked(buffer, 1, count, stream);
}

int GetChar(FILE *stream) {
  if (FaultStream(Operation::Read, stream)) return EOF;
  return ::fgetc_unlocked(stream);
}

int UngetChar(int c, FILE *stream) { return std::ungetc(c, stream); }

int PutChar(int c, FILE *stream) {
  if (FaultStream(Operation::Write, stream)) return EOF;
  return ::fputc_unlocked(c, stream);
}

char *GetLine(char *buffer, int size, FILE *stream) {
  if (FaultStream(Operation::Read, stream)) return nullptr;
  return ::fgets_unlocked(buffer, size, stream);
}

int PrintV(FILE *stream, char const *format, va_list arguments) {
  if (FaultStream(Operation::Write, stream)) return -1;
  num::CLocaleScope const cLocale;
  return std::vfprintf(stream, format, arguments);
}

int Seek(FILE *stream, std::int64_t offset, int origin) {
  return ::fseeko(stream, static_cast<off_t>(offset), origin);
}

std::int64_t Tell(FILE *stream) { return static_cast<std::int64_t>(::ftello(stream)); }

int Flush(FILE *stream) { return ::fflush_unlocked(stream); }

int HasError(FILE *stream) {
  if (::ferror_unlocked(stream) != 0) return 1;
  std::vector<FILE *> const &streams = Faulted();
  return std::find(streams.begin(), streams.end(), stream) != streams.end() ? 1 : 0;
}

void ClearError(FILE *stream) {
  Forget(stream);
  ::clearerr_unlocked(stream);
}

int AtEnd(FILE *stream) { return ::feof_unlocked(stream) != 0 ? 1 : 0; }

int CopyFile(char const *from, char const *to) {
  std::string const source = NativePath(from);
  std::string const target = NativePath(to);
  int const in = ::open(source.c_str(), O_RDONLY | O_CLOEXEC);
  if (in < 0) return 0;
  struct stat info;
  bool const measured = ::fstat(in, &info) == 0;
  if (!measured || S_ISDIR(info.st_mode)) {
    int const error = measured ? EISDIR : errno;
    ::close(in);
    errno = error;
    return 0;
  }
  std::string temporary = target + ".XXXXXX";
  int const out = ::mkostemp(&temporary[0], O_CLOEXEC);
  if (out < 0) {
    ErrnoKeeper keep;
    ::close(in);
    return 0;
  }
  bool ok = ::fchmod(out, info.st_mode & 07777) == 0;
  std::vector<char> buffer(std::size_t{1} << 16);
  while (ok) {
    std::size_t got = 0;
    ok = ReadAll(in, buffer.data(), buffer.size(), got);
    if (!ok || got == 0) break;
    ok = WriteAll(out, buffer.data(), got);
  }
  bool const closing = ok;  // a close releases the descriptor even when it fails
  if (closing) ok = ::close(out) == 0;
  if (ok) ok = ::rename(temporary.c_str(), target.c_str()) == 0;
  if (!ok) {
    ErrnoKeeper keep;
    if (!closing) ::close(out);
    ::unlink(temporary.c_str());
  }
  ErrnoKeeper keep;
  ::close(in);
  return ok ? 1 : 0;
}

int Rename(char const *from, char const *to) {
  return std::rename(NativePath(from).c_str(), NativePath(to).c_str()) == 0 ? 0 : -1;
}

int Remove(char const *path) { return ::unlink(NativePath(path).c_str()) == 0 ? 0 : -1; }

int CanOpenForReading(char const *path) {
  int const fd = ::open(NativePath(path).c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return 0;
  struct stat info;
  bool const isFile = ::fstat(fd, &info) == 0 && !S_ISDIR(info.st_mode);
  ::close(fd);
  return isFile ? 1 : 0;
}

int SameFile(char const *a, char const *b) {
  struct stat first;
  struct stat second;
  if (::stat(NativePath(a).c_str(), &first) != 0) return 0;
  if (::stat(NativePath(b).c_str(), &second) != 0) return 0;
  return first.st_dev == second.st_dev && first.st_ino == second.st_ino ? 1 : 0;
}

int MapFile(char const *path, MappedView &record) {
  record = MappedView();
  int const fd = ::open(NativePath(path).c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return 0;
  struct stat info;
  bool const measured = ::fstat(fd, &info) == 0;
  if (!measured || !S_ISREG(info.st_mode) || info.st_size <= 0) {
    // An empty file has nothing to map.
    int const error = measured ? EINVAL : errno;
    ::close(fd);
    errno = error;
    return 0;
  }
  std::size_t const size = static_cast<std::size_t>(info.st_size);
  void *const view = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE, fd, 0);
  if (view == MAP_FAILED) {
    ErrnoKeeper keep;
    ::close(fd);
    return 0;
  }
  record.file = fd;
  record.size = size;
  record.view = view;
  return 1;
}

int UnmapFile(MappedView &record) {
  if (record.view != nullptr && ::munmap(record.view, record.size) != 0) return 0;
  if (record.file >= 0) ::close(record.file);
  record = MappedView();
  return 1;
}

}  // namespace tovik::io
