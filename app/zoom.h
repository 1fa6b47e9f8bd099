#pragma once
// Zoom and scroll arithmetic, kept apart from the widgets so every rule can be checked.

#include <cstdint>

namespace sedra {

// The scroll requests of the vertical scroll bar and the scroll keys.
enum class ScrollCode { LineUp, LineDown, PageUp, PageDown, ThumbPosition, ThumbTrack, Top, Bottom, EndScroll };

// New position after a scroll request.  The lower bound is tested on n + pos and
// Bottom goes to the client height rather than to the range's end: both are how the
// program has always scrolled, and users' habits depend on them.
int ScrollTarget(ScrollCode code, int pos, int clientHeight, int rangeMin, int rangeMax, int thumb);

// Factor of a zoom command (4031..4034, 4103, 4106, 4089), 0 for another id.
int ZoomFactorFor(int commandId);

struct ZoomScroll {
  bool ShowBar = false;
  int RangeMax = 0;
  int Position = 0;
  int ViewTop = 0;
};
// Scroll bar set-up after a zoom change from oldFactor (0 is taken as 1) to newFactor.
ZoomScroll ZoomScrollFor(int oldFactor, int newFactor, int viewTop, int clientHeight);

}  // namespace sedra
