// CDynamic::Redraw: the walk that replays a recording on a draw area.
//
// Every record is decoded against the recording's real length and copied into
// locals (or scratch arrays) before the first call on the area, because the
// area may record into, clear or detach the recording from inside any call.
#include <cstdlib>
#include <vector>

#include "cdynamic.h"

namespace {

// Operand words of each code: all of them for fixed records, the head (up
// to the count) for the records of variable length (5, 9, 14, 21).
constexpr std::intptr_t kOperands[CDynamic::kLastCode + 1] = {
    1, 1, 4, 4, 5, 5, 6, 10, 1, 1, 3, 2, 2, 4, 3, 4, 2, 1, 1, 1, 2, 1, 1, 1, 5};

constexpr std::intptr_t kStop = -1;

// Where the record of a fixed length behind at ends. Each case of the walk
// answers with its own constant, so that the processor can run ahead into
// the next record instead of waiting for the code word to come in.
constexpr std::intptr_t Next(std::intptr_t at, int code) { return at + 1 + kOperands[code]; }

struct Scratch {
  std::vector<SYS_Point> points;
  std::vector<std::uint32_t> counts;
  std::vector<char> text;
};

inline std::int32_t Int(std::uint32_t word) { return static_cast<std::int32_t>(word); }
inline SYS_Point PointAt(std::uint32_t const *w) { return SYS_Point(Int(w[0]), Int(w[1])); }
inline SYS_Box BoxAt(std::uint32_t const *w) {
  return SYS_Box(Int(w[0]), Int(w[1]), Int(w[2]), Int(w[3]));
}

// Whether the box covers at least 2 pixels both ways, by absolute pixel size.
bool WideEnough(UI_DrawArea &area, SYS_Box const &box) {
  // Differences wrap in 32 bits, as the recording's arithmetic always has.
  auto const dx = Int(static_cast<std::uint32_t>(box.GetRight()) - static_cast<std::uint32_t>(box.GetLeft()));
  auto const dy = Int(static_cast<std::uint32_t>(box.GetUpper()) - static_cast<std::uint32_t>(box.GetLower()));
  std::int64_t const width = std::llabs(area.Scale2ScreenX(dx));
  std::int64_t const height = std::llabs(area.Scale2ScreenY(dy));
  return width >= 2 && height >= 2;
}

// The pen of the exclusive-or line and arc.
inline void XorPen(UI_DrawArea &area, int colour, std::int32_t size) {
  area.PenMode(2);
  area.PenColor(colour);
  area.PenSize(size);
}

// n points from w into the scratch array.
SYS_Point *Points(Scratch &scratch, std::uint32_t const *w, std::intptr_t n) {
  scratch.points.resize(static_cast<std::size_t>(n));
  for (std::intptr_t i = 0; i < n; ++i) scratch.points[static_cast<std::size_t>(i)] = PointAt(w + 2 * i);
  return scratch.points.data();
}

// The records of variable length, out of line so that the text buffer and
// the loops stay out of the walk's frame. Each gets the operands w, the
// words left behind the code, and the code's index; each answers where the
// next record starts, or kStop.

[[gnu::noinline]] std::intptr_t ReplayText(UI_DrawArea &area, std::uint32_t const *w,
                                           std::intptr_t left, std::intptr_t at) {
  std::intptr_t const head = kOperands[CDynamic::kDrawXorText];
  std::uint32_t const n = w[4];
  if (static_cast<std::uint64_t>(left - head) < n) return kStop;
  // The area gets at most kTextBuffer - 1 characters; the walk goes on
  // behind all of them.
  char text[CDynamic::kTextBuffer];
  std::uint32_t const kept = n < CDynamic::kTextBuffer ? n : CDynamic::kTextBuffer - 1;
  for (std::uint32_t i = 0; i < kept; ++i) text[i] = static_cast<char>(w[head + i]);
  text[kept] = '\0';
  area.DrawXorText(text, Int(w[2]), Int(w[3]), PointAt(w), 1);
  return at + 1 + head + n;
}

[[gnu::noinline]] std::intptr_t ReplayPolyPolyline(UI_DrawArea &area, std::uint32_t const *w,
                                                   std::intptr_t left, std::intptr_t at,
                                                   Scratch &scratch) {
  std::uint32_t const m = w[0];
  if (static_cast<std::uint64_t>(left - 1) < m) return kStop;
  std::uint64_t total = 0;
  for (std::uint32_t i = 0; i < m; ++i) total += w[1 + i];
  std::intptr_t const used = 1 + static_cast<std::intptr_t>(m);
  if (static_cast<std::uint64_t>(left - used) / 2 < total) return kStop;
  scratch.counts.assign(w + 1, w + used);
  SYS_Point *const points = Points(scratch, w + used, static_cast<std::intptr_t>(total));
  area.FastPolyPolyline(points, scratch.counts.data(), Int(m));
  return at + 1 + used + 2 * static_cast<std::intptr_t>(total);
}

[[gnu::noinline]] std::intptr_t ReplayPolyLine(UI_DrawArea &area, std::uint32_t const *w,
                                               std::intptr_t left, std::intptr_t at,
                                               Scratch &scratch) {
  std::intptr_t const head = kOperands[CDynamic::kFastPolyLine];
  std::uint32_t const n = w[2];
  if (static_cast<std::uint64_t>(left - head) / 2 < n) return kStop;
  SYS_Point *const points = Points(scratch, w + head, n);
  area.FastPolyLine(Int(n), points, Int(w[0]), Int(w[1]));
  return at + 1 + head + 2 * static_cast<std::intptr_t>(n);
}

[[gnu::noinline]] std::intptr_t ReplayString(UI_DrawArea &area, std::uint32_t const *w,
                                             std::intptr_t left, std::intptr_t at,
                                             Scratch &scratch) {
  std::uint32_t const n = w[0];
  if (static_cast<std::uint64_t>(left - 1) < n) return kStop;
  scratch.text.resize(static_cast<std::size_t>(n) + 1);
  for (std::uint32_t i = 0; i < n; ++i) scratch.text[i] = static_cast<char>(w[1 + i]);
  scratch.text[n] = '\0';
  area.DrawString(scratch.text.data());
  return at + 2 + static_cast<std::intptr_t>(n);
}

// Replays the record at words[at] and answers where the next one starts, or
// kStop when the record's operands run past the end of the recording.
inline std::intptr_t ReplayRecord(UI_DrawArea &area, std::uint32_t const *words, std::intptr_t size,
                           std::intptr_t at, Scratch &scratch) {
  std::uint32_t const code = words[at];
  // Not an operation: the walk goes on at the next word.
  if (code > CDynamic::kLastCode) return at + 1;
  std::uint32_t const *const w = words + at + 1;
  std::intptr_t const left = size - at - 1;
  if (left < kOperands[code]) return kStop;

  switch (code) {
    case CDynamic::kPenColor:
      area.PenColor(Int(w[0]));
      return Next(at, CDynamic::kPenColor);
    case CDynamic::kPenSize:
      area.PenSize(Int(w[0]));
      return Next(at, CDynamic::kPenSize);
    case CDynamic::kDrawXorBox:
      area.DrawXorBox(BoxAt(w));
      return Next(at, CDynamic::kDrawXorBox);
    case CDynamic::kDrawXorOval: {
      SYS_Box const box = BoxAt(w);
      if (WideEnough(area, box)) {
        area.PenMode(2);
        area.FastFrameOval(box);
      } else {
        area.DrawXorBox(box);
      }
      return Next(at, CDynamic::kDrawXorOval);
    }
    case CDynamic::kFillRect: {
      SYS_Box const box = BoxAt(w);
      int const value = Int(w[4]);
      area.PenMode(2);
      area.FillRect(box, value);
      return Next(at, CDynamic::kFillRect);
    }
    case CDynamic::kDrawXorText:
      return ReplayText(area, w, left, at);
    case CDynamic::kDrawLine: {
      SYS_Point const from = PointAt(w);
      SYS_Point const to = PointAt(w + 2);
      std::int32_t const pen = Int(w[4]);
      int const colour = Int(w[5]);
      XorPen(area, colour, pen);
      area.DrawLine(from, to, pen, colour);
      return Next(at, CDynamic::kDrawLine);
    }
    case CDynamic::kDrawArc: {
      SYS_Box const box = BoxAt(w);
      SYS_Point const first = PointAt(w + 4);
      SYS_Point const second = PointAt(w + 6);
      std::int32_t const pen = Int(w[8]);
      int const colour = Int(w[9]);
      XorPen(area, colour, pen);
      if (WideEnough(area, box)) {
        area.FastFrameArc(box, first, second);
      } else {
        area.DrawLine(first, second, pen, colour);
      }
      return Next(at, CDynamic::kDrawArc);
    }
    case CDynamic::kPenCap:
      area.PenCap(Int(w[0]));
      return Next(at, CDynamic::kPenCap);
    case CDynamic::kFastPolyPolyline:
      return ReplayPolyPolyline(area, w, left, at, scratch);
    case CDynamic::kSwitchPen:
      area.SwitchPen(Int(w[0]), Int(w[1]), Int(w[2]));
      return Next(at, CDynamic::kSwitchPen);
    case CDynamic::kFastMoveTo:
      area.FastMoveTo(PointAt(w));
      return Next(at, CDynamic::kFastMoveTo);
    case CDynamic::kFastLineTo:
      area.FastLineTo(PointAt(w));
      return Next(at, CDynamic::kFastLineTo);
    case CDynamic::kFastPaintOval:
      area.FastPaintOval(BoxAt(w));
      return Next(at, CDynamic::kFastPaintOval);
    case CDynamic::kFastPolyLine:
      return ReplayPolyLine(area, w, left, at, scratch);
    case CDynamic::kFastFrameOval:
      area.FastFrameOval(BoxAt(w));
      return Next(at, CDynamic::kFastFrameOval);
    case CDynamic::kTextAlign:
      area.TextAlign(Int(w[0]), Int(w[1]));
      return Next(at, CDynamic::kTextAlign);
    case CDynamic::kTextExtra:
      area.TextExtra(Int(w[0]));
      return Next(at, CDynamic::kTextExtra);
    case CDynamic::kTextFace:
      area.TextFace(Int(w[0]));
      return Next(at, CDynamic::kTextFace);
    case CDynamic::kTextPath:
      area.TextPath(w[0] * 0.0001);
      return Next(at, CDynamic::kTextPath);
    case CDynamic::kTextSize:
      area.TextSize(Int(w[0]), Int(w[1]));
      return Next(at, CDynamic::kTextSize);
    case CDynamic::kDrawString:
      return ReplayString(area, w, left, at, scratch);
    case CDynamic::kSetGRAMode: {
      gra_mode_union mode;
      mode.word = w[0];
      area.SetGRAMode(mode);
      return Next(at, CDynamic::kSetGRAMode);
    }
    case CDynamic::kDrawOnScreen:
      area.DrawOnScreen(w[0] != 0);
      return Next(at, CDynamic::kDrawOnScreen);
    case CDynamic::kDrawIcon: {
      auto const bits = static_cast<std::uint64_t>(w[0]) | static_cast<std::uint64_t>(w[1]) << 32;
      // The icon is the surface's: it is handed back, never looked behind.
      auto const icon = reinterpret_cast<HICON>(static_cast<std::uintptr_t>(bits));
      area.DrawIcon(icon, PointAt(w + 2), Int(w[4]));
      return Next(at, CDynamic::kDrawIcon);
    }
    default:
      return at + 1;  // cannot happen: the code was checked above
  }
}

// Clears the flag however the walk ends.
struct FlushingScope {
  bool &flag;
  explicit FlushingScope(bool &f) : flag(f) { flag = true; }
  ~FlushingScope() { flag = false; }
};

}  // namespace

void CDynamic::Redraw() {
  FlushingScope const scope(flushing);
  if (drawArea == nullptr) return;
  int const mode = drawArea->GetPenMode();
  Scratch scratch;
  // The recording and the area are read again before every record.
  for (std::intptr_t at = 0; drawArea != nullptr && at < recording.GetSize();) {
    at = ReplayRecord(*drawArea, recording.GetData(), recording.GetSize(), at, scratch);
    if (at == kStop) break;
  }
  if (drawArea != nullptr) drawArea->PenMode(mode);
}
