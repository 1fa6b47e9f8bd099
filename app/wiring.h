#pragma once
// Connects the menu commands that belong to other layers (reading, output, tools).

namespace sedra {

class Model;
class Prompt;
class MainWindow;

void WireCommands(Model& model, Prompt& prompt, MainWindow& window);

}  // namespace sedra
