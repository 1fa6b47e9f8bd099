#pragma once
// The program's whole state: AppState, PlotState and the twelve CoreSection slots.
//
// The records are plain data, allocated once by Model and never grown.  Every routine
// takes the Model (or the part it needs) as an argument; there are no globals.
//
// Data-set convention.  A section holds kMaxChannels data sets of one float per point.
// Data set n (1-based, as the curve set-up and DataSetOfPlot count them) is
// Data[n - 1].  Data set 1 (Data[0]) is the validity mask of the section's points:
// a value above 0 is a loaded point (shown in the coverage bar), a negative value a
// deleted or missing one.  Loading a section sets the mask to 1.0 for every point.
// The mask is not a curve of its own: a data column set to data set 1 shows its scales
// but no points.  The radiograph-derived curve (the strip sum across the data region)
// lives in data set kRadiographDataSet = 2 (Data[1]), named "Radiograph"; a section
// without a radiograph has no such data.  DataSetOfPlot (the first data-set selection
// of the display settings) says which data set each column shows: a load sets its
// first entry to 2 when "Display Radiograph Data" is on and to 1 when it is off.
// Deleting a point changes only the mask, so the curve leaves a gap there and
// restoring brings the point back.

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "model/buffers.h"
#include "model/menu_state.h"
#include "model/settings_blocks.h"

namespace sedra {

constexpr int kMaxSections = 12;
constexpr int kMaxRadiographs = 3;
constexpr int kMaxPoints = 18000;
constexpr int kMaxChannels = 75;
constexpr int kMaxCurves = 10;
constexpr int kRegionCount = 8;        // radiograph contrast regions (0 = whole image)
constexpr int kAnnotationSlots = 8;    // horizontal/vertical regions, horizontal lines
constexpr int kVLineSlots = 10;        // vertical lines in use
constexpr int kVLineRoom = 16;         // room kept for vertical lines
constexpr int kTextFields = 8;
constexpr int kRadiographDataSet = 2;  // data set (1-based) holding the radiograph curve
constexpr int kCurveWorkPoints = 262144;  // running point index capacity of the curves
constexpr int kDataSetNameLength = 16;

struct IntRect {
  int32_t Left, Top, Right, Bottom;
};

// Packed 24-bit display bitmap: top-down rows of Width x 3 bytes in blue, green, red
// order, each padded with zeros to a multiple of 4 bytes.  Generation changes every
// time the bits are rewritten, so the drawing layer knows when its cached screen
// image is stale.  Bits does not clear itself when it grows (see model/buffers.h):
// AllocateDib zeroes the padding, and the readers and conversions write every pixel.
struct Dib {
  int32_t Width = 0;
  int32_t Height = 0;
  int32_t Stride = 0;
  uint64_t Generation = 0;
  ByteBuffer Bits;

  static int32_t StrideFor(int32_t width) { return (width * 3 + 3) & ~3; }
  bool Empty() const { return Bits.empty(); }
  void Release() {
    Width = Height = Stride = 0;
    Bits = {};
    ++Generation;
  }
};

struct RadiographRegion {
  int32_t X1, Y1, X2, Y2;  // bitmap pixels, X2 and Y2 exclusive; undefined while X2 <= 0
  int32_t Lower, Upper;    // 16-bit sample window
};

// The plain fields of the optical image descriptor (cleared with one memset).
struct OpticalImageFields {
  uint32_t Valid;  // image available for drawing
  int32_t CropLeft, CropTop, CropRight, CropBottom;
  int32_t Width;   // pixels across the core
  int32_t Height;  // pixels along the core (its "length"); >= 1 means loaded
  int32_t Lower, Upper;  // brightness window on 0..255 (Upper 256 after loading)
  int32_t RedLevel, GreenLevel, BlueLevel;
  int32_t HistPeak;
  int32_t FirstShownPixel, LastShownPixel;  // placement from document.txt
  int32_t OpticalTop;     // start relative to the section start, section depth units
  int32_t OpticalLength;  // 0 = natural length
  IntRect RequestedRect;  // rectangle DrawOpticalImage was last asked to fill
  IntRect DrawnRect;      // rectangle actually drawn (hit-testing)
};

struct OpticalImageDesc : OpticalImageFields {
  Dib Bitmap;                   // display bitmap (24-bit BGR rows)
  ByteBuffer Pixels;  // source pixels as loaded, same row layout as Bitmap

