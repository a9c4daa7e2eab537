// The drawing surface interface: UI_ScreenCoordConverter and UI_DrawArea.
//
// The library does not draw. Everything that draws, in the library and above
// it, talks to a UI_DrawArea in world coordinates (SYS_Point, SYS_Box, world
// lengths); the application derives its real surface from it and overrides
// what it supports. Every operation has a neutral default that does nothing
// and answers 0, 1.0, the zero box or a zero screen value as its comment
// says, so a partial surface, or the recording surface CDynamic, overrides
// only what it needs. The integer arguments of the pen, text and picture
// operations, gra_mode_union and RedrawBlock mean what the application's
// surface says; the library passes them through unchanged.
//
// One process-wide pointer names the main draw area, which the palette
// convertor reads colours from. The library owns no surface.
#ifndef TOVIK_UI_DRAW_AREA_H
#define TOVIK_UI_DRAW_AREA_H

#include <cstdint>

#include "scc_event.h"
#include "screen_types.h"
#include "sys_point.h"
#include "sys_shapes.h"
#include "tovik_export.h"

class CDynamic;

// The surface's graphic mode: 32 bits whose meaning is the surface's. The
// library stores and forwards it as one word.
union gra_mode_union {
  std::uint32_t word;
  std::uint8_t bytes[4];
};

// Relates screen coordinates (pixels) to world coordinates (world units).
class TOVIK_API UI_ScreenCoordConverter {
 public:
  UI_ScreenCoordConverter() = default;
  UI_ScreenCoordConverter(UI_ScreenCoordConverter const &) = default;
  UI_ScreenCoordConverter &operator=(UI_ScreenCoordConverter const &) = default;

  // A world length as a signed pixel length on that axis; 1 here.
  virtual int Scale2ScreenX(std::int32_t) const { return 1; }
  virtual int Scale2ScreenY(std::int32_t) const { return 1; }
  // Pixels as a world length on that axis; 1 here.
  virtual std::int32_t Scale2WorldX(int) const { return 1; }
  virtual std::int32_t Scale2WorldY(int) const { return 1; }
  // A screen vector as a world vector, and back; zero here.
  virtual SYS_Point Scale2World(CPoint) { return SYS_Point(); }
  virtual CPoint Scale2Screen(SYS_Point) { return CPoint(); }
  virtual SYS_Box Screen2World(CRect const &) { return SYS_Box(); }
  virtual SYS_Point Screen2World(CPoint const &) { return SYS_Point(); }
  virtual CPoint World2Screen(SYS_Point const &) { return CPoint(); }
  virtual CRect World2Screen(SYS_Box const &) { return CRect(); }
  virtual ~UI_ScreenCoordConverter();
};

class TOVIK_API UI_DrawArea : public UI_ScreenCoordConverter {
 public:
  // The payload of the surface's redraw event. The library passes it by
  // pointer and never reads it: the application defines it
  // (struct UI_DrawArea::RedrawBlock { ... };) if it needs one.
  struct RedrawBlock;

  UI_DrawArea() = default;
  UI_DrawArea(UI_DrawArea const &other) = default;
  // Does nothing: a surface keeps its own state.
  UI_DrawArea &operator=(UI_DrawArea const &) { return *this; }

  // View
  virtual void GetVP(SYS_Box &) {}
  virtual void SetVP(SYS_Box &) {}
  virtual void GetUserVP(SYS_Box &) {}
  virtual void SetUserVP(SYS_Box &) {}
  virtual void FitRectToWindow(SYS_Box &) {}
  virtual void InvalidateRect(SYS_Box const *) {}

  // Pen. Mode 2 is exclusive-or: recorded shapes select it before drawing.
  virtual void SwitchPen(int, std::int32_t, int) {}
  virtual void PenCap(int) {}
  virtual void PenColor(int) {}
  virtual void PenMode(int) {}
  virtual int GetPenMode() { return 0; }
  virtual void PenSize(std::int32_t) {}
  virtual void BackColor(int) {}
  virtual int GetBackColor() { return 0; }
  virtual int RegisterBrush(unsigned int) { return 0; }

  // Area fill
  virtual void EraseRect(SYS_Box) {}
  virtual void FillRect(SYS_Box, int) {}

  // Cursor
  virtual void MoveCursor(std::int32_t, std::int32_t) {}
  virtual void SafeMoveCursor(std::int32_t, std::int32_t) {}

  // Scale
  virtual double GetScale(SYS_Point *) { return 1.0; }
  virtual int SetScale(double, SYS_Point *, int) { return 0; }
  virtual double GetWorldScale() { return 1.0; }
  virtual void RefreshCursor(SYS_Point *) {}

  // Redraw
  virtual void SetRgnRedraw(SYS_Box *, int) {}
  virtual void Redraw(SYS_Box) {}
  virtual void Redraw() {}
  virtual void RedrawRect(SYS_Box) {}
  virtual void SetBitmapRedraw(int) {}
  virtual void StartResize() {}
  virtual void EndResize() {}

