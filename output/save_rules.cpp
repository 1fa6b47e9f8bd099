#include "output/save_rules.h"

#include <cstring>
#include <filesystem>
#include <system_error>

#include "model/messages.h"
#include "model/model.h"

namespace sedra {

FileRequest SaveImageRequest(const Model& model, const std::string& workingFolder) {
  FileRequest r;
  r.Title = "Save Current Display as Image file";
  r.Filters = {{"Bitmap (*.bmp)", "*.bmp"}, {"Tiff (*.tif)", "*.tif"}};
  r.FilterIndex = kBmpFilter;
  const char* name = model.CurSection().FileName;
  r.InitialName.assign(name, strnlen(name, sizeof model.CurSection().FileName));
  r.InitialDir = workingFolder;
  return r;
}

std::string WithImageExtension(const std::string& path, int filterIndex) {
  if (path.find('.') != std::string::npos) return path;
  if (filterIndex == kBmpFilter) return path + ".bmp";
  if (filterIndex == kTiffFilter) return path + ".tif";
  return path;
}

std::string OverwriteQuestion(const std::string& path) {
  return "Overwrite file " + std::filesystem::path(path).filename().string() + " ?";
}

FileChoice ChooseImageFile(Prompt& prompt, const FileRequest& request) {
  for (;;) {
    FileChoice choice = prompt.SaveFile(request);
    if (!choice.Accepted) return choice;
    choice.Path = WithImageExtension(choice.Path, choice.FilterIndex);
    std::error_code ec;
    if (!std::filesystem::exists(choice.Path, ec)) return choice;
    const Answer a = prompt.Message(OverwriteQuestion(choice.Path), msg::kFileExistsCaption, Icon::None, Buttons::YesNo);
    if (a == Answer::Yes) return choice;
    // Anything but Yes asks again, as No does.
  }
}

std::string WorkingFolder() {
  std::error_code ec;
  std::filesystem::path p = std::filesystem::current_path(ec);
  return ec ? std::string() : p.string();
}

}  // namespace sedra
