// The framework's word array: the memory steps.
#include "cdwordarray.h"

#include <cstdlib>
#include <cstring>
#include <new>

CDWordArray::CDWordArray(CDWordArray const &other) : CDWordArray() { *this = other; }

CDWordArray &CDWordArray::operator=(CDWordArray const &other) {
  if (&other == this) return *this;
  if (other.size > capacity) Reserve(other.size);
  if (other.size > 0) std::memcpy(words, other.words, static_cast<std::size_t>(other.size) * sizeof *words);
  size = other.size;
  return *this;
}

CDWordArray::~CDWordArray() { std::free(words); }

void CDWordArray::RemoveAll() {
  std::free(words);
  words = nullptr;
  size = capacity = 0;
}

void CDWordArray::Reserve(std::intptr_t minimum) {
  std::intptr_t const limit = PTRDIFF_MAX / static_cast<std::intptr_t>(sizeof *words);
  if (minimum < 0 || minimum > limit) throw std::bad_alloc();
  std::intptr_t grown = capacity < 16 ? 16 : (capacity > limit / 2 ? limit : capacity * 2);
  if (grown < minimum) grown = minimum;
  void *const block = std::realloc(words, static_cast<std::size_t>(grown) * sizeof *words);
  if (block == nullptr) throw std::bad_alloc();
  words = static_cast<std::uint32_t *>(block);
  capacity = grown;
}
