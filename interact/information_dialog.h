#pragma once
// "Core Section Information" (dialog 218): the scan metadata of the current section and
// the display options of the plot.  Modal; "Finished" stores every control in a fixed
// order, and closing (however it happens) redoes what a load derives, so the menus and
// the first data column follow the new switches.

#include <memory>

#include "ui/modal_dialog.h"

namespace Ui {
class dlg218;
}

namespace sedra {

class Model;
class PlotHost;

// The tick spacing chosen on opening when none is set, from the section's length.
int DefaultDepthTick(float sectionLength);

class InformationDialog : public ModalDialog {
  Q_OBJECT
 public:
  explicit InformationDialog(PlotHost& host);
  ~InformationDialog() override;
  // "Finished": false when the date was refused (the dialog stays open).
  bool OnFinished();

 protected:
  void Closed() override;

 private:
  void Fill();
  void StoreTexts();
  void StoreNumbers();
  void StoreSizes();
  void StoreSwitches();

  PlotHost& host_;
  Model& model_;
  std::unique_ptr<Ui::dlg218> ui_;
  char stepSizeTextBefore_[96] = {};
};

}  // namespace sedra
