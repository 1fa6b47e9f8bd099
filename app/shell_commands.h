#pragma once
// The commands the shell owns (exit, new, help, about, zoom, expand, overlays, the
// section choice) and the wiring of every layer's commands into the main window.

namespace sedra {

class CommandRegistry;
class MainWindow;
class Model;
class Prompt;

void RegisterShellCommands(CommandRegistry& commands, MainWindow& window);

// Every command of every layer, registered with the main window.
void RegisterAllCommands(Model& model, Prompt& prompt, MainWindow& window);

}  // namespace sedra
