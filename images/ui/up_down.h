#pragma once
// The up-down control beside a buddy edit: two arrows that step the whole number in the
// edit within a range, writing it back into the edit.  As the platform's control does,
// it tells its dialog twice for every click (Notified): when the position is about to
// change, before the edit is rewritten, and when the button is let go.  Dialogs that
// apply their edits "when a spin was used and then the edit changed" depend on both.

#include <QWidget>

class QLineEdit;
class QToolButton;

namespace sedra {

class UpDown : public QWidget {
  Q_OBJECT
 public:
  explicit UpDown(QWidget* parent = nullptr);

  void SetBuddy(QLineEdit* edit) { buddy_ = edit; }
  QLineEdit* Buddy() const { return buddy_; }
  // The range as the platform takes it: `lower` may lie above `upper`; the up arrow
  // always moves toward `upper`.
  void SetRange(int lower, int upper);
  int Lower() const { return lower_; }
  int Upper() const { return upper_; }
  // Sets the position and writes it into the buddy.
  void SetPosition(int position);
  int Position() const { return position_; }

  // One click of an arrow (`up`: toward Upper), as the mouse gives it: notify, step from
  // the number in the edit (the stored position when it holds none), write it, notify.
  void Click(bool up);

 signals:
  void Notified();

 private:
  void Press(bool up);
  QToolButton* up_ = nullptr;
  QToolButton* down_ = nullptr;
  QLineEdit* buddy_ = nullptr;
  int lower_ = 0, upper_ = 100, position_ = 0;
};

}  // namespace sedra
