#include "app/main_window.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QTimer>

#include "app/menu_table.h"
#include "app/plot_view.h"
#include "app/window_rect.h"
#include "interact/expand_dialog.h"
#include "model/core.h"
#include "model/menu_rules.h"
#include "model/menu_state.h"
#include "model/model.h"
#include "model/prompt.h"
#include "model/settings_files.h"
#include "ui/tool_dialog.h"

namespace sedra {

MainWindow::MainWindow(Model& model, Prompt& prompt, std::filesystem::path settingsFolder, QWidget* parent)
    : QMainWindow(parent), model_(model), prompt_(prompt), settingsFolder_(std::move(settingsFolder)) {
  setObjectName(QStringLiteral("SedraPlotClass"));
  setWindowTitle(QStringLiteral("Sedra Data Plot"));
  setWindowIcon(QIcon(QStringLiteral(":/icons/sedra-plot.png")));
  setAcceptDrops(true);

  auto* central = new QWidget(this);
  auto* layout = new QHBoxLayout(central);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  view_ = new PlotView(model_, *this, central);
  scrollBar_ = new QScrollBar(Qt::Vertical, central);
  scrollBar_->setObjectName(QStringLiteral("VScrollBar"));
  scrollBar_->setRange(0, 0);
  scrollBar_->hide();
  layout->addWidget(view_, 1);
  layout->addWidget(scrollBar_);
  setCentralWidget(central);
  connect(scrollBar_, &QScrollBar::actionTriggered, this, &MainWindow::OnScrollAction);

  // The frame is being dragged while resize events keep coming; the heavy layout
  // waits until they stop.
  sizeMoveTimer_ = new QTimer(this);
  sizeMoveTimer_->setSingleShot(true);
  sizeMoveTimer_->setInterval(200);
  connect(sizeMoveTimer_, &QTimer::timeout, this, &MainWindow::EndSizeMove);

  helpOpener_ = [](const QUrl& url) { QDesktopServices::openUrl(url); };
  model_.Invalidate = [this] { Repaint(); };
  // A tool never stays open on data that is gone.
  model_.ImagesReplaced = [this] {
    if (ToolDialog* tool = ActiveTool()) tool->EndTool();
  };

  BuildMenu();
  ApplyMenuState();
  QCoreApplication::instance()->installEventFilter(this);
}

MainWindow::~MainWindow() {
  QCoreApplication::instance()->removeEventFilter(this);
  model_.Invalidate = nullptr;
  model_.ImagesReplaced = nullptr;
}

void MainWindow::BuildMenu() {
  QMenuBar* bar = menuBar();
  bar->setObjectName(QStringLiteral("MainMenu"));
  const auto& table = MainMenuTable();
  auto wire = [this](QAction* action, int id) {
    action->setData(id);
    actions_[id] = action;
    connect(action, &QAction::triggered, this, [this, id] { OnCommand(id); });
  };
  for (size_t pos = 0; pos < table.size(); ++pos) {
    const TopEntryDef& entry = table[pos];
    QAction* top = nullptr;
    if (entry.Id != 0) {
      top = bar->addAction(QString::fromLatin1(entry.Text));
      wire(top, entry.Id);
      connect(top, &QAction::hovered, this, [this, id = entry.Id] { model_.App.HelpContext = uint32_t(id); });
    } else {
      QMenu* menu = bar->addMenu(QString::fromLatin1(entry.Text));
      top = menu->menuAction();
      for (const MenuItemDef& item : entry.Items) wire(menu->addAction(QString::fromLatin1(item.Text)), item.Id);
      // WM_MENUSELECT: remember the last highlighted item for context help.
      connect(menu, &QMenu::hovered, this, [this](QAction* a) {
        if (a && a->data().toInt() != 0) model_.App.HelpContext = uint32_t(a->data().toInt());
      });
    }
    topEntries_[pos] = top;
  }
  // Zoom items and the overlay toggles show a check mark.
  for (int id : {kCmdZoom100, kCmdZoom200, kCmdZoom400, kCmdZoom800, kCmdZoom1600, kCmdZoom3200, kCmdOverlayOr,
                 kCmdOverlayAnd})
    actions_[id]->setCheckable(true);
}

QAction* MainWindow::Action(int id) const {
  auto it = actions_.find(id);
  return it == actions_.end() ? nullptr : it->second;
}

void MainWindow::ApplyMenuState() {
  const MenuState& menu = model_.App.Menu;
  if (menu.Generation == appliedMenuGeneration_) return;
  appliedMenuGeneration_ = menu.Generation;
  for (int pos = 0; pos < kMenuPositions; ++pos) topEntries_[size_t(pos)]->setEnabled(menu.IsTopEnabled(pos));
  for (auto& [id, action] : actions_) {
    const bool isTop = std::find(topEntries_.begin(), topEntries_.end(), action) != topEntries_.end();
    if (!isTop) action->setEnabled(menu.IsItemEnabled(id));
    if (action->isCheckable()) action->setChecked(menu.IsChecked(id));
  }
}

void MainWindow::Repaint() {
  ApplyMenuState();
  view_->update();
}

void MainWindow::RepaintBand(const QRect& client) { view_->RepaintBand(client); }

int MainWindow::ClientHeight() const { return view_->height(); }

int MainWindow::ScrollPos() const { return scrollBar_->value(); }

void MainWindow::SetPlotCursor(Qt::CursorShape shape) { view_->setCursor(shape); }

ToolDialog* MainWindow::ActiveTool() const { return activeTool_.data(); }

void MainWindow::OpenTool(ToolDialog* tool) {
  // One tool at a time: the open one ends (clearing its modes) before the next starts.
  if (ToolDialog* open = ActiveTool(); open && open != tool) open->EndTool();
  activeTool_ = tool;
  tool->Start();
}

void MainWindow::ToolEnded(ToolDialog* tool) {
  if (activeTool_ == tool) activeTool_ = nullptr;
}

void MainWindow::OnCommand(int id) {
  commands_.Dispatch(id, model_);
  ApplyMenuState();
}

void MainWindow::ToggleOverlay(bool orMode) {
  PlotState& plot = model_.Plot();
  uint32_t& mine = orMode ? plot.OverlayOr : plot.OverlayAnd;
  uint32_t& other = orMode ? plot.OverlayAnd : plot.OverlayOr;
  if (mine) {
    mine = 0;
  } else {
    mine = 1;
    other = 0;
  }
  MenuAfterOverlay(model_.App.Menu, plot.OverlayOr != 0, plot.OverlayAnd != 0);
  Repaint();
}

void MainWindow::SetZoom(int id) {
  PlotState& plot = model_.Plot();
  plot.ZoomPending = 0;
  const int old = plot.ZoomFactor;
  plot.ZoomFactor = ZoomFactorFor(id);
  MenuAfterZoom(model_.App.Menu, id);

  const int h = ClientHeight();
  const ZoomScroll z = ZoomScrollFor(old, plot.ZoomFactor, plot.ViewTop, h);
  if (z.ShowBar) {
    scrollBar_->show();
    scrollBar_->setRange(0, z.RangeMax);
    scrollBar_->setPageStep(h);
    scrollBar_->setSingleStep(h / 16 + 1);
    scrollBar_->setValue(z.Position);
    plot.ViewTop = z.ViewTop;
  } else {
    scrollBar_->hide();
    scrollBar_->setRange(0, 0);
  }

  if (id == kCmdExpand && !plot.ShowAllSections) {
    // The expansion is chosen in its dialog.
    ShowTool<ExpandDialog>(*this);
    ApplyMenuState();
    return;
  }
  plot.DepthSpan = plot.SectionLength[model_.CurSectionSlot()];
  plot.ViewFirstPoint = 0;
  plot.ViewLastPoint = model_.CurSection().PointCount;
  if (plot.Expanded) plot.NeedLayout = 1;
  plot.Expanded = 0;
  Repaint();
}

void MainWindow::OnScrollAction(int action) {
  ScrollCode code;
  switch (action) {
    case QAbstractSlider::SliderSingleStepAdd: code = ScrollCode::LineDown; break;
    case QAbstractSlider::SliderSingleStepSub: code = ScrollCode::LineUp; break;
    case QAbstractSlider::SliderPageStepAdd: code = ScrollCode::PageDown; break;
    case QAbstractSlider::SliderPageStepSub: code = ScrollCode::PageUp; break;
    case QAbstractSlider::SliderToMinimum: code = ScrollCode::Top; break;
    case QAbstractSlider::SliderToMaximum: code = ScrollCode::Bottom; break;
    case QAbstractSlider::SliderMove: code = ScrollCode::ThumbTrack; break;
    default: return;
  }
  // The slider has already moved its thumb; our arithmetic decides the position.
  const int thumb = scrollBar_->sliderPosition();
  scrollBar_->setSliderPosition(scrollBar_->value());
  OnVScroll(code, thumb);
}

void MainWindow::OnVScroll(ScrollCode code, int thumb) {
  const int pos = scrollBar_->value();
  const int n = ScrollTarget(code, pos, ClientHeight(), scrollBar_->minimum(), scrollBar_->maximum(), thumb);
  if (n == pos) return;
  // The band of header and title at the top stays where it is.
  const PlotState& plot = model_.Plot();
  const int band = plot.HeaderHeight + plot.TitleHeight + 7;
  scrollBar_->setValue(n);
  view_->scroll(0, pos - n, view_->rect().adjusted(0, band, 0, 0));
  view_->update();
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_PageUp: OnVScroll(ScrollCode::PageUp); break;
    case Qt::Key_PageDown: OnVScroll(ScrollCode::PageDown); break;
    case Qt::Key_End: OnVScroll(ScrollCode::Bottom); break;
    case Qt::Key_Home: OnVScroll(ScrollCode::Top); break;
    case Qt::Key_Up: OnVScroll(ScrollCode::LineUp); break;
    case Qt::Key_Down: OnVScroll(ScrollCode::LineDown); break;
    case Qt::Key_F1: OnHelp(HelpFrom::MainWindow); break;
    default: QMainWindow::keyPressEvent(event); return;
  }
  event->accept();
}

