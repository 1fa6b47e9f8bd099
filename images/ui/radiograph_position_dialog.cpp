#include "images/ui/radiograph_position_dialog.h"

#include <QPushButton>
#include <QRadioButton>

#include "ui_dlg226.h"

namespace sedra {

RadiographPositionDialog::RadiographPositionDialog(QWidget* owner, int count)
    : QDialog(owner), count_(count), ui_(std::make_unique<Ui::dlg226>()) {
  ui_->setupUi(this);
  // A second radiograph is offered "&Centre" (after the first, in the order the scanner
  // takes them); any other, "&Right", at the end.
  (count == 2 ? ui_->ctl1459 : ui_->ctl1460)->setChecked(true);
  connect(ui_->ctl1, &QPushButton::clicked, this, [this] { OnOk(); });
}

RadiographPositionDialog::~RadiographPositionDialog() = default;

int RadiographPositionDialog::Place() const {
  if (ui_->ctl1458->isChecked()) return 0;
  // With two radiographs there are only two places: "Centre" and "Right" both mean after
  // the first.
  if (count_ == 2 || ui_->ctl1459->isChecked()) return 1;
  return 2;
}

void RadiographPositionDialog::OnOk() { accept(); }

int ChooseRadiographPosition(QWidget* owner, int count) {
  RadiographPositionDialog dialog(owner, count);
  dialog.exec();
  return dialog.Place();
}

}  // namespace sedra
