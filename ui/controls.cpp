#include "ui/controls.h"

#include <QLineEdit>

#include "model/numbers.h"

namespace sedra {

float EditReal(const QLineEdit* edit) {
  float v = 0;
  if (edit) LeadingReal(edit->text().toStdString(), v);
  return v;
}

int32_t EditInt(const QLineEdit* edit) { return edit ? LeadingInt(edit->text().toStdString()) : 0; }

}  // namespace sedra
