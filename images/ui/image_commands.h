#pragma once
// The image tools of the menu: "&Contrast" and "&Size/Positon" of the optical image
// (4046, 4053), "&Contrast", "&Image Size" and "&Define Data Region" of the radiograph
// (4060, 4080, 4093).  Each does nothing at all while its image is not loaded.

namespace sedra {

class CommandRegistry;
class PlotHost;

void RegisterImageCommands(CommandRegistry& commands, PlotHost& host);

}  // namespace sedra
