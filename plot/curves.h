#pragma once
// Data curves: the radiograph strip sums, the curve computation (validity, factors,
// ratios, smoothing, range, decimation, pixel offsets) and their drawing.

namespace sedra {

class Model;
struct PaintContext;

// Fills data set PlotState.RadiographDataSet of every section from its first radiograph.
void ComputeRadiographData(Model& model);
// Recomputes curve values and pixel offsets; clears NeedLayout.
void ComputeCurves(Model& model);
// The green bar left of the data area marking the loaded points.
void DrawCoverageBar(PaintContext& ctx, int x, int top, int height);
// Curve c in the column whose left edge is x, with its value scale, title and legend.
void DrawCurve(PaintContext& ctx, int curve, int x, int top, int height);
// The horizontal value scale of a data column.
void DrawValueScale(PaintContext& ctx, double leftValue, double span, double pixelScale, int x, int y);

}  // namespace sedra
