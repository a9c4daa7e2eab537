// Cursors over numbered objects, and the questions a walk over geometry asks.
//
// SYS_StdInterface walks handles 1 to a maximum, with 0 for "off": the
// simplest thing that answers like a collection's source (GetFirst, GetNext,
// IsValid, GetHandle, GetChangeEvent). It owns nothing and has no notifier.
// SYS_GeomIterator adds the kind of the object under the cursor and its value
// as each geometric type; this base answers 0 or null to all of them, and
// derived classes that walk real geometry override them.
//
// The destructor is virtual and comes after the other virtual operations,
// so that a derived cursor deleted through its base is destroyed whole.
#ifndef TOVIK_SYS_STD_INTERFACE_H
#define TOVIK_SYS_STD_INTERFACE_H

#include "tovik_export.h"

class SCC_Notifier;
class SYS_Point;
class SYS_DoublePoint;
class SYS_Location;
class SYS_Segment;
class SYS_Circle;
class SYS_Arc;
class SYS_Box;

// The kinds of geometry. The library gives a meaning to none but 0: the
// values belong to the classes that derive from SYS_GeomIterator and
// SYS_Geometry, which convert their own numbers to this type.
enum SYS_GeometryType : int { SYS_GEOMETRY_NONE = 0 };

class TOVIK_API SYS_StdInterface {
 public:
  SYS_StdInterface() : handle(0), maxHandle(0) {}
  explicit SYS_StdInterface(SCC_Handle maximum) : handle(0), maxHandle(maximum) {}
  SYS_StdInterface(SYS_StdInterface const &) = default;
  SYS_StdInterface &operator=(SYS_StdInterface const &) = default;

  // Numbered objects have no notifier: null. The argument is ignored.
  virtual SCC_Notifier *GetChangeEvent(void *object);
  // Sets the highest handle; the cursor stays where it is, even above it.
  virtual void SetMaxHandle(SCC_Handle maximum);
  // 1 while the cursor stands on a handle (not 0).
  virtual int IsValid() const;
  // Places the cursor without testing the handle against the maximum.
  virtual void SetHandle(SCC_Handle h, void *object);
  virtual SCC_Handle GetHandle() const;
  // Handle 1, or 0 when there is no object. The argument is ignored.
  virtual void GetFirst(void *object);
  // One handle on; past the maximum the cursor goes off (0). From 0 it
  // starts again at 1.
  virtual void GetNext();
  // Nothing to update here.
  virtual void OnUpdatePointers(void *object);
  virtual ~SYS_StdInterface();

  // a - b: the order of the handles themselves, in the form a collection's
  // SetSort takes.
  static int DefaultSort(SCC_Handle const &a, SCC_Handle const &b);

 protected:
  SCC_Handle handle;
  SCC_Handle maxHandle;
};

class TOVIK_API SYS_GeomIterator : public SYS_StdInterface {
 public:
  SYS_GeomIterator() = default;
  SYS_GeomIterator(SYS_GeomIterator const &) = default;
  SYS_GeomIterator &operator=(SYS_GeomIterator const &) = default;

  // The kind and the values of the object under the cursor: here 0 and null.
  virtual SYS_GeometryType GetObjectType();
  virtual SYS_Point *GetPointValue();
  virtual SYS_DoublePoint *GetDoublePointValue();
  virtual SYS_Location *GetLocationValue();
  virtual SYS_Segment *GetSegmentValue();
  virtual SYS_Circle *GetCircleValue();
  virtual SYS_Arc *GetArcValue();
  virtual SYS_Box *GetRectangleValue();
};

#endif  // TOVIK_SYS_STD_INTERFACE_H
