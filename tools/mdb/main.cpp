// tovik-mdb: compiles, reads and checks message databases. See Help().
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <sstream>

#include "mdb.h"

namespace {

enum Exit { kOk = 0, kFindings = 1, kUsage = 2, kFileError = 3 };

char const kHelp[] =
    R"page(TOVIK-MDB(1)                     Tovik manual                     TOVIK-MDB(1)

NAME
       tovik-mdb - compile, read and check message databases

SYNOPSIS
       tovik-mdb compile [--strict] TEXT [-o COMPILED]
       tovik-mdb dump FILE
       tovik-mdb get FILE ID
       tovik-mdb sections FILE
       tovik-mdb check ORIGINAL TRANSLATION
       tovik-mdb --help

DESCRIPTION
       A message database holds numbered texts in named sections. People
       write its text form; an application ships the compiled form, which
       SFM::Initiate loads. A FILE whose name ends in ".mdb" (in any case) is
       read in the compiled form, any other in the text form. Messages are
       named by their absolute id: the number in the file plus the base of
       its section.

COMMANDS
       compile
              Reads TEXT and writes its compiled form to COMPILED, by default
              TEXT with the extension ".mdb". Each line the loader skips is
              reported as FILE:LINE: warning: WHAT.

       dump   Writes FILE in the text form to standard output. Compiling the
              result gives the same compiled file; comments are not kept. What
              would keep the round trip from holding is reported.

       get    Writes the text of the absolute ID as an application reads it
              (without a final "$"). A negative ID is a section's key: -base
              gives its name.

       sections
              Lists the sections: base, largest number, number of messages,
              name. "(default)" is the section of the lines before the first
              header, which only the text form has.

       check  Compares a translation with its original, in either form:
              messages whose printf placeholders differ in count, order or
              conversion (d and i count as one, as do o, u, x and X, and the
              floating conversions), messages and sections missing on either
              side, and compiled files older than their text (the same name
              with ".txt" beside them).

OPTIONS
       -o COMPILED
              Where compile writes. It must not be TEXT itself.

       --strict
              For compile: every report is an error; nothing is written and
              the exit status is 1.

       -h, --help
              Shows this page.

EXIT STATUS
       0      Success; check found nothing.
       1      compile --strict found lines to report; get found no text of
              that id; dump cannot reproduce FILE; check found differences.
       2      Wrong usage.
       3      A file could not be read or written.

EXAMPLES
       tovik-mdb compile messages.txt -o messages.mdb
       tovik-mdb get messages.mdb 12
       tovik-mdb check messages.txt messages.de.txt
)page";

int Usage(char const *why) {
  std::fprintf(stderr, "tovik-mdb: %s\nTry 'tovik-mdb --help'.\n", why);
  return kUsage;
}

void Print(Diagnostic const &d, char const *severity) {
  std::string const line = d.line != 0 ? ':' + std::to_string(d.line) : std::string();
  std::fprintf(stderr, "%s%s: %s: %s\n", d.file.c_str(), line.c_str(), severity, d.text.c_str());
}

// Loads path, reporting a file that cannot be read; null then.
std::unique_ptr<Catalog> Open(std::string const &path) {
  auto catalog = std::make_unique<Catalog>(path);
  if (catalog->Opened()) return catalog;
  for (std::string const &failure : catalog->Failures()) {
    std::fprintf(stderr, "%s: error: %s\n", path.c_str(), failure.c_str());
  }
  if (catalog->Failures().empty()) std::fprintf(stderr, "%s: error: cannot read\n", path.c_str());
  return nullptr;
}

