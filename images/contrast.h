#pragma once
// The contrast settings of an image as lookup tables.  The full display conversion and
// the drawing of single picked pixels both go through them, so a pixel comes out the
// same whichever way it is made.

#include <cstdint>
#include <vector>

#include "model/model.h"

namespace sedra {

// Regions 1..7 that are not defined (X2 <= 0) take region 0's window, stored in the
// descriptor: the contrast dialog shows that window when such a region is chosen.
void ShareWholeWindow(RadiographDesc& rad);

// The grey of every 16-bit sample through each distinct window of a radiograph, and
// the user regions that cover something, their far edges limited as they are painted
// (no further than the last row and column, which a region therefore never covers).
class RadiographWindows {
 public:
  // How one row is cut: piece p runs from Cuts[p] to Cuts[p + 1] through Table[p]
  // (the window of the last region covering it, or region 0's).  The same cuts hold for
  // every row before NextRow.
  struct Row {
    int32_t Cuts[2 * kRegionCount + 2];
    const uint8_t* Table[2 * kRegionCount + 1];
    int Pieces = 0;
    int32_t NextRow = 0;
  };

  // Builds the tables for the regions of `rad` (after ShareWholeWindow).
  void Build(const RadiographDesc& rad);
  // Whether the tables were built for exactly these regions and this size.
  bool BuiltFor(const RadiographDesc& rad) const;
  void CutRow(int32_t y, Row& row) const;
  size_t Bytes() const { return tables_.size(); }

 private:
  struct Cover {
    int32_t X1, Y1, X2, Y2;
    int Table;
  };
  RadiographRegion regions_[kRegionCount]{};
  int32_t width_ = 0, height_ = 0;
  bool built_ = false;
  Cover covers_[kRegionCount]{};
  int coverCount_ = 0;
  std::vector<uint8_t> tables_;  // 65536 greys per distinct window; the first is region 0's
};

// Display levels of an optical image's blue, green and red bytes: the brightness
// window spread over 0..256, scaled by the colour emphasis, clamped to 0..255.
struct OpticalTables {
  uint8_t Level[3][256];  // blue, green, red
};

// Lower <= 0, Upper 256 and all three colour levels at 256: the pixels show as loaded.
bool ShowsPixelsAsLoaded(const OpticalImageDesc& opt);

// The tables for the settings of `opt`.  A closed window (Lower = Upper) is opened by
// 8 levels and stays so (stored).
void BuildOpticalTables(OpticalImageDesc& opt, OpticalTables& out);

}  // namespace sedra
