#include "model/menu_rules.h"

#include "model/menu_state.h"
#include "model/model.h"

namespace sedra {

namespace {

// "&Element Data" goes with "&Radiograph" when the radiograph gives the curve.
void FollowRadiograph(MenuState& menu, bool radiographCurve) {
  menu.EnableTop(kMenuElementData, menu.IsTopEnabled(kMenuRadiograph) && radiographCurve);
}

void EnableSingleSectionTools(MenuState& menu, bool on) {
  for (int pos : {kMenuExpand, kMenuOptical, kMenuRadiograph, kMenuDefineRegion}) menu.EnableTop(pos, on);
  menu.EnableItem(kCmdSectionTitle, on);
  menu.EnableItem(kCmdDeletePoints, on);
}

}  // namespace

void MenuAfterNewCore(MenuState& menu) {
  for (int pos = kMenuZoom; pos <= kMenuEdit; ++pos) menu.EnableTop(pos, false);
  menu.EnableItem(kCmdSectionTitle, true);
  menu.EnableItem(kCmdDeletePoints, true);
  // Nothing enables Print or Set Main Title again after a New; that is how the
  // program has always behaved and users know to restart for a printout.
  menu.EnableItem(kCmdMainTitle, false);
  menu.EnableItem(kCmdPrint, false);
  // PDF output needs no printer driver here, so "Print as PDF file" is always offered.
  menu.EnableItem(kCmdPrintPdf, true);
}

void MenuAfterLoad(MenuState& menu, LoadKind kind, bool radiographCurve) {
  menu.EnableTop(kMenuZoom, true);
  menu.EnableTop(kMenuExpand, true);
  menu.EnableTop(kind == LoadKind::Optical ? kMenuOptical : kMenuRadiograph, true);
  menu.EnableTop(kMenuDefineRegion, true);
  menu.EnableTop(kMenuEdit, true);
  FollowRadiograph(menu, radiographCurve);
}

void MenuAfterSectionChosen(MenuState& menu, bool radiographCurve) {
  EnableSingleSectionTools(menu, true);
  FollowRadiograph(menu, radiographCurve);
}

void MenuAfterShowAll(MenuState& menu) {
  EnableSingleSectionTools(menu, false);
  FollowRadiograph(menu, false);
}

void MenuAfterSectionCount(MenuState& menu, int sectionCount) { menu.EnableTop(kMenuSection, sectionCount > 1); }

void MenuAfterZoom(MenuState& menu, int zoomCommand) {
  for (int z : {kCmdZoom100, kCmdZoom200, kCmdZoom400, kCmdZoom800, kCmdZoom1600, kCmdZoom3200, kCmdExpand})
    menu.Check(z, z == zoomCommand);
}

void MenuAfterOverlay(MenuState& menu, bool orOn, bool andOn) {
  menu.Check(kCmdOverlayOr, orOn);
  menu.Check(kCmdOverlayAnd, andOn);
}

void MenuAfterInformationEditor(MenuState& menu, bool allowRadiographSizing) {
  menu.EnableItem(kCmdImageSize, allowRadiographSizing);
}

bool RadiographGivesDataCurve(const Model& model) {
  const CoreSection& section = model.CurSection();
  return section.Radiographs[0].Loaded() && model.App.Settings.DataSetOfPlot[0] == kRadiographDataSet;
}

}  // namespace sedra
