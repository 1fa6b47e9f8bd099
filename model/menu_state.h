#pragma once
// Enabled and checked states of the main menu, kept as data.  The model's rules change
// it; the main window applies it to the real menu by top-level position and item id.

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>

namespace sedra {

constexpr int kMenuPositions = 11;

// Top-level positions of the main menu.  The order is fixed: the enabling rules
// address entries by position.
enum MenuPosition : int {
  kMenuFile = 0,
  kMenuZoom = 1,
  kMenuExpand = 2,
  kMenuOptical = 3,
  kMenuRadiograph = 4,
  kMenuElementData = 5,
  kMenuDefineRegion = 6,
  kMenuSection = 7,
  kMenuEdit = 8,
  kMenuColourSetup = 9,
  kMenuAbout = 10,
};

// Command ids.
enum CommandId : int {
  kCmdExit = 4005,
  kCmdPrint = 4006,
  kCmdReadOptical = 4011,
  kCmdAbout = 4025,
  kCmdHelp = 4026,
  kCmdZoom100 = 4031,
  kCmdZoom200 = 4032,
  kCmdZoom400 = 4033,
  kCmdZoom800 = 4034,
  kCmdReadRadiograph = 4045,
  kCmdOpticalContrast = 4046,
  kCmdOpticalSize = 4053,
  kCmdHRegion = 4055,
  kCmdCopyClipboard = 4056,
  kCmdColourSetup = 4057,
  kCmdMainTitle = 4058,
  kCmdRadContrast = 4060,
  kCmdEditInfo = 4061,
  kCmdSaveImage = 4063,
  kCmdOverlayOr = 4067,
  kCmdOverlayAnd = 4068,
  kCmdHLine = 4069,
  kCmdVLine = 4070,
  kCmdDeletePoints = 4071,
  kCmdSetText = 4072,
  kCmdSection = 4074,
  kCmdNew = 4076,
  kCmdImageSize = 4080,
  kCmdSectionTitle = 4081,
  kCmdVRegion = 4087,
  kCmdExpand = 4089,
  kCmdDataRegion = 4093,
  kCmdPrintPdf = 4099,
  kCmdReadRawHighRes = 4102,
  kCmdZoom1600 = 4103,
  kCmdReadRawMaxRes = 4104,
  kCmdZoom3200 = 4106,
  // Whole cores: further sections and radiographs, and taking a section out again.
  kCmdAddSection = 4110,
  kCmdAddRadiograph = 4111,
  kCmdRemoveSection = 4112,
};

struct MenuState {
  std::array<bool, kMenuPositions> TopEnabled{};
  std::map<int, bool> ItemEnabled;  // absent = enabled
  std::map<int, bool> ItemChecked;  // absent = unchecked
  uint64_t Generation = 0;          // bumped by every change, so the window knows to apply it

  // The state the menu resource starts with.
  static MenuState Initial();

  bool IsTopEnabled(int position) const { return TopEnabled[std::size_t(position)]; }
  bool IsItemEnabled(int id) const {
    auto it = ItemEnabled.find(id);
    return it == ItemEnabled.end() || it->second;
  }
  bool IsChecked(int id) const {
    auto it = ItemChecked.find(id);
    return it != ItemChecked.end() && it->second;
  }
  void EnableTop(int position, bool on) {
    TopEnabled[std::size_t(position)] = on;
    ++Generation;
  }
  void EnableItem(int id, bool on) {
    ItemEnabled[id] = on;
    ++Generation;
  }
  void Check(int id, bool on) {
    ItemChecked[id] = on;
    ++Generation;
  }
};

}  // namespace sedra
