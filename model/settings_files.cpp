#include "model/settings_files.h"

#include <bit>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "model/messages.h"
#include "model/model.h"
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

// Writes a file whole through a temporary in the same folder and a rename.
bool ReplaceFile(const fs::path& path, const void* data, size_t size) {
  fs::path temp = path;
  temp += ".tmp";
  {
    std::ofstream out(temp, std::ios::binary | std::ios::trunc);
    if (!out) return false;
    if (size) out.write(static_cast<const char*>(data), std::streamsize(size));
    out.flush();
    if (!out) {
      out.close();
      std::error_code ec;
      fs::remove(temp, ec);
      return false;
    }
  }
  std::error_code ec;
  fs::rename(temp, path, ec);
  if (ec) fs::remove(temp, ec);
  return !ec;
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

bool WriteSettings(Model& model, const fs::path& folder, bool writeElements) {
  DisplaySettings& s = model.App.Settings;
  s.Checksum = SettingsChecksum(s);
  ReplaceFile(folder / "defaults.def", &s, sizeof s);
  ReplaceFile(folder / "elements.def", &model.App.Elements, writeElements ? sizeof(ElementSettings) : 0);
  ReplaceFile(folder / "miscdata.def", &model.App.Work, sizeof(WorkingBlock));
  return true;
}

}  // namespace sedra
