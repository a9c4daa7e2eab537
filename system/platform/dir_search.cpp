#include "dir_search.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <memory>
#include <vector>

#include "file_io.h"
#include "mbtext.h"

namespace tovik::io {

namespace {

struct Search {
  DIR *dir = nullptr;     // null for a search of one named entry
  std::string directory;  // with a closing '/'
  std::string pattern;    // the name part
};

// Never destroyed: directories of the file manager end their searches in the
// clean-ups at exit.
std::vector<std::unique_ptr<Search>> &Searches() {
  static auto *const searches = new std::vector<std::unique_ptr<Search>>();
  return *searches;
}

Search *Find(std::int32_t handle) {
  std::vector<std::unique_ptr<Search>> &searches = Searches();
  if (handle < 0 || static_cast<std::size_t>(handle) >= searches.size()) return nullptr;
  return searches[static_cast<std::size_t>(handle)].get();
}

std::int32_t Clamp(std::int64_t seconds) {
  if (seconds > INT32_MAX) return INT32_MAX;
  if (seconds < INT32_MIN) return INT32_MIN;
  return static_cast<std::int32_t>(seconds);
}

// Describes the entry; false when it is gone or too long for the record.
bool Describe(std::string const &directory, char const *name, FindRecord &record) {
  std::size_t const length = std::strlen(name);
  if (length >= sizeof record.name) return false;
  struct stat info;
  if (::lstat((directory + name).c_str(), &info) != 0) return false;
  record.attributes = 0;
  if (S_ISDIR(info.st_mode)) record.attributes |= kAttributeDirectory;
  if ((info.st_mode & S_IWUSR) == 0) record.attributes |= kAttributeReadOnly;
  record.creationTime = Clamp(info.st_ctime);
  record.accessTime = Clamp(info.st_atime);
  record.writeTime = Clamp(info.st_mtime);
  record.size = info.st_size > static_cast<off_t>(UINT32_MAX) ? UINT32_MAX
                                                               : static_cast<std::uint32_t>(info.st_size);
  std::memcpy(record.name, name, length + 1);
  return true;
}

bool HasWildcard(char const *text) {
  for (char const *p = text; *p != '\0'; p = mb::Inc(p)) {
    if (mb::CharLen(p) == 1 && (*p == '*' || *p == '?')) return true;
  }
  return false;
}

// '*' and '?' by characters; the usual greedy walk with one point to go
// back to, which takes at most the product of the two lengths.
bool Match(char const *name, char const *pattern, char const *patternEnd) {
  char const *star = nullptr;
  char const *resume = nullptr;
  while (*name != '\0') {
    std::size_t const n = mb::CharLen(name);
    if (pattern < patternEnd && *pattern == '*') {
      star = ++pattern;
      resume = name;
      continue;
    }
    if (pattern < patternEnd) {
      std::size_t const p = mb::CharLen(pattern);
      if ((p == 1 && *pattern == '?') || (p == n && std::memcmp(pattern, name, n) == 0)) {
        pattern += p;
        name += n;
        continue;
      }
    }
    if (star == nullptr) return false;
    pattern = star;
    resume += mb::CharLen(resume);
    name = resume;
  }
  while (pattern < patternEnd && *pattern == '*') ++pattern;
  return pattern == patternEnd;
}

// The next entry of a directory search that matches; false at the end.
bool Next(Search &search, FindRecord &record) {
  if (search.dir == nullptr) return false;
  while (dirent *entry = ::readdir(search.dir)) {
    if (MatchName(entry->d_name, search.pattern.c_str()) &&
        Describe(search.directory, entry->d_name, record)) {
      return true;
    }
  }
  return false;
}

}  // namespace

int MatchName(char const *name, char const *pattern) {
  if (name == nullptr || pattern == nullptr) return 0;
  std::size_t const length = std::strlen(pattern);
  if (Match(name, pattern, pattern + length)) return 1;
  // "x.*" also stands for "x" without an extension.
  bool const dotStar = length >= 2 && std::strcmp(pattern + length - 2, ".*") == 0 &&
                       mb::CharLen(pattern + length - 2) == 1;
  return dotStar && Match(name, pattern, pattern + length - 2) ? 1 : 0;
}

std::int32_t FindFirst(char const *pattern, FindRecord &record) {
  std::string const path = NativePath(pattern);
  std::size_t const slash = path.rfind('/');
  auto search = std::make_unique<Search>();
  if (slash == std::string::npos) {
    search->pattern = path;
  } else {
    search->directory = path.substr(0, slash + 1);
    search->pattern = path.substr(slash + 1);
  }
  if (search->pattern.empty()) {
    errno = ENOENT;
    return -1;
  }
  if (!HasWildcard(search->pattern.c_str())) {
    if (!Describe(search->directory, search->pattern.c_str(), record)) return -1;
  } else {
    search->dir = ::opendir(search->directory.empty() ? "." : search->directory.c_str());
    if (search->dir == nullptr) return -1;
    if (!Next(*search, record)) {
      ::closedir(search->dir);
      errno = ENOENT;
      return -1;
    }
  }
  std::vector<std::unique_ptr<Search>> &searches = Searches();
  for (std::size_t i = 0; i < searches.size(); ++i) {
    if (searches[i] == nullptr) {
      searches[i] = std::move(search);
      return static_cast<std::int32_t>(i);
    }
  }
  if (searches.size() >= INT32_MAX) {
    if (search->dir != nullptr) ::closedir(search->dir);
    errno = EMFILE;
    return -1;
  }
  searches.push_back(std::move(search));
  return static_cast<std::int32_t>(searches.size() - 1);
}

int FindNext(std::int32_t handle, FindRecord &record) {
  Search *const search = Find(handle);
  if (search == nullptr) {
    errno = EINVAL;
    return -1;
  }
  if (Next(*search, record)) return 0;
  errno = ENOENT;
  return -1;
}

int FindClose(std::int32_t handle) {
  Search *const search = Find(handle);
  if (search == nullptr) return -1;
  if (search->dir != nullptr) ::closedir(search->dir);
  Searches()[static_cast<std::size_t>(handle)].reset();
  return 0;
}

int MakeDirectory(char const *path) { return ::mkdir(NativePath(path).c_str(), 0777) == 0 ? 1 : 0; }

int RemoveDirectory(char const *path) { return ::rmdir(NativePath(path).c_str()) == 0 ? 0 : -1; }

std::string GetCurrentDirectory() {
  std::vector<char> buffer(256);
  for (;;) {
    if (::getcwd(buffer.data(), buffer.size()) != nullptr) return std::string(buffer.data());
    if (errno != ERANGE || buffer.size() > (std::size_t{1} << 20)) return std::string();
    buffer.resize(buffer.size() * 2);
  }
}

int SetCurrentDirectory(char const *path) { return ::chdir(NativePath(path).c_str()) == 0 ? 0 : -1; }

}  // namespace tovik::io
