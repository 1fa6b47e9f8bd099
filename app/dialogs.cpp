#include "app/dialogs.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include "model/menu_rules.h"
#include "model/menu_state.h"
#include "model/model.h"
#include "ui_dlg214.h"
#include "ui_dlg220.h"

namespace sedra {

// ---------------------------------------------------------------- dialog 214

SectionDialog::SectionDialog(PlotHost& host)
    : ModalDialog(host.OwnerWindow()), host_(host), model_(host.PlotModel()), ui_(std::make_unique<Ui::dlg214>()) {
  ui_->setupUi(this);
  const PlotState& plot = model_.Plot();
  for (int i = 0; i < kMaxSections; ++i) {
    auto* radio = Control<QRadioButton>(this, 1477 + i);
    radio->setEnabled(i < plot.SectionCount);
    if (!plot.ShowAllSections && i == plot.CurSectionIndex) radio->setChecked(true);
    connect(radio, &QRadioButton::clicked, this, [this, i] { OnSection(i); });
  }
  ui_->ctl1489->setChecked(plot.ShowAllSections != 0);
  ui_->ctl1490->setChecked(plot.ImageCoversAll != 0);
  connect(ui_->ctl1489, &QCheckBox::clicked, this, [this] { OnDisplayAll(); });
  connect(ui_->ctl1, &QPushButton::clicked, this, [this] { OnFinished(); });
}

SectionDialog::~SectionDialog() = default;

void SectionDialog::OnSection(int index) {
  model_.Plot().ShowAllSections = 0;
  model_.SelectSection(index);
  MenuAfterSectionChosen(model_.App.Menu, RadiographGivesDataCurve(model_));
  Finish();
}

void SectionDialog::OnDisplayAll() {
  model_.Plot().ShowAllSections = 1;
  MenuAfterShowAll(model_.App.Menu);
  Finish();
}

void SectionDialog::OnFinished() { Finish(); }

void SectionDialog::Finish() {
  model_.Plot().ImageCoversAll = ui_->ctl1490->isChecked() ? 1 : 0;
  model_.Plot().ZoomFactor = 1;
  done(0);
}

void SectionDialog::Closed() {
  model_.Plot().NeedLayout = 1;
  host_.ApplyMenuState();
  // Back to 100%, which also ends any expanded region.
  host_.RunCommand(kCmdZoom100);
}

// ---------------------------------------------------------------- dialog 220

AboutDialog::AboutDialog(PlotHost& host) : ToolDialog(host, 220), ui_(std::make_unique<Ui::dlg220>()) {
  ui_->setupUi(this);
  setWindowTitle(QString::fromLatin1(host.PlotModel().App.Title));
  ui_->ctl1001->setText(QStringLiteral(
      "Sedra-PLOT presents the scans of a sediment-core scanner: for each core section it "
      "shows the scan conditions, the optical image, the X-radiographs and a data curve "
      "from a strip of the radiograph along one depth scale, ready to annotate, print, "
      "save as an image or copy into a report."));
  connect(ui_->ctl1, &QPushButton::clicked, this, &QDialog::close);
}

AboutDialog::~AboutDialog() = default;

}  // namespace sedra
