#pragma once
// Painting the two image windows: the whole image at its current contrast, and the
// rectangle being worked on.  Only the exposed part is painted, and only the source
// pixels it picks are converted.

#include <QPainter>
#include <QRect>

#include "images/image_views.h"

namespace sedra {

class Model;

// The optical image from (CropLeft, CropTop), its full width and height, stretched onto
// (0, 0, DrawnWidth, DrawnHeight), then view.Focus as a focus rectangle.  Nothing
// without an image.
void PaintOpticalView(QPainter& painter, Model& model, const OpticalView& view, const QRect& exposed);

// The whole current radiograph stretched onto (0, 0, DrawnWidth, DrawnHeight) with
// window row `originY` at the top, then `focus` (window pixels) as a focus rectangle
// when its right edge is above 0 and `showFocus` is set.  Nothing without an image.
void PaintRadiographView(QPainter& painter, Model& model, const RadiographView& view, int originY,
                         const QRect& exposed, const IntRect& focus, bool showFocus);

// The platform's focus rectangle: alternate pixels inverted where the device can, a
// dotted frame elsewhere.  Right and bottom are exclusive.
void DrawFocusRect(QPainter& painter, const QRect& rect);

}  // namespace sedra
