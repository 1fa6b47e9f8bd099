#include "images/draw/display_image.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

#include "model/model.h"

namespace sedra {

namespace {

// Converted blocks kept per image: the plot's band and the image window, with room for
// a scroll position or two.
constexpr size_t kBlocksPerImage = 4;
// Above this many bytes of tables and blocks the least recently drawn images go.
constexpr size_t kBudgetBytes = size_t(256) * 1024 * 1024;

constexpr uint32_t kOpaque = 0xFF000000u;

inline uint32_t GreyPixel(uint8_t g) { return kOpaque | uint32_t(g) * 0x010101u; }

}  // namespace

void DisplayImage::Reset(Kind kind, const void* data, int width, int height, int64_t stride, uint64_t generation) {
  if (kind == kind_ && data == data_ && width == width_ && height == height_ && stride == stride_ &&
      generation == generation_)
    return;
  kind_ = kind;
  data_ = data;
  width_ = width;
  height_ = height;
  stride_ = stride;
  generation_ = generation;
  opticalBuilt_ = false;
  blocks_.clear();
  ++sourceState_;
  ++contrastState_;
}

void DisplayImage::UseRadiograph(RadiographDesc& rad) {
  const size_t count = size_t(std::max(rad.Width, 0)) * size_t(std::max(rad.Height, 0));
  if (!rad.DisplayFromSamples || count == 0 || rad.Samples.size() < count) {
    UseDib(rad.Bitmap);
    return;
  }
  ShareWholeWindow(rad);
  Reset(Kind::Radiograph, rad.Samples.data(), rad.Width, rad.Height, int64_t(rad.Width) * 2, rad.Bitmap.Generation);
  if (!windows_.BuiltFor(rad)) {
    windows_.Build(rad);
    ++contrastState_;
  }
}

void DisplayImage::UseOptical(OpticalImageDesc& opt) {
  const int64_t stride = Dib::StrideFor(std::max(opt.Width, 0));
  if (opt.Width < 1 || opt.Height < 1 || opt.Pixels.size() < size_t(stride) * size_t(opt.Height)) {
    UseDib(opt.Bitmap);
    return;
  }
  Reset(Kind::Optical, opt.Pixels.data(), opt.Width, opt.Height, stride, opt.Bitmap.Generation);
  const int32_t key[5] = {opt.Lower, opt.Upper, opt.RedLevel, opt.GreenLevel, opt.BlueLevel};
  if (opticalBuilt_ && std::memcmp(key, opticalKey_, sizeof key) == 0) return;
  BuildOpticalTables(opt, optical_);
  // The key as the tables left it: a closed window has just been opened by 8.
  const int32_t built[5] = {opt.Lower, opt.Upper, opt.RedLevel, opt.GreenLevel, opt.BlueLevel};
  std::memcpy(opticalKey_, built, sizeof built);
  opticalBuilt_ = true;
  ++contrastState_;
}

void DisplayImage::UseDib(const Dib& dib) {
  if (dib.Empty() || dib.Width < 1 || dib.Height < 1 || dib.Stride < dib.Width * 3 ||
      dib.Bits.size() < size_t(dib.Stride) * size_t(dib.Height)) {
    Reset(Kind::None, nullptr, 0, 0, 0, 0);
    return;
  }
  Reset(Kind::Dib, dib.Bits.data(), dib.Width, dib.Height, dib.Stride, dib.Generation);
}

void DisplayImage::UseImage(const QImage& image) {
  if (image.isNull() || (image.format() != QImage::Format_RGB32 && image.format() != QImage::Format_ARGB32)) {
    Reset(Kind::None, nullptr, 0, 0, 0, 0);
    return;
  }
  Reset(Kind::Image, image.constBits(), image.width(), image.height(), image.bytesPerLine(),
        uint64_t(image.cacheKey()));
}

size_t DisplayImage::Bytes() const {
  size_t n = windows_.Bytes();
  for (const Block& b : blocks_) n += (b.Pixels.capacity() + b.Values.capacity()) * sizeof(uint32_t);
  return n;
}

const QImage& DisplayImage::Picked(const Sampling& s) {
  ++clock_;
  for (Block& b : blocks_) {
    if (b.Source != sourceState_ || !(b.Where == s)) continue;
    b.LastUse = clock_;
    if (b.Contrast != contrastState_) {
      Colour(b);
      ++conversions_;
    }
    return b.View;
  }
  // A block of an old source is reused first, then a new one, then the oldest.
  Block* slot = nullptr;
  for (Block& b : blocks_)
    if (b.Source != sourceState_) slot = &b;
  if (!slot && blocks_.size() < kBlocksPerImage) slot = &blocks_.emplace_back();
  if (!slot)
    slot = &*std::min_element(blocks_.begin(), blocks_.end(),
                              [](const Block& a, const Block& b) { return a.LastUse < b.LastUse; });
  slot->Where = s;
  slot->Source = sourceState_;
  slot->LastUse = clock_;
  Pick(*slot);
  Colour(*slot);
  ++conversions_;
  return slot->View;
}

void DisplayImage::Pick(Block& b) const {
  const Sampling& s = b.Where;
  // The distinct source columns: an enlarging stretch picks each several times over and
  // looks it up once.
  b.Columns.clear();
  b.Runs.clear();
  for (int j = 0; j < s.Columns; ++j) {
    const auto c = int32_t(std::clamp<int64_t>(SourceIndex(s.X, s.XSpan, s.ColumnFrom + j, s.XCount), 0, width_ - 1));
    if (b.Columns.empty() || b.Columns.back() != c) {
      b.Columns.push_back(c);
      b.Runs.push_back(0);
    }
    ++b.Runs.back();
  }
  b.LongestRun = b.Runs.empty() ? 0 : *std::max_element(b.Runs.begin(), b.Runs.end());
  b.SourceRows.clear();
  b.RowSlot.resize(size_t(std::max(s.Rows, 0)));
  for (int i = 0; i < s.Rows; ++i) {
    const auto row = int32_t(std::clamp<int64_t>(SourceIndex(s.Y, s.YSpan, s.RowFrom + i, s.YCount), 0, height_ - 1));
    if (b.SourceRows.empty() || b.SourceRows.back() != row) b.SourceRows.push_back(row);
    b.RowSlot[size_t(i)] = int32_t(b.SourceRows.size()) - 1;
  }
  const size_t count = b.Columns.size();
  b.Values.resize(b.SourceRows.size() * count);
  const int32_t* columns = b.Columns.data();
  for (size_t k = 0; k < b.SourceRows.size(); ++k) {
    const auto* bytes = static_cast<const uint8_t*>(data_) + int64_t(b.SourceRows[k]) * stride_;
    uint32_t* out = b.Values.data() + k * count;
    switch (kind_) {
      case Kind::Radiograph: {
        const auto* in = reinterpret_cast<const uint16_t*>(bytes);
        for (size_t u = 0; u < count; ++u) out[u] = in[columns[u]];
        break;
      }
      case Kind::Optical:
      case Kind::Dib:
        // Blue, green and red bytes as the low three bytes of one value.
        for (size_t u = 0; u < count; ++u) {
          const uint8_t* px = bytes + 3 * int64_t(columns[u]);
          out[u] = kOpaque | uint32_t(px[2]) << 16 | uint32_t(px[1]) << 8 | px[0];
        }
        break;
      case Kind::Image: {
        const auto* in = reinterpret_cast<const uint32_t*>(bytes);
        for (size_t u = 0; u < count; ++u) out[u] = in[columns[u]] | kOpaque;
        break;
      }
      case Kind::None: std::fill_n(out, count, kOpaque); break;
    }
  }
}

// Writes every destination column of a row from the picked values of its source row,
// each value looked up once however many columns it fills.  An image drawn at most
// twice its width (the radiograph window) fills one or two columns a value: both are
// written every time and the pointer moves on by the run, without a branch to
// mispredict; the row buffer has a spare element at its end for that.
template <typename Lookup>
void DisplayImage::Spread(const Block& b, const uint32_t* in, uint32_t* out, const Lookup& lookup) {
  const size_t count = b.Columns.size();
  if (b.LongestRun <= 1) {
    for (size_t u = 0; u < count; ++u) out[u] = lookup(u, in[u]);
  } else if (b.LongestRun == 2) {
    for (size_t u = 0; u < count; ++u) {
      const uint32_t v = lookup(u, in[u]);
      out[0] = v;
      out[1] = v;
      out += b.Runs[u];
    }
  } else {
    for (size_t u = 0; u < count; ++u) out = std::fill_n(out, b.Runs[u], lookup(u, in[u]));
  }
}

void DisplayImage::ColourRow(const Block& b, size_t slot, uint32_t* out, RadiographWindows::Row& cut) const {
  const uint32_t* in = b.Values.data() + slot * b.Columns.size();
  switch (kind_) {
    case Kind::Radiograph: {
      const int32_t row = b.SourceRows[slot];
      if (row >= cut.NextRow) windows_.CutRow(row, cut);
      if (cut.Pieces == 1) {
        const uint8_t* table = cut.Table[0];
        Spread(b, in, out, [table](size_t, uint32_t v) { return GreyPixel(table[v]); });
        return;
      }
      // Columns come in order, so the piece under each only moves right.
      int p = 0;
      Spread(b, in, out, [&](size_t u, uint32_t v) {
        while (b.Columns[u] >= cut.Cuts[p + 1]) ++p;
        return GreyPixel(cut.Table[p][v]);
      });
      return;
    }
    case Kind::Optical: {
      const auto& level = optical_.Level;
      Spread(b, in, out, [&level](size_t, uint32_t v) {
        return kOpaque | uint32_t(level[2][(v >> 16) & 0xFF]) << 16 | uint32_t(level[1][(v >> 8) & 0xFF]) << 8 |
               level[0][v & 0xFF];
      });
      return;
    }
    case Kind::Dib:
    case Kind::Image:
    case Kind::None: Spread(b, in, out, [](size_t, uint32_t v) { return v; }); return;
  }
}

void DisplayImage::Colour(Block& b) {
  const Sampling& s = b.Where;
  const size_t columns = size_t(std::max(s.Columns, 0));
  b.Pixels.resize(columns * size_t(std::max(s.Rows, 0)) + 1);  // one spare: see Spread
  RadiographWindows::Row cut;
  cut.NextRow = -1;
  int32_t previous = -1;
  for (int i = 0; i < s.Rows; ++i) {
    uint32_t* o = b.Pixels.data() + size_t(i) * columns;
    const int32_t slot = b.RowSlot[size_t(i)];
    if (slot == previous) {
      std::memcpy(o, o - columns, columns * sizeof(uint32_t));
      continue;
    }
    previous = slot;
    ColourRow(b, size_t(slot), o, cut);
  }
  b.Contrast = contrastState_;
  b.View = QImage(reinterpret_cast<const uchar*>(b.Pixels.data()), s.Columns, s.Rows, qsizetype(s.Columns) * 4,
                  QImage::Format_RGB32);
}

namespace {

struct DisplayCache {
  std::unordered_map<const void*, DisplayImage> Images;
  uint64_t Clock = 0;
  uint64_t RetiredConversions = 0;  // of images no longer kept
};

DisplayCache& CacheOf(Model& model) {
  if (!model.DrawCache) model.DrawCache = std::make_shared<DisplayCache>();
  return *static_cast<DisplayCache*>(model.DrawCache.get());
}

DisplayImage& Entry(Model& model, const void* key) {
  DisplayCache& cache = CacheOf(model);
  DisplayImage& image = cache.Images[key];
  image.LastUse = ++cache.Clock;
  size_t total = 0;
  for (const auto& [k, e] : cache.Images) total += e.Bytes();
  while (total > kBudgetBytes) {
    auto oldest = cache.Images.end();
    for (auto it = cache.Images.begin(); it != cache.Images.end(); ++it)
      if (it->first != key && (oldest == cache.Images.end() || it->second.LastUse < oldest->second.LastUse))
        oldest = it;
    if (oldest == cache.Images.end()) break;
    total -= oldest->second.Bytes();
    cache.RetiredConversions += oldest->second.Conversions();
    cache.Images.erase(oldest);
  }
  return image;
}

}  // namespace

DisplayImage& RadiographDisplay(Model& model, RadiographDesc& rad) {
  DisplayImage& image = Entry(model, &rad);
  image.UseRadiograph(rad);
  return image;
}

DisplayImage& OpticalDisplay(Model& model, OpticalImageDesc& opt) {
  DisplayImage& image = Entry(model, &opt);
  image.UseOptical(opt);
  return image;
}

uint64_t DisplayConversionCount(Model& model) {
  const DisplayCache& cache = CacheOf(model);
  uint64_t n = cache.RetiredConversions;
  for (const auto& [k, e] : cache.Images) n += e.Conversions();
  return n;
}

void ClearDisplayCache(Model& model) {
  DisplayCache& cache = CacheOf(model);
  cache.RetiredConversions = DisplayConversionCount(model);
  cache.Images.clear();
}

QImage DibAsImage(const Dib& dib) {
  if (dib.Empty() || dib.Width < 1 || dib.Height < 1 || dib.Stride < dib.Width * 3 ||
      dib.Bits.size() < size_t(dib.Stride) * size_t(dib.Height))
    return {};
  // Bytes run blue, green, red: QImage's BGR888.
  return QImage(dib.Bits.data(), dib.Width, dib.Height, dib.Stride, QImage::Format_BGR888);
}

}  // namespace sedra
