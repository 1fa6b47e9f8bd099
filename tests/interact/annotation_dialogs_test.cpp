// The region and line tools on a bare host, driven through their controls: what they
// show when they open, what "Finished", a radio change and "Clear Current" store, and
// the stored region painted where the band was dragged.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <cstring>

#include "interact/annotation_dialogs.h"
#include "interact/mouse_engine.h"
#include "painted_section.h"
#include "support/fake_host.h"

namespace sedra {
namespace {

struct Host : test::FakeHost {
  PlotLayout L = test::LoadAndPaint(M);
  Host() { M.CurSection().StartLabelDepth = 1000; }
  CoreSection& S() { return M.CurSection(); }
};

AnnotationDialog* Open(Host& host, AnnotationKind kind) {
  switch (kind) {
    case AnnotationKind::HRegion: return ShowTool<HRegionDialog>(host);
    case AnnotationKind::VRegion: return ShowTool<VRegionDialog>(host);
    case AnnotationKind::HLine: return ShowTool<HLineDialog>(host);
    case AnnotationKind::VLine: break;
  }
  return ShowTool<VLineDialog>(host);
}

void Type(QWidget* dialog, int id, const char* text) { Control<QLineEdit>(dialog, id)->setText(text); }
QString Text(QWidget* dialog, int id) { return Control<QLineEdit>(dialog, id)->text(); }

TEST(AnnotationDialogs, OpeningShowsTheCurrentEntryAsTheBand) {
  const struct {
    AnnotationKind kind;
    int entry;
    IntRect band;
    const char* top;  // edit 1476 of the region tool, nullptr: not checked
    const char* bottom;
  } rows[] = {
      // 50..100 mm: rows nearest(605 x 50 / 300) + 38 = 139 and 240.
      {AnnotationKind::HRegion, 2, {51, 139, 988, 240}, "1050", "1100"},
      {AnnotationKind::HRegion, 5, {0, 0, 0, 0}, "1000", "1000"},  // free: the next click places it
      {AnnotationKind::HLine, 2, {51, 158, 988, 159}, nullptr, "1060.0"},
      // 30..60 units of 300 across 823 px from x 165.
      {AnnotationKind::VRegion, 2, {247, 38, 330, 643}, nullptr, nullptr},
      {AnnotationKind::VLine, 2, {575, 38, 579, 643}, nullptr, nullptr},  // 150 units at x 577
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(int(row.kind) * 10 + row.entry);
    Host host;
    CoreSection& s = host.S();
    s.HRegionTop[2] = 50, s.HRegionBottom[2] = 100, s.HLineDepth[2] = 60;
    s.VRegionLeft[2] = 30, s.VRegionRight[2] = 60, s.VLinePosition[2] = 150;
    s.HRegionPattern[2] = s.VRegionPattern[2] = 6;
    CurrentEntry(host.M.Plot(), row.kind) = row.entry;
    AnnotationDialog* d = Open(host, row.kind);
    const IntRect& got = host.M.Plot().TrackRect;
    EXPECT_EQ(std::memcmp(&got, &row.band, sizeof got), 0) << got.Left << " " << got.Top << " " << got.Bottom;
    EXPECT_TRUE(Control<QRadioButton>(d, 1385 + row.entry)->isChecked());
    if (row.top) {
      EXPECT_EQ(Text(d, 1476), row.top);
    }
    if (row.bottom) {
      EXPECT_EQ(Text(d, 1478), row.bottom);
    }
    const QComboBox* list = Control<QComboBox>(d, row.kind == AnnotationKind::HRegion ||
                                                          row.kind == AnnotationKind::VRegion ? 1491 : 1474);
    EXPECT_EQ(list->currentIndex(), row.entry == 2 && list->count() == 8 ? 6 : 0);
    d->close();
    EXPECT_EQ(host.M.Plot().Tracking + host.M.Plot().HRegionMode + host.M.Plot().VLineMode, 0u);
  }
}

TEST(AnnotationDialogs, FinishedStoresTheEntryFromTheEditsTheListAndTheBand) {
  const struct {
    const char* name;
    AnnotationKind kind;
    const char *top, *bottom;  // edits 1476 and 1478
    IntRect band;
    int listIndex;
    float a, b;  // top and bottom, left and right, depth or position
    int width;
  } rows[] = {
      {"region typed", AnnotationKind::HRegion, "1150", "1200.5", {}, 3, 150, 200.5f, 0},
      {"region: unparsable bottom repeats the top", AnnotationKind::HRegion, "1150", "x", {}, 0, 150, 150, 0},
      {"region: nothing parses", AnnotationKind::HRegion, "top", "end", {}, 0, -1000, -1000, 0},
      {"region: a 16-character buffer", AnnotationKind::HRegion, "                1", "1100", {}, 0, -1000, 100, 0},
      {"vertical region from the band", AnnotationKind::VRegion, nullptr, nullptr, {165, 38, 988, 643}, 7, 0, 300, 0},
      {"line typed", AnnotationKind::HLine, "3", "1123.5", {}, 2, 123.5f, 0, 3},
      {"line: a width that is no number", AnnotationKind::HLine, "wide", "1010", {}, 4, 10, 0, 0},
      // (500 - 165) x 300 / 823 = 122.1 units, and 2 more.
      {"vertical line from the band", AnnotationKind::VLine, "2", nullptr, {500, 38, 504, 643}, 1, 124, 0, 2},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Host host;
    QPointer<AnnotationDialog> d = Open(host, row.kind);
    host.M.Plot().CurHRegion = host.M.Plot().CurVRegion = host.M.Plot().CurHLine = host.M.Plot().CurVLine = 4;
    if (row.top) Type(d, 1476, row.top);
    if (row.bottom) Type(d, 1478, row.bottom);
    host.M.Plot().TrackRect = row.band;
    d->findChild<QComboBox*>()->setCurrentIndex(row.listIndex);
    Control<QPushButton>(d, 1)->click();
    const CoreSection& s = host.S();
    switch (row.kind) {
      case AnnotationKind::HRegion:
        EXPECT_FLOAT_EQ(s.HRegionTop[4], row.a);
        EXPECT_FLOAT_EQ(s.HRegionBottom[4], row.b);
        EXPECT_EQ(s.HRegionPattern[4], row.listIndex);
        break;
      case AnnotationKind::VRegion:
        EXPECT_FLOAT_EQ(s.VRegionLeft[4], row.a);
        EXPECT_FLOAT_EQ(s.VRegionRight[4], row.b);
        EXPECT_EQ(s.VRegionPattern[4], row.listIndex);
        break;
      case AnnotationKind::HLine:
        EXPECT_FLOAT_EQ(s.HLineDepth[4], row.a);
        EXPECT_EQ(s.HLineStyle[4], row.listIndex);
        EXPECT_EQ(s.HLineWidth[4], row.width);
        break;
      case AnnotationKind::VLine:
        EXPECT_EQ(s.VLinePosition[4], int(row.a));
        EXPECT_EQ(s.VLineStyle[4], row.listIndex);
        EXPECT_EQ(s.VLineWidth[4], row.width);
        break;
    }
    EXPECT_EQ(host.M.Plot().Modified, 1u);
    EXPECT_TRUE(d.isNull() || d->Ended());
    EXPECT_EQ(host.M.Plot().TrackRect.Right, 0);
  }
}

TEST(AnnotationDialogs, ARadioChangeStoresTheEntryFirstAndShowsTheNext) {
  Host host;
  host.S().VRegionRight[3] = 50;
  AnnotationDialog* d = Open(host, AnnotationKind::VRegion);
  EXPECT_EQ(host.M.Plot().TrackRect.Right, 0) << "entry 0 is free";
  Control<QRadioButton>(d, 1388)->click();
  // Entry 0 was stored from a band never placed: x = 0 is left of the data area.
  EXPECT_LT(host.S().VRegionRight[0], 0);
  EXPECT_EQ(host.M.Plot().CurVRegion, 3);
  EXPECT_EQ(host.M.Plot().TrackRect.Right, XOfUnits(host.M, 50));
  d->close();
}

TEST(AnnotationDialogs, ClearCurrentClosesUpTheArrayAndEndsTheTool) {
  const struct {
    AnnotationKind kind;
    int current, after;
  } rows[] = {{AnnotationKind::HRegion, 5, 4}, {AnnotationKind::HRegion, 0, 0}, {AnnotationKind::VLine, 9, 8},
              {AnnotationKind::HLine, 7, 6}};
  for (const auto& row : rows) {
    Host host;
    CoreSection& s = host.S();
    for (int i = 0; i < kVLineRoom; ++i) s.VLinePosition[i] = i + 1;
    for (int i = 0; i < kAnnotationSlots; ++i) s.HRegionTop[i] = s.HRegionBottom[i] = s.HLineDepth[i] = float(i + 1);
    CurrentEntry(host.M.Plot(), row.kind) = row.current;
    QPointer<AnnotationDialog> d = Open(host, row.kind);
    Control<QPushButton>(d, 1455)->click();
    EXPECT_TRUE(d.isNull() || d->Ended());
    EXPECT_EQ(CurrentEntry(host.M.Plot(), row.kind), row.after);
    const int last = SlotCount(row.kind) - 1;
    for (int i = 0; i <= last; ++i) {
      const float expected = i == last ? 0.0f : float(i < row.current ? i + 1 : i + 2);
      const float got = row.kind == AnnotationKind::VLine   ? float(s.VLinePosition[i])
                        : row.kind == AnnotationKind::HLine ? s.HLineDepth[i]
                                                            : s.HRegionBottom[i];
      EXPECT_EQ(got, expected) << "slot " << i;
    }
    if (row.kind == AnnotationKind::HRegion) {
      EXPECT_EQ(s.HRegionTop[last], float(last + 1)) << "only the bottom frees";
    }
    EXPECT_EQ(s.VLinePosition[10], 11) << "the room beyond ten lines is left alone";
  }
}

TEST(AnnotationDialogs, ARegionDraggedOnThePlotIsPaintedThere) {
  Host host;
  AnnotationDialog* d = Open(host, AnnotationKind::HRegion);
  OnLButtonDown(host.M, host.L, {600, 300, 0, false});
  for (const ControlText& w : OnMouseMove(host.M, host.L, {600, 310, 0, true}).Writes)
    d->SetControlText(w.Id, QString::fromStdString(w.Text));
  EXPECT_EQ(Text(d, 1476), "1129");  // rows 299 and 310: 129.4 and 134.9 mm
  EXPECT_EQ(Text(d, 1478), "1135");
  Control<QPushButton>(d, 1)->click();
  const QImage image = test::Paint(host.M, 1000, 700);
  const uint32_t fill = 0x008000;  // the fixture's region fill
  // Stored 129..135 mm: rows 38 + floor(605 x 129 / 300) = 298 up to 310.
  EXPECT_EQ(test::Rgb(image, 900, 297), 0xFFFFFFu);
  EXPECT_EQ(test::Rgb(image, 900, 298), fill);
  EXPECT_EQ(test::Rgb(image, 900, 309), fill);
  EXPECT_EQ(test::Rgb(image, 900, 310), 0xFFFFFFu);
}

}  // namespace
}  // namespace sedra
