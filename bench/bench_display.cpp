// Display: recording 1M mixed draw calls and replaying them on a surface that
// draws nothing. CDynamic records words; the peer is a recording surface that
// keeps a std::vector of std::function closures, each making on replay the
// calls that CDynamic's replay makes for the same record. Both record through
// the UI_DrawArea interface, as a caller draws.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>
#include <vector>

#include "cdynamic.h"

// A surface that draws nothing, from another file, as an application's
// surface lives in the application: neither replay can see through its calls.
UI_DrawArea *NullSurface();

namespace {

constexpr int kOperations = 1000000;

class CommandListArea : public UI_DrawArea {
 public:
  using UI_DrawArea::DrawXorBox;
  std::vector<std::function<void(UI_DrawArea &)>> commands;

  void PenColor(int c) override {
    commands.emplace_back([c](UI_DrawArea &s) { s.PenColor(c); });
  }
  void PenSize(std::int32_t size) override {
    commands.emplace_back([size](UI_DrawArea &s) { s.PenSize(size); });
  }
  void FastMoveTo(SYS_Point const &p) override {
    commands.emplace_back([p](UI_DrawArea &s) { s.FastMoveTo(p); });
  }
  void FastLineTo(SYS_Point const &p) override {
    commands.emplace_back([p](UI_DrawArea &s) { s.FastLineTo(p); });
  }
  void DrawLine(SYS_Point const &a, SYS_Point const &b, std::int32_t size, int c) override {
    commands.emplace_back([a, b, size, c](UI_DrawArea &s) {
      s.PenMode(2);
      s.PenColor(c);
      s.PenSize(size);
      s.DrawLine(a, b, size, c);
    });
  }
  void FillRect(SYS_Box box, int value) override {
    box.Normalize();
    commands.emplace_back([box, value](UI_DrawArea &s) {
      s.PenMode(2);
      s.FillRect(box, value);
    });
  }
  void FastFrameOval(SYS_Box const &box) override {
    commands.emplace_back([box](UI_DrawArea &s) { s.FastFrameOval(box); });
  }
  void DrawXorBox(SYS_Point a, SYS_Point b) override {
    commands.emplace_back([a, b](UI_DrawArea &s) { s.DrawXorBox(SYS_Box(a, b)); });
  }

  void Replay(UI_DrawArea &surface) const {
    int const mode = surface.GetPenMode();
    for (auto const &command : commands) command(surface);
    surface.PenMode(mode);
  }
};

// Eight kinds of call in turn, with arguments that vary with i.
void DrawMix(UI_DrawArea &d) {
  for (int i = 0; i < kOperations; ++i) {
    SYS_Point const a(i, -i);
    SYS_Point const b(i + 1000, i * 3);
    switch (i & 7) {
      case 0: d.PenColor(i); break;
      case 1: d.PenSize(i); break;
      case 2: d.FastMoveTo(a); break;
      case 3: d.FastLineTo(b); break;
      case 4: d.DrawLine(a, b, 3, i); break;
      case 5: d.FillRect(SYS_Box(i, i, i + 5000, i + 3000), i); break;
      case 6: d.FastFrameOval(SYS_Box(b, a)); break;
      default: d.DrawXorBox(a, b); break;
    }
  }
}

// Counts the calls and sums an argument of each, to check both ways once.
class CountingArea : public UI_DrawArea {
 public:
  std::int64_t calls = 0;
  std::int64_t sum = 0;
  void Count(std::int64_t value) {
    ++calls;
    sum += value;
  }
  void PenColor(int c) override { Count(c); }
  void PenSize(std::int32_t s) override { Count(s); }
  void PenMode(int m) override { Count(m); }
  void FastMoveTo(SYS_Point const &p) override { Count(p.x); }
  void FastLineTo(SYS_Point const &p) override { Count(p.y); }
  void DrawLine(SYS_Point const &a, SYS_Point const &, std::int32_t, int) override { Count(a.y); }
  void FillRect(SYS_Box b, int) override { Count(b.GetUpper()); }
  void FastFrameOval(SYS_Box const &b) override { Count(b.GetRight()); }
  void DrawXorBox(SYS_Box b) override { Count(b.GetLower()); }
  using UI_DrawArea::DrawXorBox;
};

bool SameCalls() {
  CountingArea ours;
  CountingArea peer;
  CDynamic dynamic(&ours);
  DrawMix(dynamic);
  dynamic.Redraw();
  CommandListArea list;
  DrawMix(list);
  list.Replay(peer);
  return ours.calls == peer.calls && ours.sum == peer.sum && ours.calls > kOperations;
}

// A fresh recorder per pass: the memory is new each time.
void BM_RecordCDynamic(benchmark::State &state) {
  if (!SameCalls()) state.SkipWithError("the two recordings replay different calls");
  for (auto _ : state) {
    CDynamic dynamic;
    DrawMix(dynamic);
    benchmark::DoNotOptimize(dynamic.GetRecording().GetData());
  }
  state.SetItemsProcessed(state.iterations() * kOperations);
}
BENCHMARK(BM_RecordCDynamic)->Unit(benchmark::kMillisecond);

void BM_RecordFunctionList(benchmark::State &state) {
  for (auto _ : state) {
    CommandListArea list;
    DrawMix(list);
    benchmark::DoNotOptimize(list.commands.data());
  }
  state.SetItemsProcessed(state.iterations() * kOperations);
}
BENCHMARK(BM_RecordFunctionList)->Unit(benchmark::kMillisecond);

// One recorder emptied before each pass, as a batch is redrawn.
void BM_RerecordCDynamic(benchmark::State &state) {
  CDynamic dynamic;
  for (auto _ : state) {
    dynamic.Reset();
    DrawMix(dynamic);
    benchmark::DoNotOptimize(dynamic.GetRecording().GetData());
  }
  state.SetItemsProcessed(state.iterations() * kOperations);
}
BENCHMARK(BM_RerecordCDynamic)->Unit(benchmark::kMillisecond);

void BM_RerecordFunctionList(benchmark::State &state) {
  CommandListArea list;
  for (auto _ : state) {
    list.commands.clear();
    DrawMix(list);
    benchmark::DoNotOptimize(list.commands.data());
  }
  state.SetItemsProcessed(state.iterations() * kOperations);
}
BENCHMARK(BM_RerecordFunctionList)->Unit(benchmark::kMillisecond);

void BM_ReplayCDynamic(benchmark::State &state) {
  CDynamic dynamic(NullSurface());
  DrawMix(dynamic);
  for (auto _ : state) dynamic.Redraw();
  state.SetItemsProcessed(state.iterations() * kOperations);
}
BENCHMARK(BM_ReplayCDynamic)->Unit(benchmark::kMillisecond);

void BM_ReplayFunctionList(benchmark::State &state) {
  UI_DrawArea &surface = *NullSurface();
  CommandListArea list;
  DrawMix(list);
  for (auto _ : state) list.Replay(surface);
  state.SetItemsProcessed(state.iterations() * kOperations);
}
BENCHMARK(BM_ReplayFunctionList)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
