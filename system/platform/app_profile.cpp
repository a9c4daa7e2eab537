#include "app_profile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <vector>

#include "file_io.h"
#include "numtext.h"

namespace tovik::app {

namespace {

// Never destroyed, so that the profile can still be read in the clean-ups at exit.
std::string &ProfilePath() {
  static std::string *const path = new std::string();
  return *path;
}

std::string Trim(std::string const &text) {
  std::size_t first = 0;
  std::size_t last = text.size();
  auto const blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (first < last && blank(text[first])) ++first;
  while (last > first && blank(text[last - 1])) --last;
  return text.substr(first, last - first);
}

bool SameName(std::string const &a, char const *b) {
  std::size_t i = 0;
  for (; i < a.size() && b[i] != '\0'; ++i) {
    auto const fold = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    if (fold(a[i]) != fold(b[i])) return false;
  }
  return i == a.size() && b[i] == '\0';
}

// "[name]" gives true and the name.
bool SectionHeader(std::string const &line, std::string &name) {
  std::string const text = Trim(line);
  if (text.size() < 2 || text.front() != '[') return false;
  std::size_t const close = text.find(']');
  if (close == std::string::npos) return false;
  name = Trim(text.substr(1, close - 1));
  return true;
}

// "key=value" gives true with both parts trimmed; comments give false.
bool EntryLine(std::string const &line, std::string &key, std::string &value) {
  std::string const text = Trim(line);
  if (text.empty() || text.front() == ';' || text.front() == '#' || text.front() == '[') return false;
  std::size_t const equals = text.find('=');
  if (equals == std::string::npos) return false;
  key = Trim(text.substr(0, equals));
  value = Trim(text.substr(equals + 1));
  return true;
}

std::vector<std::string> ReadLines() {
  std::vector<std::string> lines;
  FILE *const file = std::fopen(io::NativePath(ProfilePath().c_str()).c_str(), "r");
  if (file == nullptr) return lines;
  std::string line;
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
    if (c == '\n') {
      lines.push_back(line);
      line.clear();
    } else {
      line += static_cast<char>(c);
    }
  }
  if (!line.empty()) lines.push_back(line);
  std::fclose(file);
  return lines;
}

// Writes the lines beside the profile and renames them into place.
bool SaveLines(std::vector<std::string> const &lines) {
  std::string const path = io::NativePath(ProfilePath().c_str());
  std::string temporary = path + ".XXXXXX";
  int const fd = ::mkostemp(&temporary[0], O_CLOEXEC);
  if (fd < 0) return false;
  struct stat info;
  ::fchmod(fd, ::stat(path.c_str(), &info) == 0 ? (info.st_mode & 07777) : 0644);
  std::string text;
  for (std::string const &line : lines) text += line + '\n';
  bool ok = true;
  for (std::size_t done = 0; ok && done < text.size();) {
    ssize_t const n = ::write(fd, text.data() + done, text.size() - done);
    if (n < 0 && errno == EINTR) continue;
    ok = n > 0;
    if (ok) done += static_cast<std::size_t>(n);
  }
  ok = ok && ::fsync(fd) == 0;
  ok = ::close(fd) == 0 && ok;
  ok = ok && ::rename(temporary.c_str(), path.c_str()) == 0;
  if (!ok) ::unlink(temporary.c_str());
  return ok;
}

// The entry's value; false when the profile, section or entry is missing.
bool Lookup(char const *section, char const *entry, std::string &value) {
  if (section == nullptr || entry == nullptr || ProfilePath().empty()) return false;
  bool inSection = false;
  std::string name;
  for (std::string const &line : ReadLines()) {
    if (SectionHeader(line, name)) {
      inSection = SameName(name, section);
    } else if (inSection && EntryLine(line, name, value) && SameName(name, entry)) {
      return true;
    }
  }
  return false;
}

}  // namespace

void SetProfilePath(char const *path) { ProfilePath() = path != nullptr ? path : ""; }

std::string GetProfilePath() { return ProfilePath(); }

std::string GetProfileString(char const *section, char const *entry, char const *defaultValue) {
  std::string value;
  if (Lookup(section, entry, value)) return value;
  return defaultValue != nullptr ? defaultValue : "";
}

int WriteProfileString(char const *section, char const *entry, char const *value) {
  if (section == nullptr || ProfilePath().empty()) return 0;
  std::vector<std::string> lines = ReadLines();
  std::string name;
  std::string old;
  // The section's header and the line behind its last entry.
  std::size_t header = lines.size();
  std::size_t end = lines.size();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (!SectionHeader(lines[i], name)) continue;
    if (header != lines.size()) {
      end = i;
      break;
    }
    if (SameName(name, section)) header = i;
  }
  if (header == lines.size()) {
    if (entry == nullptr || value == nullptr) return SaveLines(lines) ? 1 : 0;
    lines.push_back(std::string("[") + section + "]");
    lines.push_back(std::string(entry) + "=" + value);
    return SaveLines(lines) ? 1 : 0;
  }
  if (entry == nullptr) {
    lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(header),
                lines.begin() + static_cast<std::ptrdiff_t>(end));
    return SaveLines(lines) ? 1 : 0;
  }
  std::size_t last = header;
  for (std::size_t i = header + 1; i < end; ++i) {
    if (!EntryLine(lines[i], name, old)) continue;
    if (SameName(name, entry)) {
      if (value == nullptr) {
        lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(i));
      } else {
        lines[i] = name + "=" + value;
      }
      return SaveLines(lines) ? 1 : 0;
    }
    last = i;
  }
  if (value != nullptr) {
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(last + 1), std::string(entry) + "=" + value);
  }
  return SaveLines(lines) ? 1 : 0;
}

int GetProfileInt(char const *section, char const *entry, int defaultValue) {
  std::string value;
  if (!Lookup(section, entry, value)) return defaultValue;
  return num::StrToL(value.c_str(), nullptr);
}

int WriteProfileInt(char const *section, char const *entry, int value) {
  char text[16];
  std::snprintf(text, sizeof text, "%d", value);
  return WriteProfileString(section, entry, text);
}

}  // namespace tovik::app
