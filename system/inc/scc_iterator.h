// SCC_Iterator: the base of every cursor over a source of handles.
//
// An iterator is a listener on the notifier of what it walks, so it hears of
// changes made while it is alive and keeps standing on something sensible. It
// names what it stands on by a handle (0 for nothing). The base holds one
// decision only, the focus-delete policy: what the cursor does when the element
// under it is deleted. Walking, placing and attaching to a source are the
// derived classes' affair; the iterator keeps no pointer to its source besides
// the owner link of its node.
//
// Copying and assignment differ on purpose: a copy keeps only the policy and
// listens to nothing, so a derived copy keeps its place while the source
// changes; assignment makes the left side a second listener next to the right
// side, on the same notifier.
#ifndef TOVIK_SCC_ITERATOR_H
#define TOVIK_SCC_ITERATOR_H

#include "scc_event.h"
#include "tovik_export.h"

class TOVIK_API SCC_Iterator : public SCC_EventNode<int> {
 public:
  // Enabled, unattached, policy "invalidate".
  SCC_Iterator() : focusDeletePolicy(0) {}
  // Copies the policy only: the copy is enabled and unattached.
  SCC_Iterator(SCC_Iterator const &other)
      : SCC_EventNode<int>(), focusDeletePolicy(other.focusDeletePolicy) {}
  // Leaves the present notifier and joins other's, immediately in front of
  // other; from an unattached iterator it only leaves. Then takes other's
  // policy. Assigning an iterator to itself changes nothing.
  SCC_Iterator &operator=(SCC_Iterator &other);
  // Leaves the notifier; safe during a notification from it.
  ~SCC_Iterator() override;

  // The handle the cursor stands on; 0 here.
  virtual SCC_Handle GetHandle() const;
  // Unplaces the cursor; nothing here.
  virtual void Clear();
  // Steps forward; non-zero while on an element. 0 here.
  virtual int GetNext();
  // Steps back; non-zero while on an element. 0 here.
  virtual int GetPrev();
  // Unplaces the cursor after its element went; nothing here.
  virtual void Invalidate();
  // Non-zero while on an element; 1 here.
  virtual int IsValid() const;
  // Non-zero while on no element; 1 here.
  virtual int IsEmpty() const;

  // On deletion of the element under the cursor: step back (GetPrev).
  void OnFocusDeleteGoBack() { focusDeletePolicy = -1; }
  // On deletion of the element under the cursor: step forward (GetNext).
  void OnFocusDeleteGoForward() { focusDeletePolicy = 1; }
  // On deletion of the element under the cursor: Invalidate. The default.
  void OnFocusDeleteInvalidate() { focusDeletePolicy = 0; }

 protected:
  // EvCleared: Clear. EvDeleted of the handle under the cursor: act on the
  // policy. Every other code, or another handle: nothing. Always 0.
  int OnNotification(int code, int *data) override;

  // -1 go back, 1 go forward, 0 invalidate; any other value ignores deletions.
  int focusDeletePolicy;
};

#endif  // TOVIK_SCC_ITERATOR_H
