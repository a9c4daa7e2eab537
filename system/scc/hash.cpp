// The text forms of SCC_Hash and SCC_Compare.
#include <array>
#include <cstring>

#include "scc_hash.h"

namespace {

constexpr std::uint32_t kTextHashBase = 6293815;  // 0x600937
constexpr int kBlock = 64;

// For j = 1 to kBlock: power[j] = P^j and weight[j] = j * P^j, wrapping.
struct HashTables {
  std::array<std::uint32_t, kBlock + 1> power{};
  std::array<std::uint32_t, kBlock + 1> weight{};
  std::uint32_t blockPower = 1;  // P^kBlock
};

constexpr HashTables MakeTables() {
  HashTables t;
  std::uint32_t p = 1;
  for (int j = 1; j <= kBlock; ++j) {
    p *= kTextHashBase;
    t.power[j] = p;
    t.weight[j] = static_cast<std::uint32_t>(j) * p;
  }
  t.blockPower = p;
  return t;
}

constexpr HashTables kTables = MakeTables();

inline std::uint32_t Plain(unsigned char b) {
  return static_cast<std::uint32_t>(static_cast<std::int32_t>(static_cast<signed char>(b)));
}
inline std::uint32_t Folded(unsigned char b) {
  return Plain(b >= 'A' && b <= 'Z' ? static_cast<unsigned char>(b + ('a' - 'A')) : b);
}

// The sum of c(i) * i * P^i over the n bytes, in wrapping 32-bit arithmetic.
// The byte at position i = base + j (j in 1..kBlock) contributes
// c * P^base * (base * P^j + j * P^j), so a block of kBlock bytes costs two
// independent dot products with fixed tables instead of a serial chain of
// multiplications. The result is bit for bit the term-by-term sum.
template <std::uint32_t (*Byte)(unsigned char)>
std::uint32_t TextHash(unsigned char const *text, std::size_t n) {
  std::uint32_t hash = 0;
  std::uint32_t basePower = 1;  // P^base
  std::uint32_t base = 0;
  while (n > 0) {
    std::size_t const count = n < static_cast<std::size_t>(kBlock) ? n : kBlock;
    std::uint32_t byPower = 0;
    std::uint32_t byWeight = 0;
    for (std::size_t j = 1; j <= count; ++j) {
      std::uint32_t const c = Byte(text[j - 1]);
      byPower += c * kTables.power[j];
      byWeight += c * kTables.weight[j];
    }
    hash += basePower * (base * byPower + byWeight);
    basePower *= kTables.blockPower;
    base += kBlock;
    text += count;
    n -= count;
  }
  return hash;
}

inline unsigned char const *Bytes(char const *text) {
  return reinterpret_cast<unsigned char const *>(text);
}

// The text of a counted string ends at its first NUL, as for a C text.
inline std::size_t TextLength(CString const &text) {
  char const *const p = text;
  std::size_t const length = static_cast<std::size_t>(text.GetLength());
  void const *const nul = std::memchr(p, 0, length);
  return nul != nullptr ? static_cast<std::size_t>(static_cast<char const *>(nul) - p) : length;
}

inline std::int32_t Slot(std::uint32_t hash, std::int32_t size) {
  return size < 1 ? 0 : static_cast<std::int32_t>(hash % static_cast<std::uint32_t>(size));
}

}  // namespace

std::int32_t SCC_Hash(char const *key, std::int32_t size) {
  if (key == nullptr) return 0;
  return Slot(TextHash<Plain>(Bytes(key), std::strlen(key)), size);
}

std::int32_t SCC_Hash(CString const &key, std::int32_t size) {
  if (size < 1) return 0;
  return Slot(TextHash<Plain>(Bytes(key), TextLength(key)), size);
}

std::int32_t SCC_Hash(SYS_String const &key, std::int32_t size) {
  return SCC_Hash(static_cast<CString const &>(key), size);
}

std::int32_t SCC_Hash(SYS_StrNoCase const &key, std::int32_t size) {
  if (size < 1) return 0;
  return Slot(TextHash<Folded>(Bytes(key), TextLength(key)), size);
}

int SCC_Compare(char const *a, char const *b) {
  if (a == nullptr || b == nullptr) return a == b ? 0 : (a == nullptr ? -1 : 1);
  int const r = std::strcmp(a, b);  // compares as unsigned bytes
  return r < 0 ? -1 : (r > 0 ? 1 : 0);
}

int SCC_Compare(SYS_String const &a, SYS_String const &b) {
  return SCC_Compare(static_cast<char const *>(a), static_cast<char const *>(b));
}

int SCC_Compare(SYS_StrNoCase const &a, SYS_StrNoCase const &b) {
  unsigned char const *p = Bytes(a);
  unsigned char const *q = Bytes(b);
  for (;; ++p, ++q) {
    int const x = (*p >= 'A' && *p <= 'Z') ? *p + ('a' - 'A') : *p;
    int const y = (*q >= 'A' && *q <= 'Z') ? *q + ('a' - 'A') : *q;
    if (x != y || x == 0) return x - y;
  }
}
