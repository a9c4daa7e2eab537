// Scanning helpers: recognising numbers in text, cutting a piece out of a
// separated list, formatting into a new string, and converting one value with
// a small scanf.
//
// The functions keep no state. The number scanners walk by characters of the
// process code page (a two-byte character is never a digit) and accept a sign
// anywhere and any number of times, so "1-2" and "--5" are numbers to them;
// they skip no white space and know no "0x" prefix. Numbers are read and
// written in the "C" locale whatever the process has set: the period is the
// only decimal separator. A null text counts as an empty one everywhere.
// Only SimpleScanf throws: SYS_Exception, with a translated text (TR).
#ifndef TOVIK_SYS_SCAN_H
#define TOVIK_SYS_SCAN_H

#include "sys_string.h"
#include "tovik_export.h"

// Kinds of integer for getinteger and isinteger; any other value reads as
// decimal.
enum SYS_IntegerKind { SYS_INT_DECIMAL = 1, SYS_INT_OCTAL = 2, SYS_INT_HEX = 3 };

// The position behind the integer at the start of text, or null when there is
// none. Signs are passed over wherever they stand; digits are 0-9, 0-7 for
// octal, 0-9a-fA-F for hex. The walk ends at any other character; without a
// digit the result is null ("", "+", "-").
TOVIK_API char *getinteger(char const *text, int kind);
// 1 when the whole text is an integer of that kind, else 0.
TOVIK_API int isinteger(char const *text, int kind);
TOVIK_API int isdecinteger(char const *text);
TOVIK_API int isoctinteger(char const *text);
TOVIK_API int ishexinteger(char const *text);

// The position behind the floating number at the start of text, or null.
// Signs pass anywhere; one '.' before the exponent; with plain non-zero an
// 'E' or 'e' ends the number, otherwise it starts an exponent that needs a
// digit. The mantissa needs a digit: ".5" and "5." pass, "." and "E5" do not,
// and "1E" is no number when plain is 0.
TOVIK_API char *getdouble(char const *text, int plain);
// 1 when the whole text is such a number, else 0.
TOVIK_API int isdouble(char const *text, int plain);
// isdouble(text, 1): "1E5" is 0.
TOVIK_API int isdecdouble(char const *text);

// Piece number index (from 0) of text, the pieces separated by the byte
// separator: 1 with the piece's bytes in out (an empty piece included), else
// 0 with out emptied. A null text gives 0 and leaves out alone. A negative
// index has no piece; with separator '\0' the whole text is piece 0.
TOVIK_API int SysExtractSubString(SYS_String &out, char const *text, int index, char separator);

// A new string formatted as by SYS_String::Format.
TOVIK_API SYS_String FormattedString(char const *format, ...) __attribute__((format(printf, 1, 2)));

// Converts text into the one value that the third argument points at.
// format is "%" (not looked at), an optional 'l' or an 's' (16-bit result),
// then the conversion letter:
//   'd'  a decimal integer, stored as std::int32_t (short with 's');
//   'f'  a floating number, stored as double (short with 's').
// Blanks and tabs around the number are skipped; text of nothing but them
// reads as 0. Returns 1 when the value was stored. Throws SYS_Exception with
// TR(45060) "Invalid integer" for 'd' text that is no integer (a first
// character other than '0' that reads as 0, such as "-0", or anything but
// blanks behind the number), TR(45062) "Invalid floating point format." for
// 'f' text with anything behind the number, and TR(45063) "Value out of
// range." when an 's' value is outside -32768 to 32767. Integers saturate at
// the 32-bit range. 'u' throws TR(45061) "Value should be unsigned integer."
// for text that starts with '-' and otherwise returns 0 and stores nothing,
// as does any other letter or a format shorter than two characters.
TOVIK_API int SimpleScanf(char const *text, char const *format, ...);

#endif  // TOVIK_SYS_SCAN_H
