// Every command id of the main window, each with its effect or its deliberate absence.
#include <QApplication>
#include <QPrinter>
#include <QTimer>
#include <functional>

#include "app/dialogs.h"
#include "app_fixture.h"
#include "model/core.h"
#include "model/messages.h"
#include "output/qt/print_prompt.h"

namespace sedra {
namespace {

// The scripted prompt that also answers the print dialog (always cancelled here).
class ScriptedPrintPrompt : public test::ScriptedPrompt, public PrintPrompt {
 public:
  int PrintDialogs = 0;
  bool ChoosePrinter(QPrinter&) override {
    ++PrintDialogs;
    return false;
  }
};

class CommandsTest : public ::testing::Test {
 public:
  void SetUp() override {
    folder = std::filesystem::temp_directory_path() / ("sedra-cmd-" + std::to_string(::getpid()));
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
  }
  void TearDown() override {
    window.reset();
    std::filesystem::remove_all(folder);
  }
  void Start() {
    model = std::make_unique<Model>();
    prompt = std::make_unique<ScriptedPrintPrompt>();
    window = StartUp(*model, *prompt, folder);
    ASSERT_TRUE(window);
    window->SetHelpOpener([this](const QUrl& url) { help.push_back(url); });
  }
  std::filesystem::path folder;
  std::unique_ptr<Model> model;
  std::unique_ptr<ScriptedPrintPrompt> prompt;
  std::unique_ptr<MainWindow> window;
  std::vector<QUrl> help;
};

TEST_F(CommandsTest, EveryCommandIdDoesWhatItShouldOrDeliberatelyNothing) {
  struct Row {
    int id;
    const char* what;
    std::function<void(CommandsTest&)> check;
  };
  auto nothing = [](CommandsTest& t) {
    EXPECT_TRUE(t.prompt->Messages.empty());
    EXPECT_TRUE(t.prompt->OpenRequests.empty());
    EXPECT_TRUE(t.prompt->SaveRequests.empty());
    EXPECT_EQ(t.window->ActiveDialog(), nullptr);
    EXPECT_TRUE(t.window->isVisible());
  };
  auto zoom = [](int factor) {
    return [factor](CommandsTest& t) { EXPECT_EQ(t.model->Plot().ZoomFactor, factor); };
  };
  const std::vector<Row> rows = {
      {kCmdExit, "closes the window", [](CommandsTest& t) { EXPECT_FALSE(t.window->isVisible()); }},
      {kCmdPrint, "asks for a printer; cancel is silent",
       [](CommandsTest& t) {
         EXPECT_EQ(t.prompt->PrintDialogs, 1);
         EXPECT_TRUE(t.prompt->Messages.empty());
         EXPECT_TRUE(t.window->isEnabled());
       }},
      {kCmdPrintPdf, "asks for a PDF file name",
       [](CommandsTest& t) {
         ASSERT_EQ(t.prompt->SaveRequests.size(), 1u);
         ASSERT_FALSE(t.prompt->SaveRequests[0].Filters.empty());
         EXPECT_EQ(t.prompt->SaveRequests[0].Filters[0].Name, "PDF files (*.pdf)");
       }},
      {kCmdReadOptical, "asks for a TIFF and reads the metadata even after cancel",
       [](CommandsTest& t) {
         ASSERT_EQ(t.prompt->OpenRequests.size(), 1u);
         EXPECT_EQ(t.prompt->OpenRequests[0].Title, "Open TIFF file");
         EXPECT_EQ(t.prompt->Texts(), std::vector<std::string>{msg::kDocumentNotFound});
       }},
      {kCmdReadRadiograph, "asks for a TIFF; cancel stops",
       [](CommandsTest& t) {
         ASSERT_EQ(t.prompt->OpenRequests.size(), 1u);
         EXPECT_EQ(t.prompt->OpenRequests[0].Title, "Open TIFF file");
         EXPECT_TRUE(t.prompt->Messages.empty());
       }},
      {kCmdReadRawHighRes, "asks for a RAW file",
       [](CommandsTest& t) {
         ASSERT_EQ(t.prompt->OpenRequests.size(), 1u);
         EXPECT_EQ(t.prompt->OpenRequests[0].Title, "Open Raw Radiograph file");
       }},
      {kCmdReadRawMaxRes, "asks for a RAW file",
       [](CommandsTest& t) {
         ASSERT_EQ(t.prompt->OpenRequests.size(), 1u);
         EXPECT_EQ(t.prompt->OpenRequests[0].Title, "Open Raw Radiograph file");
       }},
      {kCmdAbout, "opens the About box",
       [](CommandsTest& t) { EXPECT_NE(qobject_cast<AboutDialog*>(t.window->ActiveDialog()), nullptr); }},
      {kCmdHelp, "opens the help contents", [](CommandsTest& t) { EXPECT_EQ(t.help.size(), 1u); }},
      {kCmdZoom100, "100%", zoom(1)},
      {kCmdZoom200, "200%", zoom(2)},
      {kCmdZoom400, "400%", zoom(4)},
      {kCmdZoom800, "800%", zoom(8)},
      {kCmdZoom1600, "1600%", zoom(16)},
      {kCmdZoom3200, "3200%", zoom(32)},
      {kCmdExpand, "opens the expanded-region dialog",
       [](CommandsTest& t) { EXPECT_NE(qobject_cast<ExpandDialog*>(t.window->ActiveDialog()), nullptr); }},
      {kCmdOpticalContrast, "nothing without an optical image", nothing},
      {kCmdOpticalSize, "nothing without an optical image", nothing},
      {kCmdRadContrast, "nothing without a radiograph", nothing},
      {kCmdImageSize, "nothing without a radiograph", nothing},
      {kCmdDataRegion, "nothing without a radiograph", nothing},
      {kCmdOverlayOr, "OR overlay on", [](CommandsTest& t) { EXPECT_EQ(t.model->Plot().OverlayOr, 1u); }},
      {kCmdOverlayAnd, "AND overlay on", [](CommandsTest& t) { EXPECT_EQ(t.model->Plot().OverlayAnd, 1u); }},
      // The annotation and set-up tools are not part of this program yet: nothing happens.
      {kCmdHRegion, "not yet available", nothing},
      {kCmdVRegion, "not yet available", nothing},
      {kCmdHLine, "not yet available", nothing},
      {kCmdVLine, "not yet available", nothing},
      {kCmdDeletePoints, "not yet available", nothing},
      {kCmdMainTitle, "not yet available", nothing},
      {kCmdSectionTitle, "not yet available", nothing},
      {kCmdSetText, "not yet available", nothing},
      {kCmdEditInfo, "not yet available", nothing},
      {kCmdColourSetup, "not yet available", nothing},
      {kCmdSection, "runs the section dialog", [](CommandsTest& t) { EXPECT_EQ(t.model->Plot().NeedLayout, 1u); }},
      {kCmdSaveImage, "asks for an image file name",
       [](CommandsTest& t) {
         ASSERT_EQ(t.prompt->SaveRequests.size(), 1u);
         EXPECT_EQ(t.prompt->SaveRequests[0].Title, "Save Current Display as Image file");
       }},
      {kCmdCopyClipboard, "copies the window",
       [](CommandsTest& t) { EXPECT_EQ(t.prompt->Texts(), std::vector<std::string>{msg::kCopiedToClipboard}); }},
      {kCmdNew, "empties the core",
       [](CommandsTest& t) {
         EXPECT_EQ(t.model->Plot().NeedLayout, 0u);
         EXPECT_FALSE(t.window->TopEntry(kMenuZoom)->isEnabled());
       }},
      {9999, "an unknown id does nothing", nothing},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(std::to_string(r.id) + ": " + r.what);
    Start();
    if (r.id == kCmdSection) {
      QTimer::singleShot(0, [this] {
        if (auto* d = window->findChild<SectionDialog*>()) d->OnFinished();
      });
    }
    model->Plot().NeedLayout = 0;
    window->OnCommand(r.id);
    QApplication::processEvents();
    r.check(*this);
    if (QDialog* d = window->ActiveDialog()) d->close();
    window.reset();
  }
}

TEST_F(CommandsTest, ReadRadiographWithUnsavedChangesAsksFirstAndNoChangesNothing) {
  Start();
  model->Plot().Modified = 1;
  model->Plot().ZoomFactor = 4;
  prompt->Answers.push_back(Answer::No);
  window->OnCommand(kCmdReadRadiograph);
  EXPECT_EQ(prompt->Texts(), std::vector<std::string>{msg::kContinueWithoutSaving});
  EXPECT_TRUE(prompt->OpenRequests.empty()) << "no file dialog after No";
  EXPECT_EQ(model->Plot().Modified, 1u);
  EXPECT_EQ(model->Plot().ZoomFactor, 4);
}

}  // namespace
}  // namespace sedra
