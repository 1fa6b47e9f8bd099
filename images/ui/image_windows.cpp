#include "images/ui/image_windows.h"

#include "ui/plot_host.h"

namespace sedra {

ImageWindow::ImageWindow(PlotHost& host) : QWidget(host.OwnerWindow(), Qt::Tool), host_(host) {
  setObjectName(QStringLiteral("ImageClass"));
  hide();
}

RadImageWindow::RadImageWindow(PlotHost& host) : QWidget(host.OwnerWindow(), Qt::Tool), host_(host) {
  setObjectName(QStringLiteral("RadImageClass"));
  hide();
}

}  // namespace sedra
