// Display: recording 1M mixed draw calls in a CDynamic and replaying them on a
// surface that draws nothing, against a command list of std::function
// closures that make the same calls on the surface.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <vector>

#include "cdynamic.h"

// A surface that draws nothing, from another file.
UI_DrawArea *NullSurface();

namespace {

constexpr int kOperations = 1000000;

typedef std::vector<std::function<void(UI_DrawArea &)>> CommandList;

// Eight kinds of call in turn, with arguments that vary with i.
template <class Sink>
void DrawMix(Sink &&sink) {
  for (int i = 0; i < kOperations; ++i) {
    SYS_Point const a(i, -i);
    SYS_Point const b(i + 1000, i * 3);
    SYS_Box const box(i, i, i + 5000, i + 3000);
    sink(i & 7, i, a, b, box);
  }
}

void RecordInto(CDynamic &d) {
  DrawMix([&d](int kind, int i, SYS_Point const &a, SYS_Point const &b, SYS_Box const &box) {
    switch (kind) {
      case 0: d.PenColor(i); break;
      case 1: d.PenSize(i); break;
      case 2: d.FastMoveTo(a); break;
      case 3: d.FastLineTo(b); break;
      case 4: d.DrawLine(a, b, 3, i); break;
      case 5: d.FillRect(box, i); break;
      case 6: d.FastFrameOval(box); break;
      default: d.DrawArc(box, a, b, 2, i); break;
    }
  });
}

// The closures make exactly the calls that the replay of each record makes.
void RecordInto(CommandList &list) {
  DrawMix([&list](int kind, int i, SYS_Point const &a, SYS_Point const &b, SYS_Box const &box) {
    switch (kind) {
      case 0: list.emplace_back([i](UI_DrawArea &s) { s.PenColor(i); }); break;
      case 1: list.emplace_back([i](UI_DrawArea &s) { s.PenSize(i); }); break;
      case 2: list.emplace_back([a](UI_DrawArea &s) { s.FastMoveTo(a); }); break;
      case 3: list.emplace_back([b](UI_DrawArea &s) { s.FastLineTo(b); }); break;
      case 4:
        list.emplace_back([a, b, i](UI_DrawArea &s) {
          s.PenMode(2);
          s.PenColor(i);
          s.PenSize(3);
          s.DrawLine(a, b, 3, i);
        });
        break;
      case 5:
        list.emplace_back([box, i](UI_DrawArea &s) {
          s.PenMode(2);
          s.FillRect(box, i);
        });
        break;
      case 6: list.emplace_back([box](UI_DrawArea &s) { s.FastFrameOval(box); }); break;
      default:
        list.emplace_back([box, a, b, i](UI_DrawArea &s) {
          s.PenMode(2);
          s.PenColor(i);
          s.PenSize(2);
          if (std::abs(s.Scale2ScreenX(box.GetWidth())) >= 2 && std::abs(s.Scale2ScreenY(box.GetHeight())) >= 2) {
            s.FastFrameArc(box, a, b);
          } else {
            s.DrawLine(a, b, 2, i);
          }
        });
        break;
    }
  });
}

// Counts the calls and sums an argument of each, to check both ways once.
class CountingArea : public UI_DrawArea {
 public:
  using UI_DrawArea::DrawXorBox;
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
  void FastFrameArc(SYS_Box const &b, SYS_Point const &, SYS_Point const &) override { Count(b.GetLeft()); }
  void DrawXorBox(SYS_Box b) override { Count(b.GetLower()); }
};

bool SameCalls() {
  CountingArea ours;
  CountingArea peer;
  CDynamic dynamic(&ours);
  RecordInto(dynamic);
  dynamic.Redraw();
  CommandList list;
  RecordInto(list);
  int const mode = peer.GetPenMode();
  for (auto const &command : list) command(peer);
  peer.PenMode(mode);
  return ours.calls == peer.calls && ours.sum == peer.sum && ours.calls > kOperations;
}

void BM_RecordCDynamic(benchmark::State &state) {
  if (!SameCalls()) state.SkipWithError("the two recordings replay different calls");
  for (auto _ : state) {
    CDynamic dynamic;
    RecordInto(dynamic);
    benchmark::DoNotOptimize(dynamic.GetRecording().GetData());
  }
  state.SetItemsProcessed(state.iterations() * kOperations);
}
BENCHMARK(BM_RecordCDynamic)->Unit(benchmark::kMillisecond);

void BM_RecordFunctionList(benchmark::State &state) {
  for (auto _ : state) {
    CommandList list;
    RecordInto(list);
    benchmark::DoNotOptimize(list.data());
  }
  state.SetItemsProcessed(state.iterations() * kOperations);
}
BENCHMARK(BM_RecordFunctionList)->Unit(benchmark::kMillisecond);

void BM_ReplayCDynamic(benchmark::State &state) {
  UI_DrawArea *const area = NullSurface();
  CDynamic dynamic(area);
  RecordInto(dynamic);
  for (auto _ : state) dynamic.Redraw();
  state.SetItemsProcessed(state.iterations() * kOperations);
}
BENCHMARK(BM_ReplayCDynamic)->Unit(benchmark::kMillisecond);

void BM_ReplayFunctionList(benchmark::State &state) {
  UI_DrawArea *const area = NullSurface();
  CommandList list;
  RecordInto(list);
  for (auto _ : state) {
    int const mode = area->GetPenMode();
    for (auto const &command : list) command(*area);
    area->PenMode(mode);
  }
  state.SetItemsProcessed(state.iterations() * kOperations);
}
BENCHMARK(BM_ReplayFunctionList)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
