// Painting the composite plot of a fully loaded section into a 1000 x 700 window at
// every zoom, at the top, middle and bottom of the document.  A frame must stay
// within 16 ms, and the slowest zoom within 1.5x the fastest: painting follows the
// window, never the zoom or the image sizes.

#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <cstring>
#include <memory>

#include "bench_section.h"
#include "plot/paint_plot.h"

namespace {

using sedra::bench::kHeight;
using sedra::bench::kWidth;

sedra::Model& Shared() {
  static std::unique_ptr<sedra::Model> model = sedra::bench::LoadedModel();
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

int main(int argc, char** argv) { return sedra::bench::RunWithFonts(argc, argv); }
