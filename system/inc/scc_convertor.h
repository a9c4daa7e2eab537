// Convertors: objects that turn a value (SCC_Variant) between two forms, such
// as a world length and its text in the user's unit, or a palette index and a
// colour.
//
// SCC_Convertor is the base: it changes nothing, and it is the observable
// root, reference counted (SCC_SharedBuffer) and a notifier, so that a
// convertor whose meaning can change tells its listeners. SCC_IndConvertor
// forwards to another convertor, its target, and passes the target's events
// on through its own notifier, so that it can stand in for the real thing and
// the real thing can be exchanged; SCC_RevConvertor runs its target
// backwards. Direction 1 is the way SCC_Variant::Validate converts a value to
// check, direction 0 the way back.
//
// Copies follow the notifier's rule: a copy takes the listeners away from the
// object it copies, hence the non-constant arguments. The hook of a copied
// indirection stands next to the original's on the target and calls the
// original, as long as the original lives; then it calls the copy.
#ifndef TOVIK_SCC_CONVERTOR_H
#define TOVIK_SCC_CONVERTOR_H

#include "scc_event.h"
#include "scc_shared.h"
#include "scc_variant.h"
#include "tovik_export.h"

class TOVIK_API SCC_Convertor : public SCC_SharedBuffer, public SCC_Notifier {
 public:
  SCC_Convertor() = default;
  SCC_Convertor(SCC_Convertor &other) : SCC_SharedBuffer(other), SCC_Notifier(other) {}
  SCC_Convertor &operator=(SCC_Convertor &other) {
    SCC_Notifier::operator=(other);
    return *this;
  }
  ~SCC_Convertor() override;

  // The value unchanged, whatever the direction.
  virtual SCC_Variant Convert(SCC_Variant value, int direction);
};

// A hook held by an object of class C on another object's notifier. It calls
// object (the holder, or the object the holder was copied from); when that
// object goes, HandOver makes the hooks that still call it call their holders.
template <class C>
class TOVIK_API SCC_HeldHook : public SCC_ObjectEventHook<C, int> {
 public:
  C *holder;

  SCC_HeldHook(C *owner, int (C::*meth)(int, int *)) : SCC_ObjectEventHook<C, int>(owner, meth), holder(owner) {}
  SCC_HeldHook(SCC_HeldHook const &) = delete;
  SCC_HeldHook &operator=(SCC_HeldHook const &) = delete;

  // Joins the ring of other just before it, calling what other calls.
  void JoinCopy(SCC_HeldHook const &other) {
    this->object = other.object;
    this->method = other.method;
    this->priority = other.priority;
    this->JoinBefore(const_cast<SCC_HeldHook *>(&other));
  }
  // Every hook of this ring that calls gone calls its holder instead.
  void HandOver(C *gone) {
    SCC_Event<int> *const ring = this->owner;
    if (ring == nullptr) return;
    for (SCC_EventNode<int> *node = ring->next; node != ring; node = node->next) {
      auto *const held = dynamic_cast<SCC_HeldHook *>(node);
      if (held != nullptr && held->object == gone) held->object = held->holder;
    }
  }
};

class TOVIK_API SCC_IndConvertor : public SCC_Convertor {
 public:
  // Joins the target's notifier by priority; with an empty pointer the
  // indirection hears nothing and converts nothing.
  explicit SCC_IndConvertor(SCC_SharedPointer<SCC_Convertor> const &target);
  SCC_IndConvertor(SCC_IndConvertor &other);
  // Shares other's target. A target whose chain of indirections leads back
  // to this object fails a check and is not taken.
  SCC_IndConvertor &operator=(SCC_IndConvertor &other);
  ~SCC_IndConvertor() override;

  // The target's conversion, or the value unchanged without a target.
  SCC_Variant Convert(SCC_Variant value, int direction) override;
  // Sends code and data on through this object's notifier; returns 0.
  int OnEvent(int code, int *data);

 protected:
  SCC_SharedPointer<SCC_Convertor> target;
  SCC_HeldHook<SCC_IndConvertor> targetHook;

 private:
  // Whether the chain of targets from start reaches self.
  static bool Reaches(SCC_Convertor *start, SCC_Convertor const *self);
};

class TOVIK_API SCC_RevConvertor : public SCC_IndConvertor {
 public:
  explicit SCC_RevConvertor(SCC_SharedPointer<SCC_Convertor> const &target) : SCC_IndConvertor(target) {}
  SCC_RevConvertor(SCC_RevConvertor &other) : SCC_IndConvertor(other) {}
  SCC_RevConvertor &operator=(SCC_RevConvertor &other) {
    SCC_IndConvertor::operator=(other);
    return *this;
  }

  // The target's conversion the other way: direction 0 becomes 1, and any
  // other direction 0.
  SCC_Variant Convert(SCC_Variant value, int direction) override;
};

#endif  // TOVIK_SCC_CONVERTOR_H
