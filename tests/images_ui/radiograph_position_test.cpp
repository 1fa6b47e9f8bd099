// "Set Radiograph Position" (226) and the radiographs it places in a section.

#include "images/ui/radiograph_position_dialog.h"

#include <gtest/gtest.h>

#include <QRadioButton>

#include "images/load.h"
#include "images/whole_core.h"
#include "import/sample_files.h"
#include "model/messages.h"
#include "model/numbers.h"
#include "ui/controls.h"

namespace sedra {
namespace {

constexpr int kLeft = 1458, kCentre = 1459, kRight = 1460;

// The place the dialog answers after `button` (0: its default) was clicked.
int PlaceAfter(int count, int button) {
  RadiographPositionDialog dialog(nullptr, count);
  EXPECT_TRUE(Control<QRadioButton>(&dialog, count == 2 ? kCentre : kRight)->isChecked()) << "the default";
  if (button) Control<QRadioButton>(&dialog, button)->click();
  dialog.OnOk();
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  return dialog.Place();
}

TEST(RadiographPositionDialog, OffersAPlaceForEachCount) {
  const int cases[][3] = {{2, 0, 1}, {2, kLeft, 0}, {2, kCentre, 1}, {2, kRight, 1},
                          {3, 0, 2}, {3, kLeft, 0}, {3, kCentre, 1}, {3, kRight, 2}};
  for (const auto& c : cases) EXPECT_EQ(PlaceAfter(c[0], c[1]), c[2]) << c[0] << " radiographs, button " << c[1];
}

// Radiographs told apart by their lengths along the core.
TEST(RadiographPositionDialog, AddedRadiographsTakeTheChosenPlaces) {
  const auto folder = test::ScratchFolder();
  for (const char* length : {"300", "200", "100"})
    test::MakeSampleCore(folder / length, std::string("--width 40 --raw-values 0 --length ") + length);
  test::MakeSampleCore(folder / "wide", "--width 44 --raw-values 0 --length 50");
  Model model;
  test::ScriptedPrompt prompt;
  auto add = [&](const char* name, int button) {
    prompt.ChooseFile((folder / name / "radiograph.tif").string());
    return CommandAddRadiograph(model, prompt, [button](int count) { return PlaceAfter(count, button); });
  };
  auto lengths = [&] {
    std::vector<int> out;
    for (int i = 0; i < model.CurSection().RadiographCount; ++i) out.push_back(model.Radiograph(i).Height);
    return out;
  };
  prompt.ChooseFile((folder / "300" / "radiograph.tif").string());
  ASSERT_TRUE(CommandReadRadiograph(model, prompt));
  ASSERT_TRUE(add("200", kLeft));
  EXPECT_EQ(lengths(), (std::vector<int>{200, 300}));
  ASSERT_TRUE(add("100", kCentre));
  EXPECT_EQ(lengths(), (std::vector<int>{200, 100, 300}));
  EXPECT_EQ(model.Plot().CurRadiographIndex, 1) << "the new radiograph is current";
  EXPECT_FALSE(add("100", kRight));
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{msg::kOnlyThreeRadiographs});

  // One of another width is refused and the section keeps its order.
  prompt = {};
  model.Radiograph(2).Clear();
  model.CurSection().RadiographCount = 2;
  EXPECT_FALSE(add("wide", kLeft));
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{Format(msg::kRadiographWidthDiffers, 44, 40)});
  EXPECT_EQ(lengths(), (std::vector<int>{200, 100}));
}

}  // namespace
}  // namespace sedra
