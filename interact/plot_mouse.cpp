#include "interact/plot_mouse.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QWidget>

#include "interact/data_dialogs.h"
#include "interact/mouse_engine.h"
#include "interact/value_popup.h"
#include "model/menu_state.h"
#include "model/model.h"
#include "ui/plot_host.h"
#include "ui/tool_dialog.h"

namespace sedra {

PlotMouse::PlotMouse(PlotHost& host, QWidget* view) : QObject(view), host_(host), view_(view) {}

PlotMouse::~PlotMouse() = default;

ValuePopup* PlotMouse::Popup() const { return popup_.data(); }
YScaleDialog* PlotMouse::YScale() const { return yScale_.data(); }

namespace {
MouseInput InputAt(PlotHost& host, QPoint client, bool leftDown = false) {
  return MouseInput{client.x(), client.y(), host.ScrollPos(), leftDown};
}
}  // namespace

void PlotMouse::Press(const PlotLayout& layout, QPoint client) {
  Apply(layout, OnLButtonDown(host_.PlotModel(), layout, InputAt(host_, client)), client);
}

void PlotMouse::DoubleClick(const PlotLayout& layout, QPoint client) {
  Apply(layout, OnLButtonDblClk(host_.PlotModel(), layout, InputAt(host_, client)), client);
}

void PlotMouse::Move(const PlotLayout& layout, QPoint client, bool leftDown) {
  Apply(layout, OnMouseMove(host_.PlotModel(), layout, InputAt(host_, client, leftDown)), client);
}

void PlotMouse::Release(const PlotLayout& layout, QPoint client) {
  Apply(layout, OnLButtonUp(host_.PlotModel(), layout, InputAt(host_, client)), client);
}

void PlotMouse::EndPopup() {
  if (popup_) popup_->close();
}

void PlotMouse::Apply(const PlotLayout& layout, const MouseOutcome& out, QPoint client) {
  Model& model = host_.PlotModel();
  if (out.SetsCursor) host_.SetPlotCursor(out.Cursor);
  if (ToolDialog* tool = host_.ActiveTool()) {
    for (const ControlText& w : out.Writes) tool->SetControlText(w.Id, QString::fromStdString(w.Text));
    if (out.TrackChanged) tool->TrackChanged();
  }
  if (out.RepaintAll)
    host_.Repaint();
  else
    for (const QRect& r : out.Damage) host_.RepaintBand(r);
  if (out.ClosePopup) EndPopup();
  if (out.ForwardRelease) ForwardRelease();
  switch (out.Opens) {
    case MouseOpens::Nothing: break;
    case MouseOpens::ValuePopup:
      EndPopup();
      popup_ = new ValuePopup(view_);
      popup_->setAttribute(Qt::WA_DeleteOnClose);
      popup_->Show(ValueReadout(model, layout, out.OpenX, out.OpenY), view_->mapToGlobal(client));
      break;
    case MouseOpens::YScale: OpenYScale(model.Plot().CurColumn); break;
    case MouseOpens::RadiographContrast: host_.RunCommand(kCmdRadContrast); break;
    case MouseOpens::OpticalContrast: host_.RunCommand(kCmdOpticalContrast); break;
  }
}

void PlotMouse::OpenYScale(int column) {
  if (yScale_) yScale_->close();
  yScale_ = new YScaleDialog(host_, column);
  yScale_->show();
}

// The radiograph window is dragging a band of its own and takes the release, with the
// middle-button bit its own code looks for.
void PlotMouse::ForwardRelease() {
  QWidget* owner = host_.OwnerWindow();
  QWidget* window = owner ? owner->findChild<QWidget*>(QStringLiteral("RadImageClass")) : nullptr;
  if (!window) return;
  QCoreApplication::postEvent(window, new QMouseEvent(QEvent::MouseButtonRelease, QPointF(0, 0), QPointF(0, 0),
                                                      Qt::LeftButton, Qt::MiddleButton, Qt::NoModifier));
}

}  // namespace sedra
