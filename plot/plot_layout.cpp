#include "plot/plot_layout.h"

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <algorithm>
#include <cmath>

#include "images/draw/image_draw.h"
#include "plot/paint_context.h"

namespace sedra {

namespace {

int64_t Clamp64(int64_t v, int64_t lo, int64_t hi) { return std::clamp(v, lo, hi); }

// Pixel height of `mm` at the plot's scale, floored.
int ScaledHeight(double mm, const PlotLayout& l) { return FloorInt(mm * double(l.PlotHeight) / double(l.DepthSpan)); }

// Steps 4 to 7 of a paint: the page, the plot font's size, the margins and the scroll.
void LayOutPage(const Model& model, const LayoutTarget& t, PlotLayout& l) {
  const PlotState& plot = model.Plot();
  l.Page = t.Page;
  l.PageWidth = t.Page.Right - t.Page.Left;
  l.PageHeight = t.Page.Bottom - t.Page.Top;
  l.Printing = t.Printing;
  l.ScreenHeight = t.Printing ? t.ScreenHeight : l.PageHeight;
  l.DpiX = t.DpiX;
  l.DpiY = t.DpiY;
  const PlotFontSize font = MeasurePlotFont(t.DpiY, t.Device);
  l.CharWidth = font.Width;
  l.CharHeight = font.Height;
  l.LeftMargin = 3 * l.CharHeight;
  l.RightMargin = t.DpiX / 8;
  l.TopMargin = 2 * l.CharHeight + 4;
  // Room for the information block: a fourth row when the section has XRF count times.
  if (plot.ShowInfo)
    l.BottomMargin = model.CurSection().CountTimeText[0] != '\0' ? 2 * l.TopMargin : l.TopMargin * 3 / 2;
  else
    l.BottomMargin = l.TopMargin / 2;

  // The document scrolls under the window; a printed page follows the screen's
  // position scaled from the screen's height to the page's.
  l.Zoom = std::max(1, plot.ZoomFactor);
  l.Scroll = 0;
  if (l.Zoom > 1) {
    l.Scroll = t.ScrollPos;
    if (t.Printing) l.Scroll = t.ScreenHeight > 0 ? l.Scroll * l.PageHeight / t.ScreenHeight : 0;
  }
}

void LayOutSpans(const Model& model, PlotLayout& l) {
  const PlotState& plot = model.Plot();
  l.SectionCount = std::clamp(plot.SectionCount, 0, kMaxSections);
  float layoutSpan = 0;
  for (int s = 0; s < l.SectionCount; ++s) layoutSpan += plot.SectionLength[s];
  l.LayoutSpan = layoutSpan;
  if (plot.ShowAllSections)
    l.DepthSpan = layoutSpan;
  else if (plot.Expanded)
    l.DepthSpan = plot.ExpandBottom - plot.ExpandTop;
  else
    l.DepthSpan = plot.SectionLength[model.CurSectionSlot()];
  l.Drawable = l.DepthSpan > 0;  // false for NaN too
}

// Steps 9 and 10: the plot box, the sections shown and their bands.
void LayOutPlotBox(const Model& model, PlotLayout& l) {
  const PlotState& plot = model.Plot();
  const int cur = model.CurSectionSlot();
  l.X0 = l.Page.Left + l.LeftMargin;
  l.Y0 = l.Page.Top + l.TopMargin;
  l.XRight = l.Page.Right - l.RightMargin;
  l.PlotHeight = int(Clamp64(int64_t(l.PageHeight) * l.Zoom - l.BottomMargin - l.TopMargin, INT32_MIN / 2,
                             INT32_MAX / 2));
  // Room for the smoothing legend under the columns.
  if (plot.ShowSmoothPoints) l.PlotHeight += 3 - l.CharHeight;
  l.Gap = l.DpiX / 8;
  l.DepthTick = plot.DepthTick == 0 ? 50 : plot.DepthTick;
  l.AllSections = plot.ShowAllSections != 0;
  l.FirstSection = l.AllSections ? 0 : cur;
  l.LastSection = l.AllSections ? l.SectionCount - 1 : std::max(cur, l.SectionCount - 1);
  l.DepthOffset = plot.Expanded ? -FloorInt(plot.ExpandTop) : 0;
  l.Stacked = l.AllSections && !plot.ImageCoversAll;
  int64_t y = l.Y0;
  for (int s = 0; s < l.SectionCount; ++s) {
    l.Bands[size_t(s)] = {y, ScaledHeight(plot.SectionLength[s], l)};
    y += l.Bands[size_t(s)].Height;
  }
}

// The height the stacked images fill: in Display-All each section is floored on its own,
// so the stack may end a few pixels short of the plot's bottom.
int64_t StackHeight(const PlotLayout& l) {
  if (!l.Stacked) return l.PlotHeight;
  int64_t h = 0;
  for (int s = 0; s < l.SectionCount; ++s) h += l.Bands[size_t(s)].Height;
  return h;
}

int OpticalColumnWidth(const Model& model, const PlotLayout& l) {
  const PlotState& plot = model.Plot();
  const OpticalImageDesc& current = model.CurSection().Optical;
  int64_t w0 = current.CropRight - current.CropLeft;
  int64_t h0 = current.CropBottom - current.CropTop;
  if (l.Stacked) {
    w0 = h0 = 0;
    for (int s = 0; s < l.SectionCount; ++s) {
      const OpticalImageDesc& o = model.Section(s).Optical;
      w0 += o.CropRight - o.CropLeft;
      h0 += o.CropBottom - o.CropTop;
    }
    w0 = l.SectionCount > 0 ? w0 / l.SectionCount : 0;
  }
  int64_t width = h0 != 0 ? w0 * StackHeight(l) / h0 : 0;
  if (plot.Expanded)
    width = FloorInt(double(plot.SectionLength[model.CurSectionSlot()]) * double(width) / double(l.DepthSpan));
  const int minimum = l.PageWidth / 40;
  const int maximum = l.OpticalShown ? l.PageWidth / 8 : l.PageWidth / 4;
  return int(std::clamp<int64_t>(width, minimum, std::max(minimum, maximum)));
}

int RadiographColumnWidth(const Model& model, const PlotLayout& l) {
  const PlotState& plot = model.Plot();
  const RadiographDesc& current = model.CurSection().Radiographs[size_t(model.CurRadiographSlot())];
  int64_t w0 = current.Width, h0 = current.Height;
  if (l.Stacked) {
    // Widths summed, not averaged as for the optical column: kept, the column of a
    // multi-section core has always been this wide.
    w0 = h0 = 0;
    for (int s = 0; s < l.SectionCount; ++s) {
      w0 += model.Section(s).Radiographs[0].Width;
      h0 += model.Section(s).Radiographs[0].Height;
    }
  }
  int64_t width = h0 != 0 ? w0 * StackHeight(l) / h0 : 0;
  if (plot.Expanded)
    width = FloorInt(double(plot.SectionLength[model.CurSectionSlot()]) * double(width) / double(l.DepthSpan));
  width = std::max<int64_t>(width, l.PageWidth / 40);
  if (plot.RadiographWidth != 0) width = plot.RadiographWidth;
  return int(std::clamp<int64_t>(width, INT32_MIN / 4, INT32_MAX / 4));
}

// Steps 12 to 16: optical, overlay and radiograph columns from the plot's left edge.
void LayOutImageColumns(const Model& model, PlotLayout& l) {
  const PlotState& plot = model.Plot();
  const WorkingBlock& work = model.App.Work;
  const CoreSection& section = model.CurSection();
  const RadiographDesc& rad = section.Radiographs[size_t(model.CurRadiographSlot())];
  l.OpticalShown = section.Optical.Loaded() && work.ShowOptical;
  l.RadiographShown = rad.Loaded() && work.ShowRadiograph;

  int x = l.X0 + l.Gap;
  l.OpticalLabelRight = l.X0;
  if (l.OpticalShown) {
    l.OpticalLeft = x;
    l.OpticalWidth = OpticalColumnWidth(model, l);
    x += l.Gap + l.OpticalWidth;
    l.OpticalLabelRight = x;
  }
  l.OverlayShown = (plot.OverlayOr || plot.OverlayAnd) && l.OpticalShown && !l.AllSections && rad.Loaded();
  if (l.OverlayShown) {
    l.OverlayLeft = x;
    x += l.Gap + l.OpticalWidth;
  }
  l.RadiographLeft = x;
  if (!l.RadiographShown) return;
  l.RadiographWidth = RadiographColumnWidth(model, l);
  if (l.AllSections) {
    for (int s = 0; s < l.SectionCount; ++s)
      if (model.Section(s).Radiographs[0].Loaded())
        l.RadiographsPlaced = std::max(l.RadiographsPlaced, PlacedRadiographs(model.Section(s)));
  } else {
    l.RadiographsPlaced = PlacedRadiographs(section);
    // The data region is outlined on the current radiograph, unless the contrast
    // dialog owns the image.
    const IntRect dest =
        RadiographDest(plot, section, model.CurRadiographSlot(), x, l.Y0, l.RadiographWidth, l.PlotHeight);
    if (rad.Width > 0 && l.RadiographsPlaced > 0 && !plot.RadContrastOpen && dest.Right > dest.Left) {
      const auto at = [&](int column) { return int(dest.Left + int64_t(column) * l.RadiographWidth / rad.Width); };
      l.DataRegion = {at(plot.DataRegionLeft), dest.Top, at(plot.DataRegionRight), dest.Bottom};
      l.DataRegionShown = true;
    }
  }
}

// Step 20: the coverage bar and the data columns right of the image columns.
void LayOutDataArea(const Model& model, PlotLayout& l) {
  const PlotState& plot = model.Plot();
  const int x = l.RadiographsPlaced > 0 ? l.RadiographLeft + l.RadiographsPlaced * l.RadiographWidth + l.Gap
                                        : l.RadiographLeft;
  l.CoverageLeft = x;
  l.CurveCount = std::clamp(plot.DataSetCount, 0, kMaxCurves);
  l.HasDataArea = plot.DataSetCount > 0 && model.CurSection().PointCount > 0;
  // Without a data area the columns keep where the last paint put them.
  l.DataAreaRight = l.XRight;
  l.ColumnLeft = plot.ColumnLeft;
  l.ColumnWidth = plot.ColumnWidth;
  if (!l.HasDataArea) return;
  l.ColumnLeft = x + l.DpiX * 3 / 16;
  l.DataAreaRight = l.XRight - l.ColumnLeft;
  // One, two or three columns each take a third of the area.
  l.ColumnWidth = plot.ColumnCount < 4 ? l.DataAreaRight / 3 : l.DataAreaRight / plot.ColumnCount;
}

}  // namespace

PlotFontSize MeasurePlotFont(int dpiY, const QPaintDevice* device) {
  QImage probe;
  if (!device) {
    probe = QImage(1, 1, QImage::Format_RGB32);
    probe.setDotsPerMeterY(qRound(dpiY / 0.0254));
    probe.setDotsPerMeterX(qRound(dpiY / 0.0254));
    device = &probe;
  }
  const QFont font = MakePlotFont("MS Sans Serif", 11, 700, dpiY);
  const QFontMetrics metrics(font, const_cast<QPaintDevice*>(device));
  return {metrics.maxWidth(), metrics.ascent() + metrics.descent()};
}

PlotLayout ComputePlotLayout(const Model& model, const LayoutTarget& target) {
  PlotLayout l;
  LayOutPage(model, target, l);
  LayOutSpans(model, l);
  // Without a depth span only the page is known; the columns keep their old places.
  l.PlotHeight = model.Plot().PlotHeight;
  l.DataAreaRight = model.Plot().DataAreaRight;
  l.ColumnLeft = model.Plot().ColumnLeft;
  l.ColumnWidth = model.Plot().ColumnWidth;
  l.DepthTick = model.Plot().DepthTick;
  if (!l.Drawable) return l;
  LayOutPlotBox(model, l);
  LayOutImageColumns(model, l);
  LayOutDataArea(model, l);
  return l;
}

void ApplyLayout(const PlotLayout& l, PlotState& plot) {
  if (!l.Printing) {
    plot.PageRect = l.Page;
    plot.ScreenHeight = l.PageHeight;
    plot.ViewTop = int(l.Scroll + l.PageHeight / 2);
  }
  plot.PageWidth = l.PageWidth;
  plot.PageHeight = l.PageHeight;
  plot.CharWidth = l.CharWidth;
  plot.CharHeight = l.CharHeight;
  plot.LeftMargin = l.LeftMargin;
  plot.RightMargin = l.RightMargin;
  plot.TopMargin = l.TopMargin;
  plot.BottomMargin = l.BottomMargin;
  plot.LayoutSpan = l.LayoutSpan;
  plot.DepthSpan = l.DepthSpan;
  plot.PlotHeight = l.PlotHeight;
  plot.DataAreaRight = l.DataAreaRight;
  plot.DepthTick = l.DepthTick;
  plot.ColumnLeft = l.ColumnLeft;
  plot.ColumnWidth = l.ColumnWidth;
}

int64_t PlotLayout::RowOfDepth(double depth) const {
  const double d = std::floor(depth * double(PlotHeight) / double(DepthSpan));
  if (!std::isfinite(d)) return Y0;
  return Y0 + int64_t(std::clamp(d, -1e15, 1e15));
}

LayoutFrame FrameOf(const PlotLayout& l) {
  return {l.Page.Left, l.Page.Top, l.LeftMargin, l.TopMargin, l.PlotHeight, l.ColumnLeft, l.LayoutSpan};
}

LayoutFrame FrameOf(const PlotState& p) {
  return {p.PageRect.Left, p.PageRect.Top, p.LeftMargin, p.TopMargin, p.PlotHeight, p.ColumnLeft, p.LayoutSpan};
}

int LayoutFromY(const LayoutFrame& f, int y) {
  if (f.PlotHeight == 0) return 0;
  return FloorInt(double(y - f.TopMargin) * double(f.LayoutSpan) / double(f.PlotHeight));
}

int YFromLayout(const LayoutFrame& f, int u) {
  if (!(f.LayoutSpan > 0)) return u;
  return FloorInt(double(f.PlotHeight) * double(u) / double(f.LayoutSpan)) + f.TopMargin + f.PageTop;
}

int LayoutFromX(const LayoutFrame& f, int x) {
  const int x0 = f.PageLeft + f.LeftMargin;
  if (f.ColumnLeft == x0) return 0;
  return FloorInt(double(x - x0) * double(f.LayoutSpan) / double(f.ColumnLeft - x0));
}

int XFromLayout(const LayoutFrame& f, int u) {
  if (f.LayoutSpan == 0 || !(f.LayoutSpan == f.LayoutSpan)) return u;
  const int x0 = f.PageLeft + f.LeftMargin;
  return FloorInt(double(f.ColumnLeft - x0) * double(u) / double(f.LayoutSpan)) + x0;
}

}  // namespace sedra
