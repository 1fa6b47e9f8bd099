#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPointer>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTimer>
#include <cstring>

#include "app/dialogs.h"
#include "app_fixture.h"
#include "model/core.h"
#include "model/messages.h"

namespace sedra {
namespace {

using test::AppTest;

template <typename T>
T* Control(QWidget* dialog, int id) {
  T* c = dialog->findChild<T*>(QStringLiteral("ctl%1").arg(id));
  EXPECT_NE(c, nullptr) << id;
  return c;
}

void LoadThreeHundredMm(Model& m, int startLabel) {
  RadiographDesc& r = m.CurRadiograph();
  r.Width = 4;
  r.Height = 1500;
  m.CurSection().RadiographCount = 1;
  m.Work().SampleStep = 1;
  m.Work().StartCoordinate = float(startLabel);
  std::strcpy(m.CurSection().StepSizeText, "200 um");
  UpdateMenusAfterLoad(m, true);  // 1500 points of 0.2 mm: 300 mm
}

TEST_F(AppTest, ExpandDialogAppliesTypedDepths) {
  struct Row {
    const char* top;
    const char* bottom;
    bool accepted;
    float span;
    int first, last;
  } rows[] = {
      {"1100", "1110", false, 0, 0, 0},          // 10 mm of 300: too small
      {"1100", "1115", true, 15, 0, 75},         // exactly 5%: accepted
      {"1150", "1250", true, 100, 250, 750},
      {"1200", "9999", true, 200, 500, 1500},    // cut to the section end
  };
  for (const Row& r : rows) {
    MainWindow& w = Start();
    LoadThreeHundredMm(*model, 1100);
    w.OnCommand(kCmdExpand);
    auto* dialog = qobject_cast<ExpandDialog*>(w.ActiveDialog());
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(model->Plot().HRegionMode, 1u);
    EXPECT_EQ(model->Plot().Tracking, 1u);
    EXPECT_EQ(Control<QLineEdit>(dialog, 1476)->text(), "1100") << "the current region, absolute";
    Control<QLineEdit>(dialog, 1476)->setText(QString::fromLatin1(r.top));
    Control<QLineEdit>(dialog, 1478)->setText(QString::fromLatin1(r.bottom));
    prompt.Messages.clear();
    Control<QPushButton>(dialog, 1)->click();
    const PlotState& p = model->Plot();
    if (!r.accepted) {
      ASSERT_EQ(prompt.Messages.size(), 1u);
      EXPECT_EQ(prompt.Messages[0].Text, msg::kExpandTooSmall);
      EXPECT_EQ(prompt.Messages[0].IconKind, Icon::Exclamation);
      EXPECT_EQ(w.ActiveDialog(), dialog) << "the dialog stays open";
      EXPECT_EQ(p.Expanded, 0u);
      dialog->close();
    } else {
      EXPECT_TRUE(prompt.Messages.empty());
      EXPECT_EQ(p.Expanded, 1u);
      EXPECT_FLOAT_EQ(p.DepthSpan, r.span) << r.top;
      EXPECT_EQ(p.ViewFirstPoint, r.first) << r.top;
      EXPECT_EQ(p.ViewLastPoint, r.last) << r.top;
      EXPECT_EQ(w.ActiveDialog(), nullptr);
    }
    EXPECT_EQ(p.HRegionMode, 0u);
    EXPECT_EQ(p.Tracking, 0u);
    EXPECT_EQ(p.ZoomFactor, 1);
    window.reset();
  }
}

TEST_F(AppTest, ExpandDialogNormalAndZoomEndTheExpansion) {
  MainWindow& w = Start();
  LoadThreeHundredMm(*model, 0);
  PlotState& p = model->Plot();
  p.Expanded = 1;
  p.ExpandTop = 50;
  p.ExpandBottom = 80;
  p.ViewFirstPoint = 250;
  w.OnCommand(kCmdExpand);
  auto* dialog = w.ActiveDialog();
  ASSERT_NE(dialog, nullptr);
  Control<QPushButton>(dialog, 1471)->click();
  EXPECT_EQ(p.Expanded, 0u);
  EXPECT_EQ(p.ViewFirstPoint, 0);
  EXPECT_EQ(p.ViewLastPoint, 1500);
  EXPECT_FLOAT_EQ(p.ExpandTop, 0);
  EXPECT_FLOAT_EQ(p.ExpandBottom, 300);

  p.Expanded = 1;
  p.NeedLayout = 0;
  w.OnCommand(kCmdZoom400);
  EXPECT_EQ(p.Expanded, 0u);
  EXPECT_EQ(p.NeedLayout, 1u);
  EXPECT_FLOAT_EQ(p.DepthSpan, 300);
}

TEST_F(AppTest, SectionDialogEnablesTheLoadedSectionsAndChoosesOne) {
  MainWindow& w = Start();
  LoadThreeHundredMm(*model, 0);
  model->Plot().SectionCount = 3;
  model->Plot().ZoomFactor = 4;
  // The dialog is modal: drive it once it is showing.
  QTimer::singleShot(0, [&] {
    auto* dialog = w.findChild<SectionDialog*>();
    ASSERT_NE(dialog, nullptr);
    for (int i = 0; i < 12; ++i)
      EXPECT_EQ(Control<QRadioButton>(dialog, 1477 + i)->isEnabled(), i < 3) << i;
    EXPECT_TRUE(Control<QRadioButton>(dialog, 1477)->isChecked());
    Control<QCheckBox>(dialog, 1490)->setChecked(true);
    Control<QRadioButton>(dialog, 1478)->click();
  });
  w.OnCommand(kCmdSection);
  const PlotState& p = model->Plot();
  EXPECT_EQ(p.CurSectionIndex, 1);
  EXPECT_EQ(p.CurRadiographIndex, 0);
  EXPECT_EQ(p.ShowAllSections, 0u);
  EXPECT_EQ(p.ImageCoversAll, 1u);
  EXPECT_EQ(p.ZoomFactor, 1) << "choosing a section returns to 100%";
  EXPECT_EQ(p.NeedLayout, 1u);
  EXPECT_TRUE(w.Action(kCmdZoom100)->isChecked());
  EXPECT_EQ(w.findChild<SectionDialog*>(), nullptr);
}

TEST_F(AppTest, SectionDialogDisplayAllGreysTheSingleSectionMenus) {
  MainWindow& w = Start();
  LoadThreeHundredMm(*model, 0);
  model->Plot().SectionCount = 2;
  QTimer::singleShot(0, [&] {
    auto* dialog = w.findChild<SectionDialog*>();
    ASSERT_NE(dialog, nullptr);
    Control<QCheckBox>(dialog, 1489)->click();
  });
  w.OnCommand(kCmdSection);
  EXPECT_EQ(model->Plot().ShowAllSections, 1u);
  for (int pos : {kMenuExpand, kMenuOptical, kMenuRadiograph, kMenuDefineRegion})
    EXPECT_FALSE(w.TopEntry(pos)->isEnabled()) << pos;
  EXPECT_FALSE(w.Action(kCmdSectionTitle)->isEnabled());
  EXPECT_FALSE(w.Action(kCmdDeletePoints)->isEnabled());
}

TEST_F(AppTest, AboutBoxIsModelessAndCaptionedWithTheTitle) {
  MainWindow& w = Start();
  w.OnCommand(kCmdAbout);
  QPointer<QDialog> about = w.ActiveDialog();
  ASSERT_NE(about.data(), nullptr);
  EXPECT_FALSE(about->isModal());
  EXPECT_EQ(about->windowTitle(), QString::fromLatin1(model->App.Title));
  EXPECT_FALSE(Control<QLabel>(about, 1001)->text().isEmpty());
  Control<QPushButton>(about, 1)->click();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(about.isNull()) << "OK closes the box";
}

}  // namespace
}  // namespace sedra
