#pragma once
// "Optical Image Contrast Dialog" (203): the optical image's brightness window, typed or
// dragged on its histogram, and the colour emphasis of its three trackbars.  The
// optical image window shows the result while it is open.

#include <memory>

#include "images/histogram.h"
#include "images/ui/dialog_support.h"
#include "images/ui/histogram_view.h"

namespace Ui {
class dlg203;
}

namespace sedra {

class OpticalContrastDialog : public ImageToolDialog {
  Q_OBJECT
 public:
  explicit OpticalContrastDialog(PlotHost& host);
  ~OpticalContrastDialog() override;

  // The edits, spins and trackbars from the image's settings.
  void Fill();
  // "Apply Values": both edits as typed (text that is not a number leaves the value).
  void OnApply();
  // A trackbar moved to `position` (0 at the top): its level is 256 - position.
  void OnTrackbar(int id, int position);
  // The histogram and its two markers, as counted from the image.
  void DrawHistogram();
  // The mouse on the histogram: the nearer marker (or the one on the peak's side)
  // follows it.
  void OnHistogramMouse(HistogramView::MouseKind kind, QPoint at);
  void OnOk();

 protected:
  void SetModes() override;
  void ClearModes() override;

 private:
  void ContrastChanged(bool redrawHistogram);
  std::unique_ptr<Ui::dlg203> ui_;
  OpticalCounts counts_{};
  OpticalScale scale_;
};

}  // namespace sedra
