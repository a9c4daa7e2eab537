// The recording surface against a surface that logs every call it receives.
#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "cdynamic.h"

namespace {

std::ostream &operator<<(std::ostream &out, SYS_Point const &p) { return out << p.x << ',' << p.y; }
std::ostream &operator<<(std::ostream &out, SYS_Box const &b) {
  return out << b.GetLeft() << ',' << b.GetLower() << ',' << b.GetRight() << ',' << b.GetUpper();
}

// Logs "Name arg arg ..." per call. Pixels are world / 100 on x and
// -world / 100 on y (the screen's y points down); a text measures 10 per
// character from its point.
class LogArea : public UI_DrawArea {
 public:
  using UI_DrawArea::DrawXorBox;
  using UI_DrawArea::FastPaintOval;
  template <class... A>
  void Log(char const *name, A const &...args) {
    std::ostringstream line;
    line.precision(10);
    line << name;
    ((line << ' ' << args), ...);
    log.push_back(line.str());
    if (onCall) onCall();
  }
  int Scale2ScreenX(std::int32_t w) const override { return w / 100; }
  int Scale2ScreenY(std::int32_t w) const override { return -w / 100; }
  void RedrawDynamic(CDynamic *, SYS_Box *box, int end) override { Log("RedrawDynamic", *box, end); }
  void PenColor(int c) override { Log("PenColor", c); }
  void PenSize(std::int32_t s) override { Log("PenSize", s); }
  void PenMode(int m) override { Log("PenMode", m); }
  int GetPenMode() override { return 7; }
  void PenCap(int c) override { Log("PenCap", c); }
  void SwitchPen(int a, std::int32_t b, int c) override { Log("SwitchPen", a, b, c); }
  void FillRect(SYS_Box b, int v) override { Log("FillRect", b, v); }
  void DrawXorBox(SYS_Box b) override { Log("DrawXorBox", b); }
  SYS_Box DrawXorText(char const *t, int a, int b, std::int32_t x, std::int32_t y, int draw) override {
    if (draw) Log("DrawXorText", t, a, b, x, y);
    return SYS_Box(x, y, x + 10 * static_cast<int>(std::string(t).size()), y + 10);
  }
  SYS_Box DrawXorText(char const *t, int a, int b, SYS_Point p, int draw) override {
    return DrawXorText(t, a, b, p.x, p.y, draw);
  }
  void FastMoveTo(SYS_Point const &p) override { Log("FastMoveTo", p); }
  void FastLineTo(SYS_Point const &p) override { Log("FastLineTo", p); }
  void FastPaintOval(SYS_Box b) override { Log("FastPaintOval", b); }
  void FastFrameOval(SYS_Box const &b) override { Log("FastFrameOval", b); }
  void FastPolyPolyline(SYS_Point *p, std::uint32_t const *counts, int m) override {
    std::uint32_t n = 0;
    for (int i = 0; i < m; ++i) n += counts[i];
    Log("FastPolyPolyline", m, n, n ? p[n - 1] : SYS_Point());
  }
  void FastFrameArc(SYS_Box const &b, SYS_Point const &s, SYS_Point const &e) override {
    Log("FastFrameArc", b, s, e);
  }
  void FastPolyLine(int n, SYS_Point *p, std::int32_t a, int b) override {
    Log("FastPolyLine", n, p[0], p[n - 1], a, b);
  }
  void DrawIcon(HICON icon, SYS_Point p, int v) override { Log("DrawIcon", static_cast<void *>(icon), p, v); }
  void TextAlign(int a, int b) override { Log("TextAlign", a, b); }
  void TextExtra(int v) override { Log("TextExtra", v); }
  void TextFace(int v) override { Log("TextFace", v); }
  void TextPath(double d) override { Log("TextPath", d); }
  void TextSize(int a, int b) override { Log("TextSize", a, b); }
  void DrawString(char const *t) override { Log("DrawString", '"' + std::string(t) + '"'); }
  void DrawLine(SYS_Point const &a, SYS_Point const &b, std::int32_t s, int c) override {
    Log("DrawLine", a, b, s, c);
  }
  void SetGRAMode(gra_mode_union m) override { Log("SetGRAMode", m.word); }
  void DrawOnScreen(bool on) override { Log("DrawOnScreen", on); }

