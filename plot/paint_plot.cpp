#include "plot/paint_plot.h"

#include <QPainter>
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "images/draw/image_draw.h"
#include "model/model.h"
#include "model/numbers.h"
#include "plot/curves.h"
#include "plot/depth_scale.h"
#include "plot/header.h"
#include "plot/paint_context.h"
#include "plot/regions.h"

namespace sedra {

namespace {

constexpr int kCentredLabel = Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip;

// The pending button state of the mouse handlers and the value popup do not survive a
// repaint.
void EndPendingGestures(PlotState& plot, const PaintTarget& target) {
  std::memset(plot.PendingButton, 0, sizeof plot.PendingButton);
  if (plot.ValuePopupOpen) {
    if (target.EndValuePopup) target.EndValuePopup();
    plot.ValuePopupOpen = 0;
  }
}

// Which data curve shows each data set.  Data set 1 is the validity mask and is
// deliberately never given an entry.
void RebuildPlotOfDataSet(Model& model) {
  const int curveCount = std::clamp(model.Plot().DataSetCount, 0, kMaxCurves);
  std::memset(model.App.PlotOfDataSet, 0, sizeof model.App.PlotOfDataSet);
  for (int i = 0; i < curveCount; ++i) {
    const int k = model.App.Settings.DataSetOfPlot[i];
    if (k - 1 > 0 && k - 1 < kMaxChannels) model.App.PlotOfDataSet[k - 1] = i;
  }
}

LayoutTarget LayoutTargetFor(const QPainter& painter, const PaintTarget& target, const PlotState& plot) {
  LayoutTarget t;
  t.Printing = plot.Printing != 0;
  if (t.Printing) {
    t.Page = plot.PageRect;
  } else {
    const QRect& c = target.Client;
    t.Page = {c.left(), c.top(), c.left() + c.width(), c.top() + c.height()};
  }
  if (const QPaintDevice* device = painter.device()) {
    t.DpiX = device->logicalDpiX();
    t.DpiY = device->logicalDpiY();
    t.Device = device;
  }
  t.ScrollPos = target.ScrollPos;
  t.ScreenHeight = plot.ScreenHeight;
  return t;
}

// The horizontal layer: regions, lines and section dividers of every section shown.
void DrawHorizontalLayer(PaintContext& ctx, const PlotLayout& l) {
  const PlotState& plot = ctx.M.Plot();
  int offset = l.DepthOffset;
  const QColor lineColour = ctx.Colour(kHLineColour);
  for (int s = l.FirstSection; s <= l.LastSection; ++s) {
    const CoreSection& sec = ctx.M.Section(s);
    for (int r = 0; r < kAnnotationSlots; ++r)
      if (sec.HRegionBottom[r] > 0) DrawRegion(ctx, r, offset, s, RegionKind::Horizontal);
    for (int line = 0; line < kAnnotationSlots; ++line) {
      const float depth = sec.HLineDepth[line];
      if (!(depth > 0)) continue;
      // Lines round to the nearest row; everything else floors.
      const int64_t y = int64_t(l.Y0) + FloorInt((double(offset) + depth) * double(l.PlotHeight) / double(l.DepthSpan) + 0.5);
      DrawHorizontalStyledLine(ctx, l.X0, l.XRight, y, sec.HLineStyle[line], sec.HLineWidth[line], lineColour);
    }
    if (!l.AllSections) break;
    // Dividers sit at the floored running length, so fractional lengths drift the
    // lines by up to a millimetre per section; the titles and regions count the same way.
    offset += FloorInt(plot.SectionLength[s]);
    if (plot.ShowDividers) {
      const int64_t y = l.RowOfDepth(offset);
      ctx.SetPen(ctx.Colour(kAxisColour));
      ctx.Line(l.X0, y, l.XRight, y);
    }
  }
}

void DrawOpticalColumn(PaintContext& ctx, const PlotLayout& l) {
  if (!l.OpticalShown) return;
  Model& model = ctx.M;
  const int cur = model.CurSectionSlot();
  if (!l.Stacked) {
    DrawOpticalImage(ctx.Surface(), model, cur, l.OpticalLeft, l.Y0, l.OpticalWidth, l.PlotHeight);
    return;
  }
  for (int s = 0; s < l.SectionCount; ++s) {
    const SectionBand& band = l.Bands[size_t(s)];
    // The current section's flag decides for every section; kept as it is.
    if (model.CurSection().Optical.Loaded())
      DrawOpticalImage(ctx.Surface(), model, s, l.OpticalLeft, int(band.Top), l.OpticalWidth, band.Height);
  }
}

void DrawRadiographColumn(PaintContext& ctx, const PlotLayout& l) {
  if (!l.RadiographShown) return;
  Model& model = ctx.M;
  if (!l.AllSections) {
    DrawRadiographs(ctx.Surface(), model, model.CurSectionSlot(), l.RadiographLeft, l.Y0, l.RadiographWidth,
                    l.PlotHeight);
    return;
  }
  // Stacked whether or not the optical image covers all sections.
  for (int s = 0; s < l.SectionCount; ++s) {
    const SectionBand& band = l.Bands[size_t(s)];
    if (model.Section(s).Radiographs[0].Loaded())
      DrawRadiographs(ctx.Surface(), model, s, l.RadiographLeft, int(band.Top), l.RadiographWidth, band.Height);
  }
}

void DrawImageColumns(PaintContext& ctx, const PlotLayout& l) {
  DrawOpticalColumn(ctx, l);
  // The optical image with the current radiograph over it.
  if (l.OverlayShown)
    DrawOverlay(ctx.Surface(), ctx.M, ctx.M.CurSectionSlot(), l.OverlayLeft, l.Y0, l.OpticalWidth, l.PlotHeight);
  DrawRadiographColumn(ctx, l);
  // Whatever the columns drew above the plot (a radiograph moved up) is wiped.
  ctx.FillRect(l.Page.Left, l.Page.Top, l.Page.Right, l.Y0 - 1, ctx.Colour(kBackgroundColour));
}

// Width labels over the image columns.
void DrawColumnLabels(PaintContext& ctx, const PlotLayout& l) {
  ctx.Painter.setFont(ctx.LabelFont);
  ctx.Painter.setPen(ctx.Colour(kTextColour));
  const CoreSection& section = ctx.M.CurSection();
  if (l.OpticalShown)
    ctx.Text(l.X0, l.Y0 - l.CharHeight, l.OpticalLabelRight, l.Y0, kCentredLabel,
             QString::fromStdString(Format("%3.1f cm", double(section.OpticalWidthLabel))));
  if (l.RadiographsPlaced > 0)
    // Each radiograph counts as 2 cm wide, whatever its pixels say.
    ctx.Text(l.RadiographLeft, l.Y0 - l.CharHeight, l.RadiographLeft + l.RadiographsPlaced * l.RadiographWidth, l.Y0,
             kCentredLabel, QString::fromStdString(Format("%i cm", 2 * l.RadiographsPlaced)));
}

void DrawVerticalRegions(PaintContext& ctx, const PlotLayout& l) {
  for (int s = l.FirstSection; s <= l.LastSection; ++s) {
    const CoreSection& sec = ctx.M.Section(s);
    for (int r = 0; r < kAnnotationSlots; ++r)
      if (sec.VRegionRight[r] > 0) DrawRegion(ctx, r, l.DepthOffset, s, RegionKind::Vertical);
    if (!l.AllSections) break;
  }
}

void DrawVerticalLines(PaintContext& ctx, const PlotLayout& l) {
  const PlotState& plot = ctx.M.Plot();
  const QColor lineColour = ctx.Colour(kVLineColour);
  for (int s = l.FirstSection; s <= l.LastSection; ++s) {
    const CoreSection& sec = ctx.M.Section(s);
    const int64_t length = FloorInt(plot.SectionLength[s]);
    for (int line = 0; line < kVLineSlots && length != 0; ++line) {
      const int v = sec.VLinePosition[line];
      if (v <= 0) continue;
      const int x = int(l.ColumnLeft + int64_t(l.DataAreaRight) * v / length);
      DrawVerticalStyledLine(ctx, x, l.Y0, int64_t(l.Y0) + l.PlotHeight, sec.VLineStyle[line], sec.VLineWidth[line],
                             lineColour);
    }
    if (!l.AllSections) break;
  }
}

// The labelled depth scale, the coverage bar and the data columns with their curves.
void DrawDataArea(PaintContext& ctx, const PlotLayout& l) {
  Model& model = ctx.M;
  if (l.HasDataArea) DrawDepthScale(ctx, l.X0, l.Y0, l.PlotHeight, true);
  const QColor axis = ctx.Colour(kAxisColour);
  ctx.SetPen(axis);
  if (!l.HasDataArea) return;
  DrawCoverageBar(ctx, l.CoverageLeft, l.Y0, l.PlotHeight);
  DrawVerticalRegions(ctx, l);
  if (model.Plot().NeedLayout) ComputeCurves(model);
  DrawVerticalLines(ctx, l);
  int x = l.ColumnLeft;
  for (int i = 0; i < l.CurveCount; ++i) {
    DrawDepthScale(ctx, x, l.Y0, l.PlotHeight, false);
    DrawCurve(ctx, i, x, l.Y0, l.PlotHeight);
    ctx.SetPen(axis);
    ctx.Line(x, l.Y0, x, int64_t(l.Y0) + l.PlotHeight);
    x += l.ColumnWidth;
  }
}

void DrawAxes(PaintContext& ctx, const PlotLayout& l) {
  ctx.SetPen(ctx.Colour(kAxisColour));
  ctx.Line(l.X0, l.Y0, l.X0, int64_t(l.Y0) + l.PlotHeight);
  ctx.Line(l.X0, l.Y0, l.XRight, l.Y0);
}

// Titles, the text fields and the information block, on top of everything else.
void DrawTexts(PaintContext& ctx, const PlotLayout& l) {
  Model& model = ctx.M;
  const PlotState& plot = model.Plot();
  const WorkingBlock& work = model.App.Work;
  const CoreSection& current = model.CurSection();
  if (work.ShowCoreName && plot.MainTitleFontSize >= 1) DrawMainTitle(ctx, true);
  if (work.ShowSectionName) {
    if (!l.AllSections) {
      if (current.SectionTitleFontSize > 0) DrawSectionTitle(ctx, model.CurSectionSlot(), true);
    } else if (plot.ShowSectionTitles && l.SectionCount >= 1) {
      // The current section's size decides for all of them; kept as it is.
      for (int s = 0; s < l.SectionCount; ++s)
        if (current.SectionTitleFontSize > 0) DrawSectionTitle(ctx, s, true);
    }
  }
  // A text starting with a byte of 128 or more counts as empty, as it always has (the
  // first byte is read as a signed char).
  for (int i = 0; i < kTextFields; ++i)
    if (static_cast<signed char>(plot.TextFields[i].Text[0]) > 0) DrawTextField(ctx, i, true);
  // The information block, while there is radiograph data to describe.
  if (plot.RadiographDataSet > 0) DrawInfoBlock(ctx);
}

// The radiograph where the user dragged it, then the focus rectangles, which are
// overlays and always come last.
void DrawOverlays(PaintContext& ctx, const PlotLayout& l, bool trackRect) {
  const PlotState& plot = ctx.M.Plot();
  if (plot.RadMoved) DrawMovedRadiograph(ctx.Surface(), ctx.M);
  if (l.DataRegionShown) ctx.FocusRect(l.DataRegion.Left, l.DataRegion.Top, l.DataRegion.Right, l.DataRegion.Bottom);
  if (trackRect && !l.Printing && plot.TrackRect.Right >= 1)
    ctx.FocusRect(plot.TrackRect.Left, plot.TrackRect.Top, plot.TrackRect.Right, plot.TrackRect.Bottom);
}

}  // namespace

PlotLayout PaintPlot(Model& model, QPainter& painter, const PaintTarget& target) {
  PlotState& plot = model.Plot();
  // Nothing while the frame is being dragged.
  if (plot.InSizeMove || !painter.isActive()) return {};
  EndPendingGestures(plot, target);
  RebuildPlotOfDataSet(model);
  const PlotLayout layout = ComputePlotLayout(model, LayoutTargetFor(painter, target, plot));
  ApplyLayout(layout, plot);

  painter.save();
  const QRect page(layout.Page.Left, layout.Page.Top, std::max(0, layout.PageWidth), std::max(0, layout.PageHeight));
  QRect device = page;
  if (!layout.Printing && !target.Exposed.isEmpty()) device = target.Exposed & page;
  if (!layout.Printing) painter.setClipRect(device);
  PaintContext ctx(painter, model, 0, device);
  ctx.ClipIsDevice = !layout.Printing;
  ctx.HorzRes = target.HorzRes;
  painter.fillRect(page, ctx.Colour(kBackgroundColour));
  ctx.OriginY = layout.Scroll;
  if (layout.Drawable) {
    DrawHorizontalLayer(ctx, layout);
    DrawImageColumns(ctx, layout);
    DrawColumnLabels(ctx, layout);
    DrawDataArea(ctx, layout);
    DrawAxes(ctx, layout);
    DrawTexts(ctx, layout);
    DrawOverlays(ctx, layout, target.DrawTrackRect);
  }
  painter.restore();
  return layout;
}

}  // namespace sedra
