#pragma once
// "Define Region for Expanded Display" (dialog 223): the depth range to spread over
// the whole plot height.  While it is open the mouse drags the range on the plot as a
// horizontal region; typed depths are applied by "Expand".

#include <memory>

#include "ui/tool_dialog.h"

namespace Ui {
class dlg223;
}

namespace sedra {

class ExpandDialog : public ToolDialog {
  Q_OBJECT
 public:
  explicit ExpandDialog(PlotHost& host);
  ~ExpandDialog() override;
  // Puts the current region on the plot and its depths into the two edits.
  void FillFromRegion();
  // "Expand": false (the dialog stays open) when the range is too small.
  bool OnExpand();
  // "Normal": back to the whole section.
  void OnNormal();

 protected:
  void SetModes() override;
  void ClearModes() override;

 private:
  std::unique_ptr<Ui::dlg223> ui_;
};

}  // namespace sedra
