#pragma once
// The print dialog behind an interface, like every other question to the user: the
// desktop shows QPrintDialog, tests choose a printer (or a PDF file) in code.

class QPrinter;

namespace sedra {

class PrintPrompt {
 public:
  virtual ~PrintPrompt() = default;
  // Lets the user pick and set up `printer`.  False when the dialog is cancelled.
  virtual bool ChoosePrinter(QPrinter& printer) = 0;
};

}  // namespace sedra
