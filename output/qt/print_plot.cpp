#include "output/qt/print_plot.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>
#include <cerrno>
#include <filesystem>
#include <memory>

#include "model/file_replace.h"
#include "model/messages.h"
#include "model/model.h"
#include "model/numbers.h"
#include "model/prompt.h"
#include "output/page_rect.h"
#include "output/qt/print_prompt.h"
#include "output/qt/replacing_device.h"
#include "output/save_rules.h"
#include "plot/paint_plot.h"

namespace sedra {

PrintProgressDialog::PrintProgressDialog(Model& model, QWidget* mainWindow)
    : QDialog(mainWindow), model_(model), mainWindow_(mainWindow) {
  setObjectName(QStringLiteral("dlg221"));
  setWindowTitle(QString());
  setModal(false);
  auto* text = new QLabel(QString::fromLatin1(msg::kPreparingToPrint), this);
  text->setObjectName(QStringLiteral("ctl_static"));
  auto* cancel = new QPushButton(QStringLiteral("&Cancel"), this);
  cancel->setObjectName(QStringLiteral("ctl1036"));
  cancel->setAutoDefault(false);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text);
  layout->addWidget(cancel, 0, Qt::AlignHCenter);
  connect(cancel, &QPushButton::clicked, this, [this] { Cancel(); });
  model_.Plot().PrintCancelled = 0;
}

void PrintProgressDialog::Cancel() {
  if (AbortJob) AbortJob();
  model_.Plot().Printing = 0;
  model_.Plot().PrintCancelled = 1;
  if (mainWindow_) mainWindow_->setEnabled(true);
  hide();
}

namespace {

// Stands in for the abort procedure the print job calls while the page is spooled:
// serve the waiting events (the Cancel button, repaints of other windows) unless the
// job is already cancelled.  True while printing may go on.
bool ServeEventsWhilePrinting(const Model& model) {
  if (!model.Plot().PrintCancelled) QCoreApplication::processEvents();
  return !model.Plot().PrintCancelled;
}

std::string PdfFileName(const std::string& chosen) {
  // A name typed without extension gets ".pdf", as the PDF printer drivers did.
  if (std::filesystem::path(chosen).has_extension()) return chosen;
  return chosen + ".pdf";
}

// Everything that must be undone however PrintPlot leaves.
struct PrintSession {
  Prompt& prompt;
  Model& model;
  QWidget& mainWindow;
  std::unique_ptr<PrintProgressDialog> progress;

