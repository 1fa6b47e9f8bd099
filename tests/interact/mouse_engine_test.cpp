// The mouse handlers on the painted section of painted_section.h: what each mode does
// with each place on the plot, the depths read out at every zoom, drags and commits.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "interact/mouse_engine.h"
#include "painted_section.h"

namespace sedra {
namespace {

using Modes = std::vector<uint32_t PlotState::*>;

// Plays a gesture: d press, D double click, m move, M move with the button held, u release;
// each followed by x,y.  Returns the last outcome with the writes of all steps.
MouseOutcome Play(Model& m, const PlotLayout& l, const char* script, int scroll = 0) {
  MouseOutcome last;
  std::vector<ControlText> writes;
  for (const char* p = script; *p;) {
    const char op = *p++;
    char* end = nullptr;
    const int x = int(std::strtol(p, &end, 10));
    const int y = int(std::strtol(end + 1, &end, 10));
    p = end + (*end == ' ');
    const MouseInput in{x, y, scroll, op == 'M'};
    last = op == 'd' ? OnLButtonDown(m, l, in) : op == 'D' ? OnLButtonDblClk(m, l, in)
         : op == 'u' ? OnLButtonUp(m, l, in) : OnMouseMove(m, l, in);
    writes.insert(writes.end(), last.Writes.begin(), last.Writes.end());
  }
  last.Writes = writes;
  return last;
}

struct Painted : test::PaintedHost {
  PlotState Start;
  Painted() {
    M.Plot().MainTitleRect = {176, 3, 274, 11};  // layout units: x 118..155, y 44..60
    Start = M.Plot();
  }
  // A band placed by a tool (tracking armed), or none.
  void Arm(const Modes& modes, const IntRect& band) {
    M.Plot() = Start;  // every row starts from the state as painted
    for (auto mode : modes) M.Plot().*mode = 1;
    if (band.Right != 0) M.Plot().Tracking = 1;
    M.Plot().TrackRect = band;
  }
};

TEST(MouseEngine, EachModeGivesEachPlaceNearTheBandItsCursor) {
  // The band is x 100..900, y 200..400.  Places: just inside the bottom, the top and the
  // right edge, the middle, 15 px left of the band, far below it.  V up-down, H left-right.
  const int places[][2] = {{500, 397}, {500, 203}, {897, 300}, {500, 300}, {85, 300}, {500, 600}};
  const struct {
    Modes modes;
    const char* cursors;
  } rows[] = {
      {{&PlotState::HRegionMode}, "VVHAAA"},  {{&PlotState::DeleteMode}, "VVHAAA"},
      {{&PlotState::HLineMode}, "VVVVVA"},    {{&PlotState::VLineMode}, "HHHHHH"},
      {{&PlotState::ImageSizeMode}, "VVHAAA"}, {{&PlotState::TitleDrag}, "AAAAAA"},
      {{&PlotState::OpticalPosMode, &PlotState::ImageSizeMode}, "VVAAAA"},  // thirds at 100%
  };
  Painted t;
  for (const auto& row : rows) {
    for (size_t p = 0; p < 6; ++p) {
      t.Arm(row.modes, {100, 200, 900, 400});
      const MouseOutcome out = OnMouseMove(t.M, t.L, {places[p][0], places[p][1], 0, false});
      const char got = out.Cursor == Qt::SizeVerCursor ? 'V' : out.Cursor == Qt::SizeHorCursor ? 'H' : 'A';
      EXPECT_TRUE(out.SetsCursor && got == row.cursors[p] && out.Damage.empty()) << row.cursors << " place " << p;
    }
  }
  t.Arm({}, {});
  EXPECT_EQ(OnMouseMove(t.M, t.L, {500, 300, 0, true}).Cursor, Qt::ArrowCursor) << "nothing armed: the arrow";
}

std::string Text(const IntRect& r) {
  return QString("%1 %2 %3 %4").arg(r.Left).arg(r.Top).arg(r.Right).arg(r.Bottom).toStdString();
}

constexpr auto HR = &PlotState::HRegionMode, HL = &PlotState::HLineMode, VL = &PlotState::VLineMode,
               VR = &PlotState::VRegionMode, IS = &PlotState::ImageSizeMode, OP = &PlotState::OpticalPosMode,
               TR = &PlotState::Tracking;
using O = MouseOpens;

TEST(MouseEngine, GesturesPickPlaceDragAndCommit) {
  const IntRect none{}, band{100, 200, 900, 400}, small{100, 200, 300, 400};
  // The radiograph is drawn at x 110..135, the optical image at 63..98, the data area
  // from 165; depths are nearest((y - 38) x 300 / 605) + 1000.  After the gesture the
  // band (T), the main title's place (M) or the radiograph's (R) is checked.
  const struct {
    const char* name;
    Modes modes;
    IntRect band;
    const char* gesture;
    char field;
    const char *after, *writes;
    MouseOpens opens = O::Nothing;
    uint32_t PlotState::*flag = nullptr;  // set afterwards
  } rows[] = {
      {"press on the radiograph", {}, none, "d120,300", 'T', "110 38 135 643", "", O::Nothing, &PlotState::RadMoveMode},
      {"press in the data area", {}, none, "d185,350", 'T', "0 0 0 0", "", O::ValuePopup, &PlotState::ValuePopupOpen},
      {"press on the plot's top edge", {}, none, "d185,38", 'T', "0 0 0 0", "", O::Nothing, {}},
      {"press on its bottom edge", {}, none, "d185,643", 'T', "0 0 0 0", "", O::Nothing, {}},
      {"press on the main title", {}, none, "d130,52", 'T', "118 44 155 60", "", O::Nothing, &PlotState::TitleDrag},
      {"title tool", {&PlotState::MainTitleMode}, none, "d185,350", 'T', "185 333 222 350", "", O::Nothing,
       &PlotState::TitleDrag},
      {"section title tool", {&PlotState::SectionTitleMode}, none, "d185,350", 0, "", "", O::Nothing,
       &PlotState::HeaderDrag},
      {"text tool", {&PlotState::TextFieldMode}, none, "d185,350", 0, "", "", O::Nothing, &PlotState::TextDrag},
      {"all sections: no radiograph move", {&PlotState::ShowAllSections}, none, "d120,300", 0, "", "", O::ValuePopup},
      {"double click on the column header", {}, none, "D175,30", 0, "", "", O::YScale},
      {"... on the column's edge", {}, none, "D165,30", 0, "", "", O::Nothing},
      {"... on the radiograph", {}, none, "D120,300", 0, "", "", O::RadiographContrast},
      {"... on the optical image", {}, none, "D80,300", 0, "", "", O::OpticalContrast},
      {"first click places a region", {HR, TR}, none, "d300,334", 'T', "51 333 988 335", "1476=1146 1478=1147"},
      {"a placed band ignores clicks", {HR}, band, "d300,500", 'T', "100 200 900 400", ""},
      {"region bottom dragged", {HR}, band, "M500,398 M500,415", 'T', "100 200 900 415",
       "1476=1080 1478=1179 1476=1080 1478=1187"},
      {"a jump beyond reach leaves it", {HR}, band, "M500,421", 'T', "100 200 900 400", ""},
      {"line follows", {HL}, {100, 200, 900, 202}, "M500,210", 'T', "100 209 900 211", "1478=1085"},
      {"vertical line placed", {VL, TR}, none, "d510,300", 'T', "509 38 511 643", ""},
      {"vertical region's left edge", {VL, VR}, {400, 38, 600, 643}, "M402,300 M385,300", 'T', "385 38 600 643", ""},
      {"radiograph size: top moves it", {IS}, small, "M150,202 M150,205", 'T', "100 205 300 405", ""},
      {"radiograph size: right edge", {IS}, small, "M298,300", 'T', "100 200 298 400", ""},
      {"optical: top third moves", {OP}, small, "d150,210 M150,230", 'T', "100 220 300 420", "1476=1090 1478=1189"},
      {"optical: bottom third sizes", {OP}, small, "d150,390 M150,395", 'T', "100 200 300 405", "1476=1080 1478=1182"},
      {"title dropped", {}, none, "d130,52 M140,62 u0,0", 'M', "203 8 213 11", ""},  // x 128: 203 units, row 54: 8
      {"radiograph dropped", {}, none, "d114,300 M150,300 u0,0", 'R', "138 38 162 643", "", O::Nothing,
       &PlotState::RadMoved},
  };
  Painted t;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    t.Arm(row.modes, row.band);
    t.M.Plot().LastMouseX = 500, t.M.Plot().LastMouseY = row.band.Bottom - 2;
    const MouseOutcome out = Play(t.M, t.L, row.gesture);
    const PlotState& p = t.M.Plot();
    const IntRect& field = row.field == 'T' ? p.TrackRect : row.field == 'M' ? p.MainTitleRect : p.RadPlacement;
    EXPECT_EQ(row.field ? Text(field) : "", row.after);
    std::string writes;
    for (const ControlText& w : out.Writes) writes += (writes.empty() ? "" : " ") + std::to_string(w.Id) + "=" + w.Text;
    EXPECT_EQ(writes, row.writes);
    EXPECT_EQ(out.Opens, row.opens);
    EXPECT_TRUE(!row.flag || p.*row.flag);
    // A drag repaints the outlines of the old and the new band, not what lies inside.
    const IntRect& a = p.TrackRect;
    if (row.field == 'T' && std::strchr(row.gesture, 'M') && a.Bottom - a.Top > 4) {
      EXPECT_EQ(out.Damage.empty(), Text(a) == Text(row.band));
      for (const QRect& r : out.Damage) EXPECT_FALSE(r.contains((a.Left + a.Right) / 2, (a.Top + a.Bottom) / 2));
    }
  }
}

TEST(MouseEngine, RowsReadAsWholeMillimetresAtEveryZoomAndScroll) {
  // A hand-made layout: plot top at 34, 300 mm over 666 rows per zoom step, labelled from 1000 mm.
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
      {1, 500, 34, false, 1000},  // the scroll position counts only when zoomed
      {1, 0, 700, false, 1300},  {1, 0, 35, false, 1000},  {1, 0, 36, false, 1001},  // 0.45 and 0.90 mm
      {2, 0, 367, false, 1075},  {2, 666, 367, false, 1225},
      {8, 2000, 10, false, 1111},    // row 2010: 1976 rows of 5328 are 111.26 mm
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

// At 200%: a title dragged out of the window follows without a redraw, and while
// scrolled each move takes it up by the scroll position (kept); the radiograph's size is
// committed on every release.
TEST(MouseEngine, ZoomedTitleDragsFollowTheScrollAndSizesCommitOnRelease) {
  Painted t;
  t.M.Plot().ZoomFactor = 2;
  Play(t.M, t.L, "d130,52", 0);
  EXPECT_TRUE(Play(t.M, t.L, "m140,52 m140,52", 100).Damage.empty());
  EXPECT_EQ(Text(t.M.Plot().TrackRect), "128 -56 165 -40");

  t.Arm({&PlotState::ImageSizeMode}, {200, 100, 260, 400});
  t.M.Plot().ZoomFactor = 2;
  EXPECT_TRUE(Play(t.M, t.L, "u0,0").RepaintAll);
  EXPECT_FLOAT_EQ(t.M.CurRadiograph().HeightScale, 300.0f / 605.0f) << "against the optical image's 605 rows";
  EXPECT_EQ(t.M.CurRadiograph().TopOffset, 31) << "(100 - 38) / 2: rows at 100%";
  EXPECT_EQ(t.M.Plot().RadiographWidth, 60);
  EXPECT_EQ(t.M.Plot().Tracking, 1u) << "the size tool ends the tracking";
}

}  // namespace
}  // namespace sedra
