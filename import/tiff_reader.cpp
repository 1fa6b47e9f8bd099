#include "import/tiff_reader.h"

#include <tiffio.h>

#if defined(__unix__)
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <new>
#include <vector>

#include "model/messages.h"
#include "model/model.h"
#include "model/prompt.h"
#include "model/row_bands.h"

namespace sedra {
namespace {

// libtiff would print its complaints on stderr; the user sees the program's messages.
void SilenceLibtiff() {
  static const bool silenced = [] {
    TIFFSetWarningHandler(nullptr);
    TIFFSetErrorHandler(nullptr);
    return true;
  }();
  (void)silenced;
}

struct TiffCloser {
  void operator()(TIFF* t) const {
    if (t) TIFFClose(t);
  }
};
using TiffHandle = std::unique_ptr<TIFF, TiffCloser>;

// A TIFF in memory, for libtiff's client interface.
struct MemoryStream {
  const uint8_t* Data;
  uint64_t Size;
  uint64_t Pos;
};

tmsize_t MemRead(thandle_t h, void* buf, tmsize_t n) {
  auto* m = static_cast<MemoryStream*>(h);
  if (n <= 0 || m->Pos >= m->Size) return 0;
  const uint64_t count = std::min<uint64_t>(uint64_t(n), m->Size - m->Pos);
  std::memcpy(buf, m->Data + m->Pos, size_t(count));
  m->Pos += count;
  return tmsize_t(count);
}
tmsize_t MemWrite(thandle_t, void*, tmsize_t) { return 0; }
toff_t MemSeek(thandle_t h, toff_t off, int whence) {
  auto* m = static_cast<MemoryStream*>(h);
  uint64_t base = 0;
  if (whence == SEEK_CUR) base = m->Pos;
  else if (whence == SEEK_END) base = m->Size;
  if (off > UINT64_MAX - base) return toff_t(-1);
  m->Pos = base + off;
  return m->Pos;
}
int MemClose(thandle_t) { return 0; }
toff_t MemSize(thandle_t h) { return static_cast<MemoryStream*>(h)->Size; }
int MemMap(thandle_t h, void** base, toff_t* size) {
  auto* m = static_cast<MemoryStream*>(h);
  *base = const_cast<uint8_t*>(m->Data);  // opened read-only: libtiff never writes through it
  *size = m->Size;
  return 1;
}
void MemUnmap(thandle_t, void*, toff_t) {}

// Classic or big TIFF in either byte order.  Anything else is what the scanner software
// always called "not version 4.2".
bool LooksLikeTiff(const uint8_t* b, size_t n) {
  if (n < 4) return false;
  unsigned version = 0;
  if (b[0] == 'I' && b[1] == 'I') version = unsigned(b[2]) | unsigned(b[3]) << 8;
  else if (b[0] == 'M' && b[1] == 'M') version = unsigned(b[2]) << 8 | unsigned(b[3]);
  return version == 42 || version == 43;
}

struct Source {
  uint8_t Header[4] = {};
  size_t HeaderBytes = 0;
  uint64_t FileSize = 0;
  std::function<TIFF*()> Open;
  // The whole file in memory (FileSize bytes), when it is to be had; null otherwise.
  const uint8_t* Bytes = nullptr;
};

// A file mapped read-only for the life of one read.  Empty when mapping is not possible;
// the reader then goes through libtiff alone.
class MappedFile {
 public:
  explicit MappedFile(const std::string& path) {
#if defined(__unix__)
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return;
    struct stat st {};
    if (::fstat(fd, &st) == 0 && st.st_size > 0) {
      void* p = ::mmap(nullptr, size_t(st.st_size), PROT_READ, MAP_PRIVATE, fd, 0);
      if (p != MAP_FAILED) {
        data_ = static_cast<const uint8_t*>(p);
        size_ = uint64_t(st.st_size);
      }
    }
    ::close(fd);
#else
    (void)path;
#endif
  }
  ~MappedFile() {
#if defined(__unix__)
    if (data_) ::munmap(const_cast<uint8_t*>(data_), size_t(size_));
#endif
  }
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;
  const uint8_t* Data() const { return data_; }
  uint64_t Size() const { return size_; }

