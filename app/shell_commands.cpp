#include "app/shell_commands.h"

#include "app/dialogs.h"
#include "app/main_window.h"
#include "app/plot_view.h"
#include "images/load.h"
#include "images/ui/radiograph_position_dialog.h"
#include "images/whole_core.h"
#include "images/ui/image_commands.h"
#include "interact/colour_dialog.h"
#include "interact/information_dialog.h"
#include "interact/interact_commands.h"
#include "model/command_registry.h"
#include "model/core.h"
#include "model/menu_state.h"
#include "model/model.h"
#include "model/prompt.h"
#include "model/settings_files.h"
#include "output/qt/output_commands.h"
#include "output/qt/print_prompt.h"

namespace sedra {

void RegisterShellCommands(CommandRegistry& commands, MainWindow& window) {
  commands.Add(kCmdExit, Needs::Nothing, [&window] { window.close(); });
  commands.Add(kCmdNew, Needs::Nothing, [&window] { NewCore(window.PlotModel(), &window.UserPrompt()); });
  commands.Add(kCmdAbout, Needs::Nothing, [&window] { ShowTool<AboutDialog>(window); });
  commands.Add(kCmdHelp, Needs::Nothing, [&window] { window.OpenHelp(0); });
  for (int id : {kCmdZoom100, kCmdZoom200, kCmdZoom400, kCmdZoom800, kCmdZoom1600, kCmdZoom3200, kCmdExpand})
    commands.Add(id, Needs::Nothing, [&window, id] { window.SetZoom(id); });
  commands.Add(kCmdOverlayOr, Needs::Nothing, [&window] { window.ToggleOverlay(true); });
  commands.Add(kCmdOverlayAnd, Needs::Nothing, [&window] { window.ToggleOverlay(false); });
  commands.Add(kCmdSection, Needs::Nothing, [&window] {
    SectionDialog dialog(window);
    dialog.exec();
  });
  commands.Add(kCmdEditInfo, Needs::Nothing, [&window] {
    InformationDialog dialog(window);
    dialog.exec();
  });
  commands.Add(kCmdColourSetup, Needs::Nothing, [&window] {
    ColourDialog dialog(window, [&window] {
      const SettingsSave save = WriteSettings(window.PlotModel(), window.SettingsFolder());
      if (!save.Saved) window.TellSettingsNotSaved(save);
    });
    dialog.exec();
  });
}

void RegisterAllCommands(Model& model, Prompt& prompt, MainWindow& window) {
  CommandRegistry& commands = window.Commands();
  RegisterShellCommands(commands, window);
  RegisterInteractCommands(commands, window);
  // A RAW read always starts at 100%, as the zoom command sets it.
  RegisterReadCommands(commands, model, prompt, [&window] { window.SetZoom(kCmdZoom100); });
  RegisterImageCommands(commands, window);
  RegisterWholeCoreCommands(commands, model, prompt,
                            [&window](int count) { return ChooseRadiographPosition(&window, count); });
  OutputTargets output{window, *window.View(), [&window] { return window.ScrollPos(); }};
  // Printing needs the print dialog as well; the desktop prompt offers both.
  RegisterOutputCommands(commands, model, prompt, dynamic_cast<PrintPrompt*>(&prompt), output);
}

}  // namespace sedra
