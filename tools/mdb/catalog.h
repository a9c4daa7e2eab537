// A message database as tovik-mdb sees it: loaded in the form its name
// selects, with what went wrong on the way, and with the raw texts and the
// line of each key read back from the file itself.
#ifndef TOVIK_MDB_CATALOG_H
#define TOVIK_MDB_CATALOG_H

#include <tovik.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

// One message the tool gives: FILE:LINE: severity: text (no line when 0).
struct Diagnostic {
  std::string file;
  long line;
  std::string text;
};

struct Section {
  std::string name;
  std::int64_t base;
  std::int64_t largest;  // the largest number met in it
  bool isDefault;        // the section of the lines before the first header
};

class Catalog {
 public:
  // Loads path: the compiled form for a name ending in ".mdb" (any case),
  // else the text form. What the loader reports, and the file's own
  // failures, end up in Reports and Failures.
  explicit Catalog(std::string const &path);

  static bool IsCompiledName(std::string const &path);

  std::string const &Path() const { return path; }
  bool IsCompiled() const { return compiled; }
  // The file opened and was read.
  bool Opened() const { return opened; }
  // The lines the text loader rejected.
  std::vector<Diagnostic> const &Reports() const { return reports; }
  // File events raised while loading (cannot open, cannot read).
  std::vector<std::string> const &Failures() const { return failures; }
  SFM_MessageDB &Database() { return *database; }

  // Every key (sections below 0) with its raw text: the bytes stored in the
  // file, a final "$" included, up to the first NUL.
  std::map<std::int64_t, std::string> const &Texts() const { return texts; }
  bool Has(std::int64_t key) const { return texts.count(key) != 0; }
  // The line of the text form where the key's text stands; 0 for the
  // compiled form and unknown keys.
  long LineOf(std::int64_t key) const;
  // The sections in the order of the file (the compiled form: by base),
  // the default section first when the text form has one.
  std::vector<Section> const &Sections() const { return sections; }
  // The section a message belongs to: the latest base at or below its id.
  Section const *SectionOf(std::int64_t id) const;

 private:
  std::string path;
  bool compiled;
  bool opened = false;
  std::unique_ptr<SFM_MessageDB> database;
  std::vector<Diagnostic> reports;
  std::vector<std::string> failures;
  std::string bytes;  // the whole file
  std::map<std::int64_t, std::string> texts;
  std::map<std::int64_t, std::int64_t> positions;
  std::vector<Section> sections;
};

// Collects the failures the file manager raises while it lives.
class FileFailures : public SCC_EventNode<SFM_EventData> {
 public:
  FileFailures();
  int OnNotification(int code, SFM_EventData *data) override;
  std::vector<std::string> Take();

 private:
  std::vector<std::string> seen;
};

#endif  // TOVIK_MDB_CATALOG_H
