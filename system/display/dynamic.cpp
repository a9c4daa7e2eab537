// CDynamic: binding, the recording's life cycle, and the recorded operations.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "cdynamic.h"

namespace {
inline std::uint32_t Word(std::int32_t value) { return static_cast<std::uint32_t>(value); }

// Each character widened from a signed byte, as the recording has always
// stored texts.
inline std::uint32_t CharWord(char c) {
  return static_cast<std::uint32_t>(static_cast<std::int32_t>(static_cast<signed char>(c)));
}

// One record: the code and a box.
inline void RecordBox(CDWordArray &recording, CDynamic::Code code, SYS_Box const &box) {
  std::uint32_t *const at = recording.AddSpace(5);
  at[0] = code;
  at[1] = Word(box.GetLeft());
  at[2] = Word(box.GetLower());
  at[3] = Word(box.GetRight());
  at[4] = Word(box.GetUpper());
}

// Two points, a pen size and a colour: the tail of the line and the arc.
inline void PutLine(std::uint32_t *at, SYS_Point const &a, SYS_Point const &b, std::int32_t size, int colour) {
  at[0] = Word(a.x);
  at[1] = Word(a.y);
  at[2] = Word(b.x);
  at[3] = Word(b.y);
  at[4] = Word(size);
  at[5] = Word(colour);
}

// n characters of text as words from at on.
inline void PutText(std::uint32_t *at, char const *text, std::intptr_t n) {
  for (std::intptr_t i = 0; i < n; ++i) at[i] = CharWord(text[i]);
}

// The smallest box of count points, count > 0.
SYS_Box BoxOf(SYS_Point const *points, std::intptr_t count) {
  SYS_Box box(points[0], points[0]);
  for (std::intptr_t i = 1; i < count; ++i) {
    if (points[i].x < box.GetLeft()) box.SetLeft(points[i].x);
    if (points[i].x > box.GetRight()) box.SetRight(points[i].x);
    if (points[i].y < box.GetLower()) box.SetLower(points[i].y);
    if (points[i].y > box.GetUpper()) box.SetUpper(points[i].y);
  }
  return box;
}

// The box normalised. Written out here, without branches, because half of
// all recorded calls normalise a box, and the data decide each swap.
inline SYS_Box Normalized(SYS_Box const &box) {
  return SYS_Box(std::min(box.GetLeft(), box.GetRight()), std::min(box.GetLower(), box.GetUpper()),
                 std::max(box.GetLeft(), box.GetRight()), std::max(box.GetLower(), box.GetUpper()));
}
}  // namespace

// --- Binding and life cycle ----------------------------------------------

CDynamic::CDynamic(UI_DrawArea *area) : drawArea(nullptr), batchDepth(0), flushing(false) {
  Install(area);
}

CDynamic::~CDynamic() = default;

void CDynamic::Install(UI_DrawArea *area) {
  if (area == nullptr) return;
  drawArea = area;
  area->InstallDynamic(this);
}

void CDynamic::Clear() {
  if (drawArea == nullptr) return;
  drawArea->RedrawDynamic(this, &extent, 0);
  Reset();
}

void CDynamic::Reset() {
  // The memory stays: a batch redrawn on every move of the mouse records
  // into it again without allocating.
  recording.SetSize(0);
  extent.SetEmpty();
}

void CDynamic::StartBatchDraw() {
  Clear();
  ++batchDepth;
}

void CDynamic::EndBatchDraw() {
  if (batchDepth <= 0 || drawArea == nullptr) return;
  // Closed before the call, which may end this object's life.
  --batchDepth;
  drawArea->RedrawDynamic(this, &extent, 1);
}

int CDynamic::OnNotification(int code, UI_DrawArea::RedrawBlock *block) {
  (void)block;
  switch (code) {
    case 0:
    case 1:
      Redraw();
      break;
    case 2:
      drawArea = nullptr;
      break;
    case 3:
      Clear();
      break;
    default:
      break;
  }
  return 0;
}

void CDynamic::StartScreenDraw() {
  if (drawArea != nullptr) drawArea->StartScreenDraw();
}

// --- Recorded operations -------------------------------------------------