 private:
  const uint8_t* data_ = nullptr;
  uint64_t size_ = 0;
};

// Where the pixels of an optical image go (see ReadOptical).
struct OpticalGeometry {
  int64_t Width, Height;  // bitmap
  int64_t Stride;
  int64_t Step;           // keep every Step-th TIFF row and column
  int64_t EvenRows, EvenColumns;
  bool Rotate;            // landscape: TIFF rows become bitmap columns
};

template <typename T>
void PlaceOpticalSegment(uint8_t* pixels, const OpticalGeometry& g, int64_t r, const T* src, int64_t c0,
                         int64_t cols, int pixelStep, int firstChannel, int channelCount) {
  const int64_t f = g.Step;
  int64_t start = ((c0 + f - 1) / f) * f;
  const int64_t end = std::min(c0 + cols, g.EvenColumns);
  for (int64_t c = start; c < end; c += f) {
    int64_t row, col;
    if (g.Rotate) {
      col = r / f;
      row = g.Height - 1 - c / f;
    } else {
      row = r / f;
      col = c / f;
    }
    // Halving can round the bitmap below the kept rows; such pixels have no place.
    if (row < 0 || row >= g.Height || col < 0 || col >= g.Width) continue;
    uint8_t* out = pixels + row * g.Stride + col * 3;
    const T* in = src + (c - c0) * pixelStep;
    for (int k = 0; k < channelCount; ++k) {
      const int channel = firstChannel + k;  // 0 red, 1 green, 2 blue
      // 16-bit colour keeps only its high byte.
      const unsigned v = sizeof(T) == 1 ? unsigned(in[k]) : unsigned(in[k]) >> 8;
      out[2 - channel] = uint8_t(v);
    }
  }
}

// A tiled file's tile size and byte counts, checked against what one pixel needs so
// that a lying directory cannot make the copy loops run past a tile.
bool TileShape(TIFF* tif, int64_t pixelBytes, uint32_t& tw, uint32_t& th, int64_t& rowBytes, int64_t& tileBytes) {
  TIFFGetField(tif, TIFFTAG_TILEWIDTH, &tw);
  TIFFGetField(tif, TIFFTAG_TILELENGTH, &th);
  rowBytes = int64_t(TIFFTileRowSize64(tif));
  tileBytes = int64_t(TIFFTileSize64(tif));
  return tw != 0 && th != 0 && rowBytes >= int64_t(tw) * pixelBytes && tileBytes >= rowBytes * int64_t(th);
}

template <typename T>
bool ReadOpticalPixels(TIFF* tif, uint8_t* pixels, const OpticalGeometry& g, int64_t tiffWidth,
                       int64_t tiffHeight, bool separate) {
  const int planes = separate ? 3 : 1;
  const int pixelStep = separate ? 1 : 3;
  const int channelCount = separate ? 1 : 3;
  const int64_t pixelBytes = int64_t(sizeof(T)) * pixelStep;
  if (TIFFIsTiled(tif)) {
    uint32_t tw = 0, th = 0;
    int64_t rowBytes = 0, tileBytes = 0;
    if (!TileShape(tif, pixelBytes, tw, th, rowBytes, tileBytes)) return false;
    std::vector<uint8_t> tile(static_cast<size_t>(tileBytes));
    for (int plane = 0; plane < planes; ++plane)
      for (int64_t y0 = 0; y0 < tiffHeight; y0 += th)
        for (int64_t x0 = 0; x0 < tiffWidth; x0 += tw) {
          if (TIFFReadTile(tif, tile.data(), uint32_t(x0), uint32_t(y0), 0, uint16_t(plane)) < 0) return false;
          const int64_t rows = std::min<int64_t>(th, tiffHeight - y0);
          const int64_t cols = std::min<int64_t>(tw, tiffWidth - x0);
          for (int64_t ty = 0; ty < rows; ++ty) {
            const int64_t r = y0 + ty;
            if (r >= g.EvenRows || r % g.Step != 0) continue;
            PlaceOpticalSegment(pixels, g, r, reinterpret_cast<const T*>(tile.data() + ty * rowBytes), x0, cols,
                                pixelStep, separate ? plane : 0, channelCount);
          }
        }
    return true;
  }
  const int64_t lineBytes = int64_t(TIFFScanlineSize64(tif));
  if (lineBytes < tiffWidth * pixelBytes) return false;
  std::vector<uint8_t> line(static_cast<size_t>(lineBytes));
  for (int plane = 0; plane < planes; ++plane)
    for (int64_t r = 0; r < g.EvenRows; ++r) {
      // Every row is read, kept or not: compressed strips only decode in order.
      if (TIFFReadScanline(tif, line.data(), uint32_t(r), uint16_t(plane)) < 0) return false;
      if (r % g.Step != 0) continue;
      PlaceOpticalSegment(pixels, g, r, reinterpret_cast<const T*>(line.data()), 0, tiffWidth, pixelStep,
                          separate ? plane : 0, channelCount);
    }
  return true;
}

// Radiographs are always turned a quarter anticlockwise: TIFF row r becomes bitmap
// column r and TIFF column c bitmap row Height - 1 - c.  A block of TIFF rows is written
// column by column, so each bitmap row receives a run of neighbouring samples.
template <typename T>
void PlaceRadiographBlock(RadiographDesc& rad, const T* src, size_t srcStride, int64_t r0, int64_t rows, int64_t c0,
                          int64_t cols, uint32_t& minimum, uint32_t& maximum) {
  uint32_t lo = minimum, hi = maximum;
  for (int64_t i = 0; i < rows; ++i) {
    const T* s = src + size_t(i) * srcStride;
    for (int64_t c = 0; c < cols; ++c) {
      const uint32_t v = s[c];
      lo = v < lo ? v : lo;
      hi = v > hi ? v : hi;
    }
  }
  minimum = lo;
  maximum = hi;
  const int64_t width = rad.Width;
  uint16_t* out = rad.Samples.data();
  for (int64_t c = 0; c < cols; ++c) {
    uint16_t* dst = out + size_t((rad.Height - 1 - (c0 + c)) * width + r0);
    const T* s = src + c;
    for (int64_t i = 0; i < rows; ++i) dst[i] = uint16_t(s[size_t(i) * srcStride]);
  }
}

// The 16-bit striped radiograph, the scanner's own format, turned in 8 x 8 blocks: eight
// TIFF rows are loaded eight samples at a time, transposed in registers and stored as
// eight pieces of bitmap rows.  The smallest and largest sample are tracked on the same
// loads, and the scanner's offset bit is flipped on the way when `flip` is set.
constexpr int64_t kPrefetchColumns = 128;

void TurnBand16(RadiographDesc& rad, const uint16_t* src, size_t srcStride, int64_t r0, int64_t rows, int64_t cols,
                uint32_t& minimum, uint32_t& maximum, bool flip) {
  const int64_t width = rad.Width;
  uint16_t* out = rad.Samples.data();
  const uint16_t flipBits = flip ? kOffsetBit : 0;
  uint32_t lo = minimum, hi = maximum;
  int64_t fullRows = 0, fullCols = 0;
#if defined(__SSE2__)
  fullRows = rows & ~int64_t(7);
  fullCols = cols & ~int64_t(7);
  if (fullRows > 0 && fullCols > 0) {
    // Unsigned order is signed order with the top bit flipped, and SSE2 only compares
    // signed 16-bit values.
    const __m128i top = _mm_set1_epi16(int16_t(kOffsetBit));
    const __m128i flipVector = _mm_set1_epi16(int16_t(flipBits));
    __m128i vlo = _mm_set1_epi16(0x7FFF), vhi = _mm_set1_epi16(-0x8000);
    for (int64_t c = 0; c < fullCols; c += 8) {
      uint16_t* dst = out + size_t((rad.Height - 1 - c) * width + r0);
      // Every row of the band is a stream of its own, more than the hardware follows:
      // each row's line a few lines ahead is asked for once.
      if ((c & 31) == 0 && c + kPrefetchColumns < cols)
        for (int64_t i = 0; i < fullRows; ++i)
          _mm_prefetch(reinterpret_cast<const char*>(src + size_t(i) * srcStride + size_t(c + kPrefetchColumns)),
                       _MM_HINT_T0);
      for (int64_t i = 0; i < fullRows; i += 8) {
        const uint16_t* s = src + size_t(i) * srcStride + size_t(c);
        __m128i a[8];
        for (int k = 0; k < 8; ++k) {
          a[k] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + size_t(k) * srcStride));
          const __m128i sv = _mm_xor_si128(a[k], top);
          vlo = _mm_min_epi16(vlo, sv);
          vhi = _mm_max_epi16(vhi, sv);
          a[k] = _mm_xor_si128(a[k], flipVector);
        }
        const __m128i b0 = _mm_unpacklo_epi16(a[0], a[1]), b1 = _mm_unpackhi_epi16(a[0], a[1]);
        const __m128i b2 = _mm_unpacklo_epi16(a[2], a[3]), b3 = _mm_unpackhi_epi16(a[2], a[3]);
        const __m128i b4 = _mm_unpacklo_epi16(a[4], a[5]), b5 = _mm_unpackhi_epi16(a[4], a[5]);
        const __m128i b6 = _mm_unpacklo_epi16(a[6], a[7]), b7 = _mm_unpackhi_epi16(a[6], a[7]);
        const __m128i d0 = _mm_unpacklo_epi32(b0, b2), d1 = _mm_unpackhi_epi32(b0, b2);
        const __m128i d2 = _mm_unpacklo_epi32(b1, b3), d3 = _mm_unpackhi_epi32(b1, b3);
        const __m128i d4 = _mm_unpacklo_epi32(b4, b6), d5 = _mm_unpackhi_epi32(b4, b6);
        const __m128i d6 = _mm_unpacklo_epi32(b5, b7), d7 = _mm_unpackhi_epi32(b5, b7);
        // Column c + j of the band is now the pair (d, d') below; it goes to bitmap row
        // Height - 1 - (c + j), i.e. j rows above dst.
        const __m128i t[8] = {_mm_unpacklo_epi64(d0, d4), _mm_unpackhi_epi64(d0, d4), _mm_unpacklo_epi64(d1, d5),
                              _mm_unpackhi_epi64(d1, d5), _mm_unpacklo_epi64(d2, d6), _mm_unpackhi_epi64(d2, d6),
                              _mm_unpacklo_epi64(d3, d7), _mm_unpackhi_epi64(d3, d7)};
        for (int j = 0; j < 8; ++j)
          _mm_storeu_si128(reinterpret_cast<__m128i*>(dst - size_t(j) * size_t(width) + size_t(i)), t[j]);
      }
    }
    alignas(16) uint16_t l[8], h[8];
    _mm_store_si128(reinterpret_cast<__m128i*>(l), _mm_xor_si128(vlo, top));
    _mm_store_si128(reinterpret_cast<__m128i*>(h), _mm_xor_si128(vhi, top));
    for (int k = 0; k < 8; ++k) {
      lo = std::min<uint32_t>(lo, l[k]);
      hi = std::max<uint32_t>(hi, h[k]);
    }
  }
#endif
  // What the blocks left: the last columns of every row, then the last rows.
  for (int64_t i = 0; i < rows; ++i) {
    const uint16_t* s = src + size_t(i) * srcStride;
    for (int64_t c = i < fullRows ? fullCols : 0; c < cols; ++c) {
      const uint32_t v = s[c];
      lo = v < lo ? v : lo;
      hi = v > hi ? v : hi;
      out[size_t((rad.Height - 1 - c) * width + r0 + i)] = uint16_t(v ^ flipBits);
    }
  }
  minimum = lo;
  maximum = hi;
}

