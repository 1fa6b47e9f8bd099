#include "images/auto_contrast.h"

#include <algorithm>
#include <vector>

#include "images/conversion.h"
#include "model/model.h"

namespace sedra {

namespace {

// Counts rows y1, y1 + step, ... (before y2) of columns x1, x1 + step, ... (before x2)
// into h0 (and h1, which the caller adds in); returns the number of samples counted.
int64_t CountRows(const RadiographDesc& rad, int64_t x1, int64_t x2, int64_t y1, int64_t y2, int64_t step,
                  uint32_t* h0, uint32_t* h1) {
  int64_t n = 0;
  if (step == 1 && x1 < x2) {
    // Neighbouring samples are often equal, and counting them into one array makes
    // each increment wait for the previous one.  Alternate pixels go to a second array.
    for (int64_t y = y1; y < y2; ++y) {
      const uint16_t* row = rad.Samples.data() + y * rad.Width;
      int64_t x = x1;
      for (; x + 4 <= x2; x += 4) {
        ++h0[row[x]];
        ++h1[row[x + 1]];
        ++h0[row[x + 2]];
        ++h1[row[x + 3]];
      }
      for (; x < x2; ++x) ++h0[row[x]];
      n += x2 - x1;
    }
  } else {
    for (int64_t y = y1; y < y2; y += step) {
      const uint16_t* row = rad.Samples.data() + y * rad.Width;
      for (int64_t x = x1; x < x2; x += step) {
        ++h0[row[x]];
        ++n;
      }
    }
  }
  return n;
}

}  // namespace

void AutoContrast(Model& model, int region) { AutoContrastInBands(model, region, 0); }

void AutoContrastInBands(Model& model, int region, int bands) {
  if (region < 0 || region >= kRegionCount) return;
  RadiographDesc& rad = model.CurRadiograph();
  std::vector<uint32_t>& hist = model.App.Histogram;
  hist.resize(65536);
  model.App.HistBinWidth = std::max(rad.MaxValue / 1024, 1);

  RadiographRegion& r = rad.Regions[region];
  // After a RAW read the rows repeat each count SampleStep times; sampling at that step
  // counts each count about once.
  const int64_t step = std::max(model.Work().SampleStep, 1);
  const bool haveSamples = rad.Samples.size() >= size_t(std::max(rad.Width, 0)) * size_t(std::max(rad.Height, 0));
  const int64_t x1 = std::max(r.X1, 0), y1 = std::max(r.Y1, 0);
  const int64_t x2 = haveSamples ? std::min<int64_t>(r.X2, rad.Width) : 0;
  const int64_t y2 = haveSamples ? std::min<int64_t>(r.Y2, rad.Height) : 0;

  // Every band counts into two arrays of its own: band b into arrays 2b and 2b + 1,
  // array 0 being the model's histogram and the others the kept scratch counters, so
  // a large image costs no allocation after the first.  All are added into array 0
  // once the bands are done.
  const int64_t sampledRows = y1 < y2 ? (y2 - y1 + step - 1) / step : 0;
  const int64_t sampledColumns = x1 < x2 ? (x2 - x1 + step - 1) / step : 0;
  if (bands < 1) bands = RowBandCount(sampledRows * sampledColumns);
  // As ForEachRowBand cuts them: no more bands than rows, so every band has its arrays cleared.
  bands = int(std::clamp<int64_t>(std::min<int64_t>(bands, sampledRows), 1, kMaxRowBands));
  std::vector<uint32_t>& scratch = model.App.HistogramScratch;
  if (scratch.size() < size_t(2 * bands - 1) * 65536) scratch.resize(size_t(2 * kMaxRowBands - 1) * 65536);
  uint32_t* arrays[2 * kMaxRowBands];
  arrays[0] = hist.data();
  for (int a = 1; a < 2 * bands; ++a) arrays[a] = scratch.data() + size_t(a - 1) * 65536;
  int64_t counted[kMaxRowBands] = {};
  ForEachRowBand(bands, sampledRows, [&](int band, int64_t from, int64_t to) {
    uint32_t* h0 = arrays[2 * band];
    uint32_t* h1 = arrays[2 * band + 1];
    std::fill_n(h0, 65536, 0u);
    std::fill_n(h1, 65536, 0u);
    counted[band] = CountRows(rad, x1, x2, y1 + from * step, std::min(y2, y1 + to * step), step, h0, h1);
  });
  int64_t n = 0;
  for (int b = 0; b < bands; ++b) n += counted[b];
  for (int a = 1; a < 2 * bands; ++a)
    for (size_t v = 0; v < 65536; ++v) hist[v] += arrays[a][v];

  const int64_t maxValue = std::min(rad.MaxValue, 65535);
  int64_t remaining = n;
  int64_t threshold = 98 * (n / 100);
  for (int64_t b = 0; b < maxValue; ++b) {
    remaining -= hist[size_t(b)];
    if (remaining <= threshold) {
      r.Lower = int32_t(b == 0 ? 0 : b - 1);
      break;
    }
  }
  threshold = 98 * (remaining / 100);
  for (int64_t b = maxValue; b > 0; --b) {
    remaining -= hist[size_t(b)];
    if (remaining <= threshold) {
      r.Upper = int32_t(b + 1);
      break;
    }
  }
}

}  // namespace sedra
