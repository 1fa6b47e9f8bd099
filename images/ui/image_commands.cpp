#include "images/ui/image_commands.h"

#include "images/ui/data_region_dialog.h"
#include "images/ui/image_size_dialogs.h"
#include "images/ui/optical_contrast_dialog.h"
#include "images/ui/rad_contrast_dialog.h"
#include "model/command_registry.h"
#include "model/menu_state.h"

namespace sedra {

void RegisterImageCommands(CommandRegistry& commands, PlotHost& host) {
  commands.Add(kCmdOpticalContrast, Needs::OpticalImage, [&host] { ShowTool<OpticalContrastDialog>(host); });
  commands.Add(kCmdOpticalSize, Needs::OpticalImage, [&host] { ShowTool<OpticalSizeDialog>(host); });
  commands.Add(kCmdRadContrast, Needs::Radiograph, [&host] { ShowTool<RadContrastDialog>(host); });
  commands.Add(kCmdImageSize, Needs::Radiograph, [&host] { ShowTool<RadiographSizeDialog>(host); });
  commands.Add(kCmdDataRegion, Needs::Radiograph, [&host] { ShowTool<DataRegionDialog>(host); });
}

}  // namespace sedra
