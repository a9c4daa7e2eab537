// Internal: the loop test shared by the indirections of convertors and
// properties.
#ifndef TOVIK_VALUES_CHAIN_H
#define TOVIK_VALUES_CHAIN_H

namespace tovik::values {

// Whether the chain that starts at start, stepping from each Indirection by
// next and ending at anything else or null, reaches self. Chains are acyclic,
// because no operation of the library lets one close, so the walk ends.
template <class Indirection, class Base, class Next>
bool ChainReaches(Base *start, Base const *self, Next next) {
  for (Base *at = start; at != nullptr;) {
    if (at == self) return true;
    auto *const indirection = dynamic_cast<Indirection *>(at);
    at = indirection != nullptr ? next(*indirection) : nullptr;
  }
  return false;
}

}  // namespace tovik::values

#endif  // TOVIK_VALUES_CHAIN_H
