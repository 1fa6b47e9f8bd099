#pragma once
// The main menu as data: top-level entries in their fixed positions, with the items of
// each popup.  Texts are the program's own, ampersands included.

#include <vector>

namespace sedra {

struct MenuItemDef {
  const char* Text;
  int Id;
};

struct TopEntryDef {
  const char* Text;
  int Id;  // command id for an entry on the bar itself, 0 for a popup
  std::vector<MenuItemDef> Items;
};

const std::vector<TopEntryDef>& MainMenuTable();

}  // namespace sedra
