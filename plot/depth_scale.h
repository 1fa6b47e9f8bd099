#pragma once
// The vertical depth scale along the plot's left edge and each data column.

namespace sedra {

struct PaintContext;

// The depth scale with its axis at x, from `top` down over `height` pixels.  With
// labels (the plot's left edge) the ticks point into the plot and major ticks carry
// their depth; without (each data column) they point left and carry nothing.
void DrawDepthScale(PaintContext& ctx, int x, int top, int height, bool labels);

}  // namespace sedra
