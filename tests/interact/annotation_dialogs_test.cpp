// The region and line tools on a bare host over the painted section of
// painted_section.h, driven through their controls: what they show when they open and
// what "Finished" and "Clear Current" store.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>

#include "interact/annotation_dialogs.h"
#include "painted_section.h"

namespace sedra {
namespace {

using Kind = AnnotationKind;

struct Host : test::PaintedHost {
  AnnotationDialog* Open(Kind kind) {
    if (kind == Kind::HRegion) return ShowTool<HRegionDialog>(*this);
    if (kind == Kind::VRegion) return ShowTool<VRegionDialog>(*this);
    if (kind == Kind::HLine) return ShowTool<HLineDialog>(*this);
    return ShowTool<VLineDialog>(*this);
  }
};

QString Text(QWidget* dialog, int id) {
  auto* edit = Control<QLineEdit>(dialog, id);
  return edit ? edit->text() : QString("-");
}

// Entry i as "first second list width" (top bottom pattern, depth, or position).
std::string Stored(const CoreSection& s, Kind kind, int i) {
  auto f = [](double v) { return QString::number(v).toStdString() + " "; };
  if (kind == Kind::HRegion) return f(s.HRegionTop[i]) + f(s.HRegionBottom[i]) + f(s.HRegionPattern[i]);
  if (kind == Kind::VRegion) return f(s.VRegionLeft[i]) + f(s.VRegionRight[i]) + f(s.VRegionPattern[i]);
  if (kind == Kind::HLine) return f(s.HLineDepth[i]) + f(s.HLineStyle[i]) + f(s.HLineWidth[i]);
  return f(s.VLinePosition[i]) + f(s.VLineStyle[i]) + f(s.VLineWidth[i]);
}

// Entry 2 of every kind is in use: regions from 50 to 100 mm and from 30 to 60 of 300
// across, a line at 60 mm 1 wide, one at 150 of 300 3 wide, both patterns 6.  The tool
// opens on the current entry, then the edits, the band and the list are set and
// "Finished" stores them in that entry.
TEST(AnnotationDialogs, OpeningShowsTheCurrentEntryAndFinishedStoresItFromTheEditsTheListAndTheBand) {
  const struct {
    Kind kind;
    int entry;
    const char* shown;  // the band, edits 1476 and 1478, the list's selection
    const char *edit1476, *edit1478;
    IntRect band;
    int list;
    const char* stored;
  } rows[] = {
      // 50..100 mm: rows 38 + 100.8 and 201.7
      {Kind::HRegion, 2, "51 139 988 240|1050|1100|6", "1150", "1200.5", {}, 3, "150 200.5 3 "},
      // free: the next click places it; a bottom that does not parse repeats the top
      {Kind::HRegion, 5, "0 0 0 0|1000|1000|0", "1150", "x", {}, 0, "150 150 0 "},
      // nothing parses: 0 less the start
      {Kind::HRegion, 2, "51 139 988 240|1050|1100|6", "top", "end", {}, 0, "-1000 -1000 0 "},
      // read through 16 characters
      {Kind::HRegion, 5, "0 0 0 0|1000|1000|0", "                1", "1100", {}, 0, "-1000 100 0 "},
      // 30..60 of 300 across 823 px from 165; stored from the band across the data area
      {Kind::VRegion, 2, "247 38 330 643|-|-|6", "", "", {165, 38, 988, 643}, 7, "0 300 7 "},
      // never placed: from x = 0
      {Kind::VRegion, 5, "0 0 0 0|-|-|0", "", "", {}, 1, "-60.1458 -60.1458 1 "},
      // the width edit keeps its 1
      {Kind::HLine, 2, "51 158 988 159|1|1060.0|0", "3", "1123.5", {}, 2, "123.5 2 3 "},
      // a width that is no number is 0
      {Kind::HLine, 2, "51 158 988 159|1|1060.0|0", "wide", "1010", {}, 4, "10 4 0 "},
      // 150 of 300 at x 577; stored as 122.1 units and the 2 kept
      {Kind::VLine, 2, "575 38 579 643|3|-|0", "2", "", {500, 38, 504, 643}, 1, "124 1 2 "},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.shown);
    Host host;
    CoreSection& s = host.M.CurSection();
    s.HRegionTop[2] = 50, s.HRegionBottom[2] = 100, s.HLineDepth[2] = 60, s.HLineWidth[2] = 1;
    s.VRegionLeft[2] = 30, s.VRegionRight[2] = 60, s.VLinePosition[2] = 150, s.VLineWidth[2] = 3;
    s.HRegionPattern[2] = s.VRegionPattern[2] = 6;
    CurrentEntry(host.M.Plot(), row.kind) = row.entry;
    QPointer<AnnotationDialog> d = host.Open(row.kind);
    const IntRect& r = host.M.Plot().TrackRect;
    EXPECT_EQ(QString("%1 %2 %3 %4|%5|%6|%7").arg(r.Left).arg(r.Top).arg(r.Right).arg(r.Bottom)
                  .arg(Text(d, 1476), Text(d, 1478)).arg(d->findChild<QComboBox*>()->currentIndex()),
              row.shown);
    EXPECT_TRUE(Control<QRadioButton>(d, 1385 + row.entry)->isChecked());
    for (auto [id, text] : {std::pair{1476, row.edit1476}, std::pair{1478, row.edit1478}})
      if (auto* edit = Control<QLineEdit>(d, id)) edit->setText(text);
    host.M.Plot().TrackRect = row.band;
    d->findChild<QComboBox*>()->setCurrentIndex(row.list);
    Control<QPushButton>(d, 1)->click();
    EXPECT_EQ(Stored(s, row.kind, row.entry), row.stored) << row.edit1476 << "|" << row.edit1478;
    EXPECT_EQ(host.M.Plot().Modified, 1u);
    EXPECT_TRUE(d.isNull() || d->Ended());
    const PlotState& p = host.M.Plot();
    EXPECT_EQ(std::tuple(p.TrackRect.Right, p.Tracking, p.HRegionMode, p.VLineMode), std::tuple(0, 0u, 0u, 0u));
  }
}

TEST(AnnotationDialogs, ClearCurrentClosesUpTheArrayAndEndsTheTool) {
  const struct {
    Kind kind;
    int current, after;
    const char* inUse;  // the in-use field of every slot afterwards
  } rows[] = {
      {Kind::HRegion, 5, 4, "1 2 3 4 5 7 8 0"},
      {Kind::HRegion, 0, 0, "2 3 4 5 6 7 8 0"},
      {Kind::HLine, 7, 6, "1 2 3 4 5 6 7 0"},
      {Kind::VLine, 9, 8, "1 2 3 4 5 6 7 8 9 0 11"},  // the room beyond ten lines is left alone
  };
  for (const auto& row : rows) {
    Host host;
    CoreSection& s = host.M.CurSection();
    for (int i = 0; i < kVLineRoom; ++i) s.VLinePosition[i] = i + 1;
    for (int i = 0; i < kAnnotationSlots; ++i) s.HRegionTop[i] = s.HRegionBottom[i] = s.HLineDepth[i] = float(i + 1);
    CurrentEntry(host.M.Plot(), row.kind) = row.current;
    QPointer<AnnotationDialog> d = host.Open(row.kind);
    Control<QPushButton>(d, 1455)->click();
    EXPECT_TRUE(d.isNull() || d->Ended());
    EXPECT_EQ(CurrentEntry(host.M.Plot(), row.kind), row.after);
    QStringList cells;
    for (int i = 0; i < (row.kind == Kind::VLine ? 11 : 8); ++i)
      cells << QString::number(row.kind == Kind::VLine ? s.VLinePosition[i]
                               : row.kind == Kind::HLine ? s.HLineDepth[i] : s.HRegionBottom[i]);
    EXPECT_EQ(cells.join(" "), row.inUse);
    EXPECT_EQ(s.HRegionTop[7], 8.0f) << "only the in-use field of the last slot is cleared";
  }
}

}  // namespace
}  // namespace sedra
