#pragma once
// The three settings files in the working folder: defaults.def (1016 bytes, with a
// checksum), elements.def (320) and miscdata.def (75 456).

#include <cstdint>
#include <filesystem>

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
// missing, short or fails its checksum: the program must not start then.
bool ReadSettings(Model& model, const std::filesystem::path& folder, Prompt* prompt);

// Writes all three files.  Each is replaced atomically (temporary file, then rename),
// so a crash never leaves a torn defaults.def.  Write errors are silent.
bool WriteSettings(Model& model, const std::filesystem::path& folder, bool writeElements = true);

}  // namespace sedra
