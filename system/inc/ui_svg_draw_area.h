// UI_SvgDrawArea: a draw area that writes what it is asked to draw as an SVG
// document, so that any drawing, a CDynamic recording included, can be looked
// at in a browser, printed or compared as text.
//
// The surface shows one world box (the view) at a width in pixels; the
// document's coordinates are world units with the y axis flipped (SVG's y
// points down), so the numbers are exact and the picture scales freely. It
// draws lines, boxes, ovals, arcs, polylines, polygons and text; it owns the
// shapes it was given and nothing else. It keeps no pixels: reading back,
// pictures, icons, cursors, grids and the text face and extra spacing are
// left to the defaults.
//
// The meaning of the arguments the interface leaves to a surface:
//   colour     an index into the surface's palette of kPaletteSize colours
//              (0xRRGGBB each), taken modulo its size; 0 is the background.
//   pen size   a world length; 0 draws one pixel wide.
//   pen cap    0 round, 1 square, 2 flat.  SwitchPen(colour, size, cap).
//   pen mode   2 is exclusive-or, every other mode draws plainly.
//   FillRect, FastPaintOval(point, radius, c), FastPolyPolygon: c is the
//              colour of the fill.  FastPolyLine(n, points, size, colour).
//   text       TextSize(width, height): the height in world units, the width
//              ignored; TextAlign(horizontal, vertical): 0 left, 1 centre,
//              2 right; 0 baseline, 1 middle, 2 top; TextPath: degrees,
//              counter-clockwise. DrawXorText(text, height, colour, ...): a
//              height of 0 is the current one. Texts are in a monospace face
//              and measure 0.6 of their height per character. Bytes above
//              0x7F are written as the Latin-1 characters of the same number.
//   arcs       counter-clockwise from the first direction to the second, or
//              clockwise after SetArcDirection(1); equal directions draw the
//              whole oval.
//
// Exclusive-or: a shape drawn in exclusive-or mode (pen mode 2, the DrawXor
// and XOR operations, origin marks) is marked so that it shows as the
// difference of its colour and what lies below, and a shape identical to one
// already shown that way takes that one away instead of being added. So a
// CDynamic recording replayed twice is gone from the document, as it is gone
// from a screen.
//
// Recordings: InstallDynamic joins a CDynamic to the surface's redraw event
// and RedrawDynamic replays it at once (at the end of a batch to show it, on
// a clear to take it away). When the surface is destroyed, every recording
// still joined hears code 2 and forgets it.
#ifndef TOVIK_UI_SVG_DRAW_AREA_H
#define TOVIK_UI_SVG_DRAW_AREA_H

#include <cstdint>

#include "cdynamic.h"
#include "scc_event.h"
#include "sys_string.h"
#include "tovik_export.h"
#include "ui_draw_area.h"

class TOVIK_API UI_SvgDrawArea : public UI_DrawArea {
 public:
  static constexpr int kPaletteSize = 16;
  // The pen mode that draws in exclusive-or.
  static constexpr int kXorMode = 2;

  // Shows view (normalised here; an empty one counts as 1 unit each way) at
  // pixelWidth pixels wide (at least 1); the height follows its proportions.
  UI_SvgDrawArea(SYS_Box const &view, int pixelWidth);
  UI_SvgDrawArea(UI_SvgDrawArea const &) = delete;
  UI_SvgDrawArea &operator=(UI_SvgDrawArea const &) = delete;
  // Every recording still installed hears code 2 and forgets the surface.
  ~UI_SvgDrawArea() override;

  // The whole document: header, background in the back colour, then every
  // shape in the order drawn.
  SYS_String GetSvg() const;
  // Forgets every shape; pen, text and palette settings stay.
  void EraseAll();

  // Screen and world
  using UI_DrawArea::Screen2World;
  using UI_DrawArea::World2Screen;
  int Scale2ScreenX(std::int32_t length) const override;
  // Negative for a positive world length: the screen's y points down.
  int Scale2ScreenY(std::int32_t length) const override;
  std::int32_t Scale2WorldX(int pixels) const override;
  std::int32_t Scale2WorldY(int pixels) const override;
  SYS_Point Scale2World(CPoint vector) override;
  CPoint Scale2Screen(SYS_Point vector) override;
  SYS_Box Screen2World(CRect const &rect) override;
  SYS_Point Screen2World(CPoint const &point) override;
  CPoint World2Screen(SYS_Point const &point) override;
  CRect World2Screen(SYS_Box const &box) override;
  void GetVP(SYS_Box &view) override { view = viewBox; }
  // Shows another world box at the same pixel width.
  void SetVP(SYS_Box &view) override;
  // Pixels per world unit.
  double GetScale(SYS_Point *) override { return scale; }
  // The world length of one pixel, at least 1.
  std::int32_t GetPixelSize() override;

  // Pen
  void SwitchPen(int colour, std::int32_t size, int cap) override;
  void PenCap(int cap) override { pen.cap = cap; }
  void PenColor(int colour) override { pen.colour = colour; }
  void PenMode(int mode) override { penMode = mode; }
  int GetPenMode() override { return penMode; }
  void PenSize(std::int32_t size) override { pen.size = size; }
  void BackColor(int colour) override { backColour = colour; }
  int GetBackColor() override { return backColour; }

