// SYS_Filter: does a handle belong in a view?
//
// A collection asks its filter about each object it meets (SCC_StdCollection
// ::Filter). Application filters derive from SYS_Filter and override IsTrue;
// a plain SYS_Filter that nobody configured refuses every handle. Filters are
// shared objects (SCC_SharedBuffer) held by SCC_SharedPointer<SYS_Filter>, on
// the heap or anywhere else.
//
// Filters combine into expressions with &, | and !, which build composites on
// the heap: a composite has a deciding function (And_F, Or_F, Not_F) and holds
// its operands. The operators return references, so each composite is kept
// alive by the composite slot of its left operand: in a & b | c, a holds
// (a & b), which holds ((a & b) | c). An operator replaces what stood in the
// left operand's slot, so an expression lives as long as its left-most operand
// and until that operand builds its next one. A composite and its left operand
// hold each other, so an expression stays allocated while its left-most
// operand lives; DetachFromOperands breaks those holds once the expression has
// an owner of its own (a collection that took it with SetFilter, for instance).
//
// And_F and Or_F stop at the first operand that decides. Answers other than
// 0 count as true in And_F and Or_F; Not_F takes only answers above 0 as true.
#ifndef TOVIK_SYS_FILTER_H
#define TOVIK_SYS_FILTER_H

#include "scc_shared.h"
#include "tovik_export.h"

class TOVIK_API SYS_Filter : public SCC_SharedBuffer {
 public:
  // How a composite decides: called with the composite itself and the handle.
  typedef int (*Function)(SCC_SharedPointer<SYS_Filter> const &self, SCC_Handle handle);

  // A plain filter: no function, no operands. It refuses everything until a
  // derived class overrides IsTrue.
  SYS_Filter();
  // A composite of the operands, deciding by function; its composite slot is
  // empty.
  SYS_Filter(SCC_SharedPointer<SYS_Filter> const &leftOperand,
             SCC_SharedPointer<SYS_Filter> const &rightOperand, Function decide);
  // Copies all four fields: the copy shares the operands and the composite.
  SYS_Filter(SYS_Filter const &other);
  // Copies the operands and the function; the composite slot stays as it was.
  SYS_Filter &operator=(SYS_Filter const &other);
  // Releases the composite, then the right operand, then the left one.
  ~SYS_Filter() override;

  // Whether the handle passes. Without a function 0. A composite holds itself
  // for the call (an operand may drop the expression meanwhile) and answers
  // what its function gives.
  virtual int IsTrue(SCC_Handle handle);

  // The deciding functions of the composites made by &, | and !.
  // 0 if left answers 0 (right is not asked), else 1 if right answers non-zero.
  static int And_F(SCC_SharedPointer<SYS_Filter> const &self, SCC_Handle handle);
  // 1 if left answers non-zero (right is not asked), else 1 if right does.
  static int Or_F(SCC_SharedPointer<SYS_Filter> const &self, SCC_Handle handle);
  // 1 unless left answers a value above 0: a negative answer counts as false.
  static int Not_F(SCC_SharedPointer<SYS_Filter> const &self, SCC_Handle handle);

  // A new composite on the heap, this filter as left operand, stored in this
  // filter's composite slot (releasing what stood there); other's slot is not
  // touched. Without memory std::bad_alloc leaves this filter as it was.
  SYS_Filter &operator&(SYS_Filter &other);
  SYS_Filter &operator|(SYS_Filter &other);
  SYS_Filter &operator!();

  // Every operand down this expression's left side that still holds, in its
  // composite slot, the composite built on it here lets go of it: the
  // expression then lives exactly as long as its own owners, and is deleted
  // now if it has none. Slots that hold later composites are not touched.
  void DetachFromOperands();

  Function function;                        // null for a plain filter
  SCC_SharedPointer<SYS_Filter> left;       // first operand
  SCC_SharedPointer<SYS_Filter> right;      // second operand; empty for !
  SCC_SharedPointer<SYS_Filter> composite;  // the newest composite with this filter on its left

 private:
  class Hold;
  SYS_Filter &Combine(SYS_Filter *other, Function decide);
};

#endif  // TOVIK_SYS_FILTER_H
