// Key functions: SCC_Hash and SCC_Compare for the key and item types the
// containers use.
//
// SCC_Hash(key, size) gives a slot in 0 to size - 1 for the hash map;
// SCC_Compare(a, b) orders two keys for the map and for array comparators
// (SCC_Comparator<T> falls back on it). Both are plain overloads with no
// state; a new key type joins by declaring its own pair next to the type.
//
// Integer widths: `int` and the library's 32-bit counts (std::int32_t) are
// one type here, and so are std::int64_t, the native `long` and SCC_Handle
// (all `long` on LP64), which therefore hash and compare as 64-bit values.
// Every SCC_Hash gives 0 for a size below 1, the map's "no table".
//
// The scalar forms are inline, so comparators that sort millions of items
// pay no call for them; the text forms live in the library.
#ifndef TOVIK_SCC_HASH_H
#define TOVIK_SCC_HASH_H

#include <cstdint>

#include "sys_string.h"
#include "tovik_export.h"

static_assert(sizeof(SCC_Handle) == sizeof(std::int64_t) && sizeof(long) == sizeof(std::int64_t),
              "SCC_Handle, long and std::int64_t are expected to share one overload (LP64)");

namespace tovik_detail {
// Signed remainder, moved into 0 to size - 1.
inline std::int32_t SignedSlot(std::int64_t key, std::int32_t size) {
  if (size < 1) return 0;
  std::int64_t const r = key % size;
  return static_cast<std::int32_t>(r < 0 ? r + size : r);
}
inline std::int32_t UnsignedSlot(std::uint64_t key, std::int32_t size) {
  if (size < 1) return 0;
  return static_cast<std::int32_t>(key % static_cast<std::uint64_t>(size));
}
// -1, 0 or 1 without branches: sorting random keys mispredicts enough.
template <class V>
inline int Order(V a, V b) {
  return static_cast<int>(b < a) - static_cast<int>(a < b);
}
}  // namespace tovik_detail

// ---------------------------------------------------------------------------
// Hashes: each gives a value in 0 to size - 1, or 0 for a size below 1.

// The signed remainder by size, with size added to a negative remainder:
// SCC_Hash(-7, 53) is 46.
inline std::int32_t SCC_Hash(char key, std::int32_t size) {
  return tovik_detail::SignedSlot(static_cast<signed char>(key), size);
}
inline std::int32_t SCC_Hash(int key, std::int32_t size) {
  return tovik_detail::SignedSlot(key, size);
}
// 64-bit signed remainder; also the form of SCC_Handle and native long.
inline std::int32_t SCC_Hash(std::int64_t key, std::int32_t size) {
  return tovik_detail::SignedSlot(key, size);
}
// The unsigned remainder by size.
inline std::int32_t SCC_Hash(unsigned char key, std::int32_t size) {
  return tovik_detail::UnsignedSlot(key, size);
}
inline std::int32_t SCC_Hash(unsigned int key, std::int32_t size) {
  return tovik_detail::UnsignedSlot(key, size);
}
inline std::int32_t SCC_Hash(std::uint64_t key, std::int32_t size) {
  return tovik_detail::UnsignedSlot(key, size);
}
// The low 32 bits of the address, as an unsigned number, by size.
inline std::int32_t SCC_Hash(void const *key, std::int32_t size) {
  return tovik_detail::UnsignedSlot(
      static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(key)), size);
}
inline std::int32_t SCC_Hash(void *key, std::int32_t size) {
  return SCC_Hash(static_cast<void const *>(key), size);
}

// The text hash: over the bytes c1, c2, ... (signed chars) up to the first NUL,
// the sum of c(i) * i * 6293815^i in wrapping 32-bit arithmetic, modulo size.
// The empty text hashes to 0; so does a null text.
TOVIK_API std::int32_t SCC_Hash(char const *key, std::int32_t size);
TOVIK_API std::int32_t SCC_Hash(CString const &key, std::int32_t size);
TOVIK_API std::int32_t SCC_Hash(SYS_String const &key, std::int32_t size);
// The text hash with 'A' to 'Z' folded to lower case, byte by byte, so that
// "Abc" and "aBC" hash alike. Other bytes, those above 127 too, stay as they are.
TOVIK_API std::int32_t SCC_Hash(SYS_StrNoCase const &key, std::int32_t size);

// ---------------------------------------------------------------------------
// Comparisons: negative, 0 or positive for a before, equal to or after b.

// Signed and unsigned numbers: -1, 0 or 1.
inline int SCC_Compare(char a, char b) {
  return tovik_detail::Order(static_cast<signed char>(a), static_cast<signed char>(b));
}
inline int SCC_Compare(int a, int b) { return tovik_detail::Order(a, b); }
inline int SCC_Compare(std::int64_t a, std::int64_t b) { return tovik_detail::Order(a, b); }
inline int SCC_Compare(unsigned char a, unsigned char b) { return tovik_detail::Order(a, b); }
inline int SCC_Compare(unsigned int a, unsigned int b) { return tovik_detail::Order(a, b); }
inline int SCC_Compare(std::uint64_t a, std::uint64_t b) { return tovik_detail::Order(a, b); }
// Addresses as unsigned numbers: -1, 0 or 1.
inline int SCC_Compare(void const *a, void const *b) {
  return tovik_detail::Order(reinterpret_cast<std::uintptr_t>(a),
                             reinterpret_cast<std::uintptr_t>(b));
}
inline int SCC_Compare(void *a, void *b) {
  return SCC_Compare(static_cast<void const *>(a), static_cast<void const *>(b));
}
// 0 when neither is below or above the other, so a NaN equals everything;
// otherwise 1 when a >= b, else -1.
inline int SCC_Compare(double a, double b) { return tovik_detail::Order(a, b); }
inline int SCC_Compare(float a, float b) {
  return SCC_Compare(static_cast<double>(a), static_cast<double>(b));
}

// Texts byte by byte as unsigned bytes, up to the first NUL: -1, 0 or 1.
// A null text comes before every other text and equals a null text.
TOVIK_API int SCC_Compare(char const *a, char const *b);
TOVIK_API int SCC_Compare(SYS_String const &a, SYS_String const &b);
// Case-blind, byte by byte with 'A' to 'Z' taken as 'a' to 'z': the difference
// of the first two bytes that differ after folding, not just its sign.
TOVIK_API int SCC_Compare(SYS_StrNoCase const &a, SYS_StrNoCase const &b);

#endif  // TOVIK_SCC_HASH_H
