#pragma once
// The plot under the mouse.  The plot has no selection of its own: every press, drag and
// double click on it is read through one rubber band, PlotState.TrackRect, and the mode
// flags of the open tool, so which tool is open decides what a gesture means.
//
// The four handlers are functions of the model, the layout the plot was last painted
// with and the event.  They change the model and return what else has to happen (a
// cursor, depths for the open tool's edits, the part of the window to repaint, a dialog
// to open); the plot view carries that out.  Hit tests use the painted layout, so a
// click lands on what the user sees.

#include <QRect>
#include <Qt>
#include <cstdint>
#include <string>
#include <vector>

#include "model/model.h"
#include "plot/plot_layout.h"

namespace sedra {

// One mouse message, in the plot view's client pixels.
struct MouseInput {
  int X = 0, Y = 0;
  int ScrollPos = 0;      // the scroll bar's position: above 100% the document scrolls by it
  bool LeftDown = false;  // moves only: the left button is held
};

enum class MouseOpens { Nothing, ValuePopup, YScale, RadiographContrast, OpticalContrast };

struct ControlText {
  int Id;
  std::string Text;
};

struct MouseOutcome {
  bool SetsCursor = false;
  Qt::CursorShape Cursor = Qt::ArrowCursor;
  std::vector<ControlText> Writes;  // into the open tool's edits (1476, 1478)
  bool TrackChanged = false;        // the open tool is told the band moved
  std::vector<QRect> Damage;        // client rectangles to repaint
  bool RepaintAll = false;
  MouseOpens Opens = MouseOpens::Nothing;
  int OpenX = 0, OpenY = 0;  // the value popup's pointer: x and document y
  bool ClosePopup = false;
  // The radiograph window is dragging its own band: the release belongs to it.
  bool ForwardRelease = false;
};

MouseOutcome OnLButtonDown(Model& model, const PlotLayout& layout, const MouseInput& in);
MouseOutcome OnLButtonDblClk(Model& model, const PlotLayout& layout, const MouseInput& in);
MouseOutcome OnMouseMove(Model& model, const PlotLayout& layout, const MouseInput& in);
MouseOutcome OnLButtonUp(Model& model, const PlotLayout& layout, const MouseInput& in);

// floor(v + 0.5), kept within +-1e9 so that no later sum overflows; NaN gives 0.
int32_t Nearest(double v);
// The document row of a client row: above 100% the plot scrolls under the window.
int DocumentY(const Model& model, int clientY, int scrollPos);
// Whole millimetres of core at document row y, as the dialogs show depths: from the
// section's start label, plus the expanded display's offset when `withOffset`.
int DepthAtRow(const Model& model, const PlotLayout& layout, int y, bool withOffset);

// Layout units of the titles, the header block and the text fields, converted to the
// nearest pixel and back (the painter floors; the mouse rounds).
int PixelXOfUnits(const LayoutFrame& f, int u);
int PixelYOfUnits(const LayoutFrame& f, int u);
int UnitsOfPixelX(const LayoutFrame& f, int x);
int UnitsOfPixelY(const LayoutFrame& f, int y);
IntRect PixelRectOfUnits(const LayoutFrame& f, const IntRect& units);

// The data column k with ColumnLeft + k w < x < ColumnLeft + (k + 1) w, or `count` when
// x is on no column (a boundary counts as none).
int ColumnAt(int columnLeft, int columnWidth, int count, int x);

// The client rectangles that repainting a focus rectangle (document pixels) needs: its
// four one-pixel edges, so that a drag redraws only the outline and not the inside.
void AddOutline(std::vector<QRect>& damage, const IntRect& r, int scroll);

}  // namespace sedra
