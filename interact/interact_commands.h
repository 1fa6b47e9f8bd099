#pragma once
// The menu commands of the annotation and point-deletion tools.

namespace sedra {

class CommandRegistry;
class PlotHost;

void RegisterInteractCommands(CommandRegistry& commands, PlotHost& host);

}  // namespace sedra
