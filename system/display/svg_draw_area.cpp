// UI_SvgDrawArea: shapes as SVG elements in world units, y flipped.
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "numtext.h"
#include "ui_svg_draw_area.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
// Character advance and the parts of the height above and below the
// baseline, as fractions of the text height.
constexpr double kAdvance = 0.6, kAscent = 0.8, kDescent = 0.2;
// Origin marks and crosses are this many pixels wide.
constexpr int kCrossPixels = 10;
// Texts start this many pixels high.
constexpr int kTextPixels = 12;

constexpr std::uint32_t kDefaultPalette[UI_SvgDrawArea::kPaletteSize] = {
    0x000000, 0xC83434, 0x3434C8, 0x34C834, 0xC8C834, 0xC834C8, 0x34C8C8, 0xC8C8C8,
    0x646464, 0xFF6464, 0x6464FF, 0x64FF64, 0xFFFF64, 0xFF64FF, 0x64FFFF, 0xFFFFFF};

// A value in the range of T: saturated, NaN as 0.
template <class T>
T Saturate(double v) {
  if (!(v == v)) return 0;
  if (v <= static_cast<double>(std::numeric_limits<T>::min())) return std::numeric_limits<T>::min();
  if (v >= static_cast<double>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
  return static_cast<T>(std::llround(v));
}

// A world coordinate as the document writes it; y is negated by the caller.
std::string Num(double v) { return std::to_string(Saturate<std::int64_t>(v)); }

// A number with at most `places` decimals, in the "C" locale.
std::string Decimal(double d, int places) {
  char text[48];
  tovik::num::FormatFixed(text, sizeof text, d == d ? d : 0.0, places);
  std::string s(text);
  if (s.find('.') != std::string::npos) {
    while (s.back() == '0') s.pop_back();
    if (s.back() == '.') s.pop_back();
  }
  return s == "-0" ? "0" : s;
}

std::string Hex(std::uint32_t rgb) {
  static char const digits[] = "0123456789ABCDEF";
  std::string s = "#";
  for (int shift = 20; shift >= 0; shift -= 4) s += digits[(rgb >> shift) & 0xF];
  return s;
}

// Text content: markup characters as entities, bytes above 0x7F as the
// Latin-1 characters of their number, control bytes (not allowed in XML) as '?'.
std::string Escaped(char const *text) {
  std::string s;
  for (; *text != '\0'; ++text) {
    auto const c = static_cast<unsigned char>(*text);
    switch (c) {
      case '&':
        s += "&amp;";
        break;
      case '<':
        s += "&lt;";
        break;
      case '>':
        s += "&gt;";
        break;
      case '"':
        s += "&quot;";
        break;
      default:
        if (c >= 0x80) {
          s += "&#" + std::to_string(c) + ';';
        } else {
          s += c < 0x20 ? '?' : static_cast<char>(c);
        }
    }
  }
  return s;
}

SYS_Box Normalized(SYS_Box box) {
  box.Normalize();
  return box;
}

// x="left" y="-upper" width=".." height="..", in a leading blank.
std::string RectAttributes(SYS_Box const &b) {
  return " x=\"" + Num(b.GetLeft()) + "\" y=\"" + Num(-static_cast<double>(b.GetUpper())) +
         "\" width=\"" + Num(static_cast<double>(b.GetRight()) - b.GetLeft()) + "\" height=\"" +
         Num(static_cast<double>(b.GetUpper()) - b.GetLower()) + '"';
}

std::string Point(double x, double y) { return Num(x) + ',' + Num(-y); }

}  // namespace

struct UI_SvgDrawArea::Document {
  // Elements in drawing order; one taken away by exclusive-or is left empty.
  std::vector<std::string> shapes;
  // Where the exclusive-or elements shown stand in shapes, by their text.
  std::unordered_map<std::string, std::vector<std::size_t>> shown;

