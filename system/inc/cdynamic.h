// CDynamic: the recording surface. It looks like a UI_DrawArea to whoever
// paints, but encodes every draw call as 32-bit words into one growing array
// and tracks the box that the recording covers; the real surface has it
// replayed whenever it repaints. Shapes replay in exclusive-or mode, so an
// overlay drawn twice is gone again without a full repaint.
//
// The recording is a flat run of records, each an operation code followed by
// its operand words, with nothing between records. Points are two words
// (x, y), boxes four (left, lower, right, upper), signed values their 32-bit
// two's complement, and texts one word per character, widened from a signed
// byte (0xE9 becomes 0xFFFFFFE9):
//
//   code  recorded by        operands
//    0    PenColor           colour
//    1    PenSize            size
//    2    DrawXorBox         point, point, as given
//    3    DrawXorOval        box, normalised
//    4    FillRect           box, normalised; int
//    5    DrawXorText        x, y; a, b; n; n characters, the NUL counted in n
//    6    DrawLine           point, point; pen size; colour
//    7    DrawArc            box, normalised; point, point; pen size; colour
//    8    PenCap             cap
//    9    FastPolyPolyline   m; m counts; all the points
//   10    SwitchPen          a, b, c
//   11    FastMoveTo         point
//   12    FastLineTo         point
//   13    FastPaintOval      box, as given
//   14    FastPolyLine       long; int; n; n points
//   15    FastFrameOval      box, as given
//   16    TextAlign          a, b
//   17    TextExtra          value
//   18    TextFace           value
//   19    TextPath           degrees x 10000, in 0 to 3599999
//   20    TextSize           a, b
//   21    DrawString         n; n characters, no NUL
//   22    SetGRAMode         the mode's word
//   23    DrawOnScreen       0 or 1
//   24    DrawIcon           icon low word, icon high word; point; int
//
// The icon of code 24 is a pointer here, so it takes two words, low half
// first. The object owns its recording and not its draw area, which may be
// null: then recording goes on, texts add nothing to the extent and Redraw
// does nothing. Replay never reads outside the recording: a record whose
// operands run past its end ends the replay, a word that is no operation code
// is skipped, and a replayed DrawXorText text is cut to 1023 characters.
#ifndef TOVIK_CDYNAMIC_H
#define TOVIK_CDYNAMIC_H

#include <cstdint>

#include "cdwordarray.h"
#include "scc_event.h"
#include "ui_draw_area.h"
#include "tovik_export.h"

class TOVIK_API CDynamic : public SCC_EventNode<UI_DrawArea::RedrawBlock>, public UI_DrawArea {
 public:
  // The operation codes of the records.
  enum Code {
    kPenColor = 0, kPenSize, kDrawXorBox, kDrawXorOval, kFillRect, kDrawXorText, kDrawLine,
    kDrawArc, kPenCap, kFastPolyPolyline, kSwitchPen, kFastMoveTo, kFastLineTo, kFastPaintOval,
    kFastPolyLine, kFastFrameOval, kTextAlign, kTextExtra, kTextFace, kTextPath, kTextSize,
    kDrawString, kSetGRAMode, kDrawOnScreen, kDrawIcon, kLastCode = kDrawIcon
  };
  // The longest text, terminator included, that DrawXorText replays whole.
  static constexpr int kTextBuffer = 1024;

  // Installs the recording on area, if one is given.
  explicit CDynamic(UI_DrawArea *area = nullptr);
  // A recording belongs to one surface: it is not copied.
  CDynamic(CDynamic const &) = delete;
  CDynamic &operator=(CDynamic const &) = delete;
  ~CDynamic() override;

  // Stores area and calls its InstallDynamic(this); a null area is ignored.
  void Install(UI_DrawArea *area);
  // Stores the pointer, null included, without telling the area.
  void SetDrawArea(UI_DrawArea *area) { drawArea = area; }
  UI_DrawArea *GetDrawArea() const { return drawArea; }
  // True while Redraw runs.
  bool IsFlushing() const { return flushing; }
  // The recorded words and the box they cover, for reading.
  CDWordArray const &GetRecording() const { return recording; }
  SYS_Box const &GetExtent() const { return extent; }

