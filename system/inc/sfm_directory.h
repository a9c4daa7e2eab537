// SFM_Directory: a path with directory services.
//
// It lists the entries of its directory by wildcard ('*', '?', and "*.*" for
// every name; see dir_search.h), tells whether files and directories exist,
// copies, moves and deletes files and whole trees, creates directories and
// reads and sets the process's current directory. Failures that the
// application can answer go through the file manager's events (sfm_manager.h):
// 151 asks whether an existing target may be replaced (1: yes), 205 to 207
// report a failed copy, move or delete (2: retry). The rest answer what the
// system answered.
//
// Paths. A relative search pattern lies inside this directory; a pattern
// with a base of its own ("C:", "\\server\share\"), or one that begins with
// a separator (an absolute path on this system, which has no drives), is
// taken as it is. The file operations take each argument as a path: one
// without a base takes this directory's base, and nothing else, so a
// relative name is otherwise relative to the process's current directory.
// Either separator may be used; the system sees '/'.
//
// A directory owns its two searches (files, subdirectories), which run side
// by side; a copy of a directory starts with no search of its own.
#ifndef TOVIK_SFM_DIRECTORY_H
#define TOVIK_SFM_DIRECTORY_H

#include <cstdint>

#include "dir_search.h"
#include "sfm_file_path.h"
#include "sys_string.h"
#include "tovik_export.h"

// One running search: the entry found last, and the search's handle.
struct TOVIK_API SFM_FindData : tovik::io::FindRecord {
  std::int32_t handle;  // -1: no search running

  SFM_FindData() : tovik::io::FindRecord(), handle(-1) {}
  SFM_FindData(SFM_FindData const &) = delete;
  SFM_FindData &operator=(SFM_FindData const &) = delete;
  ~SFM_FindData() { Close(); }

  // Starts a search on path (replacing a running one); 1 if it found an entry.
  int Start(char const *path);
  // The next entry; at the end the search closes itself. 1 while it runs.
  int Step();
  // Ends the search; closing twice does nothing.
  void Close();
};

class TOVIK_API SFM_Directory : public SFM_FilePath {
 public:
  SFM_Directory();
  SFM_Directory(char const *path);  // NOLINT: a directory converts from its path
  SFM_Directory(SFM_Directory const &other);
  SFM_Directory &operator=(SFM_Directory const &other);
  ~SFM_Directory() override;
  void operator=(char const *path);
  void operator=(CString const &path);

  // The next entry matching pattern, or null at the end. A pattern starts a
  // new search; null goes on with the running one. The name stays valid until
  // the next step. A pattern closed by the default separator names the
  // directory itself.
  char *GetNextEntry(char const *pattern);
  // As GetNextEntry, skipping directories.
  char *GetNextFile(char const *pattern);
  // As GetNextEntry, skipping all but directories, and "." and "..".
  char *GetNextSubdir(char const *pattern);
  // name joined to this directory unless it has a base of its own or is
  // absolute.
  SYS_String operator+(char const *name) const;
  // The process's current directory, closed by the default separator.
  SYS_String const GetCurDir() const;
  // 0 on success, -1 on failure.
  int SetCurDir(SYS_String path);
  // 1 when a file (a directory) matches name; the search is closed again.
  int FileExists(char const *name);
  int DirExists(char const *name);
  // Copies from onto to. An existing target is replaced only with overwrite
  // or the answer 1 to event 151; a failure raises 205, retried on 2. A
  // failed copy never leaves half a target. 1 or 0.
  int CopyFileA(char const *from, char const *to, int overwrite);
  // Moves or renames. An existing target is replaced in one step, only when
  // the source can be opened and with overwrite or the answer 1 to 151;
  // otherwise it stays and the move fails with 206 (retried on 2). 1 or 0.
  int MoveFileA(char const *from, char const *to, int overwrite);
  // Removes a file or a link; 207 on failure, retried on 2. 1 or 0.
  int DeleteFileA(char const *name);
  // Creates one directory: non-zero on success.
  int MakeDirectory(SYS_String path);
  // Creates every directory of a path, separated by backslashes only, from
  // the root down; a prefix ending in ":" is skipped, a failure does not stop
  // the walk. The result is that of the last directory (0 for one that
  // existed), 0 for an empty path.
  int MakePath(SYS_String path);
  // Removes an empty directory (leaving it first if the process is in it);
  // 207 on failure, retried on 2. 1 or 0.
  int DeleteSubdir(char const *name);
  // Empties this directory: files and links first, then each subdirectory's
  // contents and the subdirectory. Links are removed, never followed. The
  // first failure ends it with 0, leaving what was not reached.
  int DeleteAll();

 protected:
  // Runs the search of data: a new one for a pattern, the next step for null.
  char *GetNextItem(SFM_FindData *data, char const *pattern);

 private:
  // The platform's copy, replacing the target.
  int _CopyFile(char const *from, char const *to);
  // name as a path, with this directory's base when it has none.
  SYS_String OperationPath(char const *name) const;

  SFM_FindData *fileSearch;
  SFM_FindData *subdirSearch;
};

#endif  // TOVIK_SFM_DIRECTORY_H
