#pragma once
// The screen images of the display bitmaps.
//
// A Dib holds packed 24-bit BGR rows, which no painter draws quickly.  Each Dib the plot
// draws gets an RGB32 copy (the "Bitmap"), made on first use and made again only when
// the Dib's bits were rewritten (its Generation moved on) or replaced.  The copies
// belong to the model they were made for, so two models never see each other's images.

#include <QImage>
#include <cstdint>

namespace sedra {

class Model;
struct Dib;

// The Dib's bits as a QImage without copying them (valid while the Dib is unchanged).
QImage DibAsImage(const Dib& dib);

// The cached RGB32 image of `dib`; a null image when the Dib is empty.
const QImage& CachedBitmap(Model& model, const Dib& dib);

// How many conversions the model's cache has run so far (a rebuild shows here).
uint64_t BitmapBuildCount(Model& model);

// Forgets every cached image of the model (after a New, or to free memory).
void ClearBitmapCache(Model& model);

}  // namespace sedra
