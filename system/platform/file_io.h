// Files on the operating system: streams, whole-file operations and private
// memory maps, the one place where the library touches the disk.
//
// Every path handed to these functions may use either separator: each
// backslash is turned into '/' before the system sees it (character by
// character of the process code page, so the trail byte of a two-byte
// character is never taken for one). The last error is errno; functions that
// fail leave the system's code there and answer a failure value.
//
// A fault hook can be installed for tests: it is asked before each open,
// read, write and close of a stream and before each read and write of a file
// copy, and may make that one call fail with an errno value of its choosing.
// A failed stream transfer then looks exactly like a real one: nothing moves,
// and the stream's error state is set until it is cleared.
//
// One thread: nothing here is locked.
#ifndef TOVIK_FILE_IO_H
#define TOVIK_FILE_IO_H

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "tovik_export.h"

namespace tovik::io {

// The path as the system takes it: every backslash turned into '/'. Null
// gives an empty path.
TOVIK_API std::string NativePath(char const *path);

// --- Fault injection --------------------------------------------------------

enum class Operation { Open, Read, Write, Close };

// Answers 0 to let the call go ahead, or the errno value it is to fail with.
typedef int (*FaultHook)(Operation operation);

// Installs hook (null removes it) and returns the one it replaces.
TOVIK_API FaultHook SetFaultHook(FaultHook hook) noexcept;

// --- Streams (the C streams, behind the fault hook) ---------------------------

TOVIK_API FILE *Open(char const *path, char const *mode);
// Closes the stream whatever happens; 0 on success, EOF on failure.
TOVIK_API int Close(FILE *stream);
TOVIK_API std::size_t Read(void *buffer, std::size_t count, FILE *stream);
TOVIK_API std::size_t Write(void const *buffer, std::size_t count, FILE *stream);
TOVIK_API int GetChar(FILE *stream);
TOVIK_API int UngetChar(int c, FILE *stream);
TOVIK_API int PutChar(int c, FILE *stream);
// fgets: at most size - 1 bytes and a NUL; null at the end or on an error.
TOVIK_API char *GetLine(char *buffer, int size, FILE *stream);
// vfprintf in the "C" locale, so that numbers in files never depend on the
// user's locale.
TOVIK_API int PrintV(FILE *stream, char const *format, va_list arguments);
TOVIK_API int Seek(FILE *stream, std::int64_t offset, int origin);
TOVIK_API std::int64_t Tell(FILE *stream);
TOVIK_API int Flush(FILE *stream);
// The stream's error state, real or injected; ClearError clears both it and
// the end flag.
TOVIK_API int HasError(FILE *stream);
TOVIK_API void ClearError(FILE *stream);
TOVIK_API int AtEnd(FILE *stream);

// --- Whole files --------------------------------------------------------------

// Copies from onto to, replacing to. The copy is written beside the target
// and renamed over it at the end, so a failed copy leaves the target as it
// was. The permission bits of the source go with it. 1 on success, else 0.
TOVIK_API int CopyFile(char const *from, char const *to);
// rename: replaces an existing target in one step. 0 on success, -1 on failure.
TOVIK_API int Rename(char const *from, char const *to);
// Removes a file or a link (never what the link points to). 0 or -1.
TOVIK_API int Remove(char const *path);
// 1 when the file exists and can be opened for reading now, else 0.
TOVIK_API int CanOpenForReading(char const *path);
// 1 when both paths name one existing file (the same device and inode).
TOVIK_API int SameFile(char const *a, char const *b);

// --- Private maps ---------------------------------------------------------------

// A private, copy-on-write view of a whole file: writing into it changes
// memory only. The three members stand for the file, its mapping and the view.
struct MappedView {
  int file = -1;
  std::size_t size = 0;
  void *view = nullptr;
};

// Maps the whole of path for reading with private copies of written pages.
// 1 on success; 0 (and the record left empty) for a missing or empty file or
// any system failure.
TOVIK_API int MapFile(char const *path, MappedView &record);
// Unmaps the view and closes the file; 1 on success, 0 if the view could
// not be unmapped (then nothing else changes).
TOVIK_API int UnmapFile(MappedView &record);

}  // namespace tovik::io

#endif  // TOVIK_FILE_IO_H