// The scanner's own radiographs are uncompressed 16-bit strips in native order, one
// after another.  Their rows can be turned straight out of the file's bytes instead of
// being copied row by row into a band first.  Returns the first row of the image, or
// null when anything is out of the ordinary (libtiff then reads the rows as always, and
// reports whatever is wrong with them).
const uint16_t* ContiguousRows16(TIFF* tif, const uint8_t* file, uint64_t fileSize, int64_t tiffWidth,
                                 int64_t tiffHeight) {
  if (!file || TIFFIsTiled(tif) || TIFFIsByteSwapped(tif)) return nullptr;
  uint16_t compression = 0, fillOrder = 0;
  TIFFGetFieldDefaulted(tif, TIFFTAG_COMPRESSION, &compression);
  TIFFGetFieldDefaulted(tif, TIFFTAG_FILLORDER, &fillOrder);
  if (compression != COMPRESSION_NONE || fillOrder != FILLORDER_MSB2LSB) return nullptr;
  const uint64_t lineBytes = uint64_t(TIFFScanlineSize64(tif));
  if (lineBytes != uint64_t(tiffWidth) * 2) return nullptr;
  uint32_t rowsPerStrip = 0;
  TIFFGetFieldDefaulted(tif, TIFFTAG_ROWSPERSTRIP, &rowsPerStrip);
  const uint32_t strips = TIFFNumberOfStrips(tif);
  uint64_t* offsets = nullptr;
  uint64_t* counts = nullptr;
  if (rowsPerStrip == 0 || strips == 0 || !TIFFGetField(tif, TIFFTAG_STRIPOFFSETS, &offsets) ||
      !TIFFGetField(tif, TIFFTAG_STRIPBYTECOUNTS, &counts) || !offsets || !counts)
    return nullptr;
  if (uint64_t(strips) * rowsPerStrip < uint64_t(tiffHeight)) return nullptr;
  const uint64_t first = offsets[0];
  const uint64_t total = uint64_t(tiffHeight) * lineBytes;
  if (first > fileSize || total > fileSize - first || reinterpret_cast<uintptr_t>(file + first) % alignof(uint16_t) != 0)
    return nullptr;
  for (uint32_t k = 0; k < strips; ++k) {
    const uint64_t row = uint64_t(k) * rowsPerStrip;
    if (row >= uint64_t(tiffHeight)) break;
    const uint64_t rows = std::min<uint64_t>(rowsPerStrip, uint64_t(tiffHeight) - row);
    if (offsets[k] != first + row * lineBytes || counts[k] < rows * lineBytes) return nullptr;
  }
  return reinterpret_cast<const uint16_t*>(file + first);
}