  // With a draw area: has it refresh the extent (RedrawDynamic(this, &extent,
  // 0)), then empties the recording and zeroes the extent. Without one the
  // recording stays.
  void Clear();
  // Empties the recording and zeroes the extent without telling the area.
  // Clear and Reset keep the recording's memory for what is drawn next.
  void Reset();
  // Clear(), then one more batch open, also without a draw area.
  void StartBatchDraw() override;
  // With a batch open and a draw area: closes the batch and has the area
  // show the recording (RedrawDynamic(this, &extent, 1)). Otherwise nothing.
  void EndBatchDraw() override;
  // Replays the whole recording on the draw area, keeping its pen mode. The
  // recording is not changed; the area may record into it, clear it or
  // detach it meanwhile, and the replay stops where the recording does.
  void Redraw() override;
  using UI_DrawArea::Redraw;
  // The area's redraw event: 0 and 1 replay, 2 forgets the area (it is going
  // away), 3 clears. Always 0.
  int OnNotification(int code, UI_DrawArea::RedrawBlock *block) override;
  // Forwarded to the draw area, if any; nothing is recorded.
  void StartScreenDraw() override;

  // Recorded operations.
  void PenColor(int colour) override;
  void PenSize(std::int32_t size) override;
  // Normalises the box and records it through the point form.
  void DrawXorBox(SYS_Box box) override;
  void DrawXorBox(SYS_Point first, SYS_Point second) override;
  void DrawXorOval(SYS_Box box);
  void FillRect(SYS_Box box, int value) override;
  // Records the text and extends the extent by the box the area measures for
  // it (DrawXorText(..., 0)); returns that box, or the zero box without an
  // area. The last argument is not recorded; a null text is the empty text.
  SYS_Box DrawXorText(char const *text, int a, int b, std::int32_t x, std::int32_t y,
                      int draw) override;
  // The long form with the point's coordinates and 1.
  SYS_Box DrawXorText(char const *text, int a, int b, SYS_Point where, int draw) override;
  void DrawLine(SYS_Point const &from, SYS_Point const &to, std::int32_t size, int colour) override;
  void DrawArc(SYS_Box box, SYS_Point const &first, SYS_Point const &second, std::int32_t size,
               int colour);
  void PenCap(int cap) override;
  // A null array, or a negative m, records no polylines.
  void FastPolyPolyline(SYS_Point *points, std::uint32_t const *counts, int m) override;
  void SwitchPen(int a, std::int32_t b, int c) override;
  void FastMoveTo(SYS_Point const &point) override;
  void FastLineTo(SYS_Point const &point) override;
  void FastPaintOval(SYS_Box box) override;
  using UI_DrawArea::FastPaintOval;
  // Extends the extent by the points' box; a null array or negative n
  // records no points.
  void FastPolyLine(int n, SYS_Point *points, std::int32_t a, int b) override;
  void FastFrameOval(SYS_Box const &box) override;
  void TextAlign(int a, int b) override;
  void TextExtra(int value) override;
  void TextFace(int value) override;
  // Records the direction in whole ten-thousandths of a degree in 0 to 360:
  // the angle units a become a * 5.555555555555556e-6 * 0.1 degrees, brought
  // into range by turns of 360. A non-finite angle records 0.
  void TextPath(double a) override;
  void TextSize(int a, int b) override;
  // A null text is the empty text.
  void DrawString(char const *text) override;
  void SetGRAMode(gra_mode_union mode) override;
  void DrawOnScreen(bool on) override;
  void DrawIcon(HICON icon, SYS_Point where, int value) override;

 protected:
  // Extends the extent by the box: replaces it while it is a single point,
  // else combines the two (SYS_Box::Combine).
  void Extend(SYS_Box const &box) {
    if (extent.GetLeft() == extent.GetRight() && extent.GetLower() == extent.GetUpper()) {
      extent = box;
    } else {
      extent.Combine(box);
    }
  }

  CDWordArray recording;
  UI_DrawArea *drawArea;  // not owned; may be null
  int batchDepth;
  SYS_Box extent;
  SYS_Point currentPoint;
  bool flushing;
};

#endif  // TOVIK_CDYNAMIC_H
