#include "sys_exception.h"

#include <cstdarg>

SYS_Exception::SYS_Exception(char const *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  text.FormatV(format, arguments);
  va_end(arguments);
}

SYS_Exception::SYS_Exception(int, ...) {}
