// CDWordArray: the host framework's growing array of 32-bit words.
//
// It owns its words, grows by amortised doubling and copies deeply. Indices
// are pointer-sized, as the framework's are; GetAt and operator[] do not
// check them (the caller keeps within GetSize()).
#ifndef TOVIK_CDWORDARRAY_H
#define TOVIK_CDWORDARRAY_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tovik_export.h"

class CDWordArray {
 public:
  std::intptr_t GetSize() const { return static_cast<std::intptr_t>(words.size()); }
  std::intptr_t GetCount() const { return GetSize(); }
  bool IsEmpty() const { return words.empty(); }

  std::uint32_t GetAt(std::intptr_t index) const { return words[static_cast<std::size_t>(index)]; }
  std::uint32_t &operator[](std::intptr_t index) { return words[static_cast<std::size_t>(index)]; }
  std::uint32_t operator[](std::intptr_t index) const { return GetAt(index); }
  // The words, or null when there are none.
  std::uint32_t *GetData() { return words.empty() ? nullptr : words.data(); }
  std::uint32_t const *GetData() const { return words.empty() ? nullptr : words.data(); }

  // New words are 0. A negative size empties the array.
  void SetSize(std::intptr_t size) { words.resize(size > 0 ? static_cast<std::size_t>(size) : 0); }
  // Appends one word and returns its index.
  std::intptr_t Add(std::uint32_t word) {
    words.push_back(word);
    return GetSize() - 1;
  }
  // Empties the array and lets its memory go.
  void RemoveAll() { std::vector<std::uint32_t>().swap(words); }

 private:
  std::vector<std::uint32_t> words;
};

#endif  // TOVIK_CDWORDARRAY_H
