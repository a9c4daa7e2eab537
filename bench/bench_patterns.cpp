// SYS_StrPattern against std::regex, PCRE2 (interpreter and JIT) and RE2 on
// a 1 MB text of board notes: finding every match, and replacing every
// match, with literal-led and class-led patterns that mean the same in all
// four languages. Each case checks its count against Tovik's once before it
// is timed.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <regex>
#include <string>

#include "sys_str_pattern.h"

#if TOVIK_HAVE_PCRE2
#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>
#endif
#if TOVIK_HAVE_RE2
#include <re2/re2.h>
#endif

namespace {

struct Case {
  char const *name;
  char const *pattern;
};
// clang-format off
Case const kCases[] = {
  {"literal via[0-9]+", "via[0-9]+"},
  {"literal pin [0-9]+", "pin [0-9]+"},
  {"class [0-9]+\\.[0-9]+", "[0-9]+\\.[0-9]+"},
  {"class [a-z]+ing", "[a-z]+ing"},
};
// clang-format on
constexpr char kReplacement[] = "<>";

// About 1 MB of words, numbers, designators and vias, the same every run.
std::string const &Text() {
  static std::string const text = [] {
    char const *const words[] = {"the", "board", "routing", "net", "pad", "via", "pin", "layer", "clearance",
                                 "drilling", "copper", "trace", "placing", "keepout", "spacing", "R"};
    std::mt19937 random(1234);
    std::string s;
    while (s.size() < (1u << 20)) {
      s += words[random() % 16];
      switch (random() % 5) {
        case 0: s += std::to_string(random() % 1000); break;
        case 1: s += " " + std::to_string(random() % 100) + "." + std::to_string(random() % 100); break;
        default: break;
      }
      s += random() % 11 == 0 ? ".\n" : " ";
    }
    return s;
  }();
  return text;
}

// ------------------------------------------------------------------- Tovik

int TovikCount(SYS_StrPattern const &pattern, char const *text) {
  int count = 0;
  int length = 0;
  for (int at = pattern.Match(text, &length); at >= 0; at = pattern.Match(text, &length)) {
    text += at + (length > 0 ? length : 1);
    ++count;
  }
  return count;
}

int ExpectedCount(int index) {
  static int counts[sizeof kCases / sizeof kCases[0]] = {};
  if (counts[index] == 0) counts[index] = TovikCount(SYS_StrPattern(kCases[index].pattern), Text().c_str());
  return counts[index];
}

void Check(benchmark::State &state, int count, int index) {
  if (count != ExpectedCount(index)) state.SkipWithError("count differs from Tovik's");
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(Text().size()));
}

void BM_TovikMatch(benchmark::State &state) {
  auto const index = static_cast<int>(state.range(0));
  SYS_StrPattern const pattern(kCases[index].pattern);
  int count = 0;
  for (auto _ : state) benchmark::DoNotOptimize(count = TovikCount(pattern, Text().c_str()));
  Check(state, count, index);
}

void BM_TovikSubstitute(benchmark::State &state) {
  auto const index = static_cast<int>(state.range(0));
  SYS_StrPattern const pattern(kCases[index].pattern);
  CString const source(Text().c_str());
  int count = 0;
  for (auto _ : state) {
    CString text(source);
    benchmark::DoNotOptimize(count = pattern.Substitute(text, kReplacement, 0));
  }
  Check(state, count, index);
}

// ------------------------------------------------------------- std::regex

void BM_StdRegexMatch(benchmark::State &state) {
  auto const index = static_cast<int>(state.range(0));
  std::regex const pattern(kCases[index].pattern);
  int count = 0;
  for (auto _ : state) {
    count = static_cast<int>(std::distance(std::sregex_iterator(Text().begin(), Text().end(), pattern),
                                           std::sregex_iterator()));
    benchmark::DoNotOptimize(count);
  }
  Check(state, count, index);
}

void BM_StdRegexSubstitute(benchmark::State &state) {
  auto const index = static_cast<int>(state.range(0));
  std::regex const pattern(kCases[index].pattern);
  std::size_t length = 0;
  for (auto _ : state) benchmark::DoNotOptimize(length = std::regex_replace(Text(), pattern, kReplacement).size());
  std::size_t const expected = Text().size() + static_cast<std::size_t>(ExpectedCount(index)) * 2;
  if (length > expected) state.SkipWithError("replaced text too long");
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(Text().size()));
}

// ------------------------------------------------------------------- PCRE2

