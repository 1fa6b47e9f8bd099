#include "output/qt/image_output.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QPixmap>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <new>
#include <vector>

#include "model/file_replace.h"
#include "model/messages.h"
#include "model/model.h"
#include "model/prompt.h"
#include "output/save_rules.h"

namespace sedra {

bool ImageBitmapSource::Describe(BitmapInfoHeader& header) {
  if (image_.isNull()) return false;
  header = BitmapInfoHeader{};
  header.Width = image_.width();
  header.Height = image_.height();
  header.BitCount = 24;
  header.SizeImage = DibStride(header.Width, 24) * uint32_t(header.Height);
  return true;
}

bool ImageBitmapSource::ReadRows(const BitmapInfoHeader& header, uint8_t*, size_t, uint8_t* rows) {
  if (header.BitCount != 24 || header.Width != image_.width() || header.Height != image_.height()) return false;
  const QImage rgb = image_.format() == QImage::Format_RGB32 || image_.format() == QImage::Format_ARGB32
                         ? image_
                         : image_.convertToFormat(QImage::Format_RGB32);
  if (rgb.isNull()) return false;
  PackBottomUp24(rgb.constBits(), rgb.width(), rgb.height(), rgb.bytesPerLine(), rows);
  return true;
}

namespace {

// The plot painted afresh into an image of the widget's size, at the widget's
// resolution so that fonts and margins come out as on screen.
QImage RepaintIntoImage(QWidget& plotView) {
  QImage image(plotView.size(), QImage::Format_RGB32);
  if (image.isNull()) return image;
  image.setDotsPerMeterX(qRound(plotView.logicalDpiX() * 10000.0 / 254.0));
  image.setDotsPerMeterY(qRound(plotView.logicalDpiY() * 10000.0 / 254.0));
  plotView.render(&image);
  return image;
}

}  // namespace

QImage CaptureWindowPixels(QWidget& plotView) {
  QWidget* top = plotView.window();
  QScreen* screen = top->screen();
  if (top->isVisible() && screen && top->windowHandle()) {
    const QPoint at = plotView.mapTo(top, QPoint(0, 0));
    const QPixmap shot = screen->grabWindow(top->winId(), at.x(), at.y(), plotView.width(), plotView.height());
    if (!shot.isNull()) return shot.toImage();
  }
  // Some platforms cannot read a window back (Wayland, a hidden window); painting
  // once more at the same scroll position gives the same picture.
  return RepaintIntoImage(plotView);
}

bool SaveImage(Model& model, Prompt& prompt, QWidget& plotView) {
  const FileChoice choice = ChooseImageFile(prompt, SaveImageRequest(model, WorkingFolder()));
  if (!choice.Accepted) return false;

  // The image goes into a temporary beside the chosen file and replaces it only when
  // complete, so a failure leaves an earlier file of that name as it was.
  ReplacingFile out(choice.Path);
  if (!out.Open()) {
    prompt.Tell(msg::kCouldNotOpenDataFile);
    return false;
  }

  // Painted again first, so the file has the whole plot as it stands now.
  const QImage image = RepaintIntoImage(plotView);
  if (image.isNull()) return false;
  const int32_t width = image.width();
  const int32_t height = image.height();

  bool written = false;
  switch (choice.FilterIndex) {
    case kTiffFilter: {
      std::vector<uint8_t> rows;
      try {
        rows.resize(size_t(width + 1) * size_t(height) * 3);  // room for the padded rows
      } catch (const std::bad_alloc&) {
        prompt.Tell(msg::kCouldNotAllocate);
        return false;
      }
      PackBottomUp24(image.constBits(), width, height, image.bytesPerLine(), rows.data());
      written = WriteTiff(out, width, height, rows.data(), model.CurSection().FileName);
      break;
    }
    case kBmpFilter: {
      ImageBitmapSource source(image);
      // A failing display has told the user itself; only failed writes are told below.
      written = WriteBmp(prompt, out, source);
      if (!written && out.Error() == 0) return true;
      break;
    }
    case kJpegFilter:
      // Nothing is written, so nothing replaces an earlier file.
      prompt.Tell(msg::kNoJpeg);
      return true;
    default:
      return true;
  }
  if (!written || !out.Commit()) {
    prompt.Tell(FileNotWrittenMessage(choice.Path, out.Error()));
    return false;
  }
  return true;
}

void CopyToClipboard(Prompt& prompt, QWidget& plotView) {
  const QImage image = CaptureWindowPixels(plotView);
  if (image.isNull()) return;
  QClipboard* clipboard = QGuiApplication::clipboard();
  bool copied = false;
  if (clipboard) {
    clipboard->setImage(image);
    const QMimeData* data = clipboard->mimeData();
    copied = data && data->hasImage();
  }
  prompt.Tell(copied ? msg::kCopiedToClipboard : msg::kClipboardFailed);
}

}  // namespace sedra
