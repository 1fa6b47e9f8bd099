#include "output/image_files.h"

#include <cmath>
#include <cstring>
#include <new>
#include <vector>

#include "model/file_replace.h"
#include "model/messages.h"
#include "model/numbers.h"
#include "model/prompt.h"

namespace sedra {

namespace {

// Little-endian field writers into a byte buffer, so the files are the same on every
// platform.
void Put16(std::vector<uint8_t>& out, uint32_t v) {
  out.push_back(uint8_t(v & 0xFF));
  out.push_back(uint8_t((v >> 8) & 0xFF));
}
void Put32(std::vector<uint8_t>& out, uint32_t v) {
  Put16(out, v & 0xFFFF);
  Put16(out, v >> 16);
}

void PutInfoHeader(std::vector<uint8_t>& out, const BitmapInfoHeader& h) {
  Put32(out, kBmpInfoHeaderSize);
  Put32(out, uint32_t(h.Width));
  Put32(out, uint32_t(h.Height));
  Put16(out, h.Planes);
  Put16(out, h.BitCount);
  Put32(out, h.Compression);
  Put32(out, h.SizeImage);
  Put32(out, uint32_t(h.XPelsPerMeter));
  Put32(out, uint32_t(h.YPelsPerMeter));
  Put32(out, h.ClrUsed);
  Put32(out, h.ClrImportant);
}


// TIFF field types.
constexpr uint16_t kShort = 3;
constexpr uint16_t kAscii = 2;
constexpr uint16_t kLong = 4;
constexpr uint16_t kRational = 5;
constexpr uint32_t kTiffEntries = 16;
constexpr uint32_t kTiffTextField = 64;
constexpr uint32_t kResolutionDenominator = 100000;

void PutEntry(std::vector<uint8_t>& out, uint16_t tag, uint16_t type, uint32_t count, uint32_t value) {
  Put16(out, tag);
  Put16(out, type);
  Put32(out, count);
  // A SHORT value sits in the low two bytes of the value field.
  Put32(out, type == kShort ? (value & 0xFFFF) : value);
}

}  // namespace

uint32_t DibStride(int32_t width, int bitCount) {
  const uint64_t bits = uint64_t(width < 0 ? 0 : width) * uint64_t(bitCount < 0 ? 0 : bitCount);
  return uint32_t(((bits + 31) / 32) * 4);
}

uint32_t BmpHeaderSize(int bitCount) {
  switch (bitCount) {
    case 24:
      return kBmpInfoHeaderSize;
    case 16:
    case 32:
      return kBmpInfoHeaderSize + 3 * 4;  // red, green and blue masks
    default:
      // A palette depth carries one 4-byte entry per colour.  Deeper formats have no
      // table; they never come from the display but must not overflow the shift.
      if (bitCount >= 0 && bitCount <= 8) return kBmpInfoHeaderSize + 4u * (1u << bitCount);
      return kBmpInfoHeaderSize;
  }
}

bool WriteBmp(Prompt& prompt, ReplacingFile& file, BitmapSource& source) {
  BitmapInfoHeader header;
  if (!source.Describe(header)) {
    prompt.Tell(msg::kGetDIBits1Failed);
    return false;
  }
  if (header.SizeImage == 0) {
    const int32_t rows = header.Height < 0 ? -header.Height : header.Height;
    header.SizeImage = DibStride(header.Width, header.BitCount) * uint32_t(rows);
  }
  const uint32_t headerSize = BmpHeaderSize(header.BitCount);

  std::vector<uint8_t> rows;
  std::vector<uint8_t> extra;
  try {
    rows.resize(header.SizeImage);
    extra.resize(headerSize - kBmpInfoHeaderSize);
  } catch (const std::bad_alloc&) {
    return false;
  }

  // The size field adds the 54 bytes of both headers on top of the header size that
  // already holds the 40-byte information header, so it reads 40 more than the file
  // really has.  Readers ignore it; files written this way are in circulation.
  std::vector<uint8_t> fileHeader;
  fileHeader.push_back('B');
  fileHeader.push_back('M');
  Put32(fileHeader, header.SizeImage + headerSize + 54);
  Put32(fileHeader, 0);
  Put32(fileHeader, headerSize + 14);
  // The file header goes out before the rows are read; a failure after it is never
  // committed, so no 14-byte file is left behind.
  file.Write(fileHeader.data(), fileHeader.size());

  if (!source.ReadRows(header, extra.data(), extra.size(), rows.data())) {
    prompt.Tell(msg::kGetDIBitsFailed);
    return false;
  }
  std::vector<uint8_t> info;
  PutInfoHeader(info, header);
  info.insert(info.end(), extra.begin(), extra.end());
  file.Write(info.data(), info.size());
  return file.Write(rows.data(), rows.size());
}

uint32_t TiffDirectoryOffset(int32_t width, int32_t height) {
  const uint32_t pixelBytes = 3u * uint32_t(width) * uint32_t(height);
  return (pixelBytes + 8 + 3) & ~3u;
}

uint32_t TiffFileSize(int32_t width, int32_t height) {
  return TiffDirectoryOffset(width, height) + 2 + kTiffEntries * 12 + 2 * kTiffTextField + 2 * 8;
}

bool WriteTiff(ReplacingFile& file, int32_t width, int32_t height, const uint8_t* pixels, const char* documentName) {
  const uint32_t w = uint32_t(width);
  const uint32_t h = uint32_t(height);
  const uint32_t pixelBytes = 3u * w * h;
  const uint32_t dir = TiffDirectoryOffset(width, height);

  std::vector<uint8_t> head;
  head.push_back('I');
  head.push_back('I');
  Put16(head, 42);
  Put32(head, dir);
  file.Write(head.data(), head.size());
  // The rows go out exactly as the display gave them: bottom-up, blue first, padded.
  // Together with the exchanged width and length below this is the layout files
  // already in use have, so it is kept rather than turned into a textbook RGB strip.
  file.Write(pixels, pixelBytes);
  const uint8_t zeros[4] = {0, 0, 0, 0};
  file.Write(zeros, dir - pixelBytes - 8);

  const uint32_t nameOffset = dir + 2 + kTiffEntries * 12;
  const uint32_t softwareOffset = nameOffset + kTiffTextField;
  const uint32_t xResOffset = softwareOffset + kTiffTextField;
  const uint32_t yResOffset = xResOffset + 8;

  std::vector<uint8_t> d;
  Put16(d, kTiffEntries);
  // Width and length are exchanged, and RowsPerStrip is the width: this is the
  // directory of the writer's quarter-turn modes, used unchanged for the plain one.
  PutEntry(d, 255, kShort, 1, 1);
  PutEntry(d, 256, kShort, 1, h);
  PutEntry(d, 257, kShort, 1, w);
  PutEntry(d, 258, kShort, 1, 8);
  PutEntry(d, 259, kShort, 1, 1);
  PutEntry(d, 262, kShort, 1, 2);
  PutEntry(d, 269, kAscii, kTiffTextField, nameOffset);
  PutEntry(d, 273, kLong, 1, 8);
  PutEntry(d, 274, kShort, 1, 1);
  PutEntry(d, 277, kShort, 1, 3);
  PutEntry(d, 278, kShort, 1, w);
  PutEntry(d, 279, kLong, 1, pixelBytes);
  PutEntry(d, 284, kShort, 1, 1);
  // Software before the resolutions: not in tag order, and no next-directory
  // offset follows.  Kept, as files in use have exactly this directory.
  PutEntry(d, 305, kAscii, kTiffTextField, softwareOffset);
  PutEntry(d, 282, kRational, 1, xResOffset);
  PutEntry(d, 283, kRational, 1, yResOffset);

  char name[kTiffTextField] = {};
  if (documentName != nullptr) std::strncpy(name, documentName, kTiffTextField - 1);
  d.insert(d.end(), name, name + kTiffTextField);
  d.insert(d.end(), kTiffTextField, 0);  // software: empty

  // 72 dpi scaled by the denominator was meant; the product overflows the 32-bit
  // conversion, which yields 0x80000000, and that numerator is what every file has.
  const uint32_t numerator =
      uint32_t(RoundToInt(std::floor(7200000.0 * double(kResolutionDenominator))));
  for (int i = 0; i < 2; ++i) {
    Put32(d, numerator);
    Put32(d, kResolutionDenominator);
  }
  // Writes fail alike from the first failure on: the last one answers for all.
  return file.Write(d.data(), d.size());
}

void PackBottomUp24(const uint8_t* bits, int32_t width, int32_t height, std::ptrdiff_t bytesPerLine, uint8_t* out) {
  const uint32_t stride = DibStride(width, 24);
  for (int32_t row = 0; row < height; ++row) {
    const uint8_t* src = bits + std::ptrdiff_t(height - 1 - row) * bytesPerLine;
    uint8_t* dst = out + size_t(row) * stride;
    for (int32_t x = 0; x < width; ++x) {
      uint32_t px;
      std::memcpy(&px, src + size_t(x) * 4, 4);
      *dst++ = uint8_t(px & 0xFF);
      *dst++ = uint8_t((px >> 8) & 0xFF);
      *dst++ = uint8_t((px >> 16) & 0xFF);
    }
    for (uint32_t pad = uint32_t(width) * 3; pad < stride; ++pad) *dst++ = 0;
  }
}

}  // namespace sedra
