#pragma once
// "Save I&mage" and "Copy to C&lipboard": the plot as the window shows it, in pixels.

#include <QImage>

#include "output/image_files.h"

class QWidget;

namespace sedra {

class Model;
class Prompt;

// Asks for a file (BMP or TIFF), repaints the plot widget into an image of its size
// and writes it with the program's own writers.  True when a file was written (or,
// for the JPEG filter, when the message was shown); false when cancelled or failed.
bool SaveImage(Model& model, Prompt& prompt, QWidget& plotView);

// Puts what the plot widget shows now (scrolled position included, not painted again)
// on the clipboard and says whether that worked.
void CopyToClipboard(Prompt& prompt, QWidget& plotView);

// The window's current pixels: read back from the screen where the platform allows,
// otherwise painted once more at the current scroll position (the same picture).
QImage CaptureWindowPixels(QWidget& plotView);

// A captured image as the display's bitmap for WriteBmp: 24 bits, bottom-up rows.
// The capture itself is 32-bit; 24 bits keeps the 40-byte header with no masks and
// the same rows the TIFF writer takes, and every BMP reader opens it.
class ImageBitmapSource : public BitmapSource {
 public:
  explicit ImageBitmapSource(const QImage& image) : image_(image) {}
  bool Describe(BitmapInfoHeader& header) override;
  bool ReadRows(const BitmapInfoHeader& header, uint8_t* extra, size_t extraSize, uint8_t* rows) override;

 private:
  QImage image_;
};

}  // namespace sedra