// Whether the scanner's offset is in the file is known only at the end; the first band
// is a good guess, and a wrong one costs one more pass (see ApplyOffsetCorrection).
bool GuessShifted(const uint16_t* band, size_t stride, int64_t rows, int64_t cols) {
  uint32_t bandMinimum = 65535;
  for (int64_t i = 0; i < rows; ++i)
    for (int64_t c = 0; c < cols; ++c) bandMinimum = std::min<uint32_t>(bandMinimum, band[size_t(i) * stride + size_t(c)]);
  return bandMinimum > 32768;
}

// A band of a few rows: whole cache lines per bitmap row, small beside the image.
constexpr int64_t kBandRows = 32;

// Samples that mean something else than plain counts are put right as they are read,
// by flipping bits: a MinIsWhite file (white = 0) is inverted, and signed samples are
// shifted to unsigned ones, the 16-bit ones into the scanner's offset form.
template <typename T>
void FlipSamples(T* samples, size_t count, T mask) {
  if (mask == 0) return;
  for (size_t i = 0; i < count; ++i) samples[i] = T(samples[i] ^ mask);
}

template <typename T>
bool ReadRadiographSamples(TIFF* tif, RadiographDesc& rad, int64_t tiffWidth, int64_t tiffHeight, uint32_t& minimum,
                           uint32_t& maximum, bool& shifted, const Source& source, T mask) {
  if constexpr (sizeof(T) == 2) {
    const uint16_t* rows =
        mask == 0 ? ContiguousRows16(tif, source.Bytes, source.FileSize, tiffWidth, tiffHeight) : nullptr;
    if (rows) {
      const size_t stride = size_t(tiffWidth);
      shifted = GuessShifted(rows, stride, std::min(kBandRows, tiffHeight), tiffWidth);
      // A large image is turned in bands of TIFF rows on several threads; each band
      // fills its own bitmap columns and keeps its own extremes.
      uint32_t lo[kMaxRowBands], hi[kMaxRowBands];
      std::fill(lo, lo + kMaxRowBands, minimum);
      std::fill(hi, hi + kMaxRowBands, maximum);
      const int64_t blocks = (tiffHeight + kBandRows - 1) / kBandRows;  // of kBandRows rows
      ForEachRowBand(RowBandCount(tiffWidth * tiffHeight), blocks, [&](int band, int64_t from, int64_t to) {
        for (int64_t r0 = from * kBandRows; r0 < std::min(to * kBandRows, tiffHeight); r0 += kBandRows)
          TurnBand16(rad, rows + size_t(r0) * stride, stride, r0, std::min(kBandRows, tiffHeight - r0), tiffWidth,
                     lo[band], hi[band], shifted);
      });
      minimum = *std::min_element(lo, lo + kMaxRowBands);
      maximum = *std::max_element(hi, hi + kMaxRowBands);
      return true;
    }
  }
  if (TIFFIsTiled(tif)) {
    uint32_t tw = 0, th = 0;
    int64_t rowBytes = 0, tileBytes = 0;
    if (!TileShape(tif, int64_t(sizeof(T)), tw, th, rowBytes, tileBytes) || rowBytes % int64_t(sizeof(T)) != 0)
      return false;
    std::vector<T> tile(size_t(tileBytes) / sizeof(T) + 1);
    for (int64_t y0 = 0; y0 < tiffHeight; y0 += th)
      for (int64_t x0 = 0; x0 < tiffWidth; x0 += tw) {
        if (TIFFReadTile(tif, tile.data(), uint32_t(x0), uint32_t(y0), 0, 0) < 0) return false;
        FlipSamples(tile.data(), tile.size(), mask);
        PlaceRadiographBlock(rad, tile.data(), size_t(rowBytes) / sizeof(T), y0, std::min<int64_t>(th, tiffHeight - y0),
                             x0, std::min<int64_t>(tw, tiffWidth - x0), minimum, maximum);
      }
    return true;
  }
  const int64_t lineBytes = int64_t(TIFFScanlineSize64(tif));
  if (lineBytes < tiffWidth * int64_t(sizeof(T)) || lineBytes % int64_t(sizeof(T)) != 0) return false;
  const size_t stride = size_t(lineBytes) / sizeof(T);
  std::vector<T> band(stride * size_t(std::min(kBandRows, tiffHeight)));
  for (int64_t r0 = 0; r0 < tiffHeight; r0 += kBandRows) {
    const int64_t rows = std::min(kBandRows, tiffHeight - r0);
    for (int64_t i = 0; i < rows; ++i)
      if (TIFFReadScanline(tif, band.data() + size_t(i) * stride, uint32_t(r0 + i), 0) < 0) return false;
    FlipSamples(band.data(), stride * size_t(rows), mask);
    if constexpr (sizeof(T) == 2) {
      if (r0 == 0) shifted = GuessShifted(band.data(), stride, rows, tiffWidth);
      TurnBand16(rad, band.data(), stride, r0, rows, tiffWidth, minimum, maximum, shifted);
    } else {
      PlaceRadiographBlock(rad, band.data(), stride, r0, rows, 0, tiffWidth, minimum, maximum);
    }
  }
  return true;
}

