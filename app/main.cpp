// sedra-plot: start-up in its fixed order, then the event loop.
#include <QApplication>
#include <filesystem>

#include "app/desktop_prompt.h"
#include "app/main_window.h"
#include "app/startup.h"
#include "model/model.h"
#include "plot/fonts.h"

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  sedra::RegisterFontSubstitutes();
  // The command line is ignored; the settings live in the working folder.
  auto model = std::make_unique<sedra::Model>();
  sedra::DesktopPrompt prompt;
  auto window = sedra::StartUp(*model, prompt, std::filesystem::current_path());
  if (!window) return 0;
  prompt.SetOwner(window.get());
  const int code = app.exec();
  return code == 0 ? 1 : code;
}
