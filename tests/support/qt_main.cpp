// Test main for programs that need Qt: an offscreen QApplication (never a real
// display) on one desktop-sized screen, the font substitutes registered, then every
// test.  The plugin's own screen is smaller than the program's default window, which
// the start-up would then shrink to fit.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <unistd.h>

#include "plot/fonts.h"

namespace {

QString ScreenConfigPath() { return QDir::temp().filePath(QStringLiteral("sedra-test-screen-%1.json").arg(getpid())); }

QByteArray DesktopScreenPlatform(const QString& path) {
  QFile config(path);
  if (!config.open(QIODevice::WriteOnly)) return "offscreen";
  config.write(R"({"screens": [{"name": "desktop", "x": 0, "y": 0, "width": 1920, "height": 1080}]})");
  return "offscreen:configfile=" + path.toLocal8Bit();
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", DesktopScreenPlatform(ScreenConfigPath()));
  QApplication app(argc, argv);
  sedra::RegisterFontSubstitutes();
  ::testing::InitGoogleTest(&argc, argv);
  const int result = RUN_ALL_TESTS();
  QFile::remove(ScreenConfigPath());
  return result;
}
