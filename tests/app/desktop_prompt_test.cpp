// Where the desktop's file dialogs open, and the filters they show.
#include <gtest/gtest.h>

#include "app/desktop_prompt.h"

namespace sedra {
namespace {

TEST(DesktopPrompt, FileDialogsOpenInTheirFolderWithAPlainName) {
  struct Row {
    const char* what;
    FileRequest request;
    QString directory, name;
  } rows[] = {
      // A read leaves the section's folder before the image's name.
      {"the section's folder is dropped from the name",
       FileRequest{"Save Current Display as Image file", {}, 1, "KB07-1/radiograph.tif", "/home/ana/figures"},
       QStringLiteral("/home/ana/figures"), QStringLiteral("radiograph.tif")},
      {"a folder with accents stays the folder it is",
       FileRequest{"Open TIFF file", {}, 1, "\\radiograph.tif", "/data/Kernbohrung Müller 3"},
       QString::fromUtf8("/data/Kernbohrung Müller 3"), QStringLiteral("radiograph.tif")},
      {"a wildcard proposes no name", FileRequest{"Open Raw Radiograph file", {}, 1, "*.raw", "/data"},
       QStringLiteral("/data"), QString()},
  };
  for (const Row& r : rows) {
    const DialogStart start = InitialSelection(r.request);
    EXPECT_EQ(start.Directory, r.directory) << r.what;
    EXPECT_EQ(start.Name, r.name) << r.what;
  }
  QString selected;
  FileRequest tiff{"", {{"TIFF files (*.tif)", "*.tif"}, {"All files", "*.*"}}, 2, "", ""};
  EXPECT_EQ(FilterString(tiff, &selected), QStringLiteral("TIFF files (*.tif);;All files (*.*)"));
  EXPECT_EQ(selected, QStringLiteral("All files (*.*)"));
}

}  // namespace
}  // namespace sedra
