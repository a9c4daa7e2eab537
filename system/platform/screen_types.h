// The screen types of the host framework: CPoint and CRect, integer pixel
// coordinates, and HICON, the opaque handle of an icon.
//
// Plain values: a point is (x, y), a rectangle (left, top, right, bottom) as
// given, never normalised. The library only passes them between a drawing
// surface and its callers; it neither draws nor owns icons.
#ifndef TOVIK_SCREEN_TYPES_H
#define TOVIK_SCREEN_TYPES_H

#include "tovik_export.h"

// An icon of the application's surface; the library never looks behind it.
typedef struct HICON__ *HICON;

struct CPoint {
  int x;
  int y;

  // A point with no set value is the origin here, never indeterminate.
  CPoint() : x(0), y(0) {}
  CPoint(int px, int py) : x(px), y(py) {}

  bool operator==(CPoint const &other) const { return x == other.x && y == other.y; }
  bool operator!=(CPoint const &other) const { return !(*this == other); }
};

struct CRect {
  int left;
  int top;
  int right;
  int bottom;

  // A rectangle with no set value is all zero here.
  CRect() : left(0), top(0), right(0), bottom(0) {}
  CRect(int l, int t, int r, int b) : left(l), top(t), right(r), bottom(b) {}

  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  bool operator==(CRect const &other) const {
    return left == other.left && top == other.top && right == other.right && bottom == other.bottom;
  }
  bool operator!=(CRect const &other) const { return !(*this == other); }
};

#endif  // TOVIK_SCREEN_TYPES_H
