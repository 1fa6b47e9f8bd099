#include "model/core.h"

#include <cstdio>
#include <cstring>

#include "model/messages.h"
#include "model/model.h"
#include "model/numbers.h"
#include "model/prompt.h"

namespace sedra {

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

bool NewCore(Model& model, Prompt* prompt) {
  PlotState& plot = model.Plot();
  if (prompt && plot.Modified) {
    const char* question = plot.SectionCount < 2 ? msg::kContinueWithoutSaving : msg::kClearAllSections;
    if (prompt->Message(question, "", Icon::None, Buttons::YesNo) != Answer::Yes) return false;
  }
  if (prompt) FreeSectionImages(model);

  for (int s = 0; s < kMaxSections; ++s) {
    CoreSection& section = model.Section(s);
    std::memset(static_cast<CoreSectionFields*>(&section), 0, sizeof(CoreSectionFields));
    section.Optical.Clear();
    for (auto& r : section.Radiographs) r.Clear();
  }

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

  model.RequestRepaint();
  MenuState& menu = model.App.Menu;
  for (int pos = kMenuZoom; pos <= kMenuEdit; ++pos) menu.EnableTop(pos, false);
  menu.EnableItem(kCmdSectionTitle, true);
  menu.EnableItem(kCmdDeletePoints, true);
  // Nothing enables Print or Set Main Title again after a New; that is how the
  // program has always behaved and users know to restart for a printout.
  menu.EnableItem(kCmdMainTitle, false);
  menu.EnableItem(kCmdPrint, false);
  // PDF output needs no printer driver here, so "Print as PDF file" is always offered.
  menu.EnableItem(kCmdPrintPdf, true);
  return true;
}

float StepSizeMm(const char* text) {
  float step = 1.0f;
  if (std::strchr(text, ' ') != nullptr) {
    int micrometres = 0;
    if (std::sscanf(text, "%d", &micrometres) == 1 && micrometres != 0) step = float(micrometres) * 0.001f;
  }
  return step;
}

void UpdateMenusAfterLoad(Model& model, bool isRadiograph) {
  PlotState& plot = model.Plot();
  CoreSection& section = model.CurSection();
  WorkingBlock& work = model.Work();

  const float step = StepSizeMm(section.StepSizeText);

  if (isRadiograph) {
    const int length = model.CurRadiograph().Length();
    if (work.SampleStep < 1) work.SampleStep = 1;
    // A long radiograph must not overflow the section's point arrays: coarsen the
    // sampling until the curve fits, so it still spans the whole section.
    const int minimumStep = (length + kMaxPoints - 1) / kMaxPoints;
    if (work.SampleStep < minimumStep) work.SampleStep = minimumStep;
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

  if (plot.DepthTick == 0) plot.DepthTick = plot.DepthSpan < 300 ? 5 : plot.DepthSpan < 600 ? 10 : 25;

  model.Settings().DataSetDisplayMode[0] = model.Settings().ShowRadiographData ? 2 : 1;

  // The radiograph curve: data set 2, shown in the first data column.
  plot.RadiographDataSet = kRadiographDataSet;
  CopyField(plot.DataSetNames[0], "Mask");
  CopyField(plot.DataSetNames[kRadiographDataSet - 1], "Radiograph");
  model.App.DataSetOfPlot[0] = kRadiographDataSet;
  if (plot.ColumnCount < 1) plot.ColumnCount = 1;
  plot.NeedLayout = 1;

  MenuState& menu = model.App.Menu;
  menu.EnableTop(kMenuZoom, true);
  menu.EnableTop(kMenuExpand, true);
  if (!isRadiograph) {
    menu.EnableTop(kMenuOptical, true);
    const OpticalImageDesc& optical = section.Optical;
    if (optical.Length() > 0)
      section.OpticalWidthLabel = plot.DepthSpan * float(optical.Width) * 0.1f / float(optical.Length());
  } else {
    menu.EnableTop(kMenuRadiograph, true);
  }
  menu.EnableTop(kMenuDefineRegion, true);
  menu.EnableTop(kMenuEdit, true);
}

}  // namespace sedra
