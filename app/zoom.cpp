#include "app/zoom.h"

#include "model/menu_state.h"

namespace sedra {

int ScrollTarget(ScrollCode code, int pos, int h, int rangeMin, int rangeMax, int thumb) {
  int d = 0;
  switch (code) {
    case ScrollCode::LineUp: d = 1 - h / 16; break;
    case ScrollCode::LineDown: d = h / 16 + 1; break;
    case ScrollCode::PageUp: d = 1 - h / 3; break;
    case ScrollCode::PageDown: d = h / 3 + 1; break;
    case ScrollCode::ThumbPosition:
    case ScrollCode::ThumbTrack: d = thumb - pos; break;
    case ScrollCode::Top: d = -pos; break;
    case ScrollCode::Bottom: d = h - pos; break;
    case ScrollCode::EndScroll: d = 0; break;
  }
  int n = pos + d;
  if (n + pos < rangeMin)
    n = rangeMin;
  else if (n > rangeMax)
    n = rangeMax;
  return n;
}

int ZoomFactorFor(int id) {
  switch (id) {
    case kCmdZoom100:
    case kCmdExpand: return 1;
    case kCmdZoom200: return 2;
    case kCmdZoom400: return 4;
    case kCmdZoom800: return 8;
    case kCmdZoom1600: return 16;
    case kCmdZoom3200: return 32;
    default: return 0;
  }
}

ZoomScroll ZoomScrollFor(int oldFactor, int newFactor, int viewTop, int h) {
  ZoomScroll z;
  z.ViewTop = viewTop;
  if (newFactor < 2) return z;
  const int old = oldFactor == 0 ? 1 : oldFactor;
  z.ShowBar = true;
  z.RangeMax = (newFactor - 1) * h;
  const int64_t pos = int64_t(newFactor) * (viewTop - int64_t(h) * old / (int64_t(2) * newFactor)) / old;
  z.Position = pos < 0 ? 0 : int(pos);
  z.ViewTop = int(int64_t(newFactor) * viewTop / old);
  return z;
}

}  // namespace sedra