void CDynamic::PenColor(int colour) {
  std::uint32_t *const at = recording.AddSpace(2);
  at[0] = kPenColor;
  at[1] = Word(colour);
}

void CDynamic::PenSize(std::int32_t size) {
  std::uint32_t *const at = recording.AddSpace(2);
  at[0] = kPenSize;
  at[1] = Word(size);
}

void CDynamic::DrawXorBox(SYS_Box box) {
  box = Normalized(box);
  DrawXorBox(box.GetLowerLeft(), box.GetUpperRight());
}

void CDynamic::DrawXorBox(SYS_Point first, SYS_Point second) {
  SYS_Box const box(first, second);  // as given: the extent too is not normalised
  RecordBox(recording, kDrawXorBox, box);
  Extend(box);
}

void CDynamic::DrawXorOval(SYS_Box box) {
  box = Normalized(box);
  RecordBox(recording, kDrawXorOval, box);
  Extend(box);
}

void CDynamic::FillRect(SYS_Box box, int value) {
  box = Normalized(box);
  RecordBox(recording, kFillRect, box);
  recording.Add(Word(value));
  Extend(box);
}

SYS_Box CDynamic::DrawXorText(char const *text, int a, int b, std::int32_t x, std::int32_t y,
                              int draw) {
  (void)draw;
  if (text == nullptr) text = "";
  auto const n = static_cast<std::intptr_t>(std::strlen(text)) + 1;
  std::uint32_t *const at = recording.AddSpace(6 + n);
  at[0] = kDrawXorText;
  at[1] = Word(x);
  at[2] = Word(y);
  at[3] = Word(a);
  at[4] = Word(b);
  at[5] = static_cast<std::uint32_t>(n);
  PutText(at + 6, text, n);
  if (drawArea == nullptr) return SYS_Box();
  SYS_Box const box = drawArea->DrawXorText(text, a, b, x, y, 0);
  Extend(box);
  return box;
}

SYS_Box CDynamic::DrawXorText(char const *text, int a, int b, SYS_Point where, int draw) {
  (void)draw;
  return DrawXorText(text, a, b, where.x, where.y, 1);
}

void CDynamic::DrawLine(SYS_Point const &from, SYS_Point const &to, std::int32_t size, int colour) {
  std::uint32_t *const at = recording.AddSpace(7);
  at[0] = kDrawLine;
  PutLine(at + 1, from, to, size, colour);
  Extend(Normalized(SYS_Box(from, to)));
}

void CDynamic::DrawArc(SYS_Box box, SYS_Point const &first, SYS_Point const &second,
                       std::int32_t size, int colour) {
  box = Normalized(box);
  RecordBox(recording, kDrawArc, box);
  PutLine(recording.AddSpace(6), first, second, size, colour);
  Extend(box);
}

void CDynamic::PenCap(int cap) {
  std::uint32_t *const at = recording.AddSpace(2);
  at[0] = kPenCap;
  at[1] = Word(cap);
}

void CDynamic::FastPolyPolyline(SYS_Point *points, std::uint32_t const *counts, int m) {
  std::int64_t total = 0;
  if (counts == nullptr || m < 0) m = 0;
  for (int i = 0; i < m; ++i) total += counts[i];
  if (points == nullptr && total > 0) {
    m = 0;
    total = 0;
  }
  std::uint32_t *at = recording.AddSpace(2 + m + 2 * static_cast<std::intptr_t>(total));
  *at++ = kFastPolyPolyline;
  *at++ = Word(m);
  for (int i = 0; i < m; ++i) *at++ = counts[i];
  for (std::int64_t i = 0; i < total; ++i) {
    *at++ = Word(points[i].x);
    *at++ = Word(points[i].y);
  }
  if (total > 0) Extend(BoxOf(points, static_cast<std::intptr_t>(total)));
}

void CDynamic::SwitchPen(int a, std::int32_t b, int c) {
  std::uint32_t *const at = recording.AddSpace(4);
  at[0] = kSwitchPen;
  at[1] = Word(a);
  at[2] = Word(b);
  at[3] = Word(c);
}

