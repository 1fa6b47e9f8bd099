#pragma once
// Highlighted regions (eight fill patterns) and styled lines of any width.

#include <cstdint>

#include <QColor>

namespace sedra {

struct PaintContext;

enum class RegionKind { Vertical = 0, Horizontal = 1 };

// Draws region `index` of section `sectionIndex`; offsetMm shifts horizontal regions
// (the expanded display's offset and the stacking of sections).
void DrawRegion(PaintContext& ctx, int index, int offsetMm, int sectionIndex, RegionKind kind);

// A line of pen style `style` (0 solid, 1 dashes, 2 dots, 3 dash-dot, 4 dash-dot-dot),
// `width` pixels wide, drawn as `width` parallel one-pixel strokes: each further down
// for a horizontal line, further right for a vertical one.  Document coordinates; the
// end point (x2 or y2) is not drawn, as a pen line never draws its last pixel.
void DrawHorizontalStyledLine(PaintContext& ctx, int x1, int x2, int64_t y, int style, int width, const QColor& colour);
void DrawVerticalStyledLine(PaintContext& ctx, int x, int64_t y1, int64_t y2, int style, int width, const QColor& colour);

}  // namespace sedra
