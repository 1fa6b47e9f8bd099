#include "app/dialogs.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <cstdio>

#include "app/main_window.h"
#include "model/messages.h"
#include "model/model.h"
#include "model/numbers.h"
#include "model/prompt.h"
#include "ui_dialog214.h"
#include "ui_dialog220.h"
#include "ui_dialog223.h"

namespace sedra {

namespace {
// "%f" reading of a dialog edit: leading number, or 0 when there is none.
float ReadReal(const QLineEdit* edit) {
  float v = 0;
  std::sscanf(edit->text().toLatin1().constData(), "%f", &v);
  return v;
}
}  // namespace

// ---------------------------------------------------------------- dialog 223

ExpandDialog::ExpandDialog(Model& model, Prompt& prompt, MainWindow& window)
    : QDialog(&window), model_(model), prompt_(prompt), window_(window), ui_(std::make_unique<Ui::Dialog223>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  PlotState& plot = model_.Plot();
  plot.HRegionMode = 1;
  plot.Tracking = 1;
  FillFromRegion();
  connect(ui_->ctl1, &QPushButton::clicked, this, [this] { OnExpand(); });
  connect(ui_->ctl1471, &QPushButton::clicked, this, [this] { OnNormal(); });
}

ExpandDialog::~ExpandDialog() = default;

void ExpandDialog::FillFromRegion() {
  // The edits start from the current highlighted horizontal region, as the region
  // dialogs show it: absolute depths, without the expanded offset.
  const PlotState& plot = model_.Plot();
  const CoreSection& section = model_.CurSection();
  const int i = (plot.CurHRegion >= 0 && plot.CurHRegion < kAnnotationSlots) ? plot.CurHRegion : 0;
  ui_->ctl1476->setText(
      QString::fromStdString(Format("%1.0f", double(section.HRegionTop[i]) + section.StartLabelDepth)));
  ui_->ctl1478->setText(
      QString::fromStdString(Format("%1.0f", double(section.HRegionBottom[i]) + section.StartLabelDepth)));
}

bool ExpandDialog::OnExpand() {
  PlotState& plot = model_.Plot();
  const CoreSection& section = model_.CurSection();
  const float length = plot.SectionLength[model_.CurSectionSlot()];
  const float top = ReadReal(ui_->ctl1476) - float(section.StartLabelDepth);
  float bottom = ReadReal(ui_->ctl1478) - float(section.StartLabelDepth);
  if (bottom > length) bottom = length;
  plot.ExpandTop = top;
  plot.ExpandBottom = bottom;
  if (bottom - top < 0.05f * length) {
    prompt_.Tell(msg::kExpandTooSmall, "", Icon::Exclamation);
    return false;
  }
  plot.DepthSpan = bottom - top;
  const int count = section.PointCount;
  if (length > 0) {
    plot.ViewFirstPoint = std::max(0, RoundToInt(double(count) * top / length));
    plot.ViewLastPoint = std::min(count, RoundToInt(double(count) * bottom / length));
  }
  plot.NeedLayout = 1;
  plot.Expanded = 1;
  Finish();
  return true;
}

void ExpandDialog::OnNormal() {
  PlotState& plot = model_.Plot();
  plot.ViewFirstPoint = 0;
  plot.ViewLastPoint = model_.CurSection().PointCount;
  plot.ExpandTop = 0;
  plot.ExpandBottom = plot.SectionLength[model_.CurSectionSlot()];
  plot.NeedLayout = 1;
  plot.Expanded = 0;
  Finish();
}

void ExpandDialog::Finish() {
  if (finished_) return;
  finished_ = true;
  PlotState& plot = model_.Plot();
  plot.TrackRect = {};
  plot.HRegionMode = 0;
  plot.Tracking = 0;
  plot.ZoomFactor = 1;
  window_.ClearActiveDialog(this);
  window_.RequestRepaint();
  close();
}

void ExpandDialog::closeEvent(QCloseEvent* event) {
  Finish();
  event->accept();
}

void ExpandDialog::reject() { close(); }

// ---------------------------------------------------------------- dialog 214

SectionDialog::SectionDialog(Model& model, MainWindow& window)
    : QDialog(&window), model_(model), window_(window), ui_(std::make_unique<Ui::Dialog214>()) {
  ui_->setupUi(this);
  const PlotState& plot = model_.Plot();
  for (int i = 0; i < kMaxSections; ++i) {
    auto* radio = findChild<QRadioButton*>(QStringLiteral("ctl%1").arg(1477 + i));
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
  PlotState& plot = model_.Plot();
  plot.ShowAllSections = 0;
  MenuState& menu = model_.App.Menu;
  for (int pos : {kMenuExpand, kMenuOptical, kMenuRadiograph, kMenuDefineRegion}) menu.EnableTop(pos, true);
  menu.EnableItem(kCmdSectionTitle, true);
  menu.EnableItem(kCmdDeletePoints, true);
  model_.SelectSection(index);
  Finish();
}

void SectionDialog::OnDisplayAll() {
  model_.Plot().ShowAllSections = 1;
  MenuState& menu = model_.App.Menu;
  for (int pos : {kMenuExpand, kMenuOptical, kMenuRadiograph, kMenuDefineRegion}) menu.EnableTop(pos, false);
  menu.EnableItem(kCmdSectionTitle, false);
  menu.EnableItem(kCmdDeletePoints, false);
  Finish();
}

void SectionDialog::OnFinished() { Finish(); }

void SectionDialog::Finish() {
  model_.Plot().ImageCoversAll = ui_->ctl1490->isChecked() ? 1 : 0;
  model_.Plot().ZoomFactor = 1;
  done(0);
}

void SectionDialog::done(int result) {
  if (!closing_) {
    closing_ = true;
    model_.Plot().NeedLayout = 1;
    QDialog::done(result);
    window_.ApplyMenuState();
    // Back to 100%, which also ends any expanded region.
    window_.OnCommand(kCmdZoom100);
    return;
  }
  QDialog::done(result);
}

// ---------------------------------------------------------------- dialog 220

AboutDialog::AboutDialog(Model& model, QWidget* parent) : QDialog(parent), ui_(std::make_unique<Ui::Dialog220>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QString::fromLatin1(model.App.Title));
  ui_->ctl1001->setText(QStringLiteral(
      "Sedra-PLOT presents the scans of a sediment-core scanner: for each core section it "
      "shows the scan conditions, the optical image, the X-radiographs and a data curve "
      "from a strip of the radiograph along one depth scale, ready to annotate, print, "
      "save as an image or copy into a report."));
  connect(ui_->ctl1, &QPushButton::clicked, this, &QDialog::close);
}

AboutDialog::~AboutDialog() = default;

}  // namespace sedra
