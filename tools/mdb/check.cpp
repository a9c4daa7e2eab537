// Comparing a translation with its original.
#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>

#include "mdb.h"

namespace {

// The argument kind of a conversion: d and i take an int, o u x X an
// unsigned, the floating conversions a double.
std::string Kind(std::string const &length, char conversion) {
  if (std::strchr("di", conversion) != nullptr) return length + 'd';
  if (std::strchr("ouxX", conversion) != nullptr) return length + 'u';
  if (std::strchr("fFeEgGaA", conversion) != nullptr) return length + 'f';
  return length + conversion;
}

// Reads digits at i; with a '$' behind them they are an argument position.
long Position(std::string const &s, std::size_t &i) {
  std::size_t j = i;
  while (j < s.size() && std::isdigit(static_cast<unsigned char>(s[j]))) ++j;
  if (j == i || j >= s.size() || s[j] != '$') return 0;
  long const position = std::atol(s.c_str() + i);
  i = j + 1;
  return position;
}

std::string Listed(std::vector<std::string> const &kinds) {
  std::string text;
  for (std::string const &kind : kinds) text += (text.empty() ? "%" : " %") + kind;
  return '"' + text + '"';
}

std::string Where(Catalog const &catalog, std::int64_t id) {
  std::string text = "id " + std::to_string(id);
  Section const *section = catalog.SectionOf(id);
  if (section != nullptr && !section->isDefault) {
    text += " [" + section->name + "] " + std::to_string(id - section->base);
  }
  return text;
}

Diagnostic At(Catalog const &catalog, std::int64_t id, std::string const &text) {
  return Diagnostic{catalog.Path(), catalog.LineOf(id), text};
}

}  // namespace

std::vector<std::string> Placeholders(std::string const &format) {
  std::vector<std::pair<long, std::string>> found;  // (position, kind)
  for (std::size_t i = 0; i < format.size(); ++i) {
    if (format[i] != '%') continue;
    if (++i < format.size() && format[i] == '%') continue;
    long const position = Position(format, i);
    while (i < format.size() && std::strchr("-+ #0'", format[i]) != nullptr) ++i;
    for (int part = 0; part < 2; ++part) {  // width, then precision
      if (part == 1 && (i >= format.size() || format[i] != '.')) break;
      if (part == 1) ++i;
      if (i < format.size() && format[i] == '*') {
        ++i;
        Position(format, i);
        found.emplace_back(position, "*");
      }
      while (i < format.size() && std::isdigit(static_cast<unsigned char>(format[i]))) ++i;
    }
    std::size_t const lengthStart = i;
    while (i < format.size() && std::strchr("hlLqjzZt", format[i]) != nullptr) ++i;
    if (i >= format.size()) {
      found.emplace_back(position, "?");  // a placeholder cut short
      break;
    }
    found.emplace_back(position, Kind(format.substr(lengthStart, i - lengthStart), format[i]));
  }
  std::stable_sort(found.begin(), found.end(),
                   [](auto const &a, auto const &b) { return a.first < b.first; });
  std::vector<std::string> kinds;
  for (auto const &f : found) kinds.push_back(f.second);
  return kinds;
}

std::vector<Diagnostic> Compare(Catalog const &original, Catalog const &translation) {
  std::vector<Diagnostic> found;
  for (auto const &entry : original.Texts()) {
    std::int64_t const id = entry.first;
    auto const other = translation.Texts().find(id);
    if (other == translation.Texts().end()) {
      std::string const what = id < 0 ? "section \"" + entry.second + '"' : Where(original, id);
      found.push_back(At(original, id, what + ": missing in " + translation.Path()));
      continue;
    }
    if (id < 0) continue;
    std::vector<std::string> const a = Placeholders(entry.second);
    std::vector<std::string> const b = Placeholders(other->second);
    if (a == b) continue;
    char const *how = a.size() != b.size()                                 ? "count"
                      : std::is_permutation(a.begin(), a.end(), b.begin()) ? "order"
                                                                           : "conversion";
    std::string const from =
        original.Path() +
        (original.LineOf(id) != 0 ? ':' + std::to_string(original.LineOf(id)) : "");
    found.push_back(At(translation, id,
                       Where(translation, id) + ": placeholders differ in " + how + ": " +
                           Listed(b) + " against " + Listed(a) + " in " + from));
  }
  for (auto const &entry : translation.Texts()) {
    if (original.Has(entry.first)) continue;
    std::string const what =
        entry.first < 0 ? "section \"" + entry.second + '"' : Where(translation, entry.first);
    found.push_back(At(translation, entry.first, what + ": not in " + original.Path()));
  }
  return found;
}

std::vector<Diagnostic> StaleCompiled(std::vector<std::string> const &files) {
  namespace fs = std::filesystem;
  std::vector<Diagnostic> found;
  std::vector<fs::path> seen;
  for (std::string const &file : files) {
    fs::path text(file), compiled(file);
    if (Catalog::IsCompiledName(file)) {
      text.replace_extension(".txt");
    } else {
      compiled.replace_extension(".mdb");
    }
    std::error_code e1, e2;
    auto const textTime = fs::last_write_time(text, e1);
    auto const compiledTime = fs::last_write_time(compiled, e2);
    if (e1 || e2 || compiledTime >= textTime) continue;
    if (std::find(seen.begin(), seen.end(), compiled) != seen.end()) continue;
    seen.push_back(compiled);
    found.push_back(
        Diagnostic{compiled.string(), 0, "older than " + text.string() + ": compile it again"});
  }
  return found;
}
