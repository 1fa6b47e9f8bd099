#include "images/ui/up_down.h"

#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "images/ui/dialog_support.h"

namespace sedra {

UpDown::UpDown(QWidget* parent) : QWidget(parent) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  up_ = new QToolButton(this);
  down_ = new QToolButton(this);
  up_->setArrowType(Qt::UpArrow);
  down_->setArrowType(Qt::DownArrow);
  for (QToolButton* b : {up_, down_}) {
    b->setAutoRepeat(true);
    b->setFixedSize(16, 11);
    layout->addWidget(b);
  }
  connect(up_, &QToolButton::pressed, this, [this] { Press(true); });
  connect(down_, &QToolButton::pressed, this, [this] { Press(false); });
  connect(up_, &QToolButton::released, this, &UpDown::Notified);
  connect(down_, &QToolButton::released, this, &UpDown::Notified);
}

void UpDown::SetRange(int lower, int upper) {
  lower_ = lower;
  upper_ = upper;
}

void UpDown::SetPosition(int position) {
  position_ = position;
  if (buddy_) buddy_->setText(QString::number(position_));
}

void UpDown::Press(bool up) {
  emit Notified();
  int32_t current = position_;
  if (buddy_) ReadInt(buddy_, current);
  const int64_t step = (upper_ >= lower_) == up ? 1 : -1;
  const int64_t lo = std::min(lower_, upper_), hi = std::max(lower_, upper_);
  SetPosition(int(std::clamp<int64_t>(std::clamp<int64_t>(current, lo, hi) + step, lo, hi)));
}

void UpDown::Click(bool up) { (up ? up_ : down_)->click(); }

}  // namespace sedra
