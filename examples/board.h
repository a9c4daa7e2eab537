// The components of a board as a small application keeps them, and the views
// it puts on them.
//
// Board owns the components in placement order and tells its notifier about
// every placement (EvAdded), removal (EvDeleted, while the component can still
// be read) and edit (EvChanged), with the component's handle as data. A
// component's handle is its address: it never moves while it is on the board,
// so a comparator or a filter needs nothing but the handle.
//
// ComponentList is a collection on a board: it walks the placement order and
// leaves sorting, filtering and the selection to SCC_StdCollection.
#ifndef TOVIK_EXAMPLE_BOARD_H
#define TOVIK_EXAMPLE_BOARD_H

#include <tovik.h>

#include <cstddef>
#include <memory>
#include <vector>

struct Footprint;  // board_picture.h

struct Component {
  SYS_String reference;  // "R10", "C1", "U3"
  SYS_String layer;      // "top" or "bottom"
  SYS_String value;      // "10k", "100n"; "DNP" for a part left unfitted
  SYS_Position position;                // on the board; mirrored on the bottom side
  Footprint const *footprint = nullptr;  // what it looks like, when it is drawn

  SCC_Handle Handle() const { return reinterpret_cast<SCC_Handle>(this); }
  static Component const &Of(SCC_Handle handle) {
    return *reinterpret_cast<Component const *>(handle);
  }
};

class Board {
 public:
  Board() = default;
  Board(Board const &) = delete;
  Board &operator=(Board const &) = delete;

  Component &Place(char const *reference, char const *layer, char const *value);
  void Remove(Component &part);
  void Rename(Component &part, char const *reference);
  void MoveToLayer(Component &part, char const *layer);

  // The component with that designator, or null.
  Component *Find(char const *reference) const;
  // Where the component stands in placement order, or -1.
  std::ptrdiff_t IndexOf(SCC_Handle handle) const;
  std::size_t Count() const { return parts.size(); }
  Component const &At(std::size_t index) const { return *parts[index]; }

  SCC_Notifier &Changes() { return changes; }

 private:
  void Tell(int code, Component const &part) {
    changes.Notify(code, SCC_HandleToData(part.Handle()));
  }

  std::vector<std::unique_ptr<Component>> parts;  // placement order
  SCC_Notifier changes;
};

class ComponentList : public SCC_StdCollection {
 public:
  explicit ComponentList(Board &source);

  // Designators in natural order: R2 before R10.
  static int ByReference(SCC_Handle const &a, SCC_Handle const &b);

 protected:
  // Components report through the board's notifier, so GetEvent keeps the
  // base answer (none); the board never remaps, so UpdateHandle is not needed.
  int _GetFirst() override;
  int _GetNext() override;
  int _GetPrev() override;
  SCC_Handle _GetSlider() override;
  void _SetSlider(SCC_Handle handle) override;

 private:
  static constexpr std::size_t kOff = static_cast<std::size_t>(-1);

  Board &board;
  std::size_t at = kOff;  // index in placement order
};

// Components on one side of the board.
class OnLayer : public SYS_Filter {
 public:
  explicit OnLayer(char const *side) : layer(side) {}
  int IsTrue(SCC_Handle handle) override { return Component::Of(handle).layer == layer; }

 private:
  SYS_String layer;
};

// Components marked "do not populate".
class Unfitted : public SYS_Filter {
 public:
  int IsTrue(SCC_Handle handle) override { return Component::Of(handle).value == "DNP"; }
};

#endif  // TOVIK_EXAMPLE_BOARD_H
