// The table sizes of the hash map, and the map instances the library has.
#include "scc_map.h"

namespace {

// Primes, each a little above twice the one before.
constexpr std::int32_t kTableSizes[] = {53,    107,   223,   449,    907,    1823,   3643,
                                        7297,  14593, 29191, 58391,  116789, 233591, 467183};

constexpr bool Ascending() {
  for (std::size_t i = 1; i < sizeof kTableSizes / sizeof kTableSizes[0]; ++i) {
    if (kTableSizes[i] <= kTableSizes[i - 1]) return false;
  }
  return true;
}
static_assert(Ascending(), "the table sizes must ascend");

}  // namespace

std::int32_t SCC_GetNewTableSize(std::int32_t size) {
  for (std::int32_t const candidate : kTableSizes) {
    if (candidate > size) return candidate;
  }
  return 0;
}

template class SCC_SList<SCC_MapNode<int, int>>;
template class SCC_SDList<SCC_MapNode<int, int>>;
template class SCC_Map<int, int>;
template class SCC_SList<SCC_MapNode<int, SYS_String>>;
template class SCC_SDList<SCC_MapNode<int, SYS_String>>;
template class SCC_Map<int, SYS_String>;
template class SCC_SList<SCC_MapNode<SYS_String, SYS_String>>;
template class SCC_SDList<SCC_MapNode<SYS_String, SYS_String>>;
template class SCC_Map<SYS_String, SYS_String>;
