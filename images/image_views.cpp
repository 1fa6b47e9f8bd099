#include "images/image_views.h"

#include <algorithm>
#include <cmath>

namespace sedra {

namespace {

int32_t FloorInt(double v) {
  if (!(v == v)) return 0;
  return int32_t(std::clamp(std::floor(v), -2.0e9, 2.0e9));
}

int32_t Clamp32(int64_t v) { return int32_t(std::clamp<int64_t>(v, INT32_MIN, INT32_MAX)); }

}  // namespace

OpticalView LayOutOpticalView(const OpticalImageDesc& opt, int clientHeight, int zoom, int frame) {
  OpticalView v;
  v.AvailableHeight = clientHeight - 10;
  v.DrawnHeight = std::max(zoom, 1) * (v.AvailableHeight - 2 * frame);
  v.DrawnWidth = opt.Height > 0 ? Clamp32(int64_t(opt.Width) * v.DrawnHeight / opt.Height) : 0;
  v.WindowWidth = v.DrawnWidth + 2 * frame;
  v.WindowX = v.WindowWidth + 50;
  v.WindowHeight = v.AvailableHeight;
  if (opt.Height > 1) {
    const double scale = double(v.AvailableHeight) / double(opt.Height - 1);
    v.Focus = {FloorInt(opt.CropLeft * scale), FloorInt(opt.CropTop * scale), FloorInt(opt.CropRight * scale),
               FloorInt(opt.CropBottom * scale)};
  }
  return v;
}

RadiographView LayOutRadiographView(const RadiographDesc& rad, int clientHeight, int dialogLeft, int edge) {
  RadiographView v;
  v.DrawnHeight = clientHeight - 10;
  v.ViewScale = v.DrawnHeight > 0 ? float(rad.Height) / float(v.DrawnHeight) : 0.0f;
  v.DrawnWidth = Clamp32(2 * int64_t(rad.Width));
  v.WindowX = Clamp32(int64_t(dialogLeft) - v.DrawnWidth - 25);
  v.WindowWidth = v.DrawnWidth + 2 * edge;
  v.WindowHeight = v.DrawnHeight + 2 * edge;
  v.ViewRect = {0, 0, v.DrawnWidth - 1, v.DrawnHeight - 1};
  return v;
}

int32_t ColumnAt(const RadiographDesc& rad, int x) {
  if (rad.ViewRect.Right == 0) return 0;
  return Clamp32(int64_t(rad.Width) * x / rad.ViewRect.Right);
}

IntRect EditRectOfRegion(const RadiographDesc& rad, int k) {
  const RadiographRegion& r = rad.Regions[k];
  if (r.X2 < 1 || rad.Width < 1 || !(rad.ViewScale > 0)) return {};
  const int64_t right = rad.ViewRect.Right;
  return {Clamp32(int64_t(r.X1) * right / rad.Width), FloorInt(r.Y1 / double(rad.ViewScale)),
          Clamp32(int64_t(r.X2) * right / rad.Width), FloorInt(r.Y2 / double(rad.ViewScale))};
}

IntRect DataRegionMarker(const RadiographDesc& rad, int32_t left, int32_t right) {
  if (rad.Width < 1) return {};
  const int64_t r = rad.ViewRect.Right;
  return {Clamp32(int64_t(left) * r / rad.Width), rad.ViewRect.Top, Clamp32(int64_t(right) * r / rad.Width),
          rad.ViewRect.Bottom};
}

IntRect StartRegionRect(int x, int y) { return {x <= 2 ? 0 : x - 2, y < 3 ? 0 : y - 2, std::max(x, 1), y}; }

int HitRegionEdges(const IntRect& edit, int x, int y) {
  const int64_t dx = std::min<int64_t>(5, (int64_t(edit.Right) - edit.Left) / 2);
  const int64_t dy = std::min<int64_t>(5, (int64_t(edit.Bottom) - edit.Top) / 2);
  const bool inOuter = x >= int64_t(edit.Left) - 5 && x < int64_t(edit.Right) + 5 && y >= int64_t(edit.Top) - 5 &&
                       y < int64_t(edit.Bottom) + 5;
  if (!inOuter) return 0;
  int edges = 0;
  if (x <= edit.Left + dx)
    edges |= kEdgeLeft;
  else if (x >= edit.Right - dx)
    edges |= kEdgeRight;
  if (y <= edit.Top + dy)
    edges |= kEdgeTop;
  else if (y >= edit.Bottom - dy)
    edges |= kEdgeBottom;
  return edges;
}

void MoveRegionEdges(IntRect& edit, int edges, int x, int y) {
  if (edges & kEdgeLeft) edit.Left = x;
  if (edges & kEdgeRight) edit.Right = x;
  if (edges & kEdgeTop) edit.Top = y;
  if (edges & kEdgeBottom) edit.Bottom = y;
}

bool CommitRegion(RadiographDesc& rad, int k, const IntRect& edit) {
  if (rad.ViewRect.Right == 0) return false;
  const int64_t right = rad.ViewRect.Right;
  int64_t x1 = int64_t(rad.Width) * edit.Left / right;
  int64_t x2 = int64_t(rad.Width) * edit.Right / right;
  int64_t y1 = FloorInt(edit.Top * double(rad.ViewScale));
  int64_t y2 = FloorInt(edit.Bottom * double(rad.ViewScale));
  y2 = std::min<int64_t>(y2, rad.Height);
  x2 = std::min<int64_t>(x2, rad.Width);
  x1 = std::max<int64_t>(x1, 0);
  y1 = std::max<int64_t>(y1, 0);
  RadiographRegion& r = rad.Regions[k];
  r.X1 = Clamp32(x1);
  r.X2 = Clamp32(x2);
  r.Y1 = Clamp32(y1);
  r.Y2 = Clamp32(y2);
  return x2 >= 1;
}

}  // namespace sedra
