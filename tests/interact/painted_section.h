#pragma once
// The section the interaction tests work on: an optical image, a radiograph of 1500
// points of 0.2 mm (300 mm) and its curve, painted at 1000 x 700.  On that layout the
// plot's top is row 38 and 300 mm take 605 rows at 100%; the full-width band runs from
// x 51 to 988 and vertical bands from row 38 to 643; the data area starts at x 165 and
// is 823 px wide (the first column 274); layout units are 114 px wide and 605 px high
// per 300.

#include "plot/plot_fixture.h"
#include "support/fake_host.h"

namespace sedra::test {

inline PlotLayout LoadAndPaint(Model& m, int zoom = 1, int scroll = 0) {
  StartCore(m);
  m.Settings().ShowRadiographData = 1;  // the data column shows the radiograph's curve
  CopyField(m.CurSection().StepSizeText, "200 um");
  AddOptical(m, 60, 1000, 0x806040);
  AddRadiograph(m, 0, 40, 1500, uint32_t(0x808080));
  m.Plot().ZoomFactor = zoom;
  QImage image = MakeImage(1000, 700);
  QPainter painter(&image);
  PaintTarget target;
  target.Client = image.rect();
  target.ScrollPos = scroll;
  return PaintPlot(m, painter, target);
}

// A bare host over the painted section, its depths labelled from 1000 mm.
struct PaintedHost : FakeHost {
  PlotLayout L = LoadAndPaint(M);
  PaintedHost() { M.CurSection().StartLabelDepth = 1000; }
};

}  // namespace sedra::test
