#pragma once
// Images made in the test, loaded as a read leaves them, and a bare host whose tools
// end when the core is emptied under them.

#include <QAbstractButton>
#include <QCoreApplication>
#include <QEvent>
#include <QLineEdit>
#include <functional>
#include <tuple>

#include "images/contrast.h"
#include "model/core.h"
#include "plot/plot_fixture.h"
#include "support/fake_host.h"

namespace sedra::test {

// A radiograph of width x height samples sample(x, y), its window Lower..Upper, shown
// from its samples, one data point per row of 0.2 mm.
inline void LoadRadiograph(Model& m, int width, int height, const std::function<uint16_t(int, int)>& sample,
                           int lower, int upper) {
  CopyField(m.CurSection().StepSizeText, "200 um");
  AddRadiograph(m, 0, width, height, 0u);
  RadiographDesc& r = m.CurRadiograph();
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      r.Samples[size_t(y) * size_t(width) + size_t(x)] = sample(x, y);
      r.MaxValue = std::max<int32_t>(r.MaxValue, sample(x, y));
    }
  r.Regions[0] = {0, 0, width - 1, height - 1, lower, upper};
  ShareWholeWindow(r);
  r.DisplayFromSamples = 1;
  std::tie(m.Plot().DataRegionLeft, m.Plot().DataRegionRight) = std::pair(0, width);
}

// An optical image of width x height pixels of one grey level per row (row % 256).
inline void LoadOptical(Model& m, int width, int height) {
  AddOptical(m, width, height, 0u);
  FillDib(m.CurOptical().Bitmap, width, height, [](int y) { return uint32_t(y % 256) * 0x010101u; });
  m.CurOptical().Pixels = m.CurOptical().Bitmap.Bits;
}

// A dialog's controls as a user reaches them.
inline QString Text(QWidget* dialog, int id) { return Control<QLineEdit>(dialog, id)->text(); }
inline void Type(QWidget* dialog, int id, const char* text) { Control<QLineEdit>(dialog, id)->setText(text); }
inline void Click(QWidget* dialog, int id) { Control<QAbstractButton>(dialog, id)->click(); }

// Deletes the dialogs that closed (they go with the next turn of the event loop).
inline void Flush() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

// A FakeHost whose open tool ends when the images are replaced, as the main window's.
class ToolHost : public FakeHost {
 public:
  ToolHost() {
    M.ImagesReplaced = [this] {
      if (Tool) Tool->EndTool();
    };
  }
};

}  // namespace sedra::test
