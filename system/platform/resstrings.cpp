#include "resstrings.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace tovik::res {

namespace {

struct Table {
  StringEntry const *entries;
  std::size_t count;
  TableOwner owner;
};

// Made on first use and never destroyed, so that tables may be registered
// from static constructors and looked up from static destructors.
std::vector<Table> &Tables() {
  static auto *const tables = new std::vector<Table>;
  return *tables;
}

}  // namespace

void RegisterStringTable(StringEntry const *entries, std::size_t count, TableOwner owner) {
  if (entries == nullptr || count == 0) return;
  std::vector<Table> &tables = Tables();
  if (std::any_of(tables.begin(), tables.end(), [&](Table const &t) { return t.entries == entries; })) return;
  // Application tables stand in front of every library table.
  auto at = tables.end();
  if (owner == TableOwner::Application) {
    at = std::find_if(tables.begin(), tables.end(), [](Table const &t) { return t.owner == TableOwner::Library; });
  }
  tables.insert(at, Table{entries, count, owner});
}

void UnregisterStringTable(StringEntry const *entries) noexcept {
  std::vector<Table> &tables = Tables();
  tables.erase(std::remove_if(tables.begin(), tables.end(), [&](Table const &t) { return t.entries == entries; }),
               tables.end());
}

int LoadString(int id, char *buffer, int limit) noexcept {
  if (buffer == nullptr || limit < 1) return 0;
  buffer[0] = '\0';
  for (Table const &table : Tables()) {
    for (std::size_t i = 0; i < table.count; ++i) {
      char const *const text = table.entries[i].text;
      if (table.entries[i].id != id || text == nullptr || text[0] == '\0') continue;
      std::size_t const length = std::min(std::strlen(text), static_cast<std::size_t>(limit - 1));
      std::memcpy(buffer, text, length);
      buffer[length] = '\0';
      return static_cast<int>(length);
    }
  }
  return 0;
}

}  // namespace tovik::res
