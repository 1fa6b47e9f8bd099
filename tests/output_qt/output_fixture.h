#pragma once
// Shared pieces of the output tests: a model holding a synthetic radiograph, a main
// window with a plot widget, a scripted print dialog, and small file helpers.

#include <gtest/gtest.h>

#include <QPainter>
#include <QPrinter>
#include <QWidget>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "model/core.h"
#include "model/model.h"
#include "model/settings_files.h"
#include "output/qt/print_prompt.h"
#include "plot/paint_plot.h"
#include "plot/plot_fixture.h"
#include "support/scripted_prompt.h"

namespace sedra::test {

// The radiograph's columns: bands of kBandWidth pixels across the core, alternating
// black and white, so that every band can be found again on a printed page.
constexpr int kRadWidth = 64;
constexpr int kRadHeight = 640;
constexpr int kBandWidth = 16;

inline bool BandIsDark(int column) { return (column / kBandWidth) % 2 == 0; }

// A core of one section with a loaded radiograph of kRadWidth x kRadHeight pixels.
inline std::unique_ptr<Model> ModelWithRadiograph() {
  auto model = std::make_unique<Model>();
  SetDefaultSettings(model->Settings());
  NewCore(*model, nullptr);
  model->Work().ShowRadiograph = 1;
  model->Work().ShowOptical = 1;
  CopyField(model->CurSection().FileName, "KR-03 section 1");
  model->Plot().SectionCount = 1;
  model->Plot().DataRegionLeft = kRadWidth / 4;
  model->Plot().DataRegionRight = kRadWidth * 3 / 4;
  AddRadiograph(*model, 0, kRadWidth, kRadHeight, [](int x, int) { return BandIsDark(x) ? 0u : 0xFFFFFFu; });
  model->CurSection().Radiographs[0].Regions[0] = {0, 0, kRadWidth, kRadHeight, 0, 65535};
  return model;
}

// Paints four known colours, one per quadrant, and counts its paints.
class QuadrantView : public QWidget {
 public:
  explicit QuadrantView(QWidget* parent = nullptr) : QWidget(parent) { setAttribute(Qt::WA_OpaquePaintEvent); }
  int Paints = 0;
  static QColor Expected(int x, int y, int w, int h) {
    const QColor quadrants[] = {{200, 30, 10}, {20, 180, 40}, {10, 40, 220}, {250, 240, 5}};
    return quadrants[(x >= w / 2 ? 1 : 0) + (y >= h / 2 ? 2 : 0)];
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    ++Paints;
    QPainter p(this);
    // From each quadrant's corner to the far corner: the later ones paint over the rest.
    for (int x : {0, width() / 2})
      for (int y : {0, height() / 2}) p.fillRect(x, y, width() - x, height() - y, Expected(x, y, width(), height()));
  }
};

// The print dialog, scripted: either cancelled, or a "printer" that writes a PDF file
// (so the whole "&Print" path runs without a print system).
class ScriptedPrintPrompt : public PrintPrompt {
 public:
  bool Accept = true;
  std::string OutputFile;
  int Calls = 0;
  bool ChoosePrinter(QPrinter& printer) override {
    ++Calls;
    if (!Accept) return false;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString::fromStdString(OutputFile));
    return true;
  }
};

// A model with a radiograph, the main window and the plot view, and scripted prompts.
class OutputTest : public ::testing::Test {
 protected:
  std::unique_ptr<Model> model = ModelWithRadiograph();
  QWidget mainWindow;
  QuadrantView view;
  ScriptedPrompt prompt;
  ScriptedPrintPrompt printer;
};

// PlotState as bytes, to show that a cancelled command changed nothing.
inline std::vector<uint8_t> PlotBytes(const Model& model) {
  std::vector<uint8_t> out(sizeof(PlotState));
  std::memcpy(out.data(), &model.Plot(), sizeof(PlotState));
  return out;
}

}  // namespace sedra::test
