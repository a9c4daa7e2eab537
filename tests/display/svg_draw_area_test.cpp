// The SVG surface: a known recording against its expected document, which
// must be well-formed XML (and render, where rsvg-convert is installed), and
// exclusive-or overlays that vanish when replayed again.
#include <expat.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "cdynamic.h"
#include "ui_svg_draw_area.h"

namespace {

std::string ReadFile(std::string const &path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

bool WellFormed(std::string const &xml) {
  XML_Parser parser = XML_ParserCreate(nullptr);
  bool const ok = XML_Parse(parser, xml.data(), static_cast<int>(xml.size()), 1) == XML_STATUS_OK;
  XML_ParserFree(parser);
  return ok;
}

// Every kind of record that reaches the surface as a shape, on a view of
// 10000 x 5000 world units shown 100 pixels wide (one pixel is 100 units).
void RecordSample(CDynamic &d) {
  SYS_Point zigzag[] = {{500, 500}, {1500, 1500}, {2500, 500}, {3500, 1500}};
  std::uint32_t const counts[] = {2, 2};
  // The pen first, so that every replay starts alike.
  d.SwitchPen(3, 0, 0);  // one pixel wide, round
  d.FastMoveTo(SYS_Point(500, 4500));
  d.FastLineTo(SYS_Point(3500, 4500));
  d.FastPolyPolyline(zigzag, counts, 2);
  d.FastPolyLine(4, zigzag, 50, 4);
  d.DrawLine(SYS_Point(4000, 500), SYS_Point(4000, 4500), 200, 1);
  d.PenCap(2);
  d.DrawArc(SYS_Box(5000, 500, 7000, 2500), SYS_Point(7000, 1500), SYS_Point(5000, 1500), 100, 2);
  d.DrawArc(SYS_Box(5000, 3000, 5100, 3100), SYS_Point(5000, 3000), SYS_Point(5100, 3100), 100, 2);
  d.DrawXorOval(SYS_Box(7500, 500, 9500, 1500));
  d.DrawXorOval(SYS_Box(7500, 2000, 7550, 4000));  // half a pixel wide: a box
  d.FillRect(SYS_Box(9500, 4500, 8500, 3500), 5);
  d.FastPaintOval(SYS_Box(4500, 4000, 4900, 4400));
  d.TextAlign(1, 1);
  d.TextPath(90.0 * SYS_ANGLE_PER_DEGREE);
  d.DrawXorText("R1 <&> \xE9", 400, 12, SYS_Point(6000, 4000), 0);
}

TEST(SvgDrawArea, KnownRecordingGivesTheExpectedDocument) {
  std::string svg;
  {
    UI_SvgDrawArea area(SYS_Box(0, 0, 10000, 5000), 100);
    area.BackColor(8);
    CDynamic recording(&area);
    recording.StartBatchDraw();
    RecordSample(recording);
    recording.EndBatchDraw();  // the surface replays it at once
    svg = static_cast<char const *>(area.GetSvg());
  }
  std::string const expected = ReadFile(TOVIK_TEST_DATA "/recording.svg");
  std::string const written = TOVIK_TEST_BINARY_DIR "/recording.svg";  // to look at
  std::ofstream(written, std::ios::binary) << svg;
  EXPECT_EQ(svg, expected) << "the document is in " << written;
  EXPECT_TRUE(WellFormed(svg));
  if (*TOVIK_RSVG_CONVERT != '\0') {
    std::string const render = std::string("'" TOVIK_RSVG_CONVERT "' '") + written + "' -o '" +
                               TOVIK_TEST_BINARY_DIR "/recording.png'";
    EXPECT_EQ(std::system(render.c_str()), 0);
  }
}

TEST(SvgDrawArea, OverlaysVanishWhenReplayedAndRecordingsOutliveTheSurface) {
  CDynamic recording;
  {
    UI_SvgDrawArea area(SYS_Box(-5000, -5000, 5000, 5000), 200);
    std::string const empty = static_cast<char const *>(area.GetSvg());
    area.DrawLine(SYS_Point(0, 0), SYS_Point(100, 100), 0, 1);  // plain: stays
    std::string const base = static_cast<char const *>(area.GetSvg());
    recording.Install(&area);
    area.PenMode(UI_SvgDrawArea::kXorMode);  // an overlay: all of it in exclusive-or
    recording.StartBatchDraw();
    RecordSample(recording);
    recording.EndBatchDraw();
    EXPECT_NE(std::string(area.GetSvg()), base);
    recording.Clear();  // replays once more: every exclusive-or shape goes
    EXPECT_EQ(std::string(area.GetSvg()), base);
    area.EraseAll();
    EXPECT_EQ(std::string(area.GetSvg()), empty);

    // The y axis points up in the world and down on the screen.
    CPoint const screen = area.World2Screen(SYS_Point(-2500, 2500));
    EXPECT_EQ(screen, CPoint(50, 50));
    EXPECT_EQ(area.Screen2World(screen), SYS_Point(-2500, 2500));
    EXPECT_EQ(area.Scale2ScreenY(1000), -20);
    // A text turned a quarter counter-clockwise stands upright from its point.
    area.TextAlign(0, 0);
    area.TextPath(90.0);
    EXPECT_EQ(area.DrawXorText("ab", 1000, 1, 0, 0, 0), SYS_Box(-800, 0, 200, 1200));
  }
  EXPECT_EQ(recording.GetDrawArea(), nullptr);  // told that the surface went away
  recording.Redraw();
}

}  // namespace
