#pragma once
// "Colour and Data Set-Up" (dialog 219): the colour of each kind of plot element, mixed
// on three red/green/blue scroll bars or taken from fifteen swatches, and the three
// data-correction options.  Modal.  Every command first writes the colour being edited
// back into its setting, so the plot follows at once; "OK" saves the settings files,
// "Cancel" offers to put the whole display-settings block back as it was on opening.

#include <QImage>
#include <cstdint>
#include <functional>
#include <memory>

#include "model/settings_blocks.h"
#include "ui/modal_dialog.h"

namespace Ui {
class dlg219;
}

namespace sedra {

class Model;
class PlotHost;

// The swatch palette (0x00BBGGRR), three to a row.
extern const uint32_t kSwatchColours[15];
// The list's fixed entries before the data entries.
constexpr int kFixedColourEntries = 7;

class ColourDialog : public ModalDialog {
  Q_OBJECT
 public:
  ColourDialog(PlotHost& host, std::function<void()> saveSettings);
  ~ColourDialog() override;

  void OnListSelection(int row);
  void OnSwatch(int k);
  // A scroll action on bar `bar` (0 red, 1 green, 2 blue) with the thumb at `position`.
  void OnScroll(int bar, int action, int position);
  void OnOk();
  void OnCancel();

  uint32_t CurColour() const { return curColour_; }
  int Component(int bar) const { return components_[bar]; }
  // The preview as last painted.
  QImage Preview() const { return preview_; }

 protected:
  void Closed() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  uint32_t& ColourOf(int item);
  void WriteBack();
  void ShowColour();
  void PaintPreview();
  void PaintSwatches();

  PlotHost& host_;
  Model& model_;
  std::function<void()> saveSettings_;
  std::unique_ptr<Ui::dlg219> ui_;
  DisplaySettings saved_;
  int curItem_ = 0;
  uint32_t curColour_ = 0;
  int components_[3] = {};
  QImage preview_;
};

}  // namespace sedra
