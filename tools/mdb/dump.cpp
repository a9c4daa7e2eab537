// The text form of a catalog, written so that compiling it gives back the
// same keys, texts and sections.
//
// The text loader numbers by rules that the plain listing of a database does
// not always meet: a section's base is the id of the line before its header
// plus 2, and its largest number is the largest it met. So each key is
// written in the section whose numbers cover it (or, failing that, with a
// negative number in a later one), the key that ends a section's numbers is
// written in it, and the line before each header is the key that gives the
// header its base, written again if it already was: a key written twice
// keeps its first text, which is the same.
#include <algorithm>
#include <cctype>

#include "mdb.h"

namespace {

// The loader takes texts and names of up to 199 bytes, on one line.
constexpr std::size_t kLongest = 199;

// A text as a line can hold it: one with white space at its end keeps it
// behind a final "$", which the database drops when the text is read.
std::string AsLineText(std::string const &text) {
  if (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) return text + '$';
  return text;
}

bool Fits(std::string const &text) {
  return text.size() <= kLongest && text.find_first_of("\r\n") == std::string::npos;
}

// A header gives its name back whole: no "]" inside, no "[" in front.
bool NameFits(std::string const &name) {
  return Fits(name) && name.find(']') == std::string::npos && (name.empty() || name.front() != '[');
}

}  // namespace

std::vector<std::string> Dump(Catalog const &catalog, std::ostream &out) {
  std::vector<std::string> problems;
  std::vector<Section> sections = catalog.Sections();
  // The compiled form keeps no default section: one with room for any
  // number stands for it.
  bool const freeDefault = sections.empty() || !sections.front().isDefault;
  if (freeDefault) sections.insert(sections.begin(), Section{"", 0, 0, true});

  // Where each message goes.
  std::vector<std::vector<std::int64_t>> lines(sections.size());
  for (auto const &entry : catalog.Texts()) {
    std::int64_t const id = entry.first;
    if (id < 0) continue;
    std::ptrdiff_t home = -1;
    for (std::size_t i = 1; i < sections.size(); ++i) {
      Section const &s = sections[i];
      if (s.base <= id && id <= s.base + s.largest &&
          (home < 0 || s.base >= sections[static_cast<std::size_t>(home)].base)) {
        home = static_cast<std::ptrdiff_t>(i);
      }
    }
    if (home < 0 && (freeDefault || id <= sections.front().largest)) home = 0;
    for (std::size_t i = 1; home < 0 && i < sections.size(); ++i) {
      if (sections[i].base > id) home = static_cast<std::ptrdiff_t>(i);
    }
    if (home < 0) {
      problems.push_back("id " + std::to_string(id) + ": no section can number it");
    } else {
      lines[static_cast<std::size_t>(home)].push_back(id);
    }
  }

  std::int64_t last = 0;  // the id of the last line written, as the loader counts
  for (std::size_t i = 0; i < sections.size(); ++i) {
    Section const &s = sections[i];
    std::vector<std::int64_t> &ids = lines[i];
    std::sort(ids.begin(), ids.end());
    if (s.largest > 0 && (ids.empty() || ids.back() != s.base + s.largest)) {
      if (catalog.Has(s.base + s.largest)) {
        ids.push_back(s.base + s.largest);
      } else {
        problems.push_back("section \"" + s.name + "\": its largest number has no text");
      }
    }
    if (i + 1 < sections.size()) {
      std::int64_t const before = sections[i + 1].base - 2;
      bool const reached = ids.empty() ? last == before : ids.back() == before;
      if (!reached) {
        bool const fits = (i == 0 && freeDefault) || before - s.base <= s.largest;
        if (catalog.Has(before) && fits) {
          ids.erase(std::remove(ids.begin(), ids.end(), before), ids.end());
          ids.push_back(before);
        } else {
          problems.push_back("section \"" + sections[i + 1].name + "\": its base " +
                             std::to_string(sections[i + 1].base) + " cannot be kept");
        }
      }
    }
    if (i > 0) {
      if (!NameFits(s.name)) {
        problems.push_back("section \"" + s.name + "\": no header can hold the name");
      }
      out << '[' << s.name << "]\n";
    }
    for (std::int64_t id : ids) {
      std::string const &text = catalog.Texts().at(id);
      if (!Fits(AsLineText(text))) {
        problems.push_back("id " + std::to_string(id) + ": no line can hold the text");
      }
      out << id - s.base << ':' << AsLineText(text) << '\n';
      last = id;
    }
  }
  return problems;
}