  int32_t Length() const { return Height; }
  bool Loaded() const { return Height >= 1; }
  void Clear();
};

struct RadiographFields {
  uint32_t Valid;
  RadiographRegion Regions[kRegionCount];
  IntRect EditRect;  // region being edited, child-window pixels
  IntRect ViewRect;  // image inside the radiograph child window
  int32_t Width;     // columns (across the core); TIFF ImageLength after a TIFF read
  int32_t Height;    // rows along the core; >= 1 means loaded
  int32_t CurRegion;
  int32_t TopOffset;  // plot pixels at 100% zoom
  int32_t MaxValue;
  float ViewScale;    // bitmap rows per child-window pixel
  float HeightScale;  // drawn height as a fraction of the band
  IntRect DestRect;   // last destination rectangle in the plot
  // Set by a load: the display pixels are converted from Samples through the regions
  // as they are drawn, and Bitmap's bits are written only by a full conversion.
  uint32_t DisplayFromSamples;
};

struct RadiographDesc : RadiographFields {
  Dib Bitmap;
  SampleBuffer Samples;  // Width x Height, row after row, display orientation

  int32_t Length() const { return Height; }
  bool Loaded() const { return Height >= 1; }
  void Clear();
};

// The plain part of a section slot.  Trivially copyable so that New can clear all
// twelve slots without building a 5 MB temporary.
struct CoreSectionFields {
  float Depth[kMaxPoints];  // mm from the section start
  float StartDepth;
  float OpticalWidthLabel;  // cm
  float Data[kMaxChannels][kMaxPoints];  // data set n is Data[n - 1]
  int32_t PointCount;
  int32_t StartLabelDepth;
  // Curves: count time, correction factors.
  int32_t CountTime;  // seconds, 0 means 10
  float CorrectionFactor;
  float CurveCorrection[kMaxCurves];
  char CountTimeText[32];
  char UserField[32];
  char XrfConditionsText[32];
  float XrfStepSize;
  // Text.
  char FileName[64];
  char SiteName[64];
  char CoreName[64];
  char SectionName[64];
  char IdField4[32];
  char TubeText[32];
  char TubeSettingsText[64];
  char ExposureText[32];
  char CameraText[64];
  char XrfVoltText[64];
  char XrfExposureText[32];
  char StepSizeText[96];
  int32_t ScanDay, ScanMonth, ScanYear;
  int32_t RadiographCount;
  int32_t TubeVoltage;
  int32_t TubeCurrent;
  int32_t Exposure;  // ms; the information block shows it as the dwell time
  // Section title and its header block (layout units).
  int32_t SectionTitleFontSize;
  IntRect HeaderRect;
  // Annotations: each field is its own array so that removing an entry shifts them.
  float HRegionTop[kAnnotationSlots];
  float HRegionBottom[kAnnotationSlots];  // in use while > 0
  int32_t HRegionPattern[kAnnotationSlots];
  float VRegionLeft[kAnnotationSlots];
  float VRegionRight[kAnnotationSlots];  // in use while > 0
  int32_t VRegionPattern[kAnnotationSlots];
  float HLineDepth[kAnnotationSlots];  // in use while > 0
  int32_t HLineStyle[kAnnotationSlots];
  int32_t HLineWidth[kAnnotationSlots];
  int32_t VLinePosition[kVLineRoom];  // in use while >= 1
  int32_t VLineStyle[kVLineRoom];
  int32_t VLineWidth[kVLineRoom];
};

struct CoreSection : CoreSectionFields {
  OpticalImageDesc Optical;
  std::array<RadiographDesc, kMaxRadiographs> Radiographs;
};

struct TextField {
  char Text[32];
  int32_t FontSize;
  IntRect Rect;  // layout units
};

// The plot-state record.  Plain data: New clears it with one memset.
struct PlotState {
  IntRect TrackRect;  // rubber band, document pixels (first field on purpose)
  uint32_t Tracking;
  // Section bookkeeping.
  int32_t SectionCount;
  int32_t CurSectionIndex;
  int32_t CurRadiographIndex;
  int32_t DataSetCount;
  uint32_t ShowAllSections;
  uint32_t ImageCoversAll;
  // Zoom, scrolling, expanded region.
  int32_t ZoomFactor;
  uint32_t ZoomPending;
  int32_t ViewTop;
  int32_t ViewFirstPoint, ViewLastPoint;
  float ExpandTop, ExpandBottom;
  uint32_t Expanded;
  float DepthSpan;
  float AxisLength;
  float LayoutSpan;
  float SectionLength[kMaxSections];
  float DepthWindow[4];  // depth-window fields reset by a load
  int32_t DepthTick;
  // Display switches.
  uint32_t ShowInfo, ShowDividers, ShowSectionTitles, ShowSmoothPoints;
  uint32_t OverlayOr, OverlayAnd;
  uint32_t Modified;
  uint32_t NeedLayout;
  uint32_t InSizeMove;
  uint32_t Printing;
  uint32_t PrintCancelled;
  // Layout written by PaintPlot.
  IntRect PageRect;
  int32_t PageWidth, PageHeight;
  int32_t PlotWidth;
  int32_t LeftMargin, RightMargin, TopMargin, BottomMargin;
  int32_t PlotHeight;
  int32_t CharWidth, CharHeight;
  int32_t DataAreaRight;
  int32_t ColumnLeft, ColumnWidth, ColumnCount;
  int32_t ScreenHeight;
  int32_t RadiographWidth;  // fixed radiograph column width, 0 = computed
  int32_t RadBandWidth;     // set by the radiograph size dialog, 0 = automatic
  // Header block and titles.
  int32_t HeaderHeight;      // header layout field New sets to 10
  int32_t TitleHeight;
  int32_t HeaderLineCount;
  int32_t HeaderScroll;
  uint32_t HeaderNeedsLayout;
  IntRect TitlePos;
  char CoreTitle[32];
  TextField TextFields[kTextFields];
  int32_t MainTitleFontSize;
  IntRect MainTitleRect;
  char CurveLabel[32];
  // Curves.
  int32_t CurveLayout[3];  // curve-layout fields set to 5, 2, 32 by a load
  int32_t RadiographDataSet;
  int32_t FirstPoint, LastPoint;
  int32_t PointStep;
  double ColumnOffset[kMaxCurves];
  double ColumnYMax[kMaxCurves];
  uint32_t ColumnFixedScale[kMaxCurves];
  int32_t CurveLabelValue[kMaxCurves];
  int32_t IncSet, CohSet;
  char DataSetNames[kMaxChannels][kDataSetNameLength];
  // Data region and interaction.
  int32_t DataRegionLeft, DataRegionRight;
  uint32_t DataRegionMode;
  uint32_t HRegionMode, VLineMode, VRegionMode, HLineMode, DeleteMode;
  uint32_t MainTitleMode, SectionTitleMode, TextFieldMode;
  uint32_t OpticalPosMode, ImageSizeMode, ImageSizeTracking;
  uint32_t TitleDrag, HeaderDrag, TextDrag, RadMoveMode, RadDragPreview;
  uint32_t RadMoved;
  IntRect RadPlacement;
  uint32_t RadImageDragging, RadWndCapture, RadContrastOpen;
  uint32_t ValuePopupOpen;
  int32_t LastMouseX, LastMouseY, LastClickY;
  int32_t PendingButton[3];  // interaction fields cleared at the start of every paint
  int32_t CurTextField;
  int32_t CurColumn;
  int32_t CurHRegion, CurVRegion, CurHLine, CurVLine;
  // Histogram scales and marker memory of the contrast dialogs.
  float HistLevelsPerPixel;
  float HistPixelsPerCount;
  uint32_t MarkerColour[2];
  int32_t MarkerX[2], MarkerY[2];
};

// Process-wide state that is not a settings block and not in the plot record.
struct AppState {
  DisplaySettings Settings{};
  ElementSettings Elements{};
  WorkingBlock Work{};
  // Curve set-up per data curve (set up by the colour and data dialog).
  int32_t RatioSetOfPlot[kMaxCurves]{};
  int32_t RatioOn[kMaxCurves]{};
  int32_t NormaliseBy[kMaxCurves]{};
  int32_t FilterType[kMaxCurves]{};
  int32_t SmoothPoints[kMaxCurves]{};
  uint32_t CountsPerSecond = 0;
  uint32_t DrawLines = 0;
  int32_t PlotOfDataSet[kMaxChannels]{};
  IntRect CurveRect[kMaxSections][kMaxCurves]{};
  MenuState Menu = MenuState::Initial();
  // Window and help.
  char Title[128]{};
  char HelpPath[512]{};
  uint32_t HelpContext = 0;
  // Histogram work buffer (one counter per 16-bit value) and its bin width.
  std::vector<uint32_t> Histogram;
  int32_t HistBinWidth = 1;
  // Further counters of AutoContrast's bands of rows, kept from one large image to the next.
  std::vector<uint32_t> HistogramScratch;
};

// Work storage of the curve computation, allocated once.
struct CurveWork {
  std::vector<double> Values;        // kMaxCurves rows of kCurveWorkPoints
  std::vector<int16_t> Offsets;      // kMaxCurves per drawn point, interleaved
  std::vector<int16_t> Labels;       // same shape, cleared at every recomputation
  double& Value(int curve, int index) { return Values[size_t(curve) * kCurveWorkPoints + size_t(index)]; }
  double Value(int curve, int index) const { return Values[size_t(curve) * kCurveWorkPoints + size_t(index)]; }
};

// Owns every record.  Exactly one lives in the running program; every test makes its own.
class Model {
 public:
  Model();
  Model(const Model&) = delete;
  Model& operator=(const Model&) = delete;

