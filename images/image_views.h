#pragma once
// The arithmetic of the two image windows beside the main window: their size and
// place, how the radiograph window's pixels map to image columns and rows, and the
// hit-testing of the rectangle the user drags on it.

#include <cstdint>

#include "model/model.h"

namespace sedra {

// ------------------------------------------------------------------ optical window

struct OpticalView {
  int AvailableHeight = 0;  // main client height - 10
  int DrawnWidth = 0, DrawnHeight = 0;
  int WindowX = 0, WindowY = 5, WindowWidth = 0, WindowHeight = 0;
  IntRect Focus{};  // the crop scaled by AvailableHeight / (Height - 1), rounded down
};
// `frame`: the window's frame thickness.  The drawn height follows the zoom, so above
// 100% the window shows the top of a taller picture.
OpticalView LayOutOpticalView(const OpticalImageDesc& opt, int clientHeight, int zoom, int frame);

// ------------------------------------------------------------------ radiograph window

struct RadiographView {
  float ViewScale = 0;  // image rows per window pixel
  int DrawnWidth = 0;   // twice the image's width
  int DrawnHeight = 0;  // main client height - 10
  int WindowX = 0, WindowY = 0, WindowWidth = 0, WindowHeight = 0;
  IntRect ViewRect{};   // 0, 0, DrawnWidth - 1, DrawnHeight - 1
};
// `dialogLeft`: the left edge of the tool dialog the window stands beside; `edge`: the
// window's edge thickness.
RadiographView LayOutRadiographView(const RadiographDesc& rad, int clientHeight, int dialogLeft, int edge);

// The image column under window x: Width x x / ViewRect right (integer).  A 500-wide
// radiograph shown 1000 wide (ViewRect right 999) has column 250 under x 500.
int32_t ColumnAt(const RadiographDesc& rad, int x);

// Where region `k` shows in the window; empty when it is not defined.
IntRect EditRectOfRegion(const RadiographDesc& rad, int k);
// The data-region band in window pixels: its columns scaled by ViewRect right / Width,
// the full height of the drawn image.
IntRect DataRegionMarker(const RadiographDesc& rad, int32_t left, int32_t right);

// The rectangle a drag starts from at (x, y): two pixels up and left of the pointer
// (not past the window's edge), at least one pixel wide.
IntRect StartRegionRect(int x, int y);

enum RegionEdge : int { kEdgeLeft = 1, kEdgeRight = 2, kEdgeTop = 4, kEdgeBottom = 8 };
// The edges of `edit` under (x, y): none unless within 5 pixels outside it; the left or
// right edge within 5 pixels inside it (less for a narrow one), likewise top or bottom.
int HitRegionEdges(const IntRect& edit, int x, int y);
// Moves the hit edges of `edit` to (x, y).
void MoveRegionEdges(IntRect& edit, int edges, int x, int y);

// Region `k` from the window rectangle `edit`, limited to the image.  False when it ends
// at column 0, which leaves the region undefined.
bool CommitRegion(RadiographDesc& rad, int k, const IntRect& edit);

}  // namespace sedra
