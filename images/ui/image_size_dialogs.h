#pragma once
// The two "Set Image Size and Offset" dialogs.  The plot's mouse drags the band they
// put up; they keep the values for "Cancel" and apply them.
//
// 206 (optical image): the depths at which the optical image starts and ends, typed,
// stepped with the spins, or dragged on the plot (the mouse writes the two depth edits
// and calls TrackChanged).
// 123 (radiograph): the band's width, the radiograph's offset and height, dragged on
// the plot; the dialog only keeps and restores them.

#include <memory>

#include "images/ui/dialog_support.h"

namespace Ui {
class dlg206;
class dlg123;
}  // namespace Ui

namespace sedra {

class OpticalSizeDialog : public ImageToolDialog {
  Q_OBJECT
 public:
  explicit OpticalSizeDialog(PlotHost& host);
  ~OpticalSizeDialog() override;

  // Places the image from the two depth edits.  Unless the mouse is dragging, the
  // bottom moves with the top and its edit is rewritten.
  void Apply(bool fromDrag);
  void OnFinished();
  void OnCancel();
  void TrackChanged() override { Apply(true); }

 protected:
  void SetModes() override;
  void ClearModes() override;

 private:
  std::unique_ptr<Ui::dlg206> ui_;
  int32_t keptTop_ = 0, keptLength_ = 0;
};

class RadiographSizeDialog : public ImageToolDialog {
  Q_OBJECT
 public:
  explicit RadiographSizeDialog(PlotHost& host);
  ~RadiographSizeDialog() override;

  void OnFinished();
  void OnCancel();

 protected:
  void SetModes() override;
  void ClearModes() override;

 private:
  std::unique_ptr<Ui::dlg123> ui_;
  int32_t keptWidth_ = 0, keptTopOffset_ = 0;
  float keptHeightScale_ = 1;
};

}  // namespace sedra
