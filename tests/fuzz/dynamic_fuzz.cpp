// Fuzzes the replay of recordings: arbitrary words (the input, 4 bytes each,
// little-endian) are replayed into a surface that draws nothing but reads
// every array and text it is handed, so that a count that does not match its
// array is caught. Each input is replayed twice: a replay changes nothing.
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
  void FastPolyLine(int n, SYS_Point *points, std::int32_t, int) override {
    for (int i = 0; i < n; ++i) sum += static_cast<std::uint32_t>(points[i].y);
  }
  SYS_Box DrawXorText(char const *text, int, int, SYS_Point, int) override {
    std::size_t const n = std::strlen(text);
    if (n >= CDynamic::kTextBuffer) std::abort();
    sum += n;
    return SYS_Box();
  }
  void DrawString(char const *text) override { sum += std::strlen(text); }
};

class Replay : public CDynamic {
 public:
  explicit Replay(UI_DrawArea *area) : CDynamic(area) {}
  void Load(std::uint8_t const *data, std::size_t size) {
    for (std::size_t i = 0; i + 4 <= size; i += 4) {
      recording.Add(static_cast<std::uint32_t>(data[i]) | static_cast<std::uint32_t>(data[i + 1]) << 8 |
                    static_cast<std::uint32_t>(data[i + 2]) << 16 | static_cast<std::uint32_t>(data[i + 3]) << 24);
    }
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
  ReadingArea area;
  Replay replay(&area);
  replay.Load(data, size);
  replay.Redraw();
  std::uint64_t const first = area.sum;
  area.sum = 0;
  replay.Redraw();
  if (area.sum != first || replay.IsFlushing() || replay.GetRecording().GetSize() != static_cast<std::intptr_t>(size / 4)) {
    std::abort();
  }
  return 0;
}
