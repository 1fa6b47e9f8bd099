#include "images/draw/bitmap_cache.h"

#include <memory>
#include <unordered_map>

#include "model/model.h"

namespace sedra {

namespace {

// Above this many bytes of copies the least recently drawn ones are dropped: twelve
// sections of three full-size radiographs would otherwise hold gigabytes.
constexpr qsizetype kBudgetBytes = qsizetype(1536) * 1024 * 1024;

struct Entry {
  uint64_t Generation = 0;
  const uint8_t* Bits = nullptr;  // the Dib's buffer when the copy was made
  int32_t Width = 0, Height = 0;
  uint64_t LastUse = 0;
  ScreenBitmap Bitmap;
};

struct BitmapCache {
  std::unordered_map<const Dib*, Entry> Entries;
  uint64_t Clock = 0;
  uint64_t Builds = 0;
  ScreenBitmap Null;
};

BitmapCache& CacheOf(Model& model) {
  if (!model.DrawCache) model.DrawCache = std::make_shared<BitmapCache>();
  return *static_cast<BitmapCache*>(model.DrawCache.get());
}

bool Matches(const Entry& e, const Dib& dib) {
  // A descriptor copied over another (the radiograph position dialog moves them) can
  // arrive with a Generation the old one also had, but never with the same buffer.
  return e.Generation == dib.Generation && e.Bits == dib.Bits.data() && e.Width == dib.Width &&
         e.Height == dib.Height && !e.Bitmap.Image.isNull();
}

void Trim(BitmapCache& cache, const Dib* keep) {
  qsizetype total = 0;
  for (const auto& [key, e] : cache.Entries) total += e.Bitmap.Image.sizeInBytes() * 4 / 3;
  while (total > kBudgetBytes) {
    auto oldest = cache.Entries.end();
    for (auto it = cache.Entries.begin(); it != cache.Entries.end(); ++it) {
      if (it->first == keep) continue;
      if (oldest == cache.Entries.end() || it->second.LastUse < oldest->second.LastUse) oldest = it;
    }
    if (oldest == cache.Entries.end()) return;
    total -= oldest->second.Bitmap.Image.sizeInBytes() * 4 / 3;
    cache.Entries.erase(oldest);
  }
}

}  // namespace

QImage DibAsImage(const Dib& dib) {
  if (dib.Empty() || dib.Width < 1 || dib.Height < 1 || dib.Stride < dib.Width * 3 ||
      dib.Bits.size() < size_t(dib.Stride) * size_t(dib.Height))
    return {};
  // Bytes run blue, green, red: QImage's BGR888.
  return QImage(dib.Bits.data(), dib.Width, dib.Height, dib.Stride, QImage::Format_BGR888);
}

const QImage& ScreenBitmap::Reduced(int level) {
  if (level <= 0 || Image.isNull()) return Image;
  if (reduced_.size() < size_t(level)) reduced_.resize(size_t(level));
  QImage& out = reduced_[size_t(level - 1)];
  if (!out.isNull()) return out;
  const QImage& from = Reduced(level - 1);
  const int w = (from.width() + 1) / 2, h = (from.height() + 1) / 2;
  QImage made(w, h, QImage::Format_RGB32);
  if (made.isNull()) return from;  // no memory: the larger copy still draws correctly
  for (int y = 0; y < h; ++y) {
    const auto* in = reinterpret_cast<const uint32_t*>(from.constScanLine(2 * y));
    auto* o = reinterpret_cast<uint32_t*>(made.scanLine(y));
    for (int x = 0; x < w; ++x) o[x] = in[ptrdiff_t(x) * 2];
  }
  out = std::move(made);
  return out;
}

ScreenBitmap& CachedScreenBitmap(Model& model, const Dib& dib) {
  BitmapCache& cache = CacheOf(model);
  ++cache.Clock;
  auto it = cache.Entries.find(&dib);
  if (it != cache.Entries.end() && Matches(it->second, dib)) {
    it->second.LastUse = cache.Clock;
    return it->second.Bitmap;
  }
  const QImage source = DibAsImage(dib);
  if (source.isNull()) {
    if (it != cache.Entries.end()) cache.Entries.erase(it);
    return cache.Null;
  }
  Entry& e = cache.Entries[&dib];
  e.Bitmap = ScreenBitmap();  // release the stale copies before making the new one
  e.Bitmap.Image = source.convertToFormat(QImage::Format_RGB32);
  e.Generation = dib.Generation;
  e.Bits = dib.Bits.data();
  e.Width = dib.Width;
  e.Height = dib.Height;
  e.LastUse = cache.Clock;
  ++cache.Builds;
  Trim(cache, &dib);
  return e.Bitmap;
}

const QImage& CachedBitmap(Model& model, const Dib& dib) { return CachedScreenBitmap(model, dib).Image; }

uint64_t BitmapBuildCount(Model& model) { return CacheOf(model).Builds; }

void ClearBitmapCache(Model& model) { CacheOf(model).Entries.clear(); }

}  // namespace sedra
