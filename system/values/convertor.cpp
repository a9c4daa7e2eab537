#include "scc_convertor.h"

#include "chain.h"
#include "ssm.h"

SCC_Convertor::~SCC_Convertor() = default;

SCC_Variant SCC_Convertor::Convert(SCC_Variant value, int) { return value; }

SCC_IndConvertor::SCC_IndConvertor(SCC_SharedPointer<SCC_Convertor> const &to)
    : target(to), targetHook(this, &SCC_IndConvertor::OnEvent) {
  if (target != nullptr) targetHook.AddHook(target);
}

SCC_IndConvertor::SCC_IndConvertor(SCC_IndConvertor &other)
    : SCC_Convertor(other), target(other.target), targetHook(this, &SCC_IndConvertor::OnEvent) {
  targetHook.JoinCopy(other.targetHook);
}

SCC_IndConvertor &SCC_IndConvertor::operator=(SCC_IndConvertor &other) {
  if (&other == this) return *this;
  if (Reaches(other.target, this)) {
    SSM_CHECK(false, "SCC_IndConvertor: the target leads back to the convertor itself");
    return *this;
  }
  SCC_Convertor::operator=(other);
  target = other.target;
  targetHook.JoinCopy(other.targetHook);
  return *this;
}

bool SCC_IndConvertor::Reaches(SCC_Convertor *start, SCC_Convertor const *self) {
  return tovik::values::ChainReaches<SCC_IndConvertor>(
      start, self, [](SCC_IndConvertor &at) -> SCC_Convertor * { return at.target; });
}

SCC_IndConvertor::~SCC_IndConvertor() {
  targetHook.HandOver(this);
  targetHook.Leave();
  target = nullptr;
}

SCC_Variant SCC_IndConvertor::Convert(SCC_Variant value, int direction) {
  return target != nullptr ? target->Convert(value, direction) : value;
}

int SCC_IndConvertor::OnEvent(int code, int *data) {
  Notify(code, data);
  return 0;
}

SCC_Variant SCC_RevConvertor::Convert(SCC_Variant value, int direction) {
  return SCC_IndConvertor::Convert(value, direction == 0 ? 1 : 0);
}
