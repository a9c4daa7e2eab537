#include "sys_std_interface.h"

#include <climits>
#include <cstdint>

SCC_Notifier *SYS_StdInterface::GetChangeEvent(void *) { return nullptr; }

void SYS_StdInterface::SetMaxHandle(SCC_Handle maximum) { maxHandle = maximum; }

int SYS_StdInterface::IsValid() const { return handle != 0; }

void SYS_StdInterface::SetHandle(SCC_Handle h, void *) { handle = h; }

SCC_Handle SYS_StdInterface::GetHandle() const { return handle; }

void SYS_StdInterface::GetFirst(void *) { handle = maxHandle > 0 ? 1 : 0; }

void SYS_StdInterface::GetNext() {
  // handle + 1 > maxHandle, written so that the largest handle cannot overflow.
  handle = handle >= maxHandle ? 0 : handle + 1;
}

void SYS_StdInterface::OnUpdatePointers(void *) {}

SYS_StdInterface::~SYS_StdInterface() = default;

int SYS_StdInterface::DefaultSort(SCC_Handle const &a, SCC_Handle const &b) {
  // a - b; handles are pointer-wide, so a difference beyond int keeps its sign.
  std::uintptr_t const gap = a >= b ? static_cast<std::uintptr_t>(a) - static_cast<std::uintptr_t>(b)
                                    : static_cast<std::uintptr_t>(b) - static_cast<std::uintptr_t>(a);
  if (gap > INT_MAX) return a < b ? INT_MIN : INT_MAX;
  return a < b ? -static_cast<int>(gap) : static_cast<int>(gap);
}

SYS_GeometryType SYS_GeomIterator::GetObjectType() { return SYS_GEOMETRY_NONE; }
SYS_Point *SYS_GeomIterator::GetPointValue() { return nullptr; }
SYS_DoublePoint *SYS_GeomIterator::GetDoublePointValue() { return nullptr; }
SYS_Location *SYS_GeomIterator::GetLocationValue() { return nullptr; }
SYS_Segment *SYS_GeomIterator::GetSegmentValue() { return nullptr; }
SYS_Circle *SYS_GeomIterator::GetCircleValue() { return nullptr; }
SYS_Arc *SYS_GeomIterator::GetArcValue() { return nullptr; }
SYS_Box *SYS_GeomIterator::GetRectangleValue() { return nullptr; }
