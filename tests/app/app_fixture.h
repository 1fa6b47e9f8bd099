#pragma once
// A started program in a temporary working folder, with a scripted Prompt that also
// answers the print dialog (always cancelled).

#include <gtest/gtest.h>

#include <QPrinter>
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

  std::filesystem::path folder;
  std::unique_ptr<Model> model;
  ScriptedPrintPrompt prompt;
  std::unique_ptr<MainWindow> window;
  std::vector<QUrl> helpRequests;
};

}  // namespace sedra::test
