#include "app/desktop_prompt.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>

#include "plot/paint_context.h"

namespace sedra {

namespace {
// The program's own texts are 8-bit ANSI; file and folder names are native paths.
QString Text(const std::string& s) { return FromAnsi(s.c_str(), s.size()); }
QString NativePath(const std::string& s) { return QFile::decodeName(QByteArray::fromStdString(s)); }
}  // namespace

DialogStart InitialSelection(const FileRequest& request) {
  DialogStart start{NativePath(request.InitialDir), {}};
  QString name = NativePath(request.InitialName);
  // The initial name may carry a leading separator, or the section's folder before it.
  name.replace(QLatin1Char('\\'), QLatin1Char('/'));
  name = name.mid(name.lastIndexOf(QLatin1Char('/')) + 1);
  if (!name.contains(QLatin1Char('*'))) start.Name = name;
  return start;
}

QString FilterString(const FileRequest& request, QString* selected) {
  QStringList parts;
  for (size_t i = 0; i < request.Filters.size(); ++i) {
    const FileFilter& f = request.Filters[i];
    // Qt reads the patterns from the parentheses; add them when the name lacks them.
    QString part = Text(f.Name);
    if (!part.contains(QLatin1Char('('))) part += QStringLiteral(" (") + Text(f.Pattern) + QLatin1Char(')');
    parts << part;
    if (selected && int(i) + 1 == request.FilterIndex) *selected = part;
  }
  return parts.join(QStringLiteral(";;"));
}

Answer DesktopPrompt::Message(const std::string& text, const std::string& caption, Icon icon, Buttons buttons) {
  QMessageBox box(owner_);
  box.setText(Text(text));
  box.setWindowTitle(Text(caption));
  switch (icon) {
    case Icon::Hand: box.setIcon(QMessageBox::Critical); break;
    case Icon::Exclamation: box.setIcon(QMessageBox::Warning); break;
    case Icon::Information: box.setIcon(QMessageBox::Information); break;
    case Icon::Question: box.setIcon(QMessageBox::Question); break;
    case Icon::None: break;
  }
  switch (buttons) {
    case Buttons::Ok: box.setStandardButtons(QMessageBox::Ok); break;
    case Buttons::OkCancel: box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel); break;
    case Buttons::YesNo: box.setStandardButtons(QMessageBox::Yes | QMessageBox::No); break;
    case Buttons::YesNoCancel:
      box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
      break;
  }
  QApplication::setOverrideCursor(Qt::ArrowCursor);
  const int result = box.exec();
  QApplication::restoreOverrideCursor();
  switch (result) {
    case QMessageBox::Yes: return Answer::Yes;
    case QMessageBox::No: return Answer::No;
    case QMessageBox::Cancel: return Answer::Cancel;
    default: return Answer::Ok;
  }
}

namespace {
FileChoice RunFileDialog(QWidget* owner, const FileRequest& request, bool save) {
  QString selected;
  const QString filters = FilterString(request, &selected);
  const DialogStart start = InitialSelection(request);
  QFileDialog dialog(owner, Text(request.Title), start.Directory, filters);
  if (!start.Name.isEmpty()) dialog.selectFile(start.Name);
  dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  // The save command asks about overwriting itself.
  if (save) dialog.setOption(QFileDialog::DontConfirmOverwrite);
  if (!selected.isEmpty()) dialog.selectNameFilter(selected);
  FileChoice choice;
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return choice;
  choice.Accepted = true;
  choice.Path = QFile::encodeName(dialog.selectedFiles().first()).toStdString();
  const QStringList all = filters.split(QStringLiteral(";;"));
  choice.FilterIndex = int(all.indexOf(dialog.selectedNameFilter())) + 1;
  if (choice.FilterIndex < 1) choice.FilterIndex = 1;
  return choice;
}
}  // namespace

FileChoice DesktopPrompt::OpenFile(const FileRequest& request) { return RunFileDialog(owner_, request, false); }
FileChoice DesktopPrompt::SaveFile(const FileRequest& request) { return RunFileDialog(owner_, request, true); }

void DesktopPrompt::SetBusy(bool busy) {
  if (busy)
    QApplication::setOverrideCursor(Qt::WaitCursor);
  else
    QApplication::restoreOverrideCursor();
}

bool DesktopPrompt::ChoosePrinter(QPrinter& printer) {
  // One copy, the whole plot: no selection and no page numbers to choose.
  QPrintDialog dialog(&printer, nullptr);
  dialog.setOption(QAbstractPrintDialog::PrintSelection, false);
  dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
  return dialog.exec() == QDialog::Accepted;
}

}  // namespace sedra
