#include "ui/tool_dialog.h"

#include <QCloseEvent>
#include <QLineEdit>
#include <QPointer>

#include "ui/plot_host.h"

namespace sedra {

ToolDialog::ToolDialog(PlotHost& host, int resourceId)
    : QDialog(host.OwnerWindow()), host_(host), resourceId_(resourceId) {
  setAttribute(Qt::WA_DeleteOnClose);
  setModal(false);
}

void ToolDialog::Start() {
  SetModes();
  show();
}

void ToolDialog::EndTool() {
  if (ended_) return;
  ended_ = true;
  ClearModes();
  host_.ToolEnded(this);
  host_.Repaint();
  close();
}

void ToolDialog::SetControlText(int id, const QString& text) {
  if (auto* edit = findChild<QLineEdit*>(ControlName(id))) edit->setText(text);
}

void ToolDialog::closeEvent(QCloseEvent* event) {
  EndTool();
  event->accept();
}

// Escape ends the tool as its close box does.
void ToolDialog::reject() { close(); }

}  // namespace sedra
