// A seeded monkey on a sample section read through the menu: random commands, presses,
// moves, releases (inside and outside the view), double clicks, typing and button
// presses in whatever tool is open.  After every step the model must still hold
// together.  SEDRA_MONKEY_STEPS and SEDRA_MONKEY_SEED change the run (scripts/monkey
// runs long ones under the sanitizers).
#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <cmath>
#include <random>

#include "app/plot_view.h"
#include "app_fixture.h"
#include "interact/data_dialogs.h"
#include "model/menu_state.h"
#include "ui/tool_dialog.h"

namespace sedra {
namespace {

using test::AppTest;

int EnvInt(const char* name, int fallback) {
  const char* v = std::getenv(name);
  return v ? std::atoi(v) : fallback;
}

// What must hold whatever the user did.
void CheckInvariants(const Model& m, const MainWindow& w, bool deleteToolClosed) {
  const PlotState& p = m.Plot();
  const CoreSection& s = m.CurSection();
  ASSERT_TRUE(p.SectionCount >= 0 && p.SectionCount <= kMaxSections && s.PointCount <= kMaxPoints);
  ASSERT_TRUE(p.CurHRegion >= 0 && p.CurHRegion < 8 && p.CurVRegion >= 0 && p.CurVRegion < 8);
  ASSERT_TRUE(p.CurHLine >= 0 && p.CurHLine < 8 && p.CurVLine >= 0 && p.CurVLine < kVLineSlots);
  ASSERT_TRUE(p.CurTextField >= 0 && p.CurTextField < kTextFields && p.CurColumn <= std::max(p.ColumnCount, 0));
  ASSERT_TRUE(p.ViewFirstPoint >= 0 && p.ViewLastPoint <= s.PointCount);  // a range typed above the section may end before it starts
  const bool dragging = p.TitleDrag || p.HeaderDrag || p.TextDrag || p.RadMoveMode;
  if (w.ActiveTool() || dragging) return;
  // No tool and no drag: nothing armed, and no band (the deletion tool leaves its own).
  ASSERT_EQ(p.Tracking + p.HRegionMode + p.VLineMode + p.VRegionMode + p.HLineMode + p.DeleteMode, 0u);
  ASSERT_TRUE(p.TrackRect.Right == 0 || deleteToolClosed);
}

TEST_F(AppTest, MonkeyOnASampleSection) {
  // Two sections: the second is added and removed again by the commands below.
  const std::string core =
      MakeSampleCore("--sections 2 --length 600 --width 40 --optical-length 640 --optical-width 50 --raw-values 0") +
      "/section-0";
  MainWindow& w = Start();
  model->Settings().ShowRadiographData = 1;
  auto read = [&] {
    prompt.Answers.assign(4, Answer::Yes);
    prompt.ChooseFile(core + "1/radiograph.tif");
    w.OnCommand(kCmdReadRadiograph);
    prompt.ChooseFile(core + "1/optical.tif");
    w.OnCommand(kCmdReadOptical);
  };
  read();
  model->Plot().InSizeMove = 0;
  const int commands[] = {kCmdZoom100, kCmdZoom200, kCmdZoom800, kCmdZoom3200, kCmdExpand,  kCmdOverlayOr,
                          kCmdHRegion, kCmdVRegion, kCmdHLine,   kCmdVLine,    kCmdDeletePoints, kCmdNew,
                          kCmdAddSection, kCmdAddSection, kCmdRemoveSection};
  const char* texts[] = {"", "abc", "-99999", "1e30", "nan", "inf", "1000000000", "  5", "1150.5", "-3"};
  std::mt19937 rng(uint32_t(EnvInt("SEDRA_MONKEY_SEED", 1)));
  auto pick = [&rng](int n) { return int(rng() % uint32_t(n)); };
  PlotView* view = w.View();
  bool deleteToolClosed = false;
  const int steps = EnvInt("SEDRA_MONKEY_STEPS", 1500);
  for (int step = 0; step < steps; ++step) {
    const bool deleteOpen = dynamic_cast<DeletePointsDialog*>(w.ActiveTool()) != nullptr;
    const QPoint at(pick(view->width() + 40) - 20, pick(view->height() + 40) - 20);
    const int action = pick(20);
    if (action == 0) {
      const int id = commands[pick(int(std::size(commands)))];
      if (id == kCmdNew) read();
      if (id == kCmdAddSection) prompt.ChooseFile(core + std::to_string(1 + pick(2)) + "/radiograph.tif");
      if (id != kCmdNew) w.OnCommand(id);
    } else if (action < 14) {
      static const QEvent::Type kinds[] = {QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::MouseMove,
                                           QEvent::MouseButtonRelease, QEvent::MouseButtonDblClick};
      const QEvent::Type type = kinds[pick(5)];
      const bool held = type != QEvent::MouseButtonRelease && pick(3) != 0;
      test::SendMouse(view, type, at, held);
    } else if (QDialog* tool = pick(4) ? static_cast<QDialog*>(w.ActiveTool()) : w.findChild<YScaleDialog*>()) {
      const auto edits = tool->findChildren<QLineEdit*>();
      const auto lists = tool->findChildren<QComboBox*>();
      const auto buttons = tool->findChildren<QAbstractButton*>();
      if (action < 16 && !edits.empty()) edits[pick(int(edits.size()))]->setText(texts[pick(10)]);
      else if (action < 17 && !lists.empty()) lists[pick(int(lists.size()))]->setCurrentIndex(pick(9) - 1);
      else if (!buttons.empty()) buttons[pick(int(buttons.size()))]->click();
    }
    QApplication::processEvents();
    if (deleteOpen && !w.ActiveTool()) deleteToolClosed = true;
    if (w.ActiveTool()) deleteToolClosed = false;
    SCOPED_TRACE(step);
    ASSERT_NO_FATAL_FAILURE(CheckInvariants(*model, w, deleteToolClosed));
  }
}

}  // namespace
}  // namespace sedra
