#pragma once
// ToolDialog: a modeless dialog that works on the plot (the expanded region, the regions
// and lines, the image tools, About).  One is open at a time.  Opening another ends it,
// and so does emptying the core under it: a tool never stays open on data that is gone.
//
// A tool sets its mode flags in the plot state when it starts and clears them when it
// ends, however it ends (its buttons, the close box, Escape, another tool, New).

#include <QDialog>

#include "ui/controls.h"
#include "ui/plot_host.h"

namespace sedra {

class ToolDialog : public QDialog {
  Q_OBJECT
 public:
  ToolDialog(PlotHost& host, int resourceId);

  int ResourceId() const { return resourceId_; }
  // Sets the mode flags and shows the dialog.  PlotHost::OpenTool calls it once the
  // tool that was open has ended, so the two never share the flags.
  void Start();
  // Ends the tool: its mode flags are cleared, the host forgets it, the plot is
  // repainted and the dialog closes (and is deleted).  Safe to call more than once.
  void EndTool();
  bool Ended() const { return ended_; }

  // The text of control `id` (an edit the mouse writes depths into); nothing when the
  // dialog has no such control.
  void SetControlText(int id, const QString& text);

  // the mouse moved the rubber band and wrote its depths into the dialog
  virtual void TrackChanged() {}

 protected:
  virtual void SetModes() {}
  virtual void ClearModes() {}
  void closeEvent(QCloseEvent* event) override;
  void reject() override;

  PlotHost& host_;

 private:
  int resourceId_;
  bool ended_ = false;
};

// Opens a tool of type T on the host, or brings the one of that type that is open to
// the front.
template <typename T, typename... Args>
T* ShowTool(PlotHost& host, Args&&... args) {
  if (auto* open = dynamic_cast<T*>(host.ActiveTool())) {
    open->raise();
    open->activateWindow();
    return open;
  }
  auto* tool = new T(host, std::forward<Args>(args)...);
  host.OpenTool(tool);
  return tool;
}

}  // namespace sedra
