// What a user waits for while dragging a contrast marker, and after choosing a file.
//
// BM_ContrastFrame: one repaint of a 1000 x 700 main window and of the radiograph
// window beside it, at zoom 100%, 800% and 3200%, for radiographs of 18 000 and 36 000
// rows by 2 000 columns.  The radiograph window shows the image twice its width (4 000
// pixels) and 690 rows high, standing left of a dialog at x 1100 on a 1920-pixel
// screen: its right 1 075 columns are on the screen and painted.  With change 1 the
// top of the contrast window moves by one level before every frame, through 400
// levels and back, as a dragged marker moves it; with change 0 the same frame is
// painted again unchanged.  A change must cost at most
// 1.5x the repaint without one, and the 36 000-row image at most 1.2x the 18 000-row one.
//
// BM_LoadToFirstFrame against BM_ReadTiff: reading the radiograph TIFF, its automatic
// contrast and the first paint, against the read alone (at most 1.5x).

#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <map>
#include <memory>

#include "bench/bench_section.h"
#include "bench/bench_support.h"
#include "images/draw/view_paint.h"
#include "images/image_views.h"
#include "images/load.h"
#include "import/tiff_reader.h"
#include "model/core.h"
#include "plot/paint_plot.h"

namespace sedra::bench {
namespace {

constexpr int kWidth = 1000, kHeight = 700;
constexpr int kScreenWidth = 1920, kDialogLeft = 1100;

Model& SectionOfLength(int length) {
  static std::map<int, std::unique_ptr<Model>> models;
  auto& model = models[length];
  if (!model) model = LoadedSection(length, true);
  return *model;
}

struct Frame {
  QImage Main{kWidth, kHeight, QImage::Format_RGB32};
  QImage Window;
  QRect OnScreen;
  PaintTarget Target;
  RadiographView View;

  Frame(Model& model, int scroll) {
    Main.setDotsPerMeterX(3780);
    Main.setDotsPerMeterY(3780);
    Target.Client = Main.rect();
    Target.ScrollPos = scroll;
    View = LayOutRadiographView(model.CurRadiograph(), kHeight, kDialogLeft, 0);
    Window = QImage(View.WindowWidth, View.WindowHeight, QImage::Format_RGB32);
    OnScreen = Window.rect() & QRect(-View.WindowX, 0, kScreenWidth, View.WindowHeight);
  }
  void Paint(Model& model) {
    {
      QPainter painter(&Main);
      PaintPlot(model, painter, Target);
    }
    QPainter painter(&Window);
    painter.fillRect(OnScreen, Qt::white);
    const int originY = model.Plot().ZoomFactor > 1 ? Target.ScrollPos : 0;
    PaintRadiographView(painter, model, View, originY, OnScreen, {}, false);
  }
};

// state.range(0): rows of the radiograph; (1): zoom; (2): 1 when the contrast changes.
void BM_ContrastFrame(benchmark::State& state) {
  Model& model = SectionOfLength(int(state.range(0)));
  const int zoom = int(state.range(1));
  const bool change = state.range(2) != 0;
  model.Plot().ZoomFactor = zoom;
  Frame frame(model, (zoom - 1) * kHeight / 2);
  RadiographRegion& window = model.CurRadiograph().Regions[0];
  const int32_t upper = window.Upper;
  // The first frame lays the plot out and computes the curves; what follows the mouse
  // is every frame after it.
  model.Plot().NeedLayout = 1;
  frame.Paint(model);
  int step = 0;
  for (auto _ : state) {
    if (change) {
      ++step;
      window.Upper = upper + (step % 800 < 400 ? step % 400 : 400 - step % 400);
    }
    frame.Paint(model);
    benchmark::DoNotOptimize(frame.Window.constBits());
  }
  window.Upper = upper;
  state.SetLabel(change ? "contrast change" : "unchanged");
}
BENCHMARK(BM_ContrastFrame)
    ->ArgsProduct({{18000, 36000}, {1, 8, 32}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->MinTime(0.5);

std::filesystem::path RadiographFile(int length) {
  const std::string options =
      "--length " + std::to_string(length) + " --width 2000 --raw-values 0 --missing optical.tif --missing document.txt";
  return SampleFolder("tiff-" + std::to_string(length) + "x2000", options) / "radiograph.tif";
}

void ReadFile(benchmark::State& state, Model& model, const std::filesystem::path& path) {
  FixedPrompt prompt;
  model.CurRadiograph().Clear();
  model.CurSection().RadiographCount = 0;
  if (!ReadTiffPath(model, prompt, path.string(), true, false).PixelsRead) state.SkipWithError("read failed");
}

void BM_ReadTiff(benchmark::State& state) {
  const auto path = RadiographFile(int(state.range(0)));
  Model model;
  for (auto _ : state) ReadFile(state, model, path);
}
BENCHMARK(BM_ReadTiff)->Arg(18000)->Arg(36000)->Unit(benchmark::kMillisecond);

void BM_LoadToFirstFrame(benchmark::State& state) {
  const auto path = RadiographFile(int(state.range(0)));
  Model model;
  NewCore(model, nullptr);
  SetDefaultSettings(model.App.Settings);
  model.Work().ShowRadiograph = 1;
  QImage image(kWidth, kHeight, QImage::Format_RGB32);
  image.setDotsPerMeterX(3780);
  image.setDotsPerMeterY(3780);
  PaintTarget target;
  target.Client = image.rect();
  for (auto _ : state) {
    ReadFile(state, model, path);
    FinishRadiographLoad(model);
    UpdateMenusAfterLoad(model, true);
    QPainter painter(&image);
    PaintPlot(model, painter, target);
  }
}
BENCHMARK(BM_LoadToFirstFrame)->Arg(18000)->Arg(36000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace sedra::bench

int main(int argc, char** argv) { return sedra::bench::RunPaintBenchmarks(argc, argv); }
