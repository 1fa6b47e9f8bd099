#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <QScrollBar>
#include <QTest>
#include <cstdio>
#include <tuple>

#include "app_fixture.h"
#include "model/messages.h"
#include "model/settings_files.h"
#include "support/permissions.h"

namespace sedra {
namespace {

using test::AppTest;
using test::LoadSection;

TEST_F(AppTest, FirstStartCreatesTheSettingsAndOpensTheDefaultWindow) {
  MainWindow& w = Start();
  EXPECT_EQ(w.objectName(), "SedraPlotClass");
  EXPECT_EQ(w.windowTitle(), "Sedra-PLOT-Lite - Sedra Image Presentation Software - V2.81");
  EXPECT_EQ(w.frameGeometry(), QRect(5, 5, 1000, 700)) << "the rectangle on screen, frame included";
  for (const char* f : {"defaults.def", "elements.def", "miscdata.def"})
    EXPECT_TRUE(std::filesystem::exists(folder / f)) << f;
  EXPECT_TRUE(w.acceptDrops());
  // The actions follow the menu's state (its rules are the menu rules' tests) from the start.
  EXPECT_FALSE(w.TopEntry(kMenuExpand)->isEnabled());
  EXPECT_FALSE(w.Action(kCmdImageSize)->isEnabled());
  EXPECT_FALSE(w.windowIcon().isNull());
  // The two image windows exist, hidden.
  for (const char* name : {"ImageClass", "RadImageClass"}) {
    auto* child = w.findChild<QWidget*>(QString::fromLatin1(name));
    ASSERT_NE(child, nullptr) << name;
    EXPECT_FALSE(child->isVisible()) << name;
  }
  const WorkingBlock& work = model->Work();
  EXPECT_EQ(std::tie(work.ShowRadiograph, work.ShowOptical, work.ShowCoreName), std::tuple(1u, 1u, 0u))
      << "images shown, the name switches off";
  EXPECT_EQ(std::string(model->App.HelpPath), (std::filesystem::current_path() / "Sedra-PLOT.chm").string());
}

TEST_F(AppTest, ACorruptDefaultsFileStopsTheStart) {
  CreateSettingsIfMissing(*std::make_unique<Model>(), folder);
  std::FILE* f = std::fopen((folder / "defaults.def").c_str(), "r+b");
  std::fseek(f, 10, SEEK_SET);
  std::fputc(0x01, f);
  std::fclose(f);
  model = std::make_unique<Model>();
  window = StartUp(*model, prompt, folder);
  EXPECT_FALSE(window);
  ASSERT_EQ(prompt.Messages.size(), 1u);
  EXPECT_EQ(prompt.Messages[0].Text, msg::kErrorReadingDefaults);
}

// That the files are then left as they were is the settings files' own test.
TEST_F(AppTest, SettingsThatCannotBeSavedAreToldOnce) {
  Start();
  window.reset();
  std::filesystem::permissions(folder / "defaults.def", std::filesystem::perms::owner_read);
  test::WithoutPermissionOverride([&] {
    MainWindow& w = Start();
    ASSERT_EQ(prompt.Messages.size(), 1u);
    EXPECT_NE(prompt.Messages[0].Text.find("defaults.def"), std::string::npos) << prompt.Messages[0].Text;
    w.close();
  });
  EXPECT_EQ(prompt.Messages.size(), 1u) << "the close does not tell it again";
  std::filesystem::permissions(folder / "defaults.def", std::filesystem::perms::owner_all);
}

TEST_F(AppTest, TheMenuHasEveryEntryInItsPosition) {
  MainWindow& w = Start();
  const char* tops[] = {"&File",      "&Zoom",         "E&xpand Core Region",    "&Optical Image",
                        "&Radiograph", "&Element Data", "Def&ine Region etc",     "&Section",
                        "E&dit",      "Colour and Data Set&Up", "About"};
  const QList<QAction*> bar = w.menuBar()->actions();
  ASSERT_EQ(bar.size(), 11);
  for (int i = 0; i < 11; ++i) {
    EXPECT_EQ(bar[i]->text(), QString::fromLatin1(tops[i])) << i;
    EXPECT_EQ(bar[i], w.TopEntry(i));
  }
  const QList<QAction*> file = bar[0]->menu()->actions();
  const int fileIds[] = {4045, 4011, 4102, 4104, 4056, 4063, 4006, 4099, 4076, 4005, 4110, 4111, 4112};
  ASSERT_EQ(file.size(), 13);
  for (int i = 0; i < 13; ++i) EXPECT_EQ(file[i]->data().toInt(), fileIds[i]) << i;
  EXPECT_EQ(w.Action(kCmdOpticalSize)->text(), "&Size/Positon");
  EXPECT_EQ(w.Action(kCmdReadRawHighRes)->text(), "Read Ra&w Radiograph HighRes Image");
}

TEST_F(AppTest, OverlayTogglesAreExclusiveButMayBothBeOff) {
  MainWindow& w = Start();
  const PlotState& p = model->Plot();
  auto state = [&] {
    return std::tuple(p.OverlayOr, p.OverlayAnd, w.Action(kCmdOverlayOr)->isChecked(),
                      w.Action(kCmdOverlayAnd)->isChecked());
  };
  w.OnCommand(kCmdOverlayAnd);
  EXPECT_EQ(state(), std::tuple(0u, 1u, false, true));
  w.OnCommand(kCmdOverlayOr);
  EXPECT_EQ(state(), std::tuple(1u, 0u, true, false));
  w.OnCommand(kCmdOverlayOr);
  EXPECT_EQ(state(), std::tuple(0u, 0u, false, false));
}

TEST_F(AppTest, ZoomShowsTheScrollBarAndKeysScroll) {
  MainWindow& w = Start();
  LoadSection(*model, 1000);
  w.resize(1000, 700);
  const int h = w.ClientHeight();
  w.OnCommand(kCmdZoom200);
  EXPECT_TRUE(w.Action(kCmdZoom200)->isChecked() && !w.Action(kCmdZoom100)->isChecked());
  EXPECT_FALSE(w.VScrollBar()->isHidden());
  EXPECT_EQ(w.VScrollBar()->maximum(), h);

  // Keys, and the scroll bar's own arrows and trough (key 0), in turn.
  struct Row {
    int key, barAction;
    int want;
  } rows[] = {
      {Qt::Key_Down, 0, h / 16 + 1},
      {Qt::Key_PageDown, 0, h / 16 + 1 + h / 3 + 1},
      {Qt::Key_Left, 0, h / 16 + 1 + h / 3 + 1},  // no horizontal scrolling
      {Qt::Key_Right, 0, h / 16 + 1 + h / 3 + 1},
      {Qt::Key_Home, 0, 0},
      {Qt::Key_End, 0, h},
      {Qt::Key_Up, 0, h - (h / 16 - 1)},
      {0, QAbstractSlider::SliderToMinimum, 0},
      {0, QAbstractSlider::SliderPageStepAdd, h / 3 + 1},
      {0, QAbstractSlider::SliderToMaximum, h},  // the bottom is the client height
  };
  for (const Row& r : rows) {
    if (r.key)
      QTest::keyClick(&w, Qt::Key(r.key));
    else
      w.VScrollBar()->triggerAction(QAbstractSlider::SliderAction(r.barAction));
    EXPECT_EQ(w.ScrollPos(), r.want) << r.key << " " << r.barAction;
  }

  w.OnCommand(kCmdZoom100);
  EXPECT_TRUE(w.VScrollBar()->isHidden());
}

TEST_F(AppTest, ExpandWithAllSectionsShownReturnsToTheFullLength) {
  MainWindow& w = Start();
  LoadSection(*model, 1500);  // 300 mm
  PlotState& p = model->Plot();
  p.ShowAllSections = 1;
  p.Expanded = 1;
  p.DepthSpan = 20;
  w.OnCommand(kCmdExpand);
  EXPECT_EQ(w.ActiveTool(), nullptr) << "no region dialog while all sections are shown";
  EXPECT_EQ(std::tie(p.Expanded, p.NeedLayout, p.ZoomFactor), std::tuple(0u, 1u, 1));
  EXPECT_FLOAT_EQ(p.DepthSpan, 300.0f);
}

TEST_F(AppTest, CloseAsksThroughNewWritesSettingsAndRestoresTheRectangle) {
  MainWindow& w = Start();
  w.setGeometry(40, 60, 900, 650);
  const QRect onScreen = w.frameGeometry();
  model->Plot().Modified = 1;
  prompt.Answers.push_back(Answer::No);
  EXPECT_FALSE(w.close()) << "No keeps the window";
  ASSERT_EQ(prompt.Messages.size(), 1u);
  EXPECT_EQ(prompt.Messages[0].Text, msg::kContinueWithoutSaving);
  EXPECT_EQ(model->Plot().Modified, 1u);

  prompt.Answers.push_back(Answer::Yes);
  model->Work().ShowSectionName = 1;
  EXPECT_TRUE(w.close());
  window.reset();
  const DisplaySettings& stored = model->Settings();
  EXPECT_EQ(QRect(stored.WindowX, stored.WindowY, stored.WindowWidth, stored.WindowHeight), onScreen);

  // Next start: the rectangle and the name switch come back.
  model = std::make_unique<Model>();
  test::ScriptedPrompt second;
  auto again = StartUp(*model, second, folder);
  ASSERT_TRUE(again);
  EXPECT_EQ(again->geometry(), QRect(40, 60, 900, 650)) << "the window does not creep";
  EXPECT_EQ(model->Work().ShowSectionName, 1u);
  EXPECT_TRUE(second.Messages.empty());
}

TEST_F(AppTest, ResizeMarksTheLayoutAndSettlesAfterTheDragEnds) {
  MainWindow& w = Start();
  model->Plot().NeedLayout = 0;
  w.resize(800, 600);
  QApplication::processEvents();
  EXPECT_EQ(std::tie(model->Plot().InSizeMove, model->Plot().NeedLayout), std::tuple(1u, 1u));
  QTest::qWait(300);
  EXPECT_EQ(model->Plot().InSizeMove, 0u);
}

}  // namespace
}  // namespace sedra
