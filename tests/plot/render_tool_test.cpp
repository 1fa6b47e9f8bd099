// sedra-render run on generated section folders: PNG and PDF output, the readers'
// messages on stderr, and failures as a non-zero exit.

#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>
#include <filesystem>

#include "plot_fixture.h"

namespace sedra::test {
namespace {

const QString kRenderer = QStringLiteral(SEDRA_BUILD_DIR "/tools/render/sedra-render");

// Runs a program with space-separated arguments; exit code (-1 timeout, -2 crash) and stderr.
std::pair<int, QString> Execute(const QString& program, const QString& args, const QString& workDir = {}) {
  QProcess p;
  if (!workDir.isEmpty()) p.setWorkingDirectory(workDir);
  p.start(program, args.split(QLatin1Char(' '), Qt::SkipEmptyParts));
  if (!p.waitForFinished(60000)) return {-1, {}};
  return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -2, QString::fromLocal8Bit(p.readAllStandardError())};
}

class RenderTool : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(kRenderer.toStdString())) GTEST_SKIP() << "sedra-render not built";
    ASSERT_TRUE(dir_.isValid());
  }
  // A generated section folder; `extra` is passed on to the sample tool.
  QString Folder(const QString& extra = {}) {
    const QString folder = Out(QStringLiteral("section%1").arg(++folders_));
    const QString args = folder + QStringLiteral(" --length 600 --width 100 --optical-length 620 --optical-width 120 ");
    EXPECT_EQ(Execute(QStringLiteral(SEDRA_SAMPLE_TOOL), args + extra).first, 0);
    return folder;
  }
  QString Out(const QString& name) { return dir_.filePath(name); }

  QTemporaryDir dir_;
  int folders_ = 0;
};

TEST_F(RenderTool, PdfPageCarriesVectorText) {
  const QString pdf = Out("plot.pdf");
  const auto [exit, err] = Execute(kRenderer, Folder() + " --optical --dpi 150 -o " + pdf);
  ASSERT_EQ(exit, 0) << err.toStdString();
  // Text stays text: the information block can be extracted from the page.
  QProcess text;
  text.start(QStringLiteral("pdftotext"), {pdf, QStringLiteral("-")});
  ASSERT_TRUE(text.waitForFinished(30000));
  const QString extracted = QString::fromUtf8(text.readAllStandardOutput());
  EXPECT_TRUE(extracted.contains(QStringLiteral("X-radiograph Conditions"))) << extracted.toStdString();
  EXPECT_TRUE(extracted.contains(QStringLiteral("2 cm")));
  EXPECT_TRUE(extracted.contains(QStringLiteral(" - Sedra-PLOT V2.81"))) << "the version after the date, as printed";
  // And the page is A4 landscape (at 36 dpi); what is painted on it is the plot tests' concern.
  ASSERT_EQ(Execute(QStringLiteral("pdftoppm"), "-r 36 -png -singlefile " + pdf + " " + Out("page")).first, 0);
  const QImage page(Out("page.png"));
  EXPECT_NEAR(page.width(), 421, 1);
  EXPECT_NEAR(page.height(), 298, 1);
}

TEST_F(RenderTool, ReaderMessagesGoToStderrAndFailuresExitNonZero) {
  auto [exit, err] = Execute(kRenderer, Folder("--missing document.txt") + " -o " + Out("nodoc.png"));
  EXPECT_EQ(exit, 0);
  EXPECT_TRUE(err.contains(QStringLiteral("Warning - the file 'document.txt' containing the Core details was not found")))
      << err.toStdString();
  EXPECT_NE(Execute(kRenderer, Folder("--missing radiograph.tif") + " -o " + Out("norad.png")).first, 0);
  EXPECT_FALSE(QFile::exists(Out("norad.png")));
  std::tie(exit, err) = Execute(kRenderer, Folder() + " --expand 100:101 -o " + Out("small.png"));
  EXPECT_NE(exit, 0);
  EXPECT_TRUE(err.contains(QStringLiteral("The Expand region is too small")));
  EXPECT_NE(Execute(kRenderer, QStringLiteral("--zoom 3")).first, 0);
}

// Folders and files named relative to where the tool runs, or a RAW file by its name
// in the section folder; a PNG is the plot of the window at the given size.
TEST_F(RenderTool, RelativeFoldersAndFilesIntoPngs) {
  const QString folder = QFileInfo(Folder("--raw-values 200 --raw-lines 50")).fileName();
  for (const QString& args : {folder + " --optical --page 900x640 -o rel.png",
                              folder + " --raw " + folder + "/radiograph.raw --maxres -o raw1.png",
                              folder + " --raw radiograph.raw --highres -o raw2.png"}) {
    const auto [exit, err] = Execute(kRenderer, args, dir_.path());
    EXPECT_EQ(exit, 0) << args.toStdString() << ": " << err.toStdString();
    EXPECT_FALSE(err.contains(QStringLiteral("document.txt"))) << args.toStdString();
  }
  const QImage image(Out("rel.png"));
  ASSERT_EQ(image.size(), QSize(900, 640));
  const int x0 = 3 * CharHeight(), y0 = 2 * CharHeight() + 4;
  EXPECT_EQ(Rgb(image, 1, 1), 0xFFFFFFu);
  // The two axes in the default blue, and image pixels in the first column.
  EXPECT_EQ(Rgb(image, x0, y0 + 200), 0x0000FFu);
  EXPECT_EQ(Rgb(image, 600, y0), 0x0000FFu);
  EXPECT_NE(Rgb(image, x0 + 12 + 3, y0 + 100), 0xFFFFFFu);
}

}  // namespace
}  // namespace sedra::test
