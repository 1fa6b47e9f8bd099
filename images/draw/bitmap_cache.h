#pragma once
// The screen images of the display bitmaps.
//
// A Dib holds packed 24-bit BGR rows, which no painter draws quickly.  Each Dib the plot
// draws gets an RGB32 copy (the "Bitmap"), made on first use and made again only when
// the Dib's bits were rewritten (its Generation moved on) or replaced.  The copies
// belong to the model they were made for, so two models never see each other's images.

#include <QImage>
#include <cstdint>
#include <vector>

namespace sedra {

class Model;
struct Dib;

// The Dib's bits as a QImage without copying them (valid while the Dib is unchanged).
QImage DibAsImage(const Dib& dib);

// The screen image of a Dib with reduced copies made on demand: copy k keeps every
// 2^k-th pixel of every 2^k-th row.  A strongly shrunk drawing samples the smallest
// copy still at least as large as its destination, so it reads a few thousand cache
// lines instead of scattering over a 100 MB image; the pixels it picks are never more
// than 2^k - 1 source pixels from the exact ones.
struct ScreenBitmap {
  QImage Image;  // RGB32, the Dib's full size; null when the Dib is empty
  // The copy reduced by 2^level (level 0 is Image itself), made on first use.
  const QImage& Reduced(int level);

 private:
  std::vector<QImage> reduced_;
};

// The cached screen image of `dib`.
ScreenBitmap& CachedScreenBitmap(Model& model, const Dib& dib);
// Its full-size RGB32 image; a null image when the Dib is empty.
const QImage& CachedBitmap(Model& model, const Dib& dib);

// How many conversions the model's cache has run so far (a rebuild shows here).
uint64_t BitmapBuildCount(Model& model);

// Forgets every cached image of the model (after a New, or to free memory).
void ClearBitmapCache(Model& model);

}  // namespace sedra
