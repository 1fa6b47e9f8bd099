#pragma once
// Operations on the model as a whole: starting a new core and deriving the depth
// axis after a section was read.

namespace sedra {

class Model;
class Prompt;
struct CoreSection;

// Empties the core.  With a prompt (the interactive case) it first asks when there are
// unsaved changes, frees the images, resets the menu and asks for a repaint; without
// one (start-up) it only resets the model.  Returns false when the user declined.
bool NewCore(Model& model, Prompt* prompt);

// What every start does once the settings are read, for the program and the renderer
// alike: an empty core, the program's title, both images shown, and no data-set
// selection carried over from the last run.
void StartSession(Model& model);

// Empties one slot: its fields, its images and their pixel blocks.
void ClearSection(CoreSection& section);

// Whether a slot holds a read section (an image or data points).
bool SectionLoaded(const CoreSection& section);

// The slot a further section is read into: the next one after the loaded sections, or
// slot 0 while the core is still empty; -1 when all twelve are in use.
int NextFreeSection(const Model& model);

// Takes the current section out of the core; the sections after it move up one slot
// each, so the core stays end to end in slot order.  With unsaved changes it first asks
// whether to go on (No changes nothing); the last section is removed as New would.
bool RemoveCurrentSection(Model& model, Prompt& prompt);

// Releases the pixel blocks and display bitmaps of every loaded section.
void FreeSectionImages(Model& model);

// After a read: point count, depth axis, data sets, tick spacing and menu enabling.
void UpdateMenusAfterLoad(Model& model, bool isRadiograph);

// The optical image's width in centimetres at the scale of its length along the
// current depth axis (its width label).
void SetOpticalWidthLabel(Model& model);

// After the section information editor: what a load derives, redone from the edited
// fields.  The edited start depth, start label and optical width label stay as typed
// (no reload value replaces them); a changed step-size text rescales the depth axis;
// "Display Radiograph Data" decides again what the first data column shows.
void UpdateMenusAfterEdit(Model& model, const char* stepSizeTextBefore);

// Step size in mm from the section's step-size text (micrometres), 1.0 without one.
float StepSizeMm(const char* stepSizeText);

}  // namespace sedra
