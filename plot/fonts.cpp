#include "plot/fonts.h"

#include <QFont>

namespace sedra {

void RegisterFontSubstitutes() {
  QFont::insertSubstitution(QStringLiteral("MS Sans Serif"), QStringLiteral("Liberation Sans"));
  QFont::insertSubstitution(QStringLiteral("Arial"), QStringLiteral("Liberation Sans"));
}

}  // namespace sedra
