#pragma once
// The section the painting benchmarks draw: an 18 000 x 2 000 radiograph (one data
// point per row) with its curve, an 8 192-row optical image, regions and lines, in a
// 1000 x 700 window.

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <cstring>
#include <memory>

#include "model/core.h"
#include "model/model.h"
#include "model/settings_files.h"
#include "plot/fonts.h"

namespace sedra::bench {

constexpr int kWidth = 1000, kHeight = 700;

inline void FillDib(sedra::Dib& dib, int width, int height, bool colour) {
  dib.Width = width;
  dib.Height = height;
  dib.Stride = sedra::Dib::StrideFor(width);
  dib.Bits.assign(size_t(dib.Stride) * size_t(height), 0);
  for (int y = 0; y < height; ++y) {
    uint8_t* row = dib.Bits.data() + size_t(y) * size_t(dib.Stride);
    // Layered sediment: bands along the core, a little texture across it.
    const int band = (y / 97) % 7;
    for (int x = 0; x < width; ++x) {
      const int grey = 60 + band * 25 + ((x * 7 + y * 3) & 15);
      row[3 * x] = uint8_t(colour ? grey / 2 : grey);
      row[3 * x + 1] = uint8_t(colour ? grey * 3 / 4 : grey);
      row[3 * x + 2] = uint8_t(grey);
    }
  }
  ++dib.Generation;
}

// A section as a read leaves it: an 18 000 x 2 000 radiograph (one data point per
// row), an 8 192-row optical image, regions and lines.
inline std::unique_ptr<sedra::Model> LoadedModel() {
  auto model = std::make_unique<sedra::Model>();
  sedra::NewCore(*model, nullptr);
  sedra::SetDefaultSettings(model->App.Settings);
  sedra::WorkingBlock& work = model->Work();
  work.ShowRadiograph = work.ShowOptical = work.ShowCoreName = work.ShowSectionName = 1;
  sedra::CoreSection& sec = model->CurSection();
  sedra::CopyField(sec.StepSizeText, "100 microns");
  sedra::CopyField(sec.CoreName, "BENCH-1");
  sedra::CopyField(sec.SectionName, "1");

  sedra::RadiographDesc& rad = sec.Radiographs[0];
  rad.Width = 2000;
  rad.Height = 18000;
  rad.Valid = 1;
  rad.HeightScale = 1.0f;
  rad.Samples.assign(size_t(rad.Width) * size_t(rad.Height), 0);
  for (int y = 0; y < rad.Height; ++y)
    for (int x = 0; x < rad.Width; ++x)
      rad.Samples[size_t(y) * size_t(rad.Width) + size_t(x)] = uint16_t(20000 + ((y / 50) % 40) * 300 + (x & 63));
  FillDib(rad.Bitmap, rad.Width, rad.Height, false);
  sec.RadiographCount = 1;
  work.SampleStep = 1;
  sedra::UpdateMenusAfterLoad(*model, true);

  sedra::OpticalImageDesc& opt = sec.Optical;
  opt.Width = 1200;
  opt.Height = 8192;
  opt.Valid = 1;
  opt.CropRight = opt.Width - 1;
  opt.CropBottom = opt.Height - 1;
  opt.Upper = 256;
  FillDib(opt.Bitmap, opt.Width, opt.Height, true);
  sedra::UpdateMenusAfterLoad(*model, false);

  sedra::PlotState& plot = model->Plot();
  plot.DataRegionLeft = 500;
  plot.DataRegionRight = 1500;
  plot.MainTitleFontSize = 14;
  sedra::CopyField(plot.CoreTitle, "Benchmark core");
  sec.SectionTitleFontSize = 10;
  sec.HeaderRect = {20, 40, 0, 0};
  plot.MainTitleRect = {10, 5, 0, 0};
  const float length = plot.SectionLength[0];
  for (int i = 0; i < 4; ++i) {
    sec.HRegionTop[i] = length * (0.1f + 0.2f * float(i));
    sec.HRegionBottom[i] = sec.HRegionTop[i] + length * 0.05f;
    sec.HRegionPattern[i] = i * 2;
    sec.HLineDepth[i] = length * (0.15f + 0.2f * float(i));
    sec.HLineStyle[i] = i;
    sec.HLineWidth[i] = 2;
    sec.VRegionLeft[i] = length * (0.1f + 0.2f * float(i));
    sec.VRegionRight[i] = sec.VRegionLeft[i] + length * 0.05f;
    sec.VRegionPattern[i] = i + 1;
    sec.VLinePosition[i] = int(length * (0.2f + 0.2f * float(i)));
    sec.VLineStyle[i] = i;
    sec.VLineWidth[i] = 1;
  }
  return model;
}

// main() of a painting benchmark: an offscreen application with the program's fonts.
inline int RunWithFonts(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);
  sedra::RegisterFontSubstitutes();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}

}  // namespace sedra::bench