  void Add(std::string element, bool exclusive) {
    if (!exclusive) {
      shapes.push_back(std::move(element));
      return;
    }
    element.insert(element.find(' '), " class=\"x\"");
    auto const twin = shown.find(element);
    if (twin == shown.end()) {
      shown[element].push_back(shapes.size());
      shapes.push_back(std::move(element));
      return;
    }
    shapes[twin->second.back()].clear();
    twin->second.pop_back();
    if (twin->second.empty()) shown.erase(twin);
    // An overlay drawn and taken away again leaves nothing behind.
    while (!shapes.empty() && shapes.back().empty()) shapes.pop_back();
  }
};

UI_SvgDrawArea::UI_SvgDrawArea(SYS_Box const &view, int pixelWidth)
    : width(pixelWidth < 1 ? 1 : pixelWidth),
      scale(1.0),
      pen{15, 0, 0},
      penMode(0),
      backColour(0),
      xorColour(15),
      arcClockwise(0),
      textHeight(0),
      alignHorizontal(0),
      alignVertical(0),
      textAngle(0.0),
      graMode{},
      document(new Document) {
  std::memcpy(palette, kDefaultPalette, sizeof palette);
  SYS_Box v = view;
  SetVP(v);
  textHeight = kTextPixels * GetPixelSize();
}

UI_SvgDrawArea::~UI_SvgDrawArea() {
  redrawEvent.Notify(2, nullptr);
  delete document;
}

void UI_SvgDrawArea::EraseAll() {
  document->shapes.clear();
  document->shown.clear();
}

SYS_String UI_SvgDrawArea::GetSvg() const {
  SYS_Box const &v = viewBox;
  double const w = static_cast<double>(v.GetRight()) - v.GetLeft();
  double const h = static_cast<double>(v.GetUpper()) - v.GetLower();
  std::string svg = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  svg += "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + std::to_string(width) +
         "\" height=\"" + Num(h * scale < 1 ? 1 : h * scale) + "\" viewBox=\"" + Num(v.GetLeft()) +
         ' ' + Num(-static_cast<double>(v.GetUpper())) + ' ' + Num(w) + ' ' + Num(h) + "\">\n";
  svg += "<style>.x{mix-blend-mode:difference}</style>\n";
  svg += "<rect" + RectAttributes(v) + " fill=\"" + Hex(GetCurrentPaletteColorRGB(backColour)) +
         "\"/>\n";
  svg +=
      "<g fill=\"none\" stroke-linecap=\"round\" stroke-linejoin=\"round\" "
      "font-family=\"monospace\">\n";
  for (std::string const &shape : document->shapes) {
    if (!shape.empty()) svg += shape + '\n';
  }
  svg += "</g>\n</svg>\n";
  return SYS_String(svg.c_str(), static_cast<int>(svg.size()));
}

// --- Screen and world --------------------------------------------------------

int UI_SvgDrawArea::Scale2ScreenX(std::int32_t length) const {
  return Saturate<int>(length * scale);
}
int UI_SvgDrawArea::Scale2ScreenY(std::int32_t length) const {
  return Saturate<int>(-length * scale);
}
std::int32_t UI_SvgDrawArea::Scale2WorldX(int pixels) const {
  return Saturate<std::int32_t>(pixels / scale);
}
std::int32_t UI_SvgDrawArea::Scale2WorldY(int pixels) const {
  return Saturate<std::int32_t>(pixels / scale);
}

SYS_Point UI_SvgDrawArea::Scale2World(CPoint vector) {
  return SYS_Point(Saturate<std::int32_t>(vector.x / scale),
                   Saturate<std::int32_t>(-vector.y / scale));
}

CPoint UI_SvgDrawArea::Scale2Screen(SYS_Point vector) {
  return CPoint(Scale2ScreenX(vector.x), Scale2ScreenY(vector.y));
}

SYS_Point UI_SvgDrawArea::Screen2World(CPoint const &point) {
  return SYS_Point(Saturate<std::int32_t>(viewBox.GetLeft() + point.x / scale),
                   Saturate<std::int32_t>(viewBox.GetUpper() - point.y / scale));
}

SYS_Box UI_SvgDrawArea::Screen2World(CRect const &rect) {
  return Normalized(SYS_Box(Screen2World(CPoint(rect.left, rect.bottom)),
                            Screen2World(CPoint(rect.right, rect.top))));
}

