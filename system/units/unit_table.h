// Internal: the process-wide table of user units.
#ifndef TOVIK_UNITS_UNIT_TABLE_H
#define TOVIK_UNITS_UNIT_TABLE_H

#include "sys_convert.h"

namespace tovik::units {

struct UnitRecord {
  SYS_UnitType type;
  SYS_String name;
  int decimals;
  double factor;  // world units per user unit
};

// The row of type when it is in 0 to 3, else the unknown unit (type -1, no
// name, 1 decimal, factor 1.0).
UnitRecord const &Unit(int type);
// Fills the four rows on the first call; the rows are never written again.
void FillUnitTable();

}  // namespace tovik::units

#endif  // TOVIK_UNITS_UNIT_TABLE_H
