#pragma once
// The program's own BMP and TIFF writers for "Save I&mage".
//
// Both write byte layouts that other installations and users' scripts have read for
// years, so their oddities are kept: the BMP size field is 40 bytes too large, and the
// TIFF directory exchanges width and length, is not sorted by tag, has no
// next-directory offset and carries an overflowed resolution numerator.

#include <cstddef>
#include <cstdint>

namespace sedra {

class Prompt;
class ReplacingFile;

// The 40-byte bitmap information header as a device-independent bitmap describes
// itself.  Rows are bottom-up, each padded to a multiple of 4 bytes.
struct BitmapInfoHeader {
  int32_t Width = 0;
  int32_t Height = 0;  // positive: bottom-up rows
  uint16_t Planes = 1;
  uint16_t BitCount = 24;
  uint32_t Compression = 0;  // 0 = uncompressed, 3 = three colour masks follow
  uint32_t SizeImage = 0;    // bytes of pixel rows; 0 = work it out from the size
  int32_t XPelsPerMeter = 0;
  int32_t YPelsPerMeter = 0;
  uint32_t ClrUsed = 0;
  uint32_t ClrImportant = 0;
};

constexpr uint32_t kBmpInfoHeaderSize = 40;

// Bytes of one padded row of `width` pixels at `bitCount` bits.
uint32_t DibStride(int32_t width, int bitCount);

// Bytes from the start of the information header to the pixel rows: the header itself
// plus three colour masks for 16 and 32 bits, or a colour table for palette depths.
uint32_t BmpHeaderSize(int bitCount);

// Where WriteBmp gets its bitmap: the display (through Qt) in the program, a fake in
// tests.  The two calls are the two questions the writer asks of the display: first
// the format only, then the rows.
class BitmapSource {
 public:
  virtual ~BitmapSource() = default;
  // Fills in the bitmap's format.  False when the display cannot describe it.
  virtual bool Describe(BitmapInfoHeader& header) = 0;
  // Fills the masks or colour table (`extraSize` bytes after the 40-byte header) and
  // `header.SizeImage` bytes of bottom-up rows.  False when the rows cannot be read.
  virtual bool ReadRows(const BitmapInfoHeader& header, uint8_t* extra, size_t extraSize, uint8_t* rows) = 0;
};

// Writes the bitmap as a BMP file into `file` (opened, not yet committed).  Reports
// "GetDIBits 1 failed" / "GetDIBits failed" through the prompt when the source fails.
// False then, or when a write failed (file.Error() says why; the caller commits or
// not and tells the user).
bool WriteBmp(Prompt& prompt, ReplacingFile& file, BitmapSource& source);

// Offset of the TIFF directory for a w x h plot: the pixel bytes after the 8-byte
// header, rounded up to a multiple of 4.
uint32_t TiffDirectoryOffset(int32_t width, int32_t height);
// Total size of the file WriteTiff writes.
uint32_t TiffFileSize(int32_t width, int32_t height);

// Writes the first 3 x width x height bytes of `pixels` (24-bit bottom-up BGR rows,
// padded to 4, exactly as read from the display) as an uncompressed RGB TIFF.
// `documentName` is the current section's FileName (at most 63 characters are kept).
// False when a write failed (file.Error() says why).
bool WriteTiff(ReplacingFile& file, int32_t width, int32_t height, const uint8_t* pixels, const char* documentName);

// Converts 32-bit 0xAARRGGBB pixels (top-down rows, `bytesPerLine` apart) into the
// 24-bit bottom-up BGR rows the writers take, each padded with zeros to 4 bytes.
// `out` must hold DibStride(width, 24) x height bytes.
void PackBottomUp24(const uint8_t* bits, int32_t width, int32_t height, std::ptrdiff_t bytesPerLine, uint8_t* out);

}  // namespace sedra
