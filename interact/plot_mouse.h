#pragma once
// PlotMouse: what the plot view hands its mouse events to.  It runs the handlers of
// interact/mouse_engine.h on the layout the view last painted and carries out what they
// decide: the cursor, the depths written into the open tool, the repaint, and the
// dialogs a click opens (the value read-out, the column's Y scale, the image contrast
// tools).

#include <QObject>
#include <QPoint>
#include <QPointer>

namespace sedra {

class PlotHost;
class ValuePopup;
class YScaleDialog;
struct MouseOutcome;
struct PlotLayout;

class PlotMouse : public QObject {
  Q_OBJECT
 public:
  // `view` is the widget the plot is painted on (client coordinates are its own).
  PlotMouse(PlotHost& host, QWidget* view);
  ~PlotMouse() override;

  void Press(const PlotLayout& layout, QPoint client);
  void DoubleClick(const PlotLayout& layout, QPoint client);
  void Move(const PlotLayout& layout, QPoint client, bool leftDown);
  void Release(const PlotLayout& layout, QPoint client);
  // Every paint ends the value read-out.
  void EndPopup();

  ValuePopup* Popup() const;
  YScaleDialog* YScale() const;

 private:
  void Apply(const PlotLayout& layout, const MouseOutcome& out, QPoint client);
  void OpenYScale(int column);
  void ForwardRelease();

  PlotHost& host_;
  QWidget* view_;
  QPointer<ValuePopup> popup_;
  QPointer<YScaleDialog> yScale_;
};

}  // namespace sedra
