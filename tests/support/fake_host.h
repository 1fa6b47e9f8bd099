#pragma once
// A PlotHost on a bare widget: tools and image windows tried without the main window.

#include <QRect>
#include <QWidget>
#include <vector>

#include "model/model.h"
#include "support/scripted_prompt.h"
#include "ui/plot_host.h"
#include "ui/tool_dialog.h"

namespace sedra::test {

class FakeHost : public PlotHost {
 public:
  Model M;
  ScriptedPrompt Prompt;
  QWidget Window;
  int Repaints = 0;
  std::vector<QRect> RepaintedRects;
  std::vector<int> Commands;
  Qt::CursorShape Cursor = Qt::ArrowCursor;
  ToolDialog* Tool = nullptr;

  Model& PlotModel() override { return M; }
  sedra::Prompt& UserPrompt() override { return Prompt; }
  QWidget* OwnerWindow() override { return &Window; }
  void Repaint() override { ++Repaints; }
  void RepaintBand(const QRect& r) override { RepaintedRects.push_back(r); }
  int ClientHeight() const override { return 600; }
  int ScrollPos() const override { return 0; }
  void SetPlotCursor(Qt::CursorShape shape) override { Cursor = shape; }
  void ApplyMenuState() override {}
  void RunCommand(int id) override { Commands.push_back(id); }
  ToolDialog* ActiveTool() const override { return Tool; }
  void OpenTool(ToolDialog* tool) override {
    if (Tool && Tool != tool) Tool->EndTool();
    Tool = tool;
    tool->Start();
  }
  void ToolEnded(ToolDialog* tool) override {
    if (Tool == tool) Tool = nullptr;
  }
};

}  // namespace sedra::test