QUrl MainWindow::HelpTarget(int context) const {
  const QString chm = QString::fromStdString(model_.App.HelpPath);
  if (!chm.isEmpty() && QFileInfo::exists(chm)) return QUrl::fromLocalFile(chm);
  QUrl guide = QUrl::fromLocalFile(QCoreApplication::applicationDirPath() + QStringLiteral("/help/index.html"));
  if (context != 0) guide.setFragment(QStringLiteral("cmd%1").arg(context));
  return guide;
}

void MainWindow::OnHelp(HelpFrom from) {
  if (from == HelpFrom::MenuItem) return;
  OpenHelp(from == HelpFrom::OwnedWindow ? int(model_.App.HelpContext) : 0);
}

std::optional<MainWindow::HelpFrom> MainWindow::HelpSource(const QWidget* window) const {
  if (window == this) return HelpFrom::MainWindow;
  bool owned = false;
  for (const QWidget* w = window ? window->parentWidget() : nullptr; w && !owned; w = w->parentWidget())
    owned = w == this;
  if (!owned) return std::nullopt;
  return qobject_cast<const QMenu*>(window) ? HelpFrom::MenuItem : HelpFrom::OwnedWindow;
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F1 &&
      watched->isWidgetType()) {
    const auto from = HelpSource(static_cast<QWidget*>(watched)->window());
    // The main window's own F1 arrives through keyPressEvent.
    if (from && *from != HelpFrom::MainWindow) {
      OnHelp(*from);
      return true;
    }
  }
  return QMainWindow::eventFilter(watched, event);
}

