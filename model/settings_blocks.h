#pragma once
// Byte images of the three settings files.  Each struct is read and written whole, so
// every offset is pinned with a static_assert: files must move unchanged between
// installations and platforms (all integers little-endian).

#include <cstddef>
#include <cstdint>

namespace sedra {

// Indices of the colour table at offset 576, in the order of the colour list of the
// "Colour and Data Set-Up" dialog.
enum ColourIndex : int {
  kBackgroundColour = 0,
  kAxisColour = 1,
  kTextColour = 2,
  kShadedRegionColour = 3,
  kHighlightColour = 4,
  kHLineColour = 5,
  kVLineColour = 6,
  kColourTableSize = 9,
};

constexpr int kDataColourCount = 10;

#pragma pack(push, 1)
struct DisplaySettings {
  char SectionFolder[256];          // 0: folder of the last section read (LastDirectory)
  uint8_t Reserved256[320];         // 256: kept as read
  uint32_t Colours[kColourTableSize];   // 576: 0x00BBGGRR
  uint32_t DataColours[kDataColourCount];  // 612: curve colours 2..9 (see DataColour)
  uint32_t ShowRadiographData;      // 652
  uint32_t CorrectCameraSignal;     // 656
  uint32_t CorrectCountTime;        // 660
  uint32_t Reserved664;             // 664
  uint32_t ShowWarnings;            // 668
  int32_t DataSetOfPlot[10];        // 672: data set (1-based) each data curve shows; zeroed at every start
  uint32_t DataSetSelection2[10];   // 712: zeroed at every start
  uint8_t DataSetSettings[40];      // 752
  uint32_t FormatMark;              // 792: 608 after every successful read
  uint32_t Reserved796;             // 796
  int32_t ElementFontSize;          // 800: points
  int32_t HScaleFontSize;           // 804: points
  int32_t DepthFontSize;            // 808: points
  uint32_t DataSetSelection3[10];   // 812: zeroed at every start
  uint8_t FurtherSettings852[124];  // 852
  int32_t WindowX;                  // 976
  int32_t WindowY;                  // 980
  int32_t WindowWidth;              // 984
  int32_t WindowHeight;             // 988
  uint8_t FurtherSettings992[8];    // 992
  int16_t MarginLeft;               // 1000: printer margins in mm
  int16_t MarginRight;              // 1002
  int16_t MarginTop;                // 1004
  int16_t MarginBottom;             // 1006
  uint8_t FurtherSettings1008[4];   // 1008
  uint32_t Checksum;                // 1012
};

struct ElementSettings {
  uint8_t Entries[20][16];
};

// The working block: its first four words are the display switches that survive New;
// the rest is scratch state of the load, paint and image-writing routines, cleared by
// NewCore and written to miscdata.def as it stands.
struct WorkingBlock {
  uint32_t ShowRadiograph;
  uint32_t ShowOptical;
  uint32_t ShowCoreName;
  uint32_t ShowSectionName;
  // Radiograph rows per data point (also the histogram sampling step after a RAW read).
  // The RAW reader calls it its expansion; the curve code calls it the sample step.
  int32_t SampleStep;
  int32_t SampleMode;
  int32_t RawLineGroup;     // file lines summed into one image column (RAW reader)
  float StartCoordinate;    // core depth of the first scan point, mm (document.txt)
  float EndCoordinate;
  float OpticalStart;
  float OpticalEnd;
  float OpticalStepSize;
  uint8_t Scratch[75456 - 48];
};
#pragma pack(pop)

// The colour of data curve j (0..9).  The colour list of the set-up dialog runs on past
// the seven element colours: its entry 7 + j is curve j, so the colour table's last two
// words (0x008000 and 0xFF00FF on a first run) colour the first two curves and the
// block at 612 carries curves 2 to 9.  Painting and the dialog both go through here,
// so the colour picked for " Data" is the colour the curve is drawn in.
inline uint32_t& DataColour(DisplaySettings& s, int j) {
  constexpr int kInTable = kColourTableSize - 7;
  return j < kInTable ? s.Colours[7 + j] : s.DataColours[j - kInTable];
}
inline uint32_t DataColour(const DisplaySettings& s, int j) { return DataColour(const_cast<DisplaySettings&>(s), j); }

static_assert(sizeof(DisplaySettings) == 1016);
static_assert(offsetof(DisplaySettings, Reserved256) == 256);
static_assert(offsetof(DisplaySettings, Colours) == 576);
static_assert(offsetof(DisplaySettings, DataColours) == 612);
static_assert(offsetof(DisplaySettings, ShowRadiographData) == 652);
static_assert(offsetof(DisplaySettings, CorrectCameraSignal) == 656);
static_assert(offsetof(DisplaySettings, CorrectCountTime) == 660);
static_assert(offsetof(DisplaySettings, ShowWarnings) == 668);
static_assert(offsetof(DisplaySettings, DataSetOfPlot) == 672);
static_assert(offsetof(DisplaySettings, DataSetSelection2) == 712);
static_assert(offsetof(DisplaySettings, DataSetSettings) == 752);
static_assert(offsetof(DisplaySettings, FormatMark) == 792);
static_assert(offsetof(DisplaySettings, ElementFontSize) == 800);
static_assert(offsetof(DisplaySettings, HScaleFontSize) == 804);
static_assert(offsetof(DisplaySettings, DepthFontSize) == 808);
static_assert(offsetof(DisplaySettings, DataSetSelection3) == 812);
static_assert(offsetof(DisplaySettings, FurtherSettings852) == 852);
static_assert(offsetof(DisplaySettings, WindowX) == 976);
static_assert(offsetof(DisplaySettings, WindowHeight) == 988);
static_assert(offsetof(DisplaySettings, MarginLeft) == 1000);
static_assert(offsetof(DisplaySettings, MarginBottom) == 1006);
static_assert(offsetof(DisplaySettings, Checksum) == 1012);
static_assert(sizeof(ElementSettings) == 320);
static_assert(sizeof(WorkingBlock) == 75456);
static_assert(offsetof(WorkingBlock, ShowSectionName) == 12);

}  // namespace sedra
