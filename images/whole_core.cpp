#include "images/whole_core.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <utility>

#include "images/load.h"
#include "import/document_reader.h"
#include "import/tiff_reader.h"
#include "model/command_registry.h"
#include "model/core.h"
#include "model/menu_rules.h"
#include "model/menu_state.h"
#include "model/messages.h"
#include "model/model.h"
#include "model/numbers.h"
#include "model/prompt.h"

namespace sedra {

namespace {

// Sections that end where the next begins share that depth: only more than this much
// in common counts as an overlap (the scanner writes its coordinates to 0.1 mm).
constexpr float kOverlapToleranceMm = 0.5f;

// What a read changes outside the slot it fills: the plot record, the working block,
// the menu and the data-set selection.  A refused addition puts them back.
class CoreSnapshot {
 public:
  explicit CoreSnapshot(Model& model) : plot_(model.Plot()), work_(model.Work()), menu_(model.App.Menu) {
    std::memcpy(dataSets_, model.Settings().DataSetOfPlot, sizeof dataSets_);
  }
  void Restore(Model& model) const {
    model.Plot() = plot_;
    model.Work() = work_;
    const uint64_t generation = model.App.Menu.Generation;
    model.App.Menu = menu_;
    model.App.Menu.Generation = generation + 1;  // the window applies the old state again
    std::memcpy(model.Settings().DataSetOfPlot, dataSets_, sizeof dataSets_);
  }

