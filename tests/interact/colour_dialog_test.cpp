// "Colour and Data Set-Up" on a bare host: the list, the scroll bars, the swatches, the
// write-back, OK's settings file and Cancel's question.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <filesystem>
#include <fstream>

#include "interact/colour_dialog.h"
#include "model/messages.h"
#include "model/numbers.h"
#include "model/settings_files.h"
#include "plot/plot_fixture.h"
#include "support/fake_host.h"

namespace sedra {
namespace {

void ClickSwatch(ColourDialog& d, int k) {
  QWidget* swatch = Control<QLineEdit>(&d, 1187 + k);
  QMouseEvent press(QEvent::MouseButtonPress, QPointF(2, 2), swatch->mapToGlobal(QPointF(2, 2)), Qt::LeftButton,
                    Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(swatch, &press);
}

TEST(ColourDialog, ScrollBarsChangeTheirComponentFromTheTop) {
  using A = QAbstractSlider;
  const struct {
    int start, action, position, expected;
  } rows[] = {
      {254, A::SliderSingleStepSub, 0, 255}, {255, A::SliderSingleStepSub, 0, 255}, {5, A::SliderSingleStepAdd, 0, 4},
      {0, A::SliderSingleStepAdd, 0, 0},     {250, A::SliderPageStepSub, 0, 255},   {0, A::SliderPageStepSub, 0, 16},
      {100, A::SliderPageStepAdd, 0, 84},    {10, A::SliderPageStepAdd, 0, 0},      {7, A::SliderMove, 55, 200},
      {7, A::SliderToMinimum, 0, 255},       {7, A::SliderToMaximum, 0, 0},         {7, A::SliderNoAction, 0, 7},
  };
  test::FakeHost host;
  uint32_t& axis = host.M.Settings().Colours[kAxisColour];
  ColourDialog dialog(host, {});
  auto* list = Control<QListWidget>(&dialog, 1002);
  for (int bar = 0; bar < 3; ++bar)
    for (const auto& r : rows) {
      SCOPED_TRACE(testing::Message() << bar << " " << r.start << " " << r.action);
      const uint32_t others = 0x405060u & ~(0xFFu << (8 * bar));
      list->setCurrentRow(0);
      axis = others | uint32_t(r.start) << (8 * bar);
      list->setCurrentRow(kAxisColour);
      dialog.OnScroll(bar, r.action, r.position);
      EXPECT_EQ(axis, others | uint32_t(r.expected) << (8 * bar)) << "written back at once";
      EXPECT_EQ(Control<QScrollBar>(&dialog, 1181 + bar)->value(), 255 - r.expected);
      EXPECT_EQ(Control<QLineEdit>(&dialog, 1184 + bar)->text(), QString::number(r.expected));
    }
  // Through the real bar: a page up from 250 lands on 255, not on Qt's own step.
  list->setCurrentRow(0);
  axis = 250;
  list->setCurrentRow(kAxisColour);
  Control<QScrollBar>(&dialog, 1181)->triggerAction(A::SliderPageStepSub);
  EXPECT_EQ(Control<QScrollBar>(&dialog, 1181)->value(), 0);
}

// The list holds the seven elements, then one entry per curve named after the data set
// its column shows.  A swatch colours the entry at once and stays with it when another
// entry is chosen; the preview shows the background above and the colour below.
TEST(ColourDialog, ListAndSwatchesColourTheirEntryAndThePreview) {
  test::FakeHost host;
  DisplaySettings& s = host.M.Settings();
  SetDefaultSettings(s);
  host.M.Plot().DataSetCount = 3;
  CopyField(host.M.Plot().DataSetNames[1], "Radiograph");
  CopyField(host.M.Plot().DataSetNames[4], "Fe");
  s.DataSetOfPlot[0] = 2, s.DataSetOfPlot[1] = 5;
  ColourDialog dialog(host, {});
  auto* list = Control<QListWidget>(&dialog, 1002);
  QStringList texts;
  for (int i = 0; i < list->count(); ++i) texts << list->item(i)->text();
  EXPECT_EQ(texts.join(","), "Background,Axis,Text,Shaded H/L Region,Highlighted Region,Horizontal Lines,"
                             "Vertical Lines,Radiograph Data,Fe Data, Data");
  for (int item = 0; item < 10; ++item) {
    SCOPED_TRACE(item);
    list->setCurrentRow(item);
    ClickSwatch(dialog, 14 - item);
    EXPECT_EQ(test::Rgb(dialog.Preview(), 10, 80), FromColorRef(kSwatchColours[14 - item]).rgb() & 0xFFFFFF);
    EXPECT_EQ(test::Rgb(dialog.Preview(), 10, 20), FromColorRef(s.Colours[0]).rgb() & 0xFFFFFF);
    list->setCurrentRow(item ? 0 : 1);
    EXPECT_EQ(item < 7 ? s.Colours[item] : DataColour(s, item - 7), kSwatchColours[14 - item]);
  }
  EXPECT_EQ(s.DataColours[0], kSwatchColours[5]) << "the third curve's colour, at offset 612";
}

// OK stores the options and writes defaults.def; Cancel asks, and Yes puts the whole
// block back, while No keeps the edits without saving them.
TEST(ColourDialog, OkSavesAndCancelAsksToReset) {
  const auto file = std::filesystem::temp_directory_path() / "defaults.def";
  const struct {
    int button;
    Answer answer;
    uint32_t background, warnings, fontSize, saved;
  } rows[] = {
      {1, Answer::Ok, 0xFF, 1, 30, 0xFF}, {1036, Answer::Yes, 0xFFFFFF, 0, 8, 0}, {1036, Answer::No, 0xFF, 0, 30, 0}};
  for (const auto& r : rows) {
    test::FakeHost host;
    DisplaySettings& s = host.M.Settings();
    SetDefaultSettings(s);
    std::filesystem::remove(file);
    ColourDialog dialog(host, [&] { WriteSettings(host.M, file.parent_path()); });
    ClickSwatch(dialog, 6);
    Control<QCheckBox>(&dialog, 1503)->setChecked(true);
    s.DepthFontSize = 30;
    host.Prompt.Answers.push_back(r.answer);
    Control<QPushButton>(&dialog, r.button)->click();
    EXPECT_EQ(Format("%x %u %d", s.Colours[0], s.ShowWarnings, s.DepthFontSize),
              Format("%x %u %u", r.background, r.warnings, r.fontSize));
    uint32_t words[254] = {};
    std::ifstream(file, std::ios::binary).read(reinterpret_cast<char*>(words), sizeof words);
    EXPECT_EQ(Format("%x %u", words[576 / 4], words[668 / 4]), Format("%x %u", r.saved, r.warnings)) << "only OK saves";
    EXPECT_EQ(host.Prompt.Texts(), std::vector<std::string>(r.button == 1 ? 0 : 1, msg::kResetColours));
    for (const auto& shown : host.Prompt.Messages)
      EXPECT_EQ(std::tuple(shown.Caption, shown.ButtonSet), std::tuple(" ", Buttons::YesNoCancel));
  }
  for (const char* name : {"elements.def", "miscdata.def"}) std::filesystem::remove(file.parent_path() / name);
}

}  // namespace
}  // namespace sedra
