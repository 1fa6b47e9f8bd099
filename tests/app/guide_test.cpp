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

// F1 from each kind of window, after the user highlighted a menu item.
struct HelpCase {
  const char* Name;
  int Highlighted;                              // menu item hovered first (0: none)
  std::function<void(MainWindow&)> PressF1;     // where the key goes
  bool Asks;                                    // whether the guide is opened at all
  const char* Fragment;                         // the section asked for
};

// F1 in a dialog of its own; `owner` null for a window that is not the program's.
void F1InDialog(QWidget* owner) {
  QDialog dialog(owner);
  dialog.show();
  QTest::keyClick(&dialog, Qt::Key_F1);
}

TEST_F(AppTest, F1AsksForTheSectionOfTheCommandInUse) {
  const auto inOwnedDialog = [](MainWindow& w) { F1InDialog(&w); };
  const HelpCase cases[] = {
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
       false, ""},
      {"in the main window: the contents", kCmdReadOptical, [](MainWindow& w) { QTest::keyClick(&w, Qt::Key_F1); },
       true, ""},
      {"in the tool the command opened: its section", kCmdHRegion,
       [](MainWindow& w) {
         w.OnCommand(kCmdHRegion);
         ASSERT_NE(w.ActiveTool(), nullptr);
         QTest::keyClick(w.ActiveTool(), Qt::Key_F1);
         w.ActiveTool()->EndTool();
       },
       true, "cmd4055"},
      {"in a dialog the main window owns: the item's section", kCmdExpand, inOwnedDialog, true, "cmd4089"},
      {"in an owned dialog before any item was highlighted: the contents", 0, inOwnedDialog, true, ""},
      {"in a window that is not the program's: nothing", kCmdExpand, [](MainWindow&) { F1InDialog(nullptr); },
       false, ""},
  };
  const QStringList anchors = AnchorsOf(kHelpDir + "/index.html");
  for (const HelpCase& c : cases) {
    SCOPED_TRACE(c.Name);
    MainWindow& w = Start();
    LoadSection(*model, 200);
    w.show();
    helpRequests.clear();
    if (c.Highlighted != 0) w.Action(c.Highlighted)->hover();
    c.PressF1(w);
    EXPECT_EQ(helpRequests.size(), c.Asks ? 1u : 0u);
    if (!c.Asks || helpRequests.size() != 1) continue;
    EXPECT_TRUE(helpRequests[0].toLocalFile().endsWith(QStringLiteral("/help/index.html")));
    EXPECT_EQ(helpRequests[0].fragment(), QString::fromLatin1(c.Fragment));
    if (*c.Fragment) {
      EXPECT_TRUE(anchors.contains(QString::fromLatin1(c.Fragment)));
    }
  }
}

}  // namespace
}  // namespace sedra
