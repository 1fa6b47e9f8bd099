#include "model/settings_files.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "model/file_replace.h"
#include "model/messages.h"
#include "model/model.h"
#include "model/numbers.h"
#include "model/prompt.h"

namespace sedra {

static_assert(std::endian::native == std::endian::little,
              "the settings files are little-endian byte images of the blocks");

namespace fs = std::filesystem;

uint32_t SettingsChecksum(const DisplaySettings& settings) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(&settings);
  uint32_t sum = 0;
  for (size_t i = 0; i < offsetof(DisplaySettings, Checksum); ++i) sum += bytes[i] & 0x0F;
  return sum;
}

void SetDefaultSettings(DisplaySettings& s) {
  std::memset(&s, 0, sizeof s);
  static const uint32_t kColours[kColourTableSize] = {0xFFFFFF, 0xFF0000, 0x000000, 0x008000, 0x008000,
                                                      0xC0C0C0, 0x800080, 0x008000, 0xFF00FF};
  std::memcpy(s.Colours, kColours, sizeof kColours);
  s.ElementFontSize = 9;
  s.HScaleFontSize = 6;
  s.DepthFontSize = 8;
  s.WindowX = 5;
  s.WindowY = 5;
  s.WindowWidth = 1000;
  s.WindowHeight = 700;
  s.MarginLeft = 7;
  s.MarginRight = 10;
  s.MarginTop = 5;
  s.MarginBottom = 10;
}

namespace {

constexpr const char* kSettingsFiles[] = {"defaults.def", "elements.def", "miscdata.def"};

// Writes one file whole through ReplacingFile; the first failure is kept in `save`.
void ReplaceFile(SettingsSave& save, const fs::path& path, const void* data, size_t size) {
  ReplacingFile file(path);
  if (file.Open() && file.Write(data, size) && file.Commit()) return;
  if (save.Saved) save = {false, path, file.Error()};
}

// Reads up to `size` bytes; returns the count, or -1 when the file cannot be opened.
long ReadUpTo(const fs::path& path, void* data, size_t size) {
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) return -1;
  const size_t got = std::fread(data, 1, size, f);
  std::fclose(f);
  return long(got);
}

void ApplyElementDefaults(ElementSettings& e) {
  std::memset(&e, 0, sizeof e);
  for (auto& entry : e.Entries) entry[0] = 1;
}

}  // namespace

void CreateSettingsIfMissing(Model& model, const fs::path& folder) {
  std::FILE* f = std::fopen((folder / "defaults.def").c_str(), "rb");
  if (f) {
    std::fclose(f);
    return;
  }
  SetDefaultSettings(model.App.Settings);
  WriteSettings(model, folder, /*writeElements=*/false);
}

bool ReadSettings(Model& model, const fs::path& folder, Prompt* prompt) {
  DisplaySettings& s = model.App.Settings;
  std::FILE* f = std::fopen((folder / "defaults.def").c_str(), "rb");
  if (!f) {
    if (prompt) prompt->Tell(msg::kCouldNotOpenDefaults, msg::kSupportCaption, Icon::Hand);
    return false;
  }
  DisplaySettings read;
  const size_t got = std::fread(&read, 1, sizeof read, f);
  std::fclose(f);
  if (got < sizeof read || read.Checksum != SettingsChecksum(read)) {
    if (prompt) prompt->Tell(msg::kErrorReadingDefaults, msg::kSupportCaption, Icon::Hand);
    return false;
  }
  s = read;
  s.FormatMark = 608;
  if (s.ElementFontSize < 6) s.ElementFontSize = 11;
  if (s.HScaleFontSize < 6) s.HScaleFontSize = 8;
  if (s.DepthFontSize < 6) s.DepthFontSize = 8;
  // A rectangle no screen can show would open an invisible window, or make the window
  // system allocate until memory runs out.
  const WindowPlace window{s.WindowX, s.WindowY, s.WindowWidth, s.WindowHeight};
  if (VisibleWindowPlace(window, {}, 0) != window) {
    s.WindowX = 5;
    s.WindowY = 5;
    s.WindowWidth = 1000;
    s.WindowHeight = 700;
  }

  if (ReadUpTo(folder / "elements.def", &model.App.Elements, sizeof(ElementSettings)) < 0)
    ApplyElementDefaults(model.App.Elements);

  WorkingBlock& work = model.App.Work;
  const long misc = ReadUpTo(folder / "miscdata.def", &work, sizeof(WorkingBlock));
  if (misc != long(sizeof(WorkingBlock))) {
    work.ShowRadiograph = 1;
    work.ShowOptical = 1;
    work.ShowCoreName = 1;
    work.ShowSectionName = 1;
  }
  return true;
}

SettingsSave WriteSettings(Model& model, const fs::path& folder, bool writeElements) {
  DisplaySettings& s = model.App.Settings;
  s.Checksum = SettingsChecksum(s);
  SettingsSave save;
  ReplaceFile(save, folder / "defaults.def", &s, sizeof s);
  ReplaceFile(save, folder / "elements.def", &model.App.Elements, writeElements ? sizeof(ElementSettings) : 0);
  ReplaceFile(save, folder / "miscdata.def", &model.App.Work, sizeof(WorkingBlock));
  return save;
}

