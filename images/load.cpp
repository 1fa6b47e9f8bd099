#include "images/load.h"

#include "images/auto_contrast.h"
#include "images/contrast.h"
#include "import/document_reader.h"
#include "import/raw_reader.h"
#include "import/tiff_reader.h"
#include "model/command_registry.h"
#include "model/core.h"
#include "model/menu_state.h"
#include "model/model.h"

namespace sedra {

void FinishRadiographLoad(Model& model) {
  RadiographDesc& rad = model.CurRadiograph();
  RadiographRegion& whole = rad.Regions[0];
  // Region 0 is the whole image, its far edges one short of the size: AutoContrast
  // counts below them, so the last row and column never weigh in.
  whole.X1 = 0;
  whole.Y1 = 0;
  whole.X2 = rad.Width - 1;
  whole.Y2 = rad.Height - 1;
  AutoContrast(model, 0);
  ShareWholeWindow(rad);
  PlotState& plot = model.Plot();
  plot.DataRegionLeft = 0;
  plot.DataRegionRight = rad.Width;
  // The display is converted from the samples where it is drawn: converting all of a
  // long radiograph here would cost more than the rest of the load.
  rad.DisplayFromSamples = 1;
  rad.Valid = 1;
  plot.NeedLayout = 1;
  model.RequestRepaint();
}

int LoadTiffImage(Model& model, Prompt& prompt, bool radiograph, bool add, const RadiographPlaceChooser& choosePlace) {
  const ReadOutcome outcome = ReadTiffImage(model, prompt, radiograph, add, choosePlace);
  if (outcome.PixelsRead) {
    model.NotifyImagesReplaced();
    if (radiograph) FinishRadiographLoad(model);
  }
  return outcome.Result;
}

int LoadRawRadiograph(Model& model, Prompt& prompt, bool maxRes, const ZoomReset& resetZoom) {
  const ReadOutcome outcome = ReadRawRadiograph(model, prompt, maxRes, resetZoom);
  if (outcome.PixelsRead) {
    model.NotifyImagesReplaced();
    FinishRadiographLoad(model);
  }
  return outcome.Result;
}

bool CommandReadOptical(Model& model, Prompt& prompt) {
  const int result = LoadTiffImage(model, prompt, false, false);
  ReadSectionMetadata(model, prompt, false);
  UpdateMenusAfterLoad(model, false);
  return result != 0;
}

bool CommandReadRadiograph(Model& model, Prompt& prompt) {
  if (!NewCore(model, &prompt)) return false;
  if (!LoadTiffImage(model, prompt, true, false)) return false;
  ReadSectionMetadata(model, prompt, false);
  UpdateMenusAfterLoad(model, true);
  return true;
}

bool CommandReadRaw(Model& model, Prompt& prompt, bool maxRes, const ZoomReset& resetZoom) {
  if (!NewCore(model, &prompt)) return false;
  if (!LoadRawRadiograph(model, prompt, maxRes, resetZoom)) return false;
  ReadSectionMetadata(model, prompt, false);
  UpdateMenusAfterLoad(model, true);
  return true;
}

void RegisterReadCommands(CommandRegistry& commands, Model& model, Prompt& prompt, std::function<void()> resetZoom) {
  commands.Add(kCmdReadOptical, Needs::Nothing, [&model, &prompt] { CommandReadOptical(model, prompt); });
  commands.Add(kCmdReadRadiograph, Needs::Nothing, [&model, &prompt] { CommandReadRadiograph(model, prompt); });
  for (const bool maxRes : {false, true})
    commands.Add(maxRes ? kCmdReadRawMaxRes : kCmdReadRawHighRes, Needs::Nothing,
                 [&model, &prompt, maxRes, resetZoom] { CommandReadRaw(model, prompt, maxRes, resetZoom); });
}

}  // namespace sedra
