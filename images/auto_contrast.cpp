#include "images/auto_contrast.h"

#include <algorithm>
#include <vector>

#include "model/model.h"

namespace sedra {

void AutoContrast(Model& model, int region) {
  if (region < 0 || region >= kRegionCount) return;
  RadiographDesc& rad = model.CurRadiograph();
  std::vector<uint32_t>& hist = model.App.Histogram;
  hist.assign(65536, 0);
  model.App.HistBinWidth = std::max(rad.MaxValue / 1024, 1);

  RadiographRegion& r = rad.Regions[region];
  // After a RAW read the rows repeat each count SampleStep times; sampling at that step
  // counts each count about once.
  const int64_t step = std::max(model.Work().SampleStep, 1);
  const bool haveSamples = rad.Samples.size() >= size_t(std::max(rad.Width, 0)) * size_t(std::max(rad.Height, 0));
  const int64_t x1 = std::max(r.X1, 0), y1 = std::max(r.Y1, 0);
  const int64_t x2 = haveSamples ? std::min<int64_t>(r.X2, rad.Width) : 0;
  const int64_t y2 = haveSamples ? std::min<int64_t>(r.Y2, rad.Height) : 0;
  int64_t n = 0;
  if (step == 1 && x1 < x2) {
    // Neighbouring samples are often equal, and counting them into one array makes
    // each increment wait for the previous one.  Alternate pixels go to a second array,
    // added in afterwards.
    std::vector<uint32_t> more(65536, 0);
    uint32_t* h0 = hist.data();
    uint32_t* h1 = more.data();
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
    for (size_t b = 0; b < 65536; ++b) h0[b] += h1[b];
  } else {
    for (int64_t y = y1; y < y2; y += step) {
      const uint16_t* row = rad.Samples.data() + y * rad.Width;
      for (int64_t x = x1; x < x2; x += step) {
        ++hist[row[x]];
        ++n;
      }
    }
  }

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
