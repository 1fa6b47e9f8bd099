#include "ui/ansi_text.h"

#include <QLineEdit>
#include <algorithm>

#include "model/model.h"
#include "plot/paint_context.h"

namespace sedra {

namespace {
// The byte of one code point, or '?' when Windows-1252 has none.
char AnsiByte(char32_t c) {
  if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return char(c);
  for (int b = 0x80; b <= 0x9F; ++b) {
    const char byte = char(b);
    const QString decoded = FromAnsi(&byte, 1);
    if (decoded.size() == 1 && decoded[0].unicode() == c) return byte;
  }
  return '?';
}
}  // namespace

std::string ToAnsi(const QString& text, size_t limit) {
  std::string out;
  for (char32_t c : text.toUcs4()) {
    if (out.size() >= limit) break;
    // A NUL would end the field early and hide the rest: it is as foreign as any
    // character the code page lacks.
    out.push_back(c == 0 ? '?' : AnsiByte(c));
  }
  return out;
}

void ShowAnsiField(QLineEdit* edit, const char* field, size_t size) {
  edit->setMaxLength(int(size) - 1);
  edit->setText(FromAnsi(field, size));
}

void StoreAnsiField(const QLineEdit* edit, char* field, size_t size) {
  CopyField(field, size, ToAnsi(edit->text(), size - 1).c_str());
}

}  // namespace sedra
