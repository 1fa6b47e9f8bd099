// "Define Region for Expanded Display" on a bare host: typed depths, the 5% rule, the
// section end, "Normal", and the modes it holds while open.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <tuple>

#include "interact/expand_dialog.h"
#include "model/messages.h"
#include "plot/plot_fixture.h"
#include "support/fake_host.h"

namespace sedra {
namespace {

TEST(ExpandDialog, TypedDepthsExpandTheRangeOrAreRefused) {
  struct Row {
    const char* top;
    const char* bottom;
    bool accepted;
    float span;
    int first, last;
  } rows[] = {
      {"1100", "1110", false, 0, 0, 0},        // 10 mm of 300: too small
      {"1100", "1115", true, 15, 0, 75},       // exactly 5%: accepted
      {"1150", "1250", true, 100, 250, 750},
      {"1200", "9999", true, 200, 500, 1500},  // cut to the section end
      {"1150.5", "1250.5", true, 100, 253, 753},  // 50.5 mm of 300 is point 252.5
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.top);
    test::FakeHost host;
    test::LoadSection(host.M, 1500, 1100);  // 300 mm
    PlotState& p = host.M.Plot();
    QPointer<ExpandDialog> dialog = ShowTool<ExpandDialog>(host);
    EXPECT_EQ(std::tie(p.HRegionMode, p.Tracking), std::tuple(1u, 1u));
    EXPECT_EQ(Control<QLineEdit>(dialog, 1476)->text(), "1100") << "the current region, absolute";
    Control<QLineEdit>(dialog, 1476)->setText(QString::fromLatin1(r.top));
    Control<QLineEdit>(dialog, 1478)->setText(QString::fromLatin1(r.bottom));
    p.ZoomFactor = 4;
    Control<QPushButton>(dialog, 1)->click();
    if (!r.accepted) {
      EXPECT_EQ(host.Prompt.Texts(), std::vector<std::string>{msg::kExpandTooSmall});
      EXPECT_EQ(host.Prompt.Messages[0].IconKind, Icon::Exclamation);
      EXPECT_EQ(host.Tool, dialog.data()) << "the dialog stays open";
      EXPECT_EQ(std::tie(p.Expanded, p.Tracking), std::tuple(0u, 1u));
      dialog->close();
    } else {
      EXPECT_TRUE(host.Prompt.Messages.empty());
      EXPECT_EQ(std::tie(p.Expanded, p.NeedLayout, p.ViewFirstPoint, p.ViewLastPoint),
                std::tuple(1u, 1u, r.first, r.last));
      EXPECT_FLOAT_EQ(p.DepthSpan, r.span);
    }
    // However it ended: the modes are cleared, the host forgot it, 100% again.
    EXPECT_EQ(host.Tool, nullptr);
    EXPECT_EQ(std::tie(p.HRegionMode, p.Tracking, p.ZoomFactor), std::tuple(0u, 0u, 1));
    EXPECT_GE(host.Repaints, 1);
  }
}

TEST(ExpandDialog, NormalReturnsToTheWholeSection) {
  test::FakeHost host;
  test::LoadSection(host.M, 1500);
  PlotState& p = host.M.Plot();
  p.Expanded = 1;
  p.ExpandTop = 50;
  p.ExpandBottom = 80;
  p.ViewFirstPoint = 250;
  p.TrackRect = {10, 20, 300, 40};
  ExpandDialog* dialog = ShowTool<ExpandDialog>(host);
  Control<QPushButton>(dialog, 1471)->click();
  EXPECT_EQ(std::tie(p.Expanded, p.ViewFirstPoint, p.ViewLastPoint), std::tuple(0u, 0, 1500));
  EXPECT_FLOAT_EQ(p.ExpandTop, 0);
  EXPECT_FLOAT_EQ(p.ExpandBottom, 300);
  EXPECT_EQ(p.TrackRect.Right, 0) << "the rubber band goes with the dialog";
}

}  // namespace
}  // namespace sedra
