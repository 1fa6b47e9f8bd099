#include "app/startup.h"

#include <cstring>

#include "app/main_window.h"
#include "app/shell_commands.h"
#include "app/window_rect.h"
#include "images/ui/image_windows.h"
#include "model/core.h"
#include "model/model.h"
#include "model/settings_files.h"

// Resources of a static library must be registered by hand, outside any namespace.
static void InitSedraResources() { Q_INIT_RESOURCE(sedra); }

namespace sedra {

namespace {

// The settings keep the window's rectangle on screen, frame included.  The frame is
// known once the window is shown; until then the rectangle is taken as the inner one.
void PlaceWindow(MainWindow& window, const QRect& stored) {
  window.setGeometry(stored);
  window.show();
  const QMargins frame = FrameMargins(window.geometry(), window.frameGeometry());
  if (!frame.isNull()) window.setGeometry(InnerRect(stored, frame));
}

}  // namespace

std::unique_ptr<MainWindow> StartUp(Model& model, Prompt& prompt, const std::filesystem::path& workFolder) {
  InitSedraResources();
  // A first run has no defaults.def: write all three files from the built-in values.
  CreateSettingsIfMissing(model, workFolder);
  std::memset(&model.App.Elements, 0, sizeof model.App.Elements);
  if (!ReadSettings(model, workFolder, &prompt)) return nullptr;
  StartSession(model);

  auto window = std::make_unique<MainWindow>(model, prompt, workFolder);
  window->setWindowTitle(QString::fromLatin1(model.App.Title));
  const std::string help = (workFolder / "Sedra-PLOT.chm").string();
  CopyField(model.App.HelpPath, help.c_str());

  // The two image windows exist from the start, hidden until a tool dialog shows them.
  new ImageWindow(*window);
  new RadImageWindow(*window);

  RegisterAllCommands(model, prompt, *window);

  const DisplaySettings& s = model.Settings();
  PlaceWindow(*window, QRect(s.WindowX, s.WindowY, s.WindowWidth, s.WindowHeight));
  return window;
}

}  // namespace sedra
