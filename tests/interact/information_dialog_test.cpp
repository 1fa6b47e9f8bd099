// "Core Section Information" on a bare host: every control against its field, the
// order "Finished" stores in, the tick spacing, and what the plot derives afterwards.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLineEdit>
#include <functional>

#include "interact/information_dialog.h"
#include "model/menu_state.h"
#include "model/messages.h"
#include "model/numbers.h"
#include "model/settings_files.h"
#include "plot/plot_fixture.h"
#include "support/fake_host.h"

namespace sedra {
namespace {

QLineEdit* Edit(QDialog& d, int id) { return Control<QLineEdit>(&d, id); }
std::string Str(const char* field) { return field; }

// Section 3, 1500 points of 0.2 mm, is current: the dwell time still goes to section 1.
// Check boxes show "0" and are ticked ("1"); rows 0 are what "Finished" derives: the
// header block, and the depths, the first curve and its menu after the step size and
// "Display Radiograph Data" changed.  The sizing box 1474 only offers "Image Size".
TEST(InformationDialog, EachControlShowsAndStoresItsFieldOnceTheDateIsValid) {
  test::FakeHost host;
  Model& m = host.M;
  m.Plot().SectionCount = 3;
  m.SelectSection(2);
  test::LoadSection(m, 1500);
  CoreSection& s = m.CurSection();
  DisplaySettings& set = m.Settings();
  CopyField(s.CoreName, "CORE-7");
  CopyField(s.ExposureText, "ms");
  m.Section(0).Exposure = 15, s.Exposure = 99;
  s.ScanDay = 3, s.ScanMonth = 4, s.ScanYear = 2025, s.OpticalWidthLabel = 12.34f, s.StartDepth = 1100;
  m.Plot().DepthTick = 7, m.Plot().ColumnLeft = 165, m.Plot().CharHeight = 15, m.Plot().ShowInfo = 0;
  set.ElementFontSize = 9, set.MarginTop = 5;
  const std::string a70(70, 'A');
  auto num = [](double v) { return Format("%g", v); };
  const struct {
    int id;
    const char* shown;
    std::string typed;
    std::function<std::string()> stored;
    std::string expected;
  } rows[] = {
      {1457, "CORE-7", a70, [&] { return Str(s.CoreName); }, std::string(63, 'A')},
      {1471, "", "Section \u00dc", [&] { return Str(s.SectionName); }, "Section \xdc"},
      {1477, "", a70, [&] { return Str(s.UserField); }, std::string(31, 'A')},
      {1468, "", "core7.tif", [&] { return Str(s.FileName); }, "core7.tif"},
      {1470, "", "Mo \u20ac", [&] { return Str(s.TubeText); }, "Mo \x80"},
      {1497, "", "ok \u2603", [&] { return Str(s.CameraText); }, "ok ?"},
      {1508, "", "30 kV", [&] { return Str(s.XrfVoltText); }, "30 kV"},
      {1493, "200 um", "100 um", [&] { return Str(s.StepSizeText); }, "100 um"},
      {1502, "", "10 s", [&] { return Str(s.CountTimeText); }, "10 s"},
      {1446, "", "45 kV", [&] { return Str(s.TubeSettingsText); }, "45 kV"},
      {1490, "03/04/2025", "05/06/26", [&] { return Format("%d.%d.%d", s.ScanDay, s.ScanMonth, s.ScanYear); },
       "5.6.2026"},
      {1447, "15 ms", "20 s", [&] { return Format("%d %d %s", m.Section(0).Exposure, s.Exposure, s.ExposureText); },
       "20 99 s"},
      {1475, "12.3", "7.5", [&] { return num(s.OpticalWidthLabel); }, "7.5"},
      {1484, "1100.0", "1234.5", [&] { return num(s.StartDepth); }, "1234.5"},
      {1476, "0", "1200", [&] { return num(s.StartLabelDepth); }, "1200"},
      {1478, "7", "20", [&] { return num(m.Plot().DepthTick); }, "20"},
      {1487, "9", "12", [&] { return num(set.ElementFontSize); }, "12"},
      {1488, "0", "10", [&] { return num(set.HScaleFontSize); }, "10"},
      {1489, "0", "11", [&] { return num(set.DepthFontSize); }, "11"},
      {1479, "5", "6", [&] { return num(set.MarginTop); }, "6"},
      {1480, "0", "7", [&] { return num(set.MarginBottom); }, "7"},
      {1481, "0", "8", [&] { return num(set.MarginLeft); }, "8"},
      {1482, "0", "9", [&] { return num(set.MarginRight); }, "9"},
      {1472, "0", "1", [&] { return num(m.Plot().ShowInfo); }, "1"},
      {1473, "0", "1", [&] { return num(m.Plot().ShowSmoothPoints); }, "1"},
      {1485, "0", "1", [&] { return num(m.Plot().ShowDividers); }, "1"},
      {1486, "0", "1", [&] { return num(m.Plot().ShowSectionTitles); }, "1"},
      {1483, "0", "1", [&] { return num(set.ShowRadiographData); }, "1"},
      {1491, "0", "1", [&] { return num(m.Work().ShowOptical); }, "1"},
      {1492, "0", "1", [&] { return num(m.Work().ShowCoreName); }, "1"},
      {1494, "0", "1", [&] { return num(m.Work().ShowSectionName); }, "1"},
      {1474, "0", "1", [&] { return num(m.App.Menu.IsItemEnabled(kCmdImageSize)); }, "1"},
      {0, "", "",
       [&] { return Format("%d %d %d", s.SectionTitleFontSize, s.HeaderRect.Left, s.HeaderRect.Top); }, "8 180 15"},
      {0, "", "",
       [&] {
         return Format("%.1f %.1f %d %d", s.Depth[1499], m.Work().EndCoordinate, set.DataSetOfPlot[0],
                       m.App.Menu.IsTopEnabled(kMenuElementData));
       },
       "149.9 1384.5 2 1"},
  };
  InformationDialog dialog(host);
  for (const auto& r : rows) {
    SCOPED_TRACE(r.id);
    if (auto* box = Control<QCheckBox>(&dialog, r.id)) {
      EXPECT_EQ(box->isChecked(), r.shown == std::string("1"));
      box->setChecked(r.typed == "1");
    } else if (r.id) {
      EXPECT_EQ(Edit(dialog, r.id)->text(), QString::fromUtf8(r.shown));
      Edit(dialog, r.id)->setText(QString::fromUtf8(r.typed.c_str()));
    }
  }
  // A refused date stops "Finished" after the file, core, section and user fields.
  Edit(dialog, 1490)->setText("3 April");
  EXPECT_FALSE(dialog.OnFinished());
  EXPECT_EQ(host.Prompt.Texts(), std::vector<std::string>{msg::kDateFormat});
  for (const auto& r : rows) {
    if (r.id == 1468 || r.id == 1457 || r.id == 1471 || r.id == 1477 || r.id == 1470) {
      EXPECT_EQ(r.stored(), r.id == 1470 ? "" : r.expected) << r.id;
    }
  }
  host.Prompt.Messages.clear();
  Edit(dialog, 1490)->setText("05/06/26");
  EXPECT_TRUE(dialog.OnFinished());
  EXPECT_TRUE(host.Prompt.Messages.empty());
  for (const auto& r : rows) EXPECT_EQ(r.stored(), r.expected) << r.id;
}

// 0 on opening comes from the section length; typed below 1 it becomes 100.  Sizes no
// page could use are refused with a message and the old ones kept.
TEST(InformationDialog, DepthTickAndSizeRules) {
  const struct {
    int tick;
    float length;
    const char *shown, *typed, *font, *margin;
    std::string stored;
    std::vector<std::string> messages;
  } rows[] = {
      {0, 299, "10", "10", "12", "20", "10 12 20", {}},
      {0, 300, "25", "25", "0", "20", "25 9 20", {msg::kFontSizeRange}},
      {0, 600, "50", "0", "500", "-4", "100 9 5", {msg::kMarginRange, msg::kFontSizeRange}},
      {7, 900, "7", "x", "72", "100", "100 72 100", {}},
  };
  test::FakeHost host;
  DisplaySettings& set = host.M.Settings();
  SetDefaultSettings(set);
  for (const auto& r : rows) {
    SCOPED_TRACE(r.length);
    host.Prompt.Messages.clear();
    host.M.Plot().DepthTick = r.tick, host.M.Plot().SectionLength[0] = r.length;
    set.HScaleFontSize = 9, set.MarginLeft = 5;
    InformationDialog dialog(host);
    EXPECT_EQ(Edit(dialog, 1478)->text(), r.shown);
    for (auto [id, text] : {std::pair{1478, r.typed}, {1490, "1/1/20"}, {1488, r.font}, {1481, r.margin}})
      Edit(dialog, id)->setText(text);
    ASSERT_TRUE(dialog.OnFinished());
    EXPECT_EQ(Format("%d %d %d", host.M.Plot().DepthTick, set.HScaleFontSize, set.MarginLeft), r.stored);
    EXPECT_EQ(host.Prompt.Texts(), r.messages);
    EXPECT_FALSE(host.M.App.Menu.IsTopEnabled(kMenuElementData)) << "no curve without a radiograph";
  }
}

}  // namespace
}  // namespace sedra
