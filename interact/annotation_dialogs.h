#pragma once
// The four annotation tools: "Define Highlighted Horizontal Region" (209), "Define
// Highlighted Vertical Region" (211), "Define Horizontal Line" (212) and "Define Vertical
// Line" (213).  Each edits one entry of its section's fixed array at a time, chosen with
// numbered radio buttons; the entry is shown on the plot as the rubber band, which the
// mouse places and drags (interact/mouse_engine.h).  Entries are stored only by
// "Finished" or a change of radio button; "Clear Current" removes one and closes up
// the array.

#include <memory>

#include "ui/tool_dialog.h"

namespace sedra {

class Model;
struct CoreSection;
struct PlotState;

enum class AnnotationKind { HRegion, VRegion, HLine, VLine };

int SlotCount(AnnotationKind kind);
bool InUse(const CoreSection& section, AnnotationKind kind, int index);
int& CurrentEntry(PlotState& plot, AnnotationKind kind);
// Removes entry `index`: every field array of the later entries moves down one slot
// and the last slot is marked free (its other fields keep their values).
void RemoveAnnotation(CoreSection& section, AnnotationKind kind, int index);

// Where a stored depth (mm from the section start) and a horizontal position (units of
// the section's length across the data area) are shown, and the way back.
int RowOfStoredDepth(const PlotState& plot, float depth);
int XOfUnits(const Model& model, double units);
double UnitsOfX(const Model& model, int x);

// Puts the current entry of `kind` on the plot as the rubber band (zeros when it is
// free, so the next click places one) and writes its depths into `readouts`.  The
// expanded display's offset is not added here, unlike the mouse's read-outs.
void ShowAnnotation(PlotHost& host, AnnotationKind kind, ToolDialog& readouts);

class AnnotationDialog : public ToolDialog {
  Q_OBJECT
 public:
  AnnotationDialog(PlotHost& host, AnnotationKind kind);
  ~AnnotationDialog() override;
  AnnotationKind Kind() const { return kind_; }

  void OnRadio(int id);
  void OnFinished();
  void OnClearCurrent();

 protected:
  void SetModes() override;
  void ClearModes() override;

 private:
  struct Form;
  void Store();
  void SelectListEntry(int value);
  AnnotationKind kind_;
  std::unique_ptr<Form> form_;
};

// One type per tool, so that opening one ends another.
class HRegionDialog : public AnnotationDialog {
 public:
  explicit HRegionDialog(PlotHost& host) : AnnotationDialog(host, AnnotationKind::HRegion) {}
};
class VRegionDialog : public AnnotationDialog {
 public:
  explicit VRegionDialog(PlotHost& host) : AnnotationDialog(host, AnnotationKind::VRegion) {}
};
class HLineDialog : public AnnotationDialog {
 public:
  explicit HLineDialog(PlotHost& host) : AnnotationDialog(host, AnnotationKind::HLine) {}
};
class VLineDialog : public AnnotationDialog {
 public:
  explicit VLineDialog(PlotHost& host) : AnnotationDialog(host, AnnotationKind::VLine) {}
};

}  // namespace sedra