void SetFileName(Model& model, const std::string& fileTitle) {
  CoreSection& section = model.CurSection();
  const std::string folder = LastComponent(model.Settings().SectionFolder);
  if (folder.empty()) return;  // a root folder has no name to show
  if (folder.size() + fileTitle.size() >= 63) {
    CopyField(section.FileName, folder.c_str());
  } else {
    const std::string both = folder + char(std::filesystem::path::preferred_separator) + fileTitle;
    CopyField(section.FileName, both.c_str());
  }
}

// What the reader takes from the first directory.
struct TiffFields {
  uint16_t Compression = COMPRESSION_NONE, Spp = 1, Bits = 1, Planar = PLANARCONFIG_CONTIG;
  uint16_t Photometric = PHOTOMETRIC_MINISBLACK, SampleFormat = SAMPLEFORMAT_UINT;
  bool HasPhotometric = false;
  uint32_t Width = 0, Height = 0;
  int64_t WorkBytes = 0;  // the row band or tile buffer the read will need
};

TiffFields ReadFields(TIFF* tif) {
  TiffFields f;
  TIFFGetFieldDefaulted(tif, TIFFTAG_COMPRESSION, &f.Compression);
  TIFFGetFieldDefaulted(tif, TIFFTAG_SAMPLESPERPIXEL, &f.Spp);
  TIFFGetFieldDefaulted(tif, TIFFTAG_BITSPERSAMPLE, &f.Bits);
  TIFFGetFieldDefaulted(tif, TIFFTAG_PLANARCONFIG, &f.Planar);
  TIFFGetFieldDefaulted(tif, TIFFTAG_SAMPLEFORMAT, &f.SampleFormat);
  TIFFGetField(tif, TIFFTAG_IMAGEWIDTH, &f.Width);
  TIFFGetField(tif, TIFFTAG_IMAGELENGTH, &f.Height);
  f.HasPhotometric = TIFFGetField(tif, TIFFTAG_PHOTOMETRIC, &f.Photometric) != 0;
  if (f.HasPhotometric && f.Compression == COMPRESSION_JPEG && f.Photometric == PHOTOMETRIC_YCBCR &&
      TIFFIsCODECConfigured(f.Compression)) {
    // libtiff turns JPEG's YCbCr into RGB itself when asked.
    TIFFSetField(tif, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    f.Photometric = PHOTOMETRIC_RGB;
  }
  f.WorkBytes = TIFFIsTiled(tif) ? int64_t(TIFFTileSize64(tif)) : int64_t(TIFFScanlineSize64(tif)) * 32;
  return f;
}

// Where a kept optical pixel goes: the longer side runs along the core, halved until at
// most 8192 rows remain.
OpticalGeometry OpticalGeometryFor(int64_t w, int64_t h) {
  OpticalGeometry g{};
  g.Rotate = h < w;
  g.Height = g.Rotate ? w : h;
  g.Width = g.Rotate ? h : w;
  g.Step = 1;
  while (g.Height > 8192) {
    g.Height /= 2;
    g.Width /= 2;
    g.Step *= 2;
  }
  return g;
}

// A refusal: its message, and whether the descriptor was already given up for it (the
// refusals the scanner software always had) or is left as it was.
struct Refusal {
  const char* Text = nullptr;
  const char* Caption = "";
  bool ClearsImage = true;
  bool RestoreCount = false;
};

class TiffRead {
 public:
  TiffRead(Model& model, Prompt& prompt, bool radiograph, bool add, const RadiographPlaceChooser& choosePlace,
           int64_t memoryCeiling)
      : model_(model), prompt_(prompt), radiograph_(radiograph), add_(add), choosePlace_(choosePlace),
        memoryCeiling_(memoryCeiling) {}

  ReadOutcome Run(const Source& source, const std::string& fileTitle) {
    if (!LooksLikeTiff(source.Header, source.HeaderBytes)) {
      prompt_.Message(msg::kNotVersion42, msg::kDefaultCaption, Icon::None, Buttons::Ok);
      return {};
    }
    SilenceLibtiff();
    fileSize_ = source.FileSize;
    TiffHandle tif(source.Open());
    TiffFields f;
    Refusal refusal{msg::kErrorReadingTiff, "", true, true};
    if (tif) {
      f = ReadFields(tif.get());
      refusal = Check(f);
    }
    // A file of the wrong kind, or one that would take too much memory, is refused
    // before the image it would replace is given up: nothing is lost.
    if (refusal.Text && !refusal.ClearsImage) {
      prompt_.Message(refusal.Text, refusal.Caption, Icon::None, Buttons::Ok);
      return {};
    }
    if (radiograph_ || model_.CurSection().FileName[0] == '\0') SetFileName(model_, fileTitle);
    PrepareTarget();
    if (refusal.Text) return Fail(refusal.Text, refusal.Caption, refusal.RestoreCount);
    return radiograph_ ? ReadRadiograph(tif.get(), f, source) : ReadOptical(tif.get(), f);
  }

 private:
  // The checks in the order the user meets them; no text when the file can be read.
  Refusal Check(const TiffFields& f) const {
    if (!TIFFIsCODECConfigured(f.Compression)) return {msg::kCompressed, "", true, false};
    if (!radiograph_ && f.Spp != 3) return {msg::kExpected3Samples, "", true, false};
    if (radiograph_ && f.Spp != 1) return {msg::kExpected1Sample, "", true, true};
    // Floating-point or complex samples have no meaning as counts or colours here.
    const bool signedSamples = f.SampleFormat == SAMPLEFORMAT_INT;
    if ((f.SampleFormat != SAMPLEFORMAT_UINT && !signedSamples) || (signedSamples && !radiograph_))
      return {msg::kNotWholeNumberSamples, "", false};
    if (!radiograph_ && f.Bits != 8 && f.Bits != 16) return {msg::kExpectedBits, "", true, false};
    // Radiographs come as 16-bit counts; 8-bit ones are taken as they are.  Other
    // depths cannot be meant as counts.
    if (radiograph_ && f.Bits != 8 && f.Bits != 16) return {msg::kErrorReadingTiff, "", true, true};
    if (f.Width < 1 || f.Height < 1) return {msg::kErrorReadingTiff, "", true, radiograph_};
    // An uncompressed file holds its pixels as they are: one claiming more than it has
    // would come up short reading them, so it is answered as that before any allocation.
    if (f.Compression == COMPRESSION_NONE &&
        double(f.Width) * double(f.Height) * f.Spp * (f.Bits / 8) > double(fileSize_))
      return {msg::kErrorReadingTiff, "", true, radiograph_};
    // Grey levels with black or white at zero are counts; a palette's indices or any
    // colour model are not.  A file without the tag is the scanner's own, read as counts.
    if (radiograph_ && f.HasPhotometric && f.Photometric != PHOTOMETRIC_MINISBLACK &&
        f.Photometric != PHOTOMETRIC_MINISWHITE)
      return {msg::kNotGreyRadiograph, "", false};
    if (!radiograph_ && f.HasPhotometric && f.Photometric != PHOTOMETRIC_RGB) return {msg::kNotRgbImage, "", false};
    int64_t imageBytes = ImageMemory(f.Height, f.Width, 2);
    if (!radiograph_) {
      const OpticalGeometry g = OpticalGeometryFor(f.Width, f.Height);
      imageBytes = ImageMemory(g.Width, g.Height, 3);
    }
    if (!WithinMemoryCeiling(imageBytes, f.WorkBytes, memoryCeiling_))
      return {msg::kCouldNotAllocate, msg::kDefaultCaption, false};
    return {nullptr};
  }

  void PrepareTarget() {
    CoreSection& section = model_.CurSection();
    PlotState& plot = model_.Plot();
    if (radiograph_) {
      if (add_) {
        const int index = std::clamp(section.RadiographCount, 0, kMaxRadiographs - 1);
        section.RadiographCount = index + 1;
        plot.CurRadiographIndex = index;
        int place = choosePlace_ ? choosePlace_(section.RadiographCount) : index;
        place = std::clamp(place, 0, index);
        for (int i = index; i > place; --i) section.Radiographs[size_t(i)] = std::move(section.Radiographs[size_t(i - 1)]);
        plot.CurRadiographIndex = place;
        addedPlace_ = place;
        addedIndex_ = index;
      } else if (section.RadiographCount == 0) {
        section.RadiographCount = 1;
        plot.CurRadiographIndex = 0;
      }
      model_.CurRadiograph().Clear();
    } else {
      section.Optical.Clear();
      section.Optical.Upper = 256;
    }
  }

  // Refusals after the descriptor was cleared: it stays cleared, so nothing half-read is
  // ever painted.  A refused radiograph also gives its place back.
  ReadOutcome Fail(const char* text, const char* caption, bool restoreCount) {
    CoreSection& section = model_.CurSection();
    if (radiograph_) {
      model_.CurRadiograph().Clear();
      if (restoreCount) {
        if (addedPlace_ >= 0) {
          for (int i = addedPlace_; i < addedIndex_; ++i)
            section.Radiographs[size_t(i)] = std::move(section.Radiographs[size_t(i + 1)]);
          section.Radiographs[size_t(addedIndex_)].Clear();
        }
        section.RadiographCount = std::max(section.RadiographCount - 1, 0);
        model_.Plot().CurRadiographIndex = section.RadiographCount;
      }
    } else {
      section.Optical.Clear();
      section.Optical.Upper = 256;
    }
    prompt_.Message(text, caption, Icon::None, Buttons::Ok);
    return {};
  }

  ReadOutcome ReadOptical(TIFF* tif, const TiffFields& f) {
    const int64_t w = f.Width, h = f.Height;
    const uint16_t bits = f.Bits;
    OpticalGeometry g = OpticalGeometryFor(w, h);
    if (g.Width < 1) return Fail(msg::kErrorReadingTiff, "", false);
    g.Stride = Dib::StrideFor(int32_t(g.Width));
    // The last row and column of an odd-sized image are dropped, as the scanner
    // software always did; the bitmap keeps their place in black.
    g.EvenRows = h & ~int64_t(1);
    g.EvenColumns = w & ~int64_t(1);

    OpticalImageDesc& opt = model_.CurOptical();
    try {
      opt.Pixels.assign(size_t(g.Stride * g.Height), 0);
      AllocateDib(opt.Bitmap, int32_t(g.Width), int32_t(g.Height));
    } catch (const std::bad_alloc&) {
      return Fail(msg::kCouldNotAllocate, msg::kDefaultCaption, false);
    }
    const bool separate = f.Planar == PLANARCONFIG_SEPARATE;
    const bool ok = bits == 8 ? ReadOpticalPixels<uint8_t>(tif, opt.Pixels.data(), g, w, h, separate)
                              : ReadOpticalPixels<uint16_t>(tif, opt.Pixels.data(), g, w, h, separate);
    if (!ok) return Fail(msg::kErrorReadingTiff, "", false);

    opt.Width = int32_t(g.Width);
    opt.Height = int32_t(g.Height);
    opt.CropRight = opt.Width - 1;
    opt.CropBottom = opt.Height - 1;
    std::memcpy(opt.Bitmap.Bits.data(), opt.Pixels.data(), opt.Pixels.size());
    ++opt.Bitmap.Generation;
    opt.Valid = 1;
    model_.Plot().NeedLayout = 1;
    model_.RequestRepaint();
    return {1, true};
  }

  ReadOutcome ReadRadiograph(TIFF* tif, const TiffFields& f, const Source& source) {
    const int64_t w = f.Width, h = f.Height;
    const uint16_t bits = f.Bits;
    WorkingBlock& work = model_.Work();
    work.SampleStep = 1;  // a TIFF radiograph is not resampled
    work.RawLineGroup = 1;
    RadiographDesc& rad = model_.CurRadiograph();
    rad.Width = int32_t(h);
    rad.Height = int32_t(w);
    try {
      AllocateDib(rad.Bitmap, rad.Width, rad.Height);
      AllocateSamples(rad.Samples, size_t(w * h));
    } catch (const std::bad_alloc&) {
      return Fail(msg::kCouldNotAllocate, msg::kDefaultCaption, true);
    }
    uint32_t minimum = 64000, maximum = 0;
    bool shifted = false;
    // White at zero is turned into black at zero; signed samples are moved up by half
    // the range.  Both are one flip of bits.
    const uint16_t top = bits == 8 ? 0x80 : kOffsetBit;
    uint16_t mask = f.SampleFormat == SAMPLEFORMAT_INT ? top : 0;
    if (f.HasPhotometric && f.Photometric == PHOTOMETRIC_MINISWHITE) mask ^= uint16_t(bits == 8 ? 0xFF : 0xFFFF);
    const bool ok =
        bits == 8 ? ReadRadiographSamples<uint8_t>(tif, rad, w, h, minimum, maximum, shifted, source, uint8_t(mask))
                  : ReadRadiographSamples<uint16_t>(tif, rad, w, h, minimum, maximum, shifted, source, mask);
    if (!ok) return Fail(msg::kErrorReadingTiff, "", true);
    ApplyOffsetCorrection(rad, minimum, maximum, shifted);
    rad.HeightScale = 1.0f;
    return {1, true};
  }

  Model& model_;
  Prompt& prompt_;
  bool radiograph_, add_;
  const RadiographPlaceChooser& choosePlace_;
  int64_t memoryCeiling_;
  uint64_t fileSize_ = 0;
  int addedPlace_ = -1, addedIndex_ = -1;
};

struct BusyScope {
  explicit BusyScope(Prompt& p) : prompt(p) { prompt.SetBusy(true); }
  ~BusyScope() { prompt.SetBusy(false); }
  Prompt& prompt;
};

}  // namespace

