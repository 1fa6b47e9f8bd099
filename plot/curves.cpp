#include "plot/curves.h"

#include <QFontMetrics>
#include <QPaintDevice>
#include <QPen>
#include <QString>
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "model/model.h"
#include "model/numbers.h"
#include "model/row_bands.h"
#include "plot/paint_context.h"

namespace sedra {

namespace {

constexpr double kNoRange = 1e18;  // "no point counted yet" marker of ColumnOffset

int PointsOf(const CoreSection& section) { return std::clamp(section.PointCount, 0, kMaxPoints); }

// The sections a curve runs over: every loaded section end to end in Display-All mode,
// otherwise the current one.
std::vector<int> CurveSections(const Model& model) {
  const PlotState& plot = model.Plot();
  std::vector<int> out;
  if (plot.ShowAllSections) {
    const int count = std::clamp(plot.SectionCount, 0, kMaxSections);
    for (int s = 0; s < count; ++s) out.push_back(s);
  } else {
    out.push_back(model.CurSectionSlot());
  }
  return out;
}

// Offset slots a section takes: one per point, or one per PointStep points when the
// Display-All plot is decimated.
int SlotsOf(int points, int step) { return step > 0 ? (points + step - 1) / step : points; }

// The point window of the single-section display (the expanded display narrows it).
void PointWindow(const PlotState& plot, int points, int& first, int& last) {
  first = std::clamp(plot.ViewFirstPoint, 0, points);
  last = std::clamp(plot.ViewLastPoint, first, points);
}

std::string SetName(const PlotState& plot, int set0) {
  if (set0 < 0 || set0 >= kMaxChannels) return {};
  const char* name = plot.DataSetNames[set0];
  return std::string(name, strnlen(name, kDataSetNameLength));
}

std::string Lower(std::string s) {
  for (char& ch : s) ch = char(std::tolower(static_cast<unsigned char>(ch)));
  return s;
}

// Element symbols ("Fe", "K ") are one or two letters; longer names are derived
// channels.  A name counts as long when it has three characters and neither the second
// nor the third is a blank.
bool LongName(const std::string& lower) { return lower.size() >= 3 && lower[1] != ' ' && lower[2] != ' '; }

bool Contains(const std::string& s, const char* part) { return s.find(part) != std::string::npos; }

// Counts per second apply to raw element counts and to the "mean", "inc" and "coh"
// channels; other derived channels are already rates or ratios.
bool CountsPerSecondFor(const AppState& app, const std::string& name) {
  if (!app.CountsPerSecond) return false;
  const std::string lower = Lower(name);
  if (!LongName(lower)) return true;
  return lower == "mean" || Contains(lower, "inc") || Contains(lower, "coh");
}

float DataAt(const CoreSection& section, int set0, int k) {
  if (set0 < 0 || set0 >= kMaxChannels) return 0.0f;
  return section.Data[set0][k];
}

QColor CurveColourOf(Model& model, int curve) { return FromColorRef(DataColour(model.Settings(), curve)); }

// A depth in mm to a document row, safe against NaN and absurd values.
int64_t RowAt(int64_t top, double depth, double scale) {
  const double d = std::floor(depth * scale);
  if (!std::isfinite(d)) return top;
  return top + int64_t(std::clamp(d, -1e12, 1e12));
}

QPen CurvePen(const QColor& colour) {
  // A one-pixel pen that leaves out the last pixel of a line, as the platform's pens
  // do, so consecutive segments of a curve do not overdraw their joints.
  QPen pen(colour, 1, Qt::SolidLine, Qt::FlatCap);
  pen.setCosmetic(true);
  return pen;
}

// Computes the values of curve c over all curve sections into work row c; flags get 1
// for every valid point.
void ComputeValues(Model& model, int c, const std::vector<int>& sections, std::vector<uint8_t>& flags) {
  const PlotState& plot = model.Plot();
  const AppState& app = model.App;
  CurveWork& work = model.Curves();
  const int a = app.Settings.DataSetOfPlot[c] - 1;
  const int b = app.RatioSetOfPlot[c] - 1;
  const bool ratio = app.RatioOn[c] != 0;
  const int filter = app.FilterType[c];
  const std::string name = SetName(plot, a);
  const bool perSecond = CountsPerSecondFor(app, name);
  // Only element symbols are normalised; 1 is the incoherent, 2 the coherent scatter.
  int normaliser = 0;
  if (app.NormaliseBy[c] != 0 && name.size() < 3) normaliser = std::abs(app.NormaliseBy[c]);
  // IncSet and CohSet already count from 0, as Data is indexed.
  const int normSet = normaliser == 1 ? plot.IncSet : normaliser == 2 ? plot.CohSet : -1;
  // The mask (data set 1) is no curve of its own.
  const bool setOk = a >= 1 && a < kMaxChannels;

  int n = 0;
  for (int s : sections) {
    const CoreSection& section = model.Section(s);
    // A section without a radiograph has no radiograph data: its points are missing,
    // not zero.
    const bool hasData = setOk && (a != plot.RadiographDataSet - 1 || section.Radiographs[0].Loaded());
    float factor = 1.0f;
    if (section.CorrectionFactor > 0) factor = section.CorrectionFactor;
    if (section.CurveCorrection[c] > 0) factor = section.CurveCorrection[c];
    const double countTime = section.CountTime != 0 ? section.CountTime : 10;
    const int points = PointsOf(section);
    for (int k = 0; k < points; ++k, ++n) {
      // Data set 1 is the mask: a negative value is a deleted or missing point.
      if (!hasData || !(section.Data[0][k] >= 0)) {
        flags[size_t(n)] = 0;
        continue;
      }
      flags[size_t(n)] = 1;
      double y = double(section.Data[a][k]) * factor;
      double d = ratio ? double(DataAt(section, b, k)) * factor : 0.0;
      if (normSet >= 0 && normSet < kMaxChannels) {
        const double norm = section.Data[normSet][k];
        if (norm > 0) {
          y /= norm;
          if (ratio) d /= norm;
        }
      }
      if (ratio && d > 0) {
        // Ratios are dimensionless: no count-time division.  A log ratio needs a
        // positive quotient; where there is none the numerator stays as it is.
        const double q = y / d;
        if (filter >= 0)
          y = q;
        else if (q > 0)
          y = std::log(q);
      } else if (perSecond) {
        y /= countTime;
      }
      work.Value(c, n) = y;
    }
  }
}

}  // namespace

void ComputeRadiographData(Model& model) {
  PlotState& plot = model.Plot();
  const int set = plot.RadiographDataSet;
  if (set < 1 || set > kMaxChannels) return;
  // The mask consulted is the current section's for every section filled: sections
  // filled while another is current follow that one's deletions.  Kept as it was.
  const CoreSection& current = model.CurSection();
  for (int s = 0; s < kMaxSections; ++s) {
    CoreSection& section = model.Section(s);
    const RadiographDesc& rad = section.Radiographs[0];
    const int rows = rad.Height;
    const int cols = rad.Width;
    if (rows <= 0 || cols <= 0 || rad.Samples.size() < size_t(rows) * size_t(cols)) continue;
    const float q = float(PointsOf(section)) / float(rows);
    // Columns strictly between the data region's edges.
    const int c0 = std::max(0, plot.DataRegionLeft + 1);
    const int c1 = std::min(cols, plot.DataRegionRight);
    float* out = section.Data[set - 1];
    // The point where row r begins; row r fills the points from row r - 1's up to its
    // own, so the rows' points never overlap and a long image is summed in bands.
    auto pointOf = [q](int64_t r) { return r < 0 ? 0 : std::min(int(std::floor(float(r) * q)), kMaxPoints); };
    ForEachRowBand(RowBandCount(int64_t(rows) * std::max(c1 - c0, 0)), rows, [&](int, int64_t from, int64_t to) {
      int previous = pointOf(from - 1);
      for (int64_t r = from; r < to; ++r) {
        const int j = pointOf(r);
        // A point takes the sum of the row at which the next point begins.
        if (j > previous && j < kMaxPoints && current.Data[0][j] > 0) {
          const uint16_t* row = rad.Samples.data() + size_t(r) * size_t(cols);
          uint64_t sum = 0;
          for (int x = c0; x < c1; ++x) sum += row[x];
          for (int p = previous; p < j; ++p) out[p] = float(sum);
        }
        previous = j;
      }
    });
  }
}

namespace {

// Smooths curve c in place and finds its value range (unless the column's scale is
// fixed).  The running mean writes in place, so each window already holds the smoothed
// values before it: a recursive mean that users' figures rely on.  Points within half
// a window of a section's ends are neither smoothed nor counted in the range.
void SmoothAndRange(Model& model, int c, const std::vector<int>& sections, const std::vector<uint8_t>& flags) {
  PlotState& plot = model.Plot();
  const AppState& app = model.App;
  CurveWork& work = model.Curves();
  double& offset = plot.ColumnOffset[c];
  double& yMax = plot.ColumnYMax[c];
  const bool fixed = plot.ColumnFixedScale[c] != 0;
  if (!fixed) {
    offset = kNoRange;
    yMax = 0;
  }
  const int half = std::max(0, app.SmoothPoints[c] / 2);
  const bool smooth = app.FilterType[c] < 1 && app.SmoothPoints[c] != 0;
  const bool all = plot.ShowAllSections != 0;
  int base = 0;
  for (int s : sections) {
    const int points = PointsOf(model.Section(s));
    int first = 0, last = points;
    if (!all) PointWindow(plot, points, first, last);
    for (int j = base + half; j <= base + points - half - 1; ++j) {
      if (!flags[size_t(j)]) continue;
      double& v = work.Value(c, j);
      if (smooth) {
        double sum = 0;
        int count = 0;
        for (int i = j - half; i <= j + half; ++i) {
          if (!flags[size_t(i)]) continue;
          sum += work.Value(c, i);
          ++count;
        }
        v = sum / count;
      }
      const int k = j - base;
      if (k < first || k >= last || fixed) continue;
      if (v > yMax) yMax = v;
      if (v < offset) offset = v;
    }
    base += points;
  }
}

// Pixel offset of one value: 96% of the column is used, points above the maximum are
// pinned at that line and a deleted point is a gap (-1).  A thinned point whose stretch
// holds a deleted point is marked -1 before the 96% scaling, which turns it into 0: it
// is drawn at the column's edge, not left out.  Kept; only a deleted point itself
// leaves a gap.
int PointOffset(const PlotState& plot, int c, double v, double scale, bool valid, bool stretchValid) {
  const double offset = plot.ColumnOffset[c];
  if (!valid || std::isnan(v)) return -1;
  if (v > plot.ColumnYMax[c]) return plot.ColumnWidth * 24 / 25;
  if (v <= offset) return 0;
  double px = std::floor(scale * (v - offset));
  if (!std::isfinite(px)) px = 0;
  int o = int(std::clamp(px, -1.0, 32767.0));
  if (!stretchValid) o = -1;
  return o * 24 / 25;
}

// The offsets of curve c, one slot per drawn point (every PointStep-th when thinned).
void ComputeOffsets(Model& model, int c, const std::vector<int>& sections, const std::vector<uint8_t>& flags,
                    int total) {
  const PlotState& plot = model.Plot();
  CurveWork& work = model.Curves();
  const double range = plot.ColumnYMax[c] - plot.ColumnOffset[c];
  const double scale = (plot.ColumnYMax[c] > 0 && range > 0) ? plot.ColumnWidth / range : 0.0;
  const int step = plot.PointStep;
  int slot = 0;
  int base = 0;
  for (int s : sections) {
    const int points = PointsOf(model.Section(s));
    for (int k = 0; k < points; ++k) {
      if (step > 0 && k % step != 0) continue;
      const int n = base + k;
      bool stretchValid = true;
      for (int i = 0; i < step; ++i)
        if (n + i >= total || !flags[size_t(n) + size_t(i)]) stretchValid = false;
      const int o = PointOffset(plot, c, work.Value(c, n), scale, flags[size_t(n)] != 0, stretchValid);
      work.Offsets[size_t(slot) * kMaxCurves + size_t(c)] = int16_t(std::clamp(o, -1, 32767));
      ++slot;
    }
    base += points;
  }
}

}  // namespace

void ComputeCurves(Model& model) {
  PlotState& plot = model.Plot();
  CurveWork& work = model.Curves();
  std::fill(work.Offsets.begin(), work.Offsets.end(), int16_t(0));
  std::fill(work.Labels.begin(), work.Labels.end(), int16_t(0));
  plot.RadMoved = 0;
  ComputeRadiographData(model);
  const int curves = std::clamp(plot.DataSetCount, 0, kMaxCurves);
  if (curves < 1) {
    plot.NeedLayout = 0;
    return;
  }
  const std::vector<int> sections = CurveSections(model);
  int total = 0;
  for (int s : sections) total += PointsOf(model.Section(s));
  std::vector<uint8_t> flags(size_t(total) + 1, 0);
  // Long Display-All plots are thinned to about a thousand drawn points per curve.
  plot.PointStep = (plot.ShowAllSections && total > 1000) ? total / 1000 + 1 : 0;

  for (int c = 0; c < curves; ++c) {
    ComputeValues(model, c, sections, flags);
    SmoothAndRange(model, c, sections, flags);
    if (plot.ColumnOffset[c] == kNoRange) {
      // No point counted: the curve has no points to draw.
      plot.ColumnOffset[c] = 0;
      for (size_t i = size_t(c); i < work.Offsets.size(); i += kMaxCurves) work.Offsets[i] = -1;
      continue;
    }
    ComputeOffsets(model, c, sections, flags, total);
  }
  plot.NeedLayout = 0;
}

void DrawCoverageBar(PaintContext& ctx, int x, int top, int height) {
  Model& model = ctx.M;
  const PlotState& plot = model.Plot();
  if (!(plot.DepthSpan > 0)) return;
  const double scale = double(height) / double(plot.DepthSpan);
  const bool all = plot.ShowAllSections != 0;
  const bool expanded = plot.Expanded != 0;
  const double shift = expanded ? double(plot.ExpandTop) : 0.0;
  const int length = ctx.DpiX / 16;
  const QColor green(0, 255, 0);

  // Rows outside these bounds are off the device.  A point whose row and whose
  // predecessor's row lie beyond the same bound marks nothing that can be seen, so it is
  // passed over on its depth alone (rows grow with depth): a whole core at a high zoom
  // costs what its visible stretch costs.  A strip drawn after such points starts from an
  // older row than the point before, which only adds rows beyond the bound.  NaN depths
  // are never passed over.
  const int64_t lo = ctx.VisibleTop() - 2, hi = ctx.VisibleBottom() + 2;
  int64_t sectionTop = top;
  for (int s : CurveSections(model)) {
    const CoreSection& section = model.Section(s);
    const int points = PointsOf(section);
    int first = 0, last = points;
    if (!all) PointWindow(plot, points, first, last);
    const double above = double(lo - sectionTop) / scale + shift, below = double(hi - sectionTop) / scale + shift;
    int64_t previous = expanded ? RowAt(sectionTop, shift, scale) : sectionTop;
    int side = previous < lo ? -1 : previous > hi ? 1 : 0;
    for (int k = first; k < last; ++k) {
      const double depth = section.Depth[k];
      const int here = depth < above ? -1 : depth > below ? 1 : 0;
      if (here != 0 && here == side) continue;
      side = here;
      const int64_t y = RowAt(sectionTop, depth - shift, scale);
      // Every row down to the previous point is marked, so a coarse scan leaves no
      // holes in the bar; a point whose mask is 0 or less leaves its rows unmarked.
      if (section.Data[0][k] > 0 && y > previous) ctx.FillRect(x, previous + 1, x + length, y + 1, green);
      previous = y;
    }
    // The next section starts at this one's last point, seen or not.
    if (last > first) previous = RowAt(sectionTop, double(section.Depth[last - 1]) - shift, scale);
    sectionTop = previous;
  }
}

void DrawPoint(PaintContext& ctx, int x, int64_t y, int prevX, int64_t prevY, int curve) {
  if (ctx.M.App.DrawLines && prevX >= 0)
    ctx.Line(prevX, prevY, x, y);
  else if (curve >= 0 && curve < kMaxCurves)
    ctx.Pixel(x, y, CurveColourOf(ctx.M, curve));
}

QString CurveTitle(const Model& model, int c) {
  if (c < 0 || c >= kMaxCurves) return {};
  const PlotState& plot = model.Plot();
  const AppState& app = model.App;
  // The mask is no curve: its column has no title either.
  if (app.Settings.DataSetOfPlot[c] == 1) return {};
  const std::string name = SetName(plot, app.Settings.DataSetOfPlot[c] - 1);
  const int filter = app.FilterType[c];
  std::string title;
  if (const size_t at = name.find("surface"); at != std::string::npos)
    title = name.substr(at);
  else
    title = (filter < 0 ? "ln(" : "") + name;
  if (app.RatioOn[c]) {
    title += "/";
    if (app.NormaliseBy[c] == 1)
      title += "Inc";
    else if (app.NormaliseBy[c] == 2)
      title += "Coh";
    else
      title += SetName(plot, app.RatioSetOfPlot[c] - 1);
    if (filter < 0) title += ")";
  } else if (filter < 1) {
    const std::string lower = Lower(name);
    if (LongName(lower) && !Contains(lower, "inc") && !Contains(lower, "coh")) {
      if (app.CountsPerSecond && lower == "mean") title += " cps";
    } else {
      title += app.CountsPerSecond ? " cps" : " int.";
    }
  } else {
    title += Format(": %d", plot.CurveLabelValue[c]);
  }
  return QString::fromLatin1(title.c_str());
}

namespace {

QString LegendText(const AppState& app, int c) {
  const int filter = app.FilterType[c];
  if (filter >= 3) return QString::fromLatin1(Format("Sinusodial Filter - %d", app.SmoothPoints[c]).c_str());
  if (filter >= 1)
    return QString::fromLatin1(Format("Diff type %d Filter - %d", filter, app.SmoothPoints[c]).c_str());
  return QString::fromLatin1(Format("%d pt smooth", app.SmoothPoints[c]).c_str());
}

constexpr int kCentred = Qt::AlignHCenter | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip;

int FontSizeOr(int points, int fallback) { return points > 0 ? points : fallback; }

// Value labels beside the curve.  Nothing fills the label buffer in this edition, so
// this only draws when a future channel supplies labels.
void DrawValueLabels(PaintContext& ctx, int c, int x, int top, double scale) {
  Model& model = ctx.M;
  const PlotState& plot = model.Plot();
  const CurveWork& work = model.Curves();
  if (plot.ShowAllSections || work.Labels.empty() || work.Labels[size_t(c)] == 0) return;
  const CoreSection& section = model.CurSection();
  int first = 0, last = 0;
  PointWindow(plot, PointsOf(section), first, last);
  const double shift = plot.Expanded ? double(plot.ExpandTop) : 0.0;
  ctx.Painter.setFont(ctx.MakeFont("Arial", 8, 700));
  int64_t previous = INT64_MIN / 2;
  for (int k = first + 1; k < last; ++k) {
    const size_t at = size_t(k) * kMaxCurves + size_t(c);
    if (at >= work.Labels.size()) break;
    const int label = work.Labels[at];
    if (label == 0 || label % 5 != 0) continue;
    const int64_t y = RowAt(top, double(section.Depth[k]) - shift, scale);
    if (y <= previous + 15) continue;
    ctx.Line(x, y, x - plot.CharWidth, y);
    ctx.Text(x - 2 * plot.CharWidth, y - plot.CharHeight, x - 2, y,
             Qt::AlignRight | Qt::AlignBottom | Qt::TextSingleLine | Qt::TextDontClip,
             QString::number(label));
    previous = y;
  }
}

}  // namespace

void DrawCurve(PaintContext& ctx, int curve, int x, int top, int height) {
  if (curve < 0 || curve >= kMaxCurves) return;
  Model& model = ctx.M;
  PlotState& plot = model.Plot();
  AppState& app = model.App;
  if (!(plot.DepthSpan > 0)) return;
  const CurveWork& work = model.Curves();
  const double scale = double(height) / double(plot.DepthSpan);
  const bool all = plot.ShowAllSections != 0;
  const double shift = plot.Expanded ? double(plot.ExpandTop) : 0.0;
  const int step = plot.PointStep > 0 ? plot.PointStep : 0;
  const DisplaySettings& settings = model.Settings();

  ctx.Painter.save();
  ctx.Painter.setPen(CurvePen(CurveColourOf(model, curve)));

  // In Display-All mode each section in turn, stacked; in single mode the current
  // section's window is drawn once for every loaded section, each pass below the last
  // (kept as it always was; only the first pass lies on the plot).
  std::vector<int> passes;
  if (all) {
    passes = CurveSections(model);
  } else {
    const int cur = model.CurSectionSlot();
    const int end = std::clamp(plot.SectionCount, cur + 1, kMaxSections);
    for (int s = cur; s < end; ++s) passes.push_back(s);
  }
  // Single points (no joining lines) go through one batch: the per-pixel checks are
  // decided once, which keeps a whole core at 100% as quick to draw as a zoomed view.
  std::optional<PaintContext::PixelBatch> pixels;
  if (!app.DrawLines) pixels.emplace(ctx, CurveColourOf(model, curve));
  int64_t passTop = top;
  int slotBase = 0;
  for (int s : passes) {
    const CoreSection& section = model.Section(all ? s : model.CurSectionSlot());
    const int points = PointsOf(section);
    int first = 0, last = points;
    if (!all) PointWindow(plot, points, first, last);
    int prevX = -1;
    int64_t prevY = 0;
    int64_t y = passTop;
    for (int k = first; k < last; ++k) {
      if (step > 0 && k % step != 0) continue;
      const int slot = slotBase + (step > 0 ? k / step : k);
      y = RowAt(passTop, double(section.Depth[k]) - shift, scale);
      const size_t at = size_t(slot) * kMaxCurves + size_t(curve);
      const int offset = at < work.Offsets.size() ? work.Offsets[at] : -1;
      if (offset >= 0) {
        if (pixels)
          pixels->Set(x + offset, y);
        else
          DrawPoint(ctx, x + offset, y, prevX, prevY, curve);
        prevX = x + offset;
        prevY = y;
      } else {
        prevX = -1;  // a deleted point breaks the line
      }
    }
    app.CurveRect[s][curve] = {x, int32_t(std::clamp<int64_t>(passTop, INT32_MIN, INT32_MAX)),
                               x + plot.ColumnWidth - 1, int32_t(std::clamp<int64_t>(y, INT32_MIN, INT32_MAX))};
    passTop = y;
    if (all) slotBase += SlotsOf(points, step);
  }

  // The value scale follows the drawn curve, which spans 96% of the column for the
  // range from ColumnOffset to ColumnYMax.
  const double offset = plot.ColumnOffset[curve];
  const double range = plot.ColumnYMax[curve] - offset;
  if (plot.ColumnYMax[curve] > 0 && range > 0 && plot.ColumnWidth > 0)
    DrawValueScale(ctx, offset, range, plot.ColumnWidth * 24.0 / 25.0 / range, x, top);

  ctx.Painter.setPen(FromColorRef(settings.Colours[kTextColour]));
  if (plot.ShowSmoothPoints || app.FilterType[curve] >= 1) {
    const int64_t bottom = int64_t(top) + height + plot.CharHeight / 2;
    ctx.Painter.setFont(ctx.LabelFont);
    ctx.Text(x, bottom - plot.CharHeight, x + plot.ColumnWidth, bottom, kCentred, LegendText(app, curve));
  }

  // The title sits in the header row, above the value scale's labels.
  ctx.Painter.setFont(ctx.MakeFont("Arial", FontSizeOr(settings.ElementFontSize, 9), 700));
  const int64_t titleBottom = int64_t(top) - plot.CharHeight - 2;
  ctx.Text(x, titleBottom - plot.CharHeight, x + plot.ColumnWidth, titleBottom, kCentred, CurveTitle(model, curve));

  ctx.Painter.setPen(CurvePen(FromColorRef(settings.Colours[kAxisColour])));
  DrawValueLabels(ctx, curve, x, top, scale);
  ctx.Painter.restore();
}

void DrawValueScale(PaintContext& ctx, double leftValue, double span, double pixelScale, int x, int y) {
  Model& model = ctx.M;
  const PlotState& plot = model.Plot();
  const int width = plot.ColumnWidth;
  if (!(pixelScale > 0) || !std::isfinite(pixelScale) || !std::isfinite(leftValue) || width <= 0) return;
  const DisplaySettings& settings = model.Settings();

  const QPaintDevice* device = ctx.Painter.device();
  // Ticks at least a 400th of the whole device apart: the screen's width for a window
  // (whatever the size of the buffer it is painted through), the page's for a printer.
  const int horzRes = ctx.HorzRes > 0 ? ctx.HorzRes : (device ? device->width() : 0);
  const int minSpacing = std::max(1, horzRes / 400);
  const double q = minSpacing / pixelScale;
  if (!(q > 0) || !std::isfinite(q)) return;
  int e = int(std::floor(std::log10(q)));
  if (q < 1) e -= 1;
  const double base = std::pow(10.0, e);

  // Steps 2, 5, 10, 20, 50, ... times the base; labels every 5th, 2nd and 10th tick.
  static const double kFactors[3] = {2.0, 5.0, 10.0};
  static const int kLabelEvery[3] = {5, 2, 10};
  double step = 0;
  int labelEvery = 1;
  double decade = base;
  for (int i = 0; i < 90 && step == 0; ++i) {
    const double candidate = decade * kFactors[i % 3];
    if (candidate * pixelScale >= minSpacing) {
      step = candidate;
      labelEvery = kLabelEvery[i % 3];
    }
    if (i % 3 == 2) decade *= 10;
  }
  // Beyond 2^50 steps from zero the tick index no longer advances in double precision.
  if (!(step > 0) || !std::isfinite(step) || std::fabs(leftValue / step) > 1e15) return;

  ctx.Painter.save();
  ctx.Painter.setPen(CurvePen(FromColorRef(settings.Colours[kAxisColour])));
  const QFont font = ctx.MakeFont("Arial", FontSizeOr(settings.HScaleFontSize, 6), 700);
  ctx.Painter.setFont(font);
  const QFontMetrics metrics(font, const_cast<QPaintDevice*>(device));
  const int textHeight = metrics.height();
  const int minor = ctx.DpiX / 32;
  const int major = minor * 3 / 2;
  const QColor textColour = FromColorRef(settings.Colours[kTextColour]);
  const QColor axisColour = FromColorRef(settings.Colours[kAxisColour]);

  auto label = [&](double value, int left, int right) {
    ctx.Painter.setPen(textColour);
    ctx.Text(left, int64_t(y) - major - textHeight, right, int64_t(y) - major, kCentred,
             QString::fromLatin1(FormatScaleValue(value, span).c_str()));
    ctx.Painter.setPen(CurvePen(axisColour));
  };

  int previousRight = INT32_MIN;
  const int right = x + width;
  for (double index = std::ceil(leftValue / step - 1e-9);; index += 1) {
    const double value = index * step;
    const double at = std::floor((value - leftValue) * pixelScale + 0.5);
    if (!(at <= width)) break;
    const int px = x + int(std::max(at, 0.0));
    const bool labelled = std::fmod(std::fabs(index), double(labelEvery)) == 0;
    if (labelled) {
      const QString text = QString::fromLatin1(FormatScaleValue(value, span).c_str());
      const int w = metrics.horizontalAdvance(text);
      const int left = px - w / 2;
      if (left > previousRight) {
        label(value, left, left + w);
        previousRight = left + w;
      }
    }
    // The tick covers `length` rows just above y.
    ctx.FillRect(px, int64_t(y) - (labelled ? major : minor), px + 1, y, axisColour);
  }
  // The value at the column's right edge, ending at the edge, when it has room.
  const double rightValue = leftValue + width / pixelScale;
  const QString text = QString::fromLatin1(FormatScaleValue(rightValue, span).c_str());
  const int w = metrics.horizontalAdvance(text);
  if (right - w > previousRight) label(rightValue, right - w, right);
  ctx.Painter.restore();
}

}  // namespace sedra
