#pragma once
// A modal dialog on the plot that does its closing work once, however it closes:
// its own button, the close box or Escape.  The work runs after the dialog has ended,
// so it may repaint the plot and redo the menus.

#include <QDialog>

namespace sedra {

class ModalDialog : public QDialog {
 public:
  using QDialog::QDialog;

 protected:
  // What closing does, after the dialog has ended with 0.
  virtual void Closed() = 0;

  void done(int) final {
    const bool first = !closing_;
    closing_ = true;
    QDialog::done(0);
    if (first) Closed();
  }

 private:
  bool closing_ = false;
};

}  // namespace sedra