ReadOutcome ReadTiffImage(Model& model, Prompt& prompt, bool radiograph, bool add,
                          const RadiographPlaceChooser& choosePlace) {
  if (radiograph && add && model.CurSection().RadiographCount >= kMaxRadiographs) {
    prompt.Message(msg::kOnlyThreeRadiographs, msg::kDefaultCaption, Icon::None, Buttons::Ok);
    return {};
  }
  FileRequest request;
  request.Title = "Open TIFF file";
  request.Filters = {{"TIFF files (*.tif)", "*.tif"}, {"All files (*.*)", "*.*"}};
  request.FilterIndex = 1;
  request.InitialName = std::string(1, char(std::filesystem::path::preferred_separator)) +
                        (radiograph ? "radiograph.tif" : "optical.tif");
  request.InitialDir = model.Settings().SectionFolder;
  const FileChoice choice = prompt.OpenFile(request);
  if (!choice.Accepted) return {};
  RememberFolder(model, choice.Path);
  return ReadTiffPath(model, prompt, choice.Path, radiograph, add, choosePlace);
}

ReadOutcome ReadTiffPath(Model& model, Prompt& prompt, const std::string& path, bool radiograph, bool add,
                         const RadiographPlaceChooser& choosePlace) {
  BusyScope busy(prompt);
  Source source;
  {
    std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "rb"), &std::fclose);
    // A file that cannot be opened is passed over quietly; the command goes on.
    if (!file) return {1, false};
    source.HeaderBytes = std::fread(source.Header, 1, sizeof source.Header, file.get());
    if (std::fseek(file.get(), 0, SEEK_END) == 0) {
      const long end = std::ftell(file.get());
      source.FileSize = end > 0 ? uint64_t(end) : 0;
    }
  }
  source.Open = [&path] { return TIFFOpen(path.c_str(), "r"); };
  const MappedFile mapped(path);
  if (mapped.Data() && mapped.Size() == source.FileSize) source.Bytes = mapped.Data();
  TiffRead read(model, prompt, radiograph, add, choosePlace, kImageMemoryCeiling);
  return read.Run(source, std::filesystem::path(path).filename().string());
}

ReadOutcome ReadTiffMemory(Model& model, Prompt& prompt, const uint8_t* data, size_t size, bool radiograph, bool add,
                           const std::string& fileTitle, const RadiographPlaceChooser& choosePlace,
                           int64_t memoryCeiling) {
  Source source;
  source.HeaderBytes = std::min<size_t>(size, sizeof source.Header);
  if (source.HeaderBytes) std::memcpy(source.Header, data, source.HeaderBytes);
  source.FileSize = size;
  source.Bytes = data;
  MemoryStream stream{data, size, 0};
  source.Open = [&stream] {
    return TIFFClientOpen("memory", "r", &stream, MemRead, MemWrite, MemSeek, MemClose, MemSize, MemMap, MemUnmap);
  };
  TiffRead read(model, prompt, radiograph, add, choosePlace, memoryCeiling);
  return read.Run(source, fileTitle);
}

}  // namespace sedra