void CDynamic::FastMoveTo(SYS_Point const &point) {
  std::uint32_t *const at = recording.AddSpace(3);
  at[0] = kFastMoveTo;
  at[1] = Word(point.x);
  at[2] = Word(point.y);
  currentPoint = point;
}

void CDynamic::FastLineTo(SYS_Point const &point) {
  std::uint32_t *const at = recording.AddSpace(3);
  at[0] = kFastLineTo;
  at[1] = Word(point.x);
  at[2] = Word(point.y);
  Extend(Normalized(SYS_Box(currentPoint, point)));
  currentPoint = point;
}

void CDynamic::FastPaintOval(SYS_Box box) {
  RecordBox(recording, kFastPaintOval, box);
  Extend(box);
}

void CDynamic::FastPolyLine(int n, SYS_Point *points, std::int32_t a, int b) {
  if (points == nullptr || n < 0) n = 0;
  std::uint32_t *at = recording.AddSpace(4 + 2 * static_cast<std::intptr_t>(n));
  *at++ = kFastPolyLine;
  *at++ = Word(a);
  *at++ = Word(b);
  *at++ = Word(n);
  for (int i = 0; i < n; ++i) {
    *at++ = Word(points[i].x);
    *at++ = Word(points[i].y);
  }
  if (n > 0) Extend(BoxOf(points, n));
}

void CDynamic::FastFrameOval(SYS_Box const &box) {
  RecordBox(recording, kFastFrameOval, box);
  Extend(box);
}

void CDynamic::TextAlign(int a, int b) {
  std::uint32_t *const at = recording.AddSpace(3);
  at[0] = kTextAlign;
  at[1] = Word(a);
  at[2] = Word(b);
}

void CDynamic::TextExtra(int value) {
  std::uint32_t *const at = recording.AddSpace(2);
  at[0] = kTextExtra;
  at[1] = Word(value);
}

void CDynamic::TextFace(int value) {
  std::uint32_t *const at = recording.AddSpace(2);
  at[0] = kTextFace;
  at[1] = Word(value);
}

void CDynamic::TextPath(double a) {
  double degrees = a * 5.555555555555556e-6 * 0.1;
  if (!std::isfinite(degrees)) degrees = 0.0;
  // Far out, a turn of 360 no longer changes the value: take the remainder
  // first, which is exact, so the steps below end.
  if (std::fabs(degrees) >= 368640.0) degrees = std::fmod(degrees, 360.0);
  while (degrees < 0.0) degrees += 360.0;
  while (degrees >= 360.0) degrees -= 360.0;
  std::uint32_t *const at = recording.AddSpace(2);
  at[0] = kTextPath;
  at[1] = static_cast<std::uint32_t>(degrees * 10000.0);
}

void CDynamic::TextSize(int a, int b) {
  std::uint32_t *const at = recording.AddSpace(3);
  at[0] = kTextSize;
  at[1] = Word(a);
  at[2] = Word(b);
}

void CDynamic::DrawString(char const *text) {
  if (text == nullptr) text = "";
  auto const n = static_cast<std::intptr_t>(std::strlen(text));
  std::uint32_t *const at = recording.AddSpace(2 + n);
  at[0] = kDrawString;
  at[1] = static_cast<std::uint32_t>(n);
  PutText(at + 2, text, n);
}

void CDynamic::SetGRAMode(gra_mode_union mode) {
  std::uint32_t *const at = recording.AddSpace(2);
  at[0] = kSetGRAMode;
  at[1] = mode.word;
}

void CDynamic::DrawOnScreen(bool on) {
  std::uint32_t *const at = recording.AddSpace(2);
  at[0] = kDrawOnScreen;
  at[1] = on ? 1 : 0;
}

void CDynamic::DrawIcon(HICON icon, SYS_Point where, int value) {
  auto const bits = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(icon));
  std::uint32_t *const at = recording.AddSpace(6);
  at[0] = kDrawIcon;
  at[1] = static_cast<std::uint32_t>(bits);
  at[2] = static_cast<std::uint32_t>(bits >> 32);
  at[3] = Word(where.x);
  at[4] = Word(where.y);
  at[5] = Word(value);
}