CPoint UI_SvgDrawArea::World2Screen(SYS_Point const &point) {
  return CPoint(Saturate<int>((static_cast<double>(point.x) - viewBox.GetLeft()) * scale),
                Saturate<int>((static_cast<double>(viewBox.GetUpper()) - point.y) * scale));
}

CRect UI_SvgDrawArea::World2Screen(SYS_Box const &box) {
  SYS_Box const b = Normalized(box);
  CPoint const upperLeft = World2Screen(b.GetUpperLeft());
  CPoint const lowerRight = World2Screen(b.GetLowerRight());
  return CRect(upperLeft.x, upperLeft.y, lowerRight.x, lowerRight.y);
}

void UI_SvgDrawArea::SetVP(SYS_Box &view) {
  viewBox = Normalized(view);
  if (viewBox.GetRight() == viewBox.GetLeft()) viewBox.SetRight(viewBox.GetLeft() + 1);
  if (viewBox.GetUpper() == viewBox.GetLower()) viewBox.SetUpper(viewBox.GetLower() + 1);
  scale = width / (static_cast<double>(viewBox.GetRight()) - viewBox.GetLeft());
}

std::int32_t UI_SvgDrawArea::GetPixelSize() {
  std::int32_t const size = Saturate<std::int32_t>(1.0 / scale);
  return size < 1 ? 1 : size;
}

// --- Drawing -----------------------------------------------------------------

namespace {
// The stroke attributes of a pen: colour, width (a pixel for 0), cap.
std::string Stroke(UI_SvgDrawArea &area, int colour, std::int32_t size, int cap) {
  std::string s = " stroke=\"" + Hex(area.GetCurrentPaletteColorRGB(colour)) +
                  "\" stroke-width=\"" + Num(size > 0 ? size : area.GetPixelSize()) + '"';
  if (cap == 1) s += " stroke-linecap=\"square\"";
  if (cap == 2) s += " stroke-linecap=\"butt\"";
  return s;
}

std::string Fill(UI_SvgDrawArea const &area, int colour) {
  return " fill=\"" + Hex(area.GetCurrentPaletteColorRGB(colour)) + '"';
}
}  // namespace

void UI_SvgDrawArea::SwitchPen(int colour, std::int32_t size, int cap) {
  pen = Pen{colour, size, cap};
}

void UI_SvgDrawArea::Line(SYS_Point const &from, SYS_Point const &to, Pen const &with,
                          bool exclusive) {
  document->Add("<line x1=\"" + Num(from.x) + "\" y1=\"" + Num(-static_cast<double>(from.y)) +
                    "\" x2=\"" + Num(to.x) + "\" y2=\"" + Num(-static_cast<double>(to.y)) + '"' +
                    Stroke(*this, with.colour, with.size, with.cap) + "/>",
                exclusive);
}

void UI_SvgDrawArea::Oval(SYS_Box box, bool fill, Pen const &with, bool exclusive) {
  box.Normalize();
  double const cx = (static_cast<double>(box.GetLeft()) + box.GetRight()) / 2;
  double const cy = (static_cast<double>(box.GetLower()) + box.GetUpper()) / 2;
  document->Add(
      "<ellipse cx=\"" + Num(cx) + "\" cy=\"" + Num(-cy) + "\" rx=\"" + Num(cx - box.GetLeft()) +
          "\" ry=\"" + Num(cy - box.GetLower()) + '"' +
          (fill ? Fill(*this, with.colour) : Stroke(*this, with.colour, with.size, with.cap)) +
          "/>",
      exclusive);
}

