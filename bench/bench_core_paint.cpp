// A whole core of twelve sections.  Adding the twelfth section must cost at most 1.3x
// adding the first (nothing done per section already loaded), and a frame of the whole
// core at any zoom at most 1.5x a frame of one section (only what is visible is drawn).
// The baselines are measured in the same run: adding into an empty core, and painting
// the first section alone.  The resident memory the twelve sections take is reported
// per radiograph sample, above the two bytes of the sample itself.
//
// Sections are 2 000 samples across and SEDRA_BENCH_CORE_ROWS long (18 000, the
// scanner's longest, unless set): 432 M samples in the whole core.

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <QImage>
#include <QPainter>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "bench/bench_section.h"
#include "bench/bench_support.h"
#include "images/whole_core.h"
#include "model/core.h"
#include "model/model.h"
#include "plot/paint_plot.h"

namespace sedra::bench {
namespace {

constexpr int kWidth = 1000, kHeight = 700;

int CoreRows() {
  const char* rows = std::getenv("SEDRA_BENCH_CORE_ROWS");
  return rows && std::atoi(rows) > 0 ? std::atoi(rows) : 18000;
}

std::filesystem::path CoreFolder() {
  const std::string rows = std::to_string(CoreRows());
  return SampleFolder("core-12x" + rows,
                      "--sections 12 --width 2000 --raw-values 0 --missing optical.tif --length " + rows);
}

std::filesystem::path SectionFolder(int n) {
  char name[32];
  std::snprintf(name, sizeof name, "section-%02d", n);
  return CoreFolder() / name;
}

bool AddSection(Model& model, FixedPrompt& prompt, int n) {
  prompt.Path = (SectionFolder(n) / "radiograph.tif").string();
  return CommandAddSection(model, prompt);
}

int64_t ResidentBytes() {
  long pages = 0, resident = 0;
  FILE* f = std::fopen("/proc/self/statm", "r");
  if (!f) return 0;
  if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
  std::fclose(f);
  return int64_t(resident) * sysconf(_SC_PAGESIZE);
}

int64_t residentBeforeCore = 0;  // before the first section was read

// Resident bytes per radiograph sample of the sections loaded, above the sample's own two.
double BytesPerSampleAboveData(const Model& model) {
  const double samples = double(model.Plot().SectionCount) * CoreRows() * 2000.0;
  return double(ResidentBytes() - residentBeforeCore) / samples - 2.0;
}

// The core of eleven sections the twelfth is added to, and the whole core painted.
Model& ElevenSections(benchmark::State& state) {
  static std::unique_ptr<Model> model;
  static double bytesPerSample = 0;
  if (!model) {
    model = std::make_unique<Model>();
    NewCore(*model, nullptr);
    SetDefaultSettings(model->App.Settings);
    FixedPrompt prompt;
    CoreFolder();
    residentBeforeCore = ResidentBytes();
    for (int n = 1; n <= 11; ++n)
      if (!AddSection(*model, prompt, n)) state.SkipWithError("a section was not added");
    bytesPerSample = BytesPerSampleAboveData(*model);
  }
  state.counters["resident_bytes_per_sample_above_data"] = bytesPerSample;
  return *model;
}

void BM_AddFirstSection(benchmark::State& state) {
  Model model;
  SetDefaultSettings(model.App.Settings);
  FixedPrompt prompt;
  CoreFolder();
  for (auto _ : state) {
    state.PauseTiming();
    NewCore(model, nullptr);
    state.ResumeTiming();
    if (!AddSection(model, prompt, 1)) state.SkipWithError("the section was not added");
  }
}
BENCHMARK(BM_AddFirstSection)->Unit(benchmark::kMillisecond)->MinTime(1.0);

void BM_AddTwelfthSection(benchmark::State& state) {
  Model& model = ElevenSections(state);
  FixedPrompt prompt;
  for (auto _ : state) {
    if (!AddSection(model, prompt, 12)) state.SkipWithError("the section was not added");
    state.PauseTiming();
    RemoveCurrentSection(model, prompt);
    state.ResumeTiming();
  }
}
BENCHMARK(BM_AddTwelfthSection)->Unit(benchmark::kMillisecond)->MinTime(1.0);

// state.range(0): zoom; state.range(1): 1 the whole core, 0 its first section alone.
void BM_Frame(benchmark::State& state) {
  Model& model = ElevenSections(state);
  FixedPrompt prompt;
  if (model.Plot().SectionCount < 12 && !AddSection(model, prompt, 12)) state.SkipWithError("no twelfth section");
  const int zoom = int(state.range(0));
  PlotState& plot = model.Plot();
  model.SelectSection(0);
  plot.ShowAllSections = state.range(1) ? 1 : 0;
  plot.ZoomFactor = zoom;
  QImage image(kWidth, kHeight, QImage::Format_RGB32);
  image.setDotsPerMeterX(3780);
  image.setDotsPerMeterY(3780);
  PaintTarget target;
  target.Client = image.rect();
  target.ScrollPos = (zoom - 1) * kHeight / 2;  // the middle of the document
  {
    plot.NeedLayout = 1;
    QPainter painter(&image);
    PaintPlot(model, painter, target);
  }
  for (auto _ : state) {
    QPainter painter(&image);
    PaintPlot(model, painter, target);
    painter.end();
    benchmark::DoNotOptimize(image.constBits());
  }
  // Painting keeps screen copies of what it drew: the memory is counted again after it.
  state.counters["resident_bytes_per_sample_above_data"] = BytesPerSampleAboveData(model);
  state.SetLabel(state.range(1) ? "whole core" : "one section");
}
BENCHMARK(BM_Frame)->ArgsProduct({{1, 4, 32}, {0, 1}})->Unit(benchmark::kMillisecond)->MinTime(0.3);

}  // namespace
}  // namespace sedra::bench

int main(int argc, char** argv) { return sedra::bench::RunPaintBenchmarks(argc, argv); }
