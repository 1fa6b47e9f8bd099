#include "images/draw/view_paint.h"


#include "images/draw/display_image.h"
#include "images/draw/image_draw.h"
#include "model/model.h"

namespace sedra {

void DrawFocusRect(QPainter& painter, const QRect& rect) { DrawFocusOutline(painter, rect, rect.topLeft()); }

namespace {

QRect FromIntRect(const IntRect& r) { return QRect(QPoint(r.Left, r.Top), QPoint(r.Right - 1, r.Bottom - 1)); }

}  // namespace

void PaintOpticalView(QPainter& painter, Model& model, const OpticalView& view, const QRect& exposed) {
  OpticalImageDesc& opt = model.CurOptical();
  DisplayImage& image = OpticalDisplay(model, opt);
  if (image.Null()) return;
  StretchImage(DrawSurface{&painter, 0, exposed}, image, opt.CropLeft, opt.CropTop, opt.Width, opt.Height, 0, 0,
               view.DrawnWidth, view.DrawnHeight);
  DrawFocusRect(painter, FromIntRect(view.Focus));
}

void PaintRadiographView(QPainter& painter, Model& model, const RadiographView& view, int originY,
                         const QRect& exposed, const IntRect& focus, bool showFocus) {
  RadiographDesc& rad = model.CurRadiograph();
  DisplayImage& image = RadiographDisplay(model, rad);
  if (image.Null()) return;
  StretchImage(DrawSurface{&painter, originY, exposed}, image, 0, 0, image.Width(), image.Height(), 0, 0,
               view.DrawnWidth, view.DrawnHeight);
  if (showFocus && focus.Right > 0) DrawFocusRect(painter, FromIntRect(focus).translated(0, -originY));
}

}  // namespace sedra
