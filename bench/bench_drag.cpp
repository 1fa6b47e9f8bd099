// One step of a drag on the plot: the move handler on the bottom edge of a highlighted
// region a third of the window high, then the repaint of what it asks for, as the plot
// view paints it (the plot kept in its back buffer, the band drawn over the copy).
// Against the baseline of the same run, a full 1000 x 700 repaint of the window at the
// same zoom and scroll, a step must cost at most a quarter: BM_DragStep / BM_FullFrame
// <= 0.25 at 100%, 800% and 3200%.

#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <QRegion>

#include "bench/bench_section.h"
#include "interact/mouse_engine.h"
#include "plot/screen_buffer.h"

namespace {

constexpr int kWidth = 1000, kHeight = 700;

struct Scene {
  std::unique_ptr<sedra::Model> Model = sedra::bench::LoadedSection(18000, true);
  QImage Screen{kWidth, kHeight, QImage::Format_RGB32};
  sedra::ScreenBuffer Buffer;
  sedra::PlotLayout Layout;
  int Scroll = 0;

  // The zoom, the scroll in the middle of the document, one full paint.
  explicit Scene(int zoom) {
    Screen.setDotsPerMeterX(3780);
    Screen.setDotsPerMeterY(3780);
    Model->Plot().ZoomFactor = zoom;
    Model->Plot().NeedLayout = 1;
    Scroll = (zoom - 1) * kHeight / 2;
    Layout = Paint(QRegion(Screen.rect()));
  }
  sedra::PlotLayout Paint(const QRegion& region) {
    QPainter painter(&Screen);
    sedra::PaintTarget target;
    target.Client = Screen.rect();
    target.ScrollPos = Scroll;
    return Buffer.Paint(*Model, painter, region, target);
  }
};

void BM_FullFrame(benchmark::State& state) {
  Scene scene(int(state.range(0)));
  for (auto _ : state) {
    scene.Paint(QRegion(scene.Screen.rect()));
    benchmark::DoNotOptimize(scene.Screen.constBits());
  }
}

void BM_DragStep(benchmark::State& state) {
  Scene scene(int(state.range(0)));
  sedra::PlotState& plot = scene.Model->Plot();
  // The region tool is open and its band spans client rows 200 to 430.
  plot.HRegionMode = 1;
  plot.Tracking = 1;
  plot.TrackRect = {scene.Layout.LeftMargin, 200 + scene.Scroll, kWidth - scene.Layout.RightMargin,
                    430 + scene.Scroll};
  plot.LastMouseX = 500;
  plot.LastMouseY = 430 + scene.Scroll;
  int y = 430;
  for (auto _ : state) {
    y = y == 430 ? 431 : 430;  // the edge follows the pointer one row down and back
    const sedra::MouseOutcome out = sedra::OnMouseMove(*scene.Model, scene.Layout, {500, y, scene.Scroll, true});
    QRegion region;
    for (const QRect& r : out.Damage) {
      scene.Buffer.MarkBandOnly(r);
      region += r;
    }
    scene.Paint(region);
    benchmark::DoNotOptimize(scene.Screen.constBits());
  }
}

// Both warm up for half a second: just after an 18 000-row section has been built (and
// the previous one freed) the first few hundred steps run several times slower, and a
// drag happens on a section that is already on screen.
BENCHMARK(BM_FullFrame)->Arg(1)->Arg(8)->Arg(32)->Unit(benchmark::kMillisecond)->MinTime(0.5)->MinWarmUpTime(0.5);
BENCHMARK(BM_DragStep)->Arg(1)->Arg(8)->Arg(32)->Unit(benchmark::kMillisecond)->MinTime(0.5)->MinWarmUpTime(0.5);

}  // namespace

int main(int argc, char** argv) { return sedra::bench::RunPaintBenchmarks(argc, argv); }
