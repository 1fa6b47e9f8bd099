#pragma once
// The main frame window (objectName SedraPlotClass): the menu, the plot view with its
// vertical scroll bar, command dispatch, keyboard scrolling and close handling.  It is
// the PlotHost of every tool dialog and image window.

#include <QMainWindow>
#include <QPointer>
#include <QUrl>
#include <array>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>

#include "app/zoom.h"
#include "model/command_registry.h"
#include "model/settings_files.h"
#include "ui/plot_host.h"

class QAction;
class QScrollBar;
class QTimer;

namespace sedra {

class Model;
class Prompt;
class PlotView;
class ToolDialog;

class MainWindow : public QMainWindow, public PlotHost {
  Q_OBJECT
 public:
  MainWindow(Model& model, Prompt& prompt, std::filesystem::path settingsFolder, QWidget* parent = nullptr);
  ~MainWindow() override;

  // Runs the command of a menu item (or of a control that sends one).
  void OnCommand(int id);
  CommandRegistry& Commands() { return commands_; }
  // One vertical scroll request, as from the scroll bar or a key.
  void OnVScroll(ScrollCode code, int thumb = 0);
  void SetZoom(int id);
  void ToggleOverlay(bool orMode);

  QScrollBar* VScrollBar() const { return scrollBar_; }
  PlotView* View() const { return view_; }
  QAction* Action(int id) const;
  QAction* TopEntry(int position) const { return topEntries_[size_t(position)]; }

  // Help: opened through an injectable opener, so tests see which target was asked for.
  using HelpOpener = std::function<void(const QUrl&)>;
  void SetHelpOpener(HelpOpener opener) { helpOpener_ = std::move(opener); }
  // Where an F1 press came from.  On a menu item it does nothing; in a window the main
  // window owns (a tool dialog, a modal dialog, a file chooser) it opens the topic of
  // the menu item highlighted last, the command that window belongs to; in the main
  // window itself, or before any item was highlighted, the contents.
  enum class HelpFrom { MenuItem, MainWindow, OwnedWindow };
  void OnHelp(HelpFrom from);
  // Which of those a window that received F1 is; nullopt for a window not ours.
  std::optional<HelpFrom> HelpSource(const QWidget* window) const;
  // Opens the help on the topic of command `context`, or its contents for 0.
  void OpenHelp(int context);
  QUrl HelpTarget(int context) const;

  const std::filesystem::path& SettingsFolder() const { return settingsFolder_; }
  // Tells the user that the settings will not be saved, once in a run.
  void TellSettingsNotSaved(const SettingsSave& save);

  // PlotHost.
  Model& PlotModel() override { return model_; }
  Prompt& UserPrompt() override { return prompt_; }
  QWidget* OwnerWindow() override { return this; }
  void Repaint() override;
  void RepaintBand(const QRect& client) override;
  int ClientHeight() const override;
  int ScrollPos() const override;
  void SetPlotCursor(Qt::CursorShape shape) override;
  void ApplyMenuState() override;
  void RunCommand(int id) override { OnCommand(id); }
  ToolDialog* ActiveTool() const override;
  void OpenTool(ToolDialog* tool) override;
  void ToolEnded(ToolDialog* tool) override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  // Sees F1 wherever the keyboard focus is: menus and the dialogs the main window owns
  // never pass it on to the main window by themselves.
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void BuildMenu();
  void OnScrollAction(int action);
  void EndSizeMove();
  void StoreWindowRect();

  Model& model_;
  Prompt& prompt_;
  std::filesystem::path settingsFolder_;
  bool settingsProblemTold_ = false;
  PlotView* view_ = nullptr;
  QScrollBar* scrollBar_ = nullptr;
  QTimer* sizeMoveTimer_ = nullptr;
  std::array<QAction*, 11> topEntries_{};
  std::map<int, QAction*> actions_;
  CommandRegistry commands_;
  QPointer<ToolDialog> activeTool_;
  HelpOpener helpOpener_;
  uint64_t appliedMenuGeneration_ = ~uint64_t(0);
};

}  // namespace sedra
