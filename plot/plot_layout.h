#pragma once
// PlotLayout: where every band, column and scale of the composite plot goes, computed
// from the model and the target alone.  Painting draws what it says, the mouse
// hit-tests against the same value, and the fields the rest of the program reads from
// PlotState are written from it in one place (ApplyLayout).
//
// All y values are document coordinates: at zoom above 100% the document is taller
// than the window and Scroll is the document row shown at the window's top.

#include <QRect>
#include <array>
#include <cstdint>

#include "model/model.h"

class QPaintDevice;

namespace sedra {

// What the layout needs to know about the target besides the model.
struct LayoutTarget {
  IntRect Page{};        // the client rectangle on screen, the printable page when printing
  int DpiX = 96, DpiY = 96;
  int ScrollPos = 0;     // the window's vertical scroll position
  bool Printing = false;
  int ScreenHeight = 0;  // page height of the last screen paint (a print scales the scroll by it)
  // Fonts are measured on this device; none: a 96-dpi image.
  const QPaintDevice* Device = nullptr;
};

// One section's band of the stacked Display-All plot.
struct SectionBand {
  int64_t Top = 0;
  int Height = 0;
};

struct PlotLayout {
  // The page, fonts and margins.
  IntRect Page{};
  int PageWidth = 0, PageHeight = 0;
  int DpiX = 96, DpiY = 96;
  int CharWidth = 0, CharHeight = 0;  // of the 11-point bold plot font
  int LeftMargin = 0, RightMargin = 0, TopMargin = 0, BottomMargin = 0;
  int Zoom = 1;
  int64_t Scroll = 0;  // document row at the top of the page
  bool Printing = false;
  int ScreenHeight = 0;

  // The depth axis.  Nothing but the background is painted unless Drawable.
  float LayoutSpan = 0;
  float DepthSpan = 0;
  bool Drawable = false;
  int X0 = 0, Y0 = 0, XRight = 0;  // the plot's left edge, top edge and right edge
  int PlotHeight = 0;
  int Gap = 0;  // between image columns
  int DepthTick = 0;

  // The sections shown: from FirstSection, and in Display-All mode on to LastSection.
  bool AllSections = false;
  int FirstSection = 0, LastSection = -1;
  int SectionCount = 0;
  int DepthOffset = 0;  // the expanded display's offset, whole mm
  // Display-All: each section's band, its height floored on its own.
  std::array<SectionBand, kMaxSections> Bands{};
  bool Stacked = false;  // Display-All without "Image covers all sections"

  // Image columns.
  bool OpticalShown = false;
  int OpticalLeft = 0, OpticalWidth = 0, OpticalLabelRight = 0;
  bool OverlayShown = false;
  int OverlayLeft = 0;
  bool RadiographShown = false;
  int RadiographLeft = 0, RadiographWidth = 0;
  int RadiographsPlaced = 0;  // side by side; the width label counts 2 cm for each
  bool DataRegionShown = false;
  IntRect DataRegion{};       // the band of columns the curve is summed over

  // The data area: coverage bar, then equal data columns.
  bool HasDataArea = false;
  int CoverageLeft = 0;
  int ColumnLeft = 0, ColumnWidth = 0;
  int DataAreaRight = 0;  // the plot's right edge; with a data area, its width
  int CurveCount = 0;

  // Depth (mm from the top of what is shown) to a document row: y0 + floor(d x scale).
  int64_t RowOfDepth(double depth) const;
};

// Titles, text fields and the information block are placed in layout units: LayoutSpan
// of them span the plot's height, and again the width from the plot's left edge to the
// first data column, so they stay where the user put them whatever the window size.
struct LayoutFrame {
  int PageLeft = 0, PageTop = 0, LeftMargin = 0, TopMargin = 0, PlotHeight = 0, ColumnLeft = 0;
  float LayoutSpan = 0;
};
LayoutFrame FrameOf(const PlotLayout& layout);
LayoutFrame FrameOf(const PlotState& plot);

// The four conversions.  LayoutFromY ignores the page's top while YFromLayout adds it,
// so the two are inverse only for a page whose top is 0 (the screen); kept so, printed
// titles have always sat where this puts them.
int LayoutFromY(const LayoutFrame& frame, int y);
int YFromLayout(const LayoutFrame& frame, int u);
int LayoutFromX(const LayoutFrame& frame, int x);
int XFromLayout(const LayoutFrame& frame, int u);
inline int LayoutFromY(const PlotState& plot, int y) { return LayoutFromY(FrameOf(plot), y); }
inline int YFromLayout(const PlotState& plot, int u) { return YFromLayout(FrameOf(plot), u); }
inline int LayoutFromX(const PlotState& plot, int x) { return LayoutFromX(FrameOf(plot), x); }
inline int XFromLayout(const PlotState& plot, int u) { return XFromLayout(FrameOf(plot), u); }

PlotLayout ComputePlotLayout(const Model& model, const LayoutTarget& target);

// Writes the layout fields the other parts of the program read from PlotState.
void ApplyLayout(const PlotLayout& layout, PlotState& plot);

// Character width and height of the 11-point bold plot font at `dpiY` on `device`.
struct PlotFontSize {
  int Width = 0, Height = 0;
};
PlotFontSize MeasurePlotFont(int dpiY, const QPaintDevice* device);

}  // namespace sedra
