#include "app/startup.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <vector>

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

// The stored rectangle moved onto the screens there are now: one from another monitor
// set-up, or one no screen can show, must not leave the window unseen.
QRect VisibleRect(const DisplaySettings& s) {
  std::vector<WindowPlace> screens;
  size_t current = 0;
  const QScreen* underCursor = QGuiApplication::screenAt(QCursor::pos());
  if (!underCursor) underCursor = QGuiApplication::primaryScreen();
  for (const QScreen* screen : QGuiApplication::screens()) {
    if (screen == underCursor) current = screens.size();
    const QRect r = screen->availableGeometry();
    screens.push_back({r.x(), r.y(), r.width(), r.height()});
  }
  const WindowPlace place = VisibleWindowPlace({s.WindowX, s.WindowY, s.WindowWidth, s.WindowHeight}, screens, current);
  return QRect(place.X, place.Y, place.Width, place.Height);
}

// The settings keep the window's rectangle on screen, frame included.  The frame is
// known once the window is shown; until then the rectangle is taken as the inner one.
void PlaceWindow(MainWindow& window, const QRect& stored) {
  window.setGeometry(stored);
  window.show();
  const QMargins frame = FrameMargins(window.geometry(), window.frameGeometry());
  if (!frame.isNull()) window.setGeometry(InnerRect(stored, frame));
}

}  // namespace

std::unique_ptr<MainWindow> StartUp(Model& model, Prompt& prompt, const std::filesystem::path& settingsFolder) {
  InitSedraResources();
  // A first run has no defaults.def: write all three files from the built-in values.
  CreateSettingsIfMissing(model, settingsFolder);
  std::memset(&model.App.Elements, 0, sizeof model.App.Elements);
  if (!ReadSettings(model, settingsFolder, &prompt)) return nullptr;
  StartSession(model);

  auto window = std::make_unique<MainWindow>(model, prompt, settingsFolder);
  window->setWindowTitle(QString::fromLatin1(model.App.Title));
  // The compiled help is looked for in the working folder at start-up.
  std::error_code ec;
  const std::string help = (std::filesystem::current_path(ec) / "Sedra-PLOT.chm").string();
  CopyField(model.App.HelpPath, help.c_str());

  // The two image windows exist from the start, hidden until a tool dialog shows them.
  new ImageWindow(*window);
  new RadImageWindow(*window);

  RegisterAllCommands(model, prompt, *window);

  PlaceWindow(*window, VisibleRect(model.Settings()));
  // Settings that cannot be saved (a read-only file, a folder that refuses new files)
  // are told once; the program runs on and leaves those files as they are.
  const SettingsSave writable = CheckSettingsWritable(settingsFolder);
  if (!writable.Saved) window->TellSettingsNotSaved(writable);
  return window;
}

}  // namespace sedra
