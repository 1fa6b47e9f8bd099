#pragma once
// PlotHost: what the windows and dialogs working on the plot need from the window that
// shows it.  The main window implements it; nothing below the application reaches the
// main window any other way, so a tool can be tried on a bare host in a test.

#include <Qt>

class QRect;
class QWidget;

namespace sedra {

class Model;
class Prompt;
class ToolDialog;

class PlotHost {
 public:
  virtual ~PlotHost() = default;

  virtual Model& PlotModel() = 0;
  // Every question to the user goes through it.
  virtual Prompt& UserPrompt() = 0;
  // The window that owns dialogs and image windows.
  virtual QWidget* OwnerWindow() = 0;

  // Repaints the whole plot, background erased, after applying the menu state.
  virtual void Repaint() = 0;
  // Repaints a rectangle of the plot view (client coordinates) in which only the rubber
  // band moved: the plot under it is as last painted.
  virtual void RepaintBand(const QRect& client) = 0;
  virtual int ClientHeight() const = 0;
  virtual int ScrollPos() const = 0;
  virtual void SetPlotCursor(Qt::CursorShape shape) = 0;
  // Applies the model's menu state to the menu.
  virtual void ApplyMenuState() = 0;
  // Runs a menu command as if it had been chosen.
  virtual void RunCommand(int id) = 0;

  // The one modeless tool dialog that may be open.  Opening a tool ends the open one
  // first; a tool that ends tells the host with ToolEnded.
  virtual ToolDialog* ActiveTool() const = 0;
  virtual void OpenTool(ToolDialog* tool) = 0;
  virtual void ToolEnded(ToolDialog* tool) = 0;
};

}  // namespace sedra
