#pragma once
// PaintPlot: the one routine that draws the composite plot, for the main window, a
// printer or PDF page, and an image.

#include <QRect>
#include <functional>

#include "plot/plot_layout.h"

class QPainter;

namespace sedra {

class Model;

// What the caller knows about the target besides the painter's device.
struct PaintTarget {
  QRect Client;         // the window's client rectangle (PageRect on screen)
  QRect Exposed;        // the part that needs painting, client coordinates; empty = all
  int ScrollPos = 0;    // vertical scroll position (used when ZoomFactor > 1)
  // Width in pixels of the device as a whole (the screen, or the printer's page), which
  // spaces the value-scale ticks; 0: the painter's device.
  int HorzRes = 0;
  // Closes the value read-out popup when one is open (every paint ends it).
  std::function<void()> EndValuePopup;
  // The rubber band (PlotState.TrackRect) is drawn last; the window draws it itself over
  // a band-free copy of the plot (see screen_buffer.h).
  bool DrawTrackRect = true;
};

// Draws the whole plot from the model and writes the layout fields back into PlotState.
// When PlotState.Printing is set the page rectangle is taken from PlotState.PageRect.
// Returns the layout it drew (an empty one when it drew nothing).
PlotLayout PaintPlot(Model& model, QPainter& painter, const PaintTarget& target);

}  // namespace sedra
