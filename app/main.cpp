// sedra-plot: start-up in its fixed order, then the event loop.
#include <QApplication>
#include <cstdlib>
#include <filesystem>

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
  const int code = app.exec();
  return code == 0 ? 1 : code;
}
