#pragma once
// Start-up in its fixed order: settings files, model, windows.

#include <filesystem>
#include <memory>

namespace sedra {

class Model;
class Prompt;
class MainWindow;

// Reads the settings from `settingsFolder` (first run: creates them), resets the model,
// builds the main window with its hidden image windows on a screen that can show it
// and wires the commands of every layer.  Settings that could not be saved later are
// told once, now.  Returns null (after the settings message) when the program must
// not start.
std::unique_ptr<MainWindow> StartUp(Model& model, Prompt& prompt, const std::filesystem::path& settingsFolder);

}  // namespace sedra
