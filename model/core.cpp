#include "model/core.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <cstring>

#include "model/menu_rules.h"
#include "model/menu_state.h"
#include "model/messages.h"
#include "model/model.h"
#include "model/numbers.h"
#include "model/prompt.h"

namespace sedra {

namespace {
void ClearDataSetSelections(DisplaySettings& settings) {
  std::memset(settings.DataSetOfPlot, 0, sizeof settings.DataSetOfPlot);
  std::memset(settings.DataSetSelection2, 0, sizeof settings.DataSetSelection2);
  std::memset(settings.DataSetSelection3, 0, sizeof settings.DataSetSelection3);
}

// The first data column shows the radiograph's strip sums when "Display Radiograph
// Data" is on, data set 1 (no curve) when it is off.
void SelectFirstDataSet(Model& model) {
  PlotState& plot = model.Plot();
  model.Settings().DataSetOfPlot[0] = model.Settings().ShowRadiographData ? kRadiographDataSet : 1;
  plot.RadiographDataSet = kRadiographDataSet;
  CopyField(plot.DataSetNames[0], "Mask");
  CopyField(plot.DataSetNames[kRadiographDataSet - 1], "Radiograph");
  if (plot.ColumnCount < 1) plot.ColumnCount = 1;
  plot.NeedLayout = 1;
}
}  // namespace

void FreeSectionImages(Model& model) {
  const int count = model.Plot().SectionCount;
  for (int s = 0; s < count && s < kMaxSections; ++s) {
    CoreSection& section = model.Section(s);
    section.Optical.Bitmap.Release();
    section.Optical.Pixels = {};
    for (auto& r : section.Radiographs) {
      r.Bitmap.Release();
      r.Samples = {};
    }
  }
}

void ClearSection(CoreSection& section) {
  std::memset(static_cast<CoreSectionFields*>(&section), 0, sizeof(CoreSectionFields));
  section.Optical.Clear();
  for (auto& r : section.Radiographs) r.Clear();
}

bool SectionLoaded(const CoreSection& section) {
  return section.PointCount > 0 || section.Optical.Loaded() || section.Radiographs[0].Loaded();
}

int NextFreeSection(const Model& model) {
  const int count = std::clamp(model.Plot().SectionCount, 1, kMaxSections);
  // After New the core counts one section, still empty: the first read fills it.
  if (count == 1 && !SectionLoaded(model.Section(0))) return 0;
  return count < kMaxSections ? count : -1;
}

namespace {
// Slot `to` takes over everything of slot `from`.  The display bitmaps' generations
// move on, so the drawing layer, which keys its screen copies by slot, converts the
// images it now finds there afresh.
void MoveSection(Model& model, int to, int from) {
  CoreSection& dest = model.Section(to);
  dest = std::move(model.Section(from));
  ++dest.Optical.Bitmap.Generation;
  for (auto& r : dest.Radiographs) ++r.Bitmap.Generation;
  PlotState& plot = model.Plot();
  plot.SectionLength[to] = plot.SectionLength[from];
  std::copy(std::begin(model.App.CurveRect[from]), std::end(model.App.CurveRect[from]),
            std::begin(model.App.CurveRect[to]));
}
}  // namespace

bool RemoveCurrentSection(Model& model, Prompt& prompt) {
  PlotState& plot = model.Plot();
  const int count = std::clamp(plot.SectionCount, 1, kMaxSections);
  if (count < 2) return NewCore(model, &prompt);
  if (plot.Modified &&
      prompt.Message(msg::kContinueWithoutSaving, "", Icon::None, Buttons::YesNo) != Answer::Yes)
    return false;
  // Tools working on the section must end before its images go.
  model.NotifyImagesReplaced();
  const int gone = model.CurSectionSlot();
  for (int s = gone; s + 1 < count; ++s) MoveSection(model, s, s + 1);
  ClearSection(model.Section(count - 1));
  plot.SectionLength[count - 1] = 0;
  plot.SectionCount = count - 1;
  model.SelectSection(std::min(gone, count - 2));
  if (plot.SectionCount < 2) plot.ShowAllSections = 0;

  // The view starts again on the section now current, whole.
  const CoreSection& current = model.CurSection();
  plot.Expanded = 0;
  plot.DepthSpan = plot.SectionLength[model.CurSectionSlot()];
  plot.AxisLength = plot.DepthSpan;
  plot.ViewFirstPoint = 0;
  plot.ViewLastPoint = current.PointCount;
  plot.NeedLayout = 1;
  MenuAfterSectionCount(model.App.Menu, plot.SectionCount);
  if (!plot.ShowAllSections) MenuAfterSectionChosen(model.App.Menu, RadiographGivesDataCurve(model));
  model.RequestRepaint();
  return true;
}

bool NewCore(Model& model, Prompt* prompt) {
  PlotState& plot = model.Plot();
  if (prompt && plot.Modified) {
    const char* question = plot.SectionCount < 2 ? msg::kContinueWithoutSaving : msg::kClearAllSections;
    if (prompt->Message(question, "", Icon::None, Buttons::YesNo) != Answer::Yes) return false;
  }
  if (prompt) FreeSectionImages(model);

  for (int s = 0; s < kMaxSections; ++s) ClearSection(model.Section(s));

  // The four display switches survive; everything else in the working block and the
  // plot record starts from zero.
  WorkingBlock& work = model.Work();
  const uint32_t kept[4] = {work.ShowRadiograph, work.ShowOptical, work.ShowCoreName, work.ShowSectionName};
  std::memset(&work, 0, sizeof work);
  std::memset(&plot, 0, sizeof plot);
  work.ShowRadiograph = kept[0];
  work.ShowOptical = kept[1];
  work.ShowCoreName = kept[2];
  work.ShowSectionName = kept[3];

  work.SampleMode = 2;
  work.SampleStep = 5;
  plot.ZoomFactor = 1;
  plot.SectionCount = 1;
  plot.HeaderHeight = 10;
  plot.ShowInfo = 1;
  plot.ShowDividers = 1;
  plot.ShowSectionTitles = 1;
  model.SelectSection(0);

  if (!prompt) return true;

  // A new core has no curves yet: the data-set selection starts again as at start-up.
  ClearDataSetSelections(model.Settings());
  model.NotifyImagesReplaced();
  model.RequestRepaint();
  MenuAfterNewCore(model.App.Menu);
  return true;
}

void StartSession(Model& model) {
  NewCore(model, nullptr);
  CopyField(model.App.Title, msg::kProgramTitle);
  model.Plot().DataSetCount = 0;
  model.Work().ShowRadiograph = 1;
  model.Work().ShowOptical = 1;
  ClearDataSetSelections(model.Settings());
}

float StepSizeMm(const char* text) {
  float step = 1.0f;
  if (std::strchr(text, ' ') != nullptr) {
    int micrometres = 0;
    if (std::sscanf(text, "%d", &micrometres) == 1 && micrometres != 0) step = float(micrometres) * 0.001f;
  }
  return step;
}

void SetOpticalWidthLabel(Model& model) {
  CoreSection& section = model.CurSection();
  const OpticalImageDesc& optical = section.Optical;
  if (optical.Length() > 0)
    section.OpticalWidthLabel = model.Plot().DepthSpan * float(optical.Width) * 0.1f / float(optical.Length());
}

void UpdateMenusAfterLoad(Model& model, bool isRadiograph) {
  PlotState& plot = model.Plot();
  CoreSection& section = model.CurSection();
  WorkingBlock& work = model.Work();

  float step = StepSizeMm(section.StepSizeText);

  if (isRadiograph) {
    const int length = model.CurRadiograph().Length();
    if (work.SampleStep < 1) work.SampleStep = 1;
    // A long radiograph must not overflow the section's point arrays: coarsen the
    // sampling until the curve fits.  Each point then covers more rows than the reader
    // gave it, so the step along the core grows by the same factor and the depth axis
    // still spans the whole radiograph.
    const int minimumStep = (length + kMaxPoints - 1) / kMaxPoints;
    if (work.SampleStep < minimumStep) {
      step = step * float(minimumStep) / float(work.SampleStep);
      work.SampleStep = minimumStep;
    }
    section.PointCount = length / work.SampleStep;
  } else if (section.PointCount == 0) {
    section.PointCount = section.Optical.Length() < kMaxPoints ? section.Optical.Length() : kMaxPoints;
  }
  if (section.PointCount < 0) section.PointCount = 0;

  plot.CurveLayout[0] = 5;
  plot.CurveLayout[1] = 2;
  plot.CurveLayout[2] = 32;
  CopyField(plot.CurveLabel, "Radiograph");

  section.StartDepth = work.StartCoordinate;
  section.StartLabelDepth = RoundToInt(section.StartDepth);

  // Every point of a fresh load is valid: the mask (data set 1) is 1.0.
  for (int i = 0; i < section.PointCount; ++i) {
    section.Depth[i] = float(i) * step;
    section.Data[0][i] = 1.0f;
  }

  const float length = float(section.PointCount) * step;
  work.EndCoordinate = length + section.StartDepth;
  plot.DepthSpan = length;
  plot.SectionLength[model.CurSectionSlot()] = length;
  plot.AxisLength = length;
  for (float& f : plot.DepthWindow) f = 0;
  plot.ViewFirstPoint = 0;
  plot.ViewLastPoint = section.PointCount;
  plot.DataSetCount = 1;
  // The annotation tools start again from their first entries.
  plot.CurHRegion = plot.CurVRegion = plot.CurHLine = plot.CurVLine = 0;

  if (plot.DepthTick == 0) plot.DepthTick = plot.DepthSpan < 300 ? 5 : plot.DepthSpan < 600 ? 10 : 25;

  SelectFirstDataSet(model);

  if (!isRadiograph) SetOpticalWidthLabel(model);
  MenuAfterLoad(model.App.Menu, isRadiograph ? LoadKind::Radiograph : LoadKind::Optical,
                RadiographGivesDataCurve(model));
}

void UpdateMenusAfterEdit(Model& model, const char* stepSizeTextBefore) {
  PlotState& plot = model.Plot();
  CoreSection& section = model.CurSection();
  // A corrected step size stretches the depth axis; the point count stays, and so does
  // any coarsening a long radiograph needed, because only the ratio is applied.
  const float before = StepSizeMm(stepSizeTextBefore);
  const float after = StepSizeMm(section.StepSizeText);
  if (before != after && section.PointCount > 0) {
    const float ratio = after / before;
    for (int i = 0; i < section.PointCount && i < kMaxPoints; ++i) section.Depth[i] *= ratio;
    const int slot = model.CurSectionSlot();
    plot.SectionLength[slot] *= ratio;
    plot.DepthSpan *= ratio;
    plot.AxisLength *= ratio;
  }
  // The start depth and its label are the ones just typed: a reload's values must not
  // overwrite them, or the plot would never move to the corrected depth.
  model.Work().EndCoordinate = plot.SectionLength[model.CurSectionSlot()] + section.StartDepth;
  if (plot.DataSetCount < 1 && section.PointCount > 0) plot.DataSetCount = 1;
  SelectFirstDataSet(model);
  MenuAfterLoad(model.App.Menu, LoadKind::Optical, RadiographGivesDataCurve(model));
}

}  // namespace sedra
