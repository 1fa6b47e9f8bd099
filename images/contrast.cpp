#include "images/contrast.h"

#include <algorithm>
#include <cstring>

namespace sedra {

namespace {

// Grey for every 16-bit sample through one window: ((s - lower) * 255) / range,
// truncated toward zero, negatives to 0.  Region 0 keeps the low 8 bits of larger
// values (no upper clamp: samples above Upper fold back to dark unless a user region
// covers them); the user regions clamp to 255.
void BuildWindowTable(uint8_t* table, int64_t lower, int64_t upper, bool clampHigh) {
  const int64_t range = upper == lower ? 1 : upper - lower;
  if (range < 0) {
    // An inverted window: rare enough to pay a division per entry.
    for (int64_t s = 0; s < 65536; ++s) {
      int64_t v = ((s - lower) * 255) / range;
      if (v < 0) v = 0;
      if (clampHigh && v > 255) v = 255;
      table[s] = uint8_t(v & 0xFF);
    }
    return;
  }
  // Below the window the quotient is zero or negative: black.  From there on the
  // numerator grows by 255 a step, so quotient and remainder are carried along instead
  // of dividing 65 536 times.
  const int64_t first = std::clamp<int64_t>(lower, 0, 65536);
  std::memset(table, 0, size_t(first));
  if (first == 65536) return;
  const int64_t numerator = (first - lower) * 255;
  int64_t q = numerator / range, r = numerator % range;
  const int64_t dq = 255 / range, dr = 255 % range;
  for (int64_t s = first; s < 65536; ++s) {
    table[s] = uint8_t(clampHigh && q > 255 ? 255 : q & 0xFF);
    q += dq;
    r += dr;
    if (r >= range) {
      r -= range;
      ++q;
    }
  }
}

}  // namespace

void ShareWholeWindow(RadiographDesc& rad) {
  for (int k = 1; k < kRegionCount; ++k) {
    RadiographRegion& region = rad.Regions[k];
    if (region.X2 <= 0) {
      region.Lower = rad.Regions[0].Lower;
      region.Upper = rad.Regions[0].Upper;
    }
  }
}

bool RadiographWindows::BuiltFor(const RadiographDesc& rad) const {
  return built_ && width_ == rad.Width && height_ == rad.Height &&
         std::memcmp(regions_, rad.Regions, sizeof regions_) == 0;
}

void RadiographWindows::Build(const RadiographDesc& rad) {
  std::memcpy(regions_, rad.Regions, sizeof regions_);
  width_ = rad.Width;
  height_ = rad.Height;
  built_ = true;
  coverCount_ = 0;
  // One table per distinct window; the first is region 0's, which has no upper clamp.
  int32_t tableLower[kRegionCount], tableUpper[kRegionCount];
  tableLower[0] = rad.Regions[0].Lower;
  tableUpper[0] = rad.Regions[0].Upper;
  int tableCount = 1;
  for (int k = 1; k < kRegionCount; ++k) {
    const RadiographRegion& region = rad.Regions[k];
    if (region.X2 <= 0) continue;
    const int32_t y2 = std::min(region.Y2, height_ - 1);
    const int32_t x2 = std::min(region.X2, width_ - 1);
    const int32_t y1 = std::max(region.Y1, 0);
    const int32_t x1 = std::max(region.X1, 0);
    if (y1 >= y2 || x1 >= x2) continue;
    int t = 1;
    while (t < tableCount && (tableLower[t] != region.Lower || tableUpper[t] != region.Upper)) ++t;
    if (t == tableCount) {
      tableLower[t] = region.Lower;
      tableUpper[t] = region.Upper;
      ++tableCount;
    }
    covers_[coverCount_++] = {x1, y1, x2, y2, t};
  }
  tables_.resize(size_t(tableCount) * 65536);
  for (int t = 0; t < tableCount; ++t)
    BuildWindowTable(tables_.data() + size_t(t) * 65536, tableLower[t], tableUpper[t], t != 0);
}

void RadiographWindows::CutRow(int32_t y, Row& row) const {
  // A row is cut where regions begin and end, and every piece goes through the window
  // of the last region covering it (a later region overwrites an earlier one).
  row.NextRow = height_;
  int cutCount = 0;
  row.Cuts[cutCount++] = 0;
  row.Cuts[cutCount++] = width_;
  for (int c = 0; c < coverCount_; ++c) {
    const Cover& cover = covers_[c];
    if (y < cover.Y1) {
      row.NextRow = std::min(row.NextRow, cover.Y1);
    } else if (y < cover.Y2) {
      row.NextRow = std::min(row.NextRow, cover.Y2);
      row.Cuts[cutCount++] = cover.X1;
      row.Cuts[cutCount++] = cover.X2;
    }
  }
  std::sort(row.Cuts, row.Cuts + cutCount);
  row.Pieces = int(std::unique(row.Cuts, row.Cuts + cutCount) - row.Cuts) - 1;
  for (int p = 0; p < row.Pieces; ++p) {
    int t = 0;
    for (int c = 0; c < coverCount_; ++c) {
      const Cover& cover = covers_[c];
      if (y >= cover.Y1 && y < cover.Y2 && cover.X1 <= row.Cuts[p] && row.Cuts[p] < cover.X2) t = cover.Table;
    }
    row.Table[p] = tables_.data() + size_t(t) * 65536;
  }
}

bool ShowsPixelsAsLoaded(const OpticalImageDesc& opt) {
  return opt.Lower <= 0 && opt.Upper == 256 && opt.RedLevel == 256 && opt.GreenLevel == 256 && opt.BlueLevel == 256;
}

void BuildOpticalTables(OpticalImageDesc& opt, OpticalTables& out) {
  if (ShowsPixelsAsLoaded(opt)) {
    for (auto& channel : out.Level)
      for (int s = 0; s < 256; ++s) channel[s] = uint8_t(s);
    return;
  }
  if (opt.Upper == opt.Lower) opt.Upper = opt.Lower + 8;
  const int64_t range = int64_t(opt.Upper) - opt.Lower;
  int64_t factor[3] = {256, 256, 256};  // blue, green, red
  if (opt.RedLevel > 0) factor[0] = factor[1] = 256 - int64_t(opt.RedLevel);
  if (opt.GreenLevel > 0) {
    factor[0] -= opt.GreenLevel;
    factor[2] -= opt.GreenLevel;
  }
  if (opt.BlueLevel > 0) {
    factor[1] -= opt.BlueLevel;
    factor[2] -= opt.BlueLevel;
  }
  const bool scaled = factor[0] != 256 || factor[1] != 256 || factor[2] != 256;
  for (int c = 0; c < 3; ++c)
    for (int64_t s = 0; s < 256; ++s) {
      int64_t v = ((s - opt.Lower) * 256) / range;
      if (scaled) v = (v * factor[c]) / 256;
      out.Level[c][s] = uint8_t(std::clamp<int64_t>(v, 0, 255));
    }
}

}  // namespace sedra
