#pragma once
// The shell's own dialogs: section selection (214) and About (220).  Each keeps its
// logic in methods that tests call directly; the controls carry the numeric ids as
// objectNames (ctl1477 ...).

#include <QDialog>
#include <memory>

#include "ui/tool_dialog.h"

namespace Ui {
class dlg214;
class dlg220;
}  // namespace Ui

namespace sedra {

class Model;
class PlotHost;

// "Select the Current Section or Display all Core Sections": modal.
class SectionDialog : public QDialog {
  Q_OBJECT
 public:
  explicit SectionDialog(PlotHost& host);
  ~SectionDialog() override;
  void OnSection(int index);
  void OnDisplayAll();
  void OnFinished();

 protected:
  void done(int result) override;

 private:
  void Finish();
  PlotHost& host_;
  Model& model_;
  std::unique_ptr<Ui::dlg214> ui_;
  bool closing_ = false;
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
