// "Save I&mage" and "Copy to C&lipboard" on a real widget under the offscreen platform.

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>

#include "model/messages.h"
#include "output/file_bytes.h"
#include "output/qt/image_output.h"
#include "output_fixture.h"
#include "support/scripted_prompt.h"

namespace sedra::test {
namespace {

// Colour of pixel (x, y) of the window, read from 24-bit bottom-up BGR rows.
QColor FromBottomUpRows(const std::vector<uint8_t>& b, size_t rowsAt, int w, int h, int x, int y) {
  const size_t stride = (size_t(w) * 3 + 3) & ~size_t(3);
  const size_t at = rowsAt + size_t(h - 1 - y) * stride + size_t(x) * 3;
  return QColor(b[at + 2], b[at + 1], b[at]);
}

// The section file is "KR-03 section 1".
class SaveImageTest : public OutputTest {
 protected:
  void SetUp() override { view.resize(101, 60); }  // an odd width, so rows are padded
  TempFolder folder{"save"};
};

TEST_F(SaveImageTest, BitmapHoldsTheRepaintedWindowIn24BitRows) {
  prompt.ChooseFile((folder / "plot").string(), 1);
  ASSERT_TRUE(SaveImage(*model, prompt, view));
  EXPECT_GE(view.Paints, 1);  // painted afresh for the file
  EXPECT_TRUE(prompt.Messages.empty());
  ASSERT_EQ(prompt.SaveRequests.size(), 1u);
  EXPECT_EQ(prompt.SaveRequests[0].InitialName, "KR-03 section 1");

  // The header's fields are the BMP writer's tests; here the window's size and pixels.
  const auto b = ReadBytes(folder / "plot.bmp");
  ASSERT_EQ(b.size(), 54u + 304 * 60);  // 101 x 3 = 303, padded to 304
  ExpectFields(b, {{18, 4, 101}, {22, 4, 60}});
  for (const auto& [x, y] : {std::pair{0, 0}, {100, 0}, {0, 59}, {100, 59}, {49, 29}, {50, 30}}) {
    EXPECT_EQ(FromBottomUpRows(b, 54, 101, 60, x, y), QuadrantView::Expected(x, y, 101, 60)) << x << "," << y;
  }
}

TEST_F(SaveImageTest, TiffOfAThousandBySevenHundredWindowUnderANameWithADot) {
  view.resize(1000, 700);
  prompt.ChooseFile((folder / "plot.x").string(), 2);  // the name is kept as typed
  ASSERT_TRUE(SaveImage(*model, prompt, view));
  EXPECT_FALSE(std::filesystem::exists(folder / "plot.x.tif"));
  const auto b = ReadBytes(folder / "plot.x");
  ASSERT_EQ(b.size(), 2100346u);
  // The layout of a 1000 x 700 file is the TIFF writer's test; here the window's size
  // (ImageWidth holds the height, ImageLength the width), its name and pixels.
  ExpectFields(b, {{2100008 + 2 + 12 + 8, 4, 700}, {2100008 + 2 + 24 + 8, 4, 1000}});
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(&b[2100008 + 194])), "KR-03 section 1");
  // The first bytes are the window's bottom row, blue first.
  EXPECT_EQ(FromBottomUpRows(b, 8, 1000, 700, 0, 699), QuadrantView::Expected(0, 699, 1000, 700));
  EXPECT_EQ(FromBottomUpRows(b, 8, 1000, 700, 999, 0), QuadrantView::Expected(999, 0, 1000, 700));
}

TEST_F(SaveImageTest, JpegIsNotOfferedAndWritesNothing) {
  // Not offered by the dialog's list, but handled: nothing is written, so an earlier
  // file of that name stays as it was.
  const auto path = folder / "plot.jpg";
  prompt.ChooseFile(path.string(), 3);
  EXPECT_TRUE(SaveImage(*model, prompt, view));
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{msg::kNoJpeg});
  EXPECT_EQ(prompt.Messages[0].Caption, "");
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(SaveImageTest, AnExistingFileIsKeptUnlessTheUserSaysYes) {
  // Yes is every failing write's answer.
  const auto existing = folder / "plot.bmp";
  WriteAllText(existing, "keep");
  const auto before = PlotBytes(*model);
  // "plot" becomes plot.bmp, which exists: No brings the dialog back, and cancelling it
  // leaves everything as it was.
  prompt.ChooseFile((folder / "plot").string(), 1);
  prompt.Answers = {Answer::No, Answer::No};
  EXPECT_FALSE(SaveImage(*model, prompt, view));
  ASSERT_EQ(prompt.SaveRequests.size(), 2u);
  EXPECT_EQ(prompt.SaveRequests[1].Title, prompt.SaveRequests[0].Title);
  ASSERT_EQ(prompt.Texts(), std::vector<std::string>{"Overwrite file plot.bmp ?"});  // without its folder
  EXPECT_EQ(std::tie(prompt.Messages[0].Caption, prompt.Messages[0].ButtonSet),
            std::tuple(msg::kFileExistsCaption, Buttons::YesNo));
  EXPECT_EQ(view.Paints, 0);
  EXPECT_EQ(PlotBytes(*model), before);
  // No, then another name: that one is written.
  prompt.ChooseFile((folder / "plot").string(), 1);
  prompt.ChooseFile((folder / "other").string(), 1);
  EXPECT_TRUE(SaveImage(*model, prompt, view));
  EXPECT_EQ(ReadAllText(existing), "keep");
  EXPECT_EQ(ReadBytes(folder / "other.bmp").size(), 54u + 304 * 60);
}

TEST(CopyToClipboard, PutsTheWindowAsItStandsOnTheClipboard) {
  QWidget window;
  window.resize(120, 90);
  auto* view = new QuadrantView(&window);
  view->setGeometry(0, 0, 100, 80);
  window.show();
  // Let the window be exposed and painted, as a window on the desktop is.
  QElapsedTimer waited;
  waited.start();
  while (view->Paints == 0 && waited.elapsed() < 5000) QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
  ASSERT_GT(view->Paints, 0);
  const int paintsBefore = view->Paints;

  ScriptedPrompt prompt;
  CopyToClipboard(prompt, *view);
  ASSERT_EQ(prompt.Messages.size(), 1u);
  EXPECT_EQ(prompt.Messages[0].Text, msg::kCopiedToClipboard);
  EXPECT_EQ(prompt.Messages[0].Caption, "");
  EXPECT_EQ(view->Paints, paintsBefore);  // the pixels as shown, not painted again

  const QImage copied = QGuiApplication::clipboard()->image();
  ASSERT_EQ(copied.size(), QSize(100, 80));
  for (const auto& [x, y] : {std::pair{0, 0}, {99, 0}, {0, 79}, {99, 79}}) {
    EXPECT_EQ(QColor(copied.pixel(x, y)), QuadrantView::Expected(x, y, 100, 80)) << x << "," << y;
  }
}

}  // namespace
}  // namespace sedra::test
