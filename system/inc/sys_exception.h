// SYS_Exception: the exception for bad input, such as text that is no number.
//
// It carries one user-readable text and has no base class, so a handler
// catches it only by its own type. It is thrown by value and has nothing to do
// with the failure manager.
#ifndef TOVIK_SYS_EXCEPTION_H
#define TOVIK_SYS_EXCEPTION_H

#include "sys_string.h"
#include "tovik_export.h"

class TOVIK_API SYS_Exception {
 public:
  // The text is formatted as by SYS_String::Format.
  explicit SYS_Exception(char const *format, ...) __attribute__((format(printf, 2, 3)));
  // Kept for callers that pass a number and arguments; the text stays empty.
  explicit SYS_Exception(int, ...);

  SYS_Exception(SYS_Exception const &) = default;
  SYS_Exception &operator=(SYS_Exception const &) = default;
  ~SYS_Exception() = default;

  // A copy of the text.
  SYS_String GetText() const { return text; }

 private:
  SYS_String text;
};

#endif  // TOVIK_SYS_EXCEPTION_H
