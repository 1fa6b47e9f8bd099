// The user guide that F1 opens: every menu command has its section, nothing in it
// points nowhere, and F1 asks for the section of the command being used.
#include <QAction>
#include <QDialog>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <fstream>
#include <functional>

#include "app/menu_table.h"
#include "app_fixture.h"
#include "model/menu_state.h"
#include "ui/tool_dialog.h"

namespace sedra {
namespace {

using test::AppTest;
using test::LoadSection;

const QString kHelpDir = QStringLiteral(SEDRA_HELP_DIR);

QString ReadText(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList Captures(const QString& text, const QString& pattern) {
  QStringList found;
  for (const auto& m : QRegularExpression(pattern).globalMatch(text)) found << m.captured(1);
  return found;
}

QStringList AnchorsOf(const QString& page) { return Captures(ReadText(page), QStringLiteral(R"(\bid="([^"]+)\")")); }

TEST(GuideTest, EveryMenuCommandHasItsSectionOnce) {
  const QStringList anchors = AnchorsOf(kHelpDir + "/index.html");
  ASSERT_FALSE(anchors.isEmpty()) << "no guide at " << kHelpDir.toStdString();
  std::vector<int> ids{kCmdHelp};
  for (const TopEntryDef& top : MainMenuTable()) {
    if (top.Id != 0) ids.push_back(top.Id);
    for (const MenuItemDef& item : top.Items) ids.push_back(item.Id);
  }
  for (int id : ids) EXPECT_EQ(anchors.count(QStringLiteral("cmd%1").arg(id)), 1) << "command " << id;
}

TEST(GuideTest, NoLocalLinkOrImagePointsNowhereAndEveryPictureIsShown) {
  qint64 bytes = 0;
  int pages = 0;
  QSet<QString> shown;
  QStringList pictures;
  for (QDirIterator it(kHelpDir, QDir::Files, QDirIterator::Subdirectories); it.hasNext();) {
    const QFileInfo file(it.next());
    bytes += file.size();
    if (file.suffix() == QStringLiteral("png")) pictures << file.canonicalFilePath();
    if (file.suffix() != QStringLiteral("html")) continue;
    ++pages;
    const QString text = ReadText(file.filePath());
    for (const QString& ref : Captures(text, QStringLiteral(R"(\b(?:href|src)="([^"]*)\")"))) {
      if (ref.contains(QStringLiteral("://")) || ref.startsWith(QStringLiteral("mailto:"))) continue;
      const QString path = ref.section(QLatin1Char('#'), 0, 0);
      const QString fragment = ref.section(QLatin1Char('#'), 1);
      const QString target = path.isEmpty() ? file.filePath() : file.dir().filePath(path);
      EXPECT_TRUE(QFileInfo::exists(target)) << file.fileName().toStdString() << ": " << ref.toStdString();
      shown << QFileInfo(target).canonicalFilePath();
      if (!fragment.isEmpty()) {
        EXPECT_TRUE(AnchorsOf(target).contains(fragment)) << file.fileName().toStdString() << ": " << ref.toStdString();
      }
    }
  }
  // A picture scripts/guide-shots made for a newly built dialog waits for its place.
  for (const QString& picture : pictures) EXPECT_TRUE(shown.contains(picture)) << picture.toStdString();
  EXPECT_GE(pages, 1);
  EXPECT_LT(bytes, 2 * 1024 * 1024) << "the guide and its pictures stay small";
}

// F1 in a dialog of its own; `owner` null for a window that is not the program's.
void F1InDialog(QWidget* owner) {
  QDialog dialog(owner);
  dialog.show();
  QTest::keyClick(&dialog, Qt::Key_F1);
}

// F1 from each kind of window, after the user highlighted a menu item, and the Help
// command: what is opened (null: nothing), as the end of its address.  That the guide
// has each command's section is the first test's.
TEST_F(AppTest, F1AsksForTheSectionOfTheCommandInUse) {
  const auto inOwnedDialog = [](MainWindow& w) { F1InDialog(&w); };
  const auto inMainWindow = [](MainWindow& w) { QTest::keyClick(&w, Qt::Key_F1); };
  const struct {
    const char* name;
    int highlighted;  // menu item hovered first (0: none)
    std::function<void(MainWindow&)> pressF1;
    const char* opens;
  } cases[] = {
      {"on an open menu's highlighted item: nothing", kCmdReadOptical,
       [](MainWindow& w) {
         // Opened from the menu bar, as the user opens it: keys it does not use go on to
         // the bar and from there to the main window.
         QMenu* menu = w.TopEntry(kMenuFile)->menu();
         w.menuBar()->setActiveAction(menu->menuAction());
         menu->setActiveAction(w.Action(kCmdReadOptical));
         QTest::keyClick(menu, Qt::Key_F1);
         menu->hide();
       },
       nullptr},
      {"in the main window: the contents", kCmdReadOptical, inMainWindow, "/help/index.html"},
      {"the Help command: the contents", kCmdReadOptical, [](MainWindow& w) { w.OnCommand(kCmdHelp); },
       "/help/index.html"},
      {"in the tool the command opened: its section", kCmdHRegion,
       [](MainWindow& w) {
         w.OnCommand(kCmdHRegion);
         ASSERT_NE(w.ActiveTool(), nullptr);
         QTest::keyClick(w.ActiveTool(), Qt::Key_F1);
         w.ActiveTool()->EndTool();
       },
       "/help/index.html#cmd4055"},
      {"in a dialog the main window owns: the item's section", kCmdExpand, inOwnedDialog, "/help/index.html#cmd4089"},
      {"in an owned dialog before any item was highlighted: the contents", 0, inOwnedDialog, "/help/index.html"},
      {"in a window that is not the program's: nothing", kCmdExpand, [](MainWindow&) { F1InDialog(nullptr); },
       nullptr},
      {"a compiled help file in the working folder wins", kCmdExpand,
       [this](MainWindow& w) {
         CopyField(model->App.HelpPath, (folder / "Sedra-PLOT.chm").c_str());
         std::ofstream(folder / "Sedra-PLOT.chm").put('\0');
         QTest::keyClick(&w, Qt::Key_F1);
       },
       "/Sedra-PLOT.chm"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    MainWindow& w = Start();
    LoadSection(*model, 200);
    w.show();
    helpRequests.clear();
    if (c.highlighted != 0) w.Action(c.highlighted)->hover();
    c.pressF1(w);
    EXPECT_EQ(helpRequests.size(), c.opens ? 1u : 0u);
    if (!c.opens || helpRequests.size() != 1) continue;
    EXPECT_TRUE(helpRequests[0].toString().endsWith(QString::fromLatin1(c.opens)))
        << helpRequests[0].toString().toStdString();
  }
}

}  // namespace
}  // namespace sedra
