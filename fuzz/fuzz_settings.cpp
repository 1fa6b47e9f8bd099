// The settings files as anything may have left them: any bytes split into defaults.def,
// elements.def and miscdata.def.  A file that is read must place the window on a screen,
// and what is written back must read back the same.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/fuzz_prompt.h"
#include "model/model.h"
#include "model/settings_files.h"

namespace {

namespace fs = std::filesystem;

void Put(const fs::path& path, const uint8_t* data, size_t size, bool present) {
  std::error_code ec;
  fs::remove(path, ec);
  if (!present) return;
  std::ofstream out(path, std::ios::binary);
  out.write(reinterpret_cast<const char*>(data), std::streamsize(size));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const fs::path folder = [] {
    // In memory where there is such a folder: every write is synced to the disk, and a
    // disk would make each run take a good part of a second.
    std::error_code ec;
    const fs::path base = fs::is_directory("/dev/shm", ec) ? fs::path("/dev/shm") : fs::temp_directory_path();
    const fs::path f = base / ("sedra-fuzz-settings-" + std::to_string(::getpid()));
    fs::create_directories(f);
    return f;
  }();
  if (size < 3) return 0;
  // Two bytes choose the lengths of the first two files (and whether they exist);
  // defaults.def gets a valid checksum half of the time so the reader goes past it.
  const size_t defaultsSize = std::min<size_t>(size - 3, data[0] < 128 ? 1016 : data[0] * 8u);
  const size_t elementsSize = std::min<size_t>(size - 3 - defaultsSize, data[1] * 2u);
  const uint8_t flags = data[2];
  const uint8_t* p = data + 3;
  std::string defaults(reinterpret_cast<const char*>(p), defaultsSize);
  if ((flags & 1) && defaults.size() >= 1016) {
    sedra::DisplaySettings s;
    std::memcpy(&s, defaults.data(), sizeof s);
    s.Checksum = sedra::SettingsChecksum(s);
    std::memcpy(defaults.data(), &s, sizeof s);
  }
  Put(folder / "defaults.def", reinterpret_cast<const uint8_t*>(defaults.data()), defaults.size(), !(flags & 2));
  Put(folder / "elements.def", p + defaultsSize, elementsSize, !(flags & 4));
  Put(folder / "miscdata.def", p + defaultsSize + elementsSize, size - 3 - defaultsSize - elementsSize, !(flags & 8));

  static sedra::Model* model = new sedra::Model;
  sedra::fuzz::SilentPrompt prompt;
  if (!sedra::ReadSettings(*model, folder, &prompt)) return 0;
  const sedra::DisplaySettings& s = model->Settings();
  const sedra::WindowPlace stored{s.WindowX, s.WindowY, s.WindowWidth, s.WindowHeight};
  const std::vector<sedra::WindowPlace> screens = {{0, 0, 1920, 1080}, {1920, -200, 1280, 1024}};
  const sedra::WindowPlace w = sedra::VisibleWindowPlace(stored, screens, flags >> 7);
  bool onScreen = false;
  for (const auto& sc : screens)
    onScreen |= w.X >= sc.X && w.Y >= sc.Y && w.Width >= 1 && w.Height >= 1 && int64_t(w.X) + 100 <= int64_t(sc.X) + sc.Width &&
                int64_t(w.Y) + 32 <= int64_t(sc.Y) + sc.Height;
  if (!onScreen || w.Width > 1920 || w.Height > 1080) __builtin_trap();

  // Written back and read again, the settings come back as they were.
  if (!sedra::WriteSettings(*model, folder).Saved) __builtin_trap();
  // A model is large (a whole core's data); one is made once and read into every time.
  static sedra::Model* again = new sedra::Model;
  if (!sedra::ReadSettings(*again, folder, &prompt)) __builtin_trap();
  if (std::memcmp(&again->Settings(), &model->Settings(), sizeof(sedra::DisplaySettings)) != 0 ||
      std::memcmp(&again->App.Elements, &model->App.Elements, sizeof(sedra::ElementSettings)) != 0 ||
      std::memcmp(&again->App.Work, &model->App.Work, sizeof(sedra::WorkingBlock)) != 0)
    __builtin_trap();
  return 0;
}
