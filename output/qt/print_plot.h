#pragma once
// "&Print" and "Print as PDF file": the whole plot as one landscape page, painted by
// the same PaintPlot that draws the screen.

#include <QDialog>
#include <functional>

class QLabel;
class QPushButton;
class QWidget;

namespace sedra {

class Model;
class Prompt;
class PrintPrompt;

// Progress dialog 221, shown while the page is produced.  No caption, the static
// "Preparing to print the requested data, please wait....." and "&Cancel" (ctl1036).
class PrintProgressDialog : public QDialog {
 public:
  // Clears PrintCancelled, as the dialog did when it was created.
  PrintProgressDialog(Model& model, QWidget* mainWindow);

  // Called first by Cancel: abandons the print job.
  std::function<void()> AbortJob;

  // The Cancel button: abandons the job, clears Printing, sets PrintCancelled,
  // enables the main window again and takes the dialog away.
  void Cancel();

 protected:
  // Escape and the window's close box do not cancel; only the button does.
  void reject() override {}

 private:
  Model& model_;
  QWidget* mainWindow_;
};

// Prints the plot.  toPdf = false: the print dialog through `printPrompt`, then the
// chosen printer.  toPdf = true: asks for a PDF file name through `prompt` and paints
// the same page into it with Qt's PDF engine (no printer is involved).
// `scrollPos` is the main window's vertical scroll position: at zoom above 100% the
// printed part of the plot follows it, scaled to the page.
// The main window is disabled while the page is produced and enabled again on every
// path.  Returns true when a page was finished; messages have been shown otherwise
// (except for a cancelled dialog or a cancelled job, which end silently).
bool PrintPlot(Model& model, Prompt& prompt, PrintPrompt& printPrompt, QWidget& mainWindow, int scrollPos,
               bool toPdf);

}  // namespace sedra
