#include "scc_property.h"

#include "chain.h"
#include "scc_collection.h"
#include "ssm.h"

// --- SCC_StdProperty ---------------------------------------------------------

SCC_StdProperty::SCC_StdProperty() : convertorHook(this, &SCC_StdProperty::OnPropEvent) {}

SCC_StdProperty::SCC_StdProperty(SCC_StdProperty &other)
    : SCC_SharedBuffer(other),
      convertor(other.convertor),
      validation(other.validation),
      convertorHook(this, &SCC_StdProperty::OnPropEvent),
      propEvent(other.propEvent) {
  convertorHook.JoinCopy(other.convertorHook);
}

SCC_StdProperty &SCC_StdProperty::operator=(SCC_StdProperty &other) {
  if (&other == this) return *this;
  convertor = other.convertor;
  validation = other.validation;
  convertorHook.JoinCopy(other.convertorHook);
  propEvent = other.propEvent;
  return *this;
}

SCC_StdProperty::~SCC_StdProperty() {
  convertorHook.HandOver(this);
  convertorHook.Leave();
}

void SCC_StdProperty::SetObject(void *) {}

int SCC_StdProperty::GetValue(SCC_StdCollection *collection, SCC_Variant &value) {
  if (collection == nullptr) return GetValue(SCC_Handle{0}, value);
  if (collection->HasFocus() == 0) return 0;
  for (std::int32_t i = 0;; ++i) {
    SCC_Handle const handle = collection->GetFocus(i);
    if (handle == 0) return 1;
    SCC_Variant read;
    if (GetValue(handle, read) == 0) return 0;
    if (value.IsEmpty()) {
      value = read;
    } else if (value != read) {
      value.Clear();
      return 1;
    }
  }
}

int SCC_StdProperty::GetValue(SCC_Handle, SCC_Variant &) { return 0; }

int SCC_StdProperty::SetValue(SCC_StdCollection *collection, SCC_Variant const &value, int flag) {
  if (collection == nullptr) return SetValue(SCC_Handle{0}, value, flag);
  for (std::int32_t i = 0;; ++i) {
    SCC_Handle const handle = collection->GetFocus(i);
    if (handle == 0) return 1;
    if (SetValue(handle, value, flag) == 0) return 0;
  }
}

int SCC_StdProperty::SetValue(SCC_Handle, SCC_Variant const &, int) { return 0; }
int SCC_StdProperty::HasSetMethod() { return 0; }
SCC_StdProperty *SCC_StdProperty::GetDataSource() { return this; }
char const *SCC_StdProperty::GetValidation() { return validation; }
void SCC_StdProperty::SetValidation(char const *rule) { validation = rule; }
SCC_SharedPointer<SCC_Convertor> SCC_StdProperty::GetConvertor() { return convertor; }

SCC_StdProperty *SCC_StdProperty::SetConvertor(SCC_SharedPointer<SCC_Convertor> newConvertor) {
  convertor = newConvertor;
  convertorHook.AddHook(convertor);
  return this;
}

SCC_Notifier *SCC_StdProperty::GetPropEvent() { return &propEvent; }
void SCC_StdProperty::AddDataSource(SCC_StdProperty *) {}
void SCC_StdProperty::RemoveDataSource() {}

int SCC_StdProperty::OnPropEvent(int, int *) {
  propEvent.Notify(EvPropertyChanged, this);
  return 0;
}

// --- SCC_IndProperty ---------------------------------------------------------

SCC_IndProperty::SCC_IndProperty(SCC_SharedPointer<SCC_StdProperty> const &source) {
  SSM_CHECK(source != nullptr, "SCC_IndProperty: no data source");
  dataSource = source;
}

SCC_IndProperty::SCC_IndProperty(SCC_IndProperty &other) : SCC_StdProperty(other), dataSource(other.dataSource) {}

SCC_IndProperty &SCC_IndProperty::operator=(SCC_IndProperty &other) {
  if (&other == this) return *this;
  if (Reaches(other.dataSource, this)) {
    SSM_CHECK(false, "SCC_IndProperty: the data source leads back to the property itself");
    return *this;
  }
  SCC_StdProperty::operator=(other);
  dataSource = other.dataSource;
  return *this;
}

bool SCC_IndProperty::Reaches(SCC_StdProperty *start, SCC_StdProperty const *self) {
  return tovik::values::ChainReaches<SCC_IndProperty>(
      start, self, [](SCC_IndProperty &at) -> SCC_StdProperty * { return at.dataSource; });
}

SCC_IndProperty::~SCC_IndProperty() { dataSource = nullptr; }

// Each forward answers as SCC_StdProperty when there is no data source, which
// only a failed check at construction can leave.
#define TOVIK_FORWARD(call) return dataSource != nullptr ? dataSource->call : SCC_StdProperty::call

void SCC_IndProperty::SetObject(void *object) { TOVIK_FORWARD(SetObject(object)); }
int SCC_IndProperty::GetValue(SCC_StdCollection *collection, SCC_Variant &value) {
  TOVIK_FORWARD(GetValue(collection, value));
}
int SCC_IndProperty::GetValue(SCC_Handle handle, SCC_Variant &value) { TOVIK_FORWARD(GetValue(handle, value)); }
int SCC_IndProperty::SetValue(SCC_StdCollection *collection, SCC_Variant const &value, int flag) {
  TOVIK_FORWARD(SetValue(collection, value, flag));
}
int SCC_IndProperty::SetValue(SCC_Handle handle, SCC_Variant const &value, int flag) {
  TOVIK_FORWARD(SetValue(handle, value, flag));
}
int SCC_IndProperty::HasSetMethod() { TOVIK_FORWARD(HasSetMethod()); }
SCC_StdProperty *SCC_IndProperty::GetDataSource() { TOVIK_FORWARD(GetDataSource()); }
char const *SCC_IndProperty::GetValidation() { TOVIK_FORWARD(GetValidation()); }
void SCC_IndProperty::SetValidation(char const *rule) { TOVIK_FORWARD(SetValidation(rule)); }
SCC_SharedPointer<SCC_Convertor> SCC_IndProperty::GetConvertor() { TOVIK_FORWARD(GetConvertor()); }
SCC_StdProperty *SCC_IndProperty::SetConvertor(SCC_SharedPointer<SCC_Convertor> newConvertor) {
  TOVIK_FORWARD(SetConvertor(newConvertor));
}
SCC_Notifier *SCC_IndProperty::GetPropEvent() { TOVIK_FORWARD(GetPropEvent()); }
void SCC_IndProperty::AddDataSource(SCC_StdProperty *source) { TOVIK_FORWARD(AddDataSource(source)); }
void SCC_IndProperty::RemoveDataSource() { TOVIK_FORWARD(RemoveDataSource()); }

#undef TOVIK_FORWARD
