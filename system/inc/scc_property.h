// Properties: one aspect of the objects of a collection (a component's value,
// a track's width), read and written for one object or across a selection.
//
// SCC_StdProperty gives the selection logic: the common value of a
// collection's focus (empty when the objects differ) and writing one value to
// every focused object. A derived class, outside the library, reads and
// writes one handle and says whether it can write at all. The property also
// holds, for its callers, a validation rule (SCC_Variant::Validate) and a
// convertor; it applies neither itself. Any event of the convertor reaches the
// property's listeners as EvPropertyChanged (8), with the property as data.
// SCC_IndProperty forwards everything to another property, its data source.
//
// Properties are reference counted (SCC_SharedBuffer). Copies share the
// convertor and data source, copy the rule, and take the listeners of
// propEvent away from the property copied; the copy's convertor hook calls
// the property copied, as long as that lives, then the copy.
//
// A derived class that overrides one GetValue or SetValue brings the others
// into scope (using SCC_StdProperty::GetValue), and callers pass a handle of
// 0 as SCC_Handle(0): a bare 0 would name the collection form.
#ifndef TOVIK_SCC_PROPERTY_H
#define TOVIK_SCC_PROPERTY_H

#include "scc_convertor.h"
#include "scc_event.h"
#include "scc_shared.h"
#include "scc_variant.h"
#include "sys_string.h"
#include "tovik_export.h"

class SCC_StdCollection;

class TOVIK_API SCC_StdProperty : public SCC_SharedBuffer {
 public:
  // No convertor, an empty rule, nobody listening.
  SCC_StdProperty();
  SCC_StdProperty(SCC_StdProperty &other);
  SCC_StdProperty &operator=(SCC_StdProperty &other);
  ~SCC_StdProperty() override;

  // For derived classes; does nothing here.
  virtual void SetObject(void *object);
  // The common value of the collection's focus, read handle by handle: 1 with
  // the value when all agree (an object read as empty counts only after a
  // non-empty one), 1 with an empty value when they differ, 0 when nothing is
  // focused or a read fails (value then holds what was read before). A null
  // collection reads handle 0.
  virtual int GetValue(SCC_StdCollection *collection, SCC_Variant &value);
  // One object's value; 0 here.
  virtual int GetValue(SCC_Handle handle, SCC_Variant &value);
  // Writes value to every focused object, the focus read by index each time,
  // and stops at the first write that fails (0); objects written stay
  // written. An empty focus gives 1. A null collection writes handle 0.
  // flag goes through to the single-object write unread.
  virtual int SetValue(SCC_StdCollection *collection, SCC_Variant const &value, int flag);
  // One object's write; 0 here.
  virtual int SetValue(SCC_Handle handle, SCC_Variant const &value, int flag);
  // Non-zero if the value can be written; 0 here.
  virtual int HasSetMethod();
  // The property that holds the data: this one here.
  virtual SCC_StdProperty *GetDataSource();
  virtual char const *GetValidation();
  virtual void SetValidation(char const *rule);
  virtual SCC_SharedPointer<SCC_Convertor> GetConvertor();
  // Holds the convertor (or none) and listens to it instead of the old one;
  // tells nobody. Returns this property.
  virtual SCC_StdProperty *SetConvertor(SCC_SharedPointer<SCC_Convertor> newConvertor);
  // Where listeners hear EvPropertyChanged.
  virtual SCC_Notifier *GetPropEvent();
  // For derived classes; do nothing here.
  virtual void AddDataSource(SCC_StdProperty *source);
  virtual void RemoveDataSource();

 protected:
  // The convertor hook's method: sends EvPropertyChanged with this property
  // on propEvent, whatever the code; returns 0.
  int OnPropEvent(int code, int *data);

  SCC_SharedPointer<SCC_Convertor> convertor;
  SYS_String validation;
  SCC_HeldHook<SCC_StdProperty> convertorHook;
  SCC_Notifier propEvent;
};

class TOVIK_API SCC_IndProperty : public SCC_StdProperty {
 public:
  // An empty source, or one whose chain of indirections leads back to this
  // property, fails a check and is not taken: the property then answers as
  // an SCC_StdProperty of its own.
  explicit SCC_IndProperty(SCC_SharedPointer<SCC_StdProperty> const &source);
  SCC_IndProperty(SCC_IndProperty &other);
  SCC_IndProperty &operator=(SCC_IndProperty &other);
  ~SCC_IndProperty() override;

  // Every operation forwards to the data source.
  void SetObject(void *object) override;
  int GetValue(SCC_StdCollection *collection, SCC_Variant &value) override;
  int GetValue(SCC_Handle handle, SCC_Variant &value) override;
  int SetValue(SCC_StdCollection *collection, SCC_Variant const &value, int flag) override;
  int SetValue(SCC_Handle handle, SCC_Variant const &value, int flag) override;
  int HasSetMethod() override;
  // The end of the chain of indirections.
  SCC_StdProperty *GetDataSource() override;
  char const *GetValidation() override;
  void SetValidation(char const *rule) override;
  SCC_SharedPointer<SCC_Convertor> GetConvertor() override;
  // The data source's answer.
  SCC_StdProperty *SetConvertor(SCC_SharedPointer<SCC_Convertor> newConvertor) override;
  SCC_Notifier *GetPropEvent() override;
  void AddDataSource(SCC_StdProperty *source) override;
  void RemoveDataSource() override;

 protected:
  SCC_SharedPointer<SCC_StdProperty> dataSource;

 private:
  // Whether the chain of data sources from start reaches self.
  static bool Reaches(SCC_StdProperty *start, SCC_StdProperty const *self);
};

#endif  // TOVIK_SCC_PROPERTY_H