#if TOVIK_HAVE_PCRE2
struct Pcre2 {
  pcre2_code *code = nullptr;
  pcre2_match_data *data = nullptr;
  Pcre2(char const *pattern, bool jit) {
    int error = 0;
    PCRE2_SIZE offset = 0;
    code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern), PCRE2_ZERO_TERMINATED, 0, &error, &offset, nullptr);
    if (jit) pcre2_jit_compile(code, PCRE2_JIT_COMPLETE);
    data = pcre2_match_data_create_from_pattern(code, nullptr);
  }
  ~Pcre2() {
    pcre2_match_data_free(data);
    pcre2_code_free(code);
  }
  Pcre2(Pcre2 const &) = delete;
  Pcre2 &operator=(Pcre2 const &) = delete;
};

void BM_Pcre2Match(benchmark::State &state) {
  auto const index = static_cast<int>(state.range(0));
  Pcre2 const pcre(kCases[index].pattern, state.range(1) != 0);
  auto const subject = reinterpret_cast<PCRE2_SPTR>(Text().data());
  int count = 0;
  for (auto _ : state) {
    count = 0;
    PCRE2_SIZE at = 0;
    while (pcre2_match(pcre.code, subject, Text().size(), at, 0, pcre.data, nullptr) > 0) {
      PCRE2_SIZE const *ovector = pcre2_get_ovector_pointer(pcre.data);
      at = ovector[1] > ovector[0] ? ovector[1] : ovector[0] + 1;
      ++count;
    }
    benchmark::DoNotOptimize(count);
  }
  Check(state, count, index);
}

void BM_Pcre2Substitute(benchmark::State &state) {
  auto const index = static_cast<int>(state.range(0));
  Pcre2 const pcre(kCases[index].pattern, state.range(1) != 0);
  auto const subject = reinterpret_cast<PCRE2_SPTR>(Text().data());
  std::string output(Text().size() * 2, '\0');
  int count = 0;
  for (auto _ : state) {
    PCRE2_SIZE length = output.size();
    count = pcre2_substitute(pcre.code, subject, Text().size(), 0, PCRE2_SUBSTITUTE_GLOBAL, pcre.data, nullptr,
                             reinterpret_cast<PCRE2_SPTR>(kReplacement), PCRE2_ZERO_TERMINATED,
                             reinterpret_cast<PCRE2_UCHAR *>(&output[0]), &length);
    benchmark::DoNotOptimize(count);
  }
  Check(state, count, index);
}
#endif

// --------------------------------------------------------------------- RE2

#if TOVIK_HAVE_RE2
void BM_Re2Match(benchmark::State &state) {
  auto const index = static_cast<int>(state.range(0));
  RE2 const pattern(kCases[index].pattern);
  int count = 0;
  for (auto _ : state) {
    count = 0;
    re2::StringPiece input(Text());
    re2::StringPiece match;
    while (pattern.Match(input, 0, input.size(), RE2::UNANCHORED, &match, 1)) {
      input.remove_prefix(static_cast<std::size_t>(match.data() + match.size() - input.data()));
      ++count;
    }
    benchmark::DoNotOptimize(count);
  }
  Check(state, count, index);
}

void BM_Re2Substitute(benchmark::State &state) {
  auto const index = static_cast<int>(state.range(0));
  RE2 const pattern(kCases[index].pattern);
  int count = 0;
  for (auto _ : state) {
    std::string text(Text());
    benchmark::DoNotOptimize(count = RE2::GlobalReplace(&text, pattern, kReplacement));
  }
  Check(state, count, index);
}
#endif

void Cases(benchmark::internal::Benchmark *b) {
  for (int i = 0; i < static_cast<int>(sizeof kCases / sizeof kCases[0]); ++i) b->Arg(i);
}

void Pcre2Cases(benchmark::internal::Benchmark *b) {
  for (int i = 0; i < static_cast<int>(sizeof kCases / sizeof kCases[0]); ++i) b->Args({i, 0})->Args({i, 1});
}

}  // namespace

BENCHMARK(BM_TovikMatch)->Apply(Cases)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StdRegexMatch)->Apply(Cases)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TovikSubstitute)->Apply(Cases)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StdRegexSubstitute)->Apply(Cases)->Unit(benchmark::kMillisecond);
#if TOVIK_HAVE_PCRE2
// Second argument: 0 the interpreter, 1 the JIT.
BENCHMARK(BM_Pcre2Match)->Apply(Pcre2Cases)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Pcre2Substitute)->Apply(Pcre2Cases)->Unit(benchmark::kMillisecond);
#endif
#if TOVIK_HAVE_RE2
BENCHMARK(BM_Re2Match)->Apply(Cases)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Re2Substitute)->Apply(Cases)->Unit(benchmark::kMillisecond);
#endif
BENCHMARK_MAIN();
