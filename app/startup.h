#pragma once
// Start-up in its fixed order: settings files, model, windows.

#include <filesystem>
#include <memory>

namespace sedra {

class Model;
class Prompt;
class MainWindow;

// Reads the settings (first run: creates them), resets the model, builds the main
// window with its hidden image windows and wires the commands of every layer.
// Returns null (after the settings message) when the program must not start.
std::unique_ptr<MainWindow> StartUp(Model& model, Prompt& prompt, const std::filesystem::path& workFolder);

}  // namespace sedra
