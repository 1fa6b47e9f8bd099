#pragma once
// Building a whole core: further sections read into the next free slots, further
// radiographs into the current section, and sections taken out again.  The commands
// "Add Core Section" (4110), "Add Radiograph to Section" (4111) and "Remove Current
// Section" (4112).  A refused addition leaves the loaded core exactly as it was.

#include "import/read_support.h"

namespace sedra {

class CommandRegistry;
class Model;
class Prompt;

// 4110: asks for the radiograph of a further section folder and reads it into the next
// free slot, with the folder's optical image (when there is one) and its document.txt
// (pointing out changed scan conditions).  Refused, with a message, when all twelve
// slots are used, the folder has no document.txt, the radiograph's width differs from
// the previous section's or its depths overlap a section already loaded.
bool CommandAddSection(Model& model, Prompt& prompt);

// 4111: reads a further radiograph (at most three) into the current section; `choosePlace`
// says where it goes among the others.  Refused when its width differs from theirs.
bool CommandAddRadiograph(Model& model, Prompt& prompt, const RadiographPlaceChooser& choosePlace);

// Registers 4110, 4111 and 4112.
void RegisterWholeCoreCommands(CommandRegistry& commands, Model& model, Prompt& prompt,
                               RadiographPlaceChooser choosePlace);

}  // namespace sedra
