#include "interact/mouse_engine.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "model/numbers.h"

namespace sedra {

namespace {

constexpr int kProximity = 20;  // a band reacts to the pointer this far outside it
constexpr int kEdge = 5;        // and takes it as on an edge this far inside it
constexpr int kFar = 1000000000;

int ScrollOf(const Model& model, const MouseInput& in) { return model.Plot().ZoomFactor > 1 ? in.ScrollPos : 0; }

bool StrictlyInside(const IntRect& r, int x, int y) { return x > r.Left && x < r.Right && y > r.Top && y < r.Bottom; }

// A sum that stays in range however long a drag runs: a title dragged while scrolled
// jumps by the scroll position at every move.
int32_t Shifted(int32_t v, int64_t by) { return int32_t(std::clamp<int64_t>(int64_t(v) + by, -kFar, kFar)); }

void Move(IntRect& r, int dx, int dy) {
  r.Left = Shifted(r.Left, dx);
  r.Right = Shifted(r.Right, dx);
  r.Top = Shifted(r.Top, dy);
  r.Bottom = Shifted(r.Bottom, dy);
}

void SetCursor(MouseOutcome& out, Qt::CursorShape shape) {
  out.SetsCursor = true;
  out.Cursor = shape;
}

void WriteDepth(MouseOutcome& out, int id, int depth) {
  out.Writes.push_back({id, Format("%d", depth)});
  out.TrackChanged = true;
}

// Places TrackRect and asks for the old and the new outline to be repainted.
void Place(PlotState& plot, MouseOutcome& out, const IntRect& r, int scroll) {
  AddOutline(out.Damage, plot.TrackRect, scroll);
  plot.TrackRect = r;
  AddOutline(out.Damage, r, scroll);
}

size_t TextLength(const char* text, size_t size) { return strnlen(text, size); }

// ---- Button-down --------------------------------------------------------------------

// A tool armed the tracking: the first click places its band; a band already placed is
// changed only by dragging its edges.
void PlaceArmedBand(Model& model, const PlotLayout& l, int x, int y, MouseOutcome& out, int scroll) {
  PlotState& plot = model.Plot();
  if (plot.TrackRect.Bottom != 0) return;
  if (plot.VLineMode) {
    Place(plot, out, {x - 1, l.TopMargin, x + 1, l.PageHeight - l.BottomMargin}, scroll);
    return;
  }
  Place(plot, out, {l.LeftMargin, y - 1, l.PageWidth - l.RightMargin, y + 1}, scroll);
  if (plot.HLineMode) WriteDepth(out, 1478, DepthAtRow(model, l, y, true));
  if (plot.HRegionMode) {
    // The bottom edit is written without the expanded offset on this first click only;
    // later drags write both with it.  Users know to drag once after placing.
    WriteDepth(out, 1476, DepthAtRow(model, l, y - 1, true));
    WriteDepth(out, 1478, DepthAtRow(model, l, y + 1, false));
  }
}

// A band that follows the click: x, a text's width and the plot font's height.
IntRect TextBandAt(const PlotLayout& l, int x, int y, int width) { return {x, y - l.CharHeight, x + width, y}; }

// The titles and text fields, in the order the user has always seen them win.
bool HitTexts(Model& model, const PlotLayout& l, int x, int y, IntRect& band, uint32_t*& drag) {
  PlotState& plot = model.Plot();
  const LayoutFrame f = FrameOf(l);
  const IntRect title = PixelRectOfUnits(f, plot.MainTitleRect);
  const CoreSection& section = model.CurSection();
  const IntRect header = PixelRectOfUnits(f, section.HeaderRect);
  if (plot.MainTitleMode) {
    band = TextBandAt(l, x, y, title.Right - title.Left);
    drag = &plot.TitleDrag;
  } else if (StrictlyInside(title, x, y)) {
    band = title;
    drag = &plot.TitleDrag;
  } else if (plot.SectionTitleMode) {
    band = TextBandAt(l, x, y, l.CharWidth * int(TextLength(section.SectionName, sizeof section.SectionName)));
    drag = &plot.HeaderDrag;
  } else if (!plot.ShowAllSections && StrictlyInside(header, x, y)) {
    band = header;
    drag = &plot.HeaderDrag;
  } else if (plot.TextFieldMode) {
    const TextField& tf = plot.TextFields[std::clamp(plot.CurTextField, 0, kTextFields - 1)];
    band = TextBandAt(l, x, y, l.CharWidth * int(TextLength(tf.Text, sizeof tf.Text)));
    drag = &plot.TextDrag;
  } else {
    for (int i = 0; i < kTextFields && !drag; ++i) {
      const IntRect r = PixelRectOfUnits(f, plot.TextFields[i].Rect);
      if (!StrictlyInside(r, x, y)) continue;
      plot.CurTextField = i;
      band = r;
      drag = &plot.TextDrag;
    }
  }
  return drag != nullptr;
}

// Nothing armed: the click picks up a title, header block, text field or the
// radiograph, or else shows what lies under it.
void HitObjects(Model& model, const PlotLayout& l, int x, int y, MouseOutcome& out, int scroll) {
  PlotState& plot = model.Plot();
  plot.LastClickY = y;
  IntRect band{};
  uint32_t* drag = nullptr;
  if (!HitTexts(model, l, x, y, band, drag)) {
    const IntRect rad = model.CurRadiograph().DestRect;
    if (!plot.ShowAllSections && l.RadiographShown && y > l.TopMargin && x > rad.Left && x < rad.Right) {
      band = rad;
      drag = &plot.RadMoveMode;
      plot.RadDragPreview = 1;
    }
  }
  if (drag) {
    *drag = 1;
    plot.Tracking = 1;
    Place(plot, out, band, scroll);
    return;
  }
  if (model.CurSection().PointCount != 0 && y > l.TopMargin && y < l.PageHeight - l.BottomMargin) {
    plot.ValuePopupOpen = 1;
    out.Opens = MouseOpens::ValuePopup;
    out.OpenX = x;
    out.OpenY = y;
  }
}

// ---- Moves --------------------------------------------------------------------------

// Vertical lines, vertical regions and the radiograph move sideways.
Qt::CursorShape MoveSideways(PlotState& plot, int x, bool down) {
  IntRect& r = plot.TrackRect;
  if (!(x > r.Left - kProximity && x < r.Right + kProximity)) return Qt::ArrowCursor;
  if (!down) return Qt::SizeHorCursor;
  if (plot.VRegionMode) {
    if (x > r.Right - kEdge)
      r.Right = x;
    else if (x < r.Left + kEdge)
      r.Left = x;
    return Qt::SizeHorCursor;
  }
  const int half = plot.RadMoveMode ? (r.Right - r.Left) / 2 : 1;
  r.Left = x - half;
  r.Right = x + half;
  return Qt::SizeHorCursor;
}

// The optical band at 100%: the bottom third resizes it, the top third moves it.
Qt::CursorShape MoveOpticalBand(IntRect& r, int y, int dy, bool down) {
  const int third = (r.Bottom - r.Top) / 3;
  if (y > r.Bottom - third) {
    if (down) r.Bottom = Shifted(r.Bottom, dy);
    return Qt::SizeVerCursor;
  }
  if (y < r.Top + third) {
    if (down) Move(r, 0, dy);
    return Qt::SizeVerCursor;
  }
  return Qt::ArrowCursor;
}

// Any other band: its bottom, top or right edge follows the pointer.
Qt::CursorShape MoveBandEdges(PlotState& plot, int x, int y, bool down) {
  IntRect& r = plot.TrackRect;
  if (y > r.Bottom - kEdge) {
    if (down) r.Bottom = y;
    return Qt::SizeVerCursor;
  }
  if (y < r.Top + kEdge) {
    if (down) {
      // The radiograph's size tool moves the whole band by its top edge.
      if (plot.ImageSizeMode) r.Bottom = Shifted(r.Bottom, int64_t(y) - r.Top);
      r.Top = y;
    }
    return Qt::SizeVerCursor;
  }
  if (x > r.Right - kEdge) {
    if (down && plot.ImageSizeMode) r.Right = x;
    return Qt::SizeHorCursor;
  }
  return Qt::ArrowCursor;
}

// A band near the pointer: its edges follow and the depths go to the open tool.
Qt::CursorShape MoveBand(Model& model, const PlotLayout& l, int x, int y, int dy, bool down, MouseOutcome& out) {
  PlotState& plot = model.Plot();
  IntRect& r = plot.TrackRect;
  const IntRect near{r.Left - kProximity, r.Top - kProximity, r.Right + kProximity, r.Bottom + kProximity};
  if (!StrictlyInside(near, x, y)) return Qt::ArrowCursor;
  if (plot.HLineMode) {
    if (down) {
      r.Top = y - 1;
      r.Bottom = y + 1;
      WriteDepth(out, 1478, DepthAtRow(model, l, r.Top, true));
    }
    return Qt::SizeVerCursor;
  }
  // The optical image's thirds work at 100% only; zoomed or expanded its band is
  // dragged like any other.
  const bool opticalThirds = plot.OpticalPosMode && plot.ZoomFactor == 1 && !plot.Expanded;
  const Qt::CursorShape cursor = opticalThirds ? MoveOpticalBand(r, y, dy, down) : MoveBandEdges(plot, x, y, down);
  if (down && (plot.HRegionMode || opticalThirds)) {
    WriteDepth(out, 1476, DepthAtRow(model, l, r.Top, true));
    WriteDepth(out, 1478, DepthAtRow(model, l, r.Bottom, true));
  }
  return cursor;
}

// ---- Button-up ----------------------------------------------------------------------

// The radiograph's size tool: the band's height against the optical image's gives the
// radiograph's height, its top the offset (in 100% pixels), its width the column's.
void CommitRadiographSize(Model& model, const PlotLayout& l) {
  PlotState& plot = model.Plot();
  RadiographDesc& rad = model.CurRadiograph();
  const IntRect& r = plot.TrackRect;
  const IntRect& optical = model.CurOptical().DrawnRect;
  // Without an optical image the band the radiograph fills is the plot's height.
  const double reference = optical.Bottom > optical.Top ? double(optical.Bottom - optical.Top) : double(l.PlotHeight);
  if (reference > 0) rad.HeightScale = float(double(r.Bottom - r.Top) / reference);
  rad.TopOffset = (r.Top - l.TopMargin) / std::max(1, plot.ZoomFactor);
  rad.ViewRect.Right = r.Right;
  plot.RadiographWidth = r.Right - r.Left;
}

void CommitTextDrag(Model& model, const PlotLayout& l) {
  PlotState& plot = model.Plot();
  const LayoutFrame f = FrameOf(l);
  const int left = UnitsOfPixelX(f, plot.TrackRect.Left);
  const int top = UnitsOfPixelY(f, plot.TrackRect.Top);
  if (plot.TitleDrag) {
    plot.MainTitleRect.Left = left;
    plot.MainTitleRect.Right = left + 10;
    plot.MainTitleRect.Top = top;
    plot.TitleDrag = 0;
  } else if (plot.HeaderDrag) {
    IntRect& header = model.CurSection().HeaderRect;
    header.Left = left;
    // The right edge comes from the main title's left on purpose: drawing the block
    // measures its real extent again.
    header.Right = Shifted(plot.MainTitleRect.Left, 1);
    header.Top = top;
    plot.HeaderDrag = 0;
  } else {
    TextField& tf = plot.TextFields[std::clamp(plot.CurTextField, 0, kTextFields - 1)];
    tf.Rect.Left = left;
    tf.Rect.Top = top;
    plot.TextDrag = 0;
  }
  plot.TrackRect = {};
  plot.Tracking = 0;
}

}  // namespace

int32_t Nearest(double v) {
  if (std::isnan(v)) return 0;
  return int32_t(std::clamp(std::floor(v + 0.5), double(-kFar), double(kFar)));
}

int DocumentY(const Model& model, int clientY, int scrollPos) {
  return model.Plot().ZoomFactor > 1 ? clientY + scrollPos : clientY;
}

int DepthAtRow(const Model& model, const PlotLayout& l, int y, bool withOffset) {
  const PlotState& plot = model.Plot();
  const double mm = l.PlotHeight != 0 ? double(y - l.TopMargin) * double(l.DepthSpan) / double(l.PlotHeight) : 0.0;
  int64_t depth = int64_t(Nearest(mm)) + model.CurSection().StartLabelDepth;
  if (withOffset && plot.Expanded) depth += Nearest(plot.ExpandTop);
  return int(std::clamp<int64_t>(depth, -kFar, kFar));
}

int PixelXOfUnits(const LayoutFrame& f, int u) {
  if (f.LayoutSpan == 0 || std::isnan(f.LayoutSpan)) return u;
  const int x0 = f.PageLeft + f.LeftMargin;
  return Shifted(Nearest(double(f.ColumnLeft - x0) * u / double(f.LayoutSpan)), x0);
}

int PixelYOfUnits(const LayoutFrame& f, int u) {
  if (f.LayoutSpan == 0 || std::isnan(f.LayoutSpan)) return u;
  return Shifted(Nearest(double(f.PlotHeight) * u / double(f.LayoutSpan)), int64_t(f.TopMargin) + f.PageTop);
}

int UnitsOfPixelX(const LayoutFrame& f, int x) {
  const int x0 = f.PageLeft + f.LeftMargin;
  if (f.ColumnLeft == x0) return 0;
  return Nearest(double(int64_t(x) - x0) * double(f.LayoutSpan) / double(f.ColumnLeft - x0));
}

int UnitsOfPixelY(const LayoutFrame& f, int y) {
  if (f.PlotHeight == 0) return 0;
  return Nearest(double(int64_t(y) - f.TopMargin) * double(f.LayoutSpan) / double(f.PlotHeight));
}

IntRect PixelRectOfUnits(const LayoutFrame& f, const IntRect& u) {
  return {PixelXOfUnits(f, u.Left), PixelYOfUnits(f, u.Top), PixelXOfUnits(f, u.Right), PixelYOfUnits(f, u.Bottom)};
}

int ColumnAt(int columnLeft, int columnWidth, int count, int x) {
  for (int k = 0; k < count; ++k) {
    const int64_t left = int64_t(columnLeft) + int64_t(k) * columnWidth;
    if (x > left && x < left + columnWidth) return k;
  }
  return count;
}

void AddOutline(std::vector<QRect>& damage, const IntRect& r, int scroll) {
  if (r.Right < 1 || r.Right <= r.Left || r.Bottom <= r.Top) return;
  // Edges far outside the window are cut to a band around it; the view clips the rest.
  const int top = int(std::clamp<int64_t>(int64_t(r.Top) - scroll, -kProximity, kFar / 2));
  const int bottom = int(std::clamp<int64_t>(int64_t(r.Bottom) - scroll, -kProximity, kFar / 2));
  if (bottom <= top) return;
  const int w = r.Right - r.Left, h = bottom - top;
  damage.emplace_back(r.Left, top, w, 1);
  damage.emplace_back(r.Left, bottom - 1, w, 1);
  damage.emplace_back(r.Left, top, 1, h);
  damage.emplace_back(r.Right - 1, top, 1, h);
}

MouseOutcome OnLButtonDown(Model& model, const PlotLayout& l, const MouseInput& in) {
  MouseOutcome out;
  PlotState& plot = model.Plot();
  const int y = DocumentY(model, in.Y, in.ScrollPos);
  plot.LastMouseX = in.X;
  plot.LastMouseY = y;
  if (plot.Tracking)
    PlaceArmedBand(model, l, in.X, y, out, ScrollOf(model, in));
  else
    HitObjects(model, l, in.X, y, out, ScrollOf(model, in));
  return out;
}

MouseOutcome OnLButtonDblClk(Model& model, const PlotLayout& l, const MouseInput& in) {
  MouseOutcome out;
  PlotState& plot = model.Plot();
  // The client row, not the document row: the header rows stay at the window's top.
  const int x = in.X, y = in.Y;
  if (y > l.TopMargin - l.CharHeight && y < l.TopMargin) {
    plot.CurColumn = ColumnAt(l.ColumnLeft, l.ColumnWidth, plot.ColumnCount, x);
    if (plot.CurColumn < plot.ColumnCount) out.Opens = MouseOpens::YScale;
    return out;
  }
  if (plot.ShowAllSections || y <= l.TopMargin) return out;
  const IntRect& rad = model.CurRadiograph().DestRect;
  const IntRect& optical = model.CurOptical().DrawnRect;
  if (l.RadiographShown && x > rad.Left && x < rad.Right)
    out.Opens = MouseOpens::RadiographContrast;
  else if (l.OpticalShown && x > optical.Left && x < optical.Right)
    out.Opens = MouseOpens::OpticalContrast;
  return out;
}

MouseOutcome OnMouseMove(Model& model, const PlotLayout& l, const MouseInput& in) {
  MouseOutcome out;
  PlotState& plot = model.Plot();
  if (!plot.Tracking) {
    SetCursor(out, Qt::ArrowCursor);
    return out;
  }
  const int scroll = ScrollOf(model, in);
  const int x = in.X, y = DocumentY(model, in.Y, in.ScrollPos);
  const int dx = x - plot.LastMouseX;
  // The vertical step is the client row against the stored document row, so a dragged
  // title jumps by the scroll position at every move while the plot is scrolled.  Kept:
  // users scroll back to the top before they move titles.
  const int dy = in.Y - plot.LastMouseY;
  const IntRect before = plot.TrackRect;
  Qt::CursorShape cursor = Qt::ArrowCursor;
  if (plot.VLineMode || plot.RadMoveMode)
    cursor = MoveSideways(plot, x, in.LeftDown);
  else if (plot.TitleDrag || plot.HeaderDrag || plot.TextDrag)
    Move(plot.TrackRect, dx, dy);
  else
    cursor = MoveBand(model, l, x, y, dy, in.LeftDown, out);
  plot.LastMouseX = x;
  plot.LastMouseY = y;
  if (!in.LeftDown) {
    SetCursor(out, cursor);
    return out;
  }
  const IntRect& after = plot.TrackRect;
  if (std::memcmp(&before, &after, sizeof before) != 0) {
    AddOutline(out.Damage, before, scroll);
    AddOutline(out.Damage, after, scroll);
  }
  return out;
}

MouseOutcome OnLButtonUp(Model& model, const PlotLayout& l, const MouseInput&) {
  MouseOutcome out;
  PlotState& plot = model.Plot();
  if (plot.RadImageDragging) {
    out.ForwardRelease = true;
    return out;
  }
  if (plot.ImageSizeMode) {
    // The tracking stays armed: the size tool ends it.
    CommitRadiographSize(model, l);
    out.RepaintAll = true;
  } else if (plot.RadMoveMode) {
    plot.RadPlacement = plot.TrackRect;
    plot.RadMoved = 1;
    plot.TrackRect = {};
    plot.Tracking = 0;
    plot.RadMoveMode = 0;
    out.RepaintAll = true;
  } else if (plot.TitleDrag || plot.HeaderDrag || plot.TextDrag) {
    CommitTextDrag(model, l);
    out.RepaintAll = true;
  } else if (plot.ValuePopupOpen) {
    plot.ValuePopupOpen = 0;
    out.ClosePopup = true;
  }
  return out;
}

}  // namespace sedra
