#pragma once
// Loading a section image end to end: the reader, then for a radiograph its contrast
// regions, automatic contrast and display bits, then the metadata and the menu state.
// The menu commands "Read &Optical Image" (4011), "Read &Radiograph Image" (4045),
// "Read Ra&w Radiograph HighRes Image" (4102) and "Read Raw Radiograph MaxRes Image"
// (4104) are the Command* functions.

#include <functional>

#include "import/read_support.h"

namespace sedra {

class CommandRegistry;
class Model;
class Prompt;

// After a reader filled the current radiograph's samples: region 0 spans the image
// and gets the automatic window, which regions 1..7 share; the data region is the
// whole width; the display is drawn from the samples; a repaint is asked for.
void FinishRadiographLoad(Model& model);

// The TIFF reader followed by FinishRadiographLoad for a radiograph.  Result as the reader's.
int LoadTiffImage(Model& model, Prompt& prompt, bool radiograph, bool add, const RadiographPlaceChooser& choosePlace = {});

// The RAW reader followed by FinishRadiographLoad.  Result as the reader's.
int LoadRawRadiograph(Model& model, Prompt& prompt, bool maxRes, const ZoomReset& resetZoom = {});

// 4011: reads the optical image, then the metadata and the menu state whatever the
// reader answered (even after Cancel: the program has always done so).
bool CommandReadOptical(Model& model, Prompt& prompt);

// 4045: New (stops if the user keeps the current core), the radiograph (replacing the
// current one), then the metadata and the menu state.  True when it got that far.
bool CommandReadRadiograph(Model& model, Prompt& prompt);

// 4102 (maxRes false) and 4104 (true): as 4045 with the RAW reader.  `resetZoom` sets
// the view to 100% once the file has been chosen.
bool CommandReadRaw(Model& model, Prompt& prompt, bool maxRes, const ZoomReset& resetZoom = {});

// Registers the four read commands.  `resetZoom` sets the view to 100% (a RAW read
// does so once the file has been chosen).
void RegisterReadCommands(CommandRegistry& commands, Model& model, Prompt& prompt, std::function<void()> resetZoom);

}  // namespace sedra