void MainWindow::OpenHelp(int context) { helpOpener_(HelpTarget(context)); }

void MainWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  model_.Plot().InSizeMove = 1;
  sizeMoveTimer_->start();
  model_.Plot().NeedLayout = 1;
}

void MainWindow::EndSizeMove() {
  model_.Plot().InSizeMove = 0;
  model_.Plot().NeedLayout = 1;
  Repaint();
}

// Dropped files are accepted and then ignored: the program reads sections only
// through its menu, where the kind of image is chosen.
void MainWindow::dragEnterEvent(QDragEnterEvent* event) { event->acceptProposedAction(); }
void MainWindow::dragMoveEvent(QDragMoveEvent* event) { event->acceptProposedAction(); }
void MainWindow::dropEvent(QDropEvent* event) { event->acceptProposedAction(); }

// The rectangle the window takes on screen, frame included, as it was before any
// maximising: the next start puts the frame back in the same place.
void MainWindow::StoreWindowRect() {
  const QMargins frame = FrameMargins(geometry(), frameGeometry());
  const QRect inner = isMaximized() || isFullScreen() ? normalGeometry() : geometry();
  const QRect outer = OuterRect(inner.isValid() ? inner : geometry(), frame);
  DisplaySettings& s = model_.Settings();
  s.WindowX = outer.x();
  s.WindowY = outer.y();
  s.WindowWidth = outer.width();
  s.WindowHeight = outer.height();
}

void MainWindow::TellSettingsNotSaved(const SettingsSave& save) {
  if (settingsProblemTold_) return;
  settingsProblemTold_ = true;
  prompt_.Tell(SettingsNotSavedMessage(save), "", Icon::Exclamation);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!NewCore(model_, &prompt_)) {
    event->ignore();
    return;
  }
  StoreWindowRect();
  const SettingsSave save = WriteSettings(model_, settingsFolder_);
  if (!save.Saved) TellSettingsNotSaved(save);
  FreeSectionImages(model_);
  if (ToolDialog* tool = ActiveTool()) tool->EndTool();
  event->accept();
}

}  // namespace sedra
