// CDWordArray: the host framework's growing array of 32-bit words.
//
// It owns its words, grows by doubling (through realloc, so that a large
// array moves without being copied) and copies deeply. Indices and sizes are
// pointer-sized, as the framework's are; GetAt and operator[] do not check
// them (the caller keeps within GetSize()). Exhausted memory throws
// std::bad_alloc and leaves the array as it was.
//
//   CDWordArray { words (malloc'd, or null), size, capacity }
#ifndef TOVIK_CDWORDARRAY_H
#define TOVIK_CDWORDARRAY_H

#include <cstddef>
#include <cstdint>

#include "tovik_export.h"

class TOVIK_API CDWordArray {
 public:
  CDWordArray() noexcept : words(nullptr), size(0), capacity(0) {}
  CDWordArray(CDWordArray const &other);
  CDWordArray &operator=(CDWordArray const &other);
  ~CDWordArray();

  std::intptr_t GetSize() const { return size; }
  std::intptr_t GetCount() const { return size; }
  bool IsEmpty() const { return size == 0; }

  std::uint32_t GetAt(std::intptr_t index) const { return words[index]; }
  std::uint32_t &operator[](std::intptr_t index) { return words[index]; }
  std::uint32_t operator[](std::intptr_t index) const { return words[index]; }
  // The words, or null when the array has no memory.
  std::uint32_t *GetData() { return words; }
  std::uint32_t const *GetData() const { return words; }

  // New words are 0. A negative size empties the array.
  void SetSize(std::intptr_t newSize) {
    if (newSize <= 0) {
      size = 0;
      return;
    }
    if (newSize > capacity) Reserve(newSize);
    for (std::intptr_t i = size; i < newSize; ++i) words[i] = 0;
    size = newSize;
  }
  // Appends one word and returns its index.
  std::intptr_t Add(std::uint32_t word) {
    if (size == capacity) Reserve(size + 1);
    words[size] = word;
    return size++;
  }
  // Room for count more words at the end, which the caller fills: the array
  // is count words longer, and the result points at the first new word.
  std::uint32_t *AddSpace(std::intptr_t count) {
    if (count > capacity - size) Reserve(size + count);
    std::uint32_t *const at = words + size;
    size += count;
    return at;
  }
  // Empties the array and lets its memory go.
  void RemoveAll();

 private:
  // Makes room for at least minimum words, doubling the capacity.
  void Reserve(std::intptr_t minimum);

  std::uint32_t *words;
  std::intptr_t size;
  std::intptr_t capacity;
};

#endif  // TOVIK_CDWORDARRAY_H
