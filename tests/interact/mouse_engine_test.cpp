// The mouse handlers on a painted section: what each mode does with each place on the
// plot, the depths read out at every zoom, the drags and what a release commits.
#include <gtest/gtest.h>

#include <cstring>

#include "interact/mouse_engine.h"
#include "painted_section.h"

namespace sedra {
namespace {

using Modes = std::vector<uint32_t PlotState::*>;

// The painted section of painted_section.h and the gestures on it.
struct Painted {
  Model M;
  PlotLayout L;
  explicit Painted(int zoom = 1, int scroll = 0) : L(test::LoadAndPaint(M, zoom, scroll)) {}
  void Arm(const Modes& modes, IntRect band = {100, 200, 900, 400}) {
    for (auto mode : modes) M.Plot().*mode = 1;
    M.Plot().Tracking = 1;
    M.Plot().TrackRect = band;
  }
  MouseOutcome Down(int x, int y) { return OnLButtonDown(M, L, {x, y, 0, false}); }
  MouseOutcome Drag(int x, int y, bool down = true) { return OnMouseMove(M, L, {x, y, 0, down}); }
  IntRect Band() const { return M.Plot().TrackRect; }
  // Each row of a table starts from the state as painted.
  void Reset(const PlotState& painted) { M.Plot() = painted; }
};

bool Same(const IntRect& a, const IntRect& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

TEST(MouseEngine, EachModeGivesEachPlaceNearTheBandItsCursor) {
  // The band is x 100..900, y 200..400.  Places: just inside the bottom, the top and the
  // right edge, the middle, 15 px left of the band, far below it.  V = up-down sizing,
  // H = left-right sizing, A = arrow.
  const int places[][2] = {{500, 397}, {500, 203}, {897, 300}, {500, 300}, {85, 300}, {500, 600}};
  const struct {
    const char* name;
    Modes modes;
    const char* cursors;
  } rows[] = {
      {"horizontal region", {&PlotState::HRegionMode}, "VVHAAA"},
      {"point deletion", {&PlotState::DeleteMode}, "VVHAAA"},
      {"horizontal line", {&PlotState::HLineMode}, "VVVVVA"},
      {"vertical line", {&PlotState::VLineMode}, "HHHHHH"},
      {"optical band at 100%: thirds", {&PlotState::OpticalPosMode, &PlotState::ImageSizeMode}, "VVAAAA"},
      {"radiograph size", {&PlotState::ImageSizeMode}, "VVHAAA"},
      {"title being dragged", {&PlotState::TitleDrag}, "AAAAAA"},
  };
  Painted t;
  const PlotState painted = t.M.Plot();
  for (const auto& row : rows) {
    for (size_t p = 0; p < 6; ++p) {
      SCOPED_TRACE(std::string(row.name) + " at place " + std::to_string(p));
      t.Reset(painted);
      t.Arm(row.modes);
      const MouseOutcome out = t.Drag(places[p][0], places[p][1], false);
      ASSERT_TRUE(out.SetsCursor);
      const char got = out.Cursor == Qt::SizeVerCursor ? 'V' : out.Cursor == Qt::SizeHorCursor ? 'H' : 'A';
      EXPECT_EQ(got, row.cursors[p]);
      EXPECT_TRUE(out.Damage.empty()) << "nothing moves without the button";
    }
  }
  t.Reset(painted);
  EXPECT_EQ(t.Drag(500, 300, true).Cursor, Qt::ArrowCursor) << "no tracking: always the arrow";
}

TEST(MouseEngine, AClickWithNothingArmedPicksWhatLiesUnderIt) {
  Painted t;
  const PlotState painted = t.M.Plot();
  const IntRect rad = t.M.CurRadiograph().DestRect;
  const int mid = 350, data = t.L.ColumnLeft + 20;
  const struct {
    const char* name;
    Modes modes;
    int x, y;
    uint32_t PlotState::*drag;  // the drag started, or none
    bool popup;
  } rows[] = {
      {"the radiograph column", {}, (rad.Left + rad.Right) / 2, mid, &PlotState::RadMoveMode, false},
      {"the data area", {}, data, mid, nullptr, true},
      {"above the plot", {}, data, 38, nullptr, false},
      {"below the plot", {}, data, 643, nullptr, false},
      {"the main title (placed there)", {}, 130, 52, &PlotState::TitleDrag, false},
      {"anywhere, main title tool open", {&PlotState::MainTitleMode}, data, mid, &PlotState::TitleDrag, false},
      {"anywhere, section title tool open", {&PlotState::SectionTitleMode}, data, mid, &PlotState::HeaderDrag, false},
      {"anywhere, text tool open", {&PlotState::TextFieldMode}, data, mid, &PlotState::TextDrag, false},
      {"the radiograph with all sections shown", {&PlotState::ShowAllSections}, (rad.Left + rad.Right) / 2, mid,
       nullptr, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    t.Reset(painted);
    PlotState& p = t.M.Plot();
    p.MainTitleRect = {176, 3, 274, 11};  // layout units: x 118..155, y 44..60
    for (auto mode : row.modes) p.*mode = 1;
    const MouseOutcome out = t.Down(row.x, row.y);
    EXPECT_EQ(p.LastClickY, row.y);
    EXPECT_EQ(out.Opens == MouseOpens::ValuePopup, row.popup);
    EXPECT_EQ(p.ValuePopupOpen, row.popup ? 1u : 0u);
    EXPECT_EQ(p.Tracking, row.drag ? 1u : 0u);
    if (row.drag) {
      EXPECT_EQ(p.*row.drag, 1u);
    }
    EXPECT_EQ(p.TrackRect.Right >= 1, row.drag != nullptr);
  }
  t.Reset(painted);
  t.M.Plot().MainTitleRect = {176, 3, 274, 11};
  t.Down(130, 52);
  EXPECT_TRUE(Same(t.Band(), {118, 44, 155, 60})) << "the title's box";
}

TEST(MouseEngine, DoubleClicksOpenTheColumnScaleOrTheImageContrast) {
  Painted t;
  const PlotLayout& l = t.L;
  const int header = l.TopMargin - l.CharHeight / 2;
  const IntRect rad = t.M.CurRadiograph().DestRect, optical = t.M.CurOptical().DrawnRect;
  const struct {
    int x, y;
    MouseOpens opens;
    int column;  // CurColumn afterwards, -1: untouched
  } rows[] = {
      {l.ColumnLeft + 10, header, MouseOpens::YScale, 0},
      {l.ColumnLeft, header, MouseOpens::Nothing, 1},                    // on the boundary
      {l.ColumnLeft + l.ColumnWidth + 5, header, MouseOpens::Nothing, 1},  // one column only
      {(rad.Left + rad.Right) / 2, 300, MouseOpens::RadiographContrast, -1},
      {(optical.Left + optical.Right) / 2, 300, MouseOpens::OpticalContrast, -1},
      {(optical.Left + optical.Right) / 2, l.TopMargin, MouseOpens::Nothing, -1},
      {l.ColumnLeft + 10, 300, MouseOpens::Nothing, -1},
  };
  for (const auto& row : rows) {
    t.M.Plot().CurColumn = -1;
    EXPECT_EQ(OnLButtonDblClk(t.M, l, {row.x, row.y, 0, false}).Opens, row.opens) << row.x << "," << row.y;
    EXPECT_EQ(t.M.Plot().CurColumn, row.column);
  }
}

TEST(MouseEngine, RowsReadAsWholeMillimetresAtEveryZoomAndScroll) {
  // A hand-made layout: plot top at 34, 300 mm over 666 rows per zoom step, the section
  // labelled from 1000 mm.
  Model m;
  m.CurSection().StartLabelDepth = 1000;
  PlotLayout l;
  l.TopMargin = 34;
  l.DepthSpan = 300;
  const struct {
    int zoom, scroll, clientY;
    bool expanded;
    int depth;
  } rows[] = {
      {1, 500, 34, false, 1000},     // the scroll position counts only when zoomed
      {1, 0, 700, false, 1300},
      {1, 0, 35, false, 1000},       // 0.45 mm
      {1, 0, 36, false, 1001},       // 0.90 mm
      {2, 0, 367, false, 1075},      // 333 rows of 1332: 75 mm
      {2, 666, 367, false, 1225},
      {8, 2000, 10, false, 1111},    // row 2010: 1976 rows of 5328 = 111.26 mm
      {32, 21000, 300, false, 1299},  // row 21300 of 21312: 299.35 mm
      {1, 0, 700, true, 1312},       // the expanded offset 12.4 counts as 12
  };
  for (const auto& r : rows) {
    m.Plot().ZoomFactor = r.zoom;
    m.Plot().Expanded = r.expanded;
    m.Plot().ExpandTop = 12.4f;
    l.PlotHeight = 666 * r.zoom;
    const int y = DocumentY(m, r.clientY, r.scroll);
    EXPECT_EQ(DepthAtRow(m, l, y, true), r.depth) << "zoom " << r.zoom << " row " << r.clientY;
    EXPECT_EQ(DepthAtRow(m, l, y, false), r.depth - (r.expanded ? 12 : 0));
  }
}

TEST(MouseEngine, DragsMoveTheBandAndWriteItsDepths) {
  struct Step {
    int x, y;
    bool down;  // false: the button-down that starts it
  };
  const struct {
    const char* name;
    Modes modes;
    IntRect band;
    std::vector<Step> steps;
    IntRect expected;
    std::vector<std::pair<int, std::string>> lastWrites;
  } rows[] = {
      // Depths: nearest((y - 38) x 300 / 605) + 1000.
      {"first click places a region", {&PlotState::HRegionMode}, {}, {{300, 334, false}},
       {0, 333, 0, 335}, {{1476, "1146"}, {1478, "1147"}}},
      {"a placed band ignores clicks", {&PlotState::HRegionMode}, {100, 200, 900, 400}, {{300, 500, false}},
       {100, 200, 900, 400}, {}},
      {"region bottom dragged", {&PlotState::HRegionMode}, {100, 200, 900, 400}, {{500, 398, true}, {500, 415, true}},
       {100, 200, 900, 415}, {{1476, "1080"}, {1478, "1187"}}},
      {"horizontal line follows", {&PlotState::HLineMode}, {100, 200, 900, 202}, {{500, 210, true}},
       {100, 209, 900, 211}, {{1478, "1085"}}},
      {"vertical line follows", {&PlotState::VLineMode}, {498, 38, 502, 643}, {{510, 300, true}},
       {509, 38, 511, 643}, {}},
      {"vertical region's left edge", {&PlotState::VLineMode, &PlotState::VRegionMode}, {400, 38, 600, 643},
       {{402, 300, true}, {385, 300, true}}, {385, 38, 600, 643}, {}},
      {"radiograph size: the top moves the band", {&PlotState::ImageSizeMode}, {100, 200, 300, 400},
       {{150, 202, true}, {150, 205, true}}, {100, 205, 300, 405}, {}},
      {"radiograph size: the right edge", {&PlotState::ImageSizeMode}, {100, 200, 300, 400}, {{298, 300, true}},
       {100, 200, 298, 400}, {}},
      {"optical band: the top third moves it", {&PlotState::OpticalPosMode}, {100, 200, 300, 400},
       {{150, 210, false}, {150, 230, true}}, {100, 220, 300, 420}, {{1476, "1090"}, {1478, "1189"}}},
  };
  Painted t;
  const PlotState painted = t.M.Plot();
  t.M.CurSection().StartLabelDepth = 1000;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    t.Reset(painted);
    t.Arm(row.modes, row.band);
    t.M.Plot().LastMouseX = row.steps[0].x;
    t.M.Plot().LastMouseY = row.steps[0].y;
    MouseOutcome out;
    for (const Step& s : row.steps) out = s.down ? t.Drag(s.x, s.y) : t.Down(s.x, s.y);
    IntRect expected = row.expected;
    if (expected.Right == 0 && expected.Bottom != 0) expected.Left = 51, expected.Right = 988;  // full width
    EXPECT_TRUE(Same(t.Band(), expected)) << t.Band().Left << " " << t.Band().Top << " " << t.Band().Right << " "
                                          << t.Band().Bottom;
    ASSERT_EQ(out.Writes.size(), row.lastWrites.size());
    for (size_t i = 0; i < out.Writes.size(); ++i) {
      EXPECT_EQ(out.Writes[i].Id, row.lastWrites[i].first);
      EXPECT_EQ(out.Writes[i].Text, row.lastWrites[i].second);
    }
    EXPECT_EQ(out.TrackChanged, !out.Writes.empty());
  }
}

TEST(MouseEngine, ADragRepaintsOnlyTheOldAndNewOutlines) {
  Painted t(8, 2000);
  t.Arm({&PlotState::HRegionMode}, {100, 2100, 900, 2400});
  t.M.Plot().LastMouseY = 2398;
  const MouseOutcome out = OnMouseMove(t.M, t.L, {500, 410, 2000, true});  // row 2410
  QRegion damage;
  for (const QRect& r : out.Damage) damage += r;
  EXPECT_TRUE(damage.contains(QRect(100, 399, 800, 1))) << "the old bottom edge, client rows";
  EXPECT_TRUE(damage.contains(QRect(100, 409, 800, 1))) << "the new one";
  EXPECT_TRUE(damage.contains(QRect(899, 100, 1, 300)));
  EXPECT_FALSE(damage.contains(QPoint(500, 300))) << "not the inside";
}

TEST(MouseEngine, ReleasesCommitWhatWasDragged) {
  Painted t;
  PlotState& p = t.M.Plot();
  // A title dragged while scrolled jumps by the scroll position at every move (kept).
  p.ZoomFactor = 2;
  p.MainTitleRect = {176, 3, 274, 11};
  t.Down(130, 52);
  OnMouseMove(t.M, t.L, {140, 52, 100, false});  // the button went up outside: no redraw
  EXPECT_TRUE(OnMouseMove(t.M, t.L, {140, 52, 100, false}).Damage.empty());
  EXPECT_TRUE(Same(t.Band(), {128, -56, 165, -40}));
  EXPECT_TRUE(OnLButtonUp(t.M, t.L, {}).RepaintAll);
  EXPECT_EQ(p.MainTitleRect.Left, 203);  // 77 px of 114 are 202.6 units
  EXPECT_EQ(p.MainTitleRect.Right, 213);
  EXPECT_EQ(p.MainTitleRect.Top, -47);  // -94 rows of 605 are -46.6 units
  EXPECT_EQ(p.Tracking + p.TitleDrag + uint32_t(p.TrackRect.Right), 0u);

  // The radiograph's size: band height against the optical image's, offset at 100%.
  t.Arm({&PlotState::ImageSizeMode}, {200, 100, 260, 400});
  EXPECT_TRUE(OnLButtonUp(t.M, t.L, {}).RepaintAll);
  EXPECT_FLOAT_EQ(t.M.CurRadiograph().HeightScale, 300.0f / 605.0f);
  EXPECT_EQ(t.M.CurRadiograph().TopOffset, 31);
  EXPECT_EQ(p.RadiographWidth, 60);
  EXPECT_EQ(p.Tracking, 1u) << "the size tool ends the tracking";

  // The radiograph (x 110..135) moved sideways is drawn once more where it was dropped.
  p.ImageSizeMode = p.Tracking = 0;
  p.ZoomFactor = 1;
  t.Down(114, 300);
  t.Drag(150, 300);
  OnLButtonUp(t.M, t.L, {});
  EXPECT_TRUE(Same(p.RadPlacement, {138, 38, 162, 643}));
  EXPECT_EQ(p.RadMoved, 1u);
  EXPECT_EQ(p.Tracking + p.RadMoveMode + uint32_t(p.TrackRect.Right), 0u);
}

}  // namespace
}  // namespace sedra
