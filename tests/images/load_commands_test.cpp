// The read commands end to end on generated section folders: what a new user gets
// after "Read &Radiograph Image" and "Read &Optical Image".

#include "images/load.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "import/sample_files.h"
#include "model/menu_state.h"
#include "model/messages.h"
#include "model/model.h"
#include "support/scripted_prompt.h"

namespace sedra {
namespace {

using test::ScriptedPrompt;

TEST(LoadCommands, RadiographThenOpticalFillTheSection) {
  const auto folder = test::ScratchFolder();
  test::MakeSampleCore(folder, "--length 600 --width 80 --optical-length 640 --optical-width 90 --raw-values 0");
  Model model;
  ScriptedPrompt prompt;
  int repaints = 0;
  model.Invalidate = [&] { ++repaints; };
  prompt.ChooseFile((folder / "radiograph.tif").string());
  ASSERT_TRUE(CommandReadRadiograph(model, prompt));
  prompt.ChooseFile((folder / "optical.tif").string());
  EXPECT_TRUE(CommandReadOptical(model, prompt));
  EXPECT_TRUE(prompt.Messages.empty());
  EXPECT_GE(repaints, 2);

  const CoreSection& s = model.CurSection();
  const RadiographDesc& rad = model.CurRadiograph();
  EXPECT_EQ(rad.Valid, 1u);
  EXPECT_EQ(rad.Regions[0].X2, 79);
  EXPECT_EQ(rad.Regions[0].Y2, 599);
  EXPECT_LT(rad.Regions[0].Lower, rad.Regions[0].Upper);
  // The display is drawn from the samples through the window the load chose, which
  // the user regions share until they are defined.
  EXPECT_EQ(rad.DisplayFromSamples, 1u);
  for (int k = 1; k < kRegionCount; ++k) {
    EXPECT_EQ(rad.Regions[k].Lower, rad.Regions[0].Lower);
    EXPECT_EQ(rad.Regions[k].Upper, rad.Regions[0].Upper);
  }
  EXPECT_EQ(model.Plot().DataRegionLeft, 0);
  EXPECT_EQ(model.Plot().DataRegionRight, 80);

  EXPECT_EQ(s.Optical.Height, 640);
  EXPECT_STREQ(s.SiteName, "Kingsport Bay");
  EXPECT_STREQ(s.StepSizeText, "200 microns");
  EXPECT_EQ(s.PointCount, 600);
  EXPECT_FLOAT_EQ(model.Plot().DepthSpan, 120.0f);  // 600 points of 0.2 mm
  EXPECT_FLOAT_EQ(s.StartDepth, 100.0f);
  EXPECT_TRUE(model.App.Menu.IsTopEnabled(kMenuRadiograph));
  EXPECT_TRUE(model.App.Menu.IsTopEnabled(kMenuOptical));
  // The axis existed at the optical read: the image is placed (start 95 mm, 5 mm above).
  EXPECT_EQ(s.Optical.FirstShownPixel, 25);  // round(5 x 640 / 130)
}

TEST(LoadCommands, DecliningNewChangesNothing) {
  Model model;
  ScriptedPrompt prompt;
  model.Plot().Modified = 1;
  model.CurSection().RadiographCount = 1;
  prompt.Answers.push_back(Answer::No);
  EXPECT_FALSE(CommandReadRadiograph(model, prompt));
  EXPECT_FALSE(CommandReadRaw(model, prompt, true));
  EXPECT_TRUE(prompt.OpenRequests.empty());
  EXPECT_EQ(model.CurSection().RadiographCount, 1);
}

TEST(LoadCommands, OpticalCancelStillReadsTheMetadata) {
  const auto folder = test::ScratchFolder();
  Model model;
  ScriptedPrompt prompt;
  CopyField(model.Settings().SectionFolder, folder.string().c_str());
  EXPECT_FALSE(CommandReadOptical(model, prompt));
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{msg::kDocumentNotFound});
  EXPECT_EQ(model.CurSection().ScanYear, 2000);
  EXPECT_TRUE(model.App.Menu.IsTopEnabled(kMenuOptical));
}

TEST(LoadCommands, RawCommandResetsZoomAndLoads) {
  const auto folder = test::ScratchFolder();
  test::MakeSampleCore(folder, "--raw-values 400 --raw-lines 90 --missing optical.tif --missing radiograph.tif");
  Model model;
  ScriptedPrompt prompt;
  int zoomResets = 0;
  prompt.ChooseFile((folder / "radiograph.raw").string());
  ASSERT_TRUE(CommandReadRaw(model, prompt, false, [&] { ++zoomResets; }));
  EXPECT_EQ(zoomResets, 1);
  const RadiographDesc& rad = model.CurRadiograph();
  EXPECT_EQ(model.Work().SampleStep, 5);
  EXPECT_EQ(model.CurSection().PointCount, 400);
  EXPECT_LT(rad.Regions[0].Lower, rad.Regions[0].Upper);
  EXPECT_EQ(rad.Valid, 1u);
  EXPECT_STREQ(model.CurSection().FileName, "");  // a RAW read leaves the file name
}

// A refused radiograph stops before the metadata; a missing document.txt does not stop
// the image.
TEST(LoadCommands, RadiographRefusalAndMissingDocument) {
  const auto folder = test::ScratchFolder();
  test::MakeSampleCore(folder, "--length 100 --width 10 --missing document.txt --raw-values 0");
  test::WriteBytes(folder / "bad.tif", "not a tiff");
  Model model;
  ScriptedPrompt prompt;
  prompt.ChooseFile((folder / "bad.tif").string());
  EXPECT_FALSE(CommandReadRadiograph(model, prompt));
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{msg::kNotVersion42});
  EXPECT_FALSE(model.App.Menu.IsTopEnabled(kMenuRadiograph));
  prompt.ChooseFile((folder / "radiograph.tif").string());
  EXPECT_TRUE(CommandReadRadiograph(model, prompt));
  EXPECT_EQ(prompt.Texts(), (std::vector<std::string>{msg::kNotVersion42, msg::kDocumentNotFound}));
  EXPECT_STREQ(model.CurSection().SectionName, "1");
  EXPECT_EQ(model.CurSection().PointCount, 100);
}

}  // namespace
}  // namespace sedra