SettingsSave CheckSettingsWritable(const fs::path& folder) {
  for (const char* name : kSettingsFiles) {
    // Opening makes the temporary beside the file; not committing removes it again.
    ReplacingFile file(folder / name);
    if (!file.Open()) return {false, folder / name, file.Error()};
  }
  return {};
}

std::string SettingsNotSavedMessage(const SettingsSave& save) {
  const fs::path where = save.File.has_parent_path() ? save.File.parent_path() : fs::path(".");
  std::string reason = WriteFailureReason(save.Error);
  if (save.File.has_filename()) reason = save.File.filename().string() + ": " + reason;
  return Format(msg::kSettingsNotSaved, where.string().c_str(), reason.c_str());
}

namespace {

constexpr WindowPlace kDefaultWindow{5, 5, 1000, 700};
// Below this a window is too small to find or use; above the largest side and position
// a desktop can have it cannot be shown at all.
constexpr int32_t kMinWindowWidth = 120;
constexpr int32_t kMinWindowHeight = 80;
constexpr int32_t kMaxDesktop = 32767;
// The part of the title bar that must lie on a screen for the window to be moved back.
constexpr int32_t kTitleBand = 32;
constexpr int32_t kGrabWidth = 100;

bool PlausibleSize(const WindowPlace& w) {
  return w.Width >= kMinWindowWidth && w.Height >= kMinWindowHeight && w.Width <= kMaxDesktop &&
         w.Height <= kMaxDesktop && w.X >= -kMaxDesktop && w.X <= kMaxDesktop && w.Y >= -kMaxDesktop &&
         w.Y <= kMaxDesktop;
}

// Whether the title bar of `w` can be seen and grabbed on `screen`.
bool TitleOnScreen(const WindowPlace& w, const WindowPlace& screen) {
  const int64_t left = std::max<int64_t>(w.X, screen.X);
  const int64_t right = std::min<int64_t>(int64_t(w.X) + w.Width, int64_t(screen.X) + screen.Width);
  const bool topInside = w.Y >= screen.Y && int64_t(w.Y) + kTitleBand <= int64_t(screen.Y) + screen.Height;
  return topInside && right - left >= std::min(kGrabWidth, w.Width);
}

}  // namespace

WindowPlace VisibleWindowPlace(const WindowPlace& stored, const std::vector<WindowPlace>& screens, size_t current) {
  const bool plausible = PlausibleSize(stored);
  if (screens.empty()) return plausible ? stored : kDefaultWindow;
  const WindowPlace* on = nullptr;
  if (plausible)
    for (const WindowPlace& screen : screens)
      if (TitleOnScreen(stored, screen)) {
        on = &screen;
        break;
      }
  WindowPlace w = stored;
  if (!on) {
    on = &screens[std::min(current, screens.size() - 1)];
    if (!plausible) w = kDefaultWindow;
    w.X = on->X + kDefaultWindow.X;
    w.Y = on->Y + kDefaultWindow.Y;
  }
  // Larger than its screen: shrunk to the screen and put in its corner.
  if (w.Width > on->Width || w.Height > on->Height) {
    w.Width = std::min(w.Width, on->Width);
    w.Height = std::min(w.Height, on->Height);
    w.X = std::clamp<int64_t>(w.X, on->X, int64_t(on->X) + on->Width - w.Width);
    w.Y = std::clamp<int64_t>(w.Y, on->Y, int64_t(on->Y) + on->Height - w.Height);
  }
  return w;
}

namespace {

// The package puts the executables in <prefix>/lib/sedra-plot and the desktop entry in
// <prefix>/share/applications; a build tree has neither layout.
bool IsInstalledProgram(const fs::path& executable) {
  std::error_code ec;
  const fs::path real = fs::weakly_canonical(executable, ec);
  if (ec) return false;
  const fs::path prefix = real.parent_path().parent_path().parent_path();
  return real.parent_path().filename() == "sedra-plot" &&
         fs::exists(prefix / "share" / "applications" / "sedra-plot.desktop", ec);
}

}  // namespace

fs::path ChooseSettingsFolder(const fs::path& executable, const fs::path& workingFolder, const std::string& configHome,
                              const std::string& home) {
  std::error_code ec;
  if (!IsInstalledProgram(executable) || fs::exists(workingFolder / "defaults.def", ec)) return workingFolder;
  fs::path base;
  if (!configHome.empty() && fs::path(configHome).is_absolute()) base = configHome;
  else if (!home.empty()) base = fs::path(home) / ".config";
  else return workingFolder;
  const fs::path folder = base / "sedra-plot";
  fs::create_directories(folder, ec);
  return fs::is_directory(folder, ec) ? folder : workingFolder;
}

}  // namespace sedra
