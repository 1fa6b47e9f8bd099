// Point deletion, the column's Y scale and the value read-out on the painted section of
// painted_section.h (1500 points of 0.2 mm labelled from 1000 mm).
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <tuple>

#include "interact/data_dialogs.h"
#include "interact/value_popup.h"
#include "model/messages.h"
#include "painted_section.h"

namespace sedra {
namespace {

using Host = test::PaintedHost;

TEST(PointDeletion, MarksMapAndRestoreTheMask) {
  const float rows[][3] = {
      // before, deleting (1) or restoring (0), after
      {1, 1, -2}, {37.5f, 1, -2}, {0, 1, -1}, {-2, 1, -2}, {-1, 1, -1},
      {-2, 0, 1}, {-1, 0, 0},     {-7, 0, 0}, {0.5f, 0, 0.5f}, {0, 0, 0},
  };
  CoreSection s{};
  s.PointCount = 3;
  s.Depth[0] = 9.8f, s.Depth[1] = 10.0f, s.Depth[2] = 20.0f;
  for (const auto& r : rows) {
    std::fill(s.Data[0], s.Data[0] + 3, r[0]);
    const int changed = MarkPoints(s, 10.0, 20.0, r[1] != 0);
    EXPECT_EQ(s.Data[0][0], r[0]) << "outside the band";
    EXPECT_EQ(s.Data[0][1], r[2]) << r[0] << (r[1] != 0 ? " deleted" : " restored");
    EXPECT_EQ(s.Data[0][2], r[2]) << "both ends belong to the band";
    EXPECT_EQ(changed, r[2] != r[0] ? 2 : 0);
  }
}

TEST(PointDeletion, TheToolMarksThePointsUnderTheBandCutToTheSection) {
  const struct {
    IntRect band;
    int button;  // 1473 delete, 1471 undelete
    int first, count;
  } rows[] = {
      // Rows to mm: (y - 38) x 300 / 605.  Above the start: up to 4.96 mm.
      {{51, 10, 988, 48}, 1473, 0, 25},
      {{51, 600, 988, 700}, 1473, 1394, 106},  // from 278.7 mm to the end
      {{0, 0, 0, 0}, 1473, 0, 0},              // no band placed
      {{51, 10, 988, 48}, 1471, 0, 0},         // nothing deleted there: the message
  };
  for (const auto& row : rows) {
    Host host;
    PlotState& p = host.M.Plot();
    p.TrackRect = {1, 2, 3, 4};
    QPointer<DeletePointsDialog> d = ShowTool<DeletePointsDialog>(host);
    EXPECT_EQ(p.TrackRect.Right, 0) << "a band left over goes when the tool opens";
    p.TrackRect = row.band;
    p.NeedLayout = 0;
    Control<QPushButton>(d, row.button)->click();
    int deleted = 0, first = -1;
    for (int i = 0; i < 1500; ++i)
      if (host.M.CurSection().Data[0][i] == -2.0f) deleted += 1, first = first < 0 ? i : first;
    EXPECT_EQ(deleted, row.count);
    EXPECT_EQ(first, row.count ? row.first : -1);
    const bool message = row.button == 1471;
    EXPECT_EQ(host.Prompt.Texts(), std::vector<std::string>(message, msg::kNoDeletedData));
    EXPECT_EQ(p.NeedLayout + p.Modified, message ? 0u : 2u);
    EXPECT_EQ(p.TrackRect.Right, 0);
    Control<QPushButton>(d, 1036)->click();
    EXPECT_EQ(p.DeleteMode + p.Tracking + uint32_t(d.isNull() ? 0 : !d->Ended()), 0u);
  }
}

TEST(YScale, ApplyStoresTheScaleWithItsRules) {
  const struct {
    const char *yMax, *offset;
    bool automatic;
    double storedMax, storedOffset;
  } rows[] = {
      {"5", "10", false, 11, 10},     // an offset not below the maximum pushes it up
      {"top", "2", false, 100, 2},    // text that does not parse keeps the old value
      {"50", "0", true, 50, 0},       // typed values stay, but the scale is automatic
      {"1e3", "-5", false, 1000, -5},  // an exponent, as "%lf" reads it
  };
  Host host;
  PlotState& p = host.M.Plot();
  for (const auto& r : rows) {
    p.ColumnYMax[0] = 100, p.ColumnOffset[0] = 25, p.ColumnFixedScale[0] = r.automatic;
    YScaleDialog d(host, 0);
    EXPECT_EQ(Control<QLineEdit>(&d, 1498)->text() + "|" + Control<QLineEdit>(&d, 1028)->text(), "100| 25");
    EXPECT_FALSE(Control<QCheckBox>(&d, 1499)->isChecked()) << "Auto starts unticked";
    Control<QLineEdit>(&d, 1498)->setText(r.yMax);
    Control<QLineEdit>(&d, 1028)->setText(r.offset);
    Control<QCheckBox>(&d, 1499)->setChecked(r.automatic);
    Control<QPushButton>(&d, 1203)->click();
    EXPECT_EQ(p.ColumnYMax[0], r.storedMax) << r.yMax;
    EXPECT_EQ(p.ColumnOffset[0], r.storedOffset);
    EXPECT_EQ(p.ColumnFixedScale[0], r.automatic ? 0u : 1u);
  }
  host.M.App.RatioOn[0] = 1, host.M.App.RatioSetOfPlot[0] = 1;
  EXPECT_EQ(YScaleDialog(host, 0).windowTitle(), "Set Scale for Radiograph/Mask");
}

// The curve shows data set 2 (the radiograph, 1234.6 at point 0 and 7.4 at 124) unless
// the row picks another: 0 none, 3 the surface channel "Si surface" (2.5 at 124).  A ratio
// is read from the computed curve (12345.678 at 124); the expanded view shows points
// 500..1000 from 100 mm.
TEST(ValueReadout, DepthFileAndColumnValueUnderThePointer) {
  const struct {
    int x, y;  // x 175 lies in the one data column (165..439)
    const char* lines;
    int set = 2;
    bool ratio = false, expanded = false;
  } rows[] = {
      {175, 38, "Position is 1000 mm|File L000000.spe|Radiograph:- 1235"},
      {175, 88, "Position is 1025 mm|File L000124.spe|Radiograph:- 7"},  // 50 rows of 605
      {175, 643, "Position is 1300 mm||"},                              // past the last point
      {165, 88, "Position is 1025 mm|File L000124.spe|"},               // the column's edge
      {445, 88, "Position is 1025 mm|File L000124.spe|"},               // one column only
      {175, 88, "Position is 1025 mm|File L000124.spe|", 0},
      {175, 88, "Position is 1025 mm|File L000124.spe|Si surface:- 2.50", 3},
      {175, 88, "Position is 1025 mm|File L000124.spe|Radiograph:- 1.23e+4", 2, true},
      {175, 341, "Position is 1250 mm|File L000750.spe|Radiograph:- 0", 2, false, true},
  };
  Host host;
  Model& m = host.M;
  CopyField(m.Plot().DataSetNames[2], "Si surface");
  m.CurSection().Data[2][124] = 2.5f;
  const PlotState painted = m.Plot();
  float* radiograph = m.CurSection().Data[1];
  std::fill(radiograph, radiograph + 1500, 0.0f);
  radiograph[0] = 1234.6f, radiograph[124] = 7.4f;
  m.Curves().Value(0, 124) = 12345.678;
  for (const auto& row : rows) {
    m.Plot() = painted;
    m.Settings().DataSetOfPlot[0] = row.set;
    m.App.RatioOn[0] = row.ratio;
    if (row.expanded)
      std::tie(m.Plot().Expanded, m.Plot().ExpandTop, m.Plot().ViewFirstPoint, m.Plot().ViewLastPoint) =
          std::tuple(1u, 100.0f, 500, 1000);
    const ValueLines l = ValueReadout(m, host.L, row.x, row.y);
    EXPECT_EQ(l.Depth + "|" + l.File + "|" + l.Value, row.lines);
  }
}

}  // namespace
}  // namespace sedra
