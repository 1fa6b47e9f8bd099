#pragma once
// The tools that write on the plot: "Define Title Region" (216), used for the main title
// and for the current section's title, and "Define Text Field" (217) for the eight free
// texts.  While one is open a click on the plot places its item and a drag moves it
// (interact/mouse_engine.h).  The controls are read when they lose the focus, as the
// user leaves them to click on the plot, and once more by "Finished".

#include <cstddef>
#include <cstdint>

#include "ui/tool_dialog.h"

class QComboBox;
class QLineEdit;

namespace sedra {

struct PlotState;

// The size list of the font box; any other whole number may be typed.
inline constexpr int kFontSizes[] = {8, 10, 12, 14, 18};
// Titles and text fields keep 31 characters here (the section title too, although its
// field holds 63 for the information editor).
inline constexpr int kTitleBytes = 32;
// A larger size is refused: its letters would be taller than any page.
inline constexpr int kMaxFontPoints = 1000;

class TextToolDialog : public ToolDialog {
  Q_OBJECT
 public:
  // The edit lost the focus: its first 31 characters become the item's text, or a
  // text the item cannot hold is refused with a message and the old one shown again.
  void TakeText();
  // The size box lost the focus: its leading whole number becomes the item's size;
  // text that is not a number leaves the size as it was.
  void TakeSize();
  // "Finished": what the controls hold is taken and the tool ends.
  void OnFinished();

 protected:
  // `mode` is the plot-state flag that makes a click place this tool's item.
  TextToolDialog(PlotHost& host, int resourceId, uint32_t PlotState::*mode);
  // Wires the controls of the template that setupUi built.
  void Connect();
  // The item being edited: its text bytes (kTitleBytes of room) and its size.
  virtual char* ItemText() = 0;
  virtual int32_t& ItemSize() = 0;
  // The size an item gets when none was chosen yet.
  virtual int DefaultSize() const = 0;
  // The bytes the item's field holds, all of which are shown.
  virtual size_t ItemRoom() const { return kTitleBytes; }
  // Gives an item without a size its default, then shows its size and text.
  void ShowItem();
  void SetModes() override;
  void ClearModes() override;

 private:
  QLineEdit* Edit() const;
  QComboBox* SizeBox() const;
  uint32_t PlotState::*mode_;
  bool taking_ = false;  // a refusal's message box takes the focus too
};

enum class TitleKind { Main, Section };

class TitleDialog : public TextToolDialog {
  Q_OBJECT
 public:
  TitleDialog(PlotHost& host, TitleKind kind);
  ~TitleDialog() override;

 protected:
  char* ItemText() override;
  int32_t& ItemSize() override;
  int DefaultSize() const override { return kind_ == TitleKind::Main ? 14 : 8; }
  // A section name from the information editor may be longer than this dialog keeps:
  // it is shown whole and cut when the edit is left.
  size_t ItemRoom() const override;

 private:
  TitleKind kind_;
};

// One type per tool, so that opening one ends the other.
class MainTitleDialog : public TitleDialog {
 public:
  explicit MainTitleDialog(PlotHost& host) : TitleDialog(host, TitleKind::Main) {}
};
class SectionTitleDialog : public TitleDialog {
 public:
  explicit SectionTitleDialog(PlotHost& host) : TitleDialog(host, TitleKind::Section) {}
};

class TextFieldDialog : public TextToolDialog {
  Q_OBJECT
 public:
  explicit TextFieldDialog(PlotHost& host);
  ~TextFieldDialog() override;
  // Radio button 1385 + i: field i becomes the one edited.  The text of the field left
  // behind is not read again; it was taken when the edit lost the focus.
  void OnRadio(int id);

 protected:
  void SetModes() override;
  char* ItemText() override;
  int32_t& ItemSize() override;
  int DefaultSize() const override { return 10; }
};

}  // namespace sedra
