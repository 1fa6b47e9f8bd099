// The file choice of "Save I&mage" and the page rectangle of a printed page.

#include <gtest/gtest.h>

#include <tuple>

#include "model/messages.h"
#include "model/model.h"
#include "model/settings_blocks.h"
#include "output/file_bytes.h"
#include "output/page_rect.h"
#include "output/save_rules.h"
#include "support/scripted_prompt.h"

namespace sedra {
namespace {

TEST(WithImageExtension, AppendsOnlyWhenTheNameHasNoDot) {
  const struct {
    const char* Chosen;
    int Filter;
    const char* Written;
  } rows[] = {
      {"/data/plot", kBmpFilter, "/data/plot.bmp"},
      {"/data/plot", kTiffFilter, "/data/plot.tif"},
      {"/data/plot.x", kTiffFilter, "/data/plot.x"},  // kept as typed, TIFF inside
      {"/data/plot.bmp", kTiffFilter, "/data/plot.bmp"},
      {"/data/plot", kJpegFilter, "/data/plot"},
      {"/data/run.2/plot", kBmpFilter, "/data/run.2/plot"},  // a dot anywhere counts
  };
  for (const auto& r : rows) EXPECT_EQ(WithImageExtension(r.Chosen, r.Filter), r.Written) << r.Chosen;
}

TEST(SaveImageRequest, OffersBitmapThenTiffStartingFromTheSectionFile) {
  auto model = std::make_unique<Model>();
  CopyField(model->CurSection().FileName, "KR-03 sect 4");
  const FileRequest r = SaveImageRequest(*model, "/work/lab");
  EXPECT_EQ(r.Title, "Save Current Display as Image file");
  ASSERT_EQ(r.Filters.size(), 2u);
  EXPECT_EQ(std::tie(r.Filters[0].Name, r.Filters[0].Pattern), std::tuple("Bitmap (*.bmp)", "*.bmp"));
  EXPECT_EQ(std::tie(r.Filters[1].Name, r.Filters[1].Pattern), std::tuple("Tiff (*.tif)", "*.tif"));
  EXPECT_EQ(std::tuple(r.FilterIndex, r.InitialName, r.InitialDir), std::tuple(1, "KR-03 sect 4", "/work/lab"));
}

class ChooseImageFileTest : public ::testing::Test {
 protected:
  test::TempFolder folder{"choose"};
  test::ScriptedPrompt prompt;
  FileRequest request{"Save Current Display as Image file", {}, 1, "", ""};
};

// No followed by a cancelled dialog is left to the Save Image tests.
TEST_F(ChooseImageFileTest, ExistingFileAsksYesKeepsItNoBringsTheDialogBack) {
  const std::string existing = (folder / "plot.bmp").string();
  std::fclose(std::fopen(existing.c_str(), "wb"));
  // "plot" becomes plot.bmp, which exists: No, then another name.
  prompt.ChooseFile((folder / "plot").string(), kBmpFilter);
  prompt.Answers.push_back(Answer::No);
  prompt.ChooseFile((folder / "other").string(), kBmpFilter);
  FileChoice c = ChooseImageFile(prompt, request);
  EXPECT_EQ(std::tuple(c.Accepted, c.Path), std::tuple(true, (folder / "other.bmp").string()));
  ASSERT_EQ(prompt.Messages.size(), 1u);
  EXPECT_EQ(prompt.Messages[0].Text, "Overwrite file plot.bmp ?");  // without its folder
  EXPECT_EQ(std::tuple(prompt.Messages[0].Caption, prompt.Messages[0].ButtonSet),
            std::tuple(msg::kFileExistsCaption, Buttons::YesNo));
  ASSERT_EQ(prompt.SaveRequests.size(), 2u);
  EXPECT_EQ(prompt.SaveRequests[1].Title, request.Title);
  // Yes keeps the existing name.
  prompt.ChooseFile(existing, kBmpFilter);
  prompt.Answers.push_back(Answer::Yes);
  c = ChooseImageFile(prompt, request);
  EXPECT_EQ(std::tuple(c.Accepted, c.Path), std::tuple(true, existing));
}

TEST(PrintPageRect, MarginsUseTheDivisor25AndTheBottomUsesTheHorizontalResolution) {
  DisplaySettings s{};
  const struct {
    int16_t Left, Right, Top, Bottom;
    int32_t DpiX, DpiY, Width, Height;
    IntRect Page;
  } rows[] = {
      // 10 mm at 600 dpi is 240 pixels (not 236, as 25.4 would give).
      {10, 10, 10, 10, 600, 600, 7016, 4961, {240, 240, 7016 - 240, 4961 - 240}},
      // The defaults on a 1200 x 600 dpi printer: the bottom margin follows x.
      {7, 10, 5, 10, 1200, 600, 14032, 4961, {336, 120, 14032 - 480, 4961 - 480}},
      // Truncation: 7 mm at 300 dpi is 84, 3 mm at 96 dpi is 11.52 -> 11.
      {7, 3, 3, 7, 300, 96, 3508, 1123, {84, 11, 3508 - 36, 1123 - 84}},
      // A negative margin truncates toward zero.
      {-3, 0, 0, 0, 96, 96, 1000, 700, {-11, 0, 1000, 700}},
  };
  for (const auto& r : rows) {
    std::tie(s.MarginLeft, s.MarginRight, s.MarginTop, s.MarginBottom) =
        std::tuple(r.Left, r.Right, r.Top, r.Bottom);
    const IntRect p = PrintPageRect(s, r.DpiX, r.DpiY, r.Width, r.Height);
    EXPECT_EQ(std::tie(p.Left, p.Top, p.Right, p.Bottom), std::tie(r.Page.Left, r.Page.Top, r.Page.Right, r.Page.Bottom))
        << r.DpiX << "x" << r.DpiY;
  }
}

}  // namespace
}  // namespace sedra
