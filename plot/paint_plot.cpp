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

// Pixel height of `mm` at the plot's scale, floored.
int ScaledHeight(double mm, const PlotState& plot) {
  return FloorInt(mm * double(plot.PlotHeight) / double(plot.DepthSpan));
}

struct PaintLayout {
  int X0 = 0, Y0 = 0, XRight = 0;
  int Gap = 0;
  int FirstSection = 0, LastSection = -1;
  bool AllSections = false;
  int DepthOffset = 0;  // the expanded display's offset, mm
};

// The horizontal layer: regions, lines and section dividers of every section shown.
void DrawHorizontalLayer(PaintContext& ctx, const PaintLayout& lay) {
  Model& model = ctx.M;
  const PlotState& plot = model.Plot();
  int offset = lay.DepthOffset;
  const QColor lineColour = ctx.Colour(kHLineColour);
  for (int s = lay.FirstSection; s <= lay.LastSection; ++s) {
    const CoreSection& sec = model.Section(s);
    for (int r = 0; r < kAnnotationSlots; ++r)
      if (sec.HRegionBottom[r] > 0) DrawRegion(ctx, r, offset, s, RegionKind::Horizontal);
    for (int l = 0; l < kAnnotationSlots; ++l) {
      const float depth = sec.HLineDepth[l];
      if (!(depth > 0)) continue;
      // Lines round to the nearest row; everything else floors.
      const int64_t y =
          lay.Y0 + FloorInt((double(offset) + depth) * double(plot.PlotHeight) / double(plot.DepthSpan) + 0.5);
      DrawHorizontalStyledLine(ctx, lay.X0, lay.XRight, y, sec.HLineStyle[l], sec.HLineWidth[l], lineColour);
    }
    if (!lay.AllSections) break;
    // Dividers sit at the floored running length, so fractional lengths drift the
    // lines by up to a millimetre per section; the titles and regions count the same way.
    offset += FloorInt(plot.SectionLength[s]);
    if (plot.ShowDividers) {
      const int64_t y = lay.Y0 + ScaledHeight(offset, plot);
      ctx.SetPen(ctx.Colour(kAxisColour));
      ctx.Line(lay.X0, y, lay.XRight, y);
    }
  }
}

}  // namespace

