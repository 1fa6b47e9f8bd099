// Test main for programs that need Qt: an offscreen QApplication (never a real
// display), the font substitutes registered, then every test.
#include <gtest/gtest.h>

#include <QApplication>

#include "plot/fonts.h"

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  sedra::RegisterFontSubstitutes();
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