void UI_SvgDrawArea::Arc(SYS_Box box, double from, double to, Pen const &with, bool exclusive) {
  box.Normalize();
  double const rx = (static_cast<double>(box.GetRight()) - box.GetLeft()) / 2;
  double const ry = (static_cast<double>(box.GetUpper()) - box.GetLower()) / 2;
  double const cx = box.GetLeft() + rx, cy = box.GetLower() + ry;
  // The oval's own angles of the two directions.
  double const t0 = std::atan2(std::sin(from) * rx, std::cos(from) * ry);
  double const t1 = std::atan2(std::sin(to) * rx, std::cos(to) * ry);
  double sweep = arcClockwise ? t0 - t1 : t1 - t0;
  sweep = std::fmod(sweep + 4 * kPi, 2 * kPi);
  if (!(sweep > 1e-9)) {
    Oval(box, false, with, exclusive);
    return;
  }
  // The document's y points down: counter-clockwise in the world is its
  // negative direction, sweep flag 0.
  document->Add("<path d=\"M" + Point(cx + rx * std::cos(t0), cy + ry * std::sin(t0)) + " A" +
                    Num(rx) + ',' + Num(ry) + " 0 " + (sweep > kPi ? '1' : '0') + ' ' +
                    (arcClockwise ? '1' : '0') + ' ' +
                    Point(cx + rx * std::cos(t1), cy + ry * std::sin(t1)) + '"' +
                    Stroke(*this, with.colour, with.size, with.cap) + "/>",
                exclusive);
}

void UI_SvgDrawArea::Cross(SYS_Point const &point, int colour) {
  std::int32_t const half = kCrossPixels / 2 * GetPixelSize();
  Line(point - SYS_Point(half, 0), point + SYS_Point(half, 0), Hairline(colour), true);
  Line(point - SYS_Point(0, half), point + SYS_Point(0, half), Hairline(colour), true);
}

SYS_Box UI_SvgDrawArea::Text(char const *text, std::int32_t height, int colour, SYS_Point where,
                             bool draw, bool exclusive) {
  if (text == nullptr) text = "";
  double const h = height > 0 ? height : textHeight;
  double const w = kAdvance * h * static_cast<double>(std::strlen(text));
  double const left = alignHorizontal == 1 ? -w / 2 : alignHorizontal == 2 ? -w : 0.0;
  double const base = alignVertical == 1   ? -(kAscent - kDescent) / 2 * h
                      : alignVertical == 2 ? -kAscent * h
                                           : 0.0;
  // The corners, turned with the text around its point.
  double const a = textAngle * kPi / 180, c = std::cos(a), s = std::sin(a);
  double lo[2] = {HUGE_VAL, HUGE_VAL}, hi[2] = {-HUGE_VAL, -HUGE_VAL};
  for (double x : {left, left + w}) {
    for (double y : {base - kDescent * h, base + kAscent * h}) {
      double const p[2] = {where.x + x * c - y * s, where.y + x * s + y * c};
      for (int i = 0; i < 2; ++i) {
        lo[i] = std::fmin(lo[i], p[i]);
        hi[i] = std::fmax(hi[i], p[i]);
      }
    }
  }
  if (draw) {
    // Written in pixels and scaled into the world: renderers make their
    // fonts at the size the text states, and a height in world units is far
    // beyond what a font engine takes.
    std::string turn = Decimal(-std::fmod(textAngle, 360.0), 4);
    turn = turn == "0" ? std::string() : " rotate(" + turn + ')';
    document->Add("<text transform=\"translate(" + Point(where.x, where.y) + ')' + turn +
                      " scale(" + Decimal(1 / scale, 6) + ")\" x=\"" + Decimal(left * scale, 2) +
                      "\" y=\"" + Decimal(-base * scale, 2) + "\" font-size=\"" +
                      Decimal(h * scale, 2) + '"' + Fill(*this, colour) + '>' + Escaped(text) +
                      "</text>",
                  exclusive);
  }
  return SYS_Box(Saturate<std::int32_t>(lo[0]), Saturate<std::int32_t>(lo[1]),
                 Saturate<std::int32_t>(hi[0]), Saturate<std::int32_t>(hi[1]));
}

void UI_SvgDrawArea::EraseRect(SYS_Box box) {
  document->Add("<rect" + RectAttributes(Normalized(box)) + Fill(*this, backColour) + "/>", false);
}

