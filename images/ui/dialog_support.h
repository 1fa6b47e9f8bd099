#pragma once
// What the image dialogs share: the numbers typed into their edits, and the image
// they work on.

#include <QString>
#include <cstdint>
#include <functional>
#include <initializer_list>

#include "ui/tool_dialog.h"

class QLineEdit;

namespace sedra {

class Model;
class UpDown;

// The edit's first 16 characters read as "%d": blanks, a sign, digits.  False, and
// `value` untouched, when they do not start with a number: typed text that is not a
// number leaves the value as it was.
bool ReadInt(const QLineEdit* edit, int32_t& value);

// "%d" and "%u" of a value, as the dialogs show them (a negative value shown unsigned
// comes out as its 32-bit pattern, as it always has).
QString Signed(int32_t value);
QString Unsigned(int32_t value);

// The image a dialog opened on: which section and slot, and which pixels.  A dialog
// whose image is no longer there (New, another read, another section chosen) ends
// instead of acting on what took its place.
struct ImageStamp {
  int Section = -1, Slot = -1;
  const void* Pixels = nullptr;
  int32_t Width = 0, Height = 0;
  static ImageStamp Radiograph(const Model& model);
  static ImageStamp Optical(const Model& model);
  bool operator==(const ImageStamp&) const = default;
};

// A tool dialog that works on the current optical image or radiograph.
class ImageToolDialog : public ToolDialog {
  Q_OBJECT
 public:
  enum class Image { Optical, Radiograph };
  ImageToolDialog(PlotHost& host, int resourceId, Image image);

 protected:
  // Notes the image the dialog works on; called as it starts.
  void NoteImage();
  // Whether that image is still the current one.
  bool OnNotedImage() const;
  // The same, but a dialog whose image has gone ends here.
  bool Alive();
  // The platform's rule for spins beside edits: a notification from a spin arms it, and
  // the next change of any of the edits disarms it and applies.  A click of a spin
  // therefore applies the number it writes, and so does the first typing after it
  // (the spin's button-up arms it again); typing alone does not.
  void ApplyAfterSpin(std::initializer_list<UpDown*> spins, std::initializer_list<QLineEdit*> edits,
                      std::function<void()> apply);

 private:
  ImageStamp Current() const;
  Image image_;
  ImageStamp stamp_;
  bool spinChanged_ = false;
};

}  // namespace sedra
