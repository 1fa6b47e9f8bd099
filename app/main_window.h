#pragma once
// The main frame window (objectName SedraPlotClass): the menu, the plot view with its
// vertical scroll bar, command dispatch, keyboard scrolling and close handling.

#include <QDialog>
#include <QMainWindow>
#include <QPointer>
#include <QUrl>
#include <array>
#include <filesystem>
#include <functional>
#include <map>

#include "app/zoom.h"

class QAction;
class QScrollBar;
class QTimer;

namespace sedra {

class Model;
class Prompt;
class PlotView;

class MainWindow : public QMainWindow {
  Q_OBJECT
 public:
  MainWindow(Model& model, Prompt& prompt, std::filesystem::path workFolder, QWidget* parent = nullptr);
  ~MainWindow() override;

  // Runs the command of a menu item (or of a control that sends one).
  void OnCommand(int id);
  // One vertical scroll request, as from the scroll bar or a key.
  void OnVScroll(ScrollCode code, int thumb = 0);
  void SetZoom(int id);

  int ClientHeight() const;
  int ScrollPos() const;
  QScrollBar* VScrollBar() const { return scrollBar_; }
  PlotView* View() const { return view_; }
  QAction* Action(int id) const;
  QAction* TopEntry(int position) const { return topEntries_[size_t(position)]; }

  // Applies the model's menu state to the menu.
  void ApplyMenuState();
  void RequestRepaint();

  // The modeless tool dialog that is open, if any.
  QDialog* ActiveDialog() const { return activeDialog_; }
  void SetActiveDialog(QDialog* dialog) { activeDialog_ = dialog; }
  void ClearActiveDialog(QDialog* dialog) {
    if (activeDialog_ == dialog) activeDialog_ = nullptr;
  }

  // Help: opened through an injectable opener, so tests see which target was asked for.
  using HelpOpener = std::function<void(const QUrl&)>;
  void SetHelpOpener(HelpOpener opener) { helpOpener_ = std::move(opener); }
  // F1: on a menu item it does nothing; after a menu item was highlighted it opens
  // that item's topic; otherwise the contents.
  void OnHelp(bool onMenuItem);
  QUrl HelpTarget(int context) const;

  // Commands of other layers are plugged in by the application (start-up wires them).
  using Command = std::function<void()>;
  void SetCommand(int id, Command command) { commands_[id] = std::move(command); }

  const std::filesystem::path& WorkFolder() const { return workFolder_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void BuildMenu();
  void ToggleOverlay(bool orMode);
  void OnScrollAction(int action);
  void EndSizeMove();

  Model& model_;
  Prompt& prompt_;
  std::filesystem::path workFolder_;
  PlotView* view_ = nullptr;
  QScrollBar* scrollBar_ = nullptr;
  QTimer* sizeMoveTimer_ = nullptr;
  std::array<QAction*, 11> topEntries_{};
  std::map<int, QAction*> actions_;
  std::map<int, Command> commands_;
  QPointer<QDialog> activeDialog_;
  HelpOpener helpOpener_;
  uint64_t appliedMenuGeneration_ = ~uint64_t(0);
};

}  // namespace sedra
