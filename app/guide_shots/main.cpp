// guide-shots: the user guide's pictures, made from a sample core section so they
// follow the program as it changes.
//
//   guide-shots SECTION_FOLDER OUT_FOLDER
//
// Starts the real main window offscreen at a fixed size with its settings in a scratch
// folder, reads the section's radiograph and optical image through the menu commands,
// then runs menu commands through the registry and grabs the main window, the open
// menus and every window a command opens into PNG files.  A command that is not built
// yet is skipped with a note, so the pictures can be made again once it is.

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QImage>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPixmap>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <set>
#include <string>

#include "app/main_window.h"
#include "app/menu_table.h"
#include "app/plot_view.h"
#include "app/startup.h"
#include "model/command_registry.h"
#include "model/menu_state.h"
#include "model/model.h"
#include "model/prompt.h"
#include "output/qt/print_prompt.h"
#include "plot/fonts.h"
#include "plot/plot_layout.h"
#include "ui/tool_dialog.h"

namespace {

using namespace sedra;

// Answers the file choosers from a queue, says yes to every question (there is nothing
// to lose in a scratch run) and passes every message on to stderr.
class ShotPrompt : public Prompt, public PrintPrompt {
 public:
  std::deque<std::string> Files;
  Answer Message(const std::string& text, const std::string&, Icon, Buttons buttons) override {
    std::fprintf(stderr, "guide-shots: message: %s\n", text.c_str());
    return buttons == Buttons::Ok || buttons == Buttons::OkCancel ? Answer::Ok : Answer::Yes;
  }
  FileChoice OpenFile(const FileRequest&) override { return Next(); }
  FileChoice SaveFile(const FileRequest&) override { return {}; }
  bool ChoosePrinter(QPrinter&) override { return false; }

 private:
  FileChoice Next() {
    if (Files.empty()) return {};
    FileChoice choice{true, Files.front(), 1};
    Files.pop_front();
    return choice;
  }
};

// The pictures the guide shows, one command each, in the order a user meets them.
struct Shot {
  int Command;
  const char* File;
};
constexpr Shot kShots[] = {
    {kCmdRadContrast, "radiograph-contrast"}, {kCmdImageSize, "image-size"},
    {kCmdDataRegion, "data-region"},          {kCmdOpticalContrast, "optical-contrast"},
    {kCmdOpticalSize, "optical-size"},        {kCmdExpand, "expand"},
    {kCmdHRegion, "horizontal-region"},       {kCmdVRegion, "vertical-region"},
    {kCmdHLine, "horizontal-line"},           {kCmdVLine, "vertical-line"},
    {kCmdDeletePoints, "delete-points"},      {kCmdEditInfo, "edit-information"},
    {kCmdMainTitle, "main-title"},            {kCmdSectionTitle, "section-title"},
    {kCmdSetText, "set-text"},                {kCmdColourSetup, "colour-setup"},
    {kCmdSection, "section"},                 {kCmdAbout, "about"},
};

class Shooter {
 public:
  Shooter(MainWindow& window, QString out) : window_(window), out_(std::move(out)) {}

  // Saves `widget`, or the part `crop` of it: the plot's columns sit at the left, and a
  // detail of them says more than a window that is mostly empty paper.
  bool Save(QWidget& widget, const QString& name, const QRect& crop = {}) {
    QImage image = widget.grab().toImage().convertToFormat(QImage::Format_RGB888);
    if (!crop.isNull()) image = image.copy(crop);
    const QString path = out_ + QStringLiteral("/") + name + QStringLiteral(".png");
    if (!image.save(path, "PNG", 9)) {
      std::fprintf(stderr, "guide-shots: cannot write %s\n", qPrintable(path));
      failed_ = true;
      return false;
    }
    std::printf("%s (%dx%d)\n", qPrintable(path), image.width(), image.height());
    return true;
  }

  void Menus() {
    const auto& table = MainMenuTable();
    for (size_t pos = 0; pos < table.size(); ++pos) {
      QMenu* menu = window_.TopEntry(int(pos))->menu();
      if (!menu) continue;
      menu->popup(window_.mapToGlobal(window_.menuBar()->actionGeometry(menu->menuAction()).bottomLeft()));
      QApplication::processEvents();
      Save(*menu, QStringLiteral("menu-%1").arg(pos));
      menu->hide();
    }
  }

  // Runs `shot`'s command and grabs whatever it opened: a modeless tool once the
  // command returns, a modal dialog from inside its own event loop, then closes it.
  void Command(const Shot& shot) {
    const auto& missing = CommandsNotYetBuilt();
    if (std::find(missing.begin(), missing.end(), shot.Command) != missing.end()) {
      std::printf("skipped %s: command %d is not built yet\n", shot.File, shot.Command);
      return;
    }
    before_ = VisibleTopLevels();
    grabbed_ = false;
    QTimer::singleShot(0, &window_, [this, shot] { GrabNew(shot); });
    window_.OnCommand(shot.Command);
    QApplication::processEvents();
    if (!grabbed_) GrabNew(shot);
    CloseNew();
  }

