#pragma once
// The text the user places on the plot: the main title, the section titles, the free
// text fields, and the information block of scan conditions across the bottom.

namespace sedra {

struct PaintContext;

// Each draws its text (draw = true) or fills its box with the background (draw =
// false, for dragging and editing) and writes the measured right and bottom edges
// back into its rectangle in layout units, for hit-testing.
void DrawMainTitle(PaintContext& ctx, bool draw);
void DrawSectionTitle(PaintContext& ctx, int section, bool draw);
void DrawTextField(PaintContext& ctx, int field, bool draw);

// The framed table of scan conditions (three rows, four with XRF data).
void DrawInfoBlock(PaintContext& ctx);

}  // namespace sedra
