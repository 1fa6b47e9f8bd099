#pragma once
// Images made in the test, loaded as a read leaves them, and a bare host whose tools
// end when the core is emptied under them.

#include <QAbstractButton>
#include <QCoreApplication>
#include <QEvent>
#include <QLineEdit>
#include <cstring>
#include <functional>
#include <tuple>

#include "images/contrast.h"
#include "import/read_support.h"
#include "model/core.h"
#include "support/fake_host.h"

namespace sedra::test {

// A radiograph of width x height samples sample(x, y), its window Lower..Upper, shown
// from its samples, one data point per row of 0.2 mm.
inline void LoadRadiograph(Model& m, int width, int height, const std::function<uint16_t(int, int)>& sample,
                           int lower, int upper) {
  RadiographDesc& r = m.CurRadiograph();
  r.Clear();
  std::tie(r.Width, r.Height, r.Valid, r.HeightScale) = std::tuple(width, height, 1u, 1.0f);
  r.Samples.resize(size_t(width) * size_t(height));
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const uint16_t s = sample(x, y);
      r.Samples[size_t(y) * size_t(width) + size_t(x)] = s;
      r.MaxValue = std::max<int32_t>(r.MaxValue, s);
    }
  AllocateDib(r.Bitmap, width, height);
  r.Regions[0] = {0, 0, width - 1, height - 1, lower, upper};
  ShareWholeWindow(r);
  r.DisplayFromSamples = 1;
  m.CurSection().RadiographCount = 1;
  m.Work().SampleStep = 1;
  std::strcpy(m.CurSection().StepSizeText, "200 um");
  UpdateMenusAfterLoad(m, true);
  std::tie(m.Plot().DataRegionLeft, m.Plot().DataRegionRight) = std::pair(0, width);
}

// An optical image of width x height pixels of one grey level per row (row % 256).
inline void LoadOptical(Model& m, int width, int height) {
  OpticalImageDesc& o = m.CurOptical();
  o.Clear();
  std::tie(o.Width, o.Height, o.Valid, o.Upper) = std::tuple(width, height, 1u, 256);
  std::tie(o.CropRight, o.CropBottom) = std::pair(width - 1, height - 1);
  AllocateDib(o.Bitmap, width, height);
  o.Pixels.assign(o.Bitmap.Bits.size(), 0);
  for (int y = 0; y < height; ++y)
    std::memset(o.Pixels.data() + size_t(y) * size_t(o.Bitmap.Stride), y % 256, size_t(width) * 3);
  o.Bitmap.Bits = o.Pixels;
  UpdateMenusAfterLoad(m, false);
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
