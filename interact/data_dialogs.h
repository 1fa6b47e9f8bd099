#pragma once
// The two tools that change what the data columns show: "Define Element Data Points
// to delete" (215), which marks or restores the points inside a band dragged on the
// plot, and "Set Y Max and Offset" (224), opened by a double click on a column's header.

#include <memory>

#include "ui/tool_dialog.h"

namespace Ui {
class dlg215;
class dlg224;
}  // namespace Ui

namespace sedra {

struct CoreSection;

// Marks (deleting) or restores the points whose depth lies in [d1, d2] (mm from the
// section start, both ends included) in the section's mask, data set 1: deleting turns
// a positive value into -2 and 0 into -1; restoring turns -2 into 1 and any other
// negative value into 0, so a restored point has the value 1 whatever it held before.
// Returns how many points changed.
int MarkPoints(CoreSection& section, double d1, double d2, bool deleting);

class DeletePointsDialog : public ToolDialog {
  Q_OBJECT
 public:
  explicit DeletePointsDialog(PlotHost& host);
  ~DeletePointsDialog() override;
  void OnDelete();
  void OnUndelete();
  void OnFinished();

 protected:
  void SetModes() override;
  // The band stays on the plot after the tool ends.
  void ClearModes() override;

 private:
  void Mark(bool deleting);
  std::unique_ptr<Ui::dlg215> ui_;
};

// The value scale of data column `column`.  Not a tool: it sets no mode and leaves the
// open tool alone.
class YScaleDialog : public QDialog {
  Q_OBJECT
 public:
  YScaleDialog(PlotHost& host, int column);
  ~YScaleDialog() override;
  // "Apply" and "Finished" (which then closes).
  void OnApply();
  void OnFinished();

 protected:
  void reject() override;

 private:
  PlotHost& host_;
  int column_;
  std::unique_ptr<Ui::dlg224> ui_;
};

}  // namespace sedra
