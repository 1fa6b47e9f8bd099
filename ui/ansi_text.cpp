#include "ui/ansi_text.h"

#include <QLineEdit>

#include "model/model.h"
#include "plot/paint_context.h"

namespace sedra {

std::string ToAnsi(const QString& text, size_t limit) {
  std::string bytes;
  char32_t bad = 0;
  ToAnsi(text, limit, bytes, bad, '?');
  return bytes;
}

void ShowAnsiField(QLineEdit* edit, const char* field, size_t size) {
  edit->setMaxLength(int(size) - 1);
  edit->setText(FromAnsi(field, size));
}

void StoreAnsiField(const QLineEdit* edit, char* field, size_t size) {
  CopyField(field, size, ToAnsi(edit->text(), size - 1).c_str());
}

}  // namespace sedra
