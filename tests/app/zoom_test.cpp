#include <gtest/gtest.h>

#include <tuple>

#include "app/zoom.h"

namespace sedra {
namespace {

// Line and page steps down, a line up and the top are the main window's scrolling test's.
TEST(ScrollTarget, StepsAndKeptOddities) {
  struct Row {
    const char* what;
    ScrollCode code;
    int pos, h, min, max, thumb;
    int want;
  } rows[] = {
      {"page up", ScrollCode::PageUp, 300, 600, 0, 600, 0, 101},
      {"page down stops at the range end", ScrollCode::PageDown, 500, 600, 0, 600, 0, 600},
      {"thumb", ScrollCode::ThumbTrack, 100, 600, 0, 1800, 1234, 1234},
      {"thumb position", ScrollCode::ThumbPosition, 100, 600, 0, 1800, 50, 50},
      // Bottom goes to the client height, not to the range's end.
      {"bottom goes to h", ScrollCode::Bottom, 100, 600, 0, 1800, 0, 600},
      // The lower bound is tested on n + pos: from 30, a page up to -169 passes
      // because -169 + 30 is below 0 ... and lands on the minimum.
      {"page up near the top", ScrollCode::PageUp, 30, 600, 0, 600, 0, 0},
      // ... but from 150, n = -49 and n + pos = 101 is not below 0: the position goes negative.
      {"lower bound tested on n + pos", ScrollCode::PageUp, 150, 600, 0, 600, 0, -49},
      {"end scroll does nothing", ScrollCode::EndScroll, 42, 600, 0, 600, 0, 42},
  };
  for (const Row& r : rows)
    EXPECT_EQ(ScrollTarget(r.code, r.pos, r.h, r.min, r.max, r.thumb), r.want) << r.what;
}

TEST(ZoomScroll, RangeAndPositionFollowTheFactor) {
  struct Row {
    int oldFactor, newFactor, viewTop, h;
    bool bar;
    int rangeMax, pos, viewTopAfter;
  } rows[] = {
      {1, 2, 0, 600, true, 600, 0, 0},          // 100% to 200% in 600 px: 0..600
      {0, 4, 0, 700, true, 2100, 0, 0},         // an old factor of 0 counts as 1
      {2, 4, 600, 600, true, 1800, 900, 1200},  // 4 * (600 - 600*2/8) / 2
      {4, 2, 1200, 600, true, 600, 300, 600},
      {2, 1, 600, 600, false, 0, 0, 600},
      {1, 32, 10, 700, true, 21700, 0, 320},
  };
  for (const Row& r : rows) {
    const ZoomScroll z = ZoomScrollFor(r.oldFactor, r.newFactor, r.viewTop, r.h);
    EXPECT_EQ(std::tuple(z.ShowBar, z.RangeMax, z.Position, z.ViewTop),
              std::tuple(r.bar, r.rangeMax, r.pos, r.viewTopAfter))
        << r.oldFactor << " to " << r.newFactor;
  }
}

}  // namespace
}  // namespace sedra
