#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <tuple>

#include "app/dialogs.h"
#include "app_fixture.h"
#include "interact/expand_dialog.h"

namespace sedra {
namespace {

using test::AppTest;
using test::LoadSection;

// Choosing a section or "Display All" closes the dialog at 100%; Display All greys the
// menus that work on one section.
TEST_F(AppTest, SectionDialogEnablesTheLoadedSectionsAndChoosesOneOrAll) {
  for (const int click : {1478, 1489}) {
    const bool all = click == 1489;
    SCOPED_TRACE(all ? "display all" : "section 2");
    MainWindow& w = Start();
    LoadSection(*model, 1500);
    model->Plot().SectionCount = 3;
    model->Plot().ZoomFactor = 4;
    // The dialog is modal: drive it once it is showing.
    QTimer::singleShot(0, [&] {
      auto* dialog = w.findChild<SectionDialog*>();
      ASSERT_NE(dialog, nullptr);
      EXPECT_EQ(dialog->objectName(), "dlg214");
      for (int i = 0; i < 12; ++i) EXPECT_EQ(Control<QRadioButton>(dialog, 1477 + i)->isEnabled(), i < 3) << i;
      EXPECT_TRUE(Control<QRadioButton>(dialog, 1477)->isChecked());
      Control<QCheckBox>(dialog, 1490)->setChecked(true);
      Control<QAbstractButton>(dialog, click)->click();
    });
    w.OnCommand(kCmdSection);
    const PlotState& p = model->Plot();
    EXPECT_EQ(std::tie(p.CurSectionIndex, p.CurRadiographIndex, p.ShowAllSections, p.ImageCoversAll, p.NeedLayout),
              std::tuple(all ? 0 : 1, 0, all ? 1u : 0u, 1u, 1u));
    EXPECT_EQ(p.ZoomFactor, 1) << "choosing returns to 100%";
    EXPECT_TRUE(w.Action(kCmdZoom100)->isChecked());
    EXPECT_EQ(w.findChild<SectionDialog*>(), nullptr);
    for (int pos : {kMenuExpand, kMenuOptical, kMenuRadiograph, kMenuDefineRegion})
      EXPECT_EQ(w.TopEntry(pos)->isEnabled(), !all) << pos;
    EXPECT_EQ(w.Action(kCmdSectionTitle)->isEnabled(), !all);
    EXPECT_EQ(w.Action(kCmdDeletePoints)->isEnabled(), !all);
  }
}

TEST_F(AppTest, AboutBoxIsModelessAndCaptionedWithTheTitle) {
  MainWindow& w = Start();
  w.OnCommand(kCmdAbout);
  QPointer<ToolDialog> about = w.ActiveTool();
  ASSERT_NE(about.data(), nullptr);
  EXPECT_EQ(about->objectName(), "dlg220");
  EXPECT_FALSE(about->isModal());
  EXPECT_EQ(about->windowTitle(), QString::fromLatin1(model->App.Title));
  EXPECT_FALSE(Control<QLabel>(about, 1001)->text().isEmpty());
  Control<QPushButton>(about, 1)->click();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(about.isNull()) << "OK closes the box";
}

// One tool at a time: a second tool ends the first (its modes cleared), and the same
// tool chosen again stays open instead of opening twice.  Replacing an image ends the
// open tool; a cancelled read leaves it open.  (New and its question: the core tests.)
TEST_F(AppTest, ToolsDoNotOutliveTheDataTheyWorkOnNorOneAnother) {
  const std::string sample = MakeSampleCore("--length 300 --width 40 --optical-length 320 --raw-values 0");
  struct Row {
    const char* what;
    int command;
    const char* file;  // chosen in the file dialog; null: cancelled
    bool toolEnds;
  } rows[] = {
      {"the same tool again", kCmdExpand, nullptr, false},
      {"another tool", kCmdAbout, nullptr, true},
      {"a radiograph read", kCmdReadRadiograph, "radiograph.tif", true},
      {"an optical read", kCmdReadOptical, "optical.tif", true},
      {"a cancelled optical read", kCmdReadOptical, nullptr, false},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.what);
    MainWindow& w = Start();
    LoadSection(*model, 1500);
    model->Plot().Modified = 1;
    w.OnCommand(kCmdExpand);
    QPointer<ToolDialog> tool = w.ActiveTool();
    ASSERT_NE(qobject_cast<ExpandDialog*>(tool), nullptr);
    prompt.Answers.push_back(Answer::Yes);  // continue without saving
    if (r.file) prompt.ChooseFile(sample + "/" + r.file);
    w.OnCommand(r.command);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(tool.isNull(), r.toolEnds);
    if (r.command == kCmdAbout)
      EXPECT_NE(qobject_cast<AboutDialog*>(w.ActiveTool()), nullptr);
    else
      EXPECT_EQ(w.ActiveTool(), r.toolEnds ? nullptr : tool.data());
    EXPECT_EQ(model->Plot().Tracking + model->Plot().HRegionMode, r.toolEnds ? 0u : 2u) << "the tool's modes";
    if (ToolDialog* open = w.ActiveTool()) open->EndTool();
  }
}

}  // namespace
}  // namespace sedra
