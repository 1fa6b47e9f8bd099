#pragma once
// The display pixels of an image, made only where a drawing picks them.
//
// Images are drawn by a nearest-neighbour stretch, which takes one source pixel for
// every destination pixel.  Converting a whole image at each contrast change costs its
// size (36 M samples for a long radiograph, a tenth of a second); converting only the
// picked pixels costs what the window shows.  A radiograph's picked samples go through
// the tables of its contrast windows, an optical image's bytes through its brightness
// and colour tables, and a Dib whose display bits are held ready is read as it is.
// What a stretch converted is kept with the contrast state it was made for, so a
// repaint that changes nothing converts nothing.

#include <QImage>
#include <cstdint>
#include <memory>
#include <vector>

#include "images/contrast.h"

namespace sedra {

class Model;
struct Dib;

// The source index that destination pixel i of n samples when s source pixels from s0
// are stretched over them: the pixel whose span holds the destination pixel's centre.
inline int64_t SourceIndex(int64_t s0, int64_t s, int64_t i, int64_t n) { return s0 + ((2 * i + 1) * s) / (2 * n); }

// Which source pixels a block of destination pixels picks: destination column
// ColumnFrom + j (j < Columns) of a stretch of source columns [X, X + XSpan) over
// XCount destination columns, and likewise for rows.
struct Sampling {
  int64_t X = 0, XSpan = 0, XCount = 0, ColumnFrom = 0;
  int64_t Y = 0, YSpan = 0, YCount = 0, RowFrom = 0;
  int Columns = 0, Rows = 0;
  bool operator==(const Sampling&) const = default;
};

class DisplayImage {
 public:
  enum class Kind { None, Radiograph, Optical, Dib, Image };

  int Width() const { return width_; }
  int Height() const { return height_; }
  bool Null() const { return kind_ == Kind::None || width_ < 1 || height_ < 1; }

  // The picked pixels of `s` as an RGB32 image (Columns x Rows): kept from the last time
  // for the same contrast state, made again from the kept source values after a change
  // of contrast, or picked from the image.  Valid until the next call.
  const QImage& Picked(const Sampling& s);

  // Brings the source and tables up to date with a descriptor (the cache calls these).
  void UseRadiograph(RadiographDesc& rad);
  void UseOptical(OpticalImageDesc& opt);
  void UseDib(const Dib& dib);
  // A plain RGB32 image (drawn without caching).
  void UseImage(const QImage& image);

  // How many blocks were converted (made again for a new contrast state, or picked).
  uint64_t Conversions() const { return conversions_; }
  size_t Bytes() const;
  uint64_t LastUse = 0;

 private:
  // The pixels of one drawn block.  The source values it picks are kept apart from the
  // pixels made of them, so a change of contrast only looks the kept values up again
  // instead of reaching into the image (a long radiograph is far larger than any cache).
  struct Block {
    Sampling Where;
    uint64_t Source = 0;    // the source state the values were picked from
    uint64_t Contrast = 0;  // the contrast state the pixels were made for
    uint64_t LastUse = 0;
    std::vector<int32_t> SourceRows;  // the distinct source rows picked, top down
    std::vector<int32_t> RowSlot;     // each destination row's index into SourceRows
    std::vector<int32_t> Columns;     // the distinct source columns picked, left to right
    std::vector<int32_t> Runs;        // how many destination columns each of them fills
    int32_t LongestRun = 0;
    std::vector<uint32_t> Values;     // SourceRows x Columns picked source values
    std::vector<uint32_t> Pixels;     // Where.Columns x Where.Rows
    QImage View;
  };
  void Reset(Kind kind, const void* data, int width, int height, int64_t stride, uint64_t generation);
  void Pick(Block& b) const;
  void Colour(Block& b);
  void ColourRow(const Block& b, size_t slot, uint32_t* out, RadiographWindows::Row& cut) const;
  template <typename Lookup>
  static void Spread(const Block& b, const uint32_t* in, uint32_t* out, const Lookup& lookup);

  Kind kind_ = Kind::None;
  const void* data_ = nullptr;
  int width_ = 0, height_ = 0;
  int64_t stride_ = 0;  // bytes per source row (samples: 2 x width)
  uint64_t generation_ = 0;
  uint64_t sourceState_ = 0;    // moves on whenever the source changes
  uint64_t contrastState_ = 0;  // moves on whenever the tables change
  RadiographWindows windows_;
  OpticalTables optical_{};
  int32_t opticalKey_[5] = {};
  bool opticalBuilt_ = false;
  std::vector<Block> blocks_;
  uint64_t clock_ = 0;
  uint64_t conversions_ = 0;
};

// The display image of a radiograph: from its samples through its regions when a load
// said so (DisplayFromSamples), else its Dib.
DisplayImage& RadiographDisplay(Model& model, RadiographDesc& rad);
// The display image of an optical image: its source pixels through its contrast
// settings, or its Dib when the source pixels are not there.
DisplayImage& OpticalDisplay(Model& model, OpticalImageDesc& opt);

// Blocks converted so far for all the model's images.
uint64_t DisplayConversionCount(Model& model);
// Forgets every cached display image of the model.
void ClearDisplayCache(Model& model);

// A Dib's bits as a QImage without copying them (valid while the Dib is unchanged).
QImage DibAsImage(const Dib& dib);

}  // namespace sedra
