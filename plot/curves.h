#pragma once
// Data curves: the radiograph strip sums, the curve computation (validity, factors,
// ratios, smoothing, range, decimation, pixel offsets) and their drawing.

#include <cstdint>

class QString;

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
// One point of curve `curve`: with DrawLines a line from the previous point (when
// prevX >= 0) in the selected pen, otherwise the single pixel in the curve's colour.
void DrawPoint(PaintContext& ctx, int x, int64_t y, int prevX, int64_t prevY, int curve);
// The title of curve c's column: the data set's name with its ratio, log and unit marks.
QString CurveTitle(const Model& model, int curve);
// The horizontal value scale of a data column: leftValue at x, `span` the value range
// (it picks the label digits), pixelScale pixels per value unit; ticks rise from y.
void DrawValueScale(PaintContext& ctx, double leftValue, double span, double pixelScale, int x, int y);

}  // namespace sedra
