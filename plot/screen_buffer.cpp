#include "plot/screen_buffer.h"

#include <QPainter>

#include "model/model.h"
#include "plot/paint_context.h"

namespace sedra {

void ScreenBuffer::Fit(Model& model, const QPaintDevice& screen, QSize size) {
  if (buffer_.size() == size) return;
  buffer_ = QImage(size, QImage::Format_RGB32);
  buffer_.setDotsPerMeterX(qRound(screen.logicalDpiX() / 0.0254));
  buffer_.setDotsPerMeterY(qRound(screen.logicalDpiY() / 0.0254));
  // While the frame is being dragged the plot is not painted; show the background
  // rather than whatever the new buffer held.
  buffer_.fill(FromColorRef(model.Settings().Colours[kBackgroundColour]));
  painted_ = false;
}

PlotLayout ScreenBuffer::Paint(Model& model, QPainter& screen, const QRegion& region, PaintTarget target) {
  Fit(model, *screen.device(), target.Client.size());
  PlotLayout layout;
  const bool fromBuffer = painted_ && region.subtracted(bandOnly_).isEmpty();
  bandOnly_ = QRegion();
  if (!fromBuffer && !buffer_.isNull()) {
    QPainter bufferPainter(&buffer_);
    target.DrawTrackRect = false;
    // A resize or scroll exposes a few large rectangles; each is painted on its own
    // rather than the rectangle around them all.
    const QRegion exposed = region.rectCount() <= 16 ? region : QRegion(region.boundingRect());
    for (const QRect& r : exposed) {
      target.Exposed = r;
      const PlotLayout l = PaintPlot(model, bufferPainter, target);
      if (l.PageWidth > 0) layout = l, painted_ = true, scroll_ = l.Scroll;
    }
  }
  for (const QRect& r : region) screen.drawImage(r, buffer_, r);
  const IntRect& band = model.Plot().TrackRect;
  if (painted_ && band.Right >= 1 && !model.Plot().InSizeMove) {
    PaintContext ctx(screen, model, 0, target.Client);
    ctx.OriginY = scroll_;
    ctx.FocusRect(band.Left, band.Top, band.Right, band.Bottom, &region);
  }
  return layout;
}

}  // namespace sedra
