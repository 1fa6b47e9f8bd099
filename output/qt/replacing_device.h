#pragma once
// Qt's own writers (the PDF engine, the PNG encoder) writing through ReplacingFile, so
// their files, too, are complete or not there at all.  Neither engine reports a failed
// write itself: a PDF painter ends "successfully" on a full disk.  Here every write is
// checked, and the file replaces the target only when all of them went through.

#include <QIODevice>
#include <QPdfWriter>
#include <filesystem>
#include <memory>

#include "model/file_replace.h"

class QImage;

namespace sedra {

// A write-only, sequential device over a ReplacingFile.
class ReplacingDevice : public QIODevice {
 public:
  explicit ReplacingDevice(ReplacingFile& file) : file_(file) {}
  bool isSequential() const override { return true; }

 protected:
  qint64 readData(char*, qint64) override { return -1; }
  qint64 writeData(const char* data, qint64 size) override {
    return size >= 0 && file_.Write(data, size_t(size)) ? size : -1;
  }

 private:
  ReplacingFile& file_;
};

// One PDF document written whole or not at all: set up Writer(), paint on it, end the
// painter, then Commit().  Without Commit() nothing replaces the target.
class PdfFile {
 public:
  explicit PdfFile(const std::filesystem::path& path) : file_(path) {}
  // False when the file cannot be created (Error() says why).
  bool Open();
  QPdfWriter& Writer() { return *writer_; }
  bool Commit();
  int Error() const { return file_.Error(); }

 private:
  ReplacingFile file_;
  std::unique_ptr<ReplacingDevice> device_;
  std::unique_ptr<QPdfWriter> writer_;
};

// Writes `image` as `format` ("PNG") to `path` whole or not at all.  Returns 0, or the
// errno of what failed.
int WriteImageFile(const QImage& image, const std::filesystem::path& path, const char* format);

}  // namespace sedra
