#include "app/startup.h"

#include <QWidget>
#include <cstring>

#include "app/main_window.h"
#include "app/wiring.h"
#include "model/core.h"
#include "model/model.h"
#include "model/settings_files.h"

namespace sedra {

namespace {
constexpr const char* kTitle = "Sedra-PLOT-Lite - Sedra Image Presentation Software - V2.81";
}

std::unique_ptr<MainWindow> StartUp(Model& model, Prompt& prompt, const std::filesystem::path& workFolder) {
  // A first run has no defaults.def: write all three files from the built-in values.
  CreateSettingsIfMissing(model, workFolder);
  std::memset(&model.App.Elements, 0, sizeof model.App.Elements);
  if (!ReadSettings(model, workFolder, &prompt)) return nullptr;
  NewCore(model, nullptr);
  CopyField(model.App.Title, kTitle);

  const DisplaySettings& s = model.Settings();
  auto window = std::make_unique<MainWindow>(model, prompt, workFolder);
  window->setGeometry(s.WindowX, s.WindowY, s.WindowWidth, s.WindowHeight);
  window->setWindowTitle(QString::fromLatin1(model.App.Title));
  const std::string help = (workFolder / "Sedra-PLOT.chm").string();
  CopyField(model.App.HelpPath, help.c_str());

  // The two image windows exist from the start, hidden until a tool dialog shows them.
  auto* image = new QWidget(window.get(), Qt::Tool);
  image->setObjectName(QStringLiteral("ImageClass"));
  image->hide();
  auto* radImage = new QWidget(window.get(), Qt::Tool);
  radImage->setObjectName(QStringLiteral("RadImageClass"));
  radImage->hide();

  WireCommands(model, prompt, *window);

  window->show();
  model.Plot().DataSetCount = 0;
  model.Work().ShowRadiograph = 1;
  model.Work().ShowOptical = 1;
  DisplaySettings& settings = model.Settings();
  std::memset(settings.DataSetDisplayMode, 0, sizeof settings.DataSetDisplayMode);
  std::memset(settings.DataSetSelection2, 0, sizeof settings.DataSetSelection2);
  std::memset(settings.DataSetSelection3, 0, sizeof settings.DataSetSelection3);
  return window;
}

}  // namespace sedra