  // Presses the left button at `at` on the plot (`kind`: a press or a double click),
  // grabs the window that opens and lets go again.
  void Press(QWidget& view, QPoint at, QEvent::Type kind, const char* file) {
    before_ = VisibleTopLevels();
    grabbed_ = false;
    const QPointF local(at), global(view.mapToGlobal(local));
    QMouseEvent press(kind, local, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&view, &press);
    QApplication::processEvents();
    GrabNew({0, file});
    QMouseEvent release(QEvent::MouseButtonRelease, local, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&view, &release);
    QApplication::processEvents();
    CloseNew();
  }

  bool Failed() const { return failed_; }

 private:
  // Ends the tool a shot opened and closes any other window it left.
  void CloseNew() {
    if (ToolDialog* tool = window_.ActiveTool()) tool->EndTool();
    for (QWidget* w : VisibleTopLevels())
      if (!before_.count(w)) w->close();
    QApplication::processEvents();
  }

  std::set<QWidget*> VisibleTopLevels() const {
    std::set<QWidget*> shown;
    for (QWidget* w : QApplication::topLevelWidgets())
      if (w->isVisible() && w != &window_ && !qobject_cast<QMenu*>(w)) shown.insert(w);
    return shown;
  }

  void GrabNew(const Shot& shot) {
    if (grabbed_) return;
    grabbed_ = true;
    // The dialogs only: the image windows a tool shows beside itself lay themselves out
    // against the main window while they paint, which a grab does not reproduce.
    int n = 0;
    for (QWidget* w : VisibleTopLevels()) {
      if (before_.count(w) || !qobject_cast<QDialog*>(w)) continue;
      Save(*w, QString::fromLatin1(shot.File));
      ++n;
    }
    if (n == 0) std::printf("no window opened by %s (command %d)\n", shot.File, shot.Command);
    if (QWidget* modal = QApplication::activeModalWidget()) modal->close();
  }

  MainWindow& window_;
  QString out_;
  std::set<QWidget*> before_;
  bool grabbed_ = false;
  bool failed_ = false;
};

// The offscreen platform says for every dialog what it cannot do (raise it, size it to
// its hints, grab the keyboard), and misses a runtime folder it never uses; that is no
// news here.
void QuietHandler(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (text.startsWith(QStringLiteral("This plugin does not support")) || text.contains(QStringLiteral("XDG_RUNTIME_DIR")))
    return;
  std::fprintf(stderr, "%s%s\n", type == QtDebugMsg ? "" : "guide-shots: ", qPrintable(text));
}

}  // namespace

int main(int argc, char** argv) {
  qInstallMessageHandler(QuietHandler);
  QApplication app(argc, argv);
  if (argc != 3) {
    std::fprintf(stderr, "usage: guide-shots SECTION_FOLDER OUT_FOLDER\n");
    return 2;
  }
  RegisterFontSubstitutes();
  const std::filesystem::path section = std::filesystem::absolute(argv[1]);
  const QString out = QString::fromLocal8Bit(argv[2]);
  QDir().mkpath(out);
  // Settings of a first run, so the pictures never depend on the machine's own.
  QTemporaryDir scratch;
  if (!scratch.isValid()) return 1;
  const std::filesystem::path settings = scratch.path().toStdString();

  auto model = std::make_unique<Model>();
  ShotPrompt prompt;
  auto window = StartUp(*model, prompt, settings);
  if (!window) return 1;
  // The program's first-run window size, so every menu fits on the menu bar.
  window->resize(1000, 700);
  window->show();
  QApplication::processEvents();

  Shooter shooter(*window, out);
  prompt.Files = {(section / "radiograph.tif").string(), (section / "optical.tif").string()};
  window->OnCommand(kCmdReadRadiograph);
  window->OnCommand(kCmdReadOptical);
  QApplication::processEvents();
  shooter.Save(*window, QStringLiteral("main-window"));
  shooter.Menus();
  // The value read-out over the middle of the first data column, and the scale of that
  // column from a double click on its header row just above the plot.
  const PlotLayout& layout = window->View()->Layout();
  const int column = layout.ColumnLeft + layout.ColumnWidth / 2;
  shooter.Press(*window->View(), QPoint(column, layout.Y0 + layout.PlotHeight / 2), QEvent::MouseButtonPress,
                "value-readout");
  shooter.Press(*window->View(), QPoint(column, layout.TopMargin - layout.CharHeight / 2),
                QEvent::MouseButtonDblClick, "y-scale");
  for (const Shot& shot : kShots) shooter.Command(shot);

  const QRect columns(0, 0, 360, 700);
  window->OnCommand(kCmdOverlayOr);
  QApplication::processEvents();
  shooter.Save(*window, QStringLiteral("overlay-or"), columns);
  window->OnCommand(kCmdOverlayOr);
  window->OnCommand(kCmdZoom400);
  QApplication::processEvents();
  shooter.Save(*window, QStringLiteral("zoom-400"), columns);

  window.reset();
  return shooter.Failed() ? 1 : 0;
}
