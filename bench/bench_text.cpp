// SYS_String against std::string: copy and destroy, search, trimming and a
// natural-order sort. Each case checks its result once before it is timed.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "sys_string.h"

namespace {

void Require(bool condition, benchmark::State &state, char const *what) {
  if (!condition) state.SkipWithError(what);
}

std::string Text(std::size_t length) {
  std::string s;
  for (std::size_t i = 0; i < length; ++i) s += static_cast<char>('a' + i % 23);
  return s;
}

// ----------------------------------------------------------- copy + destroy

void BM_SysStringCopy(benchmark::State &state) {
  std::string const text = Text(static_cast<std::size_t>(state.range(0)));
  SYS_String const source(text.c_str());
  Require(SYS_String(source) == text.c_str(), state, "copy differs");
  for (auto _ : state) {
    SYS_String copy(source);
    benchmark::DoNotOptimize(copy);
  }
}
BENCHMARK(BM_SysStringCopy)->Arg(8)->Arg(64)->Arg(1024);

void BM_StdStringCopy(benchmark::State &state) {
  std::string const source = Text(static_cast<std::size_t>(state.range(0)));
  Require(std::string(source) == source, state, "copy differs");
  for (auto _ : state) {
    std::string copy(source);
    benchmark::DoNotOptimize(copy);
  }
}
BENCHMARK(BM_StdStringCopy)->Arg(8)->Arg(64)->Arg(1024);

// -------------------------------------------------------------------- Find

constexpr int kFindLength = 1024;

void BM_SysStringFind(benchmark::State &state) {
  std::string const text = Text(kFindLength - 1) + "#";
  SYS_String const haystack(text.c_str());
  Require(haystack.Find('#') == kFindLength - 1, state, "wrong position");
  for (auto _ : state) benchmark::DoNotOptimize(haystack.Find('#'));
}
BENCHMARK(BM_SysStringFind);

void BM_StdStringFind(benchmark::State &state) {
  std::string const haystack = Text(kFindLength - 1) + "#";
  Require(haystack.find('#') == static_cast<std::size_t>(kFindLength - 1), state, "wrong position");
  for (auto _ : state) benchmark::DoNotOptimize(haystack.find('#'));
}
BENCHMARK(BM_StdStringFind);

// --------------------------------------------------------------- TrimRight

// 48 bytes of text and 16 of trailing white space; each round trims a fresh
// copy of the source.
std::string const kTrimSource = Text(48) + std::string(8, ' ') + "\t \t " + std::string(4, ' ');

void BM_SysStringTrimRight(benchmark::State &state) {
  SYS_String const source(kTrimSource.c_str());
  Require(SYS_String(source).TrimRight() == Text(48).c_str(), state, "wrong trim");
  for (auto _ : state) {
    SYS_String s(source);
    s.TrimRight();
    benchmark::DoNotOptimize(s);
  }
}
BENCHMARK(BM_SysStringTrimRight);

void StdTrimRight(std::string &s) { s.erase(s.find_last_not_of(" \t\n\v\f\r") + 1); }

void BM_StdStringTrimRight(benchmark::State &state) {
  std::string const source = kTrimSource;
  std::string check = source;
  StdTrimRight(check);
  Require(check == Text(48), state, "wrong trim");
  for (auto _ : state) {
    std::string s(source);
    StdTrimRight(s);
    benchmark::DoNotOptimize(s);
  }
}
BENCHMARK(BM_StdStringTrimRight);

// ------------------------------------------------------ natural-order sort

std::vector<std::string> Designators() {
  std::mt19937 random(42);
  char const *prefixes[] = {"R", "C", "U", "L", "D", "TP", "J"};
  std::vector<std::string> names;
  for (int i = 0; i < 2000; ++i) {
    names.push_back(std::string(prefixes[random() % 7]) + std::to_string(random() % 500) +
                    (random() % 4 == 0 ? "_" + std::to_string(random() % 20) : ""));
  }
  return names;
}

// The peer: a natural-order comparison written directly on std::string.
bool StdNaturalLess(std::string const &a, std::string const &b) {
  auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  std::size_t i = 0, j = 0;
  while (i < a.size() && j < b.size()) {
    if (isDigit(a[i]) && isDigit(b[j])) {
      long long x = 0, y = 0;
      while (i < a.size() && isDigit(a[i])) x = x * 10 + (a[i++] - '0');
      while (j < b.size() && isDigit(b[j])) y = y * 10 + (b[j++] - '0');
      if (x != y) return x < y;
      continue;
    }
    if (a[i] != b[j]) break;
    ++i;
    ++j;
  }
  auto at = [](std::string const &s, std::size_t k) { return k < s.size() ? static_cast<unsigned char>(s[k]) : 0u; };
  unsigned const x = at(a, i), y = at(b, j);
  if (x == '$' || y == '$') return y == '$' && x != '$';
  return x < y;
}

void BM_SysStringNumCmpSort(benchmark::State &state) {
  std::vector<SYS_String> source;
  for (std::string const &name : Designators()) source.emplace_back(name.c_str());
  auto less = [](SYS_String const &a, SYS_String const &b) { return _tcsnumcmp(a, b) < 0; };
  {
    std::vector<SYS_String> sorted = source;
    std::sort(sorted.begin(), sorted.end(), less);
    std::vector<std::string> peer = Designators();
    std::sort(peer.begin(), peer.end(), StdNaturalLess);
    bool same = sorted.size() == peer.size();
    for (std::size_t k = 0; same && k < sorted.size(); ++k) same = _tcsnumcmp(sorted[k], peer[k].c_str()) == 0;
    Require(same, state, "orders differ");
  }
  for (auto _ : state) {
    std::vector<SYS_String> v = source;
    std::sort(v.begin(), v.end(), less);
    benchmark::DoNotOptimize(v.data());
  }
}
BENCHMARK(BM_SysStringNumCmpSort);

void BM_StdStringNaturalSort(benchmark::State &state) {
  std::vector<std::string> const source = Designators();
  {
    std::vector<std::string> sorted = source;
    std::sort(sorted.begin(), sorted.end(), StdNaturalLess);
    Require(std::is_sorted(sorted.begin(), sorted.end(), StdNaturalLess), state, "not sorted");
  }
  for (auto _ : state) {
    std::vector<std::string> v = source;
    std::sort(v.begin(), v.end(), StdNaturalLess);
    benchmark::DoNotOptimize(v.data());
  }
}
BENCHMARK(BM_StdStringNaturalSort);

}  // namespace

BENCHMARK_MAIN();
