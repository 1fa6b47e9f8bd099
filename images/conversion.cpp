#include "images/conversion.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "model/model.h"

namespace sedra {
namespace {

bool Usable(const Dib& dib, int32_t width, int32_t height, size_t sourceBytes) {
  return width >= 1 && height >= 1 && dib.Width == width && dib.Height == height &&
         dib.Bits.size() >= size_t(dib.Stride) * size_t(height) && sourceBytes >= size_t(dib.Stride) * size_t(height);
}

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
  // of dividing 65 536 times on every repaint.
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

// Samples in[0..count) through `table` into grey BGR triples.  Eight pixels make three
// 64-bit words, so the bitmap is written a word at a time instead of a byte at a time.
void ConvertRun(const uint16_t* in, uint8_t* out, int64_t count, const uint8_t* table) {
  int64_t x = 0;
  if constexpr (std::endian::native == std::endian::little) {
    for (; x + 8 <= count; x += 8) {
      const uint64_t g0 = table[in[x]], g1 = table[in[x + 1]], g2 = table[in[x + 2]], g3 = table[in[x + 3]];
      const uint64_t g4 = table[in[x + 4]], g5 = table[in[x + 5]], g6 = table[in[x + 6]], g7 = table[in[x + 7]];
      // Little-endian byte order: g0 g0 g0 g1 g1 g1 g2 g2 | g2 g3 g3 g3 g4 g4 g4 g5 | g5 g5 g6 g6 g6 g7 g7 g7.
      // Greys 24 bits apart are tripled by one multiply (bytes beyond bit 63 fall away).
      const uint64_t w0 = (g0 | g1 << 24 | g2 << 48) * 0x010101ULL;
      const uint64_t w1 = (g3 << 8 | g4 << 32 | g5 << 56) * 0x010101ULL | g2;
      const uint64_t w2 = (g6 << 16 | g7 << 40) * 0x010101ULL | g5 | g5 << 8;
      uint8_t* o = out + 3 * x;
      std::memcpy(o, &w0, 8);
      std::memcpy(o + 8, &w1, 8);
      std::memcpy(o + 16, &w2, 8);
    }
  }
  for (; x < count; ++x) {
    const uint8_t g = table[in[x]];
    out[3 * x] = g;
    out[3 * x + 1] = g;
    out[3 * x + 2] = g;
  }
}

}  // namespace

int UpdateOpticalDib(OpticalImageDesc& opt) {
  Dib& dib = opt.Bitmap;
  if (!Usable(dib, opt.Width, opt.Height, opt.Pixels.size())) return 0;
  const size_t stride = size_t(dib.Stride);
  const size_t rowBytes = size_t(opt.Width) * 3;
  if (opt.Lower <= 0 && opt.Upper == 256 && opt.RedLevel == 256 && opt.GreenLevel == 256 && opt.BlueLevel == 256) {
    std::memcpy(dib.Bits.data(), opt.Pixels.data(), stride * size_t(opt.Height));
  } else {
    // A closed window is opened by 8 levels, and stays so.
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
    uint8_t table[3][256];
    for (int c = 0; c < 3; ++c)
      for (int64_t s = 0; s < 256; ++s) {
        int64_t v = ((s - opt.Lower) * 256) / range;
        if (scaled) v = (v * factor[c]) / 256;
        table[c][s] = uint8_t(std::clamp<int64_t>(v, 0, 255));
      }
    for (int32_t y = 0; y < opt.Height; ++y) {
      const uint8_t* in = opt.Pixels.data() + size_t(y) * stride;
      uint8_t* out = dib.Bits.data() + size_t(y) * stride;
      // Row padding bytes are left as they are.
      for (size_t x = 0; x < rowBytes; x += 3) {
        out[x] = table[0][in[x]];
        out[x + 1] = table[1][in[x + 1]];
        out[x + 2] = table[2][in[x + 2]];
      }
    }
  }
  ++dib.Generation;
  return opt.Height;
}

int UpdateOpticalDib(Model& model) { return UpdateOpticalDib(model.CurOptical()); }

int UpdateRadiographDibInBands(RadiographDesc& rad, int bands) {
  Dib& dib = rad.Bitmap;
  const int32_t width = rad.Width, height = rad.Height;
  if (width < 1 || height < 1 || dib.Width != width || dib.Height != height ||
      dib.Bits.size() < size_t(dib.Stride) * size_t(height) || rad.Samples.size() < size_t(width) * size_t(height))
    return 0;
  const size_t stride = size_t(dib.Stride);
  const RadiographRegion& whole = rad.Regions[0];

  // The user regions that cover something, with their rectangles limited as painted:
  // the far edges go no further than the last row and column, which a region therefore
  // never covers.  Unused regions follow the whole-image window.
  struct Cover {
    int32_t X1, Y1, X2, Y2;
    int Table;
  };
  Cover covers[kRegionCount];
  int coverCount = 0;
  int tableCount = 1;
  // One table per distinct window; the first is region 0's, which has no upper clamp.
  int32_t tableLower[kRegionCount], tableUpper[kRegionCount];
  tableLower[0] = whole.Lower;
  tableUpper[0] = whole.Upper;
  for (int k = 1; k < kRegionCount; ++k) {
    RadiographRegion& region = rad.Regions[k];
    if (region.X2 <= 0) {
      region.Lower = whole.Lower;
      region.Upper = whole.Upper;
      continue;
    }
    const int32_t y2 = std::min(region.Y2, height - 1);
    const int32_t x2 = std::min(region.X2, width - 1);
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
    covers[coverCount++] = {x1, y1, x2, y2, t};
  }
  uint8_t tables[kRegionCount][65536];
  for (int t = 0; t < tableCount; ++t) BuildWindowTable(tables[t], tableLower[t], tableUpper[t], t != 0);

  // Each row is written once: it is cut where regions begin and end, and every piece
  // goes through the window of the last region covering it (a later region overwrites
  // an earlier one), or region 0's.  The cuts only change where a region starts or ends.
  // A band of rows works them out afresh at its first row, reads the tables and covers
  // only, and writes nothing but its own rows of the bitmap.
  auto convertRows = [&](int, int64_t firstRow, int64_t endRow) {
    int32_t cuts[2 * kRegionCount + 2];
    int pieceTable[2 * kRegionCount + 1];
    int pieceCount = 0;
    int32_t nextChange = int32_t(firstRow);
    for (int32_t y = int32_t(firstRow); y < int32_t(endRow); ++y) {
      if (y == nextChange) {
        nextChange = height;
        int cutCount = 0;
        cuts[cutCount++] = 0;
        cuts[cutCount++] = width;
        for (int c = 0; c < coverCount; ++c) {
          const Cover& cover = covers[c];
          if (y < cover.Y1) nextChange = std::min(nextChange, cover.Y1);
          else if (y < cover.Y2) {
            nextChange = std::min(nextChange, cover.Y2);
            cuts[cutCount++] = cover.X1;
            cuts[cutCount++] = cover.X2;
          }
        }
        std::sort(cuts, cuts + cutCount);
        pieceCount = int(std::unique(cuts, cuts + cutCount) - cuts) - 1;
        for (int p = 0; p < pieceCount; ++p) {
          int t = 0;
          for (int c = 0; c < coverCount; ++c) {
            const Cover& cover = covers[c];
            if (y >= cover.Y1 && y < cover.Y2 && cover.X1 <= cuts[p] && cuts[p] < cover.X2) t = cover.Table;
          }
          pieceTable[p] = t;
        }
      }
      const uint16_t* in = rad.Samples.data() + size_t(y) * size_t(width);
      uint8_t* out = dib.Bits.data() + size_t(y) * stride;
      for (int p = 0; p < pieceCount; ++p)
        ConvertRun(in + cuts[p], out + size_t(cuts[p]) * 3, cuts[p + 1] - cuts[p], tables[pieceTable[p]]);
    }
  };
  ForEachRowBand(bands, height, convertRows);
  ++dib.Generation;
  return height;
}

int UpdateRadiographDib(RadiographDesc& rad) {
  return UpdateRadiographDibInBands(rad, RowBandCount(int64_t(std::max(rad.Width, 0)) * std::max(rad.Height, 0)));
}

int UpdateRadiographDib(Model& model) { return UpdateRadiographDib(model.CurRadiograph()); }

}  // namespace sedra
