// Every action of the menu, triggered as a user would: it reaches its handler and does
// what it should, does nothing because what it needs is not loaded, or is on the list
// of commands not built yet.
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>
#include <algorithm>
#include <fstream>
#include <functional>
#include <map>

#include "app/dialogs.h"
#include "app_fixture.h"
#include "images/ui/data_region_dialog.h"
#include "images/ui/image_size_dialogs.h"
#include "images/ui/image_windows.h"
#include "images/ui/rad_contrast_dialog.h"
#include "interact/annotation_dialogs.h"
#include "interact/colour_dialog.h"
#include "interact/data_dialogs.h"
#include "interact/expand_dialog.h"
#include "interact/information_dialog.h"
#include "interact/text_dialogs.h"
#include "model/command_registry.h"
#include "model/messages.h"

namespace sedra {
namespace {

using test::AppTest;
using test::LoadSection;

std::vector<QAction*> MenuActions(MainWindow& w) {
  std::vector<QAction*> out;
  for (QAction* top : w.menuBar()->actions()) {
    if (top->menu())
      for (QAction* item : top->menu()->actions()) out.push_back(item);
    else
      out.push_back(top);
  }
  return out;
}

using Check = std::function<void(AppTest&, MainWindow&)>;

// What each built command visibly does on a loaded section.
std::map<int, Check> Effects() {
  auto zoom = [](int factor) {
    return [factor](AppTest& t, MainWindow&) { EXPECT_EQ(t.model->Plot().ZoomFactor, factor); };
  };
  auto opens = [](auto* kind, std::vector<uint32_t PlotState::*> modes) {
    return [modes](AppTest& t, MainWindow& w) {
      EXPECT_NE(dynamic_cast<decltype(kind)>(w.ActiveTool()), nullptr);
      for (uint32_t PlotState::*mode : modes) EXPECT_EQ(t.model->Plot().*mode, 1u);
    };
  };
  auto asksFor = [](const char* title, bool save) {
    return [title, save](AppTest& t, MainWindow&) {
      const auto& requests = save ? t.prompt.SaveRequests : t.prompt.OpenRequests;
      ASSERT_EQ(requests.size(), 1u);
      EXPECT_EQ(requests[0].Title, title);
    };
  };
  // The section has a radiograph and no optical image.
  auto nothingOpens = [](AppTest& t, MainWindow& w) {
    EXPECT_EQ(w.ActiveTool(), nullptr);
    EXPECT_TRUE(t.prompt.Messages.empty());
  };
  auto radiographWindowShown = [](MainWindow& w) {
    auto* window = w.findChild<RadImageWindow*>();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isVisible());
  };
  return {
      {kCmdOpticalContrast, nothingOpens},
      {kCmdOpticalSize, nothingOpens},
      {kCmdRadContrast, [radiographWindowShown](AppTest& t, MainWindow& w) {
         EXPECT_NE(qobject_cast<RadContrastDialog*>(w.ActiveTool()), nullptr);
         EXPECT_EQ(t.model->Plot().RadContrastOpen, 1u);
         radiographWindowShown(w);
       }},
      {kCmdImageSize, [](AppTest& t, MainWindow& w) {
         EXPECT_NE(qobject_cast<RadiographSizeDialog*>(w.ActiveTool()), nullptr);
         EXPECT_EQ(t.model->Plot().ImageSizeMode, 1u);
         EXPECT_EQ(t.model->Plot().Tracking, 1u);
       }},
      {kCmdDataRegion, [radiographWindowShown](AppTest& t, MainWindow& w) {
         EXPECT_NE(qobject_cast<DataRegionDialog*>(w.ActiveTool()), nullptr);
         EXPECT_EQ(t.model->Plot().DataRegionMode, 1u);
         radiographWindowShown(w);
       }},
      {kCmdExit, [](AppTest&, MainWindow& w) { EXPECT_FALSE(w.isVisible()); }},
      {kCmdPrint, [](AppTest& t, MainWindow& w) {
         EXPECT_EQ(t.prompt.PrintDialogs, 1);
         EXPECT_TRUE(w.isEnabled());
       }},
      {kCmdPrintPdf, asksFor("Print as PDF file", true)},
      {kCmdReadOptical, [](AppTest& t, MainWindow&) {
         // The metadata is read even after the file dialog was cancelled.
         EXPECT_EQ(t.prompt.OpenRequests.size(), 1u);
         EXPECT_EQ(t.prompt.Texts(), std::vector<std::string>{msg::kDocumentNotFound});
       }},
      {kCmdReadRadiograph, asksFor("Open TIFF file", false)},
      {kCmdReadRawHighRes, asksFor("Open Raw Radiograph file", false)},
      {kCmdReadRawMaxRes, asksFor("Open Raw Radiograph file", false)},
      {kCmdSaveImage, asksFor("Save Current Display as Image file", true)},
      {kCmdCopyClipboard, [](AppTest& t, MainWindow&) {
         EXPECT_EQ(t.prompt.Texts(), std::vector<std::string>{msg::kCopiedToClipboard});
       }},
      {kCmdNew, [](AppTest& t, MainWindow& w) {
         EXPECT_EQ(t.model->CurSection().PointCount, 0);
         EXPECT_FALSE(w.TopEntry(kMenuZoom)->isEnabled());
       }},
      {kCmdAddSection, [](AppTest& t, MainWindow&) {
         EXPECT_EQ(t.prompt.OpenRequests.size(), 1u);
         EXPECT_EQ(t.model->Plot().SectionCount, 1) << "cancelled: no slot filled";
       }},
      {kCmdAddRadiograph, [](AppTest& t, MainWindow&) {
         EXPECT_EQ(t.prompt.OpenRequests.size(), 1u);
         EXPECT_EQ(t.model->CurSection().RadiographCount, 1);
       }},
      {kCmdRemoveSection, [](AppTest& t, MainWindow&) { EXPECT_EQ(t.model->CurSection().PointCount, 0); }},
      {kCmdAbout, [](AppTest&, MainWindow& w) { EXPECT_NE(qobject_cast<AboutDialog*>(w.ActiveTool()), nullptr); }},
      {kCmdZoom100, zoom(1)}, {kCmdZoom200, zoom(2)}, {kCmdZoom400, zoom(4)},
      {kCmdZoom800, zoom(8)}, {kCmdZoom1600, zoom(16)}, {kCmdZoom3200, zoom(32)},
      {kCmdExpand, [](AppTest&, MainWindow& w) { EXPECT_NE(qobject_cast<ExpandDialog*>(w.ActiveTool()), nullptr); }},
      {kCmdOverlayOr, [](AppTest& t, MainWindow&) { EXPECT_EQ(t.model->Plot().OverlayOr, 1u); }},
      {kCmdOverlayAnd, [](AppTest& t, MainWindow&) { EXPECT_EQ(t.model->Plot().OverlayAnd, 1u); }},
      {kCmdSection, [](AppTest& t, MainWindow&) { EXPECT_EQ(t.model->Plot().NeedLayout, 1u); }},
      {kCmdHRegion, opens((HRegionDialog*)nullptr, {&PlotState::HRegionMode, &PlotState::Tracking})},
      {kCmdVRegion, opens((VRegionDialog*)nullptr, {&PlotState::VLineMode, &PlotState::VRegionMode})},
      {kCmdHLine, opens((HLineDialog*)nullptr, {&PlotState::HLineMode, &PlotState::Tracking})},
      {kCmdVLine, opens((VLineDialog*)nullptr, {&PlotState::VLineMode, &PlotState::Tracking})},
      {kCmdDeletePoints, opens((DeletePointsDialog*)nullptr, {&PlotState::DeleteMode, &PlotState::Tracking})},
      // The two modal dialogs are answered below: a start depth and "Finished"; a
      // warnings tick and "OK".
      {kCmdEditInfo, [](AppTest& t, MainWindow& w) {
         EXPECT_FLOAT_EQ(t.model->CurSection().StartDepth, 1234);
         EXPECT_EQ(t.model->Plot().NeedLayout, 1u);
         EXPECT_FALSE(w.Action(kCmdImageSize)->isEnabled()) << "the sizing box starts unticked";
       }},
      {kCmdColourSetup, [](AppTest&, MainWindow& w) {
         uint32_t words[254] = {};
         std::ifstream(w.SettingsFolder() / "defaults.def", std::ios::binary).read(reinterpret_cast<char*>(words), sizeof words);
         EXPECT_EQ(words[668 / 4], 1u) << "the warnings tick, written by OK";
       }},
      {kCmdMainTitle, opens((MainTitleDialog*)nullptr, {&PlotState::MainTitleMode})},
      {kCmdSectionTitle, opens((SectionTitleDialog*)nullptr, {&PlotState::SectionTitleMode})},
      {kCmdSetText, opens((TextFieldDialog*)nullptr, {&PlotState::TextFieldMode})},
  };
}

TEST_F(AppTest, EveryMenuActionReachesItsHandlerOrIsKnownToBeMissing) {
  const std::map<int, Check> effects = Effects();
  const std::vector<int>& missing = CommandsNotYetBuilt();
  std::vector<int> ids;
  for (QAction* a : MenuActions(Start())) ids.push_back(a->data().toInt());
  ASSERT_EQ(ids.size(), 39u) << "every item of the eleven entries";

  for (int id : ids) {
    SCOPED_TRACE(id);
    const bool isMissing = std::count(missing.begin(), missing.end(), id) != 0;
    MainWindow& w = Start();
    LoadSection(*model, 1500);
    EXPECT_EQ(w.Commands().Has(id), !isMissing) << "a command is built or on the missing list, not both";
    std::vector<std::pair<int, bool>> seen;
    w.Commands().Observer = [&seen](int c, bool ran) { seen.emplace_back(c, ran); };
    // The modal dialogs of the menu answer at once.
    QTimer::singleShot(0, [&w] {
      if (auto* d = w.findChild<SectionDialog*>()) d->OnFinished();
      if (auto* d = w.findChild<InformationDialog*>()) {
        Control<QLineEdit>(d, 1490)->setText("01/01/2020");
        Control<QLineEdit>(d, 1484)->setText("1234");
        d->OnFinished();
      }
      if (auto* d = w.findChild<ColourDialog*>()) {
        Control<QCheckBox>(d, 1503)->setChecked(true);
        d->OnOk();
      }
    });
    model->Plot().NeedLayout = 0;
    w.Action(id)->setEnabled(true);
    w.Action(id)->trigger();
    QApplication::processEvents();
    if (isMissing) {
      EXPECT_TRUE(seen.empty());
      continue;
    }
    // The section dialog goes on to 100% when it closes: only the first one is ours.
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen.front(), std::make_pair(id, Satisfied(w.Commands().NeedsOf(id), *model)));
    ASSERT_TRUE(effects.count(id)) << "a built command needs its row of effects";
    effects.at(id)(*this, w);
    if (ToolDialog* tool = w.ActiveTool()) tool->EndTool();
  }
}

