#pragma once
// "Radiograph Contrast Dialog" (202): the contrast window of the current radiograph, for
// the whole image (region 0, "Remainder Of Radiograph") or for up to seven rectangles
// the user drags on the radiograph window, with a square-root histogram of the chosen
// region and its two markers.  "Cancel" puts the radiograph's settings back as they
// were when the dialog opened.  While it is open the plot draws no radiograph.

#include <memory>
#include <vector>

#include "images/histogram.h"
#include "images/ui/dialog_support.h"
#include "images/ui/histogram_view.h"
#include "model/model.h"

namespace Ui {
class dlg202;
}

namespace sedra {

class RadContrastDialog : public ImageToolDialog {
  Q_OBJECT
 public:
  explicit RadContrastDialog(PlotHost& host);
  ~RadContrastDialog() override;

  // The edits, spins, radio buttons and title from the current region.
  void Refresh();
  // A region radio button (0: "Remainder Of Radiograph").  Regions 1..7 only once the
  // radiograph window has painted.
  void OnRegion(int k);
  void OnAuto();
  void OnClear();
  void OnApply();
  void OnOk();
  void OnCancel();
  // The histogram of the current region and its markers; the two count boxes.
  void DrawHistogram();
  void OnHistogramMouse(HistogramView::MouseKind kind, QPoint at);

 protected:
  void SetModes() override;
  void ClearModes() override;
  // The radiograph window stands beside the dialog, whose place is known once shown.
  void showEvent(QShowEvent* event) override;

 private:
  RadiographDesc& Rad();
  void ReadEdits();
  void ContrastChanged(bool redrawHistogram);
  const std::vector<uint32_t>& RegionCounts();

  std::unique_ptr<Ui::dlg202> ui_;
  RadiographFields saved_{};
  // The counts of the region last counted: a spin or a marker changes the window,
  // not what is counted.
  std::vector<uint32_t> counts_;
  RadiographRegion countedRegion_{};
  ImageStamp countedImage_;
  RadiographScale scale_;
};

}  // namespace sedra
