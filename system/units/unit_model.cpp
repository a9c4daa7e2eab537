#include <cmath>

#include "sys_convert.h"
#include "sys_translation.h"
#include "unit_table.h"

namespace tovik::units {

namespace {

// Empty rows at load; FillUnitTable gives them their type, name, decimals
// and factor.
UnitRecord table[4] = {};
UnitRecord const unknown = {static_cast<SYS_UnitType>(-1), SYS_String(), 1, 1.0};
bool filled = false;

}  // namespace

UnitRecord const &Unit(int type) { return type >= 0 && type < 4 ? table[type] : unknown; }

void FillUnitTable() {
  if (filled) return;
  struct Row {
    SYS_UnitType type;
    int nameId, decimals;
    double factor;
  } const rows[4] = {
      {SYS_UNIT_MILS, 45104, 2, 38100.0},
      {SYS_UNIT_MILLIMETERS, 45105, 5, 1500000.0},
      {SYS_UNIT_INCHES, 45106, 5, 38100000.0},
      {SYS_UNIT_MICRONS, 45107, 2, 1500.0},
  };
  for (Row const &row : rows) table[row.type] = UnitRecord{row.type, TR(row.nameId), row.decimals, row.factor};
  filled = true;
}

}  // namespace tovik::units

using tovik::units::Unit;

SYS_Convert::SYS_Convert() { SetData(SYS_UNIT_MILS, SYS_Point()); }
SYS_Convert::SYS_Convert(int) { SetData(SYS_UNIT_MILS, SYS_Point()); }
SYS_Convert::SYS_Convert(SYS_UnitType type) { SetData(type, SYS_Point()); }
SYS_Convert::SYS_Convert(SYS_Point const &point) { SetData(SYS_UNIT_MILS, point); }
SYS_Convert::SYS_Convert(SYS_UnitType type, SYS_Point const &point) { SetData(type, point); }

void SYS_Convert::SetData(SYS_UnitType type, SYS_Point const &point) {
  tovik::units::FillUnitTable();
  unitType = type;
  origin = point;
  zeroTrimMode = 1;
  for (int i = 0; i < 4; ++i) unitDecimals[i] = Unit(i).decimals;
  angleDecimals = 3;
}

// A unit outside the table has the unknown unit's decimals, which stay.
int SYS_Convert::GetUnitPrecision() const {
  return unitType >= 0 && unitType < 4 ? unitDecimals[unitType] : Unit(unitType).decimals;
}

void SYS_Convert::SetUnitPrecision(int decimals) {
  if (unitType >= 0 && unitType < 4) unitDecimals[unitType] = decimals;
}

char const *SYS_Convert::GetUnitName(SYS_UnitType type) const { return Unit(type).name; }

double SYS_Convert::Factor() const { return Unit(unitType).factor; }

std::int32_t SYS_Convert::User2Base(double value) const {
  double const factor = Factor();
  // Tested as "not inside" so that NaN gives the marker too.
  if (!(std::fabs(value) <= 2147483647.0 / factor)) return kOverflow;
  return SYS_Round(value * factor);
}

double SYS_Convert::User2BaseDouble(double value) const { return value * Factor(); }
double SYS_Convert::Base2User(double value) const { return value / Factor(); }

std::int32_t SYS_Convert::AlignToMinRoutingGrid(std::int32_t value) const {
  std::int64_t const grid = GetMinRoutingGrid();
  std::int64_t const v = value;
  std::int64_t const r = v % grid < 0 ? -(v % grid) : v % grid;
  if (r == 0) return value;
  std::int64_t const step = r < grid / 2 ? -r : grid - r;
  return static_cast<std::int32_t>(v + (v < 0 ? -step : step));
}

SYS_Point SYS_Convert::AlignToMinRoutingGrid(SYS_Point point) const {
  return SYS_Point(AlignToMinRoutingGrid(point.x), AlignToMinRoutingGrid(point.y));
}

int SYS_Convert::IsAlignedToMinRoutingGrid(std::int32_t value) const {
  return value % GetMinRoutingGrid() == 0 ? 1 : 0;
}

int SYS_Convert::IsAlignedToMinRoutingGrid(SYS_Point point) const {
  return IsAlignedToMinRoutingGrid(point.x) && IsAlignedToMinRoutingGrid(point.y) ? 1 : 0;
}

// --- UnitTypeObj -------------------------------------------------------------

char const *SYS_Convert::UnitTypeObj::GetName() const {
  return handle >= 1 && handle <= 4 ? Unit(static_cast<int>(handle - 1)).name : "";
}

SYS_UnitType SYS_Convert::UnitTypeObj::GetType() const {
  return handle >= 1 && handle <= 4 ? Unit(static_cast<int>(handle - 1)).type : static_cast<SYS_UnitType>(-1);
}
