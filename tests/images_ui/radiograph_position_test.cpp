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

TEST(RadiographPositionDialog, OffersAPlaceForEachCount) {
  struct Case {
    int Count;
    int Button;  // 0: the default
    int Place;
  };
  const Case cases[] = {
      {2, 0, 1}, {2, kLeft, 0}, {2, kCentre, 1}, {2, kRight, 1},
      {3, 0, 2}, {3, kLeft, 0}, {3, kCentre, 1}, {3, kRight, 2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.Count << " radiographs, button " << c.Button);
    RadiographPositionDialog dialog(nullptr, c.Count);
    EXPECT_EQ(dialog.windowTitle(), "Set Radiograph Position");
    EXPECT_TRUE(Control<QRadioButton>(&dialog, c.Count == 2 ? kCentre : kRight)->isChecked());
    if (c.Button) Control<QRadioButton>(&dialog, c.Button)->click();
    dialog.OnOk();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.Place(), c.Place);
  }
}

// Radiographs told apart by their lengths: 300, 200 and 100 rows.
TEST(RadiographPositionDialog, AddedRadiographsTakeTheChosenPlaces) {
  const auto folder = test::ScratchFolder();
  for (int length : {300, 200, 100})
    test::MakeSampleCore(folder / std::to_string(length), "--width 40 --raw-values 0 --length " + std::to_string(length));
  test::MakeSampleCore(folder / "wide", "--width 44 --raw-values 0 --length 50");
  Model model;
  test::ScriptedPrompt prompt;
  auto choose = [](int button) {
    return [button](int count) {
      RadiographPositionDialog dialog(nullptr, count);
      Control<QRadioButton>(&dialog, button)->click();
      dialog.OnOk();
      return dialog.Place();
    };
  };
  auto add = [&](const std::string& name, int button) {
    prompt.ChooseFile((folder / name / "radiograph.tif").string());
    return CommandAddRadiograph(model, prompt, choose(button));
  };
  auto lengths = [&] {
    std::vector<int> out;
    const CoreSection& s = model.CurSection();
    for (int i = 0; i < s.RadiographCount; ++i) out.push_back(s.Radiographs[size_t(i)].Height);
    return out;
  };
  prompt.ChooseFile((folder / "300" / "radiograph.tif").string());
  ASSERT_TRUE(CommandReadRadiograph(model, prompt));
  ASSERT_TRUE(add("200", kLeft));
  EXPECT_EQ(lengths(), (std::vector<int>{200, 300}));
  ASSERT_TRUE(add("100", kCentre));
  EXPECT_EQ(lengths(), (std::vector<int>{200, 100, 300}));
  EXPECT_EQ(model.Plot().CurRadiographIndex, 1) << "the new radiograph is current";
  EXPECT_EQ(model.CurRadiograph().Valid, 1u);
  EXPECT_TRUE(prompt.Messages.empty());

  EXPECT_FALSE(add("100", kRight));
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{msg::kOnlyThreeRadiographs});

  // A radiograph of another width is refused and the section keeps its order.
  prompt = {};
  model.CurSection().Radiographs[2].Clear();
  model.CurSection().RadiographCount = 2;
  model.Plot().CurRadiographIndex = 0;
  EXPECT_FALSE(add("wide", kLeft));
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{Format(msg::kRadiographWidthDiffers, 44, 40)});
  EXPECT_EQ(lengths(), (std::vector<int>{200, 100}));
  EXPECT_EQ(model.Plot().CurRadiographIndex, 0);
}

}  // namespace
}  // namespace sedra
