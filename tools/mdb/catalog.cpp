#include "catalog.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <sstream>

namespace {

// Runs work with standard output going to a temporary file, and gives what
// was written there: the text loader reports on standard output.
std::string CaptureStandardOutput(std::function<void()> const &work) {
  std::fflush(stdout);
  std::FILE *capture = std::tmpfile();
  int const saved = capture != nullptr ? ::dup(STDOUT_FILENO) : -1;
  if (saved < 0 || ::dup2(::fileno(capture), STDOUT_FILENO) < 0) {
    if (saved >= 0) ::close(saved);
    if (capture != nullptr) std::fclose(capture);
    work();
    return std::string();
  }
  work();
  std::fflush(stdout);
  ::dup2(saved, STDOUT_FILENO);
  ::close(saved);
  std::string text;
  std::rewind(capture);
  char chunk[4096];
  for (std::size_t n; (n = std::fread(chunk, 1, sizeof chunk, capture)) > 0;) text.append(chunk, n);
  std::fclose(capture);
  return text;
}

// "<name>(<line>) : <what>[ : "<text>"]" becomes a diagnostic of that line;
// anything else stays whole, without a line.
Diagnostic ParseReport(std::string const &name, std::string const &report) {
  std::string const head = name + '(';
  if (report.compare(0, head.size(), head) == 0) {
    std::size_t const close = report.find(") : ", head.size());
    if (close != std::string::npos && close > head.size() &&
        report.find_first_not_of("0123456789", head.size()) == close) {
      std::string what = report.substr(close + 4);
      std::size_t const colon = what.find(" : ");
      if (colon != std::string::npos) what.replace(colon, 3, ": ");
      return Diagnostic{name, std::atol(report.c_str() + head.size()), what};
    }
  }
  return Diagnostic{name, 0, report};
}

}  // namespace

FileFailures::FileFailures() { JoinAtEnd(&SFM::GetManager()->GetEvent()); }

int FileFailures::OnNotification(int code, SFM_EventData *data) {
  // The event's own text, without the names that GetText adds behind it.
  if (code >= SFM::EvOpenFailed) {
    std::string text = static_cast<char const *>(data->GetText());
    seen.push_back(text.substr(0, text.find("\r\n")));
  }
  return 0;
}

std::vector<std::string> FileFailures::Take() {
  std::vector<std::string> taken;
  taken.swap(seen);
  return taken;
}

bool Catalog::IsCompiledName(std::string const &path) {
  if (path.size() < 4) return false;
  std::string extension = path.substr(path.size() - 4);
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension == ".mdb";
}

Catalog::Catalog(std::string const &name) : path(name), compiled(IsCompiledName(name)) {
  FileFailures events;
  std::string const printed = CaptureStandardOutput([this] {
    database = compiled ? std::make_unique<SFM_MessageDB>(path.c_str())
                        : std::make_unique<SFM_MessageDB>(path.c_str(), 0);
  });
  failures = events.Take();
  std::istringstream lines(printed);
  for (std::string line; std::getline(lines, line);) reports.push_back(ParseReport(path, line));

  std::ifstream in(path, std::ios::binary);
  std::ostringstream whole;
  whole << in.rdbuf();
  bytes = whole.str();
  SCC_Map<int, SFM_MessageDB::keyTableElem> const *keys = database->GetKeys();
  opened = keys != nullptr && in.good();
  if (!opened) return;

  SCC_Map<int, SFM_MessageDB::keyTableElem> map(*keys);  // an iterator needs a map of its own
  for (SCC_MapIterator<int, SFM_MessageDB::keyTableElem> it(map); it.IsValid(); it.GetNext()) {
    SFM_MessageDB::keyTableElem const &elem = it.GetValue();
    std::string text;
    if (elem.position >= 0 && static_cast<std::size_t>(elem.position) <= bytes.size()) {
      text = bytes.substr(static_cast<std::size_t>(elem.position), elem.length);
    }
    text = text.substr(0, text.find('\0'));
    texts[it.GetKey()] = text;
    positions[it.GetKey()] = elem.position;
  }

  for (SFM_MessageDB::SectionTableNode *node = database->GetSections().GetHead(); node != nullptr;
       node = node->GetNextInList()) {
    sections.push_back(Section{static_cast<char const *>(node->name),
                               static_cast<std::int64_t>(node->id) + 1, node->largest,
                               !compiled && node->id == -1 && node->name.GetLength() == 0});
  }
  // The text loader puts each section in front: its file order is the
  // reverse. The compiled form keeps no order but that of the bases.
  if (compiled) {
    std::stable_sort(sections.begin(), sections.end(),
                     [](Section const &a, Section const &b) { return a.base < b.base; });
  } else {
    std::reverse(sections.begin(), sections.end());
  }
}

long Catalog::LineOf(std::int64_t key) const {
  auto const at = positions.find(key);
  if (compiled || at == positions.end() || at->second < 0) return 0;
  auto const end = bytes.begin() + std::min<std::int64_t>(at->second, bytes.size());
  return 1 + static_cast<long>(std::count(bytes.begin(), end, '\n'));
}

Section const *Catalog::SectionOf(std::int64_t id) const {
  Section const *found = nullptr;
  for (Section const &s : sections) {
    if (s.base <= id && (found == nullptr || s.base >= found->base)) found = &s;
  }
  return found;
}
