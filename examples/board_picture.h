// What the demonstration's board looks like, and how it is drawn.
//
// A footprint is a component's copper pads and its silkscreen outline (lines
// and counter-clockwise arcs) in the component's own frame, in world units.
// A placed component carries it to the board by its SYS_Position: rotated,
// and mirrored when it sits on the bottom side. Everything is drawn into a
// CDynamic recording, so that any draw area can replay it.
#ifndef TOVIK_EXAMPLE_BOARD_PICTURE_H
#define TOVIK_EXAMPLE_BOARD_PICTURE_H

#include <tovik.h>

#include <vector>

#include "board.h"

struct Pad {
  SYS_Point center;
  std::int32_t width;   // along the footprint's x axis
  std::int32_t height;  // along its y axis; a round pad has width = height
  bool round;
};

struct Footprint {
  std::vector<Pad> pads;
  std::vector<SYS_Segment> lines;
  std::vector<SYS_Arc> arcs;  // counter-clockwise from start to end
};

// A two-terminal chip, an 8-pin small-outline IC, a radial capacitor and a
// 4-pin header.
Footprint const &Chip();
Footprint const &SmallOutline8();
Footprint const &Radial();
Footprint const &Header4();

// World units of a length in millimetres.
constexpr std::int32_t Mm(double mm) { return static_cast<std::int32_t>(mm * SYS_WORLD_PER_MM); }

// The board's colours: indices into the surface's palette.
enum BoardColour {
  kTopCopper = 1,
  kBottomCopper = 2,
  kBottomSilk = 6,
  kEdge = 7,
  kTopSilk = 12,
  kSelection = 15
};

// The board's edge: a rectangle with rounded corners.
void DrawEdge(CDynamic &recording, SYS_Box const &board, std::int32_t cornerRadius);
// Pads, outline and reference designator of one placed component.
void DrawComponent(CDynamic &recording, Component const &part);
// The box the component covers on the board.
SYS_Box ComponentBox(Component const &part);

#endif  // TOVIK_EXAMPLE_BOARD_PICTURE_H
