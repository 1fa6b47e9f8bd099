#include "images/conversion.h"

#include <algorithm>
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
  for (int64_t s = 0; s < 65536; ++s) {
    int64_t v = ((s - lower) * 255) / range;
    if (v < 0) v = 0;
    if (clampHigh && v > 255) v = 255;
    table[s] = uint8_t(v & 0xFF);
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

int UpdateRadiographDib(RadiographDesc& rad) {
  Dib& dib = rad.Bitmap;
  const int32_t width = rad.Width, height = rad.Height;
  if (width < 1 || height < 1 || dib.Width != width || dib.Height != height ||
      dib.Bits.size() < size_t(dib.Stride) * size_t(height) || rad.Samples.size() < size_t(width) * size_t(height))
    return 0;
  const size_t stride = size_t(dib.Stride);
  uint8_t table[65536];
  const RadiographRegion& whole = rad.Regions[0];
  BuildWindowTable(table, whole.Lower, whole.Upper, false);
  for (int32_t y = 0; y < height; ++y) {
    const uint16_t* in = rad.Samples.data() + size_t(y) * size_t(width);
    uint8_t* out = dib.Bits.data() + size_t(y) * stride;
    for (int32_t x = 0; x < width; ++x) {
      const uint8_t g = table[in[x]];
      out[3 * x] = g;
      out[3 * x + 1] = g;
      out[3 * x + 2] = g;
    }
  }
  for (int k = 1; k < kRegionCount; ++k) {
    RadiographRegion& region = rad.Regions[k];
    if (region.X2 <= 0) {
      // An unused region follows the whole-image window.
      region.Lower = whole.Lower;
      region.Upper = whole.Upper;
      continue;
    }
    // The far edges are limited to the last row and column, which a region therefore
    // never covers.
    const int32_t y2 = std::min(region.Y2, height - 1);
    const int32_t x2 = std::min(region.X2, width - 1);
    const int32_t y1 = std::max(region.Y1, 0);
    const int32_t x1 = std::max(region.X1, 0);
    if (y1 >= y2 || x1 >= x2) continue;
    BuildWindowTable(table, region.Lower, region.Upper, true);
    for (int32_t y = y1; y < y2; ++y) {
      const uint16_t* in = rad.Samples.data() + size_t(y) * size_t(width);
      uint8_t* out = dib.Bits.data() + size_t(y) * stride;
      for (int32_t x = x1; x < x2; ++x) {
        const uint8_t g = table[in[x]];
        out[3 * x] = g;
        out[3 * x + 1] = g;
        out[3 * x + 2] = g;
      }
    }
  }
  ++dib.Generation;
  return height;
}

int UpdateRadiographDib(Model& model) { return UpdateRadiographDib(model.CurRadiograph()); }

}  // namespace sedra
