// Value text and properties against peers on the same data.
//
// Str2Base reads a number typed in mils into world units; the peers read the
// same texts with strtod and std::from_chars and scale and round the result
// the same way. Base2Str shows world values in mils with 2 decimals and
// trailing zeros cut; the peers write the same numbers with snprintf("%.2f")
// and std::to_chars (without the trim). TR(int) on a cached number against a
// std::unordered_map<int, std::string> lookup that copies its string. A
// property's common value over N focused objects against a loop over the same
// objects' keys. Each case checks its result once before it is timed.
//
// Run with --benchmark_repetitions=10 --benchmark_report_aggregates_only=true
// for the medians that bench/README.md keeps.
#include <benchmark/benchmark.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>

#include "object_store.h"
#include "scc_property.h"
#include "sys_convert.h"
#include "sys_translation.h"

namespace {

using tovik_test::ObjectStore;
using tovik_test::StoreCollection;
using tovik_test::StoreObject;

constexpr int kTexts = 1024;

// World values on the 0.01 mil grid across the working area, and their mil
// texts, which read back exactly.
std::vector<std::int32_t> const &Worlds() {
  static std::vector<std::int32_t> const worlds = [] {
    std::vector<std::int32_t> w;
    for (int i = 0; i < kTexts; ++i) w.push_back(((i - kTexts / 2) * 5400 + i % 100) * 381);
    return w;
  }();
  return worlds;
}

std::vector<std::string> const &Texts() {
  static std::vector<std::string> const texts = [] {
    SYS_Convert const convert;
    std::vector<std::string> t;
    for (std::int32_t w : Worlds()) t.emplace_back(static_cast<char const *>(convert.Base2Str(w)));
    return t;
  }();
  return texts;
}

std::int32_t Scale(double mils) { return static_cast<std::int32_t>(std::lround(mils * 38100.0)); }

void Check(bool ok, char const *what) {
  if (!ok) {
    std::fprintf(stderr, "wrong result: %s\n", what);
    std::abort();
  }
}

void BM_Str2Base(benchmark::State &state) {
  SYS_Convert const convert;
  auto const &texts = Texts();
  std::int32_t value = 0;
  Check(convert.Str2Base(texts[7].c_str(), &value) == 1 && value == Worlds()[7], "Str2Base");
  std::size_t i = 0;
  for (auto _ : state) {
    convert.Str2Base(texts[i++ & (kTexts - 1)].c_str(), &value);
    benchmark::DoNotOptimize(value);
  }
}

void BM_Strtod(benchmark::State &state) {
  auto const &texts = Texts();
  char *end = nullptr;
  Check(Scale(std::strtod(texts[7].c_str(), &end)) == Worlds()[7], "strtod");
  std::size_t i = 0;
  for (auto _ : state) {
    std::int32_t const value = Scale(std::strtod(texts[i++ & (kTexts - 1)].c_str(), &end));
    benchmark::DoNotOptimize(value);
  }
}

void BM_FromChars(benchmark::State &state) {
  auto const &texts = Texts();
  auto parse = [](std::string const &t) {
    double d = 0;
    std::from_chars(t.data(), t.data() + t.size(), d);
    return Scale(d);
  };
  Check(parse(texts[7]) == Worlds()[7], "from_chars");
  std::size_t i = 0;
  for (auto _ : state) {
    std::int32_t const value = parse(texts[i++ & (kTexts - 1)]);
    benchmark::DoNotOptimize(value);
  }
}

void BM_Base2Str(benchmark::State &state) {
  SYS_Convert const convert;
  auto const &worlds = Worlds();
  char buffer[SYS_Convert::kMaxNumberText];
  Check(Texts()[7] == convert.Base2Str(buffer, worlds[7]), "Base2Str");
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(convert.Base2Str(buffer, worlds[i++ & (kTexts - 1)]));
  }
}

void BM_Snprintf(benchmark::State &state) {
  auto const &worlds = Worlds();
  char buffer[64];
  std::size_t i = 0;
  for (auto _ : state) {
    int const n = std::snprintf(buffer, sizeof buffer, "%.2f", worlds[i++ & (kTexts - 1)] / 38100.0);
    benchmark::DoNotOptimize(n);
    benchmark::DoNotOptimize(buffer);
  }
}

void BM_ToChars(benchmark::State &state) {
  auto const &worlds = Worlds();
  char buffer[64];
  std::size_t i = 0;
  for (auto _ : state) {
    auto const r = std::to_chars(buffer, buffer + sizeof buffer, worlds[i++ & (kTexts - 1)] / 38100.0,
                                 std::chars_format::fixed, 2);
    benchmark::DoNotOptimize(r.ptr);
    benchmark::DoNotOptimize(buffer);
  }
}

void BM_TrHit(benchmark::State &state) {
  Check(std::strcmp(TR(45104), "Mils") == 0, "TR");
  for (auto _ : state) {
    SYS_String const text = TR(45104);
    benchmark::DoNotOptimize(text);
  }
}

void BM_UnorderedMapHit(benchmark::State &state) {
  std::unordered_map<int, std::string> map;
  for (int id = 45000; id <= 45115; ++id) map[id] = "text " + std::to_string(id);
  map[45104] = "Mils";
  for (auto _ : state) {
    std::string const text = map.find(45104)->second;
    benchmark::DoNotOptimize(text);
  }
}

// A component's value as the property reads it: the key.
class KeyProperty : public SCC_StdProperty {
 public:
  using SCC_StdProperty::GetValue;
  int GetValue(SCC_Handle handle, SCC_Variant &value) override {
    value = SCC_Variant(StoreObject::From(handle)->key);
    return 1;
  }
};

struct Selection {
  explicit Selection(int n) : collection(store) {
    for (int i = 0; i < n; ++i) store.Add(i + 1, 47);
    collection.AllowReload(1);
    for (auto const &object : store.objects) collection.SetFocus(object->Handle(), 2);
  }
  ObjectStore store;
  StoreCollection collection;
};

void BM_CommonValue(benchmark::State &state) {
  Selection selection(static_cast<int>(state.range(0)));
  KeyProperty property;
  SCC_Variant value;
  Check(property.GetValue(&selection.collection, value) == 1 && value == SCC_Variant(47) &&
            selection.collection.GetFocus(static_cast<std::int32_t>(state.range(0)) - 1) != 0,
        "common value");
  for (auto _ : state) {
    SCC_Variant common;
    benchmark::DoNotOptimize(property.GetValue(&selection.collection, common));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_CommonValueLoop(benchmark::State &state) {
  Selection selection(static_cast<int>(state.range(0)));
  std::vector<StoreObject *> focus;
  for (auto const &object : selection.store.objects) focus.push_back(object.get());
  for (auto _ : state) {
    bool same = true;
    int const first = focus.front()->key;
    for (StoreObject const *object : focus) same = same && object->key == first;
    benchmark::DoNotOptimize(same);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

}  // namespace

BENCHMARK(BM_Str2Base);
BENCHMARK(BM_Strtod);
BENCHMARK(BM_FromChars);
BENCHMARK(BM_Base2Str);
BENCHMARK(BM_Snprintf);
BENCHMARK(BM_ToChars);
BENCHMARK(BM_TrHit);
BENCHMARK(BM_UnorderedMapHit);
BENCHMARK(BM_CommonValue)->Arg(10000);
BENCHMARK(BM_CommonValueLoop)->Arg(10000);
BENCHMARK_MAIN();