void PaintPlot(Model& model, QPainter& painter, const PaintTarget& target) {
  PlotState& plot = model.Plot();
  const WorkingBlock& work = model.App.Work;

  // 1. Nothing while the frame is being dragged; the pending button state of the mouse
  //    handlers and the value popup do not survive a repaint.
  if (plot.InSizeMove) return;
  if (!painter.isActive()) return;
  std::memset(plot.PendingButton, 0, sizeof plot.PendingButton);
  if (plot.ValuePopupOpen) {
    if (target.EndValuePopup) target.EndValuePopup();
    plot.ValuePopupOpen = 0;
  }

  // 2. Which data curve shows each data set.  Data set 1 is the validity mask and is
  //    deliberately never given an entry.
  const int curveCount = std::clamp(plot.DataSetCount, 0, kMaxCurves);
  std::memset(model.App.PlotOfDataSet, 0, sizeof model.App.PlotOfDataSet);
  for (int i = 0; i < curveCount; ++i) {
    const int k = model.App.DataSetOfPlot[i];
    if (k - 1 > 0 && k - 1 < kMaxChannels) model.App.PlotOfDataSet[k - 1] = i;
  }

  // 3. What is shown.
  const int cur = model.CurSectionSlot();
  CoreSection& curSection = model.CurSection();
  RadiographDesc& curRad = model.CurRadiograph();
  const bool opticalShown = curSection.Optical.Loaded() && work.ShowOptical;
  const bool radiographShown = curRad.Loaded() && work.ShowRadiograph;

  painter.save();
  // 6. The page: the client rectangle on screen, the printable page when printing.
  if (!plot.Printing) {
    const QRect& c = target.Client;
    plot.PageRect = {c.left(), c.top(), c.left() + c.width(), c.top() + c.height()};
  }
  const IntRect page = plot.PageRect;
  plot.PageWidth = page.Right - page.Left;
  plot.PageHeight = page.Bottom - page.Top;
  if (!plot.Printing) plot.ScreenHeight = plot.PageHeight;
  const QRect pageRect(page.Left, page.Top, std::max(0, plot.PageWidth), std::max(0, plot.PageHeight));
  QRect device = pageRect;
  if (!plot.Printing && !target.Exposed.isEmpty()) device = target.Exposed & pageRect;
  if (!plot.Printing) painter.setClipRect(device);

  // 4, 5. Fonts and margins.
  PaintContext ctx(painter, model, 0, device);
  ctx.ClipIsDevice = !plot.Printing;
  const int charHeight = ctx.FontHeight(ctx.PlotFont);
  plot.CharWidth = ctx.FontMaxWidth(ctx.PlotFont);
  plot.CharHeight = charHeight;
  plot.LeftMargin = 3 * charHeight;
  plot.RightMargin = ctx.DpiX / 8;
  plot.TopMargin = 2 * charHeight + 4;
  if (plot.ShowInfo)
    plot.BottomMargin = curSection.CountTimeText[0] != '\0' ? 2 * plot.TopMargin : plot.TopMargin * 3 / 2;
  else
    plot.BottomMargin = plot.TopMargin / 2;

  const QColor background = ctx.Colour(kBackgroundColour);
  painter.fillRect(pageRect, background);

  // 7. Scrolling: the document scrolls under the window; a printed page follows the
  //    screen's position scaled from the screen's height to the page's.
  const int zoom = std::max(1, plot.ZoomFactor);
  int64_t scroll = 0;
  if (zoom > 1) {
    scroll = target.ScrollPos;
    if (plot.Printing) scroll = plot.ScreenHeight > 0 ? scroll * plot.PageHeight / plot.ScreenHeight : 0;
  }
  ctx.OriginY = scroll;
  if (!plot.Printing) plot.ViewTop = int(scroll + plot.PageHeight / 2);

  // 8. Spans.
  const int sectionCount = std::clamp(plot.SectionCount, 0, kMaxSections);
  float layoutSpan = 0;
  for (int s = 0; s < sectionCount; ++s) layoutSpan += plot.SectionLength[s];
  plot.LayoutSpan = layoutSpan;
  if (plot.ShowAllSections)
    plot.DepthSpan = layoutSpan;
  else if (plot.Expanded)
    plot.DepthSpan = plot.ExpandBottom - plot.ExpandTop;
  else
    plot.DepthSpan = plot.SectionLength[cur];
  if (!(plot.DepthSpan > 0)) {
    painter.restore();
    return;
  }

  // 9. Geometry.
  PaintLayout lay;
  lay.X0 = page.Left + plot.LeftMargin;
  lay.Y0 = page.Top + plot.TopMargin;
  lay.XRight = page.Right - plot.RightMargin;
  plot.PlotHeight = int(std::clamp<int64_t>(int64_t(plot.PageHeight) * zoom - plot.BottomMargin - plot.TopMargin,
                                            INT32_MIN / 2, INT32_MAX / 2));
  plot.DataAreaRight = lay.XRight;
  if (plot.ShowSmoothPoints) plot.PlotHeight += 3 - charHeight;
  const int y0 = lay.Y0;
  const int x0 = lay.X0;

  // 10. Sections shown, column limits, offset, tick spacing.
  lay.AllSections = plot.ShowAllSections != 0;
  lay.FirstSection = lay.AllSections ? 0 : cur;
  lay.LastSection = lay.AllSections ? sectionCount - 1 : std::max(cur, sectionCount - 1);
  const int minimumWidth = plot.PageWidth / 40;
  const int maximumWidth = opticalShown ? plot.PageWidth / 8 : plot.PageWidth / 4;
  lay.DepthOffset = plot.Expanded ? -FloorInt(plot.ExpandTop) : 0;
  if (plot.DepthTick == 0) plot.DepthTick = 50;

  // 11. Regions, lines and dividers across the plot.
  DrawHorizontalLayer(ctx, lay);

  // 12. The image columns start one gap right of the plot's edge.
  lay.Gap = ctx.DpiX / 8;
  const int gap = lay.Gap;
  int x = x0 + gap;

  // 13. The height the stacked images fill: in Display-All each section is floored on
  //     its own, so the stack may end a few pixels short of the plot's bottom.
  const bool stacked = lay.AllSections && !plot.ImageCoversAll;
  int64_t stackHeight = plot.PlotHeight;
  if (stacked) {
    stackHeight = 0;
    for (int s = 0; s < sectionCount; ++s) stackHeight += ScaledHeight(plot.SectionLength[s], plot);
  }

  const DrawSurface surface = ctx.Surface();
  // 14. Optical column.
  int opticalWidth = 0;
  int opticalLabelRight = x0;
  if (opticalShown) {
    int64_t w0 = 0, h0 = 0;
    if (stacked) {
      for (int s = 0; s < sectionCount; ++s) {
        const OpticalImageDesc& o = model.Section(s).Optical;
        w0 += o.CropRight - o.CropLeft;
        h0 += o.CropBottom - o.CropTop;
      }
      w0 = sectionCount > 0 ? w0 / sectionCount : 0;
    } else {
      w0 = curSection.Optical.CropRight - curSection.Optical.CropLeft;
      h0 = curSection.Optical.CropBottom - curSection.Optical.CropTop;
    }
    int64_t width = h0 != 0 ? w0 * stackHeight / h0 : 0;
    if (plot.Expanded) width = FloorInt(double(plot.SectionLength[cur]) * double(width) / double(plot.DepthSpan));
    opticalWidth = int(std::clamp<int64_t>(width, minimumWidth, std::max(minimumWidth, maximumWidth)));
    if (!lay.AllSections || plot.ImageCoversAll) {
      DrawOpticalImage(surface, model, cur, x, y0, opticalWidth, plot.PlotHeight);
    } else {
      int y = y0;
      for (int s = 0; s < sectionCount; ++s) {
        const int h = ScaledHeight(plot.SectionLength[s], plot);
        // The current section's flag decides for every section; kept as it is.
        if (curSection.Optical.Loaded()) DrawOpticalImage(surface, model, s, x, y, opticalWidth, h);
        y += h;
      }
    }
    x += gap + opticalWidth;
    opticalLabelRight = x;
  }

  // 15. Overlay column: the optical image with the current radiograph over it.
  if ((plot.OverlayOr || plot.OverlayAnd) && opticalShown && !lay.AllSections && curRad.Loaded()) {
    DrawOverlay(surface, model, cur, x, y0, opticalWidth, plot.PlotHeight);
    x += gap + opticalWidth;
  }

  // 16. Radiograph column.
  int placed = 0;
  int radiographWidth = 0;
  const int radiographLabelLeft = x;
  bool dataRegionFocus = false;
  IntRect dataRegion{};
  if (radiographShown) {
    int64_t w0 = 0, h0 = 0;
    if (stacked) {
      // Widths summed, not averaged as for the optical column: kept, the column of a
      // multi-section core has always been this wide.
      for (int s = 0; s < sectionCount; ++s) {
        w0 += model.Section(s).Radiographs[0].Width;
        h0 += model.Section(s).Radiographs[0].Height;
      }
    } else {
      w0 = curRad.Width;
      h0 = curRad.Height;
    }
    int64_t width = h0 != 0 ? w0 * stackHeight / h0 : 0;
    if (plot.Expanded) width = FloorInt(double(plot.SectionLength[cur]) * double(width) / double(plot.DepthSpan));
    width = std::max<int64_t>(width, minimumWidth);
    if (plot.RadiographWidth != 0) width = plot.RadiographWidth;
    radiographWidth = int(std::clamp<int64_t>(width, INT32_MIN / 4, INT32_MAX / 4));
    if (lay.AllSections) {
      int y = y0;
      for (int s = 0; s < sectionCount; ++s) {
        const int h = ScaledHeight(plot.SectionLength[s], plot);
        if (model.Section(s).Radiographs[0].Loaded())
          placed = std::max(placed, DrawRadiographs(surface, model, s, x, y, radiographWidth, h));
        y += h;
      }
    } else {
      placed = DrawRadiographs(surface, model, cur, x, y0, radiographWidth, plot.PlotHeight);
      if (curRad.Width > 0 && placed > 0 && !plot.RadContrastOpen) {
        const IntRect& dest = curRad.DestRect;
        dataRegion = {int(dest.Left + int64_t(plot.DataRegionLeft) * radiographWidth / curRad.Width), dest.Top,
                      int(dest.Left + int64_t(plot.DataRegionRight) * radiographWidth / curRad.Width), dest.Bottom};
        dataRegionFocus = true;
      }
    }
    if (placed > 0) x += placed * radiographWidth + gap;
  }

  // 17. Whatever the columns drew above the plot (a radiograph moved up) is wiped.
  ctx.FillRect(page.Left, page.Top, page.Right, y0 - 1, background);

  // 18. Width labels over the image columns.
  painter.setFont(ctx.LabelFont);
  painter.setPen(ctx.Colour(kTextColour));
  if (opticalShown && curSection.Optical.Loaded())
    ctx.Text(x0, y0 - charHeight, opticalLabelRight, y0, kCentredLabel,
             QString::fromStdString(Format("%3.1f cm", double(curSection.OpticalWidthLabel))));
  if (placed > 0)
    // Each radiograph counts as 2 cm wide, whatever its pixels say.
    ctx.Text(radiographLabelLeft, y0 - charHeight, radiographLabelLeft + placed * radiographWidth, y0, kCentredLabel,
             QString::fromStdString(Format("%i cm", 2 * placed)));

  // 19. The labelled depth scale along the plot's left edge.
  if (plot.DataSetCount >= 1 && curSection.PointCount >= 1) DrawDepthScale(ctx, x0, y0, plot.PlotHeight, true);

  // 20. The data area.
  const QColor axis = ctx.Colour(kAxisColour);
  ctx.SetPen(axis);
  if (plot.DataSetCount > 0 && curSection.PointCount > 0) {
    DrawCoverageBar(ctx, x, y0, plot.PlotHeight);
    plot.ColumnLeft = x + ctx.DpiX * 3 / 16;
    plot.DataAreaRight = lay.XRight - plot.ColumnLeft;
    // One, two or three columns each take a third of the area.
    plot.ColumnWidth = plot.ColumnCount < 4 ? plot.DataAreaRight / 3 : plot.DataAreaRight / plot.ColumnCount;
    for (int s = lay.FirstSection; s <= lay.LastSection; ++s) {
      const CoreSection& sec = model.Section(s);
      for (int r = 0; r < kAnnotationSlots; ++r)
        if (sec.VRegionRight[r] > 0) DrawRegion(ctx, r, lay.DepthOffset, s, RegionKind::Vertical);
      if (!lay.AllSections) break;
    }
    if (plot.NeedLayout) ComputeCurves(model);
    const QColor lineColour = ctx.Colour(kVLineColour);
    for (int s = lay.FirstSection; s <= lay.LastSection; ++s) {
      const CoreSection& sec = model.Section(s);
      const int64_t length = FloorInt(plot.SectionLength[s]);
      for (int l = 0; l < kVLineSlots && length != 0; ++l) {
        const int v = sec.VLinePosition[l];
        if (v <= 0) continue;
        const int lx = int(plot.ColumnLeft + int64_t(plot.DataAreaRight) * v / length);
        DrawVerticalStyledLine(ctx, lx, y0, int64_t(y0) + plot.PlotHeight, sec.VLineStyle[l], sec.VLineWidth[l],
                               lineColour);
      }
      if (!lay.AllSections) break;
    }
    int cx = plot.ColumnLeft;
    for (int i = 0; i < curveCount; ++i) {
      DrawDepthScale(ctx, cx, y0, plot.PlotHeight, false);
      DrawCurve(ctx, i, cx, y0, plot.PlotHeight);
      ctx.SetPen(axis);
      ctx.Line(cx, y0, cx, int64_t(y0) + plot.PlotHeight);
      cx += plot.ColumnWidth;
    }
  }

  // 21. Axes.
  ctx.SetPen(axis);
  ctx.Line(x0, y0, x0, int64_t(y0) + plot.PlotHeight);
  ctx.Line(x0, y0, lay.XRight, y0);

  // 22. Titles.
  if (work.ShowCoreName && plot.MainTitleFontSize >= 1) DrawMainTitle(ctx, true);
  if (work.ShowSectionName) {
    if (!lay.AllSections) {
      if (curSection.SectionTitleFontSize > 0) DrawSectionTitle(ctx, cur, true);
    } else if (plot.ShowSectionTitles && sectionCount >= 1) {
      // The current section's size decides for all of them; kept as it is.
      for (int s = 0; s < sectionCount; ++s)
        if (curSection.SectionTitleFontSize > 0) DrawSectionTitle(ctx, s, true);
    }
  }

  // 23. Text fields.  A text starting with a byte of 128 or more counts as empty, as it
  //     always has (the first byte is read as a signed char).
  for (int i = 0; i < kTextFields; ++i)
    if (static_cast<signed char>(plot.TextFields[i].Text[0]) > 0) DrawTextField(ctx, i, true);

  // 24. The information block, while there is radiograph data to describe.
  if (plot.RadiographDataSet > 0) DrawInfoBlock(ctx);

  // 25. The radiograph where the user dragged it, then the focus rectangles, which
  //     are overlays and always come last.
  if (plot.RadMoved) DrawMovedRadiograph(surface, model);
  if (dataRegionFocus) ctx.FocusRect(dataRegion.Left, dataRegion.Top, dataRegion.Right, dataRegion.Bottom);
  if (!plot.Printing && plot.TrackRect.Right >= 1)
    ctx.FocusRect(plot.TrackRect.Left, plot.TrackRect.Top, plot.TrackRect.Right, plot.TrackRect.Bottom);
  painter.restore();
}

}  // namespace sedra
