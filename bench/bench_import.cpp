// Reading large sections.  Baselines in the same run: reading the TIFF's bytes, libvips
// rotating it (`vips rot FILE out.v d270`), and counting a RAW file's line feeds.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "bench/bench_support.h"
#include "images/load.h"
#include "import/raw_reader.h"
#include "import/tiff_reader.h"
#include "model/model.h"

namespace sedra::bench {
namespace {

const char* kTiffOptions = "--length 18000 --width 2000 --raw-values 0 --missing optical.tif --missing document.txt";
const char* kRawOptions = "--raw-values 1500 --raw-mb 100 --missing optical.tif --missing radiograph.tif";

std::filesystem::path BigTiff() { return SampleFolder("tiff-18000x2000", kTiffOptions) / "radiograph.tif"; }
std::filesystem::path BigRaw() { return SampleFolder("raw-100mb", kRawOptions) / "radiograph.raw"; }

Model& SharedModel() {
  static Model model;
  return model;
}

void BM_ReadFileBytes(benchmark::State& state) {
  const auto path = BigTiff();
  std::vector<char> buffer(1 << 20);
  for (auto _ : state) {
    std::unique_ptr<FILE, int (*)(FILE*)> f(std::fopen(path.c_str(), "rb"), &std::fclose);
    size_t total = 0, got;
    while ((got = std::fread(buffer.data(), 1, buffer.size(), f.get())) > 0) total += got;
    benchmark::DoNotOptimize(total);
  }
}
BENCHMARK(BM_ReadFileBytes)->Unit(benchmark::kMillisecond);

void BM_VipsRotate(benchmark::State& state) {
  const auto path = BigTiff();
  const std::string out = (path.parent_path() / "vips-out.v").string();
  const std::string cmd = "vips rot \"" + path.string() + "\" \"" + out + "\" d270";
  for (auto _ : state) {
    if (std::system(cmd.c_str()) != 0) state.SkipWithError("vips failed");
  }
  std::remove(out.c_str());
}
BENCHMARK(BM_VipsRotate)->Unit(benchmark::kMillisecond);

// Reads the big radiograph afresh at every iteration; with `display` also finishes the
// load as the menu command does (its automatic contrast; the display is converted
// where it is drawn).
void ReadBigRadiograph(benchmark::State& state, bool display) {
  const auto path = BigTiff();
  Model& model = SharedModel();
  FixedPrompt prompt;
  for (auto _ : state) {
    model.CurRadiograph().Clear();
    model.CurSection().RadiographCount = 0;
    const ReadOutcome out = ReadTiffPath(model, prompt, path.string(), true, false);
    if (!out.PixelsRead) state.SkipWithError("read failed");
    if (display) FinishRadiographLoad(model);
  }
}

// Samples only: rotation and offset correction.
void BM_ReadTiffSamples(benchmark::State& state) { ReadBigRadiograph(state, false); }
BENCHMARK(BM_ReadTiffSamples)->Unit(benchmark::kMillisecond);

// To a radiograph ready to draw.
void BM_LoadTiffToBitmap(benchmark::State& state) { ReadBigRadiograph(state, true); }
BENCHMARK(BM_LoadTiffToBitmap)->Unit(benchmark::kMillisecond);

size_t CountLineFeeds(std::string_view text) {
  size_t lines = 0;
  for (const char *p = text.data(), *end = p + text.size(); p < end; ++lines) {
    const void* lf = std::memchr(p, '\n', size_t(end - p));
    if (!lf) break;
    p = static_cast<const char*>(lf) + 1;
  }
  return lines;
}

// The RAW pairs: counting line feeds against parsing and resampling at HighRes (5 rows
// per count, 2 lines per column), once on text already in memory and once from the
// file, where both read it whole first.
void BM_RawCountLineFeeds(benchmark::State& state) {
  const std::string text = ReadAll(BigRaw());
  for (auto _ : state) benchmark::DoNotOptimize(CountLineFeeds(text));
  state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(text.size()));
}
BENCHMARK(BM_RawCountLineFeeds)->Unit(benchmark::kMillisecond);

void BM_RawParseAndResample(benchmark::State& state) {
  const std::string text = ReadAll(BigRaw());
  Model& model = SharedModel();
  FixedPrompt prompt;
  for (auto _ : state) {
    model.CurSection().RadiographCount = 0;
    if (!ParseRawRadiograph(model, prompt, text, false).PixelsRead) state.SkipWithError("parse failed");
  }
  state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(text.size()));
}
BENCHMARK(BM_RawParseAndResample)->Unit(benchmark::kMillisecond);

void BM_RawFileCountLineFeeds(benchmark::State& state) {
  const auto path = BigRaw();
  for (auto _ : state) {
    std::unique_ptr<FILE, int (*)(FILE*)> f(std::fopen(path.c_str(), "rb"), &std::fclose);
    ByteBuffer text;
    AllocateBytes(text, std::filesystem::file_size(path));
    text.resize(std::fread(text.data(), 1, text.size(), f.get()));
    benchmark::DoNotOptimize(CountLineFeeds(std::string_view(reinterpret_cast<const char*>(text.data()), text.size())));
  }
}
BENCHMARK(BM_RawFileCountLineFeeds)->Unit(benchmark::kMillisecond);

void BM_RawFileRead(benchmark::State& state) {
  const auto path = BigRaw();
  Model& model = SharedModel();
  FixedPrompt prompt;
  for (auto _ : state) {
    model.CurSection().RadiographCount = 0;
    if (!ReadRawFile(model, prompt, path.string(), false).PixelsRead) state.SkipWithError("read failed");
  }
}
BENCHMARK(BM_RawFileRead)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace sedra::bench
