#include "app/wiring.h"

#include "app/main_window.h"
#include "app/plot_view.h"
#include "images/load.h"
#include "model/menu_state.h"
#include "model/model.h"
#include "model/prompt.h"
#include "output/qt/image_output.h"
#include "output/qt/print_plot.h"
#include "output/qt/print_prompt.h"

namespace sedra {

void WireCommands(Model& model, Prompt& prompt, MainWindow& window) {
  window.SetCommand(kCmdReadOptical, [&model, &prompt] { CommandReadOptical(model, prompt); });
  window.SetCommand(kCmdReadRadiograph, [&model, &prompt] { CommandReadRadiograph(model, prompt); });
  for (const bool maxRes : {false, true}) {
    window.SetCommand(maxRes ? kCmdReadRawMaxRes : kCmdReadRawHighRes, [&model, &prompt, &window, maxRes] {
      // A RAW read always starts at 100%, as the zoom command sets it.
      CommandReadRaw(model, prompt, maxRes, [&window] { window.SetZoom(kCmdZoom100); });
    });
  }

  // Printing needs the print dialog as well; the desktop prompt offers both.
  if (auto* printPrompt = dynamic_cast<PrintPrompt*>(&prompt)) {
    for (const bool toPdf : {false, true}) {
      window.SetCommand(toPdf ? kCmdPrintPdf : kCmdPrint, [&model, &prompt, printPrompt, &window, toPdf] {
        PrintPlot(model, prompt, *printPrompt, window, window.ScrollPos(), toPdf);
      });
    }
  }
  window.SetCommand(kCmdSaveImage, [&model, &prompt, &window] { SaveImage(model, prompt, *window.View()); });
  window.SetCommand(kCmdCopyClipboard, [&prompt, &window] { CopyToClipboard(prompt, *window.View()); });
}

}  // namespace sedra