  // Recorded drawing. InstallDynamic attaches a recording to the surface;
  // RedrawDynamic is the recording asking for the region in the box to be
  // refreshed, with 1 at the end of a batch and 0 when it is cleared.
  virtual void InstallDynamic(CDynamic *) {}
  virtual void RedrawDynamic(CDynamic *, SYS_Box *, int) {}

  // Exclusive-or shapes. DrawXorText with last argument 0 only measures the
  // box the text would cover; with 1 it draws it too. The zero box here.
  virtual void DrawXorBox(SYS_Box) {}
  virtual void DrawXorBox(SYS_Point, SYS_Point) {}
  virtual SYS_Box DrawXorText(char const *, int, int, std::int32_t, std::int32_t, int) {
    return SYS_Box();
  }
  virtual SYS_Box DrawXorText(char const *, int, int, SYS_Point, int) { return SYS_Box(); }
  virtual void DrawOriginMark(std::int32_t, std::int32_t) {}
  virtual void DrawOriginMark(SYS_Point) {}

  // Draw phases
  virtual void RegisterRedrawHook(SCC_EventHook<RedrawBlock> *) {}
  virtual void StartBatchDraw() {}
  virtual void EndBatchDraw() {}
  virtual void StartScreenDraw() {}
  virtual void EndScreenDraw() {}
  virtual void DrawOnScreen(bool) {}
  virtual void DiscardSplit() {}

  // Fast primitives
  virtual void FastMoveTo(SYS_Point const &) {}
  virtual void FastLineTo(SYS_Point const &) {}
  virtual void FastPaintOval(SYS_Box) {}
  virtual void FastPaintOval(SYS_Point const &, std::int32_t, int) {}
  virtual void FrameArc(SYS_Box, double, double) {}
  virtual void FastFrameOval(SYS_Box const &) {}
  // m polylines: counts[i] points each, one after the other in points.
  virtual void FastPolyPolyline(SYS_Point *, std::uint32_t const *, int) {}
  virtual void FastPolyPolygon(SYS_Point *, int const *, int, std::int32_t) {}
  virtual void FastFrameArc(SYS_Box const &, SYS_Point const &, SYS_Point const &) {}
  virtual void FastPolyLine(int, SYS_Point *, std::int32_t, int) {}

  // Pictures
  virtual void DrawPicture(int, SYS_Box &, SYS_Box &, std::uint32_t) {}
  virtual void DrawIcon(HICON, SYS_Point, int) {}
  virtual void DrawMarker(int, SYS_Point) {}

  // Text. TextPath takes the direction in degrees.
  virtual void TextAlign(int, int) {}
  virtual void TextExtra(int) {}
  virtual void TextFace(int) {}
  virtual void TextPath(double) {}
  virtual void TextSize(int, int) {}
  virtual int StrokeTextLen(char const *, int, int) { return 0; }
  virtual int StrokeTextLen(char const *) { return 0; }
  virtual int StrokeTextFontHeight() { return 0; }
  virtual int StrokeTextAscendingHeight() { return 0; }
  virtual int StrokeTextDescendingHeight() { return 0; }
  virtual void DrawString(char const *) {}

  // Line: from, to, pen size, colour.
  virtual void DrawLine(SYS_Point const &, SYS_Point const &, std::int32_t, int) {}

  // Exclusive-or phase
  virtual void StartXORDraw() {}
  virtual void XORPenColor(std::int32_t const &) {}
  virtual void XORFrameArc(SYS_Box const &, SYS_Point const &, SYS_Point const &) {}
  virtual void XORFrameOval(SYS_Point const &, std::int32_t const &) {}
  virtual void XORPaintOval(SYS_Point const &, std::int32_t const &) {}
  virtual void XORMoveTo(SYS_Point const &) {}
  virtual void XORLineTo(SYS_Point const &) {}
  virtual void XORCross(SYS_Point const &) {}
  virtual void EndXORDraw() {}

  // Raster
  virtual int SetArcDirection(int) { return 0; }
  virtual void SetPixel(SYS_Point const &) {}
  virtual void DrawDotGrid(SYS_Point &, std::int32_t, std::int32_t, SYS_Box &) {}
  virtual std::int32_t GetPixelSize() { return 0; }

  // Mode: all bits 0 here.
  virtual gra_mode_union GetGRAMode() { return gra_mode_union{}; }
  virtual void SetGRAMode(gra_mode_union) {}

  // Palette: 0 here.
  virtual std::int32_t GetDefaultPaletteColors(std::uint32_t *) const { return 0; }
  virtual std::int32_t GetCurrentPaletteColors(std::uint32_t *) const { return 0; }
  virtual std::uint32_t GetCurrentPaletteColorRGB(int) const { return 0; }
  virtual void SetCurrentPaletteColors(std::uint32_t *) {}

  ~UI_DrawArea() override;

  // The process's main draw area, null until the first set; null may be set.
  static UI_DrawArea *GetMainDrawArea() { return s_pMainDrawArea; }
  static void SetMainDrawArea(UI_DrawArea *area) { s_pMainDrawArea = area; }

 private:
  static UI_DrawArea *s_pMainDrawArea;
};

#endif  // TOVIK_UI_DRAW_AREA_H
