// sedra-render run on generated section folders: PNG and PDF output, the readers'
// messages on stderr, and failures as a non-zero exit.

#include <gtest/gtest.h>

#include <QImage>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <filesystem>

#include "plot_fixture.h"

namespace sedra::test {
namespace {

const QString kRenderer = QStringLiteral(SEDRA_BUILD_DIR "/tools/render/sedra-render");

struct ProcessResult {
  int Exit = -1;
  QString Err;
};

ProcessResult Execute(const QString& program, const QStringList& args) {
  QProcess p;
  p.start(program, args);
  ProcessResult r;
  if (!p.waitForFinished(60000)) return r;
  r.Exit = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -2;
  r.Err = QString::fromLocal8Bit(p.readAllStandardError());
  return r;
}

class RenderTool : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(kRenderer.toStdString())) GTEST_SKIP() << "sedra-render not built";
    ASSERT_TRUE(dir_.isValid());
  }
  QString Folder(const QStringList& extra = {}) {
    const QString folder = dir_.filePath(QStringLiteral("section%1").arg(++folders_));
    QStringList args{folder, QStringLiteral("--length"), QStringLiteral("600"), QStringLiteral("--width"),
                     QStringLiteral("100"), QStringLiteral("--optical-length"), QStringLiteral("620"),
                     QStringLiteral("--optical-width"), QStringLiteral("120")};
    args += extra;
    EXPECT_EQ(Execute(QStringLiteral(SEDRA_SAMPLE_TOOL), args).Exit, 0);
    return folder;
  }
  QString Out(const char* name) { return dir_.filePath(QString::fromLatin1(name)); }

  QTemporaryDir dir_;
  int folders_ = 0;
};

TEST_F(RenderTool, PngIsThePlotOfTheWindowAtTheGivenSize) {
  const QString folder = Folder();
  const QString png = Out("plot.png");
  const ProcessResult r = Execute(kRenderer, {folder, QStringLiteral("--optical"), QStringLiteral("--page"),
                                    QStringLiteral("900x640"), QStringLiteral("-o"), png});
  ASSERT_EQ(r.Exit, 0) << r.Err.toStdString();
  const QImage image(png);
  ASSERT_EQ(image.size(), QSize(900, 640));
  const int ch = PlotCharHeight();
  const int x0 = 3 * ch, y0 = 2 * ch + 4;
  EXPECT_EQ(Rgb(image, 1, 1), 0xFFFFFFu);
  // The two axes in the default blue, and image pixels in the first column.
  EXPECT_EQ(Rgb(image, x0, y0 + 200), 0x0000FFu);
  EXPECT_EQ(Rgb(image, 600, y0), 0x0000FFu);
  EXPECT_NE(Rgb(image, x0 + 12 + 3, y0 + 100), 0xFFFFFFu);
}

TEST_F(RenderTool, PdfPageCarriesVectorText) {
  const QString folder = Folder();
  const QString pdf = Out("plot.pdf");
  const ProcessResult r = Execute(kRenderer, {folder, QStringLiteral("--optical"), QStringLiteral("--dpi"), QStringLiteral("150"),
                                    QStringLiteral("-o"), pdf});
  ASSERT_EQ(r.Exit, 0) << r.Err.toStdString();
  // Text stays text: the information block can be extracted from the page.
  QProcess text;
  text.start(QStringLiteral("pdftotext"), {pdf, QStringLiteral("-")});
  ASSERT_TRUE(text.waitForFinished(30000));
  const QString extracted = QString::fromUtf8(text.readAllStandardOutput());
  EXPECT_TRUE(extracted.contains(QStringLiteral("X-radiograph Conditions"))) << extracted.toStdString();
  EXPECT_TRUE(extracted.contains(QStringLiteral("2 cm")));
  // And the page renders: A4 landscape at 36 dpi, with the plot on it.
  const QString prefix = Out("page");
  ASSERT_EQ(Execute(QStringLiteral("pdftoppm"), {QStringLiteral("-r"), QStringLiteral("36"), QStringLiteral("-png"),
                                                 QStringLiteral("-singlefile"), pdf, prefix})
                .Exit,
            0);
  const QImage page(prefix + QStringLiteral(".png"));
  ASSERT_FALSE(page.isNull());
  EXPECT_NEAR(page.width(), 421, 1);
  EXPECT_NEAR(page.height(), 298, 1);
  int blue = 0;
  for (int y = 0; y < page.height(); ++y)
    for (int x = 0; x < page.width(); ++x)
      if (qBlue(page.pixel(x, y)) > 200 && qRed(page.pixel(x, y)) < 80) ++blue;
  EXPECT_GT(blue, 100);  // the axes
}

TEST_F(RenderTool, ReaderMessagesGoToStderrAndFailuresExitNonZero) {
  {
    const QString folder = Folder({QStringLiteral("--missing"), QStringLiteral("document.txt")});
    const ProcessResult r = Execute(kRenderer, {folder, QStringLiteral("-o"), Out("nodoc.png")});
    EXPECT_EQ(r.Exit, 0);
    EXPECT_TRUE(r.Err.contains(QStringLiteral("Warning - the file 'document.txt' containing the Core details was not found")))
        << r.Err.toStdString();
  }
  {
    const QString folder = Folder({QStringLiteral("--missing"), QStringLiteral("radiograph.tif")});
    const ProcessResult r = Execute(kRenderer, {folder, QStringLiteral("-o"), Out("norad.png")});
    EXPECT_NE(r.Exit, 0);
    EXPECT_FALSE(QFile::exists(Out("norad.png")));
  }
  {
    const QString folder = Folder();
    const ProcessResult r = Execute(kRenderer, {folder, QStringLiteral("--expand"), QStringLiteral("100:101"), QStringLiteral("-o"),
                                      Out("small.png")});
    EXPECT_NE(r.Exit, 0);
    EXPECT_TRUE(r.Err.contains(QStringLiteral("The Expand region is too small")));
  }
  EXPECT_NE(Execute(kRenderer, {QStringLiteral("--zoom"), QStringLiteral("3")}).Exit, 0);
}

}  // namespace
}  // namespace sedra::test
