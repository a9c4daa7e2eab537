#include "scc_iterator.h"

SCC_Iterator &SCC_Iterator::operator=(SCC_Iterator &other) {
  if (&other == this) return *this;
  Leave();
  if (other.owner != nullptr) {
    owner = other.owner;
    prev = other.prev;
    next = &other;
    prev->next = this;
    other.prev = this;
  }
  focusDeletePolicy = other.focusDeletePolicy;
  return *this;
}

// Out of line so that the iterator's virtual table has one home; the node's
// destructor takes it out of its ring.
SCC_Iterator::~SCC_Iterator() = default;

SCC_Handle SCC_Iterator::GetHandle() const { return 0; }
void SCC_Iterator::Clear() {}
int SCC_Iterator::GetNext() { return 0; }
int SCC_Iterator::GetPrev() { return 0; }
void SCC_Iterator::Invalidate() {}
int SCC_Iterator::IsValid() const { return 1; }
int SCC_Iterator::IsEmpty() const { return 1; }

int SCC_Iterator::OnNotification(int code, int *data) {
  if (code == EvCleared) {
    Clear();
  } else if (code == EvDeleted && SCC_DataToHandle(data) == GetHandle()) {
    switch (focusDeletePolicy) {
      case 0: Invalidate(); break;
      case 1: GetNext(); break;
      case -1: GetPrev(); break;
      default: break;
    }
  }
  return 0;
}