// Commands that need an image do nothing at all without it, and run with it.
TEST_F(AppTest, CommandsThatNeedAnImageAreSilentWithoutIt) {
  MainWindow& w = Start();
  int runs = 0;
  w.Commands().Add(70001, Needs::OpticalImage, [&runs] { ++runs; });
  w.Commands().Add(70002, Needs::Radiograph, [&runs] { ++runs; });
  w.OnCommand(70001);
  w.OnCommand(70002);
  EXPECT_EQ(runs, 0);
  EXPECT_TRUE(prompt.Messages.empty());
  LoadSection(*model, 100);
  w.OnCommand(70001);
  w.OnCommand(70002);
  EXPECT_EQ(runs, 1) << "only the radiograph is there";
  w.OnCommand(9999);  // an unknown id does nothing
}

TEST_F(AppTest, ReadRadiographWithUnsavedChangesAsksFirstAndNoChangesNothing) {
  MainWindow& w = Start();
  model->Plot().Modified = 1;
  model->Plot().ZoomFactor = 4;
  prompt.Answers.push_back(Answer::No);
  w.OnCommand(kCmdReadRadiograph);
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{msg::kContinueWithoutSaving});
  EXPECT_TRUE(prompt.OpenRequests.empty()) << "no file dialog after No";
  EXPECT_EQ(model->Plot().Modified, 1u);
  EXPECT_EQ(model->Plot().ZoomFactor, 4);
}

}  // namespace
}  // namespace sedra