 private:
  PlotState plot_;
  WorkingBlock work_;
  MenuState menu_;
  int32_t dataSets_[std::size(DisplaySettings{}.DataSetOfPlot)];
};

void Refuse(Model& model, Prompt& prompt, const CoreSnapshot& before, int slot, const std::string& text) {
  ClearSection(model.Section(slot));
  before.Restore(model);
  model.NotifyImagesReplaced();
  model.RequestRepaint();
  if (!text.empty()) prompt.Message(text, "", Icon::Exclamation, Buttons::Ok);
}

// Sections are drawn side by side in one radiograph column: a radiograph of another
// width would be a scan of another kind.
std::string WidthRefusal(const Model& model, int slot) {
  if (slot < 1) return {};
  const RadiographDesc& previous = model.Section(slot - 1).Radiographs[0];
  const RadiographDesc& added = model.Section(slot).Radiographs[0];
  if (!previous.Loaded() || previous.Width == added.Width) return {};
  return Format(msg::kSectionWidthDiffers, added.Width, slot, previous.Width);
}

std::string OverlapRefusal(const Model& model, int slot) {
  const PlotState& plot = model.Plot();
  const float top = model.Section(slot).StartDepth;
  const float bottom = top + plot.SectionLength[slot];
  for (int s = 0; s < slot; ++s) {
    const float otherTop = model.Section(s).StartDepth;
    const float otherBottom = otherTop + plot.SectionLength[s];
    if (top < otherBottom - kOverlapToleranceMm && otherTop < bottom - kOverlapToleranceMm)
      return Format(msg::kSectionOverlaps, s + 1);
  }
  return {};
}

// The folder's optical image, read as "Read &Optical Image" reads it; a folder without
// one is a section without one.  False when the file is there but refused.
bool ReadOpticalBeside(Model& model, Prompt& prompt) {
  const std::filesystem::path path = std::filesystem::path(model.Settings().SectionFolder) / "optical.tif";
  std::error_code ec;
  if (!std::filesystem::exists(path, ec)) return true;
  const ReadOutcome outcome = ReadTiffPath(model, prompt, path.string(), false, false);
  if (outcome.PixelsRead) model.NotifyImagesReplaced();
  return outcome.Result != 0 && model.CurOptical().Loaded();
}

// Reads the section folder into `slot`, made current; an empty text when it was read,
// else why not ("" for a cancelled or silently refused read).
bool ReadSectionInto(Model& model, Prompt& prompt, int slot, std::string& refusal) {
  PlotState& plot = model.Plot();
  plot.SectionCount = slot + 1;
  plot.ShowAllSections = 0;
  model.SelectSection(slot);
  if (!LoadTiffImage(model, prompt, true, false) || !model.CurRadiograph().Loaded()) return false;
  refusal = WidthRefusal(model, slot);
  if (!refusal.empty() || !ReadOpticalBeside(model, prompt)) return false;
  // Later sections are compared with the one before: a changed tube or exposure is
  // pointed out, as the scanner operator may not have meant it.
  if (!ReadSectionMetadata(model, prompt, true)) {
    refusal = msg::kSectionWithoutDocument;
    return false;
  }
  // The radiograph gives the depth axis; the optical image only its width label and its
  // menu (a second full update would drop the coarser step a long radiograph needs).
  UpdateMenusAfterLoad(model, true);
  if (model.CurOptical().Loaded()) {
    SetOpticalWidthLabel(model);
    MenuAfterLoad(model.App.Menu, LoadKind::Optical, RadiographGivesDataCurve(model));
  }
  refusal = OverlapRefusal(model, slot);
  return refusal.empty();
}

// Takes the radiograph at `place` out again, the later ones moving back.
void TakeOutRadiograph(CoreSection& section, int place) {
  const int count = std::clamp(section.RadiographCount, 1, kMaxRadiographs);
  for (int i = place; i + 1 < count; ++i) {
    section.Radiographs[size_t(i)] = std::move(section.Radiographs[size_t(i + 1)]);
    ++section.Radiographs[size_t(i)].Bitmap.Generation;
  }
  section.Radiographs[size_t(count - 1)].Clear();
  section.RadiographCount = count - 1;
}

}  // namespace

bool CommandAddSection(Model& model, Prompt& prompt) {
  const int slot = NextFreeSection(model);
  if (slot < 0) {
    prompt.Message(msg::kAllSectionsUsed, "", Icon::Exclamation, Buttons::Ok);
    return false;
  }
  // The new section becomes the current one: tools working on the current section end
  // first, so that a refused read cannot bring back the modes they had set.
  model.NotifyImagesReplaced();
  const bool showAll = model.Plot().ShowAllSections != 0;
  const CoreSnapshot before(model);
  std::string refusal;
  if (!ReadSectionInto(model, prompt, slot, refusal)) {
    Refuse(model, prompt, before, slot, refusal);
    return false;
  }
  PlotState& plot = model.Plot();
  // A core shown whole stays whole, now with the new section at its end.
  plot.ShowAllSections = showAll ? 1 : 0;
  if (showAll) MenuAfterShowAll(model.App.Menu);
  MenuAfterSectionCount(model.App.Menu, plot.SectionCount);
  plot.NeedLayout = 1;
  model.RequestRepaint();
  return true;
}

bool CommandAddRadiograph(Model& model, Prompt& prompt, const RadiographPlaceChooser& choosePlace) {
  CoreSection& section = model.CurSection();
  if (section.RadiographCount == 0) {
    // The section's first radiograph gives it its depth axis, as "Read &Radiograph
    // Image" would, but the rest of the core stays.
    if (!LoadTiffImage(model, prompt, true, true, choosePlace) || !model.CurRadiograph().Loaded()) return false;
    ReadSectionMetadata(model, prompt, false);
    UpdateMenusAfterLoad(model, true);
    return true;
  }
  model.NotifyImagesReplaced();  // tools end before the read: a refusal must not bring back their modes
  const CoreSnapshot before(model);
  if (!LoadTiffImage(model, prompt, true, true, choosePlace) || !model.CurRadiograph().Loaded()) return false;
  // The radiographs of a section lie side by side in bands of one width and share
  // the data region's columns, so they must be equally wide.
  const int place = model.CurRadiographSlot();
  const int width = model.CurRadiograph().Width;
  const int other = section.Radiographs[place == 0 ? 1 : 0].Width;
  if (width != other) {
    TakeOutRadiograph(section, place);
    before.Restore(model);
    model.NotifyImagesReplaced();
    model.RequestRepaint();
    prompt.Message(Format(msg::kRadiographWidthDiffers, width, other), "", Icon::Exclamation, Buttons::Ok);
    return false;
  }
  model.Plot().NeedLayout = 1;
  model.RequestRepaint();
  return true;
}

void RegisterWholeCoreCommands(CommandRegistry& commands, Model& model, Prompt& prompt,
                               RadiographPlaceChooser choosePlace) {
  commands.Add(kCmdAddSection, Needs::Nothing, [&model, &prompt] { CommandAddSection(model, prompt); });
  commands.Add(kCmdAddRadiograph, Needs::Nothing, [&model, &prompt, choosePlace = std::move(choosePlace)] {
    CommandAddRadiograph(model, prompt, choosePlace);
  });
  commands.Add(kCmdRemoveSection, Needs::Nothing, [&model, &prompt] { RemoveCurrentSection(model, prompt); });
}

}  // namespace sedra
