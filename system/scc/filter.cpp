// Filters and their composites.
#include "sys_filter.h"

SYS_Filter::SYS_Filter() : function(nullptr) {}

SYS_Filter::SYS_Filter(SCC_SharedPointer<SYS_Filter> const &leftOperand,
                       SCC_SharedPointer<SYS_Filter> const &rightOperand, Function decide)
    : function(decide), left(leftOperand), right(rightOperand) {}

SYS_Filter::SYS_Filter(SYS_Filter const &other)
    : SCC_SharedBuffer(other),
      function(other.function),
      left(other.left),
      right(other.right),
      composite(other.composite) {}

SYS_Filter &SYS_Filter::operator=(SYS_Filter const &other) {
  left = other.left;
  right = other.right;
  function = other.function;
  return *this;
}

SYS_Filter::~SYS_Filter() {
  composite = nullptr;
  right = nullptr;
  left = nullptr;
}

// Keeps a filter alive for the time of a call, as a shared pointer does. A
// filter that no pointer owns yet leaves the call as it came: its first owner
// is the one to learn whether it lives on the heap, and a heap filter used
// before it is handed over must not be deleted by the call. Its count is
// raised without that test for the time of the call.
class SYS_Filter::Hold {
 public:
  explicit Hold(SYS_Filter *filter) : unowned(filter->refCount == 0), count(filter->refCount) {
    if (unowned) ++count;
    self = filter;
  }
  ~Hold() {
    self = nullptr;
    if (unowned) --count;
  }
  Hold(Hold const &) = delete;
  Hold &operator=(Hold const &) = delete;

  bool const unowned;
  std::int32_t &count;
  SCC_SharedPointer<SYS_Filter> self;
};

int SYS_Filter::IsTrue(SCC_Handle handle) {
  if (function == nullptr) return 0;
  Hold const hold(this);
  return function(hold.self, handle);
}

void SYS_Filter::DetachFromOperands() {
  Hold const hold(this);
  // Letting go of a slot never deletes the composite in it: the top is held
  // by hold, and every composite below it by the left slot of the one above.
  // The next step is still taken before the slot is released, so the walk
  // reads nothing that the release could have touched.
  for (SYS_Filter *node = this; node->left != nullptr;) {
    SYS_Filter *const above = node;
    node = node->left;
    if (node->composite == above) node->composite = nullptr;
  }
}

int SYS_Filter::And_F(SCC_SharedPointer<SYS_Filter> const &self, SCC_Handle handle) {
  if (self->left->IsTrue(handle) == 0) return 0;
  return self->right->IsTrue(handle) != 0 ? 1 : 0;
}

int SYS_Filter::Or_F(SCC_SharedPointer<SYS_Filter> const &self, SCC_Handle handle) {
  if (self->left->IsTrue(handle) != 0) return 1;
  return self->right->IsTrue(handle) != 0 ? 1 : 0;
}

int SYS_Filter::Not_F(SCC_SharedPointer<SYS_Filter> const &self, SCC_Handle handle) {
  return self->left->IsTrue(handle) > 0 ? 0 : 1;
}

SYS_Filter &SYS_Filter::Combine(SYS_Filter *other, Function decide) {
  // The new filter's first owner is the slot, so it counts as a heap object.
  SYS_Filter *const made = new SYS_Filter(this, other, decide);
  composite = made;
  return *made;
}

SYS_Filter &SYS_Filter::operator&(SYS_Filter &other) { return Combine(&other, &And_F); }

SYS_Filter &SYS_Filter::operator|(SYS_Filter &other) { return Combine(&other, &Or_F); }

SYS_Filter &SYS_Filter::operator!() { return Combine(nullptr, &Not_F); }
