#pragma once
// Reaching a dialog's controls by their numeric ids: every control is named "ctl" and
// its id, as the dialog templates have them.

#include <QString>
#include <QWidget>
#include <cstdint>

class QLineEdit;

namespace sedra {

inline QString ControlName(int id) { return QStringLiteral("ctl%1").arg(id); }

// Control `id` of a dialog, or null when it has none of that type.
template <typename T>
T* Control(const QWidget* dialog, int id) {
  return dialog ? dialog->findChild<T*>(ControlName(id)) : nullptr;
}

// An edit's text read as "%f": its leading real number, 0 when there is none.
float EditReal(const QLineEdit* edit);
// An edit's text read as a signed integer (GetDlgItemInt): its leading integer, else 0.
int32_t EditInt(const QLineEdit* edit);

}  // namespace sedra
