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

// "Expand" (1) with the typed depths, or "Normal" (1471) from an expanded 50..80 mm.
TEST(ExpandDialog, TypedDepthsExpandTheRangeOrAreRefusedAndNormalShowsTheWholeSection) {
  struct Row {
    const char* top;
    const char* bottom;
    int button;
    bool expanded;
    float expandTop, expandBottom;
    int first, last;
  } rows[] = {
      {"1100", "1110", 1, false, 0, 10, 0, 0},      // 10 mm of 300: too small, yet kept
      {"1100", "1115", 1, true, 0, 15, 0, 75},      // exactly 5%: accepted
      {"1150", "1250", 1, true, 50, 150, 250, 750},
      {"1200", "9999", 1, true, 100, 300, 500, 1500},    // cut to the section end
      {"1150.5", "1250.5", 1, true, 50.5, 150.5, 253, 753},  // 50.5 mm of 300 is point 252.5
      {"", "", 1471, false, 0, 300, 0, 1500},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.top);
    test::FakeHost host;
    test::LoadSection(host.M, 1500, 1100);  // 300 mm
    PlotState& p = host.M.Plot();
    if (r.button == 1471) p.Expanded = 1, p.ExpandTop = 50, p.ExpandBottom = 80, p.ViewFirstPoint = 250;
    QPointer<ExpandDialog> dialog = ShowTool<ExpandDialog>(host);
    EXPECT_EQ(std::tie(p.HRegionMode, p.Tracking), std::tuple(1u, 1u));
    EXPECT_EQ(Control<QLineEdit>(dialog, 1476)->text(), "1100") << "the current region, absolute";
    Control<QLineEdit>(dialog, 1476)->setText(QString::fromLatin1(r.top));
    Control<QLineEdit>(dialog, 1478)->setText(QString::fromLatin1(r.bottom));
    std::tie(p.ZoomFactor, p.NeedLayout, p.TrackRect) = std::tuple(4, 0u, IntRect{10, 20, 300, 40});
    Control<QPushButton>(dialog, r.button)->click();
    const bool refused = r.button == 1 && !r.expanded;
    EXPECT_EQ(host.Prompt.Texts(), std::vector<std::string>(refused, msg::kExpandTooSmall));
    EXPECT_EQ(std::tuple(p.ExpandTop, p.ExpandBottom), std::tuple(r.expandTop, r.expandBottom));
    if (refused) {
      EXPECT_EQ(host.Prompt.Messages[0].IconKind, Icon::Exclamation);
      EXPECT_EQ(host.Tool, dialog.data()) << "the dialog stays open";
      EXPECT_EQ(std::tie(p.Expanded, p.Tracking, p.NeedLayout), std::tuple(0u, 1u, 0u));
      dialog->close();
    } else {
      EXPECT_EQ(std::tie(p.Expanded, p.NeedLayout, p.ViewFirstPoint, p.ViewLastPoint),
                std::tuple(unsigned(r.expanded), 1u, r.first, r.last));
      EXPECT_FLOAT_EQ(p.DepthSpan, r.expandBottom - r.expandTop);
    }
    // However it ended: the modes and the band are cleared, the host forgot it, 100% again.
    EXPECT_EQ(host.Tool, nullptr);
    EXPECT_EQ(std::tie(p.HRegionMode, p.Tracking, p.ZoomFactor, p.TrackRect.Right), std::tuple(0u, 0u, 1, 0));
    EXPECT_GE(host.Repaints, 1);
  }
}

}  // namespace
}  // namespace sedra