  // Area fill
  void EraseRect(SYS_Box box) override;
  void FillRect(SYS_Box box, int colour) override;

  // Recorded drawing
  void InstallDynamic(CDynamic *recording) override;
  void RedrawDynamic(CDynamic *recording, SYS_Box *, int) override;
  void RegisterRedrawHook(SCC_EventHook<RedrawBlock> *hook) override;

  // Exclusive-or shapes
  void DrawXorBox(SYS_Box box) override;
  void DrawXorBox(SYS_Point first, SYS_Point second) override;
  // Draws (when draw is not 0) and measures the text: the box around its
  // characters, turned with the text path.
  SYS_Box DrawXorText(char const *text, int height, int colour, std::int32_t x, std::int32_t y,
                      int draw) override;
  SYS_Box DrawXorText(char const *text, int height, int colour, SYS_Point where, int draw) override;
  // A cross ten pixels wide.
  void DrawOriginMark(std::int32_t x, std::int32_t y) override;
  void DrawOriginMark(SYS_Point point) override;

  // Fast primitives, in the current pen
  void FastMoveTo(SYS_Point const &point) override { current = point; }
  void FastLineTo(SYS_Point const &point) override;
  void FastPaintOval(SYS_Box box) override;
  void FastPaintOval(SYS_Point const &center, std::int32_t radius, int colour) override;
  // Counter-clockwise from start to end, in degrees.
  void FrameArc(SYS_Box box, double start, double end) override;
  void FastFrameOval(SYS_Box const &box) override;
  void FastPolyPolyline(SYS_Point *points, std::uint32_t const *counts, int m) override;
  // Filled by the even-odd rule; the last argument is the colour.
  void FastPolyPolygon(SYS_Point *points, int const *counts, int m, std::int32_t colour) override;
  void FastFrameArc(SYS_Box const &box, SYS_Point const &first, SYS_Point const &second) override;
  void FastPolyLine(int n, SYS_Point *points, std::int32_t size, int colour) override;

  // Text
  void TextAlign(int horizontal, int vertical) override;
  void TextPath(double degrees) override { textAngle = degrees; }
  void TextSize(int width, int height) override;
  // At the current point, in the pen's colour.
  void DrawString(char const *text) override;

  // Line
  void DrawLine(SYS_Point const &from, SYS_Point const &to, std::int32_t size, int colour) override;

  // Exclusive-or phase: always exclusive-or, in the XOR pen colour, one pixel wide.
  void XORPenColor(std::int32_t const &colour) override { xorColour = colour; }
  void XORFrameArc(SYS_Box const &box, SYS_Point const &first, SYS_Point const &second) override;
  void XORFrameOval(SYS_Point const &center, std::int32_t const &radius) override;
  void XORPaintOval(SYS_Point const &center, std::int32_t const &radius) override;
  void XORMoveTo(SYS_Point const &point) override { current = point; }
  void XORLineTo(SYS_Point const &point) override;
  // A cross ten pixels wide.
  void XORCross(SYS_Point const &point) override;

  // Raster. Direction 0 is counter-clockwise, any other clockwise; answers
  // the previous one.
  int SetArcDirection(int direction) override;
  void SetPixel(SYS_Point const &point) override;

  // Mode: kept and given back, with no effect on the drawing.
  gra_mode_union GetGRAMode() override { return graMode; }
  void SetGRAMode(gra_mode_union mode) override { graMode = mode; }

  // Palette: kPaletteSize colours 0xRRGGBB. The two getters fill colours
  // (when not null) and answer the count; a null array sets the defaults.
  std::int32_t GetDefaultPaletteColors(std::uint32_t *colours) const override;
  std::int32_t GetCurrentPaletteColors(std::uint32_t *colours) const override;
  std::uint32_t GetCurrentPaletteColorRGB(int colour) const override;
  void SetCurrentPaletteColors(std::uint32_t *colours) override;

 private:
  struct Document;  // the shapes
  struct Pen {
    int colour;
    std::int32_t size;
    int cap;
  };

  bool Exclusive() const { return penMode == kXorMode; }
  Pen Hairline(int colour) const { return Pen{colour, 0, pen.cap}; }
  void Line(SYS_Point const &from, SYS_Point const &to, Pen const &with, bool exclusive);
  // A filled oval when fill is set, else its outline in the pen.
  void Oval(SYS_Box box, bool fill, Pen const &with, bool exclusive);
  // From angle from to angle to (radians) in the arc direction.
  void Arc(SYS_Box box, double from, double to, Pen const &with, bool exclusive);
  void Cross(SYS_Point const &point, int colour);
  // The text's box, and its element when draw is set.
  SYS_Box Text(char const *text, std::int32_t height, int colour, SYS_Point where, bool draw,
               bool exclusive);

  SYS_Box viewBox;
  int width;
  double scale;  // pixels per world unit
  Pen pen;
  int penMode;
  int backColour;
  std::int32_t xorColour;
  int arcClockwise;
  SYS_Point current;
  std::int32_t textHeight;
  int alignHorizontal;
  int alignVertical;
  double textAngle;
  gra_mode_union graMode;
  std::uint32_t palette[kPaletteSize];
  Document *document;  // owned
  SCC_Event<RedrawBlock> redrawEvent;
};

#endif  // TOVIK_UI_SVG_DRAW_AREA_H
