#pragma once
// Prompt: the one way any layer asks or tells the user something.  The desktop
// implementation shows Qt dialogs; tests install a scripted one.  Readers and model
// routines never show UI themselves.

#include <string>
#include <vector>

namespace sedra {

enum class Icon { None, Hand, Exclamation, Information, Question };
enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
enum class Answer { Ok, Cancel, Yes, No };

struct FileFilter {
  std::string Name;     // "TIFF files (*.tif)"
  std::string Pattern;  // "*.tif"
};

struct FileRequest {
  std::string Title;
  std::vector<FileFilter> Filters;
  int FilterIndex = 1;      // 1-based, as the dialogs count them
  std::string InitialName;  // may carry a leading separator, kept as the scanner software wrote it
  std::string InitialDir;
};

struct FileChoice {
  bool Accepted = false;
  std::string Path;
  int FilterIndex = 1;
};

class Prompt {
 public:
  virtual ~Prompt() = default;
  // caption: empty for "no caption"; msg::kDefaultCaption where the system default shows.
  virtual Answer Message(const std::string& text, const std::string& caption, Icon icon, Buttons buttons) = 0;
  virtual FileChoice OpenFile(const FileRequest& request) = 0;
  virtual FileChoice SaveFile(const FileRequest& request) = 0;
  // Wait cursor while a long operation runs.
  virtual void SetBusy(bool) {}

  // The common case: an OK box.
  void Tell(const std::string& text, const std::string& caption = {}, Icon icon = Icon::None) {
    Message(text, caption, icon, Buttons::Ok);
  }
};

}  // namespace sedra
