#pragma once
// Every rule that greys, enables or checks the main menu, named after the event that
// applies it.  The main window only copies MenuState onto the real menu.

namespace sedra {

struct MenuState;
class Model;

enum class LoadKind { Optical, Radiograph };

// New (and the reads that start with it): only File, Colour Set-Up and About stay.
void MenuAfterNewCore(MenuState& menu);
// A section image was read.  `radiographCurve`: the section's data curve comes from
// its radiograph, which is when "&Element Data" (point deletion) has anything to act on.
void MenuAfterLoad(MenuState& menu, LoadKind kind, bool radiographCurve);
// A section was chosen in the section dialog, or all sections are shown.
void MenuAfterSectionChosen(MenuState& menu, bool radiographCurve);
void MenuAfterShowAll(MenuState& menu);
// "&Section" is offered as soon as there is a second section to choose.
void MenuAfterSectionCount(MenuState& menu, int sectionCount);
// One zoom command (4031..4034, 4103, 4106 or 4089) is checked, the others not.
void MenuAfterZoom(MenuState& menu, int zoomCommand);
void MenuAfterOverlay(MenuState& menu, bool orOn, bool andOn);
// The section information editor closed; its "Allow Radiograph Sizing and Moving" box
// enables or greys "&Image Size" (the box always starts unticked).
void MenuAfterInformationEditor(MenuState& menu, bool allowRadiographSizing);

// The current section's first data curve shows its radiograph's strip sums.
bool RadiographGivesDataCurve(const Model& model);

}  // namespace sedra
