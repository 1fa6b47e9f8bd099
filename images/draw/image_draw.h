#pragma once
// Drawing a section's optical image and radiographs into the rectangles the plot
// layout gives them, on any QPainter.
//
// Rectangles are in document coordinates (the plot's own, which at high zoom run far
// beyond what a painter rasterises).  Every stretch works out which part of its
// destination lies on the device, which source pixels feed that part, and draws only
// that, so the cost follows the window size and never the zoom or the image size.

#include <QPainter>
#include <QRect>
#include <cstdint>

class QRegion;

namespace sedra {

class Model;
struct CoreSection;
struct IntRect;
struct PlotState;
struct RadiographDesc;
class DisplayImage;

// Where a stretch lands: the painter, the document y drawn at device y 0, and the device
// rectangle worth painting.
struct DrawSurface {
  QPainter* Painter = nullptr;
  int64_t OriginY = 0;
  QRect Device;
};

// Nearest-neighbour stretch (the colour-on-colour StretchBlt) of the source rectangle
// (sx, sy, sw, sh) of an image's display pixels onto the document rectangle
// (x, y, w, h) with the given composition mode.  Only the source pixels the visible
// destination picks are converted.  Destination pixels whose source lies outside the
// image are left as they are.
void StretchImage(const DrawSurface& surface, DisplayImage& image, int sx, int sy, int sw, int sh, int x, int64_t y,
                  int w, int64_t h, QPainter::CompositionMode mode = QPainter::CompositionMode_Source);
// The same from a plain image.
void StretchImage(const DrawSurface& surface, const QImage& image, int sx, int sy, int sw, int sh, int x, int64_t y,
                  int w, int64_t h, QPainter::CompositionMode mode = QPainter::CompositionMode_Source);

// The optical image of section `section` into (left, top, width, height).
void DrawOpticalImage(const DrawSurface& surface, Model& model, int section, int left, int top, int width, int height);

// Whether a radiograph has display pixels to draw: its samples after a load, or its bits.
bool HasDisplay(const RadiographDesc& rad);
// How many of a section's radiographs are drawn side by side: those with display pixels.
int PlacedRadiographs(const CoreSection& section);
// Where radiograph `index` of `section` lands in the band (left, top, width, height):
// its place among the placed radiographs, moved down by its offset (plot pixels at
// 100%, so scaled by the zoom) and cut to its height scale.  Empty when not placed.
IntRect RadiographDest(const PlotState& plot, const CoreSection& section, int index, int left, int top, int width,
                       int height);

// The radiographs of section `section` side by side, each `width` wide, in the band
// (left, top, height).  Returns how many were placed.
int DrawRadiographs(const DrawSurface& surface, Model& model, int section, int left, int top, int width, int height);

// The optical image, then the current radiograph over it (OR or AND on screen).
void DrawOverlay(const DrawSurface& surface, Model& model, int section, int left, int top, int width, int height);

// The current radiograph once more at the place the user dragged it to (RadPlacement).
void DrawMovedRadiograph(const DrawSurface& surface, Model& model);

// The dotted outline of a focus rectangle.  The platform drew focus rectangles by
// inverting every other pixel of the frame; where the device can combine pixels that is
// what happens here too (white dots XORed on), elsewhere the dots are black.  A dot falls
// where x + y has the parity of `phase`, so a frame repainted piece by piece keeps one
// even pattern.  `within`, when given, limits the drawing to its rectangles.
void DrawFocusOutline(QPainter& painter, const QRect& rect, QPoint phase, const QRegion* within = nullptr);

// First source row and row count of a radiograph of `section`: the expanded range's
// rows when a range is expanded, else all rows.
void RadiographSourceRows(const Model& model, int section, int imageHeight, int& firstRow, int& rowCount);

}  // namespace sedra
