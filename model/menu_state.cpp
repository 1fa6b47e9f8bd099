#include "model/menu_state.h"

namespace sedra {

MenuState MenuState::Initial() {
  MenuState m;
  m.TopEnabled.fill(true);
  // As the menu resource has them: the expand command and the section choice are
  // greyed until a section is loaded, the radiograph size item until the section
  // information dialog allows it, and 100% is the checked zoom.
  m.TopEnabled[kMenuExpand] = false;
  m.TopEnabled[kMenuSection] = false;
  m.ItemEnabled[kCmdImageSize] = false;
  m.ItemChecked[kCmdZoom100] = true;
  return m;
}

}  // namespace sedra