  ~PrintSession() {
    prompt.SetBusy(false);
    mainWindow.setEnabled(true);
    progress.reset();
    model.Plot().Printing = 0;
    // The page left its layout in PlotState; the screen lays itself out again.
    model.RequestRepaint();
  }
};

// Lays out and paints the page on `painter`, whose device has the given resolution and
// paper size in device pixels, with the margins of the settings.
void PaintPage(Model& model, QPainter& painter, int dpiX, int dpiY, QSize paper, int scrollPos) {
  PlotState& plot = model.Plot();
  plot.Printing = 1;
  plot.PageRect = PrintPageRect(model.Settings(), dpiX, dpiY, paper.width(), paper.height());
  plot.NeedLayout = 1;
  PaintTarget target;
  target.Client = QRect(QPoint(plot.PageRect.Left, plot.PageRect.Top),
                        QPoint(plot.PageRect.Right - 1, plot.PageRect.Bottom - 1));
  target.ScrollPos = scrollPos;
  PaintPlot(model, painter, target);
  plot.Printing = 0;
  plot.NeedLayout = 1;
}

// Shows the progress dialog with the main window disabled; `abort` abandons the job.
void ShowProgress(PrintSession& session, std::function<void()> abort) {
  session.progress = std::make_unique<PrintProgressDialog>(session.model, &session.mainWindow);
  session.progress->AbortJob = std::move(abort);
  session.mainWindow.setEnabled(false);
  // Qt disables a disabled widget's child windows too; the progress dialog must stay
  // usable, as an owned window does, or nothing could cancel the job.
  session.progress->setEnabled(true);
  session.progress->show();
  session.progress->repaint();
}

// "Print as PDF file": the page of a landscape printer set-up, painted by Qt's PDF
// engine into a file that replaces the chosen one only when complete.
bool PrintToPdf(Model& model, Prompt& prompt, PrintSession& session, const std::string& path, int scrollPos) {
  QPrinter setup(QPrinter::HighResolution);
  setup.setOutputFormat(QPrinter::PdfFormat);
  setup.setPageOrientation(QPageLayout::Landscape);
  PdfFile pdf(path);
  if (!pdf.Open()) {
    // Without a driver to look for, the one way the PDF cannot be begun is a file that
    // cannot be created.
    prompt.Tell(msg::kNoPdfDriver);
    return false;
  }
  QPdfWriter& writer = pdf.Writer();
  writer.setResolution(setup.resolution());
  writer.setPageLayout(setup.pageLayout());
  writer.setPageMargins(QMarginsF(0, 0, 0, 0));  // device coordinates start at the paper's corner
  writer.setTitle(QStringLiteral("Sedra Plot"));
  ShowProgress(session, [] {});

  QPainter painter;
  if (!painter.begin(&writer)) {
    prompt.Tell(msg::kNoPdfDriver);
    return false;
  }
  const QSize paper = writer.pageLayout().fullRectPixels(writer.resolution()).size();
  PaintPage(model, painter, writer.logicalDpiX(), writer.logicalDpiY(), paper, scrollPos);
  // Cancelled while the page was made: the file is never committed, so nothing
  // replaces an earlier one.
  const bool cancelled = !ServeEventsWhilePrinting(model);
  painter.end();
  if (cancelled) return false;
  if (!pdf.Commit()) {
    prompt.Tell(FileNotWrittenMessage(path, pdf.Error()));
    return false;
  }
  return true;
}

// "&Print": the print dialog, then the chosen printer.
bool PrintToPrinter(Model& model, Prompt& prompt, PrintPrompt& printPrompt, PrintSession& session, int scrollPos) {
  QPrinter printer(QPrinter::HighResolution);
  if (!printPrompt.ChoosePrinter(printer)) return false;
  ShowProgress(session, [&printer] { printer.abort(); });
  printer.setPageOrientation(QPageLayout::Landscape);
  printer.setFullPage(true);  // device coordinates start at the paper's corner
  printer.setDocName(QStringLiteral("Sedra Plot"));

  // Beginning the painter starts the document and its first page in one step, so
  // there is no separate point where starting the page alone could fail.
  QPainter painter;
  if (!painter.begin(&printer)) {
    prompt.Tell(Format(msg::kStartDocFailed, errno));
    prompt.Tell(msg::kCouldNotFinishPrinting);
    return false;
  }
  const QRect paper = printer.paperRect(QPrinter::DevicePixel).toRect();
  PaintPage(model, painter, printer.logicalDpiX(), printer.logicalDpiY(), paper.size(), scrollPos);
  if (!ServeEventsWhilePrinting(model)) {
    painter.end();  // the job was abandoned by Cancel
    return false;
  }
  bool finished = true;
  if (printer.printerState() == QPrinter::Error) {
    prompt.Tell(Format(msg::kEndPageFailed, errno));
    finished = false;
  }
  if (!painter.end() && finished) {
    prompt.Tell(Format(msg::kEndDocFailed, errno));
    finished = false;
  }
  if (!finished) {
    printer.abort();
    prompt.Tell(msg::kCouldNotFinishPrinting);
  }
  return finished;
}

}  // namespace

bool PrintPlot(Model& model, Prompt& prompt, PrintPrompt& printPrompt, QWidget& mainWindow, int scrollPos,
               bool toPdf) {
  std::string pdfPath;
  if (toPdf) {
    FileRequest request;
    request.Title = "Print as PDF file";
    request.Filters = {{"PDF files (*.pdf)", "*.pdf"}};
    request.FilterIndex = 1;
    request.InitialDir = WorkingFolder();
    const FileChoice choice = prompt.SaveFile(request);
    if (!choice.Accepted) return false;
    pdfPath = PdfFileName(choice.Path);
  }
  prompt.SetBusy(true);
  PrintSession session{prompt, model, mainWindow, nullptr};
  return toPdf ? PrintToPdf(model, prompt, session, pdfPath, scrollPos)
               : PrintToPrinter(model, prompt, printPrompt, session, scrollPos);
}

}  // namespace sedra