void UI_SvgDrawArea::FillRect(SYS_Box box, int colour) {
  document->Add("<rect" + RectAttributes(Normalized(box)) + Fill(*this, colour) + "/>",
                Exclusive());
}

void UI_SvgDrawArea::InstallDynamic(CDynamic *recording) {
  if (recording != nullptr) recording->JoinAtEnd(&redrawEvent);
}

void UI_SvgDrawArea::RedrawDynamic(CDynamic *recording, SYS_Box *, int) {
  if (recording != nullptr && recording->GetDrawArea() == this) recording->Redraw();
}

void UI_SvgDrawArea::RegisterRedrawHook(SCC_EventHook<RedrawBlock> *hook) {
  if (hook != nullptr) hook->AddHook(&redrawEvent);
}

void UI_SvgDrawArea::DrawXorBox(SYS_Box box) {
  document->Add(
      "<rect" + RectAttributes(Normalized(box)) + Stroke(*this, pen.colour, 0, pen.cap) + "/>",
      true);
}

void UI_SvgDrawArea::DrawXorBox(SYS_Point first, SYS_Point second) {
  DrawXorBox(SYS_Box(first, second));
}

SYS_Box UI_SvgDrawArea::DrawXorText(char const *text, int height, int colour, std::int32_t x,
                                    std::int32_t y, int draw) {
  return Text(text, height, colour, SYS_Point(x, y), draw != 0, true);
}

SYS_Box UI_SvgDrawArea::DrawXorText(char const *text, int height, int colour, SYS_Point where,
                                    int draw) {
  return Text(text, height, colour, where, draw != 0, true);
}

void UI_SvgDrawArea::DrawOriginMark(std::int32_t x, std::int32_t y) {
  Cross(SYS_Point(x, y), pen.colour);
}
void UI_SvgDrawArea::DrawOriginMark(SYS_Point point) { Cross(point, pen.colour); }

void UI_SvgDrawArea::FastLineTo(SYS_Point const &point) {
  Line(current, point, pen, Exclusive());
  current = point;
}

void UI_SvgDrawArea::FastPaintOval(SYS_Box box) { Oval(box, true, pen, Exclusive()); }

void UI_SvgDrawArea::FastPaintOval(SYS_Point const &center, std::int32_t radius, int colour) {
  SYS_Point const r(radius, radius);
  Oval(SYS_Box(center - r, center + r), true, Pen{colour, 0, 0}, Exclusive());
}

void UI_SvgDrawArea::FrameArc(SYS_Box box, double start, double end) {
  Arc(box, start * kPi / 180, end * kPi / 180, pen, Exclusive());
}

void UI_SvgDrawArea::FastFrameOval(SYS_Box const &box) { Oval(box, false, pen, Exclusive()); }

namespace {
// The path of polylines (or polygons, closed), m counts of points each.
template <class Count>
std::string PolyPath(SYS_Point const *points, Count const *counts, int m, bool closed) {
  std::string d;
  if (points == nullptr || counts == nullptr) return d;
  for (int i = 0; i < m; ++i) {
    for (Count k = 0; k < counts[i]; ++k, ++points) {
      d += (k == 0 ? (d.empty() ? "M" : " M") : " L") + Point(points->x, points->y);
    }
    if (closed && counts[i] > 0) d += " Z";
  }
  return d;
}
}  // namespace

void UI_SvgDrawArea::FastPolyPolyline(SYS_Point *points, std::uint32_t const *counts, int m) {
  std::string const d = PolyPath(points, counts, m, false);
  if (!d.empty())
    document->Add("<path d=\"" + d + '"' + Stroke(*this, pen.colour, pen.size, pen.cap) + "/>",
                  Exclusive());
}

void UI_SvgDrawArea::FastPolyPolygon(SYS_Point *points, int const *counts, int m,
                                     std::int32_t colour) {
  std::string const d = PolyPath(points, counts, m, true);
  if (!d.empty()) {
    document->Add("<path d=\"" + d + "\" fill-rule=\"evenodd\"" + Fill(*this, colour) + "/>",
                  Exclusive());
  }
}