  std::vector<std::string> log;
  std::function<void()> onCall;
};

// A recording whose words a test may write itself.
struct RawDynamic : CDynamic {
  using CDynamic::CDynamic;
  void Load(std::vector<std::uint32_t> const &words) {
    for (std::uint32_t w : words) recording.Add(w);
  }
};

typedef std::vector<std::string> Log;

struct Case {
  char const *name;  // and why
  std::function<void(RawDynamic &)> record;
  Log replay;        // what the area hears between saving and restoring its pen mode
  char const *extent;  // after recording onto the zero box
};

SYS_Point pts[] = {{1, 2}, {3, -4}, {5, 6}, {10, 10}};
std::uint32_t const counts[] = {2, 1};

Case const kCodes[] = {
    {"0, 1, 8, 10, 16-18, 20, 22, 23 settings pass through, the extent stays",
     [](RawDynamic &d) {
       d.PenColor(5), d.PenSize(-3), d.PenCap(3), d.SwitchPen(1, -2, 3), d.TextAlign(1, 2), d.TextExtra(3);
       d.TextFace(4), d.TextSize(5, 6), d.SetGRAMode(gra_mode_union{0xDEADBEEF}), d.DrawOnScreen(true);
     },
     {"PenColor 5", "PenSize -3", "PenCap 3", "SwitchPen 1 -2 3", "TextAlign 1 2", "TextExtra 3", "TextFace 4",
      "TextSize 5 6", "SetGRAMode 3735928559", "DrawOnScreen 1"},
     "0,0,0,0"},
    {"2 box normalised before the point form",
     [](RawDynamic &d) { d.DrawXorBox(SYS_Box(10, 10, 0, 0)); }, {"DrawXorBox 0,0,10,10"}, "0,0,10,10"},
    {"2, 13, 15 as given, extent too",
     [](RawDynamic &d) { d.DrawXorBox(pts[3], SYS_Point()); d.FastPaintOval(SYS_Box(pts[3], SYS_Point())); d.FastFrameOval(SYS_Box(pts[3], SYS_Point())); },
     {"DrawXorBox 10,10,0,0", "FastPaintOval 10,10,0,0", "FastFrameOval 10,10,0,0"}, "10,10,0,0"},
    {"3 oval wide enough both ways (|y pixels|)",
     [](RawDynamic &d) { d.DrawXorOval(SYS_Box(1000, 1000, 0, 0)); },
     {"PenMode 2", "FastFrameOval 0,0,1000,1000"}, "0,0,1000,1000"},
    {"3 oval one pixel wide replays as a box",
     [](RawDynamic &d) { d.DrawXorOval(SYS_Box(0, 0, 100, 10000)); }, {"DrawXorBox 0,0,100,10000"},
     "0,0,100,10000"},
    {"4 fill normalised", [](RawDynamic &d) { d.FillRect(SYS_Box(5, 5, -5, -5), 9); },
     {"PenMode 2", "FillRect -5,-5,5,5 9"}, "-5,-5,5,5"},
    {"5 text measured by the area", [](RawDynamic &d) { d.DrawXorText("ab", 1, 2, SYS_Point(30, 40), 0); },
     {"DrawXorText ab 1 2 30 40"}, "30,40,50,50"},
    {"6 line in xor mode", [](RawDynamic &d) { d.DrawLine(SYS_Point(9, 2), SYS_Point(3, 4), 5, 6); },
     {"PenMode 2", "PenColor 6", "PenSize 5", "DrawLine 9,2 3,4 5 6"}, "3,2,9,4"},
    {"7 arc wide enough", [](RawDynamic &d) { d.DrawArc(SYS_Box(0, 0, 900, 900), pts[0], pts[1], 5, 6); },
     {"PenMode 2", "PenColor 6", "PenSize 5", "FastFrameArc 0,0,900,900 1,2 3,-4"}, "0,0,900,900"},
    {"7 small arc replays as a line", [](RawDynamic &d) { d.DrawArc(SYS_Box(0, 0, 90, 900), pts[0], pts[1], 5, 6); },
     {"PenMode 2", "PenColor 6", "PenSize 5", "DrawLine 1,2 3,-4 5 6"}, "0,0,90,900"},
    {"11, 12 from the current point; an extent of no width is no single point: it combines",
     [](RawDynamic &d) { d.FastMoveTo(SYS_Point(0, 10)); d.FastLineTo(SYS_Point(0, 0)); d.FastPaintOval(SYS_Box(5, 5, 20, 20)); },
     {"FastMoveTo 0,10", "FastLineTo 0,0", "FastPaintOval 5,5,20,20"}, "0,0,20,20"},
    {"a single-point extent is replaced", [](RawDynamic &d) { d.FastLineTo(SYS_Point(0, 0)); d.FastPaintOval(SYS_Box(5, 5, 20, 20)); },
     {"FastLineTo 0,0", "FastPaintOval 5,5,20,20"}, "5,5,20,20"},
    {"9 poly-polyline", [](RawDynamic &d) { d.FastPolyPolyline(pts, counts, 2); },
     {"FastPolyPolyline 2 3 5,6"}, "1,-4,5,6"},
    {"9 counts adding to 0 leave the extent", [](RawDynamic &d) { d.FastPolyPolyline(pts, counts + 2, 0); },
     {"FastPolyPolyline 0 0 0,0"}, "0,0,0,0"},
    {"14 polyline extends by its points", [](RawDynamic &d) { d.FastPolyLine(3, pts, 7, 8); },
     {"FastPolyLine 3 1,2 5,6 7 8"}, "1,-4,5,6"},
    {"19 angle units become degrees in 0 to 360", [](RawDynamic &d) { d.TextPath(-1800000.0); d.TextPath(-1.0); },
     {"TextPath 359", "TextPath 359.9999"}, "0,0,0,0"},
    {"21 strings, the empty one too", [](RawDynamic &d) { d.DrawString("x\xE9"); d.DrawString(""); },
     {"DrawString \"x\xE9\"", "DrawString \"\""}, "0,0,0,0"},
    {"5 a text longer than the buffer: a prefix, then on behind all of it",
     [](RawDynamic &d) { d.DrawXorText(std::string(1500, 'x').c_str(), 0, 0, 0, 0, 1); d.PenColor(1); },
     {"DrawXorText " + std::string(1023, 'x') + " 0 0 0 0", "PenColor 1"}, "0,0,15000,10"},
    // Damaged recordings: the replay never reads outside the words.
    {"a word above 24 is skipped", [](RawDynamic &d) { d.Load({99, 0, 5}); }, {"PenColor 5"}, "0,0,0,0"},
    {"operands past the end end the walk", [](RawDynamic &d) { d.Load({0, 5, 6, 1, 2}); }, {"PenColor 5"}, "0,0,0,0"},
    {"poly-polyline counts overflowing 32 bits", [](RawDynamic &d) { d.Load({9, 2, 0xFFFFFFFF, 2, 1, 2}); }, {},
     "0,0,0,0"},
    {"a text without its terminator", [](RawDynamic &d) { d.Load({5, 1, 2, 3, 4, 2, 'a', 'b', 1, 0}); },
     {"DrawXorText ab 3 4 1 2", "PenSize 0"}, "0,0,0,0"},
    {"24 a pointer-wide icon", [](RawDynamic &d) { d.DrawIcon(reinterpret_cast<HICON>(0x123456789A0), pts[1], 4); },
     {"DrawIcon 0x123456789a0 3,-4 4"}, "0,0,0,0"},
};

TEST(CDynamic, EveryCodeReplaysWhatWasRecordedAndExtendsAsItShould) {
  for (Case const &c : kCodes) {
    SCOPED_TRACE(c.name);
    LogArea area;
    RawDynamic dynamic(&area);
    c.record(dynamic);
    std::ostringstream extent;
    EXPECT_EQ(static_cast<std::ostringstream &>(extent << dynamic.GetExtent()).str(), c.extent);
    Log expected{c.replay};
    expected.push_back("PenMode 7");
    for (int pass = 0; pass < 2; ++pass) {  // the recording survives a replay
      area.log.clear();
      dynamic.Redraw();
      EXPECT_EQ(area.log, expected);
    }
    EXPECT_FALSE(dynamic.IsFlushing());
  }
}

TEST(CDynamic, BatchesClearingAndTheRedrawEvent) {
  LogArea area;
  CDynamic dynamic;
  dynamic.StartBatchDraw();  // no area: nothing to clear, but the batch opens
  dynamic.DrawLine(SYS_Point(9, 2), SYS_Point(3, 4), 5, 6);
  dynamic.Clear();
  EXPECT_EQ(dynamic.GetRecording().GetSize(), 7) << "without an area the recording stays";
  dynamic.SetDrawArea(&area);
  dynamic.EndBatchDraw();
  dynamic.EndBatchDraw();
  dynamic.OnNotification(3, nullptr);
  EXPECT_EQ(area.log, (Log{"RedrawDynamic 3,2,9,4 1", "RedrawDynamic 3,2,9,4 0"})) << "one batch closed once; cleared";

  EXPECT_EQ(dynamic.DrawXorText("\xE9", 1, 2, 30, 40, 1), SYS_Box(30, 40, 40, 50));
  std::vector<std::uint32_t> const words(dynamic.GetRecording().GetData(), dynamic.GetRecording().GetData() + 8);
  EXPECT_EQ(words, (std::vector<std::uint32_t>{5, 30, 40, 1, 2, 2, 0xFFFFFFE9, 0})) << "signed bytes, NUL counted";
  area.log.clear();
  dynamic.OnNotification(1, nullptr);
  dynamic.OnNotification(2, nullptr);  // the area goes away
  EXPECT_EQ(dynamic.DrawXorText("a", 1, 2, 0, 0, 1), SYS_Box());
  dynamic.Redraw();
  EXPECT_EQ(area.log.size(), 2u) << "replayed once, then no area";
  EXPECT_EQ(dynamic.GetRecording().GetSize(), 16) << "cleared before the two texts";
}

TEST(CDynamic, TheAreaMayChangeTheRecordingWhileItIsReplayed) {
  LogArea area;
  CDynamic dynamic(&area);
  dynamic.PenColor(1), dynamic.PenColor(2);
  int calls = 0;
  area.onCall = [&] {
    EXPECT_TRUE(dynamic.IsFlushing());
    if (++calls == 1) {
      for (int i = 0; i < 1000; ++i) dynamic.PenSize(i);  // moves the words
    } else if (calls == 3) {
      dynamic.Clear();
    }
  };
  dynamic.Redraw();
  EXPECT_EQ(area.log, (Log{"PenColor 1", "PenColor 2", "PenSize 0", "RedrawDynamic 0,0,0,0 0", "PenMode 7"}));
}

}  // namespace