  AppState App;
  PlotState& Plot() { return *plot_; }
  const PlotState& Plot() const { return *plot_; }
  CoreSection& Section(int index) { return sections_[size_t(index)]; }
  const CoreSection& Section(int index) const { return sections_[size_t(index)]; }
  CurveWork& Curves() { return curves_; }
  const CurveWork& Curves() const { return curves_; }

  // The current section and its current images.
  // The current section is PlotState.CurSectionIndex and the current radiograph
  // PlotState.CurRadiographIndex: indices, so nothing dangles when descriptors move.
  int CurSectionSlot() const;
  CoreSection& CurSection() { return Section(CurSectionSlot()); }
  const CoreSection& CurSection() const { return Section(CurSectionSlot()); }
  OpticalImageDesc& CurOptical() { return CurSection().Optical; }
  RadiographDesc& CurRadiograph() { return CurSection().Radiographs[size_t(CurRadiographSlot())]; }
  RadiographDesc& Radiograph(int i) { return CurSection().Radiographs[size_t(i)]; }
  int CurRadiographSlot() const;
  // Makes section `index` current, with its first radiograph as the current one.
  void SelectSection(int index);

  // Set by the main window: queue a repaint of the plot (background erased).
  std::function<void()> Invalidate;
  void RequestRepaint() {
    if (Invalidate) Invalidate();
  }
  // Set by the main window: the core was emptied or an image replaced, so a tool
  // dialog working on the old data must end.
  std::function<void()> ImagesReplaced;
  void NotifyImagesReplaced() {
    if (ImagesReplaced) ImagesReplaced();
  }

  // The drawing layer's display images (images/draw/display_image.cpp).
  // Opaque here so the model stays free of Qt; each model has its own.
  std::shared_ptr<void> DrawCache;

  // Convenience views of the working block.
  WorkingBlock& Work() { return App.Work; }
  DisplaySettings& Settings() { return App.Settings; }

 private:
  std::unique_ptr<PlotState> plot_;
  std::unique_ptr<CoreSection[]> sections_;
  CurveWork curves_;
};

// Copies at most size - 1 bytes of text into a fixed field and terminates it.
void CopyField(char* dest, size_t size, const char* text);
template <size_t N>
void CopyField(char (&dest)[N], const char* text) {
  CopyField(dest, N, text);
}

}  // namespace sedra
