#include "app/menu_table.h"

#include "model/menu_state.h"

namespace sedra {

const std::vector<TopEntryDef>& MainMenuTable() {
  static const std::vector<TopEntryDef> kMenu = {
      {"&File",
       0,
       {{"Read &Radiograph Image", kCmdReadRadiograph},
        {"Read &Optical Image", kCmdReadOptical},
        {"Read Ra&w Radiograph HighRes Image", kCmdReadRawHighRes},
        {"Read Raw Radiograph MaxRes Image", kCmdReadRawMaxRes},
        {"Copy to C&lipboard", kCmdCopyClipboard},
        {"Save I&mage", kCmdSaveImage},
        {"&Print", kCmdPrint},
        {"Print as PDF file", kCmdPrintPdf},
        {"New", kCmdNew},
        {"E&xit", kCmdExit},
        {"Add &Core Section", kCmdAddSection},
        {"Add Radiograph to Section", kCmdAddRadiograph},
        {"Remove Current Section", kCmdRemoveSection}}},
      {"&Zoom",
       0,
       {{"&100%", kCmdZoom100},
        {"&200%", kCmdZoom200},
        {"&400%", kCmdZoom400},
        {"&800%", kCmdZoom800},
        {"1600%", kCmdZoom1600},
        {"3200%", kCmdZoom3200}}},
      {"E&xpand Core Region", kCmdExpand, {}},
      {"&Optical Image", 0, {{"&Contrast", kCmdOpticalContrast}, {"&Size/Positon", kCmdOpticalSize}}},
      {"&Radiograph",
       0,
       {{"&Contrast", kCmdRadContrast},
        {"&Image Size", kCmdImageSize},
        {"Overlay over Optical Image &OR", kCmdOverlayOr},
        {"Overlay over Optical Image &AND", kCmdOverlayAnd},
        {"&Define Data Region", kCmdDataRegion}}},
      {"&Element Data", 0, {{"&Delete Points", kCmdDeletePoints}}},
      {"Def&ine Region etc",
       0,
       {{"Define Horizontal &Region", kCmdHRegion},
        {"Define &Vertical Region", kCmdVRegion},
        {"Define &Horizontal Line", kCmdHLine},
        {"Define Vertical &Line", kCmdVLine}}},
      {"&Section", kCmdSection, {}},
      {"E&dit",
       0,
       {{"Edit &Information", kCmdEditInfo},
        {"Set Main &Title", kCmdMainTitle},
        {"Set &Section Title", kCmdSectionTitle},
        {"Set Te&xt", kCmdSetText}}},
      {"Colour and Data Set&Up", kCmdColourSetup, {}},
      {"About", kCmdAbout, {}},
  };
  return kMenu;
}

}  // namespace sedra
