// The main window's plot view hands its mouse to the plot's handlers: the open tool's
// edits follow a drag and the tool acts on them, and the value read-out stays up until
// the button comes up inside.
#include <QApplication>
#include <QLineEdit>

#include "app/plot_view.h"
#include "app_fixture.h"
#include "interact/mouse_engine.h"
#include "interact/plot_mouse.h"
#include "interact/value_popup.h"
#include "ui/tool_dialog.h"

namespace sedra {
namespace {

using test::AppTest;
using test::SendMouse;

// With "Set Image Size and Offset" open, dragging the upper third of the optical image's
// band moves the image: the tool's edits follow and the image is placed by them.
TEST_F(AppTest, ThePlotViewHandsItsMouseToTheToolsAndThePopup) {
  MainWindow& w = Start();
  test::LoadSection(*model, 1500, 1000);
  test::AddOptical(*model, 40, 600, 0x606060u);
  const OpticalImageDesc& opt = model->CurOptical();
  model->Plot().InSizeMove = 0;  // the window has settled
  w.View()->grab();
  w.OnCommand(kCmdOpticalSize);
  ASSERT_NE(w.ActiveTool(), nullptr);
  const int topBefore = opt.OpticalTop;
  const IntRect band = model->Plot().TrackRect;
  ASSERT_GT(band.Bottom - band.Top, 30);
  const QPoint grip{(band.Left + band.Right) / 2, band.Top + 5 - w.ScrollPos()};
  SendMouse(w.View(), QEvent::MouseButtonPress, grip, true);
  SendMouse(w.View(), QEvent::MouseMove, grip + QPoint(0, 40), true);
  SendMouse(w.View(), QEvent::MouseButtonRelease, grip + QPoint(0, 40), false);
  const PlotLayout l = w.View()->Layout();
  EXPECT_EQ(model->Plot().TrackRect.Top, band.Top + 40);
  EXPECT_EQ(Control<QLineEdit>(w.ActiveTool(), 1476)->text(),
            QString::number(DepthAtRow(*model, l, band.Top + 40, true)));
  EXPECT_GT(opt.OpticalTop, topBefore) << "the image moved down with the band";
  EXPECT_EQ(opt.OpticalTop + model->CurSection().StartLabelDepth, DepthAtRow(*model, l, band.Top + 40, true));
  w.ActiveTool()->EndTool();

  const int x = l.ColumnLeft + 20, y = l.TopMargin + 100;
  SendMouse(w.View(), QEvent::MouseButtonPress, {x, y}, true);
  QPointer<ValuePopup> popup = w.View()->Mouse().Popup();
  ASSERT_TRUE(popup && popup->isVisible());
  EXPECT_EQ(Control<QLineEdit>(popup, 1477)->text().toStdString(), ValueReadout(*model, l, x, y).File);
  SendMouse(w.View(), QEvent::MouseButtonRelease, {-5, y}, false);  // outside: not seen
  EXPECT_TRUE(popup && popup->isVisible());
  SendMouse(w.View(), QEvent::MouseButtonRelease, {x, y}, false);
  QApplication::processEvents();
  EXPECT_TRUE(!popup || !popup->isVisible());
}

}  // namespace
}  // namespace sedra
