#pragma once
// The shell's own dialogs: section selection (214) and About (220).  Each keeps its
// logic in methods that tests call directly; the controls carry the numeric ids as
// objectNames (ctl1477 ...).

#include <QDialog>
#include <memory>

#include "ui/modal_dialog.h"
#include "ui/tool_dialog.h"

namespace Ui {
class dlg214;
class dlg220;
}  // namespace Ui

namespace sedra {

class Model;
class PlotHost;

// "Select the Current Section or Display all Core Sections": modal; however it closes,
// the plot is laid out again, the menus follow and the zoom returns to 100%.
class SectionDialog : public ModalDialog {
  Q_OBJECT
 public:
  explicit SectionDialog(PlotHost& host);
  ~SectionDialog() override;
  void OnSection(int index);
  void OnDisplayAll();
  void OnFinished();

 protected:
  void Closed() override;

 private:
  void Finish();
  PlotHost& host_;
  Model& model_;
  std::unique_ptr<Ui::dlg214> ui_;
};

// The About box: modeless, captioned with the program title.
class AboutDialog : public ToolDialog {
  Q_OBJECT
 public:
  explicit AboutDialog(PlotHost& host);
  ~AboutDialog() override;

 private:
  std::unique_ptr<Ui::dlg220> ui_;
};

}  // namespace sedra
