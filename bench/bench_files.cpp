// The message database against its peers on the same texts:
//  - a lookup: getTxt against a raw fseek + fread at the same position and
//    length, and against catgets on a gencat catalog of the same texts;
//  - a load: the text form and the compiled form against a plain loader of
//    the text form (std::ifstream, std::getline, std::unordered_map);
//  - a walk of a section, dense or numbered far apart, against a walk of a
//    std::map of the same positions with a raw fseek + fread per text.
// The compiled form holds at most 32767 records, so it is loaded at 32000.
#include <benchmark/benchmark.h>
#include <nl_types.h>
#include <stdlib.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include <tovik.h>

namespace {

// A directory holding one database of `count` messages numbered `stride`
// apart, in both forms, and on request (when gencat is there) a catalog of
// the same texts.
class Texts {
 public:
  explicit Texts(int count, bool catalog = false, int stride = 1) {
    char name[] = "/tmp/tovik-bench-XXXXXX";
    dir = ::mkdtemp(name);
    text = dir + "/m.txt";
    std::ofstream out(text);
    std::ofstream msg(dir + "/m.msg");
    msg << "$set 1\n";
    for (int id = stride; id <= count * stride; id += stride) {
      std::string const line = "Message " + std::to_string(id) + ": the board has no room left";
      out << id << ':' << line << '\n';
      msg << id << ' ' << line << '\n';
    }
    out.close();
    msg.close();
    if (count <= 32767) SFM_MessageDB(text.c_str(), 0).Save((dir + "/m.mdb").c_str());
    // gencat takes minutes for tens of thousands of messages: only on request.
    std::string const gencat = "gencat " + dir + "/m.cat " + dir + "/m.msg 2>/dev/null";
    hasCatalog = catalog && std::system(gencat.c_str()) == 0;
    std::mt19937 random(7);
    for (int i = 0; i < 4096; ++i) ids.push_back((static_cast<int>(random() % count) + 1) * stride);
  }
  ~Texts() { std::filesystem::remove_all(dir); }

  std::string dir;
  std::string text;
  bool hasCatalog = false;
  std::vector<int> ids;  // the ids asked for, in one random order
};

Texts &Shared() {
  static Texts texts(1000, true);
  return texts;
}

void BM_GetTxt(benchmark::State &state) {
  Texts &texts = Shared();
  SFM_MessageDB db(texts.text.c_str(), 0);
  std::size_t i = 0;
  for (auto _ : state) {
    SYS_String const text = db.getTxt(texts.ids[i++ & 4095]);
    benchmark::DoNotOptimize(text.GetLength());
  }
}
BENCHMARK(BM_GetTxt);

void BM_RawSeekRead(benchmark::State &state) {
  Texts &texts = Shared();
  SFM_MessageDB db(texts.text.c_str(), 0);
  std::vector<SFM_MessageDB::keyTableElem> where;
  for (int id : texts.ids) where.push_back(*db.GetKeys()->Find(id));
  FILE *const file = std::fopen(texts.text.c_str(), "r");
  char buffer[200];
  std::size_t i = 0;
  for (auto _ : state) {
    SFM_MessageDB::keyTableElem const &at = where[i++ & 4095];
    std::fseek(file, at.position, SEEK_SET);
    benchmark::DoNotOptimize(std::fread(buffer, 1, at.length, file));
  }
  std::fclose(file);
}
BENCHMARK(BM_RawSeekRead);

void BM_Catgets(benchmark::State &state) {
  Texts &texts = Shared();
  if (!texts.hasCatalog) {
    state.SkipWithError("gencat is not installed");
    return;
  }
  nl_catd const catalog = ::catopen((texts.dir + "/m.cat").c_str(), 0);
  std::size_t i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(::catgets(catalog, 1, texts.ids[i++ & 4095], ""));
  ::catclose(catalog);
}
BENCHMARK(BM_Catgets);

void BM_LoadTextForm(benchmark::State &state) {
  Texts const texts(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    SFM_MessageDB db(texts.text.c_str(), 0);
    benchmark::DoNotOptimize(db.GetKeys());
  }
}
BENCHMARK(BM_LoadTextForm)->Arg(32000)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_LoadCompiledForm(benchmark::State &state) {
  Texts const texts(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    SFM_MessageDB db((texts.dir + "/m.mdb").c_str());
    benchmark::DoNotOptimize(db.GetKeys());
  }
}
BENCHMARK(BM_LoadCompiledForm)->Arg(32000)->Unit(benchmark::kMillisecond);

// A whole walk of 10000 texts numbered range(0) apart.
void BM_WalkSection(benchmark::State &state) {
  Texts const texts(10000, false, static_cast<int>(state.range(0)));
  SFM_MessageDB db(texts.text.c_str(), 0);
  for (auto _ : state) {
    for (SFM_MessageDB::SectionIterator it(&db, "", 0); !it.IsEmpty(); ++it) {
      benchmark::DoNotOptimize(it.GetPosition());
    }
  }
}
BENCHMARK(BM_WalkSection)->Arg(1)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_WalkPlainMap(benchmark::State &state) {
  int const stride = static_cast<int>(state.range(0));
  Texts const texts(10000, false, stride);
  SFM_MessageDB db(texts.text.c_str(), 0);
  std::map<int, SFM_MessageDB::keyTableElem> ordered;
  for (int id = stride; id <= 10000 * stride; id += stride) ordered.emplace(id, *db.GetKeys()->Find(id));
  FILE *const file = std::fopen(texts.text.c_str(), "r");
  char buffer[200];
  for (auto _ : state) {
    for (auto const &[id, at] : ordered) {
      std::fseek(file, at.position, SEEK_SET);
      benchmark::DoNotOptimize(std::fread(buffer, 1, at.length, file));
    }
  }
  std::fclose(file);
}
BENCHMARK(BM_WalkPlainMap)->Arg(1)->Arg(100000)->Unit(benchmark::kMillisecond);

// The same index built from the text form by the standard library: id to
// position and length, texts left on disk.
void BM_LoadPlainIndex(benchmark::State &state) {
  Texts const texts(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    std::unordered_map<int, std::pair<std::streamoff, int>> index;
    std::ifstream in(texts.text);
    std::string line;
    for (std::streamoff position = in.tellg(); std::getline(in, line); position = in.tellg()) {
      std::size_t const colon = line.find(':');
      if (colon == std::string::npos) continue;
      index.emplace(std::atoi(line.c_str()),
                    std::make_pair(position + static_cast<std::streamoff>(colon) + 1,
                                   static_cast<int>(line.size() - colon - 1)));
    }
    benchmark::DoNotOptimize(index.size());
  }
}
BENCHMARK(BM_LoadPlainIndex)->Arg(32000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
