#pragma once
// The value read-out (dialog 225): while the left button is held on the plot, a small
// borderless box shows the depth under the pointer, the scanner's spectrum file of that
// measuring point and the value of the data column under it.  It is worked out once,
// when the button goes down, and closed by the button-up.

#include <QDialog>
#include <memory>
#include <string>

namespace Ui {
class dlg225;
}

namespace sedra {

class Model;
struct PlotLayout;

struct ValueLines {
  std::string Depth;  // edit 1476
  std::string File;   // edit 1477
  std::string Value;  // edit 1478
};

// The three lines for the pointer at x and document row y.
ValueLines ValueReadout(const Model& model, const PlotLayout& layout, int x, int y);

class ValuePopup : public QDialog {
  Q_OBJECT
 public:
  explicit ValuePopup(QWidget* owner);
  ~ValuePopup() override;
  void Show(const ValueLines& lines, const QPoint& pointer);

 private:
  std::unique_ptr<Ui::dlg225> ui_;
};

}  // namespace sedra
