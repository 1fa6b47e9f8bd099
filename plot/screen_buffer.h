#pragma once
// ScreenBuffer: the plot as the window shows it.  The plot is painted into a back buffer
// the size of the window without the rubber band (PlotState.TrackRect), and the band is
// drawn over the copy on the window.  A drag changes only the band, so the window
// declares those rectangles band-only and they are served from the buffer without
// painting the plot again: a drag step costs the copy of two outlines, at any zoom.

#include <QImage>
#include <QRegion>

#include "plot/paint_plot.h"

class QPainter;

namespace sedra {

class ScreenBuffer {
 public:
  // Only the rubber band changed within `client`; the plot under it is as last painted.
  void MarkBandOnly(const QRect& client) { bandOnly_ += client; }

  // Paints `region` of the window on `screen`: from the plot where anything but the band
  // may have changed, from the buffer where only the band did, then the band on top.
  // `target` gives the client rectangle, the scroll position and the screen's width;
  // its Exposed is set here.  Returns the layout painted, or an empty one when the
  // buffer served the whole region or nothing was drawn.
  PlotLayout Paint(Model& model, QPainter& screen, const QRegion& region, PaintTarget target);

 private:
  void Fit(Model& model, const QPaintDevice& screen, QSize size);

  QImage buffer_;
  QRegion bandOnly_;
  bool painted_ = false;  // the buffer holds the plot (not only the background)
  int64_t scroll_ = 0;    // document row at the window's top in the last layout
};

}  // namespace sedra
