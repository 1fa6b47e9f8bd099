#include "output/qt/replacing_device.h"

#include <QImage>
#include <QImageWriter>
#include <cerrno>

namespace sedra {

bool PdfFile::Open() {
  if (!file_.Open()) return false;
  device_ = std::make_unique<ReplacingDevice>(file_);
  device_->open(QIODevice::WriteOnly);
  writer_ = std::make_unique<QPdfWriter>(device_.get());
  return true;
}

bool PdfFile::Commit() {
  // The writer flushes the document's tail into the device when it goes.
  writer_.reset();
  device_.reset();
  return file_.Commit();
}

int WriteImageFile(const QImage& image, const std::filesystem::path& path, const char* format) {
  ReplacingFile file(path);
  if (!file.Open()) return file.Error();
  {
    ReplacingDevice device(file);
    device.open(QIODevice::WriteOnly);
    QImageWriter writer(&device, format);
    // An encoder that gives up without a failed write (no memory, say) is a failure too.
    if (!writer.write(image) && file.Error() == 0) return EIO;
  }
  return file.Commit() ? 0 : file.Error();
}

}  // namespace sedra
