#pragma once
// The shell's own dialogs: expanded region (223), section selection (214), About (220).
// Each keeps its logic in methods that tests call directly; the controls carry the
// numeric ids as objectNames (ctl1476 ...).

#include <QDialog>
#include <memory>

namespace Ui {
class Dialog223;
class Dialog214;
class Dialog220;
}  // namespace Ui

namespace sedra {

class Model;
class Prompt;
class MainWindow;

// "Define Region for Expanded Display": modeless; the mouse drags the region on the
// plot while it is open, typed depths are applied by "Expand".
class ExpandDialog : public QDialog {
  Q_OBJECT
 public:
  ExpandDialog(Model& model, Prompt& prompt, MainWindow& window);
  ~ExpandDialog() override;
  // Fills the two depth edits from the current region.
  void FillFromRegion();
  // "Expand": returns false (dialog stays open) when the region is too small.
  bool OnExpand();
  void OnNormal();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void reject() override;

 private:
  void Finish();
  Model& model_;
  Prompt& prompt_;
  MainWindow& window_;
  std::unique_ptr<Ui::Dialog223> ui_;
  bool finished_ = false;
};

// "Select the Current Section or Display all Core Sections": modal.
class SectionDialog : public QDialog {
  Q_OBJECT
 public:
  SectionDialog(Model& model, MainWindow& window);
  ~SectionDialog() override;
  void OnSection(int index);
  void OnDisplayAll();
  void OnFinished();

 protected:
  void done(int result) override;

 private:
  void Finish();
  Model& model_;
  MainWindow& window_;
  std::unique_ptr<Ui::Dialog214> ui_;
  bool closing_ = false;
};

// The About box: modeless, captioned with the program title.
class AboutDialog : public QDialog {
  Q_OBJECT
 public:
  AboutDialog(Model& model, QWidget* parent);
  ~AboutDialog() override;

 private:
  std::unique_ptr<Ui::Dialog220> ui_;
};

}  // namespace sedra
