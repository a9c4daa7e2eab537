// Fuzzes the replay of recordings: arbitrary words (the input, 4 bytes each,
// in the host's order) are replayed into a surface that draws nothing but
// reads the poly-polylines and texts it is handed, so that counts that do
// not match their arrays are caught. Each input is replayed twice: a replay
// changes nothing.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "cdynamic.h"

namespace {

class ReadingArea : public UI_DrawArea {
 public:
  using UI_DrawArea::DrawXorText;
  std::uint64_t sum = 0;

  void FastPolyPolyline(SYS_Point *points, std::uint32_t const *counts, int m) override {
    std::uint64_t total = 0;
    for (int i = 0; i < m; ++i) total += counts[i];
    for (std::uint64_t i = 0; i < total; ++i) sum += static_cast<std::uint32_t>(points[i].x);
  }
  SYS_Box DrawXorText(char const *text, int, int, SYS_Point, int) override {
    sum += std::strlen(text);
    return SYS_Box();
  }
};

struct Replay : CDynamic {
  using CDynamic::CDynamic;
  using CDynamic::recording;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
  ReadingArea area;
  Replay replay(&area);
  replay.recording.SetSize(static_cast<std::intptr_t>(size / 4));
  if (size >= 4) std::memcpy(replay.recording.GetData(), data, size / 4 * 4);
  replay.Redraw();
  std::uint64_t const first = area.sum;
  area.sum = 0;
  replay.Redraw();
  if (area.sum != first || replay.IsFlushing()) std::abort();
  return 0;
}
