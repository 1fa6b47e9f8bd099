#include "interact/interact_commands.h"

#include "interact/annotation_dialogs.h"
#include "interact/data_dialogs.h"
#include "interact/text_dialogs.h"
#include "model/command_registry.h"
#include "model/menu_state.h"

namespace sedra {

void RegisterInteractCommands(CommandRegistry& commands, PlotHost& host) {
  commands.Add(kCmdHRegion, Needs::Nothing, [&host] { ShowTool<HRegionDialog>(host); });
  commands.Add(kCmdVRegion, Needs::Nothing, [&host] { ShowTool<VRegionDialog>(host); });
  commands.Add(kCmdHLine, Needs::Nothing, [&host] { ShowTool<HLineDialog>(host); });
  commands.Add(kCmdVLine, Needs::Nothing, [&host] { ShowTool<VLineDialog>(host); });
  commands.Add(kCmdDeletePoints, Needs::Nothing, [&host] { ShowTool<DeletePointsDialog>(host); });
  commands.Add(kCmdMainTitle, Needs::Nothing, [&host] { ShowTool<MainTitleDialog>(host); });
  commands.Add(kCmdSectionTitle, Needs::Nothing, [&host] { ShowTool<SectionTitleDialog>(host); });
  commands.Add(kCmdSetText, Needs::Nothing, [&host] { ShowTool<TextFieldDialog>(host); });
}

}  // namespace sedra
