#pragma once
// The three settings files in the working folder: defaults.def (1016 bytes, with a
// checksum), elements.def (320) and miscdata.def (75 456).

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace sedra {

class Model;
class Prompt;
struct DisplaySettings;

// Sum of the low four bits of bytes 0..1011 of the display-settings block.
uint32_t SettingsChecksum(const DisplaySettings& settings);

// Fills the display-settings block with the built-in defaults.
void SetDefaultSettings(DisplaySettings& settings);

// First run: when defaults.def cannot be opened, write defaults for all three files.
// elements.def is written empty then (the element block does not exist yet), so the
// element defaults apply only while that file is missing; this is kept.
void CreateSettingsIfMissing(Model& model, const std::filesystem::path& folder);

// Reads the three files.  Returns false (after telling the user) when defaults.def is
// missing, short or fails its checksum: the program must not start then.  A stored
// window rectangle no screen could show (empty, or larger than any desktop) is
// replaced by the default one.
bool ReadSettings(Model& model, const std::filesystem::path& folder, Prompt* prompt);

// What became of writing the settings files.
struct SettingsSave {
  bool Saved = true;
  std::filesystem::path File;  // the first file that could not be written
  int Error = 0;               // and why (errno)
};

// Writes all three files.  Each is replaced whole (temporary file, then rename), so a
// crash never leaves a torn defaults.def; a file made read-only is left as it is, and a
// link is written through.  The program goes on whatever happens; the result says
// whether every file was written.
SettingsSave WriteSettings(Model& model, const std::filesystem::path& folder, bool writeElements = true);

// Whether WriteSettings could replace the three files in `folder`, found out without
// changing any of them.
SettingsSave CheckSettingsWritable(const std::filesystem::path& folder);

// The one message for settings that cannot be saved.
std::string SettingsNotSavedMessage(const SettingsSave& save);

// A window rectangle in screen pixels, as defaults.def stores it.
struct WindowPlace {
  int32_t X = 0, Y = 0, Width = 0, Height = 0;
  bool operator==(const WindowPlace&) const = default;
};

// Where the main window opens: the stored rectangle when its title bar lies on one of
// the `screens` (their available areas) and it fits there; shrunk onto that screen when
// it is larger; on screen `current` at the default place when it is on none of them or
// its size is absurd.
WindowPlace VisibleWindowPlace(const WindowPlace& stored, const std::vector<WindowPlace>& screens, size_t current);

// The folder of the settings files.  A program run from a build (or an unpacked copy)
// keeps them in the working folder, as it always has.  An installed program (its
// executable in <prefix>/lib/sedra-plot, with the desktop entry under <prefix>/share)
// keeps them in `configHome`/sedra-plot, or ~/.config/sedra-plot without one, which it
// creates; unless the working folder already holds a defaults.def, which then wins.
std::filesystem::path ChooseSettingsFolder(const std::filesystem::path& executable,
                                           const std::filesystem::path& workingFolder, const std::string& configHome,
                                           const std::string& home);

}  // namespace sedra
