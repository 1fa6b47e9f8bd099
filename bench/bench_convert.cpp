// UpdateRadiographDib over 36 M samples (18 000 x 2 000) with region 0 and two user
// regions, against a memcpy of the same number of output bytes.

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "images/auto_contrast.h"
#include "images/conversion.h"
#include "import/read_support.h"
#include "model/model.h"

namespace sedra::bench {
namespace {

RadiographDesc& BigRadiograph() {
  static RadiographDesc rad = [] {
    RadiographDesc r{};
    r.Width = 2000;
    r.Height = 18000;
    r.Samples.resize(size_t(r.Width) * r.Height);
    uint32_t x = 12345;
    for (auto& s : r.Samples) {
      x = x * 1664525u + 1013904223u;
      s = uint16_t(8000 + (x >> 20));
    }
    AllocateDib(r.Bitmap, r.Width, r.Height);
    r.MaxValue = 8000 + 4095;
    r.Regions[0] = {0, 0, r.Width - 1, r.Height - 1, 8100, 11900};
    r.Regions[1] = {100, 1000, 900, 9000, 9000, 10000};
    r.Regions[2] = {500, 6000, 1900, 17000, 8500, 9500};
    return r;
  }();
  return rad;
}

void BM_MemcpyOutputBytes(benchmark::State& state) {
  RadiographDesc& rad = BigRadiograph();
  std::vector<uint8_t> from(rad.Bitmap.Bits.size(), 1);
  for (auto _ : state) {
    std::memcpy(rad.Bitmap.Bits.data(), from.data(), from.size());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_MemcpyOutputBytes)->Unit(benchmark::kMillisecond);

void BM_UpdateRadiographDib(benchmark::State& state) {
  RadiographDesc& rad = BigRadiograph();
  for (auto _ : state) {
    UpdateRadiographDib(rad);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_UpdateRadiographDib)->Unit(benchmark::kMillisecond);

void BM_AutoContrast(benchmark::State& state) {
  static Model model;
  model.CurRadiograph() = BigRadiograph();
  model.Work().SampleStep = 1;
  for (auto _ : state) AutoContrast(model, 0);
}
BENCHMARK(BM_AutoContrast)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace sedra::bench
