#pragma once
// A started program in a temporary working folder, with a scripted Prompt that also
// answers the print dialog (always cancelled).

#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>
#include <QPrinter>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <unistd.h>

#include "app/main_window.h"
#include "app/startup.h"
#include "model/core.h"
#include "model/model.h"
#include "output/qt/print_prompt.h"
#include "plot/plot_fixture.h"
#include "support/scripted_prompt.h"

namespace sedra::test {

class ScriptedPrintPrompt : public ScriptedPrompt, public PrintPrompt {
 public:
  int PrintDialogs = 0;
  bool ChoosePrinter(QPrinter&) override {
    ++PrintDialogs;
    return false;
  }
};

// A left-button event at `at` in the plot view; `held` whether the button is down after it.
inline void SendMouse(QWidget* view, QEvent::Type type, QPoint at, bool held) {
  QMouseEvent event(type, at, view->mapToGlobal(at), type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                    held ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(view, &event);
}

class AppTest : public ::testing::Test {
 public:
  void SetUp() override {
    folder = std::filesystem::temp_directory_path() /
             ("sedra-app-" + std::to_string(::getpid()) + "-" +
              ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
  }
  void TearDown() override {
    window.reset();
    std::filesystem::remove_all(folder);
  }
  MainWindow& Start() {
    window.reset();
    model = std::make_unique<Model>();
    prompt = ScriptedPrintPrompt{};
    window = StartUp(*model, prompt, folder);
    EXPECT_TRUE(window);
    window->SetHelpOpener([this](const QUrl& url) { helpRequests.push_back(url); });
    return *window;
  }

  // A sample core made by the sample tool in the working folder; its folder.
  std::string MakeSampleCore(const std::string& options) {
    const std::string core = (folder / "core").string();
    EXPECT_EQ(std::system(("\"" SEDRA_SAMPLE_TOOL "\" \"" + core + "\" " + options + " > /dev/null").c_str()), 0);
    return core;
  }

  std::filesystem::path folder;
  std::unique_ptr<Model> model;
  ScriptedPrintPrompt prompt;
  std::unique_ptr<MainWindow> window;
  std::vector<QUrl> helpRequests;
};

}  // namespace sedra::test
