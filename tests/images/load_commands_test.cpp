// The read commands end to end on generated section folders: what a new user gets
// after "Read &Radiograph Image" and "Read &Optical Image".

#include "images/load.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "import/sample_files.h"
#include "model/menu_state.h"
#include "model/messages.h"

namespace sedra {
namespace {

using LoadCommands = test::ReaderTest;

TEST_F(LoadCommands, RadiographThenOpticalFillTheSection) {
  const auto folder = test::ScratchFolder();
  test::MakeSampleCore(folder, "--length 600 --width 80 --optical-length 640 --optical-width 90 --raw-values 0");
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
  const RadiographRegion& whole = rad.Regions[0];
  // The display is drawn from the samples through the window the load chose, which
  // the user regions share until they are defined.
  EXPECT_EQ(std::tuple(rad.Valid, rad.DisplayFromSamples, whole.X2, whole.Y2), std::tuple(1u, 1u, 79, 599));
  EXPECT_LT(whole.Lower, whole.Upper);
  for (int k = 1; k < kRegionCount; ++k)
    EXPECT_EQ(std::pair(rad.Regions[k].Lower, rad.Regions[k].Upper), std::pair(whole.Lower, whole.Upper)) << k;
  EXPECT_EQ(std::pair(model.Plot().DataRegionLeft, model.Plot().DataRegionRight), std::pair(0, 80));

  // The depth axis follows the step size document.txt gives: 600 points of 0.2 mm.
  EXPECT_EQ(std::tuple(s.Optical.Height, model.Plot().DepthSpan, s.StartDepth), std::tuple(640, 120.0f, 100.0f));
  EXPECT_TRUE(model.App.Menu.IsTopEnabled(kMenuRadiograph) && model.App.Menu.IsTopEnabled(kMenuOptical));
  // The axis existed at the optical read: the image is placed (start 95 mm, 5 mm above).
  EXPECT_EQ(s.Optical.FirstShownPixel, 25);  // round(5 x 640 / 130)
}

TEST_F(LoadCommands, DecliningNewChangesNothing) {
  model.Plot().Modified = 1;
  model.CurSection().RadiographCount = 1;
  prompt.Answers.push_back(Answer::No);
  EXPECT_FALSE(CommandReadRadiograph(model, prompt));
  EXPECT_FALSE(CommandReadRaw(model, prompt, true));
  EXPECT_TRUE(prompt.OpenRequests.empty());
  EXPECT_EQ(model.CurSection().RadiographCount, 1);
}

TEST_F(LoadCommands, RawCommandResetsZoomAndLoads) {
  const auto folder = test::ScratchFolder();
  test::MakeSampleCore(folder, "--raw-values 400 --raw-lines 90 --missing optical.tif --missing radiograph.tif");
  int zoomResets = 0;
  prompt.ChooseFile((folder / "radiograph.raw").string());
  ASSERT_TRUE(CommandReadRaw(model, prompt, false, [&] { ++zoomResets; }));
  EXPECT_EQ(zoomResets, 1);
  const RadiographDesc& rad = model.CurRadiograph();
  EXPECT_EQ(std::tuple(model.Work().SampleStep, model.CurSection().PointCount, rad.Valid), std::tuple(5, 400, 1u));
  EXPECT_LT(rad.Regions[0].Lower, rad.Regions[0].Upper);
  EXPECT_STREQ(model.CurSection().FileName, "");  // a RAW read leaves the file name
}

// A cancelled optical read still reads the metadata; a refused radiograph stops before
// it; a missing document.txt does not stop the image.
TEST_F(LoadCommands, CancelRefusalAndMissingDocument) {
  const auto folder = test::ScratchFolder();
  test::MakeSampleCore(folder, "--length 100 --width 10 --missing document.txt --raw-values 0");
  test::WriteBytes(folder / "bad.tif", "not a tiff");
  CopyField(model.Settings().SectionFolder, folder.string().c_str());
  EXPECT_FALSE(CommandReadOptical(model, prompt));
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{msg::kDocumentNotFound});
  EXPECT_TRUE(model.App.Menu.IsTopEnabled(kMenuOptical));
  prompt.ChooseFile((folder / "bad.tif").string());
  EXPECT_FALSE(CommandReadRadiograph(model, prompt));
  EXPECT_EQ(prompt.Texts(), (std::vector<std::string>{msg::kDocumentNotFound, msg::kNotVersion42}));
  EXPECT_FALSE(model.App.Menu.IsTopEnabled(kMenuRadiograph));
  prompt.ChooseFile((folder / "radiograph.tif").string());
  EXPECT_TRUE(CommandReadRadiograph(model, prompt));
  EXPECT_EQ(prompt.Texts(),
            (std::vector<std::string>{msg::kDocumentNotFound, msg::kNotVersion42, msg::kDocumentNotFound}));
  EXPECT_EQ(std::tuple(std::string(model.CurSection().SectionName), model.CurSection().PointCount),
            std::tuple("1", 100));
}

}  // namespace
}  // namespace sedra
