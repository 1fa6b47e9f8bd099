#pragma once
// The output commands: "&Print", "Print as PDF file", "Save I&mage", "Copy to C&lipboard".

#include <functional>

class QWidget;

namespace sedra {

class CommandRegistry;
class Model;
class Prompt;
class PrintPrompt;

// What the output commands work on: the main window (disabled while a page is made),
// the plot view whose pixels are saved or copied, and the view's scroll position.
struct OutputTargets {
  QWidget& MainWindow;
  QWidget& PlotView;
  std::function<int()> ScrollPos;
};

// Registers the four commands.  Without a print prompt "&Print" is not registered.
void RegisterOutputCommands(CommandRegistry& commands, Model& model, Prompt& prompt, PrintPrompt* printPrompt,
                            const OutputTargets& targets);

}  // namespace sedra
