#pragma once
// The vertical depth scale and the conversions between pixels and layout units.
//
// Titles, text fields and the information block are placed in layout units: LayoutSpan
// of them span the plot's height, and again the width from the plot's left edge to the
// first data column, so they stay where the user put them whatever the window size.

namespace sedra {

struct PaintContext;
struct PlotState;

// The depth scale with its axis at x, from `top` down over `height` pixels.  With
// labels (the plot's left edge) the ticks point into the plot and major ticks carry
// their depth; without (each data column) they point left and carry nothing.
void DrawDepthScale(PaintContext& ctx, int x, int top, int height, bool labels);

int LayoutFromY(const PlotState& plot, int y);
int YFromLayout(const PlotState& plot, int u);
int LayoutFromX(const PlotState& plot, int x);
int XFromLayout(const PlotState& plot, int u);

}  // namespace sedra
