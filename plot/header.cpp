#include "plot/header.h"

#include <QString>
#include <algorithm>
#include <array>
#include <vector>
#include <cstring>

#include "model/model.h"
#include "model/numbers.h"
#include "plot/plot_layout.h"
#include "plot/paint_context.h"

namespace sedra {

namespace {

constexpr int kOneLineCentred = Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip;

// Measures the text at (x, y), writes the right and bottom edges back in layout units,
// then draws the text opaque (or erases its box) 2 pixels larger than the text.
void DrawTitleText(PaintContext& ctx, const QString& text, int points, int x, int y, IntRect& rect, bool draw) {
  const PlotState& plot = ctx.M.Plot();
  const QFont font = ctx.MakeFont("MS Sans Serif", points, 700);
  const int right = x + ctx.TextWidth(font, text);
  const int bottom = y + ctx.FontHeight(font);
  const int x0 = plot.PageRect.Left + plot.LeftMargin;
  if (plot.ColumnLeft != x0)
    rect.Right = FloorInt(double(right - x0) * double(plot.LayoutSpan) / double(plot.ColumnLeft - x0));
  if (plot.PlotHeight != 0)
    rect.Bottom = FloorInt(double(bottom - plot.TopMargin) * double(plot.LayoutSpan) / double(plot.PlotHeight));

  const QColor background = ctx.Colour(kBackgroundColour);
  if (!draw) {
    ctx.FillRect(x - 2, y - 2, right + 2, bottom + 2, background);
    return;
  }
  // Opaque text: its cell takes the background colour first.
  ctx.FillRect(x, y, right, bottom, background);
  ctx.Painter.setFont(font);
  ctx.Painter.setPen(ctx.Colour(kTextColour));
  ctx.Text(x - 2, y - 2, right + 2, bottom + 2, kOneLineCentred, text);
}

}  // namespace

void DrawMainTitle(PaintContext& ctx, bool draw) {
  PlotState& plot = ctx.M.Plot();
  const int x = XFromLayout(plot, plot.MainTitleRect.Left);
  const int y = YFromLayout(plot, plot.MainTitleRect.Top);
  DrawTitleText(ctx, FromAnsi(plot.CoreTitle, sizeof plot.CoreTitle), plot.MainTitleFontSize, x, y, plot.MainTitleRect,
                draw);
}

void DrawSectionTitle(PaintContext& ctx, int section, bool draw) {
  if (section < 0 || section >= kMaxSections) return;
  PlotState& plot = ctx.M.Plot();
  CoreSection& sec = ctx.M.Section(section);
  const int x = XFromLayout(plot, sec.HeaderRect.Left);
  int y = YFromLayout(plot, sec.HeaderRect.Top);
  const int64_t span = FloorInt(plot.DepthSpan);
  if (plot.ShowAllSections && span > 0) {
    // In Display-All each title rides with its own section: its top is counted from
    // the start of that section, in whole millimetres.
    int64_t before = 0;
    for (int s = 0; s < section; ++s) before += FloorInt(plot.SectionLength[s]);
    y = int((sec.HeaderRect.Top + before) * plot.PlotHeight / span) + plot.TopMargin + plot.PageRect.Top;
  }
  const QString text = QStringLiteral("Section: ") + FromAnsi(sec.SectionName, sizeof sec.SectionName);
  // The current section's size governs every section title (see PaintPlot).
  DrawTitleText(ctx, text, ctx.M.CurSection().SectionTitleFontSize, x, y, sec.HeaderRect, draw);
}

void DrawTextField(PaintContext& ctx, int field, bool draw) {
  if (field < 0 || field >= kTextFields) return;
  PlotState& plot = ctx.M.Plot();
  TextField& tf = plot.TextFields[field];
  const int x = XFromLayout(plot, tf.Rect.Left);
  const int y = YFromLayout(plot, tf.Rect.Top);
  DrawTitleText(ctx, FromAnsi(tf.Text, sizeof tf.Text), tf.FontSize, x, y, tf.Rect, draw);
}

void DrawInfoBlock(PaintContext& ctx) {
  Model& model = ctx.M;
  const PlotState& plot = model.Plot();
  if (!plot.ShowInfo) return;
  const CoreSection& sec = model.CurSection();

  const int rowHeight = ctx.FontHeight(ctx.LabelFont) + 4;
  const bool xrf = sec.CountTimeText[0] != '\0';
  const int left = plot.PageRect.Left + plot.LeftMargin;
  const int right = plot.PageRect.Right - plot.RightMargin;
  // The block sits at the end of the zoomed document, under the plot's last row.
  const int64_t bottom = int64_t(std::max(1, plot.ZoomFactor)) * plot.PageRect.Bottom;
  const int rows = xrf ? 4 : 3;
  const int64_t top = bottom - int64_t(rows) * rowHeight;
  if (!ctx.BandVisible(top, bottom)) return;
  const int cell = (right - left) / 4;

  // Frame, row and cell separators.
  ctx.SetPen(ctx.Colour(kTextColour));
  ctx.Line(left, top, right - 1, top);
  ctx.Line(right - 1, top, right - 1, bottom - 1);
  ctx.Line(right - 1, bottom - 1, left, bottom - 1);
  ctx.Line(left, bottom - 1, left, top);
  for (int r = 1; r < rows; ++r) ctx.Line(left, top + int64_t(r) * rowHeight, right - 1, top + int64_t(r) * rowHeight);
  for (int c = 1; c < 4; ++c) ctx.Line(left + c * cell, top, left + c * cell, bottom - 1);

  auto ansi = [](const auto& field) { return FromAnsi(field, sizeof field); };
  QString date = QString::fromStdString(Format("Date: %02d/%02d/%d", sec.ScanDay, sec.ScanMonth, sec.ScanYear));
  const char* title = model.App.Title;
  if (const char* v = std::strrchr(title, 'V'))
    date += QStringLiteral(" - Sedra-PLOT ") + FromAnsi(v, std::min<size_t>(5, sizeof model.App.Title - size_t(v - title)));

  std::vector<std::array<QString, 4>> table;
  table.push_back({QStringLiteral("Core: ") + ansi(sec.CoreName),
                   plot.ShowAllSections ? QStringLiteral("All Sections") : QStringLiteral("Section: ") + ansi(sec.SectionName),
                   QStringLiteral("User: ") + ansi(sec.UserField), date});
  table.push_back({QStringLiteral("X-Ray tube: ") + ansi(sec.TubeText) + QStringLiteral(" target"),
                   sec.CameraText[0] ? QStringLiteral("Line camera signal: ") + ansi(sec.CameraText) : QString(),
                   QStringLiteral("Filename: ") + ansi(sec.FileName), QStringLiteral(" Sedra")});
  if (xrf)
    table.push_back({QStringLiteral("XRF Conditions"), ansi(sec.XrfVoltText),
                     QString::fromStdString(Format("Step Size: %i microns", FloorInt(double(sec.XrfStepSize) * 10.0))),
                     QStringLiteral("Count-time: ") + ansi(sec.CountTimeText) + QStringLiteral("/increment")});
  table.push_back({QStringLiteral("X-radiograph Conditions"), ansi(sec.TubeSettingsText),
                   QStringLiteral("Step Size: ") + ansi(sec.StepSizeText),
                   QStringLiteral("Dwell time: ") + QString::number(sec.Exposure) + QLatin1Char(' ') +
                       ansi(sec.ExposureText) + QStringLiteral("/increment")});

  ctx.Painter.setFont(ctx.LabelFont);
  ctx.Painter.setPen(ctx.Colour(kTextColour));
  const int inset = std::max(2, ctx.DpiX / 32);
  for (int r = 0; r < rows; ++r) {
    const int64_t y = top + int64_t(r) * rowHeight;
    for (int c = 0; c < 4; ++c) {
      const int x = left + c * cell;
      ctx.Text(x + inset, y, x + cell, y + rowHeight, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip,
               table[size_t(r)][size_t(c)]);
    }
  }
}

}  // namespace sedra
