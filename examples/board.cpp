#include "board.h"

#include <algorithm>

Component &Board::Place(char const *reference, char const *layer, char const *value) {
  parts.push_back(std::make_unique<Component>(Component{reference, layer, value, SYS_Position(), nullptr}));
  Tell(EvAdded, *parts.back());
  return *parts.back();
}

void Board::Remove(Component &part) {
  Tell(EvDeleted, part);  // views still read its designator and layer
  parts.erase(std::remove_if(parts.begin(), parts.end(),
                             [&part](std::unique_ptr<Component> const &p) { return p.get() == &part; }),
              parts.end());
}

void Board::Rename(Component &part, char const *reference) {
  part.reference = reference;
  Tell(EvChanged, part);
}

void Board::MoveToLayer(Component &part, char const *layer) {
  part.layer = layer;
  Tell(EvChanged, part);
}

Component *Board::Find(char const *reference) const {
  for (auto const &part : parts) {
    if (part->reference == reference) return part.get();
  }
  return nullptr;
}

std::ptrdiff_t Board::IndexOf(SCC_Handle handle) const {
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (parts[i]->Handle() == handle) return static_cast<std::ptrdiff_t>(i);
  }
  return -1;
}

ComponentList::ComponentList(Board &source) : board(source) { SetEvent(&board.Changes()); }

int ComponentList::ByReference(SCC_Handle const &a, SCC_Handle const &b) {
  return _tcsnumcmp(Component::Of(a).reference, Component::Of(b).reference);
}

int ComponentList::_GetFirst() {
  at = board.Count() != 0 ? 0 : kOff;
  return at != kOff;
}

int ComponentList::_GetNext() {
  at = at == kOff ? 0 : at + 1;
  if (at >= board.Count()) at = kOff;
  return at != kOff;
}

int ComponentList::_GetPrev() {
  at = at == kOff || at == 0 ? kOff : at - 1;
  return at != kOff;
}

SCC_Handle ComponentList::_GetSlider() {
  // A removal may have shortened the board under the slider.
  return at < board.Count() ? board.At(at).Handle() : 0;
}

void ComponentList::_SetSlider(SCC_Handle handle) {
  std::ptrdiff_t const index = board.IndexOf(handle);
  at = index >= 0 ? static_cast<std::size_t>(index) : kOff;
}
