#pragma once
// "Set Radiograph Position" (dialog 226): where a radiograph added to a section goes
// among the ones it already has.  Modal; its logic is in methods tests call directly.

#include <QDialog>
#include <memory>

namespace Ui {
class dlg226;
}

namespace sedra {

class RadiographPositionDialog : public QDialog {
  Q_OBJECT
 public:
  // `count`: the section's radiographs with the new one.
  RadiographPositionDialog(QWidget* owner, int count);
  ~RadiographPositionDialog() override;
  // The place 0 .. count - 1 the new radiograph takes, from the chosen button; the
  // ones at and after it move one place on.
  int Place() const;
  void OnOk();

 private:
  int count_;
  std::unique_ptr<Ui::dlg226> ui_;
};

// Runs the dialog and answers its place: the reader's place chooser.
int ChooseRadiographPosition(QWidget* owner, int count);

}  // namespace sedra
