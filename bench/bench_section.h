#pragma once
// Shared by the painting benchmarks: a fully loaded section (a radiograph of `length`
// rows by 2 000 columns, an 8 192-row optical image, regions and lines) and main().

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <cstring>
#include <memory>

#include "model/core.h"
#include "model/model.h"
#include "model/settings_files.h"
#include "plot/fonts.h"

namespace sedra::bench {

// Fills a Dib with layered sediment: bands along the core, a little texture across it.
inline void FillSedimentDib(Dib& dib, int width, int height, bool colour) {
  dib.Width = width;
  dib.Height = height;
  dib.Stride = Dib::StrideFor(width);
  dib.Bits.assign(size_t(dib.Stride) * size_t(height), 0);
  for (int y = 0; y < height; ++y) {
    uint8_t* row = dib.Bits.data() + size_t(y) * size_t(dib.Stride);
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

// `fromSamples`: the radiograph is shown from its samples through its contrast window,
// as after a read; otherwise from display bits made beforehand.
inline std::unique_ptr<Model> LoadedSection(int length, bool fromSamples) {
  auto model = std::make_unique<Model>();
  NewCore(*model, nullptr);
  SetDefaultSettings(model->App.Settings);
  WorkingBlock& work = model->Work();
  work.ShowRadiograph = work.ShowOptical = work.ShowCoreName = work.ShowSectionName = 1;
  CoreSection& sec = model->CurSection();
  CopyField(sec.StepSizeText, "100 microns");
  CopyField(sec.CoreName, "BENCH-1");
  CopyField(sec.SectionName, "1");

  RadiographDesc& rad = sec.Radiographs[0];
  rad.Width = 2000;
  rad.Height = length;
  rad.Valid = 1;
  rad.HeightScale = 1.0f;
  rad.Samples.resize(size_t(rad.Width) * size_t(rad.Height));
  for (int y = 0; y < rad.Height; ++y)
    for (int x = 0; x < rad.Width; ++x)
      rad.Samples[size_t(y) * size_t(rad.Width) + size_t(x)] = uint16_t(20000 + ((y / 50) % 40) * 300 + (x & 63));
  rad.MaxValue = 20000 + 39 * 300 + 63;
  rad.Regions[0] = {0, 0, rad.Width - 1, rad.Height - 1, 19000, 33000};
  if (fromSamples)
    rad.DisplayFromSamples = 1;
  else
    FillSedimentDib(rad.Bitmap, rad.Width, rad.Height, false);
  sec.RadiographCount = 1;
  // One data point per row up to the point arrays' capacity, as a read sets the step.
  work.SampleStep = (length + kMaxPoints - 1) / kMaxPoints;
  UpdateMenusAfterLoad(*model, true);

  OpticalImageDesc& opt = sec.Optical;
  opt.Width = 1200;
  opt.Height = 8192;
  opt.Valid = 1;
  opt.CropRight = opt.Width - 1;
  opt.CropBottom = opt.Height - 1;
  opt.Upper = 256;
  FillSedimentDib(opt.Bitmap, opt.Width, opt.Height, true);
  opt.Pixels.assign(opt.Bitmap.Bits.begin(), opt.Bitmap.Bits.end());
  UpdateMenusAfterLoad(*model, false);

  PlotState& plot = model->Plot();
  plot.DataRegionLeft = 500;
  plot.DataRegionRight = 1500;
  plot.MainTitleFontSize = 14;
  CopyField(plot.CoreTitle, "Benchmark core");
  sec.SectionTitleFontSize = 10;
  sec.HeaderRect = {20, 40, 0, 0};
  plot.MainTitleRect = {10, 5, 0, 0};
  const float span = plot.SectionLength[0];
  for (int i = 0; i < 4; ++i) {
    sec.HRegionTop[i] = span * (0.1f + 0.2f * float(i));
    sec.HRegionBottom[i] = sec.HRegionTop[i] + span * 0.05f;
    sec.HRegionPattern[i] = i * 2;
    sec.HLineDepth[i] = span * (0.15f + 0.2f * float(i));
    sec.HLineStyle[i] = i;
    sec.HLineWidth[i] = 2;
    sec.VRegionLeft[i] = span * (0.1f + 0.2f * float(i));
    sec.VRegionRight[i] = sec.VRegionLeft[i] + span * 0.05f;
    sec.VRegionPattern[i] = i + 1;
    sec.VLinePosition[i] = int(span * (0.2f + 0.2f * float(i)));
    sec.VLineStyle[i] = i;
    sec.VLineWidth[i] = 1;
  }
  return model;
}

// main() of a painting benchmark: an offscreen application with the plot's fonts.
inline int RunPaintBenchmarks(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);
  RegisterFontSubstitutes();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}

}  // namespace sedra::bench
