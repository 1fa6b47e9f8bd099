// "&Print" and "Print as PDF file" end to end: the page goes into a real PDF file,
// which poppler reads back (page count, landscape media box, text, rendered pixels).

#include <gtest/gtest.h>

#include <QDialog>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <cstdio>
#include <filesystem>
#include <regex>
#include <tuple>

#include "model/messages.h"
#include "output/file_bytes.h"
#include "output/page_rect.h"
#include "output/qt/print_plot.h"
#include "output_fixture.h"
#include "support/scripted_prompt.h"

namespace sedra::test {
namespace {

// Output of a command line (poppler-utils), or empty when it failed.
std::string RunCommand(const std::string& command) {
  std::string out;
  if (std::FILE* p = popen(command.c_str(), "r")) {
    char buf[4096];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, p)) > 0) out.append(buf, n);
    if (pclose(p) != 0) out.clear();
  }
  return out;
}

std::string Quoted(const std::filesystem::path& p) { return "'" + p.string() + "'"; }

// Checks with pdfinfo that the file holds one landscape page titled as printed;
// returns the page's width in points.
double ExpectOneLandscapePage(const std::filesystem::path& pdf) {
  const std::string text = RunCommand("pdfinfo " + Quoted(pdf));
  std::smatch m;
  const std::regex info("Title: +Sedra Plot\n[^]*Pages: +1\n[^]*Page size: +([\\d.]+) x ([\\d.]+)");
  EXPECT_TRUE(std::regex_search(text, m, info)) << text;
  EXPECT_GT(m.empty() ? 0 : std::stod(m[1]), m.empty() ? 0 : std::stod(m[2])) << "landscape";
  return m.empty() ? 0 : std::stod(m[1]);
}

class PrintPlotTest : public OutputTest {
 protected:
  void SetUp() override {
    DisplaySettings& s = model->Settings();
    s.MarginLeft = s.MarginRight = s.MarginTop = s.MarginBottom = 10;
    mainWindow.resize(1000, 700);
  }
  TempFolder folder{"print"};
};

TEST_F(PrintPlotTest, PdfFileHoldsOneLandscapePageWithTextAndTheRadiographColumns) {
  const auto pdf = folder / "core.pdf";
  prompt.ChooseFile(pdf.string());
  ASSERT_TRUE(PrintPlot(*model, prompt, printer, mainWindow, 0, true));
  ASSERT_EQ(prompt.SaveRequests.size(), 1u);
  const auto& filters = prompt.SaveRequests[0].Filters;
  ASSERT_EQ(filters.size(), 1u);
  EXPECT_EQ(std::tie(filters[0].Name, filters[0].Pattern), std::tuple("PDF files (*.pdf)", "*.pdf"));

  // The page was laid out with the margins at the printer's resolution, and the
  // flags are back for the screen.
  const PlotState& plot = model->Plot();
  EXPECT_EQ(std::tie(plot.PageRect.Left, plot.PageRect.Top), std::tuple(480, 480));  // 10 mm at 1200 dpi, divisor 25
  EXPECT_EQ(std::tie(plot.Printing, plot.NeedLayout), std::tuple(0u, 1u));

  const double paperWidth = plot.PageRect.Right + MarginPixels(10, 1200);
  EXPECT_NEAR(paperWidth * 72.0 / 1200.0, ExpectOneLandscapePage(pdf), 1.0);

  // Vector text: the radiograph column's width label.
  EXPECT_NE(RunCommand("pdftotext " + Quoted(pdf) + " -").find("2 cm"), std::string::npos);

  // The embedded radiograph: each band of columns is found dark or light where the
  // page placed it.
  RunCommand("pdftoppm -gray -singlefile -r 72 " + Quoted(pdf) + " " + Quoted(folder / "page"));
  const QImage page(QString::fromStdString((folder / "page.pgm").string()));
  ASSERT_GT(page.width(), page.height());
  const double scale = double(page.width()) / paperWidth;
  const IntRect dest = model->CurSection().Radiographs[0].DestRect;
  ASSERT_GT(dest.Right - dest.Left, 8 * kRadWidth / kBandWidth / scale) << "radiograph too narrow to check";
  const int y = int((dest.Top + dest.Bottom) / 2 * scale);
  for (int band = 0; band < kRadWidth / kBandWidth; ++band) {
    const double column = band * kBandWidth + kBandWidth / 2.0;
    const int x = int((dest.Left + column * (dest.Right - dest.Left) / kRadWidth) * scale);
    const int grey = qGray(page.pixel(x, y));
    EXPECT_TRUE(BandIsDark(int(column)) ? grey < 60 : grey > 200) << "band " << band << " grey " << grey;
  }
}

