#include "interact/text_dialogs.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>
#include <string>

#include "model/messages.h"
#include "model/model.h"
#include "model/numbers.h"
#include "model/prompt.h"
#include "plot/paint_context.h"
#include "ui_dlg216.h"
#include "ui_dlg217.h"

namespace sedra {

namespace {
constexpr int kTextEdit = 1444;
constexpr int kSizeBox = 1493;
constexpr int kFirstRadio = 1385;
// The size box's text is read through a 16-byte buffer.
constexpr int kSizeChars = 15;
}  // namespace

TextToolDialog::TextToolDialog(PlotHost& host, int resourceId, uint32_t PlotState::*mode)
    : ToolDialog(host, resourceId), mode_(mode) {}

QLineEdit* TextToolDialog::Edit() const { return Control<QLineEdit>(this, kTextEdit); }
QComboBox* TextToolDialog::SizeBox() const { return Control<QComboBox>(this, kSizeBox); }

void TextToolDialog::Connect() {
  QComboBox* sizes = SizeBox();
  for (int size : kFontSizes) sizes->addItem(QString::number(size));
  // A typed size is read, never added to the list.
  sizes->setInsertPolicy(QComboBox::NoInsert);
  connect(Edit(), &QLineEdit::editingFinished, this, [this] { TakeText(); });
  connect(sizes->lineEdit(), &QLineEdit::editingFinished, this, [this] { TakeSize(); });
  connect(sizes, &QComboBox::activated, this, [this] { TakeSize(); });
  connect(Control<QPushButton>(this, 1), &QPushButton::clicked, this, [this] { OnFinished(); });
}

void TextToolDialog::ShowItem() {
  int32_t& size = ItemSize();
  if (size == 0) size = DefaultSize();
  SizeBox()->setEditText(QString::fromStdString(Format("%d", size)));
  Edit()->setText(FromAnsi(ItemText(), ItemRoom()));
}

void TextToolDialog::SetModes() {
  host_.PlotModel().Plot().*mode_ = 1;
  ShowItem();
}

void TextToolDialog::ClearModes() { host_.PlotModel().Plot().*mode_ = 0; }

void TextToolDialog::TakeText() {
  // The edit loses the focus again while a refusal is shown, and once more as the
  // dialog closes; neither may store or ask anything.
  if (taking_ || Ended()) return;
  taking_ = true;
  std::string bytes;
  char32_t bad = 0;
  if (ToAnsi(Edit()->text(), kTitleBytes - 1, bytes, bad)) {
    // Shown at once: the user is usually on the way to the plot to place it.
    if (bytes != ItemText()) host_.Repaint();
    CopyField(ItemText(), kTitleBytes, bytes.c_str());
  } else {
    host_.UserPrompt().Tell(Format(msg::kTextNotStorable, unsigned(bad)), "", Icon::Exclamation);
    Edit()->setText(FromAnsi(ItemText(), ItemRoom()));
  }
  taking_ = false;
}

void TextToolDialog::TakeSize() {
  if (taking_ || Ended()) return;
  taking_ = true;
  int32_t size = 0;
  int32_t& stored = ItemSize();
  if (!LeadingInt(SizeBox()->currentText().left(kSizeChars).toStdString(), size)) {
    // Not a number: the old size stays, as the box has always let it.
  } else if (size > kMaxFontPoints) {
    host_.UserPrompt().Tell(Format(msg::kFontSizeTooLarge, size, kMaxFontPoints, stored), "", Icon::Exclamation);
    SizeBox()->setEditText(QString::fromStdString(Format("%d", stored)));
  } else if (size != stored) {
    stored = size;
    host_.Repaint();
  }
  taking_ = false;
}

void TextToolDialog::OnFinished() {
  // Return on an edit reaches the default button before any focus moves.
  TakeText();
  TakeSize();
  EndTool();
}

TitleDialog::TitleDialog(PlotHost& host, TitleKind kind)
    : TextToolDialog(host, 216, kind == TitleKind::Main ? &PlotState::MainTitleMode : &PlotState::SectionTitleMode),
      kind_(kind) {
  Ui::dlg216().setupUi(this);
  Connect();
}

TitleDialog::~TitleDialog() = default;

char* TitleDialog::ItemText() {
  Model& model = host_.PlotModel();
  return kind_ == TitleKind::Main ? model.Plot().CoreTitle : model.CurSection().SectionName;
}

int32_t& TitleDialog::ItemSize() {
  Model& model = host_.PlotModel();
  return kind_ == TitleKind::Main ? model.Plot().MainTitleFontSize : model.CurSection().SectionTitleFontSize;
}

size_t TitleDialog::ItemRoom() const {
  return kind_ == TitleKind::Main ? sizeof PlotState::CoreTitle : sizeof CoreSection::SectionName;
}

TextFieldDialog::TextFieldDialog(PlotHost& host) : TextToolDialog(host, 217, &PlotState::TextFieldMode) {
  Ui::dlg217().setupUi(this);
  Connect();
  for (int i = 0; i < kTextFields; ++i)
    connect(Control<QRadioButton>(this, kFirstRadio + i), &QRadioButton::clicked, this,
            [this, i] { OnRadio(kFirstRadio + i); });
}

TextFieldDialog::~TextFieldDialog() = default;

void TextFieldDialog::SetModes() {
  int32_t& cur = host_.PlotModel().Plot().CurTextField;
  cur = std::clamp(cur, 0, kTextFields - 1);
  TextToolDialog::SetModes();
  Control<QRadioButton>(this, kFirstRadio + cur)->setChecked(true);
}

void TextFieldDialog::OnRadio(int id) {
  host_.PlotModel().Plot().CurTextField = std::clamp(id - kFirstRadio, 0, kTextFields - 1);
  ShowItem();
}

char* TextFieldDialog::ItemText() {
  PlotState& plot = host_.PlotModel().Plot();
  return plot.TextFields[std::clamp(plot.CurTextField, 0, kTextFields - 1)].Text;
}

int32_t& TextFieldDialog::ItemSize() {
  PlotState& plot = host_.PlotModel().Plot();
  return plot.TextFields[std::clamp(plot.CurTextField, 0, kTextFields - 1)].FontSize;
}

}  // namespace sedra
