#pragma once
// The main menu as data: top-level entries in their fixed positions, with the items of
// each popup.  Texts are the program's own, ampersands included.

#include <vector>

namespace sedra {

struct MenuItemSpec {
  const char* Text;
  int Id;
};

struct TopEntrySpec {
  const char* Text;
  int Id;  // command id for an entry on the bar itself, 0 for a popup
  std::vector<MenuItemSpec> Items;
};

const std::vector<TopEntrySpec>& MainMenuSpec();

}  // namespace sedra
