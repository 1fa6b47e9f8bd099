// Painting the composite plot of a fully loaded section into a 1000 x 700 window at
// every zoom, at the top, middle and bottom of the document.  A frame must stay
// within 16 ms, and the slowest zoom within 1.5x the fastest: painting follows the
// window, never the zoom or the image sizes.

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <cstring>
#include <memory>

#include "model/core.h"
#include "model/model.h"
#include "model/settings_files.h"
#include "plot/fonts.h"
#include "plot/paint_plot.h"

namespace {

constexpr int kWidth = 1000, kHeight = 700;

void FillDib(sedra::Dib& dib, int width, int height, bool colour) {
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
std::unique_ptr<sedra::Model> LoadedModel() {
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

sedra::Model& Shared() {
  static std::unique_ptr<sedra::Model> model = LoadedModel();
  return *model;
}

// state.range(0): zoom; state.range(1): 0 top, 1 middle, 2 bottom.
void BM_PaintPlot(benchmark::State& state) {
  sedra::Model& model = Shared();
  const int zoom = int(state.range(0));
  model.Plot().ZoomFactor = zoom;
  const int range = (zoom - 1) * kHeight;
  const int scroll = state.range(1) == 0 ? 0 : state.range(1) == 1 ? range / 2 : range;
  QImage image(kWidth, kHeight, QImage::Format_RGB32);
  image.setDotsPerMeterX(3780);
  image.setDotsPerMeterY(3780);
  sedra::PaintTarget target;
  target.Client = image.rect();
  target.ScrollPos = scroll;
  {
    // The first paint of a layout computes the curves and the screen images; what a
    // user waits for while scrolling is every paint after it.
    model.Plot().NeedLayout = 1;
    QPainter painter(&image);
    sedra::PaintPlot(model, painter, target);
  }
  for (auto _ : state) {
    QPainter painter(&image);
    sedra::PaintPlot(model, painter, target);
    painter.end();
    benchmark::DoNotOptimize(image.constBits());
  }
  state.SetLabel(state.range(1) == 0 ? "top" : state.range(1) == 1 ? "middle" : "bottom");
}
BENCHMARK(BM_PaintPlot)
    ->ArgsProduct({{1, 2, 4, 8, 16, 32}, {0, 1, 2}})
    ->Unit(benchmark::kMillisecond)
    ->MinTime(0.3);

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);
  sedra::RegisterFontSubstitutes();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
