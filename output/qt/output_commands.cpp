#include "output/qt/output_commands.h"

#include "model/command_registry.h"
#include "model/menu_state.h"
#include "output/qt/image_output.h"
#include "output/qt/print_plot.h"

namespace sedra {

void RegisterOutputCommands(CommandRegistry& commands, Model& model, Prompt& prompt, PrintPrompt* printPrompt,
                            const OutputTargets& t) {
  if (printPrompt) {
    for (const bool toPdf : {false, true})
      commands.Add(toPdf ? kCmdPrintPdf : kCmdPrint, Needs::Nothing, [&model, &prompt, printPrompt, t, toPdf] {
        PrintPlot(model, prompt, *printPrompt, t.MainWindow, t.ScrollPos(), toPdf);
      });
  }
  commands.Add(kCmdSaveImage, Needs::Nothing, [&model, &prompt, t] { SaveImage(model, prompt, t.PlotView); });
  commands.Add(kCmdCopyClipboard, Needs::Nothing, [&prompt, t] { CopyToClipboard(prompt, t.PlotView); });
}

}  // namespace sedra
