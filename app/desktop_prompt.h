#pragma once
// The desktop Prompt: Qt message boxes and file dialogs with the program's texts.

#include <QPointer>
#include <QWidget>

#include "model/prompt.h"
#include "output/qt/print_prompt.h"

namespace sedra {

class DesktopPrompt : public Prompt, public PrintPrompt {
 public:
  void SetOwner(QWidget* owner) { owner_ = owner; }
  Answer Message(const std::string& text, const std::string& caption, Icon icon, Buttons buttons) override;
  FileChoice OpenFile(const FileRequest& request) override;
  FileChoice SaveFile(const FileRequest& request) override;
  void SetBusy(bool busy) override;
  bool ChoosePrinter(QPrinter& printer) override;

 private:
  QPointer<QWidget> owner_;
};

// "TIFF files (*.tif);;All files (*.*)" from the filter list.
QString FilterString(const FileRequest& request, QString* selected);

// Where a file dialog opens: the request's folder (a native path, whatever its
// characters) and the proposed file name without any folder of its own, so that a
// save dialog opens in the working folder even when the proposed name came with the
// section's folder.  A name with a wildcard proposes nothing.
struct DialogStart {
  QString Directory;
  QString Name;
};
DialogStart InitialSelection(const FileRequest& request);

}  // namespace sedra