int Compile(std::vector<std::string> const &args) {
  bool strict = false;
  std::string text, compiled;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--strict") {
      strict = true;
    } else if (args[i] == "-o" && i + 1 < args.size()) {
      compiled = args[++i];
    } else if (text.empty() && args[i] != "-o") {
      text = args[i];
    } else {
      return Usage("compile takes [--strict] TEXT [-o COMPILED]");
    }
  }
  if (text.empty()) return Usage("compile needs a TEXT file");
  if (Catalog::IsCompiledName(text)) return Usage("compile reads the text form, not a .mdb file");
  if (compiled.empty()) compiled = std::filesystem::path(text).replace_extension(".mdb").string();
  std::error_code same;
  if (std::filesystem::equivalent(text, compiled, same)) return Usage("COMPILED must not be TEXT");

  std::unique_ptr<Catalog> catalog = Open(text);
  if (!catalog) return kFileError;
  for (Diagnostic const &d : catalog->Reports()) Print(d, strict ? "error" : "warning");
  if (strict && !catalog->Reports().empty()) return kFindings;
  FileFailures events;
  catalog->Database().Save(compiled.c_str());
  std::vector<std::string> const failures = events.Take();
  for (std::string const &failure : failures) {
    std::fprintf(stderr, "%s: error: %s\n", compiled.c_str(), failure.c_str());
  }
  return failures.empty() ? kOk : kFileError;
}

int DumpCommand(std::string const &file) {
  std::unique_ptr<Catalog> catalog = Open(file);
  if (!catalog) return kFileError;
  std::ostringstream text;
  std::vector<std::string> const problems = Dump(*catalog, text);
  std::fputs(text.str().c_str(), stdout);
  for (std::string const &problem : problems) Print(Diagnostic{file, 0, problem}, "warning");
  return problems.empty() ? kOk : kFindings;
}

int Get(std::string const &file, std::string const &idText) {
  char *end = nullptr;
  long long const id = std::strtoll(idText.c_str(), &end, 10);
  if (idText.empty() || *end != '\0' || id < INT32_MIN || id > INT32_MAX) {
    return Usage("ID must be a whole number");
  }
  std::unique_ptr<Catalog> catalog = Open(file);
  if (!catalog) return kFileError;
  if (!catalog->Has(id)) {
    std::fprintf(stderr, "%s: no text of id %lld\n", file.c_str(), id);
    return kFindings;
  }
  std::printf("%s\n",
              static_cast<char const *>(catalog->Database().getTxt(static_cast<std::int32_t>(id))));
  return kOk;
}

int Sections(std::string const &file) {
  std::unique_ptr<Catalog> catalog = Open(file);
  if (!catalog) return kFileError;
  std::printf("%11s %11s %8s  %s\n", "base", "largest", "messages", "name");
  for (Section const &s : catalog->Sections()) {
    int messages = 0;
    SFM_MessageDB::SectionIterator walk(&catalog->Database(), s.name.c_str(), 0);
    for (; !walk.IsEmpty(); ++walk) ++messages;
    std::printf("%11lld %11lld %8d  %s\n", static_cast<long long>(s.base),
                static_cast<long long>(s.largest), messages,
                s.isDefault ? "(default)" : s.name.c_str());
  }
  return kOk;
}

int Check(std::string const &originalFile, std::string const &translationFile) {
  std::unique_ptr<Catalog> original = Open(originalFile);
  std::unique_ptr<Catalog> translation = Open(translationFile);
  if (!original || !translation) return kFileError;
  std::vector<Diagnostic> found = Compare(*original, *translation);
  for (Diagnostic const &d : StaleCompiled({originalFile, translationFile})) found.push_back(d);
  for (Diagnostic const &d : found) Print(d, "warning");
  return found.empty() ? kOk : kFindings;
}

}  // namespace

int main(int argc, char **argv) {
  std::vector<std::string> args(argv + 1, argv + argc);
  if (args.empty()) return Usage("a command is needed");
  std::string const command = args.front();
  args.erase(args.begin());
  if (command == "-h" || command == "--help") {
    std::fputs(kHelp, stdout);
    return kOk;
  }
  if (command == "compile") return Compile(args);
  if (command == "dump" && args.size() == 1) return DumpCommand(args[0]);
  if (command == "get" && args.size() == 2) return Get(args[0], args[1]);
  if (command == "sections" && args.size() == 1) return Sections(args[0]);
  if (command == "check" && args.size() == 2) return Check(args[0], args[1]);
  return Usage(("unknown command or wrong arguments: " + command).c_str());
}
