// sedra-plot: start-up in its fixed order, then the event loop.
#include <QApplication>
#include <QCursor>
#include <QScreen>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "app/desktop_prompt.h"
#include "app/main_window.h"
#include "app/startup.h"
#include "model/model.h"
#include "model/settings_files.h"
#include "plot/fonts.h"

namespace {

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

// The stored window rectangle moved onto the screens there are now: a rectangle from
// another monitor set-up, or one no screen can show, must not leave the window unseen.
void PlaceOnScreen(QWidget& window, const sedra::DisplaySettings& s) {
  std::vector<sedra::WindowPlace> screens;
  size_t current = 0;
  const QScreen* underCursor = QGuiApplication::screenAt(QCursor::pos());
  if (!underCursor) underCursor = QGuiApplication::primaryScreen();
  for (const QScreen* screen : QGuiApplication::screens()) {
    if (screen == underCursor) current = screens.size();
    const QRect r = screen->availableGeometry();
    screens.push_back({r.x(), r.y(), r.width(), r.height()});
  }
  const sedra::WindowPlace stored{s.WindowX, s.WindowY, s.WindowWidth, s.WindowHeight};
  const sedra::WindowPlace place = sedra::VisibleWindowPlace(stored, screens, current);
  if (place != stored) window.setGeometry(place.X, place.Y, place.Width, place.Height);
}

}  // namespace

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  sedra::RegisterFontSubstitutes();
  // The command line is ignored.  The settings live in the working folder, or in the
  // user's configuration folder for an installed program.
  const std::filesystem::path settingsFolder =
      sedra::ChooseSettingsFolder(QCoreApplication::applicationFilePath().toStdString(),
                                  std::filesystem::current_path(), Environment("XDG_CONFIG_HOME"), Environment("HOME"));
  auto model = std::make_unique<sedra::Model>();
  sedra::DesktopPrompt prompt;
  auto window = sedra::StartUp(*model, prompt, settingsFolder);
  if (!window) return 0;
  prompt.SetOwner(window.get());
  PlaceOnScreen(*window, model->Settings());
  // Settings that cannot be saved (a read-only file, a folder that refuses new files)
  // are told once, now; the program runs on and leaves those files as they are.
  const sedra::SettingsSave writable = sedra::CheckSettingsWritable(settingsFolder);
  if (!writable.Saved) prompt.Tell(sedra::SettingsNotSavedMessage(writable), "", sedra::Icon::Exclamation);
  const int code = app.exec();
  return code == 0 ? 1 : code;
}
