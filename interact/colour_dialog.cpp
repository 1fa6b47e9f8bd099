#include "interact/colour_dialog.h"

#include <QCheckBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QScrollBar>
#include <algorithm>

#include "model/messages.h"
#include "model/model.h"
#include "model/prompt.h"
#include "plot/paint_context.h"
#include "ui/controls.h"
#include "ui/plot_host.h"
#include "ui_dlg219.h"

namespace sedra {

const uint32_t kSwatchColours[15] = {0x000080, 0x008000, 0x800000, 0x008080, 0x808000, 0x800080, 0x0000FF, 0x00FF00,
                                     0xFF0000, 0x00FFFF, 0xFFFF00, 0xFF00FF, 0x000000, 0xC0C0C0, 0xFFFFFF};

namespace {

const char* const kFixedEntryNames[kFixedColourEntries] = {
    "Background", "Axis", "Text", "Shaded H/L Region", "Highlighted Region", "Horizontal Lines", "Vertical Lines"};

constexpr int kFirstBarId = 1181, kFirstComponentEditId = 1184, kFirstSwatchId = 1187;
constexpr int kPreviewSize = 96;

// The component change of one scroll action.  The bars run from 255 at the top to 0 at
// the bottom, so "up" adds.
int Scrolled(int component, int action, int position) {
  switch (action) {
    case QAbstractSlider::SliderSingleStepSub: return std::min(component + 1, 255);
    case QAbstractSlider::SliderSingleStepAdd: return std::max(component - 1, 0);
    case QAbstractSlider::SliderPageStepSub: return std::min(component + 16, 255);
    case QAbstractSlider::SliderPageStepAdd: return std::max(component - 16, 0);
    case QAbstractSlider::SliderMove: return 255 - std::clamp(position, 0, 255);
    case QAbstractSlider::SliderToMinimum: return 255;
    case QAbstractSlider::SliderToMaximum: return 0;
    default: return component;
  }
}

}  // namespace

ColourDialog::ColourDialog(PlotHost& host, std::function<void()> saveSettings)
    : ModalDialog(host.OwnerWindow()),
      host_(host),
      model_(host.PlotModel()),
      saveSettings_(std::move(saveSettings)),
      ui_(std::make_unique<Ui::dlg219>()),
      saved_(model_.Settings()) {
  ui_->setupUi(this);
  const PlotState& plot = model_.Plot();
  const DisplaySettings& settings = model_.Settings();
  for (const char* name : kFixedEntryNames) ui_->ctl1002->addItem(QString::fromLatin1(name));
  // One entry per data curve, named after the data set its column shows.
  for (int j = 0; j < std::min(plot.DataSetCount, kMaxCurves); ++j) {
    const int set = settings.DataSetOfPlot[j];
    const QString name = set >= 1 && set <= kMaxChannels ? FromAnsi(plot.DataSetNames[set - 1], kDataSetNameLength) : QString();
    ui_->ctl1002->addItem(name + QStringLiteral(" Data"));
  }
  for (int bar = 0; bar < 3; ++bar) {
    auto* scroll = Control<QScrollBar>(this, kFirstBarId + bar);
    scroll->setRange(0, 255);
    scroll->setPageStep(16);
    connect(scroll, &QAbstractSlider::actionTriggered, this,
            [this, bar, scroll](int action) { OnScroll(bar, action, scroll->sliderPosition()); });
    // The component edits only display.
    Control<QLineEdit>(this, kFirstComponentEditId + bar)->setReadOnly(true);
  }
  for (int k = 0; k < 15; ++k) Control<QLineEdit>(this, kFirstSwatchId + k)->installEventFilter(this);
  ui_->ctl1497->setChecked(settings.CorrectCameraSignal != 0);
  ui_->ctl1502->setChecked(settings.CorrectCountTime != 0);
  ui_->ctl1503->setChecked(settings.ShowWarnings != 0);
  for (QCheckBox* box : {ui_->ctl1497, ui_->ctl1502, ui_->ctl1503})
    connect(box, &QCheckBox::clicked, this, [this] { WriteBack(); });
  ui_->ctl1178->setFixedSize(kPreviewSize, kPreviewSize);

  {
    const QSignalBlocker block(ui_->ctl1002);
    ui_->ctl1002->setCurrentRow(0);
  }
  connect(ui_->ctl1002, &QListWidget::currentRowChanged, this, [this](int row) { OnListSelection(row); });
  connect(ui_->ctl1, &QPushButton::clicked, this, [this] { OnOk(); });
  connect(ui_->ctl1036, &QPushButton::clicked, this, [this] { OnCancel(); });
  curColour_ = ColourOf(0);
  PaintSwatches();
  ShowColour();
}

ColourDialog::~ColourDialog() = default;

uint32_t& ColourDialog::ColourOf(int item) {
  DisplaySettings& s = model_.Settings();
  return item < kFixedColourEntries ? s.Colours[item] : DataColour(s, item - kFixedColourEntries);
}

// Every command starts here, so a colour takes effect as soon as it is chosen.
void ColourDialog::WriteBack() {
  uint32_t& setting = ColourOf(curItem_);
  if (setting == curColour_) return;
  setting = curColour_;
  host_.Repaint();
}

void ColourDialog::OnListSelection(int row) {
  WriteBack();
  if (row < 0 || row >= ui_->ctl1002->count()) return;
  curItem_ = row;
  curColour_ = ColourOf(row);
  ShowColour();
}

void ColourDialog::OnSwatch(int k) {
  WriteBack();
  PaintSwatches();
  curColour_ = kSwatchColours[k];
  ShowColour();
  // Showing the components changes the component edits, which is a command of its own.
  WriteBack();
}

void ColourDialog::OnScroll(int bar, int action, int position) {
  components_[bar] = Scrolled(components_[bar], action, position);
  curColour_ = uint32_t(components_[0]) | uint32_t(components_[1]) << 8 | uint32_t(components_[2]) << 16;
  ShowColour();
  WriteBack();
}

void ColourDialog::ShowColour() {
  for (int bar = 0; bar < 3; ++bar) {
    components_[bar] = int((curColour_ >> (8 * bar)) & 0xFF);
    auto* scroll = Control<QScrollBar>(this, kFirstBarId + bar);
    const QSignalBlocker block(scroll);
    // Inside a scroll action only the slider position sticks: Qt applies it afterwards.
    scroll->setSliderPosition(255 - components_[bar]);
    scroll->setValue(255 - components_[bar]);
    Control<QLineEdit>(this, kFirstComponentEditId + bar)->setText(QString::number(components_[bar]));
  }
  PaintPreview();
}

// Upper half the background, lower half the colour, and a sample of it over the lower
// part.  Which entry gets which sample has always been so (the zigzag goes with "Axis",
// the word with "Highlighted Region"), and is kept.
void ColourDialog::PaintPreview() {
  const int w = kPreviewSize, h = kPreviewSize;
  preview_ = QImage(w, h, QImage::Format_RGB32);
  preview_.fill(Qt::white);
  QPainter p(&preview_);
  const QColor colour = FromColorRef(curColour_);
  p.setPen(Qt::black);
  p.setBrush(FromColorRef(model_.Settings().Colours[kBackgroundColour]));
  p.drawRect(0, 0, w - 1, h / 2 - 1);
  p.setBrush(colour);
  p.drawRect(0, h / 2, w - 1, h / 2 - 1);
  p.setPen(colour);
  const int middle = h * 3 / 4;
  switch (curItem_) {
    case kAxisColour:
      for (int x = 4; x < w - 4; ++x) {
        const bool zig = x >= w / 4 && x < w * 3 / 4;
        p.drawPoint(x, zig ? middle + ((x / 2) % 2 ? 5 : -5) : middle);
      }
      break;
    case kHighlightColour:
      p.setBackgroundMode(Qt::TransparentMode);
      p.drawText(QRect(0, h / 2, w, h / 2), Qt::AlignCenter, QStringLiteral("Text"));
      break;
    case kVLineColour:
      for (int x = 4; x < w - 4; x += 2)
        for (int y = h / 2 + 4 + (x / 2 % 2) * 2; y < h - 4; y += 4) p.drawPoint(x, y);
      break;
    default: p.drawLine(w / 2, h / 2 + 2, w / 2, h - 3);
  }
  p.end();
  ui_->ctl1178->setPixmap(QPixmap::fromImage(preview_));
}

void ColourDialog::PaintSwatches() {
  for (int k = 0; k < 15; ++k) {
    auto* swatch = Control<QLineEdit>(this, kFirstSwatchId + k);
    QPalette palette = swatch->palette();
    palette.setColor(QPalette::Base, FromColorRef(kSwatchColours[k]));
    swatch->setPalette(palette);
  }
}

bool ColourDialog::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress)
    for (int k = 0; k < 15; ++k)
      if (watched == Control<QLineEdit>(this, kFirstSwatchId + k)) {
        OnSwatch(k);
        return true;
      }
  return QDialog::eventFilter(watched, event);
}

void ColourDialog::OnOk() {
  WriteBack();
  DisplaySettings& settings = model_.Settings();
  settings.CorrectCountTime = ui_->ctl1502->isChecked() ? 1 : 0;
  settings.CorrectCameraSignal = ui_->ctl1497->isChecked() ? 1 : 0;
  settings.ShowWarnings = ui_->ctl1503->isChecked() ? 1 : 0;
  if (saveSettings_) saveSettings_();
  done(0);
}

// "No" and "Cancel" keep the edited colours on screen; only the next save writes them.
void ColourDialog::OnCancel() {
  WriteBack();
  if (host_.UserPrompt().Message(msg::kResetColours, " ", Icon::None, Buttons::YesNoCancel) == Answer::Yes)
    model_.Settings() = saved_;
  done(0);
}

void ColourDialog::Closed() {
  host_.Repaint();
}

}  // namespace sedra
