#pragma once
// "Define Region of Image to be used for Data Plot" (208): the band of radiograph
// columns the data curve is summed over.  The band is dragged sideways on the
// radiograph window or stepped with the spins; "Cancel" puts the old band back.

#include <memory>

#include "images/ui/dialog_support.h"

namespace Ui {
class dlg208;
}

namespace sedra {

class DataRegionDialog : public ImageToolDialog {
  Q_OBJECT
 public:
  explicit DataRegionDialog(PlotHost& host);
  ~DataRegionDialog() override;

  void OnFinished();
  void OnCancel();

 protected:
  void SetModes() override;
  void ClearModes() override;
  // The radiograph window stands beside the dialog, whose place is known once shown.
  void showEvent(QShowEvent* event) override;

 private:
  // An edit changed after a spin: the band moves to the edits.
  void ApplyEdits();
  void ReadEdits();
  void ShowBand();
  std::unique_ptr<Ui::dlg208> ui_;
  int32_t keptLeft_ = 0, keptRight_ = 0;
};

}  // namespace sedra
