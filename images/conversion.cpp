#include "images/conversion.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "images/contrast.h"
#include "model/model.h"

namespace sedra {
namespace {

bool Usable(const Dib& dib, int32_t width, int32_t height, size_t sourceBytes) {
  return width >= 1 && height >= 1 && dib.Width == width && dib.Height == height &&
         dib.Bits.size() >= size_t(dib.Stride) * size_t(height) && sourceBytes >= size_t(dib.Stride) * size_t(height);
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
  if (ShowsPixelsAsLoaded(opt)) {
    // A plain copy, padding bytes and all.
    std::memcpy(dib.Bits.data(), opt.Pixels.data(), stride * size_t(opt.Height));
    ++dib.Generation;
    return opt.Height;
  }
  OpticalTables tables;
  BuildOpticalTables(opt, tables);
  for (int32_t y = 0; y < opt.Height; ++y) {
    const uint8_t* in = opt.Pixels.data() + size_t(y) * stride;
    uint8_t* out = dib.Bits.data() + size_t(y) * stride;
    // Row padding bytes are left as they are.
    for (size_t x = 0; x < rowBytes; x += 3) {
      out[x] = tables.Level[0][in[x]];
      out[x + 1] = tables.Level[1][in[x + 1]];
      out[x + 2] = tables.Level[2][in[x + 2]];
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
  ShareWholeWindow(rad);
  RadiographWindows windows;
  windows.Build(rad);
  // Each row is written once, piece by piece.  A band of rows works its cuts out afresh
  // at its first row, reads the tables only, and writes nothing but its own rows.
  auto convertRows = [&](int, int64_t firstRow, int64_t endRow) {
    RadiographWindows::Row cut;
    cut.NextRow = int32_t(firstRow);
    for (int32_t y = int32_t(firstRow); y < int32_t(endRow); ++y) {
      if (y == cut.NextRow) windows.CutRow(y, cut);
      const uint16_t* in = rad.Samples.data() + size_t(y) * size_t(width);
      uint8_t* out = dib.Bits.data() + size_t(y) * stride;
      for (int p = 0; p < cut.Pieces; ++p)
        ConvertRun(in + cut.Cuts[p], out + size_t(cut.Cuts[p]) * 3, cut.Cuts[p + 1] - cut.Cuts[p], cut.Table[p]);
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