void UI_SvgDrawArea::FastFrameArc(SYS_Box const &box, SYS_Point const &first,
                                  SYS_Point const &second) {
  SYS_Box const b = Normalized(box);
  double const cx = (static_cast<double>(b.GetLeft()) + b.GetRight()) / 2;
  double const cy = (static_cast<double>(b.GetLower()) + b.GetUpper()) / 2;
  Arc(b, std::atan2(first.y - cy, first.x - cx), std::atan2(second.y - cy, second.x - cx), pen,
      Exclusive());
}

void UI_SvgDrawArea::FastPolyLine(int n, SYS_Point *points, std::int32_t size, int colour) {
  std::uint32_t const count = n > 0 ? static_cast<std::uint32_t>(n) : 0;
  std::string const d = PolyPath(points, &count, 1, false);
  if (!d.empty()) {
    document->Add("<path d=\"" + d + '"' + Stroke(*this, colour, size, pen.cap) + "/>",
                  Exclusive());
  }
}

void UI_SvgDrawArea::TextAlign(int horizontal, int vertical) {
  alignHorizontal = horizontal;
  alignVertical = vertical;
}

void UI_SvgDrawArea::TextSize(int, int height) {
  textHeight = height > 0 ? height : kTextPixels * GetPixelSize();
}

void UI_SvgDrawArea::DrawString(char const *text) {
  Text(text, 0, pen.colour, current, true, Exclusive());
}

void UI_SvgDrawArea::DrawLine(SYS_Point const &from, SYS_Point const &to, std::int32_t size,
                              int colour) {
  Line(from, to, Pen{colour, size, pen.cap}, Exclusive());
}

void UI_SvgDrawArea::XORFrameArc(SYS_Box const &box, SYS_Point const &first,
                                 SYS_Point const &second) {
  int const mode = penMode;
  Pen const kept = pen;
  penMode = kXorMode;
  pen = Hairline(xorColour);
  FastFrameArc(box, first, second);
  penMode = mode;
  pen = kept;
}

void UI_SvgDrawArea::XORFrameOval(SYS_Point const &center, std::int32_t const &radius) {
  SYS_Point const r(radius, radius);
  Oval(SYS_Box(center - r, center + r), false, Hairline(xorColour), true);
}

void UI_SvgDrawArea::XORPaintOval(SYS_Point const &center, std::int32_t const &radius) {
  SYS_Point const r(radius, radius);
  Oval(SYS_Box(center - r, center + r), true, Hairline(xorColour), true);
}

void UI_SvgDrawArea::XORLineTo(SYS_Point const &point) {
  Line(current, point, Hairline(xorColour), true);
  current = point;
}

void UI_SvgDrawArea::XORCross(SYS_Point const &point) { Cross(point, xorColour); }

int UI_SvgDrawArea::SetArcDirection(int direction) {
  int const previous = arcClockwise;
  arcClockwise = direction != 0;
  return previous;
}

void UI_SvgDrawArea::SetPixel(SYS_Point const &point) {
  document->Add(
      "<rect" + RectAttributes(SYS_Box(point, GetPixelSize())) + Fill(*this, pen.colour) + "/>",
      Exclusive());
}

// --- Palette -------------------------------------------------------------------

std::int32_t UI_SvgDrawArea::GetDefaultPaletteColors(std::uint32_t *colours) const {
  if (colours != nullptr) std::memcpy(colours, kDefaultPalette, sizeof kDefaultPalette);
  return kPaletteSize;
}

std::int32_t UI_SvgDrawArea::GetCurrentPaletteColors(std::uint32_t *colours) const {
  if (colours != nullptr) std::memcpy(colours, palette, sizeof palette);
  return kPaletteSize;
}

std::uint32_t UI_SvgDrawArea::GetCurrentPaletteColorRGB(int colour) const {
  return palette[(colour % kPaletteSize + kPaletteSize) % kPaletteSize];
}

void UI_SvgDrawArea::SetCurrentPaletteColors(std::uint32_t *colours) {
  std::memcpy(palette, colours != nullptr ? colours : kDefaultPalette, sizeof palette);
}