TEST_F(PrintPlotTest, AtZoomThePageFollowsTheScreensScrollPositionOnThePrinterAndInTheFile) {
  // Zoom 200% on a 700-pixel screen: scrolled by a whole screen, the page shows the
  // lower half of the plot, so the column labels at the top are not on it.  "&Print"
  // goes through the print dialog to the chosen printer, the PDF file through the file dialog.
  model->Plot().ZoomFactor = 2;
  model->Plot().ScreenHeight = 700;
  const struct {
    int ScrollPos;
    bool ToPdf, LabelsPrinted;
  } rows[] = {{0, false, true}, {700, true, false}};
  for (const auto& r : rows) {
    const auto pdf = folder / ("zoom-" + std::to_string(r.ScrollPos) + ".pdf");
    if (r.ToPdf) prompt.ChooseFile(pdf.string());
    printer.OutputFile = pdf.string();
    ASSERT_TRUE(PrintPlot(*model, prompt, printer, mainWindow, r.ScrollPos, r.ToPdf));
    ExpectOneLandscapePage(pdf);
    EXPECT_EQ(RunCommand("pdftotext " + Quoted(pdf) + " -").find("2 cm") != std::string::npos, r.LabelsPrinted)
        << "scrolled " << r.ScrollPos;
  }
  EXPECT_EQ(printer.Calls, 1) << "the print dialog for the printer only";
  EXPECT_EQ(prompt.SaveRequests.size(), 1u);
  EXPECT_TRUE(prompt.Texts().empty());
}

TEST_F(PrintPlotTest, CancelledDialogsEndSilentlyAndChangeNothing) {
  const auto before = PlotBytes(*model);
  printer.Accept = false;
  EXPECT_FALSE(PrintPlot(*model, prompt, printer, mainWindow, 0, false));
  EXPECT_FALSE(PrintPlot(*model, prompt, printer, mainWindow, 0, true));  // file dialog: no file queued
  EXPECT_EQ(printer.Calls, 1);
  EXPECT_EQ(prompt.SaveRequests.size(), 1u);
  EXPECT_TRUE(prompt.Messages.empty());
  EXPECT_TRUE(mainWindow.isEnabled());
  EXPECT_EQ(PlotBytes(*model), before);
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST_F(PrintPlotTest, APrinterThatCannotStartTheDocumentIsReported) {
  // "StartDoc failed, error:- %d\r\n" with the system's error number, then the failure.
  // (A PDF file that cannot be created is one of the failing writes.)
  printer.OutputFile = (folder / "no-such-folder" / "plot.pdf").string();
  EXPECT_FALSE(PrintPlot(*model, prompt, printer, mainWindow, 0, false));
  ASSERT_EQ(prompt.Messages.size(), 2u);
  EXPECT_TRUE(std::regex_match(prompt.Messages[0].Text, std::regex("StartDoc failed, error:- -?[0-9]+\r\n")))
      << prompt.Messages[0].Text;
  EXPECT_EQ(prompt.Messages[1].Text.rfind(msg::kCouldNotFinishPrinting, 0), 0u) << prompt.Messages[1].Text;
  for (const auto& m : prompt.Messages) EXPECT_EQ(std::tie(m.Caption, m.ButtonSet), std::tuple("", Buttons::Ok));
  EXPECT_TRUE(mainWindow.isEnabled());
  EXPECT_EQ(model->Plot().Printing, 0u);
}

TEST_F(PrintPlotTest, ProgressDialogShowsWhileThePageIsMadeAndCancelAbandonsTheJob) {
  const auto pdf = folder / "cancelled.pdf";
  prompt.ChooseFile(pdf.string());
  bool seen = false, windowWasEnabled = true;
  QString caption = QStringLiteral("unset"), text, button;
  // Runs inside PrintPlot, when it serves the waiting events after painting the page.
  QTimer::singleShot(0, [&] {
    auto* dialog = mainWindow.findChild<QDialog*>(QStringLiteral("dlg221"));
    if (!dialog) return;
    seen = dialog->isVisible();
    windowWasEnabled = mainWindow.isEnabled();
    caption = dialog->windowTitle();
    if (auto* label = dialog->findChild<QLabel*>()) text = label->text();
    if (auto* cancel = dialog->findChild<QPushButton*>(QStringLiteral("ctl1036"))) {
      button = cancel->text();
      cancel->click();
    }
  });
  EXPECT_FALSE(PrintPlot(*model, prompt, printer, mainWindow, 0, true));
  EXPECT_TRUE(seen && !windowWasEnabled) << "shown over a disabled window";
  EXPECT_EQ(caption + "|" + text + "|" + button, QStringLiteral("|%1|&Cancel").arg(msg::kPreparingToPrint));

  EXPECT_TRUE(prompt.Messages.empty());
  EXPECT_TRUE(mainWindow.isEnabled());
  EXPECT_EQ(std::tie(model->Plot().PrintCancelled, model->Plot().Printing), std::tuple(1u, 0u));
  EXPECT_FALSE(std::filesystem::exists(pdf));
  EXPECT_EQ(mainWindow.findChild<QDialog*>(QStringLiteral("dlg221")), nullptr);

  // The next job starts with the flag cleared again.
  prompt.ChooseFile(pdf.string());
  EXPECT_TRUE(PrintPlot(*model, prompt, printer, mainWindow, 0, true));
  EXPECT_EQ(model->Plot().PrintCancelled, 0u);
  EXPECT_TRUE(std::filesystem::exists(pdf));
}

}  // namespace
}  // namespace sedra::test
